// Scaling: bilinear (BitsResample) and nearest neighbour (BitsResize).
//
// Arithmetic: the ratios are held in single precision; a position is the product of the
// whole-number coordinate and that single-precision ratio, taken in double precision, and
// the weights and sums are in double precision. Every rounding is to the nearest integer
// with ties to even.
//
// That double-precision arithmetic is exact here, which the fast path uses. A ratio in
// single precision is m / 2^s for whole numbers m < 2^24 and s, so the position x * ratio
// is (x * m) / 2^s exactly: its whole part is (x * m) >> s, its fraction D / 2^s with
// D = (x * m) mod 2^s, and 1 - fraction is (2^s - D) / 2^s. The weighted sum of two bytes
// P and Q is N / 2^s with N = (2^s - D) P + D Q = P 2^s + D (Q - P), which needs s + 8
// bits, inside a double's 53: the double result is exactly that fraction, and rounding it
// to nearest even is (N + 2^(s-1) - 1 + ((N >> s) & 1)) >> s.
//
// With s at most 24 (every ratio of at least 1/2: any shrink, any growth up to twice) N
// fits 32 bits and the vector loops compute it exactly on 32-bit lanes. With larger s
// (growing more than twice) they use the top 24 bits of D: that sum differs from the
// exact N / 2^s by less than 255 / 2^24, which can change the rounding only when its
// fraction lies that close to one half, and the lanes where it does are recomputed
// exactly on 64-bit integers. Beyond s = 48, which no image size reaches, the plain
// double-precision loop runs.
//
// Layout of the work: positions and weights depend on x alone or on y alone and are
// tables built before the loops. The vertical step runs once per output row over the
// source columns that the row reads, into a row buffer; the horizontal step reads two
// neighbouring values of it per output pixel. The loops exist plain, on 8 lanes (AVX2)
// and on 16 (AVX-512), where the horizontal step can also gather its bytes by permutes
// (VBMI); transforms_simd.h picks the level, and every level gives the same bytes.
#include "pixel/bitfilter.h"
#include "pixel/transforms_simd.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <vector>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define OSTRIVEX_X86 1
#endif

