// Fitting a picture into a box with its proportions kept: the thumbnails of the filter
// dialog, the clip history and the overlay preview all size their pictures this way.
#pragma once

#include <cstdint>

namespace ostrivex {

struct FitSize {
    int32_t width = 0;
    int32_t height = 0;
    bool operator==(const FitSize&) const = default;
};

// The largest w' x h' inside boxW x boxH with w' / h' as close to w / h as whole pixels
// allow: the side that meets its limit first takes the limit, the other follows the ratio,
// rounded to nearest with ties to even, and never drops below one pixel. A small picture is
// enlarged. Any size or box below 1 gives 0 x 0.
inline FitSize FitToBox(int32_t w, int32_t h, int32_t boxW, int32_t boxH) {
    if (w < 1 || h < 1 || boxW < 1 || boxH < 1) return {};
    // round(num / den), ties to even, in integers.
    auto roundDiv = [](int64_t num, int64_t den) {
        int64_t q = num / den;
        const int64_t twiceR = 2 * (num % den);
        if (twiceR > den || (twiceR == den && (q & 1))) ++q;
        return int32_t(q < 1 ? 1 : q);
    };
    // w / h against boxW / boxH, compared without a division.
    if (int64_t(w) * boxH >= int64_t(h) * boxW) return {boxW, roundDiv(int64_t(h) * boxW, w)};
    return {roundDiv(int64_t(w) * boxH, h), boxH};
}

} // namespace ostrivex
