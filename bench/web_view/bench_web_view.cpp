// The Optimize view after a brush stroke, end to end: from the stroke's release (the
// box's `Update`) until the document's Optimize view shows the new picture and the size
// label its count, on a 1-megapixel (1280 x 800) document in "GIF-256 Colors". While the
// optimizer works the window's thread runs its events; a 5 ms timer on it records the
// longest gap between its ticks ("max_gap_ms"), which says whether the window kept
// painting. "cpu_ms" is the processor time of the whole program (window thread and worker)
// per stroke: what one core spends, which on a shared machine says more than the wall
// clock.
//
// Run: build/bin/bench_web_view (it sets the offscreen platform itself).
#include "document/fimage.h"
#include "document/host.h"
#include "document/optimizeview.h"
#include "pixel/bitfilter.h"
#include "web/finfo.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include <cmath>
#include <cstdlib>

namespace ostrivex {
namespace {

class BenchHost : public DocumentHost {
public:
    cBitFilter filter;
    cBitFilter& Filter() override { return filter; }
    fPaste* HistoryBox() override { return nullptr; }
    QWidget* DialogParent() override { return nullptr; }
    void AddDocumentWindow(fImage*) override {}
    void RemoveDocumentWindow(fImage*) override {}
    std::vector<fImage*> Documents() override { return {}; }
    void RunCommand(const QString&) override {}
    void SetStatusPanel(const QString&, const QString&) override {}
    void ClearStatusPanels() override {}
    void ShowZoom(int) override {}
    bool HandScrollDown() override { return false; }
    void RefreshPanView() override {}
    void ClearPanView() override {}
    void ReloadOptimizePreview() override {}
    void UndoStateSaved(int) override {}
    void FillRecent() override {}
    void DocumentActivated(fImage*) override {}
    void DocumentDeactivated(fImage*) override {}
    void ViewChanged(fImage*, int) override {}
};

// Soft colour fields with grain, like a photograph to the quantizer.
Bits picture(int32_t w, int32_t h) {
    Bits b(w, h);
    uint32_t s = 11;
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) {
            s = s * 1664525u + 1013904223u;
            const int g = int(s >> 29) - 3;
            uint8_t* p = b.pixel(x, y);
            p[0] = uint8_t(std::clamp(int(128 + 90 * std::sin(x * 0.011) + g), 0, 255));
            p[1] = uint8_t(std::clamp(int(128 + 90 * std::cos(y * 0.017) + g), 0, 255));
            p[2] = uint8_t(std::clamp(int(128 + 60 * std::sin((x + y) * 0.007) + g), 0, 255));
        }
    return b;
}

// A round dab of 20 pixels' radius in a new colour at (cx, cy), as a brush leaves it.
void dab(Bits& b, int cx, int cy, uint8_t shade) {
    for (int y = cy - 20; y <= cy + 20; ++y)
        for (int x = cx - 20; x <= cx + 20; ++x)
            if (x >= 0 && y >= 0 && x < b.width() && y < b.height() &&
                (x - cx) * (x - cx) + (y - cy) * (y - cy) <= 400) {
                uint8_t* p = b.pixel(x, y);
                p[0] = shade, p[1] = uint8_t(255 - shade), p[2] = 40;
            }
}

void BM_ViewAfterStroke(benchmark::State& state) {
    BenchHost host;
    SetDocumentHost(&host);
    auto* doc = new fImage;
    doc->BeginDocument(QString());
    doc->resize(900, 700);
    Bits pixels = picture(1280, 800);
    doc->PBits(pixels);
    doc->show();
    doc->cOptimize_Click();
    finfo box;
    box.show();
    box.ShowDocument(doc);
    bool shown = false;
    QObject::connect(&box, &finfo::resultShown, [&shown](fImage*) { shown = true; });
    const auto wait = [&](double* maxGap) {
        QElapsedTimer sinceTick;
        sinceTick.start();
        double gap = 0;
        QTimer ticker;
        ticker.setInterval(5);
        QObject::connect(&ticker, &QTimer::timeout, [&] {
            gap = std::max(gap, double(sinceTick.nsecsElapsed()) / 1e6);
            sinceTick.restart();
        });
        ticker.start();
        while (!shown) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        gap = std::max(gap, double(sinceTick.nsecsElapsed()) / 1e6);
        if (maxGap) *maxGap = std::max(*maxGap, gap);
    };
    wait(nullptr); // the first result, made at open
    double maxGap = 0;
    int n = 0;
    const auto processCpuMs = [] {
        rusage u{};
        getrusage(RUSAGE_SELF, &u);
        return (u.ru_utime.tv_sec + u.ru_stime.tv_sec) * 1e3 + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e3;
    };
    const double cpuStart = processCpuMs();
    for (auto _ : state) {
        state.PauseTiming();
        dab(pixels, 100 + (n * 97) % 1080, 100 + (n * 61) % 600, uint8_t(n * 37));
        ++n;
        doc->SetBits(pixels);
        shown = false;
        state.ResumeTiming();
        box.Update(doc); // the stroke's release
        wait(&maxGap);
    }
    state.counters["max_gap_ms"] = maxGap;
    // The untimed part (a dab and a copy of the pixels) is a few milliseconds of it.
    state.counters["cpu_ms"] = (processCpuMs() - cpuStart) / double(std::max<int64_t>(1, state.iterations()));
    delete doc;
    SetDocumentHost(nullptr);
}
BENCHMARK(BM_ViewAfterStroke)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

} // namespace
} // namespace ostrivex

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
