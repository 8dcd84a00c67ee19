#ifdef ON_USB_BUS
#include "simulator/usb/virtual_usb_printer.h"
#endif

#include "device/port.h"
#include "device/printer_read_thread.h"
#include "tests/device/printer_fixture.h"
#include "tests/system.h"

#include <functional>
#include <thread>

namespace {

#ifdef ON_USB_BUS
constexpr bool kOverUsb = true;
#else
constexpr bool kOverUsb = false;
#endif
constexpr int kCycles = kOverUsb ? 150 : 30;
constexpr int kWarmUp = 20;
constexpr int kKeyChanges = kOverUsb ? 20 : 40;
constexpr int kFramesOfPage = 40;
constexpr int kShortJob = 4 * (1008 + 10) + 5 * 48 + 10; // bytes on the wire of 89 lines of the narrow head

/// A page of black and white dots as random as its number: no two lines of two jobs look alike.
struct JobPattern
{
    JobPattern(int width, int lines, quint32 number)
        : picture(width, lines, QImage::Format_RGB32)
        , dots(width / 8 * lines, '\0')
    {
        QRandomGenerator random(number);
        for (int i = 0; i < dots.size(); ++i) {
            dots[i] = static_cast<char>(random.bounded(256));
            for (int bit = 0; bit < 8; ++bit) {
                const int x = i * 8 % width + bit;
                picture.setPixel(x, i * 8 / width, dots[i] & (0x80 >> bit) ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
            }
        }
    }

    QImage picture;
    QByteArray dots; ///< eight to a byte, as they are to come out on paper
};

QByteArray script(const char* format, int number)
{
    return QString::asprintf(format, number).toLatin1();
}

} // namespace

/// What happens to a printer, and what the client makes of it: the same rows over the simulated port and over USB.
class ScenariosTest : public QObject
{
    Q_OBJECT

    SimulatedPrinter& m_printer = simulatedPrinter();
    QByteArray m_paper; ///< all that is to be on it
    quint32 m_jobs = 0;
    std::thread m_later;

    QHash<QByteArray, std::function<bool(const QByteArray&)>> m_steps; ///< by word; each takes what follows the "="

    void defineSteps()
    {
        const auto check = [this](const char* word, std::function<bool(int)> passes) {
            m_steps[word] = [=](const QByteArray& argument) { return passes(argument.toInt()); };
        };
        const auto deed = [=](const char* word, std::function<void(int)> act) {
            check(word, [=](int number) { return act(number), true; });
        };
        using Faults = PrinterFaults;
        const auto fault = [=](const char* word, std::function<void(Faults&, int)> change) {
            deed(word, [=](int number) { m_printer.fault([&](Faults& f) { change(f, number); }); });
        };
        deed("plug", [this](int) { m_printer.plugIn(); });
        deed("unplug", [this](int) { m_printer.unplug(); });
        deed("K2", [](int) { startOver(SimulatedPrinter::Model::K2); }); // another one is put on the bus
        fault("gone", [](Faults& f, int bytes) { f.bytesUntilGone = bytes; });
        fault("hold", [](Faults& f, int bytes) { f.bytesUntilHolding = bytes; });
        deed("free", [this](int milliseconds) { freeLater(milliseconds); });
        fault("haltOut", [](Faults& f, int) { f.outHalted = true; });
        fault("haltIn", [](Faults& f, int) { f.inHalted = true; });
        fault("refuse", [](Faults& f, int) { f.refusingWrites = true; });
        fault("obey", [](Faults& f, int) { f.refusingWrites = false; });
        fault("mute", [](Faults& f, int) { f.silent = true; });
        deed("say", [this](int bytes) { m_printer.say(QByteArray(bytes, '\xFF')); }); // that nobody asked for
        check("up", [](int) { return printerConnection()->connectUsb(); });
        check("down", [this](int) { return isDown(); });
        check("ask", [](int) { return printerConnection()->sendCommand(CommandGetModel) > 0; });
        m_steps["read"] = [this](const QByteArray& expected) { return hasRead(expected); };
        check("drain", [this](int bytes) { return hasDrained(bytes); });
        check("print", [this](int lines) { return isPrinted(lines); });
        check("fail", [this](int lines) { return isCutOff(lines); });
        check("keys", [this](int exchanges) { return m_printer.report().keyExchanges == exchanges; });
    }

    void freeLater(int milliseconds)
    {
        m_later = std::thread([=] {
            std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
            m_printer.fault([](auto& faults) { faults.bytesUntilHolding = -1; });
        });
    }

