#include "imaging/adaptive_binarize.h"

#include "imaging/picture_checks.h"
#include "imaging/thresholds.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

namespace {

constexpr std::int32_t kColumnStep = 4;
constexpr std::int32_t kRowStep = 3;
constexpr std::int32_t kMinSide = 5;
constexpr std::int64_t kMinSamples = 100;
constexpr int kNoiseLimit = 128; ///< larger differences are edges, not noise

struct Grid
{
    std::int32_t columns;
    std::int32_t rows;
};

// Samples sit one pixel into their cell, so that all four neighbours lie in the picture.
const std::uint8_t* sampleAt(const ImageBuffer& image, std::int32_t column, std::int32_t row)
{
    return imaging::rowOf(image, row * kRowStep + 1) + std::ptrdiff_t{column} * kColumnStep + 1;
}

imaging::Histogram neighbourDifferences(const ImageBuffer& image, Grid grid)
{
    imaging::Histogram differences{};
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        for (std::int32_t column = 0; column < grid.columns; ++column) {
            const std::uint8_t* p = sampleAt(image, column, row);
            ++differences[static_cast<std::size_t>(std::abs(*(p - image.width) - p[image.width]))];
            ++differences[static_cast<std::size_t>(std::abs(p[-1] - p[1]))];
        }
    }
    return differences;
}

// The smallest difference that `percent` of all differences do not exceed.
int differenceAt(const imaging::Histogram& differences, std::uint64_t total, unsigned percent)
{
    std::uint64_t seen = 0;
    for (int difference = 0; difference < kNoiseLimit; ++difference) {
        seen += differences[static_cast<std::size_t>(difference)];
        if (seen * 100 >= total * percent)
            return difference;
    }
    return kNoiseLimit;
}

int noiseLevel(const ImageBuffer& image, Grid grid)
{
    const auto differences = neighbourDifferences(image, grid);
    const std::uint64_t total = 2 * static_cast<std::uint64_t>(grid.columns) * static_cast<std::uint64_t>(grid.rows);
    return std::max(1, (differenceAt(differences, total, 90) + differenceAt(differences, total, 95)) / 2);
}

// The threshold of one cell from the samples of it and its neighbours.
std::uint8_t localThreshold(const ImageBuffer& image, Grid grid, std::int32_t column, std::int32_t row, int noise,
                            int global)
{
    int sum = 0;
    int count = 0;
    int lowest = 255;
    int highest = 0;
    for (std::int32_t r = std::max(row - 1, 0); r <= std::min(row + 1, grid.rows - 1); ++r) {
        for (std::int32_t c = std::max(column - 1, 0); c <= std::min(column + 1, grid.columns - 1); ++c) {
            const int level = *sampleAt(image, c, r);
            sum += level;
            ++count;
            lowest = std::min(lowest, level);
            highest = std::max(highest, level);
        }
    }
    return static_cast<std::uint8_t>(highest - lowest > noise ? sum / count : global);
}

using Thresholds = std::unique_ptr<std::uint8_t[]>;

// All thresholds are taken from the grey picture before the first pixel is overwritten.
Thresholds localThresholds(const ImageBuffer& image, Grid grid)
{
    const auto columns = static_cast<std::size_t>(grid.columns);
    Thresholds map(new (std::nothrow) std::uint8_t[columns * static_cast<std::size_t>(grid.rows)]);
    if (!map)
        return map;
    const int noise = noiseLevel(image, grid);
    const int global = imaging::otsuThreshold(imaging::buildHistogram(image.data, imaging::byteCount(image)));
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        std::uint8_t* out = map.get() + static_cast<std::size_t>(row) * columns;
        for (std::int32_t column = 0; column < grid.columns; ++column)
            out[column] = localThreshold(image, grid, column, row, noise, global);
    }
    return map;
}

// Pixels right of and below the last whole cell go by that cell.
void applyThresholds(const ImageBuffer& image, Grid grid, const std::uint8_t* map)
{
    for (std::int32_t y = 0; y < image.height; ++y) {
        const auto gridRow = static_cast<std::size_t>(std::min(y / kRowStep, grid.rows - 1));
        const std::uint8_t* thresholds = map + gridRow * static_cast<std::size_t>(grid.columns);
        std::uint8_t* row = imaging::rowOf(image, y);
        for (std::int32_t x = 0; x < image.width; ++x)
            row[x] = row[x] < thresholds[std::min(x / kColumnStep, grid.columns - 1)] ? 0 : 255;
    }
}

} // namespace

std::int32_t adaptiveBinarize(ImageBuffer* image)
{
    if (const auto answer = imaging::answerUnlessGray(image))
        return *answer;

    const Grid grid{image->width / kColumnStep, image->height / kRowStep};
    if (grid.columns < kMinSide || grid.rows < kMinSide || std::int64_t{grid.columns} * grid.rows < kMinSamples)
        return imaging::kRefused;
    const Thresholds map = localThresholds(*image, grid);
    if (!map)
        return imaging::kRefused;
    applyThresholds(*image, grid, map.get());
    image->format = FormatBinary;
    return imaging::kDone;
}
