// Colour filters: the colour-distance family (ISOLATE, REPLACE, Shift, ReplaceL), the
// channel kills and the channel shuffles (SwapBanks, SwapRGB, ClassyColors).
#include "pixel/bitfilter.h"
#include "pixel/cpuclones.h"
#include "pixel/tone_kernels.h"
#include "pixel/tone_wide.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace ostrivex {

using namespace tone;

namespace {

// Keeps the channels whose mask byte is 0xFF and zeroes the others (channel 3 kept).
void maskChannels(const uint8_t* s, uint8_t* p, int32_t n, uint32_t keep) {
    keep |= kMarkerMask;
    for (int32_t i = 0; i < n; ++i)
        store32(p + 4 * i, load32(s + 4 * i) & keep);
}

} // namespace

Bits cBitFilter::KillChannel(bool red, bool green, bool blue) {
    const uint32_t keep =
        (blue ? 0u : 0x0000FFu) | (green ? 0u : 0x00FF00u) | (red ? 0u : 0xFF0000u);
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { maskChannels(s, p, n, keep); });
}

Bits cBitFilter::SpecialColors(int32_t red, int32_t green, int32_t blue) {
    // -1 (true) keeps the channel; anything else clears it.
    const uint32_t keep = (blue == -1 ? 0x0000FFu : 0u) | (green == -1 ? 0x00FF00u : 0u) |
                          (red == -1 ? 0xFF0000u : 0u);
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { maskChannels(s, p, n, keep); });
}

namespace {
// ISOLATE over n pixels, in integers only (see cpuclones.h).
OSTRIVEX_CPU_CLONES void isolateRun(const uint8_t* __restrict s, uint8_t* __restrict p,
                                    int32_t n, int32_t b1, int32_t g1, int32_t r1, int32_t t,
                                    uint32_t back) {
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        const int32_t d = colourDistance(int32_t(v & 255u), int32_t((v >> 8) & 255u),
                                         int32_t((v >> 16) & 255u), b1, g1, r1);
        // Without a branch (see Threshold): far pixels take the back colour.
        const uint32_t far = 0u - uint32_t(d >= t);
        store32(p + 4 * i, (v & ~(far & 0x00FFFFFFu)) | (back & far));
    }
}
} // namespace

Bits cBitFilter::ISOLATE(uint32_t colour, uint32_t backColour, int32_t tolerance) {
    const int32_t t = distanceThreshold(tolerance);
    const int32_t r1 = colourR(colour), g1 = colourG(colour), b1 = colourB(colour);
    const uint32_t back = uint32_t(colourB(backColour)) | uint32_t(colourG(backColour)) << 8 |
                          uint32_t(colourR(backColour)) << 16;
    return pointFilter([=](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
        isolateRun(s, p, n, b1, g1, r1, t, back);
    });
}

