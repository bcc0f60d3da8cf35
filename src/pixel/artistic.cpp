// Artistic filters: blocks, halftone dots, colour reductions, light and scanlines.
// Each follows the filter frame: the output starts as a copy of the buffer, the box is
// the region's bounding box, pixels of the region are walked row by row, and channel 3
// stays as it was.
#include "pixel/bitfilter.h"
#include "pixel/pixelword.h"
#include "pixel/tone_kernels.h"
#include "pixel/tone_wide.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

namespace ostrivex {

namespace {

// Applies fn(b, g, r) in place to every pixel of the spans of out.
template <class Fn> void forPixels(Bits& out, int32_t y, int32_t x0, int32_t x1, Fn&& fn) {
    uint8_t* p = out.pixel(x0, y);
    for (int32_t x = x0; x < x1; ++x, p += 4) fn(p[0], p[1], p[2]);
}

// Replaces every pixel word p of the span (blue in the low byte, alpha in the high byte)
// by fn(p); written on whole words so that the compiler can vectorise it.
template <class Fn> void forWords(Bits& out, int32_t y, int32_t x0, int32_t x1, Fn&& fn) {
    uint8_t* p = out.pixel(x0, y);
    const int32_t n = x1 - x0;
    for (int32_t i = 0; i < n; ++i) {
        uint32_t w;
        std::memcpy(&w, p + 4 * i, 4);
        w = fn(w);
        std::memcpy(p + 4 * i, &w, 4);
    }
}

inline uint32_t maxOf3(uint32_t w) {
    const uint32_t b = w & 0xFF, g = (w >> 8) & 0xFF, r = (w >> 16) & 0xFF;
    return std::max(b, std::max(g, r));
}
inline uint32_t minOf3(uint32_t w) {
    const uint32_t b = w & 0xFF, g = (w >> 8) & 0xFF, r = (w >> 16) & 0xFF;
    return std::min(b, std::min(g, r));
}

} // namespace

// Blocks aligned to multiples of size from (0, 0). The three averages outlive the pixel
// that computed them: they are computed only where a region pixel falls on a block's
// first column, so a selection that cuts through a block paints the pixels of that block
// that lie left of it in the region with the averages of the block before.
//
// A block's averages depend only on the block, so they are kept for the block row being
// walked and computed once per block instead of once per row.
Bits cBitFilter::PIXELIZE(int32_t size) {
    Bits out = buffer_;
    RegionBounds(0);
    if (size < 1) { // x mod 0 fails: nothing changes
        finishProgress();
        return out;
    }
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    const Bits& src = buffer_;
    struct Block {
        bool ready = false;
        uint8_t b = 0, g = 0, r = 0;
    };
    std::vector<Block> cache(size_t(w1 / size + 2));
    int32_t cachedBlockRow = -1;
    uint8_t avgB = 0, avgG = 0, avgR = 0;
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        const int32_t blockRow = y / size;
        if (blockRow != cachedBlockRow) {
            for (Block& c : cache) c.ready = false;
            cachedBlockRow = blockRow;
        }
        const int32_t rowTop = blockRow * size, rowBottom = std::min(rowTop + size - 1, h1);
        uint8_t* p = out.pixel(x0, y);
        for (int32_t x = x0; x < x1; ++x, p += 4) {
            if (x % size == 0) {
                Block& c = cache[size_t(x / size)];
                if (!c.ready) {
                    const int32_t right = std::min(x + size - 1, w1);
                    uint32_t sb = 0, sg = 0, sr = 0;
                    for (int32_t yy = rowTop; yy <= rowBottom; ++yy) {
                        const uint8_t* s = src.pixel(x, yy);
                        for (int32_t xx = x; xx <= right; ++xx, s += 4) {
                            sb += s[0];
                            sg += s[1];
                            sr += s[2];
                        }
                    }
                    const uint32_t n = uint32_t(right - x + 1) * uint32_t(rowBottom - rowTop + 1);
                    c = {true, uint8_t(sb / n), uint8_t(sg / n), uint8_t(sr / n)};
                }
                avgB = c.b;
                avgG = c.g;
                avgR = c.r;
            }
            p[0] = avgB;
            p[1] = avgG;
            p[2] = avgR;
        }
    });
    finishProgress();
    return out;
}

