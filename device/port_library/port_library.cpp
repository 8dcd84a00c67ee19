#include "device/port_library/port_library.h"

#include "device/port.h"

#include <QFileInfo>
#include <QtDebug>

PortLibrary::PortLibrary(const QString& path)
    : m_path(path)
    , m_library(path)
{
}

int PortLibrary::create(port** out, const char* kind)
{
    Creator creator = nullptr;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_creator) {
            if (const int failure = load(); failure != 0)
                return failure;
        }
        creator = m_creator;
    }
    return creator(out, kind);
}

int PortLibrary::load()
{
    const QFileInfo file(m_path);
    if (!file.exists())
        return kPortLibraryMissing;
    const auto state = qMakePair(file.lastModified(), file.size());
    if (state == m_foreign)
        return kPortLibraryForeign;
    const bool isLoaded = m_library.load();
    if (isLoaded)
        m_creator = reinterpret_cast<Creator>(m_library.resolve("io_port_creator"));
    if (m_creator)
        return 0;
    qDebug().noquote() << "port library:"
                       << (isLoaded ? m_path + QStringLiteral(" has no io_port_creator") : m_library.errorString());
    // Else the file could not be replaced, and the next load() would only repeat this one's answer.
    m_library.unload();
    if (!isLoaded)
        return kPortLibraryNotLoadable;
    m_foreign = state;
    return kPortLibraryForeign;
}
