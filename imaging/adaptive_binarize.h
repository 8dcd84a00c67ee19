#pragma once

#include "imaging/image_buffer.h"

/// Turns the picture in place into black and white by local thresholds, for pages that are lit unevenly; `format`
/// becomes FormatBinary. A colour picture is converted to grey first.
///
/// The picture is sampled every fourth column and third row; the differences between a sample's neighbours tell the
/// noise of the paper. Where the samples of a 3 × 3 neighbourhood differ by more than the noise, a pixel is black
/// when it is below their mean; elsewhere, in even areas, it is compared with Otsu's threshold of the whole picture.
/// @return 1, also for a picture that is binary already (nothing changes); 0 for a null record, null data, a picture
///         that is too large (kMaxPixels, kMaxWidth), a grid of fewer than 5 samples either way or 100 in
///         all (20 columns or 15 rows of pixels), or when memory is short
/// Any thread. Needs one byte a sample while it works.
std::int32_t adaptiveBinarize(ImageBuffer* image);
