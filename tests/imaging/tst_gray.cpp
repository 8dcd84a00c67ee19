#include "imaging/adaptive_binarize.h"
#include "imaging/binarize.h"
#include "imaging/conversion.h"
#include "imaging/thresholds.h"
#include "tests/imaging/pictures.h"

#include <QtTest>

#include <climits>

using Levels = QVector<int>;

// Otsu, Yen, cross-entropy, mean.
static Levels thresholds(const std::function<int(int)>& countOf)
{
    imaging::Histogram h;
    for (int level = 0; level < 256; ++level)
        h[level] = static_cast<unsigned>(countOf(level));
    return {imaging::otsuThreshold(h), imaging::yenThreshold(h), imaging::minimumCrossEntropyThreshold(h),
            imaging::meanThreshold(h)};
}

static Bytes binarized(const Bytes& gray, int width, int method)
{
    return after([=](auto* i) { return binarizeImage(i, method); }, gray, width,
                 static_cast<int>(gray.size()) / width);
}

class GrayTest : public QObject
{
    Q_OBJECT

private slots:
    // The bytes behind the grey ones stay. The first are 23.5, 11.699, 20.499 and 29.07.
    void grayByHand()
    {
        QCOMPARE(after(imageToGray, picture("000b39 640001 000c2d ff0000"), 4, 1, FormatBgr24),
                 picture("180c141d 0001 000c2d ff0000"));
        QCOMPARE(after(imageToGray, picture("ffff00f8a1a2a3a4a5a6"), 5, 1, FormatRgb565),
                 picture("f95200f8a1a2a3a4a5a6"));
        QCOMPARE(after(imageToGray, picture("ff010203 00010204"), 2, 1, FormatXrgb32), picture("02020203 00010204"));
        QCOMPARE(after(imageToGray, picture("030405ff fffffe00"), 2, 1, FormatBgrx32), picture("04fe05ff fffffe00"));
        for (const int format : {2, 3, 6, 7, 8, -1, -4}) {
            const Outcome other = run(imageToGray, Bytes{1, 2, 3, 4}, 2, 1, format, 4);
            QVERIFY(other.result == 1 && other.record.format == format && other.record.channels == 1);
            QCOMPARE(other.bytes, (Bytes{1, 2, 3, 4}));
        }
    }

    // Worked out from the parabolas: 0.0013 · 2500 + 0.6019 · 50 + 83.94 = 117.285 and so on.
    void toneByHand()
    {
        QCOMPARE(toned({0, 128, 192, 223, 247, 255}, -50, 0), (Bytes{0, 93, 147, 183, 227, 255}));
        QCOMPARE(toned({20, 60, 100, 150, 235}, 50, -50), (Bytes{32, 92, 134, 184, 245}));
        QCOMPARE(toned(Bytes(13, 85), 50, 0, 3), picture("75757575 75757575 75757575 55")); // four pixels
    }

    // Slopes 2 and 0.5 over intervals of 8: right-hand side 3000 − 12000, pivot 32, f = 31, so M = −9000 · 31 / 1000
    // = −279 thousandths, and half-way through the first interval the curve is 0 + 2.372 · 4 − 0.279/48 · 64 = 9.116.
    void threePointsByHand()
    {
        Bytes table(256, 77);
        const ToneCurvePoint points[] = {{0, 0}, {8, 16}, {16, 20}};
        QCOMPARE(buildToneCurve(table.data(), points, 3), 1);
        // 16 + 1.244 · 4 − 0.1395 · 16 + 0.0058125 · 64 = 19.116; past the last interval only 255 is set
        QCOMPARE((Bytes{table[4], table[12], table[16], table[254], table[255]}), (Bytes{9, 19, 77, 77, 255}));
    }

    void refusedCurves()
    {
        std::vector<ToneCurvePoint> many(257);
        for (int i = 0; i < 257; ++i)
            many[i].x = 1000 * i;
        Bytes table(256, 77);
        // The last: f = 1000 / 4, so the super-diagonal is 250, and the next pivot is 2 · (1 + 124) − 1 · 250.
        for (const auto& points : {many,
                                   {{0, 0}},
                                   {{0, 0}, {0, 5}, {255, 255}},
                                   {{0, 0}, {100, 5}, {255, 200}, {255, 255}},
                                   {{0, 0}, {1, 9}, {2, 11}, {126, 200}}})
            QCOMPARE(buildToneCurve(table.data(), points.data(), static_cast<std::int32_t>(points.size())), 0);
        QVERIFY(buildToneCurve(table.data(), nullptr, 2) == 0 && buildToneCurve(nullptr, many.data(), 2) == 0);
        QCOMPARE(table, Bytes(256, 77));
    }

