// Brush: paints, softens, sharpens, lightens or darkens round stamps along the mouse (kinds
// 0 to 5), or lays the current texture through the brush (kind 6); with the line flag the
// stamps are joined from the previous one.
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/host.h"
#include "document/toolcursors.h"

#include <algorithm>

namespace ostrivex {

namespace {

class BrushTool : public Tool {
public:
    QCursor Cursor() const override { return ToolCursor("cBrush"); }

    void Press(ToolContext& c, ToolPoint at) override {
        c.Window.StopTimer();
        c.NewDoneTable();
        c.MoveAt(at);
        c.SetCursor(Cursor());
        c.SetLabel("Brush");
    }

    void Move(ToolContext& c, ToolPoint at) override {
        StrokeState& s = c.Stroke;
        Bits& pixels = c.Pixels();
        const Region& area = c.Area();
        const int32_t kind = Settings.BrushMode;
        const int32_t size = std::max<int32_t>(1, Settings.BrushSize);
        const int32_t pressure = Settings.BrushPressure;
        const int32_t colour = Settings.ColorPrimary;
        const bool line = IsTrue(Settings.BrushContinuous);
        const ToolPoint p = s.PrevPoint;
        if (kind >= 0 && kind <= 5) {
            if (line) {
                BitsBrushLine(pixels, area, s.Done, p.x, p.y, at.x, at.y, size, pressure, colour,
                              BrushKind(kind));
            } else {
                switch (kind) {
                case 0: BitsBrush(pixels, area, s.Done, at.x, at.y, size, pressure, colour); break;
                case 1: BitsSoften(pixels, area, s.Done, at.x, at.y, size, pressure, false); break;
                case 2: BitsSoften(pixels, area, s.Done, at.x, at.y, size, pressure, true); break;
                case 3: BitsSharpen(pixels, area, s.Done, at.x, at.y, size, pressure); break;
                case 4: BitsBrightness(pixels, area, s.Done, at.x, at.y, size, pressure, true); break;
                default: BitsBrightness(pixels, area, s.Done, at.x, at.y, size, pressure, false); break;
                }
            }
        } else if (kind == 6 && c.Host && !c.Host->TextureBits.empty()) {
            const Bits& texture = c.Host->TextureBits;
            if (line)
                BitsMaskedLine(pixels, area, s.Done, p.x, p.y, at.x, at.y, size, pressure, texture);
            else
                BitsMasked(pixels, area, s.Done, at.x, at.y, texture, size, pressure);
        }
        c.Changed();
        s.PrevPoint = at;
    }

    void Release(ToolContext& c, ToolPoint) override {
        c.UnsetCursor();
        if (c.Host) c.Host->PencilStroke = false;
        c.Commit(c.Label());
    }
};

} // namespace

std::unique_ptr<Tool> MakeBrushTool() { return std::make_unique<BrushTool>(); }

} // namespace ostrivex
