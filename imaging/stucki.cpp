#include "imaging/stucki.h"

#include "imaging/picture_checks.h"
#include "imaging/stucki_wave.h"

#include <array>
#include <cstring>
#include <memory>
#include <new>

// Only three rows of received shares live at a time: those of the row in work and of the two below it.
//
// Every error e lies in -127..127. A pixel's value is v = grey + the shares of earlier errors; the shares it can
// receive weigh (8+4 + 2+4+8+4+2 + 1+2+4+2+1)/42 = 1 together and are truncated toward zero, so while all earlier
// errors keep the bound, v lies in -127..382. Below 128, e = v is in -127..127; from 128 on, e = v - 255 is in
// -127..127. The first pixel has no earlier errors, and so on along the scan.

namespace {

constexpr std::size_t kBeside = 2; ///< columns beside the row that take what leaves the picture
constexpr std::size_t kLiveRows = 3;

static_assert(kLiveRows * sizeof(int) <= imaging::kWorkBytesPerColumn);

/// `received` has a cell for each column and kBeside on either side, as have the two of the rows below.
void diffuseRow(std::uint8_t* row, std::size_t width, int* received, int* below, int* twoBelow)
{
    for (std::size_t x = 0; x < width; ++x) {
        const int value = row[x] + received[x + kBeside];
        const bool white = value >= 128;
        const int error = white ? value - 255 : value;
        row[x] = white ? 255 : 0;
        const int eight = 8 * error / 42;
        const int four = eight / 2;
        const int two = eight / 4;
        const int one = eight / 8;
        received[x + 3] += eight;
        received[x + 4] += four;
        below[x] += two;
        below[x + 1] += four;
        below[x + 2] += eight;
        below[x + 3] += four;
        below[x + 4] += two;
        twoBelow[x] += one;
        twoBelow[x + 1] += two;
        twoBelow[x + 2] += four;
        twoBelow[x + 3] += two;
        twoBelow[x + 4] += one;
    }
}

bool diffuseRows(const ImageBuffer& image)
{
    const auto width = static_cast<std::size_t>(image.width);
    const std::size_t cells = width + 2 * kBeside;
    const std::unique_ptr<int[]> shares(new (std::nothrow) int[kLiveRows * cells]());
    if (!shares)
        return false;
    std::array<int*, kLiveRows> rows{shares.get(), shares.get() + cells, shares.get() + 2 * cells};
    for (std::int32_t y = 0; y < image.height; ++y) {
        diffuseRow(imaging::rowOf(image, y), width, rows[0], rows[1], rows[2]);
        std::memset(rows[0], 0, cells * sizeof(int));
        std::swap(rows[0], rows[1]); // the next row, the one after it, and the cleared one
        std::swap(rows[1], rows[2]);
    }
    return true;
}

} // namespace

std::int32_t stuckiDiffuse(ImageBuffer* image)
{
    if (const auto answer = imaging::answerUnlessGray(image))
        return *answer;
    if (imaging::pixelCount(*image) > 0) {
        if (!(imaging::stuckiWaveFits(*image) ? imaging::stuckiWave(*image) : diffuseRows(*image)))
            return imaging::kRefused;
    }
    image->format = FormatBinary;
    return imaging::kDone;
}
