#pragma once

#include "imaging/image_buffer.h"
#include "imaging/tone_curve.h"

#include <QByteArray>

#include <algorithm>
#include <functional>
#include <vector>

using Bytes = std::vector<std::uint8_t>;
using Operation = std::function<std::int32_t(ImageBuffer*)>;

constexpr int kBytesPerPixel[] = {3, 2, 1, 1, 4, 4, 1}; ///< by format; 6 is an unknown one

struct Outcome
{
    int result;
    ImageBuffer record;
    Bytes bytes; ///< none when the operation left the picture
};

/// Runs `operation` on a picture between two rows of guard bytes.
inline Outcome run(const Operation& operation, const Bytes& pixels, int width, int height, int format, int channels)
{
    const auto guard = static_cast<std::uint8_t>(0xA5 + channels);
    Bytes store(64 + pixels.size() + 64, guard);
    std::copy(pixels.begin(), pixels.end(), store.begin() + 64);
    ImageBuffer record{store.data() + 64, width, height, channels, format};
    const int result = operation(&record);
    const Bytes bytes(store.begin() + 64, store.end() - 64);
    store.erase(store.begin() + 64, store.end() - 64);
    return {result, record, store == Bytes(128, guard) ? bytes : Bytes()};
}

/// The bytes that `operation` makes of the picture; none when it refuses or leaves the picture.
inline Bytes after(const Operation& operation, const Bytes& pixels, int width, int height, int format = FormatGray8)
{
    const Outcome outcome = run(operation, pixels, width, height, format, 1);
    return outcome.result == 1 ? outcome.bytes : Bytes();
}

inline Bytes toned(const Bytes& levels, int brightness, int contrast, int channels = 1)
{
    return run([=](auto* i) { return adjustBrightnessContrast(i, brightness, contrast); }, levels,
               static_cast<int>(levels.size()) / channels, 1, FormatGray8, channels)
        .bytes;
}

/// A picture in hexadecimal digits, or drawn, '#' black and '.' white. Blanks may part the rows.
inline Bytes picture(QByteArray text)
{
    const QByteArray bytes = QByteArray::fromHex(text.replace('#', "00").replace('.', "ff"));
    return Bytes(bytes.begin(), bytes.end());
}
