// Colour filters: the colour-distance family (ISOLATE, REPLACE, Shift, ReplaceL), the
// channel kills and the channel shuffles (SwapBanks, SwapRGB, ClassyColors).
#include "pixel/bitfilter.h"
#include "pixel/tone_kernels.h"
#include "pixel/vbmath.h"

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
    for (int32_t i = 0; i < n; ++i) store32(p + 4 * i, load32(s + 4 * i) & keep);
}

} // namespace

Bits cBitFilter::KillChannel(bool red, bool green, bool blue) {
    const uint32_t keep =
        (blue ? 0u : 0x0000FFu) | (green ? 0u : 0x00FF00u) | (red ? 0u : 0xFF0000u);
    return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
        maskChannels(s, p, n, keep);
    });
}

Bits cBitFilter::SpecialColors(int32_t red, int32_t green, int32_t blue) {
    // -1 (true) keeps the channel; anything else clears it.
    const uint32_t keep = (blue == -1 ? 0x0000FFu : 0u) | (green == -1 ? 0x00FF00u : 0u) |
                          (red == -1 ? 0xFF0000u : 0u);
    return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
        maskChannels(s, p, n, keep);
    });
}

Bits cBitFilter::ISOLATE(uint32_t colour, uint32_t backColour, int32_t tolerance) {
    const int32_t t = distanceThreshold(tolerance);
    const int32_t r1 = colourR(colour), g1 = colourG(colour), b1 = colourB(colour);
    const uint32_t back = uint32_t(colourB(backColour)) | uint32_t(colourG(backColour)) << 8 |
                          uint32_t(colourR(backColour)) << 16;
    return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t v = load32(s + 4 * i);
            const int32_t d = colourDistance(int32_t(v & 255u), int32_t((v >> 8) & 255u),
                                             int32_t((v >> 16) & 255u), b1, g1, r1);
            store32(p + 4 * i, d >= t ? (v & kMarkerMask) | back : v);
        }
    });
}

Bits cBitFilter::REPLACE(uint32_t colour, uint32_t newColour, int32_t tolerance) {
    const int32_t t = distanceThreshold(tolerance);
    const int32_t r1 = colourR(colour), g1 = colourG(colour), b1 = colourB(colour);
    const int32_t r2 = colourR(newColour), g2 = colourG(newColour), b2 = colourB(newColour);
    return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            uint8_t* q = p + 4 * i;
            store32(q, load32(s + 4 * i));
            const int32_t d = colourDistance(q[0], q[1], q[2], b1, g1, r1);
            if (d > t) continue;
            const float k = blendFactor(d, t);
            q[0] = blendByte(q[0], b2, k);
            q[1] = blendByte(q[1], g2, k);
            q[2] = blendByte(q[2], r2, k);
        }
    });
}

Bits cBitFilter::Shift(uint32_t colour, int32_t shift, int32_t tolerance) {
    const int32_t t = distanceThreshold(tolerance);
    const int32_t r1 = colourR(colour), g1 = colourG(colour), b1 = colourB(colour);
    std::array<int32_t, 256> m{};
    for (int32_t i = 0; i < 256; ++i) m[size_t(i)] = clampByte(i + shift);
    return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            uint8_t* q = p + 4 * i;
            store32(q, load32(s + 4 * i));
            const int32_t d = colourDistance(q[0], q[1], q[2], b1, g1, r1);
            if (d >= t) continue; // strictly nearer than the threshold
            const float k = blendFactor(d, t);
            for (int c = 0; c < 3; ++c) q[c] = blendByte(q[c], m[q[c]], k);
        }
    });
}

