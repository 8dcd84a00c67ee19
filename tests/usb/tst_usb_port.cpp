#include "simulator/usb/fault_commands.h"

#include "device/packet.h"
#include "device/port.h"
#include "device/usb/usb_connection.h"
#include "device/usb/usb_log.h"
#include "simulator/simulated_port.h"
#include "simulator/wire_frame.h"

#include <QtTest>

#include <libusb.h>
#include <thread>

using Endpoint = SimulatedPrinter::Endpoint;
Q_DECLARE_METATYPE(UsbShape)

namespace {

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
    const QString lines = s_log.join('\n');
    s_log.clear();
    return lines;
}

SimulatedPrinter& printer()
{
    return simulatedPrinter();
}

/// Print data of a whole line of the narrow head, as often as it fits.
QByteArray frameOf(char dots)
{
    return sealedFrame(0, 1, QByteArray(1008, dots), kPowerOnKey);
}

int writeTo(port* usb, const QByteArray& bytes, int* written = nullptr)
{
    int count = -1;
    const int result =
        usb->write(usb, reinterpret_cast<const unsigned char*>(bytes.constData()), 0, bytes.size(), &count);
    if (written)
        *written = count;
    return result;
}

/// @return  the bytes, or the error as text
QByteArray readFrom(port* usb)
{
    QByteArray bytes(4096, '\0');
    int received = -1;
    const int result = usb->read(usb, reinterpret_cast<unsigned char*>(bytes.data()), 0, bytes.size(), &received);
    return result == 0 ? bytes.left(received) : QByteArray::number(result);
}

} // namespace

/// The port on a real bus, below what a client makes of it: what only USB knows.
class UsbPortTest : public QObject
{
    Q_OBJECT

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
        printer().unplug();
        m_bus->setShape(shape);
        printer().plugIn();
    }
    int open() { return io_port_creator(&m_port, "USB"); }

private slots:
    void initTestCase();
    void init();
    void shapes_data();
    void shapes();
    void saysWhyAndHowToMend();
    void stepsInForTheKernelsDriver();
    void leavesAHealthyDeviceAlone();
    void beginsAtAFrameBoundary();
    void endsAReadWithoutAnEmptyPacket();
    void readsWholePackets();
    void framesOfWritersDoNotMix();
    void nothingIsClosedUnderATransfer();
    void commandsAreAnswered();
};

void UsbPortTest::initTestCase()
{
    setUsbLog(keepLine);
    static VirtualUsbPrinter bus(printer()); // made before the port, and so there until the port has let go of it
    m_bus = &bus;
    m_commands = std::make_unique<FaultCommands>(printer(), bus);
}

void UsbPortTest::init()
{
    m_bus->setDenied(false);
    m_bus->faults().usblp = m_bus->faults().heldElsewhere = m_bus->faults().noZeroLengthPacket = false;
    m_bus->setShape(UsbShape());
    printer().reset();
    QCOMPARE(open(), 0);
    QCOMPARE(m_port->prepare(m_port), 0);
    m_bus->faults().udev = true;
    takeLog();
}

void UsbPortTest::shapes_data()
{
    QTest::addColumn<UsbShape>("shape");
    QTest::addColumn<int>("result");
    UsbShape shape;
    QTest::newRow("full speed") << shape << 0;
    shape.highSpeed = true;
    QTest::newRow("high speed") << shape << 0;
    shape.interfaceClass = 255;
    shape.composite = true;
    QTest::newRow("vendor-specific, behind another interface") << shape << 0;
    shape.alternateSetting = 2;
    QTest::newRow("only in its third setting") << shape << 0;
    shape.hasBulkEndpoints = false;
    QTest::newRow("no bulk endpoints") << shape << int{LIBUSB_ERROR_NOT_FOUND};
    shape = UsbShape();
    shape.product = 2;
    QTest::newRow("another product") << shape << int{LIBUSB_ERROR_NO_DEVICE};
    shape = UsbShape();
    shape.vendor = 1;
    QTest::newRow("another vendor") << shape << int{LIBUSB_ERROR_NO_DEVICE};
}

void UsbPortTest::shapes()
{
    QFETCH(UsbShape, shape);
    QFETCH(int, result);
    replug(shape);
    QCOMPARE(m_port->prepare(m_port), result);
    QCOMPARE(open(), result);
    QCOMPARE(writeTo(m_port, frameOf('\x55')), result == 0 ? 0 : int{LIBUSB_ERROR_NO_DEVICE});
    QCOMPARE(printer().jobLines(), QByteArray(result == 0 ? 1008 : 0, '\x55'));
}

