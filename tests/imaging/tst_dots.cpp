#include "imaging/adaptive_binarize.h"
#include "imaging/binarize.h"
#include "imaging/conversion.h"
#include "imaging/floyd_steinberg.h"
#include "imaging/halftone.h"
#include "imaging/isolated_dots.h"
#include "imaging/sharpen.h"
#include "imaging/stucki.h"
#include "imaging/tone_curve.h"
#include "imaging/white_areas.h"
#include "tests/imaging/plain_versions.h"

#include <QtTest>

#include <climits>

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

struct Entry
{
    const char* name;
    Operation operation;
    bool convertsFirst = true; ///< does to a colour picture what it does to the grey one
    bool changesBinary = false;
    int whenIdle = 1; ///< result for a format that it leaves alone
};

static std::vector<Entry> entries()
{
    std::vector<Entry> all = {{"gray", imageToGray},
                              {"dark", isMostlyDark, true, false, 0},
                              {"sharpen", sharpenImage},
                              {"adaptive", adaptiveBinarize},
                              {"Stucki", stuckiDiffuse},
                              {"Floyd-Steinberg", imaging::floydSteinbergDiffuse},
                              {"white areas", markWhiteAreas, false, true, 0},
                              {"isolated dots", removeIsolatedDots, false, true, 0}};
    const auto add = [&](const char* name, bool convertsFirst, const Operation& operation) {
        all.push_back({name, operation, convertsFirst});
    };
    for (const int n : {INT_MIN, -1000000, -50, 0, 1, 2, 3, 4, 6, 10, INT_MAX}) {
        add("binarize", true, [=](auto* i) { return binarizeImage(i, n); });
        add("halftone", true, [=](auto* i) { return halftoneImage(i, n, n, n & 3, n); });
        add("tone", false, [=](auto* i) { return adjustBrightnessContrast(i, n, -1 - n); });
    }
    return all;
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

    void sameAsPlain()
    {
        for (const int w : kSampleWidths) {
            for (const int h : {1, 2, 3, 5, 18}) {
                const Bytes gray = randomBytes(w * h, w * 32 + h);
                Bytes edges = gray; // long runs of the largest errors of either sign
                std::for_each(edges.begin(), edges.end(),
                              [](auto& p) { p = static_cast<std::uint8_t>(127 + p % 2); });
                for (const Bytes& p : {gray, edges})
                    QCOMPARE(after(stuckiDiffuse, p, w, h), plain::stucki(p, w));
                for (const int share : {2, 5, 80}) { // one of so many is black
                    Bytes dots = gray;
                    std::for_each(dots.begin(), dots.end(), [=](auto& p) { p = p % share == 0 ? 0 : 255; });
                    QCOMPARE(after(removeIsolatedDots, dots, w, h, 3), plain::withoutIsolatedDots(dots, w, h));
                    QCOMPARE(after(markWhiteAreas, dots, w, h, 3), plain::withMarkedWhite(dots, w, h));
                }
            }
        }
    }

    void polarities()
    {
        const Bytes gray = shades({{41, 255}, {59, 90}});
        for (const int mode : {0, 3}) {
            const Bytes dots = after(mode == 0 ? stuckiDiffuse : imaging::floydSteinbergDiffuse, gray, 20, 20);
            QCOMPARE(halftoned(gray, 5, mode), dots);
            QCOMPARE(halftoned(gray, 1, mode), plain::withMarkedWhite(dots, 20, 20));
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
            QCOMPARE(halftoned(gray, 0, 2), plain::stucki(toned(gray, brightness, contrast), 20));
        // 100..160 spreads over 0..255, 130 to 127.5; one pixel in a hundred at either end does not count.
        const Bytes gray = shades({{1, 3}, {30, 100}, {38, 130}, {30, 160}, {1, 250}});
        QCOMPARE(halftoned(gray, 0, 1), plain::stucki(shades({{31, 0}, {38, 128}, {31, 255}}), 20));
        QCOMPARE(halftoned(shades({{100, 200}}), 0, 1), plain::stucki(shades({{100, 200}}), 20));
    }

    void badRecordsTouchNothing()
    {
        // Empty; from 32768 on: four bytes a pixel leave 31 bits, the product is 2^32, working rows of 16 bytes a
        // column leave 31 bits, the longest sides.
        const QSize sizes[] = {{0, INT_MAX},   {INT_MAX, 0},   {5, 0},
                               {-3, 5},        {5, -3},        {INT_MIN, INT_MIN},
                               {32768, 16384}, {65536, 65536}, {(1 << 27) - 4, 1},
                               {1 << 28, 1},   {INT_MAX, 1},   {1, INT_MAX}};
        const Bytes bytes = randomBytes(64, 3);
        for (const auto& entry : entries()) {
            QVERIFY2(entry.operation(nullptr) == 0, entry.name);
            for (int format = 0; format <= 6; ++format) {
                ImageBuffer noData{nullptr, 8, 8, 1, format};
                QVERIFY2(entry.operation(&noData) == 0, entry.name);
                const bool isConverted = format % 4 < 2 || qstrcmp(entry.name, "gray") != 0;
                const bool mayRefuse = format == FormatBinary ? entry.changesBinary : isConverted;
                const int whenEmpty = run(entry.operation, bytes, 0, 0, format, 1).result;
                for (const QSize size : sizes) {
                    const Outcome end = run(entry.operation, bytes, size.width(), size.height(), format, 1);
                    QVERIFY2(end.bytes == bytes, entry.name);
                    QVERIFY2(size.isEmpty() ? end.result == whenEmpty : end.result == 0 || !mayRefuse, entry.name);
                }
            }
        }
    }

    void anyPictureStaysInItsBuffer()
    {
        for (int round = 0; round < 7 * 40; ++round) {
            const int format = round % 7;
            const int width = 1 + round * 37 % (round % 2 ? 70 : 8);
            const int height = 1 + round * 23 % (round % 3 ? 40 : 8);
            const Bytes bytes = randomBytes(width * height * kBytesPerPixel[format], round);
            const Outcome gray = run(imageToGray, bytes, width, height, format, 1);
            for (const auto& entry : entries()) {
                const Outcome end = run(entry.operation, bytes, width, height, format, kBytesPerPixel[format]);
                const bool isIdle = (format == FormatBinary) != entry.changesBinary;
                QVERIFY2(isIdle ? end.bytes == bytes && end.result == entry.whenIdle : !end.bytes.empty(),
                         entry.name);
                const Outcome same = run(entry.operation, gray.bytes, width, height, gray.record.format, 0);
                QVERIFY2(!entry.convertsFirst || (same.result == end.result && same.bytes == end.bytes), entry.name);
            }
        }
    }
};

QTEST_APPLESS_MAIN(DotsTest)
#include "tst_dots.moc"
