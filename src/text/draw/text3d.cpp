#include "text/draw/text3d.h"

#include "pixel/vbmath.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrivex {

namespace {

// A value stored into a 16-bit whole number, rounded; held to the type's range rather
// than failing, so a huge font still gives a picture.
int16_t toShort(double v) {
    const double r = std::nearbyint(v);
    if (!(r > std::numeric_limits<int16_t>::min())) return std::numeric_limits<int16_t>::min();
    if (r > std::numeric_limits<int16_t>::max()) return std::numeric_limits<int16_t>::max();
    return int16_t(r);
}

void fill(Bits& b, int32_t colour) {
    const uint8_t px[4] = {colourB(uint32_t(colour)), colourG(uint32_t(colour)),
                           colourR(uint32_t(colour)), 0};
    for (int32_t y = 0; y < b.height(); ++y) {
        uint8_t* d = b.row(y);
        for (int32_t x = 0; x < b.width(); ++x, d += 4)
            std::copy(px, px + 4, d);
    }
}

void textureFrontFace(Bits& picture, uint32_t front, const Bits& texture) {
    const uint8_t fb = colourB(front), fg = colourG(front), fr = colourR(front);
    const int32_t tw = texture.width(), th = texture.height();
    int32_t tx = 0, ty = 0;
    for (int32_t x = 0; x < picture.width(); ++x) {
        for (int32_t y = 0; y < picture.height(); ++y) {
            uint8_t* d = picture.pixel(x, y);
            if (d[0] == fb && d[1] == fg && d[2] == fr) {
                const uint8_t* s = texture.pixel(tx, ty);
                d[0] = s[0];
                d[1] = s[1];
                d[2] = s[2];
            }
            // One short of the texture's height; a texture one pixel high stays on row 0.
            if (++ty >= th - 1) ty = 0;
        }
        ty = 0;
        if (++tx >= tw - 1) tx = 0;
    }
}

} // namespace

void colortorgb(int32_t colour, float& r, float& g, float& b) {
    r = float(colourR(uint32_t(colour)));
    g = float(colourG(uint32_t(colour)));
    b = float(colourB(uint32_t(colour)));
}

uint32_t RunningColour(float r, float g, float b) {
    const int64_t v =
        int64_t(std::floor(r)) + 256 * int64_t(std::floor(g)) + 65536 * int64_t(std::floor(b));
    return uint32_t(v) & 0xFFFFFFu;
}

int32_t Draw3DText(Bits& picture, int32_t background, const QFont& font, int thickness, float& r1,
                   float& g1, float& b1, float r2, float g2, float b2, float& horizontal,
                   float& vertical, const QString& text, bool withTexture, const Bits& texture) {
    // 1. Clear.
    fill(picture, background);
    if (thickness < 1) return -1;
    // 2. Tenths of a pixel per step.
    horizontal /= 10;
    vertical /= 10;
    TextStamp stamp(text, font);
    // 3. Centred, in 16-bit whole numbers.
    int16_t x0 = toShort(picture.width() / 2.0 - stamp.textWidth() / 2.0);
    int16_t y0 = toShort(picture.height() / 2.0 - stamp.textHeight() / 2.0);
    // 4. Back by half the block.
    x0 = toShort(float(x0) - float(thickness) * horizontal / 2);
    y0 = toShort(float(y0) - float(thickness) * vertical / 2);
    // 5. Colour steps.
    const float dr = (r2 - r1) / float(thickness);
    const float dg = (g2 - g1) / float(thickness);
    const float db = (b2 - b1) / float(thickness);

    auto penX = [&](int i) { return vbRoundF(float(x0) + float(i) * horizontal); };
    auto penY = [&](int i) { return vbRoundF(float(y0) + float(i) * vertical); };
    const int last = thickness - 1;
    const int minX = std::min(penX(0), penX(last)), maxX = std::max(penX(0), penX(last));
    const int minY = std::min(penY(0), penY(last)), maxY = std::max(penY(0), penY(last));
    stamp.Prepare(
        QRect(-maxX, -maxY, picture.width() + maxX - minX, picture.height() + maxY - minY));

    // 6. The block, back to front.
    uint32_t colour = 0;
    for (int i = 0; i < thickness; ++i) {
        r1 += dr;
        g1 += dg;
        b1 += db;
        if (std::floor(r1) < 0) r1 = 0;
        if (std::floor(g1) < 0) g1 = 0;
        if (std::floor(b1) < 0) b1 = 0;
        colour = RunningColour(r1, g1, b1);
        stamp.Stamp(picture, penX(i), penY(i), colour);
    }
    // 7. The front face.
    if (withTexture && !texture.empty()) textureFrontFace(picture, colour, texture);
    return int32_t(colour);
}

Bits Draw3DTextLayer(const Text3DSettings& s) {
    Bits layer(std::max(s.width, 1), std::max(s.height, 1));
    float r1, g1, b1, r2, g2, b2;
    colortorgb(s.colour1, r1, g1, b1);
    colortorgb(s.colour2, r2, g2, b2);
    float h = float(s.horizontal), v = float(s.vertical);
    const QFont font = MakeTextFont(
        {s.fontName, float(s.fontSize), s.bold ? 700 : 400, s.italic, s.underline, s.strikethru});
    Draw3DText(layer, s.background, font, s.thickness, r1, g1, b1, r2, g2, b2, h, v, s.text,
               s.withTexture, s.texture);
    return layer;
}

TextRecord Text3DRecord(const Text3DSettings& s) {
    TextRecord r;
    r.LayerType = TextRecord::Text3D;
    r.LayerText = s.text;
    r.StyleValues = {s.colour1, s.colour2, s.horizontal, s.vertical, s.thickness, 0, 0};
    r.FontName = s.fontName;
    r.FontSize = float(s.fontSize);
    r.ForeColor = s.colour2;
    r.FontBold = s.bold;
    r.FontItalic = s.italic;
    r.FontUnderline = s.underline;
    r.FontStrikethru = s.strikethru;
    return r;
}

Text3DSettings Text3DFromRecord(const TextRecord& r, Text3DSettings s) {
    s.text = r.LayerText;
    s.colour1 = r.StyleValues[TextRecord::FirstColour];
    s.colour2 = r.StyleValues[TextRecord::SecondColour];
    s.horizontal = r.StyleValues[TextRecord::Horizontal];
    s.vertical = r.StyleValues[TextRecord::Vertical];
    s.thickness = r.StyleValues[TextRecord::Thickness];
    s.fontName = r.FontName;
    s.fontSize = int(std::lround(r.FontSize));
    s.bold = r.FontBold;
    s.italic = r.FontItalic;
    s.underline = r.FontUnderline;
    s.strikethru = r.FontStrikethru;
    return s;
}

} // namespace ostrivex
