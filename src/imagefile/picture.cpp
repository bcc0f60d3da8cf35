// The platform picture loader: gif, dib and bmp through Qt's image readers, WMF through
// libwmf and EMF through libemf2svg (both run in the helper process, since metafile
// parsers are easy prey for hostile files), the EMF's SVG drawn with Qt SVG.
#include "imagefile/fiimage.h"
#include "imagefile/helperprocess.h"
#include "imagefile/imagefile.h"
#include "imagefile/thumbdecoder.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>
#include <cstdio>
#include <new>

namespace ostrivex {

namespace {

ImageFileResult loadFailed() {
    return {false, kLoadErrorText};
}

// Bits from a QImage drawn on white (so transparent gif pixels come out white, as the
// platform picture shows them).
bool imageToBits(const QImage& source, Bits& out) {
    if (source.isNull() || source.width() > kMaxImageSide || source.height() > kMaxImageSide)
        return false;
    QImage img = source;
    if (img.hasAlphaChannel()) {
        QImage flat(img.size(), QImage::Format_RGB32);
        flat.fill(Qt::white);
        QPainter p(&flat);
        p.drawImage(0, 0, img);
        p.end();
        img = flat;
    } else {
        img = img.convertToFormat(QImage::Format_RGB32);
    }
    if (img.isNull()) return false;
    try {
        out.reset(img.width(), img.height());
    } catch (const std::bad_alloc&) {
        return false;
    }
    for (int y = 0; y < img.height(); ++y) {
        const QRgb* src = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        uint8_t* dst = out.row(y);
        for (int x = 0; x < img.width(); ++x, dst += 4) {
            dst[0] = uint8_t(qBlue(src[x]));
            dst[1] = uint8_t(qGreen(src[x]));
            dst[2] = uint8_t(qRed(src[x]));
        }
    }
    return true;
}

// The bits per pixel that a gif or bmp file states in its header (0 if unreadable): for
// a gif the size of its global colour table, for a bmp the header's bit count.
int headerDepth(const std::string& path, bool gif) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly)) return 0;
    const QByteArray h = file.read(32);
    auto u8 = [&h](int at) { return at < h.size() ? int(uint8_t(h[at])) : 0; };
    if (gif) {
        if (h.size() < 11 || !h.startsWith("GIF")) return 0;
        return (u8(10) & 0x80) ? (u8(10) & 7) + 1 : 8;
    }
    if (h.size() < 30 || !h.startsWith("BM")) return 0;
    const int headerSize = u8(14) | u8(15) << 8;
    const int at = headerSize == 12 ? 24 : 28; // the old core header keeps it earlier
    return u8(at) | u8(at + 1) << 8;
}

// A gif ends with its trailer byte 0x3B; Qt shows a cut-off gif with its missing rows
// blank, which is no good load.
bool gifComplete(const std::string& path) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly) || file.size() < 14) return false;
    file.seek(file.size() - 1);
    return file.read(1) == QByteArray(1, char(0x3B));
}

ImageFileResult loadRaster(const std::string& path, const char* format) {
    if (std::string(format) == "gif" && !gifComplete(path)) return loadFailed();
    // The format is forced by the extension: a png named .gif is refused, as the
    // platform loader refuses it.
    QImageReader reader(QString::fromStdString(path), format);
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(false);
    const QSize size = reader.size();
    if (size.isValid() && (size.width() > kMaxImageSide || size.height() > kMaxImageSide))
        return loadFailed();
    QImage img;
    if (!reader.read(&img)) return loadFailed();
    int bpp = headerDepth(path, std::string(format) == "gif");
    if (bpp <= 0) bpp = img.depth() == 32 ? 24 : img.depth();
    Bits pixels;
    const int dpiX = img.dotsPerMeterX() > 0 ? DotsPerInch(unsigned(img.dotsPerMeterX())) : 96;
    const int dpiY = img.dotsPerMeterY() > 0 ? DotsPerInch(unsigned(img.dotsPerMeterY())) : 96;
    if (!imageToBits(img, pixels)) return loadFailed();
    return LoadedImage(std::move(pixels), bpp, dpiX, dpiY);
}

