// A whole job without the wire, from PrinterThread's start to its end: dots, packing, every frame built and sealed. Its
// peer is what Qt and zlib need for the same: QImage::convertToFormat(Format_Mono) and the CRC of those bytes.

#include "app/globals/model.h"
#include "benchmarks/contest.h"
#include "benchmarks/pages.h"
#include "device/printer_thread.h"
#include "device/printer_win.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdlib>

namespace {

void bringUp()
{
    printerConnection()->openPort();
    if (!printerConnection()->connectUsb())
        std::abort();
    g_modelIndex = 1; // as the device would have told
}

void printPage(PrinterThread& job, const QImage& page, int printType)
{
    job.setImage(page, printType);
    job.start();
    job.wait();
}

void qtAndZlib(const QImage& page, Qt::ImageConversionFlags flags)
{
    const QImage mono = page.convertToFormat(QImage::Format_Mono, flags);
    benchmark::DoNotOptimize(crc32(0UL, mono.constBits(), static_cast<uInt>(mono.sizeInBytes())));
}

void add(PrinterThread& job, const char* name, const QImage& page, int printType, Qt::ImageConversionFlags flags)
{
    const std::string operation = std::string(name) + ", " + std::to_string(page.height()) + " rows";
    addContest({operation, "Qt and zlib", static_cast<double>(page.width()) * page.height(),
                [&job, page, printType] { printPage(job, page, printType); },
                [page, flags] { qtAndZlib(page, flags); }});
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    bringUp();
    PrinterThread job;
    int results = 0;
    QObject::connect(
        &job, &PrinterThread::resultReady, &job, [&results](int code) { results += code; }, Qt::DirectConnection);
    for (const int rows : {4096, 32768}) {
        add(job, "job of a photograph", photograph(576, rows), PrinterThread::PrintPhoto, Qt::DiffuseDither);
        add(job, "job of text", pageOfText(576, rows), PrinterThread::PrintText, Qt::ThresholdDither);
    }
    const int end = runContests(argc, argv);
    return results == 0 ? end : 1; // a job that failed has measured nothing
}