// Round dots on a grid of cells 2r apart. Each cell averages the region pixels of its
// (2r + 1)-square (the last column and row are shared with the next cell, which writes
// them again), then paints a disc that fades from the average at its centre to black at
// squared distance `limit`.
Bits cBitFilter::HALFTONE(int32_t radius, int32_t definition, int32_t intensity) {
    Bits out = buffer_;
    RegionBounds(0);
    const int32_t r = radius;
    if (r < 1) { // the cell would not advance
        finishProgress();
        return out;
    }
    const int32_t limit = vbRound(double(r + definition) / r * r * r);
    const double scale = (intensity + 100) / 100.0;
    const int32_t side = 2 * r + 1, w = lastColumn_ + 1;
    const Bits& src = buffer_;

    // Fade of each place of the disc: f = 1 - d / limit, or -1 for black beyond the limit.
    std::vector<double> fade(size_t(side) * size_t(side));
    for (int32_t dy = -r; dy <= r; ++dy)
        for (int32_t dx = -r; dx <= r; ++dx) {
            const int32_t d = dx * dx + dy * dy;
            fade[size_t((dy + r) * side + dx + r)] = d > limit ? -1.0 : 1.0 - double(d) / limit;
        }
    // Region membership of the rows of one row of cells (columns 0..W-1).
    std::vector<uint8_t> mask(size_t(side) * size_t(std::max(w, 0)));

    for (int32_t cy = boxTop_; cy <= boxBottom_; cy += 2 * r) {
        std::fill(mask.begin(), mask.end(), uint8_t(0));
        for (int32_t j = 0; j < side; ++j) {
            uint8_t* m = mask.data() + size_t(j) * size_t(w);
            forEachSpanInRow(cy + j, [&](int32_t, int32_t x0, int32_t x1) {
                x0 = std::max(x0, 0);
                x1 = std::min(x1, w);
                if (x0 < x1) std::memset(m + x0, 1, size_t(x1 - x0));
            });
        }
        for (int32_t cx = boxLeft_; cx <= boxRight_; cx += 2 * r) {
            const int32_t xEnd = std::min(cx + 2 * r, w - 1);
            int64_t sum[3] = {0, 0, 0};
            int32_t n = 0;
            for (int32_t j = 0; j < side; ++j) {
                const uint8_t* m = mask.data() + size_t(j) * size_t(w);
                for (int32_t x = cx; x <= xEnd; ++x)
                    if (m[x]) {
                        const uint8_t* s = src.pixel(x, cy + j);
                        sum[0] += s[0];
                        sum[1] += s[1];
                        sum[2] += s[2];
                        ++n;
                    }
            }
            // Fewer counted pixels than there are brightens the dots (intensity above 0).
            const int32_t nScaled = vbRound(n / scale);
            double avg[3];
            for (int c = 0; c < 3; ++c)
                avg[c] = nScaled > 0 ? std::min(vbRound(double(sum[c]) / nScaled), 255)
                                     : double(sum[c]);
            for (int32_t j = 0; j < side; ++j) {
                const uint8_t* m = mask.data() + size_t(j) * size_t(w);
                for (int32_t i = 0; i < side && cx + i < w; ++i) {
                    if (!m[cx + i]) continue;
                    uint8_t* p = out.pixel(cx + i, cy + j);
                    const double f = fade[size_t(j * side + i)];
                    for (int c = 0; c < 3; ++c)
                        p[c] = f < 0 ? 0 : clampByte(vbRound(f * avg[c]));
                }
            }
        }
        progressStep(std::min(cy, boxBottom_));
    }
    finishProgress();
    return out;
}

// Green and red become L = Round(0.071 * blue + 0.707 * green + 0.222 * red); blue stays.
// The double sum is rounded ties-to-even by adding and taking away 1.5 * 2^52, which
// gives the same integer as nearbyint and lets the loop run on whole words.
Bits cBitFilter::OLDPHOTO() {
    // A point filter: L = round(0.071 B + 0.707 G + 0.222 R) into green and red.
    if (tone::hasWideKernels()) return pointFilter(tone::oldPhotoWide);
    return pointFilter([](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t w = load32(s + 4 * i);
            constexpr double kMagic = 6755399441055744.0;
            const double b = double(w & 0xFF), g = double((w >> 8) & 0xFF),
                         r = double((w >> 16) & 0xFF);
            const double sum = 0.071 * b + 0.707 * g + 0.222 * r;
            const uint32_t l = uint32_t(int64_t((sum + kMagic) - kMagic));
            store32(p + 4 * i, (w & 0xFF0000FFu) | (l << 8) | (l << 16));
        }
    });
}