Bits cBitFilter::ReplaceL(uint32_t colour, uint32_t newColour, int32_t lumTolerance,
                          int32_t applyTolerance) {
    const int32_t lT = vbRound(lumTolerance * 2.55);
    const int32_t t = distanceThreshold(applyTolerance);
    const int32_t r1 = colourR(colour), g1 = colourG(colour), b1 = colourB(colour);
    const int32_t r2 = colourR(newColour), g2 = colourG(newColour), b2 = colourB(newColour);
    const int32_t l1 = (r1 + g1 + b1) / 3;
    return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            uint8_t* q = p + 4 * i;
            store32(q, load32(s + 4 * i));
            const int32_t l = (int32_t(q[0]) + q[1] + q[2]) / 3;
            if (std::abs(l - l1) > lT) continue;
            const int32_t d = colourDistance(q[0], q[1], q[2], b1, g1, r1);
            if (d > t) continue;
            const float k = blendFactor(d, t);
            q[0] = blendByte(q[0], b2, k);
            q[1] = blendByte(q[1], g2, k);
            q[2] = blendByte(q[2], r2, k);
        }
    });
}

namespace {
// Output channel k takes source channel Sk (channel 0 is bits 0..7). Fixed shifts let the
// loop run as vector code.
template <uint32_t S0, uint32_t S1, uint32_t S2>
void swapChannels(const uint8_t* s, uint8_t* p, int32_t n) {
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        store32(p + 4 * i, (v & kMarkerMask) | ((v >> (8 * S0)) & 255u) |
                               (((v >> (8 * S1)) & 255u) << 8) |
                               (((v >> (8 * S2)) & 255u) << 16));
    }
}
} // namespace

Bits cBitFilter::SwapBanks(int32_t mode) {
    void (*swap)(const uint8_t*, uint8_t*, int32_t) = nullptr;
    switch (mode) {
    case 1: swap = swapChannels<1, 2, 0>; break; // "RGB2BRG"
    case 2: swap = swapChannels<2, 0, 1>; break; // "RGB2GBR"
    case 3: swap = swapChannels<1, 0, 2>; break; // "RGB2RBG"
    case 4: swap = swapChannels<2, 1, 0>; break; // "RGB2BGR"
    case 5: swap = swapChannels<0, 2, 1>; break; // "RGB2GRB"
    default: break; // any other mode leaves every pixel as it is
    }
    return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
        if (swap)
            swap(s, p, n);
        else
            std::memcpy(p, s, size_t(n) * 4u);
    });
}

Bits cBitFilter::SwapRGB(int32_t redSource, int32_t greenSource, int32_t blueSource,
                         bool invertRed, bool invertGreen, bool invertBlue, bool killRed,
                         bool killGreen, bool killBlue) {
    // Per output channel (blue, green, red): its source channel and a table that is the
    // identity, the inversion or zero. Killing wins over inverting. A source outside the
    // pixel's four bytes fails its read, and that channel keeps its value.
    const int32_t sources[3] = {blueSource, greenSource, redSource};
    const bool inverts[3] = {invertBlue, invertGreen, invertRed};
    const bool kills[3] = {killBlue, killGreen, killRed};
    std::array<std::array<uint8_t, 256>, 3> tables{};
    int32_t src[3];
    for (int c = 0; c < 3; ++c) {
        src[c] = sources[c] >= 0 && sources[c] <= 3 ? sources[c] : c;
        for (int32_t i = 0; i < 256; ++i)
            tables[size_t(c)][size_t(i)] = kills[c] ? 0 : (inverts[c] ? uint8_t(255 - i) : uint8_t(i));
        if (src[c] != sources[c]) // failed read: the channel keeps its byte
            for (int32_t i = 0; i < 256; ++i) tables[size_t(c)][size_t(i)] = uint8_t(i);
    }
    return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            uint8_t* q = p + 4 * i;
            store32(q, load32(s + 4 * i));
            const uint8_t b = tables[0][q[src[0]]], g = tables[1][q[src[1]]],
                          r = tables[2][q[src[2]]];
            q[0] = b;
            q[1] = g;
            q[2] = r;
        }
    });
}

