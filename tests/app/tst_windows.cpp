#include "shell_fixture.h"

#include "app/dialogs/about_quillbox_dialog.h"
#include "app/dialogs/qx_message_dialog.h"
#include "app/language/language_window.h"
#include "app/start_up.h"
#include "app/system_font.h"
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
#include "device/port.h"
#include "device/printer_state.h"
#include "update/upgrade_app_window.h"
#include "update/upgrade_dialog.h"

#include <QAbstractButton>
#include <QDir>
#include <QMenuBar>
#include <QPainter>
#include <QScrollArea>
#include <QTranslator>

#include <functional>
#include <memory>

using MakeWindow = std::function<std::unique_ptr<QWidget>()>;
Q_DECLARE_METATYPE(MakeWindow)

namespace {

/// Makes a window of the class, and lets it show something.
template <class Type>
MakeWindow with(const std::function<void(Type&)>& prepare = [](Type&) {})
{
    return [prepare] {
        auto window = std::make_unique<Type>();
        prepare(*window);
        return window;
    };
}

const MakeWindow kMainWindow = with<MainWindow>([](auto& window) {
    window.show();
    composeSamplePage(*window.page());
    window.stopThreads();
});

/// As start-up and the language window do it, until the end of the test.
class Language
{
public:
    explicit Language(const QString& code)
    {
        m_translator.load(QStringLiteral(":/com/quillbox/language/quillbox_%1.qm").arg(code));
        QCoreApplication::installTranslator(&m_translator);
        QCoreApplication::processEvents();
    }

private:
    QTranslator m_translator;
};

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

/// Widgets of the window, itself included, that say something in Chinese.
QString chineseIn(QWidget& window)
{
    static const QRegularExpression chinese("[\\x{3000}-\\x{ffff}]");
    QStringList result;
    const QWidgetList widgets = window.findChildren<QWidget*>() << &window;
    for (const QWidget* widget : widgets) {
        for (const char* property : {"text", "toolTip", "accessibleName", "windowTitle"}) {
            if (widget->property(property).toString().contains(chinese))
                result += widget->objectName() + '.' + property;
        }
    }
    return result.join(' ');
}

/// Every pixel is the same but for what smoothing rounds.
bool looksLike(const QImage& one, const QImage& other)
{
    QImage difference = one.convertToFormat(QImage::Format_RGB32);
    difference.setDevicePixelRatio(1);
    QPainter painter(&difference);
    painter.setCompositionMode(QPainter::CompositionMode_Difference);
    painter.drawImage(0, 0, other);
    const auto* pixels = reinterpret_cast<const QRgb*>(difference.constBits());
    return one.size() == other.size() && std::all_of(pixels, pixels + one.width() * one.height(), [](QRgb pixel) {
               return std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)}) <= 2;
           });
}

} // namespace

class WindowsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyWindow_data()
    {
        QTest::addColumn<MakeWindow>("make");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("staysChinese");
        const auto tr = [](const char* context, const char* text) {
            return QCoreApplication::translate(context, text);
        };
        // What stays Chinese: what the caller said, the service's notes, a language's own name, the notice that is told
        // anew each time it shows, and the title of a window of five seconds.
        const std::tuple<const char*, const char*, MakeWindow> windows[] = {
            {"main", "", kMainWindow},
            {"busy", "labelText.text", with<ProgressCatRunningDialog>([=](auto& dialog) {
                 dialog.setText(tr("MainWindow", "设备连接中,请稍后..."));
             })},
            {"busy_untold", "", with<ProgressCatRunningDialog>()},
            {"message", "", with<QXMessageDialog>([](auto& dialog) { dialog.setMessage(-1, "network error"); })},
            {"open_question", "label.text", with<QXMessageDialog>([=](auto& dialog) {
                 dialog.setText(tr("UpgradeDialog", "下载完成，是否打开文件?"));
             })},
            {"update_offer", "labelNotes.text", with<UpgradeAppWindow>([](auto& window) {
                 const QString notes =
                     "修正了换纸后首行偏淡的问题\nShows a preview of the whole page before it prints\n";
                 GetSWVersionModel model;
                 model.versionName = "V12.10.3";
                 model.remark = notes.repeated(4);
                 window.setModel(model);
             })},
            {"download", "",
             with<UpgradeDialog>([](auto& dialog) { dialog.onDownloadProcess(1000 << 20, qint64{1023} << 20); })},
            {"about", "", with<AboutQuillboxDialog>()},
            {"language", "buttonChinese.text", with<LanguageWindow>()},
            {"welcome", "WelcomeWindow.windowTitle", with<WelcomeWindow>()},
            {"diagnostics", "", with<TestMainWindow>()},
            {"device_commands", "notice.text", with<TestDeviceCommandWindow>([=](auto& window) {
                 window.onAnalysisSuccess(0x0d, tr("PrinterReadThread", "羽毛盒复活了"));
                 window.template findChild<QLabel*>("notice")->show(); // as while a command waits
             })},
            {"blank_lines", "notice.text", with<TestSendEmptyLine>()},
            {"network_test", "", with<TestNetworkWindow>()},
            {"upgrade_test", "", with<TestUpgradeWindow>()},
            {"capture_tools", "", with<CaptureScreenWindow>()},
            {"paper", "", [] { return std::make_unique<PaperWindow>(simulatedPrinter()); }},
        };
        for (const QString language : {"zh_CN", "en_WW"}) {
            for (const auto& [name, staysChinese, make] : windows)
                QTest::addRow("%s_%s", name, qPrintable(language)) << make << language << QString(staysChinese);
        }
    }

    /// Each text fits, a picture of the window goes to the build folder, and a switch leaves nothing behind.
    void everyWindow()
    {
        QFETCH(MakeWindow, make);
        QFETCH(QString, language);
        const Language first(language);
        const auto window = make();
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        QTRY_COMPARE(misfits(*window).join('\n'), QString());
        QDir().mkpath(SCREENSHOTS);
        const QString file =
            QStringLiteral(SCREENSHOTS "/%1@%2.png").arg(QTest::currentDataTag()).arg(qApp->devicePixelRatio());
        QVERIFY(window->grab().save(file));

        if (language == "zh_CN") {
            const Language english("en_WW");
            QTEST(chineseIn(*window), "staysChinese");
        }
    }

    /// Actions are no widgets: the menu, which is placed nowhere, the font, which the page's menu shows, and what the
    /// "more" menu holds. Buttons say what their actions say.
    void actionsFollowTheLanguage()
    {
        const Language atFirst("zh_CN");
        const auto window = kMainWindow();
        const QAction* font = window->findChild<EditMainWindow*>()->fontAction();
        const QWidgetList all = QApplication::allWidgets();
        const auto bar =
            std::find_if(all.begin(), all.end(), [](auto* widget) { return widget->inherits("QMenuBar"); });
        const QMenu* menu = (*bar)->actions().first()->menu();
        const auto texts = [&] {
            const QList<QAction*> more = window->findChild<EditMainWindow*>()->moreMenu()->actions();
            const auto checked = std::find_if(more.begin(), more.end(), [](auto* each) { return each->isChecked(); });
            return QStringList{font->text(),
                               menu->title(),
                               menu->actions().first()->text(),
                               menu->actions().last()->text(),
                               more.last()->text(),
                               (*checked)->text(),
                               window->findChild<QPushButton*>("pictureButton")->toolTip()};
        };
        const QStringList chinese{
            "字体...", "关于", "关于羽毛盒", "检查更新", "关于羽毛盒", "中文", "插入图片 (Ctrl+Shift+I)"};
        QCOMPARE(texts(), chinese);
        const Language then("en_WW");
        QCOMPARE(texts(), (QStringList{"Font...", "About", "About Quillbox", "Check for updates", "About Quillbox",
                                       "English", "Insert picture (Ctrl+Shift+I)"}));
        const Language again("zh_CN");
        QCOMPARE(texts(), chinese);
    }

    void printerInWords()
    {
#ifdef Q_OS_WIN
        const QStringList system{"another program uses it", "choose the WinUSB driver", "no driver that"};
#else
        const QStringList system{"70-quillbox.rules", "the system cannot set it up", "error -50"};
#endif
        const Language english("en_WW");
        for (const auto& [failure, words] :
             std::initializer_list<std::pair<int, QString>>{{kPortTransferFailed, "the transfer failed"},
                                                            {kPortNoPermission, system[0]},
                                                            {kPortNoDevice, "none plugged in"},
                                                            {kPortNotConfigured, system[1]},
                                                            {kPortInUse, "another program uses it"},
                                                            {kPortTakesNothing, "out of paper or cover open"},
                                                            {kPortRefused, "it refuses data"},
                                                            {kPortNotSupported, "not a Quillbox"},
                                                            {kPortLibraryMissing, "portio.dll is missing"},
                                                            {kPortLibraryNotLoadable, "portio.dll cannot be loaded"},
                                                            {kPortLibraryForeign, "portio.dll is not a library"},
                                                            {kPortNoDriver, system[2]},
                                                            {17, "error 17"},
                                                            {0, "K1, ready"}})
            QVERIFY2(printerStateText(failure, false, "Quillbox_K1").contains(words), qPrintable(words));
    }

    /// Beside the card and in its round corners there is no window, which would be black without a compositor.
    void busyDialogIsItsCard()
    {
        const QRegion mask = ProgressCatRunningDialog().mask();
        QVERIFY(mask.contains(QPoint(75, 0)) && !mask.contains(QPoint(0, 0)) && !mask.contains(QPoint(152, 75)));
    }

    /// Each state shows its own picture of the strip, the whole of it and nothing of its neighbours.
    void buttonsShowTheirState()
    {
        const qreal ratio = qApp->devicePixelRatio();
        const auto mainWindow = kMainWindow();
        const auto tools = with<CaptureScreenWindow>()();
        tools->show();
        for (const QString strip :
             {"print", "picture", "screenshot", "capture_download", "capture_cancel", "capture_complete"}) {
            QWidget* window = strip.startsWith("capture") ? tools.get() : mainWindow.get();
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
                QVERIFY2(looksLike(shown, expected), qPrintable(strip + QString::number(state)));
            }
            button->setDown(false);
        }
    }
};

int main(int argc, char** argv)
{
    setUpHighDpi();
    QApplication app(argc, argv);
    useSystemFont();
    serviceAddress() = kNoService;
    WindowsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_windows.moc"
