#include "app/globals/model.h"
#include "device/packet.h"
#include "device/port.h"
#include "device/printer_win.h"
#include "device/raster.h"
#include "imaging/binarize.h"
#include "imaging/halftone.h"

#include <QImage>
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <random>

// A whole job without the wire: the job's copy of the picture, dots, packing, and every frame built and sealed. Its
// peer is what Qt and zlib need for the same: QImage::convertToFormat(Format_Mono) and the CRC of those bytes.

extern "C" int io_port_creator(port** out, const char*)
{
    // Takes every frame and lets it go.
    static port sink = [] {
        port made{};
        made.write = [](port*, const unsigned char* buffer, int, int length, int* written) {
            benchmark::DoNotOptimize(buffer[length - 2]);
            *written = length;
            return 0;
        };
        return made;
    }();
    *out = &sink;
    return 0;
}

namespace {

constexpr int kWidth = 576;
constexpr int kHeight = 4096;
constexpr int kOtsu = 3;

QImage photograph()
{
    std::mt19937 random(1);
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    for (int y = 0; y < kHeight; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < kWidth; ++x) {
            const int grey = static_cast<int>((static_cast<unsigned>(x + y) / 8 + random() % 32) % 256);
            line[x] = qRgb(grey, 255 - grey, grey / 2);
        }
    }
    return image;
}

/// Black strokes on white, as a page of text is.
QImage textPage()
{
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            if (y % 32 < 20 && x % 14 < 9 && (x % 14 < 2 || y % 32 < 2 || (x + y) % 23 == 0))
                image.setPixel(x, y, qRgb(x % 60, x % 60, x % 60));
        }
    }
    return image;
}

void reportPerPixel(benchmark::State& state)
{
    state.counters["time/pixel"] = benchmark::Counter(
        kWidth * kHeight, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void wholeJob(benchmark::State& state, const QImage& picture, bool text)
{
    g_modelIndex = 1;
    PrinterWin printer;
    printer.openPort();
    for (auto _ : state) {
        QImage own = picture.copy();
        ImageBuffer buffer{own.bits(), own.width(), own.height(), 0, FormatBgrx32};
        if (text)
            binarizeImage(&buffer, kOtsu);
        else
            halftoneImage(&buffer, 0, 255, 0, 2);
        const Raster raster = packRaster(buffer.data, buffer.width, buffer.height);
        if (printer.sendRaster(raster.bytes.get(), raster.size) != 0)
            state.SkipWithError("the job failed");
    }
    reportPerPixel(state);
}

void qtAndZlib(benchmark::State& state, const QImage& picture, Qt::ImageConversionFlags flags)
{
    for (auto _ : state) {
        const QImage mono = picture.convertToFormat(QImage::Format_Mono, flags);
        benchmark::DoNotOptimize(crc32(0UL, mono.constBits(), static_cast<uInt>(mono.sizeInBytes())));
    }
    reportPerPixel(state);
}

} // namespace

int main(int argc, char** argv)
{
    static const QImage photo = photograph();
    static const QImage text = textPage();
    using benchmark::RegisterBenchmark;
    RegisterBenchmark("photo/qt+zlib", [](auto& state) { qtAndZlib(state, photo, Qt::DiffuseDither); });
    RegisterBenchmark("photo/job", [](auto& state) { wholeJob(state, photo, false); });
    RegisterBenchmark("text/qt+zlib", [](auto& state) { qtAndZlib(state, text, Qt::ThresholdDither); });
    RegisterBenchmark("text/job", [](auto& state) { wholeJob(state, text, true); });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
