#include "device/port.h"
#include "tests/device/printer_fixture.h"
#include "tests/usb/bench.h"
#include "tests/usb/job_pattern.h"

#include <thread>

using Endpoint = SimulatedPrinter::Endpoint;

namespace {

constexpr int kShortJob = 4 * 21 + 5;                         // lines on the narrow head: four frames and a short one
constexpr int kShortJobBytes = 4 * (1008 + 10) + 5 * 48 + 10; // on the wire

SimulatedPrinter& printer()
{
    return simulatedPrinter();
}

QByteArray script(const char* format, int number)
{
    return QString::asprintf(format, number).toLatin1();
}

} // namespace

/// What happens to a printer, and what the client makes of it: the same rows over the simulated port and over USB.
class ScenariosTest : public QObject
{
    Q_OBJECT

    QByteArray m_paper; ///< all that is to be on it
    quint32 m_jobs = 0;
    std::thread m_later;

    void joinLater()
    {
        if (m_later.joinable())
            m_later.join();
    }

    bool doStep(const QByteArray& step, const QByteArray& argument);
    bool isPrinted(int lines);
    bool isCutOff(int lines);
    bool hasRead(const QByteArray& expected);
    bool hasDrained(int bytes);

private slots:
    void initTestCase() { startBench(); }
    void cleanup() { joinLater(); }
    void scenario_data();
    void scenario();
    void endsInTheMiddleOfALongJob();
};

/// A row is a list of steps, a step is a word or word=argument:
///     plug unplug K2        the device; K2 puts another one on the bus
///     gone=BYTES            it is unplugged once it has taken so many more
///     hold=BYTES free=MS    it takes nothing more once it has taken so many; so much later it goes on
///     haltOut haltIn mute   its endpoints stall; it answers nothing
///     say=BYTES             it sends a reply of so many bytes that nobody asked for
///     up down               the connection can be brought up; it cannot
///     ask                   a query
///     read=TEXT             what one read gets: an error, or the number of bytes, and model names in it
///     drain=BYTES           what is read until nothing more comes, in whichever portions
///     print=LINES fail=LINES  a page comes out dot for dot; one failure, and whole lines of its beginning
///     keys=COUNT            key exchanges so far
void ScenariosTest::scenario_data()
{
    QTest::addColumn<QByteArray>("steps");
    const auto row = [](const char* name, const QByteArray& steps) {
        QTest::newRow(name) << steps;
    };
    row("first connection", "up keys=1 read=33,K1 read=-7 print=89 keys=1");
    row("no device", "unplug down down fail=89 keys=0 plug up print=89");
    row("model K2", "K2 up read=33,K2 print=89");
    row("print brings up the connection", "print=21 read=45,K1");
    row("unplugged while nobody looks", "up unplug plug fail=89 print=89 keys=2");
    row("stall out", "up haltOut fail=89 print=89 keys=2");
    row("stall in", "up haltIn read=-9 read=33,K1 print=89 keys=1");
    row("mute", "mute up read=-7 print=89");
    row("garbage on IN", "up read=33,K1 say=100 ask read=121,K1 print=89");
    row("three replies waiting", "up read=33,K1 ask ask ask read=63,K1 read=-7");
    row("a reply of exactly one packet", "up read=33,K1 say=64 read=64 say=512 read=512 read=-7");
    row("more than one read can take", "up read=33,K1 say=3000 say=1700 say=5000 drain=9700");
    row("out of paper for 5 s", "up hold=1500 free=5000 print=89 keys=1");
    row("out of paper for 15 s", "up hold=1500 free=15000 fail=89 wait print=89 keys=2");
    row("unplugged with the key", script("gone=%d down plug up print=89", 14));
    for (int frame = 0; frame < 5; ++frame) {
        for (const int byte : {0, 1, 64, 240})
            row(script("unplugged at frame %d", frame) + script(", byte %d", byte),
                script("up gone=%d fail=89 down plug print=89 keys=2", 12 + frame * 1018 + byte));
    }
    row("unplugged after the last byte, so that only the closing feed is lost",
        script("up gone=%d print=89 down", 12 + kShortJobBytes));
    row("unplugged before the last byte", script("up gone=%d fail=89 plug print=89", 12 + kShortJobBytes - 1));
}

