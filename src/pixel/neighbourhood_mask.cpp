// MaskFilter: the general convolution of the user filters and presets.
//
// For each target pixel of the region: sum over the window of mask[dy][dx] * source, per
// channel, in 32-bit integers; then bias + sum \ div (truncating), clamped to a byte.
//
// The fast kernels compute the sums in 32 bits and divide in floating point, which gives
// the truncated quotient exactly while the sums stay below 2^24 in magnitude (float) or
// inside 32 bits (double); see floatDivisionExact. Kernels whose sums or biases could leave
// 32 bits take a plain path that checks every step and throws std::overflow_error where
// 32-bit arithmetic would overflow.
#include "pixel/bitfilter.h"
#include "pixel/filtermask.h"
#include "pixel/neighbourhood_rows.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace ostrivex {

namespace {

// Sums and quotients of one span, N x N kernel. w points at the window's top-left pixel of
// the span's first target; bias holds the bias of each byte (4-periodic, 0 for channel 3).
template <int N, class Div>
__attribute__((always_inline)) inline void maskRowBody(const uint8_t* __restrict w,
                                                       uint8_t* __restrict o, int32_t nb,
                                                       ptrdiff_t stride,
                                                       const int32_t* __restrict coef,
                                                       Div div,
                                                       const int32_t* __restrict bias) {
    int32_t c[N * N];
    for (int t = 0; t < N * N; ++t) c[t] = coef[t];
    for (int32_t k = 0; k < nb; ++k) {
        int32_t sum = 0;
        for (int j = 0; j < N; ++j)
            for (int i = 0; i < N; ++i) sum += c[j * N + i] * w[j * stride + 4 * i + k];
        const int32_t v = bias[k] + int32_t(Div(sum) / div);
        o[k] = uint8_t(v < 0 ? 0 : (v > 255 ? 255 : v));
    }
}

// The same on 16-bit lanes, for kernels whose sums and biased results stay within 15 bits
// (every preset, and most kernels typed into the dialog): the quotient of |sum| comes from
// a reciprocal multiply (see findRecip16), its sign from the signs of sum and divisor.
template <int N, bool Unit>
__attribute__((always_inline)) inline void maskRowBody16(const uint8_t* __restrict w,
                                                         uint8_t* __restrict o, int32_t nb,
                                                         ptrdiff_t stride,
                                                         const int16_t* __restrict coef,
                                                         uint16_t m, int shift, bool negative,
                                                         const int16_t* __restrict bias) {
    int16_t c[N * N];
    for (int t = 0; t < N * N; ++t) c[t] = coef[t];
    for (int32_t k = 0; k < nb; ++k) {
        int16_t sum = 0;
        for (int j = 0; j < N; ++j)
            for (int i = 0; i < N; ++i)
                sum = int16_t(sum + c[j * N + i] * w[j * stride + 4 * i + k]);
        const uint16_t a = sum < 0 ? uint16_t(-sum) : uint16_t(sum);
        const int16_t q = Unit ? int16_t(a) : int16_t(uint16_t((uint32_t(a) * m) >> 16) >> shift);
        const int16_t v = int16_t(bias[k] + (((sum < 0) != negative) ? -q : q));
        o[k] = uint8_t(v < 0 ? 0 : (v > 255 ? 255 : v));
    }
}

using MaskRow16 = void (*)(const uint8_t*, uint8_t*, int32_t, ptrdiff_t, const int16_t*,
                           uint16_t, int, bool, bool, const int16_t*);
using MaskRowFloat = void (*)(const uint8_t*, uint8_t*, int32_t, ptrdiff_t, const int32_t*,
                              float, const int32_t*);
using MaskRowDouble = void (*)(const uint8_t*, uint8_t*, int32_t, ptrdiff_t, const int32_t*,
                               double, const int32_t*);

#define OSTRIVEX_MASK_ROW(N)                                                               \
    OSTRIVEX_ROW_CLONES void maskRowF##N(const uint8_t* w, uint8_t* o, int32_t nb,        \
                                         ptrdiff_t stride, const int32_t* coef, float div, \
                                         const int32_t* bias) {                            \
        maskRowBody<N, float>(w, o, nb, stride, coef, div, bias);                          \
    }                                                                                      \
    OSTRIVEX_ROW_CLONES void maskRowD##N(const uint8_t* w, uint8_t* o, int32_t nb,        \
                                         ptrdiff_t stride, const int32_t* coef,            \
                                         double div, const int32_t* bias) {                \
        maskRowBody<N, double>(w, o, nb, stride, coef, div, bias);                         \
    }                                                                                      \
    OSTRIVEX_ROW_CLONES void maskRow16_##N(const uint8_t* w, uint8_t* o, int32_t nb,      \
                                           ptrdiff_t stride, const int16_t* coef,          \
                                           uint16_t m, int shift, bool negative,           \
                                           bool unit, const int16_t* bias) {               \
        if (unit)                                                                          \
            maskRowBody16<N, true>(w, o, nb, stride, coef, m, shift, negative, bias);      \
        else                                                                               \
            maskRowBody16<N, false>(w, o, nb, stride, coef, m, shift, negative, bias);     \
    }
