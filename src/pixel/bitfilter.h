// cBitFilter: one pixel buffer, one selection region, and every pixel operation.
//
// Calling order of a filter: give the object its input (`SetBits`, `BitsRegion`), call the
// filter, which returns a new Bits and leaves the object's own buffer as it was, then
// `SetBits` with the result so the next filter chains from it.
//
// A caller that does exactly that (give the result straight back with `SetBits`) may turn
// on `SetReuseBuffer`: the point filters and the neighbourhood filters then rewrite only
// the region's pixels inside the object's own buffer and hand that buffer back as the
// result, so the pixels outside the selection cost nothing. The bytes of the result are
// the same either way. After such a filter the object holds an empty buffer (its sizes and
// the region stay) until the next `SetBits`; filters whose pixels read far-away source
// pixels (deformations, the artistic filters but OLDPHOTO, which is a point filter,
// MaskFilter, EMBOSS, NOISE, DIFFUSE, the transforms) ignore the flag and leave the buffer
// alone. Should a Progress listener throw
// part-way through such a filter, the buffer is left half rewritten.
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

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

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
    // Moves the buffer out (a result on its way to a document, which gives the filter its
    // pixels back); the object holds an empty buffer until the next SetBits.
    Bits TakeBits() { return std::move(buffer_); }
    // `Bits` (write): deep copy (or move) into the buffer; sets last column, last row and
    // the image rectangle. The region and the cursors stay.
    void SetBits(const Bits& b);
    void SetBits(Bits&& b);
    // `BitsRegion` (write): stores the region; not owned. A null region stands for the
    // whole image.
    void BitsRegion(const Region* region) { region_ = region; }
    const Region* region() const { return region_; }

    // Whether filters may build their result in the object's own buffer (see the top of
    // this file). Off by default.
    void SetReuseBuffer(bool on) { reuseBuffer_ = on; }
    bool ReuseBuffer() const { return reuseBuffer_; }
    // Turns the reuse on for its lifetime and restores the earlier setting after it, also
    // when the filter throws.
    class ReuseScope {
    public:
        explicit ReuseScope(cBitFilter& f) : f_(f), was_(f.reuseBuffer_) { f.reuseBuffer_ = true; }
        ~ReuseScope() { f_.reuseBuffer_ = was_; }
        ReuseScope(const ReuseScope&) = delete;
        ReuseScope& operator=(const ReuseScope&) = delete;

    private:
        cBitFilter& f_;
        bool was_;
    };

    // In place: every pixel of the box inside the region becomes 0 in all four channels.
    void BitsBlack();
    // Makes the buffer from a top-down 32-bit pixel block of width x height (no padding).
    void BitsTakeFromPicture(const uint8_t* pixels, int32_t width, int32_t height);
    // Fills the region's box (no per-pixel test) with one colour; channel 3 stays.
    Bits NewDoc(uint8_t red, uint8_t green, uint8_t blue);

    // The millisecond clock of the progress throttle (steady clock by default); tests may
    // replace it to drive the 10 ms rule.
    static ClockFunction clock;

    // --- Resampling and transforms (transforms*.cpp) ---------------------------------
    // [transforms] Size changes and placements. The Bits* operations read `source`
    // (which may be the object's own buffer), make a new zeroed buffer of the new size,
    // and set last column, last row and image rectangle to it; the region is left alone.
    //
    // BitsCrop cuts the rectangle intersected with the image rectangle (a rectangle with
    // reversed edges has no area, so the result is 0 x 0, as is one outside the image);
    // all four channels are copied and Progress(100) is raised once. Throws
    // std::out_of_range, with the object unchanged, when the object's image rectangle
    // reaches past the source's pixel array.
    void BitsCrop(const Bits& source, int32_t left, int32_t top, int32_t right, int32_t bottom);
    // As BitsCrop on the source's own bounds; target pixels whose source lies outside the
    // region become (0, 0, 0, 255).
    void BitsCropMasked(const Bits& source, int32_t left, int32_t top, int32_t right,
                        int32_t bottom);
    // Bilinear scaling to width x height, rounding after the vertical and again after the
    // horizontal step; channel 3 is 0.
    void BitsResample(const Bits& source, int32_t width, int32_t height);
    // Nearest-neighbour scaling to width x height; channel 3 is 0.
    void BitsResize(const Bits& source, int32_t width, int32_t height);
    // A quarter turn to the left: source (x, y) goes to (y, W - 1 - x); channel 3 is 0.
    void BitsRotate90(const Bits& source);
    // Mirror of the whole image (no region test); channel 3 stays where it was.
    Bits Flip(bool horizontal, bool vertical);
    // Lays `tile` on a copy of the buffer at (left, top), once or repeated over the image,
    // blending target * opacity% + tile * (100 - opacity)%; tile pixels of the key colour
    // (0x00BBGGRR, -1 for none) and targets outside the region are skipped.
    Bits TileMask(const Bits& tile, int32_t left, int32_t top, bool repeat, int32_t opacity,
                  int32_t key);
    // ROTATE with bilinear sampling of the source position; a neighbour outside the region
    // counts as what ROTATE writes for an outside source (black with cleanBack, else the
    // output pixel's old value), so the rim of the turned picture is smoothed as well.
    Bits RotateSmooth(int32_t degrees, bool cleanBack);

    // --- Tone and colour filters (tone*.cpp) -----------------------------------------
    // Point filters: each new pixel depends on the same source pixel (and, where said, on
    // statistics of the whole image). Colours are packed 0x00BBGGRR. Parameters are those
    // of the filter dialog; tolerances run 0..200.
    Bits BRIGHTNESS(int32_t level);
    Bits ShiftRGB(int32_t red, int32_t green, int32_t blue);
    Bits Invert();
    Bits GreyScale();
    Bits Threshold(int32_t cut);
    Bits SATURATION(int32_t level);
    Bits Reduction(int32_t level);
    Bits GammaCorrection(int32_t gamma);
    Bits KillChannel(bool red, bool green, bool blue);
    // A flag other than -1 sets its channel to 0. The flags are only read.
    Bits SpecialColors(int32_t red, int32_t green, int32_t blue);
    // Hue -1..5, saturation and luminosity 0..1.
    Bits COLORIZE(float hue, float saturation, float luminosity);
    // Two passes: the mean of the whole image, then a stretch about it with the overflow
    // of a channel spread over the other two.
    Bits Contrast(int32_t level);
    // Moves the median luminance of the whole image to 128.
    Bits Equalize();
    Bits ISOLATE(uint32_t colour, uint32_t backColour, int32_t tolerance);
    Bits REPLACE(uint32_t colour, uint32_t newColour, int32_t tolerance);
    Bits Shift(uint32_t colour, int32_t shift, int32_t tolerance);
    Bits ReplaceHS(uint32_t colour, uint32_t newColour, int32_t hueTolerance,
                   int32_t satTolerance, int32_t applyTolerance);
    Bits ReplaceL(uint32_t colour, uint32_t newColour, int32_t lumTolerance,
                  int32_t applyTolerance);
    // RotateH, RotateL and StretchH hand back a Bits like the others (no variant array).
    Bits RotateH(int32_t offset, int32_t saturation);
    Bits RotateL(int32_t offset, int32_t steps);
    Bits StretchH(int32_t offset, int32_t saturation, int32_t stretch);
    // Modes 1..5: BRG, GBR, RBG, BGR, GRB; any other mode copies the pixel.
    Bits SwapBanks(int32_t mode);
    // Sources are channel numbers 0..2 for the red, green and blue outputs.
    Bits SwapRGB(int32_t redSource, int32_t greenSource, int32_t blueSource, bool invertRed,
                 bool invertGreen, bool invertBlue, bool killRed, bool killGreen,
                 bool killBlue);
    // Modes 0..11 (4, 5 and 9 copy the pixel).
    Bits ClassyColors(int32_t mode);
    // Statistics of (B + G + R) \ 3 over the whole image, whatever the region.
    int32_t GetLMax();
    int32_t GetLMin();
    int32_t GetLMed();

