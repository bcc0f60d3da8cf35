// Entry point of bench_pixel, with a reporter that shows megapixels per second and the
// ratio of each benchmark to BM_Memcpy at the same image size.
#include "bench_common.h"
#include "../bench_pattern.h"

#include "pixel/allocator.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ostrivex::bench {

Bits patternImage(int32_t w, int32_t h) { return PatternImage(w, h); }

Bits photoLikeImage(int32_t w, int32_t h) {
    // Broad waves of colour, a different one in each channel, with a little grain.
    Bits b(w, h);
    uint32_t s = 777u;
    const double pi = 3.14159265358979;
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* p = b.row(y);
        const double v = double(y) / h;
        for (int32_t x = 0; x < w; ++x) {
            const double u = double(x) / w;
            const double c[3] = {110 + 70 * std::sin(2 * pi * (u + 0.3 * v)),
                                 120 + 60 * std::cos(pi * (1.5 * v - u)),
                                 130 + 80 * std::sin(pi * (u * v + 0.5 * v))};
            for (int k = 0; k < 3; ++k) {
                s = s * 1103515245u + 12345u;
                const double grain = double((s >> 16) & 15u) - 7.5;
                p[4 * x + k] = uint8_t(std::clamp(c[k] + grain, 0.0, 255.0));
            }
            p[4 * x + 3] = 0;
        }
    }
    return b;
}

cBitFilter& photoFilter(int32_t w, int32_t h) {
    static std::map<std::pair<int32_t, int32_t>, std::unique_ptr<cBitFilter>> cache;
    auto& slot = cache[{w, h}];
    if (!slot) {
        slot = std::make_unique<cBitFilter>();
        slot->SetBits(photoLikeImage(w, h));
    }
    return *slot;
}

namespace {
struct Loaded {
    cBitFilter filter;
    Region region;
};
std::map<std::pair<int32_t, int32_t>, std::unique_ptr<Loaded>> gWhole, gEllipse, gHalf,
    gWholeInPlace, gHalfInPlace;

enum class Shape { Whole, Ellipse, HalfEllipse };

Region shapeRegion(Shape shape, int32_t w, int32_t h) {
    switch (shape) {
    case Shape::Ellipse:
        return Region::ellipse(0, 0, w, h);
    case Shape::HalfEllipse: {
        // The inscribed ellipse covers pi / 4 of the box: axes scaled by sqrt(2 / pi)
        // cover half.
        const double s = std::sqrt(2.0 / 3.14159265358979);
        const int32_t dx = int32_t(w * (1 - s) / 2), dy = int32_t(h * (1 - s) / 2);
        return Region::ellipse(dx, dy, w - dx, h - dy);
    }
    default:
        return Region::rect(0, 0, w, h);
    }
}

cBitFilter& load(std::map<std::pair<int32_t, int32_t>, std::unique_ptr<Loaded>>& cache,
                 int32_t w, int32_t h, Shape shape) {
    auto& slot = cache[{w, h}];
    if (!slot) {
        slot = std::make_unique<Loaded>();
        slot->region = shapeRegion(shape, w, h);
        slot->filter.SetBits(patternImage(w, h));
        slot->filter.BitsRegion(&slot->region);
    }
    return slot->filter;
}
} // namespace

cBitFilter& loadedFilter(int32_t w, int32_t h) { return load(gWhole, w, h, Shape::Whole); }
cBitFilter& ellipseFilter(int32_t w, int32_t h) { return load(gEllipse, w, h, Shape::Ellipse); }
cBitFilter& halfEllipseFilter(int32_t w, int32_t h) {
    return load(gHalf, w, h, Shape::HalfEllipse);
}

cBitFilter& inPlaceFilter(int32_t w, int32_t h, bool halfEllipse) {
    return halfEllipse ? load(gHalfInPlace, w, h, Shape::HalfEllipse)
                       : load(gWholeInPlace, w, h, Shape::Whole);
}

namespace {
int64_t selectedPixels(const cBitFilter& f) {
    int64_t selected = 0;
    for (const Rect& r : f.region()->rects())
        selected += int64_t(r.right - r.left) * (r.bottom - r.top);
    return selected;
}
} // namespace

