#include "simulator/simulated_port.h"
#include "tests/device/port_calls.h"
#include "tests/files.h"

#include <QRegularExpression>
#include <QtTest>

using Model = SimulatedPrinter::Model;
using Condition = SimulatedPrinter::Condition;
Q_DECLARE_METATYPE(SimulatedPrinter::Condition)

namespace {

const auto unhex = QByteArray::fromHex;
constexpr quint32 kKey1 = 0x77073096U;

// Frames are made by the printer's own code, which examples() holds against bytes typed by hand.
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

// The outermost dots of the first line, four dots from the middle on of the second.
QByteArray twoLines(int lineBytes)
{
    const QByteArray blank(lineBytes / 2, '\0');
    return '\x80' + blank.mid(1) + blank.mid(1) + '\x01' + blank + '\xf0' + blank.mid(1);
}

// No head has lines that would need padding in a picture.
QByteArray bits(const QImage& paper)
{
    return QByteArray(reinterpret_cast<const char*>(paper.constBits()), static_cast<int>(paper.sizeInBytes()));
}

} // namespace

class SimulatorTest : public QObject
{
    Q_OBJECT

    SimulatedPrinter& m_printer = simulatedPrinter();
    port* m_usb = nullptr;

    int open() { return io_port_creator(&m_usb, "USB"); }
    int prepare() { return m_usb->prepare(m_usb); }

    int write(const QByteArray& bytes) { return writeTo(m_usb, bytes); }
    QByteArray read(int capacity = 4096) { return readFrom(m_usb, capacity); }

private slots:
    void init()
    {
        m_printer.reset();
        QCOMPARE(open(), 0);
    }

    /// Every example of docs/protocol.md in a block marked "hex" is played against a printer just switched on: lines that
    /// begin with ">" are sent, lines that begin with "<" have to be the replies, indented lines go on.
    void examples()
    {
        const QString text = QString::fromUtf8(readFile(PROTOCOL_DOCUMENT));
        auto block = QRegularExpression("```hex\n([^`]*)").globalMatch(text);
        QVERIFY(block.hasNext());
        while (block.hasNext()) {
            SimulatedPrinter printer;
            const QString transfers = block.next().captured(1).replace("\n ", " ");
            for (const QString& transfer : transfers.split('\n', Qt::SkipEmptyParts)) {
                const QByteArray bytes = QByteArray::fromHex(transfer.mid(1).toLatin1());
                if (transfer.startsWith('>'))
                    printer.receive(reinterpret_cast<const unsigned char*>(bytes.constData()), bytes.size());
                else
                    QCOMPARE(printer.takeTransfer(4096).toHex(' '), bytes.toHex(' '));
            }
            QCOMPARE(printer.takeTransfer(4096), QByteArray());
            QCOMPARE(printer.report().skippedBytes + printer.report().crcErrors, 0);
        }
    }

    void streams_data()
    {
        QTest::addColumn<QByteArray>("sent");
        QTest::addColumn<QString>("frames"); // code, tag, payload bytes; "!" where the seal is wrong
        QTest::addColumn<qint64>("skipped");
        QTest::addColumn<QByteArray>("replies");
        const QByteArray feed0 = command(0x1A);
        const QByteArray feed0Key0 = command(0x1A, "0000", 0);
        const QByteArray keys = kSetKey1 + command(0x18, "823d1f6a", kKeyMask, 1);
        const QByteArray ignored = command(0x18, "140d181d", kPowerOnKey, 1) + command(0x18, "010203", kKeyMask, 1) +
                                   command(0x18, "140d181d", kKeyMask) + command(0x06, "0000", kPowerOnKey, 1) +
                                   command(0x06, "0100") + command(0x1A, "000000") + command(0x40);
        const char* ignoredFrames = "18-1-4! 18-1-3 18-0-4 06-1-2 06-0-2 1a-0-3 40-0-2 1a-0-2";

        QTest::newRow("noise") << unhex("00ff") + kFeed2 + unhex("55") + feed0 << "1a-0-2 1a-0-2" << qint64{3}
                               << kFeed2 + feed0;
        QTest::newRow("tag 2") << unhex("0206070200") + feed0 << "1a-0-2" << qint64{5} << feed0;
        QTest::newRow("wrong end") << unhex("021a0002000200 7992b111 04") + feed0 << "1a-0-2" << qint64{12} << feed0;
        QTest::newRow("too long") << unhex("0200010c00") + kFeed2 + unhex("0102030400") << "1a-0-2" << qint64{10}
                                  << kFeed2;
        QTest::newRow("longest") << print(QByteArray(1008, '\0')) + feed0 << "00-1-1008 1a-0-2" << qint64{0} << feed0;
        QTest::newRow("past the longest") << unhex("020001f103") + feed0 << "1a-0-2" << qint64{5} << feed0;
        QTest::newRow("keys") << keys + command(0x1A, "0000", kKey1) + feed0Key0 << "18-1-4 18-1-4 1a-0-2! 1a-0-2"
                              << qint64{0} << feed0Key0;
        QTest::newRow("ignored") << ignored + kFeed2 << ignoredFrames << qint64{0} << kFeed2;
    }

