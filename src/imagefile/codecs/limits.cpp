#include "imagefile/codecs/codec.h"

namespace ostrivex::codec {

bool SizeAllowed(int64_t w, int64_t h, const SizeLimits& limits) {
    if (w < 1 || h < 1 || w > kMaxSide || h > kMaxSide) return false;
    if (limits.budgetBytes && BufferBytes(w, h) > limits.budgetBytes) return false;
    const uint64_t pixels = uint64_t(w) * uint64_t(h);
    return pixels <= kAlwaysPlausiblePixels || pixels / kMaxPixelsPerFileByte <= limits.fileBytes;
}

} // namespace ostrivex::codec
