#include "app/globals/settings.h"
#include "app/language/language_window.h"
#include "app/main_window.h"
#include "app/start_up.h"
#include "content/page/edit_main_window.h"
#include "demo/demo_service.h"
#include "demo/paper_window.h"
#include "demo/print_sample.h"
#include "demo/sample_page.h"
#include "demo/side_by_side.h"
#include "simulator/simulated_port.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QScreen>
#include <QSettings>
#include <QTextEdit>
#include <QTextStream>

namespace {

struct Options
{
    SimulatedPrinter::Model model = SimulatedPrinter::Model::K2;
    QString paperFile; ///< empty: open the windows
    bool sample = false;
};

/// Whether somebody could see a window.
bool hasDisplay()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (!platform.isEmpty())
        return platform != "offscreen" && !platform.startsWith("minimal");
#ifdef Q_OS_UNIX
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

/// Without a display the page is composed and printed out of sight.
void useNoDisplay()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

bool parse(const QCoreApplication& app, bool display, Options* options)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("The Quillbox client over a simulated printer, with a window that shows the paper. Without a "
                       "display, or with --paper, it prints a sample page and writes the paper as a PNG instead."));
    parser.addHelpOption();
    const QCommandLineOption modelOption(QStringLiteral("model"), QStringLiteral("K1 (384 dots) or K2 (576 dots)."),
                                         QStringLiteral("model"), QStringLiteral("K2"));
    const QCommandLineOption paperOption(QStringLiteral("paper"), QStringLiteral("File that receives the paper."),
                                         QStringLiteral("file"));
    const QCommandLineOption sampleOption(QStringLiteral("sample"),
                                          QStringLiteral("Opens with the sample page instead of an empty one."));
    parser.addOptions({modelOption, paperOption, sampleOption});
    parser.process(app);

    const QString model = parser.value(modelOption);
    if (model != QLatin1String("K1") && model != QLatin1String("K2")) {
        QTextStream(stderr) << "quillbox-demo: there is no model " << model << "; K1 and K2 are known" << Qt::endl;
        return false;
    }
    options->model = model == QLatin1String("K1") ? SimulatedPrinter::Model::K1 : SimulatedPrinter::Model::K2;
    options->sample = parser.isSet(sampleOption);
    options->paperFile = parser.value(paperOption);
    if (options->paperFile.isEmpty() && !display)
        options->paperFile = QStringLiteral("quillbox-paper.png");
    return true;
}

void place(QWidget& client, PaperWindow& paper)
{
    const QMargins usualFrame(2, 32, 2, 6); // is not known before the windows are shown
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    const SideBySide places = placeSideBySide(room, client.size(), paper.size(), paper.minimumSizeHint(), usualFrame);
    client.move(places.client);
    paper.move(places.paper);
    paper.makeRoom(places.paperSize);
}

int runWindows(const Options& options, bool* threadsEnded)
{
    QSettings settings(kOrganization, kApplication);
    startUp(settings);
    simulatedPrinter().reset(options.model);

    const DemoService service; // before the main window, which asks it for a newer client
    PaperWindow paper(simulatedPrinter());
    QObject::connect(&paper, &PaperWindow::languageAsked, &paper, [] {
        auto* languages = new LanguageWindow; // shows the model of the moment it is made
        languages->setAttribute(Qt::WA_QuitOnClose, false);
        languages->setAttribute(Qt::WA_DeleteOnClose);
        languages->show();
    });
    MainWindow window;
    QObject::connect(&paper, &PaperWindow::diagnosticsAsked, &window, &MainWindow::slotsSetLanguage);
    if (options.sample) {
        composeSamplePage(*window.page());
        window.page()->editor()->moveCursor(QTextCursor::Start);
    } else {
        window.keepDrafts(draftsFolder() + QStringLiteral("-demo")); // what one tries out is not the person's page
    }
    place(window, paper);
    paper.show();
    window.show(); // last, so that it is the one to write in
    const int result = QApplication::exec();
    *threadsEnded = window.stopThreads();
    return result;
}

int run(int argc, char** argv, bool* threadsEnded)
{
    const bool display = hasDisplay();
    if (!display)
        useNoDisplay();
    setUpHighDpi();
    const QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quillbox-demo"));
    Options options;
    if (!parse(app, display, &options))
        return 2;
    if (options.paperFile.isEmpty())
        return runWindows(options, threadsEnded);
    return printSample(options.model, options.paperFile);
}

} // namespace

int main(int argc, char** argv)
{
    bool threadsEnded = true;
    const int result = run(argc, argv, &threadsEnded);
    return leaveMain(result, threadsEnded);
}
