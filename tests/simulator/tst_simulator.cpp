#include "device/port.h"
#include "simulator/simulated_port.h"

#include <QtTest>

#include <atomic>
#include <future>

using Model = SimulatedPrinter::Model;
using Condition = SimulatedPrinter::Condition;
Q_DECLARE_METATYPE(SimulatedPrinter::Condition)

class SimulatorTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void streams_data();
    void streams();
    void jobs_data();
    void jobs();
    void startsAfreshAfterEveryByte();
    void refusesAndRecovers();
    void memoryIsBounded();
    void whatWatchersAsk();
    void threadsAtOnce();
    void replugsWhileThreadsWork();

private:
    int open() { return io_port_creator(&m_usb, "USB"); }
    int prepare() { return m_usb->prepare(m_usb); }
    int write(const QByteArray& bytes);

    SimulatedPrinter& m_printer = simulatedPrinter();
    port* m_usb = nullptr;
};

namespace {

const auto unhex = QByteArray::fromHex;
constexpr quint32 kKey1 = 0x77073096U;

// Frames are made by the printer's own code, which tst_protocol_document holds against bytes typed by hand.
QByteArray command(quint8 code, const char* payload = "0000", quint32 key = kPowerOnKey, quint8 tag = 0)
{
    return sealedFrame(code, tag, unhex(payload), key);
}

QByteArray print(const QByteArray& dots, quint32 key = kPowerOnKey)
{
    return sealedFrame(0x00, 1, dots, key);
}

const QByteArray kSetKey1 = command(0x18, "140d181d", kKeyMask, 1);
const QByteArray kFeed2 = command(0x1A, "0200");
const QByteArray kFeed0Key1 = command(0x1A, "0000", kKey1);

// The outermost dots of the first line, four dots from the middle on of the second.
QByteArray twoLines(int lineBytes)
{
    const QByteArray blank(lineBytes / 2, '\0');
    return '\x80' + blank.mid(1) + blank.mid(1) + '\x01' + blank + '\xf0' + blank.mid(1);
}

// No head has lines that would need padding in a picture.
QByteArray bits(const QImage& paper)
{
    return QByteArray(reinterpret_cast<const char*>(paper.constBits()), int(paper.sizeInBytes()));
}

} // namespace

void SimulatorTest::init()
{
    m_printer.reset();
    QCOMPARE(open(), 0);
}

/// @return  the port's result, or 1 after a short write
int SimulatorTest::write(const QByteArray& bytes)
{
    int written = -1;
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.constData());
    const int result = m_usb->write(m_usb, data, 0, bytes.size(), &written);
    return result == 0 && written != bytes.size() ? 1 : result;
}

void SimulatorTest::streams_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QString>("frames"); // code, tag, payload bytes; "!" where the seal is wrong
    QTest::addColumn<int>("skipped");
    QTest::addColumn<QByteArray>("replies");
    const QByteArray feed0 = command(0x1A);
    const QByteArray feed0Key0 = command(0x1A, "0000", 0);
    const QByteArray keys = kSetKey1 + command(0x18, "823d1f6a", kKeyMask, 1);
    const QByteArray ignored = command(0x18, "140d181d", kPowerOnKey, 1) + command(0x18, "010203", kKeyMask, 1) +
                               command(0x18, "140d181d", kKeyMask) + command(0x06, "0000", kPowerOnKey, 1) +
                               command(0x06, "0100") + command(0x1A, "000000") + command(0x40);
    const char* ignoredFrames = "18-1-4! 18-1-3 18-0-4 06-1-2 06-0-2 1a-0-3 40-0-2 1a-0-2";

    QTest::newRow("noise") << unhex("00ff") + kFeed2 + unhex("55") + feed0 << "1a-0-2 1a-0-2" << 3 << kFeed2 + feed0;
    QTest::newRow("tag 2") << unhex("0206070200") + feed0 << "1a-0-2" << 5 << feed0;
    QTest::newRow("wrong end") << unhex("021a0002000200 7992b111 04") + feed0 << "1a-0-2" << 12 << feed0;
    QTest::newRow("too long") << unhex("0200010c00") + kFeed2 + unhex("0102030400") << "1a-0-2" << 10 << kFeed2;
    QTest::newRow("longest") << print(QByteArray(1008, '\0')) + feed0 << "00-1-1008 1a-0-2" << 0 << feed0;
    QTest::newRow("past the longest") << unhex("020001f103") + feed0 << "1a-0-2" << 5 << feed0;
    QTest::newRow("wrong seal") << unhex("021a0002000200 7992b110 03") + feed0 << "1a-0-2! 1a-0-2" << 0 << feed0;
    QTest::newRow("keys") << keys + kFeed0Key1 + feed0Key0 << "18-1-4 18-1-4 1a-0-2! 1a-0-2" << 0 << feed0Key0;
    QTest::newRow("ignored") << ignored + kFeed2 << ignoredFrames << 0 << kFeed2;
}

