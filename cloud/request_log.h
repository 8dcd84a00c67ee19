#pragma once

#include <QString>

/// Logs a text of a call or reply through qDebug; of one that nobody would read to its end, the beginning.
void logRequestText(const QString& text);
