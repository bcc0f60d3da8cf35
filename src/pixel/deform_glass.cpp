// GLASS: the image seen through patterned glass or through a curtain.
//
// Sizes follow the region's box, so that the small preview of the filter dialog looks
// like the full result: L is the larger side of the box, and a pattern repeats every p
// pixels, counted from the box's left and top edges.
//
// Glass ("slanting", "horizontal", "vertical", "squary"): reeded glass. Each reed of
// width p acts as a cylindrical lens that shows the strip behind it turned over and at
// half size: the pixel at t (0..p-1) across the reed takes the source at c - (t - c) / 2,
// c = (p - 1) / 2, so it is moved by round(1.5 * (c - t)).
//   "vertical"   reeds are vertical stripes: the move is along x.
//   "horizontal" reeds are horizontal stripes: the move is along y.
//   "slanting"   reeds run along the diagonals x + y = constant; the move is along (1, 1),
//                by round(0.75 * (c - t)) on each axis, which moves t by twice that.
//   "squary"     glass blocks: the vertical and horizontal reeds at once.
//   Value: for the reeds 0 "Light" (p = max(6, L / 24)) and 1 "Tight" (p = max(4, L / 48));
//   for the blocks 0 "Large" (p = max(8, L / 12)), 1 "Light", 2 "Tight"; the combo of the
//   dialog lists them in that order. Other values give "Light".
// A source outside the region leaves the pixel as it was.
//
// Curtain ("curtain", value 1 to 4): folds of cloth with a period p = max(8, L / 16). At
// phase theta = 2 pi t / p the cloth ripples the image by round(p / 10 * sin(theta)) across
// the folds and shades it by 0.78 + 0.22 * cos(theta) (0.56 in the hollow of a fold).
//   1 "horizontal": the folds run along the rows (t counts rows).
//   2 "vertical": the folds run down the columns (t counts columns).
//   3 "classy": a drape gathered at the rod: vertical folds whose period grows from p / 2
//     at the box's top row to p at its bottom row, with deeper shading (0.45 to 1) and
//     a warm cloth tint (red 1, green 0.94, blue 0.84).
//   4 "whity": a white voile: vertical folds, each channel moved towards white by
//     a = 0.4 + 0.15 * cos(theta): channel + (255 - channel) * a.
//   Every result is rounded, ties to even, and capped at 255. Other values change nothing.
#include "pixel/bitfilter.h"
#include "pixel/deform_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace ostrivex {

using deform::roundEven;

namespace {

constexpr double kPi = 3.14159265358979323846;

// The move of the reed lens at each place t of a reed of width p.
std::vector<int32_t> reedMoves(int32_t p, double gain) {
    std::vector<int32_t> m(static_cast<size_t>(p));
    const double c = (p - 1) / 2.0;
    for (int32_t t = 0; t < p; ++t) m[size_t(t)] = roundEven(gain * (c - t));
    return m;
}

// A 256-entry map v -> min(255, round(v * f)).
void scaleTable(uint8_t* table, double f) {
    for (int v = 0; v < 256; ++v) table[v] = uint8_t(std::min(roundEven(v * f), 255));
}
// A 256-entry map v -> min(255, round(v + (255 - v) * a)).
void whitenTable(uint8_t* table, double a) {
    for (int v = 0; v < 256; ++v)
        table[v] = uint8_t(std::min(roundEven(v + (255 - v) * a), 255));
}

} // namespace

