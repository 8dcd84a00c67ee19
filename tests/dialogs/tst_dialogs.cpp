#include "app/dialogs/about_quillbox_dialog.h"
#include "app/dialogs/progress_cat_running_dialog.h"
#include "app/dialogs/qx_message_dialog.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMovie>
#include <QPushButton>
#include <QtTest>

namespace {

QLabel* labelOf(const QDialog& dialog, const char* name)
{
    return dialog.findChild<QLabel*>(name);
}

} // namespace

class DialogsTest : public QObject
{
    Q_OBJECT

    QStringList m_opened;

public slots:
    void open(const QUrl& url) { m_opened << url.toString(); }

private slots:
    void message()
    {
        QXMessageDialog dialog;
        const QLabel* label = labelOf(dialog, "label");
        dialog.setMessage(-1, "x");
        QCOMPARE(label->text(), QString("code:-1 \n msg:x"));
        QCOMPARE(label->size(), label->sizeHint());
        dialog.setMessage(5, "<b>%1</b> " + QString(100000, 'x'));
        QVERIFY(label->text().startsWith("code:5 \n msg:<b>%1</b> x") && label->text().size() < 5000);
        QCOMPARE(label->textFormat(), Qt::PlainText);

        const auto* buttons = dialog.findChild<QDialogButtonBox*>();
        for (const auto button : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel}) {
            dialog.show();
            QTest::mouseClick(buttons->button(button), Qt::LeftButton);
            QCOMPARE(dialog.result() == QDialog::Accepted, button == QDialogButtonBox::Ok);
        }
    }

    void busyIsClosedByTheProgramAlone()
    {
        ProgressCatRunningDialog dialog;
        QWidget other;
        other.show();
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        QVERIFY(dialog.isVisible());
        QCloseEvent byWindowManager; // which the window hands to the dialog as a spontaneous one
        QCoreApplication::sendEvent(dialog.windowHandle(), &byWindowManager);
        QVERIFY(dialog.isVisible());
        QVERIFY(dialog.close() && !dialog.isVisible());

        // It does not keep the program running, nor from quitting.
        dialog.show();
        QTimer::singleShot(0, &other, &QWidget::close);
        QTimer::singleShot(5000, &other, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0);
    }

    void busyTextAndFrame()
    {
        ProgressCatRunningDialog dialog;
        const QLabel* label = labelOf(dialog, "labelText");
        QCOMPARE(dialog.windowFlags(), Qt::WindowFlags(0x44800) | Qt::Window);
        // Beside the card the desktop shows, whatever the style sheet says about a background.
        QCOMPARE(qAlpha(dialog.grab().toImage().pixel(152, 75)), 0);
        dialog.setText(QString(60, 'w'));
        QVERIFY(label->width() > 121);
        QCOMPARE(dialog.size(), QSize(155, 153));
    }

    void onlyOneFrameOfTheCatShows()
    {
        ProgressCatRunningDialog dialog;
        QMovie* movie = labelOf(dialog, "label")->movie();
        QTRY_COMPARE(movie->currentFrameNumber(), 1); // runs before the dialog is shown
        movie->stop();
        const QImage image = dialog.grab({40, 40, 71, 51}).toImage();
        QCOMPARE(image.pixel(5, 25), qRgba(0, 0, 0, 0)); // where frame 0 is black
        QCOMPARE(image.pixel(65, 25), qRgba(0, 0, 0, 255));
    }

    /// Each connecting phase leaves a hidden dialog behind, and none of them may go on decoding.
    void hiddenCatStandsStill()
    {
        ProgressCatRunningDialog dialog;
        QMovie* movie = labelOf(dialog, "label")->movie();
        QSignalSpy frames(movie, &QMovie::frameChanged);
        for (int round = 0; round < 2; ++round) {
            dialog.show();
            QVERIFY(frames.wait(1000) && frames.wait(1000));
            dialog.close();
            (void)frames.wait(300); // the one that was due
            QVERIFY(!frames.wait(300) && movie->state() == QMovie::Running && movie->speed() == 0);
        }
    }

    void aboutByMouseAndByKeyboard()
    {
        AboutQuillboxDialog dialog;
        QVERIFY(dialog.windowFlags() & Qt::WindowStaysOnTopHint && !(dialog.windowFlags() & Qt::FramelessWindowHint));
        QCOMPARE(labelOf(dialog, "labelVersion")->text(), QString("版本:V1.0.0"));
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QDesktopServices::setUrlHandler("https", this, "open");
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return})
            QTest::keyClick(dialog.windowHandle(), key);
        QCOMPARE(m_opened, QStringList("https://www.quillbox.example/"));
        QTest::mouseMove(labelOf(dialog, "labelLink"));
        QTest::mouseClick(labelOf(dialog, "labelLink"), Qt::LeftButton);
        QCOMPARE(m_opened.size(), 2);
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(DialogsTest)
#include "tst_dialogs.moc"
