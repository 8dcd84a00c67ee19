#pragma once

#include <QString>

// The digests that the service asks for: MD5 (RFC 1321) of UTF-8 bytes, as 32 lower-case hexadecimal digits. Any
// thread.

/// Digest of a text, which a password travels as.
QString md5Text(const QString& text);

/// The signature of a call, which proves no secrecy: the key is in every client.
/// @param message    the body behind its "msg="
/// @param timestamp  seconds since 1970-01-01 UTC, decimal
QString requestSignature(const QString& userId, const QString& message, const QString& timestamp);
