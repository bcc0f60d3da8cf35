// AVX2 kernels of the tone filters (see tone_wide.h). Each function carries its own
// target attribute, so the rest of the library stays plain x86-64 and these run only
// after the processor has been asked.
#include "pixel/tone_wide.h"

#include "pixel/pixelword.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cmath>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace ostrivex::tone {

#if defined(__x86_64__)

namespace {

#define OSTRIVEX_AVX2 __attribute__((target("avx2,fma,popcnt")))

constexpr uint32_t kMarker = 0xFF000000u;

// round(B * KB / 1000 + G * KG / 1000 + R * KR / 1000) of one pixel, summed in double in
// that order: the rule itself, for the ties of the fast test below. Kept out of line, so
// that it is compiled for the plain processor: inside an FMA function the compiler would
// fuse a product into the sum and round once less than the rule does.
template <int32_t KB, int32_t KG, int32_t KR>
__attribute__((noinline)) uint32_t weightedExact(uint32_t v) {
    const int32_t b = int32_t(v & 255u), g = int32_t((v >> 8) & 255u),
                  r = int32_t((v >> 16) & 255u);
    return uint32_t(vbRound(b * (KB / 1000.0) + g * (KG / 1000.0) + r * (KR / 1000.0)));
}

// The weighted sums of eight pixels as q = (S + 500) \ 1000 with S = KB B + KG G + KR R,
// by a single-precision product (exact below 2^24, and a quotient that is not a tie stays
// 0.001 away from an integer, far more than the product's error). ties gets the lanes
// where S ends in 500: there the double sum of the rule decides, not the exact quotient.
template <int32_t KB, int32_t KG, int32_t KR>
OSTRIVEX_AVX2 inline __m256i weighted8(__m256i v, int& ties) {
    // S by products of 16-bit word pairs: v & 0x00FF00FF holds blue and red, the next
    // byte up green and channel 3 (times 0).
    static_assert(KB < 32768 && KG < 32768 && KR < 32768, "weights fit 16-bit words");
    const __m256i two = _mm256_set1_epi32(0x00FF00FF);
    const __m256i blueRed = _mm256_madd_epi16(_mm256_and_si256(v, two),
                                              _mm256_set1_epi32(KB | KR << 16));
    const __m256i green =
        _mm256_madd_epi16(_mm256_and_si256(_mm256_srli_epi32(v, 8), two), _mm256_set1_epi32(KG));
    const __m256i sum =
        _mm256_add_epi32(_mm256_add_epi32(blueRed, green), _mm256_set1_epi32(500));
    const __m256i q =
        _mm256_cvttps_epi32(_mm256_mul_ps(_mm256_cvtepi32_ps(sum), _mm256_set1_ps(0.001f)));
    // q * 1000, q being at most 255.
    const __m256i back = _mm256_madd_epi16(q, _mm256_set1_epi32(1000));
    ties = _mm256_movemask_ps(_mm256_castsi256_ps(_mm256_cmpeq_epi32(back, sum)));
    return q;
}

// The truncated mean (B + G + R) \ 3 of eight pixels: s * 43691 / 2^17 equals s \ 3 for
// every s up to 765 (43691 * 3 = 2^17 + 1, so the error stays under 1/3 / 255).
OSTRIVEX_AVX2 inline __m256i mean8(__m256i v) {
    const __m256i byte = _mm256_set1_epi32(255);
    const __m256i sum = _mm256_add_epi32(
        _mm256_add_epi32(_mm256_and_si256(v, byte), _mm256_and_si256(_mm256_srli_epi32(v, 8), byte)),
        _mm256_and_si256(_mm256_srli_epi32(v, 16), byte));
    return _mm256_srli_epi32(_mm256_mullo_epi32(sum, _mm256_set1_epi32(43691)), 17);
}

OSTRIVEX_AVX2 inline __m256i limit8(__m256i c) {
    return _mm256_min_epi32(_mm256_max_epi32(c, _mm256_setzero_si256()), _mm256_set1_epi32(255));
}

// Contrast's spill works on sixteen pixels at a time, each channel a 16-bit lane: the
// table's values lie within -637..892 and a round moves them by at most a few hundred.
OSTRIVEX_AVX2 inline __m256i limit16(__m256i c) {
    return _mm256_min_epi16(_mm256_max_epi16(c, _mm256_setzero_si256()), _mm256_set1_epi16(255));
}

// The spill of one channel limited to lim: the excess e = c - lim is c below 0 and c - 255
// above 255, and the spill is e \ 2 (truncating: the sign bit is added first).
OSTRIVEX_AVX2 inline __m256i spill16(__m256i c, __m256i lim) {
    const __m256i e = _mm256_sub_epi16(c, lim);
    return _mm256_srai_epi16(_mm256_add_epi16(e, _mm256_srli_epi16(e, 15)), 1);
}

// One spill round on sixteen pixels; a pixel already inside 0..255 comes out unchanged.
OSTRIVEX_AVX2 inline void spillRound16(__m256i& b, __m256i& g, __m256i& r) {
    // None above 0 (the largest at most 0): all turn 0.
    const __m256i low = _mm256_cmpgt_epi16(
        _mm256_set1_epi16(1), _mm256_max_epi16(_mm256_max_epi16(b, g), r));
    b = _mm256_andnot_si256(low, b);
    g = _mm256_andnot_si256(low, g);
    r = _mm256_andnot_si256(low, r);
    // None below 255 (the smallest at least 255): all turn 255.
    const __m256i white = _mm256_set1_epi16(255);
    const __m256i high = _mm256_cmpgt_epi16(
        _mm256_min_epi16(_mm256_min_epi16(b, g), r), _mm256_set1_epi16(254));
    b = _mm256_blendv_epi8(b, white, high);
    g = _mm256_blendv_epi8(g, white, high);
    r = _mm256_blendv_epi8(r, white, high);
    // Blue, then green, then red spill into the other two.
    __m256i lim = limit16(b);
    __m256i s = spill16(b, lim);
    b = lim;
    g = _mm256_add_epi16(g, s);
    r = _mm256_add_epi16(r, s);
    lim = limit16(g);
    s = spill16(g, lim);
    g = lim;
    b = _mm256_add_epi16(b, s);
    r = _mm256_add_epi16(r, s);
    lim = limit16(r);
    s = spill16(r, lim);
    r = lim;
    g = _mm256_add_epi16(g, s);
    b = _mm256_add_epi16(b, s);
}

// The lanes with a channel outside 0..255 (such a value has a bit above the low byte) are
// the nonzero lanes of the result.
OSTRIVEX_AVX2 inline __m256i outside16(__m256i b, __m256i g, __m256i r) {
    return _mm256_and_si256(_mm256_or_si256(_mm256_or_si256(b, g), r),
                            _mm256_set1_epi16(int16_t(0xFF00)));
}

// Sixteen pixels of inside channels as the pixel words of two eight-pixel vectors, the
// lanes in the order _mm256_packs_epi32 gave them (see contrastRun), channel 3 from v0
// and v1.
OSTRIVEX_AVX2 inline void unpack16(__m256i b, __m256i g, __m256i r, __m256i v0, __m256i v1,
                                   __m256i& p0, __m256i& p1) {
    const __m256i bg = _mm256_or_si256(b, _mm256_slli_epi16(g, 8));
    const __m256i marker = _mm256_set1_epi32(int(kMarker));
    p0 = _mm256_or_si256(_mm256_unpacklo_epi16(bg, r), _mm256_and_si256(v0, marker));
    p1 = _mm256_or_si256(_mm256_unpackhi_epi16(bg, r), _mm256_and_si256(v1, marker));
}

OSTRIVEX_AVX2 inline __m256i pack8(__m256i v, __m256i b, __m256i g, __m256i r) {
    const __m256i marker = _mm256_and_si256(v, _mm256_set1_epi32(int(kMarker)));
    return _mm256_or_si256(
        _mm256_or_si256(marker, b),
        _mm256_or_si256(_mm256_slli_epi32(g, 8), _mm256_slli_epi32(r, 16)));
}

// For each 8-bit mask, the byte shuffle that packs the chosen 16-bit words of a 128-bit
// lane to its front (the rest zero).
struct WordOrder {
    alignas(16) uint8_t bytes[256][16] = {};
    WordOrder() {
        for (int mask = 0; mask < 256; ++mask) {
            int k = 0;
            for (int word = 0; word < 8; ++word)
                if (mask >> word & 1) {
                    bytes[mask][2 * k] = uint8_t(2 * word);
                    bytes[mask][2 * k + 1] = uint8_t(2 * word + 1);
                    ++k;
                }
            for (; k < 8; ++k) bytes[mask][2 * k] = bytes[mask][2 * k + 1] = 0x80;
        }
    }
};
const WordOrder kWordOrder;

} // namespace