Bits cBitFilter::GLASS(const std::string& style, int32_t value) {
    RegionBounds(0);
    const int32_t left = boxLeft_, top = boxTop_;
    const int32_t boxW = boxRight_ - boxLeft_ + 1, boxH = boxBottom_ - boxTop_ + 1;
    const int32_t L = std::max(std::max(boxW, boxH), 0);
    const bool blocks = style == "squary";
    const bool reeds = blocks || style == "slanting" || style == "horizontal" || style == "vertical";

    if (reeds) {
        int32_t p;
        const int32_t level = blocks ? value : value + 1; // 0 large, 1 light, 2 tight
        if (level == 0) p = std::max(8, L / 12);
        else if (level == 2) p = std::max(4, L / 48);
        else p = std::max(6, L / 24);
        // The moves are laid out per column and per row of the box before the walk, so the
        // loop does no division.
        const int32_t boxWidth = std::max(boxW, 0), boxHeight = std::max(boxH, 0);
        if (style == "slanting") {
            const std::vector<int32_t> move = reedMoves(p, 0.75);
            // moveAt[(y - top) mod p + (x - left)] = move[(x - left + y - top) mod p].
            std::vector<int32_t> moveAt(static_cast<size_t>(p + boxWidth));
            for (size_t i = 0; i < moveAt.size(); ++i) moveAt[i] = move[i % size_t(p)];
            std::vector<int32_t> rowPhase(static_cast<size_t>(boxHeight));
            for (int32_t j = 0; j < boxHeight; ++j) rowPhase[size_t(j)] = j % p;
            return deformMap(false, [&](int32_t x, int32_t y, int32_t& sx, int32_t& sy) {
                const int32_t m = moveAt[size_t(rowPhase[size_t(y - top)] + (x - left))];
                sx = x + m;
                sy = y + m;
            });
        }
        const std::vector<int32_t> move = reedMoves(p, 1.5);
        const bool alongX = style != "horizontal", alongY = style != "vertical";
        std::vector<int32_t> columnMove(static_cast<size_t>(boxWidth)), rowMove(static_cast<size_t>(boxHeight));
        for (int32_t i = 0; i < boxWidth; ++i) columnMove[size_t(i)] = alongX ? move[size_t(i % p)] : 0;
        for (int32_t j = 0; j < boxHeight; ++j) rowMove[size_t(j)] = alongY ? move[size_t(j % p)] : 0;
        return deformMap(false, [&](int32_t x, int32_t y, int32_t& sx, int32_t& sy) {
            sx = x + columnMove[size_t(x - left)];
            sy = y + rowMove[size_t(y - top)];
        });
    }

    Bits out = buffer_;
    if (style != "curtain" || value < 1 || value > 4) {
        finishProgress();
        return out;
    }
    const int32_t p = std::max(8, L / 16);
    const deform::SourceTest inside(region_, lastColumn_ + 1, lastRow_ + 1);
    const Bits& src = buffer_;

    // Per place in a fold: the ripple and three colour maps (blue, green, red). The
    // gathered drape works on 64 phase steps instead of pixel places.
    const int32_t steps = value == 3 ? 64 : p;
    std::vector<int32_t> ripple(static_cast<size_t>(steps));
    std::vector<std::array<std::array<uint8_t, 256>, 3>> maps(static_cast<size_t>(steps));
    for (int32_t t = 0; t < steps; ++t) {
        const double theta = 2 * kPi * t / steps;
        ripple[size_t(t)] = roundEven(p / 10.0 * std::sin(theta));
        auto& mp = maps[size_t(t)];
        if (value == 4) {
            const double a = 0.4 + 0.15 * std::cos(theta);
            for (auto& m : mp) whitenTable(m.data(), a);
        } else if (value == 3) {
            const double shade = 0.725 + 0.275 * std::cos(theta);
            scaleTable(mp[0].data(), shade * 0.84);
            scaleTable(mp[1].data(), shade * 0.94);
            scaleTable(mp[2].data(), shade);
        } else {
            const double shade = 0.78 + 0.22 * std::cos(theta);
            for (auto& m : mp) scaleTable(m.data(), shade);
        }
    }
    // The gathered drape: phase step of column x on row y = floor(64 * frac((x - left) / p_y)).
    std::vector<double> inversePeriod(size_t(std::max(boxH, 0)));
    for (int32_t j = 0; j < boxH; ++j) {
        const double grow = boxH > 1 ? double(j) / (boxH - 1) : 1.0;
        inversePeriod[size_t(j)] = 1.0 / (p * (0.5 + 0.5 * grow));
    }

    auto put = [&](uint8_t* d, int32_t sx, int32_t sy, int32_t t) {
        if (!inside(sx, sy)) return;
        const uint8_t* s = src.pixel(sx, sy);
        const auto& mp = maps[size_t(t)];
        d[0] = mp[0][s[0]];
        d[1] = mp[1][s[1]];
        d[2] = mp[2][s[2]];
    };
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        uint8_t* d = out.pixel(x0, y);
        if (value == 1) {
            const int32_t t = (y - top) % p;
            const int32_t sy = y + ripple[size_t(t)];
            for (int32_t x = x0; x < x1; ++x, d += 4) put(d, x, sy, t);
        } else if (value == 3) {
            const double inv = inversePeriod[size_t(y - top)];
            for (int32_t x = x0; x < x1; ++x, d += 4) {
                const double phase = (x - left) * inv;
                const int32_t t = std::min(int32_t((phase - std::floor(phase)) * 64), 63);
                put(d, x + ripple[size_t(t)], y, t);
            }
        } else {
            int32_t t = (x0 - left) % p;
            for (int32_t x = x0; x < x1; ++x, d += 4) {
                put(d, x + ripple[size_t(t)], y, t);
                if (++t == p) t = 0;
            }
        }
    });
    finishProgress();
    return out;
}

} // namespace ostrivex
