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
#include <QComboBox>
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

SimulatedPrinter& printer()
{
    return simulatedPrinter();
}

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

/// Counts what is painted of a widget.
class Paintings : public QObject
{
public:
    explicit Paintings(QObject* widget) { widget->installEventFilter(this); }
    int count = 0;

    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

} // namespace

/// The windows of a technician, over the simulated printer.
class DiagnosticsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        printer().reset(Model::K2);
        g_portOpen = g_printerReady = false;
        g_modelIndex = 0;
        g_modelConfirmed = false;
    }

    void sendsEveryEntry_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("body");
        const struct
        {
            const char* text;
            int code;
            const char* tag;
            const char* body;
        } rows[] = {
            {"打印自检页字符 :0x1b", 0x1b, "0x1c", "00"},
            {"app获取VERSION :0x04", 0x04, "0x05", "104"},
            {"app获取设备型号 :0x06", 0x06, "0x07", "Quillbox_K2"},
            {"app获取蓝牙MAC :0x08", 0x08, "0x09", "02:51:42:00:00:01"},
            {"app获取打印机序列号 :0x0a", 0x0a, "0x0b", "QBSIM000001"},
            {"app获取打印机状态 :0x0c", 0x0c, "0x0d", "羽毛盒复活了"},
            {"app获取打印机电池电压 :0x0e", 0x0e, "0x0f", "3c0f"},
            {"app获取打印机电池电压状态 :0x10", 0x10, "0x11", "03"},
            {"app获取打印机TPH温度 :0x12", 0x12, "0x13", "1900"},
            {"app获取打印机出厂标示 :0x15", 0x15, "0x16", "01"},
            {"打印机发送蓝牙状态 :0x17", 0x17, "0x18", "00"},
            {"app获取打印机浓度 :0x1c", 0x1c, "0x1d", "02"},
            {"app获取关机时间 :0x1f", 0x1f, "0x20", "0f00"},
            {"获取主板版本 :0x23", 0x23, "0x24", "0100"},
            {"获取硬件信息 :0x25", 0x25, "0x26", "51420100"},
            {"获取最大缝的长度 :0x28", 0x28, "0x29", "f000"},
            {"app获取纸张类型 :0x2a", 0x2a, "0x2b", "00"},
            {"获取国家代码 :0x2d", 0x2d, "0x2e", "0056"},
            {"获取打印模式（k1s） :0x30", 0x30, "0x31", "0"},
            {"获取已打印长度 :0x34", 0x34, "0x35", "0mm"},
        };
        int row = 1;
        for (const auto& expected : rows)
            QTest::newRow(expected.text) << row++ << QString::fromUtf8(expected.text) << expected.code
                                         << QString(expected.tag) << QString::fromUtf8(expected.body);
    }

    /// From the click to the block in the log, through the hub and the receive thread.
    void sendsEveryEntry()
    {
        QFETCH(int, row);
        QFETCH(QString, text);
        QFETCH(int, code);
        QFETCH(QString, tag);
        QFETCH(QString, body);
        TestMainWindow hub;
        hub.show();
        PrinterReadThread thread(nullptr, kPollMs);
        connect(&thread, &PrinterReadThread::sigAnalysisSuccess, &hub, &TestMainWindow::onAnalysisSuccess);
        thread.start();
        QTRY_VERIFY(g_printerReady);
        g_modelConfirmed = true; // from here on nobody but the window asks for the model
        click(&hub, 1);
        auto* window = shown<TestDeviceCommandWindow>();
        QVERIFY(window);
        QCOMPARE(rowText(window, row), text);
        QTest::qWait(5 * kPollMs); // replies to the connection itself
        window->findChild<QTextEdit*>("log")->clear();

        const auto before = printer().frames().size();
        click(window, row);
        QTRY_VERIFY2(hasBlock(log(*window), tag, body), qPrintable(log(*window)));
        const QString label = text.left(text.lastIndexOf(" :"));
        QVERIFY(log(*window).startsWith("-----------------------\n" + label + "\n{"));
        int sent = 0;
        for (const FrameRecord& frame : printer().frames().mid(before)) {
            if (frame.code == code) {
                QVERIFY(frame.tag == 0 && frame.length == 2 && frame.crcOk);
                ++sent;
            }
        }
        QCOMPARE(sent, 1);
    }

    /// It brings the connection up itself, and of a printer that is not there it says nothing.
    void feedsABlankHundred()
    {
        TestDeviceCommandWindow window;
        window.show();
        QCOMPARE(rowText(&window, 0), QString::fromUtf8("打印空白行 100行 :0xff"));
        click(&window, 0);
        QCOMPARE(printer().report().feeds, QVector<int>({0, 0, 100}));
        printer().unplug();
        click(&window, 0);
        click(&window, 1);
        QCOMPARE(printer().report().feeds.size(), 3);
        QCOMPARE(log(window).count("-----------------------"), 3);
        QVERIFY(!shown<QDialog>());
    }

    void showsReplies_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shownTag");
        QTest::addColumn<QString>("body");
        QTest::newRow("empty") << 0x0d << QString() << "0x0d"
                               << "NULL";
        QTest::newRow("white space") << 0x07 << " \t\r\n\v\f "
                                     << "0x07"
                                     << "NULL";
        QTest::newRow("spaces within") << 0x35 << "1 2\n\tmm "
                                       << "0x35"
                                       << "12mm";
        QTest::newRow("control characters") << 0x80 << QString::fromLatin1("\x01[\0\x1b\x7f]", 7) << "0x80"
                                            << QString::fromLatin1("\x01[\0\x1b\x7f]", 7);
        QTest::newRow("markup") << 0xff << "<b>bold</b><!--"
                                << "0xff"
                                << "<b>bold</b><!--";
    }

    void showsReplies()
    {
        QFETCH(int, tag);
        QFETCH(QString, text);
        QFETCH(QString, shownTag);
        QFETCH(QString, body);
        TestDeviceCommandWindow window;
        window.onAnalysisSuccess(static_cast<unsigned char>(tag), text);
        window.onAnalysisSuccess(static_cast<unsigned char>(tag), text);
        QCOMPARE(log(window).count('\n'), 9);
        QVERIFY2(hasBlock(log(window).section('\n', 5), shownTag, body), qPrintable(log(window)));
    }

    /// 65,000 lines later the newest reply is still in view.
    void keepsALongLog()
    {
        TestDeviceCommandWindow window;
        window.show();
        for (int i = 0; i < 13000; ++i)
            window.onAnalysisSuccess(0x07, QString::number(i));
        const auto* text = window.findChild<QTextEdit*>("log");
        QCOMPARE(text->document()->blockCount(), 65000);
        QVERIFY(text->viewport()->rect().contains(text->cursorRect()));
        QVERIFY(hasBlock(log(window).right(60), "0x07", "12999"));
    }

    void feedsTypedLines_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QVector<int>>("feeds"); // the first two are questions whether the printer is there
        QTest::newRow("none") << "0" << QVector<int>{0, 0, 0};
        QTest::newRow("all digits") << "65535" << QVector<int>{0, 0, 65535};
        QTest::newRow("wraps to 0") << "65536" << QVector<int>{0, 0, 0};
        QTest::newRow("wraps") << "0070000" << QVector<int>{0, 0, 4464};
        QTest::newRow("other characters") << "-1.2a" << QVector<int>{0, 0, 12};
        QTest::newRow("nothing") << "" << QVector<int>();
        QTest::newRow("no int") << "2147483648" << QVector<int>();
    }

    void feedsTypedLines()
    {
        QFETCH(QString, typed);
        QFETCH(QVector<int>, feeds);
        TestSendEmptyLine window;
        window.show();
        QTest::keyClicks(window.findChild<QLineEdit*>(), typed);
        QTest::mouseClick(window.findChild<QPushButton*>(), Qt::LeftButton);
        QCOMPARE(printer().report().feeds, feeds);
    }

    /// The port keeps the window waiting: it says so, and what somebody clicks meanwhile is not sent afterwards.
    void saysThatItWaits()
    {
        TestDeviceCommandWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        click(&window, 0);
        const int connected = printer().report().frames;
        auto* notice = window.findChild<QLabel*>("notice");
        auto* viewport = window.findChild<QListWidget*>("list")->viewport();
        const Paintings paintings(notice);
        bool said = false;
        const auto connection = connect(&printer(), &SimulatedPrinter::frameReceived, &window, [&] {
            said = notice->isVisible() && paintings.count > 0;
            for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
                QCoreApplication::postEvent(
                    viewport, new QMouseEvent(type, QPointF(20, 60), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
        });
        click(&window, 2);
        disconnect(connection);
        QVERIFY(said);
        QVERIFY(!notice->isVisible());
        QCoreApplication::processEvents();
        QCOMPARE(printer().report().frames, connected + 1);
        click(&window, 2);
        QCOMPARE(printer().report().frames, connected + 2);
    }

    void opensItsWindowsOnce()
    {
        TestMainWindow hub;
        hub.show();
        QCOMPARE(rowText(&hub, 0), QString::fromUtf8("1 -> 测试--多语言"));
        for (int row = 0; row < 5; ++row)
            click(&hub, row);
        QVERIFY(shown<LanguageWindow>() && shown<TestNetworkWindow>() && shown<TestUpgradeWindow>());
        QVERIFY(shown<TestSendEmptyLine>());
        auto* commands = shown<TestDeviceCommandWindow>();
        QVERIFY(commands);
        hub.onAnalysisSuccess(0x07, "first");
        commands->close();
        hub.onAnalysisSuccess(0x07, "second");
        click(&hub, 1);
        QVERIFY(commands->isVisible());
        QCOMPARE(log(*commands).count("first") + log(*commands).count("second"), 2);

        shown<LanguageWindow>()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        g_modelIndex = 1;
        click(&hub, 0);
        QCOMPARE(shown<LanguageWindow>()->findChild<QComboBox*>()->currentIndex(), 1);
        for (QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(window->windowType() != Qt::Window || !window->testAttribute(Qt::WA_QuitOnClose));
    }
};

QTEST_MAIN(DiagnosticsTest)
#include "tst_diagnostics.moc"
