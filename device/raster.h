#pragma once

#include <memory>

/// Packed dots, eight to a byte, most significant bit leftmost, 1 is burnt; lines follow each other without padding.
struct Raster
{
    std::unique_ptr<unsigned char[]> bytes; ///< null: the picture was refused. Not null for a picture without rows.
    int size = 0;                           ///< bytes
};

/// Packs a black-and-white picture.
/// @param pixels  width × height bytes, 0 is black, owned by the caller. Each is replaced by its logical negation, so
///                that 1 then means a dot to burn; untouched when the picture is refused.
/// @param width   dots a row; has to be printHeadWidth()
/// @param height  rows, 0 or more
/// @return        (width / 8) × height bytes; refused for null pixels, another width, a negative height or no memory
Raster packRaster(unsigned char* pixels, int width, int height);
