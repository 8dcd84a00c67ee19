#include "app/globals/log_handlers.h"

#include <QDateTime>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QTextStream>

#include <cstdio>
#include <cstdlib>

namespace {

const char* levelLabel(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "Debug:";
    case QtWarningMsg:
        return "Warning:";
    case QtCriticalMsg:
        return "Critical:";
    case QtFatalMsg:
        return "Fatal:";
    default:
        return "";
    }
}

QString formatRecord(const QMessageLogContext& context, const QString& message)
{
    // Through the local encoding and back as UTF-8. Where the two differ, readers of the log know the altered text
    // (docs/architecture.md, "Kept behaviour").
    const QString text = QString::fromUtf8(message.toLocal8Bit());
    const QString dateTime = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss ddd"));
    // All arguments at once, so that a "%2" inside the message is not taken for a place to fill.
    return QStringLiteral("Message:%1 File:%2  Line:%3  Function:%4  DateTime:%5")
        .arg(text, QString::fromUtf8(context.file), QString::number(context.line),
             QString::fromUtf8(context.function), dateTime);
}

/// @return the label of the type, or null for a type that the console does not know
const char* consoleLabel(QtMsgType type)
{
    switch (type) {
    case QtInfoMsg:
        return "Info:";
    case QtDebugMsg:
    case QtWarningMsg:
    case QtCriticalMsg:
    case QtFatalMsg:
        return levelLabel(type);
    }
    return nullptr;
}

void printToConsole(QtMsgType type, const QMessageLogContext& context, const QString& message, bool withContext)
{
    const char* label = consoleLabel(type);
    if (!label)
        return;
    const QByteArray text = message.toLocal8Bit();
    if (withContext) {
        std::fprintf(stderr, "%s %s (%s:%u, %s)\n", label, text.constData(), context.file ? context.file : "",
                     static_cast<unsigned>(context.line), context.function ? context.function : "");
    } else {
        std::fprintf(stderr, "%s %s\n", label, text.constData());
    }
    if (type == QtFatalMsg)
        std::abort();
}

} // namespace

void fileMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    static QMutex mutex;
    const QMutexLocker lock(&mutex);

    // The log's readers expect records without a level (docs/architecture.md, "Kept behaviour").
    Q_UNUSED(levelLabel(type))
    const QString record = formatRecord(context, message);

    QFile file(QString::fromLatin1(kLogFileName));
    // Writing to a file that is not open makes Qt warn, and the warning would come back here with the mutex held.
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append))
        return;
    QTextStream stream(&file);
    stream << record << "\r\n";
    stream.flush();
}

void consoleMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    printToConsole(type, context, message, type == QtCriticalMsg || type == QtFatalMsg);
}

void verboseConsoleMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    printToConsole(type, context, message, true);
}
