#include "pixel/bitfilter.h"
#include "pixel/bits.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

using namespace ostrivex;
using namespace ostrivex::test;

TEST(Bits, LayoutGuardBandAndValueSemantics) {
    Bits b(3, 2);
    EXPECT_EQ(b.size(), size_t(7 * 6 * 4));
    EXPECT_EQ(b.stride(), size_t(7 * 4));
    // (0, 0, 0) lies after two guard rows and two guard pixels.
    EXPECT_EQ(b.offset(0, 0, 0), size_t((2 * 7 + 2) * 4));
    EXPECT_EQ(b.offset(3, -2, -2), size_t(3));
    EXPECT_EQ(b.offset(2, 4, 3), size_t(((3 + 2) * 7 + 6) * 4 + 2));
    for (size_t i = 0; i < b.size(); ++i) ASSERT_EQ(b.data()[i], 0);

    b(2, 1, 1) = 200;
    Bits copy = b;
    copy(2, 1, 1) = 7;
    EXPECT_EQ(b(2, 1, 1), 200) << "a copy must be deep";
    Bits moved = std::move(copy);
    EXPECT_EQ(moved(2, 1, 1), 7);
}

TEST(Bits, BitmapRecords) {
    Bits b = patternBits(5, 3);
    BitmapRecord rec;
    BitsBitmapRecord(rec, b, 5, 3);
    EXPECT_EQ(rec.header.biSize, 40u);
    EXPECT_EQ(rec.header.biWidth, 9);
    EXPECT_EQ(rec.header.biHeight, -7);
    EXPECT_EQ(rec.header.biPlanes, 1);
    EXPECT_EQ(rec.header.biBitCount, 32);
    ASSERT_EQ(rec.pixels.size(), b.size());
    EXPECT_TRUE(std::equal(rec.pixels.begin(), rec.pixels.end(), b.data()));

    BitmapRecordInit(rec, 5, 3);
    EXPECT_EQ(rec.header.biWidth, 5);
    EXPECT_EQ(rec.header.biHeight, -3);
    EXPECT_EQ(rec.pixels.size(), size_t(5 * 3 * 4));
}

namespace {
// Exposes the frame for the tests.
class FrameProbe : public cBitFilter {
public:
    using cBitFilter::RegionBounds;
    int32_t boxLeft() const { return boxLeft_; }
    int32_t boxRight() const { return boxRight_; }
    int32_t boxTop() const { return boxTop_; }
    int32_t boxBottom() const { return boxBottom_; }
    void step(int32_t y) { progressStep(y); }
};

uint32_t fakeNow = 0;
uint32_t fakeClock() { return fakeNow; }
} // namespace

TEST(BitFilter, WriteSetsDimensionsKeepsRegionAndBoxes) {
    FrameProbe f;
    Region r = Region::rect(1, 2, 4, 5);
    f.SetBits(Bits(6, 7));
    f.BitsRegion(&r);
    EXPECT_EQ(f.BitsWidth(), 6);
    EXPECT_EQ(f.BitsHeight(), 7);
    f.RegionBounds(1);
    EXPECT_EQ(f.boxLeft(), 2);
    EXPECT_EQ(f.boxRight(), 2);
    EXPECT_EQ(f.boxTop(), 3);
    EXPECT_EQ(f.boxBottom(), 3);
    f.SetBits(Bits(3, 2));
    EXPECT_EQ(f.BitsWidth(), 3);
    EXPECT_EQ(f.region(), &r);

    Region empty;
    f.BitsRegion(&empty);
    f.RegionBounds(0);
    EXPECT_LT(f.boxRight(), f.boxLeft());
}

TEST(BitFilter, ProgressThrottleAndFormula) {
    FrameProbe f;
    f.SetBits(Bits(2, 11)); // H - 1 = 10
    std::vector<int> seen;
    f.Progress = [&](int32_t& p) { seen.push_back(p); };
    auto saved = cBitFilter::clock;
    cBitFilter::clock = &fakeClock;
    fakeNow = 11; // 11 - 0 > 10: raises
    f.step(3);
    fakeNow = 21; // 21 - 11 = 10, not more: silent
    f.step(4);
    fakeNow = 22;
    f.step(7);
    cBitFilter::clock = saved;
    EXPECT_EQ(seen, (std::vector<int>{30, 70}));
}

TEST(BitFilter, BlackNewDocAndTakeFromPicture) {
    cBitFilter f;
    Bits src = patternBits(6, 5);
    f.SetBits(src);
    Region e = Region::fromRects({{1, 1, 3, 2}, {0, 2, 4, 3}});
    f.BitsRegion(&e);

    Bits filled = f.NewDoc(10, 20, 30);
    Bits expect = src;
    for (int y = 1; y <= 2; ++y)
        for (int x = 0; x <= 3; ++x) { // the whole box, region or not
            expect(0, x, y) = 30; expect(1, x, y) = 20; expect(2, x, y) = 10;
        }
    EXPECT_TRUE(sameBits(expect, filled));
    EXPECT_TRUE(sameBits(src, f.bits())) << "NewDoc must not change the buffer";

    f.BitsBlack();
    expect = src;
    for (int x = 1; x <= 2; ++x) for (int c = 0; c < 4; ++c) expect(c, x, 1) = 0;
    for (int x = 0; x <= 3; ++x) for (int c = 0; c < 4; ++c) expect(c, x, 2) = 0;
    EXPECT_TRUE(sameBits(expect, f.bits()));

    const uint8_t pic[2 * 2 * 4] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    f.BitsTakeFromPicture(pic, 2, 2);
    EXPECT_TRUE(sameBits(makeBits(2, 2, {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12},
                                         {13, 14, 15, 16}}),
                         f.bits()));
}
