#include "client_process.h"
#include "client_window.h"
#include "figures.h"

#include "app/globals/settings.h"
#include "app/start_up.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

void dropLog(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

/// What a person feels: see the rows. On an X server with a window manager and nothing else, its screen hardly larger than
/// the client's window (SCREEN_SIZE=640x520 tests/with_display), and nothing else running.
int main(int argc, char** argv)
{
    const QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
    setUpHighDpi();
    const QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures what a person waits for, and what a client costs that "
                                                    "nobody touches."));
    parser.addHelpOption();
    const QCommandLineOption runs(QStringLiteral("runs"), QStringLiteral("Of each row."), QStringLiteral("N"),
                                  QStringLiteral("10"));
    const QCommandLineOption idle(QStringLiteral("idle"), QStringLiteral("Seconds of idleness that are measured."),
                                  QStringLiteral("S"), QStringLiteral("60"));
    const QCommandLineOption only(QStringLiteral("only"), QStringLiteral("start, ready, clicks or idle."),
                                  QStringLiteral("rows"));
    parser.addOptions({runs, idle, only});
    parser.process(app);
    const int count = qMax(1, parser.value(runs).toInt());
    const auto asked = [&](const char* rows) {
        return !parser.isSet(only) || parser.value(only) == QLatin1String(rows);
    };

    QApplication::setQuitOnLastWindowClosed(false);
    qInstallMessageHandler(dropLog);
    const int seconds = qMax(3, parser.value(idle).toInt());
    printHead();
    if (asked("start"))
        measureStart(count);
    if (asked("ready"))
        measureReady(qMin(count, 3));
    for (const bool plugged : {true, false}) {
        if (asked("idle"))
            measureIdle(plugged, seconds);
    }
    QSettings settings(kOrganization, kApplication);
    startUp(settings);
    if (asked("clicks"))
        measureClicks(count);
    if (asked("idle"))
        measureIdleWindow(seconds);
    return 0;
}
