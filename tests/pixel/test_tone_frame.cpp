// The filter frame as every tone and colour filter must keep it: only pixels of the region
// change, the marker byte and the guard band never do, the object's own buffer stays the
// source, and Progress ends at 100.
#include "pixel/bitfilter.h"
#include "pixel/region.h"
#include "filter_test_util.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {
using Case = FilterCase;

// A source whose guard band is not zero, so a write there would show.
Bits markedSource() {
    Bits src = patternBits(11, 9, 5);
    for (int y = -2; y < 11; ++y)
        for (int x = -2; x < 13; ++x)
            if (x < 0 || y < 0 || x >= 11 || y >= 9)
                for (int c = 0; c < 4; ++c)
                    src(c, x, y) = uint8_t(31 * c + x + 7 * y + 100);
    return src;
}
} // namespace

TEST(ToneFrame, OnlyRegionPixelsChangeAndTheMarkerByteStays) {
    const Bits src = markedSource();
    const Region whole = Region::rect(0, 0, 11, 9);
    const Region ellipse = Region::ellipse(1, 0, 10, 8);
    ASSERT_FALSE(ellipse.isEmpty());
    for (const Case& c : toneFilters()) {
        cBitFilter f;
        f.SetBits(src);
        f.BitsRegion(&whole);
        const Bits full = c.op(f);
        EXPECT_TRUE(sameBits(src, f.GetBits())) << c.name << ": the object's buffer changed";
        int changed = 0;
        for (int y = -2; y < 11; ++y)
            for (int x = -2; x < 13; ++x) {
                const bool image = x >= 0 && y >= 0 && x < 11 && y < 9;
                for (int ch = 0; ch < 4; ++ch) {
                    if (!image || ch == 3)
                        ASSERT_EQ(full(ch, x, y), src(ch, x, y))
                            << c.name << " " << ch << "," << x << "," << y;
                    else
                        changed += full(ch, x, y) != src(ch, x, y);
                }
            }
        EXPECT_GT(changed, 0) << c.name << " changed nothing";

        // On an ellipse: the whole-image result inside, the source outside. The filters
        // on image statistics take them from the whole image, so this holds for them too.
        f.BitsRegion(&ellipse);
        Bits expected = src;
        for (int y = 0; y < 9; ++y)
            for (int x = 0; x < 11; ++x)
                if (ellipse.contains(x, y))
                    for (int ch = 0; ch < 3; ++ch)
                        expected(ch, x, y) = full(ch, x, y);
        EXPECT_TRUE(sameBits(expected, c.op(f))) << c.name << " on an ellipse";

        // One pixel.
        const Region one = Region::rect(4, 3, 5, 4);
        f.BitsRegion(&one);
        expected = src;
        for (int ch = 0; ch < 3; ++ch)
            expected(ch, 4, 3) = full(ch, 4, 3);
        EXPECT_TRUE(sameBits(expected, c.op(f))) << c.name << " on one pixel";
    }
}

TEST(ToneFrame, EmptyRegionChangesNothingAndStillReportsDone) {
    const Bits src = markedSource();
    const Region empty;
    for (const Case& c : toneFilters()) {
        cBitFilter f;
        f.SetBits(src);
        f.BitsRegion(&empty);
        std::vector<int32_t> reported;
        f.Progress = [&](int32_t& p) { reported.push_back(p); };
        EXPECT_TRUE(sameBits(src, c.op(f))) << c.name;
        ASSERT_FALSE(reported.empty()) << c.name;
        EXPECT_EQ(reported.back(), 100) << c.name;
    }
}
