// The frame every layer effect runs in, and the small tools the effects share.
//
// An effect reads the source picture and writes the destination picture, which takes the
// source's size; the source is never changed, so running an effect again (or with another
// value) starts from the same pixels. Channel 3 of every destination pixel is the source's
// channel 3 at the same place.
//
// The colour key: a colour 0x00BBGGRR (a value outside 0..0xFFFFFF means none). A source
// pixel of the key colour is the transparent part of a layer: it is copied unchanged, and a
// pixel that an effect would turn into the key colour is moved by one step of blue, so the
// transparent area never grows or shrinks. Effects that read neighbours or move pixels read
// a working copy in which the key pixels carry the colours next to them, so the key colour
// does not bleed into the picture.
#pragma once

#include "pixel/bits.h"
#include "pixel/pixelword.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace ostrivex::effects {

// The key of a call, as the colour bytes of a pixel word (0x00RRGGBB: blue lowest).
struct Key {
    bool on = false;
    uint32_t word = 0;
    Key() = default;
    explicit Key(int32_t colour)
        : on(colour >= 0 && colour <= 0xFFFFFF),
          word(on ? (uint32_t(colour & 0xFF) << 16) | uint32_t(colour & 0xFF00) |
                        uint32_t((colour >> 16) & 0xFF)
                  : 0u) {}
    bool is(uint32_t pixelWord) const { return on && (pixelWord & 0xFFFFFFu) == word; }
};

constexpr uint32_t kColourBytes = 0x00FFFFFFu;

// A colour 0x00BBGGRR as pixel-word colour bytes (0x00RRGGBB), and back.
inline uint32_t wordOf(uint32_t colour) {
    return ((colour & 0xFFu) << 16) | (colour & 0xFF00u) | ((colour >> 16) & 0xFFu);
}

// One step of blue away from the key: up, or down from 255.
inline uint32_t nudged(uint32_t w) { return (w & 0xFFu) == 0xFFu ? w - 1u : w + 1u; }

// The key rule on one row: channel 3 from the source; key pixels of the source copied
// whole; a result equal to the key nudged.
void finishRow(const uint8_t* s, uint8_t* d, int32_t n, const Key& key);
// The key rule on the whole destination (same size as the source).
void finishKey(Bits& dest, const Bits& src, const Key& key);

// Makes dest the source's size for an effect that writes every visible pixel (the guard
// band is zeroed, the storage kept when it is large enough). Throws std::invalid_argument
// when dest and src are one picture: an effect needs two.
void prepareDest(Bits& dest, const Bits& src);

// A point effect: fn(s, d, n) makes n destination pixels of a row from n source pixels,
// then the key rule runs on the row while it is in the cache.
template <class Fn> void pointRows(Bits& dest, const Bits& src, int32_t keyColour, Fn&& fn) {
    prepareDest(dest, src);
    const Key key(keyColour);
    const int32_t w = src.width(), h = src.height();
    for (int32_t y = 0; y < h; ++y) {
        fn(src.row(y), dest.row(y), w);
        finishRow(src.row(y), dest.row(y), w, key);
    }
}

// The same with three byte tables, one for each of blue, green and red.
void mapChannels(Bits& dest, const Bits& src, int32_t keyColour, const uint8_t* blue,
                 const uint8_t* green, const uint8_t* red);

// Whether the source holds a pixel of the key colour.
bool hasKeyPixels(const Bits& src, const Key& key);

// The working copy into out: the source's pixels, key pixels replaced by the colours beside
// them in their row (or, in a row of key pixels only, by the nearest row that has others),
// and the guard band filled with the edge pixels, so a neighbourhood read at the edge sees
// the picture continue.
void makeWorkingCopy(Bits& out, const Bits& src, const Key& key);
Bits workingCopy(const Bits& src, const Key& key);
// Fills the two-pixel guard band with copies of the edge pixels.
void repeatEdges(Bits& b);

// --- Reading pixels --------------------------------------------------------------------

inline int32_t clampTo(int32_t v, int32_t lo, int32_t hi) { return v < lo ? lo : (v > hi ? hi : v); }

// Luminance 0..255 of a pixel word (weights 77, 150, 29 in 256ths).
inline uint32_t lumaOf(uint32_t w) {
    return ((w >> 16 & 255u) * 77u + (w >> 8 & 255u) * 150u + (w & 255u) * 29u + 128u) >> 8;
}

