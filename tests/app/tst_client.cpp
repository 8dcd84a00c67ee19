#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QUuid>
#include <QtTest>

/// Starts the client itself, with a settings store of its own, and looks at what a start leaves behind.
class ClientTest : public QObject
{
    Q_OBJECT

private slots:
    void firstStartMakesTheIdentifier();
};

void ClientTest::firstStartMakesTheIdentifier()
{
    const QTemporaryDir dir;
    QProcess client;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", dir.path());
    client.setProcessEnvironment(environment);
    client.start(CLIENT_PROGRAM, QStringList());
    const QString store = dir.filePath("Quillbox/App_Start.conf");
    const auto stored = [&] {
        return QSettings(store, QSettings::IniFormat).value("SETTINT_UUID").toString();
    };
    QTRY_VERIFY_WITH_TIMEOUT(!stored().isEmpty(), 60000);
    QCOMPARE(stored().size(), 38);
    QCOMPARE(QUuid(stored()).toString(), stored());
    QCOMPARE(client.state(), QProcess::Running); // it goes on to its window
    client.kill();
    QVERIFY(client.waitForFinished());
}

QTEST_GUILESS_MAIN(ClientTest)
#include "tst_client.moc"
