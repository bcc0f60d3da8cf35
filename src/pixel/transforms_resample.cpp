// Scaling: bilinear (BitsResample) and nearest neighbour (BitsResize).
//
// Arithmetic: the ratios are held in single precision; a position is the product of the
// whole-number coordinate and that single-precision ratio, taken in double precision, and
// the weights and sums are in double precision. Every rounding is to the nearest integer
// with ties to even.
//
// That double-precision arithmetic is exact here, which the fast path uses. A ratio in
// single precision is m / 2^s for whole numbers m < 2^24 and s, so the position x * ratio
// is (x * m) / 2^s exactly, its whole part is (x * m) >> s and its fraction D1 / 2^s with
// D1 = (x * m) mod 2^s; 1 - fraction is D0 / 2^s with D0 = 2^s - D1. A weighted sum of
// two bytes, (D0 * P + D1 * Q) / 2^s, needs s + 8 bits, well inside a double's 53, so
// the double result is exactly that fraction, and rounding it to nearest even is
// (N + 2^(s-1) - 1 + ((N >> s) & 1)) >> s on the whole number N = D0 * P + D1 * Q. With s
// at most 24 (every ratio of at least 1/2, that is every shrink and any growth up to
// twice) N fits 32 bits, and the loops run on 32-bit integer lanes. Larger s (growing
// more than twice) takes the plain double-precision loop.
//
// Layout of the work: positions and weights depend on x alone or on y alone and are
// tables built before the loops. The vertical step runs once per output row over the
// source columns that the row reads, into a row buffer; the horizontal step reads two
// neighbouring values of it per output pixel.
#include "pixel/bitfilter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
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
    if (!(ratio > 0.0f)) return f; // 0 (a source one pixel wide): every position is 0
    int exp = 0;
    const float mant = std::frexp(ratio, &exp); // ratio = mant * 2^exp, mant in [0.5, 1)
    int64_t m = int64_t(std::ldexp(double(mant), 24));
    int32_t s = 24 - exp;
    while (s > 1 && (m & 1) == 0) { m >>= 1; --s; }
    while (s < 1) { m <<= 1; ++s; }
    f.m = uint64_t(m);
    f.s = s;
    return f;
}

// Round-to-nearest-even of n / 2^s for the exact integer path.
inline uint32_t roundShift(uint32_t n, int32_t s) {
    return (n + ((1u << (s - 1)) - 1u) + ((n >> s) & 1u)) >> s;
}

// d0 * p + d1 * q with d0 + d1 = 2^s, as (p << s) + d1 * (q - p): one product. The
// product may pass 32 bits on its own, but the sum is below 2^32, so arithmetic modulo 2^32
// gives it exactly.
inline uint32_t weighted(uint32_t p, uint32_t q, uint32_t d1, int32_t s) {
    return (p << s) + d1 * (q - p);
}

// Vertical step on n bytes: v[j] = Round(((2^s - d1) * p[j] + d1 * q[j]) / 2^s).
void verticalPlain(uint8_t* v, const uint8_t* p, const uint8_t* q, size_t n, uint32_t d1,
                   int32_t s) {
    for (size_t j = 0; j < n; ++j) v[j] = uint8_t(roundShift(weighted(p[j], q[j], d1, s), s));
}

// Horizontal step for output pixels [x0, x1): channels 0..2 from the row buffer v.
void horizontalPlain(uint8_t* out, int32_t x0, int32_t x1, const uint8_t* v, const int32_t* ix,
                     const uint32_t* w1, int32_t s) {
    for (int32_t x = x0; x < x1; ++x) {
        const uint8_t* l = v + size_t(ix[x]) * 4u;
        const uint32_t b = w1[size_t(x) * 4];
        uint8_t* o = out + size_t(x) * 4u;
        for (int c = 0; c < 3; ++c) o[c] = uint8_t(roundShift(weighted(l[c], l[4 + c], b, s), s));
        o[3] = 0;
    }
}

#ifdef OSTRIVEX_X86
__attribute__((target("avx2"))) inline __m256i roundShift8(__m256i n, __m128i sh, __m256i bias,
                                                          __m256i one) {
    const __m256i odd = _mm256_and_si256(_mm256_srl_epi32(n, sh), one);
    return _mm256_srl_epi32(_mm256_add_epi32(n, _mm256_add_epi32(bias, odd)), sh);
}

