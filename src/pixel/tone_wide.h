// Eight-pixel-wide kernels of the tone filters for processors with AVX2 and FMA, chosen at run
// time. Each kernel does the whole run it is given, vector part and tail, and gives the
// very bytes of the plain per-pixel loops in tone.cpp; where the processor lacks AVX2 the
// `has...` test is false and the callers keep their plain loops.
#pragma once

#include <cstdint>

namespace ostrivex::tone {

// The widest kernels the tone filters may use. By default the processor's best; tests
// lower the ceiling to check that the narrower paths give the same bytes.
enum class KernelWidth { Plain, Avx2, Avx512 };
void SetKernelCeiling(KernelWidth width);
KernelWidth KernelCeiling();

// Whether the kernels below may be called (AVX2 with FMA, and the ceiling not below it).
bool hasWideKernels();
// Whether the AVX-512 kernels may be (F, BW, VL and VBMI2, and the ceiling at Avx512).
bool hasWidestKernels();

// GreyScale over n pixels: v = round(B * 0.071 + G * 0.707 + R * 0.222) on all three
// channels, channel 3 carried over.
void greyWide(const uint8_t* s, uint8_t* p, int32_t n);
// OLDPHOTO over n pixels: the same luminance into green and red; blue and channel 3 stay.
void oldPhotoWide(const uint8_t* s, uint8_t* p, int32_t n);

// The sum of (B + G + R) \ 3 over n pixels.
uint64_t meanSumWide(const uint8_t* s, int32_t n);

// The luminance of Equalize, round(B * 0.113 + G * 0.586 + R * 0.301), of n pixels into
// out.
void equalizeLumWide(const uint8_t* s, int32_t n, uint32_t* out);

// SATURATION over n pixels: with a the truncated mean of the pixel's three channels, each
// channel c becomes clamp(round(c + f * (c - a))).
void saturationWide(const uint8_t* s, uint8_t* p, int32_t n, float f);
// The same in single precision, eight pixels at a time: for the factors with which it
// gives the same bytes for every channel value and mean, which saturationSingleExact(f)
// checks (all 65536 pairs).
bool saturationSingleExact(float f);
void saturationWideSingle(const uint8_t* s, uint8_t* p, int32_t n, float f);

// Contrast's table M[i] = round((i - mean) * f + mean), and the ways the kernel may work an
// entry out instead of looking it up: always from mean and f in double, and, where
// `linear` is set, as (i * a + b) >> shift, which fitContrastMap has checked against all
// 256 entries.
struct ContrastMap {
    const int32_t* m = nullptr;
    int32_t mean = 0;
    float f = 0.0f;
    bool linear = false;
    int32_t a = 0, b = 0, shift = 0;
};
// Looks for a, b and shift that give every entry of map.m; sets map.linear when found.
void fitContrastMap(ContrastMap& map);

// Contrast over n pixels: b, g, r = M[B], M[G], M[R], then the spill rounds until all
// three lie inside 0..255. Runs thirty-two pixels a step with AVX-512 where the table is a
// line and hasWidestKernels(), else sixteen.
void contrastWide(const uint8_t* s, uint8_t* p, int32_t n, const ContrastMap& map);

// The tables of ClassyColors: formulas of two bytes x and y at x * 256 + y, each with 3
// readable bytes past its 65536 entries (the kernel reads whole words).
struct ClassyTables {
    const uint8_t* average = nullptr; // byte((x * 0.99 + y * 0.99) / 2)
    const uint8_t* soft = nullptr;    // byte(x * atan(y) / 1.9)
    const uint8_t* spot = nullptr;    // byte(x / 2 + y / 4)
    const uint8_t* retro = nullptr;   // round((2 * x * 0.99 + y * 0.99) / 12)
};

// ClassyColors(mode) over n pixels; every mode, those that keep the pixel included.
void classyWide(int32_t mode, const uint8_t* s, uint8_t* p, int32_t n, const ClassyTables& t);

} // namespace ostrivex::tone
