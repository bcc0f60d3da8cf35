// Where a text dialog's finished picture goes.
//
// The three text dialogs ("New Text Layer", "3D Text", "Style Text") end by handing a
// picture and its text record on: as a new layer of the document, or as the new state of
// the layer they were opened to edit. The document's layers implement this interface; the
// dialogs know nothing else of them.
#pragma once

#include "pixel/bits.h"
#include "text/draw/textrecord.h"

#include <QString>

#include <cstdint>

namespace ostrivex {

// A finished text picture. `record.LayerType` tells the kind (0 style text, 3 3D text,
// 4 logo).
struct FinishedText {
    Bits picture;
    int32_t transparentColor = 0xFFFFFF; // the layer's colour key, 0x00BBGGRR; -1 for none
    TextRecord record;
    QString name; // the layer's name: empty, or the logo's text ("No Text" for none)
};

class TextLayerSink {
  public:
    virtual ~TextLayerSink() = default;
    // A new layer from the picture (the add operation, with the record as the layer's
    // text data).
    virtual void AddTextLayer(const FinishedText& text) = 0;
    // The layer numbered `layer`, opened for editing, takes the new picture and record
    // (`UpdateTextLayer`).
    virtual void UpdateTextLayer(int32_t layer, const FinishedText& text) = 0;
};

// The sink installed by the main window (nullptr until then). A dialog opened without a
// sink of its own hands its picture here.
TextLayerSink* GetTextLayerSink();
void SetTextLayerSink(TextLayerSink* sink);

} // namespace ostrivex