    /// Each stream in pieces of every size: where it is cut must not matter.
    void streams()
    {
        QFETCH(QByteArray, sent);
        for (int piece = 1; piece <= sent.size(); ++piece) {
            init();
            for (int at = 0; at < sent.size(); at += piece)
                QCOMPARE(write(sent.mid(at, piece)), 0);
            QStringList frames;
            for (const FrameRecord& frame : m_printer.frames()) {
                const QString code = QByteArray(1, static_cast<char>(frame.code)).toHex();
                frames +=
                    QString("%1-%2-%3%4").arg(code).arg(frame.tag).arg(frame.length).arg(frame.crcOk ? "" : "!");
            }
            QTEST(frames.join(' '), "frames");
            QTEST(m_printer.report().skippedBytes, "skipped");
            QTEST(read(), "replies");
        }
    }

    void jobs_data()
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
    void jobs()
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
        write(print(lines.left(20)) + kFeed2.left(7));
        QCOMPARE(prepare(), 0); // a new session, of which neither half a line nor half a frame is kept
        write(print(lines.left(80)) + kFeed2 + command(0x1A) + print(lines, kKey1) + print(lines.mid(80)));
        write(command(0x1B) + command(0x06) + command(0x0C));
        QCOMPARE(read(), kFeed2 + command(0x1A) + command(0x1C, "00") + state);
        QCOMPARE(m_printer.report().crcErrors + m_printer.report().skippedBytes, qint64{1});
        QCOMPARE(m_printer.paper().size(), moves ? QSize(lineBytes * 8, 36) : QSize(0, 0));
        QCOMPARE(bits(m_printer.paper()).left(4 * lineBytes), moves ? picture : QByteArray());
        QCOMPARE(bits(m_printer.paper(4)).count('\xff'), moves ? 2 * lineBytes + 30 * lineBytes / 2 : 0);
        QCOMPARE(m_printer.lookAtPaper(0, 1).headDots, lineBytes * 8);
        QCOMPARE(m_printer.report().fedLines, moves ? 2 : 0);
        QCOMPARE(m_printer.report().feeds, (QVector<int>{2, 0}));
        m_printer.setCondition(Condition::Ready);
        write(print(lines)); // what moved no paper is not printed later
        QCOMPARE(m_printer.jobLines(), lines.repeated(moves ? 2 : 1));
    }

    void refusesAndRecovers()
    {
        QCOMPARE(write(kFeed2 + kFeed2), 0);
        m_printer.fault([](auto& faults) { faults.refusingWrites = true; });
        QCOMPARE(write(kFeed2), kPortRefused);
        QCOMPARE(read(5), kFeed2.left(5)); // what was answered before can still be read
        QCOMPARE(read(), kFeed2.mid(5) + kFeed2);
        const qint64 lastNumber = m_printer.frames().last().number;
        m_printer.reset();
        QCOMPARE(read(), QByteArray::number(kPortNoDevice)); // the connection of before
        QCOMPARE(write(kFeed2), kPortRefused);               // as the one that failed, until the port is prepared
        QCOMPARE(prepare(), 0);
        QCOMPARE(write(kFeed2 + kSetKey1), 0);
        QCOMPARE(m_printer.frames().first().number, lastNumber + 1); // no number comes twice
        m_printer.unplug();
        m_printer.plugIn();
        QCOMPARE(m_printer.report().key, kPowerOnKey);
        QCOMPARE(write(kFeed2), kPortNoDevice);
    }

    void memoryIsBounded()
    {
        QCOMPARE(write(kFeed2.repeated(6000)), 0);
        QCOMPARE(m_printer.report().feeds.size(), int{SimulatedPrinter::kKeptRecords});
        QCOMPARE(read(1 << 20), kFeed2.repeated(5461)); // whole replies, at most 64 KiB
        QCOMPARE(write(kFeed2), 0);
        QCOMPARE(m_printer.takeTransfer(5) + m_printer.takeTransfer(64), kFeed2);

        PaperRoll roll(384);
        for (int thousand = 0; thousand < 2500; ++thousand) // enough to give up memory twice
            roll.burn(QByteArray(1000 * 48, static_cast<char>(thousand)));
        roll.feed(10);
        QCOMPARE(roll.jobLines().size(), (PaperRoll::kKeptLines - 10) * 48);
        QCOMPARE(roll.jobLines().at(0), static_cast<char>(1500));
        QCOMPARE(bits(roll.picture(2499999)), QByteArray(48, static_cast<char>(2499)) + QByteArray(480, '\0'));
        QCOMPARE(bits(roll.picture(0, 1)), QByteArray(48, static_cast<char>(1500))); // the oldest that is left
    }
};

QTEST_GUILESS_MAIN(SimulatorTest)
#include "tst_simulator.moc"