    // As a separate calculation outside this program gave them, single precision rounded step by step.
    void chosenHistograms()
    {
        const auto only = [](const QMap<int, int>& counts) {
            return thresholds([&](int level) { return counts.value(level); });
        };
        QCOMPARE(only({}), (Levels{0, 0, 0, 0}));
        QCOMPARE(only({{0, 100}}), (Levels{254, 0, 0, 0}));
        QCOMPARE(only({{100, 64}}), (Levels{254, 0, 0, 100}));
        QCOMPARE(only({{50, 10}, {200, 10}}), (Levels{199, 0, 108, 125}));
        QCOMPARE(only({{34, 2}, {35, 2}}).first(), 34); // no spread to spare
        QCOMPARE(only({{0, 10}, {40, 50}, {200, 40}}), (Levels{199, 0, 99, 100}));
        QCOMPARE(only({{20, 3}, {130, 4}, {240, 3}}), (Levels{129, 20, 148, 130})); // a tie, but for rounding
        QCOMPARE(thresholds([](int i) { return i * 7919 % 101; }), (Levels{126, 127, 103, 127}));
        // Single precision makes 29 lead to 30 and 30 to 29, for ever; the first starts from 36, the second from 30.
        QCOMPARE(only({{17, 20352530}, {30, 1}, {47, 38053204}}), (Levels{46, 17, 30, 36}));
        QCOMPARE(only({{17, 35287010}, {30, 1}, {47, 29597175}}), (Levels{46, 17, 29, 30}));
        // The sum of 2,550,000,000 reads as −1,744,967,296.
        QCOMPARE(only({{255, 10000000}}), (Levels{254, 0, 0, -174}));
        Bytes dots{0, 255};
        imaging::thresholdBytes(dots.data(), 2, -174); // at which nothing is black
        QCOMPARE(dots, (Bytes{255, 255}));
        // More pixels than any picture has: 2^32 + 1 read as one, whose mean is no level.
        QCOMPARE(only({{0, -9999999}, {200, 10000000}}).mid(2), (Levels{0, 2000000000}));
    }

    // Sharpening makes the middle row 50, 182, 103, 155 and 200.
    void methods()
    {
        const Bytes gray = picture("327e7fa0c8 327e7fa0c8 327e7fa0c8"); // three rows of 50, 126, 127, 160 and 200
        QCOMPARE(binarized(gray, 5, 1), picture("###.. ###.. ###.."));  // cross-entropy, 137
        QCOMPARE(binarized(gray, 5, 2), picture("#.... #.... #...."));  // Yen, 126
        QCOMPARE(binarized(gray, 5, 3), picture("#.... #.... #...."));  // Otsu, 125
        QCOMPARE(binarized(gray, 5, 4), picture("###.. ###.. ###.."));  // mean, 132
        QCOMPARE(binarized(gray, 5, 5), picture("##... ##... ##..."));  // fixed, 127
        QCOMPARE(binarized(gray, 5, INT_MIN), binarized(gray, 5, 5));
        QCOMPARE(binarized(gray, 5, 9), picture("#.... #.... #....")); // Otsu; 103 is below, but stands alone
        QCOMPARE(binarized(gray, 5, 11), picture("##... #.#.. ##..."));
        QCOMPARE(binarized(gray, 5, INT_MAX), binarized(gray, 5, 11));
        // Of one level: 1 and 2 find 0, hence 127; 4 finds the level itself, but for 0.
        for (const auto& [method, lowestWhite] : {std::pair(1, 127), {2, 127}, {3, 254}, {4, 1}}) {
            QCOMPARE(binarized(Bytes(20, static_cast<std::uint8_t>(lowestWhite)), 5, method), Bytes(20, 255));
            QCOMPARE(binarized(Bytes(20, static_cast<std::uint8_t>(lowestWhite - 1)), 5, method), Bytes(20, 0));
        }
        QCOMPARE(binarized(Bytes(20, 255), 5, 4), Bytes(20, 255));
    }

    // At least 5 cells of 4 × 3 pixels either way, and 100 in all.
    void adaptiveSizes()
    {
        for (const auto& [width, height, isDone] :
             {std::tuple(40, 30, 1), {20, 60, 1}, {80, 15, 1}, {39, 35, 0}, {19, 300, 0}, {400, 14, 0}})
            QCOMPARE(
                run(adaptiveBinarize, Bytes(static_cast<std::size_t>(width * height)), width, height, 2, 1).result,
                isDone);
    }

    // Paper from 60 in the shade to 240 in the light with strokes 50 darker: no single threshold shows every stroke.
    // A large black field must stay black inside, where it has no contrast of its own.
    void adaptiveFollowsTheLight()
    {
        Bytes gray;
        for (int i = 0; i < 199 * 92; ++i) {
            const int x = i % 199, y = i / 199;
            const bool stroke = y < 45 && x % 20 >= 10 && x % 20 < 18;
            const bool field = y >= 54 && x >= 100 && x < 160;
            gray.push_back(static_cast<std::uint8_t>(field ? 5 : 60 + x * 180 / 199 - (stroke ? 50 : 0)));
        }
        const Bytes dots = binarized(gray, 199, 0);
        for (int x = 20; x <= 180; x += 20) // the last stroke lies right of the last whole cell
            QVERIFY(dots[20 * 199 + x + 17] == 0 && dots[20 * 199 + x - 2] == 255);
        QCOMPARE(static_cast<int>(dots[72 * 199 + 130]), 0);
        QCOMPARE(std::count(dots.begin(), dots.end(), 0) + std::count(dots.begin(), dots.end(), 255), 199 * 92);
    }
};

QTEST_APPLESS_MAIN(GrayTest)
#include "tst_gray.moc"
