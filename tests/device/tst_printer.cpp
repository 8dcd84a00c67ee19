#include "app/globals/model.h"
#include "device/packet.h"
#include "device/port.h"
#include "device/printer_win.h"
#include "simulator/simulated_port.h"

#include <QSignalSpy>
#include <QtTest>

/// The connection against the simulated printer: what is sent, in which order, and what follows a failure.
class PrinterTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void connectsAndStaysConnected();
    void bringUpFails_data();
    void bringUpFails();
    void failedWriteLeadsToANewKey();
    void twoThreadsExchangeOneKey();
    void rasterPieces();
    void rasterStopsAtTheFailedPiece();
    void badArguments();
    void readsReplies();
    void withoutPort();
    void oneConnectionForAllThreads();

private:
    std::unique_ptr<PrinterWin> m_printer;
    int m_framesSeen = 0;

    QByteArray newCodes();
};

void PrinterTest::init()
{
    simulatedPrinter().reset();
    g_portOpen = false;
    g_printerReady = false;
    g_modelIndex = 0;
    g_modelConfirmed = false;
    setCurrentCrcKey(kDefaultCrcKey);
    m_printer.reset(new PrinterWin);
    m_framesSeen = 0;
}

/// Command codes, in hexadecimal, of the frames that have arrived whole since the last call; "!" is a wrong CRC.
QByteArray PrinterTest::newCodes()
{
    const QVector<FrameRecord> frames = simulatedPrinter().frames();
    QByteArray codes;
    for (; m_framesSeen < frames.size(); ++m_framesSeen)
        codes += QByteArray(1, char(frames[m_framesSeen].code)).toHex() + (frames[m_framesSeen].crcOk ? " " : "! ");
    return codes.trimmed();
}

void PrinterTest::connectsAndStaysConnected()
{
    g_modelIndex = 1;
    g_modelConfirmed = true;
    QSignalSpy spy(m_printer.get(), &Printer::signalCheckSetCrcKeyFirstTime);
    QVERIFY(m_printer->connectUsb());
    QCOMPARE(newCodes(), QByteArray("18 1a 06"));
    QCOMPARE(simulatedPrinter().feeds(), QVector<int>{0});
    QCOMPARE(simulatedPrinter().key(), currentCrcKey());
    QVERIFY(currentCrcKey() != kDefaultCrcKey);
    QCOMPARE(g_modelIndex.load(), 0);
    QVERIFY(!g_modelConfirmed);

    QVERIFY(m_printer->connectUsb()); // asks again until the model is known
    QCOMPARE(newCodes(), QByteArray("06"));
    g_modelIndex = 1;
    g_modelConfirmed = true;
    QVERIFY(m_printer->connectUsb());
    QCOMPARE(newCodes(), QByteArray());
    QVERIFY(m_printer->ensureConnected());
    QCOMPARE(newCodes(), QByteArray("1a"));
    QCOMPARE(g_modelIndex.load(), 1);
    QCOMPARE(spy, QList<QList<QVariant>>{{true}});

    simulatedPrinter().setRefusingWrites(true);
    QVERIFY(!m_printer->ensureConnected());
    QVERIFY(!g_modelConfirmed);
    QVERIFY(!g_printerReady);
}

void PrinterTest::bringUpFails_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<bool>("open");
    QTest::newRow("no device") << "absent" << false;
    QTest::newRow("prepare refused") << "prepare" << true;
    QTest::newRow("set-key frame refused") << "write" << true;
    QTest::newRow("gone after the set-key frame") << "gone" << true;
}

void PrinterTest::bringUpFails()
{
    QFETCH(QString, fault);
    if (fault == "absent")
        simulatedPrinter().unplug();
    simulatedPrinter().setFailingPrepare(fault == "prepare");
    simulatedPrinter().setRefusingWrites(fault == "write");
    if (fault == "gone")
        simulatedPrinter().goAwayAfter(kSetKeyFrameSize);
    g_modelIndex = 1;
    g_modelConfirmed = true;
    QSignalSpy spy(m_printer.get(), &Printer::signalCheckSetCrcKeyFirstTime);
    QVERIFY(!m_printer->connectUsb());
    QCOMPARE(g_modelIndex.load(), 0);
    QVERIFY(!g_modelConfirmed);
    QVERIFY(!g_printerReady);
    QTEST(g_portOpen.load(), "open");

    // Once the device behaves, the same connection comes up.
    simulatedPrinter().setFailingPrepare(false);
    simulatedPrinter().setRefusingWrites(false);
    simulatedPrinter().plugIn();
    QCOMPARE(spy.size(), 0);
    QVERIFY(m_printer->connectUsb());
    QCOMPARE(spy.size(), 1);
    QCOMPARE(simulatedPrinter().crcErrorCount(), 0);
}

void PrinterTest::failedWriteLeadsToANewKey()
{
    QVERIFY(m_printer->connectUsb());
    const std::uint32_t firstKey = currentCrcKey();
    g_modelIndex = 1;
    g_modelConfirmed = true;
    simulatedPrinter().unplug();
    QCOMPARE(m_printer->sendFeedLines(0), SimulatedPrinter::kUnplugged);
    QVERIFY(!g_printerReady);
    simulatedPrinter().plugIn();
    newCodes();
    QVERIFY(m_printer->connectUsb());
    QCOMPARE(newCodes(), QByteArray("18 1a 06"));
    QVERIFY(currentCrcKey() != firstKey);
    QCOMPARE(g_modelIndex.load(), 0);
    QVERIFY(!g_modelConfirmed);

    simulatedPrinter().setFailingPrepare(true);
    QVERIFY(m_printer->initPrinter() < 0);
    QVERIFY(!g_printerReady);
}

