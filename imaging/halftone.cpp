#include "imaging/halftone.h"

#include "imaging/floyd_steinberg.h"
#include "imaging/histogram.h"
#include "imaging/level_count.h"
#include "imaging/picture_checks.h"
#include "imaging/stucki.h"
#include "imaging/tone_curve.h"
#include "imaging/white_areas.h"
#include "imaging/wrap_arithmetic.h"

#include <algorithm>

using imaging::wrapMul;

namespace {

enum Mode : std::int32_t { StretchContrast = 1, CorrectTone = 2, OtherDiffusion = 3 };
enum Polarity : std::int32_t { MarkWhite = 1, DecideByPicture = 2 };

constexpr std::uint8_t kNearlyWhite = 226;
constexpr std::size_t kNearBytes = 16384; ///< stay in the nearest cache for a second look

// Percentages are compared as wrapping signed 32-bit products, which is what tall pages have always met.
void correctTone(ImageBuffer* image)
{
    const std::size_t pixels = imaging::byteCount(*image);
    std::size_t bright = 0;
    std::size_t veryBright = 0;
    for (std::size_t i = 0; i < pixels; i += kNearBytes) {
        const std::size_t some = std::min(kNearBytes, pixels - i);
        bright += imaging::countAtLeast(image->data + i, some, 239);
        veryBright += imaging::countAtLeast(image->data + i, some, 253);
    }
    const auto share = [](std::size_t count, std::int32_t percent) {
        return wrapMul(static_cast<std::int32_t>(count), percent);
    };
    if (share(bright, 100) < share(pixels, 50) && share(veryBright, 100) < share(pixels, 40))
        adjustBrightnessContrast(image, 50, -50);
    else
        adjustBrightnessContrast(image, -50, 0);
}

struct LevelRange
{
    int low = 0;
    int high = 255;
};

// The range that leaves out at most one pixel in a hundred at either end: specks must not decide the contrast.
LevelRange usedRange(const imaging::Histogram& histogram, std::uint32_t count)
{
    const std::uint32_t ignored = count / 100;
    LevelRange range;
    for (std::uint32_t seen = histogram[0]; seen <= ignored && range.low < 255;)
        seen += histogram[static_cast<std::size_t>(++range.low)];
    for (std::uint32_t seen = histogram[255]; seen <= ignored && range.high > 0;)
        seen += histogram[static_cast<std::size_t>(--range.high)];
    return range;
}

// Spreads the used levels over 0..255; a picture of one level has no contrast to stretch.
void stretchContrast(ImageBuffer* image)
{
    const std::size_t count = imaging::byteCount(*image);
    const LevelRange range =
        usedRange(imaging::buildHistogram(image->data, count), static_cast<std::uint32_t>(count));
    const int span = range.high - range.low;
    if (span <= 0)
        return;
    imaging::ToneTable table;
    for (int level = 0; level < 256; ++level) {
        const int stretched = ((level - range.low) * 255 + span / 2) / span;
        table[static_cast<std::size_t>(level)] = static_cast<std::uint8_t>(std::clamp(stretched, 0, 255));
    }
    imaging::mapBytes(image->data, count, table);
}

} // namespace

std::int32_t halftoneImage(ImageBuffer* image, std::int32_t /*low*/, std::int32_t /*high*/, std::int32_t polarity,
                           std::int32_t mode)
{
    if (const auto answer = imaging::answerUnlessGray(image))
        return *answer;
    image->channels = 1; // the tone change below goes by it, and a grey record may have come with another number

    if (polarity == DecideByPicture)
        polarity = isMostlyDark(image);
    if (mode == StretchContrast)
        stretchContrast(image);
    else if (mode == CorrectTone)
        correctTone(image);

    if ((mode == OtherDiffusion ? imaging::floydSteinbergDiffuse(image) : stuckiDiffuse(image)) <= 0)
        return imaging::kRefused;
    if (polarity == MarkWhite)
        markWhiteAreas(image);
    return imaging::kDone;
}

std::int32_t isMostlyDark(ImageBuffer* image)
{
    if (imaging::answerUnlessGray(image))
        return 0;
    const std::size_t count = imaging::byteCount(*image);
    const auto white = static_cast<std::int32_t>(imaging::countAtLeast(image->data, count, kNearlyWhite));
    return wrapMul(white, 100) <= wrapMul(static_cast<std::int32_t>(count), 40) ? 1 : 0;
}