namespace {
std::atomic<int> gCeiling{int(KernelWidth::Avx512)};
} // namespace

bool hasWideKernels() {
    static const bool yes = [] {
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") &&
               __builtin_cpu_supports("popcnt");
    }();
    return yes && gCeiling.load(std::memory_order_relaxed) >= int(KernelWidth::Avx2);
}

bool hasWidestKernels() {
    static const bool yes = [] {
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
               __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi2");
    }();
    return yes && hasWideKernels() &&
           gCeiling.load(std::memory_order_relaxed) >= int(KernelWidth::Avx512);
}

// The luminance of GreyScale, q = round(B * 0.071 + G * 0.707 + R * 0.222), as
// (v & Keep) | q * Spread: into all three channels, or (OLDPHOTO) green and red only.
template <uint32_t Keep, uint32_t Spread>
OSTRIVEX_AVX2 void greyRun(const uint8_t* s, uint8_t* p, int32_t n) {
    int32_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 4 * i));
        int ties;
        const __m256i q = weighted8<71, 707, 222>(v, ties);
        const __m256i grey = _mm256_mullo_epi32(q, _mm256_set1_epi32(int(Spread)));
        const __m256i out = _mm256_or_si256(_mm256_and_si256(v, _mm256_set1_epi32(int(Keep))), grey);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p + 4 * i), out);
        while (ties) {
            const int k = i + __builtin_ctz(unsigned(ties));
            ties &= ties - 1;
            const uint32_t px = load32(s + 4 * k);
            store32(p + 4 * k, (px & Keep) | weightedExact<71, 707, 222>(px) * Spread);
        }
    }
    for (; i < n; ++i) {
        const uint32_t px = load32(s + 4 * i);
        store32(p + 4 * i, (px & Keep) | weightedExact<71, 707, 222>(px) * Spread);
    }
}

void greyWide(const uint8_t* s, uint8_t* p, int32_t n) {
    greyRun<kMarker, 0x010101u>(s, p, n);
}

void oldPhotoWide(const uint8_t* s, uint8_t* p, int32_t n) {
    greyRun<kMarker | 0xFFu, 0x010100u>(s, p, n);
}

OSTRIVEX_AVX2 uint64_t meanSumWide(const uint8_t* s, int32_t n) {
    // Each lane adds at most 255 a step: 2^24 steps fit its 32 bits.
    __m256i acc = _mm256_setzero_si256();
    int32_t i = 0;
    for (; i + 8 <= n; i += 8)
        acc = _mm256_add_epi32(
            acc, mean8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 4 * i))));
    alignas(32) uint32_t lanes[8];
    _mm256_store_si256(reinterpret_cast<__m256i*>(lanes), acc);
    uint64_t sum = 0;
    for (uint32_t v : lanes) sum += v;
    for (; i < n; ++i) sum += (uint32_t(s[4 * i]) + s[4 * i + 1] + s[4 * i + 2]) / 3u;
    return sum;
}

OSTRIVEX_AVX2 void equalizeLumWide(const uint8_t* s, int32_t n, uint32_t* out) {
    int32_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 4 * i));
        int ties;
        const __m256i q = weighted8<113, 586, 301>(v, ties);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i), q);
        while (ties) {
            const int k = i + __builtin_ctz(unsigned(ties));
            ties &= ties - 1;
            out[k] = weightedExact<113, 586, 301>(load32(s + 4 * k));
        }
    }
    for (; i < n; ++i) out[i] = weightedExact<113, 586, 301>(load32(s + 4 * i));
}

// clamp(round(c + f * (c - a))) of four channel values.
OSTRIVEX_AVX2 inline __m128i saturate4(__m128i c, __m128i a, __m256d factor) {
    const __m256d moved =
        _mm256_fmadd_pd(factor, _mm256_cvtepi32_pd(_mm_sub_epi32(c, a)), _mm256_cvtepi32_pd(c));
    const __m128i x = _mm256_cvtpd_epi32(moved);
    return _mm_min_epi32(_mm_max_epi32(x, _mm_setzero_si128()), _mm_set1_epi32(255));
}

