#include "device/crc32.h"

#include <array>

namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320U;

using Table = std::array<std::uint32_t, 256>;

/// The register after one byte, by what the byte leaves in its low eight bits.
constexpr Table makeByteTable()
{
    Table table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t word = i;
        for (int bit = 0; bit < 8; ++bit)
            word = (word >> 1) ^ ((word & 1U) ? kPolynomial : 0U);
        table[i] = word;
    }
    return table;
}

constexpr Table kByteTable = makeByteTable();

/// A block is four words, each the next link of a chain of look-ups that waits for none of the other three
/// ("braiding"). Words of 32 bits suit 32- and 64-bit processors alike; a full frame's payload is 63 blocks.
constexpr std::size_t kWordSize = 4;              ///< bytes
constexpr std::size_t kBlockSize = 4 * kWordSize; ///< bytes
using WordTables = std::array<Table, kWordSize>;  ///< by the byte of the word, first in memory first

constexpr std::uint32_t afterZeroByte(std::uint32_t reg)
{
    return (reg >> 8) ^ kByteTable[reg & 0xFFU];
}

/// What each byte of a word adds to the register that is reached `zeros` zero bytes behind the word.
constexpr WordTables makeWordTables(std::size_t zeros)
{
    WordTables tables{};
    for (std::size_t i = 0; i < 256; ++i) {
        std::uint32_t reg = kByteTable[i];
        for (std::size_t passed = 0; passed < zeros; ++passed)
            reg = afterZeroByte(reg);
        for (std::size_t byte = kWordSize; byte-- > 0; reg = afterZeroByte(reg))
            tables[byte][i] = reg;
    }
    return tables;
}

constexpr WordTables kToNextWord = makeWordTables(0);
constexpr WordTables kToNextBlock = makeWordTables(kBlockSize - kWordSize);

std::uint32_t littleEndian32(const unsigned char* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

/// Inline: without the word GCC calls it at -O2, which costs a third.
inline std::uint32_t advance(const WordTables& tables, std::uint32_t reg, const unsigned char* word)
{
    reg ^= littleEndian32(word);
    return tables[0][reg & 0xFFU] ^ tables[1][(reg >> 8) & 0xFFU] ^ tables[2][(reg >> 16) & 0xFFU] ^
           tables[3][reg >> 24];
}

/// @param blocks  1 or more; in the last one the chains run together
std::uint32_t advanceBlocks(std::uint32_t reg, const unsigned char* bytes, std::size_t blocks)
{
    std::uint32_t second = 0;
    std::uint32_t third = 0;
    std::uint32_t fourth = 0;
    for (; blocks > 1; --blocks, bytes += kBlockSize) {
        reg = advance(kToNextBlock, reg, bytes);
        second = advance(kToNextBlock, second, bytes + kWordSize);
        third = advance(kToNextBlock, third, bytes + 2 * kWordSize);
        fourth = advance(kToNextBlock, fourth, bytes + 3 * kWordSize);
    }
    reg = advance(kToNextWord, reg, bytes);
    reg = advance(kToNextWord, reg ^ second, bytes + kWordSize);
    reg = advance(kToNextWord, reg ^ third, bytes + 2 * kWordSize);
    return advance(kToNextWord, reg ^ fourth, bytes + 3 * kWordSize);
}

} // namespace

std::uint32_t crc32(std::uint32_t key, const unsigned char* bytes, std::size_t length)
{
    std::uint32_t reg = ~key;
    if (length >= kBlockSize)
        reg = advanceBlocks(reg, bytes, length / kBlockSize);
    for (std::size_t i = length / kBlockSize * kBlockSize; i < length; ++i)
        reg = afterZeroByte(reg ^ bytes[i]);
    return ~reg;
}

std::uint32_t crc32TableWord(unsigned char index)
{
    return kByteTable[index];
}
