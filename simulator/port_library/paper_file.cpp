#include "simulator/port_library/paper_file.h"

#include "simulator/simulated_printer.h"

#include <QSaveFile>
#include <QtDebug>

namespace {
constexpr qint64 kStillMs = 300; ///< between the frames of a job less goes by
}

PaperFile::PaperFile(SimulatedPrinter& printer, const QString& path)
    : m_printer(printer)
    , m_path(path)
{
    m_clock.start();
    QObject::connect(&printer, &SimulatedPrinter::paperChanged, [this] { m_movedAtMs = m_clock.elapsed(); });
}

void PaperFile::keepUp()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const qint64 moved = m_movedAtMs;
    if (moved == m_writtenMs || m_clock.elapsed() - moved < kStillMs)
        return;
    if (write()) {
        m_writtenMs = moved;
        return;
    }
    if (m_failedMs != moved)
        qWarning().noquote() << "simulated printer: cannot write its paper to" << m_path;
    m_failedMs = moved; // said once; tried again, since a viewer may hold the file for a while
}

bool PaperFile::write() const
{
    QSaveFile file(m_path);
    return file.open(QIODevice::WriteOnly) && m_printer.paper().save(&file, "PNG") && file.commit();
}
