// The pictures of the tool buttons, drawn with QPainter at any size, so that they stay
// sharp on any screen and need no image files.
#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

namespace ostrivex {

// The picture of the tool button `key` ("Pencil", "ZoomIn", ...) at size x size pixels
// (device-independent); an unknown key gives a transparent picture.
QPixmap ToolPixmap(const QString& key, int size = 24);
// The button icon of `key` (16, 24 and 32 pixels).
QIcon ToolIcon(const QString& key);

} // namespace ostrivex
