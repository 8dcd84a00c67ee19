#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace imaging {

/// Bytes of a block. Most of a page is white paper, and what goes byte by byte can take it a block at a time.
constexpr std::size_t kWhiteBlock = 16;

/// Whether the next kWhiteBlock bytes are all 255.
inline bool isWhiteBlock(const std::uint8_t* bytes)
{
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    std::memcpy(&first, bytes, sizeof first);
    std::memcpy(&second, bytes + sizeof first, sizeof second);
    return (first & second) == ~std::uint64_t{0};
}

} // namespace imaging
