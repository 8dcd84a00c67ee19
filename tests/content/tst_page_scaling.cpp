#include "content/page_scaling.h"

#include <QtTest>

namespace {

QImage numbered(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x)
            line[x] = 0xff000000u | static_cast<uint>(y % 4096 << 12) | static_cast<uint>(x);
    }
    return image;
}

QImage inStrips(const QImage& source, int width, int stripRows)
{
    return scaleInStrips(source.size(), width, stripRows, [&source](int first, int count, int& top) {
        top = qMax(0, first - 3); // a source may give more than it was asked for
        return source.copy(0, top, source.width(), count + first - top);
    });
}

} // namespace

class PageScalingTest : public QObject
{
    Q_OBJECT

private slots:
    void stripsEqualPlainRoad_data();
    void stripsEqualPlainRoad();
    void tallPictureIsWhole();
    void refusals();
};

void PageScalingTest::stripsEqualPlainRoad_data()
{
    QTest::addColumn<QSize>("source");
    QTest::addColumn<int>("width");
    QTest::newRow("down") << QSize(574, 1000) << 384;
    QTest::newRow("up") << QSize(562, 4097) << 576;
    QTest::newRow("same") << QSize(576, 333) << 576;
    QTest::newRow("far up") << QSize(100, 2000) << 576;
    QTest::newRow("half rows") << QSize(384, 17) << 576;
    QTest::newRow("dense screen") << QSize(1148, 9001) << 384;
    QTest::newRow("highest") << QSize(600, 32767) << 384;
}

void PageScalingTest::stripsEqualPlainRoad()
{
    QFETCH(QSize, source);
    QFETCH(int, width);
    const QImage image = numbered(source.width(), source.height());
    const QImage plain = image.scaledToWidth(width, Qt::FastTransformation);
    for (const int stripRows : {1, 7, 100, kPaintableRows}) {
        if (stripRows > 1 || source.height() < 5000)
            QVERIFY2(inStrips(image, width, stripRows) == plain, qPrintable(QString::number(stripRows)));
    }
    QCOMPARE(sizeAtWidth(source, width), plain.size());
}

void PageScalingTest::tallPictureIsWhole()
{
    const int height = 150'000;
    const QImage scaled = scaleToWidth(numbered(41, height), 37);
    QCOMPARE(scaled.size(), sizeAtWidth(QSize(41, height), 37));
    for (int y = 0; y < scaled.height(); ++y) {
        const int row = static_cast<int>(scaled.pixel(7, y) >> 12 & 0xfff);
        const int expected = (2 * y + 1) * 41 / 74;
        const int apart = (row - expected % 4096 + 4096) % 4096;
        QVERIFY2(apart <= 0 || apart == 4095, qPrintable(QStringLiteral("row %1: %2").arg(y).arg(apart)));
    }
}

void PageScalingTest::refusals()
{
    QVERIFY(scaleToWidth(QImage(), 384).isNull());
    QVERIFY(scaleToWidth(numbered(8, 8), 0).isNull());
    QVERIFY(scaleToWidth(numbered(8, 8), -5).isNull());
    QVERIFY(scaleToWidth(numbered(4000, 1), 384).isNull());
    const auto nothing = [](int, int, int&) {
        return QImage();
    };
    QVERIFY(scaleInStrips(QSize(10, 10), 20, 4, nothing).isNull());
}

QTEST_APPLESS_MAIN(PageScalingTest)
#include "tst_page_scaling.moc"
