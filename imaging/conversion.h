#pragma once

#include "imaging/image_buffer.h"

#include <cstddef>

/// Reduces the picture in place to one grey byte a pixel; `format` becomes FormatGray8 and `channels` 1.
///
/// Bgr24 uses the luma weights 0.299, 0.587, 0.114 rounded to nearest; the other formats use the truncated mean of
/// the three colours. Of an Rgb565 picture only the first (width × height) >> 1 pixels are converted, and the bytes
/// after them keep their old values (docs/architecture.md, "Kept behaviour"). Grey, binary and unknown formats get
/// `channels` = 1 and nothing else.
/// @return 1; 0 for a null record, null data or a picture that is too large (kMaxPixels, kMaxWidth)
/// Any thread; allocates nothing.
std::int32_t imageToGray(ImageBuffer* image);

namespace imaging {

/// True for the four colour formats.
bool needsGrayConversion(std::int32_t format);

/// Writes the grey values of `count` pixels of FormatBgrx32, as imageToGray() finds them.
/// @param pixels  4 × count bytes, any alignment; left as they are, unless `gray` is the same address
/// @param gray    count bytes
void grayFromBgrx32(const std::uint8_t* pixels, std::size_t count, std::uint8_t* gray);

} // namespace imaging
