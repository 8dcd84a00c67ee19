#include "imaging/floyd_steinberg.h"

#include "imaging/picture_checks.h"

#include <memory>
#include <new>

namespace imaging {
namespace {

// Errors keep within -127..127 (the shares a pixel receives weigh one together, and are truncated), so 16 bits hold
// every sum. One cell on either side of the row takes what leaves the picture; nobody reads those two.
class ErrorRow
{
public:
    explicit ErrorRow(std::size_t width)
        : m_cells(new (std::nothrow) std::int16_t[width + 2]())
    {
    }

    explicit operator bool() const { return m_cells != nullptr; }
    std::int16_t& at(std::ptrdiff_t x) { return m_cells[static_cast<std::size_t>(x + 1)]; }
    void add(std::ptrdiff_t x, int share) { at(x) = static_cast<std::int16_t>(at(x) + share); }

private:
    std::unique_ptr<std::int16_t[]> m_cells;
};

// One cell row is enough: the cell of a pixel is free for the row below as soon as the pixel has been settled. The
// share for the pixel diagonally ahead would mix with errors that are still to be read, so it waits in `ahead` for
// one step.
void diffuseRow(std::uint8_t* row, std::ptrdiff_t width, bool leftward, ErrorRow& errors)
{
    const std::ptrdiff_t step = leftward ? -1 : 1;
    std::ptrdiff_t x = leftward ? width - 1 : 0;
    int same = 0;
    int ahead = 0;
    for (std::ptrdiff_t left = width; left > 0; --left, x += step) {
        const int value = row[x] + errors.at(x) + same;
        const int error = value >= 128 ? value - 255 : value;
        row[x] = value >= 128 ? 255 : 0;
        same = 7 * error / 16;
        errors.at(x) = static_cast<std::int16_t>(ahead + 5 * error / 16);
        errors.add(x - step, 3 * error / 16);
        ahead = error / 16;
    }
}

bool diffuse(const ImageBuffer& image)
{
    ErrorRow errors(static_cast<std::size_t>(image.width));
    if (!errors)
        return false;
    for (std::int32_t y = 0; y < image.height; ++y)
        diffuseRow(rowOf(image, y), image.width, y % 2 != 0, errors);
    return true;
}

} // namespace

std::int32_t floydSteinbergDiffuse(ImageBuffer* image)
{
    if (const auto answer = answerUnlessGray(image))
        return *answer;
    if (pixelCount(*image) > 0 && !diffuse(*image))
        return kRefused;
    image->format = FormatBinary;
    return kDone;
}

} // namespace imaging
