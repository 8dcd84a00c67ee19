#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace imaging {

/// Counts of the 256 grey levels.
using Histogram = std::array<std::uint32_t, 256>;

/// Counts `count` bytes (fewer than 2^32) from `bytes`.
Histogram buildHistogram(const std::uint8_t* bytes, std::size_t count);

/// Sum of the bins first..last (both included), 0 ≤ first, last ≤ 255; wraps as a signed 32-bit number.
std::int32_t binSum(const Histogram& histogram, int first, int last);

/// Sum of level × count over the bins first..last; wraps as a signed 32-bit number, which takes more than
/// 8.4 million white pixels (a page of 14,600 lines at 576 dots).
std::int32_t weightedBinSum(const Histogram& histogram, int first, int last);

} // namespace imaging
