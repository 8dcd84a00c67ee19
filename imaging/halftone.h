#pragma once

#include "imaging/image_buffer.h"

/// Prepares a photograph and turns it in place into black and white dots by error diffusion; `format` becomes
/// FormatBinary. A colour picture is converted to grey first.
/// @param low, high  accepted and not used
/// @param polarity   1 marks large white areas afterwards (markWhiteAreas), 2 does so when isMostlyDark says yes for
///                   the picture before its tone is changed, any other value never
/// @param mode       1 stretches the contrast first, 2 corrects brightness and contrast first, 3 diffuses with the
///                   kernel of Floyd and Steinberg and not Stucki's; any other value diffuses the picture as it is
/// @return 1, also for a picture that is binary already (nothing changes); 0 for a null record, null data, a picture
///         that is too large (kMaxPixels, kMaxWidth), or when memory is short
/// Any thread.
std::int32_t halftoneImage(ImageBuffer* image, std::int32_t low, std::int32_t high, std::int32_t polarity,
                           std::int32_t mode);

/// Whether at most 40 % of the pixels are nearly white (226 and up). Converts a colour picture to grey.
/// @return 1 yes; 0 no, and for a null record, null data, a binary picture or one that is too large (kMaxPixels,
///         kMaxWidth)
std::int32_t isMostlyDark(ImageBuffer* image);
