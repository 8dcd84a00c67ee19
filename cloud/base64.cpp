#include "cloud/base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint32_t kForeign = 1U << 24; ///< above the 24 bits of a group

using Pair = std::array<char, 2>;
using PlaceValues = std::array<std::uint32_t, 256>;

/// The characters of every twelve bits.
constexpr std::array<Pair, 4096> makePairs()
{
    std::array<Pair, 4096> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i)
        pairs[i] = {kAlphabet[i >> 6], kAlphabet[i & 0x3FU]};
    return pairs;
}

/// What a character stands for at each of a group's four places, so that a group is the four of them together.
constexpr std::array<PlaceValues, 4> makeValues()
{
    std::array<PlaceValues, 4> values{};
    for (std::size_t place = 0; place < values.size(); ++place) {
        for (auto& value : values[place])
            value = kForeign;
        for (std::uint32_t i = 0; i < 64; ++i)
            values[place][static_cast<unsigned char>(kAlphabet[i])] = i << (18 - 6 * place);
    }
    return values;
}

constexpr std::array<Pair, 4096> kPairs = makePairs();
constexpr std::array<PlaceValues, 4> kValues = makeValues();

} // namespace

QByteArray base64Encode(const unsigned char* bytes, int length)
{
    const int groups = length / 3 + (length % 3 != 0);
    QByteArray text(4 * groups, Qt::Uninitialized);
    char* out = text.data();
    for (; length > 0; length -= 3, bytes += 3) {
        const std::uint32_t group = static_cast<std::uint32_t>(bytes[0]) << 16 |
                                    (length > 1 ? static_cast<std::uint32_t>(bytes[1]) << 8 : 0U) |
                                    (length > 2 ? static_cast<std::uint32_t>(bytes[2]) : 0U);
        for (const std::uint32_t twelveBits : {group >> 12, group & 0xFFFU})
            out = std::copy(kPairs[twelveBits].begin(), kPairs[twelveBits].end(), out);
    }
    std::fill(out + length, out, '='); // the bytes that the last group lacks, counted below zero
    return text;
}

QByteArray base64Decode(const QByteArray& text)
{
    QByteArray bytes(text.size() / 4 * 3 + 2, Qt::Uninitialized);
    char* out = bytes.data();
    const auto* in = reinterpret_cast<const unsigned char*>(text.constData());
    const auto* const end = in + text.size();
    for (; end - in >= 4; in += 4) {
        const std::uint32_t group = kValues[0][in[0]] | kValues[1][in[1]] | kValues[2][in[2]] | kValues[3][in[3]];
        if (group >= kForeign)
            break;
        *out++ = static_cast<char>(group >> 16);
        *out++ = static_cast<char>((group >> 8) & 0xFFU);
        *out++ = static_cast<char>(group & 0xFFU);
    }
    std::uint32_t group = 0; // the last one, which may be short
    int bits = 0;
    for (; in != end && kValues[3][*in] != kForeign; ++in) {
        group = group << 6 | kValues[3][*in];
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            *out++ = static_cast<char>((group >> bits) & 0xFFU);
        }
    }
    bytes.truncate(static_cast<int>(out - bytes.constData()));
    return bytes;
}
