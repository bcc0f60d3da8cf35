// ostrivex-devil: the helper program that runs the fragile decoders (DevIL, libwmf,
// libemf2svg, and FreeImage, whose IFF loader spins for ever on a cut file) away from the
// editor. A crash, a hang (the parent kills it after its time
// limit) or any failure shows up as a non-zero exit and becomes a failed load or save.
//
//   ostrivex-devil load <source> <bmp>
//   ostrivex-devil loadraw <source> <bmp>
//   ostrivex-devil convert <source> <target> <IL type number>
//   ostrivex-devil wmf <source> <bmp>
//   ostrivex-devil emf <source> <svg>
//   ostrivex-devil fi <FreeImage format number, or -1 for the file's own> <source> <bmp>
//   ostrivex-devil serve      (thumbnails, on descriptor 3: see "Thumbnail server" below)
#include <IL/il.h>
#include <IL/ilu.h>
#include <IL/ilut.h>

#include <FreeImage.h>
#include <emf2svg.h>
#include <libwmf/api.h>
#include <libwmf/gd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

// A decoder that believes a hostile header may ask for any amount of memory.
constexpr rlim_t kMemoryLimit = rlim_t(3) << 30;

void limitResources() {
    rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    rlimit mem{kMemoryLimit, kMemoryLimit};
    setrlimit(RLIMIT_AS, &mem);
}

// Reads of the decoders go through these, which note a read that came back short: a
// file cut off before the end of the data its header promises. Several loaders would
// otherwise fill the missing rows with zeros and call the picture good.
bool shortRead = false;

ILHANDLE ILAPIENTRY ilOpen(ILconst_string name) {
    return std::fopen(name, "rb");
}
void ILAPIENTRY ilClose(ILHANDLE h) {
    std::fclose(static_cast<FILE*>(h));
}
ILboolean ILAPIENTRY ilEof(ILHANDLE h) {
    return std::feof(static_cast<FILE*>(h)) ? IL_TRUE : IL_FALSE;
}
ILint ILAPIENTRY ilGetc(ILHANDLE h) {
    return std::fgetc(static_cast<FILE*>(h));
}
ILint ILAPIENTRY ilRead(void* buf, ILuint size, ILuint count, ILHANDLE h) {
    const size_t n = std::fread(buf, size, count, static_cast<FILE*>(h));
    if (n < count) shortRead = true;
    return ILint(n);
}
ILint ILAPIENTRY ilSeek(ILHANDLE h, ILint offset, ILint origin) {
    return std::fseek(static_cast<FILE*>(h), offset, origin);
}
ILint ILAPIENTRY ilTell(ILHANDLE h) {
    return ILint(std::ftell(static_cast<FILE*>(h)));
}

// A read that found nothing left at all: a block reader wanted more than the file has.
bool emptyRead = false;

unsigned DLL_CALLCONV fiRead(void* buf, unsigned size, unsigned count, fi_handle h) {
    const size_t n = std::fread(buf, size, count, static_cast<FILE*>(h));
    if (n < count) shortRead = true;
    if (n == 0 && count > 0 && size > 0) emptyRead = true;
    return unsigned(n);
}
unsigned DLL_CALLCONV fiWrite(void*, unsigned, unsigned, fi_handle) {
    return 0;
}
int DLL_CALLCONV fiSeek(fi_handle h, long offset, int origin) {
    return std::fseek(static_cast<FILE*>(h), offset, origin);
}
long DLL_CALLCONV fiTell(fi_handle h) {
    return std::ftell(static_cast<FILE*>(h));
}

void startDevil() {
    ilInit();
    iluInit();
    // Pixels top row first whatever the file's own order, and saves may replace a file.
    ilEnable(IL_ORIGIN_SET);
    ilOriginFunc(IL_ORIGIN_UPPER_LEFT);
    ilEnable(IL_FILE_OVERWRITE);
    ilSetRead(ilOpen, ilClose, ilEof, ilGetc, ilRead, ilSeek, ilTell);
}

