// Metal and stone: the picture's light and shade turned into a material.
#include "pixel/effects/effects.h"
#include "pixel/effects/frame.h"
#include "pixel/vbmath.h"

#include <array>
#include <cmath>

namespace ostrivex::effects {

namespace {

struct Rgb {
    float r, g, b;
};

// The colours of each metal from its shadow through its body to its highlight.
constexpr Rgb kMetals[3][3] = {
    {{38, 40, 46}, {150, 154, 162}, {250, 251, 255}}, // silver
    {{70, 38, 6}, {205, 145, 40}, {255, 240, 170}},   // gold
    {{8, 30, 72}, {90, 170, 222}, {236, 250, 255}},   // ice
};

Rgb metalColour(int32_t kind, float m) {
    const Rgb* stops = kMetals[std::clamp(kind, 0, 2)];
    const float t = m * 2;
    const Rgb& a = t < 1 ? stops[0] : stops[1];
    const Rgb& b = t < 1 ? stops[1] : stops[2];
    const float u = t < 1 ? t : t - 1;
    return {a.r + (b.r - a.r) * u, a.g + (b.g - a.g) * u, a.b + (b.b - a.b) * u};
}

} // namespace

void Metallic(Bits& dest, const Bits& src, int32_t bands, int32_t shine, int32_t kind, int32_t key) {
    const Key k(key);
    Bits work = workingCopy(src, k);
    // Metal is smooth: fine grain of the picture would only break up the bands.
    boxBlur(work, work, 1);
    const std::vector<uint8_t> luma = lumaPlane(work);
    prepareDest(dest, src);
    const int32_t w = src.width();
    const size_t pw = size_t(w + 2);
    // Polished metal maps brightness through a wave: bright and dark bands alternate as the
    // picture's light rises, and the relief of the picture bends them. The table covers the
    // brightness with relief added, -384..639.
    constexpr int32_t kLow = -384, kSize = 1024;
    std::vector<uint32_t> table(kSize);
    const double cycles = std::clamp(bands, 1, 32) * 3.14159265358979 / 255.0;
    // The shine moves the bands by up to three quarters of a light and dark pair.
    const double phase = std::clamp(shine, 0, 255) / 255.0 * 1.5 * 3.14159265358979;
    for (int32_t i = 0; i < kSize; ++i) {
        const float m = float(0.5 - 0.5 * std::cos((i + kLow) * cycles + phase));
        const Rgb c = metalColour(kind, m);
        table[size_t(i)] = uint32_t(vbRound(c.b)) | uint32_t(vbRound(c.g)) << 8 | uint32_t(vbRound(c.r)) << 16;
    }
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* l = luma.data() + size_t(y + 1) * pw + 1;
        const ptrdiff_t up = -ptrdiff_t(pw), down = ptrdiff_t(pw);
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const uint8_t* q = l + x;
            const int32_t mean = (q[up - 1] + q[up] + q[up + 1] + q[-1] + q[0] + q[1] + q[down - 1] +
                                  q[down] + q[down + 1] + 4) / 9;
            const int32_t slope = (q[up - 1] + q[up] + q[-1]) - (q[down + 1] + q[down] + q[1]);
            const int32_t v = std::clamp(mean + slope / 2, kLow, kLow + kSize - 1);
            store32(d + 4 * x, table[size_t(v - kLow)]);
        }
        finishRow(src.row(y), d, w, k);
    }
}

void Rock(Bits& dest, const Bits& src, int32_t depth, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    const int32_t w = src.width(), h = src.height();
    const float cell = std::max(std::min(w, h) / 10.0f, 3.0f);
    const ValueNoise stone(cell, 3, 0x70c4u);
    // Heights of three rows at a time: the stone's bumps with a little of the picture's own
    // light, so the picture looks cut into the rock.
    std::vector<float> rows(size_t(w + 2) * 3u);
    auto heightRow = [&](int32_t y, float* out) {
        const int32_t yy = clampTo(y, 0, h - 1);
        for (int32_t x = -1; x <= w; ++x) {
            const int32_t xx = clampTo(x, 0, w - 1);
            const float n = stone.at(float(xx), float(yy));
            out[x + 1] = n * cell + lumaOf(load32(work.pixel(xx, yy))) * (0.04f * cell / 255.0f);
        }
    };
    prepareDest(dest, src);
    float* prev = rows.data();
    float* cur = prev + (w + 2);
    float* next = cur + (w + 2);
    if (h > 0) {
        heightRow(-1, prev);
        heightRow(0, cur);
    }
    const float relief = 0.12f + 0.06f * std::clamp(depth, 0, 20);
    for (int32_t y = 0; y < h; ++y) {
        heightRow(y + 1, next);
        const uint8_t* s = work.row(y);
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            // Slopes rising towards the lower right face the light from the upper left.
            const float gx = cur[x + 2] - cur[x], gy = next[x + 1] - prev[x + 1];
            const float light = std::clamp(1.0f + relief * (gx + gy), 0.35f, 1.7f);
            const float grit = (unit(hash3(uint32_t(x), uint32_t(y), 0x70c5u)) - 0.5f) * 12.0f;
            const uint32_t v = load32(s + 4 * x);
            const float grey = float(lumaOf(v));
            for (int c = 0; c < 3; ++c) {
                // A fifth of the way to grey: rock dulls the colours.
                const float ch = float(v >> (8 * c) & 255u) * 0.8f + grey * 0.2f;
                d[4 * x + c] = clampByte(int32_t(ch * light + grit + 0.5f));
            }
        }
        finishRow(src.row(y), d, w, k);
        float* t = prev;
        prev = cur;
        cur = next;
        next = t;
    }
}

} // namespace ostrivex::effects