/// Each stream in pieces of every size: where it is cut must not matter.
void SimulatorTest::streams()
{
    QFETCH(QByteArray, sent);
    for (int piece = 1; piece <= sent.size(); ++piece) {
        init();
        for (int at = 0; at < sent.size(); at += piece)
            QCOMPARE(write(sent.mid(at, piece)), 0);
        QStringList frames;
        for (const FrameRecord& frame : m_printer.frames()) {
            const QString code = QByteArray(1, char(frame.code)).toHex();
            frames += QString("%1-%2-%3%4").arg(code).arg(frame.tag).arg(frame.length).arg(frame.crcOk ? "" : "!");
        }
        QTEST(frames.join(' '), "frames");
        QTEST(int(m_printer.report().skippedBytes), "skipped");
        QTEST(m_printer.takeReply(4096), "replies");
    }
}

void SimulatorTest::jobs_data()
{
    QTest::addColumn<int>("lineBytes");
    QTest::addColumn<Condition>("condition");
    QTest::addColumn<QByteArray>("state");
    const QByteArray k1 = command(0x07, "5175696c6c626f785f4b31");
    const QByteArray k2 = command(0x07, "5175696c6c626f785f4b32");
    QTest::newRow("K1") << 48 << Condition::Ready << k1 + command(0x0D, "0000");
    QTest::newRow("K2") << 72 << Condition::Ready << k2 + command(0x0D, "0000");
    QTest::newRow("no paper") << 48 << Condition::PaperOut << k1 + command(0x0D, "0100");
    QTest::newRow("cover open") << 48 << Condition::CoverOpen << k1 + command(0x0D, "1000");
}

/// Feeds and a broken frame within the second line, then the self-test page, which belongs to no job.
void SimulatorTest::jobs()
{
    QFETCH(int, lineBytes);
    QFETCH(Condition, condition);
    QFETCH(QByteArray, state);
    const bool moves = condition == Condition::Ready;
    const QByteArray lines = twoLines(lineBytes);
    const QByteArray picture = QByteArray(lines).insert(lineBytes, QByteArray(2 * lineBytes, '\0'));
    m_printer.reset(lineBytes == 72 ? Model::K2 : Model::K1);
    m_printer.setCondition(condition);
    QCOMPARE(open(), 0);
    write(print(lines.left(80)) + kFeed2 + command(0x1A) + print(lines, kKey1) + print(lines.mid(80)));
    write(command(0x1B) + command(0x06) + command(0x0C));
    QCOMPARE(m_printer.takeReply(4096), kFeed2 + command(0x1A) + command(0x1C, "00") + state);
    QCOMPARE(m_printer.report().crcErrors, 1);
    QCOMPARE(m_printer.paper().size(), moves ? QSize(lineBytes * 8, 36) : QSize(0, 0));
    QCOMPARE(bits(m_printer.paper()).left(4 * lineBytes), moves ? picture : QByteArray());
    QCOMPARE(bits(m_printer.paper(4)).count('\xff'), moves ? 2 * lineBytes + 30 * lineBytes / 2 : 0);
    QCOMPARE(m_printer.report().fedLines, moves ? 2 : 0);
    QCOMPARE(m_printer.report().feeds, (QVector<int>{2, 0}));
    m_printer.setCondition(Condition::Ready);
    write(print(lines)); // what moved no paper is not printed later
    QCOMPARE(m_printer.jobLines(), lines.repeated(moves ? 2 : 1));
}

/// A job cut by the device's going away, after each of its bytes, and another one cut by a new session.
void SimulatorTest::startsAfreshAfterEveryByte()
{
    const QByteArray lines = twoLines(48);
    const QList<QByteArray> job{kSetKey1, print(lines.left(60), kKey1), print(lines.mid(60), kKey1), kFeed0Key1};
    const QByteArray bytes = job.join();
    for (int left = 0; left <= bytes.size(); ++left) {
        init();
        const QByteArray cut = lines.left((left >= 84 ? 48 : 0) + (left >= 130 ? 48 : 0));
        QSignalSpy plugs(&m_printer, &SimulatedPrinter::pluggedInChanged);
        m_printer.fault([&](auto& faults) { faults.bytesUntilGone = left; });
        int end = 0;
        for (const QByteArray& frame : job)
            QCOMPARE(write(frame), (end += frame.size()) <= left ? 0 : -4);
        QCOMPARE(open(), -4);
        m_printer.plugIn(Model::K1);
        QCOMPARE(plugs, (QList<QVariantList>{{false}, {true}}));
        QCOMPARE(write(kSetKey1), -4); // the connection of before stays dead
        QCOMPARE(open(), 0);
        QCOMPARE(m_printer.report().key, kPowerOnKey);
        QCOMPARE(write(bytes), 0);
        QCOMPARE(m_printer.takeReply(4096), kFeed0Key1);
        QCOMPARE(m_printer.jobLines(), cut + lines);

        QCOMPARE(write(bytes.left(left)), 0);
        QCOMPARE(prepare(), 0);
        QCOMPARE(m_printer.report().key, kKey1);
        QCOMPARE(write(bytes), 0);
        QCOMPARE(m_printer.takeReply(4096), kFeed0Key1);
        QCOMPARE(bits(m_printer.paper()), cut + lines + cut + lines);
    }
}

