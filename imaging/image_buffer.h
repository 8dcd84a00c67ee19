#pragma once

#include <cstdint>

/// What the bytes of an ImageBuffer mean. The numbers are part of the library's contract.
enum PixelFormat : std::int32_t {
    FormatBgr24 = 0,  ///< 3 bytes a pixel: blue, green, red
    FormatRgb565 = 1, ///< 16-bit little-endian word, red in the top five bits
    FormatGray8 = 2,  ///< 1 byte a pixel, 0 is black
    FormatBinary = 3, ///< 1 byte a pixel, 0 (a burnt dot) or 255 (paper)
    FormatXrgb32 = 4, ///< 4 bytes a pixel, the first one ignored
    FormatBgrx32 = 5, ///< 4 bytes a pixel, the last one ignored
};

/// A picture in memory that the caller owns. No operation frees, reallocates or keeps `data`.
///
/// Rows run top to bottom and follow each other without padding. Every operation works in place: it leaves one byte a
/// pixel at the start of `data` and says so in `channels` and `format`. The record is not synchronised; one thread at
/// a time may work on a given picture.
struct ImageBuffer
{
    std::uint8_t* data = nullptr;
    std::int32_t width = 0;    ///< pixels a row
    std::int32_t height = 0;   ///< rows
    std::int32_t channels = 0; ///< bytes a pixel of what `data` now holds; the grey conversion sets it to 1
    std::int32_t format = 0;   ///< a PixelFormat
};
