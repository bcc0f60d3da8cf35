// The pieces of the helper program `ostrivex-devil` (see protocol.h for its commands).
#pragma once

#include "imagefile/codecs/codec.h"
#include "imagefile/helper/protocol.h"

#include <FreeImage.h>

#include <cstdio>
#include <string>

namespace ostrivex::helper {

// The decoded picture, written straight into the answer memfd.
class AnswerSink : public codec::PixelSink {
  public:
    explicit AnswerSink(const codec::SizeLimits& limits) : limits_(limits) {}
    ~AnswerSink() override;
    bool begin(int32_t width, int32_t height) override;
    uint8_t* row(int32_t y) override;
    // Writes the header, marking the answer complete. False if no picture was begun.
    bool finish(const codec::DecodeInfo& info);

  private:
    codec::SizeLimits limits_;
    uint8_t* map_ = nullptr;
    size_t mapBytes_ = 0;
    int32_t width_ = 0, height_ = 0;
};

// The helper's decoders, each from an open file into any sink; false when the file is
// refused or damaged. `DecodeByWay` picks one by the ways of protocol.h (not "emf").
bool DecodeByWay(const std::string& how, const std::string& extension, std::FILE* in,
                 const codec::SizeLimits& limits, codec::PixelSink& sink, codec::DecodeInfo& info);
bool DecodeWithDevil(std::FILE* in, const std::string& extension, bool raw,
                     const codec::SizeLimits& limits, codec::PixelSink& sink,
                     codec::DecodeInfo& info);
// A FreeImage load of `format` (-1: the type found in the file) with the loader's
// `flags`, its size checked from the header first; null when refused, failed or cut.
// FreeImage must be initialised.
FIBITMAP* LoadWithFreeImage(std::FILE* in, int format, int flags, const codec::SizeLimits& limits);
// Any FreeImage bitmap into a sink: 16-bit samples as Scale16 does, alpha dropped.
bool WriteDib(FIBITMAP* dib, codec::PixelSink& sink, codec::DecodeInfo& info);
// A DCX: the first of its PCX pages.
bool DecodeDcx(std::FILE* in, const codec::SizeLimits& limits, codec::PixelSink& sink,
               codec::DecodeInfo& info);
bool RenderWmf(std::FILE* in, const codec::SizeLimits& limits, codec::PixelSink& sink,
               codec::DecodeInfo& info);
// Each returns the helper's exit status.
int ConvertEmf(std::FILE* in, int svgFd);
// DevIL load of descriptor 3 by `sourceExtension`, saved as IL type `typeText` into
// descriptor 4.
int DevilConvert(const std::string& sourceExtension, const char* typeText);
// The thumbnail server of the Browser Box (see serve.cpp).
int Serve(uint64_t budget);

// DevIL's own allocations may not pass this many bytes (0: no bound), so that a header
// declaring a huge picture fails before any pixel is read.
void SetDevilAllocationLimit(uint64_t bytes);

} // namespace ostrivex::helper
