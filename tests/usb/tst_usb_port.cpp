#include "simulator/usb/fault_commands.h"

#include "device/usb/usb_connection.h"
#include "device/usb/usb_log.h"
#include "simulator/simulated_port.h"
#include "simulator/wire_frame.h"
#include "tests/device/port_calls.h"

#include <QtTest>

#include <functional>
#include <future>
#include <libusb.h>
#include <thread>

Q_DECLARE_METATYPE(UsbShape)

namespace {

constexpr int kGone = LIBUSB_ERROR_NO_DEVICE;
constexpr int kNotFound = LIBUSB_ERROR_NOT_FOUND;

std::mutex s_logMutex;
QStringList s_log;

void keepLine(const char* line)
{
    const std::lock_guard<std::mutex> lock(s_logMutex);
    s_log.append(line);
}

/// The lines since the last call.
QString takeLog()
{
    const std::lock_guard<std::mutex> lock(s_logMutex);
    QString lines = s_log.join('\n');
    s_log.clear();
    return lines;
}

/// Print data of whole lines of the narrow head.
QByteArray frameOf(char dots)
{
    return sealedFrame(0, 1, QByteArray(1008, dots), kPowerOnKey);
}

} // namespace

/// The port on a real bus, below what a client makes of it: what only USB knows.
class UsbPortTest : public QObject
{
    Q_OBJECT

    SimulatedPrinter& m_printer = simulatedPrinter();
    VirtualUsbPrinter* m_bus = nullptr;
    std::unique_ptr<FaultCommands> m_commands;
    port* m_port = nullptr;

    void tell(const char* command)
    {
        const QString answer = m_commands->obey(command);
        if (!answer.startsWith("ok"))
            qFatal("%s: %s", command, qPrintable(answer));
    }

    /// Off the bus and on again, as what the test needs.
    void replug(const UsbShape& shape = UsbShape())
    {
        m_printer.unplug();
        m_bus->setShape(shape);
        m_printer.plugIn();
    }

    int open() { return io_port_creator(&m_port, "USB"); }
    int prepare() { return m_port->prepare(m_port); }

    int write(const QByteArray& bytes) { return writeTo(m_port, bytes); }
    QByteArray read() { return readFrom(m_port); }

private slots:
    void initTestCase()
    {
        setUsbLog(keepLine);
        static VirtualUsbPrinter bus(m_printer); // made before the port, and so there until the port has let go of it
        m_bus = &bus;
        m_commands = std::make_unique<FaultCommands>(m_printer, bus);
    }

    void init()
    {
        UsbFaults& faults = m_bus->faults();
        m_bus->setDenied(false);
        faults.usblp = faults.heldElsewhere = faults.leaving = faults.noZeroLengthPacket = false;
        m_bus->setShape(UsbShape());
        m_printer.reset();
        QCOMPARE(open(), 0);
        QCOMPARE(prepare(), 0);
        faults.udev = true;
        takeLog();
    }

    void shapes_data()
    {
        QTest::addColumn<UsbShape>("shape");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("log"); // with the device's address left out
        const QString opened = "printer opened [device 1:, interface %1, endpoints 0x02 and 0x81]";
        const auto row = [](const char* name, const UsbShape& shape, int result, const QString& log) {
            QTest::newRow(name) << shape << result << "USB: " + log;
        };
        UsbShape shape;
        shape.highSpeed = true;
        row("high speed", shape, 0, opened.arg(0));
        shape.interfaceClass = 255;
        shape.composite = true;
        row("vendor-specific, behind another interface", shape, 0, opened.arg(1));
        shape.alternateSetting = 2;
        row("only in its third setting", shape, 0, opened.arg(1));
        const QString otherDevice =
            "the device has no interface with two bulk endpoints: it is not a printer of this kind [device 1:]";
        shape.inEndpoint = 0x80;
        row("its control pipe called a bulk endpoint", shape, LIBUSB_ERROR_NOT_SUPPORTED, otherDevice);
        shape.hasBulkEndpoints = false;
        row("no bulk endpoints", shape, LIBUSB_ERROR_NOT_SUPPORTED, otherDevice);
        shape.configured = false;
        row("unconfigured", shape, kNotFound,
            "the system has not configured the device, as where a hub has too little power for it: "
            "plug it into a port of the computer itself [device 1:]");
        shape = UsbShape();
        shape.product = 2;
        const QString none = "no printer found: connect it and switch it on (looked for 1209:0001)";
        row("another product", shape, kGone, none);
        shape = UsbShape();
        shape.vendor = 1;
        row("another vendor", shape, kGone, none);
    }

