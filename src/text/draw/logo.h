// The logo maker's picture: a line of text with a fill, a border, a background, lighting
// and filters. `DrawLogo` builds it from a plain settings record; the effects that the
// dialog's buttons run afterwards (filters, shadow, hover, bend, backlight) work on the
// result and are discarded by the next DrawLogo ("Undo All").
#pragma once

#include "pixel/bits.h"
#include "text/draw/textrecord.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace ostrivex {

// The fills of the letters (in the order of the font tab's options).
enum class LogoFontFill { Texture = 0, Solid = 1, Gradient = 2, Transparent = 3 };
// The fills of the border (in the order of the border tab's options).
enum class LogoBorderFill { Fade = 0, Gradient = 1, Solid = 2, Texture = 3 };
// The background (in the order of the background tab's options).
enum class LogoBackground { Picture = 0, Solid = 1, Gradient = 2 };
// The gradient styles "Circular", "Horizontal", "Vertikal".
enum class GradientStyle { Circular = 0, Horizontal = 1, Vertical = 2 };
// The entries of the effect list.
enum class LogoFX { Monochrome = 0, Blur = 1, DePixel = 2, Negative = 3 };

struct LogoGradient {
    GradientStyle style = GradientStyle::Horizontal;
    int32_t colour1 = 0x0000FF;
    int32_t colour2 = 0xFF0000;
    bool operator==(const LogoGradient&) const = default;
};

// A texture and how it is laid: tiled from the picture's corner, and with `deform` waved
// by `amplitude` pixels over a `wavelength` of pixels.
struct LogoTexture {
    Bits picture;
    bool deform = false;
    int amplitude = 4;
    int wavelength = 32;
};

struct LogoSettings {
    int width = 400, height = 120;
    QString text = QStringLiteral("Sample");
    QString fontName;
    int fontSize = 48; // points

    LogoFontFill fontFill = LogoFontFill::Solid;
    int32_t fontColour = 0x0080FF;
    LogoGradient fontGradient;
    LogoTexture fontTexture;

    bool border = true;
    int borderSize = 3;
    bool left = true, right = true, top = true, bottom = true;
    bool glow = false;
    LogoBorderFill borderFill = LogoBorderFill::Solid;
    int32_t borderColour = 0x000000;
    LogoGradient borderGradient{GradientStyle::Vertical, 0x000000, 0x808080};
    LogoTexture borderTexture;

    LogoBackground background = LogoBackground::Solid;
    int32_t backColour = 0xFFFFFF;
    LogoGradient backGradient{GradientStyle::Vertical, 0xFFFFFF, 0xC08040};
    Bits backPicture;
    bool tile = false, shrink = false, stretch = false;
    int moveX = 0, moveY = 0; // shift of the background picture

    bool emboss = false, engrave = false;
    int emEnDistance = 2; // points away from the font
    bool emEnBox = false; // a box around the logo rather than the letters' outline
    bool invert = false, mirror = false;
    bool alpha = false;
    int alphaPercent = 50;
    bool antiAlias = false;
};

// A drawn logo: the picture, the background it was drawn on, and the logo's shape (the
// letters with their border, 0 to 255 per pixel, width * height bytes), all in step, so
// the effects can tell the logo from what lies behind it.
struct LogoState {
    Bits picture;
    Bits background;
    std::vector<uint8_t> shape;
    int fontPixels = 0; // the letters' height in pixels
};

// The pipeline, in order: the background; the text drawn to a mask (centred) with copies
// shifted by up to the border size to the chosen sides for the border; the border filled
// (with glow fading ring by ring towards the background); the letters filled
// ("Transparent" leaves them as holes in the border); anti-aliasing of the mask edges;
// emboss and engrave edges at a distance; alpha blending of the letters; mirror; invert.
// An empty text draws the background only.
LogoState DrawLogo(const LogoSettings& s);
// The same on a background already painted by PaintLogoBackground for these settings (a
// dialog keeps it while only the text or the letters change).
LogoState DrawLogo(const LogoSettings& s, const Bits& background);

// The background step alone (`PaintBackground`).
Bits PaintLogoBackground(const LogoSettings& s, int width, int height);

// A two-colour gradient over the rectangle (left, top, w, h) of `out`, by style.
void PaintGradient(Bits& out, int left, int top, int w, int h, const LogoGradient& g);

// The effect list on the picture's pixels:
//   Monochrome: grey = round(0.3 red + 0.59 green + 0.11 blue) into all three channels;
//   Blur: the mean of the 3 x 3 neighbourhood for columns and rows 1 to size - 2;
//   DePixel: the median of the 3 x 3 neighbourhood per channel, over the same pixels
//            (single stray pixels and one-pixel steps go, edges stay sharp);
//   Negative: each channel inverted.
void ApplyLogoFX(Bits& picture, LogoFX fx);

// A drop shadow of the logo's shape to the lower right on what lies behind the logo.
void MakeShadow(LogoState& logo);
// A soft shadow further away, as if the logo hovered over the background.
void MakeHover(LogoState& logo);
// Bends the logo: with `vertical` each column moves up by a sine arc over the width,
// otherwise each row moves sideways by one over the height; what is uncovered shows the
// background.
void BendLogo(LogoState& logo, bool vertical);

// The backlight for a light at (lightX, lightY) in picture pixels. Behind the letters
// (front false) each pixel outside the logo within `distance` of it is lightened when the
// ray from it towards the light meets the logo, the more the sooner; in front, each pixel
// of the logo within `distance` of its edge is lightened when the ray towards the light
// leaves the logo, the more the sooner. The share is `strength` percent at the edge,
// falling to nothing at `distance`, in `colour`. Works on a copy of `base`.
Bits MakeBacklight(const LogoState& base, int lightX, int lightY, int32_t colour, int distance,
                   int strength, bool front);

// The plain Euclidean distance between two points.
double distance(double x1, double y1, double x2, double y2);

// The record the logo hands on: text, font name and size (and the layer font).
TextRecord LogoRecord(const LogoSettings& s);
// What an opened logo layer brings back: the text, the font name and the size.
LogoSettings LogoFromRecord(const TextRecord& r, LogoSettings base = {});
// The name of the layer the logo becomes: the text's first line, or "No Text".
QString LogoLayerName(const QString& text);

} // namespace ostrivex