namespace {

// The blends of REPLACE, ReplaceL and Shift written without branches, so that they run as
// vector code: every pixel's blend is computed, then kept or dropped by its test. Rounding
// to even is the addition and subtraction of 1.5 * 2^52, exact for these magnitudes.
// As in the hue kernels: no floating-point trap is ever enabled, and saying so lets the
// compiler turn the selects into vector blends. Results are unchanged.
#pragma GCC push_options
#pragma GCC optimize("no-trapping-math")

struct BlendSpec {
    int32_t b1, g1, r1; // the colour the distance is measured from
    int32_t b2, g2, r2; // REPLACE, ReplaceL: the new colour
    int32_t t;          // distance threshold
    int32_t l1, lT;     // ReplaceL: luminance of the colour and its tolerance
    int32_t shift;      // Shift: the offset of the shift table
};

inline double roundEven(double x) {
    const double k = 6755399441055744.0;
    return (x + k) - k;
}
inline uint32_t blendTo(int32_t c, int32_t target, double k) {
    return uint32_t(int32_t(roundEven(double(c) + double(target - c) * k)));
}

enum class BlendKind { Replace, ReplaceL, Shift };

template <BlendKind kind>
inline __attribute__((always_inline)) void blendBody(const uint8_t* s, uint8_t* p, int32_t n,
                                                     const BlendSpec& q) {
    for (int32_t i = 0; i < n; ++i) {
        uint32_t v;
        __builtin_memcpy(&v, s + 4 * i, 4);
        const int32_t b = int32_t(v & 255u), g = int32_t((v >> 8) & 255u),
                      r = int32_t((v >> 16) & 255u);
        const int32_t d =
            (b - q.b1) * (b - q.b1) + (g - q.g1) * (g - q.g1) + (r - q.r1) * (r - q.r1);
        // k = 1 - d / t, held as a single.
        const double k = double(float(1.0 - double(d) / double(q.t)));
        bool take;
        uint32_t nb, ng, nr;
        if constexpr (kind == BlendKind::Shift) {
            take = d < q.t; // strictly nearer
            const int32_t sb = b + q.shift, sg = g + q.shift, sr = r + q.shift;
            const int32_t tb = sb < 0 ? 0 : (sb > 255 ? 255 : sb);
            const int32_t tg = sg < 0 ? 0 : (sg > 255 ? 255 : sg);
            const int32_t tr = sr < 0 ? 0 : (sr > 255 ? 255 : sr);
            nb = blendTo(b, tb, k);
            ng = blendTo(g, tg, k);
            nr = blendTo(r, tr, k);
        } else {
            take = d <= q.t;
            if constexpr (kind == BlendKind::ReplaceL) {
                const int32_t l = (b + g + r) / 3;
                const int32_t dl = l - q.l1;
                take = take & (dl <= q.lT) & (-dl <= q.lT);
            }
            nb = blendTo(b, q.b2, k);
            ng = blendTo(g, q.g2, k);
            nr = blendTo(r, q.r2, k);
        }
        const uint32_t blended = (v & 0xFF000000u) | nb | (ng << 8) | (nr << 16);
        const uint32_t result = take ? blended : v;
        __builtin_memcpy(p + 4 * i, &result, 4);
    }
}

__attribute__((target_clones("avx2", "default"))) void replaceRun(const uint8_t* s, uint8_t* p,
                                                                  int32_t n, const BlendSpec& q) {
    blendBody<BlendKind::Replace>(s, p, n, q);
}
__attribute__((target_clones("avx2", "default"))) void replaceLRun(const uint8_t* s, uint8_t* p,
                                                                   int32_t n, const BlendSpec& q) {
    blendBody<BlendKind::ReplaceL>(s, p, n, q);
}
__attribute__((target_clones("avx2", "default"))) void shiftRun(const uint8_t* s, uint8_t* p,
                                                                int32_t n, const BlendSpec& q) {
    blendBody<BlendKind::Shift>(s, p, n, q);
}

#pragma GCC pop_options

BlendSpec blendSpec(uint32_t colour, uint32_t newColour, int32_t t) {
    BlendSpec q{};
    q.r1 = colourR(colour);
    q.g1 = colourG(colour);
    q.b1 = colourB(colour);
    q.r2 = colourR(newColour);
    q.g2 = colourG(newColour);
    q.b2 = colourB(newColour);
    q.t = t;
    return q;
}

} // namespace

// The blend of the replace filters: k = 1 - d / t held as a single, each channel
// c = byte(c + (c2 - c) * k) summed in double. Since 0 <= k <= 1 the result stays inside
// 0..255, so the byte conversion cannot fail.
Bits cBitFilter::REPLACE(uint32_t colour, uint32_t newColour, int32_t tolerance) {
    const BlendSpec q = blendSpec(colour, newColour, distanceThreshold(tolerance));
    return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) { replaceRun(s, p, n, q); });
}

