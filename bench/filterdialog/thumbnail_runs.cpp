// A thumbnail run of each filter dialog row: the row's call on a 160 x 110 picture with
// the values the dialog opens with (sliders at their defaults less their offsets, options
// at their defaults, the centre in the middle).
#include "operations/filter_table.h"
#include "../bench_pattern.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

using namespace ostrivex;

constexpr int32_t kW = 160, kH = 110;

Bits thumbnail() { return bench::PatternImage(kW, kH); }

FilterValues startValues(const FilterRow& row) {
    FilterValues v;
    for (size_t i = 0; i < row.sliders.size(); ++i) {
        const FilterSliderRow& s = row.sliders[i];
        const int32_t offset = s.centred ? int32_t(s.maximum / 2) : 0;
        v.s[i] = s.defaultValue - offset;
    }
    v.option = row.optionLabel && row.optionDefault;
    v.colours = {0xFFFFFF, 0};
    if (row.frame == FilterFrame::Curtain) {
        v.style = kCurtainStyle;
        v.styleValue = 1;
    }
    return v;
}

void BM_ThumbnailRun(benchmark::State& state) {
    const FilterRow& row = *FindFilterRow(int32_t(state.range(0)));
    state.SetLabel(row.title);
    const Region region = Region::rect(0, 0, kW, kH);
    cBitFilter f;
    f.SetBits(thumbnail());
    f.BitsRegion(&region);
    const FilterValues v = startValues(row);
    for (auto _ : state) {
        Bits out = row.run(f, v);
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK(BM_ThumbnailRun)->DenseRange(0, kFilterCount - 1)->Unit(benchmark::kMicrosecond);

} // namespace
