// Distortions: each destination pixel is read from a moved place of the source (bilinear,
// from the working copy, the edges repeated beyond the picture).
#include "pixel/effects/corefilter.h"
#include "pixel/effects/effects.h"
#include "pixel/effects/frame.h"
#include "pixel/random.h"
#include "pixel/vbmath.h"

#include <cmath>

namespace ostrivex::effects {

namespace {

constexpr float kPi = 3.14159265f;

// Runs fn with the program's random generator set to a fixed seed and gives the generator
// back its own state afterwards: a core filter that draws random numbers then makes the
// same pixels on every run, and the editor's own sequence goes on undisturbed.
template <class Fn> auto withFixedRandom(uint32_t seed, Fn&& fn) {
    struct Restore {
        RandomSource saved;
        ~Restore() { globalRandom() = saved; }
    } restore{globalRandom()};
    globalRandom().seed(seed);
    return fn();
}

// remap with a light factor: map(x, y, sx, sy) returns the brightness (1 leaves it).
template <class Map> void remapLit(Bits& dest, const Bits& src, int32_t keyColour, Map&& map) {
    const Key key(keyColour);
    const Bits work = workingCopy(src, key);
    prepareDest(dest, src);
    const Sampler sample(work);
    for (int32_t y = 0; y < src.height(); ++y) {
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < src.width(); ++x) {
            float sx, sy;
            const float light = map(x, y, sx, sy);
            const uint32_t v = sample.bilinear(sx, sy);
            for (int c = 0; c < 3; ++c)
                d[4 * x + c] = clampByte(int32_t(float(v >> (8 * c) & 255u) * light + 0.5f));
        }
        finishRow(src.row(y), d, src.width(), key);
    }
}

} // namespace

void Diffuse(Bits& dest, const Bits& src, int32_t key) {
    runCoreFilter(dest, src, key, true, [](cBitFilter& f) {
        return withFixedRandom(0xD1FFu, [&] { return f.DIFFUSE(6, 6); });
    });
}

void FishEye(Bits& dest, const Bits& src, int32_t key) {
    runCoreFilter(dest, src, key, true, [](cBitFilter& f) { return f.FISHEYE(); });
}

void Twirl(Bits& dest, const Bits& src, int32_t level, int32_t key) {
    runCoreFilter(dest, src, key, true, [&](cBitFilter& f) { return f.TWIRL(level, 0, false); });
}

void Mosaic(Bits& dest, const Bits& src, int32_t size, int32_t key) {
    runCoreFilter(dest, src, key, true, [&](cBitFilter& f) { return f.PIXELIZE(size); });
}

void Melt(Bits& dest, const Bits& src, int32_t key) {
    const int32_t w = src.width(), h = src.height();
    const float side = float(std::min(w, h));
    // Every column slides down by its own drip length, most at the bottom; neighbouring
    // columns drip alike (smooth noise across the width) with a finer ripple on top.
    const ValueNoise drips(std::max(w / 30.0f, 2.0f), 3, 0x3e17u);
    std::vector<float> drip(static_cast<size_t>(w));
    for (int32_t x = 0; x < w; ++x) {
        const float n = drips.at(float(x), 0.5f);
        drip[size_t(x)] = side * (0.03f + 0.6f * n * n * n);
    }
    const float wobble = side * 0.01f;
    remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        const float t = h > 1 ? float(y) / float(h - 1) : 0.0f;
        sy = float(y) - drip[size_t(x)] * t * t;
        sx = float(x) + wobble * t * std::sin(float(y) * 0.15f + float(x) * 0.05f);
    });
}

void FishEyeEx(Bits& dest, const Bits& src, double strength, int32_t key) {
    const float cx = (src.width() - 1) / 2.0f, cy = (src.height() - 1) / 2.0f;
    const float R = std::max(std::sqrt(cx * cx + cy * cy), 1.0f);
    // The distance from the centre is raised to a power: above 1 the middle swells, below
    // 1 it shrinks; the corners stay where they are.
    const float e = 1.0f + float(std::clamp(strength, -255.0, 255.0) / 255.0) * 0.8f;
    remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        const float dx = x - cx, dy = y - cy;
        const float r = std::sqrt(dx * dx + dy * dy);
        const float f = r > 0 ? std::pow(r / R, e - 1.0f) : 0.0f;
        sx = cx + dx * f;
        sy = cy + dy * f;
    });
}

namespace {
// Turns the offset (dx, dy) from the centre by phi.
inline void turn(float cx, float cy, float dx, float dy, float phi, float& sx, float& sy) {
    const float c = std::cos(phi), s = std::sin(phi);
    sx = cx + dx * c - dy * s;
    sy = cy + dx * s + dy * c;
}
} // namespace

void TwirlEx(Bits& dest, const Bits& src, double turns, double radius, int32_t key) {
    const float cx = (src.width() - 1) / 2.0f, cy = (src.height() - 1) / 2.0f;
    const float R = float(std::max(radius, 0.0)) * std::min(src.width(), src.height()) / 2.0f;
    const float phi0 = float(turns / 100.0) * 2 * kPi;
    remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        const float dx = x - cx, dy = y - cy;
        const float r = std::sqrt(dx * dx + dy * dy);
        if (r >= R) {
            sx = float(x);
            sy = float(y);
            return;
        }
        turn(cx, cy, dx, dy, phi0 * (1.0f - r / R), sx, sy);
    });
}

