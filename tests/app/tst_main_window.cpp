#include "shell_fixture.h"

#include "app/globals/settings.h"
#include "app/language/language_window.h"
#include "app/picture_file.h"
#include "app/welcome_window.h"
#include "content/page/edit_main_window.h"
#include "device/diagnostics/diagnostic_hub.h"

#include <QAction>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QSettings>
#include <QTextEdit>

using Model = SimulatedPrinter::Model;
Q_DECLARE_METATYPE(SimulatedPrinter::Model)

class MainWindowTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    QString pictureFile(const QString& name, int width, int height, QImage::Format format = QImage::Format_RGB32)
    {
        QImage image(width, height, format);
        image.fill(Qt::black);
        const QString file = m_folder.filePath(name);
        if (!image.save(file))
            qFatal("cannot write %s", qPrintable(file));
        return file;
    }

private slots:
    void init();
    void connects_data();
    void connects();
    void tellsOfAFailedJobAndPrintsAfterReplug();
    void storesTheJobThatComesWhileOneRuns();
    void insertsPictureFiles();
    void switchesLanguage();
    void showsTheDiagnosticsToTechniciansAlone();
    void followsTheWelcome();
};

namespace {

QStringList g_log;
std::mutex g_logMutex;

void collect(QtMsgType, const QMessageLogContext&, const QString& message)
{
    const std::lock_guard<std::mutex> lock(g_logMutex);
    g_log.append(message);
}

bool logged(const QString& start)
{
    const std::lock_guard<std::mutex> lock(g_logMutex);
    return std::any_of(g_log.cbegin(), g_log.cend(), [&](const QString& line) { return line.startsWith(start); });
}

QImage blackPage(int lines)
{
    QImage image(576, lines, QImage::Format_RGB32);
    image.fill(Qt::black);
    return image;
}

/// Once the next modal dialog of the class is open, does something with it.
template <class Dialog, class Action>
void withNext(Action action)
{
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, action] {
        if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
            timer->deleteLater();
            action(dialog);
        }
    });
    timer->start(20);
}

} // namespace

void MainWindowTest::init()
{
    printer().reset(Model::K2);
    g_log.clear();
}

void MainWindowTest::connects_data()
{
    QTest::addColumn<Model>("model");
    QTest::addColumn<int>("shortestMs");
    QTest::addColumn<int>("longestMs");
    QTest::addColumn<int>("dots");
    QTest::newRow("K2 tells at once") << Model::K2 << 0 << 5000 << 576;
    QTest::newRow("K1 is waited for") << Model::K1 << 7500 << 9500 << 384;
}

