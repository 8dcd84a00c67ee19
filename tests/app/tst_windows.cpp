#include "shell_fixture.h"

#include "app/dialogs/about_quillbox_dialog.h"
#include "app/dialogs/qx_message_dialog.h"
#include "app/language/language_window.h"
#include "app/welcome_window.h"
#include "content/capture/capture_screen_window.h"
#include "content/page/edit_main_window.h"
#include "demo/paper_window.h"
#include "demo/sample_page.h"
#include "device/diagnostics/device_command_window.h"
#include "device/diagnostics/diagnostic_hub.h"
#include "device/diagnostics/diagnostic_item.h"
#include "device/diagnostics/empty_line_window.h"
#include "device/diagnostics/network_window.h"
#include "device/diagnostics/upgrade_window.h"
#include "update/upgrade_app_window.h"
#include "update/upgrade_dialog.h"

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QTranslator>

#include <functional>
#include <memory>

using Window = std::unique_ptr<QWidget>;
using MakeWindow = std::function<Window()>;
Q_DECLARE_METATYPE(MakeWindow)

/// Every window in both languages: each text fits, and a picture of the window goes to the build folder.
class WindowsTest : public QObject
{
    Q_OBJECT

    Window m_window;

private slots:
    void textsFit_data();
    void textsFit();
    void buttonsShowTheirState_data();
    void buttonsShowTheirState();
    void busyDialogIsItsCard();
};

namespace {

Window mainWindow()
{
    serviceAddress() = kNoService;
    auto window = std::make_unique<MainWindow>();
    window->show();
    composeSamplePage(*window->page());
    window->stopThreads();
    return window;
}

Window busyDialog()
{
    auto dialog = std::make_unique<ProgressCatRunningDialog>();
    dialog->setText(QCoreApplication::translate("MainWindow", "设备连接中,请稍后..."));
    return dialog;
}

Window messageDialog()
{
    auto dialog = std::make_unique<QXMessageDialog>();
    dialog->setMessage(-1, QStringLiteral("network error"));
    return dialog;
}

Window openQuestion()
{
    auto dialog = std::make_unique<QXMessageDialog>();
    dialog->setText(QCoreApplication::translate("UpgradeDialog", "下载完成，是否打开文件?"));
    return dialog;
}

Window updateOffer()
{
    GetSWVersionModel model;
    model.versionName = "V12.10.3";
    model.remark =
        QString::fromUtf8("修正了换纸后首行偏淡的问题\nShows a preview of the whole page before it prints\n")
            .repeated(4);
    auto window = std::make_unique<UpgradeAppWindow>();
    window->setModel(model);
    return window;
}

Window download()
{
    auto dialog = std::make_unique<UpgradeDialog>();
    dialog->onDownloadProcess(1000 << 20, qint64(1023) << 20);
    return dialog;
}

/// With its notice, which is there only while a command waits.
Window deviceCommands()
{
    auto window = std::make_unique<TestDeviceCommandWindow>();
    window->onAnalysisSuccess(0x0d, QCoreApplication::translate("PrinterReadThread", "羽毛盒复活了"));
    window->findChild<QLabel*>("notice")->show();
    return window;
}

template <class Type>
Window plain()
{
    return std::make_unique<Type>();
}

/// Widgets whose text is wider than they are, or that stick out of their window.
QStringList misfits(const QWidget& window)
{
    QStringList result;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const auto* label = qobject_cast<const QLabel*>(widget);
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const QString text = label ? label->text() : button ? button->text() : QString();
        if (text.isEmpty() || !widget->isVisible())
            continue;
        const bool wraps = label && label->wordWrap();
        const bool fits = wraps ? label->heightForWidth(label->width()) <= label->height()
                                : widget->sizeHint().width() <= widget->width();
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        const bool scrolls = qobject_cast<const QAbstractScrollArea*>(widget->parentWidget()->parentWidget()) ||
                             qobject_cast<const TestMainItem*>(widget->parentWidget());
        if (!fits || !(scrolls || window.rect().contains(place)))
            result += QStringLiteral("%1 \"%2\" needs %3 of %4")
                          .arg(widget->objectName(), text)
                          .arg(widget->sizeHint().width())
                          .arg(widget->width());
    }
    return result;
}

int largestDifference(const QImage& one, const QImage& other)
{
    int result = one.size() == other.size() ? 0 : 255;
    for (int y = 0; result < 255 && y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            result = std::max({result, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                               std::abs(qBlue(a) - qBlue(b))});
        }
    }
    return result;
}

} // namespace

