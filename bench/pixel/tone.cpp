// Throughput of the tone and colour filters. The cheap channel operations should run at
// half the memcpy rate or better, the other table filters at 0.3, and the filters built
// on hue and saturation at 40 megapixels per second or more.
#include "bench_common.h"

using namespace ostrivex;

OSTRIVEX_PIXEL_BENCH(Invert, f.Invert());
OSTRIVEX_PIXEL_BENCH(Brightness, f.BRIGHTNESS(40));
OSTRIVEX_PIXEL_BENCH(ShiftRGB, f.ShiftRGB(30, -40, 100));
OSTRIVEX_PIXEL_BENCH(KillChannel, f.KillChannel(true, false, true));
OSTRIVEX_PIXEL_BENCH(SwapBanks, f.SwapBanks(1));

OSTRIVEX_PIXEL_BENCH(GreyScale, f.GreyScale());
OSTRIVEX_PIXEL_BENCH(Threshold, f.Threshold(128));
OSTRIVEX_PIXEL_BENCH(Saturation, f.SATURATION(50));
OSTRIVEX_PIXEL_BENCH(Reduction, f.Reduction(31));
OSTRIVEX_PIXEL_BENCH(GammaCorrection, f.GammaCorrection(40));
OSTRIVEX_PIXEL_BENCH(SpecialColors, f.SpecialColors(-1, 0, 0));
OSTRIVEX_PIXEL_BENCH(Contrast, f.Contrast(60));
// Contrast's cost depends on how many pixels spill and for how many rounds: three in four
// of the noise pattern do at level 60, far fewer of a photograph's. The same level on the
// gradient picture, for comparison.
static void BM_ContrastPhotoLike(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    bench::runFilter(state, bench::photoFilter(w, h), [](cBitFilter& f) { return f.Contrast(60); });
}
BENCHMARK(BM_ContrastPhotoLike)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
OSTRIVEX_PIXEL_BENCH(ContrastDown, f.Contrast(-40));
// The editor's path (the result built in the object's own buffer) on the noise pattern.
static void BM_ContrastInPlace(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    bench::runFilterInPlaceRestored(state, bench::patternImage(w, h),
                                    [](cBitFilter& f) { return f.Contrast(60); });
}
BENCHMARK(BM_ContrastInPlace)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
OSTRIVEX_PIXEL_BENCH(Equalize, f.Equalize());
OSTRIVEX_PIXEL_BENCH(SwapRGB, f.SwapRGB(1, 2, 0, true, false, false, false, false, true));
OSTRIVEX_PIXEL_BENCH(ClassyColorsRetro, f.ClassyColors(7));
OSTRIVEX_PIXEL_BENCH(ClassyColorsSoftBlue, f.ClassyColors(0));
OSTRIVEX_PIXEL_BENCH(Isolate, f.ISOLATE(0x2060A0u, 0u, 100));
OSTRIVEX_PIXEL_BENCH(Replace, f.REPLACE(0x2060A0u, 0xFFFFFFu, 100));
OSTRIVEX_PIXEL_BENCH(Shift, f.Shift(0x2060A0u, 60, 100));
OSTRIVEX_PIXEL_BENCH(ReplaceL, f.ReplaceL(0x2060A0u, 0xFFFFFFu, 50, 100));
OSTRIVEX_PIXEL_BENCH(RotateL, f.RotateL(30, 25));

OSTRIVEX_PIXEL_BENCH(Colorize, f.COLORIZE(0.5f, 0.25f, 1.0f));
OSTRIVEX_PIXEL_BENCH(RotateH, f.RotateH(40, 80));
OSTRIVEX_PIXEL_BENCH(StretchH, f.StretchH(20, 100, 50));
OSTRIVEX_PIXEL_BENCH(ReplaceHS, f.ReplaceHS(0x2060A0u, 0xFFFFFFu, 50, 50, 100));
OSTRIVEX_PIXEL_BENCH(ReplaceHSWide, f.ReplaceHS(0x2060A0u, 0xFFFFFFu, 100, 100, 200));

// Invert on an ellipse selection (about 78% of the image): the cost per selected pixel
// should be no higher than on the whole image.
static void BM_InvertEllipse(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    bench::runFilter(state, bench::ellipseFilter(w, h), [](cBitFilter& f) { return f.Invert(); });
}
BENCHMARK(BM_InvertEllipse)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);

// Invert on a centred ellipse of half the image, counted per selected pixel, the way the
// editor runs a filter (built in the object's own buffer, given back with SetBits): to
// set against BM_InvertInPlace, whose every pixel is selected.
static void BM_InvertHalfEllipse(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    bench::runFilterInPlace(state, bench::inPlaceFilter(w, h, true),
                            [](cBitFilter& f) { return f.Invert(); }, true);
}
BENCHMARK(BM_InvertHalfEllipse)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
static void BM_InvertInPlace(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    bench::runFilterInPlace(state, bench::inPlaceFilter(w, h, false),
                            [](cBitFilter& f) { return f.Invert(); }, false);
}
BENCHMARK(BM_InvertInPlace)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
// The same through the copying path (a new buffer each time, the source left alone).
static void BM_InvertHalfEllipseCopying(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    bench::runFilterSelected(state, bench::halfEllipseFilter(w, h),
                             [](cBitFilter& f) { return f.Invert(); });
}
BENCHMARK(BM_InvertHalfEllipseCopying)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond);
