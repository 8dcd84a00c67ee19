#include "device/printer_read_thread.h"

#include "device/packet.h"
#include "device/packet_analysis.h"
#include "device/port.h"
#include "device/printer_win.h"

#include <QtDebug>

namespace {

constexpr int kPauseAfterErrorMs = 1000; ///< on top of the poll interval

/// The bytes of a batch; the end marker of a frame ends the line, wherever else that byte may stand.
QString dumpOf(const unsigned char* data, int length)
{
    QString dump;
    for (int i = 0; i < length; ++i) {
        dump += QStringLiteral("%1").arg(data[i], 2, 16, QLatin1Char('0'));
        dump += QLatin1Char(data[i] == kFrameEnd ? '\n' : '_');
    }
    return dump;
}

void logHeader(const PacketTrace& trace)
{
    qDebug().noquote() << QStringLiteral("--------------------%1").arg(trace.code);
    if (trace.tag)
        qDebug().noquote() << QStringLiteral("pkgTAG:%1").arg(*trace.tag);
    if (trace.payloadSize)
        qDebug().noquote() << QStringLiteral("pkgCount:%1").arg(*trace.payloadSize);
}

/// The counters say where in the batch the payload ends and how many bytes it has.
void logPayload(const PacketTrace& trace)
{
    const int size = *trace.payloadSize;
    qDebug().noquote() << "pkgHexStr:" << trace.hex;
    qDebug().noquote() << QStringLiteral("j:%1").arg(trace.start + kFrameHeaderSize + size);
    qDebug().noquote() << QStringLiteral("count:%1").arg(size);
    if (trace.printedCount)
        qDebug() << "_length:" << *trace.printedCount;
    qDebug().noquote() << QStringLiteral("pkgData:%1").arg(trace.report->text);
}

} // namespace

PrinterReadThread::PrinterReadThread(QObject* parent, int pollIntervalMs)
    : QThread(parent)
    , m_printer(printerConnection())
    , m_pollIntervalMs(pollIntervalMs)
{
    connect(m_printer, &Printer::signalCheckSetCrcKeyFirstTime, this, &PrinterReadThread::onCheckSetCrcKeyFirstTime);
}

PrinterReadThread::~PrinterReadThread()
{
    requestInterruption();
    quit();
    wait();
    Q_ASSERT(m_ended);
}

void PrinterReadThread::requestInterruption()
{
    QThread::requestInterruption();
    m_interrupted.release();
}

void PrinterReadThread::onCheckSetCrcKeyFirstTime(bool isSuccess)
{
    emit signalCheckSetCrcKeyFirstTime(isSuccess);
}

void PrinterReadThread::run()
{
    m_ended = false;
    while (!isInterruptionRequested() && waitForConnection()) {
        m_session = Printer::session();
        m_data = m_printer->read(&m_length, &m_result);
        pause(m_pollIntervalMs);
        handleRead();
    }
    m_ended = true;
}

/// @return  false: interrupted
bool PrinterReadThread::waitForConnection()
{
    while (!m_printer->ensureConnected()) {
        qDebug() << "read_thread_unconnected";
        pause(m_pollIntervalMs);
        if (isInterruptionRequested())
            return false;
    }
    return true;
}

/// A batch lies here for the length of a pause. Meanwhile a job may have brought up another printer, whose head would be
/// taken for that of the one that has answered.
void PrinterReadThread::handleRead()
{
    if (m_result == kPortTimedOut) {
        qDebug() << "read usb data null";
    } else if (m_result != 0) {
        pause(kPauseAfterErrorMs);
    } else if (m_length > 0 && m_session != Printer::session()) {
        qDebug() << m_length << "bytes of the connection before are dropped";
    } else if (m_length > 0) {
        qDebug() << "==========Start read============";
        qDebug(" result:%d length = %d data: %X", m_result, m_length, static_cast<unsigned>(m_data[0]));
        qDebug().noquote() << dumpOf(m_data, m_length);
        analysisData(m_data);
        qDebug() << "==========End   read============";
    }
}

void PrinterReadThread::analysisData(const unsigned char* data)
{
    qDebug() << "analysisData";
    const QVector<PacketTrace> traces = analysePackets(data, m_length);
    for (const PacketTrace& trace : traces) {
        logHeader(trace);
        if (!trace.isWhole())
            continue;
        logPayload(trace);
        emit sigAnalysisSuccess(trace.report->pkgTag, trace.report->text);
    }
}

/// Asleep all the while: to look 20 times a second whether it is over costs more than all else that an idle client does.
void PrinterReadThread::pause(int milliseconds)
{
    if (!isInterruptionRequested())
        m_interrupted.tryAcquire(1, milliseconds);
}