OSTRIVEX_AVX2 void saturationWide(const uint8_t* s, uint8_t* p, int32_t n, float f) {
    // Four pixels at a time in double: c + f * (c - a) is exact there (a 24-bit factor
    // times a 9-bit difference plus a byte), so the one conversion, which rounds to
    // nearest with ties to even, gives round() of the rule; then the clamp.
    const __m128i byte = _mm_set1_epi32(255);
    const __m256d factor = _mm256_set1_pd(double(f));
    int32_t i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4 * i));
        const __m128i b = _mm_and_si128(v, byte);
        const __m128i g = _mm_and_si128(_mm_srli_epi32(v, 8), byte);
        const __m128i r = _mm_and_si128(_mm_srli_epi32(v, 16), byte);
        const __m128i sum = _mm_add_epi32(_mm_add_epi32(b, g), r);
        const __m128i a = _mm_srli_epi32(_mm_mullo_epi32(sum, _mm_set1_epi32(43691)), 17);
        const __m128i out = _mm_or_si128(
            _mm_or_si128(_mm_and_si128(v, _mm_set1_epi32(int(kMarker))), saturate4(b, a, factor)),
            _mm_or_si128(_mm_slli_epi32(saturate4(g, a, factor), 8),
                         _mm_slli_epi32(saturate4(r, a, factor), 16)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 4 * i), out);
    }
    for (; i < n; ++i) {
        const uint32_t v = load32(s + 4 * i);
        const int32_t b = int32_t(v & 255u), g = int32_t((v >> 8) & 255u),
                      r = int32_t((v >> 16) & 255u);
        const int32_t a = (b + g + r) / 3;
        auto channel = [&](int32_t c) { return uint32_t(clampByte(vbRound(c + double(f) * (c - a)))); };
        store32(p + 4 * i, (v & kMarker) | channel(b) | channel(g) << 8 | channel(r) << 16);
    }
}

// Contrast's table entry round((c - mean) * f + mean) of eight channel values, worked
// out instead of looked up: in double the product of the single f and a 9-bit difference
// is exact, and so is the sum, so the one conversion (to nearest, ties to even) is the
// rule's rounding.
OSTRIVEX_AVX2 inline __m256i stretch8(__m256i c, __m256i mean, __m256d factor) {
    const __m256i d = _mm256_sub_epi32(c, mean);
    const __m256d base = _mm256_cvtepi32_pd(_mm256_castsi256_si128(mean));
    const __m128i lo = _mm256_cvtpd_epi32(
        _mm256_fmadd_pd(_mm256_cvtepi32_pd(_mm256_castsi256_si128(d)), factor, base));
    const __m128i hi = _mm256_cvtpd_epi32(
        _mm256_fmadd_pd(_mm256_cvtepi32_pd(_mm256_extracti128_si256(d, 1)), factor, base));
    return _mm256_inserti128_si256(_mm256_castsi128_si256(lo), hi, 1);
}

// clamp(round(c + f * (c - a))) of eight channel values in single precision: the fused
// product and sum round once, to a single, and the conversion rounds to nearest even.
OSTRIVEX_AVX2 inline __m256i saturate8(__m256i c, __m256i a, __m256 factor) {
    const __m256 moved = _mm256_fmadd_ps(factor, _mm256_cvtepi32_ps(_mm256_sub_epi32(c, a)),
                                         _mm256_cvtepi32_ps(c));
    return limit8(_mm256_cvtps_epi32(moved));
}

OSTRIVEX_AVX2 bool saturationSingleExact(float f) {
    // Single precision can go wrong only where c + f * (c - a), exact in double, lies
    // within a single's step of a half: compare with the exact path on every pair.
    const __m256 factor = _mm256_set1_ps(f);
    const __m256d factorD = _mm256_set1_pd(double(f));
    __m256i wrong = _mm256_setzero_si256();
    for (int32_t a = 0; a < 256; ++a) {
        const __m256i av = _mm256_set1_epi32(a);
        for (int32_t c0 = 0; c0 < 256; c0 += 8) {
            const __m256i c = _mm256_add_epi32(_mm256_set1_epi32(c0),
                                               _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
            const __m256i single = saturate8(c, av, factor);
            const __m128i lo = saturate4(_mm256_castsi256_si128(c), _mm256_castsi256_si128(av), factorD);
            const __m128i hi =
                saturate4(_mm256_extracti128_si256(c, 1), _mm256_castsi256_si128(av), factorD);
            const __m256i exact = _mm256_inserti128_si256(_mm256_castsi128_si256(lo), hi, 1);
            wrong = _mm256_or_si256(wrong, _mm256_xor_si256(single, exact));
        }
    }
    return _mm256_testz_si256(wrong, wrong) != 0;
}

OSTRIVEX_AVX2 void saturationWideSingle(const uint8_t* s, uint8_t* p, int32_t n, float f) {
    const __m256i byte = _mm256_set1_epi32(255);
    const __m256 factor = _mm256_set1_ps(f);
    int32_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 4 * i));
        const __m256i a = mean8(v);
        const __m256i b = saturate8(_mm256_and_si256(v, byte), a, factor);
        const __m256i g = saturate8(_mm256_and_si256(_mm256_srli_epi32(v, 8), byte), a, factor);
        const __m256i r = saturate8(_mm256_and_si256(_mm256_srli_epi32(v, 16), byte), a, factor);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p + 4 * i), pack8(v, b, g, r));
    }
    if (i < n) saturationWide(s + 4 * i, p + 4 * i, n - i, f);
}

// M of the blue, green and red of eight pixels as (i * a + b) >> shift, the products by
// pairs of 16-bit words (a fits 15 bits, see fitContrastMap): v & 0x00FF00FF holds blue
// and red, (v >> 8) & 0x00FF00FF green and channel 3.
OSTRIVEX_AVX2 inline void linear8(__m256i v, __m256i aLow, __m256i aHigh, __m256i add,
                                  __m128i shift, __m256i& b, __m256i& g, __m256i& r) {
    const __m256i two = _mm256_set1_epi32(0x00FF00FF);
    const __m256i br = _mm256_and_si256(v, two);
    const __m256i ga = _mm256_and_si256(_mm256_srli_epi32(v, 8), two);
    b = _mm256_sra_epi32(_mm256_add_epi32(_mm256_madd_epi16(br, aLow), add), shift);
    r = _mm256_sra_epi32(_mm256_add_epi32(_mm256_madd_epi16(br, aHigh), add), shift);
    g = _mm256_sra_epi32(_mm256_add_epi32(_mm256_madd_epi16(ga, aLow), add), shift);
}

