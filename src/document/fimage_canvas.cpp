// fImage: the canvas. The stretch of the visible part of the Enhanced image onto it, the
// selection outline over it, the zoom, and the layout of the canvas and its scroll bars.
#include "document/fimage.h"
#include "document/toolcursors.h"

#include "app/settings/settings.h"
#include "document/dialogs.h"
#include "document/host.h"
#include "document/optimizeview.h"
#include "imagefile/imagefile.h"
#include "pixel/bitfilter.h"
#include "pixel/vbmath.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTabBar>

#include <algorithm>
#include <cstring>

namespace ostrivex {

// --- The stretch ------------------------------------------------------------------------

StretchPlan PlanStretch(int32_t w, int32_t h, int32_t z, int32_t canvasW, int32_t canvasH,
                        int32_t hValue, int32_t hMax, int32_t vValue, int32_t vMax) {
    StretchPlan p;
    if (z < 1) z = 1;
    // The remainders are negative (or zero): a partly scrolled first pixel starts left of
    // or above the canvas and shows cut.
    if (hMax >= 1) {
        p.dstX = -(hValue % z);
        p.dstW = (canvasW / z) * z + 2 * z;
        p.srcX = hValue / z + 2;
        p.srcW = canvasW / z + 2;
    } else {
        p.dstX = 0;
        p.dstW = canvasW;
        p.srcX = 2;
        p.srcW = w;
    }
    if (vMax >= 1) {
        p.dstY = -(vValue % z);
        p.dstH = ((canvasH - 1) / z) * z + 2 * z;
        p.srcY = vValue / z + 2;
        p.srcH = (canvasH - 1) / z + 2;
    } else {
        p.dstY = 0;
        p.dstH = canvasH;
        p.srcY = 2;
        p.srcH = h;
    }
    return p;
}

bool StretchBits(const Bits& bits, const StretchPlan& plan, QImage& target) {
    if (plan.dstW <= 0 || plan.dstH <= 0 || plan.srcW <= 0 || plan.srcH <= 0 || bits.empty() ||
        target.isNull() || target.format() != QImage::Format_RGB32)
        return false;
    const int32_t arrayW = bits.width() + 4, arrayH = bits.height() + 4;
    const int32_t x0 = std::max(0, plan.dstX);
    const int32_t x1 = std::min<int64_t>(target.width(), int64_t(plan.dstX) + plan.dstW);
    const int32_t y0 = std::max(0, plan.dstY);
    const int32_t y1 = std::min<int64_t>(target.height(), int64_t(plan.dstY) + plan.dstH);
    if (x1 <= x0 || y1 <= y0) return true;

    // Source column of each target column, -1 outside the array.
    std::vector<int32_t> column(size_t(x1 - x0));
    for (int32_t dx = x0; dx < x1; ++dx) {
        const int64_t sx = plan.srcX + int64_t(dx - plan.dstX) * plan.srcW / plan.dstW;
        column[size_t(dx - x0)] = (sx >= 0 && sx < arrayW) ? int32_t(sx) : -1;
    }
    const uint8_t* data = bits.data();
    const size_t stride = bits.stride();
    int64_t lastRow = -2;
    uint32_t* lastOut = nullptr;
    for (int32_t dy = y0; dy < y1; ++dy) {
        const int64_t sy = plan.srcY + int64_t(dy - plan.dstY) * plan.srcH / plan.dstH;
        uint32_t* out = reinterpret_cast<uint32_t*>(target.scanLine(dy)) + x0;
        if (sy == lastRow && lastOut) { // zoomed rows repeat the row above
            std::memcpy(out, lastOut, size_t(x1 - x0) * 4u);
            continue;
        }
        if (sy < 0 || sy >= arrayH) {
            std::fill(out, out + (x1 - x0), 0xFF000000u);
        } else {
            const uint8_t* row = data + size_t(sy) * stride;
            for (int32_t i = 0; i < x1 - x0; ++i) {
                const int32_t sx = column[size_t(i)];
                if (sx < 0) {
                    out[i] = 0xFF000000u;
                } else {
                    const uint8_t* px = row + size_t(sx) * 4u;
                    out[i] = 0xFF000000u | uint32_t(px[2]) << 16 | uint32_t(px[1]) << 8 | px[0];
                }
            }
        }
        lastRow = sy;
        lastOut = out;
    }
    return true;
}

// --- The selection outline ----------------------------------------------------------------

void DrawSelectionOutline(QPainter& painter, const cBitRegion& selection, int32_t x, int32_t y) {
    if (selection.IsEmptyRegion() || !selection.RegionScaled()) return;
    Region shape = *selection.RegionScaled();
    shape.offset(x, y);
    // The inside pixels are those whose four neighbours are all in the region; the frame
    // is the rest.
    Region inner = shape;
    for (const auto& [dx, dy] : {std::pair{1, 0}, std::pair{-1, 0}, std::pair{0, 1}, std::pair{0, -1}}) {
        Region moved = shape;
        moved.offset(dx, dy);
        inner = inner.intersected(moved);
    }
    const Region frame = shape.subtracted(inner);
    const cBitRegion::AntBrush& brush = selection.CurrentAntBrush();
    const QRect clip = painter.device() ? QRect(0, 0, painter.device()->width(), painter.device()->height())
                                        : QRect();
    for (const Rect& r : frame.rects()) {
        const int32_t left = std::max(r.left, int32_t(clip.left()));
        const int32_t right = std::min(r.right, int32_t(clip.right() + 1));
        const int32_t top = std::max(r.top, int32_t(clip.top()));
        const int32_t bottom = std::min(r.bottom, int32_t(clip.bottom() + 1));
        for (int32_t py = top; py < bottom; ++py) {
            // Runs of one colour along the row.
            int32_t start = left;
            while (start < right) {
                const bool bit = cBitRegion::AntBit(brush, start, py);
                int32_t end = start + 1;
                while (end < right && cBitRegion::AntBit(brush, end, py) == bit) ++end;
                painter.fillRect(QRect(start, py, end - start, 1), bit ? Qt::white : Qt::black);
                start = end;
            }
        }
    }
}

// --- The canvas -------------------------------------------------------------------------

class fImage::CanvasWidget : public QWidget {
public:
    explicit CanvasWidget(fImage* owner, QWidget* parent) : QWidget(parent), owner_(owner) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setFocusPolicy(Qt::StrongFocus);
        setMouseTracking(true); // moves without a button show the pixel and carry a paste
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        if (owner_->canvasImage_.isNull())
            painter.fillRect(rect(), palette().dark());
        else
            painter.drawImage(0, 0, owner_->canvasImage_);
        // The ants over the picture, while the timer runs.
        if (!owner_->canvasImage_.isNull() && owner_->tmrSelection_.isActive() &&
            !owner_->Region().IsEmptyRegion())
            DrawSelectionOutline(painter, owner_->Region(), -owner_->hSB_->value(),
                                 -owner_->vSB_->value());
        owner_->paintRubber(painter);
    }

