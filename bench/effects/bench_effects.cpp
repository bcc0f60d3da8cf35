// The layer effects: the preview's thumbnail run of every node of the effect tree, and
// every node on a full-size layer.
//
//   Thumb/<node>      one run at the largest slider value on 195 x 145 (the 200 x 150
//                     thumbnail frame less 5), the way the dialog's preview calls the
//                     library: goal under 16 ms.
//   Full/<node>/<w>x<h>  one run at three quarters of the slider on a 2000 x 2000 and a
//                     6000 x 4000 layer; the MP/s column is the rate.
//
// The picture is photo-like (broad gradients with grain) with the key colour over a tenth
// of it, as a layer with a transparent margin has.
#include "pixel/allocator.h"
#include "pixel/effects/effecttree.h"
#include "pixel/effects/frame.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <map>
#include <string>

using namespace ostrivex;
using namespace ostrivex::effects;

namespace {

constexpr int32_t kKey = 0x00FF00FF;

Bits photoLike(int32_t w, int32_t h) {
    Bits b(w, h);
    uint32_t s = 777u;
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* p = b.row(y);
        for (int32_t x = 0; x < w; ++x) {
            s = s * 1103515245u + 12345u;
            const int32_t grain = int32_t(s >> 27) - 16;
            const double u = double(x) / w, v = double(y) / h;
            const int32_t r = int32_t(128 + 90 * std::sin(6.0 * u + 2.0 * v)) + grain;
            const int32_t g = int32_t(120 + 80 * std::cos(4.0 * v - 3.0 * u)) + grain;
            const int32_t bl = int32_t(110 + 70 * std::sin(9.0 * u * v + 1.0)) + grain;
            if (x < w / 10) {
                store32(p + 4 * x, wordOf(uint32_t(kKey)));
                continue;
            }
            p[4 * x] = uint8_t(std::clamp(bl, 0, 255));
            p[4 * x + 1] = uint8_t(std::clamp(g, 0, 255));
            p[4 * x + 2] = uint8_t(std::clamp(r, 0, 255));
        }
    }
    return b;
}

const Bits& picture(int32_t w, int32_t h) {
    static std::map<std::pair<int32_t, int32_t>, Bits> pictures;
    auto it = pictures.find({w, h});
    if (it == pictures.end()) it = pictures.emplace(std::pair{w, h}, photoLike(w, h)).first;
    return it->second;
}

void runNode(benchmark::State& state, const EffectNode* node, int32_t w, int32_t h, bool largest) {
    const Bits& src = picture(w, h);
    const int32_t most = EffectMaximum(*node, w, h);
    const int32_t value = !node->hasDialog() ? 0 : largest ? most : node->min + (most - node->min) * 3 / 4;
    const std::vector<double> values = NodeValues(*node, value, 0x2080F0, 0x808080);
    const EffectMethod* m = NodeMethod(*node);
    Bits dest;
    m->run(dest, src, nullptr, values, kKey); // untimed first run: the destination's pages
    for (auto _ : state) {
        m->run(dest, src, nullptr, values, kKey);
        benchmark::DoNotOptimize(dest.data());
    }
    const double pixels = double(w) * h;
    state.counters["MP/s"] = benchmark::Counter(pixels * double(state.iterations()) / 1e6,
                                                benchmark::Counter::kIsRate);
}

} // namespace

int main(int argc, char** argv) {
    TuneAllocatorForImages();
    for (const EffectNode& n : EffectTree()) {
        if (n.isHeading()) continue;
        const std::string name = std::to_string(n.number) + "_" + n.label;
        benchmark::RegisterBenchmark(("Thumb/" + name).c_str(), runNode, &n, 195, 145, true)
            ->Unit(benchmark::kMillisecond);
        for (const auto& [w, h] : {std::pair{2000, 2000}, std::pair{6000, 4000}})
            benchmark::RegisterBenchmark(("Full/" + name + "/" + std::to_string(w) + "x" + std::to_string(h)).c_str(),
                                         runNode, &n, w, h, false)
                ->Unit(benchmark::kMillisecond)
                ->MinTime(0.2);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