// The slow pixels of a chunk wait in these lists for their remaining rounds: the channels
// as they stand after the first round, channel 3, and the pixel's place in the chunk.
constexpr int32_t kSpillChunk = 1024;
struct SpillLists {
    // Room past the end for a whole register of 32 words at the last place.
    alignas(64) int16_t b[kSpillChunk + 32], g[kSpillChunk + 32], r[kSpillChunk + 32],
        a[kSpillChunk + 32], at[kSpillChunk + 32];
};

// Appends the lanes of mask (eight words of a 128-bit lane) to the lists.
OSTRIVEX_AVX2 inline void appendLane(SpillLists& q, int32_t& count, __m128i b, __m128i g,
                                     __m128i r, __m128i a, __m128i at, int mask) {
    const __m128i order = _mm_load_si128(reinterpret_cast<const __m128i*>(kWordOrder.bytes[mask]));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(q.b + count), _mm_shuffle_epi8(b, order));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(q.g + count), _mm_shuffle_epi8(g, order));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(q.r + count), _mm_shuffle_epi8(r, order));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(q.a + count), _mm_shuffle_epi8(a, order));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(q.at + count), _mm_shuffle_epi8(at, order));
    count += __builtin_popcount(unsigned(mask));
}

// Rounds the listed pixels sixteen at a time until they are inside and writes them to the
// chunk at p.
OSTRIVEX_AVX2 void settleLists(SpillLists& q, int32_t count, uint8_t* p) {
    // The lanes past the end hold black, which no round changes.
    for (int32_t k = count; k < count + 16; ++k) q.b[k] = q.g[k] = q.r[k] = 0;
    for (int32_t j = 0; j < count; j += 16) {
        __m256i b = _mm256_load_si256(reinterpret_cast<const __m256i*>(q.b + j));
        __m256i g = _mm256_load_si256(reinterpret_cast<const __m256i*>(q.g + j));
        __m256i r = _mm256_load_si256(reinterpret_cast<const __m256i*>(q.r + j));
        __m256i out;
        do {
            spillRound16(b, g, r);
            out = outside16(b, g, r);
        } while (!_mm256_testz_si256(out, out));
        const __m256i a = _mm256_load_si256(reinterpret_cast<const __m256i*>(q.a + j));
        const __m256i bg = _mm256_or_si256(b, _mm256_slli_epi16(g, 8));
        const __m256i ra = _mm256_or_si256(r, _mm256_slli_epi16(a, 8));
        const __m256i lo = _mm256_unpacklo_epi16(bg, ra), hi = _mm256_unpackhi_epi16(bg, ra);
        // Entries 0..3 and 8..11 are in lo, 4..7 and 12..15 in hi: back in list order.
        alignas(32) uint32_t done[16];
        _mm256_store_si256(reinterpret_cast<__m256i*>(done), _mm256_permute2x128_si256(lo, hi, 0x20));
        _mm256_store_si256(reinterpret_cast<__m256i*>(done + 8),
                           _mm256_permute2x128_si256(lo, hi, 0x31));
        const int32_t end = std::min(16, count - j);
        for (int32_t k = 0; k < end; ++k) store32(p + 4 * q.at[j + k], done[k]);
    }
}

// Two passes over each chunk of the run: all pixels through the table and one round,
// sixteen at a time (the channels of two eight-pixel vectors packed into 16-bit lanes),
// written at once, those still outside appended to the lists; then the lists, sixteen at
// a time, until every pixel is inside (and written again). So the rounds a group takes
// are set by its slowest pixel among the few slow ones only. A chunk's last pixels short
// of sixteen go through a padded copy; the black padding never spills.
template <bool Linear>
OSTRIVEX_AVX2 void contrastRun(const uint8_t* s, uint8_t* p, int32_t n, const ContrastMap& map) {
    const __m256i byte = _mm256_set1_epi32(255);
    const __m256i mean = _mm256_set1_epi32(map.mean);
    const __m256d factor = _mm256_set1_pd(double(map.f));
    const __m256i aLow = _mm256_set1_epi32(map.a), aHigh = _mm256_set1_epi32(map.a << 16);
    const __m256i add = _mm256_set1_epi32(map.b);
    const __m128i shift = _mm_cvtsi32_si128(map.shift);
    // The place in the chunk of each 16-bit lane after _mm256_packs_epi32 of pixels 0..7
    // and 8..15: per 128-bit half four of the first vector, then four of the second.
    const __m256i places = _mm256_setr_epi16(0, 1, 2, 3, 8, 9, 10, 11, 4, 5, 6, 7, 12, 13, 14, 15);
    auto map8 = [&](__m256i v, __m256i& b, __m256i& g, __m256i& r) OSTRIVEX_AVX2 {
        if constexpr (Linear) {
            linear8(v, aLow, aHigh, add, shift, b, g, r);
        } else {
            b = stretch8(_mm256_and_si256(v, byte), mean, factor);
            g = stretch8(_mm256_and_si256(_mm256_srli_epi32(v, 8), byte), mean, factor);
            r = stretch8(_mm256_and_si256(_mm256_srli_epi32(v, 16), byte), mean, factor);
        }
    };
    SpillLists lists;
    // Sixteen pixels from in to out, their first place in the chunk being at.
    auto group = [&](const uint8_t* in, uint8_t* out, int32_t at, int32_t& count) OSTRIVEX_AVX2 {
        const __m256i v0 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
        const __m256i v1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + 32));
        __m256i b0, g0, r0, b1, g1, r1;
        map8(v0, b0, g0, r0);
        map8(v1, b1, g1, r1);
        __m256i b = _mm256_packs_epi32(b0, b1), g = _mm256_packs_epi32(g0, g1),
                r = _mm256_packs_epi32(r0, r1);
        // A pixel inside 0..255 comes through a round unchanged: no test first.
        spillRound16(b, g, r);
        __m256i p0, p1;
        unpack16(b, g, r, v0, v1, p0, p1); // lanes still outside are written again later
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), p0);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 32), p1);
        const __m256i outside = outside16(b, g, r);
        if (_mm256_testz_si256(outside, outside)) return;
        // One bit a lane: bits 0..7 the low 128-bit half, 16..23 the high one.
        const __m256i inside = _mm256_cmpeq_epi16(outside, _mm256_setzero_si256());
        const unsigned bits = ~unsigned(_mm256_movemask_epi8(_mm256_packs_epi16(inside, inside)));
        const __m256i where = _mm256_add_epi16(_mm256_set1_epi16(int16_t(at)), places);
        const __m256i a = _mm256_packs_epi32(_mm256_srli_epi32(v0, 24), _mm256_srli_epi32(v1, 24));
        appendLane(lists, count, _mm256_castsi256_si128(b), _mm256_castsi256_si128(g),
                   _mm256_castsi256_si128(r), _mm256_castsi256_si128(a),
                   _mm256_castsi256_si128(where), int(bits & 0xFF));
        appendLane(lists, count, _mm256_extracti128_si256(b, 1), _mm256_extracti128_si256(g, 1),
                   _mm256_extracti128_si256(r, 1), _mm256_extracti128_si256(a, 1),
                   _mm256_extracti128_si256(where, 1), int(bits >> 16 & 0xFF));
    };
    for (int32_t start = 0; start < n; start += kSpillChunk) {
        const int32_t size = std::min(kSpillChunk, n - start), whole = size / 16 * 16;
        const uint8_t* cs = s + 4 * start;
        uint8_t* cp = p + 4 * start;
        int32_t count = 0;
        for (int32_t i = 0; i < whole; i += 16) group(cs + 4 * i, cp + 4 * i, i, count);
        if (whole < size) {
            alignas(32) uint8_t in[64] = {}, out[64];
            const size_t bytes = size_t(size - whole) * 4u;
            std::memcpy(in, cs + 4 * whole, bytes);
            group(in, out, whole, count);
            std::memcpy(cp + 4 * whole, out, bytes);
        }
        if (count) settleLists(lists, count, cp);
    }
}

