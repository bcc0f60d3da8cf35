// The operations a user can run with values of their own, each parameter described once.
//
// A parameter has a name (the batch tool's, camel case), a caption (what a dialog labels
// its control with), a kind, a range, a default, a centring and a suffix. The filter
// dialog's sliders and check boxes take their captions, ranges and defaults from here, the
// batch tool parses and checks its arguments by them and prints them in its help, and the
// effect tree will too: a range changed here changes in every one of them.
//
// Values are in the units the user sets them in. A centred parameter is shown from
// `minimum` to `maximum` (Gamma 0 to 200) while the operation takes the value less the
// middle of the range (-100 to 100): `Offset`. Where a dialog turns a control's value into
// the operation's argument in another way (COLORIZE's hue, the extension of LENS and Light
// counted in thumbnail pixels), the conversion is a function here that every caller uses.
//
// Plain C++ over the pixel core.
#pragma once

#include "pixel/thumbfit.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivex {

struct OperationParam {
    enum class Kind { Int, Float, Bool, Colour, Word, Path, Text };
    const char* name = "";
    const char* caption = ""; // "" for a parameter no dialog shows
    Kind kind = Kind::Int;
    double minimum = 0;
    double maximum = 0;
    double defaultValue = 0;
    bool centred = false;
    const char* suffix = "";
    std::vector<std::string> words; // the words a Word parameter accepts

    // What the operation gets less what the user sets (the middle of a centred range).
    double Offset() const { return centred ? (minimum + maximum) / 2 : 0; }
    // The range of the value the operation gets.
    double ValueMinimum() const { return minimum - Offset(); }
    double ValueMaximum() const { return maximum - Offset(); }
};

struct Operation {
    const char* name = ""; // as the filter engine spells it: "BRIGHTNESS", "GammaCorrection"
    std::vector<OperationParam> params;
    const char* note = ""; // one line of help
    // The parameter of a name; nullptr for none.
    const OperationParam* Param(std::string_view paramName) const;
};

// Every operation, family by family.
const std::vector<Operation>& Operations();
// The operation of a name, or nullptr.
const Operation* FindOperation(std::string_view name);
// The parameter of an operation that must exist (a table that names a missing one is a
// fault of the program: it stops there).
const OperationParam& OperationParameter(std::string_view operation, std::string_view param);

// --- Conversions the dialogs make, shared by every caller ---------------------------------

// The thumbnail of a picture of width x height in the filter dialog: the largest size with
// the picture's aspect ratio that fits maxWidth x maxHeight; a picture that fits already
// keeps its size.
using ThumbSize = FitSize;
ThumbSize FitThumbnail(int32_t width, int32_t height, int32_t maxWidth = 160,
                       int32_t maxHeight = 110);
// COLORIZE's hue from the Hue slider (0 to 100): x = round(slider * 2.4), less 240 from
// 201 on, then x / 40.
float ColorizeHue(int32_t slider);
// The extension of LENS and Light: the slider counts pixels of the picture's thumbnail,
// and the operation takes it as a fraction of the thumbnail's longer side.
float ThumbnailExtension(int32_t slider, int32_t imageWidth, int32_t imageHeight);

// The families' tables (operations_<family>.cpp).
std::vector<Operation> TransformOperations();
std::vector<Operation> ToneOperations();
std::vector<Operation> NeighbourhoodOperations();
std::vector<Operation> DeformOperations();
std::vector<Operation> ArtisticOperations();
std::vector<Operation> PaintOperations();

} // namespace ostrivex
