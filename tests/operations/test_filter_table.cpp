// The rows of the filter dialog as data: titles, sliders, options, pickers, wells and frames
// of all 41 filters; the words that open the dialog; the thumbnail size; the hue of
// Colorize; the combo of the glass styles.
#include "operations/filter_table.h"
#include "pixel/fixedcommands.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using namespace ostrivex;

namespace {

struct ExpectedSlider {
    std::string label;
    int minimum, maximum, defaultValue;
    bool centred = false;
};

struct ExpectedRow {
    int number;
    std::string title;
    std::vector<ExpectedSlider> sliders = {};
    std::string option = {}; // "" for none
    bool optionOn = false;
    bool picker = false;
    int colours = kNoColours;
    FilterFrame frame = FilterFrame::None;
};

// Typed from the dialog's description, row by row.
// clang-format off
const std::vector<ExpectedRow> kExpected = {
    {0, "Colorize", {{"Hue", 0, 100, 0}, {"Saturation", 0, 100, 50}, {"Luminosity", 0, 100, 100}}},
    {1, "Brightness", {{"Level", -100, 250, 0}}},
    {2, "Contrast", {{"Level", -100, 250, 0}}},
    {3, "Saturation", {{"Level", -100, 250, 0}}},
    {4, "Gamma correction", {{"Gamma", 0, 200, 100, true}}},
    {5, "Diffuse", {{"Horizontal range", 0, 50, 2}, {"Vertical range", 0, 50, 2}}},
    {6, "Blur", {{"Level", 0, 2, 0}}},
    {7, "Halftone", {{"Radius", 1, 25, 1}, {"Definition", 0, 100, 50}, {"Intensity", 0, 100, 0}}},
    {8, "Pixelaze", {{"Pixel size", 1, 25, 2}}},
    {9, "Emboss", {{"Weight", 0, 50, 10}}},
    {10, "Engrave", {{"Weight", 0, 50, 10}}},
    {11, "Contour", {{"Weight", 0, 255, 255}}, "", false, false, 0},
    {12, "Sketch", {{"Weight", 0, 255, 255}}, "B/W", false, false, 0},
    {13, "Threshold", {{"Cut value", 0, 255, 128}}},
    {14, "Isolate", {{"Tolerance", 0, 200, 100}}, "", false, true, -1},
    {15, "Reduction", {{"Level", 0, 255, 0}}},
    {16, "Replace", {{"Tolerance", 0, 200, 100}}, "", false, true, -1},
    {17, "Replace Hue/Saturation", {{"Hue Tolerance", 0, 100, 50}, {"Sat. Tolerance", 0, 100, 50},
        {"Apply Tolerance", 0, 200, 100}}, "", false, true, -1},
    {18, "Replace Luminous", {{"Lum. Tolerance", 0, 100, 50}, {"Apply Tolerance", 0, 200, 100}},
        "", false, true, -1},
    {19, "Sharpen", {{"Level", 0, 100, 0}}},
    {20, "Soften", {{"Level", 0, 100, 0}}},
    {21, "Shift", {{"Shift", -255, 255, 0}, {"Tolerance", 0, 200, 100}}, "", false, true, 1},
    {22, "Hue rotation", {{"Offset", 0, 100, 0}, {"Saturation", 0, 100, 100}}},
    {23, "Grey rotation", {{"Offset", 0, 100, 0}, {"Steps", 0, 100, 25}}},
    {24, "Hue stretch", {{"Offset", 0, 100, 0}, {"Saturation", 0, 100, 100},
        {"Stretch factor", 0, 100, 0}}},
    {25, "RGB levels", {{"Red", -255, 255, 0}, {"Green", -255, 255, 0}, {"Blue", -255, 255, 0}}},
    {26, "RGB banks", {}, "", false, false, kNoColours, FilterFrame::Banks},
    {27, "Lens", {{"Diameter", 1, 100, 50}, {"Magnify factor", 0, 100, 50}}, "", false, true},
    {28, "Waves", {{"Frequency", 0, 100, 25}, {"Amplitude", 1, 100, 25},
        {"Start degree", 0, 360, 0}}},
    {29, "Bend", {{"Radius factor", -200, 200, 0}}, "Clean back", true},
    {30, "Fold", {{"Horizontal factor", -100, 100, 0}, {"Vertical factor", -100, 100, 0}},
        "Clean back", true},
    {31, "Rotate", {{"Degrees", -180, 180, 0}}, "Clean back", true},
    {32, "Stretch", {{"Horizontal factor", -100, 100, 0}, {"Vertical factor", -100, 100, 0}},
        "Clean back", true},
    {33, "Tile", {{"Factor", 2, 50, 2}}},
    {34, "Twirl", {{"Level", -100, 100, 0}, {"Offset degrees", -180, 180, 0}}, "Clean back", true},
    {35, "Grid", {{"Horizontal step", 1, 250, 25}, {"Vertical step", 1, 250, 25},
        {"Opacity", 0, 255, 128}}, "Force margins", true, false, 0},
    {36, "Light", {{"Extension", 1, 100, 50}, {"Intensity", 0, 500, 250},
        {"Definition", 0, 100, 0}}, "", false, true},
    {37, "Noise", {{"Intensity", 0, 100, 25}}, "Equalized", false},
    {38, "Scanlines", {{"Opacity", 0, 255, 128}}},
    {39, "Behind Glass", {}, "", false, false, kNoColours, FilterFrame::Glass},
    {40, "Behind Curtain", {}, "", false, false, kNoColours, FilterFrame::Curtain},
};
// clang-format on

TEST(FilterTable, EveryRowHasItsControls) {
    ASSERT_EQ(FilterTable().size(), 41u);
    ASSERT_EQ(kExpected.size(), 41u);
    for (const ExpectedRow& e : kExpected) {
        const FilterRow* row = FindFilterRow(e.number);
        ASSERT_NE(row, nullptr) << e.number;
        SCOPED_TRACE(e.title);
        EXPECT_EQ(row->number, e.number);
        EXPECT_EQ(std::string(row->title), e.title);
        ASSERT_EQ(row->sliders.size(), e.sliders.size());
        for (size_t i = 0; i < e.sliders.size(); ++i) {
            const FilterSliderRow& s = row->sliders[i];
            EXPECT_EQ(std::string(s.label), e.sliders[i].label);
            EXPECT_EQ(s.minimum, e.sliders[i].minimum) << s.label;
            EXPECT_EQ(s.maximum, e.sliders[i].maximum) << s.label;
            EXPECT_EQ(s.defaultValue, e.sliders[i].defaultValue) << s.label;
            EXPECT_EQ(s.centred, e.sliders[i].centred) << s.label;
            EXPECT_EQ(s.scale, 1.0);
            EXPECT_EQ(std::string(s.suffix), "");
        }
        EXPECT_EQ(std::string(row->optionLabel ? row->optionLabel : ""), e.option);
        if (row->optionLabel) {
            EXPECT_EQ(row->optionDefault, e.optionOn);
        }
        EXPECT_EQ(row->picker, e.picker);
        EXPECT_EQ(row->colours, e.colours);
        EXPECT_EQ(row->frame, e.frame);
        EXPECT_NE(row->run, nullptr);
    }
    EXPECT_EQ(FindFilterRow(-1), nullptr);
    EXPECT_EQ(FindFilterRow(41), nullptr);
}

TEST(FilterTable, TheCallsTakeTheDialogsValuesInTheirOrder) {
    // A 2 x 1 image: blue, green, red of (10, 20, 30) and (200, 100, 0).
    Bits image(2, 1);
    const uint8_t px[2][3] = {{10, 20, 30}, {200, 100, 0}};
    for (int x = 0; x < 2; ++x)
        for (int c = 0; c < 3; ++c)
            image.pixel(x, 0)[c] = px[x][c];
    cBitFilter f;
    f.SetBits(image);
    auto at = [](const Bits& b, int x, int c) { return int(b.pixel(x, 0)[c]); };

    // Brightness: each channel + s0, clamped.
    FilterValues v;
    v.s = {60, 0, 0};
    Bits out = FindFilterRow(1)->run(f, v);
    EXPECT_EQ(at(out, 0, 0), 70);
    EXPECT_EQ(at(out, 0, 2), 90);
    EXPECT_EQ(at(out, 1, 0), 255);
    EXPECT_EQ(at(out, 1, 1), 160);

    // RGB levels: red by s0, green by s1, blue by s2.
    v.s = {5, -30, 100};
    out = FindFilterRow(25)->run(f, v);
    EXPECT_EQ(at(out, 0, 2), 35);  // red 30 + 5
    EXPECT_EQ(at(out, 0, 1), 0);   // green 20 - 30, clamped
    EXPECT_EQ(at(out, 0, 0), 110); // blue 10 + 100
    EXPECT_EQ(at(out, 1, 0), 255);

    // Threshold with the cut at s0: (B + G + R) \ 3 is 20 and 100.
    v.s = {20, 0, 0};
    out = FindFilterRow(13)->run(f, v);
    EXPECT_EQ(at(out, 0, 0), 0);
    EXPECT_EQ(at(out, 1, 2), 255);

    // RGB banks: red from blue, green inverted, blue killed.
    v.sources = {0, 1, 0};
    v.invert = {false, true, false};
    v.kill = {false, false, true};
    out = FindFilterRow(26)->run(f, v);
    EXPECT_EQ(at(out, 0, 2), 10);
    EXPECT_EQ(at(out, 0, 1), 235);
    EXPECT_EQ(at(out, 0, 0), 0);
    EXPECT_EQ(at(out, 1, 2), 200);
    EXPECT_EQ(at(out, 1, 1), 155);

    // Gamma: the value is the slider less its offset, so 0 changes nothing.
    v.s = {0, 0, 0};
    out = FindFilterRow(4)->run(f, v);
    EXPECT_EQ(at(out, 0, 0), 10);
    EXPECT_EQ(at(out, 1, 1), 100);
    // -100 is black.
    v.s = {-100, 0, 0};
    out = FindFilterRow(4)->run(f, v);
    EXPECT_EQ(at(out, 1, 0), 0);
}

TEST(FilterTable, ColorizeHueFromTheSlider) {
    EXPECT_FLOAT_EQ(ColorizeHue(0), 0.0f);
    EXPECT_FLOAT_EQ(ColorizeHue(25), 1.5f);   // 60 / 40
    EXPECT_FLOAT_EQ(ColorizeHue(50), 3.0f);   // 120 / 40
    EXPECT_FLOAT_EQ(ColorizeHue(83), 4.975f); // round(199.2) = 199
    EXPECT_FLOAT_EQ(ColorizeHue(84), -0.95f); // round(201.6) = 202, less 240
    EXPECT_FLOAT_EQ(ColorizeHue(100), 0.0f);  // 240 - 240
}

TEST(FilterTable, GlassCombos) {
    EXPECT_EQ(GlassComboItems("slanting"), (std::vector<const char*>{"Light", "Tight"}));
    EXPECT_EQ(std::string(GlassComboItems("squary")[0]), "Large");
    ASSERT_EQ(GlassComboItems("squary").size(), 3u);
    EXPECT_EQ(std::string(GlassComboItems("squary")[2]), "Tight");
    EXPECT_EQ(GlassComboItems("vertical").size(), 2u);
}

// The word table itself is data; what is checked here is what lookups make of it: every
// word is found (none shadowed by an earlier entry or by a fixed command), the numbers are
// rows of the filter dialog, two pairs of words share a row, and near misses are not
// words.
TEST(FilterTable, DialogWords) {
    const auto& words = FilterDialogWords();
    EXPECT_EQ(words.size(), 42u);
    std::set<int> rows;
    for (const FilterDialogWord& w : words) {
        EXPECT_EQ(FilterDialogNumber(w.word), w.number) << w.word;
        EXPECT_EQ(FindFixedCommand(w.word), nullptr) << w.word;
        EXPECT_GE(w.number, 0) << w.word;
        EXPECT_LE(w.number, 40) << w.word;
        rows.insert(w.number);
    }
    // Rows 1 and 37 have two words each, and Threshold's row 13 none.
    EXPECT_EQ(rows.size(), 40u);
    EXPECT_EQ(rows.count(13), 0u);
    EXPECT_EQ(FilterDialogNumber("LIGHTCUSTOM"), 1);
    EXPECT_EQ(FilterDialogNumber("BRIGHTNESS"), 1);
    EXPECT_EQ(FilterDialogNumber("CUSTOMNOISE"), 37);
    EXPECT_EQ(FilterDialogNumber("ADDNOISE"), 37);
    EXPECT_EQ(FilterDialogNumber("CONTRAST"), 2);
    EXPECT_EQ(FilterDialogNumber("TALCOMPOWDER"), -1);
    EXPECT_EQ(FilterDialogNumber("HALFTONE"), -1); // the word is spelled HAFTONE
    EXPECT_EQ(FilterDialogNumber("brightness"), -1);
    EXPECT_EQ(FilterDialogNumber("WWAVES"), -1);
}

TEST(FilterTable, ThumbnailFitsTheBoxKeepingTheRatio) {
    EXPECT_EQ(FitThumbnail(320, 220), (ThumbSize{160, 110}));
    EXPECT_EQ(FitThumbnail(640, 480), (ThumbSize{147, 110})); // 146.67
    EXPECT_EQ(FitThumbnail(1000, 100), (ThumbSize{160, 16}));
    EXPECT_EQ(FitThumbnail(200, 110), (ThumbSize{160, 88}));
    EXPECT_EQ(FitThumbnail(320, 22), (ThumbSize{160, 11}));
    EXPECT_EQ(FitThumbnail(6000, 4000), (ThumbSize{160, 107})); // 106.67
    // A picture that fits keeps its size.
    EXPECT_EQ(FitThumbnail(100, 50), (ThumbSize{100, 50}));
    EXPECT_EQ(FitThumbnail(160, 110), (ThumbSize{160, 110}));
    EXPECT_EQ(FitThumbnail(2, 1), (ThumbSize{2, 1}));
    // A thin picture keeps at least one pixel.
    EXPECT_EQ(FitThumbnail(10000, 1), (ThumbSize{160, 1}));
    EXPECT_EQ(FitThumbnail(1, 1000), (ThumbSize{1, 110}));
    EXPECT_EQ(FitThumbnail(0, 10), (ThumbSize{0, 0}));
}

} // namespace
