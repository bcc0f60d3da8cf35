// GetColor: the colour under the mouse becomes the foreground colour, live while the button
// is held.
#include "document/tools/tool.h"

#include "document/fimage.h"
#include "document/host.h"
#include "document/toolcursors.h"

namespace ostrivex {

namespace {

class GetColorTool : public Tool {
public:
    QCursor Cursor() const override { return ToolCursor("cPicker"); }

    void Press(ToolContext& c, ToolPoint at) override {
        c.SetCursor(Cursor());
        c.MoveAt(at);
    }

    void Move(ToolContext& c, ToolPoint at) override {
        if (c.Host) c.Host->ColorPicked(BitsGetPixel(c.Model.bits(), at.x, at.y));
    }

    void Release(ToolContext& c, ToolPoint) override { c.UnsetCursor(); }
};

} // namespace

std::unique_ptr<Tool> MakeGetColorTool() { return std::make_unique<GetColorTool>(); }

} // namespace ostrivex
