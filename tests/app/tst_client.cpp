#include "shell_fixture.h"

#include <QClipboard>
#include <QProcess>
#include <QSettings>
#include <QUuid>

/// The client itself, unmodified, on a USB bus in software and a real desktop: a person types, clicks, pulls the plug
/// and looks at the paper.
class ClientTest : public QObject
{
    Q_OBJECT

    QPoint m_printButton; ///< in the window
    QImage m_page;        ///< as it comes out of the windows in this process

private slots:
    void initTestCase();
    void firstStartMakesTheIdentifier();
    void prints_data();
    void prints();
    void survivesUnplugging();
    void closes();
};

namespace {

constexpr char kWindow[] = "羽毛盒"; ///< title of the main window and of the connecting dialog
constexpr char kFailure[] = "消息提示";
constexpr char kTyped[] = "Quillbox 42 ";
constexpr char kPasted[] = "小票打印\n第二行 second line";

/// What xdotool prints: of a search, the number of each window found.
QList<QByteArray> xdotool(const QStringList& arguments)
{
    QProcess tool;
    tool.start("xdotool", arguments);
    tool.waitForFinished();
    QList<QByteArray> lines = tool.readAllStandardOutput().split('\n');
    lines.removeAll({});
    return lines;
}

int visibleWindows(const QString& title)
{
    return xdotool({"search", "--onlyvisible", "--name", '^' + title + '$'}).size();
}

/// Brings the window to the front; what follows goes on in the same call of xdotool.
void inWindow(const QString& title, const QStringList& actions)
{
    xdotool(QStringList{"search", "--onlyvisible", "--name", '^' + title + '$', "windowactivate", "--sync"} +
            actions);
}

/// quillbox as started by quillbox-virtual-usb, with a settings store of its own.
class Quillbox
{
public:
    explicit Quillbox(const QStringList& options = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CONFIG_HOME", m_folder.path());
        environment.insert("QT_FORCE_STDERR_LOGGING", "1");
        m_process.setProcessEnvironment(environment);
        m_process.start("umockdev-wrapper", QStringList{VIRTUAL_USB_PROGRAM} + options + QStringList{CLIENT_PROGRAM});
    }
    ~Quillbox()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }

    QProcess& process() { return m_process; }
    QString filePath(const QString& name) const { return m_folder.filePath(name); }

    /// The answer to a command.
    QString tell(const QString& command)
    {
        m_process.write(command.toUtf8() + '\n');
        (void)QTest::qWaitFor([this] { return m_process.canReadLine(); }, 5000);
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }

    /// Waits until the log says so, after all that was waited for before.
    bool logs(const QByteArray& text, int timeoutMs = 8000)
    {
        return QTest::qWaitFor(
            [&] {
                m_log += m_process.readAllStandardError();
                const int found = m_log.indexOf(text);
                if (found >= 0)
                    m_log.remove(0, found + text.size());
                return found >= 0;
            },
            timeoutMs);
    }

    /// Waits until the printer has told its model and nothing is in the way of a click.
    bool isReady()
    {
        return logs("pkgData:Quillbox_K2") && QTest::qWaitFor([] { return visibleWindows(kWindow) == 1; }, 8000);
    }

    /// A number out of the printer's state.
    int count(const QString& what)
    {
        const QRegularExpression pattern(", " + what + " (\\d+)");
        return pattern.match(tell("status")).captured(1).toInt();
    }

    QImage paper()
    {
        const QString file = filePath("paper.png");
        return tell("paper " + file) == "ok" ? QImage(file) : QImage();
    }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_log; ///< from what was waited for last
};

void writePage()
{
    inWindow(kWindow, {"type", "--window", "0", kTyped});
    inWindow(kWindow, {"key", "--window", "0", "ctrl+v"});
}

void clickAt(const QPoint& point)
{
    inWindow(kWindow,
             {"mousemove", "--window", "%1", QString::number(point.x()), QString::number(point.y()), "click", "1"});
}

} // namespace

