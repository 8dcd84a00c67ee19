// What the imaging steps cost on a page of 576 × 4096 dots, next to Qt's own conversion to one bit a dot.
//
// Each step reports ns_per_pixel. The pairs with Qt time both sides alternately in one run and report the ratio
// (below 1: faster than Qt), so that a busy machine slows both alike.

#include "imaging/binarize.h"
#include "imaging/conversion.h"
#include "imaging/halftone.h"
#include "imaging/histogram.h"
#include "imaging/isolated_dots.h"
#include "imaging/stucki.h"
#include "imaging/tone_curve.h"

#include <QImage>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <functional>
#include <random>

namespace {

constexpr int kWidth = 576;
constexpr int kHeight = 4096;
constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;
constexpr int kNoQt = -1;

using Work = std::function<void(ImageBuffer*)>;

// Smooth shades with a little noise, as a photograph has them: the hard case for branch prediction.
QImage photograph()
{
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    std::mt19937 random(1);
    for (int y = 0; y < kHeight; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < kWidth; ++x) {
            const int shade = static_cast<int>(127.0 + 100.0 * std::sin(x / 90.0) * std::cos(y / 140.0)) +
                              static_cast<int>(random() % 21) - 10;
            line[x] = qRgb(shade, qBound(0, shade + 15, 255), qBound(0, shade - 15, 255));
        }
    }
    return image;
}

// Black strokes with soft edges on white paper.
QImage pageOfText()
{
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    std::mt19937 random(2);
    for (int y = 8; y + 24 < kHeight; y += 32) {
        for (int x = 8; x + 16 < kWidth; x += 3 + static_cast<int>(random() % 9)) {
            for (int i = 6 + static_cast<int>(random() % 14); i-- > 0;) {
                image.setPixel(x, y + i, qRgb(0, 0, 0));
                image.setPixel(x + 1, y + i, qRgb(90, 90, 90));
            }
        }
    }
    return image;
}

double secondsOf(const std::function<void()>& function)
{
    const auto start = std::chrono::steady_clock::now();
    function();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

QImage toMono(const QImage& picture, int flags)
{
    return picture.convertToFormat(QImage::Format_Mono, Qt::ImageConversionFlags(flags));
}

// Times `work` on a fresh copy of the picture each round, after `prepare`; neither copying nor preparing is counted.
// Unless `qtFlags` is kNoQt, Qt's conversion of the same picture follows each time.
void add(const char* name, const QImage& picture, const Work& prepare, int qtFlags, const Work& work)
{
    const auto run = [=](benchmark::State& state) {
        double ours = 0, qts = 0;
        for (auto _ : state) {
            QImage copy = picture.copy();
            ImageBuffer record{copy.bits(), kWidth, kHeight, 4, FormatBgrx32};
            prepare(&record);
            const double seconds = secondsOf([&] { work(&record); });
            state.SetIterationTime(seconds);
            ours += seconds;
            qts += qtFlags == kNoQt ? 0 : secondsOf([&] { benchmark::DoNotOptimize(toMono(picture, qtFlags)); });
        }
        const double perPixel = 1e9 / static_cast<double>(kPixels) / static_cast<double>(state.iterations());
        state.counters["ns_per_pixel"] = ours * perPixel;
        if (qtFlags != kNoQt) {
            state.counters["qt_ns_per_pixel"] = qts * perPixel;
            state.counters["ratio"] = ours / qts;
        }
    };
    benchmark::RegisterBenchmark(name, run)->UseManualTime()->Unit(benchmark::kMillisecond);
}

void nothing(ImageBuffer*) {}

void histogram(ImageBuffer* record)
{
    benchmark::DoNotOptimize(imaging::buildHistogram(record->data, kPixels));
}

void threshold(ImageBuffer* record)
{
    imaging::thresholdBytes(record->data, kPixels, 127);
}

void dots(ImageBuffer* record)
{
    imageToGray(record);
    threshold(record);
    record->format = FormatBinary;
}

} // namespace

int main(int argc, char** argv)
{
    // Made once, here: QImage::fill leaves the upper halves of the wide registers in use, and until something clears
    // them, SSE2 code right behind it runs up to five times slower.
    const QImage photo = photograph();
    const QImage text = pageOfText();
    add("grayConversion", photo, nothing, kNoQt, imageToGray);
    add("histogram/photograph", photo, imageToGray, kNoQt, histogram);
    add("histogram/text", text, imageToGray, kNoQt, histogram);
    add("toneChange", photo, imageToGray, kNoQt, [](auto* record) { adjustBrightnessContrast(record, 50, -50); });
    add("stuckiDiffusion", photo, imageToGray, kNoQt, stuckiDiffuse);
    add("threshold", text, imageToGray, kNoQt, threshold);
    add("isolatedDots", text, dots, kNoQt, removeIsolatedDots);
    // Print types 0 and 1 up to the dots, against Qt's diffusion and Qt's threshold.
    add("photoAgainstQt", photo, nothing, Qt::DiffuseDither,
        [](auto* record) { halftoneImage(record, 0, 255, 0, 2); });
    add("textAgainstQt", text, nothing, Qt::ThresholdDither, [](auto* record) { binarizeImage(record, 3); });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
