// Speed of the optimizer: every preset of the Optimize Box on a 1-megapixel (1280 x 800)
// and a 24-megapixel (6000 x 4000) picture, as the box runs it (the file written into
// memory and read back); the stages of "GIF-256 Colors" apart; the quantizers side by
// side, each with the error its palette leaves (PSNR of the nearest-colour mapping); and
// the worker's round trip from a request to its report.
//
// Run: build/bin/bench_web [--benchmark_filter=...]. One core: the optimizer runs each
// request on one thread (libimagequant's OpenMP is held to one).
#include "web/colormaps.h"
#include "web/dither.h"
#include "web/encoders.h"
#include "web/optimize.h"
#include "web/optimizeworker.h"
#include "web/quantize.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <condition_variable>
#include <map>
#include <mutex>

namespace ostrivex {
namespace {

// Smooth noise: a lattice of random values every `cell` pixels, blended with a smooth step.
class ValueNoise {
public:
    ValueNoise(int w, int h, int cell, uint32_t seed) : cell_(cell), gw_(w / cell + 2) {
        values_.resize(size_t(gw_) * size_t(h / cell + 2));
        for (float& v : values_) v = float((seed = seed * 1103515245u + 12345u) >> 16 & 1023) / 1023.0f;
    }
    float at(int x, int y) const {
        const int gx = x / cell_, gy = y / cell_;
        const float fx = smooth(float(x % cell_) / cell_), fy = smooth(float(y % cell_) / cell_);
        const auto v = [this](int i, int j) { return values_[size_t(j) * size_t(gw_) + size_t(i)]; };
        const float top = v(gx, gy) + (v(gx + 1, gy) - v(gx, gy)) * fx;
        const float bottom = v(gx, gy + 1) + (v(gx + 1, gy + 1) - v(gx, gy + 1)) * fx;
        return top + (bottom - top) * fy;
    }

private:
    static float smooth(float t) { return t * t * (3 - 2 * t); }
    int cell_, gw_;
    std::vector<float> values_;
};

// Like a photograph as far as a quantizer can tell: a landscape of soft shapes in four
// octaves of noise per channel with the light shared between channels, a few hard-edged
// discs, and sensor grain of a few levels.
Bits photo(int32_t w, int32_t h) {
    const int base = std::max(w, h) / 6;
    std::vector<ValueNoise> octaves;
    for (int o = 0; o < 4; ++o)
        for (int c = 0; c < 4; ++c) octaves.emplace_back(w, h, std::max(2, base >> o), uint32_t(17 + o * 4 + c));
    Bits b(w, h);
    // Grain from a well-mixed hash: the low bits of a plain linear congruential sequence
    // repeat with a short period, and zlib's long searches find those repeats.
    uint32_t s = 5;
    const auto next = [&s] {
        uint32_t z = (s += 0x9E3779B9u);
        z = (z ^ (z >> 16)) * 0x85EBCA6Bu;
        z = (z ^ (z >> 13)) * 0xC2B2AE35u;
        return z ^ (z >> 16);
    };
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* p = b.row(y);
        for (int32_t x = 0; x < w; ++x, p += 4) {
            float ch[4] = {0, 0, 0, 0};
            for (int o = 0; o < 4; ++o)
                for (int c = 0; c < 4; ++c) ch[c] += octaves[size_t(o * 4 + c)].at(x, y) / float(1 << o);
            const float light = ch[3] / 1.875f;
            for (int c = 0; c < 3; ++c) {
                const float grain = float(int(next() & 7) - 3);
                const float v = 255.0f * (0.35f * ch[c] / 1.875f + 0.65f * light) + grain;
                p[c] = uint8_t(std::clamp(v, 0.0f, 255.0f));
            }
            // A few discs of one colour (signs, windows, a ball): hard edges.
            for (int k = 0; k < 5; ++k) {
                const int cx = w * (k + 1) / 6, cy = h / 2 + (k % 2 ? h / 5 : -h / 5), r = h / 12;
                if ((x - cx) * (x - cx) + (y - cy) * (y - cy) < r * r)
                    p[0] = uint8_t(40 * k), p[1] = uint8_t(200 - 30 * k), p[2] = uint8_t(90 + 30 * k);
            }
        }
    }
    return b;
}

// A web graphic: a clean two-colour diagonal gradient under a few flat shapes.
Bits gradient(int32_t w, int32_t h) {
    Bits b(w, h);
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* p = b.row(y);
        for (int32_t x = 0; x < w; ++x, p += 4) {
            const double t = double(x + y) / double(w + h);
            p[2] = uint8_t(std::lround(0x20 + t * (0xF0 - 0x20)));
            p[1] = uint8_t(std::lround(0x40 + t * (0xC0 - 0x40)));
            p[0] = uint8_t(std::lround(0xA0 + t * (0x80 - 0xA0)));
            if (x > w / 4 && x < w / 2 && y > h / 4 && y < h / 2) p[0] = 250, p[1] = 250, p[2] = 250;
        }
    }
    return b;
}

