#include "app/frameless/hm_base_window.h"
#include "app/frameless/hm_title_bar.h"

#include <QMouseEvent>
#include <QProcess>
#include <QtTest>

namespace {

struct Window : HMBaseWindow
{
    Window()
    {
        setGeometry(300, 200, 200, 120);
        titleBar()->resize(200, 30);
    }
    void send(QEvent::Type type, const QPointF& screen)
    {
        QMouseEvent event(type, {5, 5}, screen, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(titleBar(), &event);
    }
};

} // namespace

class FramelessTest : public QObject
{
    Q_OBJECT

private slots:
    void movesCountBetweenPressAndRelease()
    {
        QCOMPARE(nearestScreenPixel({-2.5, -0.5}), QPoint(-3, -1));
        QCOMPARE(nearestScreenPixel({0.5, 0.49}), QPoint(1, 0));
        Window window;
        window.send(QEvent::MouseMove, {310, 310});
        QCOMPARE(window.pos(), QPoint(300, 200));
        window.send(QEvent::MouseButtonPress, {300.5, 300.4}); // 301, 300
        window.send(QEvent::MouseMove, {304.4, 301.5});        // 304, 302
        window.send(QEvent::MouseMove, {311.2, 304.9});        // 311, 305
        QCOMPARE(window.pos(), QPoint(310, 205));
        window.send(QEvent::MouseButtonRelease, {311.2, 304.9});
        window.send(QEvent::MouseMove, {400, 400});
        QCOMPARE(window.pos(), QPoint(310, 205));
    }

    void dragByThePointer()
    {
        Window window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCOMPARE(QProcess::execute("xdotool", {"mousemove", "350", "210", "mousedown", "1"}), 0);
        for (const QPoint& end : {QPoint(310, 205), QPoint(320, 210)}) {
            QCOMPARE(QProcess::execute("xdotool", {"mousemove_relative", "10", "5"}), 0);
            QTRY_COMPARE(window.pos(), end);
        }
        QCOMPARE(QProcess::execute("xdotool", {"mouseup", "1"}), 0);
    }

    void roundedGround()
    {
        Window window;
        QCOMPARE(int(window.windowFlags()), 0x4800 | Qt::Window);
        // Ten pixels of the picture to one of the window. The arc of a corner with radius 3 crosses the diagonal
        // 3 * (1 - sqrt(0.5)) = 0.88 pixels from the edges.
        QImage image(2000, 1200, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(10);
        image.fill(Qt::transparent);
        window.render(&image);
        const QRgb sand = qRgb(238, 223, 204);
        for (const auto& [right, bottom] : {std::pair(false, false), {true, false}, {false, true}, {true, true}}) {
            const QImage turned = image.mirrored(right, bottom);
            QCOMPARE(qAlpha(turned.pixel(7, 7)), 0);
            QCOMPARE(turned.pixel(10, 10), sand);
        }
        QCOMPARE(image.pixel(1000, 150), sand); // the strip adds nothing
        QCOMPARE(image.pixel(1000, 600), sand);
    }
};

QTEST_MAIN(FramelessTest)
#include "tst_frameless.moc"
