// The fast neighbourhood filters against slow references that follow each rule pixel by
// pixel: the box of the region's bounds with the margin, a point test per pixel, reads
// from the source (guard band included), writes to a copy, channel 3 untouched. Random
// images, several region shapes, parameters inside and outside the dialogs' ranges.
#include "pixel/bitfilter.h"
#include "pixel/filtermask.h"
#include "pixel/neighbourhood_rows.h"
#include "pixel/pixel_test_util.h"
#include "pixel/random.h"
#include "pixel/vbmath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace ostrivex {
namespace {

using test::sameBits;

struct Shape {
    std::string name;
    bool whole; // no region object: the whole image
    Region region;
};

std::vector<Shape> shapesFor(int w, int h) {
    std::vector<Shape> s;
    s.push_back({"whole", true, {}});
    s.push_back({"rect", false, Region::rect(0, 0, w, h)});
    s.push_back({"inner rect", false, Region::rect(1, 1, w - 1, h - 1)});
    s.push_back({"pixel", false, Region::rect(w / 2, h / 2, w / 2 + 1, h / 2 + 1)});
    // A disc and a diamond as pixel rows, and the image minus a rectangle (an inverted
    // selection), which leaves holes inside the box.
    std::vector<Rect> disc, diamond;
    const double cx = w / 2.0, cy = h / 2.0, rx = w / 2.0, ry = h / 2.0;
    for (int y = 0; y < h; ++y) {
        const double t = (y + 0.5 - cy) / ry;
        const double half = t * t < 1 ? rx * std::sqrt(1 - t * t) : 0;
        const int x0 = int(std::ceil(cx - half - 0.5)), x1 = int(std::floor(cx + half - 0.5)) + 1;
        if (x1 > x0) disc.push_back({std::max(x0, 0), y, std::min(x1, w), y + 1});
        const int d = std::abs(y - h / 2);
        if (w / 2 - d >= 0) diamond.push_back({d, y, std::max(d + 1, w - d), y + 1});
    }
    s.push_back({"disc", false, Region::fromRects(disc)});
    s.push_back({"ellipse", false, Region::ellipse(0, 0, w, h)});
    s.push_back({"triangle", false, Region::polygon({{0, 0}, {w, h / 2}, {w / 3, h}})});
    s.push_back({"diamond", false, Region::fromRects(diamond)});
    s.push_back({"inverted", false,
                 Region::rect(0, 0, w, h).subtracted(Region::rect(w / 3, h / 3, w - w / 3, h - h / 3))});
    return s;
}

// --- The references ---------------------------------------------------------------------

struct Frame {
    const Bits& src;
    const Region* rg;
    int W, H;
    Bits out;
    Frame(const Bits& s, const Region* r) : src(s), rg(r), W(s.width()), H(s.height()), out(s) {}
    bool in(int x, int y) const {
        return rg ? rg->contains(x, y) : (x >= 0 && y >= 0 && x < W && y < H);
    }
    Rect bounds() const { return rg ? rg->bounds() : Rect{0, 0, W, H}; }
    // Calls fn(x, y) for each pixel of the box (margin) inside the region.
    void each(int margin, const std::function<void(int, int)>& fn) const {
        const Rect b = bounds();
        for (int y = b.top + margin; y <= b.bottom - margin - 1; ++y)
            for (int x = b.left + margin; x <= b.right - margin - 1; ++x)
                if (in(x, y)) fn(x, y);
    }
    int s(int c, int x, int y) const { return src(c, x, y); }
    int sum8(int c, int x, int y, int l = 1) const {
        return s(c, x - l, y - l) + s(c, x, y - l) + s(c, x + l, y - l) + s(c, x - l, y) +
               s(c, x + l, y) + s(c, x - l, y + l) + s(c, x, y + l) + s(c, x + l, y + l);
    }
};

int clampI(long long v) { return int(v < 0 ? 0 : (v > 255 ? 255 : v)); }

Bits refBlurs(const Bits& src, const Region* rg, int level) {
    Frame f(src, rg);
    f.each(0, [&](int x, int y) {
        for (int c = 0; c < 3; ++c) f.out(c, x, y) = uint8_t(f.sum8(c, x, y, level) / 8);
    });
    return f.out;
}

Bits refSoften(const Bits& src, const Region* rg, int level) {
    Frame f(src, rg);
    const long long k = 101 - level;
    f.each(1, [&](int x, int y) {
        for (int c = 0; c < 3; ++c) {
            const long long n = k * f.s(c, x, y) + f.s(c, x - 1, y) + f.s(c, x, y - 1) +
                                f.s(c, x, y + 1) + f.s(c, x + 1, y);
            if (k + 4 == 0) continue; // division by zero: the statement fails
            const long long q = n / (k + 4);
            if (q >= 0 && q <= 255) f.out(c, x, y) = uint8_t(q); // else byte() fails
        }
    });
    return f.out;
}

Bits refSharpen(const Bits& src, const Region* rg, int level) {
    Frame f(src, rg);
    f.each(1, [&](int x, int y) {
        for (int c = 0; c < 3; ++c) {
            if (108 - level == 0) continue;
            const long long n = (124LL - level) * f.s(c, x, y) - 2LL * f.sum8(c, x, y);
            f.out(c, x, y) = uint8_t(clampI(n / (108 - level)));
        }
    });
    return f.out;
}

Bits refEdge(const Bits& src, const Region* rg, int level) {
    Frame f(src, rg);
    f.each(0, [&](int x, int y) {
        for (int c = 0; c < 3; ++c) {
            if (level + 1 == 0) continue;
            const long long n = (level + 9LL) * f.s(c, x, y) - f.sum8(c, x, y);
            f.out(c, x, y) = uint8_t(clampI(n / (level + 1)));
        }
    });
    return f.out;
}

// DILATE (max) or ERODE (min) of the 3 x 3 window.
Bits refMorph(const Bits& src, const Region* rg, bool dilate) {
    Frame f(src, rg);
    f.each(0, [&](int x, int y) {
        for (int c = 0; c < 3; ++c) {
            int m = f.s(c, x, y);
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx)
                    m = dilate ? std::max(m, f.s(c, x + dx, y + dy)) : std::min(m, f.s(c, x + dx, y + dy));
            f.out(c, x, y) = uint8_t(m);
        }
    });
    return f.out;
}

