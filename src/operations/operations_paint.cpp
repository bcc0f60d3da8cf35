// The paint primitives of the canvas tools, one stroke each, with the tool panels' ranges.
#include "operations/params.h"

namespace ostrivex {

namespace {
using namespace params;
constexpr double kCoord = 1000000;
OperationParam x(const char* name) { return Int(name, "", -kCoord, kCoord); }
// Size, pressure and tolerance run from 1 to 100 on the panels; the primitives take 0 too.
OperationParam pressure() { return Int("pressure", "Pressure", 0, 100, 100); }
OperationParam size() { return Int("size", "Size", 1, 100, 25); }
} // namespace

std::vector<Operation> PaintOperations() {
    return {
        {"BitsLine", {x("x1"), x("y1"), x("x2"), x("y2"), Colour("colour"), pressure()},
         "an anti-aliased line"},
        {"BitsRectangle", {x("x1"), x("y1"), x("x2"), x("y2"), Colour("colour"), pressure()},
         "the outline of a rectangle"},
        {"BitsPolygon",
         {x("cx"), x("cy"), x("px"), x("py"), Int("sides", "Sides", 1, 100, 5), Colour("colour"), pressure()},
         "a regular polygon about (cx, cy) with a vertex towards (px, py)"},
        {"BitsEllipse",
         {x("cx"), x("cy"), Int("rx", "", 0, kCoord), Int("ry", "", 0, kCoord), Colour("colour"), pressure()},
         "the outline of an ellipse"},
        {"BitsBrush", {x("x"), x("y"), size(), pressure(), Colour("colour")}, "one round brush stamp"},
        {"BitsBrushLine",
         {x("x1"), x("y1"), x("x2"), x("y2"), size(), pressure(), Colour("colour"), Int("kind", "", 0, 5)},
         "a brush stroke; kind 0 paint, 1 soften, 2 soften again, 3 sharpen, 4 lighten, 5 darken"},
        {"BitsAirbrush",
         {x("x"), x("y"), size(), pressure(), Int("density", "Density", 0, 100, 50),
          Int("falloff", "Falloff", 0, 100, 50), Colour("colour")},
         "one airbrush spray (random: fix it with --seed)"},
        {"BitsBrightness", {x("x"), x("y"), size(), pressure(), Flag("lighten", "")},
         "lightens (-1) or darkens (0) a round spot"},
        {"BitsSoften", {x("x"), x("y"), size(), pressure(), Flag("repeat", "")}, "softens a round spot"},
        {"BitsSharpen", {x("x"), x("y"), size(), pressure()}, "sharpens a round spot"},
        {"BitsFill", {x("x"), x("y"), Colour("colour"), Int("tolerance", "Tolerance", 0, 100, 50), pressure()},
         "flood fill from (x, y)"},
        {"BitsFillTexture",
         {x("x"), x("y"), Path("texture"), Int("tolerance", "Tolerance", 0, 100, 50), pressure()},
         "flood fill from (x, y) with a texture image"},
        {"BitsMasked", {x("x"), x("y"), Path("texture"), size(), pressure()}, "one textured brush stamp"},
        {"BitsMaskedLine", {x("x1"), x("y1"), x("x2"), x("y2"), size(), pressure(), Path("texture")},
         "a textured brush stroke"},
        {"BitsPaint", {x("x"), x("y"), Path("source"), Int("transparent", "", -1, 0xFFFFFF, -1), pressure()},
         "lays an image at (x, y); pixels of the transparent colour (-1 none) are skipped"},
        {"BitsPaintPreMasked", {x("x"), x("y"), Path("source"), pressure()},
         "lays an image at (x, y), skipping its marked pixels"},
        {"BitsBWMask", {x("x"), x("y"), Path("mask"), Colour("colour"), pressure()},
         "paints a colour through a black and white mask image"},
    };
}

} // namespace ostrivex
