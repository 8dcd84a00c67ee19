#pragma once

#include "imaging/image_buffer.h"

/// Turns the picture in place into black and white dots by error diffusion with Stucki's kernel (P. Stucki, 1981),
/// every row from left to right; `format` becomes FormatBinary. A colour picture is converted to grey first.
///
/// A pixel whose grey value and received errors add up to 128 or more is white. Each share of the error (8, 4, 2 and
/// 1 forty-seconds) is truncated toward zero; what falls outside the picture is lost and never wraps to another row.
/// @return 1, also for a picture that is binary already (nothing changes) or empty; 0 for a null record, null data, a
///         picture that is too large (kMaxPixels, kMaxWidth), or when memory is short
/// Any thread. Needs twelve bytes a column while it works, whatever the height. A page as wide as a print head is
/// worked sixteen rows at a time where the processor can (stucki_wave.h), with the same dots.
std::int32_t stuckiDiffuse(ImageBuffer* image);
