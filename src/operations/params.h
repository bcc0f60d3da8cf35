// Short makers for the tables of operations_<family>.cpp.
#pragma once

#include "operations/operations.h"

#include <utility>

namespace ostrivex::params {

using K = OperationParam::Kind;

// A whole number from lo to hi.
inline OperationParam Int(const char* name, const char* caption, double lo, double hi,
                          double def = 0, const char* suffix = "") {
    return {name, caption, K::Int, lo, hi, def, false, suffix, {}};
}
// A whole number shown from lo to hi whose operation takes it less the middle.
inline OperationParam Centred(const char* name, const char* caption, double lo, double hi, double def) {
    return {name, caption, K::Int, lo, hi, def, true, "", {}};
}
inline OperationParam Float(const char* name, const char* caption, double lo, double hi, double def = 0) {
    return {name, caption, K::Float, lo, hi, def, false, "", {}};
}
// A flag: -1 true, 0 false.
inline OperationParam Flag(const char* name, const char* caption, bool def = false) {
    return {name, caption, K::Bool, -1, 0, def ? -1.0 : 0.0, false, "", {}};
}
// A colour 0x00BBGGRR.
inline OperationParam Colour(const char* name, const char* caption = "", double def = 0) {
    return {name, caption, K::Colour, 0, 0xFFFFFF, def, false, "", {}};
}
inline OperationParam Word(const char* name, std::vector<std::string> words) {
    OperationParam p{name, "", K::Word, 0, 0, 0, false, "", {}};
    p.words = std::move(words);
    return p;
}
// An image file.
inline OperationParam Path(const char* name) { return {name, "", K::Path, 0, 0, 0, false, "", {}}; }

} // namespace ostrivex::params
