#include "device/diagnostics/device_command_window.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <benchmark/benchmark.h>

// One more reply in the log of the device window, which has `range` lines by then. Its peer is the same five lines in
// Qt's own widget for long plain logs.

namespace {

constexpr int kBlockLines = 5;

void appendReply(benchmark::State& state)
{
    TestDeviceCommandWindow window;
    window.show();
    for (int line = 0; line < state.range(0); line += kBlockLines)
        window.onAnalysisSuccess(0x07, QStringLiteral("Quillbox_K2"));
    for (auto _ : state) {
        window.onAnalysisSuccess(0x07, QStringLiteral("Quillbox_K2"));
        QCoreApplication::processEvents();
    }
}

void appendToPlainTextEdit(benchmark::State& state)
{
    QPlainTextEdit log;
    log.resize(820, 560);
    log.show();
    const QString block = QStringLiteral("{\n->00:00:00\n0x07\nQuillbox_K2\n}");
    for (int line = 0; line < state.range(0); line += kBlockLines)
        log.appendPlainText(block);
    for (auto _ : state) {
        log.appendPlainText(block);
        log.moveCursor(QTextCursor::End);
        QCoreApplication::processEvents();
    }
}

BENCHMARK(appendReply)->Arg(100)->Arg(65000)->Unit(benchmark::kMicrosecond);
BENCHMARK(appendToPlainTextEdit)->Arg(100)->Arg(65000)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