    // The tools take the canvas's mouse and keys (fimage_tools.cpp).
    void mousePressEvent(QMouseEvent* e) override {
        setFocus(Qt::MouseFocusReason);
        owner_->iDst_MouseDown(e->button(), e->position(), e->globalPosition().toPoint());
    }
    void mouseMoveEvent(QMouseEvent* e) override {
        owner_->iDst_MouseMove(e->buttons(), e->position(), e->globalPosition().toPoint());
    }
    void mouseReleaseEvent(QMouseEvent* e) override {
        owner_->iDst_MouseUp(e->button(), e->position(), e->globalPosition().toPoint());
    }
    void keyPressEvent(QKeyEvent* e) override {
        if (!owner_->iDst_KeyDown(e->key())) QWidget::keyPressEvent(e);
    }
    void keyReleaseEvent(QKeyEvent* e) override {
        if (!e->isAutoRepeat()) owner_->iDst_KeyUp(e->key());
        QWidget::keyReleaseEvent(e);
    }
    // The arrow keys move the tool position rather than the focus.
    bool focusNextPrevChild(bool) override { return false; }

private:
    fImage* owner_;
};

void fImage::buildCanvas() {
    iDst_ = new CanvasWidget(this, PImage_);
    iDst_->setObjectName("iDst");
    hSB_ = new QScrollBar(Qt::Horizontal, PImage_);
    vSB_ = new QScrollBar(Qt::Vertical, PImage_);
    hSB_->setObjectName("hSB");
    vSB_->setObjectName("vSB");
    hSB_->hide();
    vSB_->hide();
    iDst_->hide();
    connect(hSB_, &QScrollBar::valueChanged, this, [this] { onScroll(); });
    connect(vSB_, &QScrollBar::valueChanged, this, [this] { onScroll(); });
}

