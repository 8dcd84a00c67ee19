#include "device/raster.h"

#include "app/globals/model.h"
#include "imaging/simd.h"

#include <cstddef>
#include <limits>
#include <new>

namespace {

unsigned char packEight(unsigned char* pixels)
{
    unsigned packed = 0;
    for (int i = 0; i < 8; ++i) {
        pixels[i] = pixels[i] == 0;
        packed = packed << 1 | pixels[i];
    }
    return static_cast<unsigned char>(packed);
}

#ifdef QUILLBOX_SSE2
/// Sixteen pixels at once: compare with zero, mirror each group of eight so that the leftmost pixel becomes the top
/// bit, and gather the bits.
void packSixteen(unsigned char* pixels, unsigned char* out)
{
    const __m128i burnt = _mm_cmpeq_epi8(imaging::loadBlock(pixels), _mm_setzero_si128());
    imaging::storeBlock(pixels, _mm_and_si128(burnt, _mm_set1_epi8(1)));
    __m128i mirrored = _mm_or_si128(_mm_slli_epi16(burnt, 8), _mm_srli_epi16(burnt, 8));
    mirrored = _mm_shufflehi_epi16(_mm_shufflelo_epi16(mirrored, 0x1B), 0x1B);
    const int bits = _mm_movemask_epi8(mirrored);
    out[0] = static_cast<unsigned char>(bits & 0xFF);
    out[1] = static_cast<unsigned char>(bits >> 8);
}
#endif

} // namespace

Raster packRaster(unsigned char* pixels, int width, int height)
{
    if (!pixels || width != printHeadWidth() || height < 0 || height > std::numeric_limits<int>::max() / width)
        return {};
    // A row is a whole number of bytes on every head, so the rows need not be told apart.
    const auto size = static_cast<std::size_t>(width / 8) * static_cast<std::size_t>(height);
    Raster raster{std::unique_ptr<unsigned char[]>(new (std::nothrow) unsigned char[size]()), static_cast<int>(size)};
    if (!raster.bytes)
        return {};
    std::size_t packed = 0;
#ifdef QUILLBOX_SSE2
    for (; packed + 2 <= size; packed += 2)
        packSixteen(pixels + 8 * packed, &raster.bytes[packed]);
#endif
    for (; packed < size; ++packed)
        raster.bytes[packed] = packEight(pixels + 8 * packed);
    return raster;
}
