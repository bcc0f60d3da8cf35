#include "app/shell/splash.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

namespace ostrivex {

fSplash::fSplash(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint), picture_(picture()) {
    setObjectName(QStringLiteral("fSplash"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setFixedSize(picture_.size());
    tSplash.setSingleShot(true);
    tSplash.setInterval(kSplashMs);
    connect(&tSplash, &QTimer::timeout, this, &fSplash::fire);
    if (QScreen* s = QGuiApplication::primaryScreen()) {
        const QRect r = s->availableGeometry();
        move(r.center() - rect().center());
    }
}

QPixmap fSplash::picture() {
    QPixmap pm(420, 240);
    QPainter p(&pm);
    QLinearGradient g(0, 0, 0, pm.height());
    g.setColorAt(0, QColor(34, 52, 96));
    g.setColorAt(1, QColor(10, 14, 30));
    p.fillRect(pm.rect(), g);
    // A few overlapping colour discs: the three primaries of light.
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setCompositionMode(QPainter::CompositionMode_Plus);
    p.setBrush(QColor(200, 40, 40));
    p.drawEllipse(QPoint(70, 90), 42, 42);
    p.setBrush(QColor(40, 180, 40));
    p.drawEllipse(QPoint(100, 90), 42, 42);
    p.setBrush(QColor(40, 60, 210));
    p.drawEllipse(QPoint(85, 118), 42, 42);
    p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    p.setPen(Qt::white);
    QFont f = p.font();
    f.setPointSize(30);
    f.setBold(true);
    p.setFont(f);
    p.drawText(QRect(150, 60, 260, 60), Qt::AlignLeft | Qt::AlignVCenter,
               QStringLiteral("Ostrivex"));
    f.setPointSize(11);
    f.setBold(false);
    p.setFont(f);
    p.drawText(QRect(152, 120, 260, 30), Qt::AlignLeft | Qt::AlignVCenter,
               QStringLiteral("Raster image editor"));
    return pm;
}

void fSplash::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    if (!fired_ && !tSplash.isActive()) tSplash.start();
}

void fSplash::mousePressEvent(QMouseEvent* e) {
    e->accept();
    close();
    fire();
}

void fSplash::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.drawPixmap(0, 0, picture_);
    p.setPen(Qt::white);
    p.drawText(QRect(0, height() - 40, width() - 12, 30), Qt::AlignRight | Qt::AlignVCenter,
               QStringLiteral("Starting..."));
}

void fSplash::fire() {
    tSplash.stop();
    if (fired_) return;
    fired_ = true;
    emit finished();
}

} // namespace ostrivex