ImageFileResult loadWmf(const std::string& path) {
    const std::string temp = TempLoadName();
    std::remove(temp.c_str());
    if (!RunHelper({"wmf", path, temp})) return loadFailed();
    FreeImageSession session;
    FIBITMAP* dib = FreeImage_Load(FIF_BMP, temp.c_str(), 0);
    Bits pixels;
    const bool ok = dib && DibToBits(dib, pixels);
    if (dib) FreeImage_Unload(dib);
    std::remove(temp.c_str());
    if (!ok) return loadFailed();
    return LoadedImage(std::move(pixels), 24, 96, 96);
}

// The EMF's frame (its header's rclFrame, in hundredths of a millimetre) at 96 dots per
// inch: the file's own size. Invalid if the file has no EMF header.
QSize emfFrameSize(const std::string& path) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray head = file.read(44);
    if (head.size() < 44) return {};
    auto i32 = [&head](int at) {
        return int32_t(uint32_t(uint8_t(head[at])) | uint32_t(uint8_t(head[at + 1])) << 8 |
                       uint32_t(uint8_t(head[at + 2])) << 16 |
                       uint32_t(uint8_t(head[at + 3])) << 24);
    };
    if (i32(0) != 1 || i32(40) != 0x464D4520) return {}; // EMR_HEADER, " EMF"
    const double w = (double(i32(32)) - i32(24)) / 2540.0 * 96.0;
    const double h = (double(i32(36)) - i32(28)) / 2540.0 * 96.0;
    if (!(w >= 1 && h >= 1 && w <= kMaxImageSide && h <= kMaxImageSide)) return {};
    return QSize(int(std::lround(w)), int(std::lround(h)));
}

ImageFileResult loadEmf(const std::string& path) {
    // Drawing the SVG may draw text, which needs the fonts of a GUI application.
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) return loadFailed();
    const QSize size = emfFrameSize(path);
    if (!size.isValid()) return loadFailed();
    const std::string temp = TempLoadName();
    std::remove(temp.c_str());
    if (!RunHelper({"emf", path, temp})) return loadFailed();
    QFile file(QString::fromStdString(temp));
    QByteArray svg;
    if (file.open(QIODevice::ReadOnly)) svg = file.readAll();
    file.close();
    std::remove(temp.c_str());
    QSvgRenderer renderer(svg);
    if (!renderer.isValid()) return loadFailed();
    // The converter sizes its SVG by the header's device bounds, which a reference device
    // of another resolution shrinks and which may clip the drawing; the drawing's own
    // units are 96-dpi pixels, so the frame at 96 dpi is shown whole.
    renderer.setViewBox(QRectF(0, 0, size.width(), size.height()));
    QImage img(size, QImage::Format_RGB32);
    if (img.isNull()) return loadFailed();
    img.fill(Qt::white);
    QPainter p(&img);
    renderer.render(&p);
    p.end();
    Bits pixels;
    if (!imageToBits(img, pixels)) return loadFailed();
    return LoadedImage(std::move(pixels), 24, 96, 96);
}

} // namespace

bool IsPictureExtension(const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    return ext == "gif" || ext == "wmf" || ext == "emf" || ext == "dib" || ext == "bmp";
}

ImageFileResult LoadDocumentImage(const std::string& path, const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    if (IsPictureExtension(ext) && ext != "bmp") return LoadPictureFile(path, ext);
    return LoadImageFile(path, ext);
}

ImageFileResult LoadPictureFile(const std::string& path, const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    if (!QFile::exists(QString::fromStdString(path))) return loadFailed();
    if (ext == "gif") return loadRaster(path, "gif");
    if (ext == "bmp" || ext == "dib") return loadRaster(path, "bmp");
    if (ext == "wmf") return loadWmf(path);
    if (ext == "emf") return loadEmf(path);
    return loadFailed();
}

} // namespace ostrivex

namespace ostrivex {

QSize EmfPictureSize(const std::string& path) {
    return emfFrameSize(path);
}

} // namespace ostrivex
