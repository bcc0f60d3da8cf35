// The tools' cursors over the canvas, drawn by the program: small pictures of the tool
// with their hot spot where the tool works (the tip of the brush, pencil and picker, the
// drop of the fill, the middle of the stamp and of the gradient's cross, the palm of the
// hand). Each is 32 x 32 pixels, black lines with a white edge so they show on any picture.
#pragma once

#include <QCursor>
#include <QString>

namespace ostrivex {

// The cursor of a name: "cBrush", "cAirBrush", "cFill", "cPencil", "cPicker", "cTextures",
// "cGradient", "cGrab", "cRelease"; "cMove" is the platform's four-way arrow. Any other
// name gives the cross. Made once and kept.
QCursor ToolCursor(const QString& name);

} // namespace ostrivex