namespace ostrivex {

namespace {

// A single-precision ratio as m / 2^s with s >= 1.
struct Fraction {
    uint64_t m = 0;
    int32_t s = 1;
};

Fraction splitRatio(float ratio) {
    Fraction f;
    // 0 (a source one pixel wide) puts every position at 0; so does a size of 0, for
    // which there are no positions at all.
    if (!(ratio > 0.0f) || !std::isfinite(ratio)) return f;
    int exp = 0;
    const float mant = std::frexp(ratio, &exp); // ratio = mant * 2^exp, mant in [0.5, 1)
    int64_t m = int64_t(std::ldexp(double(mant), 24));
    int32_t s = 24 - exp;
    while (s > 1 && (m & 1) == 0) {
        m >>= 1;
        --s;
    }
    while (s < 1) {
        m <<= 1;
        ++s;
    }
    f.m = uint64_t(m);
    f.s = s;
    return f;
}

constexpr int32_t kLaneBits = 24;  // weight bits the 32-bit lanes carry
constexpr int32_t kExactBits = 48; // largest s of the integer path

// Round to nearest even of (p 2^s + d (q - p)) / 2^s, exactly.
inline uint8_t lerpExact(int64_t p, int64_t q, int64_t d, int32_t s) {
    const int64_t n = (p << s) + d * (q - p);
    return uint8_t((n + ((int64_t(1) << (s - 1)) - 1) + ((n >> s) & 1)) >> s);
}

// Vertical step on n bytes: v[j] = the rounded blend of p[j] and q[j] with weight d / 2^s.
void verticalPlain(uint8_t* v, const uint8_t* p, const uint8_t* q, size_t n, uint64_t d,
                   int32_t s) {
    for (size_t j = 0; j < n; ++j)
        v[j] = lerpExact(p[j], q[j], int64_t(d), s);
}

// Horizontal step for output pixels [x0, x1): channels 0..2 from the row buffer v.
void horizontalPlain(uint8_t* out, int32_t x0, int32_t x1, const uint8_t* v, const int32_t* ix,
                     const uint64_t* d, int32_t s) {
    for (int32_t x = x0; x < x1; ++x) {
        const uint8_t* l = v + size_t(ix[x]) * 4u;
        uint8_t* o = out + size_t(x) * 4u;
        for (int c = 0; c < 3; ++c)
            o[c] = lerpExact(l[c], l[4 + c], int64_t(d[x]), s);
        o[3] = 0;
    }
}

#ifdef OSTRIVEX_X86
// The lane arithmetic with t = min(s, 24) weight bits.
struct LaneMath {
    __m128i shift;
    __m256i bias, one, half, margin, low;
};

__attribute__((target("avx2"))) LaneMath laneMath(int32_t s) {
    const int32_t t = std::min(s, kLaneBits);
    LaneMath m;
    m.shift = _mm_cvtsi32_si128(t);
    m.bias = _mm256_set1_epi32(int32_t((1u << (t - 1)) - 1u));
    m.one = _mm256_set1_epi32(1);
    m.half = _mm256_set1_epi32(int32_t(1u << (t - 1)));
    m.margin = _mm256_set1_epi32(256);
    m.low = _mm256_set1_epi32(int32_t((1u << t) - 1u));
    return m;
}

// (p << t) + d (q - p), rounded to nearest even by t bits; with Approximate, `near`
// collects the lanes whose fraction lies within 256 / 2^t of one half.
template <bool Approximate>
__attribute__((target("avx2"))) inline __m256i lerp8(__m256i p, __m256i q, __m256i d,
                                                     const LaneMath& m, __m256i& near) {
    const __m256i n = _mm256_add_epi32(_mm256_sll_epi32(p, m.shift),
                                       _mm256_mullo_epi32(_mm256_sub_epi32(q, p), d));
    if (Approximate) {
        const __m256i off = _mm256_abs_epi32(_mm256_sub_epi32(_mm256_and_si256(n, m.low), m.half));
        near = _mm256_or_si256(near, _mm256_cmpgt_epi32(m.margin, off));
    }
    const __m256i odd = _mm256_and_si256(_mm256_srl_epi32(n, m.shift), m.one);
    return _mm256_srl_epi32(_mm256_add_epi32(n, _mm256_add_epi32(m.bias, odd)), m.shift);
}

// Four vectors of eight 32-bit results (each 0..255) to 32 bytes in order; `order` is
// the lane order 0, 4, 1, 5, 2, 6, 3, 7.
__attribute__((target("avx2"))) inline __m256i packFour(const __m256i* r, __m256i order) {
    const __m256i bytes =
        _mm256_packus_epi16(_mm256_packus_epi32(r[0], r[1]), _mm256_packus_epi32(r[2], r[3]));
    return _mm256_permutevar8x32_epi32(bytes, order);
}

template <bool Approximate>
__attribute__((target("avx2"))) void verticalAvx2(uint8_t* v, const uint8_t* p, const uint8_t* q,
                                                  size_t n, uint64_t d, int32_t s) {
    const LaneMath m = laneMath(s);
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    const __m256i dv = _mm256_set1_epi32(int32_t(uint32_t(d >> (s - std::min(s, kLaneBits)))));
    size_t j = 0;
    for (; j + 32 <= n; j += 32) {
        __m256i r[4];
        __m256i near = _mm256_setzero_si256();
        for (int k = 0; k < 4; ++k) {
            const __m256i pv = _mm256_cvtepu8_epi32(
                _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p + j + 8 * k)));
            const __m256i qv = _mm256_cvtepu8_epi32(
                _mm_loadl_epi64(reinterpret_cast<const __m128i*>(q + j + 8 * k)));
            r[k] = lerp8<Approximate>(pv, qv, dv, m, near);
        }
        if (Approximate && !_mm256_testz_si256(near, near))
            verticalPlain(v + j, p + j, q + j, 32, d, s);
        else
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(v + j), packFour(r, order));
    }
    verticalPlain(v + j, p + j, q + j, n - j, d, s);
}

