// A set of pixels kept as y-x banded rectangles, the way a window system keeps its
// clipping regions: horizontal bands of equal top and bottom, sorted top to bottom, each
// holding sorted, disjoint, non-touching x spans; vertically adjacent bands with equal
// spans are merged. Right and bottom edges are exclusive throughout.
//
// Its dump is the platform's RGNDATA layout (a 32-byte header of eight 32-bit integers,
// then the rectangles band by band), which is also the whole of a selection file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrivex {

struct Rect {
    int32_t left = 0, top = 0, right = 0, bottom = 0;
    bool isEmpty() const { return right <= left || bottom <= top; }
    bool operator==(const Rect&) const = default;
};

struct PointI {
    int32_t x = 0, y = 0;
    bool operator==(const PointI&) const = default;
};

struct Span {
    int32_t x1 = 0, x2 = 0; // [x1, x2)
    bool operator==(const Span&) const = default;
};

struct Band {
    int32_t top = 0, bottom = 0; // [top, bottom)
    std::vector<Span> spans;
    bool operator==(const Band&) const = default;
};

class Region {
public:
    enum class Op { And, Or, Xor, Diff };

    Region() = default;

    // The rectangle; reversed edges are swapped, a rectangle with no area is empty.
    static Region rect(int32_t left, int32_t top, int32_t right, int32_t bottom);
    static Region rect(const Rect& r) { return rect(r.left, r.top, r.right, r.bottom); }
    // The ellipse inscribed in the box, as pixel-row rectangles.
    static Region ellipse(int32_t left, int32_t top, int32_t right, int32_t bottom);
    // The polygon with the alternate (even-odd) fill rule, as pixel-row rectangles.
    static Region polygon(const std::vector<PointI>& points);
    // The union of any rectangles, in any order.
    static Region fromRects(const std::vector<Rect>& rects);
    // From an RGNDATA dump: header of eight integers (only the count is used, clamped to
    // the data present), then the rectangles. Too short data gives an empty region.
    static Region fromData(const int32_t* data, size_t count);
    static Region fromData(const std::vector<int32_t>& data) {
        return fromData(data.data(), data.size());
    }

    bool isEmpty() const { return bands_.empty(); }
    // Bounding box; all zero for an empty region.
    Rect bounds() const;
    bool contains(int32_t x, int32_t y) const;
    // Spans of row y (nullptr when the row has none).
    const std::vector<Span>* rowSpans(int32_t y) const;
    const std::vector<Band>& bands() const { return bands_; }
    std::vector<Rect> rects() const;
    size_t rectCount() const;

    void offset(int32_t dx, int32_t dy);

    static Region combine(const Region& a, const Region& b, Op op);
    Region united(const Region& o) const { return combine(*this, o, Op::Or); }
    Region intersected(const Region& o) const { return combine(*this, o, Op::And); }
    Region subtracted(const Region& o) const { return combine(*this, o, Op::Diff); }
    Region xored(const Region& o) const { return combine(*this, o, Op::Xor); }

    // The RGNDATA dump: 32, 1, n, n * 16, box left, top, right, bottom, then n rectangles.
    std::vector<int32_t> dump() const;

    bool operator==(const Region&) const = default;

private:
    // Appends a band, merging it into the last one when they touch and have equal spans.
    void appendBand(int32_t top, int32_t bottom, std::vector<Span>&& spans);

    std::vector<Band> bands_;
};

// Combines two sorted span lists.
std::vector<Span> combineSpans(const std::vector<Span>& a, const std::vector<Span>& b,
                               Region::Op op);

} // namespace ostrivex