Bits cBitFilter::Shift(uint32_t colour, int32_t shift, int32_t tolerance) {
    // The target of each channel is the shift table M[c] = clamp(c + shift).
    BlendSpec q = blendSpec(colour, 0u, distanceThreshold(tolerance));
    q.shift = shift;
    return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) { shiftRun(s, p, n, q); });
}

Bits cBitFilter::ReplaceL(uint32_t colour, uint32_t newColour, int32_t lumTolerance,
                          int32_t applyTolerance) {
    BlendSpec q = blendSpec(colour, newColour, distanceThreshold(applyTolerance));
    q.lT = vbRound(lumTolerance * 2.55);
    q.l1 = (q.r1 + q.g1 + q.b1) / 3;
    return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) { replaceLRun(s, p, n, q); });
}

namespace {
// Output channel k takes source channel Sk (channel 0 is bits 0..7). Fixed shifts let the
// loop run as vector code.
template <uint32_t S0, uint32_t S1, uint32_t S2>
void swapChannels(const uint8_t* s, uint8_t* p, int32_t n) {
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        store32(p + 4 * i, (v & kMarkerMask) | ((v >> (8 * S0)) & 255u) |
                               (((v >> (8 * S1)) & 255u) << 8) | (((v >> (8 * S2)) & 255u) << 16));
    }
}
} // namespace

Bits cBitFilter::SwapBanks(int32_t mode) {
    void (*swap)(const uint8_t*, uint8_t*, int32_t) = nullptr;
    switch (mode) {
    case 1:
        swap = swapChannels<1, 2, 0>;
        break; // "RGB2BRG"
    case 2:
        swap = swapChannels<2, 0, 1>;
        break; // "RGB2GBR"
    case 3:
        swap = swapChannels<1, 0, 2>;
        break; // "RGB2RBG"
    case 4:
        swap = swapChannels<2, 1, 0>;
        break; // "RGB2BGR"
    case 5:
        swap = swapChannels<0, 2, 1>;
        break; // "RGB2GRB"
    default:
        break; // any other mode leaves every pixel as it is
    }
    return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
        if (swap)
            swap(s, p, n);
        else
            std::memcpy(p, s, size_t(n) * 4u);
    });
}

Bits cBitFilter::SwapRGB(int32_t redSource, int32_t greenSource, int32_t blueSource, bool invertRed,
                         bool invertGreen, bool invertBlue, bool killRed, bool killGreen,
                         bool killBlue) {
    // Per output channel (blue, green, red): the shift that brings its source byte down,
    // the pattern it is XORed with (inverting) and the mask it is ANDed with (killing).
    // Killing wins over inverting. A source outside the pixel's four bytes fails its read,
    // and that channel keeps its value.
    const int32_t sources[3] = {blueSource, greenSource, redSource};
    const bool inverts[3] = {invertBlue, invertGreen, invertRed};
    const bool kills[3] = {killBlue, killGreen, killRed};
    uint32_t shift[3], flip[3], keep[3];
    for (int c = 0; c < 3; ++c) {
        const bool readable = sources[c] >= 0 && sources[c] <= 3;
        shift[c] = uint32_t(readable ? sources[c] : c) * 8u;
        flip[c] = readable && inverts[c] ? 255u : 0u;
        keep[c] = readable && kills[c] ? 0u : 255u;
    }
    return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
        const uint32_t s0 = shift[0], s1 = shift[1], s2 = shift[2];
        const uint32_t f0 = flip[0], f1 = flip[1], f2 = flip[2];
        const uint32_t k0 = keep[0], k1 = keep[1], k2 = keep[2];
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t v = load32(s + 4 * i);
            const uint32_t b = (((v >> s0) & 255u) ^ f0) & k0;
            const uint32_t g = (((v >> s1) & 255u) ^ f1) & k1;
            const uint32_t r = (((v >> s2) & 255u) ^ f2) & k2;
            store32(p + 4 * i, packPixel(v, b, g, r));
        }
    });
}

