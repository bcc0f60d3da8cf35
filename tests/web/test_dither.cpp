// Each dither of the list on flat colours and ramps between black and white, where the
// pattern it makes can be read off the pixels.
#include "web/dither.h"
#include "web/optimizesettings.h"
#include "web/web_test_util.h"

#include <gtest/gtest.h>

#include <queue>

namespace ostrivex {
namespace {

using test::flat;

const Palette kBlackWhite{{0, 0, 0}, {255, 255, 255}};

// The white pixels (index 1) of a flat picture of grey v, w x h, as rows of 0 and 1.
std::vector<uint8_t> pattern(int32_t mode, uint8_t v, int w = 16, int h = 16) {
    return MapToPalette(flat(w, h, v, v, v), kBlackWhite, mode, {255, 255, 255}, false);
}

int count(const std::vector<uint8_t>& p) {
    int n = 0;
    for (uint8_t v : p) n += v;
    return n;
}

TEST(Dither, NoneAndBinaryTakeOneEntryForAFlatColour) {
    EXPECT_EQ(count(pattern(DitherNone, 120)), 0);
    EXPECT_EQ(count(pattern(DitherNone, 136)), 256);
    // Binary thresholds each channel at 128 first: a dark grey that is nearer to the
    // palette's mid grey becomes black, a light one becomes white and then that grey.
    const Palette greyish{{0, 0, 0}, {150, 150, 150}};
    EXPECT_EQ(count(MapToPalette(flat(4, 4, 127, 127, 127), greyish, DitherBinary, {}, false)), 0);
    EXPECT_EQ(count(MapToPalette(flat(4, 4, 129, 129, 129), greyish, DitherBinary, {}, false)), 16);
    EXPECT_EQ(count(MapToPalette(flat(4, 4, 80, 80, 80), greyish, DitherNone, {}, false)), 16);
    EXPECT_EQ(count(MapToPalette(flat(4, 4, 80, 80, 80), greyish, DitherBinary, {}, false)), 0);
}

TEST(Dither, PatternsKeepTheToneOnAverage) {
    // Over whole tiles, the share of white equals the grey's place between black and white
    // to within one cell of the tile.
    for (int32_t mode : {DitherOrdered, DitherHalftone, DitherForwardDiagonal, DitherBackwardDiagonal,
                         DitherHorizontal, DitherVertical, DitherOdd, DitherEven}) {
        const int cells = DitherTileOf(mode).width * DitherTileOf(mode).height;
        for (int v : {16, 64, 128, 200, 240}) {
            const double share = count(pattern(mode, uint8_t(v))) / 256.0;
            EXPECT_NEAR(share, v / 255.0, 1.0 / cells + 1e-9) << "mode " << mode << " grey " << v;
        }
        EXPECT_EQ(count(pattern(mode, 0)), 0);
        EXPECT_EQ(count(pattern(mode, 255)), 256);
    }
}

TEST(Dither, LineScreensRunAlongTheirNames) {
    const int w = 16;
    const auto at = [w](const std::vector<uint8_t>& p, int x, int y) { return p[size_t(y * w + x)]; };
    const std::vector<uint8_t> rows = pattern(DitherHorizontal, 128);
    const std::vector<uint8_t> cols = pattern(DitherVertical, 128);
    const std::vector<uint8_t> down = pattern(DitherForwardDiagonal, 128);
    const std::vector<uint8_t> up = pattern(DitherBackwardDiagonal, 128);
    bool rowsAlternate = false, colsAlternate = false;
    for (int y = 0; y + 1 < 16; ++y)
        for (int x = 0; x + 1 < 16; ++x) {
            EXPECT_EQ(at(rows, x, y), at(rows, x + 1, y));      // each row one colour
            EXPECT_EQ(at(cols, x, y), at(cols, x, y + 1));      // each column one colour
            EXPECT_EQ(at(down, x, y), at(down, x + 1, y + 1));  // "\" lines
            EXPECT_EQ(at(up, x + 1, y), at(up, x, y + 1));      // "/" lines
            rowsAlternate |= at(rows, x, y) != at(rows, x, y + 1);
            colsAlternate |= at(cols, x, y) != at(cols, x + 1, y);
        }
    EXPECT_TRUE(rowsAlternate);
    EXPECT_TRUE(colsAlternate);
    // At half tone the lines are two pixels thick, four apart.
    EXPECT_EQ(count(rows), 128);
    EXPECT_EQ(at(rows, 0, 0) + at(rows, 0, 1) + at(rows, 0, 2) + at(rows, 0, 3), 2);
    EXPECT_EQ(at(rows, 0, 1), at(rows, 0, 2));
}

TEST(Dither, OddAndEvenAreTheTwoCheckerboards) {
    const std::vector<uint8_t> odd = pattern(DitherOdd, 128, 8, 8);
    const std::vector<uint8_t> even = pattern(DitherEven, 128, 8, 8);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) {
            const bool isOdd = (x + y) % 2 == 1;
            EXPECT_EQ(odd[size_t(y * 8 + x)], isOdd ? 1 : 0) << x << "," << y;
            EXPECT_EQ(even[size_t(y * 8 + x)], isOdd ? 0 : 1) << x << "," << y;
        }
}

TEST(Dither, OrderedIsScatteredHalftoneIsOneDot) {
    // At a quarter tone Bayer scatters the dark pixels on a lattice, every one alone;
    // the halftone cell gathers them into one round dot in each 8 x 8 cell.
    const int w = 16;
    const auto components = [w](const std::vector<uint8_t>& p, uint8_t value) {
        std::vector<bool> seen(p.size(), false);
        int n = 0;
        for (size_t i = 0; i < p.size(); ++i) {
            if (p[i] != value || seen[i]) continue;
            ++n;
            std::queue<size_t> todo;
            todo.push(i);
            seen[i] = true;
            while (!todo.empty()) {
                const size_t k = todo.front();
                todo.pop();
                const int x = int(k % w), y = int(k / w);
                const int dx[4] = {1, -1, 0, 0}, dy[4] = {0, 0, 1, -1};
                for (int d = 0; d < 4; ++d) {
                    const int nx = x + dx[d], ny = y + dy[d];
                    if (nx < 0 || ny < 0 || nx >= w || ny >= w) continue;
                    const size_t j = size_t(ny * w + nx);
                    if (p[j] == value && !seen[j]) seen[j] = true, todo.push(j);
                }
            }
        }
        return n;
    };
    const std::vector<uint8_t> bayer = pattern(DitherOrdered, 191);
    const std::vector<uint8_t> dots = pattern(DitherHalftone, 191);
    EXPECT_EQ(components(bayer, 0), 256 - count(bayer)); // every dark pixel on its own
    EXPECT_EQ(components(dots, 0), 4);                   // one dot per cell
    // The dot sits at the cell's centre.
    EXPECT_EQ(dots[size_t(3 * w + 3)], 0);
    EXPECT_EQ(dots[size_t(4 * w + 4)], 0);
    EXPECT_EQ(dots[0], 1);
}

TEST(Dither, GreyTakesTheLuminance) {
    // Pure green is brighter than pure blue: on four greys it lands two steps higher.
    const Palette greys = FixedGreyPalette(4);
    EXPECT_EQ(MapToPalette(flat(2, 2, 0, 255, 0), greys, DitherNone, {}, true)[0], 2); // 150
    EXPECT_EQ(MapToPalette(flat(2, 2, 0, 0, 255), greys, DitherNone, {}, true)[0], 0); // 29
    EXPECT_EQ(Luminance(255, 255, 255), 255);
    EXPECT_EQ(Luminance(0, 255, 0), 150);
}

TEST(Dither, CancelStopsTheMapping) {
    int asked = 0;
    const auto result = MapToPalette(flat(64, 200, 1, 2, 3), kBlackWhite, DitherOrdered, {255, 255, 255},
                                     false, [&asked] { return ++asked > 2; });
    EXPECT_TRUE(result.empty());
    EXPECT_EQ(asked, 3);
}

} // namespace
} // namespace ostrivex