void WindowsTest::textsFit_data()
{
    QTest::addColumn<MakeWindow>("make");
    QTest::addColumn<QString>("language");
    const QVector<QPair<const char*, MakeWindow>> windows = {
        {"main", mainWindow},
        {"busy", busyDialog},
        {"message", messageDialog},
        {"open_question", openQuestion},
        {"update_offer", updateOffer},
        {"download", download},
        {"about", plain<AboutQuillboxDialog>},
        {"language", plain<LanguageWindow>},
        {"welcome", plain<WelcomeWindow>},
        {"diagnostics", plain<TestMainWindow>},
        {"device_commands", deviceCommands},
        {"blank_lines", plain<TestSendEmptyLine>},
        {"network_test", plain<TestNetworkWindow>},
        {"upgrade_test", plain<TestUpgradeWindow>},
        {"capture_tools", plain<CaptureScreenWindow>},
        {"paper",
         [] {
             return std::make_unique<PaperWindow>(simulatedPrinter());
         }},
    };
    for (const QString language : {"zh_CN", "en_WW"}) {
        for (const auto& window : windows)
            QTest::addRow("%s_%s", window.first, qPrintable(language)) << window.second << language;
    }
}

void WindowsTest::textsFit()
{
    QFETCH(MakeWindow, make);
    QFETCH(QString, language);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/com/quillbox/language/quillbox_%1.qm").arg(language)));
    QVERIFY(QCoreApplication::installTranslator(&translator));

    const Window window = make();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QTRY_COMPARE(misfits(*window).join('\n'), QString());
    QDir().mkpath(SCREENSHOTS);
    const QString file =
        QStringLiteral(SCREENSHOTS "/%1@%2.png").arg(QTest::currentDataTag()).arg(qApp->devicePixelRatio());
    QVERIFY(window->grab().save(file));
}

/// Each state shows its own picture of the strip, the whole of it and nothing of its neighbours.
void WindowsTest::buttonsShowTheirState_data()
{
    QTest::addColumn<MakeWindow>("make");
    QTest::addColumn<QStringList>("strips");
    QTest::newRow("main") << MakeWindow(mainWindow) << QStringList{"print", "picture", "screenshot"};
    QTest::newRow("capture tools") << MakeWindow(plain<CaptureScreenWindow>)
                                   << QStringList{"capture_download", "capture_cancel", "capture_complete"};
}

void WindowsTest::buttonsShowTheirState()
{
    QFETCH(MakeWindow, make);
    QFETCH(QStringList, strips);
    const qreal ratio = qApp->devicePixelRatio();
    const Window previous = std::exchange(m_window, make()); // Qt may still believe the mouse to be over it
    QWidget* window = m_window.get();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    for (const QString& strip : strips) {
        auto* button = window->findChild<QAbstractButton*>(strip.section('_', -1) + "Button");
        QImage pictures(QStringLiteral(":/new/src/images/%1%2.png").arg(strip, ratio > 1 ? "@2x" : ""));
        pictures.setDevicePixelRatio(1);
        const QRect place(button->mapTo(window, QPoint()), button->size());
        const QSize cell = place.size() * ratio;
        QCOMPARE(pictures.height(), cell.height());
        for (int state = 0; state < 3; ++state) {
            QTest::mouseMove(window->windowHandle(), state == 1 ? place.center() : QPoint(1, 1));
            button->setDown(state == 2);
            const QImage shown = window->grab(place).toImage();
            QImage expected(cell, QImage::Format_RGB32);
            expected.fill(shown.pixel(0, 0)); // the window's own ground
            QPainter(&expected).drawImage(0, 0, pictures, state * cell.width(), 0, cell.width(), cell.height());
            QVERIFY2(largestDifference(shown, expected) <= 2, qPrintable(strip + QString::number(state)));
        }
        button->setDown(false);
    }
}

/// Beside the card and in its round corners there is no window, which would be black without a compositor.
void WindowsTest::busyDialogIsItsCard()
{
    const ProgressCatRunningDialog dialog;
    const QRegion mask = dialog.mask();
    QVERIFY(mask.contains(QPoint(75, 0)) && mask.contains(QPoint(149, 75)));
    QVERIFY(!mask.contains(QPoint(0, 0)) && !mask.contains(QPoint(149, 149)) && !mask.contains(QPoint(152, 75)));
}

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication app(argc, argv);
    WindowsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_windows.moc"
