// Colour effects: each new pixel comes from the same source pixel through tables or a few
// integer operations, so they run at the speed of memory.
#include "pixel/cpuclones.h"
#include "pixel/effects/corefilter.h"
#include "pixel/effects/effects.h"
#include "pixel/effects/frame.h"
#include "pixel/vbmath.h"

#include <array>
#include <cmath>

namespace ostrivex::effects {

namespace {

using Table = std::array<uint8_t, 256>;

template <class Fn> Table makeTable(Fn&& fn) {
    Table t{};
    for (int32_t i = 0; i < 256; ++i) t[size_t(i)] = clampByte(fn(i));
    return t;
}

void mapAll(Bits& dest, const Bits& src, int32_t key, const Table& t) {
    mapChannels(dest, src, key, t.data(), t.data(), t.data());
}

// A colour matrix: new red = (m[0] r + m[1] g + m[2] b + half) >> shift, green from m[3..5],
// blue from m[6..8], each held to a byte. Integer arithmetic, built for the wider vector
// units too.
OSTRIVEX_CPU_CLONES
void matrixRow(const uint8_t* __restrict s, uint8_t* __restrict d, int32_t n, const int32_t* mp,
               int32_t shift) {
    const int32_t m0 = mp[0], m1 = mp[1], m2 = mp[2], m3 = mp[3], m4 = mp[4], m5 = mp[5], m6 = mp[6],
                  m7 = mp[7], m8 = mp[8];
    const int32_t half = 1 << (shift - 1);
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        const int32_t b = int32_t(v & 255u), g = int32_t(v >> 8 & 255u), r = int32_t(v >> 16 & 255u);
        const int32_t nr = std::clamp((m0 * r + m1 * g + m2 * b + half) >> shift, 0, 255);
        const int32_t ng = std::clamp((m3 * r + m4 * g + m5 * b + half) >> shift, 0, 255);
        const int32_t nb = std::clamp((m6 * r + m7 * g + m8 * b + half) >> shift, 0, 255);
        store32(d + 4 * i, uint32_t(nb) | uint32_t(ng) << 8 | uint32_t(nr) << 16);
    }
}

} // namespace

void ReduceTo8Colors(Bits& dest, const Bits& src, int32_t key) {
    mapAll(dest, src, key, makeTable([](int32_t c) { return c >= 128 ? 255 : 0; }));
}

void WebColors(Bits& dest, const Bits& src, int32_t key) {
    // The nearest of 0, 51, 102, 153, 204, 255: the 216 colours every browser showed alike.
    mapAll(dest, src, key, makeTable([](int32_t c) { return (c + 25) / 51 * 51; }));
}

void Sepia(Bits& dest, const Bits& src, int32_t key) {
    // The usual sepia mix (.393 .769 .189 / .349 .686 .168 / .272 .534 .131) in 1024ths,
    // rounded and held to 255.
    static constexpr int32_t kSepia[9] = {402, 787, 194, 357, 702, 172, 279, 547, 134};
    pointRows(dest, src, key, [](const uint8_t* s, uint8_t* d, int32_t n) { matrixRow(s, d, n, kSepia, 10); });
}

void Brightness(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    runCoreFilter(dest, src, key, false, [&](cBitFilter& f) { return f.BRIGHTNESS(level); });
}

void Gamma(Bits& dest, const Bits& src, float gamma, int32_t key) {
    // The core's gamma takes (g - 1) * 100 for a gamma g.
    const int32_t level = vbRound(double(std::max(gamma, 0.0f)) * 100.0) - 100;
    runCoreFilter(dest, src, key, false, [&](cBitFilter& f) { return f.GammaCorrection(level); });
}

void GrayScale(Bits& dest, const Bits& src, int32_t brightness, int32_t key) {
    runCoreFilter(dest, src, key, false, [&](cBitFilter& f) {
        f.SetBits(f.GreyScale());
        return f.BRIGHTNESS(brightness);
    });
}

