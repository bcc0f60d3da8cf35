// Colour effects: each new pixel comes from the same source pixel through tables or a few
// integer operations, so they run at the speed of memory.
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

} // namespace

void ReduceTo8Colors(Bits& dest, const Bits& src, int32_t key) {
    mapAll(dest, src, key, makeTable([](int32_t c) { return c >= 128 ? 255 : 0; }));
}

void WebColors(Bits& dest, const Bits& src, int32_t key) {
    // The nearest of 0, 51, 102, 153, 204, 255: the 216 colours every browser showed alike.
    mapAll(dest, src, key, makeTable([](int32_t c) { return (c + 25) / 51 * 51; }));
}

void Sepia(Bits& dest, const Bits& src, int32_t key) {
    // The usual sepia mix, in thousandths, rounded and held to 255.
    pointRows(dest, src, key, [](const uint8_t* s, uint8_t* d, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            const int32_t b = s[4 * i], g = s[4 * i + 1], r = s[4 * i + 2];
            const int32_t nr = (393 * r + 769 * g + 189 * b + 500) / 1000;
            const int32_t ng = (349 * r + 686 * g + 168 * b + 500) / 1000;
            const int32_t nb = (272 * r + 534 * g + 131 * b + 500) / 1000;
            d[4 * i] = uint8_t(std::min(nb, 255));
            d[4 * i + 1] = uint8_t(std::min(ng, 255));
            d[4 * i + 2] = uint8_t(std::min(nr, 255));
        }
    });
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
    pointRows(dest, src, key, [=](const uint8_t* s, uint8_t* d, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            const int32_t b = s[4 * i], g = s[4 * i + 1], r = s[4 * i + 2];
            const int32_t nr = (same * r + next * g + prev * b + 2048) >> 12;
            const int32_t ng = (prev * r + same * g + next * b + 2048) >> 12;
            const int32_t nb = (next * r + prev * g + same * b + 2048) >> 12;
            d[4 * i] = clampByte(nb);
            d[4 * i + 1] = clampByte(ng);
            d[4 * i + 2] = clampByte(nr);
        }
    });
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

void Tone(Bits& dest, const Bits& src, int32_t strength, uint32_t colour, int32_t key) {
    const int32_t s = std::clamp(strength, 0, 255);
    // The tone of each luminance: black to the colour at 128, the colour to white at 255.
    std::array<std::array<uint8_t, 3>, 256> toned{};
    const int32_t tone[3] = {colourB(colour), colourG(colour), colourR(colour)};
    for (int32_t l = 0; l < 256; ++l)
        for (int c = 0; c < 3; ++c)
            toned[size_t(l)][size_t(c)] = uint8_t(l <= 128 ? (tone[c] * l + 64) / 128
                                                           : tone[c] + ((255 - tone[c]) * (l - 128) + 63) / 127);
    pointRows(dest, src, key, [&](const uint8_t* sp, uint8_t* d, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            const std::array<uint8_t, 3>& t = toned[lumaOf(load32(sp + 4 * i))];
            for (int c = 0; c < 3; ++c)
                d[4 * i + c] = uint8_t((sp[4 * i + c] * (255 - s) + t[size_t(c)] * s + 127) / 255);
        }
    });
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

void ColorRandomize(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    prepareDest(dest, src);
    const Key k(key);
    const int32_t a = std::min(std::abs(level), 255) / 2; // noise in -a..a
    const uint32_t span = uint32_t(2 * a + 1);
    const bool grey = level < 0;
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* s = src.row(y);
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < src.width(); ++x) {
            const uint32_t h = hash3(uint32_t(x), uint32_t(y), 0x5eed01u);
            for (int c = 0; c < 3; ++c) {
                // Ten bits of the hash per channel; the grey noise uses the first for all.
                const uint32_t bits = (grey ? h : h >> (10 * c)) & 1023u;
                const int32_t n = int32_t((bits * span) >> 10) - a;
                d[4 * x + c] = clampByte(s[4 * x + c] + n);
            }
        }
        finishRow(s, d, src.width(), k);
    }
}

} // namespace ostrivex::effects
