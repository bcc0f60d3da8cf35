// The geometric deformations.
#include "operations/params.h"

namespace ostrivex {

namespace {
using namespace params;
OperationParam cleanBack() { return Flag("cleanBack", "Clean back", true); }
// The point the dialog picks on its thumbnail, as a fraction of the picture.
OperationParam centre(const char* name) { return Float(name, "", 0, 1, 0.5); }
} // namespace

std::vector<Operation> DeformOperations() {
    return {
        {"BEND", {Int("radius", "Radius factor", -200, 200, 0), cleanBack()}},
        {"FOLD",
         {Int("horizontal", "Horizontal factor", -100, 100, 0),
          Int("vertical", "Vertical factor", -100, 100, 0), cleanBack()}},
        {"ROTATE", {Int("degrees", "Degrees", -180, 180, 0), cleanBack()}},
        {"STRETCH",
         {Int("horizontal", "Horizontal factor", -100, 100, 0),
          Int("vertical", "Vertical factor", -100, 100, 0), cleanBack()}},
        {"TILE", {Int("factor", "Factor", 2, 50, 2)}},
        {"TWIRL",
         {Int("level", "Level", -100, 100, 0), Int("offsetDegrees", "Offset degrees", -180, 180, 0),
          cleanBack()}},
        {"WAVES",
         {Int("frequency", "Frequency", 0, 100, 25), Int("amplitude", "Amplitude", 1, 100, 25),
          Int("startDegree", "Start degree", 0, 360, 0)}},
        {"LENS",
         {centre("centreX"), centre("centreY"), Int("diameter", "Diameter", 1, 100, 50),
          Int("magnify", "Magnify factor", 0, 100, 50)},
         "centre as fractions of the image; the diameter in pixels of the 160 x 110 thumbnail"},
        {"FISHEYE", {}, "LENS at the centre, magnify 60, circle inscribed in the image"},
        {"GLASS",
         {Word("style", {"slanting", "horizontal", "vertical", "squary", "curtain"}),
          Int("value", "", 0, 4)},
         "curtain takes 1 to 4; the other styles 0"},
    };
}

} // namespace ostrivex
