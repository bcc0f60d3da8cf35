// Pieces shared by the tone and colour filters (tone*.cpp): whole-pixel loads and stores,
// the three-table channel map, and the colour-distance threshold.
#pragma once

#include "pixel/pixelword.h"
#include "pixel/bitfilter.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ostrivex::tone {


// A pixel as one little-endian word: blue in bits 0..7, green 8..15, red 16..23, and the
// marker byte (channel 3) in 24..31.
constexpr uint32_t kMarkerMask = 0xFF000000u;

inline uint32_t packPixel(uint32_t marker, uint32_t b, uint32_t g, uint32_t r) {
    return (marker & kMarkerMask) | b | (g << 8) | (r << 16);
}

// Channel maps: each of blue, green and red of n source pixels through its own 256-entry
// table into the target. Channel 3 is carried over.
inline void mapChannels(const uint8_t* s, uint8_t* p, int32_t n, const uint8_t* mb,
                        const uint8_t* mg, const uint8_t* mr) {
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        store32(p + 4 * i, packPixel(v, mb[v & 255u], mg[(v >> 8) & 255u], mr[(v >> 16) & 255u]));
    }
}

// Copies n pixels from a scratch block back into the image. An open loop rather than
// memcpy: GCC turns a memcpy of a size it can bound (the pieces of the in-place frame, at
// most 512 pixels) into `rep movs`, whose start-up cost is not small next to a cheap
// filter (Invert on a half-image ellipse ran about 15 % slower with it, on the whole image
// up to a quarter).
inline void copyPixels(uint8_t* dst, const uint8_t* src, int32_t n) {
    int32_t i = 0;
#if defined(__SSE2__)
    for (; i + 4 <= n; i += 4)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * i),
                         _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 4 * i)));
#endif
    for (; i < n; ++i) store32(dst + 4 * i, load32(src + 4 * i));
}

// The threshold of the colour-distance filters: round((tolerance * 127.5 / 100)^2 + 1).
inline int32_t distanceThreshold(int32_t tolerance) {
    const double a = tolerance * 127.5 / 100.0;
    return vbRound(a * a + 1.0);
}

// Squared distance of a pixel (b, g, r) to a colour (b1, g1, r1).
inline int32_t colourDistance(int32_t b, int32_t g, int32_t r, int32_t b1, int32_t g1, int32_t r1) {
    return (b - b1) * (b - b1) + (g - g1) * (g - g1) + (r - r1) * (r - r1);
}

// The blend of the replace filters, k = 1 - d / t held as a single: each channel moves
// towards the new colour by k, c = byte(c + (c2 - c) * k). Since 0 <= k <= 1 the result
// stays inside 0..255.
inline float blendFactor(int32_t d, int32_t t) {
    return static_cast<float>(1.0 - double(d) / double(t));
}
inline uint8_t blendByte(int32_t c, int32_t c2, float k) {
    uint8_t out = static_cast<uint8_t>(c);
    toByte(double(c) + double(c2 - c) * double(k), out);
    return out;
}

} // namespace ostrivex::tone

