#include "imaging/sharpen.h"

#include "imaging/picture_checks.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

// `middle` and `out` point at the row's first pixel; the neighbours are taken from the untouched copy.
void sharpenRow(const std::uint8_t* middle, std::size_t width, std::uint8_t* out)
{
    const std::uint8_t* above = middle - width;
    const std::uint8_t* below = middle + width;
    for (std::size_t x = 1; x + 1 < width; ++x) {
        const int neighbours = above[x - 1] + above[x] + above[x + 1] + middle[x - 1] + middle[x + 1] + below[x - 1] +
                               below[x] + below[x + 1];
        const int value = (12 * middle[x] - neighbours + 2) >> 2;
        out[x] = static_cast<std::uint8_t>(std::clamp(value, 0, 255));
    }
}

} // namespace

std::int32_t sharpenImage(ImageBuffer* image)
{
    if (const auto answer = imaging::answerUnlessGray(image))
        return *answer;
    if (image->width < 3 || image->height < 3)
        return imaging::kRefused;

    const std::size_t count = imaging::byteCount(*image);
    auto* copy = new (std::nothrow) std::uint8_t[count]; // never released, see the header
    if (!copy)
        return imaging::kRefused;
    std::memcpy(copy, image->data, count);
    const auto width = static_cast<std::size_t>(image->width);
    for (std::size_t start = width; start + width < count; start += width)
        sharpenRow(copy + start, width, image->data + start);
    return imaging::kDone;
}
