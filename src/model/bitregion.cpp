#include "model/bitregion.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <utility>

namespace ostrivex {

namespace {

// Header of the region data: eight elements, the rectangle count at index 2, the box from
// index 4 and the rectangles from index 8.
constexpr size_t kScaledFrom = 4;

const Region kNoPixels;

// The shape combined into an existing selection by a platform mode. An unknown mode
// leaves the selection as it was, as a failed combine does.
std::optional<Region> combineByMode(const Region& a, const Region& b, int32_t mode) {
    switch (mode) {
    case cBitRegion::ModeAnd:
        return Region::combine(a, b, Region::Op::And);
    case cBitRegion::ModeUnion:
        return Region::combine(a, b, Region::Op::Or);
    case cBitRegion::ModeXor:
        return Region::combine(a, b, Region::Op::Xor);
    case cBitRegion::ModeDifference:
        return Region::combine(a, b, Region::Op::Diff);
    case cBitRegion::ModeCopy:
        return a;
    default:
        return std::nullopt;
    }
}

int32_t scaleElement(int32_t v, float z) {
    // The product in double is exact for every 32-bit element and float factor, so the
    // tie cases (2.5, 3.5) are real ties and round to even.
    const double r = std::nearbyint(double(v) * double(z));
    if (r >= double(std::numeric_limits<int32_t>::max()))
        return std::numeric_limits<int32_t>::max();
    if (r <= double(std::numeric_limits<int32_t>::min()))
        return std::numeric_limits<int32_t>::min();
    return int32_t(r);
}

} // namespace

cBitRegion::cBitRegion() {
    for (int32_t k = 0; k < kAntBrushCount; ++k)
        antBrushes_[size_t(k)] = MakeAntBrush(k);
}

cBitRegion::AntBrush cBitRegion::MakeAntBrush(int32_t k) {
    AntBrush b{};
    const int32_t shift = k & 7;
    for (int32_t i = 0; i < 8; ++i)
        b[size_t(i)] = kAntRows[size_t((i + shift) & 7)];
    return b;
}

void cBitRegion::RotateBrush() {
    antPhase_ = (antPhase_ + 1) % kAntBrushCount;
}

void cBitRegion::Init(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    Clear();
    regionMain_ = ostrivex::Region::rect(left, top, right, bottom);
}

void cBitRegion::Clear() {
    regionMain_.reset();
    region_.reset();
    regionScaled_.reset();
    data_.clear();
    scaledData_.clear();
}

void cBitRegion::combineShape(ostrivex::Region&& shape, int32_t mode, bool crop) {
    if (region_) {
        if (std::optional<ostrivex::Region> r = combineByMode(*region_, shape, mode))
            region_ = std::move(*r);
    } else if (mode != ModeDifference) {
        // Nothing selected yet: the shape is the selection. A difference into nothing
        // makes nothing, and the selection stays null.
        region_ = std::move(shape);
    }
    if (crop && region_ && regionMain_) region_ = region_->intersected(*regionMain_);
    regionChanged();
}

void cBitRegion::CreateRect(int32_t left, int32_t top, int32_t right, int32_t bottom, int32_t mode,
                            bool crop) {
    combineShape(ostrivex::Region::rect(left, top, right, bottom), mode, crop);
}

void cBitRegion::CreateEllipse(int32_t left, int32_t top, int32_t right, int32_t bottom,
                               int32_t mode, bool crop) {
    combineShape(ostrivex::Region::ellipse(left, top, right, bottom), mode, crop);
}

void cBitRegion::CreatePolygon(const std::vector<int32_t>& xy, int32_t mode, bool crop) {
    const size_t count = xy.size() / 2;
    if (count < 2) return;
    std::vector<PointI> points(count);
    for (size_t i = 0; i < count; ++i)
        points[i] = {xy[2 * i], xy[2 * i + 1]};
    combineShape(ostrivex::Region::polygon(points), mode, crop);
}

void cBitRegion::Invert() {
    const Rect mainBox = regionMain_ ? regionMain_->bounds() : Rect{};
    const Rect box = region_ ? region_->bounds() : Rect{};
    if (box.isEmpty())
        region_ = ostrivex::Region::rect(mainBox);
    else
        region_ = ostrivex::Region::combine(regionMain_ ? *regionMain_ : kNoPixels, *region_,
                                            ostrivex::Region::Op::Xor);
    regionChanged();
}

void cBitRegion::Crop() {
    if (!region_ || !regionMain_) return;
    region_ = region_->intersected(*regionMain_);
    regionChanged();
}

void cBitRegion::Offset(int32_t dx, int32_t dy) {
    if (!region_) return;
    region_->offset(dx, dy);
    regionChanged();
}

bool cBitRegion::BoundRect(int32_t& left, int32_t& top, int32_t& right, int32_t& bottom) const {
    if (!region_) return false;
    const Rect box = region_->bounds();
    if (box.isEmpty()) return false;
    left = box.left;
    top = box.top;
    right = box.right;
    bottom = box.bottom;
    return true;
}

bool cBitRegion::IsEmptyRegion() const {
    return !region_ || region_->bounds().isEmpty();
}

void cBitRegion::SetZoomFactor(float z) {
    // NaN fails the test too and becomes 0.01, like a negative factor.
    zoomFactor_ = (z >= 0.0f) ? z : 0.01f;
    RebuildScaledRegion();
}

void cBitRegion::SetRegion(const std::optional<ostrivex::Region>& region) {
    if (!region) {
        region_.reset();
        regionScaled_.reset();
        data_.clear();
        scaledData_.clear();
        return;
    }
    data_ = region->dump();
    region_ = ostrivex::Region::fromData(data_);
    RebuildScaledRegion();
}

void cBitRegion::StoreRegionData() {
    if (region_) data_ = region_->dump();
}

void cBitRegion::RebuildScaledRegion() {
    if (!region_) return;
    scaledData_ = data_;
    if (zoomFactor_ > 0.0f)
        for (size_t i = kScaledFrom; i < scaledData_.size(); ++i)
            scaledData_[i] = scaleElement(scaledData_[i], zoomFactor_);
    regionScaled_ = ostrivex::Region::fromData(scaledData_);
}

void cBitRegion::regionChanged() {
    StoreRegionData();
    RebuildScaledRegion();
}

bool cBitRegion::LoadFromFile(const std::string& fileName) {
    std::vector<int32_t> elements;
    const SelectionFileRead read = ReadSelectionFile(fileName, elements);
    if (read == SelectionFileRead::CannotRead) return false;
    // The old selection is replaced, never combined: a damaged file leaves none.
    if (read == SelectionFileRead::Damaged) {
        SetRegion(std::nullopt);
        return false;
    }
    data_ = std::move(elements);
    region_ = ostrivex::Region::fromData(data_);
    RebuildScaledRegion();
    return true;
}

bool cBitRegion::SaveToFile(const std::string& fileName) const {
    std::ofstream out(fileName, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    if (!IsEmptyRegion()) {
        std::vector<unsigned char> bytes(data_.size() * 4);
        for (size_t i = 0; i < data_.size(); ++i) {
            const uint32_t v = uint32_t(data_[i]);
            unsigned char* p = bytes.data() + i * 4;
            p[0] = uint8_t(v);
            p[1] = uint8_t(v >> 8);
            p[2] = uint8_t(v >> 16);
            p[3] = uint8_t(v >> 24);
        }
        out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    }
    out.close();
    return bool(out);
}

const Region& EffectiveRegion(const cBitRegion& selection) {
    if (!selection.IsEmptyRegion()) return *selection.Region();
    return selection.RegionMain() ? *selection.RegionMain() : kNoPixels;
}

} // namespace ostrivex
