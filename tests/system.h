#pragma once

#include <QString>

/// What tests ask of the system past Qt: Linux in system_linux.cpp, Windows in system_windows.cpp.

#ifdef Q_OS_WIN
constexpr bool kOnWindows = true;
#else
constexpr bool kOnWindows = false;
#endif

constexpr qint64 kNoLimit = -1;

/// Files of this process may not grow beyond so many bytes, as on a full disk, for root as well.
/// @return  false: the system has no such limit, as Windows has none
bool limitFiles(qint64 bytes);

/// The most memory that this process has had so far.
qint64 peakMegabytes();

/// Bytes that this process holds of the heap now.
/// @return  0 where the system does not tell, as on Windows
qint64 memoryInUse();

/// Files, pipes and what else the system lends this process, but for sockets on Linux: umockdev 0.17 forgets one when a
/// device vanishes just before it is opened. What libusb opens for a device or a context is among the others as well.
int openHandles();

/// @return  0 where the system does not tell it cheaply, as on Windows
int runningThreads();

/// Makes a pipe among the files, into which nobody writes.
/// @return  false: the system keeps them elsewhere, as Windows does
bool makePipe(const QString& path);

/// Puts a root certificate among those that this person trusts, on Linux that this process does, for as long as it
/// lives. To be done before anything in this process has asked for TLS: Windows' roots are read once.
class TrustedRoot
{
public:
    explicit TrustedRoot(QByteArray der);
    ~TrustedRoot();
    TrustedRoot(const TrustedRoot&) = delete;
    TrustedRoot& operator=(const TrustedRoot&) = delete;

private:
    const QByteArray m_der;
};

/// Watches whether a file of a folder is opened, by whomever.
class OpenWatch
{
public:
    explicit OpenWatch(const QString& folder);
    ~OpenWatch();
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;

    bool canTell() const { return m_handle >= 0; } ///< never on Windows
    bool hasSeen() const;                          ///< since it was asked last

private:
    int m_handle = -1;
};