int devilLoad(const char* source, const char* bmp, bool raw) {
    startDevil();
    ILuint id = 0;
    ilGenImages(1, &id);
    ilBindImage(id);
    // The type comes from the extension alone: DevIL would otherwise guess it from the
    // contents when the extension has no loader, and load a png named .lmp.
    const ILenum type = raw ? ILenum(IL_RAW) : ilTypeFromExt(source);
    if (type == IL_TYPE_UNKNOWN) return 1;
    shortRead = false;
    ILboolean loaded = ilLoad(type, source);
    // The Pixar and SGI loaders take a cut file for a whole one; the others read ahead
    // past the end of good files too, and fail cut ones by themselves.
    const bool exactReader = type == IL_PXR || type == IL_SGI;
    if (loaded != IL_TRUE || (shortRead && exactReader)) return 1;
    if (ilGetInteger(IL_IMAGE_WIDTH) < 1 || ilGetInteger(IL_IMAGE_HEIGHT) < 1) return 1;
    ILboolean saved = ilSave(IL_BMP, bmp);
    ilDeleteImages(1, &id);
    return saved == IL_TRUE ? 0 : 1;
}

int devilConvert(const char* source, const char* target, const char* typeText) {
    char* end = nullptr;
    long type = std::strtol(typeText, &end, 0);
    if (!end || *end || type <= 0) return 2;
    startDevil();
    ilutInit();
    ILuint id = 0;
    ilGenImages(1, &id);
    ilBindImage(id);
    if (ilLoadImage(source) != IL_TRUE) return 1;
    // A raw file records no channel order and DevIL's raw loader reads red first, while a
    // picture loaded from a BMP is held blue first: put it in red-first order before.
    if (type == IL_RAW && ilConvertImage(IL_RGB, IL_UNSIGNED_BYTE) != IL_TRUE) return 1;
    ILboolean saved = ilSave(ILenum(type), target);
    ilDeleteImages(1, &id);
    return saved == IL_TRUE ? 0 : 1;
}

using Bytes = std::vector<unsigned char>;

unsigned rd16(const Bytes& b, size_t at) {
    return unsigned(b[at]) | unsigned(b[at + 1]) << 8;
}
unsigned rd32(const Bytes& b, size_t at) {
    return rd16(b, at) | rd16(b, at + 2) << 16;
}
void wr16(Bytes& b, size_t at, unsigned v) {
    b[at] = (unsigned char)(v & 0xFF);
    b[at + 1] = (unsigned char)((v >> 8) & 0xFF);
}
void put16(Bytes& b, unsigned v) {
    b.push_back((unsigned char)(v & 0xFF));
    b.push_back((unsigned char)((v >> 8) & 0xFF));
}
void putRecord(Bytes& b, unsigned function, std::initializer_list<unsigned> params) {
    const unsigned words = 3 + unsigned(params.size());
    put16(b, words);
    put16(b, 0);
    put16(b, function);
    for (unsigned p : params)
        put16(b, p);
}

