#include "device/packet.h"
#include "device/printer_win.h"
#include "simulator/simulated_printer.h"

#include <fuzzer/FuzzedDataProvider.h>

struct CutCable : PrinterWin
{
    SimulatedPrinter printer;
    int piece = 1; ///< bytes that arrive at once

    int write(const unsigned char* data, int length) override
    {
        for (int at = 0; at < length; at += piece)
            printer.receive(data + at, std::min(piece, length - at));
        return length;
    }
};

// Key, dots and feed arrive as they were sent, each frame once.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    FuzzedDataProvider input(bytes, size);
    const auto lines = input.ConsumeIntegral<quint16>();
    std::srand(input.ConsumeIntegral<unsigned>()); // the key is drawn by it
    CutCable cable;
    cable.piece = input.ConsumeIntegralInRange(1, 1100);
    const QByteArray raster = QByteArray::fromStdString(input.ConsumeRemainingBytesAsString());
    cable.sendSetCrcKey();
    Q_ASSERT(cable.sendRaster(reinterpret_cast<const unsigned char*>(raster.data()), raster.size()) == 0);
    cable.sendFeedLines(lines);
    const PrinterReport report = cable.printer.report();
    Q_ASSERT(report.key == currentCrcKey() && report.keyExchanges == 1 && report.crcErrors == 0 &&
             report.skippedBytes == 0);
    Q_ASSERT(report.frames == 2 + (raster.size() + 1007) / 1008 && report.feeds == QVector<int>{lines});
    Q_ASSERT(cable.printer.jobLines() == raster.left(raster.size() / 48 * 48));
    return 0;
}
