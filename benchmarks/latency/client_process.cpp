#include "client_process.h"

#include "figures.h"
#include "first_frame_port.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>

#include <ctime>

namespace {

constexpr int kLimitMs = 20000;
constexpr int kSettleMs = 5000;
const QColor kPaper = Qt::white;

/// A place of the screen that the page is on and the connecting dialog is not. The window manager puts the first window
/// where the screen is free; SCREEN_SIZE makes the screen hardly larger than the window.
bool isPaperShown()
{
    QScreen& screen = *QGuiApplication::primaryScreen();
    const QRect room = screen.geometry();
    const QPixmap dot = screen.grabWindow(0, room.width() / 2, room.height() * 4 / 5, 1, 1);
    return dot.toImage().pixelColor(0, 0) == kPaper;
}

/// The client, with settings and drafts of its own.
class Client
{
public:
    Client(const QStringList& options, bool plugged)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder.path());
        environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder.path());
        environment.remove(QStringLiteral("QT_XCB_GL_INTEGRATION")); // of tests/with_display; a desktop has it
        environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
        m_process.setProcessEnvironment(environment);
        m_process.setStandardInputFile(QProcess::nullDevice());
        if (plugged) {
            m_process.start(QStringLiteral("umockdev-wrapper"),
                            QStringList{VIRTUAL_USB_PROGRAM} + options + QStringList{CLIENT_PROGRAM});
        } else {
            m_process.start(CLIENT_PROGRAM, options);
        }
    }
    ~Client()
    {
        m_process.terminate();
        m_process.waitForFinished();
        waitUntil([] { return !isPaperShown(); }, kLimitMs);
    }
    Q_DISABLE_COPY_MOVE(Client)

    bool logs(const QByteArray& text)
    {
        return waitUntil(
            [&] {
                m_log += m_process.readAllStandardError();
                return m_log.contains(text);
            },
            kLimitMs);
    }

    /// Of the client, which may be a child of what was started. 0: not found.
    qint64 id() const
    {
        const QString client = QFileInfo(CLIENT_PROGRAM).canonicalFilePath();
        for (const QString& process : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
            if (process.toLongLong() > m_process.processId() - 1 &&
                QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(process)) == client)
                return process.toLongLong();
        }
        return 0;
    }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_log;
};

bool waitForPaper()
{
    return waitUntil(isPaperShown, kLimitMs);
}

/// A line of the process's status that counts kilobytes. Megabytes.
double megabytes(qint64 process, const QByteArray& line)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const int at = text.indexOf('\n' + line + ':');
    return at < 0 ? 0 : text.mid(at + line.size() + 2).simplified().split(' ').constFirst().toDouble() / 1024;
}

} // namespace

void measureStart(int runs)
{
    Figures row{QStringLiteral("program start -> page on the screen"), QStringLiteral("ms"), {}, 100};
    for (int run = -1; run < runs; ++run) { // the first one reads the libraries from the disk
        const qint64 begin = steadyNs();
        const Client client({}, false);
        if (waitForPaper() && run >= 0)
            row.runs += static_cast<double>(steadyNs() - begin) / 1e6;
        waitFor(500);
    }
    print(row);
}

void measureReady(int runs)
{
    Figures row{QStringLiteral("page on the screen -> printing possible, K2"), QStringLiteral("s"), {}, 2.1};
    for (int run = 0; run < runs; ++run) {
        Client client({}, true);
        const bool shown = waitForPaper();
        const qint64 begin = steadyNs();
        if (shown && client.logs("pkgData:Quillbox_K2"))
            row.runs += static_cast<double>(steadyNs() - begin) / 1e9;
    }
    print(row);
}

void measureIdle(bool plugged, int seconds)
{
    const QString state = plugged ? QStringLiteral("plugged in") : QStringLiteral("unplugged");
    Figures resident{QStringLiteral("  resident memory, ") + state, QStringLiteral("MB"), {}, 103};
    Figures own{QStringLiteral("    of it the process's own, ") + state, QStringLiteral("MB"), {}, 20};
    const Client client({}, plugged);
    waitForPaper();
    waitFor(kSettleMs);
    const qint64 process = client.id();
    clockid_t clock;
    if (process == 0 || clock_getcpuclockid(static_cast<pid_t>(process), &clock) != 0)
        return print(resident);
    print(idleShare(QStringLiteral("idle, ") + state, clock, seconds));
    resident.runs += megabytes(process, "VmRSS");
    own.runs += megabytes(process, "RssAnon");
    print(resident);
    print(own);
}
