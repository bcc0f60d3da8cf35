// The context of a tool's event: the window, the model, the host and the stroke.
#include "document/tools/tool.h"

#include "document/fimage.h"
#include "document/host.h"
#include "pixel/bitfilter.h"

namespace ostrivex {

ToolContext::ToolContext(fImage& window, StrokeState& stroke)
    : Window(window), Model(window.Model()), Host(GetDocumentHost()), Stroke(stroke) {}

Bits& ToolContext::Pixels() { return *Model.BeginEdit(Model.Target()); }

void ToolContext::Changed() { Model.EditChanged(); }

void ToolContext::RestoreBase() {
    if (!Host) return;
    const Bits& base = Host->Filter().bits();
    Bits& pixels = Pixels();
    // cFilter holds another picture only while no stroke of this document can be under way
    // (activation gives it this document's pixels): then there is nothing to restore.
    if (base.width() == pixels.width() && base.height() == pixels.height()) pixels = base;
}

void ToolContext::Commit(const QString& label) { Model.Commit(Model.Target(), label); }

const Region& ToolContext::Area() const { return Model.EffectiveRegion(); }

void ToolContext::NewDoneTable() { CreateDoneBitsTable(Stroke.Done, Pixels()); }

void ToolContext::SetLabel(const QString& label) {
    if (Host) Host->ActionLabel = label;
}

QString ToolContext::Label() const { return Host ? Host->ActionLabel : QString(); }

void ToolContext::SetCursor(const QCursor& cursor) { Window.Canvas()->setCursor(cursor); }

void ToolContext::UnsetCursor() { Window.Canvas()->unsetCursor(); }

void ToolContext::MoveAt(ToolPoint at) { Window.toolMove(Qt::LeftButton, at); }

QCursor Tool::Cursor() const { return QCursor(Qt::CrossCursor); }

} // namespace ostrivex