void ScenariosTest::scenario()
{
    QFETCH(QByteArray, steps);
    startOver();
    printer().fault([](auto& faults) { faults.silent = false; });
    m_paper.clear();
    for (const QByteArray& step : steps.split(' ')) {
        const QList<QByteArray> parts = step.split('=');
        QVERIFY2(doStep(parts[0], parts.value(1)), step);
    }
    QCOMPARE(printer().report().crcErrors, 0);
    QCOMPARE(printer().report().skippedBytes, qint64{0}); // no half frame was left in front of a whole one
}

bool ScenariosTest::doStep(const QByteArray& step, const QByteArray& argument)
{
    const int number = argument.toInt();
    PrinterWin* const connection = printerConnection();
    if (step == "plug")
        printer().plugIn();
    else if (step == "unplug")
        printer().unplug();
    else if (step == "K2")
        startOver(SimulatedPrinter::Model::K2);
    else if (step == "gone")
        printer().fault([&](auto& faults) { faults.bytesUntilGone = number; });
    else if (step == "hold")
        printer().fault([&](auto& faults) { faults.bytesUntilHolding = number; });
    else if (step == "free")
        m_later = std::thread([number] {
            std::this_thread::sleep_for(std::chrono::milliseconds(number));
            printer().fault([](auto& faults) { faults.bytesUntilHolding = -1; });
        });
    else if (step == "wait")
        joinLater();
    else if (step == "haltOut" || step == "haltIn")
        printer().fault([&](auto& faults) { (step == "haltOut" ? faults.outHalted : faults.inHalted) = true; });
    else if (step == "mute")
        printer().fault([](auto& faults) { faults.silent = true; });
    else if (step == "say")
        printer().say(QByteArray(number, '\xFF'));
    else if (step == "up" || step == "down")
        return connection->connectUsb() == (step == "up");
    else if (step == "ask")
        return connection->sendCommand(CommandGetModel) > 0;
    else if (step == "read")
        return hasRead(argument);
    else if (step == "drain")
        return hasDrained(number);
    else if (step == "print")
        return isPrinted(number);
    else if (step == "fail")
        return isCutOff(number);
    else if (step == "keys")
        return printer().report().keyExchanges == number;
    else
        return false;
    return true;
}

bool ScenariosTest::isPrinted(int lines)
{
    const JobPattern job(printHeadWidth(), lines, ++m_jobs);
    m_paper += job.dots;
    return runJob(job.picture) == std::vector<int>{0} && printer().jobLines() == m_paper;
}

bool ScenariosTest::isCutOff(int lines)
{
    const JobPattern job(printHeadWidth(), lines, ++m_jobs);
    if (runJob(job.picture) != std::vector<int>{1})
        return false;
    const QByteArray before = m_paper, whole = before + job.dots;
    m_paper = printer().jobLines();
    return m_paper.startsWith(before) && whole.startsWith(m_paper) && m_paper != whole;
}

/// A model name also makes the client know the model, as the main window does.
bool ScenariosTest::hasRead(const QByteArray& expected)
{
    int length = 0, result = 0;
    const auto* bytes = reinterpret_cast<const char*>(printerConnection()->read(&length, &result));
    QByteArray found = QByteArray::number(result < 0 ? result : length);
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

bool ScenariosTest::hasDrained(int bytes)
{
    int total = 0, length = 0, result = 0;
    do {
        printerConnection()->read(&length, &result);
        total += length;
    } while (result == 0 && length > 0);
    return result == kPortTimedOut && total == bytes;
}

void ScenariosTest::endsInTheMiddleOfALongJob()
{
    QRandomGenerator random(5);
    for (int round = 0; round < 12; ++round) {
        startOver();
        m_paper.clear();
        QVERIFY(doStep("up", {}));
        printer().fault([&](auto& faults) { faults.bytesUntilGone = random.bounded(12, 150 * 1018); });
        QVERIFY2(isCutOff(150 * 21), QByteArray::number(round));
        printer().plugIn();
        QVERIFY2(isPrinted(150 * 21) && printer().report().keyExchanges == 2, QByteArray::number(round));
    }
}

QTEST_GUILESS_MAIN(ScenariosTest)
#include "tst_scenarios.moc"
