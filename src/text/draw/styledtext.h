// Style text: a line of text with raised or sunken edges, the picture of a style text
// layer.
#pragma once

#include "pixel/bits.h"
#include "text/draw/textrecord.h"

#include <QString>

#include <cstdint>

namespace ostrivex {

// Draws `text` onto `picture` by passes. The font is `fontName` at `size` points (height
// round(size * -20 / twips per pixel)), `weight`, the three toggles, turned `angle`
// degrees counter-clockwise about its pen point. `style` picks the passes; a pass sets its
// colour and then, `repeat` times, adds its offset to both pen coordinates and draws the
// text there; a colour of -1 skips the pass, and the pen goes back to (x, y) after each:
//
//   style 0: color1 at +1, then color2 at -1      style 2: color1 at +1
//   style 1: color1 at -1, then color2 at +1      style 3: color2 at -1
//
// Any other style makes no passes. Last, unless `color3` is -1, the text is drawn once in
// color3 at (x, y). Colours are 0x00BBGGRR.
void DrawStyledText(Bits& picture, const QString& text, const QString& fontName, int weight,
                    bool italic, bool underline, bool strikethru, float size, int angle, int style,
                    int32_t color1, int32_t color2, int32_t color3, int x, int y, int repeat);

// The style list of the New Text Layer dialog, by index.
enum class TextStyle { Plain = 0, Emboss = 1, Engrave = 2, Both = 3 };

// Everything the New Text Layer dialog draws from.
struct StyleTextSettings {
    QString text = QStringLiteral("Your Text Here");
    QString fontName;
    float fontSize = 36;
    int32_t foreColor = 0x000000;
    bool bold = false, italic = false, underline = false, strikethru = false;
    int32_t background = 0xFFFFFF;
    int32_t transparent = 0xFFFFFF; // the layer's colour key
    int style = int(TextStyle::Emboss);
    int32_t emboss = 0xC0C0C0;
    int32_t engrave = 0x404040;
    int angle = 0;
    int depth = 2;  // the passes' repeat count
    int left = 10;  // start of the text in x
    int right = 10; // start of the text in y
    int width = 420;
    int height = 100;
};

// The dialog's drawing routine: the layer cleared to the background, then by style:
// "Plain" prints the text in its colour at the start position; "Emboss", "Engrave" and
// "Both" call DrawStyledText with style 3, 2 and 0 (emboss colour as color1, engrave
// colour as color2, the text colour last). So "Emboss" draws only the engrave colour, to
// the upper left, and "Engrave" only the emboss colour, to the lower right. A style index
// outside the list leaves the layer blank.
Bits DrawStyleTextLayer(const StyleTextSettings& s);
// The same drawing onto a picture as it stands (no clearing, the size is the picture's).
void DrawStyleText(Bits& picture, const StyleTextSettings& s);

// The record the dialog hands on, and the settings an edited layer's record brings back
// (the picture's size and colours stay as `base` has them).
TextRecord StyleTextRecord(const StyleTextSettings& s);
StyleTextSettings StyleTextFromRecord(const TextRecord& r, StyleTextSettings base = {});

} // namespace ostrivex
