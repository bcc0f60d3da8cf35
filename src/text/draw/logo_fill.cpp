// The fills of the logo maker: gradients, textures and the background.
#include "text/draw/logo_fill.h"
#include "text/draw/logo.h"

#include "pixel/vbmath.h"

#include <QImage>

#include <algorithm>
#include <cmath>

namespace ostrivex {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kCircleSteps = 4096;

void put(uint8_t* d, uint32_t c) {
    d[0] = colourB(c);
    d[1] = colourG(c);
    d[2] = colourR(c);
}

QImage toImage(const Bits& b) {
    QImage img(b.width(), b.height(), QImage::Format_RGB32);
    for (int y = 0; y < b.height(); ++y) {
        auto* d = reinterpret_cast<QRgb*>(img.scanLine(y));
        const uint8_t* s = b.row(y);
        for (int x = 0; x < b.width(); ++x, s += 4)
            d[x] = qRgb(s[2], s[1], s[0]);
    }
    return img;
}

Bits fromImage(const QImage& img) {
    const QImage i = img.convertToFormat(QImage::Format_RGB32);
    Bits b(i.width(), i.height());
    for (int y = 0; y < i.height(); ++y) {
        const auto* s = reinterpret_cast<const QRgb*>(i.constScanLine(y));
        uint8_t* d = b.row(y);
        for (int x = 0; x < i.width(); ++x, d += 4) {
            d[0] = uint8_t(qBlue(s[x]));
            d[1] = uint8_t(qGreen(s[x]));
            d[2] = uint8_t(qRed(s[x]));
        }
    }
    return b;
}

int wrap(int v, int n) {
    const int m = v % n;
    return m < 0 ? m + n : m;
}

} // namespace

uint32_t LerpColour(uint32_t a, uint32_t b, double t) {
    if (!(t > 0)) return a & 0xFFFFFFu;
    if (t >= 1) return b & 0xFFFFFFu;
    const int w = int(t * 65536 + 0.5); // the share of b in 1/65536
    auto ch = [w](uint32_t x, uint32_t y) {
        return uint32_t((int(x) * 65536 + (int(y) - int(x)) * w + 32768) >> 16);
    };
    return ch(a & 0xFF, b & 0xFF) | ch((a >> 8) & 0xFF, (b >> 8) & 0xFF) << 8 |
           ch((a >> 16) & 0xFF, (b >> 16) & 0xFF) << 16;
}

void PaintGradient(Bits& out, int left, int top, int w, int h, const LogoGradient& g) {
    if (w < 1 || h < 1) return;
    const uint32_t c1 = uint32_t(g.colour1), c2 = uint32_t(g.colour2);
    const double cx = left + (w - 1) / 2.0, cy = top + (h - 1) / 2.0;
    const double radius = std::max(1.0, std::hypot((w - 1) / 2.0, (h - 1) / 2.0));
    const int x0 = std::max(0, left), x1 = std::min(out.width(), left + w);
    const int y0 = std::max(0, top), y1 = std::min(out.height(), top + h);
    // One colour per column or row for the straight styles; for the circle one per step of
    // 1/4096 of the radius.
    std::vector<uint32_t> ramp;
    if (g.style == GradientStyle::Horizontal || g.style == GradientStyle::Vertical) {
        const int n = g.style == GradientStyle::Horizontal ? w : h;
        ramp.resize(size_t(n));
        for (int i = 0; i < n; ++i)
            ramp[size_t(i)] = LerpColour(c1, c2, n > 1 ? double(i) / (n - 1) : 0);
    } else {
        ramp.resize(kCircleSteps + 1);
        for (int i = 0; i <= kCircleSteps; ++i)
            ramp[size_t(i)] = LerpColour(c1, c2, double(i) / kCircleSteps);
    }
    std::vector<float> dx2;
    std::vector<int> index;
    const float inverse = float(1.0 / radius);
    if (g.style == GradientStyle::Circular && x1 > x0) {
        dx2.resize(size_t(x1 - x0));
        index.resize(size_t(x1 - x0));
        for (int x = x0; x < x1; ++x)
            dx2[size_t(x - x0)] = float((x - cx) * (x - cx));
    }
    for (int y = y0; y < y1; ++y) {
        uint8_t* d = out.pixel(x0, y);
        switch (g.style) {
        case GradientStyle::Horizontal:
            for (int x = x0; x < x1; ++x, d += 4)
                put(d, ramp[size_t(x - left)]);
            break;
        case GradientStyle::Vertical: {
            const uint32_t c = ramp[size_t(y - top)];
            for (int x = x0; x < x1; ++x, d += 4)
                put(d, c);
            break;
        }
        case GradientStyle::Circular: {
            // The steps of a row first (a loop the compiler runs four lanes wide), then the
            // colours.
            const float dy2 = float((y - cy) * (y - cy));
            const float* dx2p = dx2.data();
            int* ip = index.data();
            const int n = x1 - x0;
            for (int i = 0; i < n; ++i)
                ip[i] =
                    int(std::min(1.0f, std::sqrt(dx2p[i] + dy2) * inverse) * kCircleSteps + 0.5f);
            for (int i = 0; i < n; ++i, d += 4)
                put(d, ramp[size_t(ip[i])]);
            break;
        }
        }
    }
}

