// Tone filters: brightness, levels, inversion, grey, threshold, saturation, reduction,
// gamma, contrast, equalisation, and the luminance statistics of the image.
//
// Every filter follows the frame (pointFilter in tone_kernels.h): build its tables, then
// make the new buffer from the source in one pass, the region's spans through the filter
// and everything else copied, and raise Progress(100) at the end. Tables stand in for the
// per-channel formulas, so the loops do lookups only; a formula that fails its byte
// conversion in a filter that skips failures leaves the table entry equal to its index,
// which keeps the source byte.
#include "pixel/bitfilter.h"
#include "pixel/contrast_spill.h"
#include "pixel/tone_kernels.h"
#include "pixel/tone_wide.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ostrivex {

using namespace tone;

namespace {

using ByteTable = std::array<uint8_t, 256>;

// Adds a signed offset per channel with saturation: exactly clamp(c + level) per byte.
// add and sub hold the positive and negative parts of the offsets of blue, green and red.
void saturatingOffset(const uint8_t* s, uint8_t* p, int32_t n, const uint8_t add[3],
                      const uint8_t sub[3]) {
    int32_t i = 0;
#if defined(__SSE2__)
    const __m128i va = _mm_setr_epi8(char(add[0]), char(add[1]), char(add[2]), 0, char(add[0]),
                                     char(add[1]), char(add[2]), 0, char(add[0]), char(add[1]),
                                     char(add[2]), 0, char(add[0]), char(add[1]), char(add[2]), 0);
    const __m128i vs = _mm_setr_epi8(char(sub[0]), char(sub[1]), char(sub[2]), 0, char(sub[0]),
                                     char(sub[1]), char(sub[2]), 0, char(sub[0]), char(sub[1]),
                                     char(sub[2]), 0, char(sub[0]), char(sub[1]), char(sub[2]), 0);
    for (; i + 4 <= n; i += 4) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * i));
        v = _mm_subs_epu8(_mm_adds_epu8(v, va), vs);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 4 * i), v);
    }
#endif
    for (; i < n; ++i) {
        for (int c = 0; c < 3; ++c)
            p[4 * i + c] = clampByte(int32_t(s[4 * i + c]) + add[c] - sub[c]);
        p[4 * i + 3] = s[4 * i + 3];
    }
}

// One 256-entry table on channels 0..2. Where the processor has the byte permutes of
// AVX-512 VBMI, 16 pixels go through the table at once (two 128-byte lookups chosen by
// the index's top bit); elsewhere, and for the tail, the plain loop.
#if defined(__x86_64__)
__attribute__((target("avx512f,avx512bw,avx512vbmi"))) int32_t
mapSameTableWide(const uint8_t* s, uint8_t* p, int32_t n, const uint8_t* m) {
    const __m512i t0 = _mm512_loadu_si512(m), t1 = _mm512_loadu_si512(m + 64);
    const __m512i t2 = _mm512_loadu_si512(m + 128), t3 = _mm512_loadu_si512(m + 192);
    const __mmask64 colour = 0x7777777777777777ull; // bytes 0..2 of every pixel
    int32_t i = 0;
    for (; i + 16 <= n; i += 16) {
        const __m512i v = _mm512_loadu_si512(s + 4 * i);
        const __m512i low = _mm512_permutex2var_epi8(t0, v, t1);
        const __m512i high = _mm512_permutex2var_epi8(t2, v, t3);
        const __m512i mapped = _mm512_mask_blend_epi8(_mm512_movepi8_mask(v), low, high);
        _mm512_storeu_si512(p + 4 * i, _mm512_mask_blend_epi8(colour, v, mapped));
    }
    return i;
}
const bool kWideMaps = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                       __builtin_cpu_supports("avx512vbmi");
#endif

void mapSameTable(const uint8_t* s, uint8_t* p, int32_t n, const uint8_t* m) {
    int32_t done = 0;
#if defined(__x86_64__)
    if (kWideMaps) done = mapSameTableWide(s, p, n, m);
#endif
    mapChannels(s + 4 * done, p + 4 * done, n - done, m, m, m);
}

// The mean-of-channels table: T[i] = i \ 3 for i = 0..765.
struct MeanTable {
    std::array<uint8_t, 766> t{};
    MeanTable() {
        for (int32_t i = 0; i < 766; ++i)
            t[size_t(i)] = uint8_t(i / 3);
    }
    uint8_t operator[](int32_t i) const { return t[size_t(i)]; }
};
const MeanTable kMean;