// libwmf maps the picture onto a device box of its own units and draws the box it is
// given onto the output. To draw the placeable header's whole frame (the file's own size,
// margins included) rather than the bounds of what was drawn, the frame's device box is
// measured: a copy of the file with an invisible rectangle over the frame appended just
// before the end record is scanned. Empty if the file is not a placeable metafile or its
// records do not walk cleanly.
Bytes framedCopy(const Bytes& file) {
    constexpr size_t kPlaceable = 22, kHeader = 18;
    if (file.size() < kPlaceable + kHeader + 6 || rd32(file, 0) != 0x9AC6CDD7u) return {};
    const unsigned left = rd16(file, 6), top = rd16(file, 8);
    const unsigned right = rd16(file, 10), bottom = rd16(file, 12);
    const unsigned objects = rd16(file, kPlaceable + 10);
    std::vector<bool> used(objects + 1, false);
    size_t at = kPlaceable + kHeader;
    for (;;) {
        if (at + 6 > file.size()) return {};
        const size_t words = rd32(file, at);
        const unsigned function = rd16(file, at + 4);
        if (function == 0) break;
        if (words < 3 || at + words * 2 > file.size()) return {};
        switch (function) {
        case 0x2FA:
        case 0x2FB:
        case 0x2FC:
        case 0x142:
        case 0x0F7:
        case 0x6FF:
        case 0x1F9: {
            auto slot = std::find(used.begin(), used.end(), false);
            if (slot != used.end()) *slot = true;
            break;
        }
        case 0x1F0:
            if (words >= 4) {
                const unsigned index = rd16(file, at + 6);
                if (index < used.size()) used[index] = false;
            }
            break;
        default:
            break;
        }
        at += words * 2;
    }
    const unsigned pen = unsigned(std::find(used.begin(), used.end(), false) - used.begin());
    Bytes out(file.begin(), file.begin() + long(at));
    putRecord(out, 0x2FA, {5, 0, 0, 0, 0});            // CreatePenIndirect, PS_NULL
    putRecord(out, 0x12D, {pen});                      // SelectObject
    putRecord(out, 0x41B, {bottom, right, top, left}); // Rectangle
    out.insert(out.end(), file.begin() + long(at), file.end());
    wr16(out, kPlaceable + 10, std::max(objects, pen + 1));
    const size_t totalWords = (out.size() - kPlaceable) / 2;
    wr16(out, kPlaceable + 6, unsigned(totalWords & 0xFFFF));
    wr16(out, kPlaceable + 8, unsigned(totalWords >> 16));
    return out;
}

// libwmf looks for the PostScript standard fonts as Type 1 files, which this system may
// not have; every standard name is mapped to a TrueType file that is present instead (a
// metafile's text then draws in a stand-in face rather than failing the whole picture).
const char* standInFont() {
    static const char* const candidates[] = {
        "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
        "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf",
        "/usr/share/fonts/truetype/freefont/FreeSans.ttf",
        "/usr/share/fonts/type1/gsfonts/n019003l.pfb",
    };
    for (const char* c : candidates)
        if (FILE* f = std::fopen(c, "rb")) {
            std::fclose(f);
            return c;
        }
    return nullptr;
}

// A libwmf player on the raster device, with the stand-in fonts.
struct WmfPlayer {
    wmfAPI* api = nullptr;
    std::vector<wmfMapping> psMap;
    WmfPlayer() {
        wmfAPI_Options options;
        std::memset(&options, 0, sizeof options);
        options.function = wmf_gd_function;
        unsigned long flags = WMF_OPT_FUNCTION | WMF_OPT_IGNORE_NONFATAL;
        static const char* const psNames[] = {
            "Times-Roman", "Times-Italic",      "Times-Bold",     "Times-BoldItalic",
            "Helvetica",   "Helvetica-Oblique", "Helvetica-Bold", "Helvetica-BoldOblique",
            "Courier",     "Courier-Oblique",   "Courier-Bold",   "Courier-BoldOblique",
            "Symbol",      "ZapfDingbats"};
        if (const char* font = standInFont()) {
            for (const char* name : psNames)
                psMap.push_back(
                    {const_cast<char*>(name), const_cast<char*>(font), FT_ENCODING_NONE});
            psMap.push_back({nullptr, nullptr, FT_ENCODING_NONE});
            options.font.ps = psMap.data();
            flags |= WMF_OPT_FONTMAP;
        }
        if (wmf_api_create(&api, flags, &options) != wmf_E_None) api = nullptr;
    }
    ~WmfPlayer() {
        if (api) wmf_api_destroy(api);
    }
    bool scan(Bytes& bytes, wmfD_Rect& box) {
        return api && wmf_mem_open(api, bytes.data(), long(bytes.size())) == wmf_E_None &&
               wmf_scan(api, 0, &box) == wmf_E_None;
    }
};

bool readFile(const char* path, Bytes& out) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    out.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return true;
}