void Invert(Bits& dest, const Bits& src, int32_t amount, int32_t key) {
    const int32_t a = std::clamp(amount, 0, 255);
    mapAll(dest, src, key, makeTable([a](int32_t c) {
               return vbRound(c + (255 - 2 * c) * (255 - a) / 255.0);
           }));
}

void ReduceColors(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    // The core's Reduction rounds each channel to a multiple of its level + 1. The slider's
    // level is squared first, so that the first half of it takes the colours down gently (16
    // steps per channel at a quarter) and the second half to the last few.
    const int32_t l = std::clamp(level, 0, 255);
    runCoreFilter(dest, src, key, false, [&](cBitFilter& f) { return f.Reduction(l * l / 256); });
}

void Shift(Bits& dest, const Bits& src, int32_t shift, int32_t key) {
    // The red and blue channels slide apart sideways, red to the right and blue to the left,
    // by up to a sixteenth of the shorter side; green stays.
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t w = src.width();
    const int32_t d = vbRound(std::clamp(shift, 0, 255) / 255.0 * std::min(w, src.height()) / 16.0);
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* p = work.row(y);
        uint8_t* o = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            o[4 * x] = p[4 * clampTo(x + d, 0, w - 1)];
            o[4 * x + 1] = p[4 * x + 1];
            o[4 * x + 2] = p[4 * clampTo(x - d, 0, w - 1) + 2];
        }
        finishRow(src.row(y), o, w, k);
    }
}

void Saturation(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    // The core's SATURATION moves each channel from the pixel's mean by level percent; here
    // the slider's 255 stands for 100 percent.
    const int32_t percent = vbRound(level * 100.0 / 255.0);
    runCoreFilter(dest, src, key, false, [&](cBitFilter& f) { return f.SATURATION(percent); });
}

void Hue(Bits& dest, const Bits& src, int32_t degrees, int32_t key) {
    // A rotation of the colour cube about its grey axis: greys stay, and a third of a turn
    // takes red to green, green to blue and blue to red exactly. Weights in 4096ths.
    const double t = degrees * 3.14159265358979323846 / 180.0;
    const double c = std::cos(t), k = (1.0 - c) / 3.0, q = std::sin(t) / std::sqrt(3.0);
    const int32_t same = vbRound((c + k) * 4096), next = vbRound((k - q) * 4096),
                  prev = vbRound((k + q) * 4096);
    const int32_t m[9] = {same, next, prev, prev, same, next, next, prev, same};
    pointRows(dest, src, key, [&](const uint8_t* s, uint8_t* d, int32_t n) { matrixRow(s, d, n, m, 12); });
}

namespace {
// The weight of the mid-tones: 1 at 127.5, 0 at black and white.
double midWeight(int32_t c) { return 4.0 * c * (255 - c) / (255.0 * 255.0); }
} // namespace

void ColorBalance(Bits& dest, const Bits& src, int32_t cyanRed, int32_t magentaGreen,
                  int32_t yellowBlue, int32_t key) {
    // Each slider pushes its channel and pulls the other two by half as much, so the
    // brightness of a grey stays about the same; the push is strongest in the mid-tones.
    const double dr = cyanRed - (magentaGreen + yellowBlue) / 2.0;
    const double dg = magentaGreen - (cyanRed + yellowBlue) / 2.0;
    const double db = yellowBlue - (cyanRed + magentaGreen) / 2.0;
    auto table = [](double delta) {
        return makeTable([delta](int32_t c) { return vbRound(c + 0.5 * delta * midWeight(c)); });
    };
    const Table tb = table(db), tg = table(dg), tr = table(dr);
    mapChannels(dest, src, key, tb.data(), tg.data(), tr.data());
}

void MediumTones(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    mapAll(dest, src, key, makeTable([level](int32_t c) {
               return vbRound(c + 0.5 * level * midWeight(c));
           }));
}

