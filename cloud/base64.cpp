#include "cloud/base64.h"

#include <array>
#include <cstdint>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned char kForeign = 0xFF;

constexpr std::array<unsigned char, 256> makeValues()
{
    std::array<unsigned char, 256> values{};
    for (auto& value : values)
        value = kForeign;
    for (unsigned char i = 0; i < 64; ++i)
        values[static_cast<unsigned char>(kAlphabet[i])] = i;
    return values;
}

constexpr std::array<unsigned char, 256> kValues = makeValues();

} // namespace

QByteArray base64Encode(const unsigned char* bytes, int length)
{
    const int groups = length / 3 + (length % 3 != 0);
    QByteArray text(4 * groups, '=');
    char* out = text.data();
    for (; length > 0; length -= 3, bytes += 3) {
        const std::uint32_t group = static_cast<std::uint32_t>(bytes[0]) << 16 |
                                    (length > 1 ? static_cast<std::uint32_t>(bytes[1]) << 8 : 0U) |
                                    (length > 2 ? static_cast<std::uint32_t>(bytes[2]) : 0U);
        const int characters = length > 2 ? 4 : length + 1;
        for (int i = 0; i < characters; ++i)
            out[i] = kAlphabet[(group >> (18 - 6 * i)) & 0x3FU];
        out += 4;
    }
    return text;
}

QByteArray base64Decode(const QByteArray& text)
{
    QByteArray bytes(text.size() / 4 * 3 + 2, Qt::Uninitialized);
    char* out = bytes.data();
    std::uint32_t group = 0;
    int bits = 0;
    for (const char character : text) {
        const unsigned char value = kValues[static_cast<unsigned char>(character)];
        if (value == kForeign)
            break;
        group = group << 6 | value;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            *out++ = static_cast<char>((group >> bits) & 0xFFU);
        }
    }
    bytes.truncate(static_cast<int>(out - bytes.constData()));
    return bytes;
}
