#pragma once

#include "imaging/image_buffer.h"

/// Puts a sparse lattice of single black dots into large white areas of a FormatBinary picture, in place: where all
/// 49 pixels of the 7 × 7 square around a pixel are white, the pixel becomes black; squares later in the order (row
/// by row, left to right) see the dots already set.
/// @return 1, also when there are fewer than 7 rows or columns; 0 for a null record, null data, a picture that is not
///         FormatBinary or is too large (kMaxPixels, kMaxWidth), or when memory is short
std::int32_t markWhiteAreas(ImageBuffer* image);
