#pragma once

#include "tests/imaging/pictures.h"

/// Slow versions that follow the definitions to the letter, one pixel at a time; the library must give the same bits.
namespace plain {

inline Bytes stucki(const Bytes& gray, int width)
{
    constexpr int shares[3][5] = {{0, 0, 0, 8, 4}, {2, 4, 8, 4, 2}, {1, 2, 4, 2, 1}};
    std::vector<int> field(gray.begin(), gray.end());
    const int count = static_cast<int>(gray.size());
    for (int i = 0; i < count; ++i) {
        const int x = i % width;
        int& pixel = field[i];
        const int error = pixel >= 128 ? pixel - 255 : pixel;
        pixel = pixel >= 128 ? 255 : 0;
        for (int k = 0; k < 15; ++k) {
            const int column = x + k % 5 - 2;
            const int target = (i / width + k / 5) * width + column;
            if (column >= 0 && column < width && target < count)
                field[target] += shares[k / 5][k % 5] * error / 42;
        }
    }
    return Bytes(field.begin(), field.end());
}

/// Turns the pixels of one colour whose neighbours at `offsets` are all white, where `margin` lets them be looked at.
inline Bytes turned(Bytes dots, int width, int height, int margin, int colour, const std::vector<int>& offsets)
{
    for (int i = 0; i < width * height; ++i) {
        const int toBorder = std::min({i % width, width - 1 - i % width, i / width, height - 1 - i / width});
        if (dots[i] == colour && toBorder >= margin &&
            std::all_of(offsets.begin(), offsets.end(), [&](int offset) { return dots[i + offset] == 255; }))
            dots[i] = static_cast<std::uint8_t>(255 - colour);
    }
    return dots;
}

inline Bytes withoutIsolatedDots(const Bytes& dots, int width, int height)
{
    return turned(dots, width, height, 1, 0, {-width - 1, -width, 1 - width, -1, 1, width - 1, width});
}

inline Bytes withMarkedWhite(const Bytes& dots, int width, int height)
{
    std::vector<int> square;
    for (int i = 0; i < 49; ++i)
        square.push_back((i / 7 - 3) * width + i % 7 - 3);
    return turned(dots, width, height, 3, 255, square);
}

} // namespace plain
