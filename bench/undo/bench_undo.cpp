// Speed of the undo store: every user action writes a whole slot file and every undo reads
// one back, on the thread of the action. Measured on 6000 x 4000 (a 96 MB file) next to a
// plain copy of a 96 MB file on the same file system, the floor of what a save can cost.
//
// Run: QT_QPA_PLATFORM=offscreen build/bin/bench_undo (it sets the platform itself).
#include "../bench_pattern.h"
#include "document/fimage.h"
#include "document/host.h"
#include "pixel/bitfilter.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>

namespace ostrivex {
namespace {

namespace fs = std::filesystem;

constexpr int32_t kWidth = 6000, kHeight = 4000;

// Only what SaveUndoBits and LoadUndoBits reach.
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

BenchHost& host() {
    static BenchHost h;
    return h;
}


// One document of the bench image in a 400 x 300 window.
fImage* benchDocument = nullptr; // deleted by main before the application

fImage& document() {
    if (!benchDocument) {
        benchDocument = new fImage;
        benchDocument->BeginDocument(QString());
        benchDocument->resize(400, 300);
        benchDocument->PBits(bench::PatternImage(kWidth, kHeight));
        benchDocument->SaveUndoBits("Original");
    }
    return *benchDocument;
}

const double kBytes = double(Bits::byteCount(kWidth, kHeight) + 40);

void report(benchmark::State& state) {
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(kBytes));
    state.counters["MP/s"] = benchmark::Counter(double(state.iterations()) * kWidth * kHeight / 1e6,
                                                benchmark::Counter::kIsRate);
}

void BM_PlainFileCopy(benchmark::State& state) {
    fImage& doc = document(); // its slot 0 is a file of the same size
    const fs::path from = doc.History().SlotFileName(0);
    const fs::path to = doc.History().TempFolder() / "copy.dat";
    for (auto _ : state) fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    fs::remove(to);
    report(state);
}

void BM_SaveUndoBits(benchmark::State& state) {
    fImage& doc = document();
    for (auto _ : state) {
        // Rewrites slot 1 each time, as a save after an undo does.
        doc.History().HistoryPosition = 1;
        doc.SaveUndoBits("Brush");
    }
    report(state);
}

void BM_LoadUndoBits(benchmark::State& state) {
    fImage& doc = document();
    const QString slot0 = QString::fromStdString(doc.History().SlotFileName(0).string());
    for (auto _ : state) benchmark::DoNotOptimize(doc.LoadUndoBits(slot0));
    report(state);
}

BENCHMARK(BM_PlainFileCopy)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
BENCHMARK(BM_SaveUndoBits)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
BENCHMARK(BM_LoadUndoBits)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();

} // namespace
} // namespace ostrivex

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    std::string home = (std::filesystem::temp_directory_path() / "ostrivex-bench-XXXXXX").string();
    if (!::mkdtemp(home.data())) return 2;
    ::setenv("OSTRIVEX_HOME", home.c_str(), 1);
    QApplication app(argc, argv);
    ostrivex::SetDocumentHost(&ostrivex::host());
    ::benchmark::Initialize(&argc, argv);
    ::benchmark::RunSpecifiedBenchmarks();
    ::benchmark::Shutdown();
    delete ostrivex::benchDocument; // deletes its undo files
    std::error_code ec;
    std::filesystem::remove_all(home, ec);
    return 0;
}
