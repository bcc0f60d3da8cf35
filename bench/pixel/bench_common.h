// Shared pieces of the pixel benchmarks.
//
// Every benchmark reports items processed = output pixels, so Google Benchmark prints
// items_per_second; the reporter of bench_main.cpp adds the rate in megapixels per second
// and the ratio to the memcpy of the same image size.
#pragma once

#include "pixel/bitfilter.h"
#include "pixel/bits.h"
#include "pixel/region.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>

namespace ostrivex::bench {

// A w x h image with varied bytes in every channel (a cheap deterministic pattern).
Bits patternImage(int32_t w, int32_t h);

// A filter object loaded with a pattern image of w x h and a region of the whole image.
// The object and region live as long as the benchmark process (one per size).
cBitFilter& loadedFilter(int32_t w, int32_t h);
// The same image with an ellipse selection inscribed in the image (about 78% of it).
cBitFilter& ellipseFilter(int32_t w, int32_t h);

// A filter object loaded with a w x h picture of broad colour gradients and a little grain,
// closer to a photograph than the noise of the pattern (no region: the whole image).
cBitFilter& photoFilter(int32_t w, int32_t h);

// The same image with a centred ellipse selection of half its area.
cBitFilter& halfEllipseFilter(int32_t w, int32_t h);

// Objects of their own (not shared with the rows above) for the runs that change their
// image: the whole image, or the centred ellipse of half of it.
cBitFilter& inPlaceFilter(int32_t w, int32_t h, bool halfEllipse);

// The editor's path: with the reuse flag on, op(filter) and the result given straight back
// with SetBits (a move), once per iteration. Reports every pixel of the image, or with
// selectedOnly the pixels of the region.
void runFilterInPlace(benchmark::State& state, cBitFilter& f,
                      const std::function<Bits(cBitFilter&)>& op, bool selectedOnly);

// The editor's path for a filter whose result changes what the next run would see: each
// iteration runs op in place on a filter object holding source's pixels, and the pixels
// are put back (untimed) before the next.
void runFilterInPlaceRestored(benchmark::State& state, const Bits& source,
                              const std::function<Bits(cBitFilter&)>& op);

// Runs op(filter) once per iteration and reports w*h pixels an iteration.
void runFilter(benchmark::State& state, cBitFilter& f,
               const std::function<Bits(cBitFilter&)>& op);

// As runFilter, but reports only the pixels of the filter's region: the rate per
// selected pixel.
void runFilterSelected(benchmark::State& state, cBitFilter& f,
                       const std::function<Bits(cBitFilter&)>& op);

} // namespace ostrivex::bench

// Registers BM_<name> at both sizes. `expr` is an expression on `f` returning Bits.
#define OSTRIVEX_PIXEL_BENCH(name, expr)                                                  \
    static void BM_##name(benchmark::State& state) {                                     \
        const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));          \
        ::ostrivex::bench::runFilter(state, ::ostrivex::bench::loadedFilter(w, h),       \
                                     [](::ostrivex::cBitFilter& f) { return (expr); });  \
    }                                                                                    \
    BENCHMARK(BM_##name)->Args({6000, 4000})->Args({2000, 1500})->Unit(benchmark::kMillisecond)
