#include "shell_fixture.h"

#include "app/globals/settings.h"
#include "simulator/cloud/simulated_service.h"
#include "update/upgrade_app_window.h"

/// The check for a newer version that each start makes, from the main window to the offer, against the service.
class StartUpCheckTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimulatedService> m_service;

    void offer(const QString& versionCode, bool mustUpdate)
    {
        const QJsonObject version{{"versionCode", versionCode},
                                  {"versionName", "V9"},
                                  {"swPath", m_service->installerPath()},
                                  {"mustUpdate", mustUpdate}};
        m_service->setReply("GetSWVerssion", ServiceReply::enciphered(ServiceReply::success(version)));
    }

    static bool isChecking() { return isBusy(QStringLiteral("加载中，请稍后...")); }

private slots:
    void init()
    {
        g_uuid = "{01234567-89ab-cdef-0123-456789abcdef}";
        simulatedPrinter().unplug();
        m_service = std::make_unique<SimulatedService>();
    }

    void cleanup()
    {
        for (QWidget* window : QApplication::topLevelWidgets())
            delete window;
    }

    void offers()
    {
        offer("101", false);
        Client client(m_service->address());
        QVERIFY(isChecking());
        QTRY_VERIFY(shown<UpgradeAppWindow>());
        QVERIFY(!isChecking());
        QVERIFY(client->isVisible());
        QCOMPARE(m_service->requests().last().faults, QStringList());
    }

    /// The main window closes and the offer keeps the program running, until it is closed as well.
    void mandatoryUpdateLeavesItsWindowAlone()
    {
        offer("101", true);
        Client client(m_service->address());
        bool closed = false;
        QTimer timer;
        timer.callOnTimeout([&] {
            QWidget* last = client->isVisible() ? nullptr : shown<UpgradeAppWindow>();
            closed = closed || (last && last->close());
        });
        timer.start(20);
        QTimer::singleShot(5000, &timer, [] { QCoreApplication::exit(1); });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(closed);
    }

    void nothingToOffer()
    {
        offer("100", false);
        for (const QString& service : {m_service->address(), kNoService}) {
            Client client(service);
            QVERIFY(isChecking());
            QTRY_VERIFY(!isChecking());
            QCoreApplication::processEvents();
            for (const QWidget* window : QApplication::topLevelWidgets())
                QCOMPARE(window->isVisible(), window == &client.window());
        }
    }
};

QTEST_MAIN(StartUpCheckTest)
#include "tst_start_up_check.moc"
