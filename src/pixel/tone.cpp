// Tone filters: brightness, levels, inversion, grey, threshold, saturation, reduction,
// gamma, contrast, equalisation, and the luminance statistics of the image.
//
// Every filter follows the frame: copy the buffer, build its tables, RegionBounds(0), walk
// the region's spans in the box and rewrite channels 0..2 of the copy in place (a point
// filter reads only the pixel it writes, so the copy still holds the source there), and
// raise Progress(100) at the end. Tables stand in for every per-channel formula, so the
// loops do lookups only; a formula that fails its byte conversion in a filter that skips
// failures leaves the table entry equal to its index, which keeps the source byte.
#include "pixel/bitfilter.h"
#include "pixel/tone_kernels.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <array>
#include <cmath>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ostrivex {

using namespace tone;

namespace {

using ByteTable = std::array<uint8_t, 256>;

// Adds a signed offset per channel with saturation: exactly clamp(c + level) per byte.
// add and sub hold the positive and negative parts of the offsets of blue, green and red.
void saturatingOffset(uint8_t* p, int32_t n, const uint8_t add[3], const uint8_t sub[3]) {
    int32_t i = 0;
#if defined(__SSE2__)
    const __m128i va = _mm_setr_epi8(char(add[0]), char(add[1]), char(add[2]), 0, char(add[0]),
                                     char(add[1]), char(add[2]), 0, char(add[0]), char(add[1]),
                                     char(add[2]), 0, char(add[0]), char(add[1]), char(add[2]), 0);
    const __m128i vs = _mm_setr_epi8(char(sub[0]), char(sub[1]), char(sub[2]), 0, char(sub[0]),
                                     char(sub[1]), char(sub[2]), 0, char(sub[0]), char(sub[1]),
                                     char(sub[2]), 0, char(sub[0]), char(sub[1]), char(sub[2]), 0);
    for (; i + 4 <= n; i += 4) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 4 * i));
        v = _mm_subs_epu8(_mm_adds_epu8(v, va), vs);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 4 * i), v);
    }
#endif
    for (; i < n; ++i)
        for (int c = 0; c < 3; ++c)
            p[4 * i + c] = clampByte(int32_t(p[4 * i + c]) + add[c] - sub[c]);
}

// The mean-of-channels table: T[i] = i \ 3 for i = 0..765.
struct MeanTable {
    std::array<uint8_t, 766> t{};
    MeanTable() {
        for (int32_t i = 0; i < 766; ++i) t[size_t(i)] = uint8_t(i / 3);
    }
    uint8_t operator[](int32_t i) const { return t[size_t(i)]; }
};
const MeanTable kMean;

} // namespace

Bits cBitFilter::BRIGHTNESS(int32_t level) {
    Bits out = buffer_;
    // clamp(i + level) for every channel is a saturating add or subtract of |level|.
    const uint8_t up = uint8_t(std::clamp(level, 0, 255));
    const uint8_t down = uint8_t(std::clamp(-level, 0, 255));
    const uint8_t add[3] = {up, up, up}, sub[3] = {down, down, down};
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        saturatingOffset(out.pixel(x0, y), x1 - x0, add, sub);
    });
    finishProgress();
    return out;
}

Bits cBitFilter::ShiftRGB(int32_t red, int32_t green, int32_t blue) {
    Bits out = buffer_;
    const int32_t levels[3] = {blue, green, red};
    uint8_t add[3], sub[3];
    for (int c = 0; c < 3; ++c) {
        add[c] = uint8_t(std::clamp(levels[c], 0, 255));
        sub[c] = uint8_t(std::clamp(-levels[c], 0, 255));
    }
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        saturatingOffset(out.pixel(x0, y), x1 - x0, add, sub);
    });
    finishProgress();
    return out;
}

Bits cBitFilter::Invert() {
    Bits out = buffer_;
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        uint8_t* p = out.pixel(x0, y);
        const int32_t n = x1 - x0;
        for (int32_t i = 0; i < n; ++i) store32(p + 4 * i, load32(p + 4 * i) ^ 0x00FFFFFFu);
    });
    finishProgress();
    return out;
}

Bits cBitFilter::GreyScale() {
    Bits out = buffer_;
    // v = round(B * 0.071 + G * 0.707 + R * 0.222), summed in double in that order. The
    // exact sum is S / 1000 with S = 71 B + 707 G + 222 R, and the double sum lies within
    // 1e-12 of it, so unless S ends in 500 (a tie) the rounding is that of S / 1000; the
    // ties take the double path and round as the double sum does.
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        uint8_t* p = out.pixel(x0, y);
        const int32_t n = x1 - x0;
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t v = load32(p + 4 * i);
            const int32_t b = int32_t(v & 255u), g = int32_t((v >> 8) & 255u),
                          r = int32_t((v >> 16) & 255u);
            const int32_t s = 71 * b + 707 * g + 222 * r;
            const int32_t q = s / 1000, rem = s - q * 1000;
            int32_t grey;
            if (rem != 500)
                grey = q + (rem > 500 ? 1 : 0);
            else
                grey = vbRound(b * 0.071 + g * 0.707 + r * 0.222);
            const uint32_t gv = uint32_t(grey);
            store32(p + 4 * i, packPixel(v, gv, gv, gv));
        }
    });
    finishProgress();
    return out;
}

