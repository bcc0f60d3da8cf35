// The logo maker's effects on a finished logo: the effect list, shadow, hover, bend and
// the backlight.
#include "text/draw/logo.h"

#include "pixel/vbmath.h"
#include "text/draw/logo_fill.h"
#include "text/draw/logo_mask.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrivex {

namespace {

using logo::Mask;

constexpr double kPi = 3.14159265358979323846;

Mask shapeMask(const LogoState& st) {
    Mask m(st.picture.width(), st.picture.height());
    m.a = st.shape;
    return m;
}

// Darkens what lies behind the logo under a blurred, shifted copy of its shape.
void castShadow(LogoState& st, int offset, int radius, double opacity) {
    const int W = st.picture.width(), H = st.picture.height();
    const Mask shape = shapeMask(st);
    const Mask shadow = logo::BlurMask(logo::Shifted(shape, offset, offset), radius);
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            const double a = shadow.at(x, y) / 255.0 * opacity * (255 - shape.at(x, y)) / 255.0;
            if (a <= 0) continue;
            uint8_t* p = st.picture.pixel(x, y);
            for (int c = 0; c < 3; ++c)
                p[c] = clampByte(vbRound(p[c] * (1 - a)));
        }
}

} // namespace

double distance(double x1, double y1, double x2, double y2) {
    return std::sqrt((x2 - x1) * (x2 - x1) + (y2 - y1) * (y2 - y1));
}

void ApplyLogoFX(Bits& picture, LogoFX fx) {
    const int W = picture.width(), H = picture.height();
    switch (fx) {
    case LogoFX::Monochrome:
        for (int y = 0; y < H; ++y) {
            uint8_t* d = picture.row(y);
            for (int x = 0; x < W; ++x, d += 4) {
                const uint8_t grey = clampByte(vbRound(0.3 * d[2] + 0.59 * d[1] + 0.11 * d[0]));
                d[0] = d[1] = d[2] = grey;
            }
        }
        break;
    case LogoFX::Negative:
        for (int y = 0; y < H; ++y) {
            uint8_t* d = picture.row(y);
            for (int x = 0; x < W; ++x, d += 4)
                for (int c = 0; c < 3; ++c)
                    d[c] = uint8_t(255 - d[c]);
        }
        break;
    case LogoFX::Blur:
    case LogoFX::DePixel: {
        // Read from the picture as it was; columns and rows 1 to size - 2.
        const Bits source = picture;
        for (int y = 1; y < H - 1; ++y)
            for (int x = 1; x < W - 1; ++x) {
                uint8_t* d = picture.pixel(x, y);
                for (int c = 0; c < 3; ++c) {
                    std::array<uint8_t, 9> n;
                    int k = 0, sum = 0;
                    for (int j = -1; j <= 1; ++j)
                        for (int i = -1; i <= 1; ++i) {
                            n[size_t(k++)] = source(c, x + i, y + j);
                            sum += source(c, x + i, y + j);
                        }
                    if (fx == LogoFX::Blur) {
                        d[c] = uint8_t(vbRound(sum / 9.0));
                    } else {
                        std::nth_element(n.begin(), n.begin() + 4, n.end());
                        d[c] = n[4];
                    }
                }
            }
        break;
    }
    }
}

void MakeShadow(LogoState& logo) {
    castShadow(logo, std::max(2, logo.fontPixels / 16), 1, 0.6);
}

void MakeHover(LogoState& logo) {
    castShadow(logo, std::max(4, logo.fontPixels / 6), std::max(2, logo.fontPixels / 10), 0.45);
}

void BendLogo(LogoState& st, bool vertical) {
    const int W = st.picture.width(), H = st.picture.height();
    const double amplitude = std::max(1, std::min(W, H) / 6);
    const Bits picture = st.picture;
    const std::vector<uint8_t> shape = st.shape;
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            int sx = x, sy = y;
            if (vertical)
                sy = y + vbRound(amplitude * std::sin(kPi * x / std::max(1, W - 1)));
            else
                sx = x + vbRound(amplitude * std::sin(kPi * y / std::max(1, H - 1)));
            const bool in = sx >= 0 && sy >= 0 && sx < W && sy < H;
            const uint8_t* s = in ? picture.pixel(sx, sy) : st.background.pixel(x, y);
            uint8_t* d = st.picture.pixel(x, y);
            d[0] = s[0];
            d[1] = s[1];
            d[2] = s[2];
            st.shape[size_t(y) * W + x] = in ? shape[size_t(sy) * W + sx] : 0;
        }
}

Bits MakeBacklight(const LogoState& base, int lightX, int lightY, int32_t colour, int reach,
                   int strength, bool front) {
    Bits out = base.picture;
    const int W = out.width(), H = out.height();
    if (reach < 1 || strength <= 0 || base.shape.size() != size_t(W) * size_t(H)) return out;
    Mask hard(W, H);
    for (size_t i = 0; i < hard.a.size(); ++i)
        hard.a[i] = base.shape[i] >= 128 ? 255 : 0;
    const std::vector<int> dist =
        front ? logo::InnerDistance(hard, reach) : logo::RingDistance(hard, reach);
    const int lr = colourR(uint32_t(colour)), lg = colourG(uint32_t(colour)),
              lb = colourB(uint32_t(colour));
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            const int d = dist[size_t(y) * W + x];
            if (d < 1 || d > reach) continue;
            const double len = distance(x, y, lightX, lightY);
            if (len < 1) continue;
            const double ux = (lightX - x) / len, uy = (lightY - y) / len;
            const int steps = std::min(reach, int(len));
            int hit = 0;
            for (int j = 1; j <= steps && !hit; ++j) {
                const int sx = int(std::lround(x + ux * j)), sy = int(std::lround(y + uy * j));
                const bool inLogo = hard.inside(sx, sy) && hard.at(sx, sy);
                if (front ? !inLogo : inLogo) hit = j;
            }
            if (!hit) continue;
            const double share = strength / 100.0 * (1.0 - double(hit - 1) / reach);
            uint8_t* p = out.pixel(x, y);
            p[0] = clampByte(vbRound(p[0] + lb * share));
            p[1] = clampByte(vbRound(p[1] + lg * share));
            p[2] = clampByte(vbRound(p[2] + lr * share));
        }
    return out;
}

} // namespace ostrivex
