#pragma once

#include <QString>
#include <QtGlobal>

// Message handlers for qInstallMessageHandler. The client installs none of them by itself. Any thread may log.

/// File name of the log, relative to the working directory.
constexpr char kLogFileName[] = "quillbox_log.txt";

/// Appends one record, ended by CR LF, to the log file; the file is opened and closed for every message and grows
/// without limit. Records of several threads never mix. A file that cannot be opened is passed over in silence. A
/// fatal message does not end the process here.
void fileMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message);

/// Writes to standard error, with the context for critical and fatal messages only. Fatal ends by abort().
void consoleMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message);

/// Writes to standard error, always with the context. Fatal ends by abort().
void verboseConsoleMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message);