Bits refRank(const Bits& src, const Region* rg, int mode, bool diagonal) {
    Frame f(src, rg);
    const int off[4][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
    const int dia[4][2] = {{-1, -1}, {1, 1}, {1, -1}, {-1, 1}};
    f.each(1 - mode, [&](int x, int y) {
        for (int c = 0; c < 3; ++c) {
            int v = mode == 0 ? 255 : 0;
            if (mode == 0 || mode == 1) {
                auto take = [&](int p) { v = mode == 0 ? std::min(v, p) : std::max(v, p); };
                take(f.s(c, x, y));
                for (auto& o : diagonal ? dia : off) take(f.s(c, x + o[0], y + o[1]));
            }
            f.out(c, x, y) = uint8_t(v);
        }
    });
    return f.out;
}

Bits refContour(const Bits& src, const Region* rg, int weight, uint32_t colour) {
    Frame f(src, rg);
    f.each(0, [&](int x, int y) {
        int e[3];
        for (int c = 0; c < 3; ++c) e[c] = clampI(8 * f.s(c, x, y) - f.sum8(c, x, y) + 255);
        const bool paint = (e[0] + e[1] + e[2]) / 3 >= weight;
        f.out(0, x, y) = paint ? colourB(colour) : uint8_t(e[0]);
        f.out(1, x, y) = paint ? colourG(colour) : uint8_t(e[1]);
        f.out(2, x, y) = paint ? colourR(colour) : uint8_t(e[2]);
    });
    return f.out;
}

Bits refRelief(const Bits& src, const Region* rg) {
    Frame f(src, rg);
    f.each(1, [&](int x, int y) {
        for (int c = 0; c < 3; ++c) {
            const int g = 2 * f.s(c, x + 1, y + 1) + f.s(c, x, y + 1) + f.s(c, x + 1, y) -
                          2 * f.s(c, x - 1, y - 1) - f.s(c, x, y - 1) - f.s(c, x - 1, y);
            f.out(c, x, y) = uint8_t(clampI(f.s(c, x, y) + g / 4));
        }
    });
    return f.out;
}

Bits refEmboss(const Bits& src, const Region* rg, int weight, bool engrave) {
    Frame f(src, rg);
    const float w = float(weight / 10.0);
    f.each(0, [&](int x, int y) {
        for (int c = 0; c < 3; ++c) {
            if (x == f.W - 1) {
                f.out(c, x, y) = f.out(c, x - 1, y);
            } else if (y == f.H - 1) {
                f.out(c, x, y) = f.out(c, x, y - 1);
            } else {
                int d = f.s(c, x, y) - f.s(c, x + 1, y + 1);
                if (engrave) d = -d;
                const double v = std::nearbyint(std::fabs(d * double(w) + 128));
                if (v >= 0 && v <= 255) f.out(c, x, y) = uint8_t(v);
            }
        }
    });
    return f.out;
}

Bits refMask(const Bits& src, const Region* rg, const std::vector<std::vector<int32_t>>& m,
             int div, int bR, int bG, int bB, bool keep) {
    Frame f(src, rg);
    const int u = int(m.size()) - 1, half = u / 2;
    const Rect b = f.bounds();
    int l = b.left - half, t = b.top - half, r = b.right - 1 - half, bo = b.bottom - 1 - half;
    if (keep) {
        l = std::max(l, 0);
        t = std::max(t, 0);
        r = std::min(r, f.W - 1 - u);
        bo = std::min(bo, f.H - 1 - u);
    }
    const int bias[3] = {bB, bG, bR};
    for (int y = t; y <= bo; ++y)
        for (int x = l; x <= r; ++x) {
            if (!f.in(x + half, y + half)) continue;
            for (int c = 0; c < 3; ++c) {
                long long sum = 0;
                for (int i = 0; i <= u; ++i)
                    for (int j = 0; j <= u; ++j) sum += (long long)m[j][i] * f.s(c, x + i, y + j);
                f.out(c, x + half, y + half) = uint8_t(clampI(bias[c] + sum / div));
            }
        }
    return f.out;
}

Bits refNoise(const Bits& src, const Region* rg, int intensity, bool equalized) {
    Frame f(src, rg);
    const double n = intensity * 2 + 1;
    f.each(0, [&](int x, int y) {
        double r[3];
        r[2] = Rnd();
        if (equalized) {
            r[1] = r[0] = r[2];
        } else {
            r[1] = Rnd();
            r[0] = Rnd();
        }
        for (int c = 0; c < 3; ++c)
            f.out(c, x, y) = uint8_t(clampI(vbRound(f.s(c, x, y) + (n * r[c] - intensity))));
    });
    return f.out;
}

Bits refDiffuse(const Bits& src, const Region* rg, int h, int v) {
    Frame f(src, rg);
    const Rect b = f.bounds();
    for (int y = b.top; y < b.bottom; ++y)
        for (int x = b.left; x < b.right; ++x) {
            const double r1 = Rnd(), r2 = Rnd();
            const int sx = vbRound(x + r1 * h - h / 2.0), sy = vbRound(y + r2 * v - v / 2.0);
            if (f.in(sx, sy))
                for (int c = 0; c < 3; ++c) f.out(c, x, y) = src(c, sx, sy);
        }
    return f.out;
}

// --- The comparisons --------------------------------------------------------------------

Bits randomImage(int w, int h, std::mt19937& rng) {
    Bits b(w, h);
    std::uniform_int_distribution<int> byte(0, 255), coin(0, 3);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int c = 0; c < 4; ++c)
                // Some flat runs among the noise, so that clamps and ties are reached too.
                b(c, x, y) = uint8_t(coin(rng) == 0 ? 128 : byte(rng));
    return b;
}

