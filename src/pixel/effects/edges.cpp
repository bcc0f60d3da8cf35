// Edges and relief: effects built on the differences between neighbouring pixels. They
// read the working copy, whose guard band repeats the edge pixels, so the picture's border
// shows no false edge.
#include "pixel/effects/corefilter.h"
#include "pixel/effects/effects.h"
#include "pixel/effects/frame.h"
#include "pixel/vbmath.h"

#include <cmath>
#include <cstring>

namespace ostrivex::effects {

namespace {

// The mean luminance of the picture's own (not transparent) pixels.
int32_t meanLuma(const Bits& src, const Key& key) {
    uint64_t sum = 0, count = 0;
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* p = src.row(y);
        for (int32_t x = 0; x < src.width(); ++x) {
            const uint32_t w = load32(p + 4 * x);
            if (key.is(w)) continue;
            sum += lumaOf(w);
            ++count;
        }
    }
    return count ? int32_t(sum / count) : 128;
}

// The diagonal slope of a luminance plane at (x, y), lit from the upper left: positive where
// the picture brightens towards the lower right (range -1020..1020).
inline int32_t diagonalSlope(const uint8_t* l, size_t pw) {
    return (2 * l[pw + 1] + l[1] + l[pw]) - (2 * l[-ptrdiff_t(pw) - 1] + l[-1] + l[-ptrdiff_t(pw)]);
}

} // namespace

void Relief(Bits& dest, const Bits& src, int32_t key) {
    runCoreFilter(dest, src, key, true, [](cBitFilter& f) { return f.RELIEF(); });
}

void Emboss(Bits& dest, const Bits& src, float depth, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    const std::vector<uint8_t> luma = lumaPlane(work);
    prepareDest(dest, src);
    const int32_t w = src.width();
    const size_t pw = size_t(w + 2);
    // Grey 128 with the slope added: raised (emboss) for a depth from 0 up, sunk (engrave)
    // below 0. Gain in 1024ths.
    const float a = std::min(std::fabs(depth), 10.0f);
    const int32_t gain = vbRound((0.5 + 1.5 * a) * 256.0) * (depth < 0 ? -1 : 1);
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* l = luma.data() + size_t(y + 1) * pw + 1;
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const uint8_t g = clampByte(128 + ((diagonalSlope(l + x, pw) * gain + 512) >> 10));
            d[4 * x] = d[4 * x + 1] = d[4 * x + 2] = g;
        }
        finishRow(src.row(y), d, w, k);
    }
}

void FindEdges(Bits& dest, const Bits& src, int32_t strength, int32_t kernel, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t w = src.width();
    const ptrdiff_t dy = ptrdiff_t(work.stride());
    // Gain in 16ths: the plain differences span half the range of Sobel's.
    const int32_t gain = (kernel == 1 ? 16 : 8) * (1 + std::clamp(strength, 0, 20)) / 2;
    const bool sobel = kernel != 1;
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* p = work.row(y);
        uint8_t* d = dest.row(y);
        for (int32_t b = 0; b < 4 * w; ++b) {
            const uint8_t* q = p + b;
            int32_t gx, gy;
            if (sobel) {
                gx = (q[-dy + 4] + 2 * q[4] + q[dy + 4]) - (q[-dy - 4] + 2 * q[-4] + q[dy - 4]);
                gy = (q[dy - 4] + 2 * q[dy] + q[dy + 4]) - (q[-dy - 4] + 2 * q[-dy] + q[-dy + 4]);
            } else {
                gx = q[4] - q[-4];
                gy = q[dy] - q[-dy];
            }
            // Lines in the colour of the edge, on white.
            const int32_t m = ((std::abs(gx) + std::abs(gy)) * gain) >> 4;
            d[b] = uint8_t(255 - std::min(m, 255));
        }
        finishRow(src.row(y), d, w, k);
    }
}

