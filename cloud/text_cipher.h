#pragma once

#include <QByteArray>
#include <QString>

// The cipher of the cloud service's texts: AES-128 in ECB with PKCS#7 padding and one key, fixed in client and
// service, then base64. It makes client and service understand each other; it keeps nothing secret. Texts have up to
// 1 GiB of UTF-8. Any thread, no state but a line in the debug log.

/// @param utf8  bytes to encipher. Everything from the first zero byte on is enciphered as zeros, though it counts.
/// @return      base64 of the ciphertext, a multiple of 4 characters; 24 of them for no bytes
QByteArray aesEncryptToBase64(const QByteArray& utf8);

/// @return  the deciphered bytes up to the first zero byte; empty for a text that decodes to nothing and for a wrong
///          padding, which the debug log names
/// Bytes that are no whole number of blocks are taken for the plaintext themselves. A last byte that cannot be the
/// length of a padding (0, 0x80 and above, more than there are bytes) belongs to the text; 17 to 127 can be one.
QByteArray aesDecryptBase64Text(const QByteArray& text);

QString encryptText(const QString& text);
/// The inverse of encryptText() but for what UTF-8 does not carry, zero characters and a byte order mark in front.
QString decryptText(const QString& text);

/// For a form's value: "-" stands for "+". "/" and "=" stay as they are; the service takes them so.
QString encryptTextUrlSafe(const QString& text);
QString decryptTextUrlSafe(const QString& text);
