// Waves, rings and rain drops. Their sizes follow the picture's shorter side, so a
// thumbnail shows the same waves as the full picture.
#include "pixel/effects/effects.h"
#include "pixel/effects/frame.h"
#include "pixel/vbmath.h"

#include <cmath>
#include <cstring>

namespace ostrivex::effects {

namespace {

constexpr float kPi = 3.14159265f;

float shorterSide(const Bits& b) { return float(std::max(std::min(b.width(), b.height()), 1)); }

} // namespace

void Waves(Bits& dest, const Bits& src, int32_t amplitude, int32_t count, int32_t phase,
           int32_t mode, int32_t key) {
    const int32_t w = src.width(), h = src.height();
    const float amp = std::clamp(amplitude, 0, 100) * shorterSide(src) / 400.0f;
    const float k = 2 * kPi * float(std::max(count, 1));
    const float p = float(phase) * kPi / 180.0f;
    const bool rows = mode != 1, columns = mode != 0;
    // The shift of each row and of each column, worked out once.
    std::vector<float> dx(size_t(h), 0.0f), dy(size_t(w), 0.0f);
    if (rows)
        for (int32_t y = 0; y < h; ++y) dx[size_t(y)] = amp * std::sin(k * y / float(h) + p);
    if (columns)
        for (int32_t x = 0; x < w; ++x) dy[size_t(x)] = amp * std::sin(k * x / float(w) + p);
    remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        sx = x + dx[size_t(y)];
        sy = y + dy[size_t(x)];
    });
}

void BlockWaves(Bits& dest, const Bits& src, int32_t amplitude, int32_t bands, int32_t mode,
                int32_t key) {
    const int32_t w = src.width(), h = src.height();
    const float amp = std::clamp(amplitude, 0, 100) * shorterSide(src) / 80.0f;
    const int32_t n = std::max(bands, 1);
    // A stepped wave: each band keeps one shift, the shifts following two sine waves over
    // the bands.
    auto shiftOf = [&](int32_t i, int32_t size) {
        const int32_t band = int32_t(int64_t(i) * n / std::max(size, 1));
        return amp * std::sin(2 * kPi * 2 * (band + 0.5f) / float(n));
    };
    std::vector<float> dx(size_t(h), 0.0f), dy(size_t(w), 0.0f);
    if (mode == 1 || mode == 3)
        for (int32_t y = 0; y < h; ++y) dx[size_t(y)] = shiftOf(y, h);
    if (mode == 2 || mode == 3)
        for (int32_t x = 0; x < w; ++x) dy[size_t(x)] = shiftOf(x, w);
    remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        sx = x + dx[size_t(y)];
        sy = y + dy[size_t(x)];
    });
}

namespace {

// Rings about the centre: height(r) gives the ring's height and slope at distance r; the
// distance read moves by the height, and the slope lights the ring when `lit`.
template <class Height>
void rings(Bits& dest, const Bits& src, int32_t keyColour, bool lit, Height&& height) {
    const Key key(keyColour);
    const Bits work = workingCopy(src, key);
    prepareDest(dest, src);
    const Sampler sample(work);
    const float cx = (src.width() - 1) / 2.0f, cy = (src.height() - 1) / 2.0f;
    for (int32_t y = 0; y < src.height(); ++y) {
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < src.width(); ++x) {
            const float dx = x - cx, dy = y - cy;
            const float r = std::sqrt(dx * dx + dy * dy);
            float slope = 0;
            const float hgt = height(r, slope);
            const float f = r > 0 ? (r + hgt) / r : 1.0f;
            const uint32_t v = sample.bilinear(cx + dx * f, cy + dy * f);
            if (!lit || r == 0) {
                store32(d + 4 * x, v);
                continue;
            }
            // Light from the upper left: slopes facing it brighten.
            const float facing = -(dx * -0.7f + dy * -0.7f) / r;
            const float light = std::clamp(1.0f + 0.9f * slope * facing, 0.45f, 1.7f);
            for (int c = 0; c < 3; ++c)
                d[4 * x + c] = clampByte(int32_t(float(v >> (8 * c) & 255u) * light + 0.5f));
        }
        finishRow(src.row(y), d, src.width(), key);
    }
}

} // namespace

void CircularWaves(Bits& dest, const Bits& src, int32_t amplitude, int32_t count, int32_t key) {
    const float cx = src.width() / 2.0f, cy = src.height() / 2.0f;
    const float wave = std::max(std::sqrt(cx * cx + cy * cy) / float(std::max(count, 1)), 2.0f);
    const float amp = std::clamp(amplitude, 0, 100) * wave / 60.0f;
    const float k = 2 * kPi / wave;
    rings(dest, src, key, false, [&](float r, float&) { return amp * std::sin(k * r); });
}

