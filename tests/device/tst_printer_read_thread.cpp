#include "device/port.h"
#include "device/printer_read_thread.h"
#include "tests/device/printer_fixture.h"

#include <mutex>

namespace {

using Reads = QList<QPair<int, QByteArray>>; // results and bytes
constexpr int kDefaultMs = PrinterReadThread::kPollIntervalMs;
constexpr int kQuickMs = 20;
constexpr int kBroken = -3; // any error but a timeout

std::mutex s_mutex; // guards what follows
QStringList s_log;
Reads s_script;
QList<qint64> s_readsMs; // when they came

template <typename T>
T copyOf(const T& shared)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    T copy = shared;
    copy.detach(); // shares nothing with the thread that writes on
    return copy;
}

void keepMessage(QtMsgType, const QMessageLogContext&, const QString& message)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_log.append(message);
}

int scriptedRead(port*, unsigned char* buffer, int, int, int* received)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    const auto [result, bytes] = s_script.value(s_readsMs.size(), {kPortTimedOut, {}});
    s_readsMs.append(QDateTime::currentMSecsSinceEpoch());
    std::copy(bytes.cbegin(), bytes.cend(), buffer);
    *received = bytes.size();
    return result;
}

} // namespace

/// The receive thread over the simulated printer, or over reads that a test makes up.
class PrinterReadThreadTest : public QObject
{
    Q_OBJECT

    const decltype(port::read) m_plainRead = simulatedPort()->read;
    std::unique_ptr<PrinterReadThread> m_thread;
    QStringList m_seen; ///< the signals that this thread got; texts as they came, for the thread sanitizer

    void start(int pollMs, const Reads& script = {})
    {
        s_script = script;
        simulatedPort()->read = script.isEmpty() ? m_plainRead : scriptedRead;
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
        startOver();
        m_seen = s_log = QStringList();
        s_readsMs.clear();
    }

    void reportsThePrinterAfterEveryPlugIn()
    {
        simulatedPrinter().unplug();
        start(kQuickMs);
        QTRY_VERIFY(copyOf(s_log).count("read_thread_unconnected") > 1);
        simulatedPrinter().plugIn();
        QTRY_VERIFY(m_seen.contains("Quillbox_K1"));
        simulatedPrinter().plugIn(SimulatedPrinter::Model::K2);
        QTRY_VERIFY(m_seen.contains("Quillbox_K2"));
        QVERIFY(m_seen.count("key") == 2 && m_seen.startsWith("key") && !m_seen.contains("no key"));
    }

    void logsABatchAndGoesOnAfterErrors()
    {
        const QByteArray batch = QByteArray::fromHex("ff 02 35 07 0400 30000000 00000000 03 02 07");
        start(kQuickMs, {{0, {}}, {kPortTimedOut, {}}, {kBroken, {}}, {0, batch}});
        QTRY_VERIFY(copyOf(s_log).contains("==========End   read============"));
        QTRY_COMPARE(m_seen, QStringList({"key", "35", "1mm"}));
        const QList<qint64> reads = copyOf(s_readsMs);
        QVERIFY(reads[2] - reads[0] < 1000 && reads[3] - reads[2] >= 1000); // an error costs a second more
        const QStringList log = copyOf(s_log);
        const int first = log.indexOf("==========Start read============");
        QCOMPARE(log.mid(0, first).count("read usb data null"), 1);
        const QString expected =
            " result:0 length = 17 data: FF|ff_02_35_07_04_00_30_00_00_00_00_00_00_00_03\n02_07_|"
            "analysisData|--------------------53|pkgTAG:7|pkgCount:4|pkgHexStr: 30000000|j:10|count:4|_length: 48|"
            "pkgData:1mm|--------------------7|==========End   read============";
        QCOMPARE(log.mid(first + 1, 13).join('|'), expected);
    }

    /// While the printer is absent, after a poll, and in the longer pause after an error.
    void pollsEveryTwoSecondsAndEndsAtOnce()
    {
        for (const auto& [reads, result, pollMs] : {std::tuple(0, 0, 2000), {2, 0, kDefaultMs}, {1, kBroken, 1}}) {
            init();
            if (reads == 0)
                simulatedPrinter().unplug();
            start(pollMs, {{result, {}}});
            QTRY_VERIFY(reads ? copyOf(s_readsMs).size() == reads
                              : copyOf(s_log).contains("read_thread_unconnected"));
            const QDeadlineTimer deadline(500);
            m_thread.reset();
            QVERIFY(!deadline.hasExpired());
            QCOMPARE(s_readsMs.size(), reads);
            QVERIFY(reads < 2 || qAbs(s_readsMs[1] - s_readsMs[0] - 2200) <= 210);
        }
    }
};

QTEST_GUILESS_MAIN(PrinterReadThreadTest)
#include "tst_printer_read_thread.moc"
