#pragma once

#include <QDateTime>
#include <QLibrary>
#include <QPair>
#include <QString>

#include <mutex>

struct port;

/// A library of ports that is loaded at run time: one file with the one export io_port_creator, in C's own calling
/// convention. Loaded when a port is first asked for, and never unloaded by this class.
class PortLibrary
{
public:
    /// @param path  of the file, absolute, so that it is looked for nowhere else
    explicit PortLibrary(const QString& path);

    /// Calls the export. Where the library could not be loaded so far, looks again whether it is there by now, which
    /// costs a glance at the file while it is missing. Any thread.
    /// @return  what the export returns; kPortLibraryMissing, kPortLibraryNotLoadable or kPortLibraryForeign
    int create(port** out, const char* kind);

private:
    using Creator = int (*)(port** out, const char* kind);

    int load();

    const QString m_path;
    std::mutex m_mutex; ///< not held while the export runs
    QLibrary m_library;
    Creator m_creator = nullptr;
    /// Change and size of the file that had no export: the code of strangers runs once and not every 2 s.
    QPair<QDateTime, qint64> m_foreign;
};