void SimulatorTest::refusesAndRecovers()
{
    unsigned char buffer[64] = {};
    int count = -1;
    QCOMPARE(io_port_creator(&m_usb, "COM"), -2);
    QCOMPARE(io_port_creator(&m_usb, nullptr), -2);
    QCOMPARE(io_port_creator(nullptr, "USB"), -2);
    QCOMPARE(m_usb->write(m_usb, buffer, 1, 1, &count), -2);
    QCOMPARE(m_usb->write(m_usb, buffer, 0, -1, &count), -2);
    QCOMPARE(m_usb->write(m_usb, nullptr, 0, 1, &count), -2);
    QCOMPARE(m_usb->read(m_usb, nullptr, 0, 1, &count), -2);

    QCOMPARE(write(kFeed2 + kFeed2), 0);
    m_printer.fault([](auto& faults) { faults.refusingWrites = true; });
    QCOMPARE(write(kFeed2), -9);
    QCOMPARE(m_usb->read(m_usb, buffer, 0, 5, &count), 0); // what was answered before can still be read
    QCOMPARE(m_usb->read(m_usb, buffer + count, 0, 64 - count, &count), 0);
    QCOMPARE(QByteArray(reinterpret_cast<char*>(buffer), 24), kFeed2 + kFeed2);
    m_printer.fault([](auto& faults) { faults.refusingWrites = false; });
    m_printer.fault([](auto& faults) { faults.silent = true; });
    QCOMPARE(write(kFeed2), 0);
    QCOMPARE(m_usb->read(m_usb, buffer, 0, 64, &count), kPortTimedOut);
    m_printer.fault([](auto& faults) { faults.failingPrepare = true; });
    QCOMPARE(prepare(), -9);
    m_printer.unplug();
    QCOMPARE(prepare(), -4);

    m_printer.fault([](auto& faults) { faults.refusingWrites = true; });
    m_printer.setCondition(Condition::CoverOpen);
    m_printer.reset();
    QCOMPARE(m_usb->read(m_usb, buffer, 0, 64, &count), -4); // the connection of before
    QCOMPARE(write(kFeed2), -4);
    QCOMPARE(prepare(), 0);
    QCOMPARE(write(kFeed2 + print(twoLines(48))), 0);
    QCOMPARE(m_printer.takeReply(4096), kFeed2);
    QCOMPARE(m_printer.paper(2).pixel(0, 0), qRgb(0, 0, 0));
    QCOMPARE(m_printer.paper(2).pixel(7, 0), qRgb(255, 255, 255));
    m_printer.plugIn(Model::K2);
    QCOMPARE(m_printer.report().paperLines, 0); // a roll of its own
}

void SimulatorTest::memoryIsBounded()
{
    QCOMPARE(write(kFeed2.repeated(6000)), 0);
    QCOMPARE(m_printer.report().feeds.size(), int(SimulatedPrinter::kKeptRecords));
    QCOMPARE(m_printer.takeReply(1 << 20), kFeed2.repeated(5461)); // whole replies, at most 64 KiB
    QCOMPARE(write(kFeed2), 0);
    QCOMPARE(m_printer.takeTransfer(5) + m_printer.takeTransfer(64), kFeed2);

    PaperRoll roll(384);
    for (int thousand = 0; thousand < 2500; ++thousand) // enough to give up memory twice
        roll.burn(QByteArray(1000 * 48, static_cast<char>(thousand)));
    roll.feed(10);
    QCOMPARE(roll.jobLines().size(), (PaperRoll::kKeptLines - 10) * 48);
    QCOMPARE(roll.jobLines().at(0), static_cast<char>(1500));
    QCOMPARE(bits(roll.picture(2499999)), QByteArray(48, static_cast<char>(2499)) + QByteArray(480, '\0'));
    QCOMPARE(bits(roll.picture(2499998, 3)), QByteArray(96, static_cast<char>(2499)) + QByteArray(48, '\0'));
    QCOMPARE(bits(roll.picture(0, 1)), QByteArray(48, static_cast<char>(1500))); // the oldest that is left
    QVERIFY(roll.picture(2499998, 0).isNull());
}

