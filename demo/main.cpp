#include "demo/print_sample.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>

namespace {

/// The page is composed and printed without a window, so a machine without a display can run it too.
void useNoDisplay()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

} // namespace

int main(int argc, char** argv)
{
    useNoDisplay();
    const QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quillbox-demo"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Prints a sample page on a simulated Quillbox and writes the paper as a PNG."));
    parser.addHelpOption();
    const QCommandLineOption modelOption(QStringLiteral("model"), QStringLiteral("K1 (384 dots) or K2 (576 dots)."),
                                         QStringLiteral("model"), QStringLiteral("K2"));
    const QCommandLineOption paperOption(QStringLiteral("paper"), QStringLiteral("File that receives the paper."),
                                         QStringLiteral("file"), QStringLiteral("quillbox-paper.png"));
    parser.addOptions({modelOption, paperOption});
    parser.process(app);

    const QString model = parser.value(modelOption);
    if (model != QLatin1String("K1") && model != QLatin1String("K2")) {
        QTextStream(stderr) << "quillbox-demo: there is no model " << model << "; K1 and K2 are known" << Qt::endl;
        return 2;
    }
    return printSample(model == QLatin1String("K1") ? SimulatedPrinter::Model::K1 : SimulatedPrinter::Model::K2,
                       parser.value(paperOption));
}
