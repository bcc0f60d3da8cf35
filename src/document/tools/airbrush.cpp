// Airbrush: sprays the foreground colour round the mouse, denser towards the middle.
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/host.h"
#include "document/toolcursors.h"

#include <algorithm>

namespace ostrivex {

namespace {

class AirbrushTool : public Tool {
public:
    QCursor Cursor() const override { return ToolCursor("cAirBrush"); }

    void Press(ToolContext& c, ToolPoint at) override {
        c.Window.StopTimer();
        c.MoveAt(at);
        c.SetCursor(Cursor());
        c.SetLabel("AirBrush");
    }

    void Move(ToolContext& c, ToolPoint at) override {
        BitsAirbrush(c.Pixels(), c.Area(), c.Stroke.Done, at.x, at.y,
                     std::max<int32_t>(1, Settings.AirbrushSize), Settings.AirbrushPressure,
                     Settings.AirbrushQuantity, Settings.AirbrushDefinition, Settings.ColorPrimary);
        c.Changed();
        c.SetCursor(Cursor());
    }

    void Release(ToolContext& c, ToolPoint) override {
        c.UnsetCursor();
        if (c.Host) c.Host->PencilStroke = false;
        c.Commit(c.Label());
    }
};

} // namespace

std::unique_ptr<Tool> MakeAirbrushTool() { return std::make_unique<AirbrushTool>(); }

} // namespace ostrivex