void MainWindowTest::connects()
{
    QFETCH(Model, model);
    QFETCH(int, shortestMs);
    QFETCH(int, longestMs);
    QFETCH(int, dots);
    printer().reset(model);
    Client client;
    QCOMPARE(client->size(), QSize(600, 460));
    QVERIFY(!(client->windowFlags() & Qt::WindowMaximizeButtonHint));
    QTRY_VERIFY(isConnecting());
    QElapsedTimer time;
    time.start();
    QTest::keyClicks(client->focusWidget(), QStringLiteral("Quillbox")); // the page waits for text
    client.click("printButton");
    QCOMPARE(printDataFrames(), 0); // dropped: the device is being connected

    QTRY_VERIFY_WITH_TIMEOUT(!isConnecting(), longestMs);
    QVERIFY2(time.elapsed() >= shortestMs, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(printHeadWidth(), dots);
    QCOMPARE(printDataFrames(), 0);
    client.click("printButton");
    QTRY_COMPARE(printer().report().feeds.contains(300), true);
    QCOMPARE(printer().paper().width(), dots);
    QVERIFY(printer().jobLines().count('\0') < printer().jobLines().size());
    QCOMPARE(printer().report().crcErrors, 0);
    QVERIFY(!shown<QMessageBox>());
}

void MainWindowTest::tellsOfAFailedJobAndPrintsAfterReplug()
{
    Client client;
    QTRY_COMPARE(printHeadWidth(), 576);
    QTRY_VERIFY(!isConnecting());
    printer().unplug();
    QString title;
    QString text;
    withNext<QMessageBox>([&](QMessageBox* box) {
        title = box->windowTitle();
        text = box->text();
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
    client.click("printButton");
    QTRY_COMPARE(title, QStringLiteral("消息提示"));
    QCOMPARE(text, QStringLiteral("连接失败,请尝试\n1.检查设备是否开启\n2.检查设备是否连接\n3.重新插拔USB"));

    printer().plugIn();
    QTRY_VERIFY(isConnecting());
    QTRY_VERIFY_WITH_TIMEOUT(!isConnecting(), 8000);
    client.click("printButton");
    QTRY_VERIFY(printer().report().feeds.contains(300));
    QCOMPARE(printer().report().crcErrors, 0);
}

void MainWindowTest::storesTheJobThatComesWhileOneRuns()
{
    Client client;
    QTRY_VERIFY(isConnecting());
    QTRY_VERIFY(!isConnecting());
    const QImage tall = blackPage(20000);
    const QImage stored = blackPage(8);
    const QImage next = blackPage(16);

    const QtMessageHandler previous = qInstallMessageHandler(collect);
    client->doPrint(tall, 1);
    // No event loop meanwhile: the job has taken its picture and is not through yet.
    const QDeadlineTimer deadline(10000);
    while (!logged(QStringLiteral("QxPrintThread::run")) && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    client->doPrint(stored, 1);
    QTRY_VERIFY(logged(QStringLiteral("\"send success\"")));
    qInstallMessageHandler(previous);
    QVERIFY(logged(QStringLiteral("isRunning wait")));
    client->doPrint(next, 1);
    QTRY_VERIFY(printer().report().feeds.count(300) == 2);
    QCOMPARE(printer().jobLines().size(), (tall.height() + next.height()) * 72); // the stored one never went out
    QVERIFY(!shown<QMessageBox>());
}

void MainWindowTest::insertsPictureFiles()
{
    const QString good = pictureFile("good.png", 40, 30);
    const QString huge = pictureFile("huge.png", 10000, 8000, QImage::Format_Mono);
    const QString broken = m_folder.filePath("broken.png");
    QFile file(broken);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("\x89PNG, but not for long");
    file.close();

    Client client;
    QSignalSpy picked(&client.window(), &MainWindow::signalsPickImage);
    QStringList startedOn;
    const auto pick = [&](const QString& name) {
        withNext<QFileDialog>([&startedOn, name](QFileDialog* dialog) {
            startedOn.append(dialog->selectedFiles().value(0));
            auto* field = dialog->findChild<QLineEdit*>("fileNameEdit");
            field->setText(name);
            QTest::keyClick(field, Qt::Key_Return);
        });
        client.click("pictureButton");
        return client->page()->editor()->toPlainText().count(QChar::ObjectReplacementCharacter);
    };
    QCOMPARE(pick(good), 1);
    QCOMPARE(pick(broken), 1);
    QCOMPARE(pick(huge), 2);
    const QSize size = picked.last()[0].value<QImage>().size();
    QVERIFY(size.width() > 8000 && qint64(size.width()) * size.height() <= kMostPixels); // smaller, but not small
    QCOMPARE(startedOn.mid(1), (QStringList{good, good})); // the broken one is not remembered
}

void MainWindowTest::switchesLanguage()
{
    Client client;
    LanguageWindow languages;
    languages.show();
    const auto* printButton = client->findChild<QPushButton*>("printButton");
    const auto texts = [&] {
        return QStringList{printButton->toolTip(), client->page()->fontAction()->text(),
                           languages.findChild<QLabel*>("labelSample")->text(), QMessageBox::tr("Show Details...")};
    };
    const auto press = [&](const char* button) {
        QTest::mouseClick(languages.findChild<QPushButton*>(button), Qt::LeftButton);
        QCoreApplication::processEvents();
        return texts();
    };
    const QStringList chinese{"打印", "字体...", "这是一段翻译", "显示详情..."};
    const QStringList english{"Print", "Font...", "A sample text", "Show Details..."};
    QCOMPARE(press("buttonEnglish"), english);
    QCOMPARE(press("buttonChinese"), chinese);
    QCOMPARE(press("buttonEnglish"), english);
    QCOMPARE(QSettings(kOrganization, kApplication).value(kLanguageKey).toString(), QStringLiteral("en_WW"));
    QCOMPARE(press("buttonChinese"), chinese);
}

/// The hub opens by a button that nobody sees, and the receive thread's replies reach its windows.
void MainWindowTest::showsTheDiagnosticsToTechniciansAlone()
{
    Client client;
    auto* hidden = client->findChild<QPushButton*>("diagnosticsButton");
    QVERIFY(!hidden->isVisible() && hidden->shortcut().isEmpty());
    hidden->click();
    auto* hub = shown<TestMainWindow>();
    QVERIFY(hub);
    QSignalSpy passedOn(hub, &TestMainWindow::sigAnalysisSuccess);
    QTRY_VERIFY_WITH_TIMEOUT(!passedOn.isEmpty(), 8000);
    QCOMPARE(passedOn.first()[1].toString(), QStringLiteral("Quillbox_K2"));
    delete hub;
}

void MainWindowTest::followsTheWelcome()
{
    WelcomeWindow welcome;
    welcome.show();
    QVERIFY(!welcome.mainWindow());
    QTRY_VERIFY_WITH_TIMEOUT(welcome.mainWindow(), 8000);
    QVERIFY(!welcome.isVisible());
    QVERIFY(welcome.mainWindow()->isVisible() && welcome.mainWindow()->isWindow());
    welcome.mainWindow()->stopThreads();
}

QTEST_MAIN(MainWindowTest)
#include "tst_main_window.moc"