/// The page of the person below, without X events and without USB.
void ClientTest::initTestCase()
{
    QApplication::clipboard()->setText(kPasted);
    printer().reset(SimulatedPrinter::Model::K2);
    Client client;
    QTRY_COMPARE(printHeadWidth(), 576);
    QTRY_VERIFY(!isConnecting());
    const auto* button = client->findChild<QPushButton*>("printButton");
    m_printButton = button->mapTo(&client.window(), button->rect().center());
    QTest::keyClicks(client->focusWidget(), kTyped);
    QTest::keyClick(client->focusWidget(), Qt::Key_V, Qt::ControlModifier);
    client.click("printButton");
    QTRY_VERIFY(printer().report().feeds.contains(300));
    m_page = printer().paper();
    int black = 0;
    for (int i = 0; i < m_page.width() * m_page.height(); ++i)
        black += m_page.pixelIndex(i % m_page.width(), i / m_page.width());
    QVERIFY2(m_page.width() == 576 && black > 2000, QByteArray::number(black));
}

void ClientTest::firstStartMakesTheIdentifier()
{
    Quillbox quillbox;
    const QString store = quillbox.filePath("Quillbox/App_Start.conf");
    const auto stored = [&] {
        return QSettings(store, QSettings::IniFormat).value("SETTINT_UUID").toString();
    };
    QTRY_VERIFY_WITH_TIMEOUT(!stored().isEmpty(), 20000);
    QCOMPARE(stored().size(), 38);
    QCOMPARE(QUuid(stored()).toString(), stored());
    QCOMPARE(quillbox.process().state(), QProcess::Running); // it goes on to its window
}

void ClientTest::prints_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("commands");
    QTest::newRow("full speed") << QStringList{} << QStringList{};
    QTest::newRow("high speed, plugged in later") << QStringList{"--unplugged"} << QStringList{"high speed", "plug"};
}

void ClientTest::prints()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, commands);
    Quillbox quillbox(options);
    QVERIFY(commands.isEmpty() || quillbox.logs("USB: no printer found"));
    for (const QString& command : commands)
        QVERIFY(quillbox.tell(command).startsWith("ok"));
    QVERIFY(quillbox.isReady());
    writePage();
    clickAt(m_printButton);
    QTRY_COMPARE(quillbox.count("lines"), m_page.height());
    QCOMPARE(quillbox.paper(), m_page);
    QCOMPARE(quillbox.count("damaged frames"), 0);
    QCOMPARE(quillbox.count("key exchanges"), 1);
}

void ClientTest::survivesUnplugging()
{
    Quillbox quillbox;
    QVERIFY(quillbox.isReady());
    writePage();
    QCOMPARE(quillbox.tell("unplug"), QString("ok"));
    clickAt(m_printButton);
    QTRY_COMPARE(visibleWindows(kFailure), 1);
    inWindow(kFailure, {"key", "--window", "0", "Return"});
    QTRY_COMPARE(visibleWindows(kFailure), 0);
    QVERIFY(quillbox.logs("连接失败")); // the text that stood there

    QCOMPARE(quillbox.tell("plug"), QString("ok"));
    QVERIFY(quillbox.logs("USB: printer opened")); // what was logged before it does not count
    QVERIFY(quillbox.isReady());
    QCOMPARE(quillbox.tell("nak after 1500"), QString("ok")); // out of paper for a moment, within a frame
    clickAt(m_printButton);
    QVERIFY(quillbox.logs("QxPrintThread::run"));
    QVERIFY(!quillbox.logs("sent", 500));
    QCOMPARE(quillbox.tell("nak off"), QString("ok"));
    QTRY_COMPARE(quillbox.count("lines"), m_page.height());
    QCOMPARE(quillbox.paper(), m_page);
    QCOMPARE(quillbox.count("damaged frames"), 0);
    QCOMPARE(quillbox.count("key exchanges"), 2);
    QVERIFY(quillbox.logs("send success"));
    QCOMPARE(visibleWindows(kFailure), 0);
}

void ClientTest::closes()
{
    Quillbox quillbox;
    QVERIFY(quillbox.isReady());
    inWindow(kWindow, {"key", "--window", "0", "alt+F4"});
    QTRY_COMPARE(quillbox.process().state(), QProcess::NotRunning);
    QCOMPARE(quillbox.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(quillbox.process().exitCode(), 0);
}

QTEST_MAIN(ClientTest)
#include "tst_client.moc"
