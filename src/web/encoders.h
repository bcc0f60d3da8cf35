// The writers of the optimizer. Each writes into memory, so the byte count shown is the
// length of the very bytes that a save puts into the file.
//
// - GIF through giflib: the colour table at the preset's depth (2^bits entries, padded with
//   black), LZW at that depth, interlaced when asked; no extension blocks.
// - PNG-8 through libpng: a palette PNG with the palette's own entries (PLTE is not padded),
//   at the least bit depth that holds them, zlib level 6, no row filters (the best choice
//   for palette pictures; level 9 saved 0.2 % at 1 megapixel for a fifth more time).
// - Everything else through FreeImage's writers: PNG-24 (zlib level 6, not interlaced),
//   JPEG with the quality flags, BMP
//   (1, 4, 8 bits with a palette, 16 bits as 5-5-5, 24 bits, and 32 for "Native Bitmap"),
//   Targa with or without run-length packets, TIFF without compression.
#pragma once

#include "pixel/bits.h"
#include "web/colormaps.h"
#include "web/optimizesettings.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ostrivex {

struct IndexedPicture {
    int32_t width = 0, height = 0;
    Palette palette;              // at most 256 entries
    std::vector<uint8_t> indices; // width * height, row by row from the top
};

// Each returns false with a line in `error` when the format cannot hold the picture.
bool EncodeGif(IndexedPicture& picture, int bits, bool interlaced, std::vector<uint8_t>& out,
               std::string& error);
bool EncodePng8(const IndexedPicture& picture, std::vector<uint8_t>& out, std::string& error);
bool EncodeIndexedBmp(const IndexedPicture& picture, int bits, std::vector<uint8_t>& out,
                      std::string& error);
// PNG-24, JPEG, BMP 16/24, Targa, TIFF and the native 32-bit bitmap of `s.Format`.
bool EncodeTrueColour(const Bits& picture, const OptimizeSettings& s, std::vector<uint8_t>& out,
                      std::string& error);

// Reads an encoded picture back (any format FreeImage knows by its signature).
bool DecodePicture(const std::vector<uint8_t>& bytes, Bits& out);

} // namespace ostrivex
