// The fixed neighbourhood filters: Blurs, SOFTEN, SHARPEN, EDGEENHANCE, DILATE, ERODE, the
// rank filters, CONTOUR and RELIEF. Each reads the object's buffer and writes a copy,
// walking the region's spans inside the box of RegionBounds(margin); neighbours past the
// image's edge are read from the guard band, which is black.
#include "pixel/bitfilter.h"
#include "pixel/neighbourhood_rows.h"
#include "pixel/pixelword.h"
#include "pixel/vbmath.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace ostrivex {

namespace {

using nb::clamp255;

// --- Row kernels: s and o point at the first byte of the span in source and output, nb
// is its length in bytes, dx the step to the next pixel, dy the step to the next row. ---

// Blurs: the 8 pixels at distance `level` in the 8 directions, \ 8.
OSTRIVEX_ROW_CLONES
void blurRow(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t dx,
             ptrdiff_t dy) {
    for (int32_t k = 0; k < nb; ++k) {
        const int32_t sum = s[k - dy - dx] + s[k - dy] + s[k - dy + dx] + s[k - dx] +
                            s[k + dx] + s[k + dy - dx] + s[k + dy] + s[k + dy + dx];
        o[k] = uint8_t(sum >> 3);
    }
}

// SOFTEN: (k * C + left + up + down + right) \ d; a quotient outside a byte keeps C.
OSTRIVEX_ROW_CLONES
void softenRow(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t dy,
               int32_t k, float d) {
    for (int32_t i = 0; i < nb; ++i) {
        const int32_t n = k * s[i] + s[i - 4] + s[i + 4] + s[i - dy] + s[i + dy];
        const int32_t q = int32_t(float(n) / d);
        o[i] = (q >= 0 && q <= 255) ? uint8_t(q) : s[i];
    }
}

// SOFTEN for levels 0 to 100: the sum stays below 2^15 and the quotient within a byte, so
// 16-bit lanes and a reciprocal multiply give the same bytes.
OSTRIVEX_ROW_CLONES
void softenRow16(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t dy,
                 uint16_t k, uint16_t m, int shift) {
    for (int32_t i = 0; i < nb; ++i) {
        const uint16_t n = uint16_t(k * s[i] + s[i - 4] + s[i + 4] + s[i - dy] + s[i + dy]);
        o[i] = uint8_t(uint16_t((uint32_t(n) * m) >> 16) >> shift);
    }
}

// SHARPEN and EDGEENHANCE where (a + b) * 255 stays below 2^15: 16-bit lanes. The
// numerator a * C - b * sum8 is formed as (a + b) * C - b * sum9, sum9 being the whole
// 3 x 3 window, so it lies between -b * 2295 and (a + b) * 255. A negative numerator
// truncates to a quotient of at most 0, which clamps to 0. The sums of the three rows are
// formed once per column (a block at a time) and shared by the three windows that contain
// the column.
template <int B>
__attribute__((always_inline)) inline void sharpenRow16Body(const uint8_t* __restrict s,
                                                            uint8_t* __restrict o, int32_t nb,
                                                            ptrdiff_t dy, int16_t a,
                                                            uint16_t m, int shift) {
    constexpr int32_t kBlock = 1024;
    uint16_t col[kBlock + 8]; // col[j]: the column sum at byte start - 4 + j
    const int16_t ab = int16_t(a + B);
    for (int32_t start = 0; start < nb; start += kBlock) {
        const int32_t len = nb - start < kBlock ? nb - start : kBlock;
        const uint8_t* p = s + start;
        for (int32_t j = 0; j < len + 8; ++j)
            col[j] = uint16_t(p[j - 4 - dy] + p[j - 4] + p[j - 4 + dy]);
        for (int32_t i = 0; i < len; ++i) {
            const int16_t sum9 = int16_t(col[i] + col[i + 4] + col[i + 8]);
            const int16_t n = int16_t(ab * p[i] - B * sum9);
            const uint16_t v = n < 0 ? 0 : uint16_t(n);
            const uint16_t q = uint16_t(uint16_t((uint32_t(v) * m) >> 16) >> shift);
            o[start + i] = uint8_t(q > 255 ? 255 : q);
        }
    }
}

OSTRIVEX_ROW_CLONES
void sharpenRow16(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t dy,
                  int16_t a, int16_t b, uint16_t m, int shift) {
    if (b == 2)
        sharpenRow16Body<2>(s, o, nb, dy, a, m, shift);
    else
        sharpenRow16Body<1>(s, o, nb, dy, a, m, shift);
}

// SHARPEN and EDGEENHANCE: clamp((a * C - b * sum8) \ d).
OSTRIVEX_ROW_CLONES
void sharpenRow(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t dy,
                int32_t a, int32_t b, float d) {
    for (int32_t i = 0; i < nb; ++i) {
        const int32_t sum8 = s[i - dy - 4] + s[i - dy] + s[i - dy + 4] + s[i - 4] + s[i + 4] +
                             s[i + dy - 4] + s[i + dy] + s[i + dy + 4];
        const int32_t q = int32_t(float(a * s[i] - b * sum8) / d);
        o[i] = uint8_t(q < 0 ? 0 : (q > 255 ? 255 : q));
    }
}

inline uint8_t max8(uint8_t a, uint8_t b) { return a > b ? a : b; }
inline uint8_t min8(uint8_t a, uint8_t b) { return a < b ? a : b; }

// DILATE: the largest byte of the 3 x 3 window.
OSTRIVEX_ROW_CLONES
void dilateRow(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t dy) {
    for (int32_t i = 0; i < nb; ++i) {
        uint8_t m = max8(max8(s[i - dy - 4], s[i - dy]), s[i - dy + 4]);
        m = max8(m, max8(max8(s[i - 4], s[i]), s[i + 4]));
        m = max8(m, max8(max8(s[i + dy - 4], s[i + dy]), s[i + dy + 4]));
        o[i] = m;
    }
}

// ERODE: the smallest byte of the 3 x 3 window.
OSTRIVEX_ROW_CLONES
void erodeRow(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t dy) {
    for (int32_t i = 0; i < nb; ++i) {
        uint8_t m = min8(min8(s[i - dy - 4], s[i - dy]), s[i - dy + 4]);
        m = min8(m, min8(min8(s[i - 4], s[i]), s[i + 4]));
        m = min8(m, min8(min8(s[i + dy - 4], s[i + dy]), s[i + dy + 4]));
        o[i] = m;
    }
}

// The rank filters: the centre and four neighbours at offsets e1..e4 (bytes).
OSTRIVEX_ROW_CLONES
void rankMaxRow(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t e1,
                ptrdiff_t e2) {
    for (int32_t i = 0; i < nb; ++i)
        o[i] = max8(max8(max8(s[i - e1], s[i + e1]), max8(s[i - e2], s[i + e2])), s[i]);
}
OSTRIVEX_ROW_CLONES
void rankMinRow(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t e1,
                ptrdiff_t e2) {
    for (int32_t i = 0; i < nb; ++i)
        o[i] = min8(min8(min8(s[i - e1], s[i + e1]), min8(s[i - e2], s[i + e2])), s[i]);
}

// RELIEF: C + (2 * SE + S + E - 2 * NW - N - W) \ 4, clamped.
OSTRIVEX_ROW_CLONES
void reliefRow(const uint8_t* __restrict s, uint8_t* __restrict o, int32_t nb, ptrdiff_t dy) {
    for (int32_t i = 0; i < nb; ++i) {
        const int32_t g = 2 * s[i + dy + 4] + s[i + dy] + s[i + 4] - 2 * s[i - dy - 4] -
                          s[i - dy] - s[i - 4];
        o[i] = uint8_t(clamp255(s[i] + g / 4));
    }
}

// The same rule for every byte of a span, for parameters outside the fast kernels' ranges:
// value(i) gives the new byte, or a negative number for a failed statement, which leaves
// the output byte as it was (the "resume next" rule of these filters).
template <class ByteFn>
void slowRow(const uint8_t* s, uint8_t* o, int32_t nb, ByteFn&& value) {
    for (int32_t i = 0; i < nb; ++i) {
        const int64_t v = value(s + i);
        if (v >= 0) o[i] = uint8_t(v);
    }
}

// Whether a 64-bit value fits the 32-bit integers these filters compute in; outside them
// the statement fails.
inline bool fits32(int64_t v) { return v >= INT32_MIN && v <= INT32_MAX; }

} // namespace

