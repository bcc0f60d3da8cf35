#include "text/draw/styledtext.h"

#include "pixel/vbmath.h"
#include "text/draw/textstamp.h"

#include <algorithm>
#include <cstdlib>

namespace ostrivex {

namespace {

struct Pass {
    int32_t colour;
    int offset;
};

void fill(Bits& b, int32_t colour) {
    const uint8_t px[4] = {colourB(uint32_t(colour)), colourG(uint32_t(colour)),
                           colourR(uint32_t(colour)), 0};
    for (int32_t y = 0; y < b.height(); ++y) {
        uint8_t* d = b.row(y);
        for (int32_t x = 0; x < b.width(); ++x, d += 4)
            std::copy(px, px + 4, d);
    }
}

} // namespace

void DrawStyledText(Bits& picture, const QString& text, const QString& fontName, int weight,
                    bool italic, bool underline, bool strikethru, float size, int angle, int style,
                    int32_t color1, int32_t color2, int32_t color3, int x, int y, int repeat) {
    if (picture.empty() || text.isEmpty()) return;
    Pass passes[2];
    int count = 0;
    switch (style) {
    case 0:
        passes[count++] = {color1, +1}, passes[count++] = {color2, -1};
        break;
    case 1:
        passes[count++] = {color1, -1}, passes[count++] = {color2, +1};
        break;
    case 2:
        passes[count++] = {color1, +1};
        break;
    case 3:
        passes[count++] = {color2, -1};
        break;
    default:
        break;
    }
    TextStamp stamp(text, MakeTextFont({fontName, size, weight, italic, underline, strikethru}),
                    angle);
    // Past this many steps every copy lies beyond the picture.
    const int reach =
        picture.width() + picture.height() + 2 * (stamp.textWidth() + stamp.textHeight()) + 64;
    const int steps = std::clamp(repeat, 0, reach);

    // One mask for every copy: the picture as seen from each pen position the passes take.
    int lo = 0, hi = 0;
    for (int i = 0; i < count; ++i)
        if (passes[i].colour != -1) (passes[i].offset > 0 ? hi : lo) = passes[i].offset * steps;
    stamp.Prepare(QRect(-x - hi, -y - hi, picture.width() + hi - lo, picture.height() + hi - lo));

    for (int i = 0; i < count; ++i) {
        const Pass& p = passes[i];
        if (p.colour == -1) continue;
        int px = x, py = y; // the pen starts each pass at (x, y)
        for (int k = 0; k < steps; ++k) {
            px += p.offset;
            py += p.offset;
            stamp.Stamp(picture, px, py, uint32_t(p.colour));
        }
    }
    if (color3 != -1) stamp.Stamp(picture, x, y, uint32_t(color3));
}

Bits DrawStyleTextLayer(const StyleTextSettings& s) {
    Bits layer(std::max(s.width, 1), std::max(s.height, 1));
    fill(layer, s.background);
    DrawStyleText(layer, s);
    return layer;
}

void DrawStyleText(Bits& layer, const StyleTextSettings& s) {
    const int weight = s.bold ? 700 : 400;
    switch (TextStyle(s.style)) {
    case TextStyle::Plain:
        // Plain printing: the layer's font and colour at the start position, no turn.
        DrawStyledText(layer, s.text, s.fontName, weight, s.italic, s.underline, s.strikethru,
                       s.fontSize, 0, -1, -1, -1, s.foreColor, s.left, s.right, 0);
        break;
    case TextStyle::Emboss:
    case TextStyle::Engrave:
    case TextStyle::Both: {
        static constexpr int kPasses[] = {0, 3, 2, 0};
        DrawStyledText(layer, s.text, s.fontName, weight, s.italic, s.underline, s.strikethru,
                       s.fontSize, s.angle, kPasses[s.style], s.emboss, s.engrave, s.foreColor,
                       s.left, s.right, s.depth);
        break;
    }
    default:
        break; // no such style: the layer stays blank
    }
}

TextRecord StyleTextRecord(const StyleTextSettings& s) {
    TextRecord r;
    r.LayerType = TextRecord::StyleText;
    r.LayerText = s.text;
    r.StyleValues = {s.emboss, s.engrave, s.angle, s.left, s.depth, s.right, s.style};
    r.FontName = s.fontName;
    r.FontSize = s.fontSize;
    r.ForeColor = s.foreColor;
    r.FontBold = s.bold;
    r.FontItalic = s.italic;
    r.FontUnderline = s.underline;
    r.FontStrikethru = s.strikethru;
    return r;
}

StyleTextSettings StyleTextFromRecord(const TextRecord& r, StyleTextSettings s) {
    s.text = r.LayerText;
    s.emboss = r.StyleValues[TextRecord::EmbossColour];
    s.engrave = r.StyleValues[TextRecord::EngraveColour];
    s.angle = r.StyleValues[TextRecord::Angle];
    s.left = r.StyleValues[TextRecord::Left];
    s.depth = r.StyleValues[TextRecord::Depth];
    s.right = r.StyleValues[TextRecord::Right];
    s.style = r.StyleValues[TextRecord::StyleIndex];
    s.fontName = r.FontName;
    s.fontSize = r.FontSize;
    s.foreColor = r.ForeColor;
    s.bold = r.FontBold;
    s.italic = r.FontItalic;
    s.underline = r.FontUnderline;
    s.strikethru = r.FontStrikethru;
    return s;
}

} // namespace ostrivex