// Samples of a picture at real positions, the edges repeated beyond the picture.
class Sampler {
public:
    explicit Sampler(const Bits& b) : b_(b), w1_(b.width() - 1), h1_(b.height() - 1) {}
    uint32_t nearest(float x, float y) const {
        const int32_t ix = clampTo(int32_t(std::lround(x)), 0, w1_);
        const int32_t iy = clampTo(int32_t(std::lround(y)), 0, h1_);
        return load32(b_.pixel(ix, iy));
    }
    uint32_t at(int32_t x, int32_t y) const {
        return load32(b_.pixel(clampTo(x, 0, w1_), clampTo(y, 0, h1_)));
    }
    // Bilinear, weights in 256ths; the colour bytes of the result (channel 3 zero).
    uint32_t bilinear(float x, float y) const {
        const float fx0 = std::floor(x), fy0 = std::floor(y);
        const int32_t fx = int32_t((x - fx0) * 256.0f), fy = int32_t((y - fy0) * 256.0f);
        int32_t x0 = int32_t(fx0), y0 = int32_t(fy0);
        int32_t x1 = clampTo(x0 + 1, 0, w1_), y1 = clampTo(y0 + 1, 0, h1_);
        x0 = clampTo(x0, 0, w1_);
        y0 = clampTo(y0, 0, h1_);
        const uint8_t* a = b_.pixel(x0, y0);
        const uint8_t* b = b_.pixel(x1, y0);
        const uint8_t* c = b_.pixel(x0, y1);
        const uint8_t* d = b_.pixel(x1, y1);
        const int32_t wa = (256 - fx) * (256 - fy), wb = fx * (256 - fy), wc = (256 - fx) * fy,
                      wd = fx * fy;
        uint32_t out = 0;
        for (int ch = 0; ch < 3; ++ch) {
            const int32_t v = (a[ch] * wa + b[ch] * wb + c[ch] * wc + d[ch] * wd + 32768) >> 16;
            out |= uint32_t(v) << (8 * ch);
        }
        return out;
    }
    int32_t width() const { return w1_ + 1; }
    int32_t height() const { return h1_ + 1; }

private:
    const Bits& b_;
    int32_t w1_, h1_;
};

// An inverse-mapped effect: for every destination pixel, map(x, y, sx, sy) gives the
// source position, read bilinearly from the working copy; then the key rule.
template <class Map> void remap(Bits& dest, const Bits& src, int32_t keyColour, Map&& map) {
    const Key key(keyColour);
    const Bits work = workingCopy(src, key);
    prepareDest(dest, src);
    const Sampler sample(work);
    const int32_t w = src.width(), h = src.height();
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* d = dest.row(y);
        for (int32_t x = 0; x < w; ++x) {
            float sx, sy;
            map(x, y, sx, sy);
            store32(d + 4 * x, sample.bilinear(sx, sy));
        }
        finishRow(src.row(y), d, w, key);
    }
}

// --- Deterministic noise ------------------------------------------------------------------
// Effects that scatter or grain use a hash of the position instead of a running random
// sequence: the same picture gives the same result every time, so a preview shows what
// Apply makes and a second run with another value starts from the same grain.

inline uint32_t hash3(uint32_t x, uint32_t y, uint32_t seed) {
    uint32_t h = x * 0x8da6b343u ^ y * 0xd8163841u ^ seed * 0xcb1ab31fu;
    h ^= h >> 16;
    h *= 0x7feb352du;
    h ^= h >> 15;
    h *= 0x846ca68bu;
    h ^= h >> 16;
    return h;
}
// A number in [0, 1) from the hash.
inline float unit(uint32_t h) { return float(h >> 8) * (1.0f / 16777216.0f); }

// Smooth value noise in 0..1: random values on a lattice of `cell` pixels, blended with a
// smooth step, octaves halving the cell and the weight.
class ValueNoise {
public:
    ValueNoise(float cell, int32_t octaves, uint32_t seed)
        : cell_(std::max(cell, 1.0f)), octaves_(octaves), seed_(seed) {}
    float at(float x, float y) const {
        float sum = 0, weight = 1, total = 0, scale = 1.0f / cell_;
        for (int32_t o = 0; o < octaves_; ++o) {
            sum += weight * layer(x * scale, y * scale, seed_ + uint32_t(o) * 7919u);
            total += weight;
            weight *= 0.5f;
            scale *= 2.0f;
        }
        return sum / total;
    }

private:
    static float layer(float x, float y, uint32_t seed) {
        const float fx = std::floor(x), fy = std::floor(y);
        const uint32_t ix = uint32_t(int32_t(fx)), iy = uint32_t(int32_t(fy));
        float tx = x - fx, ty = y - fy;
        tx = tx * tx * (3 - 2 * tx);
        ty = ty * ty * (3 - 2 * ty);
        const float a = unit(hash3(ix, iy, seed)), b = unit(hash3(ix + 1, iy, seed));
        const float c = unit(hash3(ix, iy + 1, seed)), d = unit(hash3(ix + 1, iy + 1, seed));
        return (a + (b - a) * tx) + ((c + (d - c) * tx) - (a + (b - a) * tx)) * ty;
    }
    float cell_;
    int32_t octaves_;
    uint32_t seed_;
};

// --- Blurs on whole pictures -----------------------------------------------------------

// A box blur of radius r (a window of 2r + 1) along the rows, then along the columns, the
// edge pixels repeated beyond the picture; channels 0..2, channel 3 of out is 0. in and out
// may be one picture.
void boxBlur(const Bits& in, Bits& out, int32_t r);
// Three box blurs: close to a Gaussian of sigma about r.
void smoothBlur(const Bits& in, Bits& out, int32_t r);
// A box blur whose radius changes with the row: radius[y] for row y.
void rowRadiusBlur(const Bits& in, Bits& out, const std::vector<int32_t>& radius);

// The luminance plane of a picture, with a one-pixel border repeating the edge values:
// value (x, y) at index (y + 1) * (w + 2) + x + 1.
std::vector<uint8_t> lumaPlane(const Bits& b);

} // namespace ostrivex::effects
