#include "device/port.h"
#include "device/printer_state.h"
#include "tests/device/printer_fixture.h"

/// The connection against the simulated printer: what is sent, in which order, and what follows a failure.
class PrinterTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<PrinterWin> m_printer;
    std::unique_ptr<QSignalSpy> m_exchanges;
    int m_framesSeen = 0;

    /// Code and payload size of the frames that have arrived whole since the last call; "!" is a wrong CRC.
    QString newFrames()
    {
        QString shown;
        for (const FrameRecord& frame : simulatedPrinter().frames().mid(m_framesSeen))
            shown += QString::asprintf("%x:%d%s ", frame.code, frame.length, frame.crcOk ? "" : "!");
        m_framesSeen = simulatedPrinter().frames().size();
        return shown.trimmed();
    }

private slots:
    void init()
    {
        startOver();
        m_printer = std::make_unique<PrinterWin>();
        m_exchanges = std::make_unique<QSignalSpy>(m_printer.get(), &Printer::signalCheckSetCrcKeyFirstTime);
        m_framesSeen = 0;
    }

    void staysConnectedUntilAWriteFails()
    {
        setModel(1, true);
        m_printer->openPort();
        QVERIFY(m_printer->sendCommand(CommandGetStatus) > 0); // with the key that both ends start with
        QVERIFY(m_printer->connectUsb());
        QCOMPARE(newFrames(), QString("c:2 18:4 1a:2 6:2"));
        QCOMPARE(simulatedPrinter().report().feeds, QVector<int>{0});
        QVERIFY(g_modelIndex == 0 && !g_modelConfirmed);
        QVERIFY(m_printer->connectUsb()); // asks again until the model is known
        QCOMPARE(newFrames(), QString("6:2"));
        setModel(1, true);
        QVERIFY(m_printer->connectUsb() && m_printer->ensureConnected());
        QCOMPARE(newFrames(), QString("1a:2"));
        QVERIFY(g_modelIndex == 1 && g_modelConfirmed);
        QCOMPARE(*m_exchanges, QList<QList<QVariant>>{{true}});

        const std::uint32_t firstKey = currentCrcKey();
        simulatedPrinter().unplug();
        QVERIFY(!m_printer->ensureConnected() && !g_modelConfirmed);
        QCOMPARE(m_printer->sendFeedLines(0), kPortNoDevice);
        simulatedPrinter().plugIn();
        QVERIFY(m_printer->connectUsb());
        QCOMPARE(newFrames(), QString("18:4 1a:2 6:2"));
        QVERIFY(currentCrcKey() != firstKey && firstKey != kDefaultCrcKey && g_modelIndex == 0);
        simulatedPrinter().fault([](auto& faults) { faults.failingPrepare = true; });
        QVERIFY(m_printer->initPrinter() < 0 && !g_printerReady && !m_printer->connectUsb());
        QCOMPARE(lastPortFailure(), kPortRefused);
        QCOMPARE(m_exchanges->size(), 2);
    }

    void twoThreadsExchangeOneKey()
    {
        std::unique_ptr<QThread> other(QThread::create([this] { m_printer->connectUsb(); }));
        // In the middle of the first bring-up a second thread comes. It has a tenth of a second to start an exchange
        // of its own, which it does within microseconds where nothing holds it back.
        const auto arrive = [&](const FrameRecord& frame) {
            if (frame.code != CommandSetCrcKey || other->isRunning())
                return;
            other->start();
            const QDeadlineTimer deadline(100);
            while (simulatedPrinter().report().keyExchanges == 1 && !deadline.hasExpired())
                QThread::yieldCurrentThread();
        };
        const auto arrival = connect(&simulatedPrinter(), &SimulatedPrinter::frameReceived, arrive);
        QVERIFY(m_printer->connectUsb() && other->wait(10000));
        disconnect(arrival);
        QCOMPARE(simulatedPrinter().report().keyExchanges, 1);
        QCOMPARE(m_exchanges->size(), 1);
    }

    void rasters()
    {
        QByteArray raster(kMaxPayload + 1, '\x5A');
        QVERIFY(m_printer->connectUsb());
        newFrames();
        for (const auto& [size, pieces] : std::initializer_list<std::pair<int, QString>>{
                 {0, ""}, {1007, "0:1007"}, {1008, "0:1008"}, {1009, "0:1008 0:1"}, {2088, "0:1008 0:1008 0:72"}}) {
            QCOMPARE(m_printer->sendRaster(bytesOf(raster), size), 0);
            QCOMPARE(newFrames(), pieces);
        }
        QVERIFY(m_printer->sendRaster(nullptr, 0) == -1 && m_printer->sendRaster(bytesOf(raster), -1) == -1);
        QVERIFY(m_printer->sendPrintData(nullptr, 5) == -1);
        QCOMPARE(m_printer->sendPrintData(bytesOf(raster), kMaxPayload + 1), -1);
        simulatedPrinter().fault(
            [&](auto& faults) { faults.bytesUntilGone = kPrintDataPayload + kFrameOverhead + 500; });
        const QByteArray log = "print data frame 2 failed: 448 of 1018 bytes sent, result ";
        QTest::ignoreMessage(QtDebugMsg, log + QByteArray::number(kPortNoDevice));
        QCOMPARE(m_printer->sendRaster(bytesOf(raster), 3 * kPrintDataPayload), -2);
        QCOMPARE(newFrames(), QString("0:1008")); // stops at the failed piece
        simulatedPrinter().plugIn();
        QVERIFY(m_printer->connectUsb());
        QCOMPARE(m_printer->sendPrintData(bytesOf(raster), kMaxPayload), kMaxPayload + kFrameOverhead);
    }

    void readsReplies()
    {
        int length = 5, result = 5;
        QVERIFY(!m_printer->read(&length, &result) && length == 0 && result == -1); // without a port
        QVERIFY(m_printer->sendFeedLines(300) == -1 && m_printer->initPrinter() == -1);

        simulatedPrinter().unplug();
        QVERIFY(!m_printer->connectUsb() && lastPortFailure() == kPortNoDevice);
        simulatedPrinter().plugIn();
        QVERIFY(m_printer->connectUsb() && lastPortFailure() == 0);
        const auto* bytes = reinterpret_cast<const char*>(m_printer->read(&length, &result));
        QVERIFY(result == 0 && length == 12 + 21); // the echo of the feed, the model
        QVERIFY(QByteArray(bytes, length).contains("Quillbox_K1"));
        m_printer->read(&length, &result); // nothing more, and nothing left over in the buffer
        QVERIFY(result == kPortTimedOut && lastPortFailure() == 0);
        QCOMPARE(QByteArray(bytes, 33), QByteArray(33, '\0'));
        simulatedPrinter().fault([](auto& faults) { faults.inHalted = true; });
        m_printer->read(&length, &result);
        QCOMPARE(lastPortFailure(), kPortRefused);
    }
};

QTEST_GUILESS_MAIN(PrinterTest)
#include "tst_printer.moc"
