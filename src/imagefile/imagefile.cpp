// Loading and saving by extension through FreeImage and the DevIL helper.
#include "imagefile/imagefile.h"
#include "imagefile/decode.h"
#include "imagefile/fiimage.h"
#include "imagefile/fileio.h"
#include "imagefile/helperprocess.h"
#include "imagefile/thumbdecoder.h"
#include "web/optimize.h"

#include <FreeImage.h>

#include <cstdio>
#include <cstring>
#include <new>
#include <unistd.h>

namespace ostrivex {

namespace {

// DevIL type numbers (IL/il.h) of the save targets.
constexpr int kIlBmp = 0x0420;
constexpr int kIlPcx = 0x0428;
constexpr int kIlSgi = 0x042C;
constexpr int kIlRaw = 0x0430;
constexpr int kIlPsd = 0x0439;

// The load table, in order; the first row holding the extension wins.
enum class LoadVia { Devil, FreeImageType, FreeImageByContent };
struct LoadRow {
    const char* extensions; // space separated
    LoadVia via;
    FREE_IMAGE_FORMAT format;
};
const LoadRow kLoadTable[] = {
    {"psp pic pix pxr xpm raw dcx dds lif wal mdl oil lmp sgi bw rgb rgba act pal", LoadVia::Devil,
     FIF_UNKNOWN},
    {"bmp", LoadVia::FreeImageType, FIF_BMP},
    {"cut", LoadVia::FreeImageType, FIF_CUT},
    {"iff", LoadVia::FreeImageType, FIF_IFF},
    {"jpg jpeg", LoadVia::FreeImageType, FIF_JPEG},
    {"koa", LoadVia::FreeImageType, FIF_KOALA},
    {"lbm", LoadVia::FreeImageType, FIF_LBM},
    {"mng", LoadVia::FreeImageType, FIF_MNG},
    {"pcd", LoadVia::FreeImageType, FIF_PCD},
    {"pcx", LoadVia::FreeImageType, FIF_PCX},
    {"png", LoadVia::FreeImageType, FIF_PNG},
    {"psd pdd", LoadVia::FreeImageType, FIF_PSD},
    {"ras", LoadVia::FreeImageType, FIF_RAS},
    {"tga vda icb vst targa", LoadVia::FreeImageType, FIF_TARGA},
    {"tif tiff", LoadVia::FreeImageType, FIF_TIFF},
    {"wbmp", LoadVia::FreeImageType, FIF_WBMP},
    // The PNM loader reads all six kinds (P1..P6) whatever the extension says.
    {"pbm pgm ppm", LoadVia::FreeImageType, FIF_PPM},
    {"jng", LoadVia::FreeImageByContent, FIF_UNKNOWN},
};

bool listHas(const char* list, const std::string& ext) {
    const size_t n = ext.size();
    if (n == 0) return false;
    for (const char* p = list; *p;) {
        const char* end = std::strchr(p, ' ');
        const size_t len = end ? size_t(end - p) : std::strlen(p);
        if (len == n && std::memcmp(p, ext.data(), n) == 0) return true;
        if (!end) break;
        p = end + 1;
    }
    return false;
}

const LoadRow* findLoadRow(const std::string& ext) {
    for (const auto& row : kLoadTable)
        if (listHas(row.extensions, ext)) return &row;
    return nullptr;
}

// Two formats have no signature that their loaders check, so that any file decodes to
// noise; they are held to their fixed layouts first. A Koala picture is 10001 bytes of
// bitmap, screen and colour memory and background, plus a 2-byte load address in the
// usual 10003-byte file. A PhotoCD file says "PCD_IPI" at 0x800 and holds its 768 x 512
// base picture (1.5 bytes a pixel) from 0x30000 on.
bool plausibleFile(const InputFile& file, const std::string& ext) {
    if (ext == "koa") return file.size() == 10001 || file.size() == 10003;
    if (ext != "pcd") return true;
    if (file.size() < 0x30000 + 768 * 512 * 3 / 2) return false;
    char mark[7] = {};
    return pread(file.fd(), mark, 7, 0x800) == 7 && std::memcmp(mark, "PCD_IPI", 7) == 0;
}

// How a row's file is decoded: by our own decoders or the hardened libraries here, the
// rest in the helper (protocol.h names the helper's ways).
struct Way {
    Decoder here = nullptr;
    std::string how; // in the helper
};

Way wayFor(const LoadRow& row, const std::string& ext, bool isolated = IsolateAllDecoders()) {
    Way way;
    if (row.via == LoadVia::Devil) {
        // DevIL's XPM loader crashes on every file; FreeImage reads them. This DevIL has
        // no DCX loader, and it gets 16-bit SGI colours wrong: both are read here.
        if (ext == "xpm") way.how = "fi:" + std::to_string(int(FIF_XPM));
        else if (ext == "dcx") way.how = "dcx";
        else if (ext == "sgi" || ext == "bw" || ext == "rgb" || ext == "rgba") way.how = "sgi";
        else way.how = ext == "raw" ? "devilraw" : "devil";
        return way;
    }
    if (row.via == LoadVia::FreeImageByContent) {
        way.how = "fi:-1";
        return way;
    }
    switch (row.format) {
    case FIF_BMP: way = {codec::DecodeBmp, "bmp"}; break;
    case FIF_JPEG: way = {codec::DecodeJpeg, "jpeg"}; break;
    case FIF_PNG: way = {codec::DecodePng, "png"}; break;
    case FIF_PPM: way = {codec::DecodePnm, "pnm"}; break;
    default: way.how = "fi:" + std::to_string(int(row.format)); break;
    }
    if (isolated) way.here = nullptr;
    return way;
}

ImageFileResult loadFailed() {
    return {false, kLoadErrorText};
}

ImageFileResult saveFailed() {
    return {false, kSaveErrorText};
}

} // namespace

ImageFileResult LoadedImage(Bits&& pixels, int bpp, int dpiX, int dpiY) {
    if (pixels.empty() || pixels.width() < 1 || pixels.height() < 1 ||
        pixels.width() > kMaxImageSide || pixels.height() > kMaxImageSide)
        return loadFailed();
    return {true, {}, std::move(pixels), int16_t(bpp), dpiX, dpiY};
}

bool IsReadableExtension(const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    return findLoadRow(ext) != nullptr || IsPictureExtension(ext);
}

ImageFileResult LoadImageFile(const std::string& path, const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    const LoadRow* row = findLoadRow(ext);
    if (!row) return loadFailed();
    const InputFile file(path);
    if (!file.ok() || !plausibleFile(file, ext)) return loadFailed();
    const Way way = wayFor(*row, ext);
    Bits pixels;
    codec::DecodeInfo info;
    const bool decoded = way.here ? DecodeHere(way.here, file, pixels, info)
                                  : DecodeInHelper(way.how, ext, file.fd(), pixels, info);
    if (!decoded) return loadFailed();
    return LoadedImage(std::move(pixels), info.bpp, info.dpiX, info.dpiY);
}

std::string ThumbnailRoute(const std::string& path, const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    // The open path's loaders, in the helper: the picture loader's raster formats through
    // the same readers (gif FreeImage's, dib the program's own), the metafile renderers,
    // and a JPEG through FreeImage, whose scaled decode skips most of a photo's work.
    if (ext == "gif") return "fi:" + std::to_string(int(FIF_GIF));
    if (ext == "dib") return "bmp";
    if (ext == "wmf" || ext == "emf") return ext;
    const LoadRow* row = findLoadRow(ext);
    if (!row) return {};
    const InputFile file(path);
    if (!file.ok() || !plausibleFile(file, ext)) return {};
    if (row->format == FIF_JPEG) return "fi:" + std::to_string(int(FIF_JPEG));
    return wayFor(*row, ext, true).how;
}

namespace {

const uint8_t* bitsRow(const void* context, int32_t y) {
    return static_cast<const Bits*>(context)->row(y);
}

unsigned DLL_CALLCONV fiWrite(void* buf, unsigned size, unsigned count, fi_handle h) {
    return unsigned(std::fwrite(buf, size, count, static_cast<FILE*>(h)));
}
unsigned DLL_CALLCONV fiRead(void* buf, unsigned size, unsigned count, fi_handle h) {
    return unsigned(std::fread(buf, size, count, static_cast<FILE*>(h)));
}
int DLL_CALLCONV fiSeek(fi_handle h, long offset, int origin) {
    return std::fseek(static_cast<FILE*>(h), offset, origin);
}
long DLL_CALLCONV fiTell(fi_handle h) {
    return std::ftell(static_cast<FILE*>(h));
}

// A FreeImage save into an open stream.
bool saveWithFreeImage(const Bits& picture, FREE_IMAGE_FORMAT fif, bool grey, int flags,
                       std::FILE* out) {
    FreeImageSession session;
    FIBITMAP* dib = BitsToDib(picture);
    if (!dib) return false;
    FIBITMAP* converted = grey ? FreeImage_ConvertTo8Bits(dib) : FreeImage_ConvertTo24Bits(dib);
    FreeImage_Unload(dib);
    if (!converted) return false;
    FreeImageIO io{fiRead, fiWrite, fiSeek, fiTell};
    // The PNM writer picks P5 for 8-bit grey and P6 for 24 bits from the bitmap itself.
    const bool saved = FreeImage_SaveToHandle(fif, converted, &io, out, flags) != FALSE;
    FreeImage_Unload(converted);
    return saved;
}

// Closes a stream that was written, true if every byte reached the file.
bool closeWritten(std::FILE* f, bool written) {
    if (!f) return false;
    const bool flushed = std::fflush(f) == 0 && !std::ferror(f);
    return std::fclose(f) == 0 && flushed && written;
}

} // namespace

ImageFileResult SaveImageFile(const Bits& picture, const std::string& path,
                              const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    if (picture.empty() || picture.width() < 1 || picture.height() < 1) return saveFailed();
    // gif is written by the web optimizer, with the Optimize Box's GIF settings.
    if (ext == "gif") {
        std::string error;
        return SaveGifFile(picture, path, error) ? ImageFileResult{true, {}} : saveFailed();
    }

    FREE_IMAGE_FORMAT fif = FIF_UNKNOWN;
    int devilType = 0;
    if (ext == "bmp")
        fif = FIF_BMP;
    else if (ext == "tif" || ext == "tiff")
        fif = FIF_TIFF;
    else if (ext == "pbm" || ext == "pgm")
        fif = FIF_PGM;
    else if (listHas("tga vda vst icb targa", ext))
        fif = FIF_TARGA;
    else if (ext == "psd")
        devilType = kIlPsd;
    else if (listHas("sgi bw rgb rgba", ext))
        devilType = kIlSgi;
    else if (ext == "raw")
        devilType = kIlRaw;
    else if (ext == "pcx")
        devilType = kIlPcx;
    else if (ext != "png" && ext != "jpg" && ext != "jpeg" && ext != "ppm")
        return saveFailed();

    // The file takes its name only once it is whole: a failed save leaves the old one.
    OutputFile out(path);
    if (!out.ok()) return saveFailed();
    const int w = picture.width(), h = picture.height();
    bool saved = false;
    if (devilType != 0) {
        // DevIL converts a BMP of the picture, handed over in memory.
        const int bmp = MemoryFile("ostrivex-save");
        std::FILE* f = bmp >= 0 ? fdopen(bmp, "w+b") : nullptr;
        if (f) {
            saved = saveWithFreeImage(picture, FIF_BMP, false, 0, f) && std::fflush(f) == 0 &&
                    RunHelper({"convert", "bmp", std::to_string(devilType)}, fileno(f), out.fd());
            std::fclose(f);
        } else if (bmp >= 0) {
            close(bmp);
        }
    } else {
        std::FILE* f = out.stream();
        bool written = false;
        if (f) {
            if (ext == "png")
                written = codec::EncodePng(f, w, h, bitsRow, &picture);
            else if (ext == "jpg" || ext == "jpeg")
                written = codec::EncodeJpeg(f, w, h, 100, bitsRow, &picture); // best quality
            else if (ext == "ppm")
                written = codec::EncodePpm(f, w, h, bitsRow, &picture);
            else
                written = saveWithFreeImage(picture, fif, fif == FIF_PGM, 0, f);
        }
        saved = closeWritten(f, written);
    }
    if (!saved || !out.commit()) return saveFailed();
    return {true, {}};
}

bool DevilConvert(const std::string& source, const std::string& target, int type) {
    if (type == kIlBmp && source == target) return true;
    // The target takes its name only once DevIL has written it whole, so a failed
    // conversion leaves the user's old file alone.
    const InputFile in(source);
    if (!in.ok()) return false;
    OutputFile out(target);
    return out.ok() &&
           RunHelper({"convert", ExtensionOf(source), std::to_string(type)}, in.fd(), out.fd()) &&
           out.commit();
}

std::string LowerExtension(const std::string& extension) {
    std::string e = extension;
    for (char& c : e)
        if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
    return e;
}

std::string ExtensionOf(const std::string& path) {
    const auto slash = path.rfind('/');
    const auto dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
    return LowerExtension(path.substr(dot + 1));
}

} // namespace ostrivex
