// Pencil: a line of the foreground colour from the last position to the mouse, at full
// pressure.
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/host.h"
#include "document/toolcursors.h"

namespace ostrivex {

namespace {

class PencilTool : public Tool {
public:
    QCursor Cursor() const override { return ToolCursor("cPencil"); }

    void Press(ToolContext& c, ToolPoint at) override {
        c.Window.StopTimer();
        c.MoveAt(at);
        c.SetCursor(Cursor());
        c.SetLabel("Pencil");
    }

    void Move(ToolContext& c, ToolPoint at) override {
        const ToolPoint from = c.Stroke.LastPoint;
        BitsLine(c.Pixels(), c.Area(), c.Stroke.Done, from.x, from.y, at.x, at.y,
                 Settings.ColorPrimary, 100);
        c.Changed();
    }

    void Release(ToolContext& c, ToolPoint) override {
        c.UnsetCursor();
        // The last painted state came from the pencil.
        if (c.Host) c.Host->PencilStroke = true;
        c.Commit(c.Label());
    }
};

} // namespace

std::unique_ptr<Tool> MakePencilTool() { return std::make_unique<PencilTool>(); }

} // namespace ostrivex
