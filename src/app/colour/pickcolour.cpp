#include "app/colour/pickcolour.h"

#include <QColor>
#include <QColorDialog>

namespace ostrivex {

bool PickColour(QWidget* parent, int32_t& colour, const QString& title) {
    const QColor chosen = QColorDialog::getColor(QColor::fromRgb(BgrToQRgb(colour)), parent,
                                                 title.isEmpty() ? QStringLiteral("Color") : title);
    if (!chosen.isValid()) return false;
    colour = QRgbToBgr(chosen.rgb());
    return true;
}

} // namespace ostrivex