    void shapes()
    {
        QFETCH(UsbShape, shape);
        QFETCH(int, result);
        QFETCH(QString, log);
        replug(shape);
        QCOMPARE(prepare(), result);
        QCOMPARE(takeLog(), log.replace("1:", QString("1:%1").arg(m_bus->address())));
        QCOMPARE(open(), result);
        QCOMPARE(takeLog(), result == 0 ? log : QString()); // a failure that only repeats is no news
        QCOMPARE(write(frameOf('\x55')), result == 0 ? 0 : kGone);
        QCOMPARE(m_printer.jobLines(), QByteArray(result == 0 ? 1008 : 0, '\x55'));
    }

    /// The first failure of a kind is written, with the place where it happened; the log is clear once all is well.
    void saysWhyAndHowToMend()
    {
        const auto writes = [this] { return write(frameOf('a')); };
        const auto reads = [this] { return std::min(read().toInt(), 0); };
        const auto prepares = [this] { return prepare(); };
        const auto isRefusedTheNode = [this] {
            const Unprivileged person;
            return prepare();
        };
        const auto findsItLeaving = [this] {
            m_bus->faults().leaving = true;
            const int result = prepare();
            m_bus->faults().leaving = false;
            return result;
        };
        const auto isSecond = [] {
            int result = 0;
            UsbConnection::open(&result);
            return result;
        };
        const QString place = QString("[device 1:%1, interface 0, endpoint ").arg(m_bus->address());
        const QString stall = "the printer refused a transfer (stall): the connection is set up anew; if this comes "
                              "back, switch the printer off and on " +
                              place;
        const struct
        {
            const char* command;
            std::function<int()> act;
            int result;
            QString log; // how its first line begins
        } rows[] = {
            {"stall out", writes, LIBUSB_ERROR_PIPE, stall + "0x02]"},
            {"stall in", reads, LIBUSB_ERROR_PIPE, stall + "0x81]"},
            {"stall in", reads, LIBUSB_ERROR_PIPE, ""},
            {"say 41", reads, 0, ""},
            {"stall in", reads, LIBUSB_ERROR_PIPE, stall + "0x81]"},
            {"mute off", prepares, 0, "printer opened"}, // after the write that failed
            {"unplug", writes, kGone, "the printer is unplugged or switched off: connect it again"},
            {"plug", findsItLeaving, kNotFound, "the device is leaving or loses its configuration"},
            {"deny", isRefusedTheNode, LIBUSB_ERROR_ACCESS,
             "no permission to open the printer: install the udev rule"},
            {"hold", prepares, LIBUSB_ERROR_BUSY, "another program holds the printer: close it"},
            {"hold off", prepares, 0, "printer opened"},
            {"usblp off", isSecond, LIBUSB_ERROR_BUSY, "another program holds"},
        };
        UsbShape shape;
        shape.alternateSetting = 1; // which a device that is leaving refuses
        m_bus->setShape(shape);
        for (const auto& row : rows) {
            tell(row.command);
            QCOMPARE(row.act(), row.result);
            const QString log = takeLog();
            QVERIFY2(row.log.isEmpty() ? log.isEmpty() : log.startsWith("USB: " + row.log), qPrintable(log));
            const PrinterFaults faults = m_printer.report().faults;
            QVERIFY(!faults.outHalted && !faults.inHalted); // a stall is over with the transfer that it failed
        }
    }

    void stepsInForTheKernelsDriver()
    {
        tell("usblp");
        replug();
        QVERIFY(m_bus->device().isUsblpBound());
        int result = -1;
        {
            const auto connection = UsbConnection::open(&result);
            QVERIFY(result == 0 && !m_bus->device().isUsblpBound());
        }
        QVERIFY(m_bus->device().isUsblpBound());
    }

