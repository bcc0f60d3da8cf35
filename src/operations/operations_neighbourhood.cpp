// The neighbourhood filters.
#include "operations/params.h"

#include "pixel/filtermask.h"

namespace ostrivex {

namespace {
using namespace params;
OperationParam level(double hi) { return Int("level", "Level", 0, hi, 0); }
OperationParam weight() { return Int("weight", "Weight", 0, 50, 10); }
} // namespace

std::vector<Operation> NeighbourhoodOperations() {
    return {
        {"MaskFilter", {Int("preset", "", 0, kFilterPresetCount - 1), Flag("keepMargins", "")},
         "a user filter preset (0 is the first of the list) as a convolution"},
        {"Blurs", {level(2)}},
        {"SOFTEN", {level(100)}},
        {"SHARPEN", {level(100)}},
        {"EDGEENHANCE", {level(100)}},
        // The colour as a packed number: the menu words pass 255255255.
        {"CONTOUR", {Int("weight", "Weight", 0, 255, 255), Int("colour", "", 0, 2147483647)},
         "colour as a packed number (the menu words pass 255255255)"},
        {"EMBOSS", {weight()}},
        {"Engrave", {weight()}},
        {"RELIEF", {}},
        {"DILATE", {}},
        {"ERODE", {}},
        {"RankFilterN4", {Int("mode", "", 0, 1)}, "0 minimum, 1 maximum"},
        {"RankFilterND", {Int("mode", "", 0, 1)}, "0 minimum, 1 maximum"},
        {"DIFFUSE",
         {Int("horizontal", "Horizontal range", 0, 50, 2), Int("vertical", "Vertical range", 0, 50, 2)}},
        {"NOISE", {Int("intensity", "Intensity", 0, 100, 25), Flag("equalized", "Equalized")}},
    };
}

} // namespace ostrivex