// GCC 12's AVX-512 shift intrinsics start from an "undefined" register it then warns about.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"

#define OSTRIVEX_AVX512 \
    __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi2,avx2,fma,popcnt")))

// The same on thirty-two pixels a step: 16-bit lanes in 512-bit registers, the lane tests
// as mask registers and the slow lanes gathered by compress. The lists are settled by the
// sixteen-lane rounds above (a group of thirty-two would wait on its slowest of more).
OSTRIVEX_AVX512 inline __m512i limit32(__m512i c) {
    return _mm512_min_epi16(_mm512_max_epi16(c, _mm512_setzero_si512()), _mm512_set1_epi16(255));
}
OSTRIVEX_AVX512 inline __m512i spill32(__m512i c, __m512i lim) {
    const __m512i e = _mm512_sub_epi16(c, lim);
    return _mm512_srai_epi16(_mm512_add_epi16(e, _mm512_srli_epi16(e, 15)), 1);
}
// The three steps of a round on thirty-two pixels, without the tests that start a round:
// the first round can do without them (see contrastRunLinear512).
OSTRIVEX_AVX512 inline void spillSteps32(__m512i& b, __m512i& g, __m512i& r) {
    __m512i lim = limit32(b);
    __m512i s = spill32(b, lim);
    b = lim;
    g = _mm512_add_epi16(g, s);
    r = _mm512_add_epi16(r, s);
    lim = limit32(g);
    s = spill32(g, lim);
    g = lim;
    b = _mm512_add_epi16(b, s);
    r = _mm512_add_epi16(r, s);
    lim = limit32(r);
    s = spill32(r, lim);
    r = lim;
    g = _mm512_add_epi16(g, s);
    b = _mm512_add_epi16(b, s);
}
OSTRIVEX_AVX512 inline void linear16(__m512i v, __m512i aLow, __m512i aHigh, __m512i add,
                                     __m128i shift, __m512i& b, __m512i& g, __m512i& r) {
    const __m512i two = _mm512_set1_epi32(0x00FF00FF);
    const __m512i br = _mm512_and_si512(v, two);
    const __m512i ga = _mm512_and_si512(_mm512_srli_epi32(v, 8), two);
    b = _mm512_sra_epi32(_mm512_add_epi32(_mm512_madd_epi16(br, aLow), add), shift);
    r = _mm512_sra_epi32(_mm512_add_epi32(_mm512_madd_epi16(br, aHigh), add), shift);
    g = _mm512_sra_epi32(_mm512_add_epi32(_mm512_madd_epi16(ga, aLow), add), shift);
}

// The slow pixels of a chunk for the thirty-two-pixel kernel: their channels after the first
// round, in pixel order; once settled, their blue, green and red as pixel words in the same
// order; and for each group of thirty-two the mask of its slow pixels, by which the settled
// words are expanded back into the group's places.
struct SpillLists512 {
    // Room past the end for a whole register at the last place.
    alignas(64) int16_t b[kSpillChunk + 32], g[kSpillChunk + 32], r[kSpillChunk + 32];
    alignas(64) uint32_t done[kSpillChunk + 32];
    uint32_t masks[kSpillChunk / 32];
};

// A whole round on thirty-two pixels: the two tests, then the three steps.
OSTRIVEX_AVX512 inline void spillRound32(__m512i& b, __m512i& g, __m512i& r) {
    const __m512i zero = _mm512_setzero_si512(), white = _mm512_set1_epi16(255);
    // None above 0 (the largest below 1): all turn 0.
    const __mmask32 low = _mm512_cmplt_epi16_mask(_mm512_max_epi16(_mm512_max_epi16(b, g), r),
                                                  _mm512_set1_epi16(1));
    b = _mm512_mask_mov_epi16(b, low, zero);
    g = _mm512_mask_mov_epi16(g, low, zero);
    r = _mm512_mask_mov_epi16(r, low, zero);
    // None below 255 (the smallest above 254): all turn 255.
    const __mmask32 high = _mm512_cmpgt_epi16_mask(
        _mm512_min_epi16(_mm512_min_epi16(b, g), r), _mm512_set1_epi16(254));
    b = _mm512_mask_mov_epi16(b, high, white);
    g = _mm512_mask_mov_epi16(g, high, white);
    r = _mm512_mask_mov_epi16(r, high, white);
    spillSteps32(b, g, r);
}

