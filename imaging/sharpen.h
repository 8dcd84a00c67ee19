#pragma once

#include "imaging/image_buffer.h"

/// Sharpens the grey picture in place with a 3 × 3 kernel (12 for the centre, −1 for each neighbour, over 4); a
/// colour picture is converted first. The outermost pixels keep their values.
///
/// Each call leaks one working copy of the picture (width × height bytes; docs/architecture.md, "Kept behaviour").
/// @return 1, also for a binary picture (nothing changes); 0 for a null record, null data, a picture narrower or
///         lower than 3 pixels or too large (kMaxPixels, kMaxWidth), or when memory is short
std::int32_t sharpenImage(ImageBuffer* image);
