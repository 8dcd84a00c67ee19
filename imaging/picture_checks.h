#pragma once

#include "imaging/conversion.h"

#include <cstddef>
#include <limits>
#include <optional>

/// What every operation asks about a record before it touches a byte.
namespace imaging {

constexpr std::int32_t kDone = 1;    ///< also when there was nothing to do
constexpr std::int32_t kRefused = 0; ///< the record stays as far as the operation had got

/// Larger pictures are refused: at four bytes a pixel their size leaves the record's 32-bit numbers, so what
/// `width` and `height` claim cannot be true of any picture of this client.
constexpr std::int64_t kMaxPixels = std::numeric_limits<std::int32_t>::max() / 4;

/// Wider pictures are refused too: the working rows of stuckiDiffuse take kWorkBytesPerColumn, and what they take has
/// to be a size that a 32-bit program can have. The same on every build, so that all of them print the same.
constexpr std::int32_t kWorkBytesPerColumn = 16;
constexpr std::int32_t kMaxWidth = std::numeric_limits<std::int32_t>::max() / kWorkBytesPerColumn - 4;

inline bool isNull(const ImageBuffer* image)
{
    return !image || !image->data;
}

/// Pixels of the picture; 0 when either side is zero or negative.
inline std::int64_t pixelCount(const ImageBuffer& image)
{
    if (image.width <= 0 || image.height <= 0)
        return 0;
    return std::int64_t{image.width} * image.height;
}

/// Never of a picture without pixels, which no operation allocates anything for.
inline bool isTooLarge(const ImageBuffer& image)
{
    const std::int64_t count = pixelCount(image);
    return count > kMaxPixels || (count > 0 && image.width > kMaxWidth);
}

/// The picture's grey or binary bytes as a length; only for pictures that are not too large.
inline std::size_t byteCount(const ImageBuffer& image)
{
    return static_cast<std::size_t>(pixelCount(image));
}

/// Converts a colour picture to grey, for an operation that works on grey bytes.
/// @return nothing when the operation has grey bytes to work on; else the result that it ends with at once: kDone for
///         a binary picture, which stays as it is, kRefused for a null record, null data or a picture too large
inline std::optional<std::int32_t> answerUnlessGray(ImageBuffer* image)
{
    if (isNull(image))
        return kRefused;
    if (image->format == FormatBinary)
        return kDone;
    if (isTooLarge(*image))
        return kRefused;
    if (needsGrayConversion(image->format))
        imageToGray(image);
    return std::nullopt;
}

/// First byte of row y of a grey or binary picture.
inline std::uint8_t* rowOf(const ImageBuffer& image, std::int32_t y)
{
    return image.data + static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width);
}

} // namespace imaging
