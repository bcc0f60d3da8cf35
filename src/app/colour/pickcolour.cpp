#include "app/colour/pickcolour.h"

#include "app/colour/fgradient.h"

namespace ostrivex {

bool PickColour(QWidget* parent, int32_t& colour, const QString& title) {
    fGradient dialog(parent);
    dialog.setWindowTitle(title.isEmpty() ? QStringLiteral("Color") : title);
    dialog.setColour(colour);
    if (dialog.exec() != QDialog::Accepted) return false;
    colour = dialog.colour();
    return true;
}

} // namespace ostrivex
