// Blurs and sharpening. All read the working copy, whose guard band repeats the edge
// pixels, so windows that reach past the edge see the picture continue.
#include "pixel/cpuclones.h"
#include "pixel/effects/corefilter.h"
#include "pixel/effects/effects.h"
#include "pixel/effects/frame.h"
#include "pixel/vbmath.h"

#include <cmath>
#include <vector>

namespace ostrivex::effects {

namespace {

constexpr double kPi = 3.14159265358979323846;

// Sums of the three rows y - 1, y, y + 1 for every byte of x = -1 .. w (the guard band
// holds the repeated edge).
void columnSums3(const Bits& work, int32_t y, std::vector<uint16_t>& out) {
    const int32_t nb = (work.width() + 2) * 4;
    const uint8_t* a = work.pixel(-1, y - 1);
    const uint8_t* b = work.pixel(-1, y);
    const uint8_t* c = work.pixel(-1, y + 1);
    out.resize(size_t(nb));
    for (int32_t k = 0; k < nb; ++k) out[size_t(k)] = uint16_t(a[k] + b[k] + c[k]);
}

} // namespace

void Blur(Bits& dest, const Bits& src, int32_t key) {
    runCoreFilter(dest, src, key, true, [](cBitFilter& f) { return f.Blurs(1); });
}

void Sharpening(Bits& dest, const Bits& src, float amount, int32_t key) {
    const int32_t level = std::clamp(vbRound(double(amount) * 100.0), 0, 100);
    runCoreFilter(dest, src, key, true, [&](cBitFilter& f) { return f.SHARPEN(level); });
}

namespace {

// One row of AntiAlias: sums holds the column sums of three rows from x = -1, wgt the
// weight of each pixel's smoothing in 256ths; each byte moves towards its 3 x 3 mean.
OSTRIVEX_CPU_CLONES
void antiAliasRow(const uint8_t* __restrict p, uint8_t* __restrict d, int32_t nb,
                  const uint16_t* __restrict sums, const int32_t* __restrict wgt) {
    for (int32_t b = 0; b < nb; ++b) {
        // (sum + 4) / 9 as a multiply: exact for sums below 32768.
        const int32_t mean = int32_t((uint32_t(sums[b] + sums[b + 4] + sums[b + 8]) + 4u) * 7282u >> 16);
        const int32_t v = p[b];
        d[b] = uint8_t(v + (((mean - v) * wgt[b] + 128) >> 8));
    }
}

} // namespace

void AntiAlias(Bits& dest, const Bits& src, int32_t strength, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    const std::vector<uint8_t> luma = lumaPlane(work);
    const size_t pw = size_t(w + 2);
    const int32_t s = std::clamp(strength, 0, 100);
    std::vector<uint16_t> sums;
    std::vector<uint8_t> lo(pw), hi(pw);
    std::vector<int32_t> wgt(size_t(w) * 4u);
    for (int32_t y = 0; y < h; ++y) {
        columnSums3(work, y, sums);
        const uint8_t* l0 = luma.data() + size_t(y) * pw;
        const uint8_t* l1 = l0 + pw;
        const uint8_t* l2 = l1 + pw;
        for (size_t i = 0; i < pw; ++i) {
            lo[i] = std::min({l0[i], l1[i], l2[i]});
            hi[i] = std::max({l0[i], l1[i], l2[i]});
        }
        for (int32_t x = 0; x < w; ++x) {
            const size_t i = size_t(x) + 1; // luma column of x
            const int32_t range = std::max({hi[i - 1], hi[i], hi[i + 1]}) -
                                  std::min({lo[i - 1], lo[i], lo[i + 1]});
            // Full smoothing from a step of 64 levels up, none on flat ground.
            const int32_t wx = std::min(range * 4, 256) * s / 100;
            for (int c = 0; c < 4; ++c) wgt[size_t(4 * x + c)] = wx;
        }
        antiAliasRow(work.row(y), dest.row(y), 4 * w, sums.data(), wgt.data());
        finishRow(src.row(y), dest.row(y), w, k);
    }
}

void SmartBlur(Bits& dest, const Bits& src, int32_t threshold, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    const int32_t t = std::max(threshold, 0);
    const ptrdiff_t stride = ptrdiff_t(work.stride());
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const uint8_t* p = work.pixel(x, y);
            int32_t sb = 0, sg = 0, sr = 0, n = 0;
            for (int32_t dy = -2; dy <= 2; ++dy)
                for (int32_t dx = -2; dx <= 2; ++dx) {
                    const uint8_t* q = p + dy * stride + 4 * dx;
                    const int32_t diff = std::max({std::abs(q[0] - p[0]), std::abs(q[1] - p[1]),
                                                   std::abs(q[2] - p[2])});
                    const int32_t in = diff <= t;
                    sb += q[0] * in;
                    sg += q[1] * in;
                    sr += q[2] * in;
                    n += in;
                }
            d[4 * x] = uint8_t((sb + n / 2) / n);
            d[4 * x + 1] = uint8_t((sg + n / 2) / n);
            d[4 * x + 2] = uint8_t((sr + n / 2) / n);
        }
        finishRow(src.row(y), d, w, k);
    }
}

