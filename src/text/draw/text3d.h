// 3D text: a line of text drawn as an extruded block, its colour running from a first to
// a second colour, the front face optionally filled with a tiled texture.
#pragma once

#include "pixel/bits.h"
#include "text/draw/textrecord.h"
#include "text/draw/textstamp.h"

#include <QString>

#include <cstdint>

namespace ostrivex {

// Splits a 0x00BBGGRR colour into red, green and blue.
void colortorgb(int32_t colour, float& r, float& g, float& b);

// The colour the 3D text draws a running colour with: the whole parts (floor) of the three
// channels packed as red + 256 * green + 65536 * blue, kept to 24 bits. Channels are never
// clamped above 255, so a red of 256 carries into green.
uint32_t RunningColour(float r, float g, float b);

// Draws `text` in `font` onto `picture` (cleared to `background` first) as a block of
// `thickness` copies:
//   - horizontal and vertical are divided by 10 (tenths of a pixel of slant per step);
//   - the text is centred, x0 = picture width / 2 - text width / 2 and y0 likewise, as
//     16-bit whole numbers, then moved back by half the block:
//     x0 = round(x0 - thickness * horizontal / 2), y0 likewise;
//   - the colour steps are (second - first) / thickness per channel; before each copy i
//     (0 to thickness - 1) the steps are added to the running colour, a channel whose
//     whole part is below 0 becomes 0, and the copy is drawn at
//     (x0 + i * horizontal, y0 + i * vertical) in RunningColour;
//   - with `withTexture`, every pixel of the last running colour (the front face) takes
//     the texture's pixel (tx, ty), walking the picture a column at a time: ty goes up with
//     every pixel and back to 0 when it reaches the texture's height - 1, and at the end of
//     a column ty is 0 and tx goes up, back to 0 when it reaches the texture's width - 1.
// The first colour and the slants are changed by the call, as the running values are
// theirs. A thickness below 1 draws no block (its colour steps would divide by zero).
// Returns the last running colour (the front face's), or -1 when nothing was drawn.
int32_t Draw3DText(Bits& picture, int32_t background, const QFont& font, int thickness, float& r1,
                   float& g1, float& b1, float r2, float g2, float b2, float& horizontal,
                   float& vertical, const QString& text, bool withTexture, const Bits& texture);

// Everything the 3D Text dialog draws from.
struct Text3DSettings {
    QString text = QStringLiteral("Your Text Here");
    int32_t colour1 = 0x0000C0; // first colour (deep red)
    int32_t colour2 = 0x60FFFF; // second colour (light yellow)
    int horizontal = 10;        // tenths of a pixel per step
    int vertical = 10;
    int thickness = 12;
    QString fontName;
    int fontSize = 40;
    bool bold = true, italic = false, underline = false, strikethru = false;
    bool withTexture = false;
    Bits texture;
    int32_t background = 0xFFFFFF;
    int32_t transparent = 0xFFFFFF;
    int width = 560;
    int height = 140;
};

// The dialog's redraw: a fresh copy of the colours and slants into Draw3DText.
Bits Draw3DTextLayer(const Text3DSettings& s);

// The record the dialog's Apply hands on (text, the two colours, the slants and the
// thickness; the font in the font fields), and the settings an edited layer's record
// brings back.
TextRecord Text3DRecord(const Text3DSettings& s);
Text3DSettings Text3DFromRecord(const TextRecord& r, Text3DSettings base = {});

} // namespace ostrivex
