#include "shell_fixture.h"

#include "content/capture/capture_screen.h"
#include "content/page/edit_main_window.h"
#include "content/page/picture_insertion.h"
#include "content/page/text_runs.h"

#include <QPointer>
#include <QTextEdit>

/// The screenshot button on a real desktop: the window gives way, the piece of the screen lands in the page, and the
/// window is back where it was.
class CaptureIntoPageTest : public QObject
{
    Q_OBJECT

private slots:
    void captures_data();
    void captures();
};

namespace {

constexpr QRect kSelected(200, 130, 660, 560); // all that the client's window covers, and its frame

QVector<TextRun> picturesIn(MainWindow& window)
{
    QVector<TextRun> result;
    for (const TextRun& run : textRuns(*window.page()->editor()->document())) {
        if (run.format.isImageFormat())
            result.append(run);
    }
    return result;
}

void drag(CaptureScreen* overlay, const QRect& rect)
{
    const auto inOverlay = [&](const QPoint& point) {
        return overlay->mapFromGlobal(point);
    };
    QTest::mousePress(overlay, Qt::LeftButton, {}, inOverlay(rect.topLeft()));
    QTest::mouseMove(overlay, inOverlay(rect.center()));
    QTest::mouseMove(overlay, inOverlay(rect.bottomRight()));
    QTest::mouseRelease(overlay, Qt::LeftButton, {}, inOverlay(rect.bottomRight()));
}

} // namespace

void CaptureIntoPageTest::captures_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("selects");
    QTest::addColumn<int>("pictures");
    QTest::newRow("taken") << int(Qt::Key_Return) << true << 1;
    QTest::newRow("nothing selected") << int(Qt::Key_Return) << false << 0;
    QTest::newRow("left by Esc") << int(Qt::Key_Escape) << true << 0;
    QTest::newRow("closed by the window manager") << 0 << true << 0;
}

void CaptureIntoPageTest::captures()
{
    QFETCH(int, key);
    QFETCH(bool, selects);
    QFETCH(int, pictures);
    printer().reset(SimulatedPrinter::Model::K2);

    QWidget behind;
    behind.setStyleSheet(QStringLiteral("background: #1060c0"));
    behind.setGeometry(100, 100, 900, 700);
    behind.show();
    QVERIFY(QTest::qWaitForWindowExposed(&behind));
    Client client;
    client->move(220, 180);
    client->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&client.window()));
    QTRY_VERIFY(isConnecting());
    QTRY_VERIFY(!isConnecting());
    const QRect before = client->geometry();

    client.click("screenshotButton");
    client.click("screenshotButton"); // an impatient second click is not a second capture
    QTRY_VERIFY(shown<CaptureScreen>());
    const QPointer<CaptureScreen> overlay = shown<CaptureScreen>();
    QVERIFY(QTest::qWaitForWindowExposed(overlay));
    QVERIFY(client->width() <= 1 && client->height() <= 1);
    QVERIFY(!client->frameGeometry().intersects(kSelected));
    if (selects)
        drag(overlay, kSelected);
    if (key != 0)
        QTest::keyClick(overlay, Qt::Key(key));
    else
        overlay->close();

    QTRY_VERIFY(!overlay);
    QTRY_COMPARE(client->geometry(), QRect(before.topLeft(), QSize(600, 460)));
    QVERIFY(!shown<CaptureScreen>());
    QCOMPARE(picturesIn(client.window()).size(), pictures);
    for (const TextRun& run : picturesIn(client.window())) {
        const QUrl name(run.format.toImageFormat().name());
        const auto picture =
            client->page()->editor()->document()->resource(QTextDocument::ImageResource, name).value<QImage>();
        QCOMPARE(picture.width(), pictureWidth(*client->page()->editor()));
        QImage behindAlone(picture.size(), picture.format());
        behindAlone.fill(QColor("#1060c0"));
        QCOMPARE(picture, behindAlone);
    }
}

QTEST_MAIN(CaptureIntoPageTest)
#include "tst_capture_into_page.moc"