uint32_t TextureColour(const LogoTexture& t, int x, int y) {
    const Bits& p = t.picture;
    if (p.empty()) return 0;
    int sx = x, sy = y;
    if (t.deform && t.wavelength > 0) {
        const double k = 2 * kPi / t.wavelength;
        sx = x + int(std::floor(t.amplitude * std::sin(k * y)));
        sy = y + int(std::floor(t.amplitude * std::sin(k * x)));
    }
    const uint8_t* s = p.pixel(wrap(sx, p.width()), wrap(sy, p.height()));
    return packColour(s[2], s[1], s[0]);
}

uint32_t MeanColour(const Bits& p) {
    if (p.empty() || p.width() == 0 || p.height() == 0) return 0;
    uint64_t sum[3] = {0, 0, 0};
    for (int y = 0; y < p.height(); ++y) {
        const uint8_t* s = p.row(y);
        for (int x = 0; x < p.width(); ++x, s += 4)
            for (int c = 0; c < 3; ++c)
                sum[c] += s[c];
    }
    const uint64_t n = uint64_t(p.width()) * uint64_t(p.height());
    return packColour(uint8_t(sum[2] / n), uint8_t(sum[1] / n), uint8_t(sum[0] / n));
}

Bits PaintLogoBackground(const LogoSettings& s, int W, int H) {
    Bits out(W, H);
    const uint32_t back = uint32_t(s.backColour);
    for (int y = 0; y < H; ++y) {
        uint8_t* d = out.row(y);
        for (int x = 0; x < W; ++x, d += 4)
            put(d, back);
    }
    if (s.background == LogoBackground::Gradient) {
        PaintGradient(out, 0, 0, W, H, s.backGradient);
    } else if (s.background == LogoBackground::Picture && !s.backPicture.empty() &&
               s.backPicture.width() > 0 && s.backPicture.height() > 0) {
        Bits pic = s.backPicture;
        if (s.stretch) {
            pic = fromImage(
                toImage(pic).scaled(W, H, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        } else if (s.shrink && (pic.width() > W || pic.height() > H)) {
            pic =
                fromImage(toImage(pic).scaled(W, H, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        }
        const int pw = pic.width(), ph = pic.height();
        if (pw < 1 || ph < 1) return out;
        for (int y = 0; y < H; ++y) {
            uint8_t* d = out.row(y);
            for (int x = 0; x < W; ++x, d += 4) {
                int sx = x - s.moveX, sy = y - s.moveY;
                if (s.tile) {
                    sx = wrap(sx, pw);
                    sy = wrap(sy, ph);
                } else if (sx < 0 || sy < 0 || sx >= pw || sy >= ph) {
                    continue;
                }
                const uint8_t* p = pic.pixel(sx, sy);
                d[0] = p[0];
                d[1] = p[1];
                d[2] = p[2];
            }
        }
    }
    return out;
}

} // namespace ostrivex
