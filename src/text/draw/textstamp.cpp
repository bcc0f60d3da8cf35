#include "text/draw/textstamp.h"

#include "pixel/vbmath.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace ostrivex {

namespace {

// A mask larger than this is not drawn in one piece: each stamp then draws the part it
// needs (at most the picture).
constexpr int64_t kMaxPreparedPixels = 16'000'000;

// The room drawn around a stamp's part when the mask was not prepared for it.
constexpr int kStampRoom = 256;

// Qt's font metrics are kept in 16 bits on their way from the font engine: a line past
// 32767 pixels comes out negative and nothing is drawn. Line heights run to about 1.2
// times the character height, so characters are held to 16384 pixels.
constexpr int kMaxPixelHeight = 16384;

} // namespace

int FontPixelHeight(float size) {
    const double h = std::nearbyint(double(size) * -20.0 / kTwipsPerPixel);
    const double a = std::fabs(h);
    if (!(a >= 1)) return 1;
    return a > kMaxPixelHeight ? kMaxPixelHeight : int(a);
}

QFont MakeTextFont(const TextFont& f) {
    QFont font(f.name.isEmpty() ? QFont().family() : f.name);
    font.setPixelSize(FontPixelHeight(f.size));
    const int weight = f.weight <= 0 ? 400 : std::clamp(f.weight, 1, 1000);
    font.setWeight(QFont::Weight(weight));
    font.setItalic(f.italic);
    font.setUnderline(f.underline);
    font.setStrikeOut(f.strikethru);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::NoAntialias | QFont::PreferMatch));
    font.setKerning(true);
    return font;
}

QStringList InstalledFontFamilies() {
    QStringList families = QFontDatabase::families();
    families.sort(Qt::CaseInsensitive);
    return families;
}

TextStamp::TextStamp(const QString& text, const QFont& font, double angle)
    : text_(text), font_(font), angle_(angle) {
    const QFontMetrics fm(font_);
    width_ = fm.horizontalAdvance(text_);
    height_ = fm.height();
    ascent_ = fm.ascent();
    if (text_.isEmpty()) return;
    // The line's box with room for overhangs (italics, accents, the underline), turned.
    QRect box = fm.boundingRect(text_).translated(0, ascent_);
    box = box.united(QRect(0, 0, std::max(width_, 1), std::max(height_, 1)));
    const int margin = 2 + fm.height() / 4;
    box.adjust(-margin, -margin, margin, margin);
    QTransform turn;
    turn.rotate(-angle_);
    extent_ = turn.mapRect(QRectF(box)).toAlignedRect().adjusted(-1, -1, 1, 1);
}

void TextStamp::Prepare(const QRect& window) {
    const QRect w = window.intersected(extent_);
    if (w.isEmpty() || window_.contains(w)) return;
    if (int64_t(w.width()) * w.height() > kMaxPreparedPixels) return;
    render(w);
}

void TextStamp::render(const QRect& window) {
    window_ = window;
    mask_.assign(size_t(window.width()) * size_t(window.height()), 0);
    if (window.isEmpty()) return;
    QImage image(window.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing, false);
        p.setRenderHint(QPainter::TextAntialiasing, false);
        p.setFont(font_);
        p.setPen(Qt::white);
        p.translate(-window.left(), -window.top());
        p.rotate(-angle_);
        p.drawText(QPoint(0, ascent_), text_);
    }
    const int w = window.width();
    runs_.clear();
    rowRuns_.assign(size_t(window.height()) + 1, 0);
    for (int y = 0; y < window.height(); ++y) {
        const auto* src = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        uint8_t* dst = mask_.data() + size_t(y) * size_t(w);
        rowRuns_[size_t(y)] = runs_.size();
        int start = -1;
        for (int x = 0; x < w; ++x) {
            const bool on = qAlpha(src[x]) >= 128;
            dst[x] = on ? 255 : 0;
            if (on && start < 0) start = x;
            if (!on && start >= 0) {
                runs_.emplace_back(start, x);
                start = -1;
            }
        }
        if (start >= 0) runs_.emplace_back(start, w);
    }
    rowRuns_[size_t(window.height())] = runs_.size();
}

std::vector<uint8_t> TextStamp::Mask(const QRect& window) {
    std::vector<uint8_t> out(
        size_t(std::max(window.width(), 0)) * size_t(std::max(window.height(), 0)), 0);
    const QRect need = window.intersected(extent_);
    if (need.isEmpty()) return out;
    if (!window_.contains(need)) render(need);
    for (int y = need.top(); y <= need.bottom(); ++y) {
        const uint8_t* src = mask_.data() + size_t(y - window_.top()) * size_t(window_.width()) +
                             size_t(need.left() - window_.left());
        uint8_t* dst = out.data() + size_t(y - window.top()) * size_t(window.width()) +
                       size_t(need.left() - window.left());
        std::copy(src, src + need.width(), dst);
    }
    return out;
}

void TextStamp::Stamp(Bits& picture, int x, int y, uint32_t colour) {
    if (text_.isEmpty() || picture.empty()) return;
    // The picture as seen from the pen point, cut to where the text can be.
    const QRect need = QRect(-x, -y, picture.width(), picture.height()).intersected(extent_);
    if (need.isEmpty()) return;
    if (!window_.contains(need)) {
        // Stamps of one drawing move a few pixels at a time: draw some room around.
        const QRect grown =
            need.adjusted(-kStampRoom, -kStampRoom, kStampRoom, kStampRoom).intersected(extent_);
        render(int64_t(grown.width()) * grown.height() <= kMaxPreparedPixels ? grown : need);
    }
    const uint8_t b = colourB(colour), g = colourG(colour), r = colourR(colour);
    // The needed columns in mask coordinates.
    const int lo = need.left() - window_.left(), hi = need.right() + 1 - window_.left();
    for (int my = need.top(); my <= need.bottom(); ++my) {
        const size_t row = size_t(my - window_.top());
        for (size_t k = rowRuns_[row]; k < rowRuns_[row + 1]; ++k) {
            const int first = std::max(runs_[k].first, lo), end = std::min(runs_[k].second, hi);
            if (first >= end) continue;
            uint8_t* d = picture.pixel(window_.left() + x + first, my + y);
            for (uint8_t* stop = d + ptrdiff_t(end - first) * 4; d < stop; d += 4) {
                d[0] = b;
                d[1] = g;
                d[2] = r;
            }
        }
    }
}

} // namespace ostrivex
