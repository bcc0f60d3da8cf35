#include "pixel/region.h"

#include <gtest/gtest.h>

#include <random>

using namespace ostrivex;

TEST(Region, AlgebraGivesCanonicalBands) {
    Region a = Region::rect(0, 0, 4, 4);
    Region b = Region::rect(2, 2, 6, 6);
    Region u = a.united(b);
    EXPECT_EQ(u.rects(), (std::vector<Rect>{{0, 0, 4, 2}, {0, 2, 6, 4}, {2, 4, 6, 6}}));
    EXPECT_EQ(a.intersected(b).rects(), (std::vector<Rect>{{2, 2, 4, 4}}));
    EXPECT_EQ(a.subtracted(b).rects(), (std::vector<Rect>{{0, 0, 4, 2}, {0, 2, 2, 4}}));
    EXPECT_EQ(a.xored(b).rects(),
              (std::vector<Rect>{{0, 0, 4, 2}, {0, 2, 2, 4}, {4, 2, 6, 4}, {2, 4, 6, 6}}));
    // Touching rectangles merge into one.
    EXPECT_EQ(Region::rect(0, 0, 2, 2).united(Region::rect(2, 0, 5, 2)).rects(),
              (std::vector<Rect>{{0, 0, 5, 2}}));
    EXPECT_EQ(Region::rect(0, 0, 2, 2).united(Region::rect(0, 2, 2, 3)).rects(),
              (std::vector<Rect>{{0, 0, 2, 3}}));
    EXPECT_TRUE(a.subtracted(a).isEmpty());
    EXPECT_TRUE(Region::rect(3, 3, 3, 9).isEmpty());
    EXPECT_EQ(Region::rect(4, 5, 1, 2).rects(), (std::vector<Rect>{{1, 2, 4, 5}}));
    EXPECT_EQ(u.bounds(), (Rect{0, 0, 6, 6}));
    Region moved = u;
    moved.offset(-1, 3);
    EXPECT_EQ(moved.bounds(), (Rect{-1, 3, 5, 9}));
    EXPECT_TRUE(moved.contains(-1, 3));
    EXPECT_FALSE(moved.contains(4, 3));
}

TEST(Region, DumpLoadRoundTripByteForByte) {
    Region r = Region::rect(0, 0, 4, 4).united(Region::rect(2, 2, 6, 6));
    std::vector<int32_t> d = r.dump();
    EXPECT_EQ(d, (std::vector<int32_t>{32, 1, 3, 48, 0, 0, 6, 6, 0, 0, 4, 2, 0, 2, 6, 4, 2, 4,
                                       6, 6}));
    EXPECT_EQ(Region::fromData(d), r);
    EXPECT_EQ(Region::fromData(d).dump(), d);
    // An absurd count is clamped to the rectangles present; short data is empty.
    d[2] = 1000000;
    EXPECT_EQ(Region::fromData(d), r);
    EXPECT_TRUE(Region::fromData(d.data(), 5).isEmpty());
    EXPECT_EQ(Region().dump(), (std::vector<int32_t>{32, 1, 0, 0, 0, 0, 0, 0}));
}

TEST(Region, OperationsAgreeWithPixelSets) {
    std::mt19937 rng(7);
    auto randomRegion = [&] {
        std::vector<Rect> rs;
        for (int i = 0; i < 6; ++i) {
            int l = rng() % 20, t = rng() % 20;
            rs.push_back({l, t, l + 1 + int(rng() % 8), t + 1 + int(rng() % 8)});
        }
        return Region::fromRects(rs);
    };
    for (int round = 0; round < 50; ++round) {
        Region a = randomRegion(), b = randomRegion();
        for (auto op : {Region::Op::And, Region::Op::Or, Region::Op::Xor, Region::Op::Diff}) {
            Region c = Region::combine(a, b, op);
            for (int y = -1; y < 30; ++y)
                for (int x = -1; x < 30; ++x) {
                    bool ia = a.contains(x, y), ib = b.contains(x, y);
                    bool want = op == Region::Op::And   ? ia && ib
                                : op == Region::Op::Or  ? ia || ib
                                : op == Region::Op::Xor ? ia != ib
                                                        : ia && !ib;
                    ASSERT_EQ(c.contains(x, y), want) << x << "," << y;
                }
            // Canonical form: no two touching bands with equal spans, no touching spans.
            const auto& bands = c.bands();
            for (size_t i = 0; i < bands.size(); ++i) {
                for (size_t s = 1; s < bands[i].spans.size(); ++s)
                    ASSERT_LT(bands[i].spans[s - 1].x2, bands[i].spans[s].x1);
                if (i) {
                    ASSERT_FALSE(bands[i - 1].bottom == bands[i].top &&
                                 bands[i - 1].spans == bands[i].spans);
                }
            }
        }
    }
}