void runFilterInPlace(benchmark::State& state, cBitFilter& f,
                      const std::function<Bits(cBitFilter&)>& op, bool selectedOnly) {
    const cBitFilter::ReuseScope reuse(f);
    for (auto _ : state) {
        Bits out = op(f);
        benchmark::DoNotOptimize(out.data());
        f.SetBits(std::move(out));
        benchmark::ClobberMemory();
    }
    const int64_t all = int64_t(f.BitsWidth()) * f.BitsHeight();
    const int64_t counted = selectedOnly ? selectedPixels(f) : all;
    state.SetItemsProcessed(state.iterations() * counted);
    if (selectedOnly)
        state.counters["selected %"] = benchmark::Counter(100.0 * double(counted) / double(all));
}

void runFilterInPlaceRestored(benchmark::State& state, const Bits& source,
                              const std::function<Bits(cBitFilter&)>& op) {
    cBitFilter f;
    f.SetBits(source);
    const cBitFilter::ReuseScope reuse(f);
    for (auto _ : state) {
        Bits out = op(f);
        benchmark::DoNotOptimize(out.data());
        state.PauseTiming();
        // Back to the source's pixels in the same buffer, outside the timing.
        std::memcpy(out.data(), source.data(), out.size());
        f.SetBits(std::move(out));
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * int64_t(f.BitsWidth()) * f.BitsHeight());
}

void runFilter(benchmark::State& state, cBitFilter& f,
               const std::function<Bits(cBitFilter&)>& op) {
    // One untimed run first: a first run that pays for the system's one-off costs (seen
    // here as a single 360 ms iteration of a 9 ms filter, late in a whole run) would
    // otherwise outlast the minimum time and be reported alone.
    benchmark::DoNotOptimize(op(f).data());
    for (auto _ : state) {
        Bits out = op(f);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * int64_t(f.BitsWidth()) * f.BitsHeight());
}

void runFilterSelected(benchmark::State& state, cBitFilter& f,
                       const std::function<Bits(cBitFilter&)>& op) {
    benchmark::DoNotOptimize(op(f).data()); // untimed, as in runFilter
    for (auto _ : state) {
        Bits out = op(f);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    const int64_t selected = selectedPixels(f);
    state.SetItemsProcessed(state.iterations() * selected);
    state.counters["selected %"] =
        benchmark::Counter(100.0 * double(selected) / (double(f.BitsWidth()) * f.BitsHeight()));
}

} // namespace ostrivex::bench

using namespace ostrivex;

// The baseline: a memcpy of the whole bordered buffer into a buffer that already exists.
static void BM_Memcpy(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    Bits src = bench::patternImage(w, h);
    Bits dst(w, h);
    for (auto _ : state) {
        std::memcpy(dst.data(), src.data(), src.size());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * int64_t(w) * h);
}
BENCHMARK(BM_Memcpy)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);

namespace {
// memcpy rates measured before the run, by size key "/W/H".
std::map<std::string, double> memcpyRate_;

double measureMemcpy(int32_t w, int32_t h) {
    Bits src = bench::patternImage(w, h);
    Bits dst(w, h);
    double best = 0;
    for (int i = 0; i < 15; ++i) {
        const auto t0 = std::chrono::steady_clock::now();
        std::memcpy(dst.data(), src.data(), src.size());
        benchmark::DoNotOptimize(dst.data());
        const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
        best = std::max(best, double(w) * h / s / 1e6);
    }
    return best;
}

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> copy = runs;
        for (Run& r : copy) {
            auto it = r.counters.find("items_per_second");
            if (it == r.counters.end()) continue;
            const double mps = it->second.value / 1e6;
            const std::string size = sizeOf(r.benchmark_name());
            r.counters["MP/s"] = benchmark::Counter(mps);
            auto base = memcpyRate_.find(size);
            if (base != memcpyRate_.end() && base->second > 0)
                r.counters["xMemcpy"] = benchmark::Counter(mps / base->second);
        }
        ConsoleReporter::ReportRuns(copy);
    }

private:
    static std::string sizeOf(const std::string& name) {
        const size_t slash = name.find('/');
        if (slash == std::string::npos) return std::string();
        std::string rest = name.substr(slash); // "/6000/4000" possibly followed by more
        const size_t third = rest.find('/', rest.find('/', 1) + 1);
        return third == std::string::npos ? rest : rest.substr(0, third);
    }
};
} // namespace

int main(int argc, char** argv) {
    ostrivex::TuneAllocatorForImages();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    for (auto [w, h] : {std::pair{6000, 4000}, std::pair{2000, 1500}}) {
        const double rate = measureMemcpy(w, h);
        char key[32];
        std::snprintf(key, sizeof key, "/%d/%d", w, h); // the size part of a benchmark's name
        memcpyRate_[key] = rate;
        std::printf("memcpy of the bordered %dx%d buffer: %.0f MP/s\n", w, h, rate);
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
