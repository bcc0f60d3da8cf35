// Properties every method of the effects library keeps, on random pictures with a key
// colour and at the ends of every value's range.
#include "effects_test_util.h"
#include "pixel/effects/methods.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

using namespace ostrivex;
using namespace ostrivex::test;
using namespace ostrivex::effects;

namespace {

// Value sets for a method: all at their minimum, all at their maximum, zero where the range
// holds it, and random ones; colours include the key itself, so an effect asked to paint
// the key colour is seen to refuse.
std::vector<std::vector<double>> valueSets(const EffectMethod& m, uint32_t seed) {
    std::mt19937 rng(seed);
    auto pick = [&](const MethodArg& a, int which) -> double {
        if (a.kind == ArgKind::Picture) return 0;
        if (a.kind == ArgKind::Colour) {
            const uint32_t colours[] = {uint32_t(kTestKey), 0u, 0xFFFFFFu, uint32_t(rng() & 0xFFFFFFu)};
            return colours[which % 4];
        }
        double v = 0;
        switch (which) {
        case 0: v = a.min; break;
        case 1: v = a.max; break;
        case 2: v = std::clamp(0.0, a.min, a.max); break;
        default: v = a.min + (a.max - a.min) * (rng() % 1000) / 999.0; break;
        }
        return a.kind == ArgKind::Int ? std::round(v) : v;
    };
    std::vector<std::vector<double>> sets;
    for (int which = 0; which < 5; ++which) {
        std::vector<double> v;
        for (const MethodArg& a : m.args) v.push_back(pick(a, which));
        // AlphaBlend clears its picture to the key colour and lays the source at a place:
        // at the origin the source covers it all.
        if (std::string(m.name) == "AlphaBlend") v[1] = v[2] = 0;
        sets.push_back(v);
    }
    return sets;
}

bool readsDest(const EffectMethod& m) { return std::string(m.name) == "bAlphaBlend"; }
bool movesKey(const EffectMethod& m) { return std::string(m.name) == "Flip"; }

// Runs a method into a fresh picture (pre-sized for AlphaBlend, which keeps dest's size).
Bits run(const EffectMethod& m, const Bits& src, const Bits& third, const std::vector<double>& v,
         int32_t key, Bits dest = Bits()) {
    if (dest.empty()) dest = Bits(src.width(), src.height());
    m.run(dest, src, &third, v, key);
    return dest;
}

class EveryMethod : public ::testing::TestWithParam<size_t> {
protected:
    const EffectMethod& method() const { return EffectMethods()[GetParam()]; }
};

TEST_P(EveryMethod, KeepsTheKeyAndReadsOnlyTheSource) {
    const EffectMethod& m = method();
    const Bits src = keyedPicture(23, 17, 11 + uint32_t(GetParam()));
    const Bits third = keyedPicture(23, 17, 99);
    // The same picture with garbage in its guard band: a method that read outside the
    // picture would give another result.
    Bits dirty = src;
    for (int y = -2; y < src.height() + 2; ++y)
        for (int x = -2; x < src.width() + 2; ++x)
            if (x < 0 || y < 0 || x >= src.width() || y >= src.height()) store32(dirty.pixel(x, y), 0x5A3C9F17u ^ uint32_t(x * 31 + y));
    const std::vector<std::vector<double>> sets = valueSets(m, 7);
    for (size_t i = 0; i < sets.size(); ++i) {
        SCOPED_TRACE(std::string(m.name) + " value set " + std::to_string(i));
        const Bits before = src;
        const Bits out = run(m, src, third, sets[i], kTestKey, readsDest(m) ? third : Bits());
        EXPECT_TRUE(sameBits(before, src)) << "the source changed";
        EXPECT_TRUE(guardIsZero(out));
        if (movesKey(m)) {
            // A mirror: twice gives the picture back.
            EXPECT_TRUE(sameBits(src, run(m, out, third, sets[i], kTestKey)));
        } else if (readsDest(m)) {
            EXPECT_TRUE(keepsKey(third, out, kTestKey));
        } else {
            EXPECT_TRUE(keepsKey(src, out, kTestKey));
        }
        EXPECT_TRUE(sameBits(out, run(m, dirty, third, sets[i], kTestKey, readsDest(m) ? third : Bits())))
            << "the result depends on pixels outside the picture";
        if (readsDest(m)) continue;
        // From the source only: a destination that already holds another effect's result
        // (or another size) gives the same result as a fresh one.
        const std::vector<double>& other = sets[(i + 1) % sets.size()];
        Bits reused = run(m, src, third, other, kTestKey);
        m.run(reused, src, &third, sets[i], kTestKey);
        EXPECT_TRUE(sameBits(out, reused)) << "the earlier run shows through";
        if (std::string(m.name) != "AlphaBlend") { // AlphaBlend keeps dest's size
            Bits odd = patternBits(5, 3, 4);
            m.run(odd, src, &third, sets[i], kTestKey);
            EXPECT_TRUE(sameBits(out, odd));
        }
    }
}

TEST_P(EveryMethod, WorksOnTinyPicturesAndWithoutKey) {
    const EffectMethod& m = method();
    for (const auto& [w, h] : {std::pair{1, 1}, std::pair{2, 1}, std::pair{1, 3}, std::pair{0, 0}, std::pair{3, 0}}) {
        for (uint32_t seed = 1; seed <= 2; ++seed) {
            Bits src = patternBits(w, h, seed);
            if (seed == 2 && w * h > 0) store32(src.pixel(0, 0), effects::wordOf(uint32_t(kTestKey)));
            const Bits third = patternBits(w, h, 5);
            for (const std::vector<double>& v : valueSets(m, seed)) {
                SCOPED_TRACE(std::string(m.name) + " " + std::to_string(w) + "x" + std::to_string(h));
                const Bits out = run(m, src, third, v, kTestKey, readsDest(m) ? third : Bits());
                EXPECT_EQ(out.width(), w);
                EXPECT_EQ(out.height(), h);
                if (!movesKey(m)) {
                    EXPECT_TRUE(keepsKey(readsDest(m) ? third : src, out, kTestKey));
                }
                const Bits plain = run(m, src, third, v, -1, readsDest(m) ? third : Bits());
                EXPECT_EQ(plain.width(), w);
            }
        }
    }
}

std::string methodName(const ::testing::TestParamInfo<size_t>& info) {
    return EffectMethods()[info.param].name;
}

INSTANTIATE_TEST_SUITE_P(Effects, EveryMethod, ::testing::Range<size_t>(0, EffectMethods().size()),
                         methodName);

TEST(EffectMethods, TheTableHoldsEachMethodOnceWithItsValues) {
    // 71 methods of the transform's table, RainDrops and IncreaseSize.
    EXPECT_EQ(EffectMethods().size(), 73u);
    for (const EffectMethod& m : EffectMethods()) {
        EXPECT_EQ(FindEffectMethod(m.name), &m) << m.name;
        for (const MethodArg& a : m.args) EXPECT_LE(a.min, a.max) << m.name << " " << a.name;
    }
    EXPECT_EQ(FindEffectMethod("Nothing"), nullptr);
}

TEST(EffectMethods, OnePictureAsBothIsRefused) {
    Bits b = patternBits(4, 4, 1);
    EXPECT_THROW(FindEffectMethod("Sepia")->run(b, b, nullptr, {}, -1), std::invalid_argument);
    EXPECT_THROW(FindEffectMethod("BlendMode")->run(b, patternBits(4, 4, 2), nullptr, {0, 1}, -1),
                 std::invalid_argument);
}

} // namespace
