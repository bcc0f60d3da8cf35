// Blends of two pictures, mirrors and size changes.
#include "pixel/effects/corefilter.h"
#include "pixel/effects/effects.h"
#include "pixel/effects/frame.h"
#include "pixel/vbmath.h"

#include <array>
#include <cmath>
#include <cstring>
#include <vector>

namespace ostrivex::effects {

namespace {

constexpr const char* kBlendModeNames[kBlendModeCount] = {
    "Normal",     "Multiply",   "Screen",       "Overlay",     "Darken",
    "Lighten",    "Difference", "Add",          "Subtract",    "Soft light",
    "Hard light", "Color dodge", "Color burn",  "Exclusion",   "Average"};

// The result of a mode for a bottom channel a and a top channel b.
int32_t blendChannel(int32_t mode, int32_t a, int32_t b) {
    switch (mode) {
    case 1: return (a * b + 127) / 255;
    case 2: return 255 - ((255 - a) * (255 - b) + 127) / 255;
    case 3: return a < 128 ? (2 * a * b + 127) / 255 : 255 - (2 * (255 - a) * (255 - b) + 127) / 255;
    case 4: return std::min(a, b);
    case 5: return std::max(a, b);
    case 6: return std::abs(a - b);
    case 7: return std::min(a + b, 255);
    case 8: return std::max(a - b, 0);
    case 9: return ((255 - 2 * b) * a * a / 255 + 2 * b * a + 127) / 255;
    case 10: return b < 128 ? (2 * a * b + 127) / 255 : 255 - (2 * (255 - a) * (255 - b) + 127) / 255;
    case 11: return b == 255 ? 255 : std::min(255, (a * 255 + (255 - b) / 2) / (255 - b));
    case 12: return b == 0 ? 0 : std::max(0, 255 - ((255 - a) * 255 + b / 2) / b);
    case 13: return a + b - (2 * a * b + 127) / 255;
    case 14: return (a + b + 1) / 2;
    default: return b;
    }
}

} // namespace

const char* BlendModeName(int32_t mode) {
    return mode >= 0 && mode < kBlendModeCount ? kBlendModeNames[mode] : "";
}

void BlendMode(Bits& dest, const Bits& src, const Bits& third, int32_t mode, int32_t key) {
    const Key k(key);
    std::vector<uint8_t> table(256 * 256);
    for (int32_t a = 0; a < 256; ++a)
        for (int32_t b = 0; b < 256; ++b) table[size_t(a * 256 + b)] = clampByte(blendChannel(mode, a, b));
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* s = src.row(y);
        uint8_t* d = dest.row(y);
        std::memcpy(d, s, size_t(w) * 4u);
        if (y >= third.height()) continue;
        const uint8_t* t = third.row(y);
        // The third picture covers the source where it has pixels and is not transparent.
        for (int32_t x = 0; x < std::min(w, third.width()); ++x) {
            if (k.is(load32(t + 4 * x))) continue;
            for (int c = 0; c < 3; ++c) d[4 * x + c] = table[size_t(s[4 * x + c] * 256 + t[4 * x + c])];
        }
        finishRow(s, d, w, k);
    }
    for (int32_t y = 0; y < h; ++y)
        if (y >= third.height()) finishRow(src.row(y), dest.row(y), w, k);
}

void GlassBlendMode(Bits& dest, const Bits& src, const Bits& third, double opacity,
                    int32_t refraction, int32_t key) {
    const Key k(key);
    const Bits glass = workingCopy(src, k);
    const std::vector<uint8_t> luma = lumaPlane(glass);
    const Bits behind = workingCopy(third, k);
    prepareDest(dest, src);
    const int32_t w = src.width(), h = src.height();
    const size_t pw = size_t(w + 2);
    const Sampler sample(behind);
    const int32_t op = vbRound(std::clamp(opacity, 0.0, 1.0) * 256.0);
    const float bend = std::clamp(refraction, 0, 100) / 255.0f;
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* s = src.row(y);
        uint8_t* d = dest.row(y);
        const uint8_t* l = luma.data() + size_t(y + 1) * pw + 1;
        for (int32_t x = 0; x < w; ++x) {
            const bool covered = x < third.width() && y < third.height() &&
                                 !k.is(load32(third.pixel(x, y)));
            if (!covered) {
                store32(d + 4 * x, load32(s + 4 * x));
                continue;
            }
            // The glass bends what lies behind it along the slopes of its own light.
            const float gx = float(l[x + 1] - l[x - 1]), gy = float(l[x + ptrdiff_t(pw)] - l[x - ptrdiff_t(pw)]);
            const uint32_t v = sample.bilinear(x + gx * bend, y + gy * bend);
            for (int c = 0; c < 3; ++c) {
                const int32_t a = s[4 * x + c], b = int32_t(v >> (8 * c) & 255u);
                d[4 * x + c] = uint8_t((a * (256 - op) + b * op + 128) >> 8);
            }
        }
        finishRow(s, d, w, k);
    }
}