// Four vectors of eight 32-bit results (each 0..255) to 32 bytes in order.
__attribute__((target("avx2"))) inline __m256i packFour(__m256i r0, __m256i r1, __m256i r2,
                                                        __m256i r3) {
    const __m256i bytes =
        _mm256_packus_epi16(_mm256_packus_epi32(r0, r1), _mm256_packus_epi32(r2, r3));
    return _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
}

__attribute__((target("avx2"))) inline __m256i weighted8(__m256i p, __m256i q, __m256i d1,
                                                         __m128i sh) {
    return _mm256_add_epi32(_mm256_sll_epi32(p, sh), _mm256_mullo_epi32(_mm256_sub_epi32(q, p), d1));
}

__attribute__((target("avx2"))) void verticalAvx2(uint8_t* v, const uint8_t* p,
                                                  const uint8_t* q, size_t n, uint32_t d1,
                                                  int32_t s) {
    const __m256i b = _mm256_set1_epi32(int32_t(d1));
    const __m128i sh = _mm_cvtsi32_si128(s);
    const __m256i bias = _mm256_set1_epi32(int32_t((1u << (s - 1)) - 1u));
    const __m256i one = _mm256_set1_epi32(1);
    size_t j = 0;
    for (; j + 32 <= n; j += 32) {
        __m256i r[4];
        for (int k = 0; k < 4; ++k) {
            const __m256i pv = _mm256_cvtepu8_epi32(
                _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p + j + 8 * k)));
            const __m256i qv = _mm256_cvtepu8_epi32(
                _mm_loadl_epi64(reinterpret_cast<const __m128i*>(q + j + 8 * k)));
            r[k] = roundShift8(weighted8(pv, qv, b, sh), sh, bias, one);
        }
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(v + j), packFour(r[0], r[1], r[2], r[3]));
    }
    verticalPlain(v + j, p + j, q + j, n - j, d1, s);
}

__attribute__((target("avx2"))) void horizontalAvx2(uint8_t* out, int32_t w, const uint8_t* v,
                                                    const int32_t* ix, const uint32_t* w1,
                                                    int32_t s) {
    const __m128i sh = _mm_cvtsi32_si128(s);
    const __m256i bias = _mm256_set1_epi32(int32_t((1u << (s - 1)) - 1u));
    const __m256i one = _mm256_set1_epi32(1);
    const __m256i colour = _mm256_set1_epi32(0x00FFFFFF);
    int32_t x = 0;
    for (; x + 8 <= w; x += 8) {
        __m256i r[4];
        for (int k = 0; k < 4; ++k) {
            const int32_t xa = x + 2 * k;
            // Left and right neighbours of two output pixels: L0 R0 and L1 R1.
            const __m128i q0 = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(v + size_t(ix[xa]) * 4u));
            const __m128i q1 = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(v + size_t(ix[xa + 1]) * 4u));
            const __m128i lr = _mm_unpacklo_epi32(q0, q1); // L0 L1 R0 R1
            const __m256i left = _mm256_cvtepu8_epi32(lr);
            const __m256i right = _mm256_cvtepu8_epi32(_mm_srli_si128(lr, 8));
            const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(w1 + size_t(xa) * 4));
            r[k] = roundShift8(weighted8(left, right, b, sh), sh, bias, one);
        }
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + size_t(x) * 4u),
                            _mm256_and_si256(packFour(r[0], r[1], r[2], r[3]), colour));
    }
    horizontalPlain(out, x, w, v, ix, w1, s);
}

bool haveAvx2() {
    static const bool yes = __builtin_cpu_supports("avx2");
    return yes;
}
#else
bool haveAvx2() { return false; }
#endif

// Round to nearest, ties to even, for 0 <= v < 2^51 (the default rounding mode).
inline double roundEven(double v) {
    constexpr double kShift = 4503599627370496.0; // 2^52
    return (v + kShift) - kShift;
}

} // namespace

