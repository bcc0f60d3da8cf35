// The ellipse and polygon rasterisers, against shapes worked out by hand from the
// pixel-centre rule.
#include "pixel/region.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace ostrivex;

namespace {

// The region's rows inside [0, w) x [0, h) as strings of '#' and '.'.
std::vector<std::string> picture(const Region& r, int w, int h) {
    std::vector<std::string> rows;
    for (int y = 0; y < h; ++y) {
        std::string s;
        for (int x = 0; x < w; ++x)
            s += r.contains(x, y) ? '#' : '.';
        rows.push_back(s);
    }
    return rows;
}

} // namespace

TEST(RegionShapes, EllipseRowsFromThePixelCentres) {
    // 6 x 4: half-axes 3 and 2 around (3, 2). Row 0 has centre dy = -1.5, so
    // (dx/3)^2 <= 1 - 0.5625 allows |dx| <= 1.98: columns 1..4. Row 1 (dy = -0.5) allows
    // |dx| <= 2.90: all six.
    Region e = Region::ellipse(0, 0, 6, 4);
    EXPECT_EQ(e.bands(), (std::vector<Band>{{0, 1, {{1, 5}}}, {1, 3, {{0, 6}}}, {3, 4, {{1, 5}}}}));
    // Reversed corners give the same ellipse; an offset box the same shape moved.
    EXPECT_EQ(Region::ellipse(6, 4, 0, 0), e);
    Region moved = e;
    moved.offset(10, -3);
    EXPECT_EQ(Region::ellipse(10, -3, 16, 1), moved);

    // Circle 5 x 5: doubled offsets X, Y in {-4, -2, 0, 2, 4}, in when X^2 + Y^2 <= 25.
    EXPECT_EQ(picture(Region::ellipse(0, 0, 5, 5), 5, 5),
              (std::vector<std::string>{".###.", "#####", "#####", "#####", ".###."}));
    // 8 x 2: Y = +-1, so X^2 * 4 <= 256 - 64 gives |X| <= 6.9 and X = 2x - 7: columns 1..6.
    EXPECT_EQ(Region::ellipse(0, 0, 8, 2).rects(), (std::vector<Rect>{{1, 0, 7, 2}}));
    // 7 x 3: X = 2x - 6, Y = 2y - 2. Row 1 (Y = 0): all. Rows 0 and 2: 9 X^2 <= 49 * 5 gives
    // X^2 <= 27.2, so |X| <= 4: columns 1..5.
    EXPECT_EQ(picture(Region::ellipse(0, 0, 7, 3), 7, 3),
              (std::vector<std::string>{".#####.", "#######", ".#####."}));
}

TEST(RegionShapes, EllipseDegenerateBoxes) {
    EXPECT_TRUE(Region::ellipse(2, 2, 2, 5).isEmpty());
    EXPECT_TRUE(Region::ellipse(2, 5, 9, 5).isEmpty());
    EXPECT_EQ(Region::ellipse(3, 4, 4, 5).rects(), (std::vector<Rect>{{3, 4, 4, 5}}));
    // One row or one column: the centre line is the axis, every pixel is in.
    EXPECT_EQ(Region::ellipse(0, 0, 5, 1).rects(), (std::vector<Rect>{{0, 0, 5, 1}}));
    EXPECT_EQ(Region::ellipse(0, 0, 1, 4).rects(), (std::vector<Rect>{{0, 0, 1, 4}}));
    // 2 x 2: X, Y = +-1, 4 + 4 <= 16.
    EXPECT_EQ(Region::ellipse(-1, -1, 1, 1).rects(), (std::vector<Rect>{{-1, -1, 1, 1}}));
}

TEST(RegionShapes, PolygonOfARectangleIsThatRectangle) {
    const Region want = Region::rect(1, 1, 5, 4);
    EXPECT_EQ(Region::polygon({{1, 1}, {5, 1}, {5, 4}, {1, 4}}), want);
    EXPECT_EQ(Region::polygon({{1, 4}, {5, 4}, {5, 1}, {1, 1}}), want);
    EXPECT_EQ(Region::polygon({{5, 4}, {1, 4}, {1, 1}, {5, 1}}), want);
    // A repeated closing point changes nothing.
    EXPECT_EQ(Region::polygon({{1, 1}, {5, 1}, {5, 4}, {1, 4}, {1, 1}}), want);
}

