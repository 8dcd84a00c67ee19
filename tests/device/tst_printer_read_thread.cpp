#include "device/port.h"
#include "device/printer_read_thread.h"
#include "tests/device/printer_fixture.h"

#include <QDeadlineTimer>

#include <mutex>

namespace {

constexpr int kQuickMs = 20;

std::mutex s_mutex; // guards the log
QStringList s_log;

void keepMessage(QtMsgType, const QMessageLogContext&, const QString& message)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_log.append(message);
}

QStringList takenLog()
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    QStringList copy = s_log;
    copy.detach(); // shares nothing with the thread that writes on
    return copy;
}

decltype(port::read) s_plainRead = simulatedPort()->read;

} // namespace

/// The receive thread over the simulated printer.
class PrinterReadThreadTest : public QObject
{
    Q_OBJECT

    SimulatedPrinter& m_printer = simulatedPrinter();
    std::unique_ptr<PrinterReadThread> m_thread;
    QStringList m_seen; ///< the signals that this thread got; texts as they came, for the thread sanitizer

    void start(int pollMs)
    {
        m_thread = std::make_unique<PrinterReadThread>(nullptr, pollMs);
        connect(m_thread.get(), &PrinterReadThread::sigAnalysisSuccess, this,
                [this](unsigned char pkgTag, const QString& text) { m_seen << QString::number(pkgTag, 16) << text; });
        connect(m_thread.get(), &PrinterReadThread::signalCheckSetCrcKeyFirstTime, this,
                [this](bool isSuccess) { m_seen += isSuccess ? "key" : "no key"; });
        m_thread->start();
    }

private slots:
    void initTestCase() { qInstallMessageHandler(keepMessage); }

    void init()
    {
        m_thread.reset();
        QCoreApplication::processEvents(); // what it has reported last
        simulatedPort()->read = s_plainRead;
        startOver();
        m_seen = s_log = QStringList();
    }

    /// Reads of nothing, nothing in time, an error, and a batch.
    void logsABatchAndGoesOnAfterErrors()
    {
        simulatedPort()->read = [](port* self, unsigned char* buffer, int offset, int capacity, int* received) {
            static int reads = 0;
            return reads++ == 0 ? (*received = 0) : s_plainRead(self, buffer, offset, capacity, received);
        };
        m_printer.fault([](auto& faults) { faults.silent = true; });
        start(kQuickMs);
        QTRY_VERIFY(takenLog().contains("read usb data null"));
        QElapsedTimer time;
        time.start();
        m_printer.fault([](auto& faults) { faults.inHalted = true; });
        m_printer.say(QByteArray::fromHex("ff 02 35 07 0400 30000000 00000000 03 02 07"));
        QTRY_VERIFY(takenLog().contains("==========End   read============"));
        QTRY_COMPARE(m_seen, QStringList({"key", "35", "1mm"}));
        QVERIFY(time.elapsed() >= 1000); // an error costs a second more
        const QStringList log = takenLog();
        const QString expected =
            " result:0 length = 17 data: FF|ff_02_35_07_04_00_30_00_00_00_00_00_00_00_03\n02_07_|"
            "analysisData|--------------------53|pkgTAG:7|pkgCount:4|pkgHexStr: 30000000|j:10|count:4|_length: 48|"
            "pkgData:1mm|--------------------7|==========End   read============";
        QCOMPARE(log.mid(log.indexOf("==========Start read============") + 1, 13).join('|'), expected);
    }

    /// A K1 is plugged in and brought up, by a job say, while what a K2 has said is not looked at yet.
    void forgetsThePrinterBefore()
    {
        m_printer.reset(SimulatedPrinter::Model::K2);
        simulatedPort()->read = [](port* self, unsigned char* buffer, int offset, int capacity, int* received) {
            const int result = s_plainRead(self, buffer, offset, capacity, received);
            if (QByteArray::fromRawData(reinterpret_cast<char*>(buffer), *received).contains("K2")) {
                simulatedPrinter().plugIn(SimulatedPrinter::Model::K1);
                g_printerReady = false;
                printerConnection()->connectUsb();
            }
            return result;
        };
        start(kQuickMs);
        // No event is taken meanwhile: the thread sanitizer does not see the lock that a contended queue takes.
        for (QDeadlineTimer limit(5000); !takenLog().contains("pkgData:Quillbox_K1") && !limit.hasExpired();)
            QThread::msleep(kQuickMs);
        m_thread.reset();
        QCoreApplication::processEvents();
        QVERIFY(m_seen.contains("Quillbox_K1"));
        QVERIFY(!m_seen.contains("Quillbox_K2"));
    }

    void pausesAfterEveryRead()
    {
        QCOMPARE(PrinterReadThread::kPollIntervalMs, 2000);
        start(150);
        QTRY_COMPARE(m_printer.report().feeds.size(), 4); // one of the bring-up, one before each read
        const QVector<FrameRecord> frames = m_printer.frames();
        const qint64 between = frames.last().msSinceEpoch - frames.first().msSinceEpoch;
        QVERIFY2(between >= 290 && between < 1000, QByteArray::number(between));
    }

    /// While the printer is absent, after a poll, and in the longer pause after an error.
    void endsAtOnce()
    {
        for (const QByteArray pause : {"absent", "poll", "error"}) {
            init();
            if (pause == "absent")
                m_printer.unplug();
            start(pause == "error" ? 1 : PrinterReadThread::kPollIntervalMs);
            if (pause == "absent")
                QTRY_VERIFY(takenLog().contains("read_thread_unconnected"));
            else
                QTRY_VERIFY(m_printer.report().feeds.size() > 1);
            m_printer.fault([&](auto& faults) { faults.inHalted = pause == "error"; });
            QTRY_VERIFY(!m_printer.report().faults.inHalted); // until a read has failed by it
            QElapsedTimer time;
            time.start();
            m_thread.reset();
            QVERIFY2(time.elapsed() < 500, pause);
        }
    }
};

QTEST_GUILESS_MAIN(PrinterReadThreadTest)
#include "tst_printer_read_thread.moc"
