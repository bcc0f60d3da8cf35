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
#include <QWheelEvent>

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

StretchPlan PlanReduced(int32_t n, int32_t canvasW, int32_t canvasH, int32_t hValue, int32_t vValue) {
    if (n < 1) n = 1;
    // Every canvas pixel takes the n-th image pixel; the scroll values count canvas pixels.
    return StretchPlan{0, 0, canvasW, canvasH, hValue * n + 2, vValue * n + 2, canvasW * n, canvasH * n};
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
    const int32_t count = x1 - x0;
    // At 1 : 1 the columns are one run of the array: a row is one straight copy.
    const bool straight = column.front() >= 0 && column.back() - column.front() == count - 1;
    const uint8_t* data = bits.data();
    const size_t stride = bits.stride();
    int64_t lastRow = -2;
    uint32_t* lastOut = nullptr;
    for (int32_t dy = y0; dy < y1; ++dy) {
        const int64_t sy = plan.srcY + int64_t(dy - plan.dstY) * plan.srcH / plan.dstH;
        uint32_t* out = reinterpret_cast<uint32_t*>(target.scanLine(dy)) + x0;
        if (sy == lastRow && lastOut) { // zoomed rows repeat the row above
            std::memcpy(out, lastOut, size_t(count) * 4u);
            continue;
        }
        if (sy < 0 || sy >= arrayH) {
            std::fill(out, out + count, 0xFF000000u);
        } else {
            // Blue, green, red and the marker byte read as one little-endian word are
            // 0xMMRRGGBB: the canvas's pixel once the marker gives way to an opaque alpha.
            const uint8_t* row = data + size_t(sy) * stride;
            if (straight) {
                const uint8_t* in = row + size_t(column.front()) * 4u;
                for (int32_t i = 0; i < count; ++i) {
                    uint32_t v;
                    std::memcpy(&v, in + size_t(i) * 4u, 4);
                    out[i] = v | 0xFF000000u;
                }
            } else {
                for (int32_t i = 0; i < count; ++i) {
                    const int32_t sx = column[size_t(i)];
                    uint32_t v = 0;
                    if (sx >= 0) std::memcpy(&v, row + size_t(sx) * 4u, 4);
                    out[i] = v | 0xFF000000u;
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
    void wheelEvent(QWheelEvent* e) override {
        owner_->iDst_Wheel(e->position(), e->angleDelta(), e->pixelDelta(), e->modifiers());
        e->accept();
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

void fImage::UpdateImage() {
    if (!PictureExists()) return;
    const QSize size = iDst_->size();
    if (size.width() < 1 || size.height() < 1) return;
    const ViewScale scale = Scale();
    lastPlan_ = scale.den > 1
                    ? PlanReduced(scale.den, size.width(), size.height(), hSB_->value(), vSB_->value())
                    : PlanStretch(PictureWidth(), PictureHeight(), Zoom(), size.width(), size.height(),
                                  hSB_->value(), hSB_->maximum(), vSB_->value(), vSB_->maximum());
    if (canvasImage_.size() != size) canvasImage_ = QImage(size, QImage::Format_RGB32);
    // Only the visible part is drawn; black where the plan leaves part of the canvas.
    const StretchPlan& p = lastPlan_;
    if (p.dstX > 0 || p.dstY > 0 || int64_t(p.dstX) + p.dstW < size.width() ||
        int64_t(p.dstY) + p.dstH < size.height())
        canvasImage_.fill(0xFF000000u);
    if (!StretchBits(bits(), lastPlan_, canvasImage_) && (ZoomFactor() != 1 || scale.den != 1)) {
        SetZoomFactor(1);
        return;
    }
    // The canvas's paint draws the selection outline over the picture.
    iDst_->update();
    if (DocumentHost* h = host()) h->RefreshPanView();
}

void fImage::UpdateRegion() { iDst_->update(); }

} // namespace ostrivex
