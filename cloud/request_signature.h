#pragma once

#include <QString>

/// The signature of a call, which proves no secrecy: the key is in every client.
/// @param message    the body behind its "msg="
/// @param timestamp  seconds since 1970-01-01 UTC, decimal
/// @return           MD5, 32 lower-case hexadecimal digits
QString requestSignature(const QString& userId, const QString& message, const QString& timestamp);
