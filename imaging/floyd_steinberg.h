#pragma once

#include "imaging/image_buffer.h"

namespace imaging {

/// Turns the picture in place into black and white dots by error diffusion with the kernel of Floyd and Steinberg
/// (1976), rows alternately from left to right and from right to left; `format` becomes FormatBinary. What falls
/// outside the picture is lost and never wraps to another row. A colour picture is converted to grey first.
/// @return as stuckiDiffuse
/// Any thread. Needs two bytes a column while it works, whatever the height.
std::int32_t floydSteinbergDiffuse(ImageBuffer* image);

} // namespace imaging
