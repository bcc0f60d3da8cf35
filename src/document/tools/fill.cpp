// Fill: at the release, floods the pixels like the one under the mouse (within the
// tolerance) with the foreground colour or the current texture.
#include "document/tools/tool.h"

#include "app/settings/settings.h"
#include "document/fimage.h"
#include "document/host.h"
#include "document/toolcursors.h"

#include <QApplication>

namespace ostrivex {

namespace {

class FillTool : public Tool {
public:
    QCursor Cursor() const override { return ToolCursor("cFill"); }

    void Press(ToolContext& c, ToolPoint) override {
        c.SetCursor(Cursor());
        c.SetLabel("Fill");
    }

    void Release(ToolContext& c, ToolPoint at) override {
        c.SetCursor(Cursor());
        QApplication::setOverrideCursor(Qt::WaitCursor);
        c.NewDoneTable();
        Bits& pixels = c.Pixels();
        if (Settings.FillMode == 0)
            BitsFill(pixels, c.Area(), c.Stroke.Done, at.x, at.y, Settings.ColorPrimary,
                     Settings.FillTolerance, Settings.FillPressure);
        else if (c.Host && !c.Host->TextureBits.empty())
            BitsFillTexture(pixels, c.Area(), c.Stroke.Done, at.x, at.y, c.Host->TextureBits,
                            Settings.FillTolerance, Settings.FillPressure);
        QApplication::restoreOverrideCursor();
        c.Commit("Fill");
    }
};

} // namespace

std::unique_ptr<Tool> MakeFillTool() { return std::make_unique<FillTool>(); }

} // namespace ostrivex
