// Helpers of the filter tests: running a filter over a region, a filter object loaded with
// its pixels and region, and the tone and colour filters as cases, each with settings that
// change a patterned picture, for the tests that put every filter through the same checks.
#pragma once

#include "pixel/bitfilter.h"
#include "pixel/region.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace ostrivex::test {

// Runs op on src with a region of the whole image (or the given region).
inline Bits run(const Bits& src, const std::function<Bits(cBitFilter&)>& op,
                const Region* region = nullptr) {
    cBitFilter f;
    f.SetBits(src);
    const Region whole = Region::rect(0, 0, src.width(), src.height());
    f.BitsRegion(region ? region : &whole);
    return op(f);
}

// Every colour once: 4096 x 4096 pixels, blue from the low bits of the pixel number.
inline const Bits& everyColour() {
    static const Bits all = [] {
        Bits src(4096, 4096);
        for (int y = 0; y < 4096; ++y)
            for (int x = 0; x < 4096; ++x) {
                const uint32_t c = uint32_t(y) * 4096u + uint32_t(x);
                src(0, x, y) = uint8_t(c & 255u);
                src(1, x, y) = uint8_t((c >> 8) & 255u);
                src(2, x, y) = uint8_t(c >> 16);
                src(3, x, y) = uint8_t(x * 7 + y);
            }
        return src;
    }();
    return all;
}

// A filter object holding b, with the region r (the whole image if none is given).
struct Loaded {
    cBitFilter f;
    Region region;
    Loaded(const Bits& b, Region r) : region(std::move(r)) {
        f.SetBits(b);
        f.BitsRegion(&region);
    }
    explicit Loaded(const Bits& b) : Loaded(b, Region::rect(0, 0, b.width(), b.height())) {}
};

struct FilterCase {
    std::string name;
    std::function<Bits(cBitFilter&)> op;
};

inline std::vector<FilterCase> toneFilters() {
    return {
        {"BRIGHTNESS", [](cBitFilter& f) { return f.BRIGHTNESS(-40); }},
        {"ShiftRGB", [](cBitFilter& f) { return f.ShiftRGB(30, -60, 200); }},
        {"Invert", [](cBitFilter& f) { return f.Invert(); }},
        {"GreyScale", [](cBitFilter& f) { return f.GreyScale(); }},
        {"Threshold", [](cBitFilter& f) { return f.Threshold(120); }},
        {"SATURATION", [](cBitFilter& f) { return f.SATURATION(150); }},
        {"Reduction", [](cBitFilter& f) { return f.Reduction(40); }},
        {"GammaCorrection", [](cBitFilter& f) { return f.GammaCorrection(-30); }},
        {"KillChannel", [](cBitFilter& f) { return f.KillChannel(false, true, true); }},
        {"SpecialColors", [](cBitFilter& f) { return f.SpecialColors(-1, -1, 0); }},
        {"COLORIZE", [](cBitFilter& f) { return f.COLORIZE(0.5f, 0.25f, 1.0f); }},
        {"Contrast", [](cBitFilter& f) { return f.Contrast(120); }},
        {"Equalize", [](cBitFilter& f) { return f.Equalize(); }},
        {"ISOLATE", [](cBitFilter& f) { return f.ISOLATE(0x406080u, 0x123456u, 90); }},
        {"REPLACE", [](cBitFilter& f) { return f.REPLACE(0x406080u, 0xFFFFFFu, 150); }},
        {"Shift", [](cBitFilter& f) { return f.Shift(0x406080u, -90, 150); }},
        {"ReplaceHS", [](cBitFilter& f) { return f.ReplaceHS(0x406080u, 0u, 100, 100, 200); }},
        {"ReplaceL", [](cBitFilter& f) { return f.ReplaceL(0x406080u, 0u, 60, 200); }},
        {"RotateH", [](cBitFilter& f) { return f.RotateH(45, 90); }},
        {"RotateL", [](cBitFilter& f) { return f.RotateL(20, 40); }},
        {"StretchH", [](cBitFilter& f) { return f.StretchH(10, 80, 40); }},
        {"SwapBanks", [](cBitFilter& f) { return f.SwapBanks(2); }},
        {"SwapRGB",
         [](cBitFilter& f) { return f.SwapRGB(1, 0, 2, true, false, true, false, false, false); }},
        {"ClassyColors", [](cBitFilter& f) { return f.ClassyColors(7); }},
    };
}

} // namespace ostrivex::test
