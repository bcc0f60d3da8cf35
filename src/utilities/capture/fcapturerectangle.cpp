#include "utilities/capture/fcapturerectangle.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace ostrivex {

fCaptureRectangle::fCaptureRectangle(const QImage& picture, QScreen* screen)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      picture_(picture), screen_(screen) {
    setObjectName(QStringLiteral("fCaptureRectangle"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setCursor(Qt::CrossCursor);
    setWindowTitle(QStringLiteral("Capture Screen"));
}

void fCaptureRectangle::ShowFullScreen() {
    if (screen_) {
        setScreen(screen_);
        // Placed by hand as well: without a window manager nobody acts on the full-screen
        // request.
        setGeometry(screen_->geometry());
    }
    showFullScreen();
    raise();
    activateWindow();
    setFocus();
}

QPoint fCaptureRectangle::toPicture(QPointF p) const {
    // The picture covers the window; a screen with a scale factor has more picture pixels
    // than window pixels.
    const double sx = width() > 0 ? double(picture_.width()) / width() : 1.0;
    const double sy = height() > 0 ? double(picture_.height()) / height() : 1.0;
    const int x = int(std::floor(p.x() * sx)), y = int(std::floor(p.y() * sy));
    return {std::clamp(x, 0, std::max(0, picture_.width() - 1)),
            std::clamp(y, 0, std::max(0, picture_.height() - 1))};
}

QRect fCaptureRectangle::toWidget(const QRect& r) const {
    const double sx = picture_.width() > 0 ? double(width()) / picture_.width() : 1.0;
    const double sy = picture_.height() > 0 ? double(height()) / picture_.height() : 1.0;
    return QRectF(r.x() * sx, r.y() * sy, r.width() * sx, r.height() * sy).toAlignedRect();
}

void fCaptureRectangle::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.drawImage(rect(), picture_);
    QPen pen(Qt::white, 1, Qt::DashLine);
    p.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    p.setPen(pen);
    if (dragging_ && !band_.isEmpty()) {
        // picRectangle: the outline just inside the chosen pixels.
        p.drawRect(toWidget(band_).adjusted(0, 0, -1, -1));
    } else if (underMouse() || !mouse_.isNull()) {
        // shpFollow: two lines across the screen through the mouse.
        p.drawLine(0, mouse_.y(), width(), mouse_.y());
        p.drawLine(mouse_.x(), 0, mouse_.x(), height());
    }
}

void fCaptureRectangle::mousePressEvent(QMouseEvent* e) {
    if (e->button() == Qt::RightButton) {
        end(false);
        return;
    }
    if (e->button() != Qt::LeftButton) return;
    dragging_ = true;
    anchor_ = toPicture(e->position());
    band_ = QRect(anchor_, anchor_);
    update();
}

void fCaptureRectangle::mouseMoveEvent(QMouseEvent* e) {
    mouse_ = e->position().toPoint();
    if (dragging_) {
        const QPoint at = toPicture(e->position());
        band_ = QRect(QPoint(std::min(anchor_.x(), at.x()), std::min(anchor_.y(), at.y())),
                      QPoint(std::max(anchor_.x(), at.x()), std::max(anchor_.y(), at.y())));
    }
    update();
}

void fCaptureRectangle::mouseReleaseEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton || !dragging_) return;
    mouseMoveEvent(e);
    dragging_ = false;
    // A click that did not move chooses nothing: the user can drag again.
    if (toPicture(e->position()) == anchor_) {
        band_ = QRect();
        update();
        return;
    }
    end(true);
}

void fCaptureRectangle::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Escape) {
        end(false);
        return;
    }
    QWidget::keyPressEvent(e);
}

void fCaptureRectangle::closeEvent(QCloseEvent* e) {
    // Closed by other means (the window manager): the same as Escape.
    if (!ended_) {
        ended_ = true;
        emit Cancelled();
    }
    e->accept();
}

void fCaptureRectangle::end(bool chosen) {
    if (ended_) return;
    ended_ = true;
    const QImage part = chosen ? picture_.copy(band_) : QImage();
    hide();
    if (chosen)
        emit Chosen(part);
    else
        emit Cancelled();
    close();
}

} // namespace ostrivex
