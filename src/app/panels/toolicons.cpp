#include "app/panels/toolicons.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <functional>
#include <map>

namespace ostrivex {

namespace {

// Every picture is drawn on a 24 x 24 grid and scaled.
using Drawer = std::function<void(QPainter&)>;

const QColor kInk(40, 44, 52);
const QColor kWood(232, 176, 84);
const QColor kBlue(66, 133, 244);
const QColor kRed(219, 68, 55);
const QColor kGreen(52, 168, 83);
const QColor kGlass(200, 228, 250);

QPen inkPen(qreal w = 1.5) {
    return QPen(kInk, w, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

void magnifier(QPainter& p, bool plus) {
    p.setPen(inkPen(2));
    p.setBrush(kGlass);
    p.drawEllipse(QPointF(10, 10), 6.5, 6.5);
    p.setPen(QPen(kInk, 3.5, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(15, 15), QPointF(21, 21));
    p.setPen(inkPen(2));
    p.drawLine(QPointF(7, 10), QPointF(13, 10));
    if (plus) p.drawLine(QPointF(10, 7), QPointF(10, 13));
}

void arrowHead(QPainter& p, QPointF tip, QPointF dir) {
    const QPointF n(-dir.y(), dir.x());
    QPolygonF tri{tip, tip - dir * 3.5 + n * 3, tip - dir * 3.5 - n * 3};
    p.drawPolygon(tri);
}

void dashedRect(QPainter& p, const QRectF& r) {
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(Qt::white, 1.5));
    p.drawRect(r);
    p.setPen(QPen(kInk, 1.5, Qt::DashLine, Qt::FlatCap));
    p.drawRect(r);
}

const std::map<QString, Drawer>& drawers() {
    static const std::map<QString, Drawer> table{
        {"Pencil",
         [](QPainter& p) {
             QPolygonF body{{5, 17}, {16, 6}, {19, 9}, {8, 20}};
             p.setPen(inkPen());
             p.setBrush(kWood);
             p.drawPolygon(body);
             p.setBrush(kRed);
             p.drawPolygon(QPolygonF{{16, 6}, {18, 4}, {21, 7}, {19, 9}});
             p.setBrush(QColor(250, 220, 170));
             p.drawPolygon(QPolygonF{{5, 17}, {8, 20}, {3, 22}});
         }},
        {"ZoomIn", [](QPainter& p) { magnifier(p, true); }},
        {"ZoomOut", [](QPainter& p) { magnifier(p, false); }},
        {"MouseScroll",
         [](QPainter& p) {
             // An open hand.
             p.setPen(inkPen(1.2));
             p.setBrush(QColor(250, 214, 170));
             QPainterPath hand;
             hand.addRoundedRect(QRectF(6, 11, 12, 10), 3, 3);
             for (int i = 0; i < 4; ++i)
                 hand.addRoundedRect(QRectF(6.2 + i * 3, 4 + (i == 0 || i == 3 ? 2 : 0), 2.6, 10),
                                     1.3, 1.3);
             hand.addRoundedRect(QRectF(2.5, 12, 6, 2.6), 1.3, 1.3);
             p.drawPath(hand.simplified());
         }},
        {"MM",
         [](QPainter& p) {
             // Four arrows: the view moves with the mouse.
             p.setPen(inkPen(1.8));
             p.drawLine(QPointF(12, 3), QPointF(12, 21));
             p.drawLine(QPointF(3, 12), QPointF(21, 12));
             p.setBrush(kInk);
             p.setPen(inkPen(1));
             arrowHead(p, {12, 2.5}, {0, -1});
             arrowHead(p, {12, 21.5}, {0, 1});
             arrowHead(p, {2.5, 12}, {-1, 0});
             arrowHead(p, {21.5, 12}, {1, 0});
         }},
        {"GetColor",
         [](QPainter& p) {
             // An eyedropper.
             p.setPen(inkPen());
             p.setBrush(kGlass);
             p.drawPolygon(QPolygonF{{4, 20}, {4, 17}, {13, 8}, {16, 11}, {7, 20}});
             p.setBrush(kInk);
             p.drawRoundedRect(QRectF(14, 4, 6, 6), 2, 2);
             p.drawLine(QPointF(12, 7), QPointF(17, 12));
             p.setBrush(kBlue);
             p.setPen(Qt::NoPen);
             p.drawEllipse(QPointF(4, 21), 1.5, 1.5);
         }},
        {"SelectionMove",
         [](QPainter& p) {
             dashedRect(p, QRectF(3, 3, 13, 11));
             p.setPen(inkPen(1.2));
             p.setBrush(Qt::white);
             p.drawPolygon(QPolygonF{
                 {11, 9}, {11, 22}, {14, 19}, {16.5, 23}, {18.5, 22}, {16, 18}, {20, 18}});
         }},
        {"Select", [](QPainter& p) { dashedRect(p, QRectF(3.5, 5.5, 17, 13)); }},
        {"Brush",
         [](QPainter& p) {
             p.setPen(inkPen(1.2));
             p.setBrush(kWood);
             p.drawPolygon(QPolygonF{{13, 11}, {20, 3}, {22, 5}, {15, 13}});
             p.setBrush(QColor(160, 160, 170));
             p.drawPolygon(QPolygonF{{11, 12}, {13, 10}, {16, 13}, {14, 15}});
             QPainterPath tip;
             tip.moveTo(11, 12);
             tip.cubicTo(7, 12, 8, 17, 3, 21);
             tip.cubicTo(9, 21, 14, 19, 14, 15);
             tip.closeSubpath();
             p.setBrush(kBlue);
             p.drawPath(tip);
         }},
        {"Airbrush",
         [](QPainter& p) {
             p.setPen(inkPen(1.2));
             p.setBrush(QColor(170, 180, 195));
             p.drawRoundedRect(QRectF(13, 8, 8, 13), 2, 2);
             p.setBrush(kInk);
             p.drawRect(QRectF(15, 5, 4, 3));
             p.setPen(Qt::NoPen);
             p.setBrush(kRed);
             const QPointF dots[] = {{10, 6}, {7, 4},  {8, 8},  {5, 7}, {3, 5},
                                     {4, 10}, {7, 11}, {10, 9}, {2, 8}};
             for (const QPointF& d : dots)
                 p.drawEllipse(d, 0.9, 0.9);
         }},
        {"Stamp",
         [](QPainter& p) {
             p.setPen(inkPen(1.2));
             p.setBrush(kWood);
             p.drawEllipse(QRectF(8.5, 2, 7, 6));
             p.drawRect(QRectF(10.5, 7.5, 3, 5));
             p.setBrush(kRed);
             p.drawRoundedRect(QRectF(4, 12.5, 16, 5), 1.5, 1.5);
             p.setPen(QPen(kRed, 2, Qt::SolidLine, Qt::RoundCap));
             p.drawLine(QPointF(5, 21), QPointF(19, 21));
         }},
        {"Fill",
         [](QPainter& p) {
             // A tipped bucket with paint running out.
             p.setPen(inkPen(1.2));
             p.setBrush(QColor(190, 200, 212));
             p.drawPolygon(QPolygonF{{4, 10}, {11, 3}, {19, 11}, {12, 18}});
             p.setBrush(kBlue);
             QPainterPath drop;
             drop.moveTo(19, 11);
             drop.cubicTo(22, 14, 22, 17, 21, 19);
             drop.cubicTo(19, 21, 18, 17, 19, 11);
             p.drawPath(drop);
         }},
        {"Gradient",
         [](QPainter& p) {
             QLinearGradient g(3, 0, 21, 0);
             g.setColorAt(0, Qt::white);
             g.setColorAt(1, kInk);
             p.setPen(inkPen(1.2));
             p.setBrush(g);
             p.drawRect(QRectF(3, 5, 18, 14));
         }},
        {"Shape",
         [](QPainter& p) {
             p.setPen(inkPen(1.5));
             p.setBrush(kGreen);
             p.drawRect(QRectF(3, 3, 11, 11));
             p.setBrush(QColor(kBlue.red(), kBlue.green(), kBlue.blue(), 210));
             p.drawEllipse(QRectF(9, 9, 12, 12));
         }},
        {"Layers",
         [](QPainter& p) {
             p.setPen(inkPen(1.2));
             const QColor fills[] = {QColor(190, 200, 212), kBlue, QColor(250, 250, 250)};
             for (int i = 0; i < 3; ++i) {
                 const qreal y = 15 - i * 4.5;
                 p.setBrush(fills[i]);
                 p.drawPolygon(QPolygonF{{12, y - 5}, {21, y}, {12, y + 5}, {3, y}});
             }
         }},
    };
    return table;
}

} // namespace

QPixmap ToolPixmap(const QString& key, int size) {
    QPixmap pm(size, size);
    pm.fill(Qt::transparent);
    auto it = drawers().find(key);
    if (it == drawers().end()) return pm;
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 24.0, size / 24.0);
    it->second(p);
    return pm;
}

QIcon ToolIcon(const QString& key) {
    QIcon icon;
    for (int s : {16, 24, 32})
        icon.addPixmap(ToolPixmap(key, s));
    return icon;
}

} // namespace ostrivex