// --- The filters ------------------------------------------------------------------------

// The new buffer from the frame of spanFrame: row(srcSpan, outSpan, bytes) over every span
// of the box, channel 3 put back; the reads reach one row up and down (REACH rows for
// Blurs). The KEEP form copies the span first, for row kernels that leave a byte alone
// when its statement fails.
#define OSTRIVEX_NB_FRAME_REACH(ROWCALL, REACH)                                            \
    spanFrame(                                                                             \
        [&](int32_t y, int32_t x0, int32_t x1, uint8_t* op) {                              \
            const uint8_t* sp = buffer_.pixel(x0, y);                                      \
            const int32_t nbytes = 4 * (x1 - x0);                                          \
            ROWCALL;                                                                       \
            nb::restoreAlpha(sp, op, x1 - x0);                                             \
        },                                                                                 \
        REACH)
#define OSTRIVEX_NB_FRAME(ROWCALL) OSTRIVEX_NB_FRAME_REACH(ROWCALL, 1)
#define OSTRIVEX_NB_FRAME_KEEP(ROWCALL)                                                    \
    spanFrame([&](int32_t y, int32_t x0, int32_t x1, uint8_t* op) {                        \
        const uint8_t* sp = buffer_.pixel(x0, y);                                          \
        const int32_t nbytes = 4 * (x1 - x0);                                              \
        std::memcpy(op, sp, size_t(nbytes));                                               \
        ROWCALL;                                                                           \
        nb::restoreAlpha(sp, op, x1 - x0);                                                 \
    })

