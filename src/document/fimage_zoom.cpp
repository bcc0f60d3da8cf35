// fImage: the zoom, the layout of the canvas and its scroll bars, scrolling by the bars, the
// hand and the wheel. The view's scale is the model's view state: ZoomIndex : 1 for the
// tools' zoom of 1 to 15, or 1 : Reduction below 1 : 1; canvas positions map to image
// pixels by (scroll + position) * den / num.
#include "document/fimage.h"

#include "document/host.h"
#include "document/optimizeview.h"
#include "document/toolcursors.h"
#include "pixel/vbmath.h"

#include <QResizeEvent>
#include <QScrollBar>
#include <QTabBar>

#include <algorithm>
#include <cmath>

namespace ostrivex {

// --- Zoom and view ----------------------------------------------------------------------------

int64_t fImage::onCanvas(int64_t n) const {
    const ViewScale s = Scale();
    return s.den == 1 ? n * s.num : (n + s.den - 1) / s.den;
}

QPointF fImage::canvasPoint(ToolPoint p) const {
    const ViewScale s = Scale();
    return QPointF(double(p.x) * s.num / s.den - hSB_->value(),
                   double(p.y) * s.num / s.den - vSB_->value());
}

void fImage::zoomChanged() {
    const ViewScale s = Scale();
    Region().SetZoomFactor(float(s.num) / float(s.den));
    UserControl_Resize();
    DocumentHost* h = host();
    if (h && h->LastActiveDocumentId == HistoryId()) h->ShowZoom(s);
}

void fImage::SetZoomFactor(int32_t index) {
    model_->View.SetZoomIndex(index);
    zoomChanged();
}

void fImage::SetScale(ViewScale scale) {
    if (model_->View.SetScale(scale)) zoomChanged();
}

void fImage::ZoomIn() {
    if (PictureExists() && model_->View.ZoomIn()) zoomChanged();
}

void fImage::ZoomOut() {
    if (PictureExists() && model_->View.ZoomOut()) zoomChanged();
}

void fImage::FitInWindow() {
    if (!PictureExists()) return;
    layoutPanels();
    model_->View.Fit(PictureWidth(), PictureHeight(), PImage_->width(), PImage_->height());
    zoomChanged();
}

void fImage::ZoomAbout(bool in, QPointF canvasPos) {
    if (!PictureExists()) return;
    // The image point under the pointer, in image pixels (not rounded to a cell).
    const ViewScale before = Scale();
    const double ix = (hSB_->value() + canvasPos.x()) * before.den / before.num;
    const double iy = (vSB_->value() + canvasPos.y()) * before.den / before.num;
    if (!(in ? model_->View.ZoomIn() : model_->View.ZoomOut())) return;
    zoomChanged();
    const ViewScale after = Scale();
    // The canvas starts at the panel's corner, so the pointer stays at the same canvas
    // position; the bars put the image point there again, as far as they reach.
    Scroll(std::clamp(vbRound(ix * after.num / after.den - canvasPos.x()), 0, hSB_->maximum()),
           std::clamp(vbRound(iy * after.num / after.den - canvasPos.y()), 0, vSB_->maximum()));
}

void fImage::iDst_Wheel(QPointF pos, QPoint angleDelta, QPoint pixelDelta,
                        Qt::KeyboardModifiers modifiers) {
    if (!PictureExists()) return;
    if (modifiers & Qt::ControlModifier) {
        // One step a notch; a smooth wheel's small deltas are gathered into notches.
        wheelZoom_ += angleDelta.y();
        while (wheelZoom_ >= 120) {
            wheelZoom_ -= 120;
            ZoomAbout(true, pos);
        }
        while (wheelZoom_ <= -120) {
            wheelZoom_ += 120;
            ZoomAbout(false, pos);
        }
        return;
    }
    // A notch scrolls 48 pixels of the canvas; a touchpad gives its pixels itself.
    QPoint move = !pixelDelta.isNull() ? pixelDelta : angleDelta * 48 / 120;
    if (modifiers & Qt::ShiftModifier) move = QPoint(move.y(), move.x());
    Scroll(std::clamp(hSB_->value() - move.x(), 0, hSB_->maximum()),
           std::clamp(vSB_->value() - move.y(), 0, vSB_->maximum()));
}

void fImage::SetBarsWidth(int32_t value) {
    barsWidth_ = value < 14 ? 13 : value;
    UserControl_Resize();
}

void fImage::SetMouseScroll(bool on) {
    mouseScroll_ = on;
    const bool barInUse = hSB_->maximum() >= 1 || vSB_->maximum() >= 1;
    if (on && barInUse)
        iDst_->setCursor(ToolCursor("cRelease"));
    else
        iDst_->unsetCursor();
}

void fImage::Scroll(int32_t x, int32_t y) {
    suppressScrollPaint_ = true;
    hSB_->setValue(x);
    vSB_->setValue(y);
    suppressScrollPaint_ = false;
    UpdateImage();
}

void fImage::GetDimensions(int16_t& imageW, int16_t& imageH, int16_t& viewW,
                           int16_t& viewH) const {
    imageW = int16_t(PictureWidth());
    imageH = int16_t(PictureHeight());
    viewW = int16_t(iDst_->width());
    viewH = int16_t(iDst_->height());
}

void fImage::GetSBV(int32_t& h, int32_t& v) const {
    h = hSB_->value();
    v = vSB_->value();
}

void fImage::GetSBM(int32_t& h, int32_t& v) const {
    h = hSB_->maximum();
    v = vSB_->maximum();
}

QSize fImage::CanvasSize() const { return iDst_->size(); }

void fImage::SetAutoRedraw(bool on) {
    autoRedraw_ = on;
    if (on) {
        UpdateImage();
        iDst_->repaint();
    }
}

void fImage::onScroll() {
    lastHScroll_ = hSB_->value();
    lastVScroll_ = vSB_->value();
    if (!suppressScrollPaint_) UpdateImage();
}

void fImage::layoutPanels() {
    const int tabH = tabs_->sizeHint().height();
    tabs_->setGeometry(0, 0, width(), tabH);
    const QRect area(0, tabH, width(), std::max(0, height() - tabH));
    PImage_->setGeometry(area);
    picFrame_->setGeometry(area);
    oImage_->setGeometry(area);
}

void fImage::writePixelPanel() {
    if (DocumentHost* h = host())
        h->SetStatusPanel("Pixel", QStringLiteral("%1 x %2").arg(PictureWidth()).arg(PictureHeight()));
}

void fImage::UserControl_Resize() {
    if (!PictureExists()) return;
    layoutPanels();
    const int64_t w = PictureWidth(), h = PictureHeight();
    int32_t panelW = PImage_->width(), panelH = PImage_->height();
    if (w < 1 || h < 1 || panelW < 1 || panelH < 1) {
        model_->View.SetZoomIndex(1);
        Region().SetZoomFactor(1.0f); // the outline keeps the document's zoom
    }
    // The image's size on the canvas; a zoomed pixel is z canvas pixels.
    const int64_t z = Scale().num;
    const int64_t shownW = onCanvas(w), shownH = onCanvas(h);
    // A viewport narrower than two zoomed pixels is enlarged to two.
    panelW = int32_t(std::max<int64_t>(panelW, 2 * z));
    panelH = int32_t(std::max<int64_t>(panelH, 2 * z));
    const int32_t bw = barsWidth_;

    // Two passes: a bar that shows takes room from the other.
    bool needH = shownW - panelW > 0;
    bool needV = shownH - panelH > 0;
    needH = shownW - (panelW - (needV ? bw : 0)) > 0;
    needV = shownH - (panelH - (needH ? bw : 0)) > 0;
    const int32_t viewW = std::max(1, panelW - (needV ? bw : 0));
    const int32_t viewH = std::max(1, panelH - (needH ? bw : 0));

    // New value of a bar: keep the centre across a zoom, or the middle for a bar that
    // was not in use.
    auto place = [this, z](bool need, int64_t extent, int32_t view, int32_t oldValue,
                        int32_t oldMax, QScrollBar* bar, int32_t& storeValue,
                        int32_t& storeMax) {
        int32_t max = 0, value = 0;
        if (need) {
            max = int32_t(std::min<int64_t>(extent - view, INT32_MAX));
            if (layoutDone_ && oldMax != 0)
                value = int32_t(vbRound(double(max) * double(oldValue) / double(oldMax)));
            else
                value = int32_t(vbRound(double(max) / 2.0));
            value = std::clamp(value, 0, max);
        }
        bar->setRange(0, max);
        bar->setSingleStep(int(z));
        bar->setPageStep(std::max(1, view / 2));
        bar->setValue(value);
        bar->setVisible(need);
        storeValue = value;
        storeMax = max;
    };
    suppressScrollPaint_ = true;
    place(needH, shownW, viewW, lastHScroll_, lastHMax_, hSB_, lastHScroll_, lastHMax_);
    place(needV, shownH, viewH, lastVScroll_, lastVMax_, vSB_, lastVScroll_, lastVMax_);
    suppressScrollPaint_ = false;

    const int32_t canvasW = needH ? viewW : int32_t(std::min<int64_t>(shownW, viewW));
    const int32_t canvasH = needV ? viewH : int32_t(std::min<int64_t>(shownH, viewH));
    iDst_->setGeometry(0, 0, canvasW, canvasH);
    hSB_->setGeometry(0, panelH - bw, viewW, bw);
    vSB_->setGeometry(panelW - bw, 0, bw, viewH);
    iDst_->show();
    layoutDone_ = true;
    writePixelPanel();
    UpdateImage();
}

void fImage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isMinimized() || (window() && window()->isMinimized())) return;
    layoutPanels();
    UserControl_Resize();
}

} // namespace ostrivex