// Runs check(filter, src, region-or-null, label) on every image size and region shape.
void forEachCase(const std::function<void(cBitFilter&, const Bits&, const Region*,
                                          const std::string&)>& check) {
    std::mt19937 rng(2024);
    for (auto [w, h] : {std::pair{2, 2}, {7, 5}, {23, 11}, {67, 9}}) {
        const Bits src = randomImage(w, h, rng);
        for (const Shape& s : shapesFor(w, h)) {
            cBitFilter f;
            f.SetBits(src);
            const Region* rg = s.whole ? nullptr : &s.region;
            f.BitsRegion(rg);
            check(f, src, rg, std::to_string(w) + "x" + std::to_string(h) + " " + s.name);
        }
    }
}

TEST(NeighbourhoodReference, FixedFilters) {
    forEachCase([](cBitFilter& f, const Bits& src, const Region* rg, const std::string& at) {
        for (int l : {0, 1, 2}) EXPECT_TRUE(sameBits(refBlurs(src, rg, l), f.Blurs(l))) << at << " blur " << l;
        for (int l : {0, 1, 30, 80, 100, 101, 104, 105, 106, 300, -50})
            EXPECT_TRUE(sameBits(refSoften(src, rg, l), f.SOFTEN(l))) << at << " soften " << l;
        for (int l : {0, 10, 40, 100, 107, 108, 109, 500, -20})
            EXPECT_TRUE(sameBits(refSharpen(src, rg, l), f.SHARPEN(l))) << at << " sharpen " << l;
        for (int l : {0, 10, 118, 119, 120, 1000, -1, -2, -9, -10})
            EXPECT_TRUE(sameBits(refEdge(src, rg, l), f.EDGEENHANCE(l))) << at << " edge " << l;
        EXPECT_TRUE(sameBits(refMorph(src, rg, true), f.DILATE())) << at;
        EXPECT_TRUE(sameBits(refMorph(src, rg, false), f.ERODE())) << at;
        for (int mode : {0, 1, 2}) {
            EXPECT_TRUE(sameBits(refRank(src, rg, mode, false), f.RankFilterN4(mode))) << at << mode;
            EXPECT_TRUE(sameBits(refRank(src, rg, mode, true), f.RankFilterND(mode))) << at << mode;
        }
        for (int weight : {0, 128, 200, 255})
            EXPECT_TRUE(sameBits(refContour(src, rg, weight, 255255255u), f.CONTOUR(weight, 255255255)))
                << at << " contour " << weight;
        EXPECT_TRUE(sameBits(refRelief(src, rg), f.RELIEF())) << at;
        for (int weight : {0, 3, 5, 10, 17, 30, 50}) {
            EXPECT_TRUE(sameBits(refEmboss(src, rg, weight, false), f.EMBOSS(weight))) << at << weight;
            EXPECT_TRUE(sameBits(refEmboss(src, rg, weight, true), f.Engrave(weight))) << at << weight;
        }
    });
}

