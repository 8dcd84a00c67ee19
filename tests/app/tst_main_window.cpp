#include "shell_fixture.h"

#include "app/dialogs/about_quillbox_dialog.h"
#include "app/dialogs/qx_message_dialog.h"
#include "app/globals/settings.h"
#include "app/print_progress.h"
#include "content/capture/capture_screen.h"
#include "content/page/edit_main_window.h"
#include "content/page/sheet_pictures.h"
#include "content/page/text_runs.h"
#include "device/diagnostics/diagnostic_hub.h"
#include "device/packet_analysis.h"
#include "device/printer_win.h"
#include "simulator/cloud/simulated_service.h"
#include "tests/files.h"
#include "update/upgrade_app_window.h"
#include "update/upgrade_dialog.h"

#include <QAction>
#include <QFileDialog>
#include <QFontDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QSettings>
#include <QTextEdit>

#include <thread>

using Model = SimulatedPrinter::Model;

class MainWindowTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    /// The button prints the page, as wide as the head, as the sheet has become.
    static bool prints(Client& client, int headDots)
    {
        client.click("printButton");
        return QTest::qWaitFor([] { return simulatedPrinter().report().feeds.contains(300); }) &&
               client->page()->editor()->viewport()->width() == headDots &&
               simulatedPrinter().paper().width() == headDots && simulatedPrinter().report().crcErrors == 0 &&
               simulatedPrinter().jobLines().count('\0') < simulatedPrinter().jobLines().size();
    }

    static void offer(SimulatedService& service, const QString& versionCode, bool mustUpdate)
    {
        const QJsonObject version{{"versionCode", versionCode},
                                  {"versionName", "V9"},
                                  {"swPath", service.installerPath()},
                                  {"mustUpdate", mustUpdate}};
        service.setReply("GetSWVerssion", ServiceReply::enciphered(ServiceReply::success(version)));
    }

    static void choose(Client& client, const QString& text)
    {
        for (QAction* action : client->page()->moreMenu()->actions()) {
            if (action->text() == text)
                action->trigger();
        }
    }

    /// What the menu says of the printer when it opens.
    static QString printerIn(Client& client)
    {
        emit client->page()->moreMenu()->aboutToShow();
        const QAction* first = client->page()->moreMenu()->actions().constFirst();
        return first->isEnabled() ? QString() : first->text();
    }

    static bool isChecking() { return isBusy(QStringLiteral("加载中，请稍后...")); }

