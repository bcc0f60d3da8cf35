// The effect tree: its structure, what each node runs, and the dialog's scaling.
#include "effects_test_util.h"
#include "pixel/effects/effecttree.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace ostrivex;
using namespace ostrivex::test;
using namespace ostrivex::effects;

namespace {

TEST(EffectTree, HeadingsKeysAndPlaces) {
    const std::vector<EffectNode>& tree = EffectTree();
    ASSERT_EQ(tree.size(), 80u);
    std::set<int> headings;
    std::set<std::string> keys;
    for (const EffectNode& n : tree) {
        EXPECT_EQ(FindEffectNode(n.number), &n);
        if (n.isHeading()) headings.insert(n.number);
        EXPECT_TRUE(keys.insert(n.key).second) << "key " << n.key << " twice";
        // Every node hangs under an earlier heading, or under Waves.
        if (n.parent != 0) {
            const EffectNode* p = FindEffectNode(n.parent);
            ASSERT_NE(p, nullptr);
            EXPECT_LT(p->number, n.number);
            EXPECT_TRUE(p->isHeading() || p->number == 48) << n.number;
        } else {
            EXPECT_TRUE(n.isHeading()) << n.number;
        }
        EXPECT_EQ(n.caption != nullptr, n.hasDialog()) << n.number;
    }
    EXPECT_EQ(headings, (std::set<int>{1, 15, 26, 31, 52, 59, 63, 77}));
    EXPECT_STREQ(FindEffectNode(1)->key, "Adjustments");
    EXPECT_STREQ(FindEffectNode(15)->key, "Blur");
    EXPECT_STREQ(FindEffectNode(49)->label, "Simple");
    EXPECT_EQ(FindEffectNode(49)->parent, 48);
    EXPECT_STREQ(FindEffectNode(49)->caption, "Special Effects - (Block Waves)");
    // The crossing of 53 and 66.
    EXPECT_STREQ(FindEffectNode(53)->label, "Backdrop Removal");
    EXPECT_STREQ(FindEffectNode(53)->caption, "Special Effects - (Replace Colors)");
    EXPECT_STREQ(FindEffectNode(66)->label, "Replace Color");
    EXPECT_STREQ(FindEffectNode(66)->caption, "Special Effects - (Backdrop Removal)");
    EXPECT_EQ(FindEffectNode(0), nullptr);
    EXPECT_EQ(FindEffectNode(81), nullptr);
}

// Every value a node's slider can give lands inside its method's own ranges, in the
// method's count.
TEST(EffectTree, EverySliderValueFitsItsMethod) {
    for (const EffectNode& n : EffectTree()) {
        if (n.isHeading()) continue;
        const EffectMethod* m = NodeMethod(n);
        ASSERT_NE(m, nullptr) << n.number << " " << n.method;
        const int32_t most = EffectMaximum(n, 640, 480);
        for (int32_t v : {n.min, (n.min + most) / 2, most, n.defaultValue}) {
            if (!n.hasDialog()) v = 0;
            const std::vector<double> values = NodeValues(n, v, 0x123456, 0xFFFFFF);
            ASSERT_EQ(values.size(), m->args.size()) << n.number;
            for (size_t i = 0; i < values.size(); ++i) {
                if (m->args[i].kind == ArgKind::Picture) continue;
                EXPECT_GE(values[i], m->args[i].min) << n.number << " value " << v;
                EXPECT_LE(values[i], m->args[i].max) << n.number << " value " << v;
            }
        }
    }
}

TEST(EffectTree, DialogScaling) {
    auto values = [](int n, int v) { return NodeValues(*FindEffectNode(n), v, 0xAA, 0xBB); };
    EXPECT_EQ(values(3, 150), (std::vector<double>{2, 2, 2})); // rounded, ties to even
    EXPECT_EQ(values(3, 250), (std::vector<double>{2, 2, 2}));
    EXPECT_DOUBLE_EQ(values(4, 30)[0], 0.3);
    EXPECT_DOUBLE_EQ(values(5, 50)[0], 2.0);
    EXPECT_DOUBLE_EQ(values(25, 5)[0], 2.5);
    EXPECT_DOUBLE_EQ(values(54, -128)[0], -1.28);
    EXPECT_EQ(values(49, 5)[0], 2);
    EXPECT_EQ(values(74, 255)[0], 5);
    EXPECT_EQ(values(18, 0), (std::vector<double>{20}));
    EXPECT_EQ(values(76, 0), (std::vector<double>{40, 50, 40}));
    EXPECT_EQ(values(53, 9), (std::vector<double>{9, 0xBB, 0xAA})); // picked colour, then the box's
    EXPECT_EQ(values(62, 7), (std::vector<double>{7, 2}));           // Ice
    EXPECT_EQ(EffectMaximum(*FindEffectNode(69), 400, 300), 75);
    EXPECT_EQ(EffectMaximum(*FindEffectNode(2), 400, 300), 255);
}

TEST(EffectTree, NodesRunTheirMethods) {
    const Bits src = keyedPicture(31, 21, 4);
    clsTransForm t;
    t.SetTransparentColor(kTestKey);
    // 53 and 66 run the same method with the same values.
    Bits a, b;
    ASSERT_TRUE(ApplyEffectNode(t, 53, a, src, 90, 0x00FF00, 0x405060, kTestKey));
    ASSERT_TRUE(ApplyEffectNode(t, 66, b, src, 90, 0x00FF00, 0x405060, kTestKey));
    EXPECT_TRUE(sameBits(a, b));
    EXPECT_FALSE(sameBits(src, a));
    // Gold and Ice are told apart; the three flips differ.
    Bits gold, ice, h, v, both;
    ApplyEffectNode(t, 61, gold, src, 100, 0, 0, kTestKey);
    ApplyEffectNode(t, 62, ice, src, 100, 0, 0, kTestKey);
    EXPECT_FALSE(sameBits(gold, ice));
    ApplyEffectNode(t, 78, h, src, 0, 0, 0, kTestKey);
    ApplyEffectNode(t, 79, v, src, 0, 0, 0, kTestKey);
    ApplyEffectNode(t, 80, both, src, 0, 0, 0, kTestKey);
    EXPECT_FALSE(sameBits(h, v));
    Bits back;
    ApplyEffectNode(t, 79, back, h, 0, 0, 0, kTestKey);
    EXPECT_TRUE(sameBits(both, back));
    // Headings and numbers outside 2..80 do nothing.
    Bits untouched = patternBits(3, 3, 1);
    const Bits before = untouched;
    EXPECT_FALSE(ApplyEffectNode(t, 15, untouched, src, 0, 0, 0, kTestKey));
    EXPECT_FALSE(ApplyEffectNode(t, 1, untouched, src, 0, 0, 0, kTestKey));
    EXPECT_FALSE(ApplyEffectNode(t, 81, untouched, src, 0, 0, 0, kTestKey));
    EXPECT_TRUE(sameBits(before, untouched));
}

// Each slider moves its effect: a quarter and the middle of every dialog's range differ from
// its start, and five values along it give at least three different pictures (Contrast's
// scaling has four steps only; a blur's angle comes round at 360).
TEST(EffectTree, EverySliderChangesThePicture) {
    const Bits src = keyedPicture(96, 64, 8);
    for (const EffectNode& n : EffectTree()) {
        if (!n.hasDialog()) continue;
        SCOPED_TRACE(std::to_string(n.number) + " " + n.label);
        const int32_t most = EffectMaximum(n, src.width(), src.height());
        clsTransForm t;
        std::vector<Bits> out(5);
        const int32_t span = most - n.min;
        const int32_t values[5] = {n.min, n.min + span / 8, n.min + span / 4, n.min + span / 2, most};
        for (int i = 0; i < 5; ++i)
            ApplyEffectNode(t, n.number, out[size_t(i)], src, values[i], 0x2080F0, 0x808080, kTestKey);
        EXPECT_FALSE(out[0] == out[2]);
        EXPECT_FALSE(out[0] == out[3]);
        int distinct = 0;
        for (int i = 0; i < 5; ++i) {
            bool seen = false;
            for (int j = 0; j < i; ++j) seen = seen || out[size_t(j)] == out[size_t(i)];
            distinct += !seen;
        }
        EXPECT_GE(distinct, 3);
    }
}

} // namespace
