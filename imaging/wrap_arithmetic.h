#pragma once

#include <cstdint>
#include <limits>

/// Signed 32-bit arithmetic that wraps. Sums and products over tall pages leave the range, and the pictures that the
/// printer has always received depend on the wrapped values; plain signed overflow would be undefined.
namespace imaging {

inline std::int32_t wrapToInt32(std::uint32_t bits)
{
    return static_cast<std::int32_t>(bits);
}

inline std::int32_t wrapMul(std::int32_t a, std::int32_t b)
{
    return wrapToInt32(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

inline std::int32_t wrapAdd(std::int32_t a, std::int32_t b)
{
    return wrapToInt32(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

inline std::int32_t wrapSub(std::int32_t a, std::int32_t b)
{
    return wrapToInt32(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// a / b toward zero for b ≠ 0; the one quotient that does not fit (lowest / −1) wraps.
inline std::int32_t wrapDiv(std::int32_t a, std::int32_t b)
{
    return wrapToInt32(static_cast<std::uint32_t>(std::int64_t{a} / b));
}

/// Toward zero; values outside the range saturate, not-a-number gives 0.
inline std::int32_t truncToInt32(double value)
{
    if (value != value)
        return 0;
    if (value >= 2147483647.0)
        return std::numeric_limits<std::int32_t>::max();
    if (value <= -2147483648.0)
        return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(value);
}

} // namespace imaging
