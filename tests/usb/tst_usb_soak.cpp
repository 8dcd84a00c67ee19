#include "simulator/usb/virtual_usb_printer.h"

#include "device/printer_read_thread.h"
#include "tests/device/printer_fixture.h"
#include "tests/usb/job_pattern.h"

#include <QDir>

/// A printer that goes away in the middle of page after page, with the receiver at work beside the job as in the
/// client.
class UsbSoakTest : public QObject
{
    Q_OBJECT

private slots:
    void plugCyclesUnderPrinting();
};

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kKeepsFreedMemory = true; // as sanitizers do; the one for addresses finds leaks itself
#else
constexpr bool kKeepsFreedMemory = false;
#endif
constexpr int kCycles = 200, kWarmUp = 20;
constexpr int kLines = 3 * 21, kJobBytes = 3 * 1018;

/// All but sockets: umockdev 0.17 forgets one when a device vanishes just before it is opened. What libusb opens for
/// a device or a context is among the others as well.
int openHandles()
{
    int count = 0;
    for (const QFileInfo& handle : QDir("/proc/self/fd").entryInfoList(QDir::AllEntries | QDir::System))
        count += handle.symLinkTarget().contains("socket:") ? 0 : 1;
    return count;
}

struct Resources
{
    int handles = openHandles();
    int threads = QDir("/proc/self/task").entryList(QDir::NoDotAndDotDot | QDir::Dirs).size();
    qint64 residentPages = 0;

    Resources()
    {
        QFile file("/proc/self/statm");
        if (file.open(QIODevice::ReadOnly))
            residentPages = file.readAll().split(' ').value(1).toLongLong();
    }
};

} // namespace

void UsbSoakTest::plugCyclesUnderPrinting()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}); // a megabyte of it
    static VirtualUsbPrinter bus(simulatedPrinter());
    startOver();
    PrinterReadThread receiver(nullptr, 5);
    receiver.start();
    QRandomGenerator random(7);
    QByteArray paper;
    int mostHandles = 0, mostThreads = 0; // of the first cycles
    qint64 pagesBefore = 0;
    for (int cycle = 0; cycle < kCycles; ++cycle) {
        const JobPattern lost(384, kLines, 2 * cycle), whole(384, kLines, 2 * cycle + 1);
        QTRY_VERIFY(printerConnection()->connectUsb());
        simulatedPrinter().fault([&](auto& faults) { faults.bytesUntilGone = random.bounded(kJobBytes); });
        const std::vector<int> results = runJob(lost.picture);
        const QByteArray rest = simulatedPrinter().jobLines().mid(paper.size());
        QVERIFY(results == std::vector<int>{1} && lost.dots.startsWith(rest) && rest != lost.dots);
        simulatedPrinter().plugIn();
        QTRY_VERIFY(printerConnection()->connectUsb());
        QCOMPARE(runJob(whole.picture), std::vector<int>{0});
        paper += rest + whole.dots;
        QVERIFY2(simulatedPrinter().jobLines() == paper, QByteArray::number(cycle));
        if (cycle <= kWarmUp) {
            const Resources now;
            mostHandles = std::max(mostHandles, now.handles);
            mostThreads = std::max(mostThreads, now.threads);
            pagesBefore = now.residentPages;
        }
    }
    QCOMPARE(simulatedPrinter().report().crcErrors, 0);
    QTRY_VERIFY(Resources().handles <= mostHandles);
    QTRY_VERIFY(Resources().threads <= mostThreads);
    const qint64 grown = Resources().residentPages - pagesBefore; // of 4 KiB; the paper takes up to two MiB
    QVERIFY2(kKeepsFreedMemory || grown < 2048, QByteArray::number(grown));
}

QTEST_GUILESS_MAIN(UsbSoakTest)
#include "tst_usb_soak.moc"
