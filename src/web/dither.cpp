#include "web/dither.h"

#include "web/optimizesettings.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace ostrivex {

namespace {

DitherTile bayer8() {
    // Each doubling puts 4M, 4M + 2, 4M + 3, 4M + 1 in the four quadrants.
    std::vector<uint8_t> m{0};
    int n = 1;
    while (n < 8) {
        std::vector<uint8_t> next(size_t(4 * n * n));
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x) {
                const uint8_t v = uint8_t(4 * m[size_t(y * n + x)]);
                next[size_t(y * 2 * n + x)] = v;
                next[size_t(y * 2 * n + x + n)] = uint8_t(v + 2);
                next[size_t((y + n) * 2 * n + x)] = uint8_t(v + 3);
                next[size_t((y + n) * 2 * n + x + n)] = uint8_t(v + 1);
            }
        m = std::move(next);
        n *= 2;
    }
    return {8, 8, m};
}

DitherTile halftoneDot() {
    // Cells ordered by their distance from the centre (3.5, 3.5), then by angle, so that
    // the dot grows round and every rank is used once.
    std::vector<int> order(64);
    std::iota(order.begin(), order.end(), 0);
    const auto key = [](int i) {
        const double dx = (i % 8) - 3.5, dy = (i / 8) - 3.5;
        return std::pair{dx * dx + dy * dy, std::atan2(dy, dx)};
    };
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return key(a) < key(b); });
    DitherTile t{8, 8, std::vector<uint8_t>(64)};
    for (int r = 0; r < 64; ++r) t.rank[size_t(order[size_t(r)])] = uint8_t(r);
    return t;
}

// A line of period four thickens from its middle: places 1, 2, 0, 3.
constexpr uint8_t kLine[4] = {2, 0, 1, 3};

DitherTile lineTile(bool rows) {
    DitherTile t{rows ? 1 : 4, rows ? 4 : 1, std::vector<uint8_t>(kLine, kLine + 4)};
    return t;
}

DitherTile diagonalTile(bool downRight) {
    // Equal along x - y ("\") or along x + y ("/").
    DitherTile t{4, 4, std::vector<uint8_t>(16)};
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            const int k = downRight ? (x - y + 4) % 4 : (x + y) % 4;
            // Four places per line, each of the four cells of a tile row a different place,
            // ranked so that a line's middle comes first.
            t.rank[size_t(y * 4 + x)] = uint8_t(kLine[k] * 4 + y);
        }
    return t;
}

DitherTile checkerTile(bool oddHigh) {
    DitherTile t{2, 2, std::vector<uint8_t>(4)};
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 2; ++x) {
            const bool odd = ((x + y) & 1) != 0;
            // Two cells share each rank; the higher rank is the upper threshold.
            t.rank[size_t(y * 2 + x)] = uint8_t(odd == oddHigh ? 2 + x : x);
        }
    return t;
}

} // namespace

DitherTile DitherTileOf(int32_t ditherMode) {
    switch (ditherMode) {
    case DitherOrdered: return bayer8();
    case DitherHalftone: return halftoneDot();
    case DitherForwardDiagonal: return diagonalTile(true);
    case DitherBackwardDiagonal: return diagonalTile(false);
    case DitherHorizontal: return lineTile(true);
    case DitherVertical: return lineTile(false);
    case DitherOdd: return checkerTile(true);
    case DitherEven: return checkerTile(false);
    default: return {};
    }
}

std::vector<uint8_t> MapToPalette(const Bits& picture, const Palette& palette, int32_t ditherMode,
                                  DitherSpread spread, bool grey,
                                  const std::function<bool()>& cancelled) {
    const int32_t w = picture.width(), h = picture.height();
    std::vector<uint8_t> out(size_t(w) * size_t(h));
    NearestColour nearest(palette);
    const DitherTile tile = DitherTileOf(ditherMode);
    const bool binary = ditherMode == DitherBinary;

    // Offsets per tile cell and channel: Round((t - 1/2) * spread), t = (rank + 1/2) / n.
    const int cells = tile.width * tile.height;
    std::vector<int16_t> offset(size_t(cells) * 3);
    for (int i = 0; i < cells; ++i) {
        const double t = (tile.rank[size_t(i)] + 0.5) / cells - 0.5;
        offset[size_t(i) * 3 + 0] = int16_t(std::lround(t * spread.r));
        offset[size_t(i) * 3 + 1] = int16_t(std::lround(t * spread.g));
        offset[size_t(i) * 3 + 2] = int16_t(std::lround(t * spread.b));
    }
    const auto clamp8 = [](int v) { return uint8_t(v < 0 ? 0 : v > 255 ? 255 : v); };

    for (int32_t y = 0; y < h; ++y) {
        if (cancelled && (y & 31) == 0 && cancelled()) return {};
        const uint8_t* p = picture.row(y);
        uint8_t* o = out.data() + size_t(y) * size_t(w);
        const int16_t* rowOffsets = cells ? offset.data() + size_t((y % tile.height) * tile.width) * 3 : nullptr;
        for (int32_t x = 0; x < w; ++x, p += 4) {
            int r = p[2], g = p[1], b = p[0];
            if (grey) r = g = b = Luminance(p[2], p[1], p[0]);
            if (binary) {
                r = r >= 128 ? 255 : 0;
                g = g >= 128 ? 255 : 0;
                b = b >= 128 ? 255 : 0;
            } else if (cells) {
                const int16_t* d = rowOffsets + size_t(x % tile.width) * 3;
                r += d[0];
                g += d[1];
                b += d[2];
            }
            o[x] = nearest(clamp8(r), clamp8(g), clamp8(b));
        }
    }
    return out;
}

} // namespace ostrivex
