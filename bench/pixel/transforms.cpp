// Scaling, quarter turn and mirror. The size arguments are the size of the output; the
// scaling benchmarks read a source two thirds of it (growing), a third of it (growing
// three times) or one and a half times it (shrinking), and count output pixels.
#include "bench_common.h"

#include <map>
#include <memory>
#include <utility>

using namespace ostrivex;

namespace {

const Bits& sourceImage(int32_t w, int32_t h) {
    static std::map<std::pair<int32_t, int32_t>, std::unique_ptr<Bits>> cache;
    auto& slot = cache[{w, h}];
    if (!slot) slot = std::make_unique<Bits>(bench::patternImage(w, h));
    return *slot;
}

// op(filter, source, w, h) writes a w x h result into the filter's buffer.
template <class Op> void runSized(benchmark::State& state, int32_t srcW, int32_t srcH, Op op) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    const Bits& src = sourceImage(srcW, srcH);
    cBitFilter f;
    f.SetBits(Bits(w, h)); // as a caller would: the filter holds an image of the old size
    for (auto _ : state) {
        op(f, src, w, h);
        benchmark::DoNotOptimize(f.bits().data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * int64_t(w) * h);
}

int32_t twoThirds(int64_t v) {
    return int32_t(v * 2 / 3);
}
int32_t oneThird(int64_t v) {
    return int32_t(v / 3);
}
int32_t oneAndHalf(int64_t v) {
    return int32_t(v * 3 / 2);
}

void BM_ResampleGrow(benchmark::State& state) {
    runSized(state, twoThirds(state.range(0)), twoThirds(state.range(1)),
             [](cBitFilter& f, const Bits& s, int32_t w, int32_t h) { f.BitsResample(s, w, h); });
}
// Growing three times: finer weights than the 32-bit lanes hold (see the resampler).
void BM_ResampleGrow3(benchmark::State& state) {
    runSized(state, oneThird(state.range(0)), oneThird(state.range(1)),
             [](cBitFilter& f, const Bits& s, int32_t w, int32_t h) { f.BitsResample(s, w, h); });
}
void BM_ResampleShrink(benchmark::State& state) {
    runSized(state, oneAndHalf(state.range(0)), oneAndHalf(state.range(1)),
             [](cBitFilter& f, const Bits& s, int32_t w, int32_t h) { f.BitsResample(s, w, h); });
}
void BM_ResizeGrow(benchmark::State& state) {
    runSized(state, twoThirds(state.range(0)), twoThirds(state.range(1)),
             [](cBitFilter& f, const Bits& s, int32_t w, int32_t h) { f.BitsResize(s, w, h); });
}
void BM_ResizeShrink(benchmark::State& state) {
    runSized(state, oneAndHalf(state.range(0)), oneAndHalf(state.range(1)),
             [](cBitFilter& f, const Bits& s, int32_t w, int32_t h) { f.BitsResize(s, w, h); });
}
// Output w x h from a source h x w.
void BM_Rotate90(benchmark::State& state) {
    runSized(state, int32_t(state.range(1)), int32_t(state.range(0)),
             [](cBitFilter& f, const Bits& s, int32_t, int32_t) { f.BitsRotate90(s); });
}

} // namespace

BENCHMARK(BM_ResampleGrow)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ResampleGrow3)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ResampleShrink)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ResizeGrow)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ResizeShrink)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Rotate90)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);

OSTRIVEX_PIXEL_BENCH(FlipHorizontal, f.Flip(true, false));
OSTRIVEX_PIXEL_BENCH(FlipVertical, f.Flip(false, true));
