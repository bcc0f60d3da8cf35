// Select: draws a rectangle, an ellipse, a polygon or a free-hand outline and combines it
// into the selection by the panel's mode (add, subtract, new).
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/host.h"

#include <algorithm>
#include <cstdlib>

namespace ostrivex {

namespace {

// The combine value of a mode: add and new unite, subtract takes away.
int32_t combineMode(int32_t mode) {
    return mode == 1 ? cBitRegion::ModeDifference : cBitRegion::ModeUnion;
}

class SelectTool : public Tool {
public:
    void Press(ToolContext& c, ToolPoint at) override {
        c.SetCursor(Cursor());
        cBitRegion& selection = c.Model.Region();
        const int32_t shape = Settings.SelectShape;
        const bool fresh = Settings.SelectMode == 2;
        auto clear = [&] {
            selection.CreateRect(0, 0, c.Model.PictureWidth(), c.Model.PictureHeight(),
                                 cBitRegion::ModeDifference, false);
        };
        if (shape == 2) {
            // A polygon: the first press starts it; later presses go on from its last point.
            std::vector<int32_t>& points = c.Stroke.PolygonPoints;
            if (points.size() < 2) {
                points = {at.x, at.y};
                if (fresh) clear();
            } else {
                c.Stroke.PressPoint = ToolPoint{points[points.size() - 2], points.back()};
            }
        } else if (fresh) {
            clear();
        }
        if (shape == 3) {
            c.Window.StartTimer();
            c.MoveAt(at);
        } else {
            c.Window.SetAutoRedraw(false);
            c.Window.StopTimer();
        }
    }

    void Move(ToolContext& c, ToolPoint at) override {
        const ToolPoint press = c.Stroke.PressPoint;
        if (c.Host)
            c.Host->SetStatusPanel("Position", QStringLiteral("%1, %2  %3 x %4")
                                                   .arg(at.x).arg(at.y)
                                                   .arg(std::abs(at.x - press.x))
                                                   .arg(std::abs(at.y - press.y)));
        c.SetCursor(Cursor());
        const int32_t shape = Settings.SelectShape;
        if (shape == 3) {
            c.Model.Region().CreateRect(at.x, at.y, at.x + 1, at.y + 1,
                                        combineMode(Settings.SelectMode), true);
            c.Window.SetAutoRedraw(true);
            c.Window.SetAutoRedraw(false);
        } else if (shape == 0 || shape == 1) {
            c.Window.ShowShape(shape, std::min(press.x, at.x), std::min(press.y, at.y),
                               std::max(press.x, at.x), std::max(press.y, at.y), false);
        } else {
            c.Window.ShowShape(shape, press.x, press.y, at.x, at.y, false);
        }
    }

    void Release(ToolContext& c, ToolPoint at) override {
        c.SetCursor(Cursor());
        cBitRegion& selection = c.Model.Region();
        const ToolPoint press = c.Stroke.PressPoint;
        const int32_t shape = Settings.SelectShape;
        const int32_t mode = combineMode(Settings.SelectMode);
        if (shape == 0) {
            selection.CreateRect(press.x, press.y, at.x, at.y, mode, true);
            c.Window.HideShape(0);
        } else if (shape == 1) {
            // The box in order: the lesser edge stays, the greater takes one more.
            selection.CreateEllipse(std::min(press.x, at.x), std::min(press.y, at.y),
                                    std::max(press.x, at.x) + 1, std::max(press.y, at.y) + 1,
                                    mode, true);
            c.Window.HideShape(1);
        } else if (shape == 2) {
            selection.CreatePolygon(c.Stroke.PolygonPoints, mode, true);
            c.Window.HideShape(2);
            c.Stroke.PolygonPoints.clear();
        }
        if (shape >= 0 && shape <= 2) {
            c.Window.SetAutoRedraw(false);
            c.Window.UpdateImage();
        }
        c.Window.GiveFilterRegion(true);
        if (c.Host) c.Host->SelectionChanged = true;
    }

    // The space bar adds the last point to a polygon while the button is held.
    bool Key(ToolContext& c, int key) override {
        StrokeState& s = c.Stroke;
        if (key != Qt::Key_Space || Settings.SelectShape != 2 || !s.MouseIsDown) return false;
        s.PolygonPoints.push_back(s.LastPoint.x);
        s.PolygonPoints.push_back(s.LastPoint.y);
        c.Window.ShowShape(2, s.PressPoint.x, s.PressPoint.y, s.LastPoint.x, s.LastPoint.y, true);
        s.PressPoint = s.LastPoint;
        s.PrevPoint = s.PressPoint;
        return true;
    }
};

} // namespace

std::unique_ptr<Tool> MakeSelectTool() { return std::make_unique<SelectTool>(); }

} // namespace ostrivex
