#pragma once

#include <QString>

/// Trace hooks: windows hand their progress to them. They do nothing; a debugger's breakpoint is their use.
/// Any thread.
void trace(const QString& text);
void trace(int value);

/// Logs a line of forty hyphens through qDebug, so under the category "default".
void logSeparator();
