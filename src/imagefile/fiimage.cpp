// FreeImage glue: library sessions and bitmap <-> Bits copies.
#include "imagefile/fiimage.h"

#include <tiffio.h>

#include <cstring>
#include <new>

namespace ostrivex {

namespace {
void quietOutput(FREE_IMAGE_FORMAT, const char*) {}
} // namespace

FreeImageSession::FreeImageSession() {
    FreeImage_Initialise(FALSE);
    FreeImage_SetOutputMessage(quietOutput);
    // libtiff prints warnings and "unknown tag" notes of its own on stderr; FreeImage
    // installs handlers as it initialises, so they are silenced afterwards.
    TIFFSetWarningHandler(nullptr);
    TIFFSetErrorHandler(nullptr);
}

FreeImageSession::~FreeImageSession() {
    FreeImage_DeInitialise();
}

bool DibToBits(FIBITMAP* dib, Bits& out) {
    if (!dib || FreeImage_GetImageType(dib) != FIT_BITMAP || !FreeImage_HasPixels(dib))
        return false;
    const int w = int(FreeImage_GetWidth(dib));
    const int h = int(FreeImage_GetHeight(dib));
    if (w < 1 || h < 1 || w > kMaxImageSide || h > kMaxImageSide) return false;
    FIBITMAP* rgb = FreeImage_GetBPP(dib) == 24 ? dib : FreeImage_ConvertTo24Bits(dib);
    if (!rgb) return false;
    try {
        out.reset(w, h);
    } catch (const std::bad_alloc&) {
        if (rgb != dib) FreeImage_Unload(rgb);
        return false;
    }
    // FreeImage rows run bottom-up; its 24-bit pixels are blue, green, red in memory.
    for (int y = 0; y < h; ++y) {
        const BYTE* src = FreeImage_GetScanLine(rgb, h - 1 - y);
        uint8_t* dst = out.row(y);
        for (int x = 0; x < w; ++x, src += 3, dst += 4) {
            dst[0] = src[FI_RGBA_BLUE];
            dst[1] = src[FI_RGBA_GREEN];
            dst[2] = src[FI_RGBA_RED];
        }
    }
    if (rgb != dib) FreeImage_Unload(rgb);
    return true;
}

FIBITMAP* BitsToDib(const Bits& bits) {
    const int w = bits.width();
    const int h = bits.height();
    if (w < 1 || h < 1) return nullptr;
    FIBITMAP* dib =
        FreeImage_Allocate(w, h, 32, FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK);
    if (!dib) return nullptr;
    for (int y = 0; y < h; ++y) {
        const uint8_t* src = bits.row(y);
        BYTE* dst = FreeImage_GetScanLine(dib, h - 1 - y);
        for (int x = 0; x < w; ++x, src += 4, dst += 4) {
            dst[FI_RGBA_BLUE] = src[0];
            dst[FI_RGBA_GREEN] = src[1];
            dst[FI_RGBA_RED] = src[2];
            dst[FI_RGBA_ALPHA] = 0;
        }
    }
    return dib;
}

} // namespace ostrivex
