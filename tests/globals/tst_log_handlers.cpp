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
    constexpr int kLong = 300;
    const auto logMany = [](const QString& text) {
        for (int i = 0; i < kRecords; ++i)
            fileMessageHandler(QtDebugMsg, QMessageLogContext(), text);
    };
    std::unique_ptr<QThread> other(QThread::create(logMany, QString(kLong, 'b')));
    other->start();
    logMany(QString(kLong, 'a'));
    QVERIFY(other->wait(30000));

    QList<QByteArray> records = log().split('\n');
    QCOMPARE(records.takeLast(), QByteArray());
    QCOMPARE(records.size(), 2 * kRecords);
    for (const QByteArray& record : qAsConst(records)) {
        const char letter = record.mid(8, 1).at(0);
        QVERIFY(record.startsWith("Message:" + QByteArray(kLong, letter) + " File:  Line:0  Function:  DateTime:"));
        QVERIFY(record.endsWith('\r'));
    }
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
    const auto row = [](const QStringList& arguments, const char* output) {
        QTest::newRow(qPrintable(arguments.join(' '))) << arguments << QByteArray(output);
    };
    row({"short", "0", "context"}, "Debug: hello %s\n");
    row({"short", "4", "context"}, "Info: hello %s\n");
    row({"short", "1", "context"}, "Warning: hello %s\n");
    row({"short", "2", "context"}, "Critical: hello %s (a.cpp:7, f())\n");
    row({"short", "2", "none"}, "Critical: hello %s (:0, )\n");
    row({"short", "3", "context"}, "Fatal: hello %s (a.cpp:7, f())\n");
    row({"short", "5", "context"}, "");
    row({"verbose", "0", "context"}, "Debug: hello %s (a.cpp:7, f())\n");
    row({"verbose", "4", "context"}, "Info: hello %s (a.cpp:7, f())\n");
    row({"verbose", "3", "context"}, "Fatal: hello %s (a.cpp:7, f())\n");
    row({"verbose", "-1", "context"}, "");
}

void LogHandlersTest::console()
{
    QFETCH(QStringList, arguments);
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), QStringList{"--child"} + arguments);
    QVERIFY(child.waitForFinished(30000));
    QTEST(child.readAllStandardError(), "output");
    QCOMPARE(child.exitStatus() == QProcess::CrashExit, arguments.at(1) == "3"); // fatal aborts
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
