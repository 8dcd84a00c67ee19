#pragma once

#include <array>
#include <cstdint>

/// Rijndael with keys and blocks of 16, 24 or 32 bytes; with blocks of 16 it is AES (FIPS-197). A call that cannot be
/// done does nothing and reports nothing; each one says when.
///
/// Neither the time nor the cache lines taken are independent of key and data. One thread at a time; copies are
/// independent of each other.
class AESCpp
{
public:
    /// Chaining of Encrypt and Decrypt (SP 800-38A); any other number is ECB.
    enum Mode {
        Ecb = 0,
        Cbc = 1,
        Cfb = 2, ///< in whole blocks: with blocks of 16 bytes this is CFB128
    };

    /// Why Encrypt and Decrypt refuse. Nothing reports them: the sizes are the caller's to know.
    static constexpr char kNotInitialised[] = "Object not Initialized";
    static constexpr char kNotMultiple[] = "Data not multiple of Block Size";

    AESCpp() = default;
    AESCpp(const AESCpp&) = default;
    AESCpp& operator=(const AESCpp&) = default;
    virtual ~AESCpp();

    /// Takes a key and starts the chain anew.
    /// @param key        keyLength bytes
    /// @param chain      blockSize bytes, the initialisation vector; null stands for zeros
    /// @param keyLength  bytes: 16, 24 or 32
    /// @param blockSize  bytes: 16, 24 or 32
    /// A null key or another size leaves the object as it was, with the key that it had.
    void MakeKey(const unsigned char* key, const unsigned char* chain, int keyLength, int blockSize);

    /// Goes back to the chain that MakeKey was given.
    void ResetChain();

    /// One block of blockSize bytes, without chain. `out` may be `in`. Nothing is written before MakeKey.
    void EncryptBlock(const unsigned char* in, unsigned char* out) const;
    void DecryptBlock(const unsigned char* in, unsigned char* out) const;

    /// @param in    n bytes
    /// @param out   n bytes; either `in` itself or apart from it
    /// @param n     bytes, a multiple of blockSize. Before MakeKey, for 0 and for other numbers nothing is written.
    /// @param mode  a Mode. The chain of CBC and CFB runs on from call to call.
    void Encrypt(const unsigned char* in, unsigned char* out, unsigned n, int mode);
    void Decrypt(const unsigned char* in, unsigned char* out, unsigned n, int mode);

private:
    using RoundKeys = std::array<std::array<std::uint32_t, 8>, 15>; ///< a row a round, a word a column
    using Block = std::array<unsigned char, 32>;                    ///< the first m_blockSize bytes count

    void expandKey();
    bool accepts(unsigned n) const;
    void encryptCbcBlock(const unsigned char* in, unsigned char* out);
    void decryptCbcBlock(const unsigned char* in, unsigned char* out);
    void encryptCfbBlock(const unsigned char* in, unsigned char* out);
    void decryptCfbBlock(const unsigned char* in, unsigned char* out);

    bool m_keyInitialised = false;
    RoundKeys m_encryptionRoundKeys{};
    RoundKeys m_decryptionRoundKeys{}; ///< of the equivalent inverse cipher (FIPS-197 5.3.5)
    int m_keyLength = 0;               ///< bytes
    int m_blockSize = 0;               ///< bytes
    int m_rounds = 0;
    Block m_initialChain{};
    Block m_chain{};
    std::array<std::uint32_t, 8> m_keyWords{}; ///< big-endian
};