void CircularWavesEx(Bits& dest, const Bits& src, int32_t amplitude, int32_t count, int32_t key) {
    const float cx = src.width() / 2.0f, cy = src.height() / 2.0f;
    const float reach = std::max(std::sqrt(cx * cx + cy * cy), 1.0f);
    const float wave = std::max(reach / float(std::max(count, 1)), 2.0f);
    const float amp = std::clamp(amplitude, 0, 100) * wave / 40.0f;
    const float k = 2 * kPi / wave;
    // Rings of water: strongest near the centre and dying away outwards.
    rings(dest, src, key, true, [&](float r, float& slope) {
        const float a = amp * std::exp(-2.5f * r / reach);
        slope = a * k * std::cos(k * r);
        return a * std::sin(k * r);
    });
}

void RainDrops(Bits& dest, const Bits& src, int32_t size, int32_t count, int32_t lens,
               int32_t key) {
    const Key k(key);
    const Bits work = workingCopy(src, k);
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    for (int32_t y = 0; y < h; ++y) std::memcpy(dest.row(y), work.row(y), size_t(w) * 4u);
    const Sampler sample(work);
    const float largest = std::clamp(size, 0, 200) / 400.0f * shorterSide(src);
    const float strength = std::clamp(lens, 0, 100) / 100.0f;
    const int32_t n = std::clamp(count, 0, 1000);
    auto shade = [&](int32_t x, int32_t y, float f) {
        uint8_t* p = dest.pixel(x, y);
        for (int c = 0; c < 3; ++c) p[c] = clampByte(int32_t(p[c] * f + 0.5f));
    };
    for (int32_t i = 0; i < n && largest >= 0.5f; ++i) {
        const uint32_t u = uint32_t(i);
        const float px = unit(hash3(u, 1, 0xd209u)) * w, py = unit(hash3(u, 2, 0xd209u)) * h;
        const float t = unit(hash3(u, 3, 0xd209u));
        const float rho = std::max(largest * (0.35f + 0.65f * t * t), 0.75f);
        const int32_t x0 = std::max(int32_t(px - rho - 2), 0), x1 = std::min(int32_t(px + rho * 1.3f + 2), w - 1);
        const int32_t y0 = std::max(int32_t(py - rho - 2), 0), y1 = std::min(int32_t(py + rho * 1.3f + 2), h - 1);
        // The shadow a little below and to the right of the drop.
        const float sxc = px + 0.2f * rho, syc = py + 0.25f * rho;
        for (int32_t y = y0; y <= y1; ++y)
            for (int32_t x = x0; x <= x1; ++x) {
                const float ex = x - sxc, ey = y - syc;
                const float ds = std::sqrt(ex * ex + ey * ey) / rho;
                const float dx = x - px, dy = y - py;
                if (ds < 1.0f && dx * dx + dy * dy >= rho * rho) shade(x, y, 0.72f + 0.28f * ds * ds);
            }
        // The drop: a lens that swells the picture behind it, lit from the upper left, with
        // a darker rim below and to the right and a highlight.
        for (int32_t y = y0; y <= y1; ++y)
            for (int32_t x = x0; x <= x1; ++x) {
                const float dx = x - px, dy = y - py;
                const float d2 = (dx * dx + dy * dy) / (rho * rho);
                if (d2 >= 1.0f) continue;
                const float dome = std::sqrt(1.0f - d2);
                const float f = 1.0f - strength * 1.6f * dome;
                const uint32_t v = sample.bilinear(px + dx * f, py + dy * f);
                store32(dest.pixel(x, y), v);
                const float facing = (dx + dy) / (rho * 1.41421f); // -1 upper left .. 1 lower right
                shade(x, y, 1.05f - 0.35f * std::max(facing, 0.0f) * (1.0f - dome));
                const float hx = dx + 0.35f * rho, hy = dy + 0.35f * rho;
                const float spot = (hx * hx + hy * hy) / (0.06f * rho * rho);
                if (spot < 1.0f) {
                    uint8_t* p = dest.pixel(x, y);
                    const float white = 0.8f * (1.0f - spot);
                    for (int c = 0; c < 3; ++c) p[c] = uint8_t(p[c] + (255 - p[c]) * white + 0.5f);
                }
            }
    }
    finishKey(dest, src, k);
}

} // namespace ostrivex::effects
