// The preset kernels of the user filter dialog, the parsing of kernel strings, and the
// mapping between a kernel and the dialog's 5 x 5 grid.
#include "pixel/filtermask.h"

#include <gtest/gtest.h>

namespace ostrivex {
namespace {

TEST(FilterMask, PresetsParseIntoTheirKernels) {
    FilterMask m;
    ASSERT_TRUE(ParseFilterPreset(m, 0)); // "Blur"
    EXPECT_EQ(m.Mask, (MaskArray{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}));
    EXPECT_EQ(m.Div, 9);
    EXPECT_EQ(m.BiasR, 0);

    ASSERT_TRUE(ParseFilterPreset(m, 1)); // "Blur more": 25 elements make a 5 x 5 kernel
    EXPECT_EQ(m.size(), 5);
    EXPECT_EQ(m.Mask[4], (std::vector<int32_t>{1, 1, 1, 1, 1}));
    EXPECT_EQ(m.Div, 25);

    ASSERT_TRUE(ParseFilterPreset(m, 6)); // "Bump [NW]": row by row
    EXPECT_EQ(m.Mask, (MaskArray{{-1, -1, 0}, {-1, 4, 1}, {0, 1, 1}}));
    EXPECT_EQ(m.Div, 4);

    ASSERT_TRUE(ParseFilterPreset(m, 9)); // "Contour more"
    EXPECT_EQ(m.Mask, (MaskArray{{-2, -2, -2}, {-2, 16, -2}, {-2, -2, -2}}));
    EXPECT_EQ(m.Div, 1);
    EXPECT_EQ(m.BiasR, 255);
    EXPECT_EQ(m.BiasG, 255);
    EXPECT_EQ(m.BiasB, 255);

    ASSERT_TRUE(ParseFilterPreset(m, 13)); // "Engrave [SE]"
    EXPECT_EQ(m.Mask, (MaskArray{{0, 0, 0}, {0, -1, 0}, {0, 0, 1}}));
    EXPECT_EQ(m.BiasG, 128);

    // Every preset is a 3 x 3 kernel except "Blur more"; the names are the list's texts.
    for (int i = 0; i < kFilterPresetCount; ++i) {
        ASSERT_TRUE(ParseFilterPreset(m, i)) << i;
        EXPECT_EQ(m.size(), i == 1 ? 5 : 3) << i;
    }
    EXPECT_STREQ(kFilterPresets[0].name, "Blur");
    EXPECT_STREQ(kFilterPresets[3].name, "Soften more");
    EXPECT_STREQ(kFilterPresets[7].name, "Bump more [NW]");
    EXPECT_STREQ(kFilterPresets[11].name, "Contour more [soft]");
    EXPECT_STREQ(kFilterPresets[12].name, "Emboss [SE]");
    EXPECT_STREQ(kNoPresetText, "<None>");

    // Outside the list: refused, record untouched.
    const FilterMask before = m;
    EXPECT_FALSE(ParseFilterPreset(m, 14));
    EXPECT_FALSE(ParseFilterPreset(m, -1));
    EXPECT_EQ(m, before);
}

TEST(FilterMask, KernelStringsMustBeSquareWholeNumbers) {
    FilterMask m;
    ASSERT_TRUE(ParseFilterStrings(m, " 2| -3|+4|5|6|7|8|9|10", "3|1|-2|300"));
    EXPECT_EQ(m.Mask, (MaskArray{{2, -3, 4}, {5, 6, 7}, {8, 9, 10}}));
    EXPECT_EQ(m.Div, 3);
    EXPECT_EQ(m.BiasR, 1);
    EXPECT_EQ(m.BiasG, -2);
    EXPECT_EQ(m.BiasB, 300);

    const FilterMask before = m;
    EXPECT_FALSE(ParseFilterStrings(m, "1|1|1|1|1|1|1|1", "9|0|0|0"));   // 8: no square
    EXPECT_FALSE(ParseFilterStrings(m, "1|1|x|1|1|1|1|1|1", "9|0|0|0")); // not a number
    EXPECT_FALSE(ParseFilterStrings(m, "1|1|1|1|1|1|1|1|1.5", "9|0|0|0"));
    EXPECT_FALSE(ParseFilterStrings(m, "1|1|1|1||1|1|1|1", "9|0|0|0"));  // empty element
    EXPECT_FALSE(ParseFilterStrings(m, "1|1|1|1|1|1|1|1|1", "9|0|0"));   // three parameters
    EXPECT_FALSE(ParseFilterStrings(m, "1|1|1|1|1|1|1|1|1", "99999999999|0|0|0"));
    EXPECT_EQ(m, before);

    EXPECT_EQ(SplitString("a||b", "|"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(SplitString("", "|"), (std::vector<std::string>{""}));
}

TEST(FilterMask, GridHoldsAThreeByThreeKernelInItsCentre) {
    FilterMask m;
    ASSERT_TRUE(ParseFilterPreset(m, 6)); // Bump [NW]
    const MaskGrid g = GridFromMask(m.Mask);
    const MaskGrid want = {0, 0,  0,  0, 0,  //
                           0, -1, -1, 0, 0,  //
                           0, -1, 4,  1, 0,  //
                           0, 0,  1,  1, 0,  //
                           0, 0,  0,  0, 0};
    EXPECT_EQ(g, want);
    EXPECT_EQ(MaskSum(g), 4);

    // The inner nine make a 3 x 3 kernel again.
    MaskArray back;
    ASSERT_TRUE(MaskFromGrid(g, back));
    EXPECT_EQ(back, m.Mask);

    // One non-zero cell on the outer ring makes the whole grid the kernel.
    MaskGrid outer = g;
    outer[4 * 5 + 0] = 7; // row 4, column 0
    ASSERT_TRUE(MaskFromGrid(outer, back));
    ASSERT_EQ(back.size(), 5u);
    EXPECT_EQ(back[4][0], 7);
    EXPECT_EQ(back[1][1], -1);
    EXPECT_EQ(back[2][2], 4);

    // An all-zero grid is no kernel; the output stays as it was.
    const MaskArray kept = back;
    EXPECT_FALSE(MaskFromGrid(MaskGrid{}, back));
    EXPECT_EQ(back, kept);
}

} // namespace
} // namespace ostrivex
