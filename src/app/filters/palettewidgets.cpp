#include "app/filters/palettewidgets.h"

#include "app/colour/pickcolour.h"

#include <QMouseEvent>
#include <QPainter>

namespace ostrivex {

PalettePicture::PalettePicture(const PaletteRecord& palette, QWidget* parent)
    : QWidget(parent), palette_(palette) {
    setObjectName(QStringLiteral("iPal"));
    setFixedSize(sizeHint());
}

int PalettePicture::entryAt(QPoint p) {
    if (p.x() < 0 || p.y() < 0) return -1;
    const int col = p.x() / kCell, row = p.y() / kCell;
    if (col > 15 || row > 15) return -1;
    return row * 16 + col;
}

QRect PalettePicture::cellRect(int entry) {
    return {entry % 16 * kCell, entry / 16 * kCell, kCell, kCell};
}

void PalettePicture::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Qt::darkGray);
    for (int i = 0; i < 256; ++i) {
        const int32_t* c = palette_.PaletteColors[i];
        const QRect r = cellRect(i).adjusted(1, 1, 0, 0);
        p.fillRect(r, QColor(c[0], c[1], c[2]));
        if (i >= palette_.PaletteCount) { // not used by the mapping
            p.setPen(Qt::gray);
            p.drawLine(r.topLeft(), r.bottomRight());
            p.drawLine(r.topRight(), r.bottomLeft());
        }
    }
}

void PalettePicture::mousePressEvent(QMouseEvent* e) {
    const int entry = entryAt(e->position().toPoint());
    if (entry >= 0) emit entryClicked(entry);
}

PaletteSwatch::PaletteSwatch(QWidget* parent) : QLabel(parent) {
    setObjectName(QStringLiteral("lblCur"));
    setToolTip(QStringLiteral("Double click to apply to palette color"));
    setFrameShape(QFrame::Box);
    setMinimumSize(48, 32);
    setAutoFillBackground(true);
    setColour(Qt::black);
}

void PaletteSwatch::setColour(const QColor& c) {
    colour_ = c;
    QPalette pal = palette();
    pal.setColor(QPalette::Window, c);
    setPalette(pal);
}

void PaletteSwatch::mouseDoubleClickEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton) emit applyRequested();
}

void PaletteSwatch::mousePressEvent(QMouseEvent* e) {
    if (e->button() != Qt::RightButton) return;
    int32_t colour = QRgbToBgr(colour_.rgb());
    if (PickColour(this, colour)) setColour(QColor::fromRgb(BgrToQRgb(colour)));
}

} // namespace ostrivex
