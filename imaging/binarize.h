#pragma once

#include "imaging/image_buffer.h"

#include <cstddef>

/// Turns the picture in place into black (0) and white (255) bytes; `format` becomes FormatBinary.
///
/// A colour picture is converted to grey first. A pixel is black when it is below the threshold; then isolated black
/// dots are removed (removeIsolatedDots), except after method 0.
/// @param method  0 local thresholds (adaptiveBinarize), 1 minimum cross-entropy, 2 Yen, 3 Otsu, 4 mean level,
///                5 and negative: fixed threshold 127; 6..11: sharpenImage first, then method − 6;
///                12 and above: sharpenImage first, then the fixed threshold.
///                A threshold of 0 found by methods 1 to 4 is replaced by 127.
/// @return 1, also for a picture that is binary already (nothing changes); 0 for a null record, null data, a picture
///         that is too large (kMaxPixels, kMaxWidth), or a refusal by adaptiveBinarize
/// Any thread. Methods 6 and above lose one working copy of the picture a call, see sharpenImage.
std::int32_t binarizeImage(ImageBuffer* image, std::int32_t method);

namespace imaging {

/// Replaces each of `count` grey bytes by 0 when it is below `threshold`, else by 255.
/// @param threshold  any number; up to 0 makes everything white, above 255 everything black
void thresholdBytes(std::uint8_t* bytes, std::size_t count, std::int32_t threshold);

} // namespace imaging
