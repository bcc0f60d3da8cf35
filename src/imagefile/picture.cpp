// The platform picture loader: gif through Qt's reader, dib and bmp through the program's
// own, WMF through libwmf and EMF through libemf2svg (both run in the helper process,
// since metafile parsers are easy prey for hostile files), the EMF's SVG drawn with Qt SVG.
#include "imagefile/decode.h"
#include "imagefile/fiimage.h"
#include "imagefile/fileio.h"
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
#include <sys/stat.h>
#include <unistd.h>

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

// A gif's logical screen (the size Qt gives its frames) and the bits per pixel of its
// global colour table, from its header; false if there is no gif header.
bool gifHeader(const InputFile& file, int& w, int& h, int& bpp) {
    uint8_t b[13];
    if (pread(file.fd(), b, sizeof b, 0) != ssize_t(sizeof b) || std::memcmp(b, "GIF", 3) != 0)
        return false;
    w = b[6] | b[7] << 8;
    h = b[8] | b[9] << 8;
    bpp = (b[10] & 0x80) ? (b[10] & 7) + 1 : 8;
    return true;
}

// A gif ends with its trailer byte 0x3B; Qt shows a cut-off gif with its missing rows
// blank, which is no good load.
bool gifComplete(const InputFile& file) {
    uint8_t last = 0;
    return file.size() >= 14 && pread(file.fd(), &last, 1, off_t(file.size() - 1)) == 1 &&
           last == 0x3B;
}

ImageFileResult loadGif(const std::string& path) {
    const InputFile file(path);
    int w = 0, h = 0, bpp = 0;
    if (!file.ok() || !gifHeader(file, w, h, bpp) || !gifComplete(file) ||
        !codec::SizeAllowed(w, h, {ImageMemoryBudget(), file.size()}))
        return loadFailed();
    QFile device;
    if (!device.open(dup(file.fd()), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return loadFailed();
    // The format is forced by the extension: a png named .gif is refused, as the
    // platform loader refuses it.
    QImageReader reader(&device, "gif");
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(false);
    reader.setAllocationLimit(int(std::min<uint64_t>(ImageMemoryBudget() >> 20, INT32_MAX)));
    QImage img;
    if (!reader.read(&img)) return loadFailed();
    Bits pixels;
    const int dpiX = img.dotsPerMeterX() > 0 ? DotsPerInch(unsigned(img.dotsPerMeterX())) : 96;
    const int dpiY = img.dotsPerMeterY() > 0 ? DotsPerInch(unsigned(img.dotsPerMeterY())) : 96;
    if (!imageToBits(img, pixels)) return loadFailed();
    return LoadedImage(std::move(pixels), bpp, dpiX, dpiY);
}

ImageFileResult loadBmp(const std::string& path) {
    const InputFile file(path);
    Bits pixels;
    codec::DecodeInfo info;
    if (!file.ok() || !DecodeHere(codec::DecodeBmp, file, pixels, info)) return loadFailed();
    return LoadedImage(std::move(pixels), info.bpp, info.dpiX, info.dpiY);
}

ImageFileResult loadWmf(const std::string& path) {
    const InputFile file(path);
    Bits pixels;
    codec::DecodeInfo info;
    if (!file.ok() || !DecodeInHelper("wmf", "wmf", file.fd(), pixels, info)) return loadFailed();
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
    const InputFile file(path);
    if (!file.ok()) return loadFailed();
    const QSize size = emfFrameSize(path);
    if (!size.isValid() || !codec::SizeAllowed(size.width(), size.height(),
                                               {ImageMemoryBudget(), UINT64_MAX / 2}))
        return loadFailed();
    const int answer = MemoryFile("ostrivex-svg");
    if (answer < 0) return loadFailed();
    QFile svgFile;
    if (!svgFile.open(answer, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        close(answer);
        return loadFailed();
    }
    if (!RunHelper({"emf"}, file.fd(), answer)) return loadFailed();
    svgFile.seek(0);
    const QByteArray svg = svgFile.readAll();
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
    if (ext == "gif") return loadGif(path);
    if (ext == "bmp" || ext == "dib") return loadBmp(path);
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
