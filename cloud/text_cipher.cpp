#include "cloud/text_cipher.h"

#include "cloud/aes_cpp.h"
#include "cloud/base64.h"

#include <QtDebug>

#include <algorithm>

namespace {

constexpr int kBlockSize = 16;                ///< bytes, of block and key
constexpr char kKey[] = "9b07d2e4c1a86f35";   ///< its characters are the key, not the hexadecimal number
constexpr char kChain[] = "qwmzplokxnvbtyha"; ///< agreed with the service, without effect in ECB

unsigned char* bytesOf(QByteArray& bytes)
{
    return reinterpret_cast<unsigned char*>(bytes.data());
}

AESCpp serviceCipher()
{
    AESCpp cipher;
    cipher.MakeKey(reinterpret_cast<const unsigned char*>(kKey), reinterpret_cast<const unsigned char*>(kChain),
                   kBlockSize, kBlockSize);
    return cipher;
}

/// Bytes of padding at the end, as the last byte gives them; 0 when it cannot be a length of padding.
int paddingLength(const QByteArray& bytes)
{
    const auto last = static_cast<signed char>(bytes.back());
    return last > 0 && last <= bytes.size() ? last : 0;
}

/// Cuts the padding off.
/// @param bytes  one at least; emptied when the bytes of the padding differ
void stripPadding(QByteArray& bytes)
{
    const int padding = paddingLength(bytes);
    const char last = bytes.back();
    if (std::any_of(bytes.cend() - padding, bytes.cend(), [last](char byte) { return byte != last; })) {
        qDebug().noquote() << QStringLiteral("去填充失败！解密出错！！");
        bytes.clear();
    } else {
        bytes.chop(padding);
    }
}

} // namespace

QByteArray aesEncryptToBase64(const QByteArray& utf8)
{
    const int padded = (utf8.size() / kBlockSize + 1) * kBlockSize;
    QByteArray buffer(padded, '\0');
    // The service counts on texts that end at their first zero byte; the padding still follows the full length.
    std::copy(utf8.cbegin(), std::find(utf8.cbegin(), utf8.cend(), '\0'), buffer.begin());
    std::fill(buffer.begin() + utf8.size(), buffer.end(), static_cast<char>(padded - utf8.size()));
    serviceCipher().Encrypt(bytesOf(buffer), bytesOf(buffer), static_cast<unsigned>(padded), AESCpp::Ecb);
    return base64Encode(bytesOf(buffer), padded);
}

QByteArray aesDecryptBase64Text(const QByteArray& text)
{
    QByteArray bytes = base64Decode(text);
    if (bytes.isEmpty())
        return {};
    serviceCipher().Decrypt(bytesOf(bytes), bytesOf(bytes), static_cast<unsigned>(bytes.size()), AESCpp::Ecb);
    stripPadding(bytes);
    bytes.truncate(static_cast<int>(std::find(bytes.cbegin(), bytes.cend(), '\0') - bytes.cbegin()));
    return bytes;
}

QString encryptText(const QString& text)
{
    return QString::fromUtf8(aesEncryptToBase64(text.toUtf8()));
}

QString decryptText(const QString& text)
{
    return QString::fromUtf8(aesDecryptBase64Text(text.toUtf8()));
}

QString encryptTextUrlSafe(const QString& text)
{
    return encryptText(text).replace(QLatin1Char('+'), QLatin1Char('-'));
}

QString decryptTextUrlSafe(const QString& text)
{
    return decryptText(QString(text).replace(QLatin1Char('-'), QLatin1Char('+')));
}