void PrinterTest::twoThreadsExchangeOneKey()
{
    std::atomic<int> signalled{0};
    connect(
        m_printer.get(), &Printer::signalCheckSetCrcKeyFirstTime, m_printer.get(), [&] { ++signalled; },
        Qt::DirectConnection);
    std::atomic<bool> otherConnected{false};
    std::unique_ptr<QThread> other(QThread::create([&] { otherConnected = m_printer->connectUsb(); }));
    // In the middle of the first bring-up a second thread comes. It has a tenth of a second to start an exchange of
    // its own, which it does within microseconds where nothing holds it back.
    const auto arrival = connect(
        &simulatedPrinter(), &SimulatedPrinter::frameReceived, m_printer.get(),
        [&](const FrameRecord& frame) {
            if (frame.code != CommandSetCrcKey || other->isRunning())
                return;
            other->start();
            const QDeadlineTimer deadline(100);
            while (simulatedPrinter().keyExchangeCount() == 1 && !deadline.hasExpired())
                QThread::yieldCurrentThread();
        },
        Qt::DirectConnection);
    QVERIFY(m_printer->connectUsb());
    QVERIFY(other->wait(10000));
    disconnect(arrival);
    QVERIFY(otherConnected);
    QCOMPARE(simulatedPrinter().keyExchangeCount(), 1);
    QCOMPARE(signalled.load(), 1);
}

void PrinterTest::rasterPieces()
{
    const QMap<int, QVector<int>> piecesOfSize = {{0, {}},           {1007, {1007}},       {1008, {1008}},
                                                  {1009, {1008, 1}}, {2016, {1008, 1008}}, {2088, {1008, 1008, 72}}};
    QVERIFY(m_printer->connectUsb());
    for (const int size : piecesOfSize.keys()) {
        newCodes();
        const QByteArray raster(size, '\x5A');
        QCOMPARE(m_printer->sendRaster(reinterpret_cast<const unsigned char*>(raster.constData()), size), 0);
        QVector<int> pieces;
        for (const FrameRecord& frame : simulatedPrinter().frames().mid(m_framesSeen)) {
            QVERIFY(frame.crcOk && frame.code == 0 && frame.tag == 1);
            pieces.append(frame.length);
        }
        QCOMPARE(pieces, piecesOfSize[size]);
    }
}

void PrinterTest::rasterStopsAtTheFailedPiece()
{
    QVERIFY(m_printer->connectUsb());
    newCodes();
    simulatedPrinter().goAwayAfter(kPrintDataPayload + kFrameOverhead + 500);
    const QByteArray raster(3 * kPrintDataPayload, '\x55');
    QCOMPARE(m_printer->sendRaster(reinterpret_cast<const unsigned char*>(raster.constData()), raster.size()), -2);
    QCOMPARE(newCodes(), QByteArray("00"));
}

void PrinterTest::badArguments()
{
    QVERIFY(m_printer->connectUsb());
    newCodes();
    const QByteArray large(kMaxPayload + 1, '\0');
    const auto* bytes = reinterpret_cast<const unsigned char*>(large.constData());
    QCOMPARE(m_printer->sendRaster(nullptr, 0), -1);
    QCOMPARE(m_printer->sendRaster(bytes, -1), -1);
    QCOMPARE(m_printer->sendPrintData(nullptr, 5), -1);
    QCOMPARE(m_printer->sendPrintData(bytes, kMaxPayload + 1), -1);
    QCOMPARE(newCodes(), QByteArray());
    QCOMPARE(m_printer->sendPrintData(bytes, kMaxPayload), kMaxPayload + kFrameOverhead);
}

void PrinterTest::readsReplies()
{
    QVERIFY(m_printer->connectUsb());
    int length = 0;
    int result = -1;
    const unsigned char* bytes = m_printer->read(&length, &result);
    QCOMPARE(result, 0);
    QCOMPARE(length, 12 + 21); // the echo of the feed, the model
    QVERIFY(QByteArray(reinterpret_cast<const char*>(bytes), length).contains("Quillbox_K1"));

    bytes = m_printer->read(&length, &result); // nothing more, and nothing left over in the buffer
    QCOMPARE(result, kPortTimedOut);
    QCOMPARE(length, 0);
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(bytes), 33), QByteArray(33, '\0'));
}

void PrinterTest::withoutPort()
{
    int length = 5;
    int result = 5;
    QVERIFY(!m_printer->read(&length, &result));
    QCOMPARE(result, -1);
    QCOMPARE(m_printer->sendFeedLines(300), -1);
    QCOMPARE(m_printer->initPrinter(), -1);
}

void PrinterTest::oneConnectionForAllThreads()
{
    std::atomic<PrinterWin*> seen{nullptr};
    std::unique_ptr<QThread> other(QThread::create([&] { seen = printerConnection(); }));
    other->start();
    PrinterWin* mine = printerConnection();
    QVERIFY(other->wait(10000));
    QVERIFY(mine);
    QCOMPARE(seen.load(), mine);
}

QTEST_GUILESS_MAIN(PrinterTest)
#include "tst_printer.moc"
