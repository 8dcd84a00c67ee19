#include "imaging/white_areas.h"

#include "imaging/picture_checks.h"

#include <memory>
#include <new>

namespace {

constexpr std::int32_t kSide = 7;
constexpr std::int32_t kReach = kSide / 2;

// whiteRun[x] is the number of white pixels in a row that end, going down, in column x of `row`.
void extendRuns(const std::uint8_t* row, std::int32_t width, std::int32_t* whiteRun)
{
    for (std::int32_t x = 0; x < width; ++x)
        whiteRun[x] = row[x] == 255 ? whiteRun[x] + 1 : 0;
}

// Seven neighbouring columns that are white for seven rows make a square; x is its right edge. The dot leaves three
// white pixels below itself in its column, and three columns of the streak to its right.
void markRow(std::uint8_t* centreRow, std::int32_t width, std::int32_t* whiteRun)
{
    std::int32_t streak = 0;
    for (std::int32_t x = 0; x < width; ++x) {
        streak = whiteRun[x] >= kSide ? streak + 1 : 0;
        if (streak < kSide)
            continue;
        centreRow[x - kReach] = 0;
        whiteRun[x - kReach] = kReach;
        streak = kReach;
    }
}

} // namespace

std::int32_t markWhiteAreas(ImageBuffer* image)
{
    if (imaging::isNull(image) || image->format != FormatBinary || imaging::isTooLarge(*image))
        return imaging::kRefused;
    if (image->height < kSide || image->width < kSide)
        return imaging::kDone;
    const auto width = static_cast<std::size_t>(image->width);
    const std::unique_ptr<std::int32_t[]> whiteRun(new (std::nothrow) std::int32_t[width]());
    if (!whiteRun)
        return imaging::kRefused;
    for (std::int32_t y = 0; y < image->height; ++y) {
        extendRuns(imaging::rowOf(*image, y), image->width, whiteRun.get());
        if (y >= kSide - 1)
            markRow(imaging::rowOf(*image, y - kReach), image->width, whiteRun.get());
    }
    return imaging::kDone;
}
