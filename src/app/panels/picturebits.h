// Small pictures of the program's own folders (stamps, textures) as pixels. They are read
// with the platform picture reader, which decides the format from the file's content, and
// they never go through the File menu's loaders.
#pragma once

#include "pixel/bits.h"

#include <QImage>
#include <QString>

namespace ostrivex {

// The picture of `path`, transparent parts drawn on white; a null image if it cannot be
// read or is larger than 4096 pixels on a side.
QImage ReadSmallPicture(const QString& path);
// Blue, green, red of every pixel into channels 0 to 2; channel 3 zero. Empty for a null
// image.
Bits ImageToBits(const QImage& image);
// The pixels of `bits` without the guard band (Format_RGB32).
QImage BitsToImage(const Bits& bits);

} // namespace ostrivex
