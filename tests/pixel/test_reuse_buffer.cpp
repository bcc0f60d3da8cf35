// Filters that build their result in the object's own buffer (SetReuseBuffer) give the
// very bytes of the copying path, guard band included, for every kind of selection; the
// reads of the neighbourhood filters still see the source rows; and the object's buffer
// is handed over (empty afterwards) only when the flag is on.
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

// Every tone filter, and more settings of some of them.
std::vector<Case> pointFilters() {
    std::vector<Case> cases = toneFilters();
    const std::vector<Case> more = {
        {"BRIGHTNESS+", [](cBitFilter& f) { return f.BRIGHTNESS(30); }},
        {"SATURATION50", [](cBitFilter& f) { return f.SATURATION(50); }},
        {"SATURATION37", [](cBitFilter& f) { return f.SATURATION(37); }},
        {"Contrast60", [](cBitFilter& f) { return f.Contrast(60); }},
        {"Contrast-30", [](cBitFilter& f) { return f.Contrast(-30); }},
        {"OLDPHOTO", [](cBitFilter& f) { return f.OLDPHOTO(); }},
        {"ReplaceHS2", [](cBitFilter& f) { return f.ReplaceHS(0x406080u, 0x20F010u, 60, 80, 50); }},
        {"ReplaceL2", [](cBitFilter& f) { return f.ReplaceL(0x406080u, 0x20F010u, 70, 40); }},
        {"RotateH2", [](cBitFilter& f) { return f.RotateH(90, 30); }},
        {"RotateL2", [](cBitFilter& f) { return f.RotateL(40, 3); }},
        {"StretchH2", [](cBitFilter& f) { return f.StretchH(30, 20, 50); }},
        {"SwapRGB2", [](cBitFilter& f) {
             return f.SwapRGB(2, 0, 1, true, false, true, false, true, false);
         }},
    };
    cases.insert(cases.end(), more.begin(), more.end());
    for (int32_t mode = 1; mode <= 5; ++mode)
        cases.push_back({"SwapBanks" + std::to_string(mode),
                         [mode](cBitFilter& f) { return f.SwapBanks(mode); }});
    for (int32_t mode = 0; mode <= 11; ++mode)
        cases.push_back({"ClassyColors" + std::to_string(mode),
                         [mode](cBitFilter& f) { return f.ClassyColors(mode); }});
    return cases;
}

// Every branch of the neighbourhood filters: the fast kernels, the slow per-byte rule, the
// unchanged result of a zero divisor, and reaches of one and two rows (Blurs).
std::vector<Case> neighbourhoodFilters() {
    return {
        {"Blurs1", [](cBitFilter& f) { return f.Blurs(1); }},
        {"Blurs2", [](cBitFilter& f) { return f.Blurs(2); }},
        {"SOFTEN30", [](cBitFilter& f) { return f.SOFTEN(30); }},
        {"SOFTEN80", [](cBitFilter& f) { return f.SOFTEN(80); }},
        {"SOFTEN105", [](cBitFilter& f) { return f.SOFTEN(105); }},   // divisor 0
        {"SOFTEN2000", [](cBitFilter& f) { return f.SOFTEN(2000); }}, // the slow rule
        {"SHARPEN10", [](cBitFilter& f) { return f.SHARPEN(10); }},
        {"SHARPEN40", [](cBitFilter& f) { return f.SHARPEN(40); }},
        {"SHARPEN108", [](cBitFilter& f) { return f.SHARPEN(108); }},
        {"SHARPEN500", [](cBitFilter& f) { return f.SHARPEN(500); }},
        {"EDGEENHANCE10", [](cBitFilter& f) { return f.EDGEENHANCE(10); }},
        {"EDGEENHANCE-1", [](cBitFilter& f) { return f.EDGEENHANCE(-1); }},
        {"EDGEENHANCE-300", [](cBitFilter& f) { return f.EDGEENHANCE(-300); }},
        {"DILATE", [](cBitFilter& f) { return f.DILATE(); }},
        {"ERODE", [](cBitFilter& f) { return f.ERODE(); }},
        {"RankFilterN4_0", [](cBitFilter& f) { return f.RankFilterN4(0); }},
        {"RankFilterN4_1", [](cBitFilter& f) { return f.RankFilterN4(1); }},
        {"RankFilterN4_2", [](cBitFilter& f) { return f.RankFilterN4(2); }},
        {"RankFilterND0", [](cBitFilter& f) { return f.RankFilterND(0); }},
        {"RankFilterND1", [](cBitFilter& f) { return f.RankFilterND(1); }},
        {"RankFilterND3", [](cBitFilter& f) { return f.RankFilterND(3); }},
        {"CONTOUR", [](cBitFilter& f) { return f.CONTOUR(200, 0x123456); }},
        {"RELIEF", [](cBitFilter& f) { return f.RELIEF(); }},
    };
}