// dTop holds, per output pixel, the lane weight four times over.
template <bool Approximate>
__attribute__((target("avx2"))) void horizontalAvx2(uint8_t* out, int32_t w, const uint8_t* v,
                                                    const int32_t* ix, const uint32_t* dTop,
                                                    const uint64_t* d, int32_t s) {
    const LaneMath m = laneMath(s);
    const __m256i colour = _mm256_set1_epi32(0x00FFFFFF);
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    int32_t x = 0;
    for (; x + 8 <= w; x += 8) {
        __m256i r[4];
        __m256i near = _mm256_setzero_si256();
        for (int k = 0; k < 4; ++k) {
            const int32_t xa = x + 2 * k;
            // Left and right neighbours of two output pixels: L0 R0 and L1 R1.
            const __m128i q0 =
                _mm_loadl_epi64(reinterpret_cast<const __m128i*>(v + size_t(ix[xa]) * 4u));
            const __m128i q1 =
                _mm_loadl_epi64(reinterpret_cast<const __m128i*>(v + size_t(ix[xa + 1]) * 4u));
            const __m128i lr = _mm_unpacklo_epi32(q0, q1); // L0 L1 R0 R1
            const __m256i left = _mm256_cvtepu8_epi32(lr);
            const __m256i right = _mm256_cvtepu8_epi32(_mm_srli_si128(lr, 8));
            const __m256i dv =
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(dTop + size_t(xa) * 4));
            r[k] = lerp8<Approximate>(left, right, dv, m, near);
        }
        if (Approximate && !_mm256_testz_si256(near, near))
            horizontalPlain(out, x, x + 8, v, ix, d, s);
        else
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + size_t(x) * 4u),
                                _mm256_and_si256(packFour(r, order), colour));
    }
    horizontalPlain(out, x, w, v, ix, d, s);
}

// The same loops on 16 lanes. (GCC 12 reports the undefined vectors inside its own
// AVX-512 headers as maybe uninitialised; the warning is about the headers.)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
template <bool Approximate>
__attribute__((target("avx512f,avx512bw"))) inline __m512i lerp16(__m512i p, __m512i q, __m512i d,
                                                                  int32_t s, __mmask16& near) {
    const int32_t t = std::min(s, kLaneBits);
    const __m128i shift = _mm_cvtsi32_si128(t);
    const __m512i n =
        _mm512_add_epi32(_mm512_sll_epi32(p, shift), _mm512_mullo_epi32(_mm512_sub_epi32(q, p), d));
    if (Approximate) {
        const __m512i low = _mm512_set1_epi32(int32_t((1u << t) - 1u));
        const __m512i half = _mm512_set1_epi32(int32_t(1u << (t - 1)));
        const __m512i off = _mm512_abs_epi32(_mm512_sub_epi32(_mm512_and_si512(n, low), half));
        near = __mmask16(near | _mm512_cmpgt_epi32_mask(_mm512_set1_epi32(256), off));
    }
    const __m512i bias = _mm512_set1_epi32(int32_t((1u << (t - 1)) - 1u));
    const __m512i odd = _mm512_and_si512(_mm512_srl_epi32(n, shift), _mm512_set1_epi32(1));
    return _mm512_srl_epi32(_mm512_add_epi32(n, _mm512_add_epi32(bias, odd)), shift);
}

template <bool Approximate>
__attribute__((target("avx512f,avx512bw"))) void
verticalAvx512(uint8_t* v, const uint8_t* p, const uint8_t* q, size_t n, uint64_t d, int32_t s) {
    const __m512i dv = _mm512_set1_epi32(int32_t(uint32_t(d >> (s - std::min(s, kLaneBits)))));
    size_t j = 0;
    for (; j + 16 <= n; j += 16) {
        __mmask16 near = 0;
        const __m512i pv =
            _mm512_cvtepu8_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + j)));
        const __m512i qv =
            _mm512_cvtepu8_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(q + j)));
        const __m128i r = _mm512_cvtepi32_epi8(lerp16<Approximate>(pv, qv, dv, s, near));
        if (Approximate && near)
            verticalPlain(v + j, p + j, q + j, 16, d, s);
        else
            _mm_storeu_si128(reinterpret_cast<__m128i*>(v + j), r);
    }
    verticalPlain(v + j, p + j, q + j, n - j, d, s);
}

