// The tone and colour filters.
#include "operations/params.h"

namespace ostrivex {

namespace {
using namespace params;
OperationParam level() { return Int("level", "Level", -100, 250, 0); }
} // namespace

std::vector<Operation> ToneOperations() {
    return {
        {"BRIGHTNESS", {level()}},
        {"ShiftRGB",
         {Int("red", "Red", -255, 255), Int("green", "Green", -255, 255), Int("blue", "Blue", -255, 255)}},
        {"Invert", {}},
        {"GreyScale", {}},
        {"Threshold", {Int("cut", "Cut value", 0, 255, 128)}},
        {"SATURATION", {level()}},
        {"Reduction", {Int("level", "Level", 0, 255, 0)}},
        {"GammaCorrection", {Centred("gamma", "Gamma", 0, 200, 100)}},
        {"KillChannel", {Flag("red", ""), Flag("green", ""), Flag("blue", "")}},
        {"SpecialColors", {Int("red", "", -1, 0), Int("green", "", -1, 0), Int("blue", "", -1, 0)},
         "a flag other than -1 clears its channel"},
        // The dialog's three sliders: the hue around the wheel and the saturation and
        // luminosity in percent.
        {"COLORIZE",
         {Int("hue", "Hue", 0, 100, 0), Int("saturation", "Saturation", 0, 100, 50),
          Int("luminosity", "Luminosity", 0, 100, 100)},
         "hue 0 to 100 round the colour wheel; saturation and luminosity in percent"},
        {"Contrast", {level()}},
        {"Equalize", {}},
        {"ISOLATE",
         {Colour("colour", "", 0xFFFFFF), Colour("backColour"), Int("tolerance", "Tolerance", 0, 200, 100)}},
        {"REPLACE",
         {Colour("colour", "", 0xFFFFFF), Colour("newColour"), Int("tolerance", "Tolerance", 0, 200, 100)}},
        {"Shift",
         {Colour("colour", "", 0xFFFFFF), Int("shift", "Shift", -255, 255, 0),
          Int("tolerance", "Tolerance", 0, 200, 100)}},
        {"ReplaceHS",
         {Colour("colour", "", 0xFFFFFF), Colour("newColour"),
          Int("hueTolerance", "Hue Tolerance", 0, 100, 50),
          Int("satTolerance", "Sat. Tolerance", 0, 100, 50),
          Int("applyTolerance", "Apply Tolerance", 0, 200, 100)}},
        {"ReplaceL",
         {Colour("colour", "", 0xFFFFFF), Colour("newColour"),
          Int("lumTolerance", "Lum. Tolerance", 0, 100, 50),
          Int("applyTolerance", "Apply Tolerance", 0, 200, 100)}},
        {"RotateH", {Int("offset", "Offset", 0, 100, 0), Int("saturation", "Saturation", 0, 100, 100)}},
        {"RotateL", {Int("offset", "Offset", 0, 100, 0), Int("steps", "Steps", 0, 100, 25)}},
        {"StretchH",
         {Int("offset", "Offset", 0, 100, 0), Int("saturation", "Saturation", 0, 100, 100),
          Int("stretch", "Stretch factor", 0, 100, 0)}},
        {"SwapBanks", {Int("mode", "", 1, 5, 1)}, "1 BRG, 2 GBR, 3 RBG, 4 BGR, 5 GRB"},
        {"SwapRGB",
         {Int("redSource", "", 0, 2, 2), Int("greenSource", "", 0, 2, 1), Int("blueSource", "", 0, 2, 0),
          Flag("invertRed", ""), Flag("invertGreen", ""), Flag("invertBlue", ""),
          Flag("killRed", ""), Flag("killGreen", ""), Flag("killBlue", "")},
         "sources are channel numbers: 0 blue, 1 green, 2 red"},
        {"ClassyColors", {Int("mode", "", 0, 11)}},
    };
}

} // namespace ostrivex