void UsbPortTest::saysWhyAndHowToMend()
{
    const auto prepared = [&] {
        return m_port->prepare(m_port);
    };
    tell("unplug");
    QCOMPARE(writeTo(m_port, frameOf('a')), int{LIBUSB_ERROR_NO_DEVICE});
    QVERIFY(takeLog().contains("unplugged or switched off: connect it again"));
    QCOMPARE(prepared(), int{LIBUSB_ERROR_NO_DEVICE});
    QVERIFY(takeLog().contains("no printer found: connect it and switch it on (looked for 1209:0001)"));
    QCOMPARE(prepared(), int{LIBUSB_ERROR_NO_DEVICE});
    QCOMPARE(takeLog(), QString()); // no news

    tell("deny");
    tell("plug");
    {
        const Unprivileged person;
        QCOMPARE(prepared(), int{LIBUSB_ERROR_ACCESS});
    }
    QVERIFY(takeLog().contains("no permission to open the printer: install the udev rule 70-quillbox.rules"));
    tell("deny off");

    tell("hold");
    QCOMPARE(prepared(), int{LIBUSB_ERROR_BUSY});
    QVERIFY(takeLog().contains("another program holds the printer: close it"));
    tell("hold off");
    QCOMPARE(prepared(), 0);
    QCOMPARE(takeLog(), QString("USB: printer opened"));
    int result = 0;
    QVERIFY(!UsbConnection::open(&result) && result == LIBUSB_ERROR_BUSY); // a second client
    QVERIFY(takeLog().contains("another program holds"));

    tell("stall out");
    QCOMPARE(writeTo(m_port, frameOf('a')), int{LIBUSB_ERROR_PIPE});
    QVERIFY(takeLog().contains("refused a transfer (stall)"));
    QVERIFY(!printer().report().faults.outHalted);
    tell("stall in");
    QCOMPARE(readFrom(m_port), QByteArray("-9"));
    QVERIFY(!printer().report().faults.inHalted);
    QCOMPARE(takeLog(), QString());
    tell("say 41");
    QCOMPARE(readFrom(m_port), QByteArray("A"));
    tell("stall in");
    QCOMPARE(readFrom(m_port), QByteArray("-9"));
    QVERIFY(takeLog().contains("refused")); // news again
}

void UsbPortTest::stepsInForTheKernelsDriver()
{
    tell("usblp");
    replug();
    QVERIFY(m_bus->device().isUsblpBound());
    int result = -1;
    {
        const auto connection = UsbConnection::open(&result);
        QCOMPARE(result, 0);
        QVERIFY(!m_bus->device().isUsblpBound());
    }
    QVERIFY(m_bus->device().isUsblpBound());
}

void UsbPortTest::leavesAHealthyDeviceAlone()
{
    const int claims = m_bus->device().claims();
    printer().say("from an earlier session");
    QCOMPARE(m_port->prepare(m_port), 0);
    QCOMPARE(readFrom(m_port), QByteArray("-7"));
    QCOMPARE(m_bus->device().claims(), claims);
    printer().fault([](auto& faults) { faults.outHalted = true; });
    printer().fault([](auto& faults) { faults.inHalted = true; });
    QCOMPARE(m_port->prepare(m_port), 0);
    QCOMPARE(writeTo(m_port, frameOf('a')), 0);
    QCOMPARE(readFrom(m_port), QByteArray("-7"));
    QCOMPARE(takeLog(), QString());
}

/// A printer that takes nothing for ten seconds after its last byte keeps half a frame, and the client begins with a
/// whole one again.
void UsbPortTest::beginsAtAFrameBoundary()
{
    const int claims = m_bus->device().claims();
    tell("nak after 500");
    std::thread sheet([] { // a little room in between
        std::this_thread::sleep_for(std::chrono::seconds(6));
        printer().fault([&](auto& faults) { faults.bytesUntilHolding = 100; });
    });
    int written = 0;
    QElapsedTimer time;
    time.start();
    QCOMPARE(writeTo(m_port, frameOf('a'), &written), int{LIBUSB_ERROR_TIMEOUT});
    sheet.join();
    QVERIFY2(time.elapsed() >= 15900 && time.elapsed() < 18500, QByteArray::number(time.elapsed()));
    QCOMPARE(written, 512 + 128); // in packets of 64
    QVERIFY(takeLog().contains("takes no more data (timed out): look after the paper and the cover"));
    tell("nak off");
    QCOMPARE(m_port->prepare(m_port), 0);
    QVERIFY(m_bus->device().claims() > claims);
    QCOMPARE(writeTo(m_port, frameOf('b')), 0);
    QCOMPARE(printer().jobLines(), QByteArray(1008, 'b'));
    QCOMPARE(printer().report().skippedBytes, qint64{0}); // dropped with the halt, not found to be noise later
}

void UsbPortTest::endsAReadWithoutAnEmptyPacket()
{
    tell("no zlp");
    printer().say(QByteArray(64, 'x'));
    QElapsedTimer time;
    time.start();
    QCOMPARE(readFrom(m_port), QByteArray(64, 'x'));
    QVERIFY2(time.elapsed() < 300, QByteArray::number(time.elapsed()));
    QCOMPARE(readFrom(m_port), QByteArray("-7"));
}