template <bool Approximate>
__attribute__((target("avx512f,avx512bw"))) void
horizontalAvx512(uint8_t* out, int32_t w, const uint8_t* v, const int32_t* ix, const uint32_t* dTop,
                 const uint64_t* d, int32_t s) {
    const __m128i colour = _mm_set1_epi32(0x00FFFFFF);
    int32_t x = 0;
    for (; x + 4 <= w; x += 4) {
        __m128i q[4];
        for (int k = 0; k < 4; ++k)
            q[k] = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(v + size_t(ix[x + k]) * 4u));
        const __m128i a = _mm_unpacklo_epi32(q[0], q[1]); // L0 L1 R0 R1
        const __m128i b = _mm_unpacklo_epi32(q[2], q[3]); // L2 L3 R2 R3
        const __m512i left = _mm512_cvtepu8_epi32(_mm_unpacklo_epi64(a, b));
        const __m512i right = _mm512_cvtepu8_epi32(_mm_unpackhi_epi64(a, b));
        const __m512i dv = _mm512_loadu_si512(dTop + size_t(x) * 4);
        __mmask16 near = 0;
        const __m128i r = _mm512_cvtepi32_epi8(lerp16<Approximate>(left, right, dv, s, near));
        if (Approximate && near)
            horizontalPlain(out, x, x + 4, v, ix, d, s);
        else
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + size_t(x) * 4u),
                             _mm_and_si128(r, colour));
    }
    horizontalPlain(out, x, w, v, ix, d, s);
}

// Byte-permute tables of the horizontal step for groups of 16 output pixels whose source
// pixels (ix of the first to ix + 1 of the last) lie within 32 pixels, 128 bytes of the
// row buffer: per group the first source column, the byte indices of the 48 colour bytes
// of the left and of the right neighbours within that window, and the 48 lane weights.
struct PermuteTables {
    std::vector<int32_t> base;
    std::vector<uint8_t> index;   // 128 bytes a group: left 64 (48 used), right 64
    std::vector<uint32_t> weight; // 48 a group
};

// Builds the tables; false when some group's window is wider than 32 pixels.
bool buildPermuteTables(PermuteTables& t, int32_t w, const int32_t* ix, const uint32_t* dTop) {
    const int32_t groups = w / 16;
    t.base.resize(size_t(groups));
    t.index.assign(size_t(groups) * 128, 0);
    t.weight.resize(size_t(groups) * 48);
    for (int32_t g = 0; g < groups; ++g) {
        const int32_t x0 = g * 16, base = ix[x0];
        if (ix[x0 + 15] + 1 - base >= 32) return false;
        t.base[size_t(g)] = base;
        for (int32_t k = 0; k < 16; ++k)
            for (int32_t c = 0; c < 3; ++c) {
                const int32_t lane = 3 * k + c;
                t.index[size_t(g) * 128 + size_t(lane)] = uint8_t((ix[x0 + k] - base) * 4 + c);
                t.index[size_t(g) * 128 + 64 + size_t(lane)] =
                    uint8_t((ix[x0 + k] - base + 1) * 4 + c);
                t.weight[size_t(g) * 48 + size_t(lane)] = dTop[size_t(x0 + k) * 4];
            }
    }
    return true;
}