// Rounds the listed pixels thirty-two at a time until they are inside, into q.done. Of the
// pixels still outside after the first round nearly half need three more rounds, so a
// group of sixteen waits three rounds as often as one of thirty-two does.
OSTRIVEX_AVX512 void settleLists512(SpillLists512& q, int32_t count) {
    // The lanes past the end hold black, which no round changes.
    for (int32_t k = count; k < count + 32; ++k) q.b[k] = q.g[k] = q.r[k] = 0;
    const __m512i highByte = _mm512_set1_epi16(int16_t(0xFF00));
    // Word 2j of the first sixteen pixel words is bg[j], word 2j + 1 is r[j]; then j + 16.
    alignas(64) int16_t first[32], second[32];
    for (int j = 0; j < 16; ++j) {
        first[2 * j] = int16_t(j);
        first[2 * j + 1] = int16_t(32 + j);
        second[2 * j] = int16_t(16 + j);
        second[2 * j + 1] = int16_t(48 + j);
    }
    const __m512i toFirst = _mm512_load_si512(first), toSecond = _mm512_load_si512(second);
    for (int32_t j = 0; j < count; j += 32) {
        __m512i b = _mm512_load_si512(q.b + j);
        __m512i g = _mm512_load_si512(q.g + j);
        __m512i r = _mm512_load_si512(q.r + j);
        do {
            spillRound32(b, g, r);
        } while (_mm512_test_epi16_mask(_mm512_ternarylogic_epi32(b, g, r, 0xFE), highByte));
        const __m512i bg = _mm512_or_si512(b, _mm512_slli_epi16(g, 8));
        _mm512_store_si512(q.done + j, _mm512_permutex2var_epi16(bg, toFirst, r));
        _mm512_store_si512(q.done + j + 16, _mm512_permutex2var_epi16(bg, toSecond, r));
    }
}

// Thirty-two pixels a step. The first round runs on every pixel without the two tests
// that start a round (all three channels at most 0: all become 0; all at least 255: all
// become 255). That gives the same final bytes: from such a state every spill moves the
// channels further the same way, so the rounds can only end on all 0 or all 255, and the
// later rounds, which keep the tests, finish such a pixel at once. (Checked on all
// 16 777 216 colours for several levels and means.) The pixels still outside wait in the
// chunk's lists, are settled, and are put back by expanding the settled words under each
// group's mask.
OSTRIVEX_AVX512 void contrastRunLinear512(const uint8_t* s, uint8_t* p, int32_t n,
                                          const ContrastMap& map) {
    const __m512i aLow = _mm512_set1_epi32(map.a), aHigh = _mm512_set1_epi32(map.a << 16);
    const __m512i add = _mm512_set1_epi32(map.b);
    const __m128i shift = _mm_cvtsi32_si128(map.shift);
    const __m512i marker = _mm512_set1_epi32(int(kMarker));
    const __m512i highByte = _mm512_set1_epi16(int16_t(0xFF00));
    // After _mm512_packs_epi32 of pixels 0..15 and 16..31, 128-bit part k holds pixels
    // 4k..4k+3, then 16+4k..16+4k+3; toPixels puts the words back in pixel order.
    alignas(64) int16_t order[32];
    for (int k = 0; k < 4; ++k)
        for (int j = 0; j < 4; ++j) {
            order[4 * k + j] = int16_t(8 * k + j);
            order[16 + 4 * k + j] = int16_t(8 * k + 4 + j);
        }
    const __m512i toPixels = _mm512_load_si512(order);
    SpillLists512 lists;
    // Thirty-two pixels from in to out; group gi of the chunk, valid its real pixels.
    auto group = [&](const uint8_t* in, uint8_t* out, int32_t gi, __mmask32 valid,
                     int32_t& count) OSTRIVEX_AVX512 {
        const __m512i v0 = _mm512_loadu_si512(in), v1 = _mm512_loadu_si512(in + 64);
        __m512i b0, g0, r0, b1, g1, r1;
        linear16(v0, aLow, aHigh, add, shift, b0, g0, r0);
        linear16(v1, aLow, aHigh, add, shift, b1, g1, r1);
        __m512i b = _mm512_packs_epi32(b0, b1), g = _mm512_packs_epi32(g0, g1),
                r = _mm512_packs_epi32(r0, r1);
        spillSteps32(b, g, r);
        const __m512i bg = _mm512_or_si512(b, _mm512_slli_epi16(g, 8));
        // pixel | (source & marker); lanes still outside are written again later
        _mm512_storeu_si512(out, _mm512_ternarylogic_epi32(_mm512_unpacklo_epi16(bg, r), v0, marker, 0xF8));
        _mm512_storeu_si512(out + 64, _mm512_ternarylogic_epi32(_mm512_unpackhi_epi16(bg, r), v1, marker, 0xF8));
        lists.masks[gi] = 0;
        // b | g | r with a bit above the low byte
        if (!_mm512_test_epi16_mask(_mm512_ternarylogic_epi32(b, g, r, 0xFE), highByte)) return;
        b = _mm512_permutexvar_epi16(toPixels, b);
        g = _mm512_permutexvar_epi16(toPixels, g);
        r = _mm512_permutexvar_epi16(toPixels, r);
        const __mmask32 outside =
            _mm512_test_epi16_mask(_mm512_ternarylogic_epi32(b, g, r, 0xFE), highByte) & valid;
        lists.masks[gi] = outside;
        _mm512_storeu_si512(lists.b + count, _mm512_maskz_compress_epi16(outside, b));
        _mm512_storeu_si512(lists.g + count, _mm512_maskz_compress_epi16(outside, g));
        _mm512_storeu_si512(lists.r + count, _mm512_maskz_compress_epi16(outside, r));
        count += __builtin_popcount(outside);
    };
    for (int32_t start = 0; start < n; start += kSpillChunk) {
        const int32_t size = std::min(kSpillChunk, n - start), whole = size / 32 * 32;
        const uint8_t* cs = s + 4 * start;
        uint8_t* cp = p + 4 * start;
        int32_t count = 0;
        for (int32_t i = 0; i < whole; i += 32) group(cs + 4 * i, cp + 4 * i, i / 32, ~__mmask32(0), count);
        if (whole < size) {
            // The black padding of the last group would spill without the first round's
            // tests: only the real pixels may wait.
            alignas(64) uint8_t in[128] = {}, out[128];
            const size_t bytes = size_t(size - whole) * 4u;
            std::memcpy(in, cs + 4 * whole, bytes);
            group(in, out, whole / 32, __mmask32((uint64_t(1) << (size - whole)) - 1u), count);
            std::memcpy(cp + 4 * whole, out, bytes);
        }
        if (!count) continue;
        settleLists512(lists, count);
        int32_t k = 0;
        for (int32_t gi = 0; gi * 32 < size; ++gi) {
            const uint32_t mask = lists.masks[gi];
            for (int half = 0; half < 2; ++half) {
                const __mmask16 m = __mmask16(mask >> (16 * half));
                if (!m) continue;
                uint8_t* at = cp + 4 * (32 * gi + 16 * half);
                const __m512i settled = _mm512_maskz_expand_epi32(m, _mm512_loadu_si512(lists.done + k));
                const __m512i old = _mm512_maskz_loadu_epi32(m, at);
                // settled where the marker bits are clear, old's channel 3 where they are set
                _mm512_mask_storeu_epi32(at, m, _mm512_ternarylogic_epi32(old, settled, marker, 0xE4));
                k += __builtin_popcount(m);
            }
        }
    }
}