namespace {

// byte() of a formula that stays in range for every source byte.
inline uint32_t roundedByte(double v) {
    return uint32_t(clampByte(vbRound(v)));
}

// The low byte of abs(not(a)), with not the complement of the 32-bit value.
inline uint32_t retroByte(int32_t a) {
    return uint32_t(std::abs(~a)) & 255u;
}

uint32_t classyPixel(int32_t mode, uint32_t v, const double* atanTable) {
    const int32_t b = int32_t(v & 255u), g = int32_t((v >> 8) & 255u),
                  r = int32_t((v >> 16) & 255u);
    uint32_t nb = uint32_t(b), ng = uint32_t(g), nr = uint32_t(r);
    switch (mode) {
    case 0: // "SOFTBLUE"
        nb = roundedByte(b * atanTable[g] / 1.9);
        ng = roundedByte((r * 0.99 + g * 0.99) / 2.0);
        nr = uint32_t(g);
        break;
    case 1: // "SOFTGREEN"
        ng = roundedByte((r * 0.99 + g * 0.99) / 2.0);
        nr = uint32_t(g);
        break;
    case 2: // "PURPLE"
        nb = uint32_t(r);
        nr = roundedByte((r * 0.99 + b * 0.99) / 2.0);
        break;
    case 3: // "SOFTRED"
        nb = uint32_t(g);
        ng = roundedByte((g * 0.99 + b * 0.99) / 2.0);
        break;
    case 6: // "SPOTTED"
        nb = roundedByte(r / 2.0 + b / 4.0);
        ng = roundedByte(r / 4.0 + g / 2.0);
        nr = roundedByte(g / 4.0 + b / 2.0);
        break;
    case 7: { // "RETRO"
        const int32_t k = vbRound((2 * b * 0.99 + r * 0.99) / 12.0);
        nb = retroByte(g - k);
        ng = retroByte(r - k);
        nr = retroByte(b - k);
        break;
    }
    case 8: // "SOFTYELLOW"
        nb = uint32_t(g);
        ng = uint32_t(r);
        break;
    case 10: // "ORANGE"
        nb = roundedByte(g / 2.0);
        ng = roundedByte(r / 2.0);
        break;
    case 11: // "WETPAPER"
        nb = uint32_t(g);
        ng = uint32_t(b);
        nr = 170u;
        break;
    default: // 4, 5, 9 and anything else: unchanged
        break;
    }
    return packPixel(v, nb, ng, nr);
}

} // namespace

namespace {
// A table of a formula of two bytes x and y, at x * 256 + y.
// Three bytes more than the entries: the wide kernels read each entry as a word.
template <class Fn> std::vector<uint8_t> pairTable(Fn&& fn) {
    std::vector<uint8_t> t(65536 + 3);
    for (uint32_t x = 0; x < 256; ++x)
        for (uint32_t y = 0; y < 256; ++y)
            t[x * 256u + y] = uint8_t(fn(int32_t(x), int32_t(y)));
    return t;
}
inline uint32_t channel(uint32_t v, int c) {
    return (v >> (8 * c)) & 255u;
}
inline uint32_t pairAt(const uint8_t* t, uint32_t x, uint32_t y) { return t[x * 256u + y]; }
} // namespace