Bits cBitFilter::Threshold(int32_t cut) {
    Bits out = buffer_;
    // (B + G + R) \ 3 > cut exactly when B + G + R >= 3 * (cut + 1).
    const int32_t limit = 3 * (cut + 1);
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        uint8_t* p = out.pixel(x0, y);
        const int32_t n = x1 - x0;
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t v = load32(p + 4 * i);
            const int32_t sum =
                int32_t(v & 255u) + int32_t((v >> 8) & 255u) + int32_t((v >> 16) & 255u);
            store32(p + 4 * i, (v & kMarkerMask) | (sum >= limit ? 0x00FFFFFFu : 0u));
        }
    });
    finishProgress();
    return out;
}

Bits cBitFilter::SATURATION(int32_t level) {
    Bits out = buffer_;
    const float f = float(level / 100.0);
    // The new channel depends on the channel and on the pixel's mean a only: a table of
    // 256 means by 256 channel values.
    std::vector<uint8_t> table(256 * 256);
    for (int32_t a = 0; a < 256; ++a)
        for (int32_t c = 0; c < 256; ++c)
            table[size_t(a * 256 + c)] = clampByte(vbRound(c + double(f) * (c - a)));
    const uint8_t* tab = table.data();
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        uint8_t* p = out.pixel(x0, y);
        const int32_t n = x1 - x0;
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t v = load32(p + 4 * i);
            const uint32_t b = v & 255u, g = (v >> 8) & 255u, r = (v >> 16) & 255u;
            const uint8_t* row = tab + size_t(kMean[int32_t(b + g + r)]) * 256u;
            store32(p + 4 * i, packPixel(v, row[b], row[g], row[r]));
        }
    });
    finishProgress();
    return out;
}

Bits cBitFilter::Reduction(int32_t level) {
    Bits out = buffer_;
    const int32_t n = level + 1;
    ByteTable m{};
    for (int32_t i = 0; i < 256; ++i)
        m[size_t(i)] = uint8_t(std::min(255, vbRound(double(i) / n) * n));
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        mapChannels(out.pixel(x0, y), x1 - x0, m.data(), m.data(), m.data());
    });
    finishProgress();
    return out;
}

Bits cBitFilter::GammaCorrection(int32_t gamma) {
    Bits out = buffer_;
    const float g = float((gamma + 100) / 100.0);
    ByteTable m{};
    if (g > 0.0f) {
        const double e = 1.0 / double(g);
        for (int32_t i = 0; i < 256; ++i) {
            uint8_t v = uint8_t(i);
            toByte(255.0 * std::pow(i / 255.0, e), v);
            m[size_t(i)] = v;
        }
    } // else every channel turns 0: the table stays zero
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        mapChannels(out.pixel(x0, y), x1 - x0, m.data(), m.data(), m.data());
    });
    finishProgress();
    return out;
}

Bits cBitFilter::Contrast(int32_t level) {
    Bits out = buffer_;
    const int32_t w = BitsWidth(), h = BitsHeight();
    // Pass 1: the mean of T[B + G + R] over the whole image, whatever the region. The sum
    // is 64-bit: a large bright image passes 2^31 long before its pixel count does.
    int64_t sum = 0;
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* p = buffer_.row(y);
        uint32_t rowSum = 0; // at most 255 per pixel: fits 32 bits for any sane width
        for (int32_t x = 0; x < w; ++x)
            rowSum += kMean[int32_t(p[4 * x]) + p[4 * x + 1] + p[4 * x + 2]];
        sum += rowSum;
        progressStep(y);
    }
    const int64_t count = int64_t(w) * h;
    // An empty image divides by zero; that statement is skipped and the mean stays 0.
    const int32_t mean = count > 0 ? int32_t(sum / count) : 0;

    const float f = float((level + 100) / 100.0);
    std::array<int32_t, 256> m{}; // not clamped
    for (int32_t i = 0; i < 256; ++i) m[size_t(i)] = vbRound((i - mean) * double(f) + mean);

    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        uint8_t* p = out.pixel(x0, y);
        const int32_t n = x1 - x0;
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t v = load32(p + 4 * i);
            int32_t b = m[v & 255u], g = m[(v >> 8) & 255u], r = m[(v >> 16) & 255u];
            // Spread the overflow of a channel over the other two, so the hue holds.
            auto outside = [](int32_t c) { return uint32_t(c) > 255u; };
            while (outside(b) || outside(g) || outside(r)) {
                if (b <= 0 && g <= 0 && r <= 0) b = g = r = 0;
                if (b >= 255 && g >= 255 && r >= 255) b = g = r = 255;
                if (b < 0) {
                    g += b / 2;
                    r += b / 2;
                    b = 0;
                } else if (b > 255) {
                    g += (b - 255) / 2;
                    r += (b - 255) / 2;
                    b = 255;
                }
                if (g < 0) {
                    b += g / 2;
                    r += g / 2;
                    g = 0;
                } else if (g > 255) {
                    b += (g - 255) / 2;
                    r += (g - 255) / 2;
                    g = 255;
                }
                if (r < 0) {
                    g += r / 2;
                    b += r / 2;
                    r = 0;
                } else if (r > 255) {
                    g += (r - 255) / 2;
                    b += (r - 255) / 2;
                    r = 255;
                }
            }
            store32(p + 4 * i, packPixel(v, uint32_t(b), uint32_t(g), uint32_t(r)));
        }
    });
    finishProgress();
    return out;
}

