// The pieces of the helper program `ostrivex-devil` (see protocol.h for its commands).
#pragma once

#include "imagefile/codecs/codec.h"
#include "imagefile/helper/protocol.h"

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

// Each returns the helper's exit status: 0 when the answer is complete.
int DecodeWithDevil(std::FILE* in, const std::string& extension, bool raw,
                    const codec::SizeLimits& limits, AnswerSink& sink);
// `format` is a FreeImage format number, or -1 for the type found in the file.
int DecodeWithFreeImage(std::FILE* in, int format, const codec::SizeLimits& limits,
                        AnswerSink& sink);
// A DCX: the first of its PCX pages.
int DecodeDcx(std::FILE* in, const codec::SizeLimits& limits, AnswerSink& sink);
int RenderWmf(std::FILE* in, const codec::SizeLimits& limits, AnswerSink& sink);
int ConvertEmf(std::FILE* in, int svgFd);
// DevIL load of descriptor 3 by `sourceExtension`, saved as IL type `typeText` into
// descriptor 4.
int DevilConvert(const std::string& sourceExtension, const char* typeText);

// DevIL's own allocations may not pass this many bytes (0: no bound), so that a header
// declaring a huge picture fails before any pixel is read.
void SetDevilAllocationLimit(uint64_t bytes);

} // namespace ostrivex::helper
