#include "simulator/cloud/service_crypto.h"

#include <openssl/evp.h>

#include <memory>

namespace {

constexpr int kBlockBytes = 16;
/// The sixteen characters themselves are the key; they are not hexadecimal.
constexpr unsigned char kKey[] = "9b07d2e4c1a86f35";

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

const unsigned char* bytesOf(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

std::optional<QByteArray> cipher(const QByteArray& in, bool encrypt)
{
    const CipherContext context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    QByteArray out(in.size() + kBlockBytes, '\0');
    auto* to = reinterpret_cast<unsigned char*>(out.data());
    int written = 0;
    int last = 0;
    if (EVP_CipherInit_ex(context.get(), EVP_aes_128_ecb(), nullptr, kKey, nullptr, encrypt ? 1 : 0) != 1 ||
        EVP_CipherUpdate(context.get(), to, &written, bytesOf(in), in.size()) != 1 ||
        EVP_CipherFinal_ex(context.get(), to + written, &last) != 1)
        return std::nullopt;
    out.resize(written + last);
    return out;
}

QByteArray base64(const QByteArray& bytes)
{
    QByteArray text(4 * ((bytes.size() + 2) / 3) + 1, '\0'); // and the zero that OpenSSL writes behind it
    text.resize(EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), bytesOf(bytes), bytes.size()));
    return text;
}

std::optional<QByteArray> fromBase64(const QByteArray& text)
{
    QByteArray bytes(text.size() / 4 * 3 + 3, '\0');
    const int size = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()), bytesOf(text), text.size());
    if (size < 0 || text.isEmpty())
        return std::nullopt;
    const int padding = text.endsWith("==") ? 2 : text.endsWith('=') ? 1 : 0; // counted by OpenSSL as zero bytes
    bytes.resize(size - padding);
    return bytes;
}

} // namespace

QByteArray serviceEncipher(const QByteArray& text)
{
    return base64(cipher(text, true).value()).replace('+', '-');
}

std::optional<QByteArray> serviceDecipher(const QByteArray& cipherText)
{
    const std::optional<QByteArray> bytes = fromBase64(QByteArray(cipherText).replace('-', '+'));
    return bytes ? cipher(*bytes, false) : std::nullopt;
}

QByteArray md5Hex(const QByteArray& bytes)
{
    QByteArray digest(EVP_MAX_MD_SIZE, '\0');
    unsigned int size = 0;
    EVP_Digest(bytes.constData(), static_cast<size_t>(bytes.size()), reinterpret_cast<unsigned char*>(digest.data()),
               &size, EVP_md5(), nullptr);
    return digest.left(static_cast<int>(size)).toHex();
}
