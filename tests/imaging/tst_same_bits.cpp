#include "imaging/adaptive_binarize.h"
#include "imaging/binarize.h"
#include "imaging/conversion.h"
#include "imaging/floyd_steinberg.h"
#include "imaging/halftone.h"
#include "imaging/isolated_dots.h"
#include "imaging/sharpen.h"
#include "imaging/stucki.h"
#include "imaging/thresholds.h"
#include "imaging/white_areas.h"
#include "tests/imaging/pictures.h"

#include <QtTest>

#include <climits>
#include <random>

namespace {

/// The engine's own numbers alone: the library's distributions differ between the libraries. One draw a statement, for
/// the order in which arguments are worked out differs too.
struct Random
{
    std::mt19937 engine{20260316};

    int below(int end) { return static_cast<int>(engine() % static_cast<std::uint32_t>(end)); }
    int between(int first, int last) { return first + below(last - first + 1); }
};

/// Around the blocks of 16 that the fast loops work in, and the narrowest wave of rows; and both print heads.
constexpr int kWidths[] = {17, 18, 33, 240, 256, 272, 384, 576};

struct Digest ///< FNV-1a
{
    std::uint64_t value = 14695981039346656037u;

    void add(std::uint8_t byte) { value = (value ^ byte) * 1099511628211u; }
    void add(const Bytes& bytes)
    {
        std::for_each(bytes.begin(), bytes.end(), [this](auto byte) { add(byte); });
    }
    void addNumber(std::int32_t number)
    {
        for (int bit = 0; bit < 32; bit += 8)
            add(static_cast<std::uint8_t>(static_cast<std::uint32_t>(number) >> bit));
    }
    QByteArray hex() const { return QByteArray::number(qulonglong{value}, 16); }
    std::int32_t low() const { return static_cast<std::int32_t>(value & 0x7fffffff); }
};

/// The four thresholds of some histograms, of pages of any height: sums wrap, and single precision rounds.
std::int32_t thresholds(int seed)
{
    Random random{std::mt19937{static_cast<std::uint32_t>(seed)}};
    Digest digest;
    for (int i = 0; i < 8; ++i) {
        imaging::Histogram counts{};
        const int used = random.between(0, 256);
        const int scale = random.between(9, 31); // no page has 2^31 dots
        for (int n = 0; n < used; ++n) {
            const int level = random.below(256);
            counts[static_cast<std::size_t>(level)] = static_cast<std::uint32_t>(random.engine() >> scale);
        }
        for (const auto& threshold : {imaging::otsuThreshold, imaging::yenThreshold,
                                      imaging::minimumCrossEntropyThreshold, imaging::meanThreshold})
            digest.addNumber(threshold(counts));
    }
    return digest.low();
}

/// Some curves, through points within the grey levels and beyond; every eighth as far beyond as numbers go.
std::int32_t curves(int seed)
{
    Random random{std::mt19937{static_cast<std::uint32_t>(seed)}};
    Digest digest;
    for (int i = 0; i < 32; ++i) {
        std::vector<ToneCurvePoint> points(static_cast<std::size_t>(random.between(2, 8)));
        int x = random.between(-5, 20);
        for (auto& point : points) {
            point.x = x;
            point.y = random.between(-20, 280);
            x += random.between(1, 70);
        }
        if (i % 8 == 0) {
            points.front() = {INT_MIN, random.between(INT_MIN + 1, -1)};
            points.back() = {INT_MAX, random.between(0, INT_MAX - 1)};
        }
        Bytes table(64 + 256 + 64, 77); // between guards
        digest.addNumber(buildToneCurve(table.data() + 64, points.data(), static_cast<std::int32_t>(points.size())));
        digest.add(table);
    }
    return digest.low();
}

constexpr int kKinds = 20;
constexpr int kPictureKinds = 18; ///< those that look at the picture

/// One of the operations, of so many kinds, with its parameters.
Operation drawOperation(Random& random, int kinds)
{
    static const Operation plain[] = {imageToGray,      isMostlyDark,      sharpenImage,
                                      adaptiveBinarize, stuckiDiffuse,     imaging::floydSteinbergDiffuse,
                                      markWhiteAreas,   removeIsolatedDots};
    const int n = random.below(kinds);
    const int a = random.between(-120, 120);
    const int b = random.between(-120, 120);
    if (n < 8)
        return plain[n];
    if (n < 12)
        return [=](auto* i) { return binarizeImage(i, (a + 120) % 14 - 1); };
    if (n < 16)
        return [=](auto* i) { return halftoneImage(i, a, b, (a + 120) % 4, (b + 120) % 5); };
    const int scale = n == 17 && b % 4 == 0 ? 1 << 23 : 1; // as far as numbers go
    if (n < kPictureKinds)
        return [=](auto* i) { return adjustBrightnessContrast(i, a * scale, b * scale); };
    const int seed = random.below(1 << 30);
    return [=](auto*) { return n == 18 ? thresholds(seed) : curves(seed); };
}

/// Noise, or few levels, or a ramp; or paper whose share of some bright level is about what decides on a tone.
Bytes drawPixels(Random& random, int count, int bytesPerPixel)
{
    constexpr int kBright[] = {225, 226, 238, 239, 252, 253, 254, 255};
    const bool isPaper = random.below(4) == 0;
    const int bright = kBright[random.below(8)];
    const int percent = random.between(35, 55);
    const int lowest = random.below(256);
    const int levels = 1 << random.below(9);
    const int slope = random.below(3);
    Bytes pixels(static_cast<std::size_t>(count * bytesPerPixel));
    int level = 0;
    for (int i = 0; i < count * bytesPerPixel; ++i) {
        if (!isPaper)
            level = lowest + random.below(levels) + slope * i * 256 / count;
        else if (i % bytesPerPixel == 0)
            level = random.below(100) < percent ? bright : lowest;
        pixels[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(level);
    }
    return pixels;
}

/// Black dots, from every second one to few, so that there are white areas.
Bytes drawDots(Random& random, int count)
{
    const int share = 2 << random.below(7);
    Bytes dots(static_cast<std::size_t>(count));
    std::generate(dots.begin(), dots.end(), [&] { return random.below(share) == 0 ? 0 : 255; });
    return dots;
}

} // namespace

class SameBitsTest : public QObject
{
    Q_OBJECT

private slots:
    /// Every compiler, processor and C library has to print the same page. The digest is what the plain
    /// loops of an earlier version gave.
    void everyBuildGivesTheSame()
    {
        Random random;
        Digest digest;
        for (int call = 0; call < 10000; ++call) {
            const Operation operation = drawOperation(random, kKinds);
            const int wide = kWidths[random.below(8)];
            const bool isWide = call % 16 == 0;
            const int width = isWide ? wide : random.between(1, 80);
            const int height = random.between(1, isWide ? 100 : 35);
            const int format = random.below(7);
            const int channels = random.between(0, kBytesPerPixel[format]);
            const Bytes pixels = format == FormatBinary ? drawDots(random, width * height)
                                                        : drawPixels(random, width * height, kBytesPerPixel[format]);
            const Outcome end = run(operation, pixels, width, height, format, channels);
            QVERIFY(!end.bytes.empty());
            for (const auto number : {end.result, end.record.width, end.record.height, end.record.channels})
                digest.addNumber(number);
            digest.addNumber(end.record.format);
            digest.add(end.bytes);
        }
        QCOMPARE(digest.hex(), QByteArray("4c1fca477d01c410"));
    }

