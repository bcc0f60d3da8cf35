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

} // namespace ostrivex::nb
