#pragma once

#include <QByteArray>

#include <optional>

// What the service does to texts, by OpenSSL, so that a fault of the client's own cipher is seen. Any thread.

/// Enciphers by AES-128 in ECB mode with PKCS#7 padding; base64 in which "+" is "-".
QByteArray serviceEncipher(const QByteArray& text);

/// The way back; nothing where the base64, the length or the padding is wrong.
std::optional<QByteArray> serviceDecipher(const QByteArray& cipherText);

/// 32 lower-case hexadecimal digits.
QByteArray md5Hex(const QByteArray& bytes);
