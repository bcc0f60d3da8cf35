// Throughput of the neighbourhood filters and the general convolution.
#include "bench_common.h"

#include "pixel/filtermask.h"

namespace {

ostrivex::FilterMask presetMask(int i) {
    ostrivex::FilterMask m;
    ostrivex::ParseFilterPreset(m, i);
    return m;
}

const ostrivex::FilterMask kBlur3 = presetMask(0);
const ostrivex::FilterMask kBlur5 = presetMask(1);
const ostrivex::FilterMask kSharpen3 = presetMask(4);

} // namespace

OSTRIVEX_PIXEL_BENCH(Blurs1, f.Blurs(1));
OSTRIVEX_PIXEL_BENCH(Blurs2, f.Blurs(2));
OSTRIVEX_PIXEL_BENCH(SOFTEN30, f.SOFTEN(30));
OSTRIVEX_PIXEL_BENCH(SHARPEN10, f.SHARPEN(10));
OSTRIVEX_PIXEL_BENCH(EDGEENHANCE10, f.EDGEENHANCE(10));
OSTRIVEX_PIXEL_BENCH(DILATE, f.DILATE());
OSTRIVEX_PIXEL_BENCH(ERODE, f.ERODE());
OSTRIVEX_PIXEL_BENCH(RankFilterND1, f.RankFilterND(1));
OSTRIVEX_PIXEL_BENCH(RankFilterN4_0, f.RankFilterN4(0));
OSTRIVEX_PIXEL_BENCH(RELIEF, f.RELIEF());
OSTRIVEX_PIXEL_BENCH(CONTOUR255, f.CONTOUR(255, 255255255));
OSTRIVEX_PIXEL_BENCH(EMBOSS10, f.EMBOSS(10));
OSTRIVEX_PIXEL_BENCH(NOISE20, f.NOISE(20, false));
OSTRIVEX_PIXEL_BENCH(DIFFUSE5_10, f.DIFFUSE(5, 10));
OSTRIVEX_PIXEL_BENCH(MaskFilterBlur3x3, f.MaskFilter(kBlur3, false));
OSTRIVEX_PIXEL_BENCH(MaskFilterSharpen3x3, f.MaskFilter(kSharpen3, true));
OSTRIVEX_PIXEL_BENCH(MaskFilterBlur5x5, f.MaskFilter(kBlur5, false));

// The region walk with holes: an ellipse selection.
static void BM_SHARPEN10_Ellipse(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    ostrivex::bench::runFilter(state, ostrivex::bench::ellipseFilter(w, h),
                               [](ostrivex::cBitFilter& f) { return f.SHARPEN(10); });
}
BENCHMARK(BM_SHARPEN10_Ellipse)->Args({6000, 4000})->Unit(benchmark::kMillisecond);
// SHARPEN on a centred ellipse of half the image, counted per selected pixel, the way
// the editor runs it (built in the object's own buffer, given back with SetBits): to set
// against BM_SHARPEN10InPlace.
static void BM_SHARPEN10_HalfEllipse(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    ostrivex::bench::runFilterInPlace(state, ostrivex::bench::inPlaceFilter(w, h, true),
                                      [](ostrivex::cBitFilter& f) { return f.SHARPEN(10); },
                                      true);
}
BENCHMARK(BM_SHARPEN10_HalfEllipse)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
static void BM_SHARPEN10InPlace(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    ostrivex::bench::runFilterInPlace(state, ostrivex::bench::inPlaceFilter(w, h, false),
                                      [](ostrivex::cBitFilter& f) { return f.SHARPEN(10); },
                                      false);
}
BENCHMARK(BM_SHARPEN10InPlace)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
// The same through the copying path (a new buffer each time, the source left alone).
static void BM_SHARPEN10_HalfEllipseCopying(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    ostrivex::bench::runFilterSelected(state, ostrivex::bench::halfEllipseFilter(w, h),
                                       [](ostrivex::cBitFilter& f) { return f.SHARPEN(10); });
}
BENCHMARK(BM_SHARPEN10_HalfEllipseCopying)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
// The copy every filter starts with (allocation and first touch of the output included):
// the floor under every row above.
OSTRIVEX_PIXEL_BENCH(FrameCopy, f.GetBits());