const Bits& picture(int32_t w, int32_t h, bool graphic = false) {
    static std::map<std::tuple<int32_t, int32_t, bool>, Bits> cache;
    auto& slot = cache[{w, h, graphic}];
    if (slot.empty()) slot = graphic ? gradient(w, h) : photo(w, h);
    return slot;
}

void BM_Preset(benchmark::State& state) {
    const int preset = int(state.range(0));
    const int32_t w = int32_t(state.range(1)), h = int32_t(state.range(2));
    const Bits& p = picture(w, h);
    const OptimizeSettings s = SettingsForPreset(preset);
    OptimizeResult r;
    for (auto _ : state) {
        r = Optimize(p, s);
        benchmark::DoNotOptimize(r.bytes.data());
    }
    state.SetLabel(s.PresetName);
    state.counters["bytes"] = double(r.bytes.size());
    state.counters["PSNR"] = Psnr(p, r.picture);
    state.SetItemsProcessed(int64_t(state.iterations()) * w * h);
}
void presetArgs(benchmark::internal::Benchmark* b) {
    for (int i = 0; i < 16; ++i) b->Args({i, 1280, 800});
    for (int i = 0; i < 16; ++i) b->Args({i, 6000, 4000});
}
BENCHMARK(BM_Preset)->Apply(presetArgs)->Unit(benchmark::kMillisecond)->MinTime(0.3);

// "GIF-256 Colors", the file only (no read back), and the stages it is made of.
void BM_Gif256FileOnly(benchmark::State& state) {
    const Bits& p = picture(1280, 800);
    const OptimizeSettings s = SettingsForPreset(7);
    for (auto _ : state) benchmark::DoNotOptimize(Optimize(p, s, {}, false).bytes.size());
}
BENCHMARK(BM_Gif256FileOnly)->Unit(benchmark::kMillisecond);

