// How a document is shown, kept apart from what it holds: none of this is part of a state
// of the history or of a file.
//
// The zoom has two parts. `ZoomIndex` (1 to 15) is the zoom of the tools' arithmetic and
// of the selection outline: the image is drawn at ZoomIndex : 1, and a canvas position
// becomes an image pixel by (scroll + position) div ZoomIndex. Below 1 : 1 the view shows
// the image reduced at 1 : `Reduction` (2 to 16) while ZoomIndex stays 1: a canvas
// position then becomes (scroll + position) * Reduction. A reduction changes only what is
// shown; pixel coordinates and everything the tools compute stay in image pixels.
#pragma once

#include "model/edittarget.h"

#include <QString>

#include <array>
#include <cstdint>

namespace ostrivex {

// The scale a view shows its image at: Numerator : Denominator, one of them 1.
struct ViewScale {
    int32_t num = 1;
    int32_t den = 1;
    bool operator==(const ViewScale&) const = default;
};

struct ViewState {
    static constexpr int32_t kMaxZoomIndex = 15;
    // The reductions below 1 : 1, in the order zooming out goes through them.
    static constexpr std::array<int32_t, 9> kReductions{2, 3, 4, 5, 6, 8, 10, 12, 16};

    ViewTab Tab = ViewTab::Enhanced;
    int32_t ZoomIndex = 1;
    int32_t Reduction = 1; // 1 when the view is not reduced

    ViewScale Scale() const { return Reduction > 1 ? ViewScale{1, Reduction} : ViewScale{ZoomIndex, 1}; }

    // The text's zoom: the index held to 1..15; any reduction ends.
    void SetZoomIndex(int32_t index);
    // One step up or down the whole ladder 1 : 16 ... 1 : 2, 1 : 1, 2 : 1 ... 15 : 1.
    // False when already at the end.
    bool ZoomIn();
    bool ZoomOut();
    // The largest scale of the ladder at which an image of w x h is shown whole in a view
    // of viewW x viewH; 1 : 16 when even that is too large.
    void Fit(int32_t w, int32_t h, int32_t viewW, int32_t viewH);
    // Sets the scale to a step of the ladder ({z, 1} for 1 to 15, {1, r} for a reduction of
    // the list); false, changing nothing, for any other.
    bool SetScale(ViewScale scale);

    // The scale as the status bar shows it: "3 : 1", "1 : 4".
    QString ZoomText() const;
};

} // namespace ostrivex
