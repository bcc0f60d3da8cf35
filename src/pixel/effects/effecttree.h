// The effect tree: the 80 nodes of the Layer Box's tree, with everything the effect dialog,
// the menus and the batch tool need to know about each, as plain data.
//
// A node's number is its place in the tree (1-based). Headings carry a number but no
// method. Every other node names a method of the method table (methods.h) and says how
// the dialog's slider value (and its two colours) become the method's values.
#pragma once

#include "pixel/effects/methods.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivex::effects {

// The extra panel of the effect dialog: none ("No Options"), the colour pick panel, the
// tile panel; NoDialog for a node that applies at once with value 0.
enum class EffectPanel : int8_t { NoDialog = -1, None = 0, Colour = 1, Tile = 2 };

// How one method value comes from the dialog.
struct ValueSource {
    enum Kind : uint8_t {
        Unused,  // the method has no such value
        Slider,  // the slider value divided by `number` (1: as it is)
        Rounded, // the slider value divided by `number`, rounded to a whole number (ties to even)
        Fixed,   // always `number`
        Colour1, // the colour of the dialog's colour box
        Colour2, // the colour picked from the source picture
        SameAsA, // the same as the first value
    } kind = Unused;
    double number = 0;
};

struct EffectNode {
    int16_t number;
    const char* label;   // the tree's text
    const char* key;     // the tree's key of the node
    int16_t parent;      // the node it hangs under, 0 for the top level
    const char* caption; // the dialog's title; nullptr for headings and nodes without dialog
    const char* method;  // nullptr for a heading
    int32_t min, max, defaultValue; // the slider; max -1: set at run time (EffectMaximum)
    EffectPanel panel;
    ValueSource a, b, c;

    bool isHeading() const { return method == nullptr; }
    bool hasDialog() const { return panel != EffectPanel::NoDialog && !isHeading(); }
};

// The 80 nodes, node i at index i - 1.
const std::vector<EffectNode>& EffectTree();
// Node number n (1..80), or nullptr.
const EffectNode* FindEffectNode(int32_t number);
// The method of a node (nullptr for a heading).
const EffectMethod* NodeMethod(const EffectNode& node);
// The slider's maximum for a picture of w x h: the table's, or the one the picture sets
// ("Canvas Adjustment": a quarter of the shorter side).
int32_t EffectMaximum(const EffectNode& node, int32_t width, int32_t height);

// The method values of a node for a slider value and the dialog's two colours.
std::vector<double> NodeValues(const EffectNode& node, int32_t value, uint32_t colour1,
                               uint32_t colour2);

// Runs node `number` from the dialog's values: the method of the node on first (result)
// and second (the original), through the layer's transform. Returns false for a heading or
// a number outside 2..80, leaving the pictures as they were.
bool ApplyEffectNode(clsTransForm& transform, int32_t number, Bits& first, const Bits& second,
                     int32_t value, uint32_t colour1, uint32_t colour2, int32_t key);

} // namespace ostrivex::effects