void DetectBorders(Bits& dest, const Bits& src, int32_t threshold, uint32_t lineColour,
                   uint32_t backColour, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    const std::vector<uint8_t> luma = lumaPlane(work);
    prepareDest(dest, src);
    const int32_t w = src.width();
    const size_t pw = size_t(w + 2);
    const int32_t limit = 4 + std::max(threshold, 0) / 3;
    const uint32_t line = wordOf(lineColour), back = wordOf(backColour);
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* l = luma.data() + size_t(y + 1) * pw + 1;
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const uint8_t* q = l + x;
            const ptrdiff_t up = -ptrdiff_t(pw), down = ptrdiff_t(pw);
            const int32_t gx = (q[up + 1] + 2 * q[1] + q[down + 1]) - (q[up - 1] + 2 * q[-1] + q[down - 1]);
            const int32_t gy = (q[down - 1] + 2 * q[down] + q[down + 1]) - (q[up - 1] + 2 * q[up] + q[up + 1]);
            // Sobel's two sums over 8: 0..255 for the steepest step.
            store32(d + 4 * x, (std::abs(gx) + std::abs(gy)) / 8 > limit ? line : back);
        }
        finishRow(src.row(y), d, w, k);
    }
}

void Neon(Bits& dest, const Bits& src, int32_t glow, int32_t width, int32_t key) {
    const Key k(key);
    Bits work = workingCopy(src, k);
    // A light blur first, so that fine grain makes no lines of its own.
    boxBlur(work, work, 1);
    repeatEdges(work);
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    // Differences across `width` pixels (the guard band allows two), in their own colours.
    const int32_t step = std::clamp(width, 1, 2);
    const ptrdiff_t dx = 4 * step, dy = ptrdiff_t(work.stride()) * step;
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* p = work.row(y);
        uint8_t* d = dest.row(y);
        for (int32_t b = 0; b < 4 * w; ++b) {
            const uint8_t* q = p + b;
            const int32_t e = std::abs(q[dx] - q[-dx]) + std::abs(q[dy] - q[-dy]);
            d[b] = uint8_t(std::min(e * 3 / 2, 255));
        }
    }
    const int32_t g = std::clamp(glow, 0, 10);
    if (g > 0) {
        // The glow: a wider blur of the lines for each step, laid over them.
        Bits halo;
        smoothBlur(dest, halo, 1 + g);
        const int32_t weight = 40 + 24 * g; // in 64ths
        for (int32_t y = 0; y < h; ++y) {
            uint8_t* d = dest.row(y);
            const uint8_t* o = halo.row(y);
            for (int32_t b = 0; b < 4 * w; ++b) d[b] = clampByte(d[b] + ((o[b] * weight) >> 6));
        }
    }
    finishKey(dest, src, k);
}

void Stamp(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    const std::vector<uint8_t> luma = lumaPlane(work);
    prepareDest(dest, src);
    const int32_t w = src.width();
    const size_t pw = size_t(w + 2);
    // Ink where the 3 x 3 mean of the luminance lies below the threshold; the mean rounds
    // the small jags, as a rubber stamp does.
    const int32_t t = (meanLuma(src, k) + (std::clamp(level, 0, 255) - 128) / 2) * 9;
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* l = luma.data() + size_t(y + 1) * pw + 1;
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const uint8_t* q = l + x;
            const ptrdiff_t up = -ptrdiff_t(pw), down = ptrdiff_t(pw);
            const int32_t s = q[up - 1] + q[up] + q[up + 1] + q[-1] + q[0] + q[1] + q[down - 1] +
                              q[down] + q[down + 1];
            store32(d + 4 * x, s < t ? 0u : 0x00FFFFFFu);
        }
        finishRow(src.row(y), d, w, k);
    }
}

