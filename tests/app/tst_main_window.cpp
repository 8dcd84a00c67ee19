#include "shell_fixture.h"

#include "app/picture_file.h"
#include "app/welcome_window.h"
#include "content/page/edit_main_window.h"
#include "device/diagnostics/diagnostic_hub.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTextEdit>

using Model = SimulatedPrinter::Model;

class MainWindowTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    /// The button prints the page, as wide as the head.
    static bool prints(Client& client, int headDots)
    {
        client.click("printButton");
        return QTest::qWaitFor([] { return simulatedPrinter().report().feeds.contains(300); }) &&
               simulatedPrinter().paper().width() == headDots && simulatedPrinter().report().crcErrors == 0 &&
               simulatedPrinter().jobLines().count('\0') < simulatedPrinter().jobLines().size();
    }

private slots:
    /// Meanwhile a technician opens the diagnostic windows, by a button that nobody sees. They get the replies too.
    void k2TellsAtOnce()
    {
        simulatedPrinter().reset(Model::K2);
        Client client;
        QCOMPARE(client->size(), QSize(600, 460));
        QVERIFY(!(client->windowFlags() & Qt::WindowMaximizeButtonHint));
        auto* hidden = client->findChild<QPushButton*>("diagnosticsButton");
        QVERIFY(!hidden->isVisible() && hidden->shortcut().isEmpty());
        hidden->click();
        const std::unique_ptr<TestMainWindow> hub(shown<TestMainWindow>());
        QVERIFY(hub);
        QSignalSpy passedOn(hub.get(), &TestMainWindow::sigAnalysisSuccess);
        QTRY_VERIFY(isConnecting());
        QTRY_VERIFY(!isConnecting());
        QCOMPARE(passedOn.value(0).value(1).toString(), QStringLiteral("Quillbox_K2"));
        QTest::keyClicks(client->focusWidget(), QStringLiteral("Quillbox")); // the page waits for text
        QVERIFY(prints(client, 576));
    }

    /// It takes the whole connecting phase. Meanwhile a welcome window makes way for a main window of its own.
    void k1IsWaitedFor()
    {
        simulatedPrinter().reset(Model::K1);
        Client client;
        WelcomeWindow welcome;
        welcome.show();
        QVERIFY(!welcome.mainWindow());
        QTRY_VERIFY(isConnecting());
        QElapsedTimer time;
        time.start();
        QTest::keyClicks(client->page()->editor(), QStringLiteral("Quillbox"));
        client.click("printButton"); // dropped: the device is being connected

        QTRY_VERIFY_WITH_TIMEOUT(welcome.mainWindow(), 8000);
        QVERIFY(!welcome.isVisible() && welcome.mainWindow()->isVisible() && welcome.mainWindow()->isWindow());
        welcome.mainWindow()->stopThreads();
        QTRY_VERIFY_WITH_TIMEOUT(!isConnecting(), 9500);
        QVERIFY2(time.elapsed() >= 7500 && time.elapsed() < 9500, QByteArray::number(time.elapsed()));
        QVERIFY(simulatedPrinter().jobLines().isEmpty());
        QVERIFY(prints(client, 384));
        QVERIFY(!shown<QMessageBox>());
    }

    void insertsPictureFiles()
    {
        const QString good = m_folder.filePath("good.png");
        const QString huge = m_folder.filePath("huge.png");
        QVERIFY(QImage(40, 30, QImage::Format_RGB32).save(good));
        QVERIFY(QImage(10000, 8000, QImage::Format_Mono).save(huge));
        const QString broken = m_folder.filePath("broken.png");
        QFile file(broken);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("\x89PNG, but not for long") > 0);
        file.close();

        simulatedPrinter().unplug();
        Client client;
        QSignalSpy picked(&client.window(), &MainWindow::signalsPickImage);
        QStringList startedOn;
        for (const QString& name : {good, broken, huge}) {
            QTimer::singleShot(0, qApp, [&startedOn, name] {
                auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                startedOn.append(dialog->selectedFiles().value(0));
                auto* field = dialog->findChild<QLineEdit*>("fileNameEdit");
                field->setText(name);
                QTest::keyClick(field, Qt::Key_Return);
            });
            client.click("pictureButton");
        }
        QCOMPARE(startedOn.mid(1), (QStringList{good, good})); // the broken one is not remembered
        QCOMPARE(client->page()->editor()->toPlainText().count(QChar::ObjectReplacementCharacter), 2);
        const QSize size = picked.last()[0].value<QImage>().size();
        QVERIFY(size.width() > 8000 && static_cast<qint64>(size.width()) * size.height() <= kMostPixels);
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_main_window.moc"
