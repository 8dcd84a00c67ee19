#pragma once

#include <QString>

/// MD5 of the text's UTF-8 bytes as 32 lower-case hexadecimal digits (RFC 1321), of passwords and signatures alike.
QString md5Text(const QString& text);
