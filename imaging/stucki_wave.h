#pragma once

#include "imaging/image_buffer.h"

namespace imaging {

/// Whether stuckiWave() can work on this picture on this processor: SSE2, and a width as print heads have it, a multiple
/// of 16 from 240 to 4096 dots.
bool stuckiWaveFits(const ImageBuffer& image);

/// stuckiDiffuse() of a grey picture with pixels, sixteen rows at a time. Leaves `format` alone.
/// @return false, with nothing changed, when memory is short
/// Any thread. Needs 64 bytes a column while it works, whatever the height.
bool stuckiWave(const ImageBuffer& image);

} // namespace imaging
