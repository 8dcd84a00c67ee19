#include "app/globals/log_handlers.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

/// Runs every handler in a child process (this program, called with an argument), since a fatal message ends it and
/// the console handlers write to standard error.
class LogHandlersTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void fileRecord_data();
    void fileRecord();
    void threadsDoNotMixRecords();
    void unopenableFileIsPassedOver();
    void console_data();
    void console();

private:
    QByteArray log() const;
    std::unique_ptr<QTemporaryDir> m_dir;
};

namespace {
int childMain(const QStringList& arguments)
{
    const auto handler = arguments.at(0) == "verbose" ? verboseConsoleMessageHandler : consoleMessageHandler;
    const auto type = static_cast<QtMsgType>(arguments.at(1).toInt());
    const bool withContext = arguments.at(2) == "context";
    handler(type, withContext ? QMessageLogContext("a.cpp", 7, "f()", "default") : QMessageLogContext(), "hello %s");
    return 0;
}
} // namespace

void LogHandlersTest::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(QDir::setCurrent(m_dir->path()));
}

QByteArray LogHandlersTest::log() const
{
    QFile file(m_dir->filePath("quillbox_log.txt"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void LogHandlersTest::fileRecord_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("withContext");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("start");
    QTest::newRow("warning without a label") << 1 << true << "low battery"
                                             << "Message:low battery File:a.cpp  Line:7  Function:f()  DateTime:";
    QTest::newRow("no context") << 0 << false << "x"
                                << "Message:x File:  Line:0  Function:  DateTime:";
    QTest::newRow("places in the text stay") << 4 << true << "%2 %5 %1"
                                             << "Message:%2 %5 %1 File:a.cpp  Line:7  Function:f()  DateTime:";
    QTest::newRow("Chinese") << 2 << true << QString::fromUtf8("羽毛盒没纸了")
                             << QString::fromUtf8("Message:羽毛盒没纸了 File:a.cpp  Line:7  Function:f()  DateTime:");
    QTest::newRow("fatal does not end the process") << 3 << true << "x"
                                                    << "Message:x File:a.cpp  Line:7  Function:f()  DateTime:";
}

void LogHandlersTest::fileRecord()
{
    QFETCH(int, type);
    QFETCH(bool, withContext);
    QFETCH(QString, message);
    QFETCH(QString, start);
    fileMessageHandler(static_cast<QtMsgType>(type),
                       withContext ? QMessageLogContext("a.cpp", 7, "f()", "default") : QMessageLogContext(),
                       message);
    const QString record = QString::fromUtf8(log());
    QVERIFY2(record.startsWith(start), qPrintable(record));
    const QRegularExpression dateTime("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\S+\r\n$");
    QVERIFY2(dateTime.match(record.mid(start.size())).hasMatch(), qPrintable(record));
}

void LogHandlersTest::threadsDoNotMixRecords()
{
    constexpr int kRecords = 200;
    const auto logMany = [](const QString& text) {
        for (int i = 0; i < kRecords; ++i)
            fileMessageHandler(QtDebugMsg, QMessageLogContext(), text);
    };
    std::unique_ptr<QThread> other(QThread::create(logMany, QString(300, 'b')));
    other->start();
    logMany(QString(300, 'a'));
    QVERIFY(other->wait(30000));

    QList<QByteArray> records = log().split('\n');
    QCOMPARE(records.takeLast(), QByteArray());
    QCOMPARE(records.size(), 2 * kRecords);
    const QRegularExpression whole(
        "^Message:(a{300}|b{300}) File:  Line:0  Function:  DateTime:[^:]+:\\d\\d:[^:]+\r$");
    for (const QByteArray& record : qAsConst(records))
        QVERIFY2(whole.match(QString::fromUtf8(record)).hasMatch(), record.constData());
}

void LogHandlersTest::unopenableFileIsPassedOver()
{
    QVERIFY(QDir().mkdir("quillbox_log.txt")); // a folder of that name cannot be opened for writing
    // A write to the unopened file would make Qt warn, and with the handler installed that would never return.
    const auto previous = qInstallMessageHandler(fileMessageHandler);
    qWarning("lost");
    qInstallMessageHandler(previous);
    QVERIFY(QDir().rmdir("quillbox_log.txt"));
    fileMessageHandler(QtDebugMsg, QMessageLogContext(), "kept"); // and the mutex is free again
    QVERIFY(log().startsWith("Message:kept"));
}

void LogHandlersTest::console_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<bool>("aborts");
    QTest::newRow("debug") << QStringList{"short", "0", "context"} << QByteArray("Debug: hello %s\n") << false;
    QTest::newRow("info") << QStringList{"short", "4", "context"} << QByteArray("Info: hello %s\n") << false;
    QTest::newRow("warning") << QStringList{"short", "1", "context"} << QByteArray("Warning: hello %s\n") << false;
    QTest::newRow("critical") << QStringList{"short", "2", "context"}
                              << QByteArray("Critical: hello %s (a.cpp:7, f())\n") << false;
    QTest::newRow("fatal") << QStringList{"short", "3", "context"} << QByteArray("Fatal: hello %s (a.cpp:7, f())\n")
                           << true;
    QTest::newRow("no context") << QStringList{"short", "2", "none"} << QByteArray("Critical: hello %s (:0, )\n")
                                << false;
    QTest::newRow("unknown") << QStringList{"short", "5", "context"} << QByteArray() << false;
    QTest::newRow("verbose debug") << QStringList{"verbose", "0", "context"}
                                   << QByteArray("Debug: hello %s (a.cpp:7, f())\n") << false;
    QTest::newRow("verbose info") << QStringList{"verbose", "4", "context"}
                                  << QByteArray("Info: hello %s (a.cpp:7, f())\n") << false;
    QTest::newRow("verbose fatal") << QStringList{"verbose", "3", "context"}
                                   << QByteArray("Fatal: hello %s (a.cpp:7, f())\n") << true;
    QTest::newRow("verbose unknown") << QStringList{"verbose", "-1", "context"} << QByteArray() << false;
}

void LogHandlersTest::console()
{
    QFETCH(QStringList, arguments);
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), QStringList{"--child"} + arguments);
    QVERIFY(child.waitForFinished(30000));
    QTEST(child.readAllStandardError(), "output");
    QTEST(child.exitStatus() == QProcess::CrashExit, "aborts");
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--child")
        return childMain(arguments.mid(2));
    LogHandlersTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_log_handlers.moc"
