// fImage: the paint and selection tools. The canvas's mouse and key events become image
// positions, and the active tool (Settings.ActiveTool) paints into Bits, moves the
// selection or its pixels, picks a colour, or places a pending paste.
//
// A stroke runs from press to release. Its base is the copy of Bits that cFilter holds
// (the stroke base): tools that draw a shape from the press to the mouse restore Bits from
// it at every move, and each release or commit copies Bits back into it and files the
// state in the undo history.
#include "document/fimage.h"

#include "app/settings/settings.h"
#include "document/host.h"
#include "document/paint/paint_gradient.h"
#include "document/toolcursors.h"
#include "pixel/bitfilter.h"
#include "pixel/vbmath.h"

#include <QApplication>
#include <QCursor>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ostrivex {

namespace {

// The select tool's combine value by mode: add and new unite, subtract takes away.
int32_t combineMode(int32_t mode) {
    return mode == 1 ? cBitRegion::ModeDifference : cBitRegion::ModeUnion;
}

int32_t sgn(int32_t v) { return v > 0 ? 1 : v < 0 ? -1 : 0; }

// The wait cursor over a piece of work that may take a while.
class BusyCursor {
public:
    BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

} // namespace

QString fImage::toolWord() const {
    // FieldText cuts the trailing blanks of the fixed text.
    return QString::fromStdString(FieldText(Settings.ActiveTool));
}

fImage::ToolPoint fImage::CellAt(QPointF pos) const {
    const int32_t z = Zoom();
    // The sum is rounded first; the division truncates as the program's integer division.
    const int32_t x = vbRound(double(hSB_->value()) + pos.x());
    const int32_t y = vbRound(double(vSB_->value()) + pos.y());
    return ToolPoint{x / z, y / z};
}

void fImage::CreateDoneBitsTable() { ostrivex::CreateDoneBitsTable(doneBits_, bits()); }

// --- The stroke base and the update with save ----------------------------------------------

Bits& fImage::strokePixels() { return *model_->BeginEdit(EditTarget::Enhanced()); }

void fImage::restoreFromStrokeBase() {
    DocumentHost* h = host();
    if (!h) return;
    const Bits& base = h->Filter().bits();
    // The filter holds another picture only while no stroke of this document can be under
    // way (activation gives it this document's pixels): then there is nothing to restore.
    if (base.width() == PictureWidth() && base.height() == PictureHeight()) strokePixels() = base;
}

// The update with save: the model files the stroke's pixels under the label, and the
// window's part (redraw, cFilter as the new stroke base, status, history list, pan view,
// Optimize preview) follows from its commit.
void fImage::commitStroke(const QString& label) { model_->Commit(EditTarget::Enhanced(), label); }

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
        Dragging = true;
        CursorPoint = PrevCursorPoint = screen;
        // The canvas position at the zoom, rounded, without the scroll values.
        const double z = Zoom();
        LastPoint = ToolPoint{vbRound(pos.x() / z), vbRound(pos.y() / z)};
    }
    toolPress(button, CellAt(pos));
}

void fImage::iDst_MouseMove(Qt::MouseButtons buttons, QPointF pos, QPoint screen) {
    mouseMoveAt(buttons, pos, screen, false);
}

