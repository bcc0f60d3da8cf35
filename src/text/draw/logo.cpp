// DrawLogo: the logo maker's pipeline.
#include "text/draw/logo.h"

#include "pixel/vbmath.h"
#include "text/draw/logo_fill.h"
#include "text/draw/logo_mask.h"
#include "text/draw/textstamp.h"

#include <algorithm>
#include <cmath>

namespace ostrivex {

namespace {

using logo::Mask;

// The largest logo side: the size fields stop there.
constexpr int kMaxSide = 8000;
// How far the emboss and engrave edges pull towards white and black.
constexpr double kEdgeShare = 0.6;

struct Box {
    int left = 0, top = 0, w = 0, h = 0;
};

Box boundingBox(const Mask& m) {
    int x0 = m.w, y0 = m.h, x1 = -1, y1 = -1;
    for (int y = 0; y < m.h; ++y)
        for (int x = 0; x < m.w; ++x)
            if (m.at(x, y)) {
                x0 = std::min(x0, x);
                x1 = std::max(x1, x);
                y0 = std::min(y0, y);
                y1 = std::max(y1, y);
            }
    if (x1 < 0) return {};
    return {x0, y0, x1 - x0 + 1, y1 - y0 + 1};
}

uint32_t pixelColour(const Bits& b, int x, int y) {
    const uint8_t* p = b.pixel(x, y);
    return packColour(p[2], p[1], p[0]);
}

void putColour(Bits& b, int x, int y, uint32_t c) {
    uint8_t* p = b.pixel(x, y);
    p[0] = colourB(c);
    p[1] = colourG(c);
    p[2] = colourR(c);
}

// Lays `colour` over the pixel with coverage a (0 to 255).
void blend(Bits& b, int x, int y, uint32_t colour, int a) {
    if (a <= 0) return;
    putColour(b, x, y, a >= 255 ? colour : LerpColour(pixelColour(b, x, y), colour, a / 255.0));
}

// The colour the "Fade" border starts from: the letters' own colour.
uint32_t fadeColour(const LogoSettings& s) {
    switch (s.fontFill) {
    case LogoFontFill::Solid:
        return uint32_t(s.fontColour);
    case LogoFontFill::Gradient:
        return uint32_t(s.fontGradient.colour1);
    case LogoFontFill::Texture:
        return s.fontTexture.picture.empty() ? uint32_t(s.fontColour)
                                             : MeanColour(s.fontTexture.picture);
    case LogoFontFill::Transparent:
        break;
    }
    return uint32_t(s.backColour);
}

// Light and dark edges at distance d outside `shape`: light to the upper left and dark to
// the lower right (emboss), or the other way round (engrave).
void edges(Bits& pic, const Mask& shape, int d, bool engrave) {
    const Mask upperLeft = logo::Shifted(shape, -d, -d);
    const Mask lowerRight = logo::Shifted(shape, d, d);
    const uint32_t light = engrave ? 0x000000 : 0xFFFFFF;
    const uint32_t dark = engrave ? 0xFFFFFF : 0x000000;
    for (int y = 0; y < shape.h; ++y)
        for (int x = 0; x < shape.w; ++x) {
            if (shape.at(x, y)) continue;
            if (upperLeft.at(x, y))
                putColour(pic, x, y, LerpColour(pixelColour(pic, x, y), light, kEdgeShare));
            else if (lowerRight.at(x, y))
                putColour(pic, x, y, LerpColour(pixelColour(pic, x, y), dark, kEdgeShare));
        }
}

void mirror(Bits& b) {
    for (int y = 0; y < b.height(); ++y) {
        auto* row = reinterpret_cast<uint32_t*>(b.row(y));
        std::reverse(row, row + b.width());
    }
}

void invert(Bits& b) {
    for (int y = 0; y < b.height(); ++y) {
        uint8_t* d = b.row(y);
        for (int x = 0; x < b.width(); ++x, d += 4)
            for (int c = 0; c < 3; ++c)
                d[c] = uint8_t(255 - d[c]);
    }
}

} // namespace

LogoState DrawLogo(const LogoSettings& s) {
    const int W = std::clamp(s.width, 1, kMaxSide), H = std::clamp(s.height, 1, kMaxSide);
    return DrawLogo(s, PaintLogoBackground(s, W, H));
}

LogoState DrawLogo(const LogoSettings& s, const Bits& background) {
    const int W = std::clamp(s.width, 1, kMaxSide), H = std::clamp(s.height, 1, kMaxSide);
    LogoState st;
    // 1. The background.
    st.background = background.width() == W && background.height() == H
                        ? background
                        : PaintLogoBackground(s, W, H);
    st.picture = st.background;
    st.fontPixels = FontPixelHeight(float(s.fontSize));

    // 2. The text as a mask, centred; the border's copies beside it.
    Mask letters(W, H);
    if (!s.text.isEmpty()) {
        TextStamp stamp(s.text, MakeTextFont({s.fontName, float(s.fontSize), 400}));
        const int x = (W - stamp.textWidth()) / 2, y = (H - stamp.textHeight()) / 2;
        letters.a = stamp.Mask(QRect(-x, -y, W, H));
    }
    const int bs = std::max(0, s.borderSize);
    const bool hasBorder = s.border && bs > 0;
    Mask border(W, H); // the border's shape, the letters under it included
    if (hasBorder) {
        border = letters;
        if (s.left) logo::SmearInto(letters, border, -1, 0, bs);
        if (s.right) logo::SmearInto(letters, border, 1, 0, bs);
        if (s.top) logo::SmearInto(letters, border, 0, -1, bs);
        if (s.bottom) logo::SmearInto(letters, border, 0, 1, bs);
    }
    // 5. Anti-aliasing softens both masks; every fill below is laid through them.
    const Mask borderA = s.antiAlias ? logo::SoftenMask(border) : border;
    const Mask lettersA = s.antiAlias ? logo::SoftenMask(letters) : letters;

    // 3. The border.
    if (hasBorder) {
        const bool rings = s.glow || s.borderFill == LogoBorderFill::Fade;
        const std::vector<int> ring = rings ? logo::RingDistance(letters, bs) : std::vector<int>();
        Bits gradient;
        if (s.borderFill == LogoBorderFill::Gradient) {
            gradient = Bits(W, H);
            const Box b = boundingBox(borderA);
            PaintGradient(gradient, b.left, b.top, b.w, b.h, s.borderGradient);
        }
        const uint32_t fade = fadeColour(s);
        for (int y = 0; y < H; ++y)
            for (int x = 0; x < W; ++x) {
                const int a = borderA.at(x, y);
                if (!a) continue;
                const uint32_t under = pixelColour(st.background, x, y);
                const double step =
                    rings ? std::min(ring[size_t(y) * W + x], bs) / double(bs + 1) : 0;
                uint32_t c = 0;
                switch (s.borderFill) {
                case LogoBorderFill::Fade:
                    c = LerpColour(fade, under, step);
                    break;
                case LogoBorderFill::Gradient:
                    c = pixelColour(gradient, x, y);
                    break;
                case LogoBorderFill::Solid:
                    c = uint32_t(s.borderColour);
                    break;
                case LogoBorderFill::Texture:
                    c = s.borderTexture.picture.empty() ? uint32_t(s.borderColour)
                                                        : TextureColour(s.borderTexture, x, y);
                    break;
                }
                // Glow: ring by ring from the border's colour towards the background.
                if (s.glow && s.borderFill != LogoBorderFill::Fade) c = LerpColour(c, under, step);
                blend(st.picture, x, y, c, a);
            }
    }

    // 4. The letters.
    Bits gradient;
    if (s.fontFill == LogoFontFill::Gradient) {
        gradient = Bits(W, H);
        const Box b = boundingBox(lettersA);
        PaintGradient(gradient, b.left, b.top, b.w, b.h, s.fontGradient);
    }
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            const int a = lettersA.at(x, y);
            if (!a) continue;
            uint32_t c = 0;
            switch (s.fontFill) {
            case LogoFontFill::Texture:
                c = s.fontTexture.picture.empty() ? uint32_t(s.fontColour)
                                                  : TextureColour(s.fontTexture, x, y);
                break;
            case LogoFontFill::Solid:
                c = uint32_t(s.fontColour);
                break;
            case LogoFontFill::Gradient:
                c = pixelColour(gradient, x, y);
                break;
            case LogoFontFill::Transparent:
                // Holes in the border: the background shows through.
                c = pixelColour(st.background, x, y);
                break;
            }
            blend(st.picture, x, y, c, a);
        }

