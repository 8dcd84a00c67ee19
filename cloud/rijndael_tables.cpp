#include "cloud/rijndael_tables.h"

namespace {

using rijndael::ByteTable;
using rijndael::RoundTables;

constexpr unsigned kFieldPolynomial = 0x11B;

constexpr unsigned char multiply(unsigned a, unsigned b)
{
    unsigned product = 0;
    for (; b != 0; b >>= 1) {
        product ^= (b & 1U) ? a : 0U;
        a = (a << 1) ^ ((a & 0x80U) ? kFieldPolynomial : 0U);
    }
    return static_cast<unsigned char>(product);
}

/// FIPS-197 5.1.1: every bit is added to four of its neighbours and a bit of 0x63.
constexpr unsigned char affine(unsigned byte)
{
    const unsigned twice = byte << 8 | byte;
    return static_cast<unsigned char>(byte ^ twice >> 4 ^ twice >> 5 ^ twice >> 6 ^ twice >> 7 ^ 0x63U);
}

/// 3 generates the field, so its powers meet every byte but 0; 0xF6 is its inverse.
constexpr ByteTable makeSBox()
{
    ByteTable box{};
    unsigned char power = 1;
    unsigned char inverse = 1;
    for (int i = 0; i < 255; ++i) {
        box[power] = affine(inverse);
        power = multiply(power, 3);
        inverse = multiply(inverse, 0xF6);
    }
    box[0] = affine(0);
    return box;
}

constexpr ByteTable inverted(const ByteTable& box)
{
    ByteTable inverse{};
    for (unsigned i = 0; i < box.size(); ++i)
        inverse[box[i]] = static_cast<unsigned char>(i);
    return inverse;
}

/// @param column  factors that a byte of row 0 brings to rows 0..3; those of the rows below are rotated
constexpr RoundTables makeRoundTables(const ByteTable& box, const std::array<unsigned char, 4>& column)
{
    RoundTables tables{};
    for (std::size_t i = 0; i < box.size(); ++i) {
        std::uint32_t word = 0;
        for (const unsigned char factor : column)
            word = word << 8 | multiply(box[i], factor);
        for (auto& table : tables) {
            table[i] = word;
            word = word >> 8 | word << 24;
        }
    }
    return tables;
}

constexpr std::array<unsigned char, rijndael::kRoundConstants> makeRoundConstants()
{
    std::array<unsigned char, rijndael::kRoundConstants> constants{};
    unsigned char power = 1;
    for (auto& constant : constants) {
        constant = power;
        power = multiply(power, 2);
    }
    return constants;
}

} // namespace

namespace rijndael {

constexpr ByteTable kSBox = makeSBox();
constexpr ByteTable kInverseSBox = inverted(kSBox);
constexpr RoundTables kEncryptionTables = makeRoundTables(kSBox, {2, 1, 1, 3});
constexpr RoundTables kDecryptionTables = makeRoundTables(kInverseSBox, {14, 9, 13, 11});
constexpr std::array<unsigned char, kRoundConstants> kRoundConstant = makeRoundConstants();

} // namespace rijndael
