#pragma once

#include <QString>

/// Logs a text of a call or reply through qDebug, on one line and escaped (logText()), or its beginning when nobody
/// would read it to the end.
void logRequestText(const QString& text);