Bits cBitFilter::Equalize() {
    Bits out = buffer_;
    const int32_t w = BitsWidth(), h = BitsHeight();
    // Pass 1: the histogram of v = round(B * 0.113 + G * 0.586 + R * 0.301) over the whole
    // image. As in GreyScale, the integer sum S = 113 B + 586 G + 301 R decides the rounding
    // except on ties (S ending in 500), which take the double sum.
    std::array<int64_t, 256> hist{};
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* p = buffer_.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const int32_t b = p[4 * x], g = p[4 * x + 1], r = p[4 * x + 2];
            const int32_t s = 113 * b + 586 * g + 301 * r;
            const int32_t q = s / 1000, rem = s - q * 1000;
            const int32_t v =
                rem != 500 ? q + (rem > 500 ? 1 : 0) : vbRound(b * 0.113 + g * 0.586 + r * 0.301);
            ++hist[size_t(v)];
        }
    }
    if (int64_t(w) * h == 0) {
        // No pixel: the median walk would run off the histogram. Nothing to change.
        finishProgress();
        return out;
    }
    // The median: the first i whose running sum passes half the pixel count, moved one
    // down when less than half of its own entries are needed to pass.
    const int64_t half = (int64_t(w) * h) / 2;
    int64_t run = 0;
    int32_t i = 0;
    for (; i < 256; ++i) {
        run += hist[size_t(i)];
        if (run > half) break;
    }
    const int32_t median = hist[size_t(i)] / 2 <= run - half ? i - 1 : i;
    // A division by zero (median 255 or 1) leaves its factor at 0.
    const float high = median != 255 ? float(127.0 / (255 - median)) : 0.0f;
    const float low = median != 1 ? float(127.0 / (median - 1)) : 0.0f;
    ByteTable m{};
    for (int32_t c = 0; c < 256; ++c) {
        uint8_t v = uint8_t(c); // a failed conversion keeps the source byte
        if (c >= median)
            toByte((c - median) * double(high) + 128.0, v);
        else
            toByte(c * double(low), v);
        m[size_t(c)] = v;
    }
    RegionBounds(0);
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        mapChannels(out.pixel(x0, y), x1 - x0, m.data(), m.data(), m.data());
    });
    finishProgress();
    return out;
}

// The statistics read the whole image and raise no Progress.
int32_t cBitFilter::GetLMax() {
    int32_t best = 0;
    for (int32_t y = 0; y < BitsHeight(); ++y) {
        const uint8_t* p = buffer_.row(y);
        for (int32_t x = 0; x < BitsWidth(); ++x)
            best = std::max<int32_t>(best, kMean[int32_t(p[4 * x]) + p[4 * x + 1] + p[4 * x + 2]]);
    }
    return best;
}

int32_t cBitFilter::GetLMin() {
    int32_t best = 255;
    for (int32_t y = 0; y < BitsHeight(); ++y) {
        const uint8_t* p = buffer_.row(y);
        for (int32_t x = 0; x < BitsWidth(); ++x)
            best = std::min<int32_t>(best, kMean[int32_t(p[4 * x]) + p[4 * x + 1] + p[4 * x + 2]]);
    }
    return best;
}

int32_t cBitFilter::GetLMed() {
    int64_t sum = 0;
    for (int32_t y = 0; y < BitsHeight(); ++y) {
        const uint8_t* p = buffer_.row(y);
        for (int32_t x = 0; x < BitsWidth(); ++x)
            sum += kMean[int32_t(p[4 * x]) + p[4 * x + 1] + p[4 * x + 2]];
    }
    const int64_t count = int64_t(BitsWidth()) * BitsHeight();
    // An empty image has no mean; 0 is returned (the division would fail).
    return count > 0 ? int32_t(sum / count) : 0;
}

} // namespace ostrivex
