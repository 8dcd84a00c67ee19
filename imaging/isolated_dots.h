#pragma once

#include "imaging/image_buffer.h"

#include <cstddef>

/// Whitens, in place, every black dot off the border that stands alone: left, right, upper-left, upper, upper-right,
/// lower-left and lower neighbour all white (255). The lower-right neighbour does not count, so falling diagonals
/// unravel from their upper end (docs/architecture.md, "Kept behaviour"). A dot that has been removed counts as
/// white for the dots after it (row by row, left to right).
/// @return 1, also when there are fewer than 3 rows or columns; 0 for a null record, null data, a picture that is not
///         FormatBinary or is too large (kMaxPixels, kMaxWidth)
std::int32_t removeIsolatedDots(ImageBuffer* image);

namespace imaging {

/// The same for one row. `row` is its first pixel; all but the first and the last row of a picture of 3 or more columns
/// are cleaned, from top to bottom, each when the row below it consists of dots.
void removeIsolatedDotsOfRow(std::uint8_t* row, std::size_t width);

} // namespace imaging
