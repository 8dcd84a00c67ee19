#pragma once

#include "imaging/image_buffer.h"

/// Reduces the picture in place to one grey byte a pixel; `format` becomes FormatGray8 and `channels` 1.
///
/// Bgr24 uses the luma weights 0.299, 0.587, 0.114 rounded to nearest; the other formats use the truncated mean of
/// the three colours. An Rgb565 picture converts its first (width × height) >> 1 pixels only, and the bytes after
/// them keep their old values. Grey, binary and unknown formats get `channels` = 1 and nothing else.
/// @return 1; 0 for a null record, null data or a picture that is too large (kMaxPixels)
/// Any thread; allocates nothing.
std::int32_t imageToGray(ImageBuffer* image);

namespace imaging {

/// True for the four colour formats.
bool needsGrayConversion(std::int32_t format);

/// Converts a colour picture and leaves any other record alone.
/// @return false when the picture is too large; `image` and its data are not null
bool ensureGray(ImageBuffer* image);

} // namespace imaging
