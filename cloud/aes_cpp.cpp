#include "cloud/aes_cpp.h"

#include "cloud/rijndael_tables.h"

#include <algorithm>
#include <cstring>

namespace {

using RoundKeys = std::array<std::array<std::uint32_t, 8>, 15>;

struct Direction
{
    const rijndael::RoundTables& tables;
    const rijndael::ByteTable& box;
    bool shiftsBack;
};

constexpr Direction kForward{rijndael::kEncryptionTables, rijndael::kSBox, false};
constexpr Direction kInverse{rijndael::kDecryptionTables, rijndael::kInverseSBox, true};

bool isRijndaelSize(int bytes)
{
    return bytes == 16 || bytes == 24 || bytes == 32;
}

std::uint32_t bigEndian32(const unsigned char* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | static_cast<std::uint32_t>(bytes[3]);
}

void putBigEndian32(unsigned char* out, std::uint32_t word)
{
    for (int i = 0; i < 4; ++i)
        out[i] = static_cast<unsigned char>(word >> (24 - 8 * i));
}

/// One column of a round; w0..w3 are the columns whose row 0..3 the row shifts bring here.
std::uint32_t mixed(const rijndael::RoundTables& tables, std::uint32_t w0, std::uint32_t w1, std::uint32_t w2,
                    std::uint32_t w3)
{
    return tables[0][w0 >> 24] ^ tables[1][(w1 >> 16) & 0xFFU] ^ tables[2][(w2 >> 8) & 0xFFU] ^ tables[3][w3 & 0xFFU];
}

/// One column of the last round, which does not mix.
std::uint32_t substituted(const rijndael::ByteTable& box, std::uint32_t w0, std::uint32_t w1, std::uint32_t w2,
                          std::uint32_t w3)
{
    return static_cast<std::uint32_t>(box[w0 >> 24]) << 24 |
           static_cast<std::uint32_t>(box[(w1 >> 16) & 0xFFU]) << 16 |
           static_cast<std::uint32_t>(box[(w2 >> 8) & 0xFFU]) << 8 | static_cast<std::uint32_t>(box[w3 & 0xFFU]);
}

std::uint32_t substitutedWord(std::uint32_t word)
{
    return substituted(rijndael::kSBox, word, word, word, word);
}

/// InvMixColumns alone: the box takes back the inverse box that is part of the tables.
std::uint32_t inverseMixed(std::uint32_t word)
{
    const std::uint32_t boxed = substitutedWord(word);
    return mixed(rijndael::kDecryptionTables, boxed, boxed, boxed, boxed);
}

/// Columns that rows 1..3 come from, counted to the right of their own. Encryption shifts by 1, 2, 3, blocks of 32
/// bytes by 1, 3, 4 (Rijndael proposal 4.2.2); decryption shifts back.
std::array<std::size_t, 3> rowShifts(const Direction& direction, std::size_t columns)
{
    const std::array<std::size_t, 3> shifts =
        columns == 8 ? std::array<std::size_t, 3>{1, 3, 4} : std::array<std::size_t, 3>{1, 2, 3};
    if (direction.shiftsBack)
        return {columns - shifts[0], columns - shifts[1], columns - shifts[2]};
    return shifts;
}

void transformAnyBlock(const Direction& direction, const RoundKeys& keys, std::size_t rounds, std::size_t columns,
                       const unsigned char* in, unsigned char* out)
{
    const auto shifts = rowShifts(direction, columns);
    std::array<std::uint32_t, 8> state{};
    for (std::size_t j = 0; j < columns; ++j)
        state[j] = bigEndian32(in + 4 * j) ^ keys[0][j];
    for (std::size_t round = 1; round <= rounds; ++round) {
        const std::array<std::uint32_t, 8> before = state;
        for (std::size_t j = 0; j < columns; ++j) {
            const std::uint32_t w1 = before[(j + shifts[0]) % columns];
            const std::uint32_t w2 = before[(j + shifts[1]) % columns];
            const std::uint32_t w3 = before[(j + shifts[2]) % columns];
            state[j] = keys[round][j] ^ (round < rounds ? mixed(direction.tables, before[j], w1, w2, w3)
                                                        : substituted(direction.box, before[j], w1, w2, w3));
        }
    }
    for (std::size_t j = 0; j < columns; ++j)
        putBigEndian32(out + 4 * j, state[j]);
}

/// The same for four columns, where all shifts are known: row 1 comes from `Row1` columns on (1, or 3 to shift back),
/// row 3 from the other side.
template <unsigned Row1>
void transformSixteen(const Direction& direction, const RoundKeys& keys, std::size_t rounds, const unsigned char* in,
                      unsigned char* out)
{
    constexpr unsigned Row3 = 4 - Row1;
    std::uint32_t a = bigEndian32(in) ^ keys[0][0];
    std::uint32_t b = bigEndian32(in + 4) ^ keys[0][1];
    std::uint32_t c = bigEndian32(in + 8) ^ keys[0][2];
    std::uint32_t d = bigEndian32(in + 12) ^ keys[0][3];
    const auto applyRound = [&](const auto& combine, const auto& table, const auto& key) {
        const std::uint32_t before[4] = {a, b, c, d};
        a = combine(table, before[0], before[Row1], before[2], before[Row3]) ^ key[0];
        b = combine(table, before[1], before[(1 + Row1) % 4], before[3], before[(1 + Row3) % 4]) ^ key[1];
        c = combine(table, before[2], before[(2 + Row1) % 4], before[0], before[(2 + Row3) % 4]) ^ key[2];
        d = combine(table, before[3], before[(3 + Row1) % 4], before[1], before[(3 + Row3) % 4]) ^ key[3];
    };
    for (std::size_t round = 1; round < rounds; ++round)
        applyRound(mixed, direction.tables, keys[round]);
    applyRound(substituted, direction.box, keys[rounds]);
    putBigEndian32(out, a);
    putBigEndian32(out + 4, b);
    putBigEndian32(out + 8, c);
    putBigEndian32(out + 12, d);
}

void addBlock(unsigned char* block, const unsigned char* other, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        block[i] = static_cast<unsigned char>(block[i] ^ other[i]);
}

} // namespace