struct Selection {
    std::string name;
    bool whole; // no region object: the whole image
    Region region;
};

// The selections of a w x h image (w, h at least 16).
std::vector<Selection> selections(int32_t w, int32_t h) {
    const Region full = Region::rect(0, 0, w, h);
    return {
        {"whole", true, {}},
        {"rectangle", false, Region::rect(5, 3, w - 11, h - 6)},
        {"ellipse", false, Region::ellipse(2, 1, w - 2, h - 2)},
        {"polygon", false, Region::polygon({{3, 2}, {w - 6, 5}, {w / 2, h - 2}, {1, h - 9}})},
        {"inverted ellipse", false, full.subtracted(Region::ellipse(6, 4, w - 7, h - 5))},
        {"one pixel", false, Region::rect(7, 9, 8, 10)},
        {"empty", false, Region()},
        {"image rectangle", false, full},
        {"left edge", false, Region::rect(0, 0, 6, h)},
        {"bottom right corner", false, Region::rect(w - 9, h - 7, w, h)},
        {"top row", false, Region::rect(3, 0, w - 3, 1)},
        {"ellipse touching every edge", false, Region::ellipse(0, 0, w, h)},
        {"two blocks", false, Region::rect(0, 0, 5, 5).united(Region::rect(w - 5, h - 5, w, h))},
    };
}

// Progress as raised, with a clock that moves 11 ms at every look so no step is skipped.
uint32_t gTicks = 0;
uint32_t steppingClock() { return gTicks += 11; }

struct Run {
    Bits result;
    Bits left;          // the object's buffer afterwards
    int32_t width = -1; // BitsWidth afterwards
    std::vector<int32_t> progress;
};

Run runOnce(const Bits& image, const Selection& sel, const Case& c, bool reuse) {
    cBitFilter f;
    f.SetBits(image);
    if (!sel.whole) f.BitsRegion(&sel.region);
    Run r;
    f.Progress = [&](int32_t& percent) { r.progress.push_back(percent); };
    f.SetReuseBuffer(reuse);
    gTicks = 0;
    const cBitFilter::ClockFunction saved = cBitFilter::clock;
    cBitFilter::clock = &steppingClock;
    r.result = c.op(f);
    cBitFilter::clock = saved;
    r.left = f.bits();
    r.width = f.BitsWidth();
    return r;
}

bool guardIsZero(const Bits& b) {
    for (int32_t y = -2; y < b.height() + 2; ++y)
        for (int32_t x = -2; x < b.width() + 2; ++x)
            if (x < 0 || y < 0 || x >= b.width() || y >= b.height())
                for (int c = 0; c < 4; ++c)
                    if (b(c, x, y) != 0) return false;
    return true;
}

void compareModes(const std::vector<Case>& cases, int32_t w, int32_t h, uint32_t seed) {
    const Bits image = patternBits(w, h, seed);
    for (const Selection& sel : selections(w, h))
        for (const Case& c : cases) {
            SCOPED_TRACE(c.name + " on " + sel.name);
            const Run copying = runOnce(image, sel, c, false);
            const Run reusing = runOnce(image, sel, c, true);
            EXPECT_TRUE(sameBits(copying.result, reusing.result));
            EXPECT_TRUE(guardIsZero(reusing.result));
            EXPECT_EQ(copying.progress, reusing.progress);
            // The copying path leaves the source; the reusing one hands it over but keeps
            // the sizes.
            EXPECT_TRUE(sameBits(image, copying.left));
            EXPECT_TRUE(reusing.left.empty());
            EXPECT_EQ(reusing.width, w);
        }
}

} // namespace

TEST(ReuseBuffer, PointFiltersGiveTheBytesOfTheCopyingPath) {
    compareModes(pointFilters(), 41, 29, 3);
}

// Spans longer than the scratch block the in-place point frame works through.
TEST(ReuseBuffer, PointFiltersOnLongRows) {
    compareModes(pointFilters(), 1100, 17, 5);
}

TEST(ReuseBuffer, NeighbourhoodFiltersGiveTheBytesOfTheCopyingPath) {
    compareModes(neighbourhoodFilters(), 41, 29, 7);
    compareModes(neighbourhoodFilters(), 16, 16, 8);
}

TEST(ReuseBuffer, OffByDefaultAndRestoredByTheScope) {
    cBitFilter f;
    EXPECT_FALSE(f.ReuseBuffer());
    {
        const cBitFilter::ReuseScope scope(f);
        EXPECT_TRUE(f.ReuseBuffer());
    }
    EXPECT_FALSE(f.ReuseBuffer());
    f.SetReuseBuffer(true);
    {
        const cBitFilter::ReuseScope scope(f);
    }
    EXPECT_TRUE(f.ReuseBuffer());
    // A filter that throws still restores the flag on the way out.
    f.SetReuseBuffer(false);
    f.SetBits(Bits(3, 3));
    try {
        const cBitFilter::ReuseScope scope(f);
        f.Blurs(5); // reaches past the guard band
        ADD_FAILURE() << "Blurs(5) on 3 x 3 did not throw";
    } catch (const std::out_of_range&) {
    }
    EXPECT_FALSE(f.ReuseBuffer());
    EXPECT_EQ(f.bits().width(), 3);
}