    /// The connection cannot be brought up, and nothing is kept of the one before.
    bool isDown()
    {
        setModel(1, true);
        return !printerConnection()->connectUsb() && g_modelIndex == 0 && !g_modelConfirmed && !g_printerReady;
    }

    /// A page of so many lines comes out dot for dot.
    bool isPrinted(int lines)
    {
        const JobPattern job(printHeadWidth(), lines, ++m_jobs);
        m_paper += job.dots;
        return runJob(job.picture) == QStringList{kSent} && m_printer.jobLines() == m_paper;
    }

    /// There is one failure, and on the paper are whole lines of the page's beginning.
    bool isCutOff(int lines)
    {
        const JobPattern job(printHeadWidth(), lines, ++m_jobs);
        const QByteArray before = m_paper, whole = before + job.dots;
        const bool failed = runJob(job.picture) == QStringList{kNotSent};
        m_paper = m_printer.jobLines();
        return failed && m_paper.startsWith(before) && whole.startsWith(m_paper) && m_paper != whole;
    }

    /// One read gets an error, or so many bytes and model names in them. The client then knows the model, as it does
    /// by the main window.
    bool hasRead(const QByteArray& expected)
    {
        int length = 0, result = 0;
        const auto* bytes = reinterpret_cast<const char*>(printerConnection()->read(&length, &result));
        const int failure = result <= kPortNumbers ? result - kPortNumbers : result; // as counted from 0
        QByteArray found = QByteArray::number(failure < 0 ? failure : length);
        for (const char* model : {"K1", "K2"}) {
            if (!QByteArray(bytes, length).contains(QByteArray("Quillbox_") + model))
                continue;
            found += QByteArray(",") + model;
            setModel(model[1] - '1', true);
        }
        if (found != expected)
            qWarning() << "read" << found << "instead of" << expected;
        return found == expected;
    }

    /// Reads get so many bytes, in whichever portions, until nothing more comes.
    bool hasDrained(int bytes)
    {
        int total = 0, length = 0, result = 0;
        do {
            printerConnection()->read(&length, &result);
            total += length;
        } while (result == 0 && length > 0);
        return result == kPortTimedOut && total == bytes;
    }

private slots:
    void initTestCase()
    {
#ifdef ON_USB_BUS
        static VirtualUsbPrinter bus(m_printer); // until the port has let go of it
#endif
        defineSteps();
    }

    void cleanup()
    {
        if (m_later.joinable())
            m_later.join();
    }

    void scenario_data()
    {
        QTest::addColumn<QByteArray>("steps");
        const auto row = [](const char* name, const QByteArray& steps) { QTest::newRow(name) << steps; };
        row("first connection", "up keys=1 read=33,K1 read=-7 print=89 keys=1");
        row("no device", "unplug down down fail=89 keys=0 plug up print=89");
        row("model K2", "K2 up read=33,K2 print=89");
        row("print brings up the connection", "print=21 read=45,K1");
        row("unplugged while nobody looks", "up unplug plug fail=89 print=89 keys=2");
        row("stall out", "up haltOut fail=89 print=89 keys=2");
        row("stall in", "up haltIn read=-9 read=33,K1 print=89 keys=1");
        row("mute", "mute up read=-7 print=89");
        row("garbage on IN", "up read=33,K1 say=100 ask read=121,K1 print=89");
        row("three replies waiting", "up read=33,K1 ask ask ask read=63,K1");
        row("a reply of exactly one packet", "up read=33,K1 say=64 read=64 say=512 read=512");
        row("more than one read can take", "up read=33,K1 say=3000 say=1700 say=5000 drain=9700");
        row("out of paper for longer than a transfer waits", "up hold=1500 free=1200 print=89 keys=1");
        if (!kOverUsb) // there tst_usb_port waits for it
            row("out of paper for longer than a write waits", "up hold=1500 fail=89 hold=-1 print=89 keys=2");
        row("no write goes through", "refuse down down obey up print=89");
        row("unplugged with the key", script("gone=%d down plug up print=89", kSetKeyFrameSize));
        for (int frame = 0; frame < 5; ++frame) {
            for (const int byte : {0, 1, 64, 240})
                row(script("unplugged at frame %d", frame) + script(", byte %d", byte),
                    script("up gone=%d fail=89 down plug print=89 keys=2", 12 + frame * 1018 + byte));
        }
        row("unplugged after the last byte, so that only the closing feed is lost",
            script("up gone=%d print=89 down", 12 + kShortJob));
        row("unplugged before the last byte", script("up gone=%d fail=89 plug print=89", 12 + kShortJob - 1));
    }