// The horizontal step on the colour bytes only: 16 output pixels are 48 lanes, gathered
// from the row buffer by byte permutes and spread back to four bytes a pixel (channel 3
// zero) the same way.
template <bool Approximate>
__attribute__((target("avx512f,avx512bw,avx512vbmi"))) void
horizontalVbmi(uint8_t* out, int32_t w, const uint8_t* v, const int32_t* ix, const uint64_t* d,
               int32_t s, const PermuteTables& t) {
    alignas(64) uint8_t spread[64];
    for (int32_t j = 0; j < 64; ++j)
        spread[j] = uint8_t(j % 4 < 3 ? 3 * (j / 4) + j % 4 : 0);
    const __m512i spreadIndex = _mm512_load_si512(spread);
    const __mmask64 colourBytes = 0x7777777777777777ull;
    const int32_t groups = w / 16;
    for (int32_t g = 0; g < groups; ++g) {
        const uint8_t* window = v + size_t(t.base[size_t(g)]) * 4u;
        const __m512i lo = _mm512_loadu_si512(window), hi = _mm512_loadu_si512(window + 64);
        const __m512i li = _mm512_loadu_si512(t.index.data() + size_t(g) * 128);
        const __m512i ri = _mm512_loadu_si512(t.index.data() + size_t(g) * 128 + 64);
        const __m512i left = _mm512_permutex2var_epi8(lo, li, hi);
        const __m512i right = _mm512_permutex2var_epi8(lo, ri, hi);
        const uint32_t* wt = t.weight.data() + size_t(g) * 48;
        __mmask16 near = 0;
        __m128i part[3];
        for (int k = 0; k < 3; ++k) {
            __m128i lk, rk;
            switch (k) {
            case 0:
                lk = _mm512_castsi512_si128(left);
                rk = _mm512_castsi512_si128(right);
                break;
            case 1:
                lk = _mm512_extracti32x4_epi32(left, 1);
                rk = _mm512_extracti32x4_epi32(right, 1);
                break;
            default:
                lk = _mm512_extracti32x4_epi32(left, 2);
                rk = _mm512_extracti32x4_epi32(right, 2);
                break;
            }
            const __m512i dv = _mm512_loadu_si512(wt + 16 * k);
            part[k] = _mm512_cvtepi32_epi8(lerp16<Approximate>(
                _mm512_cvtepu8_epi32(lk), _mm512_cvtepu8_epi32(rk), dv, s, near));
        }
        const int32_t x = g * 16;
        if (Approximate && near) {
            horizontalPlain(out, x, x + 16, v, ix, d, s);
            continue;
        }
        __m512i colour = _mm512_castsi128_si512(part[0]);
        colour = _mm512_inserti32x4(colour, part[1], 1);
        colour = _mm512_inserti32x4(colour, part[2], 2);
        _mm512_storeu_si512(out + size_t(x) * 4u,
                            _mm512_maskz_permutexvar_epi8(colourBytes, spreadIndex, colour));
    }
    horizontalPlain(out, groups * 16, w, v, ix, d, s);
}
#pragma GCC diagnostic pop
#endif

using VerticalFn = void (*)(uint8_t*, const uint8_t*, const uint8_t*, size_t, uint64_t, int32_t);
using HorizontalFn = void (*)(uint8_t*, int32_t, const uint8_t*, const int32_t*, const uint32_t*,
                              const uint64_t*, int32_t);

void horizontalPlainRow(uint8_t* out, int32_t w, const uint8_t* v, const int32_t* ix,
                        const uint32_t*, const uint64_t* d, int32_t s) {
    horizontalPlain(out, 0, w, v, ix, d, s);
}

// The loops for the processor and the weight precision s.
VerticalFn pickVertical(int32_t s) {
    using namespace transforms_detail;
    const bool fine = s > kLaneBits;
#ifdef OSTRIVEX_X86
    switch (simdLevel()) {
    case kAvx512Vbmi:
    case kAvx512:
        return fine ? verticalAvx512<true> : verticalAvx512<false>;
    case kAvx2:
        return fine ? verticalAvx2<true> : verticalAvx2<false>;
    case kPlain:
        break;
    }
#endif
    (void)fine;
    return verticalPlain;
}

HorizontalFn pickHorizontal(int32_t s) {
    using namespace transforms_detail;
    const bool fine = s > kLaneBits;
#ifdef OSTRIVEX_X86
    switch (simdLevel()) {
    case kAvx512Vbmi:
    case kAvx512:
        return fine ? horizontalAvx512<true> : horizontalAvx512<false>;
    case kAvx2:
        return fine ? horizontalAvx2<true> : horizontalAvx2<false>;
    case kPlain:
        break;
    }
#endif
    (void)fine;
    return horizontalPlainRow;
}