// Only the strictly largest channel is kept; a tie for the largest leaves the pixel.
Bits cBitFilter::THERMIQUE() {
    Bits out = buffer_;
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        forWords(out, y, x0, x1, [](uint32_t w) {
            const uint32_t b = w & 0xFF, g = (w >> 8) & 0xFF, r = (w >> 16) & 0xFF;
            // The bytes kept: alpha and the winner.
            const uint32_t keep = (r > g && r > b)   ? 0xFFFF0000u
                                  : (g > r && g > b) ? 0xFF00FF00u
                                  : (b > r && b > g) ? 0xFF0000FFu
                                                     : 0xFFFFFFFFu;
            return w & keep;
        });
    });
    finishProgress();
    return out;
}

namespace {
// A channel is dark at or below 127.5, so at or below 127.
constexpr uint32_t kDarkMax = 127;
} // namespace

// All three channels dark: white; all bright: black; mixed pixels stay.
Bits cBitFilter::XBLACK() {
    Bits out = buffer_;
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        forWords(out, y, x0, x1, [](uint32_t w) {
            if (maxOf3(w) <= kDarkMax) return w | 0x00FFFFFFu;
            if (minOf3(w) > kDarkMax) return w & 0xFF000000u;
            return w;
        });
    });
    finishProgress();
    return out;
}

// All three channels dark: black; all bright: white; mixed pixels stay.
Bits cBitFilter::PHOTOCOP() {
    Bits out = buffer_;
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        forWords(out, y, x0, x1, [](uint32_t w) {
            if (maxOf3(w) <= kDarkMax) return w & 0xFF000000u;
            if (minOf3(w) > kDarkMax) return w | 0x00FFFFFFu;
            return w;
        });
    });
    finishProgress();
    return out;
}

// A disc of added light. The walk covers the disc around the centre, not the region's
// box. The addition is meant to be positive; a negative one (outside the dialog's range)
// is floored at 0 instead of failing.
Bits cBitFilter::Light(float centreX, float centreY, float radius, int32_t intensity,
                       int32_t focus) {
    Bits out = buffer_;
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    const int32_t cx = vbRound(double(w1) * centreX), cy = vbRound(double(h1) * centreY);
    const int32_t R = vbRound(double(radius) * std::max(w1, h1));
    const double k = 1 - focus / 100.0;
    const int64_t limit = int64_t(R) * R;
    // Each row of the disc meets the region's runs of that row; pixels outside the image
    // are never in the region, so the runs are cut to the image and to the disc's columns.
    const Span wholeRow{0, w1 + 1};
    const std::vector<Span> wholeRowSpans{wholeRow};
    const int32_t left = std::max(cx - R, 0), right = std::min(cx + R, w1) + 1;
    for (int32_t dy = -R; dy <= R; ++dy) {
        const int32_t y = cy + dy;
        const std::vector<Span>* spans = nullptr;
        if (y >= 0 && y <= h1) spans = region_ ? region_->rowSpans(y) : &wholeRowSpans;
        if (spans)
            for (const Span& run : *spans) {
                const int32_t x0 = std::max(run.x1, left), x1 = std::min(run.x2, right);
                for (int32_t x = x0; x < x1; ++x) {
                    const int64_t dx = x - cx;
                    const int64_t d2 = dx * dx + int64_t(dy) * dy;
                    if (d2 >= limit) continue;
                    const int32_t add = vbRound((1 - k * std::sqrt(double(d2)) / R) * intensity);
                    uint8_t* p = out.pixel(x, y);
                    for (int c = 0; c < 3; ++c) p[c] = clampByte(p[c] + add);
                }
            }
        // Progress counts the rows of the disc; a disc of radius 0 has one row and
        // reports only the final 100.
        const uint32_t now = clock();
        if (R > 0 && now - lastTick_ > 10) {
            lastTick_ = now;
            raiseProgress(((dy + R) * 100) / (2 * R));
        }
    }
    finishProgress();
    return out;
}

// Every other row from the box's top is darkened by level. A channel that would pass 255
// (a negative level) fails to convert and keeps its value.
Bits cBitFilter::Scanlines(int32_t level) {
    Bits out = buffer_;
    RegionBounds(0);
    std::array<uint8_t, 256> table{};
    for (int32_t i = 0; i < 256; ++i) {
        const int32_t v = std::max(i - level, 0);
        table[size_t(i)] = uint8_t(v > 255 ? i : v);
    }
    for (int32_t y = boxTop_; y <= boxBottom_; y += 2) {
        forEachSpanInRow(y, [&](int32_t yy, int32_t x0, int32_t x1) {
            forPixels(out, yy, x0, x1, [&](uint8_t& b, uint8_t& g, uint8_t& r) {
                b = table[b];
                g = table[g];
                r = table[r];
            });
        });
        progressStep(y);
    }
    finishProgress();
    return out;
}

} // namespace ostrivex
