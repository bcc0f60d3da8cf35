// Text: lays the rendered text (the host's TextBits) as a mask of the foreground colour
// with its middle under the mouse; the space bar files it where it is and goes on. Nothing
// renders a text into TextBits yet and no tool button selects the tool: the text layers
// will.
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/host.h"
#include "document/toolcursors.h"

namespace ostrivex {

namespace {

class TextTool : public Tool {
public:
    QCursor Cursor() const override { return ToolCursor("cPencil"); }

    void Press(ToolContext& c, ToolPoint at) override {
        c.Window.StopTimer();
        if (c.Host && !c.Host->TextBits.empty()) {
            const Bits& text = c.Host->TextBits;
            c.Stroke.HotSpot = ToolPoint{text.width() / 2 + 1, text.height() / 2 + 1};
            c.MoveAt(at);
            c.SetCursor(Cursor());
        }
    }

    void Move(ToolContext& c, ToolPoint at) override {
        if (!c.Host || c.Host->TextBits.empty()) return;
        c.RestoreBase();
        BitsBWMask(c.Pixels(), c.Area(), c.Stroke.Done, at.x - c.Stroke.HotSpot.x,
                   at.y - c.Stroke.HotSpot.y, c.Host->TextBits, Settings.ColorPrimary,
                   Settings.TextPressure);
        c.Changed();
    }

    bool CommitsOnSpace() const override { return true; }
};

} // namespace

std::unique_ptr<Tool> MakeTextTool() { return std::make_unique<TextTool>(); }

} // namespace ostrivex
