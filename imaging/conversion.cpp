#include "imaging/conversion.h"

#include "imaging/picture_checks.h"
#include "imaging/simd.h"

namespace {

std::uint8_t meanOfThree(unsigned a, unsigned b, unsigned c)
{
    return static_cast<std::uint8_t>((a + b + c) / 3);
}

std::uint8_t grayOfBgr24(const std::uint8_t* p)
{
    return static_cast<std::uint8_t>((299u * p[2] + 587u * p[1] + 114u * p[0] + 500u) / 1000u);
}

std::uint8_t grayOfRgb565(const std::uint8_t* p)
{
    const unsigned word = p[0] | static_cast<unsigned>(p[1]) << 8;
    return meanOfThree((word >> 8) & 0xF8, (word >> 3) & 0xFC, (word << 3) & 0xF8);
}

std::uint8_t grayOfXrgb32(const std::uint8_t* p)
{
    return meanOfThree(p[1], p[2], p[3]);
}

std::uint8_t grayOfBgrx32(const std::uint8_t* p)
{
    return meanOfThree(p[0], p[1], p[2]);
}

// In place is safe: pixel i is read at or after byte i, and nothing later is overwritten before it has been read.
template <std::size_t BytesPerPixel, typename Gray>
void convertPixels(const std::uint8_t* pixels, std::size_t from, std::size_t to, std::uint8_t* out, Gray gray)
{
    for (std::size_t i = from; i < to; ++i)
        out[i] = gray(pixels + i * BytesPerPixel);
}

#ifdef QUILLBOX_SSE2

// Dropping the first byte of Xrgb makes it look like Bgrx.
template <bool DropFirst>
__m128i loadBgrx(const std::uint8_t* pixels)
{
    const __m128i four = imaging::loadBlock(pixels);
    return DropFirst ? _mm_srli_epi32(four, 8) : four;
}

// Grey values of eight pixels, one a 16-bit lane: (sum · 21846) >> 16 is sum / 3 truncated for every sum up to 765,
// since the factor is 2/3 too large, which adds less than 0.008 where 1/3 would be needed to reach the next whole
// number.
template <bool DropFirst>
__m128i grayOfEight(const std::uint8_t* pixels)
{
    const __m128i lowBytes = _mm_set1_epi16(0xFF);
    const __m128i ones = _mm_set1_epi16(1);
    const __m128i a = loadBgrx<DropFirst>(pixels);
    const __m128i b = loadBgrx<DropFirst>(pixels + 16);
    const __m128i middle = _mm_and_si128(_mm_packus_epi16(_mm_srli_epi16(a, 8), _mm_srli_epi16(b, 8)), lowBytes);
    const __m128i outer = _mm_packs_epi32(_mm_madd_epi16(_mm_and_si128(a, lowBytes), ones),
                                          _mm_madd_epi16(_mm_and_si128(b, lowBytes), ones));
    return _mm_mulhi_epu16(_mm_add_epi16(outer, middle), _mm_set1_epi16(21846));
}

// Sixteen pixels are read before their sixteen bytes are written, so in place stays safe.
template <bool DropFirst>
std::size_t convertBlocks32(const std::uint8_t* pixels, std::size_t count, std::uint8_t* gray)
{
    std::size_t i = 0;
    for (; i + 16 <= count; i += 16) {
        const __m128i low = grayOfEight<DropFirst>(pixels + 4 * i);
        const __m128i high = grayOfEight<DropFirst>(pixels + 4 * i + 32);
        imaging::storeBlock(gray + i, _mm_packus_epi16(low, high));
    }
    return i;
}

#else

template <bool DropFirst>
std::size_t convertBlocks32(const std::uint8_t*, std::size_t, std::uint8_t*)
{
    return 0;
}

#endif

} // namespace

std::int32_t imageToGray(ImageBuffer* image)
{
    if (imaging::isNull(image))
        return imaging::kRefused;
    if (!imaging::needsGrayConversion(image->format)) {
        image->channels = 1;
        return imaging::kDone;
    }
    if (imaging::isTooLarge(*image))
        return imaging::kRefused;

    std::uint8_t* data = image->data;
    const std::size_t count = imaging::byteCount(*image);
    switch (image->format) {
    case FormatBgr24:
        convertPixels<3>(data, 0, count, data, grayOfBgr24);
        break;
    case FormatRgb565:
        convertPixels<2>(data, 0, count >> 1, data, grayOfRgb565); // half of them, see the header
        break;
    case FormatXrgb32:
        convertPixels<4>(data, convertBlocks32<true>(data, count, data), count, data, grayOfXrgb32);
        break;
    default:
        imaging::grayFromBgrx32(data, count, data);
        break;
    }
    image->format = FormatGray8;
    image->channels = 1;
    return imaging::kDone;
}

bool imaging::needsGrayConversion(std::int32_t format)
{
    return (static_cast<std::uint32_t>(format) & ~4u) < 2;
}

void imaging::grayFromBgrx32(const std::uint8_t* pixels, std::size_t count, std::uint8_t* gray)
{
    convertPixels<4>(pixels, convertBlocks32<false>(pixels, count, gray), count, gray, grayOfBgrx32);
}
