#include "imaging/binarize.h"

#include "imaging/adaptive_binarize.h"
#include "imaging/isolated_dots.h"
#include "imaging/picture_checks.h"
#include "imaging/sharpen.h"
#include "imaging/simd.h"
#include "imaging/thresholds.h"

#include <cstring>

namespace {

constexpr std::int32_t kAdaptive = 0;
constexpr std::int32_t kFirstSharpened = 6;
constexpr std::int32_t kFixedThreshold = 127;

std::int32_t measuredThreshold(const imaging::Histogram& histogram, std::int32_t method)
{
    switch (method) {
    case 1:
        return imaging::minimumCrossEntropyThreshold(histogram);
    case 2:
        return imaging::yenThreshold(histogram);
    case 3:
        return imaging::otsuThreshold(histogram);
    default:
        return imaging::meanThreshold(histogram);
    }
}

std::int32_t thresholdFor(const ImageBuffer& image, std::int32_t method)
{
    if (method < 1 || method > 4)
        return kFixedThreshold;
    const auto histogram = imaging::buildHistogram(image.data, imaging::byteCount(image));
    const std::int32_t threshold = measuredThreshold(histogram, method);
    return threshold == 0 ? kFixedThreshold : threshold;
}

// For unsigned bytes p ≥ T exactly when max(p, T) is p.
std::size_t thresholdBlocks(std::uint8_t* bytes, std::size_t count, std::uint8_t threshold)
{
    std::size_t i = 0;
#ifdef QUILLBOX_SSE2
    const __m128i limit = _mm_set1_epi8(static_cast<char>(threshold));
    for (; i + 16 <= count; i += 16) {
        const __m128i p = imaging::loadBlock(bytes + i);
        imaging::storeBlock(bytes + i, _mm_cmpeq_epi8(_mm_max_epu8(p, limit), p));
    }
#else
    (void)bytes, (void)count, (void)threshold;
#endif
    return i;
}

// Row by row, so that a row is cleaned while it and its neighbours are still in the nearest cache.
void binarizeRows(const ImageBuffer& image, std::int32_t threshold)
{
    const auto width = static_cast<std::size_t>(image.width);
    for (std::int32_t y = 0; y < image.height; ++y) {
        imaging::thresholdBytes(imaging::rowOf(image, y), width, threshold);
        if (y >= 2)
            imaging::removeIsolatedDotsOfRow(imaging::rowOf(image, y - 1), width);
    }
}

} // namespace

void imaging::thresholdBytes(std::uint8_t* bytes, std::size_t count, std::int32_t threshold)
{
    if (threshold <= 0 || threshold > 255) {
        std::memset(bytes, threshold <= 0 ? 255 : 0, count);
        return;
    }
    const auto limit = static_cast<std::uint8_t>(threshold);
    for (std::size_t i = thresholdBlocks(bytes, count, limit); i < count; ++i)
        bytes[i] = bytes[i] < limit ? 0 : 255;
}

std::int32_t binarizeImage(ImageBuffer* image, std::int32_t method)
{
    if (const auto answer = imaging::answerUnlessGray(image))
        return *answer;

    if (method >= kFirstSharpened) {
        sharpenImage(image); // a picture too small to sharpen is thresholded as it is
        method -= kFirstSharpened;
    }
    if (method == kAdaptive)
        return adaptiveBinarize(image);

    if (imaging::pixelCount(*image) > 0)
        binarizeRows(*image, thresholdFor(*image, method));
    image->format = FormatBinary;
    return imaging::kDone;
}
