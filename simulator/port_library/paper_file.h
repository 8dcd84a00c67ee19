#pragma once

#include <QElapsedTimer>
#include <QString>

#include <atomic>
#include <mutex>

class SimulatedPrinter;

/// Keeps a picture of the simulated printer's paper in a file. There is no thread for it: whoever polls the printer
/// gives it the time.
class PaperFile
{
public:
    /// @param printer  outlives this
    /// @param path     PNG; replaced as a whole whenever the paper has changed, or left as it was
    PaperFile(SimulatedPrinter& printer, const QString& path);

    /// Writes the paper when it has changed and then stood still for 300 ms. Any thread.
    void keepUp();

private:
    bool write() const;

    SimulatedPrinter& m_printer;
    const QString m_path;
    QElapsedTimer m_clock;
    std::atomic<qint64> m_movedAtMs{-1}; ///< when the paper moved last; below 0 before it does
    std::mutex m_mutex;
    qint64 m_writtenMs = -1; ///< what m_movedAtMs was for the picture in the file
    qint64 m_failedMs = -1;  ///< the same for one that could not be written
};
