#pragma once

#include <QByteArray>

// Base64 of RFC 4648, chapter 4. Written out for the rules of the decoder: QByteArray's own steps over foreign bytes,
// the service's stops at them. Any thread, no state.

/// @param bytes   `length` bytes; may be null when `length` is 0
/// @param length  0..1.5 GiB, what a QByteArray can hold of the text
/// @return        4 characters for every 3 bytes or part of them, padded with "=", without line breaks
QByteArray base64Encode(const unsigned char* bytes, int length);

/// Decodes up to the first character that is no letter of ASCII, digit, "+" or "/": "=", a line break and "-" end the
/// text. A last group of 2 or 3 characters gives 1 or 2 bytes, a single character none.
QByteArray base64Decode(const QByteArray& text);