void SimulatorTest::whatWatchersAsk()
{
    const QByteArray lines = twoLines(48);
    const int roll = m_printer.lookAtPaper(0, 0).roll;
    write(kFeed2 + print(lines) + kFeed2);
    const PaperLook look = m_printer.lookAtPaper(1, 3);
    QCOMPARE(bits(look.picture), QByteArray(48, '\0') + lines);
    QCOMPARE(look.firstLine, 1);
    QCOMPARE(look.lineCount, 6);
    QCOMPARE(look.firstKeptLine, 0);
    QCOMPARE(look.headDots, 384);

    const qint64 number = m_printer.frames().last().number;
    write(kFeed2);
    QCOMPARE(m_printer.frames(number).size(), 2);
    QCOMPARE(m_printer.frames(number + 2).size(), 0);
    QSignalSpy conditions(&m_printer, &SimulatedPrinter::conditionChanged);
    m_printer.setCondition(Condition::Ready);
    m_printer.setCondition(Condition::PaperOut);
    QCOMPARE(conditions.size(), 1);

    m_printer.unplug();
    m_printer.plugIn();
    QCOMPARE(m_printer.lookAtPaper(0, 0).roll, roll);
    m_printer.plugIn(Model::K2);
    QCOMPARE(m_printer.lookAtPaper(0, 0).roll, roll + 1);
    m_printer.reset();
    QCOMPARE(m_printer.lookAtPaper(0, 0).roll, roll + 2);
    QCOMPARE(conditions.size(), 2);
    open();
    write(kFeed2);
    QCOMPARE(m_printer.frames().value(0).number, number + 2); // no number comes twice
}

/// A job, somebody asking whether the printer lives, and watchers: no frame, line, reply or signal gets lost.
void SimulatorTest::threadsAtOnce()
{
    constexpr int kFrames = 500;
    const QByteArray line = twoLines(48).left(48);
    QObject watcher;
    std::atomic<int> frames{0};
    std::atomic<int> failures{write(kSetKey1)};
    int papers = 0;
    connect(
        &m_printer, &SimulatedPrinter::frameReceived, &watcher, [&] { ++frames; }, Qt::DirectConnection);
    const auto look = [&] {
        failures += bits(m_printer.paper()) == line.repeated(++papers) ? 0 : 1;
    };
    connect(&m_printer, &SimulatedPrinter::paperChanged, &watcher, look, Qt::DirectConnection);
    {
        const auto repeat = [&](const QByteArray& frame) {
            for (int i = 0; i < kFrames; ++i)
                failures += write(frame);
        };
        const auto job = std::async(std::launch::async, repeat, print(line, kKey1));
        const auto checks = std::async(std::launch::async, repeat, kFeed0Key1);
        while (m_printer.frames().size() <= 2 * kFrames && failures == 0)
            QVERIFY(line.repeated(kFrames).startsWith(bits(m_printer.paper())));
    }
    QCOMPARE(failures.load(), 0);
    QCOMPARE(papers, kFrames);
    QCOMPARE(frames.load(), 2 * kFrames);
    QCOMPARE(m_printer.report().frames, 2 * kFrames + 1);
    QCOMPARE(m_printer.takeReply(1 << 20), kFeed0Key1.repeated(kFrames));
}

/// Whoever writes learns of every replug, so that no frame is ever sealed with a key that the device has lost.
void SimulatorTest::replugsWhileThreadsWork()
{
    std::atomic<bool> done{write(kSetKey1) != 0};
    const auto job = std::async(std::launch::async, [&] {
        while (!done) {
            if (write(print(twoLines(48), kKey1)) != 0 && prepare() == 0)
                write(kSetKey1);
        }
    });
    const auto reader = std::async(std::launch::async, [&] {
        unsigned char byte = 0;
        for (int count = 0; !done;)
            m_usb->read(m_usb, &byte, 0, 1, &count);
    });
    const auto stop = qScopeGuard([&] { done = true; });
    for (int replugs = 1; replugs <= 50; ++replugs) {
        m_printer.unplug();
        m_printer.plugIn();
        QTRY_VERIFY(m_printer.report().keyExchanges > replugs);
    }
    QCOMPARE(m_printer.report().crcErrors, 0);
    QVERIFY(m_printer.report().paperLines > 0);
}

QTEST_GUILESS_MAIN(SimulatorTest)
#include "tst_simulator.moc"