TEST(RegionShapes, PolygonTriangleExcludesCentresOnTheRightEdge) {
    // Hypotenuse x = 4 - (y + 0.5): pixel (3, 0), (2, 1), (1, 2), (0, 3) have their centres
    // on it, and it is the right edge of their rows.
    EXPECT_EQ(picture(Region::polygon({{0, 0}, {4, 0}, {0, 4}}), 5, 5),
              (std::vector<std::string>{"###..", "##...", "#....", ".....", "....."}));
    // The mirror image: the slanted edge is now the left edge and includes those centres.
    EXPECT_EQ(picture(Region::polygon({{4, 0}, {4, 4}, {0, 0}}), 5, 5),
              (std::vector<std::string>{"####.", ".###.", "..##.", "...#.", "....."}));
}

TEST(RegionShapes, StarHasAnOutsideCentreUnderAlternateFill) {
    // Pentagram through the pentagon (5,0) (10,4) (8,10) (2,10) (0,4), every second point.
    // Row crossings at y + 0.5 worked out edge by edge; the first pixel right of a crossing
    // xc is ceil(xc - 0.5). Row 4: 0.67, 3.65, 6.35, 9.33 -> [1,4) [6,9). Row 7: 2.75, 4.67,
    // 5.33, 7.25 -> [3,5) [5,7), which join.
    Region star = Region::polygon({{5, 0}, {8, 10}, {0, 4}, {10, 4}, {2, 10}});
    EXPECT_EQ(picture(star, 11, 11), (std::vector<std::string>{
                                         "...........",
                                         "...........",
                                         "....##.....",
                                         "....##.....",
                                         ".###..###..",
                                         "..#....#...",
                                         "...........",
                                         "...####....",
                                         "..##..##...",
                                         "..#....#...",
                                         "...........",
                                     }));
    EXPECT_FALSE(star.contains(5, 5));
    EXPECT_EQ(star.bounds(), (Rect{1, 2, 9, 10}));
    // A bow tie crossing itself at (3, 2): edges x = 1.5 (y + 0.5) and 6 - 1.5 (y + 0.5).
    EXPECT_EQ(picture(Region::polygon({{0, 0}, {6, 4}, {6, 0}, {0, 4}}), 6, 4),
              (std::vector<std::string>{"#....#", "##..##", "##..##", "#....#"}));
}

TEST(RegionShapes, PolygonDegenerateInputs) {
    EXPECT_TRUE(Region::polygon({}).isEmpty());
    EXPECT_TRUE(Region::polygon({{1, 1}, {5, 5}}).isEmpty());
    EXPECT_TRUE(Region::polygon({{0, 0}, {2, 2}, {4, 4}}).isEmpty());
    EXPECT_TRUE(Region::polygon({{0, 3}, {9, 3}, {4, 3}}).isEmpty());
    // A thin wedge keeps only the centres it covers: x < 1 - (y + 0.5) / 6 holds 0.5 for
    // rows 0 to 2 (0.92, 0.75, 0.58) and not from row 3 on (0.42).
    EXPECT_EQ(Region::polygon({{0, 0}, {1, 0}, {0, 6}}), Region::rect(0, 0, 1, 3));
}

TEST(RegionShapes, LargeEllipseMatchesThePerPixelTest) {
    // The row solver starts from a square root and corrects it; every pixel of a few odd
    // and even boxes must agree with the plain centre test in doubled coordinates.
    for (Rect box : {Rect{0, 0, 301, 157}, Rect{-40, 7, 260, 8}, Rect{3, -5, 4, 200},
                     Rect{0, 0, 1000, 1000}, Rect{0, 0, 999, 640}}) {
        const Region e = Region::ellipse(box.left, box.top, box.right, box.bottom);
        const int64_t a = box.right - box.left, b = box.bottom - box.top;
        int wrong = 0;
        for (int y = box.top - 1; y <= box.bottom; ++y)
            for (int x = box.left - 1; x <= box.right; ++x) {
                const int64_t xx = 2 * x + 1 - (box.left + box.right);
                const int64_t yy = 2 * y + 1 - (box.top + box.bottom);
                const bool in = y >= box.top && y < box.bottom && x >= box.left && x < box.right &&
                                xx * xx * b * b + yy * yy * a * a <= a * a * b * b;
                if (in != e.contains(x, y)) ++wrong;
            }
        EXPECT_EQ(wrong, 0) << box.left << "," << box.top << "," << box.right << "," << box.bottom;
    }
}
