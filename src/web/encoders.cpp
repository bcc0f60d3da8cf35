#include "web/encoders.h"

#include <FreeImage.h>
#include <gif_lib.h>
#include <png.h>

#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>

namespace ostrivex {

namespace {

// --- GIF ---------------------------------------------------------------------------------

int gifWrite(GifFileType* gif, const GifByteType* data, int length) {
    auto* out = static_cast<std::vector<uint8_t>*>(gif->UserData);
    out->insert(out->end(), data, data + length);
    return length;
}

// --- PNG ---------------------------------------------------------------------------------

void pngWrite(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}
void pngFlush(png_structp) {}
[[noreturn]] void pngError(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void pngWarning(png_structp, png_const_charp) {}

// Bytes of one row of `bits`-deep indices, packed high bit first.
void packRow(const uint8_t* indices, int32_t w, int bits, uint8_t* out) {
    if (bits == 8) {
        std::memcpy(out, indices, size_t(w));
        return;
    }
    const int perByte = 8 / bits;
    const size_t bytes = (size_t(w) * size_t(bits) + 7) / 8;
    std::memset(out, 0, bytes);
    for (int32_t x = 0; x < w; ++x)
        out[x / perByte] |= uint8_t(indices[x] << (8 - bits * (x % perByte + 1)));
}

// --- FreeImage ---------------------------------------------------------------------------

// FreeImage's PNG_Z_DEFAULT_COMPRESSION (zlib level 6). libpng's headers define a macro of
// the same name as -1, which as FreeImage flags would ask for every option at once.
constexpr int kFreeImagePngLevel6 = 0x0006;

void quietOutput(FREE_IMAGE_FORMAT, const char*) {}

// FreeImage's messages and libtiff's warnings would go to stderr; failures are reported
// with our own words instead. Done once, after FreeImage has set up its plugins.
void quietLibraries() {
    static std::once_flag once;
    std::call_once(once, [] {
        FreeImage_SetOutputMessage(quietOutput);
        TIFFSetWarningHandler(nullptr);
        TIFFSetErrorHandler(nullptr);
    });
}

struct Dib {
    FIBITMAP* p = nullptr;
    explicit Dib(FIBITMAP* d) : p(d) {}
    ~Dib() {
        if (p) FreeImage_Unload(p);
    }
    Dib(const Dib&) = delete;
    Dib& operator=(const Dib&) = delete;
};

bool saveToMemory(FREE_IMAGE_FORMAT fif, FIBITMAP* dib, int flags, std::vector<uint8_t>& out) {
    quietLibraries();
    FIMEMORY* mem = FreeImage_OpenMemory();
    if (!mem) return false;
    bool ok = FreeImage_SaveToMemory(fif, dib, mem, flags) != FALSE;
    BYTE* data = nullptr;
    DWORD size = 0;
    if (ok && FreeImage_AcquireMemory(mem, &data, &size) && data && size > 0)
        out.assign(data, data + size);
    else
        ok = false;
    FreeImage_CloseMemory(mem);
    return ok;
}

// A 24-bit (or, for the native bitmap, 32-bit) FreeImage bitmap of the picture.
FIBITMAP* toDib(const Bits& picture, int bpp) {
    const int32_t w = picture.width(), h = picture.height();
    FIBITMAP* dib = bpp == 32 ? FreeImage_Allocate(w, h, 32, FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK,
                                                   FI_RGBA_BLUE_MASK)
                              : FreeImage_Allocate(w, h, 24, FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK,
                                                   FI_RGBA_BLUE_MASK);
    if (!dib) return nullptr;
    const int step = bpp / 8;
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* s = picture.row(y);
        BYTE* d = FreeImage_GetScanLine(dib, h - 1 - y);
        for (int32_t x = 0; x < w; ++x, s += 4, d += step) {
            d[FI_RGBA_BLUE] = s[0];
            d[FI_RGBA_GREEN] = s[1];
            d[FI_RGBA_RED] = s[2];
            if (step == 4) d[FI_RGBA_ALPHA] = 0;
        }
    }
    return dib;
}

bool sizeError(std::string& error, const char* format, int32_t limit) {
    error = std::string(format) + " pictures are at most " + std::to_string(limit) +
            " pixels wide and high";
    return false;
}

} // namespace

bool EncodeGif(IndexedPicture& picture, int bits, bool interlaced, std::vector<uint8_t>& out,
               std::string& error) {
    const int32_t w = picture.width, h = picture.height;
    if (w < 1 || h < 1) {
        error = "the picture is empty";
        return false;
    }
    if (w > 65535 || h > 65535) return sizeError(error, "GIF", 65535);
    bits = std::clamp(bits, 1, 8);
    out.clear();
    out.reserve(size_t(w) * size_t(h) / 2 + 1024);

    std::vector<GifColorType> colours(size_t(1) << bits, GifColorType{0, 0, 0});
    for (size_t i = 0; i < picture.palette.size() && i < colours.size(); ++i)
        colours[i] = {picture.palette[i].r, picture.palette[i].g, picture.palette[i].b};
    ColorMapObject* map = GifMakeMapObject(1 << bits, colours.data());
    if (!map) {
        error = "out of memory";
        return false;
    }
    int code = 0;
    GifFileType* gif = EGifOpen(&out, gifWrite, &code);
    if (!gif) {
        GifFreeMapObject(map);
        error = "the GIF writer could not start";
        return false;
    }
    bool ok = EGifPutScreenDesc(gif, w, h, bits, 0, map) == GIF_OK &&
              EGifPutImageDesc(gif, 0, 0, w, h, interlaced, nullptr) == GIF_OK;
    // An interlaced picture is sent in its four passes: every 8th row from 0, every 8th
    // from 4, every 4th from 2, every 2nd from 1.
    static constexpr int kStart[4] = {0, 4, 2, 1}, kStep[4] = {8, 8, 4, 2};
    const int passes = interlaced ? 4 : 1;
    for (int pass = 0; ok && pass < passes; ++pass) {
        const int start = interlaced ? kStart[pass] : 0, step = interlaced ? kStep[pass] : 1;
        for (int32_t y = start; ok && y < h; y += step)
            ok = EGifPutLine(gif, picture.indices.data() + size_t(y) * size_t(w), w) == GIF_OK;
    }
    if (EGifCloseFile(gif, &code) != GIF_OK) ok = false;
    GifFreeMapObject(map);
    if (!ok) error = "the GIF writer failed";
    return ok;
}

namespace {

// libpng reports errors by a long jump, so the frame that sets the jump point holds
// nothing with a destructor.
struct PngJob {
    const IndexedPicture* picture;
    int bits;
    int entries;
    uint8_t* row;
    std::vector<uint8_t>* out;
};

bool writePng(const PngJob* job) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, pngError, pngWarning);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    const IndexedPicture& p = *job->picture;
    png_set_write_fn(png, job->out, pngWrite, pngFlush);
    png_set_IHDR(png, info, png_uint_32(p.width), png_uint_32(p.height), job->bits,
                 PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_color plte[256];
    for (int i = 0; i < job->entries; ++i)
        plte[i] = {p.palette[size_t(i)].r, p.palette[size_t(i)].g, p.palette[size_t(i)].b};
    png_set_PLTE(png, info, plte, job->entries);
    png_set_compression_level(png, 6);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_write_info(png, info);
    for (int32_t y = 0; y < p.height; ++y) {
        packRow(p.indices.data() + size_t(y) * size_t(p.width), p.width, job->bits, job->row);
        png_write_row(png, job->row);
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

bool EncodePng8(const IndexedPicture& picture, std::vector<uint8_t>& out, std::string& error) {
    const int32_t w = picture.width, h = picture.height;
    if (w < 1 || h < 1 || picture.palette.empty()) {
        error = "the picture is empty";
        return false;
    }
    const int n = int(std::min<size_t>(picture.palette.size(), 256));
    const int bits = n <= 2 ? 1 : n <= 4 ? 2 : n <= 16 ? 4 : 8;
    out.clear();
    std::vector<uint8_t> row((size_t(w) * size_t(bits) + 7) / 8);
    const PngJob job{&picture, bits, n, row.data(), &out};
    if (!writePng(&job)) {
        out.clear();
        error = "the PNG writer failed";
        return false;
    }
    return true;
}

bool EncodeIndexedBmp(const IndexedPicture& picture, int bits, std::vector<uint8_t>& out,
                      std::string& error) {
    const int32_t w = picture.width, h = picture.height;
    bits = bits <= 1 ? 1 : bits <= 4 ? 4 : 8;
    Dib dib(FreeImage_Allocate(w, h, bits));
    if (!dib.p) {
        error = "out of memory";
        return false;
    }
    RGBQUAD* pal = FreeImage_GetPalette(dib.p);
    for (int i = 0; i < (1 << bits); ++i) {
        const PaletteColour c = size_t(i) < picture.palette.size() ? picture.palette[size_t(i)] : PaletteColour{};
        pal[i] = {c.b, c.g, c.r, 0};
    }
    for (int32_t y = 0; y < h; ++y)
        packRow(picture.indices.data() + size_t(y) * size_t(w), w, bits,
                FreeImage_GetScanLine(dib.p, h - 1 - y));
    if (!saveToMemory(FIF_BMP, dib.p, 0, out)) {
        error = "the BMP writer failed";
        return false;
    }
    return true;
}

bool EncodeTrueColour(const Bits& picture, const OptimizeSettings& s, std::vector<uint8_t>& out,
                      std::string& error) {
    const int32_t w = picture.width(), h = picture.height();
    if (w < 1 || h < 1) {
        error = "the picture is empty";
        return false;
    }
    if (s.Format == WebFormat::Jpeg && (w > 65500 || h > 65500)) return sizeError(error, "JPEG", 65500);
    Dib dib(toDib(picture, s.Format == WebFormat::Native ? 32 : 24));
    if (!dib.p) {
        error = "out of memory";
        return false;
    }
    FREE_IMAGE_FORMAT fif = FIF_PNG;
    int flags = 0;
    FIBITMAP* save = dib.p;
    Dib converted(nullptr);
    switch (s.Format) {
    case WebFormat::Png24: fif = FIF_PNG, flags = kFreeImagePngLevel6; break;
    case WebFormat::Jpeg: fif = FIF_JPEG, flags = JpegSaveFlags(s); break;
    case WebFormat::Tga: fif = FIF_TARGA, flags = s.RleTarga ? TARGA_SAVE_RLE : 0; break;
    case WebFormat::Tiff: fif = FIF_TIFF, flags = TIFF_NONE; break;
    case WebFormat::Native: fif = FIF_BMP; break;
    case WebFormat::Bmp:
        fif = FIF_BMP;
        if (s.BitsPerPixel == 16) {
            converted.p = FreeImage_ConvertTo16Bits555(dib.p);
            if (!converted.p) {
                error = "out of memory";
                return false;
            }
            save = converted.p;
        }
        break;
    default:
        error = "not a true-colour format";
        return false;
    }
    if (!saveToMemory(fif, save, flags, out)) {
        error = "the " + GetOptimizedFileExtension(s) + " writer failed";
        return false;
    }
    return true;
}

bool DecodePicture(const std::vector<uint8_t>& bytes, Bits& out) {
    if (bytes.empty()) return false;
    quietLibraries();
    FIMEMORY* mem = FreeImage_OpenMemory(const_cast<BYTE*>(bytes.data()), DWORD(bytes.size()));
    if (!mem) return false;
    FREE_IMAGE_FORMAT fif = FreeImage_GetFileTypeFromMemory(mem, 0);
    // Targa has no signature at its start.
    if (fif == FIF_UNKNOWN) fif = FIF_TARGA;
    Dib dib(FreeImage_LoadFromMemory(fif, mem, 0));
    FreeImage_CloseMemory(mem);
    if (!dib.p) return false;
    Dib rgb(FreeImage_ConvertTo24Bits(dib.p));
    if (!rgb.p) return false;
    const int32_t w = int32_t(FreeImage_GetWidth(rgb.p)), h = int32_t(FreeImage_GetHeight(rgb.p));
    try {
        out = Bits::forOverwrite(w, h);
    } catch (const std::bad_alloc&) {
        return false;
    }
    out.zeroGuard();
    for (int32_t y = 0; y < h; ++y) {
        const BYTE* s = FreeImage_GetScanLine(rgb.p, h - 1 - y);
        uint8_t* d = out.row(y);
        for (int32_t x = 0; x < w; ++x, s += 3, d += 4) {
            d[0] = s[FI_RGBA_BLUE];
            d[1] = s[FI_RGBA_GREEN];
            d[2] = s[FI_RGBA_RED];
            d[3] = 0;
        }
    }
    return true;
}

} // namespace ostrivex