#pragma GCC diagnostic pop

void fitContrastMap(ContrastMap& map) {
    // floor((i * a + b) / 2^shift) = M[i] for every i bounds b from both sides; a near
    // f * 2^shift leaves room for some b unless M rounds a tie against the line's trend.
    map.linear = false;
    for (int32_t shift = 12; shift <= 20; ++shift) {
        const int64_t one = int64_t(1) << shift;
        const int64_t centre = int64_t(std::llround(double(map.f) * double(one)));
        for (int64_t a = centre - 2; a <= centre + 2; ++a) {
            int64_t lo = INT64_MIN, hi = INT64_MAX; // b in [lo, hi)
            for (int64_t i = 0; i < 256; ++i) {
                lo = std::max(lo, map.m[i] * one - a * i);
                hi = std::min(hi, (map.m[i] + 1) * one - a * i);
            }
            // The sums must stay inside 32 bits for every i.
            const int64_t top = std::max(lo, lo + 255 * a), bottom = std::min(lo, lo + 255 * a);
            // a must also fit a signed 16-bit word for the kernel's products.
            if (lo < hi && top < INT32_MAX && bottom > INT32_MIN && a >= 0 && a <= INT16_MAX) {
                map.linear = true;
                map.a = int32_t(a);
                map.b = int32_t(lo);
                map.shift = shift;
                return;
            }
        }
    }
}

void contrastWide(const uint8_t* s, uint8_t* p, int32_t n, const ContrastMap& map) {
    if (map.linear && hasWidestKernels())
        contrastRunLinear512(s, p, n, map);
    else if (map.linear)
        contrastRun<true>(s, p, n, map);
    else
        contrastRun<false>(s, p, n, map);
}


