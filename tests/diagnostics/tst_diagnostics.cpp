#include "app/globals/model.h"
#include "app/language/language_window.h"
#include "device/diagnostics/device_command_window.h"
#include "device/diagnostics/diagnostic_hub.h"
#include "device/diagnostics/empty_line_window.h"
#include "device/diagnostics/network_window.h"
#include "device/diagnostics/upgrade_window.h"
#include "device/packet.h"
#include "device/printer.h"
#include "device/printer_read_thread.h"
#include "simulator/simulated_port.h"
#include "tests/shown_window.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTextEdit>
#include <QtTest>

using Model = SimulatedPrinter::Model;

namespace {

constexpr int kPollMs = 20;

void click(QWidget* window, int row)
{
    auto* list = window->findChild<QListWidget*>("list");
    list->scrollToItem(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
    QCoreApplication::processEvents(); // as between two clicks of a person
}

QString rowText(QWidget* window, int row)
{
    auto* list = window->findChild<QListWidget*>("list");
    return list->itemWidget(list->item(row))->findChild<QLabel*>()->text();
}

QString log(const TestDeviceCommandWindow& window)
{
    return window.findChild<QTextEdit*>("log")->toPlainText();
}

/// Whether the text holds a block of a reply, whatever its time.
bool hasBlock(const QString& text, const QString& tag, const QString& body)
{
    const QString block = QString::fromUtf8("\\{\n->时间 : \\d\\d:\\d\\d:\\d\\d\n标识头 : %1\n消息体 : %2\n\\}")
                              .arg(QRegularExpression::escape(tag), QRegularExpression::escape(body));
    return QRegularExpression(block).match(text).hasMatch();
}

} // namespace

/// The windows of a technician, over the simulated printer.
class DiagnosticsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        simulatedPrinter().reset(Model::K2);
        g_portOpen = g_printerReady = false;
        g_modelIndex = 0;
        g_modelConfirmed = false;
    }

    void listsEveryCommand()
    {
        TestDeviceCommandWindow window;
        const auto* list = window.findChild<QListWidget*>("list");
        QString codes;
        for (int row = 0; row < list->count(); ++row)
            codes += rowText(&window, row).section(":0x", 1) + ' ';
        QCOMPARE(codes, QString("ff 1b 04 06 08 0a 0c 0e 10 12 15 17 1c 1f 23 25 28 2a 2d 30 34 "));
        QCOMPARE(rowText(&window, 19), QString("获取打印模式（k1s） :0x30"));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        for (const auto* label : list->findChildren<QLabel*>()) // Chinese letters are high
            QVERIFY2(label->height() >= label->sizeHint().height(), qPrintable(label->text()));
    }

    /// From the click to the block in the log, through the hub and the receive thread.
    void sendsAndShows()
    {
        TestMainWindow hub;
        hub.show();
        PrinterReadThread thread(nullptr, kPollMs);
        connect(&thread, &PrinterReadThread::sigAnalysisSuccess, &hub, &TestMainWindow::onAnalysisSuccess);
        thread.start();
        QTRY_VERIFY(g_printerReady);
        click(&hub, 1);
        auto* window = shown<TestDeviceCommandWindow>();
        QVERIFY(window);
        for (const auto& [row, code, label, tag, body] :
             {std::tuple(5, 0x0a, "app获取打印机序列号", "0x0b", "QBSIM000001"),
              std::tuple(15, 0x25, "获取硬件信息", "0x26", "51420100")}) {
            const auto before = simulatedPrinter().frames().size();
            click(window, row);
            QVERIFY(log(*window).contains(QString("-----------------------\n") + label));
            QTRY_VERIFY2(hasBlock(log(*window), tag, body), qPrintable(log(*window)));
            int sent = 0;
            for (const FrameRecord& frame : simulatedPrinter().frames().mid(before))
                sent += frame.code == code && frame.tag == 0 && frame.length == 2 && frame.crcOk ? 1 : 0;
            QCOMPARE(sent, 1);
        }
    }

    /// It brings the connection up itself, and of a printer that is not there it says nothing.
    void feedsABlankHundred()
    {
        TestDeviceCommandWindow window;
        window.show();
        click(&window, 0);
        QCOMPARE(simulatedPrinter().report().feeds, QVector<int>({0, 0, 100}));
        simulatedPrinter().unplug();
        click(&window, 0);
        click(&window, 1);
        QCOMPARE(simulatedPrinter().report().feeds.size(), 3);
        QCOMPARE(log(window).count("\n-----------------------"), 2);
        QVERIFY(!shown<QDialog>());
    }

    void showsReplies()
    {
        const QString controls = QString::fromLatin1("\x01[\0\x1b\x7f]", 7);
        TestDeviceCommandWindow window;
        window.show();
        for (const auto& [tag, text, shownTag, body] :
             {std::tuple<int, QString, const char*, QString>(0x0d, "", "0x0d", "NULL"),
              {0x35, "1 2\n\tmm ", "0x35", "12mm"},
              {0x80, controls, "0x80", controls},
              {0xff, "<b>bold</b><!--", "0xff", "<b>bold</b><!--"}}) {
            for (int i = 0; i < 10; ++i)
                window.onAnalysisSuccess(static_cast<unsigned char>(tag), text);
            QVERIFY2(hasBlock(log(window).trimmed().section('\n', -5), shownTag, body), qPrintable(log(window)));
        }
        const auto* text = window.findChild<QTextEdit*>("log");
        QVERIFY(text->viewport()->rect().contains(text->cursorRect())); // the newest one is in view
    }

    void feedsTypedLines()
    {
        for (const auto& [typed, feeds] :
             {std::pair("0", QVector<int>{0}), {"65536", {0}}, {"-1.2a", {12}}, {"", {}}, {"2147483648", {}}}) {
            init();
            TestSendEmptyLine window;
            window.show();
            QTest::keyClicks(window.findChild<QLineEdit*>(), typed);
            QTest::mouseClick(window.findChild<QPushButton*>(), Qt::LeftButton);
            // The first two are questions whether the printer is there.
            QCOMPARE(simulatedPrinter().report().feeds.mid(2), feeds);
        }
    }

    /// The port keeps the window waiting: it says so, and what somebody clicks meanwhile is not sent afterwards.
    void saysThatItWaits()
    {
        TestDeviceCommandWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        click(&window, 0);
        const int connected = simulatedPrinter().report().frames;
        auto* notice = window.findChild<QLabel*>("notice");
        auto* viewport = window.findChild<QListWidget*>("list")->viewport();
        bool said = false;
        const auto connection = connect(&simulatedPrinter(), &SimulatedPrinter::frameReceived, &window, [&] {
            said = notice->isVisible() && QGuiApplication::overrideCursor();
            for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
                QCoreApplication::postEvent(
                    viewport, new QMouseEvent(type, QPointF(20, 60), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
        });
        click(&window, 2);
        disconnect(connection);
        QVERIFY(said && !notice->isVisible() && !QGuiApplication::overrideCursor());
        QCOMPARE(simulatedPrinter().report().frames, connected + 1);
        click(&window, 2);
        QCOMPARE(simulatedPrinter().report().frames, connected + 2);
    }

    void opensItsWindowsOnce()
    {
        TestMainWindow hub;
        hub.show();
        QCOMPARE(rowText(&hub, 0), QString::fromUtf8("1 -> 测试--多语言"));
        for (int row = 0; row < 5; ++row)
            click(&hub, row);
        QVERIFY(shown<LanguageWindow>() && shown<TestNetworkWindow>() && shown<TestUpgradeWindow>() &&
                shown<TestSendEmptyLine>());
        auto* commands = shown<TestDeviceCommandWindow>();
        hub.onAnalysisSuccess(0x07, "first");
        commands->close();
        hub.onAnalysisSuccess(0x07, "second");
        click(&hub, 1);
        QVERIFY(commands->isVisible());
        QCOMPARE(log(*commands).count("first") + log(*commands).count("second"), 2);

        for (QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(window->windowType() != Qt::Window || !window->testAttribute(Qt::WA_QuitOnClose));
    }
};

QTEST_MAIN(DiagnosticsTest)
#include "tst_diagnostics.moc"
