#include "content/page/page_scaling.h"
#include "content/page/picture_file.h"

#include <QBuffer>
#include <QImageReader>
#include <QtTest>

#include <sys/stat.h>

namespace {

constexpr qint64 kMost = 80 * 40 * 4; ///< bytes that are read as they are

QImage empty(int width, int height, QImage::Format format)
{
    QImage image(width, height, format);
    image.fill(0);
    return image;
}

QByteArray coded(const QImage& image, const char* format)
{
    QBuffer buffer;
    return image.save(&buffer, format) ? buffer.data() : QByteArray();
}

/// With the header, and the check sum of it, of an interlaced picture of 81 x 40.
QByteArray asInterlaced(QByteArray png)
{
    return png.replace(28, 5,
                       QByteArray::fromHex("01"
                                           "7ec7b1fe"));
}

/// A camera that was held upright says so in front of the picture.
QByteArray turned(QByteArray jpeg)
{
    return jpeg.insert(2, QByteArray::fromHex("ffe10022457869660000"
                                              "4d4d002a00000008"
                                              "0001011200030000000100060000"
                                              "00000000"));
}

} // namespace

class PictureFileTest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QSize>("size"); // an empty one: left out
        QTest::addColumn<QString>("log");
        const auto row = [](const char* name, const QByteArray& content, const QSize& size, const char* log) {
            QTest::newRow(name) << content << size << log;
        };
        const QImage small = empty(3, 2, QImage::Format_RGB32);
        row("bmp", coded(small, "BMP"), {3, 2}, "read: .*QSize.3, 2. as QSize.3, 2");
        row("turned", turned(coded(small, "JPG")), {2, 3}, "read: ");
        row("no picture", "\x89PNG, but not for long", {}, "left out: .*Unsupported image format");
        row("no width", coded(small, "PPM").replace(" 2", " 0"), {}, "left out: ");
        row("cut", coded(empty(90, 90, QImage::Format_Mono), "PNG").left(60), {}, "left out: .*Unable to read");
        for (const char* format : {"JPG", "PNG", "BMP"})
            row("whole", coded(empty(80, 40, QImage::Format_RGB32), format), {80, 40}, "read: ");
        const QImage large = empty(81, 40, QImage::Format_RGB32);
        row("large jpeg", coded(large, "JPG"), {41, 20}, "read: ");
        row("large png", coded(large, "PNG"), {41, 20}, "read: ");
        row("quarter", coded(empty(320, 160, QImage::Format_RGB32), "PNG"), {80, 40}, "read: ");
        row("eighth", coded(empty(640, 320, QImage::Format_RGB32), "JPG"), {80, 40}, "read: ");
        // What would have to be decoded whole, and what is too large even then.
        row("large bmp", coded(large, "BMP"), {}, "left out: .*is too large: QSize.81, 40");
        row("interlaced", asInterlaced(coded(large, "PNG")), {}, "left out: .*is too large");
        row("sixteenth", coded(empty(641, 320, QImage::Format_RGB32), "JPG"), {}, "left out: .*is too large");
        // Counted as what they take.
        row("1 bit", coded(empty(640, 160, QImage::Format_Mono), "PNG"), {640, 160}, "read: ");
        row("large 1 bit", coded(empty(641, 160, QImage::Format_Mono), "PNG"), {}, "left out: .*is too large");
        row("grey", coded(empty(160, 80, QImage::Format_Grayscale8), "PNG"), {160, 80}, "read: ");
        row("large grey", coded(empty(161, 80, QImage::Format_Grayscale8), "PNG"), {}, "left out: .*is too large");
        row("16 bits", coded(empty(80, 21, QImage::Format_RGBX64), "PNG"), {}, "left out: .*is too large");
    }

    /// From a file and from its content alike, whatever the file's name says.
    void reads()
    {
        QFETCH(QByteArray, content);
        QFETCH(QSize, size);
        QFETCH(QString, log);
        QTemporaryFile file(QDir::tempPath() + "/XXXXXX.gif");
        QVERIFY(file.open() && file.write(content) == content.size() && file.flush());
        for (const bool fromFile : {true, false}) {
            const QString name = fromFile ? file.fileName() : "of " + QString::number(content.size());
            QTest::ignoreMessage(QtDebugMsg, QRegularExpression("picture " + log));
            const QImage picture = fromFile ? readPicture(name, kMost) : pictureFromData(content, kMost);
            QCOMPARE(picture.size(), size.isEmpty() ? QSize(0, 0) : size);
        }
    }

    /// 8192 x 8192 pixels are the most as they are; a plan for an architect is larger, and takes less.
    void mostBytes()
    {
        QCOMPARE(kMostPictureBytes, qint64{8192} * 8192 * 4);
        const QImage plan = pictureFromData(coded(empty(9933, 14043, QImage::Format_Mono), "PNG"));
        QVERIFY(plan.size() == QSize(9933, 14043) && plan.format() == QImage::Format_Mono);
    }

    void tooTall()
    {
        QVERIFY(!isTooTall({2, 65534}, 1) && isTooTall({2, 65535}, 1)); // which rounds up
        QVERIFY(isTooTall({1, 1 << 30}, 4) && !isTooTall({0, 0}, 1));
    }

    void noFiles()
    {
        const QTemporaryDir folder;
        const QString pipe = folder.filePath("pipe.png"); // into which nobody writes
        QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
        for (const QString& name : {QString(), folder.path(), pipe, folder.filePath("none.png")}) {
            QTest::ignoreMessage(QtDebugMsg, QRegularExpression("picture left out: .*" + name));
            QVERIFY(readPicture(name).isNull());
        }
    }
};

QTEST_GUILESS_MAIN(PictureFileTest)
#include "tst_picture_file.moc"
