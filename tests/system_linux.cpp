#include "tests/files.h"
#include "tests/system.h"

#include <QDir>
#include <QRegularExpression>
#include <QSslConfiguration>

#include <csignal>
#include <malloc.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

bool limitFiles(qint64 bytes)
{
    std::signal(SIGXFSZ, SIG_IGN); // so that write() fails
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes == kNoLimit ? limit.rlim_max : static_cast<rlim_t>(bytes);
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

qint64 peakMegabytes()
{
    const QString status = QString::fromLatin1(readFile("/proc/self/status"));
    return QRegularExpression("VmHWM:\\s*(\\d+)").match(status).captured(1).toLongLong() / 1024;
}

/// A sanitizer's own, which stands in the place of the system's.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

qint64 memoryInUse()
{
    if (__sanitizer_get_current_allocated_bytes)
        return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
    const auto heap = mallinfo2();
    return static_cast<qint64>(heap.uordblks + heap.hblkhd);
}

int openHandles()
{
    int count = 0;
    for (const QFileInfo& handle : QDir("/proc/self/fd").entryInfoList(QDir::AllEntries | QDir::System))
        count += handle.symLinkTarget().contains("socket:") ? 0 : 1;
    return count;
}

int runningThreads()
{
    return QDir("/proc/self/task").entryList(QDir::NoDotAndDotDot | QDir::Dirs).size();
}

bool makePipe(const QString& path)
{
    return mkfifo(qPrintable(path), 0600) == 0;
}

TrustedRoot::TrustedRoot(QByteArray der)
    : m_der(std::move(der))
{
    auto configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificate(QSslCertificate(m_der, QSsl::Der));
    QSslConfiguration::setDefaultConfiguration(configuration);
}

TrustedRoot::~TrustedRoot()
{
    auto configuration = QSslConfiguration::defaultConfiguration();
    QList<QSslCertificate> roots = configuration.caCertificates();
    roots.removeAll(QSslCertificate(m_der, QSsl::Der));
    configuration.setCaCertificates(roots);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

OpenWatch::OpenWatch(const QString& folder)
    : m_handle(inotify_init1(IN_NONBLOCK))
{
    inotify_add_watch(m_handle, QFile::encodeName(folder), IN_OPEN);
}

OpenWatch::~OpenWatch()
{
    close(m_handle);
}

bool OpenWatch::hasSeen() const
{
    char opened[4096];
    return read(m_handle, opened, sizeof opened) >= 0;
}