Bits cBitFilter::ClassyColors(int32_t mode) {
    // atan of the green byte as a plain number, in radians.
    std::array<double, 256> atanTable{};
    for (int32_t i = 0; i < 256; ++i)
        atanTable[size_t(i)] = std::atan(double(i));
    // The modes whose channels are formulas of two source bytes read them from tables of
    // those formulas (the sums are commutative, so one table serves both orders).
    auto average = [](int32_t x, int32_t y) { return roundedByte((x * 0.99 + y * 0.99) / 2.0); };
    if (hasWideKernels()) {
        // Only the tables the mode reads are made.
        std::vector<uint8_t> avg, soft, spot, retro;
        if (mode >= 0 && mode <= 3) avg = pairTable(average);
        if (mode == 0)
            soft = pairTable(
                [&](int32_t b, int32_t g) { return roundedByte(b * atanTable[size_t(g)] / 1.9); });
        if (mode == 6)
            spot = pairTable([](int32_t x, int32_t y) { return roundedByte(x / 2.0 + y / 4.0); });
        if (mode == 7)
            retro = pairTable(
                [](int32_t b, int32_t r) { return vbRound((2 * b * 0.99 + r * 0.99) / 12.0); });
        const ClassyTables tables{avg.data(), soft.data(), spot.data(), retro.data()};
        return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
            classyWide(mode, s, p, n, tables);
        });
    }
    switch (mode) {
    case 0:
    case 1: {
        const auto avg = pairTable(average);
        const auto soft = pairTable(
            [&](int32_t b, int32_t g) { return roundedByte(b * atanTable[size_t(g)] / 1.9); });
        return pointFilter([mode, avg = avg.data(), soft = soft.data()](
                               const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
            for (int32_t i = 0; i < n; ++i) {
                const uint32_t v = load32(s + 4 * i);
                const uint32_t b = channel(v, 0), g = channel(v, 1), r = channel(v, 2);
                store32(p + 4 * i,
                        packPixel(v, mode == 0 ? pairAt(soft, b, g) : b, pairAt(avg, r, g), g));
            }
        });
    }
    case 2:
    case 3: {
        const auto avg = pairTable(average);
        return pointFilter([mode, avg = avg.data()](const uint8_t* __restrict s,
                                                    uint8_t* __restrict p, int32_t n) {
            for (int32_t i = 0; i < n; ++i) {
                const uint32_t v = load32(s + 4 * i);
                const uint32_t b = channel(v, 0), g = channel(v, 1), r = channel(v, 2);
                store32(p + 4 * i, mode == 2 ? packPixel(v, r, g, pairAt(avg, r, b))
                                             : packPixel(v, g, pairAt(avg, g, b), r));
            }
        });
    }
    case 6: {
        // byte(x / 2 + y / 4): blue from (R, B), green from (G, R), red from (B, G).
        const auto spot =
            pairTable([](int32_t x, int32_t y) { return roundedByte(x / 2.0 + y / 4.0); });
        return pointFilter([spot = spot.data()](const uint8_t* __restrict s,
                                                uint8_t* __restrict p, int32_t n) {
            for (int32_t i = 0; i < n; ++i) {
                const uint32_t v = load32(s + 4 * i);
                const uint32_t b = channel(v, 0), g = channel(v, 1), r = channel(v, 2);
                store32(p + 4 * i,
                        packPixel(v, pairAt(spot, r, b), pairAt(spot, g, r), pairAt(spot, b, g)));
            }
        });
    }
    case 7: {
        // k = round((2 * B * 0.99 + R * 0.99) / 12) by (B, R).
        const auto retroK = pairTable(
            [](int32_t b, int32_t r) { return vbRound((2 * b * 0.99 + r * 0.99) / 12.0); });
        return pointFilter([retroK = retroK.data()](const uint8_t* __restrict s,
                                                    uint8_t* __restrict p, int32_t n) {
            for (int32_t i = 0; i < n; ++i) {
                const uint32_t v = load32(s + 4 * i);
                const int32_t b = int32_t(channel(v, 0)), g = int32_t(channel(v, 1)),
                              r = int32_t(channel(v, 2));
                const int32_t k = int32_t(pairAt(retroK, uint32_t(b), uint32_t(r)));
                store32(p + 4 * i,
                        packPixel(v, retroByte(g - k), retroByte(r - k), retroByte(b - k)));
            }
        });
    }
    default:
        return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
            for (int32_t i = 0; i < n; ++i)
                store32(p + 4 * i, classyPixel(mode, load32(s + 4 * i), atanTable.data()));
        });
    }
}

} // namespace ostrivex
