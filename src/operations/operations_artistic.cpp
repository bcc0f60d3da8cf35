// The artistic filters.
#include "operations/params.h"

namespace ostrivex {

namespace {
using namespace params;
OperationParam centre(const char* name) { return Float(name, "", 0, 1, 0.5); }
OperationParam opacity() { return Int("opacity", "Opacity", 0, 255, 128); }
} // namespace

std::vector<Operation> ArtisticOperations() {
    return {
        {"PIXELIZE", {Int("size", "Pixel size", 1, 25, 2)}},
        {"HALFTONE",
         {Int("radius", "Radius", 1, 25, 1), Int("definition", "Definition", 0, 100, 50),
          Int("intensity", "Intensity", 0, 100, 0)}},
        {"OLDPHOTO", {}},
        {"THERMIQUE", {}},
        {"XBLACK", {}},
        {"PHOTOCOP", {}},
        {"Light",
         {centre("centreX"), centre("centreY"), Int("extension", "Extension", 1, 100, 50),
          Int("intensity", "Intensity", 0, 500, 250), Int("definition", "Definition", 0, 100, 0)},
         "centre as fractions of the image; the extension in pixels of the 160 x 110 thumbnail"},
        {"Scanlines", {opacity()}},
        {"Texturize", {Path("tile")},
         "the tile's blue channel modulates the picture (128 neutral); at least 2 x 2"},
        {"StuckiBW", {Int("level", "", 0, 100)}},
        {"SKETCH", {Int("weight", "Weight", 0, 255, 255), Flag("bw", "B/W"), Colour("colour")}},
        {"PAINTING", {}},
        {"Dissolve", {Int("level", "", 0, 100), Colour("colour")}},
        {"Grid",
         {Int("hStep", "Horizontal step", 1, 250, 25), Int("vStep", "Vertical step", 1, 250, 25),
          Flag("forceMargins", "Force margins", true), Colour("colour"), opacity()}},
    };
}

} // namespace ostrivex