private:
    // The frame of the point filters in one pass (tone_kernels.h): the new buffer takes
    // run(source, target, n) on each span of the region and a copy of everything else.
    template <class RunFn> Bits pointFilter(RunFn&& run);

public:

    // --- Neighbourhood filters and user filters (neighbourhood*.cpp) -----------------
    // [neighbourhood]
    // The general convolution: mask[dy][dx] (3 x 3 or 5 x 5) over the source, each of blue,
    // green and red = bias + sum \ div, clamped. With keepMargins the pixels that lack a full
    // window stay as they are; without it the window reads the black guard band. A div of 0
    // throws std::domain_error once a pixel is to be computed; a sum that leaves 32 bits
    // throws std::overflow_error; a mask that is not square of side 1 to 5 throws
    // std::invalid_argument.
    Bits MaskFilter(const std::vector<std::vector<int32_t>>& mask, int32_t div, int32_t biasR,
                    int32_t biasG, int32_t biasB, bool keepMargins);
    Bits MaskFilter(const FilterMask& record, bool keepMargins);
    Bits Blurs(int32_t level);
    Bits SOFTEN(int32_t level);
    Bits SHARPEN(int32_t level);
    Bits EDGEENHANCE(int32_t level);
    Bits CONTOUR(int32_t weight, int32_t colour);
    Bits EMBOSS(int32_t weight);
    Bits Engrave(int32_t weight);
    Bits RELIEF();
    Bits DILATE();
    Bits ERODE();
    Bits RankFilterN4(int32_t mode);
    Bits RankFilterND(int32_t mode);
    Bits DIFFUSE(int32_t horizontal, int32_t vertical);
    Bits NOISE(int32_t intensity, bool equalized);