void fImage::mouseMoveAt(Qt::MouseButtons buttons, QPointF pos, QPoint screen, bool forceCell) {
    if (!PictureExists()) return;
    // Moves inside one image cell do no tool work.
    const ToolPoint cell = CellAt(pos);
    const bool changed = forceCell || cell.x != LastCellX || cell.y != LastCellY;
    if (changed) {
        LastCellX = cell.x;
        LastCellY = cell.y;
    }
    if ((buttons & Qt::LeftButton) && mouseScroll_ && Dragging) {
        // Hand scrolling: the bars follow the mouse, and the tool paints on.
        const QPoint delta = screen - PrevCursorPoint;
        PrevCursorPoint = CursorPoint = screen;
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
    Dragging = false;
    toolRelease(button, CellAt(pos));
    if (mouseScroll_) SetMouseScroll(true); // the open hand again while hand scrolling is on
}

// --- Press ---------------------------------------------------------------------------------

void fImage::toolPress(Qt::MouseButton button, ToolPoint at) {
    DocumentHost* h = host();
    showPosition(at);
    const bool paste = h && h->PendingPaste;
    if (button == Qt::LeftButton) {
        PressPoint = PrevPoint = at;
        MouseIsDown = true;
        // While a paste follows the mouse, the left button places it and does no tool work.
        if (!paste) {
            const QString tool = toolWord();
            auto label = [h](const char* text) {
                if (h) h->ActionLabel = QString::fromLatin1(text);
            };
            if (tool == "Select") {
                iDst_->setCursor(Qt::CrossCursor);
                const int32_t shape = Settings.SelectShape;
                const bool fresh = Settings.SelectMode == 2;
                if (shape == 2) {
                    if (PolygonPoints.size() < 2) {
                        PolygonPoints = {at.x, at.y};
                        if (fresh) Region().CreateRect(0, 0, PictureWidth(), PictureHeight(),
                                                         cBitRegion::ModeDifference, false);
                    } else {
                        PressPoint = ToolPoint{PolygonPoints[PolygonPoints.size() - 2],
                                               PolygonPoints.back()};
                    }
                } else if (fresh) {
                    Region().CreateRect(0, 0, PictureWidth(), PictureHeight(),
                                          cBitRegion::ModeDifference, false);
                }
                if (shape == 3) {
                    StartTimer();
                    toolMove(Qt::LeftButton, at);
                } else {
                    SetAutoRedraw(false);
                    StopTimer();
                }
            } else if (tool == "SelectionMove") {
                iDst_->setCursor(ToolCursor("cMove"));
                MovingSelection = false;
                const bool inside = !Region().IsEmptyRegion() &&
                                    Region().Region()->contains(at.x, at.y);
                if (IsTrue(Settings.SelectMove)) {
                    if (inside) {
                        MovingSelection = true;
                        toolMove(Qt::LeftButton, at);
                    }
                } else {
                    StopTimer();
                    int32_t left = 0, top = 0, right = 0, bottom = 0;
                    if (inside && h && Region().BoundRect(left, top, right, bottom)) {
                        UpdateImage();
                        BusyCursor busy;
                        cBitFilter& filter = h->Filter();
                        filter.SetBits(bits());
                        filter.BitsRegion(&*Region().Region());
                        filter.BitsCropMasked(bits(), left, top, right, bottom);
                        MovedBits = filter.GetBits();
                        // The filter is the stroke base: it takes the image back at once,
                        // so that the moves restore the image and not the lifted piece.
                        filter.SetBits(bits());
                        HotSpot = ToolPoint{at.x - left, at.y - top};
                        MovingSelection = true;
                    }
                    toolMove(Qt::LeftButton, at);
                }
            } else if (tool == "Brush") {
                StopTimer();
                CreateDoneBitsTable();
                toolMove(Qt::LeftButton, at);
                iDst_->setCursor(ToolCursor("cBrush"));
                label("Brush");
            } else if (tool == "Airbrush") {
                StopTimer();
                toolMove(Qt::LeftButton, at);
                iDst_->setCursor(ToolCursor("cAirBrush"));
                label("AirBrush");
            } else if (tool == "Fill") {
                iDst_->setCursor(ToolCursor("cFill"));
                label("Fill");
            } else if (tool == "Shape") {
                StopTimer();
                toolMove(Qt::LeftButton, at);
                label("Shape");
            } else if (tool == "Pencil") {
                StopTimer();
                toolMove(Qt::LeftButton, at);
                iDst_->setCursor(ToolCursor("cPencil"));
                label("Pencil");
            } else if (tool == "Stamp") {
                StopTimer();
                iDst_->setCursor(ToolCursor("cTextures"));
                if (h && !h->StampBits.empty()) {
                    HotSpot = ToolPoint{h->StampBits.width() / 2 + 1, h->StampBits.height() / 2 + 1};
                    toolMove(Qt::LeftButton, at);
                }
                label("Stamp");
            } else if (tool == "Gradient") {
                iDst_->setCursor(ToolCursor("cGradient"));
                SetAutoRedraw(true);
                StopTimer();
                label("Gradient");
            } else if (tool == "Text") {
                StopTimer();
                if (h && !h->TextBits.empty()) {
                    HotSpot = ToolPoint{h->TextBits.width() / 2 + 1, h->TextBits.height() / 2 + 1};
                    toolMove(Qt::LeftButton, at);
                    iDst_->setCursor(ToolCursor("cPencil"));
                }
            } else if (tool == "GetColor") {
                iDst_->setCursor(ToolCursor("cPicker"));
                toolMove(Qt::LeftButton, at);
            }
        }
    }
    if (paste) toolMove(button == Qt::LeftButton ? Qt::LeftButton : Qt::NoButton, at);
}

// --- Move ----------------------------------------------------------------------------------

void fImage::toolMove(Qt::MouseButtons buttons, ToolPoint at) {
    DocumentHost* h = host();
    showPixel(at);
    showForeground();
    const QString tool = toolWord();
    const bool paste = h && h->PendingPaste;
    const int32_t colour = Settings.ColorPrimary;
    const ostrivex::Region& region = EffectiveRegion();
    if ((buttons & Qt::LeftButton) && !paste) {
        if (tool == "Select") {
            if (h)
                h->SetStatusPanel("Position", QStringLiteral("%1, %2  %3 x %4")
                                                  .arg(at.x).arg(at.y)
                                                  .arg(std::abs(at.x - PressPoint.x))
                                                  .arg(std::abs(at.y - PressPoint.y)));
            iDst_->setCursor(Qt::CrossCursor);
            const int32_t shape = Settings.SelectShape;
            if (shape == 3) {
                Region().CreateRect(at.x, at.y, at.x + 1, at.y + 1,
                                      combineMode(Settings.SelectMode), true);
                SetAutoRedraw(true);
                SetAutoRedraw(false);
            } else if (shape == 0 || shape == 1) {
                ShowShape(shape, std::min(PressPoint.x, at.x), std::min(PressPoint.y, at.y),
                          std::max(PressPoint.x, at.x), std::max(PressPoint.y, at.y), false);
            } else {
                ShowShape(shape, PressPoint.x, PressPoint.y, at.x, at.y, false);
            }
        } else if (tool == "SelectionMove") {
            iDst_->setCursor(ToolCursor("cMove"));
            if (IsTrue(Settings.SelectMove)) {
                if (MovingSelection) {
                    Region().Offset(at.x - LastPoint.x, at.y - LastPoint.y);
                    UpdateImage();
                }
            } else if (MovingSelection) {
                restoreFromStrokeBase();
                BitsPaintPreMasked(strokePixels(), *Region().RegionMain(), doneBits_, at.x - HotSpot.x,
                                   at.y - HotSpot.y, MovedBits, Settings.SelectPressure);
                UpdateImage();
            }
        } else if (tool == "Brush") {
            const int32_t kind = Settings.BrushMode;
            const int32_t size = std::max<int32_t>(1, Settings.BrushSize);
            const int32_t pressure = Settings.BrushPressure;
            const bool line = IsTrue(Settings.BrushContinuous);
            if (kind >= 0 && kind <= 5) {
                if (line) {
                    BitsBrushLine(strokePixels(), region, doneBits_, PrevPoint.x, PrevPoint.y, at.x, at.y,
                                  size, pressure, colour, BrushKind(kind));
                } else {
                    switch (kind) {
                    case 0: BitsBrush(strokePixels(), region, doneBits_, at.x, at.y, size, pressure, colour); break;
                    case 1: BitsSoften(strokePixels(), region, doneBits_, at.x, at.y, size, pressure, false); break;
                    case 2: BitsSoften(strokePixels(), region, doneBits_, at.x, at.y, size, pressure, true); break;
                    case 3: BitsSharpen(strokePixels(), region, doneBits_, at.x, at.y, size, pressure); break;
                    case 4: BitsBrightness(strokePixels(), region, doneBits_, at.x, at.y, size, pressure, true); break;
                    default: BitsBrightness(strokePixels(), region, doneBits_, at.x, at.y, size, pressure, false); break;
                    }
                }
            } else if (kind == 6 && h && !h->TextureBits.empty()) {
                if (line)
                    BitsMaskedLine(strokePixels(), region, doneBits_, PrevPoint.x, PrevPoint.y, at.x, at.y,
                                   size, pressure, h->TextureBits);
                else
                    BitsMasked(strokePixels(), region, doneBits_, at.x, at.y, h->TextureBits, size, pressure);
            }
            UpdateImage();
        } else if (tool == "Airbrush") {
            BitsAirbrush(strokePixels(), region, doneBits_, at.x, at.y, std::max<int32_t>(1, Settings.AirbrushSize),
                         Settings.AirbrushPressure, Settings.AirbrushQuantity,
                         Settings.AirbrushDefinition, colour);
            UpdateImage();
            iDst_->setCursor(ToolCursor("cAirBrush"));
        } else if (tool == "Shape") {
            const int32_t kind = Settings.ShapeKind;
            const int32_t p = Settings.ShapePressure;
            const int32_t px = PressPoint.x, py = PressPoint.y;
            // Every kind but the free hand draws from the press anew at each move.
            if (kind != 1) restoreFromStrokeBase();
            switch (kind) {
            case 0: BitsLine(strokePixels(), region, doneBits_, px, py, at.x, at.y, colour, p); break;
            case 1:
                BitsLine(strokePixels(), region, doneBits_, LastPoint.x, LastPoint.y, at.x, at.y, colour, p);
                break;
            case 2: {
                const int32_t s = std::abs(at.x - px);
                BitsRectangle(strokePixels(), region, doneBits_, px, py, px + s * sgn(at.x - px),
                              py + s * sgn(at.y - py), colour, p);
                break;
            }
            case 3: BitsRectangle(strokePixels(), region, doneBits_, px, py, at.x, at.y, colour, p); break;
            case 4: {
                const int32_t r = std::abs(at.x - px);
                BitsEllipse(strokePixels(), region, doneBits_, px, py, r, r, colour, p);
                break;
            }
            case 5:
                BitsEllipse(strokePixels(), region, doneBits_, px, py, std::abs(at.x - px),
                            std::abs(at.y - py), colour, p);
                break;
            case 6:
                BitsPolygon(strokePixels(), region, doneBits_, px, py, at.x, at.y,
                            std::max<int32_t>(1, Settings.ShapeSides), colour, p);
                break;
            default: break;
            }
            UpdateImage();
        } else if (tool == "Pencil") {
            BitsLine(strokePixels(), region, doneBits_, LastPoint.x, LastPoint.y, at.x, at.y, colour, 100);
            UpdateImage();
        } else if (tool == "Stamp") {
            if (h && !h->StampBits.empty()) {
                if (IsTrue(Settings.StampClearBack)) restoreFromStrokeBase();
                const int32_t x = at.x - HotSpot.x, y = at.y - HotSpot.y;
                if (IsTrue(Settings.StampMask))
                    BitsBWMask(strokePixels(), region, doneBits_, x, y, h->StampBits, colour,
                               Settings.StampPressure);
                else
                    BitsPaint(strokePixels(), region, doneBits_, x, y, h->StampBits,
                              IsTrue(Settings.StampUseMaskColor) ? Settings.StampMaskColor : -1,
                              Settings.StampPressure);
                UpdateImage();
            }
        } else if (tool == "Gradient") {
            if (Settings.GradientMode == 0) {
                ShowShape(2, PressPoint.x, PressPoint.y, at.x, at.y, false);
            } else {
                const double dx = at.x - PressPoint.x, dy = at.y - PressPoint.y;
                const int32_t r = vbRound(std::sqrt(dx * dx + dy * dy));
                ShowShape(1, PressPoint.x - r, PressPoint.y - r, PressPoint.x + r,
                          PressPoint.y + r, false);
            }
        } else if (tool == "Text") {
            if (h && !h->TextBits.empty()) {
                restoreFromStrokeBase();
                BitsBWMask(strokePixels(), region, doneBits_, at.x - HotSpot.x, at.y - HotSpot.y,
                           h->TextBits, colour, Settings.TextPressure);
                UpdateImage();
            }
        } else if (tool == "GetColor") {
            if (h) h->ColorPicked(BitsGetPixel(bits(), at.x, at.y));
        }
    }

    // A pending paste follows the mouse in the active document.
    if (paste && !h->ClipBuffer.empty() && active_) {
        const Bits& clip = h->ClipBuffer;
        // Half the buffer's upper bounds (width + 1, height + 1), rounded.
        HotSpot = ToolPoint{vbRound((clip.width() + 1) / 2.0), vbRound((clip.height() + 1) / 2.0)};
        restoreFromStrokeBase();
        const int32_t pressure =
            Settings.PasteMode != 0 ? Settings.PastePressure : Settings.SelectPressure;
        BitsPaintPreMasked(strokePixels(), *Region().RegionMain(), doneBits_, at.x - HotSpot.x,
                           at.y - HotSpot.y, clip, pressure);
        UpdateImage();
    }

    if (tool == "Brush") PrevPoint = at;
    LastPoint = at;
}

// --- Release -------------------------------------------------------------------------------

void fImage::toolRelease(Qt::MouseButton button, ToolPoint at) {
    DocumentHost* h = host();
    const bool paste = h && h->PendingPaste;
    if (button == Qt::LeftButton && !paste) {
        const QString tool = toolWord();
        const QString label = h ? h->ActionLabel : QString();
        if (tool == "Select") {
            iDst_->setCursor(Qt::CrossCursor);
            const int32_t shape = Settings.SelectShape;
            const int32_t mode = combineMode(Settings.SelectMode);
            if (shape == 0) {
                Region().CreateRect(PressPoint.x, PressPoint.y, at.x, at.y, mode, true);
                HideShape(0);
            } else if (shape == 1) {
                // The box in order: the lesser edge stays, the greater takes one more.
                Region().CreateEllipse(std::min(PressPoint.x, at.x), std::min(PressPoint.y, at.y),
                                         std::max(PressPoint.x, at.x) + 1,
                                         std::max(PressPoint.y, at.y) + 1, mode, true);
                HideShape(1);
            } else if (shape == 2) {
                Region().CreatePolygon(PolygonPoints, mode, true);
                HideShape(2);
                PolygonPoints.clear();
            }
            if (shape >= 0 && shape <= 2) {
                SetAutoRedraw(false);
                UpdateImage();
            }
            GiveFilterRegion(true);
            if (h) h->SelectionChanged = true;
        } else if (tool == "SelectionMove") {
            iDst_->setCursor(ToolCursor("cMove"));
            if (IsTrue(Settings.SelectMove)) {
                Region().Crop();
            } else if (h) {
                // The moved pixels become the stroke base; they are filed by the space key.
                h->Filter().SetBits(bits());
                UpdateImage();
            }
            MovingSelection = false;
        } else if (tool == "Brush" || tool == "Airbrush" || tool == "Shape" || tool == "Pencil" ||
                   tool == "Stamp") {
            iDst_->unsetCursor();
            if (h) h->PencilStroke = tool == "Pencil";
            commitStroke(label);
        } else if (tool == "Fill") {
            iDst_->setCursor(ToolCursor("cFill"));
            {
                BusyCursor busy;
                CreateDoneBitsTable();
                if (Settings.FillMode == 0)
                    BitsFill(strokePixels(), EffectiveRegion(), doneBits_, at.x, at.y, Settings.ColorPrimary,
                             Settings.FillTolerance, Settings.FillPressure);
                else if (h && !h->TextureBits.empty())
                    BitsFillTexture(strokePixels(), EffectiveRegion(), doneBits_, at.x, at.y, h->TextureBits,
                                    Settings.FillTolerance, Settings.FillPressure);
            }
            commitStroke("Fill");
        } else if (tool == "GetColor") {
            iDst_->unsetCursor();
        } else if (tool == "Gradient") {
            GradientParams gradient;
            gradient.x1 = PressPoint.x;
            gradient.y1 = PressPoint.y;
            gradient.x2 = at.x;
            gradient.y2 = at.y;
            gradient.radial = Settings.GradientMode == 1;
            // -1 stands for the foreground colour.
            gradient.colour1 = Settings.GradientColor1 == -1 ? Settings.ColorPrimary : Settings.GradientColor1;
            gradient.colour2 = Settings.GradientColor2 == -1 ? Settings.ColorPrimary : Settings.GradientColor2;
            gradient.pressure = Settings.GradientPressure;
            gradient.frequency = Settings.GradientFrequency;
            gradient.transparent = IsTrue(Settings.GradientTransparent);
            BitsGradient(strokePixels(), EffectiveRegion(), gradient);
            HideShape(gradient.radial ? 1 : 2);
            SetAutoRedraw(false);
            commitStroke("Gradient");
        }
    }

    // A left click places the pending paste and files it; a right click takes it away.
    if (paste && button == Qt::LeftButton) {
        h->PendingPaste = false;
        commitStroke(h->ActionLabel);
    } else if (paste && button == Qt::RightButton) {
        h->PendingPaste = false;
        restoreFromStrokeBase();
        UpdateImage();
    }

    giveFilterSelection();
    MouseIsDown = false;
}

// --- Keys ----------------------------------------------------------------------------------

bool fImage::iDst_KeyDown(int key) {
    if (!PictureExists()) return false;
    DocumentHost* h = host();
    const int32_t z = Zoom();
    // The canvas position of an image point (the reverse of CellAt).
    auto canvasAt = [&](ToolPoint p) {
        return QPointF(double(p.x) * z - hSB_->value(), double(p.y) * z - vSB_->value());
    };
    int dx = 0, dy = 0;
    switch (key) {
    case Qt::Key_Left: dx = -1; break;
    case Qt::Key_Up: dy = -1; break;
    case Qt::Key_Right: dx = 1; break;
    case Qt::Key_Down: dy = 1; break;
    default: break;
    }
    if (dx != 0 || dy != 0) {
        LastPoint.x += dx;
        LastPoint.y += dy;
        const QPointF pos = canvasAt(LastPoint);
        mouseMoveAt(Qt::NoButton, pos, iDst_->mapToGlobal(pos.toPoint()), false);
        return true;
    }
    if (key != Qt::Key_Space) return false;

    const QString tool = toolWord();
    if (tool == "Select" && Settings.SelectShape == 2 && MouseIsDown) {
        // One more corner of the polygon.
        PolygonPoints.push_back(LastPoint.x);
        PolygonPoints.push_back(LastPoint.y);
        ShowShape(2, PressPoint.x, PressPoint.y, LastPoint.x, LastPoint.y, true);
        PressPoint = LastPoint;
        PrevPoint = PressPoint;
    }
    const bool paste = h && h->PendingPaste;
    if (tool == "SelectionMove" || tool == "Text" || paste) {
        // Commit: the pixels as they stand become the stroke base and an undo state.
        commitStroke(h ? h->ActionLabel : QString());
        if (h) h->SelectionChanged = false;
        // One more move at the same place (its cell is taken anew), so the paste or the
        // stamp goes on from there.
        // The screen point stays where the hand last was, so hand scrolling stays put.
        const QPointF pos = canvasAt(LastPoint);
        if (paste)
            mouseMoveAt(Qt::NoButton, pos, PrevCursorPoint, true);
        else if (MouseIsDown)
            mouseMoveAt(Qt::LeftButton, pos, PrevCursorPoint, true);
    }
    return true;
}

void fImage::iDst_KeyUp(int key) {
    (void)key;
    if (!PictureExists()) return;
    if (toolWord() == "SelectionMove") {
        Region().Crop();
        UpdateRegion();
    }
}

} // namespace ostrivex
