#include "content/page/picture_file.h"
#include "tests/system.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtTest>

namespace {

constexpr qint64 kMost = 80 * 40 * 4; ///< bytes that are read as they are

QByteArray coded(const QSize& size, const char* coder, QImage::Format format = QImage::Format_RGB32,
                 bool progressive = false)
{
    QImage image(size, format);
    image.fill(0);
    QBuffer buffer;
    QImageWriter writer(&buffer, coder);
    writer.setProgressiveScanWrite(progressive);
    return writer.write(image) ? buffer.data() : QByteArray();
}

} // namespace

class PictureFileTest : public QObject
{
    Q_OBJECT

    static void reads(const QByteArray& content, const QSize& size, const char* log)
    {
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(log));
        QCOMPARE(pictureFromData(content, kMost).size(), size);
    }

private slots:
    void limits()
    {
        const QSize out(0, 0);
        const auto colour = QImage::Format_RGB32;
        const std::tuple<const char*, QImage::Format, QSize, QSize> rows[] = {
            {"BMP", colour, {80, 40}, {80, 40}},
            {"BMP", colour, {81, 40}, out}, // would be decoded whole
            {"PNG", colour, {81, 40}, {41, 20}},
            {"PNG", QImage::Format_RGBX64, {80, 21}, out},
            {"PNG", QImage::Format_Mono, {640, 160}, {640, 160}},
            {"PNG", QImage::Format_Mono, {641, 160}, out},
            {"JPG", colour, {640, 320}, {80, 40}},
            {"JPG", colour, {641, 320}, out}};
        for (const auto& [coder, format, size, read] : rows)
            reads(coded(size, coder, format), read, read == out ? "left out: .*too large" : "picture read: .*");
        // 65536 × 32769 dots, 8 KiB more than what is read where nobody names a limit.
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("too large"));
        QVERIFY(pictureFromData(QByteArray::fromHex("89504e470d0a1a0a0000000d49484452000100000000800101"
                                                    "00000000cb1f34870000000049444154"))
                    .isNull());
        // The decoder keeps 6 bytes a pixel.
        reads(coded({80, 80}, "JPG", colour, true), {40, 40}, "read");
        reads(coded({81, 80}, "JPG", colour, true), out, "too large");
        QByteArray interlaced = coded({81, 40}, "PNG");
        interlaced.replace(28, 5, QByteArray::fromHex("017ec7b1fe")); // with the header's check sum
        reads(interlaced, out, "too large");
        // 2100 × 2 dots, of which the one frame takes two; Qt tells 2 × 2.
        QByteArray gif = QByteArray::fromHex("47494638396134080200010a002c00000000020001000002020c003b");
        reads(gif, out, "too large");
        reads(gif.replace(6, 4, QByteArray("\2\0\x34\x08", 4)), out, "too large"); // 2 × 2100
    }

    void contents()
    {
        const QByteArray orientation =
            QByteArray::fromHex("ffe100224578696600004d4d002a00000008000101120003000000010006000000000000");
        const QByteArray jpeg = coded({3, 2}, "JPG");
        reads(jpeg.left(2) + orientation + jpeg.mid(2), {2, 3}, "read: .*QSize.3, 2. as QSize.2, 3");
        reads("\x89PNG, but not for long", {0, 0}, "left out: .*Unsupported image format");
        reads(coded({90, 90}, "PNG", QImage::Format_Mono).left(60), {0, 0}, "left out: .*Unable to read");
    }

    void noFiles()
    {
        const QTemporaryDir folder;
        const QString pipe = folder.filePath("pipe.png");
        QVERIFY(makePipe(pipe) || kOnWindows);
        for (const QString& name : {QString(), folder.path(), pipe, folder.filePath("none.png")}) {
            QTest::ignoreMessage(QtDebugMsg, QRegularExpression("picture left out: .*" + name));
            QVERIFY(readPicture(name).isNull());
        }
    }
};

QTEST_GUILESS_MAIN(PictureFileTest)
#include "tst_picture_file.moc"