// Round to nearest, ties to even, for 0 <= v < 2^51 (the default rounding mode).
inline double roundEven(double v) {
    constexpr double kShift = 4503599627370496.0; // 2^52
    return (v + kShift) - kShift;
}

// The plain rule in double precision, for ratios beyond the integer path.
void resampleDouble(const Bits& source, Bits& out, int32_t w, int32_t h, float ratioX, float ratioY,
                    const std::function<void(int32_t)>& rowDone) {
    std::vector<int32_t> ix(static_cast<size_t>(w));
    std::vector<double> dx(static_cast<size_t>(w));
    for (int32_t x = 0; x < w; ++x) {
        const double fx = double(x) * double(ratioX);
        ix[size_t(x)] = int32_t(std::floor(fx));
        dx[size_t(x)] = fx - std::floor(fx);
    }
    for (int32_t y = 0; y < h; ++y) {
        const double fy = double(y) * double(ratioY);
        const int32_t iy = int32_t(std::floor(fy));
        const double dy = fy - iy;
        uint8_t* o = out.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const uint8_t* p = source.pixel(ix[size_t(x)], iy);
            const uint8_t* q = source.pixel(ix[size_t(x)], iy + 1);
            const double a = dx[size_t(x)];
            for (int c = 0; c < 3; ++c) {
                const double left = roundEven((1 - dy) * p[c] + dy * q[c]);
                const double right = roundEven((1 - dy) * p[4 + c] + dy * q[4 + c]);
                o[size_t(x) * 4 + size_t(c)] = uint8_t(roundEven((1 - a) * left + a * right));
            }
        }
        rowDone(y);
    }
}

} // namespace