void AmbientLight(Bits& dest, const Bits& src, int32_t strength, uint32_t colour, int32_t key) {
    const int32_t s = std::clamp(strength, 0, 255);
    auto table = [s](int32_t light) {
        // c * (1 - s + s * light), in 255ths.
        const int32_t f = 255 * 255 - s * (255 - light);
        return makeTable([f](int32_t c) { return (c * f + 32512) / 65025; });
    };
    const Table tb = table(colourB(colour)), tg = table(colourG(colour)), tr = table(colourR(colour));
    mapChannels(dest, src, key, tb.data(), tg.data(), tr.data());
}

namespace {
// The duotone of one row: the luminance l (0..255) goes from black at 0 through the colour
// at 128 to white at 255 (in 256ths of the way, t = 2l), mixed into the pixel by s / 256.
OSTRIVEX_CPU_CLONES
void toneRow(const uint8_t* __restrict sp, uint8_t* __restrict d, int32_t n, int32_t tb, int32_t tg,
             int32_t tr, int32_t s) {
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(sp + 4 * i);
        const int32_t b = int32_t(v & 255u), g = int32_t(v >> 8 & 255u), r = int32_t(v >> 16 & 255u);
        const int32_t t = int32_t((uint32_t(r) * 77u + uint32_t(g) * 150u + uint32_t(b) * 29u + 128u) >> 8) * 2;
        const int32_t dark = t <= 256, u = dark ? t : t - 256;
        const int32_t ob = dark ? (tb * u) >> 8 : tb + (((255 - tb) * u) >> 8);
        const int32_t og = dark ? (tg * u) >> 8 : tg + (((255 - tg) * u) >> 8);
        const int32_t orr = dark ? (tr * u) >> 8 : tr + (((255 - tr) * u) >> 8);
        const int32_t nb = (b * (256 - s) + ob * s + 128) >> 8;
        const int32_t ng = (g * (256 - s) + og * s + 128) >> 8;
        const int32_t nr = (r * (256 - s) + orr * s + 128) >> 8;
        store32(d + 4 * i, uint32_t(nb) | uint32_t(ng) << 8 | uint32_t(nr) << 16);
    }
}
} // namespace

void Tone(Bits& dest, const Bits& src, int32_t strength, uint32_t colour, int32_t key) {
    const int32_t s = (std::clamp(strength, 0, 255) * 256 + 127) / 255;
    const int32_t tb = colourB(colour), tg = colourG(colour), tr = colourR(colour);
    pointRows(dest, src, key, [&](const uint8_t* sp, uint8_t* d, int32_t n) { toneRow(sp, d, n, tb, tg, tr, s); });
}

void Contrast(Bits& dest, const Bits& src, float red, float green, float blue, int32_t key) {
    // The mean luminance of the picture's own (not transparent) pixels.
    const Key k(key);
    uint64_t sum = 0, count = 0;
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* p = src.row(y);
        for (int32_t x = 0; x < src.width(); ++x) {
            const uint32_t w = load32(p + 4 * x);
            if (k.is(w)) continue;
            sum += lumaOf(w);
            ++count;
        }
    }
    const double mean = count ? double(sum) / double(count) : 127.5;
    auto table = [mean](float f) {
        return makeTable([mean, f](int32_t c) { return vbRound((c - mean) * double(f) + mean); });
    };
    const Table tb = table(blue), tg = table(green), tr = table(red);
    mapChannels(dest, src, key, tb.data(), tg.data(), tr.data());
}

void Solarize(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    const int32_t t = 127 + level;
    mapAll(dest, src, key, makeTable([t](int32_t c) { return c > t ? 255 - c : c; }));
}

