#include "utilities/panview/fpanview.h"

#include "document/fimage.h"
#include "pixel/thumbfit.h"
#include "pixel/vbmath.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <vector>

namespace ostrivex {

PanGeometry FitPan(int imageW, int imageH, QSize view) {
    PanGeometry g;
    const FitSize f = FitToBox(imageW, imageH, view.width(), view.height());
    if (f.width < 1 || f.height < 1) return g;
    g.thumb = QRect((view.width() - f.width) / 2, (view.height() - f.height) / 2, f.width, f.height);
    g.scaleX = double(f.width) / imageW;
    g.scaleY = double(f.height) / imageH;
    return g;
}

QRect PanFrame(const PanGeometry& g, int zoom, int scrollX, int scrollY, int viewW, int viewH) {
    if (g.thumb.isEmpty() || zoom < 1) return {};
    auto edge = [zoom](int origin, int extent, double scale, double value) {
        return std::clamp(origin + vbRound(value * scale / zoom), origin, origin + extent);
    };
    const QRect& t = g.thumb;
    const int left = edge(t.x(), t.width(), g.scaleX, scrollX);
    const int right = edge(t.x(), t.width(), g.scaleX, double(scrollX) + viewW);
    const int top = edge(t.y(), t.height(), g.scaleY, scrollY);
    const int bottom = edge(t.y(), t.height(), g.scaleY, double(scrollY) + viewH);
    return QRect(left, top, right - left, bottom - top);
}

QPoint PanScroll(const PanGeometry& g, QPoint p, int zoom, int viewW, int viewH, int maxX, int maxY) {
    if (g.thumb.isEmpty() || g.scaleX <= 0 || g.scaleY <= 0) return {};
    const double x = (p.x() - g.thumb.x()) / g.scaleX * zoom - viewW / 2.0;
    const double y = (p.y() - g.thumb.y()) / g.scaleY * zoom - viewH / 2.0;
    return QPoint(std::clamp(vbRound(x), 0, std::max(0, maxX)),
                  std::clamp(vbRound(y), 0, std::max(0, maxY)));
}

QImage PanThumbnail(const Bits& bits, int w, int h) {
    const int W = bits.width(), H = bits.height();
    if (W < 1 || H < 1 || w < 1 || h < 1) return {};
    QImage out(w, h, QImage::Format_RGB32);
    // The columns of the two samples of each thumbnail column, worked out once.
    std::vector<int> xs(size_t(2 * w));
    for (int x = 0; x < w; ++x)
        for (int i = 0; i < 2; ++i)
            xs[size_t(2 * x + i)] = std::min(W - 1, int((x + 0.25 + 0.5 * i) * W / w));
    for (int y = 0; y < h; ++y) {
        const uint8_t* r0 = bits.row(std::min(H - 1, int((y + 0.25) * H / h)));
        const uint8_t* r1 = bits.row(std::min(H - 1, int((y + 0.75) * H / h)));
        auto* dst = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < w; ++x) {
            const int a = 4 * xs[size_t(2 * x)], b = 4 * xs[size_t(2 * x + 1)];
            int sum[3];
            for (int c = 0; c < 3; ++c) sum[c] = (r0[a + c] + r0[b + c] + r1[a + c] + r1[b + c] + 2) / 4;
            dst[x] = qRgb(sum[2], sum[1], sum[0]);
        }
    }
    return out;
}

fPanView::fPanView(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("PP"));
    setWindowTitle(QStringLiteral("Panoramic View"));
    setMinimumSize(40, 40);
    setMouseTracking(false);
}

void fPanView::follow() {
    fImage* doc = active_ ? active_() : nullptr;
    doc_ = doc;
    if (!doc || !doc->PictureExists()) {
        geometry_ = PanGeometry();
        clipRct_ = QRect();
        return;
    }
    geometry_ = FitPan(doc->PictureWidth(), doc->PictureHeight(), size());
    int16_t imageW = 0, imageH = 0, viewW = 0, viewH = 0;
    doc->GetDimensions(imageW, imageH, viewW, viewH);
    int32_t sx = 0, sy = 0;
    doc->GetSBV(sx, sy);
    zoom_ = doc->Zoom();
    clipRct_ = PanFrame(geometry_, zoom_, sx, sy, viewW, viewH);
}

void fPanView::RefreshPanView() {
    if (!isVisible()) return;
    follow();
    update();
}

void fPanView::UpdateClipRct() {
    follow();
    update();
}

void fPanView::Clear() {
    doc_ = nullptr;
    geometry_ = PanGeometry();
    clipRct_ = QRect();
    dragging_ = false;
    update();
}

void fPanView::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), palette().dark());
    if (!doc_ || !doc_->PictureExists() || geometry_.thumb.isEmpty()) return;
    const QRect& t = geometry_.thumb;
    p.drawImage(t.topLeft(), PanThumbnail(doc_->bits(), t.width(), t.height()));
    // The frame one pixel inside its rectangle, so it shows even round the whole picture.
    if (clipRct_.width() >= 3 && clipRct_.height() >= 3) {
        p.setPen(QPen(Qt::red, 0));
        p.drawRect(clipRct_.adjusted(1, 1, -2, -2));
    }
}

void fPanView::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    follow();
}

void fPanView::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    follow();
}

void fPanView::scrollTo(QPoint point) {
    if (!doc_) return;
    int16_t imageW = 0, imageH = 0, viewW = 0, viewH = 0;
    doc_->GetDimensions(imageW, imageH, viewW, viewH);
    int32_t maxX = 0, maxY = 0;
    doc_->GetSBM(maxX, maxY);
    const QPoint s = PanScroll(geometry_, point, doc_->Zoom(), viewW, viewH, maxX, maxY);
    doc_->Scroll(s.x(), s.y());
    follow();
    update();
}

void fPanView::mousePressEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) return;
    follow();
    const QPoint p = e->position().toPoint();
    if (!doc_ || !geometry_.thumb.contains(p)) return;
    dragging_ = true;
    // Beside the frame, the view jumps there first.
    if (!clipRct_.contains(p)) scrollTo(p);
}

void fPanView::mouseMoveEvent(QMouseEvent* e) {
    if (dragging_ && (e->buttons() & Qt::LeftButton)) scrollTo(e->position().toPoint());
}

void fPanView::mouseReleaseEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton) dragging_ = false;
}

} // namespace ostrivex
