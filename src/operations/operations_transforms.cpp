// Crops, scaling, turns, mirrors and laying one image on another.
#include "operations/params.h"

namespace ostrivex {

namespace {
using namespace params;

// Image sizes the size dialogs accept: at least 2, and at most what a buffer may hold here.
constexpr double kMaxSide = 30000;
constexpr double kMaxCoord = 1000000;

OperationParam coord(const char* name) { return Int(name, "", -kMaxCoord, kMaxCoord); }
} // namespace

std::vector<Operation> TransformOperations() {
    return {
        {"BitsCrop", {coord("left"), coord("top"), coord("right"), coord("bottom")},
         "cuts the rectangle (right and bottom exclusive); the selection is dropped"},
        {"BitsCropMasked", {coord("left"), coord("top"), coord("right"), coord("bottom")},
         "as BitsCrop; pixels outside the selection get marker 255"},
        {"BitsResample", {Int("width", "Width", 2, kMaxSide), Int("height", "Height", 2, kMaxSide)},
         "bilinear scaling"},
        {"BitsResize", {Int("width", "Width", 2, kMaxSide), Int("height", "Height", 2, kMaxSide)},
         "nearest-neighbour scaling"},
        {"BitsRotate90", {}, "a quarter turn to the left"},
        {"TileMask",
         {Path("tile"), coord("left"), coord("top"), Flag("repeat", ""), Int("opacity", "", 0, 100),
          Int("key", "", -1, 0xFFFFFF, -1)},
         "lays an image on the picture; opacity is the share of the picture beneath, key -1 "
         "for none"},
        {"Flip", {Flag("horizontal", ""), Flag("vertical", "")}, "mirror of the whole image"},
        {"RotateSmooth", {Int("degrees", "Degrees", -180, 180), Flag("cleanBack", "Clean back", true)},
         "rotation with bilinear sampling"},
    };
}

} // namespace ostrivex