AESCpp::~AESCpp() = default;

void AESCpp::MakeKey(const unsigned char* key, const unsigned char* chain, int keyLength, int blockSize)
{
    if (!key || !isRijndaelSize(keyLength) || !isRijndaelSize(blockSize))
        return;
    m_keyLength = keyLength;
    m_blockSize = blockSize;
    m_rounds = std::max(keyLength, blockSize) / 4 + 6;
    m_initialChain.fill(0);
    if (chain)
        std::memcpy(m_initialChain.data(), chain, static_cast<std::size_t>(blockSize));
    ResetChain();
    for (std::size_t i = 0; i < static_cast<std::size_t>(keyLength / 4); ++i)
        m_keyWords[i] = bigEndian32(key + 4 * i);
    expandKey();
    m_keyInitialised = true;
}

// FIPS-197 5.2, and the Rijndael proposal 4.3.1 for as many words as the wide blocks take.
void AESCpp::expandKey()
{
    const auto keyWords = static_cast<std::size_t>(m_keyLength / 4);
    const auto columns = static_cast<std::size_t>(m_blockSize / 4);
    const auto rounds = static_cast<std::size_t>(m_rounds);
    std::array<std::uint32_t, 120> words{};
    for (std::size_t i = 0; i < (rounds + 1) * columns; ++i) {
        if (i < keyWords) {
            words[i] = m_keyWords[i];
        } else {
            std::uint32_t word = words[i - 1];
            if (i % keyWords == 0)
                word = substitutedWord(word << 8 | word >> 24) ^
                       static_cast<std::uint32_t>(rijndael::kRoundConstant[i / keyWords - 1]) << 24;
            else if (keyWords > 6 && i % keyWords == 4)
                word = substitutedWord(word);
            words[i] = words[i - keyWords] ^ word;
        }
        const std::size_t row = i / columns;
        const bool outermost = row == 0 || row == rounds;
        m_encryptionRoundKeys[row][i % columns] = words[i];
        m_decryptionRoundKeys[rounds - row][i % columns] = outermost ? words[i] : inverseMixed(words[i]);
    }
}

