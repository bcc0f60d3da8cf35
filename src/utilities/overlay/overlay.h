// Laying one open document over another ("Overlay Image"): the arithmetic is the filter's
// TileMask, once or repeated, with a transparency and a mask colour; this file decides the
// canvas and the placements and carries out OK of the dialog.
#pragma once

#include "pixel/bitfilter.h"
#include "pixel/bits.h"
#include "pixel/thumbfit.h"

#include <QString>

#include <cstdint>
#include <functional>

namespace ostrivex {

class DocumentHost;
class fImage;

inline constexpr const char* kOverlayLabel = "Overlay Image";

struct OverlayOptions {
    int32_t left = 0, top = 0;  // the source's top-left corner on the destination
    int32_t transparency = 0;   // percent: the destination's share, 0 shows the source fully
    bool tiled = false;         // the source repeated over the whole destination
    int32_t maskColor = -1;     // 0x00BBGGRR: source pixels of this colour are skipped; -1 none
    bool createNew = false;     // the result becomes a new document
};

// The destination's size after the overlay: laid once, the source must fit whole, so the
// canvas grows to the right and down where it would stick out; tiled, it never grows.
FitSize OverlayCanvas(int32_t destW, int32_t destH, int32_t srcW, int32_t srcH,
                      const OverlayOptions& o);
// `dest` on a canvas of w x h (at least its own size): its pixels at the top left, black
// (all four channels 0) where the canvas is new.
Bits GrowCanvas(const Bits& dest, int32_t w, int32_t h);
// Where TileMask starts: the offsets themselves when laid once; tiled, the placement that
// starts at or before the image's top left in the same step as the offsets, so the
// repeats cover the whole image and the offsets shift the pattern.
void OverlayStart(int32_t srcW, int32_t srcH, const OverlayOptions& o, int32_t& x, int32_t& y);
// The overlay of `source` on `dest` (grown as OverlayCanvas says) inside `region` (nullptr:
// everywhere), through `filter`, whose buffer it replaces.
Bits OverlayBits(cBitFilter& filter, const Bits& dest, const Bits& source,
                 const OverlayOptions& o, const Region* region = nullptr);

// What OK needs of the main window.
struct OverlayHost {
    // The filter envelope: the operation runs on cFilter (loaded with the active document),
    // its result becomes the document's pixels and one undo state under the label.
    std::function<void(const std::function<Bits(cBitFilter&)>&, const QString&)> envelope;
    // The update with save of the active document (after a new document is made).
    std::function<void(const QString&)> update;
};

// OK of the dialog on the active document `dest` with the pixels of the source. A grown
// canvas resets the selection to the whole new image. With createNew a new document
// ("New.bmp", first state "Original") takes the result, gets the update under "Overlay
// Image", and is returned; `dest` stays as it was.
fImage* ApplyOverlay(fImage& dest, const Bits& source, const OverlayOptions& o,
                     DocumentHost& host, const OverlayHost& window);

} // namespace ostrivex
