// The decoders and encoders that the program carries itself or calls directly (PNM, BMP
// and SGI of its own, JPEG through libjpeg-turbo, PNG through libpng), shared by the
// editor and the helper program. Plain C++: no Qt, no FreeImage.
//
// A decoder reads a whole file from a stdio stream, checks the size its header declares
// against `SizeLimits` before any pixel is decoded, and writes the pixels through a
// `PixelSink`: four bytes a pixel (blue, green, red, 0), rows top-down. Every decoder
// stops at the first sign of a damaged or cut file and reports false; none of them
// prints anything.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace ostrivex::codec {

// Largest width or height a picture may have: sizes are kept as 16-bit numbers.
inline constexpr int32_t kMaxSide = 32767;

// A file's picture may not hold more pixels than this many per byte of the file. No
// common compression goes past it on a picture that holds anything (deflate stops near
// 1032 to 1 on bytes, so near 8300 pixels a byte for one bit a pixel; LZW and JPEG far
// sooner), so a few hundred bytes that declare 30000 x 30000 pixels are refused at once
// instead of being allocated, cleared and found empty. A fax-compressed TIFF of a nearly
// blank page can go further and is refused too (a page of 20000 x 20000 needs 24 KB).
inline constexpr uint64_t kMaxPixelsPerFileByte = 16384;
// Below this many pixels every file is plausible (tiny files of small pictures).
inline constexpr uint64_t kAlwaysPlausiblePixels = 256 * 256;

// The limits a declared size is checked against.
struct SizeLimits {
    uint64_t budgetBytes = 0; // largest pixel buffer (guard band included); 0: no budget
    uint64_t fileBytes = 0;   // size of the file being decoded
};

// Bytes of the editor's pixel buffer for a picture of w x h: four bytes a pixel with a
// two-pixel guard band on every side.
inline uint64_t BufferBytes(int64_t w, int64_t h) {
    return uint64_t(w + 4) * uint64_t(h + 4) * 4u;
}

// True when a picture of w x h may be decoded: both sides 1..kMaxSide, the buffer within
// the budget, and no more pixels than the file could plausibly hold.
bool SizeAllowed(int64_t w, int64_t h, const SizeLimits& limits);

// Where a decoder writes: `begin` once the size is known (false refuses it, and the
// decoder stops), then `row(y)` for any row, as often as the decoder needs.
class PixelSink {
  public:
    virtual ~PixelSink() = default;
    virtual bool begin(int32_t width, int32_t height) = 0;
    virtual uint8_t* row(int32_t y) = 0;
};

// What a decoder tells besides the pixels.
struct DecodeInfo {
    int bpp = 24;   // bits per pixel of the file as its header states them
    int dpiX = 72;  // resolution in dots per inch (72 when the file states none)
    int dpiY = 72;
};

// 16-bit samples to 8 bits: v * 255 / 65535 cut to a whole number (v / 257), which is
// what ImageMagick and GraphicsMagick give for the same file.
inline uint8_t Scale16(uint32_t v) {
    return uint8_t(v / 257u);
}

// --- PNM (P1..P6), maximum values up to 65535 ----------------------------------------
bool DecodePnm(std::FILE* in, const SizeLimits& limits, PixelSink& sink, DecodeInfo& info);
// Binary PPM (P6, maximum 255) of the pixels: `rows(y)` gives row y in the sink layout.
bool EncodePpm(std::FILE* out, int32_t width, int32_t height,
               const uint8_t* (*rows)(const void* context, int32_t y), const void* context);

// --- JPEG (libjpeg-turbo) --------------------------------------------------------------
// Baseline and progressive, grey, colour and CMYK/YCCK (Adobe's inverted form as most
// writers store it). A warning of the library (data cut short, a corrupt segment) fails
// the decode.
bool DecodeJpeg(std::FILE* in, const SizeLimits& limits, PixelSink& sink, DecodeInfo& info);
// Quality 1..100, 4:2:0, a JFIF header of 72 dots per inch.
bool EncodeJpeg(std::FILE* out, int32_t width, int32_t height, int quality,
                const uint8_t* (*rows)(const void* context, int32_t y), const void* context);

// --- PNG (libpng) ----------------------------------------------------------------------
// Every colour type and depth, interlaced or not. Alpha is dropped (the colour as stored
// stays), a palette's transparency too; 16-bit samples are rounded to 8 bits.
bool DecodePng(std::FILE* in, const SizeLimits& limits, PixelSink& sink, DecodeInfo& info);
// 24-bit RGB. The compression is chosen from the picture (see png_codec.cpp).
bool EncodePng(std::FILE* out, int32_t width, int32_t height,
               const uint8_t* (*rows)(const void* context, int32_t y), const void* context);

// --- BMP -----------------------------------------------------------------------------
// Core, 40, 52, 56, 108 and 124-byte headers; 1/4/8-bit palettes, RLE8, RLE4, 16 and
// 32-bit bit fields, 24 bits; bottom-up or top-down. Alpha (a bit-field mask that is not
// zero everywhere) is laid over white, as the platform shows such a picture.
bool DecodeBmp(std::FILE* in, const SizeLimits& limits, PixelSink& sink, DecodeInfo& info);

// --- SGI (IRIS RGB) --------------------------------------------------------------------
// One to four channels of 8 or 16 bits, verbatim or RLE. One channel is grey, the fourth
// (alpha) is dropped.
bool DecodeSgi(std::FILE* in, const SizeLimits& limits, PixelSink& sink, DecodeInfo& info);

} // namespace ostrivex::codec
