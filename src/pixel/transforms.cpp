// Crops, the quarter turn, the mirror, the tile placement and the smooth rotation.
//
// The quarter turn (and the scaling, in transforms_resample.cpp) writes into the object's
// own buffer storage when the source is another Bits: the buffer is discarded anyway, and
// reusing its memory spares the page faults of a fresh allocation of the same size, which
// cost more than the turn itself on large images. When the source is the object's own
// buffer, a new buffer is made. The crops make a new, smaller buffer.
#include "pixel/pixelword.h"
#include "pixel/bitfilter.h"
#include "pixel/transforms_simd.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace ostrivex {

namespace {


// Channels 0 to 2 of a pixel read as a little-endian 32-bit word.
constexpr uint32_t kColourMask = 0x00FFFFFFu;

// The platform's rectangle intersection: empty (all zero) when the rectangles do not
// overlap or either has no area; a rectangle with reversed edges has no area.
Rect intersectRect(const Rect& a, const Rect& b) {
    const Rect r{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                 std::min(a.bottom, b.bottom)};
    if (a.isEmpty() || b.isEmpty() || r.isEmpty()) return {};
    return r;
}

} // namespace

void cBitFilter::BitsCrop(const Bits& source, int32_t left, int32_t top, int32_t right,
                          int32_t bottom) {
    const Rect r = intersectRect({left, top, right, bottom}, image_);
    // The copy reads the source's array, guard band included; beyond it is a fault.
    if (!r.isEmpty() && (r.right > source.width() + 2 || r.bottom > source.height() + 2))
        throw std::out_of_range("BitsCrop: rectangle outside the source");
    const int32_t w = r.right - r.left, h = r.bottom - r.top;
    Bits fresh(w, h);
    for (int32_t y = 0; y < h; ++y)
        std::memcpy(fresh.row(y), source.pixel(r.left, y + r.top), size_t(w) * 4u);
    SetBits(std::move(fresh));
    raiseProgress(100);
}

void cBitFilter::BitsCropMasked(const Bits& source, int32_t left, int32_t top, int32_t right,
                                int32_t bottom) {
    const Rect sourceRect{0, 0, source.width(), source.height()};
    const Rect r = intersectRect({left, top, right, bottom}, sourceRect);
    const int32_t w = r.right - r.left, h = r.bottom - r.top;
    Bits fresh(w, h);
    const uint32_t outside = 0xFF000000u; // colour 0, channel 3 = 255
    for (int32_t y = 0; y < h; ++y) {
        uint8_t* out = fresh.row(y);
        for (int32_t x = 0; x < w; ++x)
            store32(out + size_t(x) * 4u, outside);
        const int32_t sy = y + r.top;
        auto copy = [&](int32_t x0, int32_t x1) { // source columns [x0, x1)
            x0 = std::max(x0, r.left);
            x1 = std::min(x1, r.right);
            if (x0 < x1)
                std::memcpy(out + size_t(x0 - r.left) * 4u, source.pixel(x0, sy),
                            size_t(x1 - x0) * 4u);
        };
        if (!region_) {
            copy(0, source.width()); // no region: the whole source image
        } else if (const std::vector<Span>* spans = region_->rowSpans(sy)) {
            for (const Span& s : *spans)
                copy(s.x1, s.x2);
        }
    }
    SetBits(std::move(fresh));
    raiseProgress(100);
}

