// Which image of a document a command changes.
//
// A document holds three images that share no pixels: the Enhanced image, the Layers view
// (a canvas picture and the layers above it) and the Optimize preview. The tab on show and
// the current layer decide which of them a command, a tool or a dialog works on, and this
// is the one place that decides it:
//
//   Enhanced tab                      -> the Enhanced image
//   Layers tab, no layer chosen       -> the Layers canvas
//   Layers tab, layer i chosen        -> layer i
//   Optimize tab                      -> nothing (the preview is made by the Optimize Box)
//
// Commands that only apply to the Enhanced image do nothing unless the target is the
// Enhanced image, rather than change an image that is not on show.
#pragma once

#include <cstdint>

namespace ostrivex {

// The views of a document, in the order of its tab bar.
enum class ViewTab : int32_t { Enhanced = 0, Layers = 1, Optimize = 2 };

struct EditTarget {
    enum class Kind { None, Enhanced, LayersCanvas, Layer };
    Kind kind = Kind::None;
    int32_t layer = 0; // the layer's index (from 1) when kind is Layer, else 0

    static constexpr EditTarget Enhanced() { return {Kind::Enhanced, 0}; }
    static constexpr EditTarget LayersCanvas() { return {Kind::LayersCanvas, 0}; }
    static constexpr EditTarget Layer(int32_t index) { return {Kind::Layer, index}; }
    static constexpr EditTarget None() { return {Kind::None, 0}; }

    bool IsEnhanced() const { return kind == Kind::Enhanced; }
    bool operator==(const EditTarget&) const = default;
};

// The target of a document showing `tab` with `currentLayer` chosen (0 for none).
constexpr EditTarget TargetFor(ViewTab tab, int32_t currentLayer) {
    switch (tab) {
    case ViewTab::Enhanced: return EditTarget::Enhanced();
    case ViewTab::Layers:
        return currentLayer >= 1 ? EditTarget::Layer(currentLayer) : EditTarget::LayersCanvas();
    case ViewTab::Optimize: break;
    }
    return EditTarget::None();
}

} // namespace ostrivex
