#include "imaging/histogram.h"

#include "imaging/white_block.h"
#include "imaging/wrap_arithmetic.h"

#include <cstring>

namespace imaging {

namespace {

/// Neighbouring pixels are mostly alike, and each increment of a bin waits for the last one: so neighbours count in
/// tables of their own.
struct Banks
{
    std::array<Histogram, 8> counts{};

    void addFour(const std::uint8_t* bytes, std::size_t bank)
    {
        std::uint32_t four = 0;
        std::memcpy(&four, bytes, sizeof four);
        ++counts[bank][four & 0xFF];
        ++counts[bank + 1][four >> 8 & 0xFF];
        ++counts[bank + 2][four >> 16 & 0xFF];
        ++counts[bank + 3][four >> 24];
    }

    Histogram sum() const
    {
        Histogram total{};
        for (const Histogram& bank : counts) {
            for (std::size_t level = 0; level < total.size(); ++level)
                total[level] += bank[level];
        }
        return total;
    }
};

} // namespace

// Most of a page of text is white paper, which is counted by blocks.
Histogram buildHistogram(const std::uint8_t* bytes, std::size_t count)
{
    Banks banks;
    std::size_t i = 0;
    for (; i + kWhiteBlock <= count; i += kWhiteBlock) {
        if (isWhiteBlock(bytes + i)) {
            banks.counts[0][255] += kWhiteBlock;
            continue;
        }
        banks.addFour(bytes + i, 0);
        banks.addFour(bytes + i + 4, 4);
        banks.addFour(bytes + i + 8, 0);
        banks.addFour(bytes + i + 12, 4);
    }
    for (; i < count; ++i)
        ++banks.counts[0][bytes[i]];
    return banks.sum();
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