Bits cBitFilter::Blurs(int32_t level) {
    RegionBounds(0);
    const int32_t l = std::abs(level);
    // The reads reach `level` pixels past the box; past the guard band there is no array.
    if (boxLeft_ <= boxRight_ && boxTop_ <= boxBottom_ &&
        (boxLeft_ - l < -2 || boxTop_ - l < -2 || boxRight_ + l > lastColumn_ + 2 ||
         boxBottom_ + l > lastRow_ + 2))
        throw std::out_of_range("Blurs: level reaches past the guard band");
    const ptrdiff_t dx = 4 * ptrdiff_t(l), dy = ptrdiff_t(l) * ptrdiff_t(buffer_.stride());
    Bits out = OSTRIVEX_NB_FRAME_REACH(blurRow(sp, op, nbytes, dx, dy), l);
    finishProgress();
    return out;
}

Bits cBitFilter::SOFTEN(int32_t level) {
    Bits out;
    RegionBounds(1);
    const int64_t k = 101 - int64_t(level), d = k + 4;
    const ptrdiff_t dy = ptrdiff_t(buffer_.stride());
    nb::Recip16 r;
    if (d == 0) {
        out = unchangedResult(); // every division fails and every byte keeps its value
    } else if (k >= 0 && k * 255 + 1020 < 32768 &&
               nb::findRecip16(uint32_t(d), uint32_t(k * 255 + 1020), r)) {
        const uint16_t k16 = uint16_t(k), m = uint16_t(r.m);
        const int shift = r.shift;
        out = OSTRIVEX_NB_FRAME(softenRow16(sp, op, nbytes, dy, k16, m, shift));
    } else if (nb::floatDivisionExact(std::abs(k) * 255 + 1020, d)) {
        const int32_t k32 = int32_t(k);
        const float df = float(d);
        out = OSTRIVEX_NB_FRAME(softenRow(sp, op, nbytes, dy, k32, df));
    } else {
        out = OSTRIVEX_NB_FRAME_KEEP(slowRow(sp, op, nbytes, [&](const uint8_t* p) -> int64_t {
            const int64_t n = k * p[0] + p[-4] + p[4] + p[-dy] + p[dy];
            if (!fits32(k * p[0]) || !fits32(n)) return -1;
            const int64_t q = n / d;
            return (q >= 0 && q <= 255) ? q : -1;
        }));
    }
    finishProgress();
    return out;
}

