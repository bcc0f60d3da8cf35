// Loading and saving by extension through FreeImage and the DevIL helper.
#include "imagefile/imagefile.h"
#include "imagefile/fiimage.h"
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

bool fileReadable(const std::string& path) {
    return access(path.c_str(), R_OK) == 0;
}

// Two formats have no signature that their loaders check, so that any file decodes to
// noise; they are held to their fixed layouts first. A Koala picture is 10001 bytes of
// bitmap, screen and colour memory and background, plus a 2-byte load address in the
// usual 10003-byte file. A PhotoCD file says "PCD_IPI" at 0x800 and holds its 768 x 512
// base picture (1.5 bytes a pixel) from 0x30000 on.
bool plausibleFile(const std::string& path, const std::string& ext) {
    if (ext != "koa" && ext != "pcd") return true;
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return false;
    bool ok = false;
    if (std::fseek(f, 0, SEEK_END) == 0) {
        const long size = std::ftell(f);
        if (ext == "koa") {
            ok = size == 10001 || size == 10003;
        } else if (size >= 0x30000 + 768 * 512 * 3 / 2) {
            char mark[7] = {};
            ok = std::fseek(f, 0x800, SEEK_SET) == 0 && std::fread(mark, 1, 7, f) == 7 &&
                 std::memcmp(mark, "PCD_IPI", 7) == 0;
        }
    }
    std::fclose(f);
    return ok;
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

ImageFileResult LoadImageFile(const std::string& path, const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    const LoadRow* row = findLoadRow(ext);
    if (!row || !fileReadable(path)) return loadFailed();

    if (!plausibleFile(path, ext)) return loadFailed();

    // Every decode runs in the helper, which hands the pixels over as a BMP of fixed name;
    // an earlier one must never pass for this file's result.
    const std::string temp = TempLoadName();
    std::remove(temp.c_str());
    bool decoded = false;
    switch (row->via) {
    case LoadVia::Devil:
        decoded = RunHelper({ext == "raw" ? "loadraw" : "load", path, temp});
        break;
    case LoadVia::FreeImageType:
        decoded = RunHelper({"fi", std::to_string(int(row->format)), path, temp});
        break;
    case LoadVia::FreeImageByContent:
        decoded = RunHelper({"fi", "-1", path, temp});
        break;
    }
    if (!decoded) return loadFailed();
    FreeImageSession session;
    FIBITMAP* dib = FreeImage_Load(FIF_BMP, temp.c_str(), 0);
    if (!dib) return loadFailed();
    const int bpp = int(FreeImage_GetBPP(dib));
    const int dpiX = DotsPerInch(FreeImage_GetDotsPerMeterX(dib));
    const int dpiY = DotsPerInch(FreeImage_GetDotsPerMeterY(dib));
    Bits pixels;
    const bool converted = DibToBits(dib, pixels);
    FreeImage_Unload(dib);
    if (!converted) return loadFailed();
    return LoadedImage(std::move(pixels), bpp, dpiX, dpiY);
}

std::string ThumbnailRoute(const std::string& path, const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    // The picture loader's formats go to FreeImage's readers or the metafile renderers.
    if (ext == "gif") return "fi:" + std::to_string(int(FIF_GIF));
    if (ext == "dib") return "fi:" + std::to_string(int(FIF_BMP));
    if (ext == "wmf" || ext == "emf") return ext;
    const LoadRow* row = findLoadRow(ext);
    if (!row || !plausibleFile(path, ext)) return {};
    switch (row->via) {
    case LoadVia::Devil:
        return ext == "raw" ? "raw" : "devil";
    case LoadVia::FreeImageType:
        return "fi:" + std::to_string(int(row->format));
    case LoadVia::FreeImageByContent:
        return "fi:-1";
    }
    return {};
}

ImageFileResult SaveImageFile(const Bits& picture, const std::string& path,
                              const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    if (picture.empty() || picture.width() < 1 || picture.height() < 1) return saveFailed();
    // gif is written by the web optimizer, with the Optimize Box's GIF settings.
    if (ext == "gif") {
        std::string error;
        return SaveGifFile(picture, path, error) ? ImageFileResult{true, {}} : saveFailed();
    }

    enum class Convert { To24, To8 };
    FREE_IMAGE_FORMAT fif = FIF_UNKNOWN;
    int flags = 0;
    int devilType = 0;
    Convert convert = Convert::To24;
    if (ext == "png")
        fif = FIF_PNG;
    else if (ext == "jpg" || ext == "jpeg")
        fif = FIF_JPEG, flags = JPEG_QUALITYSUPERB;
    else if (ext == "bmp")
        fif = FIF_BMP;
    else if (ext == "tif" || ext == "tiff")
        fif = FIF_TIFF;
    else if (ext == "pbm" || ext == "pgm")
        fif = FIF_PGM, convert = Convert::To8;
    else if (ext == "ppm")
        fif = FIF_PPM;
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
    else
        return saveFailed();

    FreeImageSession session;
    FIBITMAP* dib = BitsToDib(picture);
    if (!dib) return saveFailed();
    if (convert == Convert::To8 ? FreeImage_GetBPP(dib) != 8 : FreeImage_GetBPP(dib) != 24) {
        FIBITMAP* other = convert == Convert::To8 ? FreeImage_ConvertTo8Bits(dib)
                                                  : FreeImage_ConvertTo24Bits(dib);
        FreeImage_Unload(dib);
        dib = other;
        if (!dib) return saveFailed();
    }
    bool saved = false;
    if (devilType == 0) {
        // The PNM writer picks P5 for 8-bit grey and P6 for 24 bits from the bitmap itself.
        saved = FreeImage_Save(fif, dib, path.c_str(), flags) != FALSE;
    } else {
        const std::string temp = TempBitmapName();
        // The work file stays: it holds the current picture, which is what the Optimize
        // box reads from the same name.
        saved = FreeImage_Save(FIF_BMP, dib, temp.c_str(), 0) != FALSE &&
                DevilConvert(temp, path, devilType);
    }
    FreeImage_Unload(dib);
    if (!saved) return saveFailed();
    return {true, {}};
}

bool DevilConvert(const std::string& source, const std::string& target, int type) {
    if (type == kIlBmp && source == target) return true;
    // An existing target is replaced by the helper only once its picture is loaded, so a
    // failed conversion leaves the user's old file alone.
    return RunHelper({"convert", source, target, std::to_string(type)}) && fileReadable(target);
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
