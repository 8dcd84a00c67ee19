#include "imaging/histogram.h"

#include "imaging/wrap_arithmetic.h"

namespace imaging {

// Four tables, because neighbouring pixels are mostly alike and each increment of a bin would wait for the last one.
Histogram buildHistogram(const std::uint8_t* bytes, std::size_t count)
{
    std::array<Histogram, 4> parts{};
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        ++parts[0][bytes[i]];
        ++parts[1][bytes[i + 1]];
        ++parts[2][bytes[i + 2]];
        ++parts[3][bytes[i + 3]];
    }
    for (; i < count; ++i)
        ++parts[0][bytes[i]];
    for (std::size_t level = 0; level < 256; ++level)
        parts[0][level] += parts[1][level] + parts[2][level] + parts[3][level];
    return parts[0];
}

std::int32_t binSum(const Histogram& histogram, int first, int last)
{
    std::uint32_t sum = 0;
    for (int level = first; level <= last; ++level)
        sum += histogram[static_cast<std::size_t>(level)];
    return wrapToInt32(sum);
}

std::int32_t weightedBinSum(const Histogram& histogram, int first, int last)
{
    std::uint32_t sum = 0;
    for (int level = first; level <= last; ++level)
        sum += static_cast<std::uint32_t>(level) * histogram[static_cast<std::size_t>(level)];
    return wrapToInt32(sum);
}

} // namespace imaging