// Weighted sums round(B * KB / 1000 + G * KG / 1000 + R * KR / 1000), summed in double in
// that order, for weights in thousandths that add up to one (KB / 1000.0 is the very double
// of the literal 0.071 and so on). The exact sum is S / 1000 with S = KB B + KG G + KR R,
// and the double sum lies within 1e-12 of it, so unless S ends in 500 (a tie) the rounding
// is that of S / 1000, q = (S + 500) \ 1000. Here q comes from single precision: S + 500 is
// exact below 2^24, and the product's error (under 3e-5) cannot cross an integer, since a
// quotient that is not a tie stays 0.001 away from one. On a tie the pixel's own double sum
// decides. Written so that the first loop runs as vector code.
constexpr int32_t kLumChunk = 64;

template <int32_t KB, int32_t KG, int32_t KR>
void weightedRound(const uint8_t* s, int32_t n, uint32_t* out) {
    uint32_t ties = 0;
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        const int32_t sum = KB * int32_t(v & 255u) + KG * int32_t((v >> 8) & 255u) +
                            KR * int32_t((v >> 16) & 255u) + 500;
        const int32_t q = int32_t(float(sum) * 0.001f);
        out[i] = uint32_t(q);
        ties |= uint32_t(sum == 1000 * q);
    }
    if (ties == 0) return;
    for (int32_t i = 0; i < n; ++i) {
        const int32_t b = s[4 * i], g = s[4 * i + 1], r = s[4 * i + 2];
        const int32_t sum = KB * b + KG * g + KR * r + 500;
        if (sum % 1000 == 0)
            out[i] = uint32_t(vbRound(b * (KB / 1000.0) + g * (KG / 1000.0) + r * (KR / 1000.0)));
    }
}

// One round over a group of pixels (plain selects, so that it runs as vector code).
template <int32_t N>
inline __attribute__((always_inline)) void
spillRounds(int32_t* __restrict bs, int32_t* __restrict gs, int32_t* __restrict rs) {
    for (int32_t i = 0; i < N; ++i) {
        int32_t b = bs[i], g = gs[i], r = rs[i];
        // If none is above 0 all turn 0; if none is below 255 all turn 255.
        const int32_t low = -int32_t((b <= 0) & (g <= 0) & (r <= 0));
        b &= ~low;
        g &= ~low;
        r &= ~low;
        const bool high = (b >= 255) & (g >= 255) & (r >= 255);
        b = high ? 255 : b;
        g = high ? 255 : g;
        r = high ? 255 : r;
        contrast::spillChannels(b, g, r);
        bs[i] = b;
        gs[i] = g;
        rs[i] = r;
    }
}

// Rounds over a whole group until every pixel of it lies inside 0..255; the AVX2 clone is
// picked at run time where the processor has it.
constexpr int32_t kSpillGroup = 16;
__attribute__((target_clones("avx2", "default"))) void
settleGroup(int32_t* __restrict b, int32_t* __restrict g, int32_t* __restrict r) {
    uint32_t outside;
    do {
        spillRounds<kSpillGroup>(b, g, r);
        outside = 0;
        for (int32_t i = 0; i < kSpillGroup; ++i)
            outside |= uint32_t(b[i]) | uint32_t(g[i]) | uint32_t(r[i]);
    } while (outside > 255u);
}

// Maps n <= kSpillGroup pixels through M and spills them.
void contrastGroup(const uint8_t* s, uint8_t* p, int32_t n, const int32_t* m) {
    // Lanes past n hold black, which no round changes.
    int32_t b[kSpillGroup] = {}, g[kSpillGroup] = {}, r[kSpillGroup] = {};
    uint32_t outside = 0;
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        b[i] = m[v & 255u];
        g[i] = m[(v >> 8) & 255u];
        r[i] = m[(v >> 16) & 255u];
        outside |= uint32_t(b[i]) | uint32_t(g[i]) | uint32_t(r[i]);
    }
    // Any value outside 0..255 sets a bit above the low byte (negative ones all of them).
    // Most overflowing pixels settle in one round: one round for the whole group as vector
    // code, then the few that still overflow go on alone.
    if (outside > 255u) settleGroup(b, g, r);
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        store32(p + 4 * i, packPixel(v, uint32_t(b[i]), uint32_t(g[i]), uint32_t(r[i])));
    }
}

} // namespace

