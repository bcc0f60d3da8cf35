// Gradient: a linear or radial gradient between two colours from the press to the release,
// shown as a rubber line or circle while the mouse moves.
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/paint/paint_gradient.h"
#include "document/toolcursors.h"
#include "pixel/vbmath.h"

#include <cmath>

namespace ostrivex {

namespace {

class GradientTool : public Tool {
public:
    QCursor Cursor() const override { return ToolCursor("cGradient"); }

    void Press(ToolContext& c, ToolPoint) override {
        c.SetCursor(Cursor());
        c.Window.SetAutoRedraw(true);
        c.Window.StopTimer();
        c.SetLabel("Gradient");
    }

    void Move(ToolContext& c, ToolPoint at) override {
        const ToolPoint p = c.Stroke.PressPoint;
        if (Settings.GradientMode == 0) {
            c.Window.ShowShape(2, p.x, p.y, at.x, at.y, false);
        } else {
            const double dx = at.x - p.x, dy = at.y - p.y;
            const int32_t r = vbRound(std::sqrt(dx * dx + dy * dy));
            c.Window.ShowShape(1, p.x - r, p.y - r, p.x + r, p.y + r, false);
        }
    }

    void Release(ToolContext& c, ToolPoint at) override {
        GradientParams gradient;
        gradient.x1 = c.Stroke.PressPoint.x;
        gradient.y1 = c.Stroke.PressPoint.y;
        gradient.x2 = at.x;
        gradient.y2 = at.y;
        gradient.radial = Settings.GradientMode == 1;
        // -1 stands for the foreground colour.
        const int32_t fore = Settings.ColorPrimary;
        gradient.colour1 = Settings.GradientColor1 == -1 ? fore : Settings.GradientColor1;
        gradient.colour2 = Settings.GradientColor2 == -1 ? fore : Settings.GradientColor2;
        gradient.pressure = Settings.GradientPressure;
        gradient.frequency = Settings.GradientFrequency;
        gradient.transparent = IsTrue(Settings.GradientTransparent);
        BitsGradient(c.Pixels(), c.Area(), gradient);
        c.Window.HideShape(gradient.radial ? 1 : 2);
        c.Window.SetAutoRedraw(false);
        c.Commit("Gradient");
    }
};

} // namespace

std::unique_ptr<Tool> MakeGradientTool() { return std::make_unique<GradientTool>(); }

} // namespace ostrivex
