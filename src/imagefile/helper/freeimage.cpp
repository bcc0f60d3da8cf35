// FreeImage in the helper: the picture's size is read from its header first (FreeImage's
// header-only load, or a look at the header here for the formats it cannot do that for),
// then the picture is loaded and written into the answer.
#include "imagefile/helper/helper.h"

#include <FreeImage.h>

#include <cstring>
#include <unistd.h>
#include <vector>

namespace ostrivex::helper {

namespace {

// Reads note a read that came back short (a file cut off before the end of the data its
// header promises) and one that found nothing left at all.
bool shortRead = false;
bool emptyRead = false;
int emptyReads = 0;
long fileSize = 0;

unsigned DLL_CALLCONV fiRead(void* buf, unsigned size, unsigned count, fi_handle h) {
    const size_t n = std::fread(buf, size, count, static_cast<FILE*>(h));
    if (n < count) shortRead = true;
    if (n == 0 && count > 0 && size > 0) {
        emptyRead = true;
        // A loader that keeps reading past the end is going round in circles (the IFF
        // loader does on a damaged chunk size, stepping on by it for ever): give up now
        // rather than at the time limit.
        if (++emptyReads > 16) _exit(1);
    }
    return unsigned(n);
}
unsigned DLL_CALLCONV fiWrite(void*, unsigned, unsigned, fi_handle) {
    return 0;
}
int DLL_CALLCONV fiSeek(fi_handle h, long offset, int origin) {
    FILE* f = static_cast<FILE*>(h);
    // No loader needs to go past the end of its file; one that does was sent there by a
    // damaged size, and goes on allocating and skipping by it.
    const long from = origin == SEEK_SET ? 0 : origin == SEEK_END ? fileSize : std::ftell(f);
    if (from + offset > fileSize || from + offset < 0) _exit(1);
    return std::fseek(f, offset, origin);
}
long DLL_CALLCONV fiTell(fi_handle h) {
    return std::ftell(static_cast<FILE*>(h));
}

uint32_t be16(const uint8_t* p) {
    return uint32_t(p[0]) << 8 | p[1];
}
uint32_t be32(const uint8_t* p) {
    return be16(p) << 16 | be16(p + 2);
}

// The picture size of the formats whose FreeImage loaders cannot stop after the header.
// False when the header is not found.
bool peekSize(std::FILE* in, FREE_IMAGE_FORMAT fif, int64_t& w, int64_t& h) {
    std::rewind(in);
    uint8_t b[16];
    switch (fif) {
    case FIF_KOALA: // a fixed screen
        w = 320, h = 200;
        return true;
    case FIF_GIF: // the logical screen
        if (std::fread(b, 1, 10, in) != 10 || b[0] != 'G' || b[1] != 'I' || b[2] != 'F')
            return false;
        w = b[6] | b[7] << 8, h = b[8] | b[9] << 8;
        return true;
    case FIF_LBM: { // also FIF_IFF
        // FORM <size> ILBM|PBM , then chunks; BMHD starts with width and height.
        if (std::fread(b, 1, 12, in) != 12 || std::memcmp(b, "FORM", 4) != 0) return false;
        for (int chunk = 0; chunk < 64; ++chunk) {
            if (std::fread(b, 1, 8, in) != 8) return false;
            const uint32_t size = be32(b + 4);
            if (std::memcmp(b, "BMHD", 4) == 0) {
                if (size < 4 || std::fread(b, 1, 4, in) != 4) return false;
                w = be16(b), h = be16(b + 2);
                return true;
            }
            if (std::fseek(in, long(size + (size & 1)), SEEK_CUR) != 0) return false;
        }
        return false;
    }
    case FIF_WBMP: {
        // Type 0, a header byte, then width and height as seven-bit groups, highest first.
        if (std::fread(b, 1, 2, in) != 2 || b[0] != 0) return false;
        int64_t v[2] = {0, 0};
        for (int64_t& value : v) {
            for (int i = 0;; ++i) {
                const int c = std::fgetc(in);
                if (c == EOF || i > 4) return false;
                value = value << 7 | (c & 0x7F);
                if (!(c & 0x80)) break;
            }
        }
        w = v[0], h = v[1];
        return true;
    }
    case FIF_MNG:
    case FIF_JNG: {
        // The first picture's own header (IHDR or JHDR) gives the size FreeImage loads.
        if (std::fread(b, 1, 8, in) != 8) return false;
        for (int chunk = 0; chunk < 256; ++chunk) {
            if (std::fread(b, 1, 16, in) != 16) return false;
            if (std::memcmp(b + 4, "IHDR", 4) == 0 || std::memcmp(b + 4, "JHDR", 4) == 0) {
                w = be32(b + 8), h = be32(b + 12);
                return true;
            }
            if (std::fseek(in, long(be32(b)) + 4 - 8, SEEK_CUR) != 0) return false;
        }
        return false;
    }
    default: return false;
    }
}

bool sizeFromHeader(std::FILE* in, FREE_IMAGE_FORMAT fif, FreeImageIO& io, int64_t& w,
                    int64_t& h) {
    if (FreeImage_FIFSupportsNoPixels(fif)) {
        std::rewind(in);
        FIBITMAP* header = FreeImage_LoadFromHandle(fif, &io, in, FIF_LOAD_NOPIXELS);
        if (!header) return false;
        w = FreeImage_GetWidth(header), h = FreeImage_GetHeight(header);
        FreeImage_Unload(header);
        return true;
    }
    return peekSize(in, fif, w, h);
}

// The loaders of the JPEG family, PNG, TIFF, PCX and the RLE Targa read ahead in blocks
// and so end on a short read in a good file; they tell a cut file by themselves, or (PCX,
// Targa) by a read that finds nothing left. The others read just what they need, so any
// short read means the file was cut.
bool readsAhead(FREE_IMAGE_FORMAT fif) {
    return fif == FIF_JPEG || fif == FIF_JNG || fif == FIF_MNG || fif == FIF_PNG ||
           fif == FIF_TIFF || fif == FIF_PCX || fif == FIF_TARGA;
}

void quiet(FREE_IMAGE_FORMAT, const char*) {}

} // namespace

// Writes a loaded bitmap of any type into a sink. 16-bit samples are brought to 8 bits as
// Scale16 does (FreeImage's own conversion cuts them differently), alpha is dropped.
bool WriteDib(FIBITMAP* dib, codec::PixelSink& sink, codec::DecodeInfo& info) {
    const FREE_IMAGE_TYPE type = FreeImage_GetImageType(dib);
    const int w = int(FreeImage_GetWidth(dib)), h = int(FreeImage_GetHeight(dib));
    info.bpp = int(FreeImage_GetBPP(dib));
    info.dpiX = int(FreeImage_GetDotsPerMeterX(dib) * 0.0254 + 0.5);
    info.dpiY = int(FreeImage_GetDotsPerMeterY(dib) * 0.0254 + 0.5);
    const bool sixteen = type == FIT_UINT16 || type == FIT_RGB16 || type == FIT_RGBA16;
    FIBITMAP* rgb = nullptr;
    if (type == FIT_BITMAP) {
        rgb = FreeImage_GetBPP(dib) == 24 ? dib : FreeImage_ConvertTo24Bits(dib);
    } else if (!sixteen) {
        // Other sample types (float, 32-bit) through FreeImage's own scaling.
        rgb = FreeImage_ConvertToType(dib, FIT_BITMAP, TRUE);
        if (rgb && FreeImage_GetBPP(rgb) != 24) {
            FIBITMAP* again = FreeImage_ConvertTo24Bits(rgb);
            FreeImage_Unload(rgb);
            rgb = again;
        }
    }
    if (!sixteen && !rgb) return false;
    bool ok = sink.begin(w, h);
    // FreeImage's rows run bottom-up.
    for (int y = 0; ok && y < h; ++y) {
        uint8_t* d = sink.row(y);
        if (rgb) {
            const BYTE* s = FreeImage_GetScanLine(rgb, h - 1 - y);
            for (int x = 0; x < w; ++x, s += 3, d += 4) {
                d[0] = s[FI_RGBA_BLUE];
                d[1] = s[FI_RGBA_GREEN];
                d[2] = s[FI_RGBA_RED];
                d[3] = 0;
            }
        } else if (type == FIT_UINT16) {
            const auto* s = reinterpret_cast<const uint16_t*>(FreeImage_GetScanLine(dib, h - 1 - y));
            for (int x = 0; x < w; ++x, d += 4) {
                d[0] = d[1] = d[2] = codec::Scale16(s[x]);
                d[3] = 0;
            }
        } else {
            const int step = type == FIT_RGB16 ? 3 : 4;
            const auto* s = reinterpret_cast<const uint16_t*>(FreeImage_GetScanLine(dib, h - 1 - y));
            for (int x = 0; x < w; ++x, s += step, d += 4) {
                // FIRGB16 and FIRGBA16 hold red first.
                d[0] = codec::Scale16(s[2]);
                d[1] = codec::Scale16(s[1]);
                d[2] = codec::Scale16(s[0]);
                d[3] = 0;
            }
        }
    }
    if (rgb && rgb != dib) FreeImage_Unload(rgb);
    return ok;
}

FIBITMAP* LoadWithFreeImage(std::FILE* in, int format, int flags, const codec::SizeLimits& limits) {
    FreeImage_SetOutputMessage(quiet);
    fileSize = long(limits.fileBytes);
    emptyReads = 0;
    FREE_IMAGE_FORMAT fif = FREE_IMAGE_FORMAT(format);
    FreeImageIO io{fiRead, fiWrite, fiSeek, fiTell};
    if (fif == FIF_UNKNOWN) {
        std::rewind(in);
        fif = FreeImage_GetFileTypeFromHandle(&io, in, 0);
    }
    int64_t w = 0, h = 0;
    if (fif == FIF_UNKNOWN || !sizeFromHeader(in, fif, io, w, h) ||
        !codec::SizeAllowed(w, h, limits))
        return nullptr;
    std::rewind(in);
    shortRead = emptyRead = false;
    FIBITMAP* dib = FreeImage_LoadFromHandle(fif, &io, in, flags);
    if (!dib) return nullptr;
    const bool cut = readsAhead(fif) ? ((fif == FIF_PCX || fif == FIF_TARGA) && emptyRead) : shortRead;
    // A scaled JPEG decode is smaller than its header says; its own size is checked.
    if (cut || !FreeImage_HasPixels(dib) ||
        !codec::SizeAllowed(FreeImage_GetWidth(dib), FreeImage_GetHeight(dib), limits)) {
        FreeImage_Unload(dib);
        return nullptr;
    }
    return dib;
}

bool DecodeDcx(std::FILE* in, const codec::SizeLimits& limits, codec::PixelSink& sink,
               codec::DecodeInfo& info) {
    // A DCX is a table of up to 1023 page offsets after its magic number, then the pages,
    // each a whole PCX file. The first page runs to the second, or to the end.
    uint8_t head[12];
    if (std::fread(head, 1, 12, in) != 12) return false;
    auto le32 = [](const uint8_t* p) {
        return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
    };
    if (le32(head) != 0x3ADE68B1u) return false;
    const uint64_t first = le32(head + 4);
    uint64_t end = le32(head + 8);
    if (end == 0 || end > limits.fileBytes) end = limits.fileBytes;
    if (first < 12 || first >= end) return false;
    std::vector<uint8_t> page(end - first);
    if (std::fseek(in, long(first), SEEK_SET) != 0 ||
        std::fread(page.data(), 1, page.size(), in) != page.size())
        return false;
    FreeImage_SetOutputMessage(quiet);
    bool ok = false;
    if (FIMEMORY* memory = FreeImage_OpenMemory(page.data(), DWORD(page.size()))) {
        codec::SizeLimits pageLimits = limits;
        pageLimits.fileBytes = page.size();
        FIBITMAP* header = FreeImage_LoadFromMemory(FIF_PCX, memory, FIF_LOAD_NOPIXELS);
        const bool allowed = header && codec::SizeAllowed(FreeImage_GetWidth(header),
                                                          FreeImage_GetHeight(header), pageLimits);
        if (header) FreeImage_Unload(header);
        FreeImage_SeekMemory(memory, 0, SEEK_SET);
        FIBITMAP* dib = allowed ? FreeImage_LoadFromMemory(FIF_PCX, memory, 0) : nullptr;
        if (dib) {
            ok = WriteDib(dib, sink, info);
            FreeImage_Unload(dib);
        }
        FreeImage_CloseMemory(memory);
    }
    return ok;
}

} // namespace ostrivex::helper