namespace {

// Output row y of a quarter turn, columns [x0, x1): source column ws - 1 - y read down
// from row x0, colour only.
void turnRun(uint8_t* o, const uint8_t* s, size_t srcStride, int32_t n) {
    for (int32_t i = 0; i < n; ++i, o += 4, s += srcStride)
        store32(o, load32(s) & kColourMask);
}

#if defined(__x86_64__) || defined(__i386__)
bool haveAvx2() {
    return transforms_detail::simdLevel() >= transforms_detail::kAvx2;
}

// Turns the 8 x 8 pixels at source (c0, r0): source row r0 + i becomes output column
// r0 + i, source column c0 + j output row ws - 1 - c0 - j (`dst` points at output
// (r0, ws - 1 - c0), `dstStride` is the output's row step).
__attribute__((target("avx2"), always_inline)) inline void
turnBlock8(const uint8_t* src, size_t srcStride, uint8_t* dst, size_t dstStride) {
    __m256i r[8];
    for (int i = 0; i < 8; ++i)
        r[i] = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + srcStride * size_t(i)));
    const __m256i t0 = _mm256_unpacklo_epi32(r[0], r[1]), t1 = _mm256_unpackhi_epi32(r[0], r[1]);
    const __m256i t2 = _mm256_unpacklo_epi32(r[2], r[3]), t3 = _mm256_unpackhi_epi32(r[2], r[3]);
    const __m256i t4 = _mm256_unpacklo_epi32(r[4], r[5]), t5 = _mm256_unpackhi_epi32(r[4], r[5]);
    const __m256i t6 = _mm256_unpacklo_epi32(r[6], r[7]), t7 = _mm256_unpackhi_epi32(r[6], r[7]);
    const __m256i u0 = _mm256_unpacklo_epi64(t0, t2), u1 = _mm256_unpackhi_epi64(t0, t2);
    const __m256i u2 = _mm256_unpacklo_epi64(t1, t3), u3 = _mm256_unpackhi_epi64(t1, t3);
    const __m256i u4 = _mm256_unpacklo_epi64(t4, t6), u5 = _mm256_unpackhi_epi64(t4, t6);
    const __m256i u6 = _mm256_unpacklo_epi64(t5, t7), u7 = _mm256_unpackhi_epi64(t5, t7);
    const __m256i colour = _mm256_set1_epi32(int32_t(kColourMask));
    const __m256i cols[8] = {
        _mm256_permute2x128_si256(u0, u4, 0x20), _mm256_permute2x128_si256(u1, u5, 0x20),
        _mm256_permute2x128_si256(u2, u6, 0x20), _mm256_permute2x128_si256(u3, u7, 0x20),
        _mm256_permute2x128_si256(u0, u4, 0x31), _mm256_permute2x128_si256(u1, u5, 0x31),
        _mm256_permute2x128_si256(u2, u6, 0x31), _mm256_permute2x128_si256(u3, u7, 0x31)};
    for (int j = 0; j < 8; ++j)
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst - dstStride * size_t(j)),
                            _mm256_and_si256(cols[j], colour));
}

// The part of the turn whose source rows and columns are whole multiples of 8, in bands of
// 16 source columns: each source row of a band is one cache line, and the band's 16
// output rows are written in step. (Blocks of 16 x 16 on AVX-512 measured a third slower
// on these machines, and bands of 32 or 64 columns, or tiles of 64 rows, no faster.)
__attribute__((target("avx2"))) void turnAvx2(const Bits& source, Bits& out, int32_t rows8,
                                              int32_t c0, int32_t c1) {
    const int32_t ws = source.width();
    const size_t srcStride = source.stride(), dstStride = out.stride();
    for (int32_t r0 = 0; r0 < rows8; r0 += 8)
        for (int32_t c = c0; c < c1; c += 8)
            turnBlock8(source.pixel(c, r0), srcStride, out.pixel(r0, ws - 1 - c), dstStride);
}
#else
bool haveAvx2() {
    return false;
}
#endif

} // namespace

namespace transforms_detail {

SimdLevel& simdLimit() {
    static SimdLevel limit = kAvx512Vbmi;
    return limit;
}

SimdLevel simdLevel() {
#if defined(__x86_64__) || defined(__i386__)
    static const SimdLevel best = [] {
        if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw"))
            return __builtin_cpu_supports("avx512vbmi") ? kAvx512Vbmi : kAvx512;
        return __builtin_cpu_supports("avx2") ? kAvx2 : kPlain;
    }();
#else
    static const SimdLevel best = kPlain;
#endif
    return std::min(best, simdLimit());
}

} // namespace transforms_detail

