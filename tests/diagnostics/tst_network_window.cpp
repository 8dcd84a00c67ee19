#include "app/globals/settings.h"
#include "cloud/service_address.h"
#include "device/diagnostics/network_window.h"
#include "simulator/cloud/simulated_service.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QtTest>

static const QString kCall = "GetSWVerssion";

/// The window that shows what travels to the cloud service and back, over real sockets.
class NetworkWindowTest : public QObject
{
    Q_OBJECT

    SimulatedService m_service;
    std::unique_ptr<TestNetworkWindow> m_window;

    /// Presses a button, once and in vain once more, and waits for the call and the reply, which is then shown.
    bool press(const char* button)
    {
        auto* list = m_window->findChild<QListWidget*>("log");
        const int wanted = list->count() + 2;
        for (int i = 0; i < 2; ++i)
            QTest::mouseClick(m_window->findChild<QPushButton*>(button), Qt::LeftButton);
        return QTest::qWaitFor([&] { return list->count() == wanted; }) && list->currentRow() == wanted - 1;
    }

    /// Title, plain text and cipher text of a line, counted from the newest.
    QStringList entry(int age)
    {
        auto* list = m_window->findChild<QListWidget*>("log");
        list->setCurrentRow(list->count() - 1 - age);
        return {list->currentItem()->text().section(' ', 1),
                m_window->findChild<QPlainTextEdit*>("plainText")->toPlainText(),
                m_window->findChild<QPlainTextEdit*>("cipherText")->toPlainText()};
    }

private slots:
    void init()
    {
        QSettings(kOrganization, kApplication).clear();
        g_uuid = "{01234567-89ab-cdef-0123-456789abcdef}";
        serviceAddress() = m_service.address();
        m_window = std::make_unique<TestNetworkWindow>();
        m_window->show();
    }

    void cleanup()
    {
        m_window.reset();
        for (QWidget* widget : QApplication::topLevelWidgets())
            delete widget;
    }

    void logsIn()
    {
        m_service.setUser("小明", "s3cret 密", {{"nickName", "墨"}});
        QCOMPARE(m_window->findChild<QLineEdit*>("password")->echoMode(), QLineEdit::Password);
        m_window->findChild<QLineEdit*>("userName")->setText("小明");
        m_window->findChild<QLineEdit*>("password")->setText("s3cret 密");
        QVERIFY(press("buttonLogin"));
        const ServiceRequest request = m_service.requests().last();
        QCOMPARE(entry(1), (QStringList{"-> login", request.parameterText, request.cipherText}));
        QVERIFY(!entry(1)[1].contains("s3cret"));
        QCOMPARE(entry(0)[0], QString("<- 200"));
        QVERIFY(entry(0)[1].contains("\"nickName\":\"墨\"") && entry(0)[2].startsWith("{\"data\":\""));
    }

    /// One call at a time.
    void showsFailures()
    {
        for (const auto& [status, body, plain, cipher] : {std::tuple(200, "{\"data\":\"!\"}", "", "{\"data\":\"!\"}"),
                                                          std::tuple(500, "out of order", "out of order", "")}) {
            m_service.setReply(kCall, {status, body});
            QVERIFY(press("buttonCheckVersion"));
            QCOMPARE(entry(0), (QStringList{QString("<- %1").arg(status), plain, cipher}));
        }
        serviceAddress() = "http://127.0.0.1:1/";
        QVERIFY(press("buttonCheckVersion"));
        QVERIFY(entry(0)[0] == "<- -1" && !entry(0)[1].isEmpty());
    }
};

QTEST_MAIN(NetworkWindowTest)
#include "tst_network_window.moc"