void UsbPortTest::readsWholePackets()
{
    tell("high speed");
    tell("unplug");
    tell("plug");
    QCOMPARE(m_port->prepare(m_port), 0);
    QByteArray said, heard;
    for (char reply = 'a'; reply <= 'z';
         ++reply) { // 26 of 400 bytes: what is left of 4096 holds no packet, then less
        printer().say(QByteArray(400, reply));
        said += QByteArray(400, reply);
    }
    for (QByteArray batch = readFrom(m_port); batch != "-7"; batch = readFrom(m_port)) {
        QVERIFY(batch.size() > 3000);
        heard += batch;
    }
    QCOMPARE(heard, said);
    unsigned char small[100];
    int received = 0;
    QCOMPARE(m_port->read(m_port, small, 0, sizeof small, &received), int{LIBUSB_ERROR_INVALID_PARAM});
    QCOMPARE(m_port->read(m_port, small, 1, 4096, &received), int{LIBUSB_ERROR_INVALID_PARAM});
    QCOMPARE(m_port->write(m_port, small, 0, 0, &received), int{LIBUSB_ERROR_INVALID_PARAM});
    port* other = nullptr;
    QVERIFY(io_port_creator(&other, "COM") < 0 && !other);
}

/// A job writes frame after frame, and the receiver's probes get in between them, not into them and not after the
/// job.
void UsbPortTest::framesOfWritersDoNotMix()
{
    constexpr int kFrames = 300, kProbes = 10;
    std::thread probes([&] {
        for (int i = 0; i < kProbes; ++i)
            writeTo(m_port, sealedFrame(CommandFeedLines, 0, QByteArray(2, '\0'), kPowerOnKey));
    });
    std::thread pauses([] { // in the middle of frames as well
        for (int i = 0; i < 20; ++i) {
            printer().fault([&](auto& faults) { faults.bytesUntilHolding = i % 2 == 0 ? 0 : -1; });
            std::this_thread::sleep_for(std::chrono::milliseconds(3));
        }
    });
    for (int i = 0; i < kFrames; ++i)
        QCOMPARE(writeTo(m_port, frameOf('a')), 0);
    probes.join();
    pauses.join();
    QCOMPARE(printer().report().frames, kFrames + kProbes);
    QVERIFY(printer().report().crcErrors == 0 && printer().report().skippedBytes == 0);
    const QVector<FrameRecord> frames = printer().frames();
    const auto last =
        std::find_if(frames.crbegin(), frames.crend(), [](const FrameRecord& f) { return f.code != 0; });
    QVERIFY(frames.crend() - last < kFrames / 2);
}

void UsbPortTest::nothingIsClosedUnderATransfer()
{
    m_bus->faults().udev = false;
    std::atomic<bool> ends{false};
    std::vector<std::thread> threads;
    threads.emplace_back([&] {
        while (!ends)
            readFrom(m_port);
    });
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            while (!ends)
                writeTo(m_port, frameOf('a'));
        });
        threads.emplace_back([&] {
            while (!ends)
                m_port->prepare(m_port);
        });
    }
    for (int i = 0; i < 20; ++i) {
        replug();
        printer().fault([&](auto& faults) { (i % 2 ? faults.outHalted : faults.inHalted) = true; });
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    ends = true;
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(m_port->prepare(m_port), 0);
    QCOMPARE(writeTo(m_port, frameOf('a')), 0);
    QCOMPARE(printer().report().crcErrors, 0);
}

/// The faults by command that the tests above have no use for, and those that are refused.
void UsbPortTest::commandsAreAnswered()
{
    const std::pair<const char*, const char*> answers[] = {
        {"unplug after 5", "ok"},
        {"MODEL  k2", "ok"},
        {"status", "plugged in, K2, frames 0, damaged frames 0, lines 0, key exchanges 0"},
        {"model K2", "nothing done: a K2 is plugged in"},
        {"plug", "nothing done: the printer is plugged in"},
        {"plug 5", "not understood: \"plug 5\"; there are: plug"},
        {"say 123", "not understood: \"say 123\"; there are: say HEX"},
        {"paper x.png", "nothing done: there is no paper yet"},
        {"unplug", "ok"},
        {"stall in", "nothing done: the printer is unplugged"},
    };
    for (const auto& [command, answer] : answers)
        QCOMPARE(m_commands->obey(command), QString(answer));
    QVERIFY(m_commands->obey("").contains("there are: plug, unplug,"));
    tell("full speed");
    tell("plug");
    tell("say 41 42");
    QCOMPARE(m_port->prepare(m_port), 0); // throws it away
    tell("mute");
    writeTo(m_port, sealedFrame(CommandGetModel, 0, QByteArray(2, '\0'), kPowerOnKey));
    QCOMPARE(readFrom(m_port), QByteArray("-7"));
    tell("mute off");
    tell("say 41 42");
    QCOMPARE(readFrom(m_port), QByteArray("AB"));
}

QTEST_GUILESS_MAIN(UsbPortTest)
#include "tst_usb_port.moc"