// The quantizers: time to make the palette, and the error the picture keeps when each
// pixel takes its nearest entry.
void BM_Quantizer(benchmark::State& state) {
    const int which = int(state.range(0)), colours = int(state.range(1));
    const bool graphic = state.range(2) != 0;
    const Bits& p = picture(1280, 800, graphic);
    Palette palette;
    for (auto _ : state) {
        palette = which == 0   ? OptimalPalette(p, colours, {}, false)
                  : which == 1 ? FreeImagePalette(p, colours, FreeImageQuantizer::Wu)
                               : FreeImagePalette(p, colours, FreeImageQuantizer::NeuQuant);
        benchmark::DoNotOptimize(palette.data());
    }
    const std::vector<uint8_t> idx = MapToPalette(p, palette, DitherNone, {}, false);
    Bits mapped(p.width(), p.height());
    for (int32_t y = 0; y < p.height(); ++y)
        for (int32_t x = 0; x < p.width(); ++x) {
            const PaletteColour& c = palette[idx[size_t(y) * size_t(p.width()) + size_t(x)]];
            mapped(0, x, y) = c.b, mapped(1, x, y) = c.g, mapped(2, x, y) = c.r;
        }
    state.SetLabel(std::string(which == 0 ? "libimagequant" : which == 1 ? "FreeImage Wu" : "FreeImage NeuQuant") +
                   (graphic ? ", gradient" : ", photo"));
    state.counters["PSNR"] = Psnr(p, mapped);
}
BENCHMARK(BM_Quantizer)
    ->ArgsProduct({{0, 1, 2}, {256, 16}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(0.3);

void BM_MapNearest256(benchmark::State& state) {
    const Bits& p = picture(1280, 800);
    const Palette palette = OptimalPalette(p, 256, {}, false);
    const int32_t mode = int32_t(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(MapToPalette(p, palette, mode, SpreadOf(MapOptimal, 8, palette), false).data());
    state.SetItemsProcessed(int64_t(state.iterations()) * p.width() * p.height());
}
BENCHMARK(BM_MapNearest256)->Arg(DitherNone)->Arg(DitherOrdered)->Unit(benchmark::kMillisecond);

void BM_GifEncode256(benchmark::State& state) {
    const Bits& p = picture(1280, 800);
    IndexedPicture ip{p.width(), p.height(), OptimalPalette(p, 256, {}, false), {}};
    ip.indices = MapToPalette(p, ip.palette, DitherNone, {}, false);
    std::vector<uint8_t> out;
    std::string error;
    for (auto _ : state) benchmark::DoNotOptimize(EncodeGif(ip, 8, false, out, error));
    state.SetItemsProcessed(int64_t(state.iterations()) * p.width() * p.height());
}
BENCHMARK(BM_GifEncode256)->Unit(benchmark::kMillisecond);

void BM_Decode(benchmark::State& state) {
    const Bits& p = picture(1280, 800);
    const std::vector<uint8_t> bytes = Optimize(p, SettingsForPreset(int(state.range(0))), {}, false).bytes;
    Bits out;
    for (auto _ : state) benchmark::DoNotOptimize(DecodePicture(bytes, out));
    state.SetLabel(SettingsForPreset(int(state.range(0))).PresetName);
}
BENCHMARK(BM_Decode)->Arg(7)->Arg(12)->Unit(benchmark::kMillisecond);

// JPEG alone, in megapixels per second (items are pixels).
void BM_JpegEncode(benchmark::State& state) {
    const int32_t w = int32_t(state.range(0)), h = int32_t(state.range(1));
    const Bits& p = picture(w, h);
    const OptimizeSettings s = SettingsForPreset(12);
    std::vector<uint8_t> out;
    std::string error;
    for (auto _ : state) benchmark::DoNotOptimize(EncodeTrueColour(p, s, out, error));
    state.SetItemsProcessed(int64_t(state.iterations()) * w * h);
}
BENCHMARK(BM_JpegEncode)->Args({1280, 800})->Args({6000, 4000})->Unit(benchmark::kMillisecond);

// From a request to the worker's report on the requesting side, as the Optimize view sees
// it after a stroke: the picture handed over, "GIF-256 Colors" made and read back.
void BM_WorkerRoundTrip(benchmark::State& state) {
    std::mutex m;
    std::condition_variable cv;
    uint64_t done = 0;
    OptimizeWorker worker([&](uint64_t ticket, OptimizeResult) {
        const std::lock_guard lock(m);
        done = ticket;
        cv.notify_all();
    });
    const Bits& p = picture(1280, 800);
    for (auto _ : state) {
        auto copy = std::make_shared<const Bits>(p); // the document's pixels at the release
        const uint64_t ticket = worker.Request(std::move(copy), SettingsForPreset(7));
        std::unique_lock lock(m);
        cv.wait(lock, [&] { return done == ticket; });
    }
}
BENCHMARK(BM_WorkerRoundTrip)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace ostrivex

BENCHMARK_MAIN();