void StretchHistogram(Bits& dest, const Bits& src, int32_t clipTenths, double gamma, int32_t key) {
    const Key k(key);
    std::array<uint64_t, 256> hist{};
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* p = src.row(y);
        for (int32_t x = 0; x < src.width(); ++x) {
            const uint32_t w = load32(p + 4 * x);
            if (k.is(w)) continue;
            ++hist[w & 255u];
            ++hist[w >> 8 & 255u];
            ++hist[w >> 16 & 255u];
        }
    }
    uint64_t total = 0;
    for (uint64_t n : hist) total += n;
    const uint64_t clip = total * uint64_t(std::clamp(clipTenths, 0, 499)) / 1000u;
    int32_t low = 0, high = 255;
    for (uint64_t run = 0; low < 255; ++low)
        if ((run += hist[size_t(low)]) > clip) break;
    for (uint64_t run = 0; high > 0; --high)
        if ((run += hist[size_t(high)]) > clip) break;
    const double e = gamma > 0 ? 1.0 / gamma : 1.0;
    const Table t = makeTable([&](int32_t c) {
        if (high <= low) return c;
        if (c <= low) return 0;
        if (c >= high) return 255;
        return vbRound(255.0 * std::pow(double(c - low) / (high - low), e));
    });
    mapAll(dest, src, key, t);
}

void BackDropRemovalEx(Bits& dest, const Bits& src, int32_t tolerance, uint32_t colour,
                       uint32_t newColour, int32_t matchRed, int32_t matchGreen,
                       int32_t matchBlue, int32_t feather, int32_t key) {
    const int32_t from[3] = {colourB(colour), colourG(colour), colourR(colour)};
    const int32_t to[3] = {colourB(newColour), colourG(newColour), colourR(newColour)};
    const bool match[3] = {matchBlue != 0, matchGreen != 0, matchRed != 0};
    const int32_t t = std::max(tolerance, 0), f = std::max(feather, 0);
    pointRows(dest, src, key, [&](const uint8_t* s, uint8_t* d, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            int32_t dist = 0;
            for (int c = 0; c < 3; ++c)
                if (match[c]) dist = std::max(dist, std::abs(s[4 * i + c] - from[c]));
            // Weight of the new colour in 256ths: all of it within the tolerance, fading out
            // over the feather.
            const int32_t wgt = dist <= t ? 256 : (dist <= t + f ? (t + f - dist) * 256 / f : 0);
            for (int c = 0; c < 3; ++c)
                d[4 * i + c] = uint8_t((s[4 * i + c] * (256 - wgt) + to[c] * wgt + 128) >> 8);
        }
    });
}

void BackDropRemoval(Bits& dest, const Bits& src, int32_t tolerance, uint32_t colour,
                     uint32_t newColour, int32_t key) {
    BackDropRemovalEx(dest, src, tolerance, colour, newColour, -1, -1, -1, 0, key);
}

namespace {
// Noise of one row: ten bits of the position's hash per channel give a number in -a..a
// (span = 2a + 1); grey noise uses the first ten bits for all three.
OSTRIVEX_CPU_CLONES
void noiseRow(const uint8_t* __restrict s, uint8_t* __restrict d, int32_t n, uint32_t y, int32_t a,
              bool grey) {
    const uint32_t span = uint32_t(2 * a + 1);
    for (int32_t x = 0; x < n; ++x) {
        const uint32_t h = hash3(uint32_t(x), y, 0x5eed01u);
        const uint32_t hg = grey ? h : h >> 10, hr = grey ? h : h >> 20;
        const uint32_t v = load32(s + 4 * x);
        const int32_t nb = int32_t(v & 255u) + int32_t(((h & 1023u) * span) >> 10) - a;
        const int32_t ng = int32_t(v >> 8 & 255u) + int32_t(((hg & 1023u) * span) >> 10) - a;
        const int32_t nr = int32_t(v >> 16 & 255u) + int32_t(((hr & 1023u) * span) >> 10) - a;
        store32(d + 4 * x, uint32_t(std::clamp(nb, 0, 255)) | uint32_t(std::clamp(ng, 0, 255)) << 8 |
                               uint32_t(std::clamp(nr, 0, 255)) << 16);
    }
}
} // namespace

void ColorRandomize(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    prepareDest(dest, src);
    const Key k(key);
    const int32_t a = std::min(std::abs(level), 255) / 2; // noise in -a..a
    for (int32_t y = 0; y < src.height(); ++y) {
        noiseRow(src.row(y), dest.row(y), src.width(), uint32_t(y), a, level < 0);
        finishRow(src.row(y), dest.row(y), src.width(), k);
    }
}

} // namespace ostrivex::effects
