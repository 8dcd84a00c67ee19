#include "app/globals/log_handlers.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

class LogHandlersTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    static QString log()
    {
        QFile file("quillbox_log.txt");
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

private slots:
    void initTestCase() { QVERIFY(QDir::setCurrent(m_dir.path())); }
    void init() { QFile::remove(kLogFileName); }

    /// Without a level; places in the text stay, and a fatal message does not end the process.
    void fileRecords()
    {
        QString records;
        for (const QString message : {"low battery", "%2 %5 %1", "羽毛盒没纸了"}) {
            fileMessageHandler(QtFatalMsg, QMessageLogContext("a.cpp", 7, "f()", "default"), message);
            records += "Message:" + message +
                       " File:a\\.cpp  Line:7  Function:f\\(\\)  DateTime:"
                       "\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\S+\r\n";
        }
        QVERIFY2(QRegularExpression('^' + records + '$').match(log()).hasMatch(), qPrintable(log()));
    }

    void threadsDoNotMixRecords()
    {
        const auto logMany = [](QChar letter) {
            for (int i = 0; i < 20; ++i) // longer than what goes out in one write
                fileMessageHandler(QtDebugMsg, QMessageLogContext(), QString(60000, letter));
        };
        const std::unique_ptr<QThread> other(QThread::create(logMany, QChar('b')));
        other->start();
        logMany('a');
        QVERIFY(other->wait(30000));
        const QRegularExpression records(
            "^(Message:(a{60000}|b{60000}) File:  Line:0  Function:  DateTime:[^\r\n]*\r\n){40}$");
        QVERIFY(records.match(log()).hasMatch());
    }

    void unopenableFileIsPassedOver()
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

    void console_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("output");
        const auto row = [](const QString& arguments, const char* output) {
            QTest::newRow(qPrintable(arguments)) << arguments.split(' ') << QByteArray(output);
        };
        row("short 0", "Debug: hello %s\n");
        row("short 1", "Warning: hello %s\n");
        row("short 2", "Critical: hello %s (a.cpp:7, f())\n");
        row("short 2 without context", "Critical: hello %s (:0, )\n");
        row("short 3", "Fatal: hello %s (a.cpp:7, f())\n");
        row("short 4", "Info: hello %s\n");
        row("short 5", "");
        row("verbose 4", "Info: hello %s (a.cpp:7, f())\n");
    }

    /// In a child process, this program with arguments: a fatal message ends it.
    void console()
    {
        QFETCH(QStringList, arguments);
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), arguments);
        QVERIFY(child.waitForFinished(30000));
        QTEST(child.readAllStandardError(), "output");
        QCOMPARE(child.exitStatus() == QProcess::CrashExit, arguments.at(1).toInt() == QtFatalMsg);
    }
};

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "short" || arguments.value(1) == "verbose") {
        const auto handler = arguments.at(1) == "short" ? consoleMessageHandler : verboseConsoleMessageHandler;
        const auto type = static_cast<QtMsgType>(arguments.at(2).toInt());
        const bool bare = arguments.contains("without");
        handler(type, {bare ? nullptr : "a.cpp", bare ? 0 : 7, bare ? nullptr : "f()", "default"}, "hello %s");
        return 0;
    }
    LogHandlersTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_log_handlers.moc"