// --- Zoom and view ----------------------------------------------------------------------------

void fImage::SetZoomFactor(int32_t index) {
    model_->View.SetZoomIndex(index);
    Region().SetZoomFactor(float(Zoom()));
    UserControl_Resize();
    DocumentHost* h = host();
    if (h && h->LastActiveDocumentId == HistoryId()) h->ShowZoom(Zoom());
}

void fImage::ZoomIn() {
    if (!PictureExists()) return;
    SetZoomFactor(ZoomFactor() + 1);
}

void fImage::ZoomOut() {
    if (!PictureExists()) return;
    SetZoomFactor(ZoomFactor() - 1);
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

void fImage::UpdateImage() {
    if (!PictureExists()) return;
    const QSize size = iDst_->size();
    if (size.width() < 1 || size.height() < 1) return;
    lastPlan_ = PlanStretch(PictureWidth(), PictureHeight(), Zoom(), size.width(), size.height(),
                            hSB_->value(), hSB_->maximum(), vSB_->value(), vSB_->maximum());
    if (canvasImage_.size() != size) canvasImage_ = QImage(size, QImage::Format_RGB32);
    canvasImage_.fill(0xFF000000u);
    if (!StretchBits(bits(), lastPlan_, canvasImage_) && ZoomFactor() != 1) {
        SetZoomFactor(1);
        return;
    }
    // The canvas's paint draws the selection outline over the picture.
    iDst_->update();
    if (DocumentHost* h = host()) h->RefreshPanView();
}

void fImage::UpdateRegion() { iDst_->update(); }

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
    const int64_t z = Zoom();
    // A viewport narrower than two zoomed pixels is enlarged to two.
    panelW = int32_t(std::max<int64_t>(panelW, 2 * z));
    panelH = int32_t(std::max<int64_t>(panelH, 2 * z));
    const int32_t bw = barsWidth_;

    // Two passes: a bar that shows takes room from the other.
    bool needH = w * z - panelW > 0;
    bool needV = h * z - panelH > 0;
    needH = w * z - (panelW - (needV ? bw : 0)) > 0;
    needV = h * z - (panelH - (needH ? bw : 0)) > 0;
    const int32_t viewW = std::max(1, panelW - (needV ? bw : 0));
    const int32_t viewH = std::max(1, panelH - (needH ? bw : 0));

    // New value of a bar: keep the centre across a zoom, or the middle for a bar that
    // was not in use.
    auto place = [this](bool need, int64_t extent, int32_t view, int32_t oldValue,
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
        bar->setSingleStep(int(Zoom()));
        bar->setPageStep(std::max(1, view / 2));
        bar->setValue(value);
        bar->setVisible(need);
        storeValue = value;
        storeMax = max;
    };
    suppressScrollPaint_ = true;
    place(needH, w * z, viewW, lastHScroll_, lastHMax_, hSB_, lastHScroll_, lastHMax_);
    place(needV, h * z, viewH, lastVScroll_, lastVMax_, vSB_, lastVScroll_, lastVMax_);
    suppressScrollPaint_ = false;

    const int32_t canvasW = needH ? viewW : int32_t(std::min<int64_t>(w * z, viewW));
    const int32_t canvasH = needV ? viewH : int32_t(std::min<int64_t>(h * z, viewH));
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
