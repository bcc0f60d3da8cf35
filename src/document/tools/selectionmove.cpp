// SelectionMove: moves the selection's outline (the panel's move-selection-only flag), or
// lifts the selection's pixels and lays them wherever the mouse takes them. The moved
// pixels become the stroke base at the release; the space bar files them.
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/host.h"
#include "document/toolcursors.h"
#include "pixel/bitfilter.h"

#include <QApplication>

namespace ostrivex {

namespace {

class SelectionMoveTool : public Tool {
public:
    QCursor Cursor() const override { return ToolCursor("cMove"); }

    void Press(ToolContext& c, ToolPoint at) override {
        c.SetCursor(Cursor());
        StrokeState& s = c.Stroke;
        const cBitRegion& selection = c.Model.Region();
        s.MovingSelection = false;
        const bool inside = !selection.IsEmptyRegion() && selection.Region()->contains(at.x, at.y);
        if (IsTrue(Settings.SelectMove)) {
            if (inside) {
                s.MovingSelection = true;
                c.MoveAt(at);
            }
            return;
        }
        c.Window.StopTimer();
        int32_t left = 0, top = 0, right = 0, bottom = 0;
        if (inside && c.Host && selection.BoundRect(left, top, right, bottom)) {
            c.Window.UpdateImage();
            QApplication::setOverrideCursor(Qt::WaitCursor);
            cBitFilter& filter = c.Host->Filter();
            const Bits& pixels = c.Pixels();
            filter.SetBits(pixels);
            filter.BitsRegion(&*selection.Region());
            filter.BitsCropMasked(pixels, left, top, right, bottom);
            s.MovedBits = filter.GetBits();
            // The filter is the stroke base: it takes the image back at once, so that the
            // moves restore the image and not the lifted piece.
            filter.SetBits(pixels);
            s.HotSpot = ToolPoint{at.x - left, at.y - top};
            s.MovingSelection = true;
            QApplication::restoreOverrideCursor();
        }
        c.MoveAt(at);
    }

    void Move(ToolContext& c, ToolPoint at) override {
        c.SetCursor(Cursor());
        StrokeState& s = c.Stroke;
        if (!s.MovingSelection) return;
        if (IsTrue(Settings.SelectMove)) {
            c.Model.Region().Offset(at.x - s.LastPoint.x, at.y - s.LastPoint.y);
            c.Window.UpdateImage();
        } else {
            c.RestoreBase();
            BitsPaintPreMasked(c.Pixels(), *c.Model.Region().RegionMain(), s.Done,
                               at.x - s.HotSpot.x, at.y - s.HotSpot.y, s.MovedBits,
                               Settings.SelectPressure);
            c.Changed();
        }
    }

    void Release(ToolContext& c, ToolPoint) override {
        c.SetCursor(Cursor());
        if (IsTrue(Settings.SelectMove)) {
            c.Model.Region().Crop();
        } else if (c.Host) {
            // The moved pixels become the stroke base; the space bar files them.
            c.Host->Filter().SetBits(c.Model.bits());
            c.Window.UpdateImage();
        }
        c.Stroke.MovingSelection = false;
    }

    void KeyUp(ToolContext& c, int) override {
        c.Model.Region().Crop();
        c.Window.UpdateRegion();
    }

    bool CommitsOnSpace() const override { return true; }
};

} // namespace

std::unique_ptr<Tool> MakeSelectionMoveTool() { return std::make_unique<SelectionMoveTool>(); }

} // namespace ostrivex
