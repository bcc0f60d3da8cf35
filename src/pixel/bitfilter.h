// cBitFilter: one pixel buffer, one selection region, and every pixel operation.
//
// Calling order of a filter: give the object its input (`SetBits`, `BitsRegion`), call the
// filter, which returns a new Bits and leaves the object's own buffer as it was, then
// `SetBits` with the result so the next filter chains from it.
//
// The frame of a filter: copy the buffer (the output), build tables, `RegionBounds`, then
// walk the box row by row, writing channels 0..2 of the pixels inside the region, with the
// progress step after every row, and finally raise Progress(100). Rows are walked by the
// region's spans, clipped to the box, which visits exactly the pixels a per-pixel
// point-in-region test over the box would.
//
// The operations are declared here family by family; each family lives in its own files.
#pragma once

#include "pixel/bits.h"
#include "pixel/region.h"

#include <cstdint>
#include <functional>
#include <string>

namespace ostrivex {

struct FilterMask; // a convolution kernel with divisor and biases (neighbourhood filters)

class cBitFilter {
public:
    using ProgressHandler = std::function<void(int32_t& percent)>;
    using ClockFunction = uint32_t (*)();

    // The `Progress` event: the percent is passed by reference, as listeners may change it.
    ProgressHandler Progress;

    cBitFilter() = default;

    // --- The buffer -----------------------------------------------------------------
    int32_t BitsWidth() const { return lastColumn_ + 1; }
    int32_t BitsHeight() const { return lastRow_ + 1; }
    // `Bits` (read): a deep copy of the buffer.
    Bits GetBits() const { return buffer_; }
    // The buffer itself, for callers that only read it.
    const Bits& bits() const { return buffer_; }
    // `Bits` (write): deep copy (or move) into the buffer; sets last column, last row and
    // the image rectangle. The region and the cursors stay.
    void SetBits(const Bits& b);
    void SetBits(Bits&& b);
    // `BitsRegion` (write): stores the region; not owned. A null region stands for the
    // whole image.
    void BitsRegion(const Region* region) { region_ = region; }
    const Region* region() const { return region_; }

    // In place: every pixel of the box inside the region becomes 0 in all four channels.
    void BitsBlack();
    // Makes the buffer from a top-down 32-bit pixel block of width x height (no padding).
    void BitsTakeFromPicture(const uint8_t* pixels, int32_t width, int32_t height);
    // Fills the region's box (no per-pixel test) with one colour; channel 3 stays.
    Bits NewDoc(uint8_t red, uint8_t green, uint8_t blue);

    // The millisecond clock of the progress throttle (steady clock by default); tests may
    // replace it to drive the 10 ms rule.
    static ClockFunction clock;

    // --- Resampling and transforms (transforms.cpp, resample.cpp) --------------------
    // [transforms]

    // --- Tone and colour filters (tone*.cpp) -----------------------------------------
    // [tone]

    // --- Neighbourhood filters and user filters (neighbourhood*.cpp) -----------------
    // [neighbourhood]

    // --- Geometric deformations (deform*.cpp) ----------------------------------------
    // [deform]

    // --- Artistic filters (artistic*.cpp) --------------------------------------------
    // [artistic]

protected:
    // Sets the inclusive box fields from the region's bounding box shrunk by margin.
    void RegionBounds(int32_t margin);
    // After a row: raise Progress(y * 100 \ (H - 1)) when more than 10 ms have passed.
    void progressStep(int32_t y);
    // Raises Progress with percent.
    void raiseProgress(int32_t percent);
    // Raises the final Progress(100).
    void finishProgress() { raiseProgress(100); }
    // Whether (x, y) is inside the region (the per-pixel rule).
    bool inRegion(int32_t x, int32_t y) const {
        return region_ ? region_->contains(x, y)
                       : (x >= 0 && y >= 0 && x <= lastColumn_ && y <= lastRow_);
    }

    // Walks the box (after RegionBounds) row by row: fn(y, x0, x1) for each run [x0, x1)
    // of region pixels inside the box, then the progress step of the row.
    template <class RowFn> void forEachSpan(RowFn&& fn) {
        for (int32_t y = boxTop_; y <= boxBottom_; ++y) {
            forEachSpanInRow(y, fn);
            progressStep(y);
        }
    }
    // The runs of one row, without the progress step.
    template <class RowFn> void forEachSpanInRow(int32_t y, RowFn&& fn) const {
        const int32_t lo = boxLeft_, hi = boxRight_ + 1;
        if (hi <= lo) return;
        if (!region_) {
            if (y >= 0 && y <= lastRow_) fn(y, std::max(lo, 0), std::min(hi, lastColumn_ + 1));
            return;
        }
        const std::vector<Span>* spans = region_->rowSpans(y);
        if (!spans) return;
        for (const Span& s : *spans) {
            const int32_t x0 = s.x1 < lo ? lo : s.x1;
            const int32_t x1 = s.x2 > hi ? hi : s.x2;
            if (x0 < x1) fn(y, x0, x1);
        }
    }

    Bits buffer_;
    int32_t lastColumn_ = -1;
    int32_t lastRow_ = -1;
    Rect image_{};
    const Region* region_ = nullptr;
    // Loop cursors of the running operation (one operation at a time).
    int32_t x_ = 0, sourceX_ = 0, sourceY_ = 0, y_ = 0;
    // The inclusive loop limits set by RegionBounds.
    int32_t boxLeft_ = 0, boxRight_ = -1, boxTop_ = 0, boxBottom_ = -1;
    uint32_t lastTick_ = 0;
};

// Milliseconds of the steady clock, wrapping like a 32-bit tick counter.
uint32_t steadyMilliseconds();

} // namespace ostrivex