namespace {
// clamp((a * C - b * sum8) \ d) for any a and d, with the failures of 32-bit arithmetic.
int64_t sharpenByte(const uint8_t* p, ptrdiff_t dy, int64_t a, int64_t b, int64_t d) {
    const int64_t sum8 = p[-dy - 4] + p[-dy] + p[-dy + 4] + p[-4] + p[4] + p[dy - 4] + p[dy] +
                         p[dy + 4];
    const int64_t n = a * p[0] - b * sum8;
    if (!fits32(a * p[0]) || !fits32(n)) return -1;
    return clamp255(int32_t(n / d));
}
} // namespace

Bits cBitFilter::SHARPEN(int32_t level) {
    Bits out;
    RegionBounds(1);
    const int64_t a = 124 - int64_t(level), d = 108 - int64_t(level);
    const ptrdiff_t dy = ptrdiff_t(buffer_.stride());
    nb::Recip16 r;
    if (d == 0) {
        out = unchangedResult(); // every division fails and every byte keeps its value
    } else if (a >= 0 && d > 0 && (a + 2) * 255 < 32768 &&
               nb::findRecip16(uint32_t(d), uint32_t(a * 255), r)) {
        const int16_t a16 = int16_t(a);
        const uint16_t m = uint16_t(r.m);
        const int shift = r.shift;
        out = OSTRIVEX_NB_FRAME(sharpenRow16(sp, op, nbytes, dy, a16, 2, m, shift));
    } else if (nb::floatDivisionExact(std::abs(a) * 255 + 2 * 8 * 255, d)) {
        const int32_t a32 = int32_t(a);
        const float df = float(d);
        out = OSTRIVEX_NB_FRAME(sharpenRow(sp, op, nbytes, dy, a32, 2, df));
    } else {
        out = OSTRIVEX_NB_FRAME_KEEP(slowRow(sp, op, nbytes, [&](const uint8_t* p) {
            return sharpenByte(p, dy, a, 2, d);
        }));
    }
    finishProgress();
    return out;
}

Bits cBitFilter::EDGEENHANCE(int32_t level) {
    Bits out;
    RegionBounds(0);
    const int64_t a = int64_t(level) + 9, d = int64_t(level) + 1;
    const ptrdiff_t dy = ptrdiff_t(buffer_.stride());
    nb::Recip16 r;
    if (d == 0) {
        out = unchangedResult(); // every division fails and every byte keeps its value
    } else if (a >= 0 && d > 0 && (a + 1) * 255 < 32768 &&
               nb::findRecip16(uint32_t(d), uint32_t(a * 255), r)) {
        const int16_t a16 = int16_t(a);
        const uint16_t m = uint16_t(r.m);
        const int shift = r.shift;
        out = OSTRIVEX_NB_FRAME(sharpenRow16(sp, op, nbytes, dy, a16, 1, m, shift));
    } else if (nb::floatDivisionExact(std::abs(a) * 255 + 8 * 255, d)) {
        const int32_t a32 = int32_t(a);
        const float df = float(d);
        out = OSTRIVEX_NB_FRAME(sharpenRow(sp, op, nbytes, dy, a32, 1, df));
    } else {
        out = OSTRIVEX_NB_FRAME_KEEP(slowRow(sp, op, nbytes, [&](const uint8_t* p) {
            return sharpenByte(p, dy, a, 1, d);
        }));
    }
    finishProgress();
    return out;
}

Bits cBitFilter::DILATE() {
    RegionBounds(0);
    const ptrdiff_t dy = ptrdiff_t(buffer_.stride());
    Bits out = OSTRIVEX_NB_FRAME(dilateRow(sp, op, nbytes, dy));
    finishProgress();
    return out;
}

