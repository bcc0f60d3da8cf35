#include "document/toolcursors.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <functional>

namespace ostrivex {

namespace {

constexpr int kSize = 32;

// Draws `path` twice: a wide white edge, then the black line over it, so that the cursor
// shows on dark and light pixels alike. `fill` fills the shape's inside.
void outline(QPainter& p, const QPainterPath& path, const QColor& fill = Qt::transparent) {
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(Qt::white, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPath(path);
    p.setBrush(fill);
    p.setPen(QPen(Qt::black, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPath(path);
}

// A black pixel with a white ring at the hot spot, so the exact point is plain to see.
void hotDot(QPainter& p, QPoint at) {
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::white);
    p.drawRect(at.x() - 1, at.y() - 1, 3, 3);
    p.setBrush(Qt::black);
    p.drawRect(at.x(), at.y(), 1, 1);
}

QPixmap canvas(const std::function<void(QPainter&)>& draw) {
    QPixmap pm(kSize, kSize);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing, false);
    draw(p);
    return pm;
}

QCursor make(const QString& name) {
    if (name == "cBrush") {
        // A round brush leaning right, its tip at the bottom left.
        const QPoint hot(2, 29);
        return QCursor(canvas([&](QPainter& p) {
                           QPainterPath handle;
                           handle.moveTo(27, 2);
                           handle.lineTo(30, 5);
                           handle.lineTo(15, 20);
                           handle.lineTo(12, 17);
                           handle.closeSubpath();
                           outline(p, handle, QColor(160, 110, 60));
                           QPainterPath tuft;
                           tuft.moveTo(12, 17);
                           tuft.lineTo(15, 20);
                           tuft.cubicTo(12, 26, 8, 28, 2, 29);
                           tuft.cubicTo(3, 24, 6, 19, 12, 17);
                           outline(p, tuft, Qt::black);
                           hotDot(p, hot);
                       }),
                       hot.x(), hot.y());
    }
    if (name == "cPencil") {
        const QPoint hot(2, 29);
        return QCursor(canvas([&](QPainter& p) {
                           QPainterPath body;
                           body.moveTo(24, 3);
                           body.lineTo(29, 8);
                           body.lineTo(9, 28);
                           body.lineTo(2, 29);
                           body.lineTo(3, 22);
                           body.closeSubpath();
                           outline(p, body, QColor(240, 200, 60));
                           QPainterPath lead;
                           lead.moveTo(3, 25);
                           lead.lineTo(6, 28);
                           lead.lineTo(2, 29);
                           lead.closeSubpath();
                           outline(p, lead, Qt::black);
                           hotDot(p, hot);
                       }),
                       hot.x(), hot.y());
    }
    if (name == "cPicker") {
        // A dropper, the tip at the bottom left.
        const QPoint hot(2, 29);
        return QCursor(canvas([&](QPainter& p) {
                           QPainterPath bulb;
                           bulb.addEllipse(QRectF(21, 3, 8, 8));
                           outline(p, bulb, Qt::black);
                           QPainterPath tube;
                           tube.moveTo(21, 8);
                           tube.lineTo(24, 11);
                           tube.lineTo(6, 29);
                           tube.lineTo(2, 29);
                           tube.lineTo(3, 26);
                           tube.closeSubpath();
                           outline(p, tube, Qt::white);
                           hotDot(p, hot);
                       }),
                       hot.x(), hot.y());
    }
    if (name == "cAirBrush") {
        // A spray can with its cloud; the hot spot in the middle of the cloud.
        const QPoint hot(7, 8);
        return QCursor(canvas([&](QPainter& p) {
                           QPainterPath can;
                           can.addRoundedRect(QRectF(16, 14, 10, 16), 2, 2);
                           can.addRect(QRectF(19, 10, 4, 4));
                           outline(p, can, QColor(200, 200, 210));
                           p.setPen(Qt::black);
                           for (QPoint d : {QPoint(4, 5), QPoint(9, 4), QPoint(11, 8), QPoint(5, 11),
                                            QPoint(9, 12), QPoint(3, 8), QPoint(13, 11),
                                            QPoint(7, 3)})
                               p.drawPoint(d);
                           hotDot(p, hot);
                       }),
                       hot.x(), hot.y());
    }
    if (name == "cFill") {
        // A tipped bucket pouring; the hot spot at the end of the drop.
        const QPoint hot(4, 29);
        return QCursor(canvas([&](QPainter& p) {
                           QPainterPath bucket;
                           bucket.moveTo(10, 10);
                           bucket.lineTo(20, 2);
                           bucket.lineTo(30, 14);
                           bucket.lineTo(20, 22);
                           bucket.closeSubpath();
                           outline(p, bucket, QColor(220, 220, 220));
                           QPainterPath drop;
                           drop.moveTo(10, 10);
                           drop.cubicTo(5, 14, 3, 22, 4, 29);
                           drop.cubicTo(6, 24, 7, 18, 12, 13);
                           outline(p, drop, Qt::black);
                           hotDot(p, hot);
                       }),
                       hot.x(), hot.y());
    }
    if (name == "cTextures") {
        // A rubber stamp seen from the side; the hot spot in the middle of its foot.
        const QPoint hot(15, 28);
        return QCursor(canvas([&](QPainter& p) {
                           QPainterPath stamp;
                           stamp.addEllipse(QRectF(10, 2, 11, 8));
                           stamp.addRect(QRectF(13, 10, 5, 10));
                           stamp.addRect(QRectF(5, 20, 21, 6));
                           outline(p, stamp, QColor(200, 60, 50));
                           hotDot(p, hot);
                       }),
                       hot.x(), hot.y());
    }
    if (name == "cGradient") {
        // A cross over a small ramp from black to white.
        const QPoint hot(15, 15);
        return QCursor(canvas([&](QPainter& p) {
                           QLinearGradient ramp(20, 0, 30, 0);
                           ramp.setColorAt(0, Qt::black);
                           ramp.setColorAt(1, Qt::white);
                           p.setPen(Qt::black);
                           p.setBrush(ramp);
                           p.drawRect(19, 22, 11, 7);
                           QPainterPath cross;
                           cross.moveTo(15, 3);
                           cross.lineTo(15, 27);
                           cross.moveTo(3, 15);
                           cross.lineTo(27, 15);
                           outline(p, cross);
                           hotDot(p, hot);
                       }),
                       hot.x(), hot.y());
    }
    if (name == "cGrab" || name == "cRelease") {
        // A hand: closed round the picture while dragging, open when let go.
        const bool closed = name == "cGrab";
        const QPoint hot(15, 17);
        return QCursor(canvas([&](QPainter& p) {
                           QPainterPath hand;
                           hand.addRoundedRect(QRectF(8, 13, 16, 14), 5, 5);
                           const int reach = closed ? 9 : 4;
                           for (int f = 0; f < 4; ++f)
                               hand.addRoundedRect(QRectF(8 + f * 4, reach, 4, 14 - (closed ? 4 : 0)),
                                                   2, 2);
                           if (!closed) hand.addRoundedRect(QRectF(3, 15, 7, 4), 2, 2);
                           outline(p, hand.simplified(), Qt::white);
                       }),
                       hot.x(), hot.y());
    }
    if (name == "cMove") return QCursor(Qt::SizeAllCursor);
    return QCursor(Qt::CrossCursor);
}

} // namespace

QCursor ToolCursor(const QString& name) {
    static QHash<QString, QCursor> made;
    auto it = made.find(name);
    if (it == made.end()) it = made.insert(name, make(name));
    return *it;
}

} // namespace ostrivex
