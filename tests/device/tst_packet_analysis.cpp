#include "device/packet_analysis.h"

#include <QtTest>

#include <vector>

namespace {

/// Code and text of every report. The buffer is as large as the batch, so that the sanitizer sees a look beyond it.
QStringList reportsOf(const QByteArray& batch)
{
    const std::vector<unsigned char> bytes(batch.cbegin(), batch.cend());
    QStringList reports;
    for (const PacketTrace& trace : analysePackets(bytes.data(), batch.size())) {
        if (trace.report)
            reports += QString::number(trace.report->pkgTag, 16) + ' ' + trace.report->text;
    }
    return reports;
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
        row("high byte of the length", "02 fe 00 0001 00", {});
        const QByteArray dots(2 * 258, '4');
        row("258 bytes", "02 fe 00 0201" + dots + "c2a1b0d4 03" + k1, {"fe " + dots, "7 K1"});
        row("a start byte behind a false one", "02" + k1, {"7 K1"});
        row("last payload byte cut", "02 07 00 0200 4b", {});
        row("CRC cut", "02 07 00 0200 4b31", {"7 K1"});
        row("end marker cut, scanned again", "02 fe 07 0500 0207000000 c2a1b0d4", {"fe 0207000000", "7 "});
        row("whole, not scanned again", "02 fe 07 0500 0207000000 c2a1b0d4 03", {"fe 0207000000"});
        row("no payload", "02 07 00 0000", {"7 "});
        row("feed answer of any length", "02 1a 00 ffff 0207000000 0000" + k1, {"7 K1"});
        row("feed answer to its last byte", "02 1a 00 0000 000000000000 02070000 00", {});
        row("feed answer at the end", k1 + "02 1a", {"7 K1"});

        row("version", "02 05 00 0300 0a0010 00000000 03", {"5 100a"});
        for (const int code : {0x07, 0x09, 0x0B, 0x30, 0x31})
            row(qPrintable("text " + QString::number(code, 16)),
                "02" + QByteArray(1, static_cast<char>(code)).toHex() + "00 0300 4100e9",
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
        for (int cut = 0; cut < batch.size(); ++cut) // a frame more is found at most, within one that was cut
            QVERIFY(reportsOf(batch.left(cut)).size() <= reportsOf(batch).size() + 1);
    }
};

QTEST_APPLESS_MAIN(PacketAnalysisTest)
#include "tst_packet_analysis.moc"
