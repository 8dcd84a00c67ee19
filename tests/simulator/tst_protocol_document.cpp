#include "simulator/simulated_printer.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

/// Every example of docs/protocol.md in a block marked "hex" is played against a printer just switched on: lines that
/// begin with ">" are sent, lines that begin with "<" have to be the replies, indented lines go on.
class ProtocolDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void examples_data()
    {
        QTest::addColumn<QStringList>("transfers");
        QFile document(PROTOCOL_DOCUMENT);
        QVERIFY(document.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(document.readAll());
        auto block = QRegularExpression("```hex\n([^`]*)").globalMatch(text);
        for (int number = 1; block.hasNext(); ++number) {
            const QString transfers = block.next().captured(1).replace("\n ", " ");
            QTest::addRow("example %d", number) << transfers.split('\n', Qt::SkipEmptyParts);
        }
    }

    void examples()
    {
        QFETCH(QStringList, transfers);
        SimulatedPrinter printer;
        for (const QString& transfer : qAsConst(transfers)) {
            const QByteArray bytes = QByteArray::fromHex(transfer.mid(1).toLatin1());
            if (transfer.startsWith('>'))
                printer.receive(reinterpret_cast<const unsigned char*>(bytes.constData()), bytes.size());
            else
                QCOMPARE(printer.takeTransfer(4096).toHex(' '), bytes.toHex(' '));
        }
        QCOMPARE(printer.takeTransfer(4096), QByteArray());
        QCOMPARE(printer.report().skippedBytes, 0);
        QCOMPARE(printer.report().crcErrors, 0);
    }
};

QTEST_APPLESS_MAIN(ProtocolDocumentTest)
#include "tst_protocol_document.moc"
