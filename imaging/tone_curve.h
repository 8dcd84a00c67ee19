#pragma once

#include "imaging/image_buffer.h"

#include <array>
#include <cstddef>

/// One control point of a tone curve: grey level x becomes y, both meant as 0..255.
struct ToneCurvePoint
{
    std::int32_t x;
    std::int32_t y;
};

/// Fills a 256-entry table with a natural cubic spline through `points`, solved in whole thousandths.
///
/// The elimination keeps the scaled super-diagonal as it is (it is not divided by 1000 again), so most second
/// derivatives come out as 0 and the curve is nearly piecewise linear; the prints are made for exactly this curve.
/// Entries below the first and from the last x on stay as they were, but for entry 255, which is always set to 255.
/// @param count  2..256 points with strictly increasing x
/// @return 1; 0, with the table as it was, for null pointers, another count, two equal x in a row or a pivot of 0
std::int32_t buildToneCurve(std::uint8_t* table, const ToneCurvePoint* points, std::int32_t count);

/// Maps every byte of `data` (width × height × channels of them) through a brightness and then a contrast curve.
/// The format is not converted; whoever hands a grey record sets `channels` to 1.
/// @param brightness  −100..100 is sensible, 0 leaves the tone alone, positive is lighter
/// @param contrast    −100..100 is sensible, 0 leaves the tone alone, negative is flatter
/// @return 1; 0 for a null record, null data, a picture that is too large (kMaxPixels, kMaxWidth) or a size past
///         2^31 − 1 bytes
std::int32_t adjustBrightnessContrast(ImageBuffer* image, std::int32_t brightness, std::int32_t contrast);

namespace imaging {

using ToneTable = std::array<std::uint8_t, 256>;

/// Replaces each of `count` bytes by its entry. White has to stay white, as in every change of tone.
void mapBytes(std::uint8_t* bytes, std::size_t count, const ToneTable& table);

} // namespace imaging
