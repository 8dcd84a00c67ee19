#include "imaging/thresholds.h"

#include "imaging/wrap_arithmetic.h"

#include <algorithm>
#include <cmath>

namespace imaging {
namespace {

using Levels = std::array<float, 256>;

struct YenSums
{
    Levels below{};        ///< P: share of the pixels up to a level
    Levels squaresUpTo{};  ///< G: squared shares up to a level
    Levels squaresAbove{}; ///< H: squared shares strictly above a level
};

// The order of the additions is part of the result: single precision does not forgive another one.
YenSums yenSums(const Histogram& histogram, float total)
{
    YenSums sums;
    Levels share;
    for (std::size_t i = 0; i < 256; ++i)
        share[i] = static_cast<float>(histogram[i]) / total;
    sums.below[0] = share[0];
    sums.squaresUpTo[0] = share[0] * share[0];
    for (std::size_t i = 1; i < 256; ++i) {
        sums.below[i] = sums.below[i - 1] + share[i];
        sums.squaresUpTo[i] = sums.squaresUpTo[i - 1] + share[i] * share[i];
    }
    for (std::size_t i = 255; i > 0; --i)
        sums.squaresAbove[i - 1] = sums.squaresAbove[i] + share[i] * share[i];
    return sums;
}

struct UsedLevels
{
    int low = 0; ///< lowest used level above 0; pure black does not count
    int end = 0; ///< one past the highest used level
};

UsedLevels usedLevels(const Histogram& histogram)
{
    UsedLevels used;
    for (int level = 255; level >= 0; --level) {
        if (histogram[static_cast<std::size_t>(level)] == 0)
            continue;
        if (used.end == 0)
            used.end = level + 1;
        if (level > 0)
            used.low = level;
    }
    return used;
}

// Mean of the levels first..last in thousandths, 0 when the range is empty or unused.
std::int32_t milliMean(const Histogram& histogram, int first, int last)
{
    const std::int32_t count = binSum(histogram, first, last);
    if (count == 0)
        return 0;
    const float mean = static_cast<float>(weightedBinSum(histogram, first, last)) / static_cast<float>(count);
    return truncToInt32(1000.0f * mean);
}

// The next level from the two means in thousandths; a value that is not finite counts as 0.
std::int32_t crossEntropyLevel(std::int32_t lowerMean, std::int32_t upperMean)
{
    const double logarithms = std::log(lowerMean / 1000.0) - std::log(upperMean / 1000.0);
    const double value = (static_cast<double>(lowerMean) - static_cast<double>(upperMean)) / logarithms;
    const std::int32_t milli = std::isfinite(value) ? truncToInt32(value) : 0;
    const double level = static_cast<float>(milli) / 1000.0f;
    return truncToInt32(level >= -2.220446e-16 ? level + 0.5 : level - 0.5);
}

} // namespace

std::int32_t otsuThreshold(const Histogram& histogram)
{
    const std::int32_t total = binSum(histogram, 0, 255);
    if (total == 0)
        return 0;
    const double totalWeighted = weightedBinSum(histogram, 0, 255);
    std::uint32_t below = histogram[0];
    std::uint32_t weightedBelow = 0;
    double best = 0.0;
    std::int32_t threshold = 0;
    for (std::int32_t t = 1; t <= 254; ++t) {
        below += histogram[static_cast<std::size_t>(t)];
        weightedBelow += static_cast<std::uint32_t>(t) * histogram[static_cast<std::size_t>(t)];
        const double w = wrapToInt32(below);
        const double product = w * wrapSub(total, wrapToInt32(below));
        const double spread = w / total * totalWeighted - wrapToInt32(weightedBelow);
        const double score = product != 0.0 ? spread * spread / product : 0.0;
        if (score >= best) {
            best = score;
            threshold = t;
        }
    }
    return threshold;
}

std::int32_t yenThreshold(const Histogram& histogram)
{
    const std::int32_t total = binSum(histogram, 0, 255);
    if (total == 0)
        return 0;
    const YenSums sums = yenSums(histogram, static_cast<float>(total));
    float best = -2147483648.0f;
    std::int32_t threshold = -1;
    for (std::size_t t = 0; t < 256; ++t) {
        const double a = double{sums.squaresUpTo[t]} * double{sums.squaresAbove[t]};
        const float b = sums.below[t] * (1.0f - sums.below[t]);
        const double first = a > 0.0 ? -std::log(a) : 0.0;
        const double second = b > 0.0f ? 2.0 * std::log(double{b}) : 0.0;
        const float score = static_cast<float>(first + second);
        if (score > best) {
            best = score;
            threshold = static_cast<std::int32_t>(t);
        }
    }
    return threshold;
}

std::int32_t minimumCrossEntropyThreshold(const Histogram& histogram)
{
    const UsedLevels used = usedLevels(histogram);
    const std::int32_t total = binSum(histogram, 0, 255);
    if (total == 0)
        return 0;
    std::array<bool, 256> seen{};
    // No level where the sum has wrapped.
    const double mean = static_cast<double>(weightedBinSum(histogram, 0, 255)) / total;
    std::int32_t level = std::clamp(truncToInt32(mean), 0, 255);
    for (;;) {
        seen[static_cast<std::size_t>(level)] = true;
        const std::int32_t lower = level >= used.low ? milliMean(histogram, used.low, level) : 0;
        const std::int32_t upper = level + 1 < used.end ? milliMean(histogram, level + 1, used.end - 1) : 0;
        const std::int32_t next = crossEntropyLevel(lower, upper);
        if (next < 0 || next > 255 || seen[static_cast<std::size_t>(next)])
            return level;
        level = next;
    }
}

std::int32_t meanThreshold(const Histogram& histogram)
{
    const std::int32_t total = binSum(histogram, 0, 255);
    return total == 0 ? 0 : wrapDiv(weightedBinSum(histogram, 0, 255), total);
}

} // namespace imaging
