#include "device/packet_analysis.h"

#include <QtTest>

#include <random>
#include <vector>

namespace {

/// Code and text, or payload, of every report; from a buffer of exactly the batch's size, for the sanitizer to see a
/// look beyond it.
QStringList reportsOf(const QByteArray& batch, bool payloads = false)
{
    const std::vector<unsigned char> bytes(batch.cbegin(), batch.cend());
    QStringList reports;
    for (const PacketTrace& trace : analysePackets(bytes.data(), batch.size())) {
        if (trace.report)
            reports += QString::number(trace.report->pkgTag, 16) + ' ' + (payloads ? trace.hex : trace.report->text);
    }
    return reports;
}

/// The code and payload of every frame, by eating the batch up from the front.
QStringList plainWalk(QByteArray rest)
{
    QStringList frames;
    while (rest.size() >= 2) {
        const bool headed = rest[0] == '\x02' && rest.size() >= 5;
        const int size = headed ? quint8(rest[3]) + 256 * quint8(rest[4]) : 1000 * 1000;
        const bool feedAnswer = rest.startsWith("\x02\x1a");
        if (!feedAnswer && rest.size() >= 5 + size)
            frames += QString::number(quint8(rest[1]), 16) + ' ' + rest.mid(5, size).toHex();
        rest.remove(0, feedAnswer ? 12 : rest.size() >= 10 + size ? 10 + size : 1);
    }
    return frames;
}

} // namespace

class PacketAnalysisTest : public QObject
{
    Q_OBJECT

private slots:
    void reports_data()
    {
        QTest::addColumn<QByteArray>("batch"); // hexadecimal
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* name, const QByteArray& batch, const QStringList& expected) {
            QTest::newRow(name) << batch << expected;
        };
        const QByteArray k1 = "02 07 00 0200 4b31 c2a1b0d4 03";
        row("two in a batch", k1 + k1, {"7 K1", "7 K1"});
        row("noise, the end of a cut frame", "3f 4b31 c2a1b0d4 03" + k1, {"7 K1"});
        row("cut in the header", "02 07 00 02", {});
        row("length runs past the batch", "02 07 00 ffff 4b31" + k1, {"7 K1"});
        row("last payload byte cut", "02 07 00 0200 4b", {});
        row("CRC cut", "02 07 00 0200 4b31", {"7 K1"});
        row("end marker cut, scanned again", "02 fe 07 0500 0207000000 c2a1b0d4", {"fe 0207000000", "7 "});
        row("whole, not scanned again", "02 fe 07 0500 0207000000 c2a1b0d4 03", {"fe 0207000000"});
        row("no payload", "02 07 00 0000", {"7 "});
        row("feed answer of any length", "02 1a 00 ffff 0207000000 0000" + k1, {"7 K1"});
        row("feed answer at the end", k1 + "02 1a", {"7 K1"});

        row("version", "02 05 00 0300 0a0010 00000000 03", {"5 100a"});
        for (const int code : {0x07, 0x09, 0x0B, 0x30, 0x31})
            row(qPrintable("text " + QString::number(code, 16)),
                "02" + QByteArray(1, char(code)).toHex() + "00 0300 4100e9",
                {QString::number(code, 16) + QString::fromLatin1(" A\0\xe9", 4)});
        row("status ready, second byte ignored", "02 0d 00 0200 0001", {QString::fromUtf8("d 羽毛盒复活了")});
        row("status out of paper", "02 0d 00 0200 0100", {"d "});
        row("status of 1 byte", "02 0d 00 0100 00", {"d "});
        row("status of 3 bytes", "02 0d 00 0300 000000", {"d "});
        row("length 47", "02 35 00 0400 2f000000", {"35 0mm"});
        row("length 1000", "02 35 00 0400 e8030000", {"35 21mm"});
        row("length, top bit", "02 35 00 0400 04030281", {"35 45452246mm"});
        row("length of 3 bytes", "02 35 00 0300 ffffff", {"35 0mm"});
        row("any other", "02 fe 00 0300 0a1bff", {"fe 0a1bff"});
    }

    void reports()
    {
        QFETCH(QByteArray, batch);
        batch = QByteArray::fromHex(batch);
        QTEST(reportsOf(batch), "expected");
        for (int cut = 0; cut < batch.size(); ++cut)
            QCOMPARE(reportsOf(batch.left(cut), true), plainWalk(batch.left(cut)));
    }

    void noise()
    {
        std::mt19937 random(3);
        const QByteArray likely = QByteArray::fromHex("020202030000000000000105071a0d3501fe");
        int found = 0;
        for (int i = 0; i < 3000; ++i) {
            QByteArray batch;
            while (random() % 60)
                batch += random() % 8 ? likely[uint(random() % uint(likely.size()))] : char(random() & 0xFFU);
            QVERIFY2(reportsOf(batch, true) == plainWalk(batch), batch.toHex());
            found += plainWalk(batch).size();
        }
        QVERIFY(found > 1000);
    }
};

QTEST_APPLESS_MAIN(PacketAnalysisTest)
#include "tst_packet_analysis.moc"
