// A pixel of a Bits as one 32-bit little-endian word: blue in bits 0..7, green 8..15, red
// 16..23, the marker byte (channel 3) in 24..31. Loads and stores through memcpy, which the
// compiler turns into plain moves without breaking aliasing rules.
#pragma once

#include <cstdint>
#include <cstring>

namespace ostrivex {

inline uint32_t load32(const uint8_t* p) {
    uint32_t v;
    std::memcpy(&v, p, 4);
    return v;
}

inline void store32(uint8_t* p, uint32_t v) { std::memcpy(p, &v, 4); }

} // namespace ostrivex