private slots:
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); } // nobody reaches into those

    void init()
    {
        g_uuid = "{01234567-89ab-cdef-0123-456789abcdef}";
        serviceAddress() = kNoService;
        simulatedPrinter().unplug();
        simulatedPrinter().fault([](auto& faults) { faults.bytesUntilHolding = -1; });
    }

    void cleanup()
    {
        for (QWidget* window : QApplication::topLevelWidgets())
            delete window;
    }

    /// Meanwhile a technician opens the diagnostic windows, by a button that nobody sees. They get the replies too.
    void k2TellsAtOnce()
    {
        simulatedPrinter().reset(Model::K2);
        Client client;
        QCOMPARE(client->size(), QSize(600, 460));
        QVERIFY(!(client->windowFlags() & Qt::WindowMaximizeButtonHint));
        auto* hidden = client->findChild<QPushButton*>("diagnosticsButton");
        QVERIFY(!hidden->isVisible() && hidden->shortcut().isEmpty());
        hidden->click();
        const std::unique_ptr<TestMainWindow> hub(shown<TestMainWindow>());
        QVERIFY(hub);
        QSignalSpy passedOn(hub.get(), &TestMainWindow::sigAnalysisSuccess);
        QTRY_VERIFY(isConnecting());
        QTRY_VERIFY(!isConnecting());
        QCOMPARE(passedOn.value(0).value(1).toString(), QStringLiteral("Quillbox_K2"));
        QTest::keyClicks(client->focusWidget(), QStringLiteral("Quillbox")); // the page waits for text
        QVERIFY(prints(client, 576));
    }

    /// It takes the whole connecting phase, also when another phase was over a moment before.
    void k1IsWaitedFor()
    {
        simulatedPrinter().reset(Model::K2);
        Client client;
        QTRY_VERIFY(isConnecting());
        QTRY_VERIFY(!isConnecting());
        simulatedPrinter().unplug();
        simulatedPrinter().plugIn(Model::K1);
        std::thread([] { // as by a job, behind one that has failed
            g_printerReady = false;
            printerConnection()->connectUsb();
        })
            .join();
        client->onAnalysisSuccess(ReplyModel, modelName(1)); // of the K2, which comes late
        QTRY_VERIFY(isConnecting() && !g_modelConfirmed);
        QElapsedTimer time;
        time.start();
        QTest::keyClicks(client->page()->editor(), QStringLiteral("Quillbox"));
        client.click("printButton"); // dropped: the device is being connected
        QTRY_VERIFY_WITH_TIMEOUT(!isConnecting(), 9500);
        QVERIFY2(time.elapsed() >= 7500 && time.elapsed() < 9500, QByteArray::number(time.elapsed()));
        QVERIFY(simulatedPrinter().jobLines().isEmpty());
        QVERIFY(prints(client, 384));
        QVERIFY(!shown<QMessageBox>());
    }

    /// The keys go where those of a person go: to the window that has the focus, whichever it is.
    void nothingTakesTheKeyboard()
    {
        SimulatedService service;
        offer(service, "101", false);
        simulatedPrinter().reset(Model::K2);
        Client client(service.address());
        QVERIFY(QTest::qWaitForWindowActive(&client.window()));
        QSignalSpy changes(qApp, &QGuiApplication::focusWindowChanged);
        QString typed;
        const auto typesUntil = [&](const std::function<bool()>& isThere) {
            const auto type = [&] {
                const char key = "no\rpen "[typed.size() % 7];
                typed += key;
                if (QWindow* window = QGuiApplication::focusWindow())
                    QTest::keyClick(window, key);
                return isThere();
            };
            return QTest::qWaitFor(type, 9000);
        };
        const auto isOffered = [] { return !isChecking() && shown<UpgradeAppWindow>(); };
        const auto connects = [&] { return typesUntil(isConnecting) && typesUntil([] { return !isConnecting(); }); };
        QVERIFY(typesUntil(isOffered) && connects());
        delete shown<UpgradeAppWindow>();
        client->onMenuUpdateClicked();
        simulatedPrinter().unplug();
        simulatedPrinter().plugIn();
        QVERIFY(typesUntil(isOffered) && connects() && isOffered() && service.installerRequests() == 0);
        UpgradeDialog download; // that the person asked for, and has put aside
        download.startDownload(service.installerPath(), m_folder.filePath("setup.exe"));
        const auto isAsked = [&] { return shown<QXMessageDialog>() && typed.size() % 50 == 0; };
        QVERIFY(typesUntil(isAsked) && shown<QXMessageDialog>() && changes.isEmpty());
        QCOMPARE(client->page()->editor()->toPlainText().replace('\n', '\r'), typed);
    }

    void busyWindowStandsOverTheClient()
    {
        SimulatedService service;
        service.setReply("GetSWVerssion", {200, {}, {}, {}, true});
        Client client(service.address());
        const QPointer<QWidget> busy = shown<ProgressCatRunningDialog>(); // which came before the client
        const auto offset = [&] { return busy->geometry().center() - client->geometry().center(); };
        QTRY_VERIFY(client->isActiveWindow() && offset().manhattanLength() <= 2);
        client->move(1240, 990);
        QTRY_COMPARE(busy->geometry().bottomRight(), QPoint(1279, 1023)); // the screen's last dot
        QSignalSpy changes(qApp, &QGuiApplication::focusWindowChanged);
        busy->activateWindow(); // as by a click
        QTRY_VERIFY(changes.size() >= 2 && client->isActiveWindow());
    }

    void printingIsSeenAndStopped()
    {
        simulatedPrinter().reset(Model::K2);
        Client client;
        const auto says = [&](bool enabled, const QString& tip) {
            const auto* button = client->findChild<QPushButton*>("printButton");
            return button->isEnabled() == enabled && button->toolTip() == tip &&
                   client->page()->printAction()->isEnabled() == enabled;
        };
        client->page()->editor()->setPlainText(QStringLiteral("Quillbox\n").repeated(20));
        client->findChild<QPushButton*>("pictureButton")->setFocus(); // which is taken from the print button alone
        QTRY_VERIFY(isConnecting() && says(false, "正在连接打印机，请稍候再打印"));
        QCOMPARE(client->focusWidget()->objectName(), QString("pictureButton"));
        client->page()->editor()->setFocus();
        QTRY_VERIFY(says(true, "打印 (Ctrl+P)"));
        simulatedPrinter().fault([](auto& faults) { faults.bytesUntilHolding = 10000; });
        QElapsedTimer time;
        time.start();
        client.click("printButton");
        QVERIFY(says(false, "正在打印，请等待完成或取消"));
        const auto* progress = client->findChild<PrintProgress*>();
        QTRY_VERIFY(progress->isVisible());
        QVERIFY(time.elapsed() > 250 && !client->page()->editor()->isAncestorOf(progress));
        QTRY_COMPARE(progress->findChild<QProgressBar*>()->value(), 9 * 1008);
        QTest::mouseClick(progress->findChild<QAbstractButton*>(), Qt::LeftButton);
        QEvent otherLanguage(QEvent::LanguageChange);
        QCoreApplication::sendEvent(&client.window(), &otherLanguage); // the bar does not begin anew
        QVERIFY(says(false, "正在打印，请等待完成或取消") && !progress->findChild<QAbstractButton*>()->isEnabled());
        simulatedPrinter().fault([](auto& faults) { faults.bytesUntilHolding = -1; });
        QTRY_VERIFY(says(true, "打印 (Ctrl+P)"));
        QVERIFY(!progress->isVisible() && !shown<QMessageBox>() && client->page()->editor()->hasFocus());
        QVERIFY(!simulatedPrinter().report().feeds.contains(300));

        simulatedPrinter().fault([](auto& faults) { faults.bytesUntilHolding = 10000; });
        client.click("printButton");
        QTRY_COMPARE(progress->findChild<QProgressBar*>()->value(), 9 * 1008);
        QVERIFY(!client->close() && client->isVisible()); // the page is moving
        simulatedPrinter().unplug();
        int looks = 0; // at the box
        bool isBehind = false;
        QTimer reader;
        reader.callOnTimeout([&] {
            auto* box = shown<QMessageBox>();
            if (!box || ++looks < 3)
                return;
            isBehind = client->isVisible();
            box->close();
        });
        reader.start(50);
        QTRY_VERIFY(!client->isVisible());
        QVERIFY(isBehind && !shown<QMessageBox>());
    }

    /// Another one has come, and the window has not been told yet, so the page is as wide as the head is taken to be.
    void printsOnNoPrinterUnawares()
    {
        simulatedPrinter().reset(Model::K2);
        Client client;
        QTRY_VERIFY(isConnecting());
        QTRY_VERIFY(!isConnecting());
        client->page()->editor()->setPlainText("page");
        std::thread([] {
            g_printerReady = false;
            printerConnection()->connectUsb();
        }).join();
        client->page()->printPage();
        bool isTold = false;
        QTimer reader;
        reader.callOnTimeout([&] { isTold = isTold || (shown<QMessageBox>() && shown<QMessageBox>()->close()); });
        reader.start(10);
        QTRY_VERIFY(isTold);
        QVERIFY(simulatedPrinter().jobLines().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(g_modelConfirmed && !isConnecting(), 9000);
        QVERIFY(prints(client, 576));
    }

    /// In the menu, and below the text of the box, which stays as it is.
    void causeIsTold()
    {
        Client client;
        simulatedPrinter().plugIn(Model::K1);
        QTRY_VERIFY(isConnecting());
        client->onDeviceInitTimeout(); // as after 8 s
        QTRY_COMPARE(printerIn(client), QString("打印机：K1，就绪"));
        simulatedPrinter().unplug();
        QTRY_COMPARE(printerIn(client), QString("打印机：未插上"));
        simulatedPrinter().fault([](auto& faults) { faults.silent = true; });
        simulatedPrinter().plugIn(Model::K2);
        QTRY_COMPARE(printerIn(client), QString("打印机：正在连接…"));
        client->onDeviceInitTimeout();
        QCOMPARE(printerIn(client), QString("打印机：按 K1 对待（它没有报告型号）"));
        simulatedPrinter().fault([](auto& faults) { faults.silent = false; });
        QTRY_COMPARE(printerIn(client), QString("打印机：K2，就绪"));
        simulatedPrinter().fault([](auto& faults) { faults.refusingWrites = true; });
        client->page()->editor()->setPlainText("page");
        QStringList told;
        QTimer look;
        look.callOnTimeout([&] {
            if (auto* box = shown<QMessageBox>()) {
                const int width = box->findChild<QLabel*>("qt_msgbox_informativelabel")->width();
                const bool isBroken = width < box->fontMetrics().horizontalAdvance(box->informativeText());
                told = QStringList{box->text(), box->informativeText(), isBroken ? "broken" : printerIn(client)};
                box->close();
            }
        });
        look.start(10);
        client.click("printButton");
        const QString refused = "打印机：拒收数据，请关机后再开机";
        const QString hints = "连接失败,请尝试\n1.检查设备是否开启\n2.检查设备是否连接\n3.重新插拔USB";
        QTRY_COMPARE(told, (QStringList{hints, refused, refused}));
    }

    void insertsPictureFiles()
    {
        const QString good = m_folder.filePath("good.png"), broken = m_folder.filePath("broken.png");
        QVERIFY(QImage(40, 30, QImage::Format_RGB32).save(good) && writeFile(broken, "\x89PNG, but not for long"));
        Client client;
        QStringList startedOn;
        for (const QString& name : {good, broken, good}) {
            QTimer::singleShot(0, qApp, [&startedOn, name] {
                auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                startedOn.append(dialog->selectedFiles().value(0));
                auto* field = dialog->findChild<QLineEdit*>("fileNameEdit");
                field->setText(name);
                QTest::keyClick(field, Qt::Key_Return);
            });
            if (name == good)
                client.click("pictureButton");
            else
                client->page()->pictureAction()->trigger();
        }
        QCOMPARE(startedOn.mid(1), (QStringList{good, good})); // the broken one is not remembered
        QCOMPARE(client->page()->editor()->toPlainText().count(QChar::ObjectReplacementCharacter), 2);

        bool asked = false;
        QTimer::singleShot(0, &client.window(),
                           [&asked] { asked = shown<QFontDialog>() && shown<QFontDialog>()->close(); });
        client.click("fontButton");
        QVERIFY(asked);
    }

    /// The screenshot button on a real desktop: the window gives way, the piece of the screen lands in the page, and
    /// the window is back where it was.
    void captures()
    {
        const QRect selected(200, 130, 660, 560); // all that the client's window covers, and its frame
        QWidget behind;
        behind.setStyleSheet(QStringLiteral("background: #1060c0"));
        behind.setGeometry(100, 100, 900, 700);
        behind.show();
        QVERIFY(QTest::qWaitForWindowExposed(&behind));
        Client client;
        client->move(220, 180);
        client->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&client.window()));
        const QRect before = client->geometry();

        QTest::keySequence(client->page()->editor(), QKeySequence("Ctrl+Shift+S"));
        QVERIFY(client->width() <= 1 && client->height() <= 1 && client->geometry().topLeft().isNull());
        client.click("screenshotButton"); // an impatient second click is not a second capture
        QTRY_VERIFY(shown<CaptureScreen>());
        const QPointer<CaptureScreen> overlay = shown<CaptureScreen>();
        QVERIFY(QTest::qWaitForWindowExposed(overlay));
        const QPoint from = overlay->mapFromGlobal(selected.topLeft());
        const QPoint to = overlay->mapFromGlobal(selected.bottomRight());
        QTest::mousePress(overlay, Qt::LeftButton, {}, from);
        QTest::mouseMove(overlay, to);
        QTest::mouseRelease(overlay, Qt::LeftButton, {}, to);
        QTest::keyClick(overlay, Qt::Key_Return);

        QTRY_VERIFY(!overlay);
        QTRY_COMPARE(client->geometry(), QRect(before.topLeft(), QSize(600, 460)));
        const QTextEdit& editor = *client->page()->editor();
        const QVector<TextRun> runs = textRuns(*editor.document());
        QCOMPARE(runs.size(), 1);
        const QUrl name(runs[0].format.toImageFormat().name());
        const auto picture = editor.document()->resource(QTextDocument::ImageResource, name).value<QImage>();
        QCOMPARE(picture.width(), PictureRoom::of(editor).width);
        QImage behindAlone(picture.size(), picture.format());
        behindAlone.fill(QColor("#1060c0"));
        QCOMPARE(picture, behindAlone);
    }

    /// The main window closes once the page that is being saved is on the disk, and the offer keeps the program running,
    /// until it is closed as well.
    void mandatoryUpdateLeavesItsWindowAlone()
    {
        SimulatedService service;
        offer(service, "101", true);
        Client client(service.address());
        const QDir drafts(m_folder.filePath("drafts"));
        const QString saved = m_folder.filePath("saved.html");
        client->keepDrafts(drafts.path());
        client->page()->editor()->setPlainText("page");
        bool waited = false;
        bool closed = false;
        int kept = -1; // drafts, as soon as the window is closed
        QTimer timer;
        timer.callOnTimeout([&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (dialog && shown<UpgradeAppWindow>()) { // the answer is there
                waited = client->isVisible();
                auto* field = dialog->findChild<QLineEdit*>("fileNameEdit");
                field->setText(saved);
                QTest::keyClick(field, Qt::Key_Return);
            }
            if (!client->isVisible() && kept < 0)
                kept = drafts.entryList({"*.html"}).size();
            QWidget* last = client->isVisible() ? nullptr : shown<UpgradeAppWindow>();
            closed = closed || (last && last->close());
        });
        timer.start(20);
        QTimer::singleShot(0, client->page()->saveAction(), &QAction::trigger);
        QTimer::singleShot(5000, &timer, [] { QCoreApplication::exit(1); });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(waited && closed && QFile::exists(saved));
        QCOMPARE(kept, 1);
    }

    /// Where the draft has no place the page would be lost, and a download ends first.
    void mandatoryUpdateWaits()
    {
        QFile noFolder(m_folder.filePath("file"));
        QVERIFY(noFolder.open(QIODevice::WriteOnly));
        SimulatedService service;
        offer(service, "100", true);
        Client client(service.address());
        client->keepDrafts(noFolder.fileName() + "/drafts");
        UpgradeDialog download;
        for (const QString page : {"page", ""}) {
            download.setVisible(page.isEmpty());
            client->page()->editor()->setPlainText(page);
            client->onMenuUpdateClicked();
            QTRY_VERIFY(!isChecking());
            QVERIFY(client->isVisible());
        }
        QTimer::singleShot(0, &download, &QWidget::close);
        QTimer::singleShot(5000, &download, [] { QCoreApplication::exit(1); });
        QCOMPARE(QApplication::exec(), 0);
    }

    /// Of two clicks while a check is under way, and of one once the answer is there, one box comes. A failed check,
    /// and one that brings an offer, say nothing of that kind.
    void askedForUpdates()
    {
        SimulatedService service;
        offer(service, "100", false);
        Client client(service.address());
        QTRY_VERIFY(!isChecking() && !shown<QMessageBox>()); // nobody has asked
        for (const int requests : {2, 3}) {
            choose(client, "检查更新");
            choose(client, "检查更新");
            QTRY_VERIFY(!isChecking() && shown<QMessageBox>());
            QCOMPARE(service.requests().size(), requests);
            QCOMPARE(client->findChildren<QMessageBox*>().size(), 1);
        }
        QVERIFY(shown<QMessageBox>()->text().contains("V1.0.0") && !shown<QMessageBox>()->isModal());
        shown<QMessageBox>()->close();
        QTRY_VERIFY(client->findChildren<QMessageBox*>().isEmpty());
        serviceAddress() = kNoService;
        choose(client, "检查更新");
        QTRY_VERIFY(!isChecking());
        serviceAddress() = service.address();
        client->onMenuUpdateClicked(); // as a start does it
        QTRY_VERIFY(!isChecking() && !shown<QMessageBox>());
        offer(service, "101", false);
        choose(client, "检查更新");
        QTRY_VERIFY(shown<UpgradeAppWindow>() && !isChecking() && !shown<QMessageBox>());
    }

    void moreMenu()
    {
        Client client;
        choose(client, "关于羽毛盒");
        QVERIFY(shown<AboutQuillboxDialog>());
        for (const QString title : {"Quillbox", "羽毛盒"}) {
            choose(client, title == "Quillbox" ? "English" : "中文");
            QTRY_COMPARE(client->windowTitle(), title);
        }
        QCOMPARE(QSettings(kOrganization, kApplication).value(kLanguageKey).toString(), kLanguageChinese);
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_main_window.moc"
