#include "app/globals/log_handlers.h"
#include "app/globals/log_text.h"
#include "tests/files.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

class LogHandlersTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void initTestCase() { QVERIFY(QDir::setCurrent(m_dir.path())); }

    /// Without a level; places in the text stay, and a fatal message does not end the process.
    void fileRecords()
    {
        QString records;
        for (const QString message : {"low battery", "%2 %5 %1", "羽毛盒没纸了"}) {
            fileMessageHandler(QtFatalMsg, QMessageLogContext("a.cpp", 7, "f()", "default"), message);
            records += "Message:" + QRegularExpression::escape(QString::fromUtf8(message.toLocal8Bit())) +
                       " File:a\\.cpp  Line:7  Function:f\\(\\)  DateTime:"
                       "\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\S+\r\n";
        }
        const QString log = readFile("quillbox_log.txt");
        QVERIFY2(QRegularExpression('^' + records + '$').match(log).hasMatch(), qPrintable(log));
    }

    void quotes()
    {
        QCOMPARE(logText("羽毛盒 🖨 \"%1\""), QString("羽毛盒 🖨 \"%1\""));
        QCOMPARE(logText("a\nb\r\t\\n\x1b[2J\u009b\u2028\u2029\u202e\U000e0041") + logText(QChar(0xd83d)),
                 QString(R"(a\nb\r\t\\n\u001b[2J\u009b\u2028\u2029\u202e\udb40\udc41\ud83d)"));
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
        QTEST(child.readAllStandardError().replace("\r\n", "\n"), "output");
        QCOMPARE(child.exitStatus() == QProcess::CrashExit || child.exitCode() != 0,
                 arguments.at(1).toInt() == QtFatalMsg);
    }
};

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "short" || arguments.value(1) == "verbose") {
        const auto handler = arguments.at(1) == "short" ? consoleMessageHandler : verboseConsoleMessageHandler;
        const auto type = static_cast<QtMsgType>(arguments.at(2).toInt());
        handler(type, {"a.cpp", 7, "f()", "default"}, "hello %s");
        return 0;
    }
    LogHandlersTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_log_handlers.moc"
