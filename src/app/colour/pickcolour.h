// The one colour chooser of the program. Every colour well (filter dialogs, the gradient
// swatches, the stamp mask colour, the Color Box) asks for a colour through PickColour, so
// all of them open the same dialog, the program's own fGradient.
#pragma once

#include <QString>

#include <cstdint>

class QWidget;

namespace ostrivex {

// Opens the colour dialog on `colour` (0x00BBGGRR). On OK writes the chosen colour into
// `colour` and returns true; on Cancel leaves it and returns false.
bool PickColour(QWidget* parent, int32_t& colour, const QString& title = QString());

// Conversions between the program's 0x00BBGGRR colours and Qt's.
inline uint32_t BgrToQRgb(int32_t c) {
    const uint32_t u = uint32_t(c);
    return 0xFF000000u | ((u & 0xFFu) << 16) | (u & 0xFF00u) | ((u >> 16) & 0xFFu);
}
inline int32_t QRgbToBgr(uint32_t rgb) {
    return int32_t(((rgb >> 16) & 0xFFu) | (rgb & 0xFF00u) | ((rgb & 0xFFu) << 16));
}

} // namespace ostrivex