private:
    Bits embossBy(int32_t weight, int32_t sign); // EMBOSS (sign 1) and Engrave (sign -1)

public:

    // --- Geometric deformations (deform*.cpp) ----------------------------------------
    // Each maps every output pixel of the region's box back to a source pixel (rounded to
    // the nearest, ties to even). With cleanBack, a pixel whose source lies outside the
    // region turns black; without, it keeps its old value.
    Bits BEND(int32_t radius, bool cleanBack);
    Bits FOLD(int32_t horizontal, int32_t vertical, bool cleanBack);
    Bits ROTATE(int32_t degrees, bool cleanBack);
    Bits STRETCH(int32_t horizontal, int32_t vertical, bool cleanBack);
    Bits TILE(int32_t factor);
    Bits TWIRL(int32_t level, int32_t offsetDegrees, bool cleanBack);
    Bits WAVES(int32_t frequency, int32_t amplitude, int32_t startDegree);
    // Centre and diameter are fractions of the image; magnify 0..100.
    Bits LENS(float centreX, float centreY, float diameter, int32_t magnify);
    // LENS at the image centre, magnify 60, with the circle inscribed in the image.
    Bits FISHEYE();
    // Ribbed or blocked glass ("slanting", "horizontal", "vertical", "squary") and the
    // curtains ("curtain" with value 1 to 4). Unknown styles return the image unchanged.
    Bits GLASS(const std::string& style, int32_t value);

private:
    // The frame of the inverse-mapped filters: map(x, y, sx, sy) sets the source of an
    // output pixel of the region; see deform_map.h.
    template <class MapFn> Bits deformMap(bool cleanBack, MapFn&& map);