Bits cBitFilter::BRIGHTNESS(int32_t level) {
    // clamp(i + level) for every channel is a saturating add or subtract of |level|.
    const uint8_t up = uint8_t(std::clamp(level, 0, 255));
    const uint8_t down = uint8_t(std::clamp(-level, 0, 255));
    const uint8_t add[3] = {up, up, up}, sub[3] = {down, down, down};
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { saturatingOffset(s, p, n, add, sub); });
}

Bits cBitFilter::ShiftRGB(int32_t red, int32_t green, int32_t blue) {
    const int32_t levels[3] = {blue, green, red};
    uint8_t add[3], sub[3];
    for (int c = 0; c < 3; ++c) {
        add[c] = uint8_t(std::clamp(levels[c], 0, 255));
        sub[c] = uint8_t(std::clamp(-levels[c], 0, 255));
    }
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { saturatingOffset(s, p, n, add, sub); });
}

Bits cBitFilter::Invert() {
    return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
        for (int32_t i = 0; i < n; ++i)
            store32(p + 4 * i, load32(s + 4 * i) ^ 0x00FFFFFFu);
    });
}

Bits cBitFilter::GreyScale() {
    // v = round(B * 0.071 + G * 0.707 + R * 0.222) on all three channels.
    if (hasWideKernels()) return pointFilter(greyWide);
    return pointFilter([](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
        uint32_t grey[kLumChunk];
        for (int32_t start = 0; start < n; start += kLumChunk) {
            const int32_t m = std::min(kLumChunk, n - start);
            const uint8_t* src = s + 4 * start;
            uint8_t* dst = p + 4 * start;
            weightedRound<71, 707, 222>(src, m, grey);
            for (int32_t i = 0; i < m; ++i)
                store32(dst + 4 * i, packPixel(load32(src + 4 * i), grey[i], grey[i], grey[i]));
        }
    });
}

Bits cBitFilter::Threshold(int32_t cut) {
    // (B + G + R) \ 3 > cut exactly when B + G + R >= 3 * (cut + 1).
    const int32_t limit = 3 * (cut + 1);
    // Scalars are captured by value throughout: read through a reference, the compiler
    // cannot keep them out of the loop (a store might change them) and gives up vectorizing.
    return pointFilter([limit](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t v = load32(s + 4 * i);
            const int32_t sum =
                int32_t(v & 255u) + int32_t((v >> 8) & 255u) + int32_t((v >> 16) & 255u);
            // A mask rather than a choice: on noise the test goes either way at random, and a
            // branch would be mispredicted half the time.
            const uint32_t white = 0u - uint32_t(sum >= limit);
            store32(p + 4 * i, (v & kMarkerMask) | (white & 0x00FFFFFFu));
        }
    });
}

Bits cBitFilter::SATURATION(int32_t level) {
    const float f = float(level / 100.0);
    if (hasWideKernels()) {
        if (saturationSingleExact(f))
            return pointFilter(
                [&](const uint8_t* s, uint8_t* p, int32_t n) { saturationWideSingle(s, p, n, f); });
        return pointFilter(
            [&](const uint8_t* s, uint8_t* p, int32_t n) { saturationWide(s, p, n, f); });
    }
    // The new channel depends on the channel and on the pixel's mean a only: a table of
    // 256 means by 256 channel values.
    std::vector<uint8_t> table(256 * 256);
    for (int32_t a = 0; a < 256; ++a)
        for (int32_t c = 0; c < 256; ++c)
            table[size_t(a * 256 + c)] = clampByte(vbRound(c + double(f) * (c - a)));
    const uint8_t* tab = table.data();
    return pointFilter([tab](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t v = load32(s + 4 * i);
            const uint32_t b = v & 255u, g = (v >> 8) & 255u, r = (v >> 16) & 255u;
            const uint8_t* row = tab + size_t(kMean[int32_t(b + g + r)]) * 256u;
            store32(p + 4 * i, packPixel(v, row[b], row[g], row[r]));
        }
    });
}

Bits cBitFilter::Reduction(int32_t level) {
    const int32_t n = level + 1;
    ByteTable m{};
    for (int32_t i = 0; i < 256; ++i)
        m[size_t(i)] = uint8_t(std::min(255, vbRound(double(i) / n) * n));
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { mapSameTable(s, p, n, m.data()); });
}

Bits cBitFilter::GammaCorrection(int32_t gamma) {
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
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { mapSameTable(s, p, n, m.data()); });
}

