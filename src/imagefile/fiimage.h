// FreeImage glue of the image file code (internal): library sessions and the conversions
// between a FreeImage bitmap and a Bits.
#pragma once

#include "pixel/bits.h"

#include <FreeImage.h>

namespace ostrivex {

// Largest width or height a loaded image may have: sizes are kept as 16-bit numbers.
inline constexpr int kMaxImageSide = 32767;

// FreeImage initialised for the lifetime of the object, with the library's messages
// silenced (the caller reports failures with its own text).
class FreeImageSession {
  public:
    FreeImageSession();
    ~FreeImageSession();
    FreeImageSession(const FreeImageSession&) = delete;
    FreeImageSession& operator=(const FreeImageSession&) = delete;
};

// Converts any FreeImage bitmap to 24 bits and copies it into `out` (channel 3 zero).
// False for a bitmap that is not a plain image or too large.
bool DibToBits(FIBITMAP* dib, Bits& out);
// A 32-bit FreeImage bitmap of channels 0..2 of `bits` (alpha byte 0), or null.
FIBITMAP* BitsToDib(const Bits& bits);

// The result of a decode: the pixels and their facts, or the load error when the size is
// out of range.
struct ImageFileResult;
ImageFileResult LoadedImage(Bits&& pixels, int bpp, int dpiX, int dpiY);
// Dots per metre to dots per inch, rounded.
inline int DotsPerInch(unsigned dotsPerMetre) {
    return int(dotsPerMetre * 0.0254 + 0.5);
}

} // namespace ostrivex