void AESCpp::ResetChain()
{
    m_chain = m_initialChain;
}

void AESCpp::EncryptBlock(const unsigned char* in, unsigned char* out) const
{
    const auto rounds = static_cast<std::size_t>(m_rounds);
    if (!m_keyInitialised)
        return;
    if (m_blockSize == 16)
        transformSixteen<1>(kForward, m_encryptionRoundKeys, rounds, in, out);
    else
        transformAnyBlock(kForward, m_encryptionRoundKeys, rounds, static_cast<std::size_t>(m_blockSize / 4), in,
                          out);
}

void AESCpp::DecryptBlock(const unsigned char* in, unsigned char* out) const
{
    const auto rounds = static_cast<std::size_t>(m_rounds);
    if (!m_keyInitialised)
        return;
    if (m_blockSize == 16)
        transformSixteen<3>(kInverse, m_decryptionRoundKeys, rounds, in, out);
    else
        transformAnyBlock(kInverse, m_decryptionRoundKeys, rounds, static_cast<std::size_t>(m_blockSize / 4), in,
                          out);
}

bool AESCpp::accepts(unsigned n) const
{
    return m_keyInitialised && n % static_cast<unsigned>(m_blockSize) == 0;
}

void AESCpp::Encrypt(const unsigned char* in, unsigned char* out, unsigned n, int mode)
{
    if (!accepts(n))
        return;
    const auto size = static_cast<unsigned>(m_blockSize);
    for (; n > 0; n -= size, in += size, out += size) {
        if (mode == Cbc)
            encryptCbcBlock(in, out);
        else if (mode == Cfb)
            encryptCfbBlock(in, out);
        else
            EncryptBlock(in, out);
    }
}

void AESCpp::Decrypt(const unsigned char* in, unsigned char* out, unsigned n, int mode)
{
    if (!accepts(n))
        return;
    const auto size = static_cast<unsigned>(m_blockSize);
    for (; n > 0; n -= size, in += size, out += size) {
        if (mode == Cbc)
            decryptCbcBlock(in, out);
        else if (mode == Cfb)
            decryptCfbBlock(in, out);
        else
            DecryptBlock(in, out);
    }
}

void AESCpp::encryptCbcBlock(const unsigned char* in, unsigned char* out)
{
    const auto size = static_cast<std::size_t>(m_blockSize);
    addBlock(m_chain.data(), in, size);
    EncryptBlock(m_chain.data(), m_chain.data());
    std::memcpy(out, m_chain.data(), size);
}

void AESCpp::encryptCfbBlock(const unsigned char* in, unsigned char* out)
{
    const auto size = static_cast<std::size_t>(m_blockSize);
    EncryptBlock(m_chain.data(), m_chain.data());
    addBlock(m_chain.data(), in, size);
    std::memcpy(out, m_chain.data(), size);
}

// Both decryptions keep the input before they write: `out` may be `in`, and the next block is chained to it.

void AESCpp::decryptCbcBlock(const unsigned char* in, unsigned char* out)
{
    const auto size = static_cast<std::size_t>(m_blockSize);
    Block input;
    std::memcpy(input.data(), in, size);
    DecryptBlock(in, out);
    addBlock(out, m_chain.data(), size);
    std::memcpy(m_chain.data(), input.data(), size);
}

void AESCpp::decryptCfbBlock(const unsigned char* in, unsigned char* out)
{
    const auto size = static_cast<std::size_t>(m_blockSize);
    Block input;
    std::memcpy(input.data(), in, size);
    EncryptBlock(m_chain.data(), out);
    addBlock(out, input.data(), size);
    std::memcpy(m_chain.data(), input.data(), size);
}
