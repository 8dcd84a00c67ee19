#pragma once

#include <QString>

/// Trace hooks: windows hand their progress to them. They do nothing but hold a debugger's breakpoint. Any thread.
void trace(const QString& text);
void trace(int value);

/// Logs a line of forty hyphens through qDebug, so under the category "default".
void logSeparator();
