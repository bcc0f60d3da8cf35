#include "text/layercanvas.h"

#include "text/textcontrols.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace ostrivex {

namespace {

constexpr int kMargin = 10; // room around the layer for the grips
constexpr int kGripSize = 7;

} // namespace

// The scrolled surface: a grey field with the layer at (kMargin, kMargin).
class LayerCanvas::Surface : public QWidget {
  public:
    explicit Surface(LayerCanvas* owner) : QWidget(owner), owner_(owner) { setMouseTracking(true); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), QColor(128, 128, 128));
        p.drawImage(kMargin, kMargin, owner_->picture_);
        p.setPen(QPen(Qt::black, 1, Qt::DotLine));
        p.drawRect(kMargin - 1, kMargin - 1, owner_->size_.width() + 1, owner_->size_.height() + 1);
    }
    void mouseMoveEvent(QMouseEvent* e) override {
        const QPoint at = e->position().toPoint() - QPoint(kMargin, kMargin);
        if (QRect(QPoint(0, 0), owner_->size_).contains(at)) emit owner_->mouseOverLayer(at);
    }

  private:
    LayerCanvas* owner_;
};

LayerCanvas::LayerCanvas(QWidget* parent) : QScrollArea(parent) {
    setObjectName("canvas");
    surface_ = new Surface(this);
    surface_->setObjectName("layer");
    setWidget(surface_);
    setWidgetResizable(false);
    setBackgroundRole(QPalette::Dark);
    const Qt::CursorShape cursors[3] = {Qt::SizeHorCursor, Qt::SizeVerCursor, Qt::SizeFDiagCursor};
    for (int i = 0; i < 3; ++i) {
        auto* g = new QWidget(surface_);
        g->setObjectName(QStringLiteral("Grip%1").arg(i));
        g->setFixedSize(kGripSize, kGripSize);
        g->setAutoFillBackground(true);
        QPalette pal = g->palette();
        pal.setColor(QPalette::Window, Qt::black);
        g->setPalette(pal);
        g->setCursor(cursors[i]);
        g->installEventFilter(this);
        grips_[i] = g;
    }
    UpdateScroll();
}

void LayerCanvas::SetPicture(const Bits& picture) {
    picture_ = BitsImage(picture);
    const QSize s(picture.width(), picture.height());
    if (s != size_ && !s.isEmpty()) {
        size_ = s;
        UpdateScroll();
    }
    surface_->update();
}

void LayerCanvas::SetLayerSize(QSize size) {
    size_ = size.expandedTo(QSize(1, 1));
    UpdateScroll();
}

void LayerCanvas::ShowG(bool show) {
    gripsShown_ = show;
    for (QWidget* g : grips_)
        g->setVisible(show);
    MoveGrips();
}

void LayerCanvas::MoveGrips() {
    const int r = kMargin + size_.width(), b = kMargin + size_.height();
    const int half = kGripSize / 2;
    grips_[0]->move(r, kMargin + size_.height() / 2 - half);
    grips_[1]->move(kMargin + size_.width() / 2 - half, b);
    grips_[2]->move(r, b);
}

void LayerCanvas::UpdateScroll() {
    surface_->resize(size_.width() + 2 * kMargin + kGripSize,
                     size_.height() + 2 * kMargin + kGripSize);
    MoveGrips();
    surface_->update();
}

bool LayerCanvas::eventFilter(QObject* watched, QEvent* event) {
    int grip = -1;
    for (int i = 0; i < 3; ++i)
        if (watched == grips_[i]) grip = i;
    if (grip < 0) return QScrollArea::eventFilter(watched, event);
    auto* me = static_cast<QMouseEvent*>(event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (me->button() != Qt::LeftButton) break;
        dragging_ = grip;
        dragStart_ = me->globalPosition().toPoint();
        sizeAtStart_ = size_;
        return true;
    case QEvent::MouseMove:
        if (dragging_ == grip) {
            const QPoint d = me->globalPosition().toPoint() - dragStart_;
            QSize s = sizeAtStart_;
            if (grip != 1) s.setWidth(std::clamp(s.width() + d.x(), kMinSide, kMaxSide));
            if (grip != 0) s.setHeight(std::clamp(s.height() + d.y(), kMinSide, kMaxSide));
            if (s != size_) {
                size_ = s;
                UpdateScroll();
                emit layerResized(s.width(), s.height());
            }
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
        if (dragging_ == grip) {
            dragging_ = -1;
            return true;
        }
        break;
    default:
        break;
    }
    return QScrollArea::eventFilter(watched, event);
}

} // namespace ostrivex
