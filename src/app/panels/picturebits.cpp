#include "app/panels/picturebits.h"

#include <QImageReader>
#include <QPainter>

namespace ostrivex {

namespace {
constexpr int kLargestSide = 4096;
}

QImage ReadSmallPicture(const QString& path) {
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(false);
    const QSize size = reader.size();
    if (size.isValid() && (size.width() > kLargestSide || size.height() > kLargestSide)) return {};
    QImage img;
    if (!reader.read(&img) || img.isNull()) return {};
    if (img.width() > kLargestSide || img.height() > kLargestSide) return {};
    QImage flat(img.size(), QImage::Format_RGB32);
    flat.fill(Qt::white);
    QPainter p(&flat);
    p.drawImage(0, 0, img);
    p.end();
    return flat;
}

Bits ImageToBits(const QImage& image) {
    if (image.isNull()) return {};
    const QImage img = image.convertToFormat(QImage::Format_RGB32);
    Bits out(img.width(), img.height());
    for (int y = 0; y < img.height(); ++y) {
        const auto* src = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        uint8_t* dst = out.row(y);
        for (int x = 0; x < img.width(); ++x, dst += 4) {
            dst[0] = uint8_t(qBlue(src[x]));
            dst[1] = uint8_t(qGreen(src[x]));
            dst[2] = uint8_t(qRed(src[x]));
        }
    }
    return out;
}

QImage BitsToImage(const Bits& bits) {
    if (bits.empty() || bits.width() < 1 || bits.height() < 1) return {};
    QImage img(bits.width(), bits.height(), QImage::Format_RGB32);
    for (int y = 0; y < bits.height(); ++y) {
        auto* dst = reinterpret_cast<QRgb*>(img.scanLine(y));
        const uint8_t* src = bits.row(y);
        for (int x = 0; x < bits.width(); ++x, src += 4)
            dst[x] = qRgb(src[2], src[1], src[0]);
    }
    return img;
}

} // namespace ostrivex