void AlphaBlendInto(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    const Key k(key);
    const int32_t l = std::clamp(level, 0, 100);
    const int32_t w = std::min(dest.width(), src.width()), h = std::min(dest.height(), src.height());
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* s = src.row(y);
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const uint32_t sw = load32(s + 4 * x), dw = load32(d + 4 * x);
            // Transparent pixels on either side stay as the destination has them.
            if (k.is(sw) || k.is(dw)) continue;
            uint32_t out = dw & ~kColourBytes;
            for (int c = 0; c < 3; ++c) {
                const int32_t a = int32_t(dw >> (8 * c) & 255u), b = int32_t(sw >> (8 * c) & 255u);
                out |= uint32_t((a * (100 - l) + b * l + 50) / 100) << (8 * c);
            }
            store32(d + 4 * x, k.is(out) ? nudged(out) : out);
        }
    }
}

void AlphaBlendAt(Bits& dest, int32_t width, int32_t height, const Bits& src, int32_t left,
                  int32_t top, int32_t level, int32_t key) {
    if (&dest == &src) throw std::invalid_argument("an effect needs two pictures");
    const Key k(key);
    dest.resetForOverwrite(std::max(width, 0), std::max(height, 0));
    const uint32_t clear = k.on ? k.word : 0u;
    for (int32_t y = 0; y < dest.height(); ++y)
        for (int32_t x = 0; x < dest.width(); ++x) store32(dest.pixel(x, y), clear);
    const int32_t l = std::clamp(level, 0, 100);
    const int32_t x0 = std::max(left, 0), x1 = std::min(left + src.width(), dest.width());
    const int32_t y0 = std::max(top, 0), y1 = std::min(top + src.height(), dest.height());
    for (int32_t y = y0; y < y1; ++y)
        for (int32_t x = x0; x < x1; ++x) {
            const uint32_t sw = load32(src.pixel(x - left, y - top));
            if (k.is(sw)) { // transparent pixels stay as they are
                store32(dest.pixel(x, y), sw);
                continue;
            }
            uint32_t out = sw & ~kColourBytes;
            for (int c = 0; c < 3; ++c) {
                const int32_t a = int32_t(clear >> (8 * c) & 255u), b = int32_t(sw >> (8 * c) & 255u);
                out |= uint32_t((a * (100 - l) + b * l + 50) / 100) << (8 * c);
            }
            store32(dest.pixel(x, y), k.is(out) ? nudged(out) : out);
        }
}

void Flip(Bits& dest, const Bits& src, bool horizontal, bool vertical, int32_t key) {
    // The mirror moves every pixel, the transparent ones with the rest: it neither makes
    // nor removes a key pixel, so the key needs no rule here.
    (void)key;
    if (&dest == &src) throw std::invalid_argument("an effect needs two pictures");
    dest.resetForOverwrite(src.width(), src.height());
    for (int32_t y = 0; y < src.height(); ++y) std::memcpy(dest.row(y), src.row(y), size_t(src.width()) * 4u);
    cBitFilter f;
    f.SetBits(std::move(dest));
    dest = f.Flip(horizontal, vertical);
}

void IncreaseSize(Bits& dest, const Bits& src) {
    if (&dest == &src) return; // already the same picture
    dest.resetForOverwrite(src.width(), src.height());
    for (int32_t y = 0; y < src.height(); ++y) std::memcpy(dest.row(y), src.row(y), size_t(src.width()) * 4u);
}

void IncreaseSize(Bits& dest, const Bits& src, int32_t width, int32_t height, int32_t key) {
    if (width == src.width() && height == src.height()) {
        IncreaseSize(dest, src);
        return;
    }
    if (&dest == &src) throw std::invalid_argument("an effect needs two pictures");
    const Key k(key);
    const Bits work = workingCopy(src, k);
    dest.resetForOverwrite(std::max(width, 0), std::max(height, 0));
    if (src.width() == 0 || src.height() == 0) {
        for (int32_t y = 0; y < dest.height(); ++y) std::memset(dest.row(y), 0, size_t(dest.width()) * 4u);
        return;
    }
    const Sampler sample(work);
    const float fx = float(src.width()) / std::max(width, 1), fy = float(src.height()) / std::max(height, 1);
    for (int32_t y = 0; y < dest.height(); ++y) {
        uint8_t* d = dest.row(y);
        const float sy = (y + 0.5f) * fy - 0.5f;
        const int32_t ny = clampTo(int32_t(std::floor((y + 0.5f) * fy)), 0, src.height() - 1);
        for (int32_t x = 0; x < dest.width(); ++x) {
            const float sx = (x + 0.5f) * fx - 0.5f;
            const int32_t nx = clampTo(int32_t(std::floor((x + 0.5f) * fx)), 0, src.width() - 1);
            // The shape scales as blocks (the nearest source pixel decides transparency);
            // the picture itself scales smoothly.
            const uint32_t nearest = load32(src.pixel(nx, ny));
            if (k.is(nearest)) {
                store32(d + 4 * x, nearest);
                continue;
            }
            uint32_t v = sample.bilinear(sx, sy) | (nearest & ~kColourBytes);
            store32(d + 4 * x, k.is(v) ? nudged(v) : v);
        }
    }
}

} // namespace ostrivex::effects