    // 6. Emboss and engrave edges at a distance from the letters or from a box.
    if (s.emboss || s.engrave) {
        const int d = std::max(1, s.emEnDistance);
        Mask shape(W, H);
        if (s.emEnBox) {
            for (int y = d; y < H - d; ++y)
                for (int x = d; x < W - d; ++x)
                    shape.at(x, y) = 255;
        } else {
            for (size_t i = 0; i < shape.a.size(); ++i)
                shape.a[i] = (letters.a[i] | border.a[i]) ? 255 : 0;
        }
        if (s.emboss) edges(st.picture, shape, d, false);
        if (s.engrave) edges(st.picture, shape, d, true);
    }

    // 7. Alpha: the letters let the background through by the given share.
    if (s.alpha && s.fontFill != LogoFontFill::Transparent) {
        const double share = std::clamp(s.alphaPercent, 0, 100) / 100.0;
        for (int y = 0; y < H; ++y)
            for (int x = 0; x < W; ++x) {
                const int a = lettersA.at(x, y);
                if (a)
                    putColour(st.picture, x, y,
                              LerpColour(pixelColour(st.picture, x, y),
                                         pixelColour(st.background, x, y), share * a / 255.0));
            }
    }

    // The logo's shape for the effects that follow: the border, and the letters unless
    // they are holes.
    st.shape.assign(size_t(W) * size_t(H), 0);
    for (size_t i = 0; i < st.shape.size(); ++i)
        st.shape[i] = s.fontFill == LogoFontFill::Transparent
                          ? uint8_t(std::max(0, int(borderA.a[i]) - int(lettersA.a[i])))
                          : std::max(borderA.a[i], lettersA.a[i]);

