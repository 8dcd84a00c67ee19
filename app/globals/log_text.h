#pragma once

#include <QString>

/// A text from elsewhere as the log may quote it: on one line, with nothing that a terminal obeys. Control
/// characters, breaks of line and paragraph, and what turns the direction of writing stand there as escapes (\n,
/// \u202e), a backslash as two, so that an escape can be told from what looks like one. All that can be seen stays as
/// it is. Any thread.
QString logText(const QString& text);
