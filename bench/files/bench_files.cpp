// The image file code on a 24-megapixel picture: each load and save format of the speed
// table by itself, the same decodes in the helper process, and selection files of growing
// size (whose load must stay linear: see the Complexity rows).
#include "imagefile/imagefile.h"
#include "pixel/allocator.h"
#include "pixel/region.h"
#include "pixel/selectionfile.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

using namespace ostrivex;

// A photograph-like picture: smooth ramps with grain from a fixed generator.
Bits photo() {
    Bits b(6000, 4000);
    uint32_t s = 12345;
    for (int y = 0; y < b.height(); ++y) {
        uint8_t* d = b.row(y);
        for (int x = 0; x < b.width(); ++x, d += 4) {
            s = s * 1664525u + 1013904223u;
            const int grain = int(s >> 28) - 8;
            d[0] = uint8_t(std::clamp(x / 24 + grain, 0, 255));
            d[1] = uint8_t(std::clamp(y / 16 + grain, 0, 255));
            d[2] = uint8_t(std::clamp((x + y) / 40 + grain, 0, 255));
        }
    }
    return b;
}

std::string folder() {
    static const std::string dir = [] {
        std::string d = (std::filesystem::temp_directory_path() /
                         ("ostrivex-bench-files-" + std::to_string(getpid())))
                            .string();
        std::filesystem::create_directories(d);
        return d;
    }();
    return dir;
}

const Bits& picture() {
    static const Bits p = photo();
    return p;
}

std::string saved(const std::string& ext) {
    const std::string path = folder() + "/photo." + ext;
    if (!std::filesystem::exists(path)) SaveImageFile(picture(), path, ext);
    return path;
}

void BM_Save(benchmark::State& state, const char* ext) {
    const std::string path = folder() + "/out." + ext;
    for (auto _ : state)
        if (!SaveImageFile(picture(), path, ext).ok) state.SkipWithError("save failed");
    state.SetItemsProcessed(state.iterations() * 24'000'000);
}

void BM_Load(benchmark::State& state, const char* ext, bool isolated) {
    const std::string path = saved(ext);
    SetIsolateAllDecoders(isolated);
    for (auto _ : state)
        if (!LoadImageFile(path, ext).ok) state.SkipWithError("load failed");
    SetIsolateAllDecoders(false);
    state.SetItemsProcessed(state.iterations() * 24'000'000);
}

BENCHMARK_CAPTURE(BM_Save, ppm, "ppm")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Save, jpg, "jpg")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Save, png, "png")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Load, ppm, "ppm", false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Load, ppmInHelper, "ppm", true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Load, jpg, "jpg", false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Load, jpgInHelper, "jpg", true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Load, png, "png", false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Load, pngInHelper, "png", true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Load, tga, "tga", false)->Unit(benchmark::kMillisecond);

// A selection file of n one-pixel rectangles, 256 to a band, read and made a region.
void BM_SelectionFile(benchmark::State& state) {
    const int n = int(state.range(0));
    std::vector<int32_t> e = {32, 1, n, n * 16, 0, 0, 512, n / 256 + 1};
    for (int i = 0; i < n; ++i) {
        const int y = i / 256, x = (i % 256) * 2;
        e.insert(e.end(), {x, y, x + 1, y + 1});
    }
    const std::string path = folder() + "/sel" + std::to_string(n) + ".osf";
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(e.data()), std::streamsize(e.size() * 4));
    for (auto _ : state) {
        std::vector<int32_t> data;
        if (ReadSelectionFile(path, data) != SelectionFileRead::Ok) state.SkipWithError("refused");
        benchmark::DoNotOptimize(Region::fromData(data));
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_SelectionFile)->RangeMultiplier(4)->Range(16384, 1 << 22)->Complexity(benchmark::oN)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    TuneAllocatorForImages();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove_all(folder());
    return 0;
}