    void leavesAHealthyDeviceAlone()
    {
        const int claims = m_bus->device().claims();
        for (const char* reply : {"from an earlier", "session"})
            m_printer.say(reply);
        m_printer.fault([](auto& faults) { faults.outHalted = faults.inHalted = true; });
        QCOMPARE(prepare(), 0);
        QCOMPARE(write(frameOf('a')), 0);
        m_printer.say("new");
        QCOMPARE(readFrom(m_port, 63), QByteArray::number(LIBUSB_ERROR_INVALID_PARAM)); // a packet might not fit
        QCOMPARE(read(), QByteArray("new"));
        QVERIFY(m_bus->device().claims() == claims && takeLog().isEmpty());
    }

    /// A write that fails in the middle leaves half a frame in the device, and the client begins with a whole one.
    void beginsAtAFrameBoundary()
    {
        const int claims = m_bus->device().claims();
        tell("nak after 500");
        int written = 0;
        auto job = std::async(std::launch::async, [&] { return writeTo(m_port, frameOf('a'), &written); });
        QTRY_COMPARE(m_printer.report().faults.bytesUntilHolding, qint64{0});
        tell("stall out");
        tell("nak off");
        QCOMPARE(job.get(), int{LIBUSB_ERROR_PIPE});
        QCOMPARE(written, 512); // in packets of 64
        QCOMPARE(prepare(), 0);
        QVERIFY(m_bus->device().claims() > claims);
        QCOMPARE(write(frameOf('b')), 0);
        QCOMPARE(m_printer.jobLines(), QByteArray(1008, 'b'));
        QCOMPARE(m_printer.report().skippedBytes, qint64{0}); // dropped with the halt, not found to be noise later
    }

    /// Ten seconds after the second in which the first packets went, for the limit begins anew whenever something
    /// moves. Reads go on meanwhile, and a reply that fills its last packet ends without an empty one.
    void givesUpAWriteWithoutProgress()
    {
        tell("nak after 500");
        tell("no zlp");
        QElapsedTimer time;
        time.start();
        auto job = std::async(std::launch::async, [&] { return write(frameOf('a')); });
        m_printer.say(QByteArray(64, 'x'));
        QCOMPARE(read(), QByteArray(64, 'x'));
        QVERIFY2(time.elapsed() < 300, QByteArray::number(time.elapsed()));
        QCOMPARE(read(), QByteArray("-7"));
        QCOMPARE(write(frameOf('b')), int{LIBUSB_ERROR_TIMEOUT}); // waits behind it, and fails with it
        QCOMPARE(job.get(), int{LIBUSB_ERROR_TIMEOUT});
        QVERIFY2(time.elapsed() >= 10900 && time.elapsed() < 13500, QByteArray::number(time.elapsed()));
        QVERIFY(takeLog().contains("takes no more data (timed out): look after the paper and the cover"));
    }

    void nothingIsClosedUnderATransfer()
    {
        m_bus->faults().udev = false;
        std::atomic<bool> ends{false};
        const auto untilTheEnd = [&](auto deed) {
            return std::async(std::launch::async, [&ends, deed] {
                while (!ends)
                    deed();
            });
        };
        {
            const std::future<void> threads[] = {
                untilTheEnd([&] { read(); }),
                untilTheEnd([&] {
                    if (write(frameOf('a')) != 0) // until it is prepared, which this is not to hasten
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                }),
                untilTheEnd([&] { prepare(); }),
                untilTheEnd([&] { prepare(); }),
            };
            for (int i = 0; i < 12; ++i) {
                replug();
                m_printer.fault([&](auto& faults) { (i % 2 ? faults.outHalted : faults.inHalted) = true; });
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
            ends = true;
        }
        QCOMPARE(prepare(), 0);
        QCOMPARE(write(frameOf('a')), 0);
        QCOMPARE(m_printer.report().crcErrors, 0);
    }
};

QTEST_GUILESS_MAIN(UsbPortTest)
#include "tst_usb_port.moc"
