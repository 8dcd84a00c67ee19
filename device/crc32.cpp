#include "device/crc32.h"

#include <array>

namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320U;

using Table = std::array<std::uint32_t, 256>;

/// tables[0] advances the register by one byte; tables[k] by that byte and k zero bytes behind it, so that eight
/// bytes can be looked up independently of each other ("slicing by eight").
constexpr std::array<Table, 8> makeTables()
{
    std::array<Table, 8> tables{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t word = i;
        for (int bit = 0; bit < 8; ++bit)
            word = (word >> 1) ^ ((word & 1U) ? kPolynomial : 0U);
        tables[0][i] = word;
    }
    for (std::size_t k = 1; k < tables.size(); ++k) {
        for (std::size_t i = 0; i < 256; ++i) {
            const std::uint32_t before = tables[k - 1][i];
            tables[k][i] = (before >> 8) ^ tables[0][before & 0xFFU];
        }
    }
    return tables;
}

constexpr std::array<Table, 8> kTables = makeTables();

std::uint32_t littleEndian32(const unsigned char* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

std::uint32_t advanceEight(std::uint32_t reg, const unsigned char* bytes)
{
    const std::uint32_t low = reg ^ littleEndian32(bytes);
    const std::uint32_t high = littleEndian32(bytes + 4);
    return kTables[7][low & 0xFFU] ^ kTables[6][(low >> 8) & 0xFFU] ^ kTables[5][(low >> 16) & 0xFFU] ^
           kTables[4][low >> 24] ^ kTables[3][high & 0xFFU] ^ kTables[2][(high >> 8) & 0xFFU] ^
           kTables[1][(high >> 16) & 0xFFU] ^ kTables[0][high >> 24];
}

} // namespace

std::uint32_t crc32(std::uint32_t key, const unsigned char* bytes, std::size_t length)
{
    std::uint32_t reg = ~key;
    for (; length >= 8; length -= 8, bytes += 8)
        reg = advanceEight(reg, bytes);
    for (; length > 0; --length, ++bytes)
        reg = (reg >> 8) ^ kTables[0][(reg ^ *bytes) & 0xFFU];
    return ~reg;
}

std::uint32_t crc32TableWord(unsigned char index)
{
    return kTables[0][index];
}