namespace {

inline uint32_t pairOf(const uint8_t* t, uint32_t x, uint32_t y) {
    return t[x * 256u + y];
}
// The rounded half of a byte, ties to even: (g + 1) / 2 when g / 2 would be an odd tie.
inline uint32_t halfOf(uint32_t g) {
    return (g + ((g >> 1) & g & 1u)) >> 1;
}
// The low byte of abs(not(a)).
inline uint32_t retroOf(int32_t a) {
    const int32_t x = ~a;
    return uint32_t(x < 0 ? -x : x) & 255u;
}

uint32_t classyPixel(int32_t mode, uint32_t v, const ClassyTables& t) {
    const uint32_t b = v & 255u, g = (v >> 8) & 255u, r = (v >> 16) & 255u;
    uint32_t nb = b, ng = g, nr = r;
    switch (mode) {
    case 0:
        nb = pairOf(t.soft, b, g);
        ng = pairOf(t.average, r, g);
        nr = g;
        break;
    case 1:
        ng = pairOf(t.average, r, g);
        nr = g;
        break;
    case 2:
        nb = r;
        nr = pairOf(t.average, r, b);
        break;
    case 3:
        nb = g;
        ng = pairOf(t.average, g, b);
        break;
    case 6:
        nb = pairOf(t.spot, r, b);
        ng = pairOf(t.spot, g, r);
        nr = pairOf(t.spot, b, g);
        break;
    case 7: {
        const int32_t k = int32_t(pairOf(t.retro, b, r));
        nb = retroOf(int32_t(g) - k);
        ng = retroOf(int32_t(r) - k);
        nr = retroOf(int32_t(b) - k);
        break;
    }
    case 8:
        nb = g;
        ng = r;
        break;
    case 10:
        nb = halfOf(g);
        ng = halfOf(r);
        break;
    case 11:
        nb = g;
        ng = b;
        nr = 170u;
        break;
    default:
        break;
    }
    return (v & kMarker) | nb | ng << 8 | nr << 16;
}

// byte((x * 0.99 + y * 0.99) / 2) of eight pairs. With s = x + y the rule gives
// (99 s + 100) \ 200 for every pair but those whose sum makes the halved value end in
// exactly .5 (99 s + 100 a multiple of 200: s = 100 and s = 300); there the double sum of
// the two products decides, so ties gets those lanes and the caller works them out by the
// rule itself. Checked against the rule on every colour (tests/pixel/test_tone.cpp). The
// quotient: 99 s + 100 fits 16 bits, and (v >> 3) \ 25 is the high word of
// (v >> 3) * 5243 halved (the error stays under 0.006 for these v, and a quotient that
// is not whole stays at least 0.04 from the next).
OSTRIVEX_AVX2 inline __m256i average8(__m256i x, __m256i y, unsigned& ties) {
    const __m256i sum = _mm256_add_epi32(x, y);
    const __m256i v = _mm256_add_epi32(_mm256_mullo_epi16(sum, _mm256_set1_epi32(99)),
                                       _mm256_set1_epi32(100));
    const __m256i q = _mm256_srli_epi32(
        _mm256_mulhi_epu16(_mm256_srli_epi32(v, 3), _mm256_set1_epi32(5243)), 1);
    const __m256i tie = _mm256_or_si256(_mm256_cmpeq_epi32(sum, _mm256_set1_epi32(100)),
                                        _mm256_cmpeq_epi32(sum, _mm256_set1_epi32(300)));
    ties = unsigned(_mm256_movemask_ps(_mm256_castsi256_ps(tie)));
    return q;
}

// round((2 x 0.99 + y 0.99) / 12) of eight pairs, ClassyColors' retro offset. With
// s = 2 x + y the rule gives (33 s + 200) \ 400 for every pair but those of s = 200, which
// ties gets, as in average8: the value ends in exactly .5 there (and at s = 600), and the
// double sum falls below the half, giving 16 where the quotient gives 17 (at 600 both give
// 50). Checked against the rule on every colour. 33 s + 200 fits 16 bits, and
// (v >> 4) \ 25 is the high word of (v >> 4) * 5243 halved.
OSTRIVEX_AVX2 inline __m256i retro8(__m256i x, __m256i y, unsigned& ties) {
    const __m256i sum = _mm256_add_epi32(_mm256_add_epi32(x, x), y);
    const __m256i v = _mm256_add_epi32(_mm256_mullo_epi16(sum, _mm256_set1_epi32(33)),
                                       _mm256_set1_epi32(200));
    const __m256i q = _mm256_srli_epi32(
        _mm256_mulhi_epu16(_mm256_srli_epi32(v, 4), _mm256_set1_epi32(5243)), 1);
    const __m256i tie = _mm256_cmpeq_epi32(sum, _mm256_set1_epi32(200));
    ties = unsigned(_mm256_movemask_ps(_mm256_castsi256_ps(tie)));
    return q;
}

// A table entry of eight (x, y) pairs: a word read at the entry's byte offset, low byte.
OSTRIVEX_AVX2 inline __m256i pair8(const uint8_t* t, __m256i x, __m256i y) {
    const __m256i at = _mm256_add_epi32(_mm256_slli_epi32(x, 8), y);
    return _mm256_and_si256(_mm256_i32gather_epi32(reinterpret_cast<const int*>(t), at, 1),
                            _mm256_set1_epi32(255));
}

template <int32_t Mode>
OSTRIVEX_AVX2 void classyRun(const uint8_t* s, uint8_t* p, int32_t n, const ClassyTables& t) {
    const __m256i byte = _mm256_set1_epi32(255);
    int32_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 4 * i));
        const __m256i b = _mm256_and_si256(v, byte);
        const __m256i g = _mm256_and_si256(_mm256_srli_epi32(v, 8), byte);
        const __m256i r = _mm256_and_si256(_mm256_srli_epi32(v, 16), byte);
        __m256i nb = b, ng = g, nr = r;
        unsigned ties = 0; // lanes left to the rule (see average8 and retro8)
        if constexpr (Mode == 0) {
            nb = pair8(t.soft, b, g);
            ng = average8(r, g, ties);
            nr = g;
        } else if constexpr (Mode == 1) {
            ng = average8(r, g, ties);
            nr = g;
        } else if constexpr (Mode == 2) {
            nb = r;
            nr = average8(r, b, ties);
        } else if constexpr (Mode == 3) {
            nb = g;
            ng = average8(g, b, ties);
        } else if constexpr (Mode == 6) {
            nb = pair8(t.spot, r, b);
            ng = pair8(t.spot, g, r);
            nr = pair8(t.spot, b, g);
        } else if constexpr (Mode == 7) {
            const __m256i k = retro8(b, r, ties);
            const __m256i ones = _mm256_set1_epi32(-1);
            nb = _mm256_and_si256(_mm256_abs_epi32(_mm256_xor_si256(_mm256_sub_epi32(g, k), ones)), byte);
            ng = _mm256_and_si256(_mm256_abs_epi32(_mm256_xor_si256(_mm256_sub_epi32(r, k), ones)), byte);
            nr = _mm256_and_si256(_mm256_abs_epi32(_mm256_xor_si256(_mm256_sub_epi32(b, k), ones)), byte);
        } else if constexpr (Mode == 8) {
            nb = g;
            ng = r;
        } else if constexpr (Mode == 10) {
            const __m256i one = _mm256_set1_epi32(1);
            const __m256i hg = _mm256_and_si256(_mm256_and_si256(_mm256_srli_epi32(g, 1), g), one);
            const __m256i hr = _mm256_and_si256(_mm256_and_si256(_mm256_srli_epi32(r, 1), r), one);
            nb = _mm256_srli_epi32(_mm256_add_epi32(g, hg), 1);
            ng = _mm256_srli_epi32(_mm256_add_epi32(r, hr), 1);
        } else if constexpr (Mode == 11) {
            nb = g;
            ng = b;
            nr = _mm256_set1_epi32(170);
        }
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p + 4 * i), pack8(v, nb, ng, nr));
        for (; ties; ties &= ties - 1) {
            const int32_t k = i + __builtin_ctz(ties);
            store32(p + 4 * k, classyPixel(Mode, load32(s + 4 * k), t));
        }
    }
    for (; i < n; ++i) store32(p + 4 * i, classyPixel(Mode, load32(s + 4 * i), t));
}

} // namespace

void classyWide(int32_t mode, const uint8_t* s, uint8_t* p, int32_t n, const ClassyTables& t) {
    switch (mode) {
    case 0: return classyRun<0>(s, p, n, t);
    case 1: return classyRun<1>(s, p, n, t);
    case 2: return classyRun<2>(s, p, n, t);
    case 3: return classyRun<3>(s, p, n, t);
    case 6: return classyRun<6>(s, p, n, t);
    case 7: return classyRun<7>(s, p, n, t);
    case 8: return classyRun<8>(s, p, n, t);
    case 10: return classyRun<10>(s, p, n, t);
    case 11: return classyRun<11>(s, p, n, t);
    default: std::memcpy(p, s, size_t(n) * 4u); // 4, 5, 9 and any other: unchanged
    }
}

#undef OSTRIVEX_AVX2

#else // not x86-64: no wide kernels; the callers keep their plain loops.

bool hasWideKernels() { return false; }
bool hasWidestKernels() { return false; }
void greyWide(const uint8_t*, uint8_t*, int32_t) {}
void oldPhotoWide(const uint8_t*, uint8_t*, int32_t) {}
uint64_t meanSumWide(const uint8_t*, int32_t) { return 0; }
void equalizeLumWide(const uint8_t*, int32_t, uint32_t*) {}
void saturationWide(const uint8_t*, uint8_t*, int32_t, float) {}
bool saturationSingleExact(float) { return false; }
void saturationWideSingle(const uint8_t*, uint8_t*, int32_t, float) {}
void fitContrastMap(ContrastMap& map) { map.linear = false; }
void contrastWide(const uint8_t*, uint8_t*, int32_t, const ContrastMap&) {}
void classyWide(int32_t, const uint8_t*, uint8_t*, int32_t, const ClassyTables&) {}

#endif

namespace {
std::atomic<int>& ceiling() {
#if defined(__x86_64__)
    return gCeiling;
#else
    static std::atomic<int> unused{int(KernelWidth::Avx512)};
    return unused;
#endif
}
} // namespace

void SetKernelCeiling(KernelWidth width) { ceiling().store(int(width)); }
KernelWidth KernelCeiling() { return KernelWidth(ceiling().load()); }

} // namespace ostrivex::tone
