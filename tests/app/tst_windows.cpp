#include "shell_fixture.h"

#include "app/dialogs/about_quillbox_dialog.h"
#include "app/dialogs/qx_message_dialog.h"
#include "app/language/language_window.h"
#include "app/print_progress.h"
#include "app/start_up.h"
#include "app/system_font.h"
#include "app/welcome_window.h"
#include "app/widgets/glyph_button.h"
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
#include <QProgressBar>
#include <QScrollArea>
#include <QTextEdit>
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

const QRegularExpression kChinese("[\\x{3000}-\\x{ffff}]");

/// Widgets of the window, itself included, that say something in Chinese.
QString chineseIn(QWidget& window)
{
    QStringList result;
    const QWidgetList widgets = window.findChildren<QWidget*>() << &window;
    for (const QWidget* widget : widgets) {
        for (const char* property : {"text", "toolTip", "accessibleName", "windowTitle"}) {
            if (widget->property(property).toString().contains(kChinese))
                result += widget->objectName() + '.' + property;
        }
    }
    return result.join(' ');
}

/// Buttons and boxes that say nothing to who cannot see them.
QString nameless(const QWidget& window)
{
    QStringList result;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isOurs = widget->isVisible() && !widget->objectName().startsWith("qt_");
        if (isOurs && (widget->inherits("QAbstractButton") || widget->inherits("QComboBox")) &&
            (widget->property("text").toString() + widget->accessibleName()).isEmpty())
            result += widget->metaObject()->className() + widget->objectName();
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
        QCOMPARE(nameless(*window), QString());
        QDir().mkpath(SCREENSHOTS);
        const QString file =
            QStringLiteral(SCREENSHOTS "/%1@%2.png").arg(QTest::currentDataTag()).arg(qApp->devicePixelRatio());
        QVERIFY(window->grab().save(file));

        if (language == "zh_CN") {
            const Language english("en_WW");
            QTEST(chineseIn(*window), "staysChinese");
        }
    }

    /// Actions are no widgets: the menu, which is placed nowhere, the page's menu, and what the "more" menu holds. Buttons
    /// say what their actions say.
    void actionsFollowTheLanguage()
    {
        const Language atFirst("zh_CN");
        const auto window = kMainWindow();
        auto* page = window->findChild<EditMainWindow*>();
        const QWidgetList all = QApplication::allWidgets();
        const auto bar =
            std::find_if(all.begin(), all.end(), [](auto* widget) { return widget->inherits("QMenuBar"); });
        const QMenu* menu = (*bar)->actions().first()->menu();
        const auto texts = [&] {
            const std::unique_ptr<QMenu> context(page->createContextMenu());
            QStringList result{menu->title(), window->findChild<QPushButton*>("pictureButton")->toolTip()};
            for (const QMenu* each : std::initializer_list<const QMenu*>{menu, page->moreMenu(), context.get()}) {
                for (const QAction* action : each->actions())
                    result += action->text() + (action->isChecked() ? "!" : "");
            }
            result.removeAll(page->moreMenu()->actions().first()->text()); // the printer's state, of the moment
            return result;
        };
        const QStringList chinese = texts();
        QVERIFY(chinese.contains("中文!") && chinese.contains("插入图片 (Ctrl+Shift+I)"));
        const Language then("en_WW");
        QCOMPARE(texts().filter(kChinese), QStringList("中文"));
        QVERIFY(texts().contains("English!") && page->moreMenu()->actions().value(1)->isSeparator());
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

    /// A row for each button without words, a column for each state, beside the bar of a job. Whoever changes a look on
    /// purpose looks at the sheet in the build folder and puts it in the place of the one here.
    void looksAreTheApprovedOnes()
    {
#ifdef Q_OS_WIN
        QSKIP("another style paints there");
#endif
        MainWindow window;
        const auto tools = with<CaptureScreenWindow>()();
        tools->show();
        window.show();
        window.stopThreads();
        QImage sheet(QSize(16 * 60, 740) * qApp->devicePixelRatio(), QImage::Format_RGB32);
        sheet.setDevicePixelRatio(qApp->devicePixelRatio());
        sheet.fill(Qt::white);
        QPainter painter(&sheet);
        auto* progress = window.findChild<PrintProgress*>();
        progress->setRunning(true);
        QCOMPARE(progress->findChild<QProgressBar*>()->value(), 0);
        progress->setSent(1, 3);
        QTRY_VERIFY(progress->isVisible());
        window.setFixedSize(640, 460);
        window.setFocus(); // no caret blinks, and no button passes the focus on
        painter.drawPixmap(0, 0, window.grab(progress->geometry()));
        int y = 30;
        for (auto* button : window.findChildren<QAbstractButton*>() + tools->findChildren<QAbstractButton*>()) {
            if (!button->isVisible() || !(button->text().isEmpty() || qobject_cast<GlyphButton*>(button)))
                continue;
            QVERIFY(!qobject_cast<GlyphButton*>(button) || button->focusPolicy() == Qt::NoFocus);
            const QSignalBlocker unheard(button);
            for (int state = 0; state < 16; ++state) {
                QWidget* under = button->window();
                const QRect place(button->mapTo(under, QPoint()), button->size());
                button->setEnabled(state < 8);
                QTest::mouseMove(under->windowHandle(), state & 4 ? place.center() : QPoint(1, 1));
                button->setDown(state & 2);
                button->setChecked(state & 1);
                painter.drawPixmap(60 * state, y, under->grab(place));
            }
            y += button->height() + 4;
        }
        const QString name = QStringLiteral("/looks@%1.png").arg(qApp->devicePixelRatio());
        QVERIFY(sheet.save(SCREENSHOTS + name) && y > 500);
        QVERIFY(looksLike(sheet, QImage(APPROVED + name)));
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
