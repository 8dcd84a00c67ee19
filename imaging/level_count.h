#pragma once

#include <cstddef>
#include <cstdint>

namespace imaging {

/// How many of `count` grey bytes are `level` or brighter.
std::size_t countAtLeast(const std::uint8_t* bytes, std::size_t count, std::uint8_t level);

} // namespace imaging