// WMF at 96 dots per inch through libwmf's raster device, composed on white.
int wmfRender(const char* source, const char* bmp) {
    Bytes file;
    if (!readFile(source, file) || file.size() < 18) return 1;
    wmfD_Rect frame;
    bool haveFrame = false;
    Bytes probe = framedCopy(file);
    if (!probe.empty()) {
        WmfPlayer measure;
        haveFrame = measure.scan(probe, frame);
    }
    WmfPlayer player;
    wmfD_Rect bbox;
    unsigned int width = 0, height = 0;
    if (!player.scan(file, bbox) ||
        wmf_display_size(player.api, &width, &height, 96, 96) != wmf_E_None || width < 1 ||
        height < 1 || width > 32767 || height > 32767)
        return 1;
    if (haveFrame) bbox = frame;
    wmf_gd_t* gd = WMF_GD_GetData(player.api);
    gd->type = wmf_gd_image;
    gd->bbox = bbox;
    gd->width = width;
    gd->height = height;
    if (wmf_play(player.api, 0, &bbox) != wmf_E_None || !gd->gd_image) return 1;
    const int* px = wmf_gd_image_pixels(gd->gd_image);
    if (!px) return 1;
    int rc = 1;
    FreeImage_Initialise(FALSE);
    if (FIBITMAP* dib = FreeImage_Allocate(int(width), int(height), 24)) {
        for (unsigned y = 0; y < height; ++y) {
            BYTE* dst = FreeImage_GetScanLine(dib, int(height - 1 - y));
            for (unsigned x = 0; x < width; ++x, dst += 3) {
                // gd true colour: 7-bit alpha (0 opaque .. 127 clear), then red, green, blue.
                const unsigned v = unsigned(px[size_t(y) * width + x]);
                const unsigned a = 127 - ((v >> 24) & 0x7F);
                auto over = [a](unsigned c) { return BYTE((c * a + 255 * (127 - a) + 63) / 127); };
                dst[FI_RGBA_RED] = over((v >> 16) & 0xFF);
                dst[FI_RGBA_GREEN] = over((v >> 8) & 0xFF);
                dst[FI_RGBA_BLUE] = over(v & 0xFF);
            }
        }
        if (FreeImage_Save(FIF_BMP, dib, bmp, 0)) rc = 0;
        FreeImage_Unload(dib);
    }
    FreeImage_DeInitialise();
    return rc;
}

int emfConvert(const char* source, const char* svg) {
    Bytes bytes;
    if (!readFile(source, bytes) || bytes.size() < 88) return 1; // no room for a header
    generatorOptions options;
    std::memset(&options, 0, sizeof options);
    options.nameSpace = const_cast<char*>("svg");
    options.svgDelimiter = true;
    options.emfplus = true;
    char* out = nullptr;
    size_t outLength = 0;
    int ok =
        emf2svg(reinterpret_cast<char*>(bytes.data()), bytes.size(), &out, &outLength, &options);
    int rc = 1;
    if (ok && out && outLength > 0) {
        if (FILE* f = std::fopen(svg, "wb")) {
            if (std::fwrite(out, 1, outLength, f) == outLength) rc = 0;
            if (std::fclose(f) != 0) rc = 1;
        }
    }
    std::free(out);
    return rc;
}

// FreeImage load by format, saved as a BMP at the picture's own depth, so the editor
// reads the depth the library reported from the BMP. Pictures of other sample types
// (16-bit grey, 48-bit colour, float) are brought to 24 bits first.
// The FreeImage decode of `source` as format `fif` (the file's own for FIF_UNKNOWN) with
// the loader's `flags`; null for a failed or cut-off file. FreeImage must be initialised.
FIBITMAP* freeImageDecode(FREE_IMAGE_FORMAT fif, const char* source, int flags) {
    if (fif == FIF_UNKNOWN) fif = FreeImage_GetFileType(source, 0);
    FreeImageIO io{fiRead, fiWrite, fiSeek, fiTell};
    FILE* file = std::fopen(source, "rb");
    shortRead = emptyRead = false;
    FIBITMAP* dib =
        fif == FIF_UNKNOWN || !file ? nullptr : FreeImage_LoadFromHandle(fif, &io, file, flags);
    if (file) std::fclose(file);
    // The JPEG family and PCX read ahead in whole blocks and so end on a short read in any
    // file; libjpeg, libpng and libtiff tell a cut file by themselves, the PCX reader does
    // not: for it a read that finds nothing left is the sign.
    const bool blockReader = fif == FIF_JPEG || fif == FIF_JNG || fif == FIF_MNG ||
                             fif == FIF_PNG || fif == FIF_TIFF || fif == FIF_PCX;
    const bool cut = blockReader ? (fif == FIF_PCX && emptyRead) : shortRead;
    if (dib && cut) {
        FreeImage_Unload(dib);
        dib = nullptr;
    }
    return dib;
}