void AdvancedBlur(Bits& dest, const Bits& src, int32_t amount, int32_t spread, int32_t edgeMode,
                  int32_t key) {
    const Key k(key);
    const int32_t r = std::max(0, vbRound(amount * double(spread) / 20.0));
    Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    smoothBlur(work, dest, r);
    if (edgeMode == 0 && r > 0) {
        // Black beyond the edges: each row and column weighted by the share of a blurred
        // window that falls inside the picture.
        auto coverage = [r](int32_t n) {
            std::vector<double> v(static_cast<size_t>(n), 1.0), tmp(static_cast<size_t>(n));
            for (int pass = 0; pass < 3; ++pass) {
                for (int32_t i = 0; i < n; ++i) {
                    double s = 0;
                    for (int32_t j = std::max(i - r, 0); j <= std::min(i + r, n - 1); ++j) s += v[size_t(j)];
                    tmp[size_t(i)] = s / (2 * r + 1);
                }
                v.swap(tmp);
            }
            return v;
        };
        const std::vector<double> cx = coverage(src.width()), cy = coverage(src.height());
        for (int32_t y = 0; y < src.height(); ++y) {
            uint8_t* d = dest.row(y);
            for (int32_t x = 0; x < src.width(); ++x)
                for (int c = 0; c < 3; ++c)
                    d[4 * x + c] = uint8_t(d[4 * x + c] * cx[size_t(x)] * cy[size_t(y)] + 0.5);
        }
    }
    dest.zeroGuard();
    finishKey(dest, src, k);
}

void SoftnerBlur(Bits& dest, const Bits& src, int32_t key) {
    const Key k(key);
    Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    smoothBlur(work, work, 3);
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* s = src.row(y);
        const uint8_t* b = work.row(y);
        uint8_t* d = dest.row(y);
        for (int32_t i = 0; i < src.width() * 4; ++i) d[i] = uint8_t((s[i] + b[i] + 1) >> 1);
        finishRow(s, d, src.width(), k);
    }
}

void MotionBlur(Bits& dest, const Bits& src, double degrees, int32_t length, int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    const int32_t n = std::clamp(length, 1, 255);
    // The taps: n points trailing behind the pixel against the direction of motion (screen
    // y points down), weighed less the farther behind, so the picture moves towards
    // `degrees` and leaves a fading streak.
    const double t = degrees * kPi / 180.0;
    std::vector<int32_t> tx(static_cast<size_t>(n)), ty(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i) {
        tx[size_t(i)] = vbRound(-i * std::cos(t));
        ty[size_t(i)] = vbRound(i * std::sin(t));
    }
    const uint32_t total = uint32_t(n) * uint32_t(n + 1) / 2; // the weights n, n - 1, ..., 1
    const uint64_t m = ((uint64_t(1) << 32) + total - 1) / total;
    std::vector<uint32_t> acc(size_t(w) * 4u);
    for (int32_t y = 0; y < h; ++y) {
        std::fill(acc.begin(), acc.end(), 0u);
        for (int32_t i = 0; i < n; ++i) {
            const uint8_t* row = work.row(clampTo(y + ty[size_t(i)], 0, h - 1));
            const int32_t dx = tx[size_t(i)];
            const uint32_t weight = uint32_t(n - i);
            // The interior needs no clamping; the ends take the edge pixels.
            const int32_t x0 = std::clamp(-dx, 0, w), x1 = std::clamp(w - dx, x0, w);
            for (int32_t x = 0; x < x0; ++x)
                for (int c = 0; c < 3; ++c) acc[size_t(4 * x + c)] += weight * row[4 * clampTo(x + dx, 0, w - 1) + c];
            const uint8_t* shifted = row + 4 * dx;
            for (int32_t b = 4 * x0; b < 4 * x1; ++b) acc[size_t(b)] += weight * shifted[b];
            for (int32_t x = x1; x < w; ++x)
                for (int c = 0; c < 3; ++c) acc[size_t(4 * x + c)] += weight * row[4 * clampTo(x + dx, 0, w - 1) + c];
        }
        uint8_t* d = dest.row(y);
        for (int32_t b = 0; b < 4 * w; ++b) d[b] = uint8_t((uint64_t(acc[size_t(b)]) * m + (m >> 1)) >> 32);
        finishRow(src.row(y), d, w, k);
    }
}

void FarBlur(Bits& dest, const Bits& src, int32_t radius, int32_t key) {
    const Key k(key);
    Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t h = src.height();
    // No blur over the middle half of the height; towards the top and bottom it grows
    // smoothly to the full radius.
    std::vector<int32_t> r(static_cast<size_t>(h));
    for (int32_t y = 0; y < h; ++y) {
        const double t = h > 1 ? std::fabs(y - (h - 1) / 2.0) / ((h - 1) / 2.0) : 0.0;
        double u = std::clamp((t - 0.5) / 0.5, 0.0, 1.0);
        u = u * u * (3 - 2 * u);
        r[size_t(y)] = vbRound(std::max(radius, 0) * u);
    }
    rowRadiusBlur(work, dest, r);
    rowRadiusBlur(dest, dest, r);
    dest.zeroGuard();
    finishKey(dest, src, k);
}

