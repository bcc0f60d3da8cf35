// One full repaint of a document's canvas: UpdateImage (the visible part of the image drawn
// into the canvas picture at the view's scale) and the canvas widget's paint, for a
// 6000 x 4000 image in a 1600 x 1000 window: at 1 : 1 (a window of the image), at "Fit in
// window" (1 : 4, the whole image) and at 8 : 1. The goal is under 8 ms, so that panning
// keeps up with the mouse.
//
// Run: build/bin/bench_canvas (it sets the offscreen platform itself).
#include "../bench_pattern.h"
#include "document/fimage.h"

#include <QApplication>
#include <QTabBar>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace ostrivex {
namespace {

constexpr int32_t kWidth = 6000, kHeight = 4000;
constexpr int kWindowW = 1600, kWindowH = 1000;

fImage* benchDocument = nullptr; // deleted by main before the application

fImage& document() {
    if (!benchDocument) {
        benchDocument = new fImage;
        benchDocument->BeginDocument(QString());
        benchDocument->resize(kWindowW, kWindowH);
        benchDocument->Model().Start(bench::PatternImage(kWidth, kHeight), "Original");
        benchDocument->show();
        QApplication::processEvents();
    }
    return *benchDocument;
}

void repaint(benchmark::State& state, fImage& doc) {
    const QSize canvas = doc.CanvasSize();
    state.SetLabel(QStringLiteral("%1 on %2 x %3")
                       .arg(doc.Model().View.ZoomText())
                       .arg(canvas.width())
                       .arg(canvas.height())
                       .toStdString());
    for (auto _ : state) {
        doc.UpdateImage();
        doc.Canvas()->repaint();
    }
    state.counters["MP/s"] = benchmark::Counter(double(state.iterations()) * canvas.width() *
                                                    canvas.height() / 1e6,
                                                benchmark::Counter::kIsRate);
}

void BM_RepaintOneToOne(benchmark::State& state) {
    fImage& doc = document();
    doc.SetZoomFactor(1);
    doc.Scroll(2000, 1500);
    repaint(state, doc);
}

void BM_RepaintFitInWindow(benchmark::State& state) {
    fImage& doc = document();
    doc.FitInWindow();
    repaint(state, doc);
}

void BM_RepaintEightToOne(benchmark::State& state) {
    fImage& doc = document();
    doc.SetZoomFactor(8);
    repaint(state, doc);
}

BENCHMARK(BM_RepaintOneToOne)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_RepaintFitInWindow)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_RepaintEightToOne)->Unit(benchmark::kMillisecond)->MinTime(1.0);

} // namespace
} // namespace ostrivex

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    std::string home = (std::filesystem::temp_directory_path() / "ostrivex-bench-XXXXXX").string();
    if (!::mkdtemp(home.data())) return 2;
    ::setenv("OSTRIVEX_HOME", home.c_str(), 1);
    QApplication app(argc, argv);
    ::benchmark::Initialize(&argc, argv);
    ::benchmark::RunSpecifiedBenchmarks();
    ::benchmark::Shutdown();
    delete ostrivex::benchDocument; // deletes its undo files
    std::error_code ec;
    std::filesystem::remove_all(home, ec);
    return 0;
}