int freeImageLoad(const char* formatText, const char* source, const char* bmp) {
    char* end = nullptr;
    const long number = std::strtol(formatText, &end, 10);
    if (!end || *end) return 2;
    FreeImage_Initialise(FALSE);
    int rc = 1;
    FIBITMAP* dib =
        freeImageDecode(number < 0 ? FIF_UNKNOWN : FREE_IMAGE_FORMAT(number), source, 0);
    if (dib && FreeImage_HasPixels(dib)) {
        if (FreeImage_GetImageType(dib) != FIT_BITMAP) {
            FIBITMAP* rgb = FreeImage_ConvertTo24Bits(dib);
            FreeImage_Unload(dib);
            dib = rgb;
        }
        if (dib && FreeImage_GetWidth(dib) >= 1 && FreeImage_GetHeight(dib) >= 1 &&
            FreeImage_GetWidth(dib) <= 32767 && FreeImage_GetHeight(dib) <= 32767 &&
            FreeImage_Save(FIF_BMP, dib, bmp, 0))
            rc = 0;
    }
    if (dib) FreeImage_Unload(dib);
    FreeImage_DeInitialise();
    return rc;
}

// --- Thumbnail server ------------------------------------------------------------------
// `serve` keeps one helper running for the Browser Box's thumbnails, so that a folder of
// photos does not pay for starting the program and its libraries (some 30 ms) per file.
// Requests come on descriptor 3, a socket from the editor, and answers go back on it:
//   request: "thumb" NUL route NUL source NUL target NUL largest side NUL
//   answer:  "ok <width> <height>\n" (the picture's own size) or "fail\n"
// Routes: "fi:<FreeImage format number>" (-1: the file's own), "devil", "raw", "wmf" and
// "emf". The thumbnail is written to target as a 24-bit BMP whose larger side is at most
// the largest side (a smaller picture keeps its size); "emf" writes the SVG conversion
// instead, which the editor draws, and answers with a size of 0 x 0. The helper ends when
// the socket closes; after a failure the editor starts a fresh one.

constexpr int kServeFd = 3;

// One request's fields, read from the socket; false at its end or on a malformed request.
bool readRequest(std::vector<std::string>& fields) {
    static std::string pending;
    fields.clear();
    for (;;) {
        size_t start = 0;
        for (size_t nul; fields.size() < 5 && (nul = pending.find('\0', start)) != std::string::npos;
             start = nul + 1)
            fields.push_back(pending.substr(start, nul - start));
        pending.erase(0, start);
        if (fields.size() == 5) return true;
        if (pending.size() > 65536) return false;
        char buf[4096];
        const ssize_t n = read(kServeFd, buf, sizeof buf);
        if (n <= 0) return false;
        pending.append(buf, size_t(n));
    }
}

void answer(const std::string& text) {
    const char* p = text.data();
    size_t left = text.size();
    while (left > 0) {
        const ssize_t n = write(kServeFd, p, left);
        if (n <= 0) std::exit(1);
        p += n;
        left -= size_t(n);
    }
}

// The size a JPEG was stored at, which a scaled decode records among its comments.
unsigned jpegOriginalSide(FIBITMAP* dib, const char* key, unsigned fallback) {
    FITAG* tag = nullptr;
    if (!FreeImage_GetMetadata(FIMD_COMMENTS, dib, key, &tag) || !tag) return fallback;
    const char* text = static_cast<const char*>(FreeImage_GetTagValue(tag));
    const unsigned long v = text ? std::strtoul(text, nullptr, 10) : 0;
    return v > 0 && v <= 0x7FFFFFFF ? unsigned(v) : fallback;
}

