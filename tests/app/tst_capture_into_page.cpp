#include "shell_fixture.h"

#include "content/capture/capture_screen.h"
#include "content/page/edit_main_window.h"
#include "content/page/picture_insertion.h"
#include "content/page/text_runs.h"

#include <QPointer>
#include <QTextEdit>

class CaptureIntoPageTest : public QObject
{
    Q_OBJECT

private slots:
    /// The screenshot button on a real desktop: the window gives way, the piece of the screen lands in the page, and
    /// the window is back where it was.
    void captures()
    {
        const QRect selected(200, 130, 660, 560); // all that the client's window covers, and its frame
        simulatedPrinter().unplug();
        QWidget behind;
        behind.setStyleSheet(QStringLiteral("background: #1060c0"));
        behind.setGeometry(100, 100, 900, 700);
        behind.show();
        QVERIFY(QTest::qWaitForWindowExposed(&behind));
        Client client;
        client->move(220, 180);
        client->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&client.window()));
        const QRect before = client->geometry();

        client.click("screenshotButton");
        client.click("screenshotButton"); // an impatient second click is not a second capture
        QTRY_VERIFY(shown<CaptureScreen>());
        const QPointer<CaptureScreen> overlay = shown<CaptureScreen>();
        QVERIFY(QTest::qWaitForWindowExposed(overlay));
        QVERIFY(client->width() <= 1 && client->height() <= 1);
        QVERIFY(!client->frameGeometry().intersects(selected));
        const QPoint from = overlay->mapFromGlobal(selected.topLeft());
        const QPoint to = overlay->mapFromGlobal(selected.bottomRight());
        QTest::mousePress(overlay, Qt::LeftButton, {}, from);
        QTest::mouseMove(overlay, to);
        QTest::mouseRelease(overlay, Qt::LeftButton, {}, to);
        QTest::keyClick(overlay, Qt::Key_Return);

        QTRY_VERIFY(!overlay);
        QTRY_COMPARE(client->geometry(), QRect(before.topLeft(), QSize(600, 460)));
        QVERIFY(!shown<CaptureScreen>());
        const QTextEdit& editor = *client->page()->editor();
        const QVector<TextRun> runs = textRuns(*editor.document());
        QCOMPARE(runs.size(), 1);
        const QUrl name(runs[0].format.toImageFormat().name());
        const auto picture = editor.document()->resource(QTextDocument::ImageResource, name).value<QImage>();
        QCOMPARE(picture.width(), pictureWidth(editor));
        QImage behindAlone(picture.size(), picture.format());
        behindAlone.fill(QColor("#1060c0"));
        QCOMPARE(picture, behindAlone);
    }
};

QTEST_MAIN(CaptureIntoPageTest)
#include "tst_capture_into_page.moc"
