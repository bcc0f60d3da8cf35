// Decoding into a Bits, here or in the helper (internal to the image file code).
#pragma once

#include "imagefile/codecs/codec.h"
#include "pixel/bits.h"

#include <cstdio>

namespace ostrivex {

class InputFile;

using Decoder = bool (*)(std::FILE*, const codec::SizeLimits&, codec::PixelSink&,
                         codec::DecodeInfo&);

// Runs one of our own decoders in this process on the file; true with the pixels (guard
// band cleared). A failed decode leaves `pixels` empty.
bool DecodeHere(Decoder decoder, const InputFile& file, Bits& pixels, codec::DecodeInfo& info);

} // namespace ostrivex
