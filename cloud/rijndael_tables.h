#pragma once

#include <array>
#include <cstdint>

/// Constant tables of Rijndael, computed by the compiler from the arithmetic of its field, GF(2^8) modulo
/// x^8 + x^4 + x^3 + x + 1. Source: FIPS-197 for the box, the mixing and the round constants; J. Daemen and V.
/// Rijmen, "AES Proposal: Rijndael", for putting box and mixing into one table ("Implementation aspects, 32-bit
/// processor").
namespace rijndael {

using ByteTable = std::array<unsigned char, 256>;

/// For each row of the state the mixed column that a byte of this row contributes. A column is one word, row 0 its
/// top byte.
using RoundTables = std::array<std::array<std::uint32_t, 256>, 4>;

/// 120 words of round keys, the most there are, take this many from a key of 4 words; AES itself stops at 10.
constexpr int kRoundConstants = 29;

extern const ByteTable kSBox;
extern const ByteTable kInverseSBox;
extern const RoundTables kEncryptionTables;                             ///< SubBytes, then MixColumns
extern const RoundTables kDecryptionTables;                             ///< InvSubBytes, then InvMixColumns
extern const std::array<unsigned char, kRoundConstants> kRoundConstant; ///< x^0, x^1, … of the field

} // namespace rijndael