TEST(NeighbourhoodReference, MaskFilterPresetsAndRandomKernels) {
    std::mt19937 rng(99);
    forEachCase([&](cBitFilter& f, const Bits& src, const Region* rg, const std::string& at) {
        for (int p = 0; p < kFilterPresetCount; ++p) {
            FilterMask m;
            ASSERT_TRUE(ParseFilterPreset(m, p));
            for (bool keep : {false, true})
                EXPECT_TRUE(sameBits(refMask(src, rg, m.Mask, m.Div, m.BiasR, m.BiasG, m.BiasB, keep),
                                     f.MaskFilter(m, keep)))
                    << at << " preset " << p << " keep " << keep;
        }
        // Small coefficients keep the sums within 15 bits, larger ones go past them.
        std::uniform_int_distribution<int> small(-4, 4), coef(-20, 20), div(-40, 40), bias(-100, 300);
        for (int n : {1, 2, 3, 4, 5})
            for (int trial = 0; trial < 6; ++trial) {
                std::vector<std::vector<int32_t>> m(static_cast<size_t>(n), std::vector<int32_t>(static_cast<size_t>(n)));
                for (auto& row : m)
                    for (auto& v : row) v = trial % 2 ? coef(rng) : small(rng);
                int d = div(rng);
                if (d == 0) d = 3;
                const int bR = bias(rng), bG = bias(rng), bB = bias(rng);
                for (bool keep : {false, true})
                    EXPECT_TRUE(sameBits(refMask(src, rg, m, d, bR, bG, bB, keep),
                                         f.MaskFilter(m, d, bR, bG, bB, keep)))
                        << at << " n " << n << " trial " << trial;
            }
        // Sums beyond 2^24 (the double path) with a divisor of matching size.
        const std::vector<std::vector<int32_t>> big = {
            {-700000, 300000, 0}, {900000, 1200000, -5}, {0, 650001, -310000}};
        EXPECT_TRUE(sameBits(refMask(src, rg, big, 1234567, 3, -2, 1, false),
                             f.MaskFilter(big, 1234567, 3, -2, 1, false)))
            << at << " large kernel";
    });
}

TEST(NeighbourhoodReference, RandomFilters) {
    forEachCase([](cBitFilter& f, const Bits& src, const Region* rg, const std::string& at) {
        for (int intensity : {0, 20, 100})
            for (bool eq : {false, true}) {
                Randomize(31);
                const Bits want = refNoise(src, rg, intensity, eq);
                Randomize(31);
                EXPECT_TRUE(sameBits(want, f.NOISE(intensity, eq))) << at << " noise " << intensity;
            }
        for (auto [h, v] : {std::pair{0, 0}, {5, 10}, {10, 30}, {50, 1}}) {
            Randomize(8);
            const Bits want = refDiffuse(src, rg, h, v);
            Randomize(8);
            EXPECT_TRUE(sameBits(want, f.DIFFUSE(h, v))) << at << " diffuse " << h << "," << v;
        }
    });
}

TEST(NeighbourhoodReference, ReciprocalsDivideExactly) {
    // Every divisor from 2 up to those the fixed filters use in their dialog ranges has a
    // reciprocal (1 would need a multiplier of 2^16), and every reciprocal found divides
    // every numerator of its range exactly.
    for (uint32_t d = 1; d <= 300; ++d)
        for (uint32_t nmax : {255u, 26775u, 31620u, 32767u}) {
            nb::Recip16 r;
            const bool found = nb::findRecip16(d, nmax, r);
            if (d >= 2 && d <= 108) {
                EXPECT_TRUE(found) << d << " " << nmax;
            }
            if (!found) continue;
            for (uint32_t n = 0; n <= nmax; ++n)
                ASSERT_EQ(((n * r.m) >> 16) >> r.shift, n / d) << n << " / " << d;
        }
    nb::Recip16 r;
    EXPECT_FALSE(nb::findRecip16(0, 100, r));
    EXPECT_FALSE(nb::findRecip16(1, 100, r));
    EXPECT_FALSE(nb::findRecip16(3, 70000, r));
}

} // namespace
} // namespace ostrivex
