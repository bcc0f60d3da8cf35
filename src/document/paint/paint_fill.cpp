// Flood fills: BitsFill and BitsFillTexture.
//
// The fill grows pass by pass: each pass examines the points added by the one before, in
// the order they were added, and looks at their neighbours left, right, up and down. A
// neighbour is examined once in the stroke (its done flag is set whether it matches or
// not), so the walk is linear in the pixels it reaches. Only the latest front is kept:
// the pixels of older passes are never looked at again.
#include "document/paint/paint.h"
#include "document/paint/paint_internal.h"

#include <cstddef>
#include <cstdlib>
#include <vector>

namespace ostrivex {

using namespace paint_detail;

namespace {

// Fast membership test for a whole walk: a single rectangle is a bounds test, anything
// else a byte mask of the region over the image, built once from its spans.
class RegionTest {
public:
    RegionTest(const Region& region, int32_t w, int32_t h) : w_(w), h_(h) {
        const auto& bands = region.bands();
        if (bands.size() == 1 && bands[0].spans.size() == 1) {
            const Band& b = bands[0];
            box_ = {std::max(b.spans[0].x1, 0), std::max(b.top, 0),
                    std::min(b.spans[0].x2, w), std::min(b.bottom, h)};
            simple_ = true;
            return;
        }
        mask_.assign(size_t(w) * size_t(h), 0);
        for (const Band& b : bands)
            for (int32_t y = std::max(b.top, 0); y < std::min(b.bottom, h); ++y)
                for (const Span& s : b.spans)
                    for (int32_t x = std::max(s.x1, 0); x < std::min(s.x2, w); ++x)
                        mask_[size_t(y) * size_t(w) + size_t(x)] = 1;
    }

    bool operator()(int32_t x, int32_t y) const {
        if (simple_) return x >= box_.left && x < box_.right && y >= box_.top && y < box_.bottom;
        if (x < 0 || y < 0 || x >= w_ || y >= h_) return false;
        return mask_[size_t(y) * size_t(w_) + size_t(x)] != 0;
    }

private:
    int32_t w_, h_;
    bool simple_ = false;
    Rect box_;
    std::vector<uint8_t> mask_;
};

// The walk from the seed: paint(pixel, x, y) is called for each neighbour that is in the
// region, not yet done, and within the tolerance of the seed colour s. Pixels and flags
// are reached by offsets from local strides: the region test keeps every neighbour inside
// the image, where both tables are addressable.
template <class Paint>
void floodWalk(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
               const int32_t s[3], int32_t tolerance, Paint&& paint) {
    const int32_t w = bits.width(), h = bits.height();
    // A table made for another image size cannot belong to this stroke: start a fresh one.
    if (done.width() != w || done.height() != h) CreateDoneBitsTable(done, bits);
    const RegionTest inRegion(region, w, h);
    uint8_t* const flags = done.data();
    const size_t flagStride = done.stride();
    uint8_t* const origin = bits.pixel(0, 0);
    const std::ptrdiff_t pixStride = std::ptrdiff_t(bits.stride());
    const int32_t s0 = s[0], s1 = s[1], s2 = s[2];
    std::vector<PointI> front{{x, y}};
    std::vector<PointI> next;
    static constexpr int32_t kDx[4] = {-1, 1, 0, 0}; // left, right, up, down
    static constexpr int32_t kDy[4] = {0, 0, -1, 1};
    while (!front.empty()) {
        next.clear();
        for (const PointI& pt : front) {
            for (int i = 0; i < 4; ++i) {
                const int32_t nx = pt.x + kDx[i], ny = pt.y + kDy[i];
                if (!inRegion(nx, ny)) continue;
                uint8_t& flag = flags[size_t(ny) * flagStride + size_t(nx)];
                if (flag) continue;
                flag = 1;
                uint8_t* d = origin + std::ptrdiff_t(ny) * pixStride + std::ptrdiff_t(nx) * 4;
                const int32_t e = std::abs(d[0] - s0) + std::abs(d[1] - s1) + std::abs(d[2] - s2);
                if (e > tolerance) continue;
                paint(d, nx, ny);
                next.push_back({nx, ny});
            }
        }
        front.swap(next);
    }
}

bool insideImage(const Bits& bits, int32_t x, int32_t y) {
    return !bits.empty() && x >= 0 && y >= 0 && x < bits.width() && y < bits.height();
}

} // namespace

void BitsFill(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
              int32_t colour, int32_t tolerance, int32_t pressure) {
    if (!insideImage(bits, x, y)) return;
    const double p = pressure / 100.0, q = 1.0 - p;
    const Channels fill = channelsOf(colour);
    uint8_t* seed = bits.pixel(x, y);
    const int32_t s[3] = {seed[0], seed[1], seed[2]};
    // The seed itself is painted but not marked done: a wide tolerance may reach it again.
    if (region.contains(x, y))
        for (int c = 0; c < 3; ++c) seed[c] = clampByteD(q * s[c] + p * fill.c[c]);
    if (std::abs(fill.c[0] - s[0]) < 10 && std::abs(fill.c[1] - s[1]) < 10 &&
        std::abs(fill.c[2] - s[2]) < 10)
        return;
    uint8_t table[3][256];
    for (int c = 0; c < 3; ++c) {
        const int32_t added = vbRound(p * fill.c[c]);
        for (int32_t i = 0; i < 256; ++i) table[c][i] = clampByteD(q * i + added);
    }
    floodWalk(bits, region, done, x, y, s, tolerance, [&](uint8_t* d, int32_t, int32_t) {
        for (int c = 0; c < 3; ++c) d[c] = table[c][d[c]];
    });
}

void BitsFillTexture(Bits& bits, const Region& region, DoneBits& done, int32_t x, int32_t y,
                     const Bits& texture, int32_t tolerance, int32_t pressure) {
    if (!insideImage(bits, x, y) || texture.empty()) return;
    const double p = pressure / 100.0, q = 1.0 - p;
    // The period includes one guard column and row, as for the textured brush.
    const int32_t tw = texture.width() + 1, th = texture.height() + 1;
    uint8_t* seed = bits.pixel(x, y);
    const int32_t s[3] = {seed[0], seed[1], seed[2]};
    const uint8_t* ts = texture.pixel(x % tw, y % th);
    if (region.contains(x, y))
        for (int c = 0; c < 3; ++c) seed[c] = clampByteD(q * s[c] + p * ts[c]);
    if (std::abs(ts[0] - s[0]) < 10 && std::abs(ts[1] - s[1]) < 10 &&
        std::abs(ts[2] - s[2]) < 10)
        return;
    uint8_t table[256];
    for (int32_t i = 0; i < 256; ++i) table[i] = clampByteD(q * i);
    // The texture scaled by p once, guard band included since it is part of the tile.
    Bits scaled = texture;
    uint8_t* t = scaled.data();
    for (size_t i = 0, n = scaled.size(); i < n; ++i) t[i] = clampByteD(p * t[i]);
    floodWalk(bits, region, done, x, y, s, tolerance, [&](uint8_t* d, int32_t px, int32_t py) {
        const uint8_t* src = scaled.pixel(px % tw, py % th);
        // T(old) + p*texture can reach 256 when both round up: clamp.
        for (int c = 0; c < 3; ++c) d[c] = clampByte(table[d[c]] + src[c]);
    });
}

} // namespace ostrivex