void Swirl(Bits& dest, const Bits& src, int32_t strength, int32_t key) {
    const float cx = (src.width() - 1) / 2.0f, cy = (src.height() - 1) / 2.0f;
    const float R = std::max(std::sqrt(cx * cx + cy * cy), 1.0f);
    const float phi0 = std::clamp(strength, -255, 255) / 255.0f * 2 * kPi;
    remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        const float dx = x - cx, dy = y - cy;
        const float u = 1.0f - std::sqrt(dx * dx + dy * dy) / R;
        turn(cx, cy, dx, dy, phi0 * u * u, sx, sy);
    });
}

void FourCorners(Bits& dest, const Bits& src, int32_t key) {
    const int32_t w = src.width(), h = src.height();
    remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        // The left half shows the picture at half size, the right half its mirror; the same
        // from top to bottom.
        const int32_t u = 2 * x < w ? x : w - 1 - x, v = 2 * y < h ? y : h - 1 - y;
        sx = 2.0f * u + 0.5f;
        sy = 2.0f * v + 0.5f;
    });
}

void Caricature(Bits& dest, const Bits& src, int32_t key) {
    const float cx = (src.width() - 1) * 0.5f, cy = (src.height() - 1) * 0.42f;
    const float R = std::max(0.55f * std::min(src.width(), src.height()), 1.0f);
    remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        const float dx = x - cx, dy = y - cy;
        const float u2 = (dx * dx + dy * dy) / (R * R);
        // Up to 1.8 times larger in the middle, easing back to the picture at radius R.
        const float f = u2 < 1.0f ? 1.0f - 0.45f * (1.0f - u2) * (1.0f - u2) : 1.0f;
        sx = cx + dx * f;
        sy = cy + dy * f;
    });
}

void Roll(Bits& dest, const Bits& src, int32_t key) {
    const int32_t w = src.width();
    // The page lies flat up to the roll, which lies on it with its axis at xa; seen from
    // above, the upper half of the roll shows the paper that followed the flat part.
    const float R = std::max(0.08f * w, 1.0f), xa = 0.6f * w;
    const float shadow = 0.6f * R;
    // Light from the upper left, as (x, height).
    const float lx = -0.6f, lz = 0.8f;
    remapLit(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        sy = float(y);
        const float fx = float(x);
        if (fx < xa - R) {
            sx = fx;
            // The roll's shadow on the page just left of it.
            const float t = (xa - R - fx) / shadow;
            return t < 1.0f ? 0.55f + 0.45f * t : 1.0f;
        }
        if (fx > xa + R) {
            sx = -1; // past the roll: the bare backing below
            return 0.0f;
        }
        const float a = kPi - std::asin(std::clamp((fx - xa) / R, -1.0f, 1.0f));
        sx = xa + R * a;
        const float nx = std::sin(a), nz = -std::cos(a);
        const float lit = std::max(0.0f, nx * lx + nz * lz);
        return 0.3f + 0.85f * lit + 0.5f * std::pow(lit, 16.0f);
    });
    // The backing past the roll: a light grey, shaded like the page beside a shadow.
    const Key k(key);
    for (int32_t y = 0; y < src.height(); ++y) {
        uint8_t* d = dest.row(y);
        for (int32_t x = std::max(0, int32_t(std::floor(xa + R)) + 1); x < w; ++x) {
            const float t = std::min((x - xa - R) / shadow, 1.0f);
            const uint8_t g = uint8_t(150 + 80 * t);
            d[4 * x] = d[4 * x + 1] = d[4 * x + 2] = g;
        }
        finishRow(src.row(y), d, w, k);
    }
}

void PolarCoordinates(Bits& dest, const Bits& src, int32_t mode, int32_t key) {
    const int32_t w = src.width(), h = src.height();
    const float cx = std::max((w - 1) / 2.0f, 0.5f), cy = std::max((h - 1) / 2.0f, 0.5f);
    if (mode == 0) {
        // Each column of the source goes round the centre (clockwise from the top); the
        // top row gathers in the centre, the bottom row reaches the inscribed ellipse.
        remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
            const float dx = (x - cx) / cx, dy = (y - cy) / cy;
            const float a = std::atan2(dx, -dy); // 0 up, clockwise
            sx = (a / (2 * kPi) + (a < 0 ? 1.0f : 0.0f)) * (w - 1);
            sy = std::sqrt(dx * dx + dy * dy) * (h - 1);
        });
    } else {
        remap(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
            const float a = w > 1 ? float(x) / (w - 1) * 2 * kPi : 0.0f;
            const float r = h > 1 ? float(y) / (h - 1) : 0.0f;
            sx = cx + r * cx * std::sin(a);
            sy = cy - r * cy * std::cos(a);
        });
    }
}

void Cilindrical(Bits& dest, const Bits& src, double strength, int32_t key) {
    const float cx = std::max((src.width() - 1) / 2.0f, 0.5f);
    const float t = float(std::clamp(strength, -30.0, 30.0) / 30.0);
    remapLit(dest, src, key, [&](int32_t x, int32_t y, float& sx, float& sy) {
        const float u = std::clamp((x - cx) / cx, -1.0f, 1.0f);
        // A bulging cylinder crowds the sides (the arcsine); a hollow one the middle.
        const float bent = t >= 0 ? std::asin(u) * (2 / kPi) : std::sin(u * kPi / 2);
        sx = cx + cx * (u + std::fabs(t) * (bent - u));
        sy = float(y);
        // The sides of a bulging cylinder turn from the light, the middle of a hollow one.
        return t >= 0 ? 1.0f - 0.35f * t * u * u : 1.0f + 0.3f * t * (1.0f - u * u);
    });
}

} // namespace ostrivex::effects
