#include "imaging/isolated_dots.h"

#include "imaging/picture_checks.h"
#include "imaging/simd.h"

// Within one row the order does not matter: a dot is removed only when its right neighbour is white, so the pixel
// after it is no candidate, and no other pixel of the row looks at it. Only the next row sees the change. That is why
// sixteen pixels may be judged at once.

namespace {

bool isIsolated(const std::uint8_t* p, std::size_t width)
{
    const std::uint8_t* above = p - width;
    const std::uint8_t* below = p + width;
    return *p == 0 && p[-1] == 255 && p[1] == 255 && above[-1] == 255 && above[0] == 255 && above[1] == 255 &&
           below[-1] == 255 && below[0] == 255;
}

#ifdef QUILLBOX_SSE2

__m128i load(const std::uint8_t* p)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// Whitens the isolated ones of the sixteen pixels from p on. Blocks without a black pixel are most of a page of text.
void cleanBlock(std::uint8_t* p, std::size_t width)
{
    const __m128i centre = load(p);
    const __m128i black = _mm_cmpeq_epi8(centre, _mm_setzero_si128());
    if (_mm_movemask_epi8(black) == 0)
        return;
    const std::uint8_t* above = p - width;
    const std::uint8_t* below = p + width;
    const __m128i sides = _mm_and_si128(load(p - 1), load(p + 1));
    const __m128i upper = _mm_and_si128(load(above), _mm_and_si128(load(above - 1), load(above + 1)));
    const __m128i lower = _mm_and_si128(load(below - 1), load(below));
    const __m128i around = _mm_and_si128(sides, _mm_and_si128(upper, lower));
    const __m128i isolated = _mm_and_si128(black, _mm_cmpeq_epi8(around, _mm_set1_epi8(-1)));
    if (_mm_movemask_epi8(isolated) != 0)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_or_si128(centre, isolated));
}

// The first pixel that is left for the plain loop. The block's right neighbours must lie in the row: x + 16 < width.
std::size_t cleanBlocks(std::uint8_t* row, std::size_t width)
{
    std::size_t x = 1;
    for (; x + 16 < width; x += 16)
        cleanBlock(row + x, width);
    return x;
}

#else

std::size_t cleanBlocks(std::uint8_t*, std::size_t)
{
    return 1;
}

#endif

} // namespace

std::int32_t removeIsolatedDots(ImageBuffer* image)
{
    if (imaging::isNull(image) || image->format != FormatBinary || imaging::isTooLarge(*image))
        return imaging::kRefused;
    if (image->width < 3 || image->height < 3)
        return imaging::kDone;
    const auto width = static_cast<std::size_t>(image->width);
    for (std::int32_t y = 1; y + 1 < image->height; ++y) {
        std::uint8_t* row = imaging::rowOf(*image, y);
        for (std::size_t x = cleanBlocks(row, width); x + 1 < width; ++x) {
            if (isIsolated(row + x, width))
                row[x] = 255;
        }
    }
    return imaging::kDone;
}
