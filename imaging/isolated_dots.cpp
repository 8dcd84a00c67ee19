#include "imaging/isolated_dots.h"

#include "imaging/picture_checks.h"
#include "imaging/simd.h"

// Within one row the order does not matter: a dot is removed only when its neighbours in the row are white, so those are
// no candidates, and no other pixel of the row looks at it. Only the next row sees the change. That is why sixteen pixels
// may be judged at once, and some of them twice.

namespace {

bool isIsolated(const std::uint8_t* p, std::size_t width)
{
    const std::uint8_t* above = p - width;
    const std::uint8_t* below = p + width;
    return *p == 0 && p[-1] == 255 && p[1] == 255 && above[-1] == 255 && above[0] == 255 && above[1] == 255 &&
           below[-1] == 255 && below[0] == 255;
}

#ifdef QUILLBOX_SSE2

using imaging::loadBlock;
using imaging::storeBlock;

// Whitens the isolated ones of the sixteen pixels from p on. Most blocks of a page have no black pixel between two white
// ones.
void cleanBlock(std::uint8_t* p, std::size_t width)
{
    const __m128i white = _mm_set1_epi8(-1);
    const __m128i centre = loadBlock(p);
    const __m128i sides = _mm_and_si128(loadBlock(p - 1), loadBlock(p + 1));
    const __m128i candidates =
        _mm_and_si128(_mm_cmpeq_epi8(centre, _mm_setzero_si128()), _mm_cmpeq_epi8(sides, white));
    if (_mm_movemask_epi8(candidates) == 0)
        return;
    const std::uint8_t* above = p - width;
    const std::uint8_t* below = p + width;
    const __m128i upper = _mm_and_si128(loadBlock(above), _mm_and_si128(loadBlock(above - 1), loadBlock(above + 1)));
    const __m128i lower = _mm_and_si128(loadBlock(below - 1), loadBlock(below));
    const __m128i isolated = _mm_and_si128(candidates, _mm_cmpeq_epi8(_mm_and_si128(upper, lower), white));
    if (_mm_movemask_epi8(isolated) != 0) // a store would hold up the next block's load
        storeBlock(p, _mm_or_si128(centre, isolated));
}

// Columns 1..width - 2, the last block over the end of the one before it. False, with nothing done, when the row is too
// short for one.
bool cleanBlocks(std::uint8_t* row, std::size_t width)
{
    if (width < 18)
        return false;
    for (std::size_t x = 1; x + 16 < width; x += 16)
        cleanBlock(row + x, width);
    cleanBlock(row + width - 17, width);
    return true;
}

#else

bool cleanBlocks(std::uint8_t*, std::size_t)
{
    return false;
}

#endif

} // namespace

void imaging::removeIsolatedDotsOfRow(std::uint8_t* row, std::size_t width)
{
    if (cleanBlocks(row, width))
        return;
    for (std::size_t x = 1; x + 1 < width; ++x) {
        if (isIsolated(row + x, width))
            row[x] = 255;
    }
}

std::int32_t removeIsolatedDots(ImageBuffer* image)
{
    if (imaging::isNull(image) || image->format != FormatBinary || imaging::isTooLarge(*image))
        return imaging::kRefused;
    if (image->width < 3 || image->height < 3)
        return imaging::kDone;
    for (std::int32_t y = 1; y + 1 < image->height; ++y)
        imaging::removeIsolatedDotsOfRow(imaging::rowOf(*image, y), static_cast<std::size_t>(image->width));
    return imaging::kDone;
}
