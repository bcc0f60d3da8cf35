// Artistic effects: oil paint, frosted glass, fragments, fog, scattered points, tiles and
// canvas.
#include "pixel/effects/effects.h"
#include "pixel/effects/frame.h"
#include "pixel/vbmath.h"

#include <cmath>
#include <cstring>

namespace ostrivex::effects {

namespace {
float shorterSide(const Bits& b) { return float(std::max(std::min(b.width(), b.height()), 1)); }
} // namespace

void OilPaint(Bits& dest, const Bits& src, int32_t radius, int32_t levels, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    const int32_t r = std::clamp(radius, 0, 20) + 1;
    const int32_t nl = std::clamp(levels, 2, 256);
    // The intensity step of every pixel.
    std::vector<uint8_t> step(size_t(w) * size_t(h));
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
            step[size_t(y) * size_t(w) + size_t(x)] = uint8_t(lumaOf(load32(work.pixel(x, y))) * uint32_t(nl) >> 8);
    // A window of (2r + 1)^2 pixels slides along each row: per step the counts and colour
    // sums of every intensity; the commonest step wins and gives its mean colour.
    std::vector<int32_t> count(static_cast<size_t>(nl)), sum(static_cast<size_t>(nl) * 3u);
    std::vector<int32_t> rowsOf(size_t(2 * r + 1));
    auto column = [&](int32_t x, int32_t sign) {
        const int32_t cx = clampTo(x, 0, w - 1);
        for (int32_t yy : rowsOf) {
            const size_t i = size_t(yy) * size_t(w) + size_t(cx);
            const int32_t s = step[i];
            const uint8_t* p = work.pixel(cx, yy);
            count[size_t(s)] += sign;
            sum[size_t(3 * s)] += sign * p[0];
            sum[size_t(3 * s + 1)] += sign * p[1];
            sum[size_t(3 * s + 2)] += sign * p[2];
        }
    };
    for (int32_t y = 0; y < h; ++y) {
        for (int32_t i = 0; i <= 2 * r; ++i) rowsOf[size_t(i)] = clampTo(y - r + i, 0, h - 1);
        std::fill(count.begin(), count.end(), 0);
        std::fill(sum.begin(), sum.end(), 0);
        for (int32_t x = -r; x <= r; ++x) column(x, 1);
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            int32_t best = 0;
            for (int32_t s = 1; s < nl; ++s)
                if (count[size_t(s)] > count[size_t(best)]) best = s;
            const int32_t n = count[size_t(best)];
            for (int c = 0; c < 3; ++c) d[4 * x + c] = uint8_t((sum[size_t(3 * best + c)] + n / 2) / n);
            column(x - r, -1);
            column(x + r + 1, 1);
        }
        finishRow(src.row(y), d, w, k);
    }
}

void FrostGlass(Bits& dest, const Bits& src, int32_t amount, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const Sampler sample(work);
    const int32_t r = 2 + std::clamp(amount, 0, 100);
    const uint32_t span = uint32_t(2 * r + 1);
    for (int32_t y = 0; y < src.height(); ++y) {
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < src.width(); ++x) {
            // Two grains of the picture from random places within r, mixed, under a light
            // haze.
            const uint32_t h1 = hash3(uint32_t(x), uint32_t(y), 0xf0057u);
            const uint32_t h2 = hash3(uint32_t(x), uint32_t(y), 0xf0058u);
            const int32_t ax = int32_t(((h1 & 0xFFFFu) * span) >> 16) - r;
            const int32_t ay = int32_t(((h1 >> 16) * span) >> 16) - r;
            const int32_t bx = int32_t(((h2 & 0xFFFFu) * span) >> 16) - r;
            const int32_t by = int32_t(((h2 >> 16) * span) >> 16) - r;
            const uint32_t a = sample.at(x + ax, y + ay), b = sample.at(x + bx, y + by);
            for (int c = 0; c < 3; ++c) {
                const int32_t v = (int32_t(a >> (8 * c) & 255u) + int32_t(b >> (8 * c) & 255u) + 1) / 2;
                d[4 * x + c] = uint8_t((v * 7 + 255 + 4) / 8);
            }
        }
        finishRow(src.row(y), d, src.width(), k);
    }
}

void Fragment(Bits& dest, const Bits& src, int32_t offset, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const Sampler sample(work);
    const int32_t o = std::clamp(offset, 0, 1000);
    for (int32_t y = 0; y < src.height(); ++y) {
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < src.width(); ++x) {
            const uint32_t p[4] = {sample.at(x - o, y), sample.at(x + o, y), sample.at(x, y - o),
                                   sample.at(x, y + o)};
            for (int c = 0; c < 3; ++c) {
                uint32_t s = 2;
                for (uint32_t v : p) s += v >> (8 * c) & 255u;
                d[4 * x + c] = uint8_t(s / 4);
            }
        }
        finishRow(src.row(y), d, src.width(), k);
    }
}

