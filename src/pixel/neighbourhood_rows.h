// Private helpers of the neighbourhood filters: the row kernels run over the bytes of one
// span of a row (4 bytes a pixel, all four channels alike, so that the compiler can
// vectorise them), and channel 3 is put back from the source afterwards, since the
// filters carry it through unchanged.
#pragma once

#include <cstddef>
#include <cstdint>

// Row kernels are built twice, for AVX2 and for the plain instruction set, and the loader
// picks the one the processor runs. The two give the same bytes: the code is the same.
#if defined(__GNUC__) && defined(__x86_64__) && !defined(__clang__)
#define OSTRIVEX_ROW_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define OSTRIVEX_ROW_CLONES
#endif

namespace ostrivex::nb {

// Channel 3 of `count` pixels from the source back into the output.
inline void restoreAlpha(const uint8_t* src, uint8_t* out, int32_t count) {
    for (int32_t p = 0; p < count; ++p) out[4 * p + 3] = src[4 * p + 3];
}

inline int32_t clamp255(int32_t v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }

// Whether a truncating division by a float gives the exact integer quotient: so it does
// when the numerator's magnitude stays below 2^24 and the divisor is a non-zero integer
// of at most that size (the float quotient is within |q| * 2^-24 < 1 / |d| of the true
// one, so it can't cross an integer).
inline bool floatDivisionExact(int64_t maxNumerator, int64_t divisor) {
    const int64_t d = divisor < 0 ? -divisor : divisor;
    return divisor != 0 && maxNumerator < (int64_t(1) << 24) && d < (int64_t(1) << 24);
}

// Division by a constant d of every n in [0, nmax] (nmax < 2^16) as a high-half multiply:
// n / d == ((n * m) >> 16) >> shift, which vectorises on 16-bit lanes. m = 0 stands for a
// divisor larger than every n (the quotient is always 0).
struct Recip16 {
    uint32_t m = 0;
    int shift = 0;
};

// Finds m and shift for d and checks them: with m >= 2^(16 + shift) / d the product never
// falls short of n / d, and within each block [k d, k d + d - 1] it grows with n, so
// checking the top of every block (and nmax) proves every n. False when no 16-bit m works,
// which includes d = 1 (its multiplier would be 2^16).
inline bool findRecip16(uint32_t d, uint32_t nmax, Recip16& out) {
    if (d == 0 || nmax > 0xFFFF) return false;
    if (d > nmax) {
        out = {0, 0};
        return true;
    }
    for (int shift = 0; shift < 16; ++shift) {
        const uint64_t m = ((uint64_t(1) << (16 + shift)) + d - 1) / d;
        if (m > 0xFFFF) break;
        bool ok = true;
        for (uint32_t top = d - 1;; top += d) {
            const uint32_t n = top < nmax ? top : nmax;
            if (((uint64_t(n) * m) >> (16 + shift)) != n / d) {
                ok = false;
                break;
            }
            if (top >= nmax) break;
        }
        if (ok) {
            out = {uint32_t(m), shift};
            return true;
        }
    }
    return false;
}

} // namespace ostrivex::nb