void cBitFilter::BitsResample(const Bits& source, int32_t width, int32_t height) {
    const int32_t ws = source.width(), hs = source.height();
    const float ratioX = float(double(ws - 1) / double(width));
    const float ratioY = float(double(hs - 1) / double(height));
    const int32_t w = std::max(width, 0), h = std::max(height, 0);
    const Fraction fx = splitRatio(ratioX), fy = splitRatio(ratioY);

    Bits fresh;
    Bits& out = (&source == &buffer_) ? fresh : buffer_;
    out.resetForOverwrite(w, h); // every visible pixel is written below
    lastColumn_ = w - 1;
    lastRow_ = h - 1;
    image_ = {0, 0, w, h};

    if (fx.s > kExactBits || fy.s > kExactBits) {
        resampleDouble(source, out, w, h, ratioX, ratioY, [this](int32_t y) { progressStep(y); });
    } else {
        // Column tables: whole part and weight, and the weight's top bits four times over
        // for the vector loop.
        std::vector<int32_t> ix(static_cast<size_t>(w));
        std::vector<uint64_t> d(static_cast<size_t>(w));
        std::vector<uint32_t> dTop(size_t(w) * 4);
        const int32_t dropX = fx.s - std::min(fx.s, kLaneBits);
        for (int32_t x = 0; x < w; ++x) {
            const uint64_t pos = uint64_t(x) * fx.m;
            ix[size_t(x)] = int32_t(pos >> fx.s);
            d[size_t(x)] = pos & ((uint64_t(1) << fx.s) - 1);
            for (int c = 0; c < 4; ++c)
                dTop[size_t(x) * 4 + size_t(c)] = uint32_t(d[size_t(x)] >> dropX);
        }
        // The source columns read, lo..hi; the reads may reach into the guard band. A strong
        // shrink reads few of them: then only those are interpolated.
        const int32_t lo = w > 0 ? ix.front() : 0;
        const int32_t hi = w > 0 ? ix.back() + 1 : -1;
        const int32_t span = hi - lo + 1;
        std::vector<int32_t> cols;
        for (int32_t x = 0; x < w; ++x)
            for (int32_t c : {ix[size_t(x)], ix[size_t(x)] + 1})
                if (cols.empty() || cols.back() < c) cols.push_back(c);
        const bool sparse = size_t(span) > cols.size() * 3;
        for (int32_t& v : ix)
            v -= lo;
        for (int32_t& c : cols)
            c -= lo;
        // Padded for the widest vector read of a window (128 bytes).
        std::vector<uint8_t> row(size_t(std::max(span, 0)) * 4u + 128u);
        const VerticalFn vertical = pickVertical(fy.s);
        const HorizontalFn horizontal = pickHorizontal(fx.s);
#ifdef OSTRIVEX_X86
        PermuteTables perm;
        const bool permute = transforms_detail::simdLevel() >= transforms_detail::kAvx512Vbmi &&
                             buildPermuteTables(perm, w, ix.data(), dTop.data());
#else
        const bool permute = false;
#endif

        for (int32_t y = 0; y < h; ++y) {
            const uint64_t pos = uint64_t(y) * fy.m;
            const int32_t iy = int32_t(pos >> fy.s);
            const uint64_t dy = pos & ((uint64_t(1) << fy.s) - 1);
            const uint8_t* top = source.pixel(lo, iy);
            const uint8_t* bottom = source.pixel(lo, iy + 1);
            const uint8_t* v = row.data();
            if (dy == 0 && !permute) {
                v = top; // on a source row: the vertical step is that row
            } else if (dy == 0) {
                // The same, copied: the permutes read whole windows past the row's end.
                std::memcpy(row.data(), top, size_t(span) * 4u);
            } else if (sparse) {
                for (int32_t c : cols)
                    verticalPlain(row.data() + size_t(c) * 4u, top + size_t(c) * 4u,
                                  bottom + size_t(c) * 4u, 4, dy, fy.s);
            } else {
                vertical(row.data(), top, bottom, size_t(span) * 4u, dy, fy.s);
            }
#ifdef OSTRIVEX_X86
            if (permute && fx.s > kLaneBits)
                horizontalVbmi<true>(out.row(y), w, v, ix.data(), d.data(), fx.s, perm);
            else if (permute)
                horizontalVbmi<false>(out.row(y), w, v, ix.data(), d.data(), fx.s, perm);
            else
#endif
                horizontal(out.row(y), w, v, ix.data(), dTop.data(), d.data(), fx.s);
            progressStep(y);
        }
    }
    if (&out == &fresh) buffer_ = std::move(fresh);
    finishProgress();
}

void cBitFilter::BitsResize(const Bits& source, int32_t width, int32_t height) {
    const int32_t ws = source.width(), hs = source.height();
    const float ratioX = float(double(ws) / double(width));
    const float ratioY = float(double(hs) / double(height));
    const int32_t w = std::max(width, 0), h = std::max(height, 0);
    std::vector<int32_t> sx(static_cast<size_t>(w));
    for (int32_t x = 0; x < w; ++x)
        sx[size_t(x)] = int32_t(std::floor(double(x) * double(ratioX)));

    Bits fresh;
    Bits& out = (&source == &buffer_) ? fresh : buffer_;
    out.resetForOverwrite(w, h); // every visible pixel is written below
    lastColumn_ = w - 1;
    lastRow_ = h - 1;
    image_ = {0, 0, w, h};

    int32_t previous = 0;
    for (int32_t y = 0; y < h; ++y) {
        const int32_t sy = int32_t(std::floor(double(y) * double(ratioY)));
        uint8_t* o = out.row(y);
        if (y > 0 && sy == previous) {
            // The same source row as the row above: the same output row.
            std::memcpy(o, o - out.stride(), size_t(w) * 4u);
        } else {
            const uint8_t* s = source.row(sy);
            const int32_t* tab = sx.data();
            for (int32_t x = 0; x < w; ++x) {
                uint32_t v;
                std::memcpy(&v, s + size_t(tab[x]) * 4u, 4);
                v &= 0x00FFFFFFu;
                std::memcpy(o + size_t(x) * 4u, &v, 4);
            }
        }
        previous = sy;
        progressStep(y);
    }
    if (&out == &fresh) buffer_ = std::move(fresh);
    finishProgress();
}

} // namespace ostrivex
