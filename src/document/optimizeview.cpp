#include "document/optimizeview.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace ostrivex {

namespace {
constexpr int kBarWidth = 16;

class PictureWidget : public QWidget {
public:
    PictureWidget(const QImage& picture, QWidget* parent) : QWidget(parent), picture_(picture) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.drawImage(0, 0, picture_);
    }

private:
    const QImage& picture_;
};
} // namespace

OptimizeView::OptimizeView(QWidget* parent) : QWidget(parent) {
    oSrc_ = new PictureWidget(picture_, this);
    oSrc_->setObjectName("oSrc");
    oSrc_->setCursor(Qt::OpenHandCursor);
    oSrc_->installEventFilter(this);
    hBar_ = new QScrollBar(Qt::Horizontal, this);
    vBar_ = new QScrollBar(Qt::Vertical, this);
    hBar_->hide();
    vBar_->hide();
    oSrc_->hide();
    connect(hBar_, &QScrollBar::valueChanged, this, [this] { placePicture(); });
    connect(vBar_, &QScrollBar::valueChanged, this, [this] { placePicture(); });
}

void OptimizeView::SetPicture(const QImage& picture) {
    picture_ = picture;
    Update_oSrc();
}

void OptimizeView::Update_oSrc() {
    const int pw = width(), ph = height();
    const int iw = picture_.width(), ih = picture_.height();
    oSrc_->setVisible(!picture_.isNull());
    // A bar only where the picture is larger than the panel, its maximum the difference.
    const bool needH = !picture_.isNull() && iw > pw;
    const bool needV = !picture_.isNull() && ih > ph;
    hBar_->setRange(0, needH ? iw - pw : 0);
    vBar_->setRange(0, needV ? ih - ph : 0);
    hBar_->setVisible(needH);
    vBar_->setVisible(needV);
    hBar_->setGeometry(0, ph - kBarWidth, needV ? pw - kBarWidth : pw, kBarWidth);
    vBar_->setGeometry(pw - kBarWidth, 0, kBarWidth, needH ? ph - kBarWidth : ph);
    hBar_->raise();
    vBar_->raise();
    placePicture();
}

void OptimizeView::placePicture() {
    const int pw = width(), ph = height();
    const int iw = picture_.width(), ih = picture_.height();
    // Centred where smaller, at the origin (less the scroll) where larger.
    const int x = iw < pw ? (pw - iw) / 2 : -hBar_->value();
    const int y = ih < ph ? (ph - ih) / 2 : -vBar_->value();
    oSrc_->setGeometry(x, y, iw, ih);
    oSrc_->update();
}

void OptimizeView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Update_oSrc();
}

bool OptimizeView::eventFilter(QObject* watched, QEvent* event) {
    if (watched != oSrc_) return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        auto* e = static_cast<QMouseEvent*>(event);
        if (e->button() != Qt::LeftButton) break;
        oSrc_->setCursor(Qt::ClosedHandCursor);
        grabPoint_ = e->globalPosition().toPoint();
        dragging_ = true;
        return true;
    }
    case QEvent::MouseMove: {
        if (!dragging_) break;
        const QPoint now = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        const QPoint d = now - grabPoint_;
        grabPoint_ = now;
        hBar_->setValue(hBar_->value() - d.x());
        vBar_->setValue(vBar_->value() - d.y());
        return true;
    }
    case QEvent::MouseButtonRelease:
        if (!dragging_) break;
        dragging_ = false;
        oSrc_->setCursor(Qt::OpenHandCursor);
        return true;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace ostrivex
