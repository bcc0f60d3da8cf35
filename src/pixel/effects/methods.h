// The methods of the layer transform: each runs one operation of the effects library with
// the values the layer code passes (A, B, C) and the fixed values the method adds itself.
// One table serves the layer code, the effect tree and the batch tool, so a method is run
// the same way from each.
#pragma once

#include "pixel/bits.h"
#include "pixel/region.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivex::effects {

// How a value is passed: a whole number, a single or double, a colour 0x00BBGGRR, a flag
// (-1 true, 0 false), or a third picture (BlendMode, GlassBlendMode).
enum class ArgKind : uint8_t { Int, Single, Double, Colour, Flag, Picture };

struct MethodArg {
    const char* name;
    ArgKind kind;
    double min; // the range the operation takes
    double max;
};

struct EffectMethod {
    const char* name;    // the method ("BRIGHTNESS", "TileE", "swirl" ...)
    const char* library; // the library operation it calls ("Brightness", "Tile" ...)
    std::vector<MethodArg> args;
    const char* fixed; // the values the method adds, as the library takes them ("" for none)
    // Runs the operation: values[i] belongs to args[i] (a picture's place holds 0 and the
    // picture comes as third).
    void (*run)(Bits& first, const Bits& second, const Bits* third,
                const std::vector<double>& values, int32_t key);
};

// Every method, in the order of the library's table, then RainDrops and IncreaseSize.
const std::vector<EffectMethod>& EffectMethods();
// The method of a name (exact), or nullptr.
const EffectMethod* FindEffectMethod(std::string_view name);

// The message and title of ShapeMe when it is given neither target or both.
inline constexpr const char* kShapeMeMessage =
    "Must pass in the name of either a Form OR a PictureBox.  TransForm received NONE or "
    "BOTH.  Function failed.";
inline constexpr const char* kShapeMeTitle = "ShapeMe Subroutine";

// The transform of one layer: its colour key, and the shape of its picture after each
// method (the pixels that are not the key colour), which the layer view paints through.
class clsTransForm {
public:
    // -1: no key until the layer sets one.
    int32_t TransparentColor = -1;

    void SetTransparentColor(int32_t colour) { TransparentColor = colour; }

    // Runs a method on the layer's pictures, then shapes the first picture by
    // TransparentColor, as every method but bAlphaBlend does. `values` must match the
    // method's arguments in count; a missing third picture for a method that needs one
    // throws std::invalid_argument.
    void Apply(const EffectMethod& method, Bits& first, const Bits& second,
               const std::vector<double>& values, int32_t key, const Bits* third = nullptr);

    // Makes the shape of a target's pixels that are not `colour`. Exactly one of the two
    // targets must be given; otherwise it stops with false, and the caller shows
    // kShapeMeMessage under kShapeMeTitle.
    bool ShapeMe(int32_t colour, bool horizontalScan, const Bits* form, const Bits* pictureBox);

    const Region& Shape() const { return shape_; }

private:
    Region shape_;
};

} // namespace ostrivex::effects