void cBitFilter::BitsRotate90(const Bits& source) {
    const int32_t ws = source.width(), hs = source.height();
    const int32_t w = hs, h = ws; // the new size
    // The output goes into the object's own storage unless the source is that buffer.
    Bits fresh;
    Bits& out = (&source == &buffer_) ? fresh : buffer_;
    out.resetForOverwrite(w, h); // every visible pixel is written below
    lastColumn_ = w - 1;
    lastRow_ = h - 1;
    image_ = {0, 0, w, h};
    const size_t srcStride = source.stride();
    // Source columns [c0, c0 + 16) are output rows ws - 1 - c0 down to ws - 16 - c0.
    const bool simd = haveAvx2();
    const int32_t rows8 = simd ? hs / 8 * 8 : 0, cols8 = simd ? ws / 8 * 8 : 0;
    constexpr int32_t kBand = 16;
    for (int32_t c0 = 0; c0 < ws; c0 += kBand) {
        const int32_t c1 = std::min(c0 + kBand, ws);
        const int32_t vectorEnd = std::min(c1, cols8);
#if defined(__x86_64__) || defined(__i386__)
        if (vectorEnd > c0) turnAvx2(source, out, rows8, c0, vectorEnd);
#endif
        for (int32_t c = c0; c < c1; ++c) {
            const int32_t y = ws - 1 - c;
            // Columns left to the plain loop: the rows below the last whole block of 8,
            // or the whole column when it lies beyond the last whole block of 8.
            const int32_t from = c < vectorEnd ? rows8 : 0;
            turnRun(out.pixel(from, y), source.pixel(c, from), srcStride, hs - from);
        }
        progressStep(c1 - 1);
    }
    if (&out == &fresh) buffer_ = std::move(fresh);
    finishProgress();
}

// Colour moves, channel 3 stays: like the filters, Flip writes channels 0 to 2 of a copy,
// so the markers of channel 3 keep their places.
Bits cBitFilter::Flip(bool horizontal, bool vertical) {
    Bits out = buffer_;
    const int32_t w = lastColumn_ + 1, h = lastRow_ + 1;
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* src = buffer_.row(vertical ? h - 1 - y : y);
        uint8_t* dst = out.row(y);
        if (horizontal) {
            for (int32_t x = 0; x < w; ++x) {
                const uint32_t s = load32(src + size_t(w - 1 - x) * 4u);
                uint8_t* d = dst + size_t(x) * 4u;
                store32(d, (load32(d) & ~kColourMask) | (s & kColourMask));
            }
        } else if (vertical) {
            for (int32_t x = 0; x < w; ++x) {
                uint8_t* d = dst + size_t(x) * 4u;
                store32(d,
                        (load32(d) & ~kColourMask) | (load32(src + size_t(x) * 4u) & kColourMask));
            }
        }
        progressStep(y);
    }
    finishProgress();
    return out;
}

Bits cBitFilter::TileMask(const Bits& tile, int32_t left, int32_t top, bool repeat, int32_t opacity,
                          int32_t key) {
    Bits out = buffer_;
    const int32_t w = lastColumn_ + 1, h = lastRow_ + 1;
    const int32_t wt = tile.width(), ht = tile.height();
    // An empty tile places nothing (and would never step on when repeated).
    if (wt <= 0 || ht <= 0) {
        finishProgress();
        return out;
    }
    const bool useKey = key != -1;
    const uint8_t keyR = colourR(uint32_t(key)), keyG = colourG(uint32_t(key)),
                  keyB = colourB(uint32_t(key));
    // blend[target][tile] = Round(target * a + tile * b); the dialogs keep the opacity in
    // 0..100, where no result leaves a byte; beyond, results are clamped.
    const double a = opacity / 100.0, b = 1.0 - a;
    std::vector<uint8_t> blend(256 * 256);
    for (int t = 0; t < 256; ++t)
        for (int u = 0; u < 256; ++u)
            blend[size_t(t) * 256 + size_t(u)] = clampByteD(t * a + u * b);
    const int32_t stepX = repeat ? wt : w - left, stepY = repeat ? ht : h - top;
    for (int32_t py = top; py <= lastRow_; py += stepY) {
        for (int32_t px = left; px <= lastColumn_; px += stepX) {
            for (int32_t ty = 0; ty < ht; ++ty) {
                const int32_t y = py + ty;
                if (y < 0 || y >= h) continue;
                const uint8_t* trow = tile.row(ty);
                uint8_t* orow = out.row(y);
                auto place = [&](int32_t x0, int32_t x1) { // target columns [x0, x1)
                    x0 = std::max({x0, px, 0});
                    x1 = std::min({x1, px + wt, w});
                    for (int32_t x = x0; x < x1; ++x) {
                        const uint8_t* t = trow + size_t(x - px) * 4u;
                        if (useKey && t[0] == keyB && t[1] == keyG && t[2] == keyR) continue;
                        uint8_t* o = orow + size_t(x) * 4u;
                        for (int c = 0; c < 3; ++c)
                            o[c] = blend[size_t(o[c]) * 256 + t[c]];
                    }
                };
                if (!region_) {
                    place(0, w);
                } else if (const std::vector<Span>* spans = region_->rowSpans(y)) {
                    for (const Span& s : *spans)
                        place(s.x1, s.x2);
                }
            }
        }
        progressStep(std::clamp(py, 0, std::max(lastRow_, 0)));
    }
    finishProgress();
    return out;
}