namespace ostrivex {

// One pass instead of a copy and a second pass over the copy: every row of the new
// buffer is made from the source, the spans of the region (clipped to the box) through
// run, the rest (guard band, pixels outside the region, rows outside the box) copied.
// The result is the one of the frame: copy, then rewrite the region's pixels.
//
// With the reuse flag only the spans are touched, in the object's own buffer, which is
// then handed back. run is given distinct source and target (some kernels read a source
// pixel again after writing targets), so each piece of a span goes through a small
// scratch block that stays in the first-level cache and is copied back at once. So the
// kernels may take their pointers as __restrict, which spares the compiler the overlap
// test it would otherwise put before each vector loop, and sometimes give up on.
//
// In place, rows are taken kBand at a time. When their runs are whole rows (no selection,
// or one as wide as the image) the band is walked row after row, one long stream through
// memory. Otherwise the runs of the band are walked side by side, kPiece pixels of each in
// turn: on the memory of this program's machines a single run that starts and stops
// mid-row costs nearly as much as the whole row, while several runs advanced together
// keep more lines in flight (Invert on a half-image ellipse went from about 0.45 to about
// 0.8 of the whole image's rate per selected pixel; see bench/README.md). Eight rows and
// 128 pixels measured best; 4 or 16 rows, 32 or 256 pixels were all slower.
// Each pixel depends only on itself, so the order changes no byte.
template <class RunFn> Bits cBitFilter::pointFilter(RunFn&& run) {
    const Bits& src = buffer_;
    const int32_t w = src.width(), h = src.height();
    RegionBounds(0);
    if (reuseBuffer_) {
        constexpr int32_t kPiece = 128, kLongPiece = 512, kBand = 8;
        alignas(64) uint8_t scratch[4 * kLongPiece];
        struct Piece { uint8_t* p; int32_t n; };
        std::vector<Piece> pieces;
        pieces.reserve(4 * kBand);
        // The runs of row y inside the array, kept inside the row.
        auto eachRun = [&](int32_t y, auto&& fn) {
            int32_t done = -2;
            forEachSpanInRow(y, [&](int32_t, int32_t x0, int32_t x1) {
                x0 = std::max(x0, done);
                x1 = std::min(x1, w + 2);
                if (x0 >= x1) return;
                fn(buffer_.pixel(x0, y), x1 - x0);
                done = x1;
            });
        };
        const int32_t first = std::max(boxTop_, 0), last = std::min(boxBottom_, h - 1);
        // Rows of the box beyond the array keep their progress steps as far as the guard band.
        for (int32_t y = std::max(boxTop_, -2); y < first && y <= boxBottom_; ++y) progressStep(y);
        for (int32_t y0 = first; y0 <= last; y0 += kBand) {
            const int32_t y1 = std::min(last, y0 + kBand - 1);
            pieces.clear();
            int64_t covered = 0;
            int32_t longest = 0;
            for (int32_t y = y0; y <= y1; ++y)
                eachRun(y, [&](uint8_t* p, int32_t n) {
                    pieces.push_back({p, n});
                    covered += n;
                    longest = std::max(longest, n);
                });
            if (covered >= int64_t(y1 - y0 + 1) * w) {
                for (const Piece& r : pieces)
                    for (int32_t i = 0; i < r.n; i += kLongPiece) {
                        const int32_t m = std::min(kLongPiece, r.n - i);
                        run(r.p + 4 * i, scratch, m);
                        tone::copyPixels(r.p + 4 * i, scratch, m);
                    }
            } else {
                for (int32_t i = 0; i < longest; i += kPiece)
                    for (const Piece& r : pieces)
                        if (i < r.n) {
                            const int32_t m = std::min(kPiece, r.n - i);
                            run(r.p + 4 * i, scratch, m);
                            tone::copyPixels(r.p + 4 * i, scratch, m);
                        }
            }
            for (int32_t y = y0; y <= y1; ++y) progressStep(y);
        }
        for (int32_t y = std::max(last + 1, boxTop_); y <= std::min(boxBottom_, h + 1); ++y)
            progressStep(y);
        finishProgress();
        return takeBuffer();
    }
    // Every byte of every row, guard band included, is written below.
    Bits out = Bits::forOverwrite(w, h);
    for (int32_t y = -2; y < h + 2; ++y) {
        const bool inBox = y >= boxTop_ && y <= boxBottom_;
        if (!inBox || y < 0 || y >= h) {
            std::memcpy(out.pixel(-2, y), src.pixel(-2, y), src.stride());
        } else {
            int32_t done = -2; // the next column still to be made
            forEachSpanInRow(y, [&](int32_t, int32_t x0, int32_t x1) {
                // A region is meant to lie inside the image; one that does not is kept
                // inside the row here rather than written past it.
                x0 = std::max(x0, done);
                x1 = std::min(x1, w + 2);
                if (x0 >= x1) return;
                std::memcpy(out.pixel(done, y), src.pixel(done, y), size_t(x0 - done) * 4u);
                run(src.pixel(x0, y), out.pixel(x0, y), x1 - x0);
                done = x1;
            });
            std::memcpy(out.pixel(done, y), src.pixel(done, y), size_t(w + 2 - done) * 4u);
        }
        if (inBox) progressStep(y);
    }
    finishProgress();
    return out;
}

} // namespace ostrivex
