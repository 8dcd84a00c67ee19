#include "content/capture/capture_screen.h"

#include <QImageReader>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QtTest>

#include <memory>

struct Overlay : CaptureScreen
{
    QString fileName;

    QString askForFileName(const QString& proposal) override
    {
        return proposal.contains(QRegularExpression("/quillbox_[0-9]{10,}\\.png$")) ? fileName : "wrong/proposal";
    }
};

class CaptureScreenTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<Overlay> m_overlay;

    static QPixmap desktop()
    {
        QPixmap picture(400, 300);
        picture.fill(QColor(0, 0, 240));
        QPainter(&picture).fillRect(100, 100, 120, 40, Qt::green);
        return picture;
    }

    static bool everyDotIs(const QPoint& at, const QColor& colour)
    {
        const QImage dots = shown({at, QSize(1, 1)}).toImage();
        QImage expected = dots;
        expected.fill(colour);
        return dots == expected;
    }

    static QPixmap shown(const QRect& place)
    {
        return QGuiApplication::primaryScreen()->grabWindow(0, place.x(), place.y(), place.width(), place.height());
    }

    static bool hasWhite(const QPixmap& picture)
    {
        const QImage dots = picture.toImage().convertToFormat(QImage::Format_RGB32);
        const auto* pixels = reinterpret_cast<const QRgb*>(dots.constBits());
        return std::count(pixels, pixels + dots.width() * dots.height(), qRgb(255, 255, 255)) > 0;
    }

    /// A step is a drag between two points, the name of a button, "AltF4", or a key.
    void perform(const QString& step)
    {
        const QMap<QChar, QPoint> points{{'A', {80, 60}}, {'B', {240, 160}}, {'C', {390, 250}}};
        QWindow* window = m_overlay->windowHandle();
        if (step.size() == 2) {
            QTest::mousePress(window, Qt::LeftButton, {}, points[step[0]]);
            QTest::mouseMove(window, points[step[1]]);
            QTest::mouseRelease(window, Qt::LeftButton, {}, points[step[1]]);
        } else if (auto* button = m_overlay->findChild<QPushButton*>(step)) {
            QTest::mouseClick(window, Qt::LeftButton, {}, button->mapTo(m_overlay.get(), QPoint(16, 16)));
        } else if (step == "AltF4") {
            window->close(); // arrives as what the window manager sends
        } else {
            QTest::keySequence(window, QKeySequence(step));
        }
    }

private slots:
    void init()
    {
        QLabel window(nullptr, Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint);
        window.move(0, 0);
        window.setPixmap(desktop());
        window.show();
        QTRY_VERIFY(everyDotIs({0, 0}, QColor(0, 0, 240)));
        m_overlay = std::make_unique<Overlay>();
        QTRY_VERIFY(m_overlay->hasFocus() && m_overlay->mapToGlobal(QPoint()).isNull());
    }

    void waysOut_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<int>("sends");
        QTest::addColumn<QString>("file");
        QTest::newRow("Enter of the keypad, dragged up and left") << "BA Enter" << 1 << "";
        QTest::newRow("drag after a click, second drag refused") << "BB AB BC completeButton" << 1 << "";
        QTest::newRow("cancel") << "AB cancelButton" << 0 << "";
        QTest::newRow("Esc") << "AB Esc" << 0 << "";
        QTest::newRow("closed by the window manager") << "AB AltF4" << 0 << "";
        QTest::newRow("saved") << "AB downloadButton" << 0 << "a.png";
        QTest::newRow("save dialog cancelled, then Return") << "AB downloadButton Return" << 1 << "";
        QTest::newRow("cannot be written") << "AB downloadButton Return" << 1 << "missing/a.png";
    }

    void waysOut()
    {
        QFETCH(QString, steps);
        QFETCH(QString, file);
        m_overlay->fileName = file.isEmpty() ? QString() : m_folder.filePath(file);
        QSignalSpy pictures(m_overlay.get(), &CaptureScreen::signalCompleteCature);
        QSignalSpy closes(m_overlay.get(), &CaptureScreen::signalClose);
        int messages = 0;
        QTimer timer;
        timer.callOnTimeout([&] { messages += qApp->activeModalWidget() && qApp->activeModalWidget()->close(); });
        timer.start(20);
        for (const QString& step : steps.split(QLatin1Char(' '))) {
            QVERIFY(m_overlay->isVisible());
            perform(step);
        }
        QTRY_COMPARE(closes.count(), 1);
        QCOMPARE(messages, file.startsWith("missing") ? 1 : 0);
        QTEST(pictures.count(), "sends");
        for (const auto& picture : pictures)
            QCOMPARE(picture[0].value<QPixmap>(), desktop().copy(80, 60, 160, 100));
        if (file == "a.png")
            QCOMPARE(QImageReader::imageFormat(m_overlay->fileName), QByteArray("jpeg"));
        m_overlay->close();
        QCOMPARE(closes.count(), 1);
    }

    /// It says what to do until the drag begins, and is in no picture: white, which nothing else is here.
    void hintGoesWithTheDrag()
    {
        const QRect place(m_overlay->width() / 2 - 30, m_overlay->height() / 12, 60, 40);
        const auto isHinted = [&] { return hasWhite(shown(place)); };
        QTRY_VERIFY(isHinted());
        QSignalSpy pictures(m_overlay.get(), &CaptureScreen::signalCompleteCature);
        QTest::mousePress(m_overlay->windowHandle(), Qt::LeftButton, {}, place.topLeft());
        QTest::mouseMove(m_overlay->windowHandle(), place.bottomRight());
        QTRY_VERIFY(!isHinted());
        QTest::mouseRelease(m_overlay->windowHandle(), Qt::LeftButton, {}, place.bottomRight());
        perform("Return");
        QVERIFY(pictures.size() == 1 && !hasWhite(pictures[0][0].value<QPixmap>()));
    }

    /// The size of what is selected stays on the screen.
    void sizeAtTheEdge()
    {
        const int right = m_overlay->width();
        QTest::mousePress(m_overlay->windowHandle(), Qt::LeftButton, {}, {right - 9, 200});
        QTest::mouseMove(m_overlay->windowHandle(), {right - 1, 240});
        QTRY_VERIFY(hasWhite(shown({right - 50, 170, 30, 30})));
    }

    // 240 under the veil is 240 * (255 - 100) / 255 = 146. Closing the last window does not end the program.
    void looksAndLeaves()
    {
        perform("AB");
        QTRY_VERIFY(everyDotIs({100, 100}, Qt::green) && everyDotIs({219, 139}, Qt::green));
        QVERIFY(everyDotIs({80, 120}, Qt::blue) && everyDotIs({239, 120}, Qt::blue) &&
                everyDotIs({50, 200}, QColor(0, 0, 146)));
        QCOMPARE(m_overlay->findChild<QWidget*>("CaptureScreenWindow")->geometry().topRight(), QPoint(239, 170));
        QTimer::singleShot(0, m_overlay.get(), &QWidget::close);
        QTimer::singleShot(200, qApp, [] { QCoreApplication::exit(1); });
        QCOMPARE(qApp->exec(), 1);
    }
};

QTEST_MAIN(CaptureScreenTest)
#include "tst_capture_screen.moc"
