#include "app/dialogs/qx_message_dialog.h"
#include "device/diagnostics/upgrade_window.h"
#include "simulator/cloud/simulated_service.h"
#include "tests/files.h"
#include "tests/shown_window.h"
#include "update/installer_name.h"
#include "update/upgrade_app_window.h"
#include "update/upgrade_dialog.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <ctime>

using Length = InstallerFile::Length;

namespace {

constexpr qint64 kGiB = 1024 * 1024 * 1024;

QString text(const QWidget* window, const char* label)
{
    return window ? window->findChild<QLabel*>(label)->text() : QString();
}

void click(QWidget* window, const char* button)
{
    QTest::mouseClick(window->findChild<QPushButton*>(button), Qt::LeftButton);
}

} // namespace

class UpgradeWindowsTest : public QObject
{
    Q_OBJECT

    SimulatedService m_service;
    QTemporaryDir m_home;
    QString m_file; ///< what is proposed
    GetSWVersionModel m_model;
    QStringList m_opened;

    /// Presses "update now"; answers the question for a file, and returns what it proposed.
    static QString update(UpgradeAppWindow& window, Qt::Key answer)
    {
        QString proposed;
        QTimer::singleShot(0, &window, [&] { // once the dialog is open
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            proposed = dialog->windowTitle() + " " + dialog->selectedFiles().value(0);
            QTest::keyClick(dialog->findChild<QLineEdit*>(), answer);
        });
        click(&window, "buttonUpdate");
        return proposed;
    }

public slots:
    void open(const QUrl& url) { m_opened << url.toString(); }

private slots:
    void initTestCase()
    {
        qputenv("HOME", m_home.path().toLocal8Bit()); // which moves the folder, but on Windows
        QVERIFY(QDir(m_home.path()).mkdir("Downloads"));
        m_file = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + "/QuillboxSetup107.exe";
        QDesktopServices::setUrlHandler("file", this, "open");
        m_model.swCategory = "/Quillbox\u202eSetup"; // of which a name takes no more than the letters
        m_model.versionCode = "107";
        m_model.swPath = m_service.installerPath();
    }

