#include "app/globals/log_handlers.h"
#include "app/globals/log_text.h"
#include "tests/files.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <unistd.h>

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

    /// The short form says where for what is critical, the other one always.
    void consoleRecords()
    {
        QFile file("console.txt");
        QVERIFY(file.open(QIODevice::WriteOnly));
        const int console = dup(2);
        dup2(file.handle(), 2);
        for (const auto handler : {consoleMessageHandler, verboseConsoleMessageHandler}) {
            for (const QtMsgType type : {QtDebugMsg, QtInfoMsg, QtWarningMsg, QtCriticalMsg})
                handler(type, QMessageLogContext("a.cpp", 7, "f()", "default"), "text");
        }
        std::fflush(stderr);
        dup2(console, 2);
        close(console);
        const QString where = " text (a.cpp:7, f())\n";
        QCOMPARE(QString(readFile("console.txt")).remove('\r'),
                 "Debug: text\nInfo: text\nWarning: text\nCritical:" + where + "Debug:" + where + "Info:" + where +
                     "Warning:" + where + "Critical:" + where);
    }

    void quotes()
    {
        QCOMPARE(logText("羽毛盒 🖨 \"%1\""), QString("羽毛盒 🖨 \"%1\""));
        QCOMPARE(logText("a\nb\r\t\\n\x1b[2J\u009b\u2028\u2029\u202e\U000e0041") + logText(QChar(0xd83d)),
                 QString(R"(a\nb\r\t\\n\u001b[2J\u009b\u2028\u2029\u202e\udb40\udc41\ud83d)"));
    }
};

QTEST_GUILESS_MAIN(LogHandlersTest)
#include "tst_log_handlers.moc"