public:

    // --- Artistic filters (artistic*.cpp) --------------------------------------------
    Bits PIXELIZE(int32_t size);
    Bits HALFTONE(int32_t radius, int32_t definition, int32_t intensity);
    Bits OLDPHOTO();
    Bits THERMIQUE();
    Bits XBLACK();
    Bits PHOTOCOP();
    // Centre and radius are fractions of the image; intensity is added, focus in percent.
    Bits Light(float centreX, float centreY, float radius, int32_t intensity, int32_t focus);
    Bits Scanlines(int32_t level);
    // The tile's blue channel modulates the image (128 is neutral). The tile must be at
    // least 2 x 2; a smaller one returns the image unchanged.
    Bits Texturize(const Bits& tile);
    // Nearest palette colour per pixel; colours[i] = {red, green, blue}, count entries.
    Bits PaletteApply(bool dither, const int32_t (*colours)[3], int32_t count);
    // Black and white by error diffusion; level > 0 brightens the grey by grey * 10 / level.
    Bits StuckiBW(int32_t level);
    // Pencil lines in `colour` where the neighbourhood changes; weight 0..255 sets their
    // strength; bw draws on white, else on a washed-out copy of the image.
    Bits SKETCH(int32_t weight, bool bw, uint32_t colour);
    // Short brush strokes that follow the edges of the image.
    Bits PAINTING();
    // Each pixel turns into `colour` with a chance of level percent.
    Bits Dissolve(int32_t level, uint32_t colour);
    // Lines every hStep columns and vStep rows from the box's corner, in `colour` at
    // opacity 0..255; forceMargins also draws the box's last column and last row.
    Bits Grid(int32_t hStep, int32_t vStep, bool forceMargins, uint32_t colour, int32_t opacity);

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
    // The frame in one pass for filters that write every byte of each span they are given:
    // after RegionBounds, the new buffer is made row by row, each run of region pixels in
    // the box through run(y, x0, x1, target), target being where pixel x0 of the run goes,
    // and everything else copied from the buffer, with the progress step after every row
    // of the box. The bytes are those of a whole copy followed by a rewrite of the runs;
    // each pixel is written once instead of twice. run reads the source from buffer_, at
    // most `reach` rows above or below its own.
    //
    // With the reuse flag the buffer itself becomes the result: a run's pixels are made in
    // a ring of reach + 1 row slots and copied into the buffer only once no later row reads
    // the original row any more (after row y + reach is made), so every read still sees
    // the source. Nothing outside the runs is read or written.
    template <class RunFn> Bits spanFrame(RunFn&& run, int32_t reach = 1) {
        const Bits& src = buffer_;
        const int32_t w = src.width(), h = src.height();
        // Rows of the box outside the array have nothing to write (a region is meant to lie
        // inside the image) but keep their progress steps.
        for (int32_t y = boxTop_; y <= boxBottom_ && y < -2; ++y) progressStep(y);
        if (reuseBuffer_) {
            spanFrameInPlace(run, std::max(reach, 0));
        } else {
            Bits out = Bits::forOverwrite(w, h); // every byte is written below
            for (int32_t y = -2; y < h + 2; ++y) {
                const bool inBox = y >= boxTop_ && y <= boxBottom_;
                int32_t done = -2; // the next column still to be made
                if (inBox)
                    forEachSpanInRow(y, [&](int32_t, int32_t x0, int32_t x1) {
                        x0 = std::max(x0, done);
                        x1 = std::min(x1, w + 2);
                        if (x0 >= x1) return;
                        std::memcpy(out.pixel(done, y), src.pixel(done, y),
                                    size_t(x0 - done) * 4u);
                        run(y, x0, x1, out.pixel(x0, y));
                        done = x1;
                    });
                std::memcpy(out.pixel(done, y), src.pixel(done, y), size_t(w + 2 - done) * 4u);
                if (inBox) progressStep(y);
            }
            for (int32_t y = std::max(boxTop_, h + 2); y <= boxBottom_; ++y) progressStep(y);
            return out;
        }
        for (int32_t y = std::max(boxTop_, h + 2); y <= boxBottom_; ++y) progressStep(y);
        return takeBuffer();
    }

    // The in-place body of spanFrame (rows -2 .. H + 1 of the box).
    template <class RunFn> void spanFrameInPlace(RunFn& run, int32_t reach) {
        const int32_t w = buffer_.width(), h = buffer_.height();
        const int32_t first = std::max(boxTop_, -2), last = std::min(boxBottom_, h + 1);
        if (first > last) return;
        const size_t slotBytes = size_t(w + 4) * 4u;
        const int32_t slotCount = reach + 1;
        struct Piece { int32_t x0, x1; };
        std::vector<uint8_t> ring(slotBytes * static_cast<size_t>(slotCount));
        std::vector<std::vector<Piece>> runs(static_cast<size_t>(slotCount));
        // Row y lives in slot (y - first) % slotCount; column x at byte 4 * (x + 2) of it.
        auto slotOf = [&](int32_t y) { return size_t(y - first) % size_t(slotCount); };
        auto commit = [&](int32_t y) {
            const size_t k = slotOf(y);
            const uint8_t* slot = ring.data() + k * slotBytes;
            for (const Piece& r : runs[k])
                std::memcpy(buffer_.pixel(r.x0, y), slot + size_t(r.x0 + 2) * 4u,
                            size_t(r.x1 - r.x0) * 4u);
            runs[k].clear();
        };
        for (int32_t y = first; y <= last; ++y) {
            const size_t k = slotOf(y);
            uint8_t* slot = ring.data() + k * slotBytes;
            int32_t done = -2;
            forEachSpanInRow(y, [&](int32_t, int32_t x0, int32_t x1) {
                x0 = std::max(x0, done);
                x1 = std::min(x1, w + 2);
                if (x0 >= x1) return;
                run(y, x0, x1, slot + size_t(x0 + 2) * 4u);
                runs[k].push_back({x0, x1});
                done = x1;
            });
            if (y - reach >= first) commit(y - reach);
            progressStep(y);
        }
        for (int32_t y = std::max(first, last - reach + 1); y <= last; ++y) commit(y);
    }

    // The result of a filter that leaves every pixel as it is: a copy of the buffer, or
    // with the reuse flag the buffer itself.
    Bits unchangedResult() { return reuseBuffer_ ? takeBuffer() : buffer_; }
    // Hands the buffer over as the result and leaves the object an empty one.
    Bits takeBuffer() {
        Bits out = std::move(buffer_);
        buffer_ = Bits();
        return out;
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
    bool reuseBuffer_ = false;
};

// Milliseconds of the steady clock, wrapping like a 32-bit tick counter.
uint32_t steadyMilliseconds();

} // namespace ostrivex
