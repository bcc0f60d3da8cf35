// The layer stack of a document: the pictures of its Layers view.
//
// A layer is one record; the stack is a plain list of them. Layer indices count from 1 and
// stay with their layer until it is deleted: a deleted layer keeps its place in the list
// (`Removed`), so the indices of the others do not move. The stacking order is not the
// index order; it is the order of the Layer Box's list.
//
// This is the record and its place only. Building, compositing, the file and the effects
// of layers are the layer work's.
#pragma once

#include "pixel/bits.h"

#include <QString>

#include <array>
#include <cstdint>
#include <vector>

namespace ostrivex {

struct LayerRecord {
    // The layer kinds of LayerType.
    static constexpr int16_t StyleText = 0;
    static constexpr int16_t PictureLayer = 2;
    static constexpr int16_t Text3D = 3;
    static constexpr int16_t ShadowText = 4;

    Bits Picture;         // what is shown now: the layer after its effects and transform
    Bits OriginalPicture; // the layer as made, the source of every rebuild
    float Left = 0, Top = 0, Width = 0, Height = 0; // place on the canvas
    bool Visible = true;
    bool Removed = false; // deleted: the index stays taken
    int16_t LayerType = PictureLayer;
    int32_t TransparentColor = 0; // the colour key, 0x00BBGGRR
    QString Name;                 // the caption of its entry in the Layer Box
    // A text layer's text, its seven style values and its font.
    QString LayerText;
    std::array<int32_t, 7> StyleValues{};
    QString FontName;
    float FontSize = 0;
    int32_t ForeColor = 0;
    bool FontBold = false, FontItalic = false, FontUnderline = false, FontStrikethru = false;
    Bits Thumb; // the small picture of the list entry
};

struct LayerStack {
    // Layer i is Records[i - 1].
    std::vector<LayerRecord> Records;
    // The chosen layer, 0 for none.
    int32_t CurrentLayer = 0;
    // The canvas picture under the layers.
    Bits Canvas;
    // The caption of the Layers view (the file it came from); empty for a new one.
    QString Tag;

    // The record of layer `index`, or nullptr when there is none (or it was removed).
    LayerRecord* Find(int32_t index) {
        if (index < 1 || index > int32_t(Records.size())) return nullptr;
        LayerRecord& r = Records[size_t(index - 1)];
        return r.Removed ? nullptr : &r;
    }
    const LayerRecord* Find(int32_t index) const {
        return const_cast<LayerStack*>(this)->Find(index);
    }
};

} // namespace ostrivex