namespace {

// byte() of a formula that stays in range for every source byte.
inline uint32_t roundedByte(double v) { return uint32_t(clampByte(vbRound(v))); }

// The low byte of abs(not(a)), with not the complement of the 32-bit value.
inline uint32_t retroByte(int32_t a) { return uint32_t(std::abs(~a)) & 255u; }

uint32_t classyPixel(int32_t mode, uint32_t v, const double* atanTable) {
    const int32_t b = int32_t(v & 255u), g = int32_t((v >> 8) & 255u), r = int32_t((v >> 16) & 255u);
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
template <class Fn> std::vector<uint8_t> pairTable(Fn&& fn) {
    std::vector<uint8_t> t(65536);
    for (uint32_t x = 0; x < 256; ++x)
        for (uint32_t y = 0; y < 256; ++y) t[x * 256u + y] = uint8_t(fn(int32_t(x), int32_t(y)));
    return t;
}
inline uint32_t channel(uint32_t v, int c) { return (v >> (8 * c)) & 255u; }
inline uint32_t pairAt(const std::vector<uint8_t>& t, uint32_t x, uint32_t y) {
    return t[x * 256u + y];
}
} // namespace

Bits cBitFilter::ClassyColors(int32_t mode) {
    // atan of the green byte as a plain number, in radians.
    std::array<double, 256> atanTable{};
    for (int32_t i = 0; i < 256; ++i) atanTable[size_t(i)] = std::atan(double(i));
    // The modes whose channels are formulas of two source bytes read them from tables of
    // those formulas (the sums are commutative, so one table serves both orders).
    auto average = [](int32_t x, int32_t y) { return roundedByte((x * 0.99 + y * 0.99) / 2.0); };
    switch (mode) {
    case 0:
    case 1: {
        const auto avg = pairTable(average);
        const auto soft = pairTable(
            [&](int32_t b, int32_t g) { return roundedByte(b * atanTable[size_t(g)] / 1.9); });
        return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
            for (int32_t i = 0; i < n; ++i) {
                const uint32_t v = load32(s + 4 * i);
                const uint32_t b = channel(v, 0), g = channel(v, 1), r = channel(v, 2);
                store32(p + 4 * i, packPixel(v, mode == 0 ? pairAt(soft, b, g) : b,
                                             pairAt(avg, r, g), g));
            }
        });
    }
    case 2:
    case 3: {
        const auto avg = pairTable(average);
        return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
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
        const auto spot = pairTable([](int32_t x, int32_t y) { return roundedByte(x / 2.0 + y / 4.0); });
        return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
            for (int32_t i = 0; i < n; ++i) {
                const uint32_t v = load32(s + 4 * i);
                const uint32_t b = channel(v, 0), g = channel(v, 1), r = channel(v, 2);
                store32(p + 4 * i, packPixel(v, pairAt(spot, r, b), pairAt(spot, g, r),
                                             pairAt(spot, b, g)));
            }
        });
    }
    case 7: {
        // k = round((2 * B * 0.99 + R * 0.99) / 12) by (B, R).
        const auto retroK = pairTable(
            [](int32_t b, int32_t r) { return vbRound((2 * b * 0.99 + r * 0.99) / 12.0); });
        return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
            for (int32_t i = 0; i < n; ++i) {
                const uint32_t v = load32(s + 4 * i);
                const int32_t b = int32_t(channel(v, 0)), g = int32_t(channel(v, 1)),
                              r = int32_t(channel(v, 2));
                const int32_t k = int32_t(pairAt(retroK, uint32_t(b), uint32_t(r)));
                store32(p + 4 * i, packPixel(v, retroByte(g - k), retroByte(r - k), retroByte(b - k)));
            }
        });
    }
    default:
        return pointFilter([&](const uint8_t* s, uint8_t* p, int32_t n) {
            for (int32_t i = 0; i < n; ++i)
                store32(p + 4 * i, classyPixel(mode, load32(s + 4 * i), atanTable.data()));
        });
    }
}

} // namespace ostrivex
