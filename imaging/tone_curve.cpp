#include "imaging/tone_curve.h"

#include "imaging/picture_checks.h"
#include "imaging/white_block.h"
#include "imaging/wrap_arithmetic.h"

#include <algorithm>
#include <cstring>

using imaging::ToneTable;
using imaging::truncToInt32;
using imaging::wrapAdd;
using imaging::wrapDiv;
using imaging::wrapMul;
using imaging::wrapSub;

namespace {

constexpr std::int32_t kMaxPoints = 256;

using Numbers = std::array<std::int32_t, kMaxPoints>;

struct Intervals
{
    Numbers h{}; ///< widths
    Numbers d{}; ///< rises
    std::size_t count = 0;
};

bool measureIntervals(const ToneCurvePoint* points, std::int32_t count, Intervals* out)
{
    out->count = static_cast<std::size_t>(count - 1);
    for (std::size_t i = 0; i < out->count; ++i) {
        out->h[i] = wrapSub(points[i + 1].x, points[i].x);
        out->d[i] = wrapSub(points[i + 1].y, points[i].y);
        if (out->h[i] == 0)
            return false;
    }
    return true;
}

// Second derivatives in thousandths, in `m`. The end rows (diagonal 1, right-hand side 0) come out as super-diagonal
// 0 and right-hand side 0, which is what the arrays start with, so only inner rows are computed.
bool solveSecondDerivatives(const Intervals& in, Numbers* m)
{
    Numbers super{};
    Numbers& rhs = *m;
    for (std::size_t i = 1; i < in.count; ++i) {
        const std::int32_t before = in.h[i - 1];
        const std::int32_t diagonal = wrapMul(2, wrapAdd(before, in.h[i]));
        const std::int32_t pivot = wrapSub(diagonal, wrapMul(before, super[i - 1]));
        if (pivot == 0)
            return false;
        const std::int32_t f = 1000 / pivot;
        const std::int32_t slopes =
            wrapSub(wrapDiv(wrapMul(6000, in.d[i]), in.h[i]), wrapDiv(wrapMul(6000, in.d[i - 1]), before));
        super[i] = wrapMul(in.h[i], f);
        rhs[i] = wrapMul(wrapSub(slopes, wrapMul(before, rhs[i - 1])), f) / 1000;
    }
    for (std::size_t i = in.count; i-- > 1;)
        rhs[i] = wrapSub(rhs[i], wrapMul(super[i], rhs[i + 1]) / 1000);
    return true;
}

// The linear and the cubic coefficient are single precision, everything else is double.
struct Cubic
{
    double constant;
    float linear;
    double square;
    float cube;

