#include "app/colour/bcolortool.h"

#include "app/colour/pickcolour.h"

#include <QPainter>

namespace ostrivex {

bColorTool::bColorTool(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QAbstractButton::clicked, this, [this] {
        if (picksOnClick_) pick();
    });
}

void bColorTool::setColour(int32_t colour) {
    colour_ = colour;
    update();
}

void bColorTool::pick() {
    int32_t c = colour_;
    if (!PickColour(window(), c, toolTip())) return;
    setColour(c);
    emit colourChosen(c);
}

void bColorTool::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QRect r = rect().adjusted(0, 0, -1, -1);
    p.fillRect(r, QColor::fromRgb(BgrToQRgb(colour_)));
    // A dark outer and a light inner frame, so that any colour stands out.
    p.setPen(palette().color(QPalette::Shadow));
    p.drawRect(r);
    p.setPen(QColor(255, 255, 255, 160));
    p.drawRect(r.adjusted(1, 1, -1, -1));
    if (hasFocus()) {
        p.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
        p.drawRect(r.adjusted(2, 2, -2, -2));
    }
}

} // namespace ostrivex