    void scenario()
    {
        QFETCH(QByteArray, steps);
        startOver();
        m_paper.clear();
        for (const QByteArray& step : steps.split(' ')) {
            const QList<QByteArray> parts = step.split('=');
            QVERIFY2(m_steps.contains(parts[0]) && m_steps[parts[0]](parts.value(1)), step);
        }
        QCOMPARE(m_printer.report().crcErrors, 0);
        QCOMPARE(m_printer.report().skippedBytes, qint64{0}); // no half frame was left in front of a whole one
    }

    void refusesWhatNoPortCanDo()
    {
        startOver();
        port* opened = nullptr;
        unsigned char bytes[4096] = {};
        int count = 0;
        constexpr int kBadArgument = portNumber(-2);
        QVERIFY(io_port_creator(&opened, "COM") == kBadArgument && !opened);
        QCOMPARE(io_port_creator(&opened, "USB"), 0);
        QCOMPARE(opened->write(opened, bytes, 1, 1, &count), kBadArgument);
        QCOMPARE(opened->write(opened, nullptr, 0, 1, &count), kBadArgument);
        QCOMPARE(opened->read(opened, bytes, 1, 4096, &count), kBadArgument);
        QCOMPARE(opened->read(opened, nullptr, 0, 4096, &count), kBadArgument);
    }

    /// A printer goes away in the middle of page after page, and the receiver works beside the job as in the client.
    void goesAwayAgainAndAgain()
    {
        const auto logs = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        const auto logAgain = qScopeGuard([&] { qInstallMessageHandler(logs); }); // once the receiver has ended
        startOver();
        m_paper.clear();
        PrinterReadThread receiver(nullptr, 5);
        receiver.start();
        QRandomGenerator random(7);
        int mostHandles = 0, mostThreads = 0; // of the first cycles
        for (int cycle = 0; cycle < kCycles; ++cycle) {
            QTRY_VERIFY(printerConnection()->connectUsb());
            m_printer.fault([&](auto& faults) { faults.bytesUntilGone = random.bounded(3 * 1018); });
            QVERIFY2(isCutOff(3 * 21), QByteArray::number(cycle));
            m_printer.plugIn();
            QTRY_VERIFY(printerConnection()->connectUsb());
            QVERIFY2(isPrinted(3 * 21), QByteArray::number(cycle));
            if (cycle < kWarmUp) {
                mostHandles = std::max(mostHandles, openHandles());
                mostThreads = std::max(mostThreads, runningThreads());
            }
        }
        QTRY_VERIFY(openHandles() <= mostHandles);
        QTRY_VERIFY(runningThreads() <= mostThreads);
    }

    /// The receiver finds the connection down while a page is on its way, and exchanges a new key. That costs the page
    /// or none of it.
    void keyChangesInMidJob()
    {
        const auto logs = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        const auto logAgain = qScopeGuard([&] { qInstallMessageHandler(logs); });
        startOver();
        QRandomGenerator random(11);
        std::atomic<int> framesUntilDown{0};
        const auto takeDown = [&](const FrameRecord& frame) {
            if (frame.code == CommandPrintData && --framesUntilDown == 0)
                g_printerReady = false;
        };
        const auto taking =
            connect(&m_printer, &SimulatedPrinter::frameReceived, &m_printer, takeDown, Qt::DirectConnection);
        const auto over = qScopeGuard([&] { disconnect(taking); });
        PrinterReadThread receiver(nullptr, 1);
        receiver.start();
        int shortPages = 0;
        for (int job = 0; job < kKeyChanges; ++job) {
            QTRY_VERIFY(printerConnection()->connectUsb());
            const JobPattern page(384, kFramesOfPage * 21, ++m_jobs);
            const int before = m_printer.jobLines().size();
            framesUntilDown = random.bounded(1, kFramesOfPage);
            const bool sent = runJob(page.picture) == QStringList{kSent};
            shortPages += sent && m_printer.jobLines().mid(before) != page.dots ? 1 : 0;
        }
        QVERIFY(m_printer.report().keyExchanges > kKeyChanges / 2);
        QCOMPARE(shortPages, 0);
        QCOMPARE(m_printer.report().skippedBytes, qint64{0}); // no frame was cut
    }
};

QTEST_GUILESS_MAIN(ScenariosTest)
#include "tst_scenarios.moc"
