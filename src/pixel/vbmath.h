// Arithmetic helpers that keep the pixel formulas exact.
//
// The formulas of the filters were written for a language whose float-to-integer
// conversion rounds to nearest with ties to even, whose `Int` is floor, and whose `\`
// divides integers truncating towards zero. These helpers give the same results in C++.
#pragma once

#include <cmath>
#include <cstdint>

namespace ostrivex {

// Round to nearest, ties to even (the default floating-point rounding mode).
inline int32_t vbRound(double v) { return static_cast<int32_t>(std::nearbyint(v)); }
inline int32_t vbRoundF(float v) { return static_cast<int32_t>(std::nearbyintf(v)); }

// `Int`: the largest integer not above v.
inline int32_t vbInt(double v) { return static_cast<int32_t>(std::floor(v)); }

// `\`: integer division truncating towards zero (C++ division on integers already does).
inline int32_t vbIdiv(int32_t a, int32_t b) { return a / b; }

// Clamp to a byte.
inline uint8_t clampByte(int32_t v) {
    return static_cast<uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v));
}
inline uint8_t clampByteD(double v) { return clampByte(vbRound(v)); }

// Conversion to a byte that fails outside 0..255 (rounding first, ties to even).
// Returns false on failure; the caller applies its own "resume next" rule: the
// statement that failed is skipped, so the target byte keeps its old value.
inline bool toByte(double v, uint8_t& out) {
    const double r = std::nearbyint(v);
    if (!(r >= 0.0 && r <= 255.0)) return false;
    out = static_cast<uint8_t>(r);
    return true;
}

// Packed colour 0x00BBGGRR.
inline uint8_t colourR(uint32_t c) { return static_cast<uint8_t>(c & 0xFF); }
inline uint8_t colourG(uint32_t c) { return static_cast<uint8_t>((c >> 8) & 0xFF); }
inline uint8_t colourB(uint32_t c) { return static_cast<uint8_t>((c >> 16) & 0xFF); }
inline uint32_t packColour(uint8_t r, uint8_t g, uint8_t b) {
    return uint32_t(r) | (uint32_t(g) << 8) | (uint32_t(b) << 16);
}

} // namespace ostrivex