namespace {

// The blurs along a path (a spin, a zoom) as the mean of 32 moved copies of the picture,
// made by halving: each pass averages the picture with a copy of itself moved by half the
// previous step (rotated or scaled about the centre), so after five passes every pixel is
// the mean of 32 samples evenly spread along its path. One nearest sample per pixel and
// pass, read along straight lines through the picture, instead of 32 scattered ones.
// move(pass, x, y, sx, sy) gives the source position of pass 0 (the starting move) to 5.
constexpr int32_t kHalvings = 5;

template <class Move> void halvingBlur(Bits& dest, const Bits& src, int32_t key, Move&& move) {
    const Key k(key);
    Bits a = workingCopy(src, k), b(src.width(), src.height());
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    for (int32_t pass = 0; pass <= kHalvings; ++pass) {
        // The halves round down and up by turns, so the passes add no drift.
        const uint32_t up = uint32_t(pass & 1);
        for (int32_t y = 0; y < h; ++y) {
            uint8_t* o = b.row(y);
            const uint8_t* same = a.row(y);
            for (int32_t x = 0; x < w; ++x) {
                float sx, sy;
                move(pass, x, y, sx, sy);
                const int32_t ix = clampTo(int32_t(std::floor(sx + 0.5f)), 0, w - 1);
                const int32_t iy = clampTo(int32_t(std::floor(sy + 0.5f)), 0, h - 1);
                const uint32_t v = load32(a.pixel(ix, iy));
                if (pass == 0) {
                    store32(o + 4 * x, v);
                    continue;
                }
                const uint32_t u = load32(same + 4 * x);
                // Per byte (p + q) / 2 rounded down, or up, without carries between bytes.
                const uint32_t half = ((u ^ v) & 0xFEFEFEFEu) >> 1;
                store32(o + 4 * x, up ? (u | v) - half : (u & v) + half);
            }
        }
        std::swap(a, b);
    }
    for (int32_t y = 0; y < h; ++y) {
        std::memcpy(dest.row(y), a.row(y), size_t(w) * 4u);
        finishRow(src.row(y), dest.row(y), w, k);
    }
}

} // namespace

void RadialBlur(Bits& dest, const Bits& src, int32_t degrees, int32_t key) {
    const double theta = std::clamp(degrees, 0, 360) * kPi / 180.0;
    const float cx = (src.width() - 1) / 2.0f, cy = (src.height() - 1) / 2.0f;
    // Pass 0 turns the picture back by half the spin (less half a step); pass p by
    // theta / 2^p: the 32 turns then spread evenly over the spin, centred on the pixel.
    float cs[kHalvings + 1], sn[kHalvings + 1];
    const int32_t copies = 1 << kHalvings;
    for (int32_t p = 0; p <= kHalvings; ++p) {
        const double a = p == 0 ? -theta / 2 + theta / (2 * copies) : theta / double(1 << p);
        cs[p] = float(std::cos(a));
        sn[p] = float(std::sin(a));
    }
    halvingBlur(dest, src, key, [&](int32_t p, int32_t x, int32_t y, float& sx, float& sy) {
        const float dx = x - cx, dy = y - cy;
        sx = cx + dx * cs[p] - dy * sn[p];
        sy = cy + dx * sn[p] + dy * cs[p];
    });
}

void ZoomBlur(Bits& dest, const Bits& src, int32_t amount, int32_t key) {
    const double shrink = std::clamp(amount, 0, 1000) / 1000.0;
    const float cx = (src.width() - 1) / 2.0f, cy = (src.height() - 1) / 2.0f;
    // The copies are scaled towards the centre by g^0 .. g^31, g^31 being 1 - shrink: pass
    // p scales by g^(32 / 2^p).
    const int32_t copies = 1 << kHalvings;
    const double g = std::pow(std::max(1.0 - shrink, 1e-6), 1.0 / (copies - 1));
    float scale[kHalvings + 1];
    scale[0] = 1.0f;
    for (int32_t p = 1; p <= kHalvings; ++p) scale[p] = float(std::pow(g, copies >> p));
    halvingBlur(dest, src, key, [&](int32_t p, int32_t x, int32_t y, float& sx, float& sy) {
        sx = cx + (x - cx) * scale[p];
        sy = cy + (y - cy) * scale[p];
    });
}

void UnsharpMask(Bits& dest, const Bits& src, int32_t radius, double amount, int32_t key) {
    const Key k(key);
    Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    Bits blurred;
    smoothBlur(work, blurred, std::max(radius, 0));
    const int32_t a = vbRound(std::clamp(amount, 0.0, 100.0) * 256.0);
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* s = work.row(y);
        const uint8_t* b = blurred.row(y);
        uint8_t* d = dest.row(y);
        for (int32_t i = 0; i < src.width() * 4; ++i)
            d[i] = clampByte(s[i] + (((s[i] - b[i]) * a + 128) >> 8));
        finishRow(src.row(y), d, src.width(), k);
    }
}

} // namespace ostrivex::effects