    // 8. Mirror, invert.
    if (s.mirror) {
        mirror(st.picture);
        mirror(st.background);
        for (int y = 0; y < H; ++y)
            std::reverse(st.shape.begin() + ptrdiff_t(y) * W,
                         st.shape.begin() + ptrdiff_t(y + 1) * W);
    }
    if (s.invert) {
        invert(st.picture);
        invert(st.background);
    }
    return st;
}

TextRecord LogoRecord(const LogoSettings& s) {
    TextRecord r;
    r.LayerType = TextRecord::ShadowText;
    r.LayerText = s.text;
    r.StyleValues[TextRecord::LogoFontSize] = s.fontSize;
    r.FontName = s.fontName;
    r.FontSize = float(s.fontSize);
    r.ForeColor = s.fontColour;
    return r;
}

LogoSettings LogoFromRecord(const TextRecord& r, LogoSettings s) {
    s.text = r.LayerText;
    s.fontName = r.FontName;
    int size = r.StyleValues[TextRecord::LogoFontSize];
    if (size < 1) size = int(std::lround(r.FontSize));
    if (size >= 1) s.fontSize = size;
    return s;
}

QString LogoLayerName(const QString& text) {
    const QString first = text.section(QLatin1Char('\n'), 0, 0).trimmed();
    return first.isEmpty() ? QStringLiteral("No Text") : first;
}

} // namespace ostrivex
