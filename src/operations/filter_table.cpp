#include "operations/filter_table.h"

#include <algorithm>
#include <cmath>

namespace ostrivex {

namespace {

using Sliders = std::vector<FilterSliderRow>;

// A slider row from the operation's parameter.
FilterSliderRow S(const char* operation, const char* param) {
    const OperationParam& p = OperationParameter(operation, param);
    return {p.caption, int32_t(p.minimum), int32_t(p.maximum), int32_t(p.defaultValue),
            p.centred, p.suffix, 1.0, &p};
}

// The check box from the operation's flag: its caption and default.
#define OPTION(op, param)                                                                   \
    OperationParameter(op, param).caption, OperationParameter(op, param).defaultValue != 0
#define NO_OPTION nullptr, false

#define CALL(text, expr) text, [](cBitFilter& f, const FilterValues& v) -> Bits { return expr; }

// The extension of Lens and Light: the first slider in pixels of the picture's thumbnail.
float extension(const cBitFilter& f, const FilterValues& v) {
    return ThumbnailExtension(v.s[0], f.BitsWidth(), f.BitsHeight());
}

// Rows in number order. Where a row has colours, the wells come first in the call.
// "Pixelaze" is the title as the program has always shown it.
std::vector<FilterRow> makeRows() {
    return {
    {0, "Colorize", "COLORIZE",
     Sliders{S("COLORIZE", "hue"), S("COLORIZE", "saturation"), S("COLORIZE", "luminosity")},
     NO_OPTION, false, kNoColours, FilterFrame::None,
     CALL("COLORIZE(hue, s1 / 100, s2 / 100)",
          f.COLORIZE(ColorizeHue(v.s[0]), float(v.s[1] / 100.0), float(v.s[2] / 100.0)))},
    {1, "Brightness", "BRIGHTNESS", Sliders{S("BRIGHTNESS", "level")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("BRIGHTNESS(s0)", f.BRIGHTNESS(v.s[0]))},
    {2, "Contrast", "Contrast", Sliders{S("Contrast", "level")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("Contrast(s0)", f.Contrast(v.s[0]))},
    {3, "Saturation", "SATURATION", Sliders{S("SATURATION", "level")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("SATURATION(s0)", f.SATURATION(v.s[0]))},
    {4, "Gamma correction", "GammaCorrection", Sliders{S("GammaCorrection", "gamma")}, NO_OPTION,
     false, kNoColours, FilterFrame::None, CALL("GammaCorrection(s0)", f.GammaCorrection(v.s[0]))},
    {5, "Diffuse", "DIFFUSE", Sliders{S("DIFFUSE", "horizontal"), S("DIFFUSE", "vertical")},
     NO_OPTION, false, kNoColours, FilterFrame::None,
     CALL("DIFFUSE(s0, s1)", f.DIFFUSE(v.s[0], v.s[1]))},
    {6, "Blur", "Blurs", Sliders{S("Blurs", "level")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("Blurs(s0)", f.Blurs(v.s[0]))},
    {7, "Halftone", "HALFTONE",
     Sliders{S("HALFTONE", "radius"), S("HALFTONE", "definition"), S("HALFTONE", "intensity")},
     NO_OPTION, false, kNoColours, FilterFrame::None,
     CALL("HALFTONE(s0, s1, s2)", f.HALFTONE(v.s[0], v.s[1], v.s[2]))},
    {8, "Pixelaze", "PIXELIZE", Sliders{S("PIXELIZE", "size")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("PIXELIZE(s0)", f.PIXELIZE(v.s[0]))},
    {9, "Emboss", "EMBOSS", Sliders{S("EMBOSS", "weight")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("EMBOSS(s0)", f.EMBOSS(v.s[0]))},
    {10, "Engrave", "Engrave", Sliders{S("Engrave", "weight")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("Engrave(s0)", f.Engrave(v.s[0]))},
    {11, "Contour", "CONTOUR", Sliders{S("CONTOUR", "weight")}, NO_OPTION, false, 0,
     FilterFrame::None, CALL("CONTOUR(s0, colour 1)", f.CONTOUR(v.s[0], v.colours[1]))},
    {12, "Sketch", "SKETCH", Sliders{S("SKETCH", "weight")}, OPTION("SKETCH", "bw"), false, 0,
     FilterFrame::None,
     CALL("SKETCH(s0, option, colour 1)", f.SKETCH(v.s[0], v.option, uint32_t(v.colours[1])))},
    {13, "Threshold", "Threshold", Sliders{S("Threshold", "cut")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("Threshold(s0)", f.Threshold(v.s[0]))},
    {14, "Isolate", "ISOLATE", Sliders{S("ISOLATE", "tolerance")}, NO_OPTION, true, -1,
     FilterFrame::None,
     CALL("ISOLATE(colour 0, colour 1, s0)",
          f.ISOLATE(uint32_t(v.colours[0]), uint32_t(v.colours[1]), v.s[0]))},
    {15, "Reduction", "Reduction", Sliders{S("Reduction", "level")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("Reduction(s0)", f.Reduction(v.s[0]))},
    {16, "Replace", "REPLACE", Sliders{S("REPLACE", "tolerance")}, NO_OPTION, true, -1,
     FilterFrame::None,
     CALL("REPLACE(colour 0, colour 1, s0)",
          f.REPLACE(uint32_t(v.colours[0]), uint32_t(v.colours[1]), v.s[0]))},
    {17, "Replace Hue/Saturation", "ReplaceHS",
     Sliders{S("ReplaceHS", "hueTolerance"), S("ReplaceHS", "satTolerance"),
             S("ReplaceHS", "applyTolerance")},
     NO_OPTION, true, -1, FilterFrame::None,
     CALL("ReplaceHS(colour 0, colour 1, s0, s1, s2)",
          f.ReplaceHS(uint32_t(v.colours[0]), uint32_t(v.colours[1]), v.s[0], v.s[1], v.s[2]))},
    {18, "Replace Luminous", "ReplaceL",
     Sliders{S("ReplaceL", "lumTolerance"), S("ReplaceL", "applyTolerance")}, NO_OPTION, true, -1,
     FilterFrame::None,
     CALL("ReplaceL(colour 0, colour 1, s0, s1)",
          f.ReplaceL(uint32_t(v.colours[0]), uint32_t(v.colours[1]), v.s[0], v.s[1]))},
    {19, "Sharpen", "SHARPEN", Sliders{S("SHARPEN", "level")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("SHARPEN(s0)", f.SHARPEN(v.s[0]))},
    {20, "Soften", "SOFTEN", Sliders{S("SOFTEN", "level")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("SOFTEN(s0)", f.SOFTEN(v.s[0]))},
    {21, "Shift", "Shift", Sliders{S("Shift", "shift"), S("Shift", "tolerance")}, NO_OPTION, true,
     1, FilterFrame::None,
     CALL("Shift(colour 0, s0, s1)", f.Shift(uint32_t(v.colours[0]), v.s[0], v.s[1]))},
    {22, "Hue rotation", "RotateH", Sliders{S("RotateH", "offset"), S("RotateH", "saturation")},
     NO_OPTION, false, kNoColours, FilterFrame::None,
     CALL("RotateH(s0, s1)", f.RotateH(v.s[0], v.s[1]))},
    {23, "Grey rotation", "RotateL", Sliders{S("RotateL", "offset"), S("RotateL", "steps")},
     NO_OPTION, false, kNoColours, FilterFrame::None,
     CALL("RotateL(s0, s1)", f.RotateL(v.s[0], v.s[1]))},
    {24, "Hue stretch", "StretchH",
     Sliders{S("StretchH", "offset"), S("StretchH", "saturation"), S("StretchH", "stretch")},
     NO_OPTION, false, kNoColours, FilterFrame::None,
     CALL("StretchH(s0, s1, s2)", f.StretchH(v.s[0], v.s[1], v.s[2]))},
    {25, "RGB levels", "ShiftRGB",
     Sliders{S("ShiftRGB", "red"), S("ShiftRGB", "green"), S("ShiftRGB", "blue")}, NO_OPTION,
     false, kNoColours, FilterFrame::None,
     CALL("ShiftRGB(s0, s1, s2)", f.ShiftRGB(v.s[0], v.s[1], v.s[2]))},
    {26, "RGB banks", "SwapRGB", Sliders{}, NO_OPTION, false, kNoColours, FilterFrame::Banks,
     CALL("SwapRGB(sources, inverts, kills)",
          f.SwapRGB(v.sources[0], v.sources[1], v.sources[2], v.invert[0], v.invert[1], v.invert[2],
                    v.kill[0], v.kill[1], v.kill[2]))},
    {27, "Lens", "LENS", Sliders{S("LENS", "diameter"), S("LENS", "magnify")}, NO_OPTION, true,
     kNoColours, FilterFrame::None,
     CALL("LENS(centre x, centre y, diameter, s1)",
          f.LENS(v.centreX, v.centreY, extension(f, v), v.s[1]))},
    {28, "Waves", "WAVES",
     Sliders{S("WAVES", "frequency"), S("WAVES", "amplitude"), S("WAVES", "startDegree")},
     NO_OPTION, false, kNoColours, FilterFrame::None,
     CALL("WAVES(s0, s1, s2)", f.WAVES(v.s[0], v.s[1], v.s[2]))},
    {29, "Bend", "BEND", Sliders{S("BEND", "radius")}, OPTION("BEND", "cleanBack"), false,
     kNoColours, FilterFrame::None, CALL("BEND(s0, option)", f.BEND(v.s[0], v.option))},
    {30, "Fold", "FOLD", Sliders{S("FOLD", "horizontal"), S("FOLD", "vertical")},
     OPTION("FOLD", "cleanBack"), false, kNoColours, FilterFrame::None,
     CALL("FOLD(s0, s1, option)", f.FOLD(v.s[0], v.s[1], v.option))},
    {31, "Rotate", "ROTATE", Sliders{S("ROTATE", "degrees")}, OPTION("ROTATE", "cleanBack"), false,
     kNoColours, FilterFrame::None, CALL("ROTATE(s0, option)", f.ROTATE(v.s[0], v.option))},
    {32, "Stretch", "STRETCH", Sliders{S("STRETCH", "horizontal"), S("STRETCH", "vertical")},
     OPTION("STRETCH", "cleanBack"), false, kNoColours, FilterFrame::None,
     CALL("STRETCH(s0, s1, option)", f.STRETCH(v.s[0], v.s[1], v.option))},
    {33, "Tile", "TILE", Sliders{S("TILE", "factor")}, NO_OPTION, false, kNoColours,
     FilterFrame::None, CALL("TILE(s0)", f.TILE(v.s[0]))},
    {34, "Twirl", "TWIRL", Sliders{S("TWIRL", "level"), S("TWIRL", "offsetDegrees")},
     OPTION("TWIRL", "cleanBack"), false, kNoColours, FilterFrame::None,
     CALL("TWIRL(s0, s1, option)", f.TWIRL(v.s[0], v.s[1], v.option))},
    {35, "Grid", "Grid", Sliders{S("Grid", "hStep"), S("Grid", "vStep"), S("Grid", "opacity")},
     OPTION("Grid", "forceMargins"), false, 0, FilterFrame::None,
     CALL("Grid(s0, s1, option, colour 1, s2)",
          f.Grid(v.s[0], v.s[1], v.option, uint32_t(v.colours[1]), v.s[2]))},
    {36, "Light", "Light",
     Sliders{S("Light", "extension"), S("Light", "intensity"), S("Light", "definition")},
     NO_OPTION, true, kNoColours, FilterFrame::None,
     CALL("Light(centre x, centre y, extension, s1, s2)",
          f.Light(v.centreX, v.centreY, extension(f, v), v.s[1], v.s[2]))},
    {37, "Noise", "NOISE", Sliders{S("NOISE", "intensity")}, OPTION("NOISE", "equalized"), false,
     kNoColours, FilterFrame::None, CALL("NOISE(s0, option)", f.NOISE(v.s[0], v.option))},
    {38, "Scanlines", "Scanlines", Sliders{S("Scanlines", "opacity")}, NO_OPTION, false,
     kNoColours, FilterFrame::None, CALL("Scanlines(s0)", f.Scanlines(v.s[0]))},
    {39, "Behind Glass", "GLASS", Sliders{}, NO_OPTION, false, kNoColours, FilterFrame::Glass,
     CALL("GLASS(style, value)", f.GLASS(v.style, v.styleValue))},
    {40, "Behind Curtain", "GLASS", Sliders{}, NO_OPTION, false, kNoColours, FilterFrame::Curtain,
     CALL("GLASS(\"curtain\", value)", f.GLASS(kCurtainStyle, v.styleValue))},
    };
}

#undef CALL
#undef OPTION
#undef NO_OPTION

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
    // Made on first use: the rows read the operations' table.
    static const std::vector<FilterRow> rows = makeRows();
    return rows;
}

const FilterRow* FindFilterRow(int32_t number) {
    const std::vector<FilterRow>& rows = FilterTable();
    if (number < 0 || number >= int32_t(rows.size())) return nullptr;
    return &rows[size_t(number)];
}

std::vector<const char*> GlassComboItems(std::string_view style) {
    if (style == "squary") return {"Large", "Light", "Tight"};
    return {"Light", "Tight"};
}

const std::vector<FilterDialogWord>& FilterDialogWords() {
    return kDialogWords;
}

int32_t FilterDialogNumber(std::string_view word) {
    for (const FilterDialogWord& w : kDialogWords)
        if (word == w.word) return w.number;
    return -1;
}

} // namespace ostrivex