    std::uint8_t at(double t) const
    {
        const double y = constant + double{linear} * t + square * (t * t) + double{cube} * (t * t * t);
        return static_cast<std::uint8_t>(std::clamp(truncToInt32(y), 0, 255));
    }
};

Cubic cubicOf(std::int32_t y, std::int32_t width, std::int32_t rise, std::int32_t m0, std::int32_t m1)
{
    const double h = width;
    const double bend = static_cast<double>(m1) - static_cast<double>(m0);
    Cubic cubic;
    cubic.constant = y;
    cubic.linear = static_cast<float>(rise / h - h * m0 / 2000.0 - h * bend / 6000.0);
    cubic.square = m0 / 2000.0;
    cubic.cube = static_cast<float>(bend / (6000.0 * h));
    return cubic;
}

ToneTable identityTable()
{
    ToneTable table;
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<std::uint8_t>(i);
    return table;
}

template <std::size_t Count>
ToneTable curveThrough(const std::array<ToneCurvePoint, Count>& points)
{
    ToneTable table = identityTable();
    buildToneCurve(table.data(), points.data(), static_cast<std::int32_t>(Count));
    return table;
}

std::int32_t parabola(double a, double b, double c, double level)
{
    return truncToInt32(a * (level * level) + b * level + c);
}

// The coefficients were fitted to the paper of this printer: they are the curve's definition.
ToneTable brightnessTable(std::int32_t level)
{
    if (level > 0)
        return curveThrough<5>({{{0, 0},
                                 {85, parabola(0.0013, 0.6019, 83.94, level)},
                                 {128, parabola(-0.0013, 0.9688, 126.49, level)},
                                 {170, parabola(-0.0027, 0.9322, 172.17, level)},
                                 {255, 255}}});
    if (level < 0)
        return curveThrough<6>({{{0, 0},
                                 {128, parabola(0.0016, 0.7613, 127.5, level)},
                                 {192, parabola(0.0011, 0.9072, 190.12, level)},
                                 {223, parabola(-0.0005, 0.7207, 220.76, level)},
                                 {247, parabola(-0.0032, 0.1726, 244.47, level)},
                                 {255, 255}}});
    return identityTable();
}

ToneTable contrastTable(std::int32_t level)
{
    if (level == 0)
        return identityTable();
    const std::int32_t k = truncToInt32((level + 2.5) / 5.0);
    return curveThrough<5>({{{0, 0}, {85, 85 - k}, {128, 128}, {170, 170 + k}, {255, 255}}});
}

// A word that every machine has: one load and one store for four look-ups.
void mapFour(std::uint8_t* bytes, const ToneTable& table)
{
    const auto at = [&table](std::uint32_t level) { return std::uint32_t{table[level & 0xFF]}; };
    std::uint32_t four = 0;
    std::memcpy(&four, bytes, sizeof four);
    four = at(four) | at(four >> 8) << 8 | at(four >> 16) << 16 | at(four >> 24) << 24;
    std::memcpy(bytes, &four, sizeof four);
}

} // namespace

std::int32_t buildToneCurve(std::uint8_t* table, const ToneCurvePoint* points, std::int32_t count)
{
    Intervals in;
    Numbers m{};
    if (!table || !points || count < 2 || count > kMaxPoints)
        return imaging::kRefused;
    if (!measureIntervals(points, count, &in) || !solveSecondDerivatives(in, &m))
        return imaging::kRefused;

    for (std::size_t i = 0; i < in.count; ++i) {
        const Cubic cubic = cubicOf(points[i].y, in.h[i], in.d[i], m[i], m[i + 1]);
        const std::int32_t end = std::min(points[i + 1].x, 256);
        for (std::int32_t x = std::max(points[i].x, 0); x < end; ++x)
            table[x] = cubic.at(static_cast<double>(x) - points[i].x);
    }
    table[255] = 255;
    return imaging::kDone;
}

void imaging::mapBytes(std::uint8_t* bytes, std::size_t count, const ToneTable& table)
{
    std::size_t i = 0;
    for (; i + kWhiteBlock <= count; i += kWhiteBlock) {
        if (isWhiteBlock(bytes + i))
            continue;
        for (std::size_t k = 0; k < kWhiteBlock; k += 4)
            mapFour(bytes + i + k, table);
    }
    for (; i < count; ++i)
        bytes[i] = table[bytes[i]];
}

std::int32_t adjustBrightnessContrast(ImageBuffer* image, std::int32_t brightness, std::int32_t contrast)
{
    if (imaging::isNull(image) || imaging::isTooLarge(*image))
        return imaging::kRefused;
    const std::int64_t bytes = imaging::pixelCount(*image) * image->channels;
    if (bytes > std::numeric_limits<std::int32_t>::max())
        return imaging::kRefused;
    if (bytes <= 0 || image->format == FormatBinary)
        return imaging::kDone;

    ToneTable both = brightnessTable(brightness);
    imaging::mapBytes(both.data(), both.size(), contrastTable(contrast));
    imaging::mapBytes(image->data, static_cast<std::size_t>(bytes), both);
    return imaging::kDone;
}
