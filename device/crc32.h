#pragma once

#include <cstddef>
#include <cstdint>

/// Reflected CRC-32 of IEEE 802.3 (polynomial 0xEDB88320) in the running form: `key` is the value that an earlier
/// call returned, or any starting value. crc32(0, …) is the plain checksum; an empty input gives `key` itself.
/// @param bytes  `length` bytes; may be null when `length` is 0
/// Any thread, no state.
std::uint32_t crc32(std::uint32_t key, const unsigned char* bytes, std::size_t length);

/// Word `index` of the 256-entry table of that polynomial: the CRC keys that the client picks from.
std::uint32_t crc32TableWord(unsigned char index);