    void cleanup()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<QDialog*>(widget))
                delete widget; // nobody else does
        }
    }

    void offersDownloadsAndOpens()
    {
        m_service.setInstaller({300000});
        UpgradeAppWindow window;
        window.setModel(m_model);
        for (const Qt::Key unawares : {Qt::Key_Return, Qt::Key_Space}) {
            UpgradeAppWindow other;
            other.show();
            QTest::keyClick(other.windowHandle(), unawares);
            QVERIFY(!other.isVisible());
        }
        window.show();
        QCOMPARE(update(window, Qt::Key_Escape), "save file " + m_file);
        QVERIFY(window.isVisible() && !shown<UpgradeDialog>());

        // The program ends with its last window, which none of these is but the question.
        QSignalSpy lastClosed(qApp, &QGuiApplication::lastWindowClosed);
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            auto* question = shown<QXMessageDialog>();
            if (question && !shown<UpgradeDialog>() && !window.isVisible() && m_opened.isEmpty() &&
                (question->windowFlags() & Qt::WindowStaysOnTopHint) &&
                text(question, "label") == QStringLiteral("下载完成，是否打开文件?"))
                question->accept();
        });
        timer.start(20);
        QTimer::singleShot(0, this, [&window] { update(window, Qt::Key_Return); });
        QTimer::singleShot(10000, &window, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0);
        QCOMPARE(lastClosed.size(), 1);
        QCOMPARE(m_opened, QStringList(QUrl::fromLocalFile(m_file).toString()));
        QCOMPARE(readFile(m_file), installerBytes(0, 300000));
        QVERIFY(QFile::remove(m_file));
    }

    void holdsEveryText()
    {
        GetSWVersionModel model = m_model;
        for (const QString& notes : {QString("notes ").repeated(20000), QString(100000, 'W'), QString("<b>1.</b>")}) {
            model.remark = model.versionName = notes;
            UpgradeAppWindow window;
            window.setModel(model);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            const auto* version = window.findChild<QLabel*>("labelVersion");
            const auto* label = window.findChild<QLabel*>("labelNotes");
            for (const QLabel* each : {version, label})
                QVERIFY(each->textFormat() == Qt::PlainText);
            QVERIFY(version->text().startsWith("更新版本:" + notes.left(9)) &&
                    label->text().startsWith(notes.left(9)) &&
                    label->text().contains(QChar(0x200b)) == notes.contains("WW")); // a place to break
            QCOMPARE(version->width(), version->sizeHint().width());
            QCOMPARE(label->width(), window.findChild<QScrollArea*>()->viewport()->width());
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
            QTest::keyClick(&window, Qt::Key_Escape);
            QVERIFY(!window.isVisible());
        }
    }

    void names()
    {
        const QString cjk = QString::fromUtf8("羽毛盒");
        const QString large(200, 'a');
        const QString dog = QString::fromUtf8("🐶");
        const std::tuple<QString, QString, QString> rows[] = {
            {"Quillbox_Setup_", "110", "Quillbox_Setup_110"},
            {cjk + dog + " (beta) 1", ".0-rc.2", cjk + dog + " (beta) 1.0-rc.2"},
            {QString("../.bashrc") + QChar(0) + QString(150, ' ') + "Quillbox_Setup_", "110", "bashrc"},
            {"C:\\a*b?c\"d<e>f|g\n\t\x7f", "1", "Cabcdefg1"},
            {"a . . ", ". ", "a"},
            {"", " ..", "Quillbox_Setup"},
            {"co", "N", "_coN"},
            {"nul .txt.", "7", "_nul .txt.7"},
            {"COM", "10", "COM10"},
            {"Setup\u202efdp.", "1\u2066\u200b\u00ad\ufeff\u20282", "Setupfdp.12"},
            {QString("x") + QChar(0xd83d), QString(QChar(0xdc36)) + "y", "x" + dog + "y"}, // the two halves of one
            {large, "1", large.left(100)},
            {"CON" + QString(97, ' '), "x", "_CON"},
            {large.left(99) + dog, "1", large.left(99)},
            {cjk.repeated(26) + "12345678", "9",
             cjk.repeated(26) + "12345678"}}; // in bytes as many as a file system takes
        for (const auto& [category, code, name] : rows)
            QCOMPARE(installerName(category, code), name + ".exe");
    }

    /// Of the first 20,000 characters, however they are made: within half a second, and no marks over other lines.
    void laysOutAnyNotes()
    {
        const QString joined = QString::fromUtf8("👨\u200d👩\u200d👧");
        const std::tuple<const char*, QString, QString> rows[] = {
            {"marks", QString::fromUtf8("\u05b0"), QString::fromUtf8("\u05b0\u05b0\u05b0")},
            {"piles", QString::fromUtf8("e\u0300\u20dd\u0903\u0303\u200d\u0304"),
             QString::fromUtf8("e\u0300\u20dd\u0903\u200de")},
            {"right to left and back", QString::fromUtf8("\u05d0\u05b8 a1"), {}},
            {"joined", joined, joined + joined},
            {"Thai", QString::fromUtf8("\u0e01\u0e34\u0e48\u0e4c"), {}},
            {"lines", "a\n", "a\na\n"}};
        for (const auto& [name, part, shown] : rows) {
            m_model.remark = part.repeated(20000 / part.size() + 1);
            UpgradeAppWindow window;
            const std::clock_t start = std::clock();
            window.setModel(m_model);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            window.grab();
            const auto ms = (std::clock() - start) * 1000 / CLOCKS_PER_SEC;
            QVERIFY2(ms < 500 * LIMIT_FACTOR, qPrintable(QString("%1: %2 ms").arg(name).arg(ms)));
            QVERIFY2(text(&window, "labelNotes").startsWith(shown), name);
        }
    }

    void progress()
    {
        const std::tuple<qint64, qint64, const char*> rows[] = {
            {0, 0, "0/0 0%   0 B / 0 B"},
            {1536, -1, "-1/0 1.5 kB"}, // a bar without an end
            {999, 1000, "999/1000 99%   999 B / 1000 B"},
            {1, 1, "1/1 100%   1 B / 1 B"},
            {12, 10, "10/10 100%   12 B / 10 B"},
            {2, 2 * kGiB - 1, "2/2147483647 0%   2 B / 2.0 GB"},
            {3 * kGiB, 5 * kGiB, "805306368/1342177280 60%   3.0 GB / 5.0 GB"}};
        for (const auto& [received, total, shown] : rows) {
            UpgradeDialog dialog;
            dialog.onDownloadProcess(received, total);
            const auto* bar = dialog.findChild<QProgressBar*>();
            QCOMPARE(QString("%1/%2 ").arg(bar->value()).arg(bar->maximum()) + text(&dialog, "labelBytes"), shown);
        }
    }

    void rate()
    {
        TransferRate rate;
        QCOMPARE(rate.bytesPerSecond(5), 0);
        rate.add(1000, 0);
        rate.add(1500, 600);
        QCOMPARE(rate.bytesPerSecond(2000), 600);
        rate.add(4000, 1200);
        QCOMPARE(rate.bytesPerSecond(4000), 400);
        QCOMPARE(rate.bytesPerSecond(4500), 200); // 600 within three seconds
        QCOMPARE(rate.bytesPerSecond(7000), 0);
        rate.add(9000, 300); // a new transfer
        rate.add(9100, 400);
        QCOMPARE(rate.bytesPerSecond(9100), 1000);
        rate.add(20000, 3400);
        QCOMPARE(rate.bytesPerSecond(20000), 1000); // after a long pause
    }

    /// A technician types what the service would have said.
    void offersWhatIsTyped()
    {
        TestUpgradeWindow typed;
        typed.show();
        for (auto* field : typed.findChildren<QLineEdit*>())
            field->setText(field->objectName() + "1");
        typed.findChild<QPlainTextEdit*>("remark")->setPlainText("<i>notes</i>");
        click(&typed, "buttonOpen");
        auto* window = shown<UpgradeAppWindow>();
        QVERIFY(text(window, "labelVersion").endsWith(":versionName1"));
        QCOMPARE(text(window, "labelNotes"), QString("<i>notes</i>"));
        QVERIFY(update(*window, Qt::Key_Escape).endsWith("/swCategory1versionCode1.exe"));
    }

    void wrongArguments()
    {
        for (const auto& [url, file] : {std::pair("", "x"), std::pair("x", "")}) {
            UpgradeDialog dialog;
            dialog.startDownload(url, file);
            dialog.show(); // as the offer does then
            QCoreApplication::processEvents();
            auto* message = shown<QXMessageDialog>();
            QVERIFY(QTest::qWaitForWindowActive(message));
            QCOMPARE(message->windowTitle() + text(message, "label"), dialog.windowTitle() + "参数错误");
            message->close();
            click(&dialog, "buttonRestart");
            QVERIFY(shown<QXMessageDialog>() && !(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
            shown<QXMessageDialog>()->close();
        }
    }

    void failsAndStartsAnew()
    {
        UpgradeDialog dialog;
        const auto* restart = dialog.findChild<QPushButton*>("buttonRestart");
        const auto* bar = dialog.findChild<QProgressBar*>();
        m_service.setInstaller({60000, Length::Told, 200, 0, 60000, -1, 30000});
        dialog.setSilenceLimitMs(500);
        dialog.startDownload(m_service.installerPath(), m_file);
        dialog.show();
        QVERIFY(!restart->isEnabled());
        QTRY_VERIFY(!text(&dialog, "labelRate").startsWith("0 B"));
        const QString rate = text(&dialog, "labelRate");
        QTRY_VERIFY(bar->value() > 0 && !QFile::exists(m_file + "_tmp"));
        QTRY_VERIFY(text(&dialog, "labelRate") != rate); // it goes down now
        QVERIFY(dialog.isVisible() && restart->isEnabled());
        m_service.setInstaller({70000, Length::Told, 206});
        click(&dialog, "buttonRestart");
        QTRY_COMPARE(QFileInfo(m_file).size(), 70000);
        QTRY_VERIFY(restart->isEnabled());
        QVERIFY(dialog.isVisible() && !shown<QXMessageDialog>());
        m_service.setInstaller({80000});
        click(&dialog, "buttonRestart");
        QTRY_VERIFY(shown<QXMessageDialog>());
        QVERIFY(!dialog.isVisible() && QFile::remove(m_file));
        m_opened.clear();
        QTest::keyClick(shown<QXMessageDialog>()->windowHandle(), Qt::Key_Return); // unawares
        QVERIFY(!shown<QXMessageDialog>() && m_opened.isEmpty());
    }

    void isGivenUp()
    {
        m_service.setInstaller({300000, Length::Told, 200, 0, 0, -1, 100000});
        for (const bool byCancelling : {true, false}) {
            auto dialog = std::make_unique<UpgradeDialog>();
            dialog->startDownload(m_service.installerPath(), m_file);
            dialog->show();
            QTRY_COMPARE(QFileInfo(m_file + "_tmp").size(), 100000);
            byCancelling ? click(dialog.get(), "buttonCancel") : dialog.reset();
            QVERIFY(!shown<QDialog>() && !QFile::exists(m_file + "_tmp") && !QFile::exists(m_file));
        }
    }
};

QTEST_MAIN(UpgradeWindowsTest)
#include "tst_upgrade_windows.moc"