Bits cBitFilter::ERODE() {
    RegionBounds(0);
    const ptrdiff_t dy = ptrdiff_t(buffer_.stride());
    Bits out = OSTRIVEX_NB_FRAME(erodeRow(sp, op, nbytes, dy));
    finishProgress();
    return out;
}

// Mode 0 keeps the minimum of the window (starting from 255), mode 1 the maximum (from 0).
// The margin is 1 - mode. For any other mode nothing is compared, so the pixel takes the
// start value: we start every mode but 0 at 0, so those modes paint the region black.
#define OSTRIVEX_NB_RANK(e1, e2)                                                           \
    Bits out;                                                                              \
    RegionBounds(1 - mode);                                                                \
    if (mode == 0) {                                                                       \
        out = OSTRIVEX_NB_FRAME(rankMinRow(sp, op, nbytes, e1, e2));                       \
    } else if (mode == 1) {                                                                \
        out = OSTRIVEX_NB_FRAME(rankMaxRow(sp, op, nbytes, e1, e2));                       \
    } else {                                                                               \
        out = spanFrame([&](int32_t y, int32_t x0, int32_t x1, uint8_t* o) {               \
            for (int32_t x = x0; x < x1; ++x)                                              \
                store32(o + 4 * (x - x0), load32(buffer_.pixel(x, y)) & 0xFF000000u);      \
        });                                                                                \
    }                                                                                      \
    finishProgress();                                                                      \
    return out;

Bits cBitFilter::RankFilterN4(int32_t mode) {
    // Left and right, up and down.
    const ptrdiff_t e1 = 4, e2 = ptrdiff_t(buffer_.stride());
    OSTRIVEX_NB_RANK(e1, e2)
}

Bits cBitFilter::RankFilterND(int32_t mode) {
    // Up-left and down-right, up-right and down-left.
    const ptrdiff_t e1 = ptrdiff_t(buffer_.stride()) + 4, e2 = ptrdiff_t(buffer_.stride()) - 4;
    OSTRIVEX_NB_RANK(e1, e2)
}

Bits cBitFilter::CONTOUR(int32_t weight, int32_t colour) {
    RegionBounds(0);
    const uint32_t packed = static_cast<uint32_t>(colour);
    const uint8_t cb = colourB(packed), cg = colourG(packed), cr = colourR(packed);
    const ptrdiff_t dy = ptrdiff_t(buffer_.stride());
    Bits out = spanFrame([&](int32_t y, int32_t x0, int32_t x1, uint8_t* o) {
        const uint8_t* s = buffer_.pixel(x0, y);
        for (int32_t x = x0; x < x1; ++x, s += 4, o += 4) {
            o[3] = s[3];
            int32_t e[3];
            for (int c = 0; c < 3; ++c) {
                const int32_t sum8 = s[c - dy - 4] + s[c - dy] + s[c - dy + 4] + s[c - 4] +
                                     s[c + 4] + s[c + dy - 4] + s[c + dy] + s[c + dy + 4];
                e[c] = clamp255(8 * s[c] - sum8 + 255);
            }
            if ((e[0] + e[1] + e[2]) / 3 >= weight) {
                o[0] = cb;
                o[1] = cg;
                o[2] = cr;
            } else {
                o[0] = uint8_t(e[0]);
                o[1] = uint8_t(e[1]);
                o[2] = uint8_t(e[2]);
            }
        }
    });
    finishProgress();
    return out;
}

// RELIEF lights the image from the upper left: a Sobel-like diagonal gradient, with the
// two diagonal neighbours weighted twice, (2 * SE + S + E) - (2 * NW + N + W), a quarter
// of which is added to the pixel. A flat area keeps its colour; a rising edge seen from
// the upper left brightens and a falling one darkens. Margin 1, so the outer ring of the
// region, which would read the black guard band at the image's edge, stays as it is.
Bits cBitFilter::RELIEF() {
    RegionBounds(1);
    const ptrdiff_t dy = ptrdiff_t(buffer_.stride());
    Bits out = OSTRIVEX_NB_FRAME(reliefRow(sp, op, nbytes, dy));
    finishProgress();
    return out;
}

} // namespace ostrivex
