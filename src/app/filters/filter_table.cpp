#include "app/filters/filter_table.h"

#include <algorithm>
#include <cmath>

namespace ostrivex {

namespace {

using Sliders = std::vector<FilterSliderRow>;

#define CALL(text, expr) text, [](cBitFilter& f, const FilterValues& v) -> Bits { return expr; }

// Rows in number order. Where a row has colours, the wells come first in the call.
// "Pixelaze" is the title as the program has always shown it.
const std::vector<FilterRow> kRows = {
    {0, "Colorize",
     Sliders{{"Hue", 0, 100, 0}, {"Saturation", 0, 100, 50}, {"Luminosity", 0, 100, 100}}, nullptr,
     false, false, kNoColours, FilterFrame::None,
     CALL("COLORIZE(hue, s1 / 100, s2 / 100)",
          f.COLORIZE(ColorizeHue(v.s[0]), float(v.s[1] / 100.0), float(v.s[2] / 100.0)))},
    {1, "Brightness", Sliders{{"Level", -100, 250, 0}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("BRIGHTNESS(s0)", f.BRIGHTNESS(v.s[0]))},
    {2, "Contrast", Sliders{{"Level", -100, 250, 0}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("Contrast(s0)", f.Contrast(v.s[0]))},
    {3, "Saturation", Sliders{{"Level", -100, 250, 0}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("SATURATION(s0)", f.SATURATION(v.s[0]))},
    {4, "Gamma correction", Sliders{{"Gamma", 0, 200, 100, true}}, nullptr, false, false,
     kNoColours, FilterFrame::None, CALL("GammaCorrection(s0)", f.GammaCorrection(v.s[0]))},
    {5, "Diffuse", Sliders{{"Horizontal range", 0, 50, 2}, {"Vertical range", 0, 50, 2}}, nullptr,
     false, false, kNoColours, FilterFrame::None,
     CALL("DIFFUSE(s0, s1)", f.DIFFUSE(v.s[0], v.s[1]))},
    {6, "Blur", Sliders{{"Level", 0, 2, 0}}, nullptr, false, false, kNoColours, FilterFrame::None,
     CALL("Blurs(s0)", f.Blurs(v.s[0]))},
    {7, "Halftone",
     Sliders{{"Radius", 1, 25, 1}, {"Definition", 0, 100, 50}, {"Intensity", 0, 100, 0}}, nullptr,
     false, false, kNoColours, FilterFrame::None,
     CALL("HALFTONE(s0, s1, s2)", f.HALFTONE(v.s[0], v.s[1], v.s[2]))},
    {8, "Pixelaze", Sliders{{"Pixel size", 1, 25, 2}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("PIXELIZE(s0)", f.PIXELIZE(v.s[0]))},
    {9, "Emboss", Sliders{{"Weight", 0, 50, 10}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("EMBOSS(s0)", f.EMBOSS(v.s[0]))},
    {10, "Engrave", Sliders{{"Weight", 0, 50, 10}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("Engrave(s0)", f.Engrave(v.s[0]))},
    {11, "Contour", Sliders{{"Weight", 0, 255, 255}}, nullptr, false, false, 0, FilterFrame::None,
     CALL("CONTOUR(s0, colour 1)", f.CONTOUR(v.s[0], v.colours[1]))},
    {12, "Sketch", Sliders{{"Weight", 0, 255, 255}}, "B/W", false, false, 0, FilterFrame::None,
     CALL("SKETCH(s0, option, colour 1)", f.SKETCH(v.s[0], v.option, uint32_t(v.colours[1])))},
    {13, "Threshold", Sliders{{"Cut value", 0, 255, 128}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("Threshold(s0)", f.Threshold(v.s[0]))},
    {14, "Isolate", Sliders{{"Tolerance", 0, 200, 100}}, nullptr, false, true, -1,
     FilterFrame::None,
     CALL("ISOLATE(colour 0, colour 1, s0)",
          f.ISOLATE(uint32_t(v.colours[0]), uint32_t(v.colours[1]), v.s[0]))},
    {15, "Reduction", Sliders{{"Level", 0, 255, 0}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("Reduction(s0)", f.Reduction(v.s[0]))},
    {16, "Replace", Sliders{{"Tolerance", 0, 200, 100}}, nullptr, false, true, -1,
     FilterFrame::None,
     CALL("REPLACE(colour 0, colour 1, s0)",
          f.REPLACE(uint32_t(v.colours[0]), uint32_t(v.colours[1]), v.s[0]))},
    {17, "Replace Hue/Saturation",
     Sliders{{"Hue Tolerance", 0, 100, 50},
             {"Sat. Tolerance", 0, 100, 50},
             {"Apply Tolerance", 0, 200, 100}},
     nullptr, false, true, -1, FilterFrame::None,
     CALL("ReplaceHS(colour 0, colour 1, s0, s1, s2)",
          f.ReplaceHS(uint32_t(v.colours[0]), uint32_t(v.colours[1]), v.s[0], v.s[1], v.s[2]))},
    {18, "Replace Luminous",
     Sliders{{"Lum. Tolerance", 0, 100, 50}, {"Apply Tolerance", 0, 200, 100}}, nullptr, false,
     true, -1, FilterFrame::None,
     CALL("ReplaceL(colour 0, colour 1, s0, s1)",
          f.ReplaceL(uint32_t(v.colours[0]), uint32_t(v.colours[1]), v.s[0], v.s[1]))},
    {19, "Sharpen", Sliders{{"Level", 0, 100, 0}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("SHARPEN(s0)", f.SHARPEN(v.s[0]))},
    {20, "Soften", Sliders{{"Level", 0, 100, 0}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("SOFTEN(s0)", f.SOFTEN(v.s[0]))},
    {21, "Shift", Sliders{{"Shift", -255, 255, 0}, {"Tolerance", 0, 200, 100}}, nullptr, false,
     true, 1, FilterFrame::None,
     CALL("Shift(colour 0, s0, s1)", f.Shift(uint32_t(v.colours[0]), v.s[0], v.s[1]))},
    {22, "Hue rotation", Sliders{{"Offset", 0, 100, 0}, {"Saturation", 0, 100, 100}}, nullptr,
     false, false, kNoColours, FilterFrame::None,
     CALL("RotateH(s0, s1)", f.RotateH(v.s[0], v.s[1]))},
    {23, "Grey rotation", Sliders{{"Offset", 0, 100, 0}, {"Steps", 0, 100, 25}}, nullptr, false,
     false, kNoColours, FilterFrame::None, CALL("RotateL(s0, s1)", f.RotateL(v.s[0], v.s[1]))},
    {24, "Hue stretch",
     Sliders{{"Offset", 0, 100, 0}, {"Saturation", 0, 100, 100}, {"Stretch factor", 0, 100, 0}},
     nullptr, false, false, kNoColours, FilterFrame::None,
     CALL("StretchH(s0, s1, s2)", f.StretchH(v.s[0], v.s[1], v.s[2]))},
    {25, "RGB levels",
     Sliders{{"Red", -255, 255, 0}, {"Green", -255, 255, 0}, {"Blue", -255, 255, 0}}, nullptr,
     false, false, kNoColours, FilterFrame::None,
     CALL("ShiftRGB(s0, s1, s2)", f.ShiftRGB(v.s[0], v.s[1], v.s[2]))},
    {26, "RGB banks", Sliders{}, nullptr, false, false, kNoColours, FilterFrame::Banks,
     CALL("SwapRGB(sources, inverts, kills)",
          f.SwapRGB(v.sources[0], v.sources[1], v.sources[2], v.invert[0], v.invert[1], v.invert[2],
                    v.kill[0], v.kill[1], v.kill[2]))},
    {27, "Lens", Sliders{{"Diameter", 1, 100, 50}, {"Magnify factor", 0, 100, 50}}, nullptr, false,
     true, kNoColours, FilterFrame::None,
     CALL("LENS(centre x, centre y, diameter, s1)",
          f.LENS(v.centreX, v.centreY, v.extension, v.s[1]))},
    {28, "Waves",
     Sliders{{"Frequency", 0, 100, 25}, {"Amplitude", 1, 100, 25}, {"Start degree", 0, 360, 0}},
     nullptr, false, false, kNoColours, FilterFrame::None,
     CALL("WAVES(s0, s1, s2)", f.WAVES(v.s[0], v.s[1], v.s[2]))},
    {29, "Bend", Sliders{{"Radius factor", -200, 200, 0}}, "Clean back", true, false, kNoColours,
     FilterFrame::None, CALL("BEND(s0, option)", f.BEND(v.s[0], v.option))},
    {30, "Fold", Sliders{{"Horizontal factor", -100, 100, 0}, {"Vertical factor", -100, 100, 0}},
     "Clean back", true, false, kNoColours, FilterFrame::None,
     CALL("FOLD(s0, s1, option)", f.FOLD(v.s[0], v.s[1], v.option))},
    {31, "Rotate", Sliders{{"Degrees", -180, 180, 0}}, "Clean back", true, false, kNoColours,
     FilterFrame::None, CALL("ROTATE(s0, option)", f.ROTATE(v.s[0], v.option))},
    {32, "Stretch", Sliders{{"Horizontal factor", -100, 100, 0}, {"Vertical factor", -100, 100, 0}},
     "Clean back", true, false, kNoColours, FilterFrame::None,
     CALL("STRETCH(s0, s1, option)", f.STRETCH(v.s[0], v.s[1], v.option))},
    {33, "Tile", Sliders{{"Factor", 2, 50, 2}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("TILE(s0)", f.TILE(v.s[0]))},
    {34, "Twirl", Sliders{{"Level", -100, 100, 0}, {"Offset degrees", -180, 180, 0}}, "Clean back",
     true, false, kNoColours, FilterFrame::None,
     CALL("TWIRL(s0, s1, option)", f.TWIRL(v.s[0], v.s[1], v.option))},
    {35, "Grid",
     Sliders{
         {"Horizontal step", 1, 250, 25}, {"Vertical step", 1, 250, 25}, {"Opacity", 0, 255, 128}},
     "Force margins", true, false, 0, FilterFrame::None,
     CALL("Grid(s0, s1, option, colour 1, s2)",
          f.Grid(v.s[0], v.s[1], v.option, uint32_t(v.colours[1]), v.s[2]))},
    {36, "Light",
     Sliders{{"Extension", 1, 100, 50}, {"Intensity", 0, 500, 250}, {"Definition", 0, 100, 0}},
     nullptr, false, true, kNoColours, FilterFrame::None,
     CALL("Light(centre x, centre y, extension, s1, s2)",
          f.Light(v.centreX, v.centreY, v.extension, v.s[1], v.s[2]))},
    {37, "Noise", Sliders{{"Intensity", 0, 100, 25}}, "Equalized", false, false, kNoColours,
     FilterFrame::None, CALL("NOISE(s0, option)", f.NOISE(v.s[0], v.option))},
    {38, "Scanlines", Sliders{{"Opacity", 0, 255, 128}}, nullptr, false, false, kNoColours,
     FilterFrame::None, CALL("Scanlines(s0)", f.Scanlines(v.s[0]))},
    {39, "Behind Glass", Sliders{}, nullptr, false, false, kNoColours, FilterFrame::Glass,
     CALL("GLASS(style, value)", f.GLASS(v.style, v.styleValue))},
    {40, "Behind Curtain", Sliders{}, nullptr, false, false, kNoColours, FilterFrame::Curtain,
     CALL("GLASS(\"curtain\", value)", f.GLASS(kCurtainStyle, v.styleValue))},
};

#undef CALL

const std::vector<FilterDialogWord> kDialogWords = {
    {"CUSTOMSHARPEN", 19}, {"LIGHTCUSTOM", 1},
    {"CUSTOMEMBOSS", 9},   {"CUSTOMCONTOUR", 11},
    {"CUSTOMDIFFUSE", 5},  {"CUSTOMENGRAVE", 10},
    {"CUSTOMSOFTEN", 20},  {"CUSTOMBLUR", 6},
    {"CUSTOMNOISE", 37},   {"CUSTOMSATURATION", 3},
    {"LENS", 27},          {"WAVES", 28},
    {"BEND", 29},          {"FOLD", 30},
    {"ROTATE", 31},        {"STRETCH", 32},
    {"TILE", 33},          {"TWIRL", 34},
    {"ADDGRID", 35},       {"LENSFLARE", 36},
    {"ADDNOISE", 37},      {"ADDSCANLINES", 38},
    {"CUSTOMCURTAIN", 40}, {"HAFTONE", 7},
    {"PIXELIZE", 8},       {"CONTRAST", 2},
    {"BRIGHTNESS", 1},     {"GAMMA", 4},
    {"CUSTOMGLASS", 39},   {"SKETCH", 12},
    {"COLORIZE", 0},       {"REPLACE", 16},
    {"REPLACEHUESAT", 17}, {"REPLACELUMINOUS", 18},
    {"SHIFT", 21},         {"GREYROTATION", 23},
    {"REDUCTION", 15},     {"HUEROTATION", 22},
    {"HUESTRETCH", 24},    {"ISOLATE", 14},
    {"RGBBANKS", 26},      {"RGBLEVELS", 25},
};

} // namespace

const std::vector<FilterRow>& FilterTable() {
    return kRows;
}

const FilterRow* FindFilterRow(int32_t number) {
    if (number < 0 || number >= int32_t(kRows.size())) return nullptr;
    return &kRows[size_t(number)];
}

std::vector<const char*> GlassComboItems(std::string_view style) {
    if (style == "squary") return {"Large", "Light", "Tight"};
    return {"Light", "Tight"};
}

float ColorizeHue(int32_t slider) {
    // Rounded to nearest, ties to even, in the default rounding mode.
    int32_t x = int32_t(std::nearbyint(slider * 2.4));
    if (x >= 201) x -= 240;
    return float(x / 40.0);
}

const std::vector<FilterDialogWord>& FilterDialogWords() {
    return kDialogWords;
}

int32_t FilterDialogNumber(std::string_view word) {
    for (const FilterDialogWord& w : kDialogWords)
        if (word == w.word) return w.number;
    return -1;
}

ThumbSize FitThumbnail(int32_t width, int32_t height, int32_t maxWidth, int32_t maxHeight) {
    if (width <= 0 || height <= 0) return {};
    // A small picture is shown at its own size: enlarged by nearest neighbour it would
    // only show blocks, and the filters would see those blocks instead of its pixels.
    if (width <= maxWidth && height <= maxHeight) return {width, height};
    return FitToBox(width, height, maxWidth, maxHeight);
}

} // namespace ostrivex
