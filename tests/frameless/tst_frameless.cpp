#include "app/frameless/hm_base_window.h"
#include "app/frameless/hm_title_bar.h"

#include <QMouseEvent>
#include <QtTest>

struct Window : HMBaseWindow
{
    Window()
    {
        setGeometry(300, 200, 200, 120);
        titleBar()->resize(200, 30);
    }

    /// Where the window is after the event.
    QPoint after(QEvent::Type type, const QPointF& screen)
    {
        QMouseEvent event(type, {5, 5}, screen, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(titleBar(), &event);
        return pos();
    }
};

class FramelessTest : public QObject
{
    Q_OBJECT

private slots:
    void movesCountBetweenPressAndRelease()
    {
        QCOMPARE(nearestScreenPixel({-2.5, -0.5}), QPoint(-3, -1));
        QCOMPARE(nearestScreenPixel({0.5, 0.49}), QPoint(1, 0));
        Window window;
        QCOMPARE(window.after(QEvent::MouseMove, {310, 310}), QPoint(300, 200));
        QCOMPARE(window.after(QEvent::MouseButtonPress, {300.5, 300.4}), QPoint(300, 200)); // 301, 300
        QCOMPARE(window.after(QEvent::MouseMove, {304.4, 301.5}), QPoint(303, 202));        // 304, 302
        QCOMPARE(window.after(QEvent::MouseMove, {311.2, 304.9}), QPoint(310, 205));        // 311, 305
        QCOMPARE(window.after(QEvent::MouseButtonRelease, {311.2, 304.9}), QPoint(310, 205));
        QCOMPARE(window.after(QEvent::MouseMove, {400, 400}), QPoint(310, 205));
    }

    /// Ten pixels of the picture to one of the window. The arc of a corner with radius 3 crosses the diagonal
    /// 3 * (1 - sqrt(0.5)) = 0.88 pixels from the edges.
    void roundedGround()
    {
        Window window;
        QCOMPARE(window.windowFlags(), Qt::WindowFlags(0x4800) | Qt::Window);
        QImage image(2000, 1200, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(10);
        image.fill(Qt::transparent);
        window.render(&image);
        for (const QImage& corner : {image, image.mirrored(true, true)}) {
            QCOMPARE(qAlpha(corner.pixel(7, 7)), 0);
            QCOMPARE(corner.pixel(10, 10), qRgb(238, 223, 204));
        }
        QCOMPARE(image.pixel(1000, 150), qRgb(238, 223, 204)); // the strip adds nothing
    }
};

QTEST_MAIN(FramelessTest)
#include "tst_frameless.moc"
