#include "imaging/floyd_steinberg.h"
#include "imaging/halftone.h"
#include "imaging/isolated_dots.h"
#include "imaging/sharpen.h"
#include "imaging/stucki.h"
#include "imaging/tone_curve.h"
#include "imaging/white_areas.h"
#include "tests/imaging/pictures.h"

#include <QtTest>

Q_DECLARE_METATYPE(Bytes)

static QByteArray blank(int width, int height)
{
    return (QByteArray(width, '.') + ' ').repeated(height);
}

/// 20 × 20 pixels of the given levels, so many in a hundred of each; 40 leave room for white areas.
static Bytes shades(std::initializer_list<std::pair<int, int>> percentAndLevel)
{
    Bytes gray;
    for (const auto& [percent, level] : percentAndLevel)
        gray.insert(gray.end(), static_cast<std::size_t>(4 * percent), static_cast<std::uint8_t>(level));
    return gray;
}

static Bytes halftoned(const Bytes& gray, int polarity, int mode)
{
    return run([=](auto* i) { return halftoneImage(i, 0, 255, polarity, mode); }, gray, 20, 20, FormatGray8, 7).bytes;
}

class DotsTest : public QObject
{
    Q_OBJECT

private slots:
    void drawn_data()
    {
        QTest::addColumn<Bytes>("found");
        QTest::addColumn<Bytes>("expected");
        const auto row = [](const char* name, const Operation& operation, QByteArray before, QByteArray dots) {
            const Bytes pixels = picture(before);
            const int height = dots.trimmed().count(' ') + 1;
            const int format = before.contains('.') ? FormatBinary : FormatGray8;
            QTest::newRow(name) << after(operation, pixels, static_cast<int>(pixels.size()) / height, height, format)
                                << picture(dots);
        };
        row("a falling diagonal unravels", removeIsolatedDots, "..... .#... ..#.. ...#. .....", blank(5, 5));
        row("one square alone", markWhiteAreas, blank(7, 7), blank(7, 3) + "...#... " + blank(7, 3));
        row("the first of four", markWhiteAreas, blank(8, 8), blank(8, 3) + "...#.... " + blank(8, 4));
        row("151 - 23, truncated from 1000/42", stuckiDiffuse, "8297", "..");
        // 112 hands 49 to its right, 35 down and 7 ahead of that; the 49 hands 15 down and 9 behind. The second row
        // runs leftwards: 106 + 7 + 15 is just white, its error of −127 takes 55 from the last pixel with 35 + 9.
        row("the other kernel, 139", imaging::floydSteinbergDiffuse, "7000 8b6a", "## ..");
        row("the other kernel, 138", imaging::floydSteinbergDiffuse, "7000 8a6a", "## #.");
        // 262.5, which is white, and 249.5
        row("sharpened", sharpenImage, "fafafafafa fafafafafa fafafefafa fafafafafa fafafafafa",
            "fafafafafa faf9f9f9fa faf9fff9fa faf9f9f9fa fafafafafa");
        row("sharpened, (12 - 2 + 2) / 4", sharpenImage, "020000 000100 000000", "020000 000300 000000");
        row("too small to sharpen", sharpenImage, "0000 0000", "");
        row("sharpened beyond black", sharpenImage, "030000 000000 000000", "030000 000000 000000");
    }

    void drawn()
    {
        QFETCH(Bytes, found);
        QTEST(found, "expected");
    }

    void polarities()
    {
        const Bytes gray = shades({{41, 255}, {59, 90}});
        for (const int mode : {0, 3}) {
            const Bytes dots = after(mode == 0 ? stuckiDiffuse : imaging::floydSteinbergDiffuse, gray, 20, 20);
            QCOMPARE(halftoned(gray, 5, mode), dots);
            QCOMPARE(halftoned(gray, 1, mode), after(markWhiteAreas, dots, 20, 20, FormatBinary));
        }
        // Polarity 2 is 1 for a dark picture. In mode 2, 239 becomes 212, which would be dark.
        for (const auto& [picture, mode, same] : {std::tuple(shades({{40, 255}, {60, 225}}), 0, 1),
                                                  {shades({{40, 255}, {1, 226}, {59, 0}}), 0, 0},
                                                  {shades({{40, 255}, {60, 239}}), 2, 0}})
            QCOMPARE(halftoned(picture, 2, mode), halftoned(picture, same, mode));
    }

    void tones()
    {
        // Dark when less than half is bright and less than 40 in a hundred are very bright.
        for (const auto& [gray, brightness, contrast] : {std::tuple(shades({{49, 239}, {51, 238}}), 50, -50),
                                                         {shades({{10, 252}, {39, 253}, {51, 100}}), 50, -50},
                                                         {shades({{11, 239}, {39, 253}, {50, 100}}), -50, 0},
                                                         {shades({{40, 253}, {60, 100}}), -50, 0}})
            QCOMPARE(halftoned(gray, 0, 2), after(stuckiDiffuse, toned(gray, brightness, contrast), 20, 20));
        // 100..160 spreads over 0..255, 130 to 127.5; one pixel in a hundred at either end does not count.
        const Bytes gray = shades({{1, 3}, {30, 100}, {38, 130}, {30, 160}, {1, 250}});
        QCOMPARE(halftoned(gray, 0, 1), after(stuckiDiffuse, shades({{31, 0}, {38, 128}, {31, 255}}), 20, 20));
        QCOMPARE(halftoned(shades({{100, 200}}), 0, 1), after(stuckiDiffuse, shades({{100, 200}}), 20, 20));
    }
};

QTEST_APPLESS_MAIN(DotsTest)
#include "tst_dots.moc"
