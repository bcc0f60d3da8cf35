// Stamp: lays the stamp of the Stamp panel with its middle under the mouse, in its own
// colours (a colour key left out) or as a mask of the foreground colour; with the live flag
// only the last stamp of the stroke stays.
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/host.h"
#include "document/toolcursors.h"

namespace ostrivex {

namespace {

class StampTool : public Tool {
public:
    QCursor Cursor() const override { return ToolCursor("cTextures"); }

    void Press(ToolContext& c, ToolPoint at) override {
        c.Window.StopTimer();
        c.SetCursor(Cursor());
        if (c.Host && !c.Host->StampBits.empty()) {
            const Bits& stamp = c.Host->StampBits;
            c.Stroke.HotSpot = ToolPoint{stamp.width() / 2 + 1, stamp.height() / 2 + 1};
            c.MoveAt(at);
        }
        c.SetLabel("Stamp");
    }

    void Move(ToolContext& c, ToolPoint at) override {
        if (!c.Host || c.Host->StampBits.empty()) return;
        if (IsTrue(Settings.StampClearBack)) c.RestoreBase();
        const int32_t x = at.x - c.Stroke.HotSpot.x, y = at.y - c.Stroke.HotSpot.y;
        if (IsTrue(Settings.StampMask))
            BitsBWMask(c.Pixels(), c.Area(), c.Stroke.Done, x, y, c.Host->StampBits,
                       Settings.ColorPrimary, Settings.StampPressure);
        else
            BitsPaint(c.Pixels(), c.Area(), c.Stroke.Done, x, y, c.Host->StampBits,
                      IsTrue(Settings.StampUseMaskColor) ? Settings.StampMaskColor : -1,
                      Settings.StampPressure);
        c.Changed();
    }

    void Release(ToolContext& c, ToolPoint) override {
        c.UnsetCursor();
        if (c.Host) c.Host->PencilStroke = false;
        c.Commit(c.Label());
    }
};

} // namespace

std::unique_ptr<Tool> MakeStampTool() { return std::make_unique<StampTool>(); }

} // namespace ostrivex
