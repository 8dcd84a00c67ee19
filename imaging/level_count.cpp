#include "imaging/level_count.h"

#include "imaging/simd.h"

#include <algorithm>

namespace {

#ifdef QUILLBOX_SSE2

constexpr std::size_t kBlocksAByteCounts = 255;

// Each of the sixteen bytes counts for itself, as long as it can.
std::size_t countInBlocks(const std::uint8_t* bytes, std::size_t blocks, std::uint8_t level)
{
    const __m128i limit = _mm_set1_epi8(static_cast<char>(level));
    __m128i counts = _mm_setzero_si128();
    for (std::size_t i = 0; i < blocks; ++i) {
        const __m128i p = imaging::loadBlock(bytes + 16 * i);
        counts = _mm_sub_epi8(counts, _mm_cmpeq_epi8(_mm_max_epu8(p, limit), p));
    }
    const __m128i sums = _mm_sad_epu8(counts, _mm_setzero_si128());
    return static_cast<std::size_t>(_mm_extract_epi16(sums, 0)) +
           static_cast<std::size_t>(_mm_extract_epi16(sums, 4));
}

#else

constexpr std::size_t kBlocksAByteCounts = 0;

std::size_t countInBlocks(const std::uint8_t*, std::size_t, std::uint8_t)
{
    return 0;
}

#endif

} // namespace

std::size_t imaging::countAtLeast(const std::uint8_t* bytes, std::size_t count, std::uint8_t level)
{
    std::size_t found = 0;
    while (const std::size_t blocks = std::min(count / 16, kBlocksAByteCounts)) {
        found += countInBlocks(bytes, blocks, level);
        bytes += 16 * blocks;
        count -= 16 * blocks;
    }
    for (std::size_t i = 0; i < count; ++i)
        found += bytes[i] >= level;
    return found;
}
