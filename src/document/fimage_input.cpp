// fImage: the canvas's mouse and keys. Positions become image cells, and the current tool
// (Settings.ActiveTool, found in the registry of src/document/tools) gets the press, the
// moves with the button held, the release and the keys. Around those calls the window does
// what all tools share: the readouts, the press and last points, hand scrolling, and a
// pending paste, which follows the mouse and owns the left button until a click places it.
#include "document/fimage.h"

#include "app/settings/settings.h"
#include "document/host.h"
#include "document/toolcursors.h"
#include "document/tools/tool.h"
#include "pixel/bitfilter.h"
#include "pixel/vbmath.h"

#include <QScrollBar>

#include <algorithm>

namespace ostrivex {

Tool* fImage::currentTool() const {
    // FieldText cuts the trailing blanks of the fixed text.
    return FindTool(QString::fromStdString(FieldText(Settings.ActiveTool)));
}

fImage::ToolPoint fImage::CellAt(QPointF pos) const {
    const ViewScale s = Scale();
    // The sum is rounded first; the division truncates as the program's integer division.
    const int64_t x = vbRound(double(hSB_->value()) + pos.x());
    const int64_t y = vbRound(double(vSB_->value()) + pos.y());
    return ToolPoint{int32_t(x * s.den / s.num), int32_t(y * s.den / s.num)};
}

// cFilter gets the selection, or the whole image when nothing is selected; the ants run
// while there is a selection.
void fImage::giveFilterSelection() {
    if (Region().IsEmptyRegion())
        StopTimer();
    else
        StartTimer();
    GiveFilterRegion(true);
}

// --- The info readouts ----------------------------------------------------------------------

void fImage::showPosition(ToolPoint at) {
    if (DocumentHost* h = host())
        h->SetStatusPanel("Position", QStringLiteral("%1, %2").arg(at.x).arg(at.y));
}

void fImage::showPixel(ToolPoint at) {
    showPosition(at);
    DocumentHost* h = host();
    if (!h) return;
    const int32_t c = BitsGetPixel(bits(), at.x, at.y);
    const int r = int(colourR(uint32_t(c))), g = int(colourG(uint32_t(c))),
              b = int(colourB(uint32_t(c)));
    auto hex2 = [](int v) { return QStringLiteral("%1").arg(v, 2, 16, QChar('0')).toUpper(); };
    h->SetStatusPanel("Color", QStringLiteral("R %1  G %2  B %3  #%4%5%6")
                                   .arg(r).arg(g).arg(b)
                                   .arg(hex2(r), hex2(g), hex2(b)));
}

// The colour the tools paint with, beside the pixel under the mouse.
void fImage::showForeground() {
    DocumentHost* h = host();
    if (!h) return;
    const uint32_t c = uint32_t(Settings.ColorPrimary);
    const QString hex = QStringLiteral("%1%2%3")
                            .arg(int(colourR(c)), 2, 16, QChar('0'))
                            .arg(int(colourG(c)), 2, 16, QChar('0'))
                            .arg(int(colourB(c)), 2, 16, QChar('0'))
                            .toUpper();
    h->SetStatusPanel("Foreground", QStringLiteral("Foreground #") + hex);
}

// --- Mouse events of the canvas -------------------------------------------------------------

void fImage::iDst_MouseDown(Qt::MouseButton button, QPointF pos, QPoint screen) {
    if (!PictureExists()) return;
    if (button == Qt::LeftButton) {
        if (mouseScroll_) iDst_->setCursor(ToolCursor("cGrab")); // the grab of hand scrolling
        dragging_ = true;
        cursorPoint_ = prevCursorPoint_ = screen;
        // The stroke starts where the press is: the image cell under the mouse, scroll
        // values included, so a pencil's or a free-hand shape's first segment starts there.
        stroke_.LastPoint = CellAt(pos);
    }
    toolPress(button, CellAt(pos));
}

void fImage::iDst_MouseMove(Qt::MouseButtons buttons, QPointF pos, QPoint screen) {
    mouseMoveAt(buttons, pos, screen, false);
}

void fImage::mouseMoveAt(Qt::MouseButtons buttons, QPointF pos, QPoint screen, bool forceCell) {
    if (!PictureExists()) return;
    moveAtCell(buttons, CellAt(pos), screen, forceCell);
}

void fImage::moveAtCell(Qt::MouseButtons buttons, ToolPoint cell, QPoint screen, bool forceCell) {
    // Moves inside one image cell do no tool work.
    const bool changed = forceCell || cell.x != lastCellX_ || cell.y != lastCellY_;
    if (changed) {
        lastCellX_ = cell.x;
        lastCellY_ = cell.y;
    }
    if ((buttons & Qt::LeftButton) && mouseScroll_ && dragging_) {
        // Hand scrolling: the bars follow the mouse, and the tool paints on.
        const QPoint delta = screen - prevCursorPoint_;
        prevCursorPoint_ = cursorPoint_ = screen;
        suppressScrollPaint_ = true;
        hSB_->setValue(std::clamp(hSB_->value() - delta.x(), 0, hSB_->maximum()));
        vSB_->setValue(std::clamp(vSB_->value() - delta.y(), 0, vSB_->maximum()));
        suppressScrollPaint_ = false;
        if (hSB_->maximum() >= 1 || vSB_->maximum() >= 1) UpdateImage();
    }
    if (changed) toolMove(buttons, cell);
}

void fImage::iDst_MouseUp(Qt::MouseButton button, QPointF pos, QPoint /*screen*/) {
    if (!PictureExists()) return;
    dragging_ = false;
    toolRelease(button, CellAt(pos));
    if (mouseScroll_) SetMouseScroll(true); // the open hand again while hand scrolling is on
}

// --- Press, move, release -------------------------------------------------------------------

void fImage::toolPress(Qt::MouseButton button, ToolPoint at) {
    DocumentHost* h = host();
    showPosition(at);
    const bool paste = h && h->PendingPaste;
    if (button == Qt::LeftButton) {
        stroke_.PressPoint = stroke_.PrevPoint = at;
        stroke_.MouseIsDown = true;
        // While a paste follows the mouse, the left button places it and does no tool work.
        if (!paste)
            if (Tool* tool = currentTool()) {
                ToolContext c(*this, stroke_);
                tool->Press(c, at);
            }
    }
    if (paste) toolMove(button == Qt::LeftButton ? Qt::LeftButton : Qt::NoButton, at);
}

void fImage::toolMove(Qt::MouseButtons buttons, ToolPoint at) {
    DocumentHost* h = host();
    showPixel(at);
    showForeground();
    const bool paste = h && h->PendingPaste;
    ToolContext c(*this, stroke_);
    if ((buttons & Qt::LeftButton) && !paste)
        if (Tool* tool = currentTool()) tool->Move(c, at);

    // A pending paste follows the mouse in the active document.
    if (paste && !h->ClipBuffer.empty() && active_) {
        const Bits& clip = h->ClipBuffer;
        // Half the buffer's upper bounds (width + 1, height + 1), rounded.
        stroke_.HotSpot = ToolPoint{vbRound((clip.width() + 1) / 2.0), vbRound((clip.height() + 1) / 2.0)};
        c.RestoreBase();
        const int32_t pressure =
            Settings.PasteMode != 0 ? Settings.PastePressure : Settings.SelectPressure;
        BitsPaintPreMasked(c.Pixels(), *Region().RegionMain(), stroke_.Done,
                           at.x - stroke_.HotSpot.x, at.y - stroke_.HotSpot.y, clip, pressure);
        c.Changed();
    }
    stroke_.LastPoint = at;
}

void fImage::toolRelease(Qt::MouseButton button, ToolPoint at) {
    DocumentHost* h = host();
    const bool paste = h && h->PendingPaste;
    ToolContext c(*this, stroke_);
    if (button == Qt::LeftButton && !paste)
        if (Tool* tool = currentTool()) tool->Release(c, at);

    // A left click places the pending paste and files it; a right click takes it away.
    if (paste && button == Qt::LeftButton) {
        h->PendingPaste = false;
        c.Commit(h->ActionLabel);
    } else if (paste && button == Qt::RightButton) {
        h->PendingPaste = false;
        CancelEdit();
    }
    giveFilterSelection();
    stroke_.MouseIsDown = false;
}

// --- Keys ----------------------------------------------------------------------------------

bool fImage::iDst_KeyDown(int key) {
    if (!PictureExists()) return false;
    DocumentHost* h = host();
    int dx = 0, dy = 0;
    switch (key) {
    case Qt::Key_Left: dx = -1; break;
    case Qt::Key_Up: dy = -1; break;
    case Qt::Key_Right: dx = 1; break;
    case Qt::Key_Down: dy = 1; break;
    default: break;
    }
    ToolPoint& last = stroke_.LastPoint;
    if (dx != 0 || dy != 0) {
        // The image point itself moves on (below 1 : 1 a canvas pixel holds several).
        last.x += dx;
        last.y += dy;
        moveAtCell(Qt::NoButton, last, iDst_->mapToGlobal(canvasPoint(last).toPoint()), false);
        return true;
    }
    Tool* tool = currentTool();
    ToolContext c(*this, stroke_);
    const bool used = tool && tool->Key(c, key);
    if (key != Qt::Key_Space) return used;

    const bool paste = h && h->PendingPaste;
    if ((tool && tool->CommitsOnSpace()) || paste) {
        // Commit: the pixels as they stand become the stroke base and an undo state.
        c.Commit(h ? h->ActionLabel : QString());
        if (h) h->SelectionChanged = false;
        // One more move at the same place (its cell is taken anew), so the paste or the
        // stamp goes on from there. The screen point stays where the hand last was, so
        // hand scrolling stays put.
        if (paste)
            moveAtCell(Qt::NoButton, last, prevCursorPoint_, true);
        else if (stroke_.MouseIsDown)
            moveAtCell(Qt::LeftButton, last, prevCursorPoint_, true);
    }
    return true;
}

void fImage::iDst_KeyUp(int key) {
    if (!PictureExists()) return;
    if (Tool* tool = currentTool()) {
        ToolContext c(*this, stroke_);
        tool->KeyUp(c, key);
    }
}

} // namespace ostrivex