void Fog(Bits& dest, const Bits& src, int32_t density, int32_t key) {
    const int32_t w = src.width(), h = src.height();
    // Banks of fog: cloud noise about a fifth of the picture across, thicker towards the
    // top, where a landscape is farthest.
    const ValueNoise clouds(shorterSide(src) / 5.0f, 4, 0xf06u);
    const float thick = std::clamp(density, 0, 127) / 127.0f;
    constexpr float fog[3] = {234, 230, 226}; // blue, green, red: a cool white
    prepareDest(dest, src);
    const Key k(key);
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* s = src.row(y);
        uint8_t* d = dest.row(y);
        const float height = 0.75f + 0.25f * (1.0f - (h > 1 ? float(y) / (h - 1) : 0.0f));
        for (int32_t x = 0; x < w; ++x) {
            const float f = thick * height * (0.3f + 0.7f * clouds.at(float(x), float(y)));
            for (int c = 0; c < 3; ++c)
                d[4 * x + c] = uint8_t(s[4 * x + c] + (fog[c] - s[4 * x + c]) * f + 0.5f);
        }
        finishRow(s, d, w, k);
    }
}

void RandomicalPoints(Bits& dest, const Bits& src, int32_t density, uint32_t colour, int32_t key) {
    // The chance of a point in 65536ths.
    const uint32_t chance = uint32_t(std::clamp(density, 0, 200)) * 65536u / 200u;
    const uint32_t ink = wordOf(colour);
    prepareDest(dest, src);
    const Key k(key);
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* s = src.row(y);
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < src.width(); ++x) {
            const bool point = (hash3(uint32_t(x), uint32_t(y), 0x9017u) & 0xFFFFu) < chance;
            store32(d + 4 * x, point ? ink : load32(s + 4 * x));
        }
        finishRow(s, d, src.width(), k);
    }
}

void Tile(Bits& dest, const Bits& src, int32_t tiles, uint32_t background, int32_t offset,
          int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    const uint32_t back = wordOf(background);
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) store32(dest.pixel(x, y), back);
    const int32_t n = 2 + std::clamp(tiles, 0, 100) * 18 / 100;
    const float size = shorterSide(src) / float(n);
    const int32_t columns = int32_t(std::ceil(w / size)), rows = int32_t(std::ceil(h / size));
    const float reach = size * std::clamp(offset, 0, 100) / 100.0f;
    // A hairline between neighbours even where the tiles do not move.
    const int32_t gap = size >= 6 ? 1 : 0;
    for (int32_t j = 0; j < rows; ++j)
        for (int32_t i = 0; i < columns; ++i) {
            const int32_t x0 = int32_t(i * size), x1 = std::min(int32_t((i + 1) * size), w) - gap;
            const int32_t y0 = int32_t(j * size), y1 = std::min(int32_t((j + 1) * size), h) - gap;
            const uint32_t hs = hash3(uint32_t(i), uint32_t(j), 0x711eu);
            const int32_t ox = vbRound((unit(hs) * 2 - 1) * reach);
            const int32_t oy = vbRound((unit(hash3(hs, 1, 0x711fu)) * 2 - 1) * reach);
            for (int32_t y = y0; y < y1; ++y) {
                const int32_t ty = y + oy;
                if (ty < 0 || ty >= h) continue;
                const int32_t a = std::max(x0, -ox), b = std::min(x1, w - ox);
                if (a < b) std::memcpy(dest.pixel(a + ox, ty), work.pixel(a, y), size_t(b - a) * 4u);
            }
        }
    finishKey(dest, src, k);
}

void Canvas(Bits& dest, const Bits& src, int32_t border, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    const int32_t b = std::clamp(border, 0, std::max((std::min(w, h) - 1) / 2, 0));
    const Sampler sample(work);
    // The picture, shrunk into the frame left by the margin.
    const float sx = b > 0 ? float(w) / float(w - 2 * b) : 1.0f;
    const float sy = b > 0 ? float(h) / float(h - 2 * b) : 1.0f;
    constexpr float kCloth[3] = {206, 226, 238}; // blue, green, red: unbleached linen
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            // A plain weave of four-pixel threads: each square of the cloth has its thread
            // running across or down, alternating like a chequerboard.
            const bool across = ((x >> 2) + (y >> 2)) & 1;
            const float t = float((across ? y : x) & 3) + 0.5f;
            const float weave = 0.86f + 0.14f * std::sin(t * 3.14159265f / 4.0f) +
                                (unit(hash3(uint32_t(x), uint32_t(y), 0xca9u)) - 0.5f) * 0.05f;
            const bool inside = x >= b && x < w - b && y >= b && y < h - b;
            if (inside) {
                const uint32_t v = sample.bilinear((x - b + 0.5f) * sx - 0.5f, (y - b + 0.5f) * sy - 0.5f);
                // A faint line where the picture meets the margin.
                const bool rim = b > 0 && (x == b || y == b || x == w - b - 1 || y == h - b - 1);
                const float f = weave * (rim ? 0.8f : 1.0f);
                for (int c = 0; c < 3; ++c) d[4 * x + c] = clampByte(int32_t(float(v >> (8 * c) & 255u) * f + 0.5f));
            } else {
                for (int c = 0; c < 3; ++c) d[4 * x + c] = clampByte(int32_t(kCloth[c] * weave + 0.5f));
            }
        }
        finishRow(src.row(y), d, w, k);
    }
}

} // namespace ostrivex::effects
