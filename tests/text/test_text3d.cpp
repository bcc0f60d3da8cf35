// 3D text: the running colours of the block, where the copies go, and the texture walk.
#include "text/draw/text3d.h"
#include "text/text_test_util.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {

constexpr uint32_t kWhite = 0xFFFFFF;

struct Block {
    Bits picture;
    int32_t front;
    float r1, g1, b1;
};

// A block of `thickness` from (r1, g1, b1) to (r2, g2, b2) on white, one pixel to the
// lower right per step unless told.
Block block(int thickness, float r1, float g1, float b1, float r2, float g2, float b2, float h = 10,
            float v = 10, const Bits& texture = Bits(), int w = 160, int hgt = 60) {
    Block run{Filled(w, hgt, 0), 0, r1, g1, b1};
    const QFont font = MakeTextFont({TestFontFamily, 30, 700});
    run.front = Draw3DText(run.picture, kWhite, font, thickness, run.r1, run.g1, run.b1, r2, g2, b2,
                           h, v, "HIM", !texture.empty(), texture);
    return run;
}

std::set<uint32_t> inked(const Bits& b) {
    std::set<uint32_t> c = Colours(b);
    c.erase(kWhite);
    return c;
}

} // namespace

TEST(Text3D, RunningColoursOfTheBlock) {
    // Five steps of 20 from black to red 100: the first colour itself is never drawn.
    Block r = block(5, 0, 0, 0, 100, 0, 0);
    EXPECT_EQ(inked(r.picture), (std::set<uint32_t>{20, 40, 60, 80, 100}));
    EXPECT_EQ(r.front, 100);
    EXPECT_FLOAT_EQ(r.r1, 100); // the call runs the first colour up to the second
    // Thickness 1: one copy, one step from the first colour, which is the second.
    r = block(1, 10, 10, 10, 60, 70, 80);
    EXPECT_EQ(inked(r.picture), (std::set<uint32_t>{packColour(60, 70, 80)}));
    // Equal colours: one colour for the whole block.
    r = block(7, 30, 90, 150, 30, 90, 150);
    EXPECT_EQ(inked(r.picture), (std::set<uint32_t>{packColour(30, 90, 150)}));
    // Steps that cross 0: a channel below 0 becomes 0 and runs on from there.
    r = block(4, 20, 0, 0, -20, 0, 0);
    EXPECT_EQ(inked(r.picture), (std::set<uint32_t>{10, 0}));
    // Above 255 nothing is clamped: red 260 and 270 carry into green.
    r = block(2, 250, 0, 0, 270, 0, 0);
    EXPECT_EQ(inked(r.picture), (std::set<uint32_t>{packColour(4, 1, 0), packColour(14, 1, 0)}));
    // Whole parts, not rounding: steps of 2.5 from 0.
    r = block(4, 0, 0, 0, 0, 0, 10);
    EXPECT_EQ(inked(r.picture), (std::set<uint32_t>{packColour(0, 0, 2), packColour(0, 0, 5),
                                                    packColour(0, 0, 7), packColour(0, 0, 10)}));
    // The packing borrows and carries between channels: -1 + 256 * 1 + 65536 * 256.
    EXPECT_EQ(RunningColour(-0.5f, 1.9f, 256.0f), 0x0000FFu);
}

TEST(Text3D, CopiesGoAlongTheSlantFromACentredStart) {
    const QFont font = MakeTextFont({TestFontFamily, 30, 700});
    TextStamp stamp("HIM", font);
    const int W = 160, H = 60;
    // x0 = round(W / 2 - text width / 2), then back by thickness * h / 2 (h = 20 / 10).
    const int x0 = int(std::nearbyint(W / 2.0 - stamp.textWidth() / 2.0));
    const int y0 = int(std::nearbyint(H / 2.0 - stamp.textHeight() / 2.0));
    // h = 2 and v = -1 per step; the block starts back by (5, -2.5), rounded to even.
    const int xb = x0 - 5, yb = int(std::nearbyint(y0 + 2.5));
    Bits want = Filled(W, H, kWhite);
    for (int i = 0; i < 5; ++i)
        stamp.Stamp(want, xb + 2 * i, yb - i, packColour(uint8_t(20 * (i + 1)), 0, 0));
    Block r = block(5, 0, 0, 0, 100, 0, 0, 20, -10);
    EXPECT_EQ(r.picture, want);
    // No block without thickness: only the cleared picture.
    r = block(0, 0, 0, 0, 100, 0, 0);
    EXPECT_EQ(r.picture, Filled(160, 60, kWhite));
    EXPECT_EQ(r.front, -1);
}

TEST(Text3D, TextureWalksColumnsOneShortOfItsSize) {
    // A 3 x 2 texture: ty wraps as it reaches 1, tx as it reaches 2, so only (0, 0) and
    // (1, 0) are ever read, column by column.
    Bits tex(3, 2);
    const uint32_t t[2][3] = {{0x000001, 0x000002, 0x000003}, {0x000004, 0x000005, 0x000006}};
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) {
            tex(0, x, y) = colourB(t[y][x]);
            tex(1, x, y) = colourG(t[y][x]);
            tex(2, x, y) = colourR(t[y][x]);
        }
    const Block plain = block(3, 0, 0, 200, 0, 0, 200, 0, 0);
    const Block textured = block(3, 0, 0, 200, 0, 0, 200, 0, 0, tex);
    const uint32_t front = packColour(0, 0, 200);
    int changed = 0;
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 160; ++x) {
            if (At(plain.picture, x, y) == front) {
                EXPECT_EQ(At(textured.picture, x, y), t[0][x % 2]) << x << "," << y;
                ++changed;
            } else {
                EXPECT_EQ(At(textured.picture, x, y), At(plain.picture, x, y));
            }
        }
    EXPECT_GT(changed, 100);
    // A 4 x 3 texture: rows 0 and 1, columns 0 to 2.
    Bits tex43(4, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            tex43(2, x, y) = uint8_t(10 * y + x + 1);
    const Block t43 = block(3, 0, 0, 200, 0, 0, 200, 0, 0, tex43);
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 160; ++x)
            if (At(plain.picture, x, y) == front)
                ASSERT_EQ(At(t43.picture, x, y), uint32_t(10 * (y % 2) + x % 3 + 1))
                    << x << "," << y;
    // Only the last colour is the front face: the slanted sides keep their colours.
    const Block sides = block(4, 0, 0, 0, 0, 0, 200, 10, 10, tex);
    EXPECT_GT(CountColour(sides.picture, packColour(0, 0, 50)), 0);
    EXPECT_EQ(CountColour(sides.picture, packColour(0, 0, 200)), 0);
}