// A full decode through a BMP work file (the DevIL and metafile routes), read back.
FIBITMAP* decodeThroughBmp(const std::string& route, const char* source, const std::string& work) {
    int rc = 1;
    if (route == "devil" || route == "raw")
        rc = devilLoad(source, work.c_str(), route == "raw");
    else if (route == "wmf")
        rc = wmfRender(source, work.c_str());
    FIBITMAP* dib = rc == 0 ? FreeImage_Load(FIF_BMP, work.c_str(), 0) : nullptr;
    std::remove(work.c_str());
    return dib;
}

bool thumbnail(const std::vector<std::string>& f, unsigned& width, unsigned& height) {
    const std::string& route = f[1];
    const char* source = f[2].c_str();
    const char* target = f[3].c_str();
    const long side = std::strtol(f[4].c_str(), nullptr, 10);
    if (f[0] != "thumb" || side < 1 || side > 4096) return false;
    if (route == "emf") {
        width = height = 0;
        return emfConvert(source, target) == 0;
    }
    FIBITMAP* dib = nullptr;
    if (route.rfind("fi:", 0) == 0) {
        const FREE_IMAGE_FORMAT fif = FREE_IMAGE_FORMAT(std::strtol(route.c_str() + 3, nullptr, 10));
        // libjpeg decodes at an eighth, a quarter or half of the size when that is still
        // at least the side asked for: most of a photo's decoding time saved.
        dib = freeImageDecode(fif, source, fif == FIF_JPEG ? int(side << 16) : 0);
    } else {
        dib = decodeThroughBmp(route, source, std::string(target) + ".full");
    }
    if (!dib || !FreeImage_HasPixels(dib) || FreeImage_GetWidth(dib) < 1 ||
        FreeImage_GetHeight(dib) < 1) {
        if (dib) FreeImage_Unload(dib);
        return false;
    }
    width = jpegOriginalSide(dib, "OriginalJPEGWidth", FreeImage_GetWidth(dib));
    height = jpegOriginalSide(dib, "OriginalJPEGHeight", FreeImage_GetHeight(dib));
    FIBITMAP* small = FreeImage_MakeThumbnail(dib, int(side), TRUE);
    FreeImage_Unload(dib);
    FIBITMAP* rgb = small ? FreeImage_ConvertTo24Bits(small) : nullptr;
    if (small) FreeImage_Unload(small);
    const bool saved = rgb && FreeImage_Save(FIF_BMP, rgb, target, 0);
    if (rgb) FreeImage_Unload(rgb);
    return saved;
}

int serve() {
    // Thumbnails are background work: the editor's own drawing goes first.
    setpriority(PRIO_PROCESS, 0, 10);
    FreeImage_Initialise(FALSE);
    std::vector<std::string> fields;
    while (readRequest(fields)) {
        unsigned width = 0, height = 0;
        if (thumbnail(fields, width, height))
            answer("ok " + std::to_string(width) + " " + std::to_string(height) + "\n");
        else
            answer("fail\n");
    }
    FreeImage_DeInitialise();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    limitResources();
    if (argc < 2) return 2;
    const std::string command = argv[1];
    if (command == "load" && argc == 4) return devilLoad(argv[2], argv[3], false);
    if (command == "loadraw" && argc == 4) return devilLoad(argv[2], argv[3], true);
    if (command == "convert" && argc == 5) return devilConvert(argv[2], argv[3], argv[4]);
    if (command == "wmf" && argc == 4) return wmfRender(argv[2], argv[3]);
    if (command == "emf" && argc == 4) return emfConvert(argv[2], argv[3]);
    if (command == "fi" && argc == 5) return freeImageLoad(argv[2], argv[3], argv[4]);
    if (command == "serve" && argc == 2) return serve();
    return 2;
}