    /// Refused, but by operations that leave the format alone; what is empty is done, but by the adaptive method.
    void badRecordsTouchNothing()
    {
        // Empty; from 32768 on: four bytes a pixel leave 31 bits, the product is 2^32, working rows of 16 bytes a
        // column leave 31 bits, the longest sides.
        const QSize sizes[] = {{0, INT_MAX},   {INT_MAX, 0},   {5, 0},
                               {-3, 5},        {5, -3},        {INT_MIN, INT_MIN},
                               {32768, 16384}, {65536, 65536}, {(1 << 27) - 4, 1},
                               {1 << 28, 1},   {INT_MAX, 1},   {1, INT_MAX}};
        const Bytes bytes(64, 3);
        Random random;
        Digest results;
        for (int call = 0; call < 500; ++call) {
            const Operation operation = drawOperation(random, kPictureKinds);
            QCOMPARE(operation(nullptr), 0);
            for (int format = 0; format < 7; ++format) {
                ImageBuffer noData{nullptr, 8, 8, 1, format};
                QCOMPARE(operation(&noData), 0);
                for (const QSize size : sizes) {
                    const Outcome end = run(operation, bytes, size.width(), size.height(), format, 1);
                    QVERIFY(end.bytes == bytes);
                    results.addNumber(end.result);
                }
            }
        }
        QCOMPARE(results.hex(), QByteArray("c0a5304ed815c5"));
    }
};

QTEST_APPLESS_MAIN(SameBitsTest)
#include "tst_same_bits.moc"
