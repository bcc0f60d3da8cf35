// The selection of a document: which pixels paint tools and filters may touch.
//
// Three regions: `RegionMain`, the rectangle of the whole image; `Region`, the selection in
// image pixels; and `RegionScaled`, the selection scaled to the display zoom, kept so that
// the marching-ants outline does not rescale on every tick. Each of them is either null
// (std::nullopt) or a region; a null selection ("nothing was ever selected") is distinct
// from an empty one (everything was subtracted away), because subtracting from a null
// selection must leave it null.
//
// The selection is also kept as its RGNDATA dump (the region data): a 32-byte header of
// eight 32-bit integers (32, 1, rectangle count n, n * 16, box left, top, right, bottom)
// followed by n rectangles left, top, right, bottom, band by band. That array, as 32-bit
// little-endian integers, is the whole of a selection file (`.osf`).
//
// Plain C++ with no windows: the canvas draws the outline from `RegionScaled` and the ant
// brush of the current phase.
#pragma once

#include "pixel/region.h"
#include "pixel/selectionfile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivex {

class cBitRegion {
  public:
    // Combine modes, the platform's region modes. The select tool uses union (add, new)
    // and difference (subtract); the other three are kept for completeness.
    static constexpr int32_t ModeAnd = 1;
    static constexpr int32_t ModeUnion = 2;
    static constexpr int32_t ModeXor = 3;
    static constexpr int32_t ModeDifference = 4;
    static constexpr int32_t ModeCopy = 5;

    // One 8x8 one-bit pattern, a byte a row, the top row first. The most significant bit
    // of a row is its leftmost pixel. Drawn like a monochrome pattern brush: a clear bit
    // takes the text colour (black) and a set bit the background colour (white), so the
    // outline is black and white stripes.
    using AntBrush = std::array<uint8_t, 8>;
    // Brush 0: diagonal stripes four pixels wide.
    static constexpr AntBrush kAntRows = {240, 120, 60, 30, 15, 135, 195, 225};
    static constexpr int32_t kAntBrushCount = 8;

    cBitRegion();

    // `Clear`, then `RegionMain` := the rectangle.
    void Init(int32_t left, int32_t top, int32_t right, int32_t bottom);
    // Combine a rectangle, or the ellipse inscribed in the box, into the selection by
    // mode; with crop set the result is then cut to `RegionMain`.
    void CreateRect(int32_t left, int32_t top, int32_t right, int32_t bottom, int32_t mode,
                    bool crop);
    void CreateEllipse(int32_t left, int32_t top, int32_t right, int32_t bottom, int32_t mode,
                       bool crop);
    // `xy` holds x, y pairs (x0, y0, x1, y1, ...); the polygon is filled alternate (even-odd).
    // Fewer than two points is ignored; a trailing odd element is not a point.
    void CreatePolygon(const std::vector<int32_t>& xy, int32_t mode, bool crop);
    // Nothing selected (or an empty box): select all of `RegionMain`'s box. Otherwise the
    // selection becomes `RegionMain` XOR selection.
    void Invert();
    // Selection := selection AND `RegionMain`.
    void Crop();
    void Offset(int32_t dx, int32_t dy);
    // All three regions become null and both data arrays are erased. The ant phase and the
    // zoom factor stay.
    void Clear();

    // Ant phase + 1, wrapping 8 to 0.
    void RotateBrush();
    int32_t AntPhase() const { return antPhase_; }
    // Brush k has, as row i, row (i + k) mod 8 of brush 0; k is taken mod 8.
    static AntBrush MakeAntBrush(int32_t k);
    const AntBrush& AntBrushAt(int32_t k) const { return antBrushes_[size_t(k & 7)]; }
    const AntBrush& CurrentAntBrush() const { return antBrushes_[size_t(antPhase_)]; }
    // Bit of a brush under a pixel of the device: the pattern repeats every 8 pixels from
    // the device origin. True is a set bit (background colour).
    static bool AntBit(const AntBrush& brush, int32_t x, int32_t y) {
        return (brush[size_t(y & 7)] >> (7 - (x & 7))) & 1;
    }

    // Box of the selection. Returns false, leaving the outs untouched, when the selection
    // is null or empty.
    bool BoundRect(int32_t& left, int32_t& top, int32_t& right, int32_t& bottom) const;
    // True when the selection is null or its box is empty.
    bool IsEmptyRegion() const;

    // A copy of the region data, and its element count.
    std::vector<int32_t> GetData() const { return data_; }
    size_t GetDataCount() const { return data_.size(); }
    // The region data with its coordinates scaled by the zoom factor.
    const std::vector<int32_t>& ScaledData() const { return scaledData_; }

    float ZoomFactor() const { return zoomFactor_; }
    // A value of 0 or more is stored as it is, a negative one (or NaN) as 0.01; then the
    // scaled region is rebuilt.
    void SetZoomFactor(float z);

    // Read access to the regions (each may be null). Qualified type names: inside this
    // class `Region` names the accessor.
    const std::optional<ostrivex::Region>& Region() const { return region_; }
    const std::optional<ostrivex::Region>& RegionScaled() const { return regionScaled_; }
    const std::optional<ostrivex::Region>& RegionMain() const { return regionMain_; }
    // `Region` (write): a copy taken through the data (dump, then rebuilt from the dump),
    // then the scaled region is rebuilt. A null argument makes the selection null.
    void SetRegion(const std::optional<ostrivex::Region>& region);

    // Dumps the selection into the region data (nothing when the selection is null).
    void StoreRegionData();
    // Rebuilds `RegionScaled` from a copy of the region data whose elements from index 4 on
    // (box and rectangles, not the header) are multiplied by the zoom factor and rounded to
    // nearest, ties to even. A zoom factor of 0 leaves the copy unscaled. Nothing happens
    // while the selection is null.
    void RebuildScaledRegion();

    // Reads a selection file. The file's elements become the region data as they stand and
    // the selection is built from them, replacing the old one; it is not cropped to the
    // image. Returns false, leaving everything as it was, when the file cannot be read.
    // A damaged file (see bitregion.cpp) gives no selection (null) and returns false.
    bool LoadFromFile(const std::string& fileName);
    // Writes the region data, 4 bytes little-endian an element, nothing else. An empty
    // selection writes a file of no bytes. Returns false when the file cannot be written.
    bool SaveToFile(const std::string& fileName) const;

  private:
    void combineShape(ostrivex::Region&& shape, int32_t mode, bool crop);
    void regionChanged(); // StoreRegionData, then RebuildScaledRegion

    std::optional<ostrivex::Region> regionMain_;
    std::optional<ostrivex::Region> region_;
    std::optional<ostrivex::Region> regionScaled_;
    float zoomFactor_ = 1.0f;
    std::vector<int32_t> data_;
    std::vector<int32_t> scaledData_;
    std::array<AntBrush, kAntBrushCount> antBrushes_{};
    int32_t antPhase_ = 0;
};

// The pixels a paint primitive or filter may touch: the selection when it is not empty,
// otherwise the whole image (`RegionMain`). Before `Init` that is an empty region.
const Region& EffectiveRegion(const cBitRegion& selection);


} // namespace ostrivex