void cBitFilter::BitsResample(const Bits& source, int32_t width, int32_t height) {
    const int32_t ws = source.width(), hs = source.height();
    const float ratioX = float(double(ws - 1) / double(width));
    const float ratioY = float(double(hs - 1) / double(height));
    const int32_t w = std::max(width, 0), h = std::max(height, 0);
    const Fraction fx = splitRatio(ratioX), fy = splitRatio(ratioY);
    const bool exact32 = fx.s <= 24 && fy.s <= 24;

    // Column tables: whole part and, per output pixel, the weight of the right neighbour
    // repeated for the four channels (integer path), or both weights (double path).
    std::vector<int32_t> ix(static_cast<size_t>(w));
    std::vector<uint32_t> w1;
    std::vector<double> f0, f1;
    if (exact32) {
        w1.resize(size_t(w) * 4);
    } else {
        f0.resize(size_t(w));
        f1.resize(size_t(w));
    }
    for (int32_t x = 0; x < w; ++x) {
        const uint64_t pos = uint64_t(x) * fx.m;
        ix[size_t(x)] = int32_t(pos >> fx.s);
        const uint64_t d1 = pos & ((uint64_t(1) << fx.s) - 1);
        if (exact32) {
            for (int c = 0; c < 4; ++c) w1[size_t(x) * 4 + size_t(c)] = uint32_t(d1);
        } else {
            f1[size_t(x)] = std::ldexp(double(d1), -fx.s);
            f0[size_t(x)] = 1.0 - f1[size_t(x)];
        }
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
    for (int32_t& v : ix) v -= lo;
    for (int32_t& c : cols) c -= lo;
    std::vector<uint8_t> row(size_t(std::max(span, 0)) * 4u + 32u);
    std::vector<double> vb, vg, vr;
    if (!exact32) {
        vb.resize(size_t(std::max(span, 0)) + 1);
        vg = vb;
        vr = vb;
    }
    const bool simd = exact32 && haveAvx2();

    Bits fresh;
    Bits& out = (&source == &buffer_) ? fresh : buffer_;
    out.reset(w, h);
    lastColumn_ = w - 1;
    lastRow_ = h - 1;
    image_ = {0, 0, w, h};

    for (int32_t y = 0; y < h; ++y) {
        const uint64_t pos = uint64_t(y) * fy.m;
        const int32_t iy = int32_t(pos >> fy.s);
        const uint64_t d1 = pos & ((uint64_t(1) << fy.s) - 1);
        const uint8_t* top = source.pixel(lo, iy);
        const uint8_t* bottom = source.pixel(lo, iy + 1);
        if (exact32) {
            const uint32_t b = uint32_t(d1);
            const uint8_t* v = row.data();
            if (d1 == 0) {
                v = top; // on a source row: the vertical step is that row
            } else if (sparse) {
                for (int32_t c : cols)
                    verticalPlain(row.data() + size_t(c) * 4u, top + size_t(c) * 4u,
                                  bottom + size_t(c) * 4u, 4, b, fy.s);
            }
#ifdef OSTRIVEX_X86
            else if (simd) {
                verticalAvx2(row.data(), top, bottom, size_t(span) * 4u, b, fy.s);
            }
#endif
            else {
                verticalPlain(row.data(), top, bottom, size_t(span) * 4u, b, fy.s);
            }
#ifdef OSTRIVEX_X86
            if (simd) {
                horizontalAvx2(out.row(y), w, v, ix.data(), w1.data(), fx.s);
                progressStep(y);
                continue;
            }
#endif
            horizontalPlain(out.row(y), 0, w, v, ix.data(), w1.data(), fx.s);
        } else {
            const double dy1 = std::ldexp(double(d1), -fy.s), dy0 = 1.0 - dy1;
            for (int32_t c : cols) {
                const uint8_t* p = top + size_t(c) * 4u;
                const uint8_t* q = bottom + size_t(c) * 4u;
                vb[size_t(c)] = roundEven(dy0 * p[0] + dy1 * q[0]);
                vg[size_t(c)] = roundEven(dy0 * p[1] + dy1 * q[1]);
                vr[size_t(c)] = roundEven(dy0 * p[2] + dy1 * q[2]);
            }
            uint8_t* o = out.row(y);
            for (int32_t x = 0; x < w; ++x) {
                const size_t i = size_t(ix[size_t(x)]);
                const double a = f0[size_t(x)], b = f1[size_t(x)];
                o[size_t(x) * 4 + 0] = uint8_t(roundEven(a * vb[i] + b * vb[i + 1]));
                o[size_t(x) * 4 + 1] = uint8_t(roundEven(a * vg[i] + b * vg[i + 1]));
                o[size_t(x) * 4 + 2] = uint8_t(roundEven(a * vr[i] + b * vr[i + 1]));
            }
        }
        progressStep(y);
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
    for (int32_t x = 0; x < w; ++x) sx[size_t(x)] = int32_t(std::floor(double(x) * double(ratioX)));

    Bits fresh;
    Bits& out = (&source == &buffer_) ? fresh : buffer_;
    out.reset(w, h);
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