OSTRIVEX_MASK_ROW(1)
OSTRIVEX_MASK_ROW(2)
OSTRIVEX_MASK_ROW(3)
OSTRIVEX_MASK_ROW(4)
OSTRIVEX_MASK_ROW(5)
#undef OSTRIVEX_MASK_ROW

constexpr MaskRowFloat kRowsF[6] = {nullptr, maskRowF1, maskRowF2, maskRowF3, maskRowF4,
                                    maskRowF5};
constexpr MaskRow16 kRows16[6] = {nullptr, maskRow16_1, maskRow16_2, maskRow16_3, maskRow16_4,
                                  maskRow16_5};
constexpr MaskRowDouble kRowsD[6] = {nullptr, maskRowD1, maskRowD2, maskRowD3, maskRowD4,
                                     maskRowD5};

// 32-bit signed arithmetic that fails on overflow, as the filter's integers do.
int64_t checked(int64_t v) {
    if (v < INT32_MIN || v > INT32_MAX) throw std::overflow_error("MaskFilter: overflow");
    return v;
}

// One target pixel by the plain rule, every step checked. w: window's top-left pixel.
void maskPixelChecked(const uint8_t* w, uint8_t* o, int32_t n, ptrdiff_t stride,
                      const int32_t* coef, int32_t div, const int32_t* bias) {
    for (int ch = 0; ch < 3; ++ch) {
        int64_t sum = 0;
        for (int i = 0; i < n; ++i) // i (dx) outer, j (dy) inner, as the sums are formed
            for (int j = 0; j < n; ++j)
                sum = checked(sum + checked(int64_t(coef[j * n + i]) * w[j * stride + 4 * i + ch]));
        const int64_t q = checked(sum / div);
        const int64_t v = checked(bias[ch] + q);
        o[ch] = uint8_t(v < 0 ? 0 : (v > 255 ? 255 : v));
    }
}

} // namespace

Bits cBitFilter::MaskFilter(const FilterMask& record, bool keepMargins) {
    return MaskFilter(record.Mask, record.Div, record.BiasR, record.BiasG, record.BiasB,
                      keepMargins);
}

