#include "cloud/base64.h"
#include "cloud/text_cipher.h"
#include "simulator/cloud/service_crypto.h"

// Any bytes decode and decipher, and what was encoded or enciphered comes back, here and at the service.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    static constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    const QByteArray decoded = base64Decode(input);
    const std::string letters = input.toStdString().substr(0, input.toStdString().find_first_not_of(kLetters));
    Q_ASSERT(decoded == QByteArray::fromBase64(QByteArray::fromStdString(letters)));
    Q_ASSERT(base64Encode(bytes, input.size()) == input.toBase64());

    const QByteArray text(input.constData()); // to the first zero byte
    const QString unicode = QString::fromUtf8(text);
    Q_ASSERT(aesDecryptBase64Text(aesEncryptToBase64(input)) == text);
    Q_ASSERT(aesEncryptToBase64(text).replace('+', '-') == serviceEncipher(text));
    Q_ASSERT(unicode.startsWith(QChar::ByteOrderMark) || decryptTextUrlSafe(encryptTextUrlSafe(unicode)) == unicode);

    const QByteArray deciphered = aesDecryptBase64Text(input);
    const auto byService = serviceDecipher(decoded.toBase64());
    Q_ASSERT(byService ? deciphered == byService->constData()
                       : decoded.size() % 16 == 0 || decoded.startsWith(deciphered));
    return 0;
}