void NotePaper(Bits& dest, const Bits& src, int32_t balance, int32_t smoothness, int32_t grain,
               int32_t relief, uint32_t ink, uint32_t paper, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    const int32_t w = src.width(), h = src.height();
    // The luminance as a grey picture, smoothed.
    Bits grey(w, h);
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) {
            const uint32_t l = lumaOf(load32(work.pixel(x, y)));
            store32(grey.pixel(x, y), l * 0x010101u);
        }
    smoothBlur(grey, grey, std::clamp(smoothness, 0, 20));
    const float t = float(meanLuma(src, k) + (std::clamp(balance, 0, 255) - 128) / 2);
    // How much ink each pixel carries: 1 well below the threshold, 0 well above it.
    std::vector<float> cover(size_t(w) * size_t(h));
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) {
            const float u = std::clamp((t - grey(0, x, y)) / 16.0f + 0.5f, 0.0f, 1.0f);
            cover[size_t(y) * size_t(w) + size_t(x)] = u * u * (3 - 2 * u);
        }
    prepareDest(dest, src);
    const float in[3] = {float(colourB(ink)), float(colourG(ink)), float(colourR(ink))};
    const float pa[3] = {float(colourB(paper)), float(colourG(paper)), float(colourR(paper))};
    const float lift = 0.25f * std::clamp(relief, 0, 10);
    const float noise = float(std::clamp(grain, 0, 50));
    auto at = [&](int32_t x, int32_t y) {
        return cover[size_t(clampTo(y, 0, h - 1)) * size_t(w) + size_t(clampTo(x, 0, w - 1))];
    };
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const float c = at(x, y);
            // The ink is pressed into the paper: lit on the slopes that face the upper left.
            const float slope = at(x - 1, y - 1) - at(x + 1, y + 1);
            const float light = 1.0f - lift * slope;
            const float n = (unit(hash3(uint32_t(x), uint32_t(y), 0x9a9e5u)) - 0.5f) * noise;
            for (int ch = 0; ch < 3; ++ch)
                d[4 * x + ch] = clampByte(int32_t((pa[ch] + (in[ch] - pa[ch]) * c) * light + n + 0.5f));
        }
        finishRow(src.row(y), d, w, k);
    }
}

void Make3DEffect(Bits& dest, const Bits& src, int32_t width, int32_t key) {
    const Key k(key);
    const int32_t w = src.width(), h = src.height();
    const int32_t bevel = std::clamp(width, 1, 200);
    // Chamfer distance (3 across, 4 diagonally) from the outside: the transparent pixels and
    // the space beyond the picture.
    const int32_t cap = 3 * bevel + 4;
    std::vector<int32_t> dist(size_t(w + 2) * size_t(h + 2), 0);
    const size_t pw = size_t(w + 2);
    auto D = [&](int32_t x, int32_t y) -> int32_t& { return dist[size_t(y + 1) * pw + size_t(x + 1)]; };
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) D(x, y) = k.is(load32(src.pixel(x, y))) ? 0 : cap;
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x) {
            int32_t& v = D(x, y);
            v = std::min({v, D(x - 1, y) + 3, D(x, y - 1) + 3, D(x - 1, y - 1) + 4, D(x + 1, y - 1) + 4});
        }
    for (int32_t y = h - 1; y >= 0; --y)
        for (int32_t x = w - 1; x >= 0; --x) {
            int32_t& v = D(x, y);
            v = std::min({v, D(x + 1, y) + 3, D(x, y + 1) + 3, D(x + 1, y + 1) + 4, D(x - 1, y + 1) + 4});
        }
    // The border of the distance field copies its neighbours, so the slope at the picture's
    // edge is that of the edge itself.
    for (int32_t y = 0; y < h; ++y) {
        D(-1, y) = std::max(D(0, y) - 3, 0);
        D(w, y) = std::max(D(w - 1, y) - 3, 0);
    }
    for (int32_t x = -1; x <= w; ++x) {
        D(x, -1) = std::max(D(x, 0) - 3, 0);
        D(x, h) = std::max(D(x, h - 1) - 3, 0);
    }
    prepareDest(dest, src);
    const int32_t band = 3 * bevel;
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* s = src.row(y);
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            std::memcpy(d + 4 * x, s + 4 * x, 4);
            const int32_t v = D(x, y);
            if (v >= band) continue;
            const int32_t gx = std::min(D(x + 1, y), band) - std::min(D(x - 1, y), band);
            const int32_t gy = std::min(D(x, y + 1), band) - std::min(D(x, y - 1), band);
            if (gx == 0 && gy == 0) continue;
            // The bevel's outward face turns to the light (upper left) or away from it.
            const float facing = float(gx + gy) / (1.41421f * std::sqrt(float(gx * gx + gy * gy)));
            const float f = 0.6f * facing;
            for (int c = 0; c < 3; ++c) {
                const int32_t p = s[4 * x + c];
                d[4 * x + c] = clampByte(int32_t(f > 0 ? p + (255 - p) * f + 0.5f : p * (1 + f) + 0.5f));
            }
        }
        finishRow(s, d, w, k);
    }
}

} // namespace ostrivex::effects
