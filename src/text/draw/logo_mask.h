// Byte masks of the logo maker: one byte per pixel, 0 to 255, rows of `w`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrivex::logo {

using std::size_t;

struct Mask {
    int w = 0, h = 0;
    std::vector<uint8_t> a;

    Mask() = default;
    Mask(int w_, int h_) : w(w_), h(h_), a(size_t(w_) * size_t(h_), 0) {}
    uint8_t& at(int x, int y) { return a[size_t(y) * size_t(w) + size_t(x)]; }
    uint8_t at(int x, int y) const { return a[size_t(y) * size_t(w) + size_t(x)]; }
    bool inside(int x, int y) const { return x >= 0 && y >= 0 && x < w && y < h; }
};

// Sets (255) every pixel of `out` that a set pixel of `m` reaches when shifted by a
// distance of 1 to `d` along (dx, dy), one of which is 0.
void SmearInto(const Mask& m, Mask& out, int dx, int dy, int d);
// The chessboard distance of every pixel to the nearest set pixel of `m` (0 on it), held
// to `cap` + 1.
std::vector<int> RingDistance(const Mask& m, int cap);
// The same for the nearest unset pixel (0 off the mask; the picture's edge counts as
// unset beyond it).
std::vector<int> InnerDistance(const Mask& m, int cap);
// The anti-alias pass: each value becomes the (1 2 1) x (1 2 1) / 16 weighted mean of its
// neighbourhood, the edges of the picture read as empty.
Mask SoftenMask(const Mask& m);
// A box blur of `radius`, twice over (close to a Gaussian).
Mask BlurMask(const Mask& m, int radius);
// `m` moved by (dx, dy); what comes in from outside is empty.
Mask Shifted(const Mask& m, int dx, int dy);

} // namespace ostrivex::logo
