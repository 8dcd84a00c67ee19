#include "demo/print_sample.h"

#include "app/globals/model.h"
#include "app/globals/sheet_model.h"
#include "content/page/edit_main_window.h"
#include "demo/sample_page.h"
#include "device/packet_analysis.h"
#include "device/printer_thread.h"
#include "device/printer_win.h"
#include "simulator/simulated_port.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>

namespace {

constexpr int kPageWidth = 600; ///< pixels, as in the client's window
constexpr int kPageHeight = 400;

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

int fail(const QString& message)
{
    QTextStream(stderr) << "quillbox-demo: " << message << Qt::endl;
    return 1;
}

/// Brings the connection up and takes the model from the printer's reply to the probe, for the page has to be as wide
/// as the head.
bool connectPrinter()
{
    if (!printerConnection()->connectUsb())
        return false;
    int length = 0;
    int result = 0;
    const unsigned char* bytes = printerConnection()->read(&length, &result);
    if (!bytes || result != 0)
        return false;
    const QVector<PacketTrace> replies = analysePackets(bytes, length);
    return std::any_of(replies.begin(), replies.end(), [](const PacketTrace& trace) {
        if (!trace.isWhole() || trace.code != ReplyModel)
            return false;
        takeReportedModel(trace.report->text);
        sheetModel().choose(trace.report->text);
        return true;
    });
}

/// Prints the page and waits for the job's end.
/// @return the message of a failed job, else empty
QString printPage(EditMainWindow& page)
{
    PrinterThread thread;
    QString failure;
    QEventLoop loop;
    QObject::connect(&page, &EditMainWindow::signDoPrint, &thread, [&](const QImage& image, int printType) {
        thread.setImage(image, printType);
        thread.start();
    });
    QObject::connect(&thread, &PrinterThread::resultReady, &loop, [&](int resultCode, const QString& message) {
        if (resultCode != 0)
            failure = message;
    });
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    page.printPage();
    loop.exec();
    return failure;
}

} // namespace

int printSample(SimulatedPrinter::Model model, const QString& paperFile)
{
    SimulatedPrinter& printer = simulatedPrinter();
    printer.reset(model);
    if (!connectPrinter())
        return fail(QStringLiteral("the simulated printer does not answer"));

    EditMainWindow page;
    page.resize(kPageWidth, kPageHeight);
    page.initFont();
    page.show();
    composeSamplePage(page);
    out() << "Printing the sample page on " << modelName(g_modelIndex) << ", " << printHeadWidth() << " dots wide"
          << Qt::endl;
    const QString failure = printPage(page);
    if (!failure.isEmpty())
        return fail(failure);
    const PrinterReport report = printer.report();
    if (report.crcErrors != 0)
        return fail(QStringLiteral("%1 frames arrived damaged").arg(report.crcErrors));

    const QImage paper = printer.paper();
    if (!paper.save(paperFile, "PNG"))
        return fail(QStringLiteral("cannot write %1").arg(QDir::toNativeSeparators(paperFile)));
    out() << "Frames: " << report.frames << ", all with the right CRC" << Qt::endl
          << "Paper: " << paper.width() << " x " << paper.height() << " dots, "
          << QDir::toNativeSeparators(QFileInfo(paperFile).absoluteFilePath()) << Qt::endl;
    return 0;
}