// Worked by hand: one pixel of a 3 x 2 image selected, inverted in place.
TEST(ReuseBuffer, InvertOnePixelInPlace) {
    const Bits image = makeBits(3, 2, {{10, 20, 30, 1}, {40, 50, 60, 2}, {70, 80, 90, 3},
                                       {100, 110, 120, 4}, {130, 140, 150, 5}, {0, 255, 9, 6}});
    cBitFilter f;
    f.SetBits(image);
    const Region one = Region::rect(1, 0, 2, 1);
    f.BitsRegion(&one);
    f.SetReuseBuffer(true);
    const Bits out = f.Invert();
    const Bits want = makeBits(3, 2, {{10, 20, 30, 1}, {215, 205, 195, 2}, {70, 80, 90, 3},
                                      {100, 110, 120, 4}, {130, 140, 150, 5}, {0, 255, 9, 6}});
    EXPECT_TRUE(sameBits(want, out));
    EXPECT_TRUE(f.bits().empty());
    EXPECT_EQ(f.BitsWidth(), 3);
    EXPECT_EQ(f.BitsHeight(), 2);
    // Given back, the next filter chains from it.
    f.SetBits(out);
    const Bits again = f.Invert();
    EXPECT_TRUE(sameBits(image, again));
}

// Worked by hand: DILATE of a 2 x 5 column with one bright pixel at row 1 reaches rows 0..2
// only. Were row 2 read after row 1 had been rewritten, the brightness would run down the
// whole column.
TEST(ReuseBuffer, DilateReadsTheSourceRows) {
    const Bits image = makeBits(2, 5, {{0, 0, 0, 1}, {0, 0, 0, 2},
                                       {200, 100, 50, 3}, {0, 0, 0, 4},
                                       {0, 0, 0, 5}, {0, 0, 0, 6},
                                       {0, 0, 0, 7}, {0, 0, 0, 8},
                                       {0, 0, 0, 9}, {0, 0, 0, 10}});
    cBitFilter f;
    f.SetBits(image);
    f.SetReuseBuffer(true);
    const Bits out = f.DILATE();
    const Bits want = makeBits(2, 5, {{200, 100, 50, 1}, {200, 100, 50, 2},
                                      {200, 100, 50, 3}, {200, 100, 50, 4},
                                      {200, 100, 50, 5}, {200, 100, 50, 6},
                                      {0, 0, 0, 7}, {0, 0, 0, 8},
                                      {0, 0, 0, 9}, {0, 0, 0, 10}});
    EXPECT_TRUE(sameBits(want, out));
}

// Worked by hand: Blurs(2) averages the eight pixels two steps away. In a 1 x 6 column with
// blue 80 at row 2 only rows 0 and 4 see it: 80 \ 8 = 10. Row 4 reads row 2 two rows up,
// after row 3 has been made, so the source must be kept two rows back.
TEST(ReuseBuffer, BlursTwoReadsTwoSourceRowsBack) {
    const Bits image = makeBits(1, 6, {{0, 0, 0, 11}, {0, 0, 0, 12}, {80, 0, 0, 13},
                                       {0, 0, 0, 14}, {0, 0, 0, 15}, {0, 0, 0, 16}});
    cBitFilter f;
    f.SetBits(image);
    f.SetReuseBuffer(true);
    const Bits out = f.Blurs(2);
    const Bits want = makeBits(1, 6, {{10, 0, 0, 11}, {0, 0, 0, 12}, {0, 0, 0, 13},
                                      {0, 0, 0, 14}, {10, 0, 0, 15}, {0, 0, 0, 16}});
    EXPECT_TRUE(sameBits(want, out));
}

// Filters outside the in-place frames ignore the flag: the object keeps its source.
TEST(ReuseBuffer, OtherFiltersLeaveTheBuffer) {
    const Bits image = patternBits(12, 10, 4);
    cBitFilter f;
    f.SetBits(image);
    f.SetReuseBuffer(true);
    const Bits flipped = f.Flip(true, false);
    EXPECT_TRUE(sameBits(image, f.bits()));
    EXPECT_EQ(flipped(0, 0, 0), image(0, 11, 0));
    const Bits embossed = f.EMBOSS(10);
    EXPECT_TRUE(sameBits(image, f.bits()));
    EXPECT_FALSE(embossed.empty());
}
