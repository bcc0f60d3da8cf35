#include "pixel/histogram.h"

#include "pixel_test_util.h"

#include <gtest/gtest.h>

using namespace ostrivex;
using ostrivex::test::makeBits;

namespace {

// The levels whose count is not zero, as level -> count pairs.
std::vector<std::pair<int, int32_t>> used(const HistogramTables& h, int channel) {
    std::vector<std::pair<int, int32_t>> out;
    for (int v = 0; v < 256; ++v)
        if (h.Counts[size_t(channel)][size_t(v)])
            out.push_back({v, h.Counts[size_t(channel)][size_t(v)]});
    return out;
}

using Levels = std::vector<std::pair<int, int32_t>>;

} // namespace

TEST(Histogram, CountsSumsAndAveragesOfAKnownImage) {
    // Pixels as blue, green, red. Luminosity 0.113 b + 0.586 g + 0.301 r, rounded:
    //   (0,0,0) 0; (255,255,255) 255; (10,20,30) 1.13 + 11.72 + 9.03 = 21.88 -> 22;
    //   (100,0,0) 11.3 -> 11; (0,0,100) 30.1 -> 30; (0,100,0) 58.6 -> 59.
    Bits img = makeBits(3, 2,
                        {{0, 0, 0, 77},
                         {255, 255, 255, 1},
                         {10, 20, 30, 2},
                         {100, 0, 0},
                         {0, 0, 100},
                         {0, 100, 0}});
    // The guard band is not part of the image.
    img(0, -1, 0) = 200;
    img(2, 3, 1) = 201;
    const HistogramTables h = BuildHistogram(img);
    EXPECT_EQ(h.pixelCount(), 6);
    EXPECT_EQ(used(h, HistogramBlue), (Levels{{0, 3}, {10, 1}, {100, 1}, {255, 1}}));
    EXPECT_EQ(used(h, HistogramGreen), (Levels{{0, 3}, {20, 1}, {100, 1}, {255, 1}}));
    EXPECT_EQ(used(h, HistogramRed), (Levels{{0, 3}, {30, 1}, {100, 1}, {255, 1}}));
    EXPECT_EQ(used(h, HistogramLuminosity),
              (Levels{{0, 1}, {11, 1}, {22, 1}, {30, 1}, {59, 1}, {255, 1}}));
    EXPECT_EQ(h.Sums[HistogramBlue], 365);
    EXPECT_EQ(h.Sums[HistogramGreen], 375);
    EXPECT_EQ(h.Sums[HistogramRed], 385);
    EXPECT_EQ(h.Sums[HistogramLuminosity], 377);
    // 365/6 = 60.83 -> 61; 375/6 = 62.5 -> 62 (ties to even); 385/6 = 64.17 -> 64;
    // 377/6 = 62.83 -> 63.
    EXPECT_EQ(h.average(HistogramBlue), 61);
    EXPECT_EQ(h.average(HistogramGreen), 62);
    EXPECT_EQ(h.average(HistogramRed), 64);
    EXPECT_EQ(h.average(HistogramLuminosity), 63);
    EXPECT_EQ(h.largest(HistogramBlue), 3);
    EXPECT_EQ(h.largest(HistogramLuminosity), 1);
    EXPECT_DOUBLE_EQ(HistogramBarTop(1, 3), 100.0 - 100.0 / 3.0);
    EXPECT_DOUBLE_EQ(HistogramBarTop(3, 3), 0.0);
    EXPECT_DOUBLE_EQ(HistogramBarTop(0, 3), 100.0);
}

TEST(Histogram, OneColourGivesOneFullBar) {
    // (5, 6, 7): L = 0.565 + 3.516 + 2.107 = 6.188 -> 6.
    Bits img(4, 2);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x) {
            img(0, x, y) = 5;
            img(1, x, y) = 6;
            img(2, x, y) = 7;
        }
    const HistogramTables h = BuildHistogram(img);
    const int level[4] = {5, 6, 7, 6};
    for (int c = 0; c < 4; ++c) {
        EXPECT_EQ(used(h, c), (Levels{{level[c], 8}})) << "channel " << c;
        EXPECT_EQ(h.largest(c), 8);
        EXPECT_EQ(h.average(c), level[c]);
        EXPECT_DOUBLE_EQ(HistogramBarTop(h.Counts[size_t(c)][size_t(level[c])], h.largest(c)), 0.0);
    }
}

TEST(Histogram, WhiteAndEmptyImages) {
    // 255 * (0.113 + 0.586 + 0.301) is 255 up to rounding error: white stays 255.
    Bits white = makeBits(1, 1, {{255, 255, 255}});
    EXPECT_EQ(BuildHistogram(white).Counts[HistogramLuminosity][255], 1);
    const HistogramTables empty = BuildHistogram(Bits());
    EXPECT_EQ(empty.pixelCount(), 0);
    EXPECT_EQ(empty.average(HistogramRed), 0);
    EXPECT_EQ(empty.largest(HistogramRed), 0);
    EXPECT_DOUBLE_EQ(HistogramBarTop(0, 0), 100.0);
}

TEST(Histogram, Readouts) {
    EXPECT_EQ(FormatCountGrouped(0), "");
    EXPECT_EQ(FormatCountGrouped(7), "7");
    EXPECT_EQ(FormatCountGrouped(999), "999");
    EXPECT_EQ(FormatCountGrouped(1234), "1,234");
    EXPECT_EQ(FormatCountGrouped(100000), "100,000");
    EXPECT_EQ(FormatCountGrouped(24000000), "24,000,000");
    EXPECT_EQ(FormatSharePercent(0, 6), "0.00%");
    EXPECT_EQ(FormatSharePercent(1, 8), "12.50%");
    EXPECT_EQ(FormatSharePercent(1, 3), "33.33%");
    EXPECT_EQ(FormatSharePercent(2, 3), "66.67%");
    EXPECT_EQ(FormatSharePercent(6, 6), "100.00%");
    EXPECT_EQ(FormatSharePercent(0, 0), "0.00%");
}
