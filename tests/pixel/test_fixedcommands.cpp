#include "pixel/fixedcommands.h"
#include "pixel/random.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {
Bits runWord(const char* word, const Bits& src, const Region* region) {
    cBitFilter f;
    f.SetBits(src);
    f.BitsRegion(region);
    const FixedCommand* c = FindFixedCommand(word);
    EXPECT_NE(c, nullptr) << word;
    return c ? c->run(f) : Bits();
}
} // namespace

TEST(FixedCommands, TableHasEveryWordOnce) {
    const char* words[] = {
        "FLIPH", "FLIPV", "INVERT", "GRAYSCALE", "RELIEF", "ERODE", "DILATE", "PAINTING",
        "THERMIQUE", "XBLACK", "PHOTOCOP", "OLDPHOTO", "EQUALIZE", "LIGHTSHARPEN",
        "HEAVYSHARPEN", "EDGEENHANCE", "ENHANCEWHITE", "ENHANCEBLACK", "LUMPLUS", "LUMMINUS",
        "LIGHTEMBOSS", "HEAVYEMBOSS", "LIGHTCONTOUR", "HEAVYCONTOUR", "LIGHTDIFFUSE",
        "HEAVYDIFFUSE", "LIGHTENGRAVE", "HEAVYENGRAVE", "LIGHTSOFTEN", "HEAVYSOFTEN",
        "LIGHTBLUR", "HEAVYBLUR", "LIGHTNOISE", "HEAVYNOISE", "LIGHTSATURATION",
        "HEAVYSATURATION", "WWAVES", "AADDSCANLINES", "BBRIGHTNESS", "FISHEYE",
        "CURTAINHORIZONTAL", "CURTAINVERTICAL", "CURTAINCLASSY", "CURTAINWHITY", "SLANTING",
        "HORIZONTAL", "VERTICAL", "SQUARY", "SOFTRED", "SOFTBLUE", "SOFTGREEN", "SOFTYELLOW",
        "PURPLE", "ORANGE", "RETRO", "WETPAPER", "SPOTTED", "HARDRED", "HARDBLUE",
        "HARDGREEN", "HARDYELLOW", "CYAN", "MAGENTA", "RGB2BRG", "RGB2GBR", "RGB2RBG",
        "RGB2BGR", "RGB2GRB", "SEPIATONE"};
    std::set<std::string> seen;
    for (const FixedCommand& c : FixedCommands()) EXPECT_TRUE(seen.insert(c.word).second) << c.word;
    EXPECT_EQ(seen.size(), std::size(words));
    for (const char* w : words) EXPECT_NE(FindFixedCommand(w), nullptr) << w;
    // Words are compared exactly: the dialog words and lower case are not fixed commands.
    EXPECT_EQ(FindFixedCommand("invert"), nullptr);
    EXPECT_EQ(FindFixedCommand("CUSTOMBLUR"), nullptr);
    EXPECT_EQ(FindFixedCommand("TALCOMPOWDER"), nullptr);
}

TEST(FixedCommands, EveryCommandKeepsSizeGuardBandAndOutsideOfSelection) {
    const Bits src = patternBits(9, 7, 3);
    const Region region = Region::rect(2, 2, 7, 5);
    for (const FixedCommand& c : FixedCommands()) {
        Randomize(5);
        const Bits out = runWord(c.word, src, &region);
        ASSERT_EQ(out.width(), 9) << c.word;
        ASSERT_EQ(out.height(), 7) << c.word;
        const bool flip = std::string(c.word).rfind("FLIP", 0) == 0;
        for (int y = -2; y < 9; ++y)
            for (int x = -2; x < 11; ++x) {
                const bool image = x >= 0 && y >= 0 && x < 9 && y < 7;
                if (image && (flip || region.contains(x, y))) continue;
                for (int ch = 0; ch < 4; ++ch)
                    ASSERT_EQ(out(ch, x, y), src(ch, x, y))
                        << c.word << " changed (" << ch << "," << x << "," << y << ")";
            }
    }
}

TEST(FixedCommands, WordsRunTheirFixedArguments) {
    const Bits px = makeBits(2, 2, {{10, 20, 30, 7}, {200, 100, 50, 9}, {0, 0, 0}, {255, 255, 255}});
    const Region all = Region::rect(0, 0, 2, 2);
    // INVERT: 255 - c, channel 3 kept.
    EXPECT_TRUE(sameBits(makeBits(2, 2, {{245, 235, 225, 7}, {55, 155, 205, 9}, {255, 255, 255},
                                         {0, 0, 0}}),
                         runWord("INVERT", px, &all)));
    // LUMMINUS brightens by 80 like LUMPLUS by 20 (clamped at 255).
    EXPECT_TRUE(sameBits(makeBits(2, 2, {{90, 100, 110, 7}, {255, 180, 130, 9}, {80, 80, 80},
                                         {255, 255, 255}}),
                         runWord("LUMMINUS", px, &all)));
    // RGB2BRG: channel 0 <- c1, 1 <- c2, 2 <- c0.
    EXPECT_TRUE(sameBits(makeBits(2, 2, {{20, 30, 10, 7}, {100, 50, 200, 9}, {0, 0, 0},
                                         {255, 255, 255}}),
                         runWord("RGB2BRG", px, &all)));
    // HARDRED keeps red only; CYAN keeps green and blue.
    EXPECT_TRUE(sameBits(makeBits(2, 2, {{0, 0, 30, 7}, {0, 0, 50, 9}, {0, 0, 0}, {0, 0, 255}}),
                         runWord("HARDRED", px, &all)));
    EXPECT_TRUE(sameBits(makeBits(2, 2, {{10, 20, 0, 7}, {200, 100, 0, 9}, {0, 0, 0},
                                         {255, 255, 0}}),
                         runWord("CYAN", px, &all)));
    // FLIPH mirrors the colours of each row; channel 3 stays in place.
    EXPECT_TRUE(sameBits(makeBits(2, 2, {{200, 100, 50, 7}, {10, 20, 30, 9}, {255, 255, 255},
                                         {0, 0, 0}}),
                         runWord("FLIPH", px, &all)));
}
