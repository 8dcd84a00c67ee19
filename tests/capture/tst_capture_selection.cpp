#include "content/capture/capture_screen.h"
#include "content/capture/capture_selection.h"

#include <QtTest>

class CaptureSelectionTest : public QObject
{
    Q_OBJECT

private slots:
    // On a second monitor of 100 x 80, to the right of one that is 200 wide, with a tool bar of 40 x 12.
    void dragged_data()
    {
        QTest::addColumn<QLine>("drag");
        QTest::addColumn<QRect>("selection");
        QTest::addColumn<QPoint>("toolBar");
        QTest::newRow("down left; below") << QLine(270, 10, 210, 58) << QRect(210, 10, 60, 48) << QPoint(230, 68);
        QTest::newRow("up right; above") << QLine(210, 59, 270, 22) << QRect(210, 22, 60, 37) << QPoint(230, 0);
        QTest::newRow("smallest; left edge") << QLine(210, 20, 208, 22) << QRect(208, 20, 2, 2) << QPoint(200, 32);
        QTest::newRow("whole and beyond") << QLine(299, 79, 120, -9) << QRect(200, 0, 100, 80) << QPoint(260, 58);
        QTest::newRow("click, shaking hand") << QLine(210, 20, 208, 21) << QRect() << QPoint();
        QTest::newRow("straight line") << QLine(210, 20, 240, 20) << QRect() << QPoint();
    }

    void dragged()
    {
        QFETCH(QLine, drag);
        const QRect monitor(200, 0, 100, 80);
        const QRect area = draggedRectangle(drag.p1(), drag.p2(), monitor);
        QTEST(area, "selection");
        QTEST(area.isEmpty() ? QPoint() : toolBarPosition(area, QSize(40, 12), monitor), "toolBar");
    }

    // 1366 x 768 dots at 1.25 are 1093 x 614 logical pixels; the height that follows from the width would be 615.
    void scaled() { QCOMPARE(scaledToScreen(QPixmap(1366, 768), QSize(1093, 614)).size(), QSize(1093, 614)); }

    void nothingToCapture()
    {
        QTest::ignoreMessage(QtWarningMsg, "The screen cannot be captured on the platform \"offscreen\"");
        CaptureScreen overlay;
        QSignalSpy closes(&overlay, &CaptureScreen::signalClose);
        overlay.show();
        QVERIFY(!overlay.isVisible());
        QTRY_COMPARE(closes.count(), 1);
    }
};

QTEST_MAIN(CaptureSelectionTest)
#include "tst_capture_selection.moc"
