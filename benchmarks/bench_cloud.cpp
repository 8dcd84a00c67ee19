#include "benchmarks/contest.h"
#include "cloud/base64.h"
#include "cloud/text_cipher.h"

#include <modp_b64.h>
#include <openssl/evp.h>

#include <memory>
#include <random>

// What the service's texts cost before they are sent and behind their arrival: the cipher and its base64.

namespace {

constexpr int kMegabyte = 1 << 20;
constexpr int kKilobyte = 1 << 10;
constexpr int kBlockSize = 16;
constexpr int kTextsACall = 64; ///< one is too short for the clock

using Function = QByteArray (*)(const QByteArray& in);

unsigned char* bytesOf(QByteArray& bytes)
{
    return reinterpret_cast<unsigned char*>(bytes.data());
}

const unsigned char* bytesOf(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

QByteArray encode(const QByteArray& bytes)
{
    return base64Encode(bytesOf(bytes), bytes.size());
}

QByteArray modpEncode(const QByteArray& bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    QByteArray text(static_cast<int>(modp_b64_encode_len(size)), Qt::Uninitialized);
    text.truncate(static_cast<int>(modp_b64_encode(text.data(), bytes.constData(), size)));
    return text;
}

QByteArray modpDecode(const QByteArray& text)
{
    const auto size = static_cast<std::size_t>(text.size());
    QByteArray bytes(static_cast<int>(modp_b64_decode_len(size)), Qt::Uninitialized);
    bytes.truncate(static_cast<int>(modp_b64_decode(bytes.data(), text.constData(), size)));
    return bytes;
}

/// OpenSSL's AES with the key of the service, set up once.
template <bool encrypt>
QByteArray opensslCrypt(const QByteArray& in)
{
    static const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                         EVP_CIPHER_CTX_free);
    static const QByteArray key = "9b07d2e4c1a86f35";
    static const bool ready =
        EVP_CipherInit_ex(context.get(), EVP_aes_128_ecb(), nullptr, bytesOf(key), nullptr, encrypt ? 1 : 0) == 1;
    QByteArray out(in.size() + kBlockSize, Qt::Uninitialized);
    int size = 0;
    int last = 0;
    if (!ready || EVP_CipherInit_ex(context.get(), nullptr, nullptr, nullptr, nullptr, -1) != 1 ||
        EVP_CipherUpdate(context.get(), bytesOf(out), &size, bytesOf(in), in.size()) != 1 ||
        EVP_CipherFinal_ex(context.get(), bytesOf(out) + size, &last) != 1)
        qFatal("OpenSSL refuses");
    out.truncate(size + last);
    return out;
}

QByteArray opensslEncipher(const QByteArray& text)
{
    const QByteArray bytes = opensslCrypt<true>(text);
    QByteArray encoded(static_cast<int>(modp_b64_encode_len(bytes.size())), Qt::Uninitialized);
    encoded.truncate(EVP_EncodeBlock(bytesOf(encoded), bytesOf(bytes), bytes.size()));
    return encoded;
}

QByteArray opensslDecipher(const QByteArray& text)
{
    QByteArray bytes(text.size(), Qt::Uninitialized);
    const int size = EVP_DecodeBlock(bytesOf(bytes), bytesOf(text), text.size());
    bytes.truncate(size - text.count('=')); // which OpenSSL decodes to zero bytes
    return opensslCrypt<false>(bytes);
}

/// Adds the contest when both sides make the same of `in`; the time is that of one of its bytes.
void add(const char* operation, const char* peer, const QByteArray& in, int times, Function ours, Function theirs)
{
    if (ours(in) != theirs(in))
        qFatal("%s: the results differ", operation);
    const auto repeated = [in, times](Function function) {
        return [=] {
            for (int i = 0; i < times; ++i)
                function(in);
        };
    };
    addContest({operation, peer, static_cast<double>(in.size()) * times, repeated(ours), repeated(theirs)});
}

QByteArray noise(int size)
{
    std::mt19937 random(1);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = static_cast<char>(random() % 255 + 1); // a text ends at its first zero byte
    return bytes;
}

} // namespace

int main(int argc, char** argv)
{
    const QByteArray bytes = noise(kMegabyte);
    const QByteArray text = noise(kKilobyte);
    add("base64, 1 MB encoded", "modp_b64", bytes, 1, encode, modpEncode);
    add("base64, 1 MB decoded", "modp_b64", noise(kMegabyte / 4 * 3).toBase64(), 1, base64Decode, modpDecode);
    add("text cipher, 1 KB enciphered", "OpenSSL", text, kTextsACall, aesEncryptToBase64, opensslEncipher);
    add("text cipher, 1 KB deciphered", "OpenSSL", opensslEncipher(text), kTextsACall, aesDecryptBase64Text,
        opensslDecipher);
    return runContests(argc, argv);
}