Bits cBitFilter::MaskFilter(const std::vector<std::vector<int32_t>>& mask, int32_t div,
                            int32_t biasR, int32_t biasG, int32_t biasB, bool keepMargins) {
    const int32_t n = static_cast<int32_t>(mask.size());
    if (n < 1 || n > 5) throw std::invalid_argument("MaskFilter: mask side must be 1 to 5");
    for (const auto& row : mask)
        if (static_cast<int32_t>(row.size()) != n)
            throw std::invalid_argument("MaskFilter: mask must be square");
    const int32_t u = n - 1, half = u / 2;

    // Coefficients row-major [dy][dx], and the largest possible magnitude of a sum.
    int32_t coef[25];
    int64_t absSum = 0;
    for (int32_t j = 0; j < n; ++j)
        for (int32_t i = 0; i < n; ++i) {
            coef[j * n + i] = mask[size_t(j)][size_t(i)];
            absSum += std::llabs(int64_t(coef[j * n + i]));
        }
    const int64_t maxSum = absSum * 255;
    const int64_t maxBias = std::max({std::llabs(biasR), std::llabs(biasG), std::llabs(biasB)});
    const bool fits = maxSum + maxBias <= INT32_MAX;

    Bits out = buffer_;
    // The loop runs over the windows' top-left corners, RegionBounds(0) moved up and left by
    // half; keepMargins keeps every window inside the image.
    RegionBounds(0);
    int32_t wl = boxLeft_ - half, wt = boxTop_ - half, wr = boxRight_ - half,
            wb = boxBottom_ - half;
    if (keepMargins) {
        wl = std::max(wl, 0);
        wt = std::max(wt, 0);
        wr = std::min(wr, lastColumn_ - u);
        wb = std::min(wb, lastRow_ - u);
    }
    // The box fields hold the targets (window corner + half), which the span walk clips to.
    boxLeft_ = wl + half;
    boxTop_ = wt + half;
    boxRight_ = wr + half;
    boxBottom_ = wb + half;

    const int32_t biasPixel[4] = {biasB, biasG, biasR, 0};
    std::vector<int32_t> biasRow(
        size_t(std::max({lastColumn_ + 1, boxRight_ - boxLeft_ + 1, 0})) * 4u);
    for (size_t k = 0; k < biasRow.size(); ++k) biasRow[k] = biasPixel[k & 3];
    // The 16-bit kernel: sums and biased quotients within 15 bits, a reciprocal for |div|.
    nb::Recip16 recip;
    const int64_t absDiv = std::llabs(int64_t(div));
    // A divisor of +-1 (the contour and emboss presets) needs no multiply at all.
    const bool unit = absDiv == 1;
    const bool use16 = div != 0 && maxSum + maxBias < 32768 &&
                       (unit || absDiv > maxSum ||
                        nb::findRecip16(uint32_t(absDiv), uint32_t(maxSum), recip));
    if (use16 && !unit && absDiv > maxSum) recip = {0, 0};
    std::vector<int16_t> biasRow16(use16 ? biasRow.size() : 0);
    for (size_t k = 0; k < biasRow16.size(); ++k) biasRow16[k] = int16_t(biasRow[k]);
    int16_t coef16[25];
    for (int32_t t = 0; t < n * n; ++t) coef16[t] = int16_t(coef[t]);
    const MaskRow16 row16 = kRows16[n];
    const ptrdiff_t stride = ptrdiff_t(buffer_.stride());
    const MaskRowFloat rowF = kRowsF[n];
    const MaskRowDouble rowD = kRowsD[n];
    // With |sum| < 2^24 the float quotient truncates exactly; a divisor beyond 2^24, inexact
    // as a float, is then larger than every sum, and the quotient is 0 either way.
    const bool useFloat = maxSum < (int64_t(1) << 24);

    for (int32_t y = boxTop_; y <= boxBottom_; ++y) {
        forEachSpanInRow(y, [&](int32_t ty, int32_t x0, int32_t x1) {
            if (div == 0) throw std::domain_error("MaskFilter: division by zero");
            const uint8_t* w = buffer_.pixel(x0 - half, ty - half);
            uint8_t* o = out.pixel(x0, ty);
            if (!fits) {
                for (int32_t x = x0; x < x1; ++x)
                    maskPixelChecked(w + 4 * (x - x0), o + 4 * (x - x0), n, stride, coef, div,
                                     biasPixel);
                return;
            }
            const int32_t nbytes = 4 * (x1 - x0);
            if (use16)
                row16(w, o, nbytes, stride, coef16, uint16_t(recip.m), recip.shift, div < 0,
                      unit, biasRow16.data());
            else if (useFloat)
                rowF(w, o, nbytes, stride, coef, float(div), biasRow.data());
            else
                rowD(w, o, nbytes, stride, coef, double(div), biasRow.data());
            nb::restoreAlpha(buffer_.pixel(x0, ty), o, x1 - x0);
        });
        progressStep(y - half);
    }
    finishProgress();
    return out;
}

} // namespace ostrivex
