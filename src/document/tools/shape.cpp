// Shape: a line, a square, a rectangle, a circle, an ellipse or a regular polygon from the
// press to the mouse, drawn anew over the stroke's base at each move; kind 1 is a free-hand
// line that stays.
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/host.h"

#include <algorithm>
#include <cstdlib>

namespace ostrivex {

namespace {

int32_t sgn(int32_t v) { return v > 0 ? 1 : v < 0 ? -1 : 0; }

class ShapeTool : public Tool {
public:
    void Press(ToolContext& c, ToolPoint at) override {
        c.Window.StopTimer();
        c.MoveAt(at);
        c.SetLabel("Shape");
    }

    void Move(ToolContext& c, ToolPoint at) override {
        StrokeState& s = c.Stroke;
        const int32_t kind = Settings.ShapeKind;
        const int32_t p = Settings.ShapePressure;
        const int32_t colour = Settings.ColorPrimary;
        const int32_t px = s.PressPoint.x, py = s.PressPoint.y;
        // Every kind but the free hand draws from the press anew at each move.
        if (kind != 1) c.RestoreBase();
        Bits& pixels = c.Pixels();
        const Region& area = c.Area();
        switch (kind) {
        case 0: BitsLine(pixels, area, s.Done, px, py, at.x, at.y, colour, p); break;
        case 1: BitsLine(pixels, area, s.Done, s.LastPoint.x, s.LastPoint.y, at.x, at.y, colour, p); break;
        case 2: {
            const int32_t side = std::abs(at.x - px);
            BitsRectangle(pixels, area, s.Done, px, py, px + side * sgn(at.x - px),
                          py + side * sgn(at.y - py), colour, p);
            break;
        }
        case 3: BitsRectangle(pixels, area, s.Done, px, py, at.x, at.y, colour, p); break;
        case 4: {
            const int32_t r = std::abs(at.x - px);
            BitsEllipse(pixels, area, s.Done, px, py, r, r, colour, p);
            break;
        }
        case 5: BitsEllipse(pixels, area, s.Done, px, py, std::abs(at.x - px), std::abs(at.y - py), colour, p); break;
        case 6:
            BitsPolygon(pixels, area, s.Done, px, py, at.x, at.y, std::max<int32_t>(1, Settings.ShapeSides),
                        colour, p);
            break;
        default: break;
        }
        c.Changed();
    }

    void Release(ToolContext& c, ToolPoint) override {
        c.UnsetCursor();
        if (c.Host) c.Host->PencilStroke = false;
        c.Commit(c.Label());
    }
};

} // namespace

std::unique_ptr<Tool> MakeShapeTool() { return std::make_unique<ShapeTool>(); }

} // namespace ostrivex
