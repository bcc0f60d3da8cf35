// fImage: the rubber shapes of a selection or gradient drag, drawn over the canvas by its
// paint (after the picture and the selection outline).
#include "document/fimage.h"

#include <QPainter>

#include <algorithm>
#include <QPen>
#include <QScrollBar>

namespace ostrivex {

void fImage::ShowShape(int32_t shape, int32_t x1, int32_t y1, int32_t x2, int32_t y2,
                       bool keep) {
    const QPoint a = canvasPoint(ToolPoint{x1, y1}).toPoint(), b = canvasPoint(ToolPoint{x2, y2}).toPoint();
    if (shape == 0) {
        rubber_.rect = QRect(a, b - QPoint(1, 1)); // right and bottom exclusive
        rubber_.rectVisible = true;
    } else if (shape == 1) {
        rubber_.ellipse = QRect(a, b - QPoint(1, 1));
        rubber_.ellipseVisible = true;
    } else if (shape == 2) {
        rubber_.lines.back() = QLine(a, b);
        rubber_.lineVisible.back() = true;
        if (keep) { // the next polygon edge starts as a copy of this one
            rubber_.lines.push_back(QLine(a, b));
            rubber_.lineVisible.push_back(true);
        }
    }
    iDst_->update();
}

void fImage::HideShape(int32_t shape) {
    if (shape == 0) {
        rubber_.rectVisible = false;
    } else if (shape == 1) {
        rubber_.ellipseVisible = false;
    } else if (shape == 2) {
        rubber_.lines.resize(1);
        rubber_.lineVisible.assign(1, false);
    }
    iDst_->update();
}

void fImage::paintRubber(QPainter& painter) const {
    if (!rubber_.rectVisible && !rubber_.ellipseVisible &&
        std::find(rubber_.lineVisible.begin(), rubber_.lineVisible.end(), true) ==
            rubber_.lineVisible.end())
        return;
    painter.save();
    // A dotted line that shows on any picture.
    painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    QPen pen(Qt::white);
    pen.setStyle(Qt::DotLine);
    pen.setWidth(1);
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    if (rubber_.rectVisible) painter.drawRect(rubber_.rect.normalized());
    if (rubber_.ellipseVisible) painter.drawEllipse(rubber_.ellipse.normalized());
    for (size_t i = 0; i < rubber_.lines.size(); ++i)
        if (rubber_.lineVisible[i]) painter.drawLine(rubber_.lines[i]);
    painter.restore();
}

} // namespace ostrivex
