// Speed of the undo store: every user action writes a whole slot file and every undo reads
// one back, on the thread of the action. Measured on 6000 x 4000 (a 96 MB file) next to a
// plain copy of a 96 MB file on the same file system, the floor of what a save can cost.
//
// Run: build/bin/bench_undo
#include "../bench_pattern.h"
#include "model/document.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace ostrivex {
namespace {

namespace fs = std::filesystem;

constexpr int32_t kWidth = 6000, kHeight = 4000;

// One document of the bench image, without a window: the commit's own cost is the file.
std::unique_ptr<Document> benchDocument; // reset by main before the folder goes

Document& document() {
    if (!benchDocument) {
        benchDocument = std::make_unique<Document>(std::getenv("OSTRIVEX_HOME"));
        benchDocument->History().HistoryId = 1;
        benchDocument->Start(bench::PatternImage(kWidth, kHeight), "Original");
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
    Document& doc = document(); // its slot 0 is a file of the same size
    const fs::path from = doc.History().SlotFileName(0);
    const fs::path to = doc.History().TempFolder() / "copy.dat";
    for (auto _ : state) fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    fs::remove(to);
    report(state);
}

void BM_SaveUndoBits(benchmark::State& state) {
    Document& doc = document();
    for (auto _ : state) {
        // Rewrites slot 1 each time, as a commit after an undo does.
        doc.History().HistoryPosition = 1;
        doc.Commit(EditTarget::Enhanced(), "Brush");
    }
    report(state);
}

void BM_LoadUndoBits(benchmark::State& state) {
    Document& doc = document();
    for (auto _ : state) {
        // A jump from the state of slot 1 back to slot 0 reads slot 0's file.
        doc.History().HistoryPosition = 2;
        benchmark::DoNotOptimize(doc.JumpTo(0));
    }
    report(state);
}

BENCHMARK(BM_PlainFileCopy)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
BENCHMARK(BM_SaveUndoBits)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
BENCHMARK(BM_LoadUndoBits)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();

} // namespace
} // namespace ostrivex

int main(int argc, char** argv) {
    std::string home = (std::filesystem::temp_directory_path() / "ostrivex-bench-XXXXXX").string();
    if (!::mkdtemp(home.data())) return 2;
    ::setenv("OSTRIVEX_HOME", home.c_str(), 1);
    ::benchmark::Initialize(&argc, argv);
    ::benchmark::RunSpecifiedBenchmarks();
    ::benchmark::Shutdown();
    if (ostrivex::benchDocument) ostrivex::benchDocument->History().ClearHistoryFiles();
    ostrivex::benchDocument.reset();
    std::error_code ec;
    std::filesystem::remove_all(home, ec);
    return 0;
}
