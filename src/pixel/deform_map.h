// Private helpers of the geometric deformations: the inverse-mapping frame, a fast region
// test for source coordinates, and rounding that matches vbRound in the inner loops.
#pragma once

#include "pixel/bitfilter.h"
#include "pixel/region.h"

#include <cstdint>
#include <cstring>

namespace ostrivex::deform {

// Round to nearest, ties to even, for |v| < 2^51: adding 1.5 * 2^52 leaves the rounded
// value in the low bits under the default rounding mode. Equal to vbRound, but inlined.
inline int32_t roundEven(double v) {
    constexpr double kMagic = 6755399441055744.0;
    // Without fast-math the compiler keeps both additions, as IEEE arithmetic requires.
    return static_cast<int32_t>(static_cast<int64_t>((v + kMagic) - kMagic));
}

// Whether a source coordinate lies inside the region. A region of one rectangle (the
// usual "no selection" case) and the missing region are tested by comparison; anything
// else goes through the region's own point test.
class SourceTest {
public:
    SourceTest(const Region* region, int32_t w, int32_t h) : region_(region) {
        if (!region) {
            rect_ = {0, 0, w, h};
            simple_ = true;
        } else if (region->bands().size() == 1 && region->bands()[0].spans.size() == 1) {
            const Band& b = region->bands()[0];
            rect_ = {b.spans[0].x1, b.top, b.spans[0].x2, b.bottom};
            simple_ = true;
        } else if (region->isEmpty()) {
            rect_ = {0, 0, 0, 0};
            simple_ = true;
        }
    }
    bool operator()(int32_t x, int32_t y) const {
        if (simple_) return x >= rect_.left && x < rect_.right && y >= rect_.top && y < rect_.bottom;
        return region_->contains(x, y);
    }

private:
    const Region* region_;
    Rect rect_{};
    bool simple_ = false;
};

// Copies channels 0..2 of one pixel, leaving channel 3 of the target as it was.
inline void copyColour(uint8_t* dst, const uint8_t* src) {
    dst[0] = src[0];
    dst[1] = src[1];
    dst[2] = src[2];
}

// Copies channels 0..2 of n pixels, keeping channel 3 of the target: whole 32-bit words,
// so the compiler can vectorise the run.
inline void copyColourRun(uint8_t* dst, const uint8_t* src, int32_t n) {
    for (int32_t i = 0; i < n; ++i) {
        uint32_t d, s;
        std::memcpy(&d, dst + 4 * i, 4);
        std::memcpy(&s, src + 4 * i, 4);
        d = (s & 0x00FFFFFFu) | (d & 0xFF000000u);
        std::memcpy(dst + 4 * i, &d, 4);
    }
}

} // namespace ostrivex::deform

namespace ostrivex {

// The frame of every inverse-mapped filter: the output starts as a copy of the buffer;
// for each pixel of the region inside the box, map(x, y, sx, sy) gives the source. A
// source inside the region is copied; otherwise the pixel turns black with cleanBack, or
// keeps its old value.
template <class MapFn> Bits cBitFilter::deformMap(bool cleanBack, MapFn&& map) {
    Bits out = buffer_;
    RegionBounds(0);
    const deform::SourceTest inside(region_, lastColumn_ + 1, lastRow_ + 1);
    const Bits& src = buffer_;
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        uint8_t* d = out.pixel(x0, y);
        for (int32_t x = x0; x < x1; ++x, d += 4) {
            int32_t sx, sy;
            map(x, y, sx, sy);
            if (inside(sx, sy)) {
                deform::copyColour(d, src.pixel(sx, sy));
            } else if (cleanBack) {
                d[0] = d[1] = d[2] = 0;
            }
        }
    });
    finishProgress();
    return out;
}

} // namespace ostrivex
