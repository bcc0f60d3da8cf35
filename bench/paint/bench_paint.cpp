// Throughput of the paint primitives on a 6000 x 4000 image.
//
// Fill: the whole image is one colour, so the fill reaches every pixel; each iteration
// fills with the other of two colours, with a fresh done table as the tool makes one.
// Items are pixels of the image. Lines and strokes: items are the pixels along the path.
#include "document/paint/paint.h"

#include <benchmark/benchmark.h>

#include <cstdint>

namespace {

using namespace ostrivex;

constexpr int32_t kW = 6000, kH = 4000;

Bits& canvas() {
    static Bits bits = [] {
        Bits b(kW, kH);
        for (int32_t y = 0; y < kH; ++y) {
            uint8_t* p = b.row(y);
            for (int32_t x = 0; x < kW; ++x, p += 4) p[0] = p[1] = p[2] = 100;
        }
        return b;
    }();
    return bits;
}

void fillWhole(benchmark::State& state, const Region& region) {
    Bits& bits = canvas();
    DoneBits done;
    bool flip = false;
    for (auto _ : state) {
        CreateDoneBitsTable(done, bits);
        // Alternate colours so that every iteration fills the same pixels again.
        BitsFill(bits, region, done, kW / 2, kH / 2, flip ? 0x646464 : 0xC8C8C8, 0, 100);
        flip = !flip;
        benchmark::DoNotOptimize(bits.data());
    }
    state.SetItemsProcessed(state.iterations() * int64_t(kW) * kH);
}

void BM_FillWholeImage(benchmark::State& state) {
    fillWhole(state, Region::rect(0, 0, kW, kH));
}
BENCHMARK(BM_FillWholeImage)->Unit(benchmark::kMillisecond);

void BM_FillEllipseSelection(benchmark::State& state) {
    fillWhole(state, Region::ellipse(0, 0, kW, kH));
}
BENCHMARK(BM_FillEllipseSelection)->Unit(benchmark::kMillisecond);

// 40 lines corner to corner and back across the image, at half pressure.
void BM_LineStroke(benchmark::State& state) {
    Bits& bits = canvas();
    const Region region = Region::rect(0, 0, kW, kH);
    DoneBits done(kW, kH);
    for (auto _ : state) {
        for (int32_t i = 0; i < 40; ++i)
            BitsLine(bits, region, done, 0, i * 10, kW - 1, kH - 1 - i * 10, 0x204060, 50);
        benchmark::DoNotOptimize(bits.data());
    }
    state.SetItemsProcessed(state.iterations() * 40 * int64_t(kW));
}
BENCHMARK(BM_LineStroke)->Unit(benchmark::kMillisecond);

// One brush stroke of size `range(0)` along the image's diagonal, with a fresh table.
void BM_BrushStroke(benchmark::State& state) {
    Bits& bits = canvas();
    const Region region = Region::rect(0, 0, kW, kH);
    const int32_t size = int32_t(state.range(0));
    DoneBits done;
    for (auto _ : state) {
        CreateDoneBitsTable(done, bits);
        BitsBrushLine(bits, region, done, 50, 50, kW - 50, kH - 50, size, 60, 0x3080F0,
                      BrushKind::Brush);
        benchmark::DoNotOptimize(bits.data());
    }
    state.SetItemsProcessed(state.iterations() * int64_t(kW - 100));
}
BENCHMARK(BM_BrushStroke)->Arg(5)->Arg(21)->Arg(61)->Unit(benchmark::kMillisecond);

// A soften stroke (kind 1), size 21, same path.
void BM_SoftenStroke(benchmark::State& state) {
    Bits& bits = canvas();
    const Region region = Region::rect(0, 0, kW, kH);
    DoneBits done;
    for (auto _ : state) {
        CreateDoneBitsTable(done, bits);
        BitsBrushLine(bits, region, done, 50, 50, kW - 50, kH - 50, 21, 60, 0,
                      BrushKind::Soften);
        benchmark::DoNotOptimize(bits.data());
    }
    state.SetItemsProcessed(state.iterations() * int64_t(kW - 100));
}
BENCHMARK(BM_SoftenStroke)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