Bits cBitFilter::Contrast(int32_t level) {
    const int32_t w = BitsWidth(), h = BitsHeight();
    // Pass 1: the mean of T[B + G + R] over the whole image, whatever the region. The sum
    // is 64-bit: a large bright image passes 2^31 long before its pixel count does.
    int64_t sum = 0;
    const bool wide = hasWideKernels() && w < (1 << 24); // a row's lanes must not overflow
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* p = buffer_.row(y);
        if (wide) {
            sum += int64_t(meanSumWide(p, w));
        } else {
            uint32_t rowSum = 0; // at most 255 per pixel: fits 32 bits for any sane width
            for (int32_t x = 0; x < w; ++x)
                rowSum += kMean[int32_t(p[4 * x]) + p[4 * x + 1] + p[4 * x + 2]];
            sum += rowSum;
        }
        progressStep(y);
    }
    const int64_t count = int64_t(w) * h;
    // An empty image divides by zero; that statement is skipped and the mean stays 0.
    const int32_t mean = count > 0 ? int32_t(sum / count) : 0;

    const float f = float((level + 100) / 100.0);
    std::array<int32_t, 256> m{}; // not clamped
    for (int32_t i = 0; i < 256; ++i)
        m[size_t(i)] = vbRound((i - mean) * double(f) + mean);

    // Then each pixel's b, g, r = M[B], M[G], M[R], and while any of them lies outside
    // 0..255 the overflow is spread over the other two so that the hue holds (spillRound).
    // When the table itself stays inside 0..255 (every level up to 0, where each entry
    // lies between i and the mean) no round ever runs: a plain channel map.
    if (std::all_of(m.begin(), m.end(), [](int32_t v) { return v >= 0 && v <= 255; })) {
        ByteTable bytes{};
        for (size_t i = 0; i < 256; ++i) bytes[i] = uint8_t(m[i]);
        return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
            mapSameTable(s, p, n, bytes.data());
        });
    }
    if (hasWideKernels()) {
        ContrastMap map;
        map.m = m.data();
        map.mean = mean;
        map.f = f;
        fitContrastMap(map);
        return pointFilter(
            [&](const uint8_t* s, uint8_t* p, int32_t n) { contrastWide(s, p, n, map); });
    }
    return pointFilter([&](const uint8_t* __restrict s, uint8_t* __restrict p, int32_t n) {
        for (int32_t i = 0; i < n; i += kSpillGroup)
            contrastGroup(s + 4 * i, p + 4 * i, std::min(kSpillGroup, n - i), m.data());
    });
}

Bits cBitFilter::Equalize() {
    const int32_t w = BitsWidth(), h = BitsHeight();
    // Pass 1: the histogram of v = round(B * 0.113 + G * 0.586 + R * 0.301) over the whole
    // image.
    // Eight partial histograms, so that neighbouring pixels of equal value do not wait on
    // each other's increment; 32-bit counts, added into the 64-bit totals before they
    // could overflow and at the end.
    std::array<std::array<uint32_t, 256>, 8> parts{};
    std::array<int64_t, 256> hist{};
    auto flush = [&] {
        for (std::array<uint32_t, 256>& part : parts) {
            for (size_t v = 0; v < 256; ++v) hist[v] += part[v];
            part.fill(0);
        }
    };
    uint64_t pending = 0; // pixels counted in parts
    uint32_t lum[kLumChunk];
    const bool wide = hasWideKernels();
    for (int32_t y = 0; y < h; ++y) {
        if (pending + uint64_t(w) > UINT32_MAX) {
            flush();
            pending = 0;
        }
        pending += uint64_t(w);
        const uint8_t* p = buffer_.row(y);
        for (int32_t start = 0; start < w; start += kLumChunk) {
            const int32_t m = std::min(kLumChunk, w - start);
            if (wide)
                equalizeLumWide(p + 4 * start, m, lum);
            else
                weightedRound<113, 586, 301>(p + 4 * start, m, lum);
            int32_t i = 0;
            for (; i + 8 <= m; i += 8)
                for (size_t k = 0; k < 8; ++k) ++parts[k][lum[size_t(i) + k]];
            for (; i < m; ++i) ++parts[0][lum[i]];
        }
    }
    flush();
    if (int64_t(w) * h == 0) {
        // No pixel: the median walk would run off the histogram. Nothing to change.
        return pointFilter(
            [](const uint8_t* s, uint8_t* p, int32_t n) { std::memcpy(p, s, size_t(n) * 4u); });
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
    return pointFilter(
        [&](const uint8_t* s, uint8_t* p, int32_t n) { mapSameTable(s, p, n, m.data()); });
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