// The mapping is ROTATE's: the output pixel (x, y) of the region reads the source at
// (dx c - dy s + cx, dx s + dy c + cy) about the centre of the region's box. Where ROTATE
// rounds that position to a pixel, this samples it bilinearly from its four neighbours.
// A neighbour outside the region stands in as what ROTATE would write for an outside
// source: black with cleanBack, else the output pixel's old value. So the inside is
// smooth, the rim of the turned picture fades into the background instead of stepping,
// an output pixel whose neighbours are all outside gets exactly ROTATE's value, and a
// turn by 0 degrees is the identity. The sum is rounded once, ties to even.
Bits cBitFilter::RotateSmooth(int32_t degrees, bool cleanBack) {
    Bits out = buffer_;
    RegionBounds(0);
    const int32_t cx = (boxLeft_ + boxRight_) >> 1, cy = (boxTop_ + boxBottom_) >> 1;
    const float angle = float(degrees) * 0.0174533f;
    const float c = std::cos(angle), s = std::sin(angle);
    // A region of one rectangle (or none: the whole image) is tested by its bounds.
    const bool plain = !region_ || region_->rectCount() == 1;
    const Rect bounds = region_ ? region_->bounds() : image_;
    auto inside = [&](int32_t x, int32_t y) {
        if (plain)
            return x >= bounds.left && x < bounds.right && y >= bounds.top && y < bounds.bottom;
        return region_->contains(x, y);
    };
    const Bits& src = buffer_;
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        const double dy = y - cy;
        for (int32_t x = x0; x < x1; ++x) {
            const double dx = x - cx;
            const double fx = dx * c - dy * s + cx, fy = dx * s + dy * c + cy;
            const double flx = std::floor(fx), fly = std::floor(fy);
            const int32_t ix = int32_t(flx), iy = int32_t(fly);
            const double wx = fx - flx, wy = fy - fly;
            const double wgt[4] = {(1 - wx) * (1 - wy), wx * (1 - wy), (1 - wx) * wy, wx * wy};
            const int32_t nx[4] = {ix, ix + 1, ix, ix + 1}, ny[4] = {iy, iy, iy + 1, iy + 1};
            uint8_t* o = out.pixel(x, y);
            double sum[3] = {0, 0, 0};
            for (int k = 0; k < 4; ++k) {
                if (wgt[k] == 0) continue;
                const uint8_t* p = inside(nx[k], ny[k]) ? src.pixel(nx[k], ny[k])
                                   : cleanBack          ? nullptr
                                                        : src.pixel(x, y);
                if (p)
                    for (int ch = 0; ch < 3; ++ch)
                        sum[ch] += wgt[k] * p[ch];
            }
            for (int ch = 0; ch < 3; ++ch)
                o[ch] = clampByteD(sum[ch]);
        }
    });
    finishProgress();
    return out;
}

} // namespace ostrivex
