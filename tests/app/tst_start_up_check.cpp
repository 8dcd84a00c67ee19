#include "shell_fixture.h"

#include "app/dialogs/qx_message_dialog.h"
#include "app/globals/settings.h"
#include "simulator/cloud/simulated_service.h"
#include "update/upgrade_app_window.h"
#include "update/upgrade_dialog.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>

/// The check for a newer version that each start makes, from the main window to the installer, against the service.
class StartUpCheckTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimulatedService> m_service;
    QTemporaryDir m_folder;
    QVector<QUrl> m_opened;

    void offer(const QString& versionCode, bool mustUpdate)
    {
        const QJsonObject version{{"versionCode", versionCode},
                                  {"versionName", "V9"},
                                  {"swPath", m_service->installerPath()},
                                  {"mustUpdate", mustUpdate}};
        m_service->setReply("GetSWVerssion", ServiceReply::enciphered(ServiceReply::success(version)));
    }

    static bool isChecking() { return isBusy(QString::fromUtf8("加载中，请稍后...")); }

    /// Runs the program's event loop, does the one thing once the condition holds, and tells what ended the loop: the
    /// last window, as in the program, or nothing.
    static QString runUntilItEnds(const std::function<bool()>& condition, const std::function<void()>& closeLast)
    {
        bool closed = false;
        QTimer timer;
        QElapsedTimer clock;
        clock.start();
        connect(&timer, &QTimer::timeout, [&] {
            if (clock.elapsed() > 5000)
                QCoreApplication::exit(1);
            else if (!closed && condition()) {
                closed = true; // the timer goes on, and closeLast() has to be what ends the loop
                QTimer::singleShot(100, closeLast);
            }
        });
        timer.start(20);
        const int result = QApplication::exec();
        return !closed ? QString("ended too early, or never came so far") : result != 0 ? "went on" : "ended";
    }

public slots:
    void open(const QUrl& url) { m_opened << url; } ///< in place of the desktop

private slots:
    void init()
    {
        g_uuid = "{01234567-89ab-cdef-0123-456789abcdef}";
        printer().unplug();
        m_service = std::make_unique<SimulatedService>();
        QDesktopServices::setUrlHandler("file", this, "open");
    }

    void cleanup()
    {
        for (QWidget* window : QApplication::topLevelWidgets())
            delete window;
    }

    void offersDownloadsAndOpens()
    {
        InstallerFile installer;
        installer.size = 300000;
        m_service->setInstaller(installer);
        offer("101", false);
        Client client(m_service->address());
        QVERIFY(isChecking());
        QTRY_VERIFY(shown<UpgradeAppWindow>());
        QVERIFY(!isChecking());
        QVERIFY(client->isVisible());
        QCOMPARE(m_service->requests().last().faults, QStringList());

        const QString file = m_folder.filePath("setup.exe");
        QTimer::singleShot(0, qApp, [file] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file);
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        });
        QTest::mouseClick(shown<UpgradeAppWindow>()->findChild<QPushButton*>("buttonUpdate"), Qt::LeftButton);
        QTRY_VERIFY(shown<QXMessageDialog>());
        QVERIFY(!shown<UpgradeAppWindow>() && !shown<UpgradeDialog>());
        shown<QXMessageDialog>()->accept();
        QCOMPARE(m_opened, QVector<QUrl>{QUrl::fromLocalFile(file)});
        QFile written(file);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll(), installerBytes(0, installer.size));
    }

    void mandatoryUpdateLeavesItsWindowAlone()
    {
        offer("101", true);
        Client client(m_service->address());
        QCOMPARE(runUntilItEnds([&] { return shown<UpgradeAppWindow>() && !client->isVisible(); },
                                [] { shown<UpgradeAppWindow>()->close(); }),
                 QString("ended"));
    }

    void nothingToOffer_data()
    {
        QTest::addColumn<bool>("reachable");
        QTest::newRow("the same version") << true;
        QTest::newRow("unreachable") << false;
    }

    void nothingToOffer()
    {
        QFETCH(bool, reachable);
        offer("100", false);
        Client client(reachable ? m_service->address() : kNoService);
        QVERIFY(isChecking());
        QTRY_VERIFY(!isChecking());
        QCoreApplication::processEvents();
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY2(!window->isVisible() || window == &client.window(), window->metaObject()->className());
        QVERIFY(client->isVisible());
    }

    void silentServiceKeepsNobody()
    {
        ServiceReply silence;
        silence.silent = true;
        m_service->setReply("GetSWVerssion", silence);
        Client client(m_service->address());
        QCOMPARE(runUntilItEnds([&] { return m_service->requests().size() == 1 && isChecking(); },
                                [&] { client->close(); }),
                 QString("ended"));
    }
};

QTEST_MAIN(StartUpCheckTest)
#include "tst_start_up_check.moc"
