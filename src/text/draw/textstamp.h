// Text as pixels: a font description, and a line of text drawn once into a coverage mask
// that is then stamped onto pictures in a colour at any pen position.
//
// Text is drawn by Qt's font engine without anti-aliasing, so every pixel is either the
// text's colour or untouched: a layer's colour key then cuts the text out cleanly, and
// the 3D text's front face is exactly the pixels of one colour. A drawing at whole-pixel
// positions moves with the pen, so one mask serves every copy a style draws; the mask
// covers only the part of the text that can land on the picture, so a huge font on a
// small layer costs no more than the layer.
#pragma once

#include "pixel/bits.h"

#include <QFont>
#include <QRect>
#include <QString>

#include <cstdint>
#include <vector>

namespace ostrivex {

// A font as the text dialogs describe it. `size` is in points; `weight` is 100 to 900
// (400 normal, 700 bold, 0 the default).
struct TextFont {
    QString name;
    float size = 12;
    int weight = 400;
    bool italic = false;
    bool underline = false;
    bool strikethru = false;
};

// Screen twips per pixel: the text's height rule counts in them.
inline constexpr int kTwipsPerPixel = 15;

// The character height in pixels of a font of `size` points:
// |round(size * -20 / twips per pixel)|, at least 1 and at most 16384 (the font engine
// draws nothing beyond).
int FontPixelHeight(float size);

// The Qt font for a description: the face is looked up by name through the platform's
// font configuration (fontconfig), and a face that is not installed falls back silently
// to the closest one it offers. No anti-aliasing.
QFont MakeTextFont(const TextFont& font);

// The installed font families, sorted (empty when the platform gives none).
QStringList InstalledFontFamilies();

class TextStamp {
  public:
    // `text` in `font`, turned `angle` degrees counter-clockwise about its pen point, the
    // top-left corner of the line (where a picture starts printing).
    TextStamp(const QString& text, const QFont& font, double angle = 0);

    // Width and height of the line as printing measures it (advance width, line height).
    int textWidth() const { return width_; }
    int textHeight() const { return height_; }

    // Draws the mask for every pixel the text can cover within `window` (relative to the
    // pen point) at once, when that is not too large: for several stamps whose windows
    // are known beforehand.
    void Prepare(const QRect& window);

    // Sets channels 0 to 2 of every pixel of `picture` under the text, drawn with its pen
    // point at (x, y), to `colour` (0x00BBGGRR). Channel 3 is left alone.
    void Stamp(Bits& picture, int x, int y, uint32_t colour);

    // The mask itself for `window` (relative to the pen point): width * height bytes, 255
    // under the text, 0 elsewhere.
    std::vector<uint8_t> Mask(const QRect& window);

  private:
    void render(const QRect& window);

    QString text_;
    QFont font_;
    double angle_ = 0;
    int width_ = 0, height_ = 0, ascent_ = 0;
    QRect extent_; // every pixel the text can touch, relative to the pen point
    QRect window_; // the part drawn into mask_
    std::vector<uint8_t> mask_;
    // The mask's runs of text pixels, row by row: row r's runs are runs_[rowRuns_[r]] up to
    // runs_[rowRuns_[r + 1]], each [first, last + 1) in mask columns.
    std::vector<std::pair<int, int>> runs_;
    std::vector<size_t> rowRuns_;
};

} // namespace ostrivex
