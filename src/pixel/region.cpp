#include "pixel/region.h"

#include <algorithm>
#include <limits>

namespace ostrivex {

namespace {

bool keep(bool inA, bool inB, Region::Op op) {
    switch (op) {
    case Region::Op::And: return inA && inB;
    case Region::Op::Or: return inA || inB;
    case Region::Op::Xor: return inA != inB;
    case Region::Op::Diff: return inA && !inB;
    }
    return false;
}

// Appends [x1, x2) to a sorted span list, joining it to the last span when they touch.
void pushSpan(std::vector<Span>& out, int32_t x1, int32_t x2) {
    if (x2 <= x1) return;
    if (!out.empty() && out.back().x2 >= x1) {
        out.back().x2 = std::max(out.back().x2, x2);
        return;
    }
    out.push_back({x1, x2});
}

const std::vector<Span> kNoSpans;

} // namespace

std::vector<Span> combineSpans(const std::vector<Span>& a, const std::vector<Span>& b,
                               Region::Op op) {
    std::vector<Span> out;
    if (op == Region::Op::Or && b.empty()) return a;
    if ((op == Region::Op::Or || op == Region::Op::Xor) && a.empty()) return b;
    if ((op == Region::Op::Diff || op == Region::Op::Xor) && b.empty()) return a;
    // Sweep over the edges of both lists; at each edge both memberships are known.
    size_t ia = 0, ib = 0;
    bool inA = false, inB = false;
    int32_t start = 0;
    bool inside = false;
    while (ia < a.size() * 2 || ib < b.size() * 2) {
        const int32_t ea = ia < a.size() * 2
                               ? (ia % 2 == 0 ? a[ia / 2].x1 : a[ia / 2].x2)
                               : std::numeric_limits<int32_t>::max();
        const int32_t eb = ib < b.size() * 2
                               ? (ib % 2 == 0 ? b[ib / 2].x1 : b[ib / 2].x2)
                               : std::numeric_limits<int32_t>::max();
        const int32_t x = std::min(ea, eb);
        if (ea == x) { inA = (ia % 2 == 0); ++ia; }
        if (eb == x) { inB = (ib % 2 == 0); ++ib; }
        const bool now = keep(inA, inB, op);
        if (now && !inside) { start = x; inside = true; }
        else if (!now && inside) { pushSpan(out, start, x); inside = false; }
    }
    return out;
}

Region Region::rect(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    Region r;
    if (right > left && bottom > top) r.bands_.push_back({top, bottom, {{left, right}}});
    return r;
}

Region Region::fromRects(const std::vector<Rect>& rectsIn) {
    std::vector<Rect> rs;
    rs.reserve(rectsIn.size());
    for (Rect r : rectsIn) {
        if (r.left > r.right) std::swap(r.left, r.right);
        if (r.top > r.bottom) std::swap(r.top, r.bottom);
        if (!r.isEmpty()) rs.push_back(r);
    }
    Region out;
    if (rs.empty()) return out;
    std::vector<int32_t> ys;
    ys.reserve(rs.size() * 2);
    for (const Rect& r : rs) { ys.push_back(r.top); ys.push_back(r.bottom); }
    std::sort(ys.begin(), ys.end());
    ys.erase(std::unique(ys.begin(), ys.end()), ys.end());
    std::sort(rs.begin(), rs.end(), [](const Rect& a, const Rect& b) { return a.top < b.top; });
    // Sweep down the rows; the active list holds the rectangles that cover the band.
    std::vector<Rect> active;
    size_t next = 0;
    std::vector<Span> spans;
    for (size_t i = 0; i + 1 < ys.size(); ++i) {
        const int32_t y0 = ys[i], y1 = ys[i + 1];
        active.erase(std::remove_if(active.begin(), active.end(),
                                    [y0](const Rect& r) { return r.bottom <= y0; }),
                     active.end());
        while (next < rs.size() && rs[next].top <= y0) active.push_back(rs[next++]);
        if (active.empty()) continue;
        std::sort(active.begin(), active.end(),
                  [](const Rect& a, const Rect& b) { return a.left < b.left; });
        spans.clear();
        for (const Rect& r : active) pushSpan(spans, r.left, r.right);
        out.appendBand(y0, y1, std::vector<Span>(spans));
    }
    return out;
}

Region Region::fromData(const int32_t* data, size_t count) {
    if (data == nullptr || count < 8) return Region();
    const size_t available = (count - 8) / 4;
    size_t n = data[2] < 0 ? 0 : size_t(uint32_t(data[2]));
    n = std::min(n, available);
    // A dump lists its rectangles band by band; such data is taken over in one pass
    // (touching spans joined, equal neighbouring bands merged). Anything else goes
    // through the general union, whose sweep costs more.
    Region banded;
    std::vector<Span> spans;
    int32_t top = 0, bottom = 0;
    bool inOrder = true;
    for (size_t i = 0; i < n && inOrder; ++i) {
        const int32_t* p = data + 8 + i * 4;
        const Rect r{p[0], p[1], p[2], p[3]};
        if (r.isEmpty()) {
            inOrder = false;
        } else if (i > 0 && r.top == top) {
            inOrder = r.bottom == bottom && r.left >= spans.back().x2;
            if (inOrder) pushSpan(spans, r.left, r.right);
        } else {
            inOrder = i == 0 || r.top >= bottom;
            if (!inOrder) break;
            banded.appendBand(top, bottom, std::move(spans));
            spans.clear();
            top = r.top;
            bottom = r.bottom;
            pushSpan(spans, r.left, r.right);
        }
    }
    if (inOrder) {
        banded.appendBand(top, bottom, std::move(spans));
        return banded;
    }
    std::vector<Rect> rs(n);
    for (size_t i = 0; i < n; ++i) {
        const int32_t* p = data + 8 + i * 4;
        rs[i] = {p[0], p[1], p[2], p[3]};
    }
    return fromRects(rs);
}

void Region::appendBand(int32_t top, int32_t bottom, std::vector<Span>&& spans) {
    if (spans.empty() || bottom <= top) return;
    if (!bands_.empty() && bands_.back().bottom == top && bands_.back().spans == spans) {
        bands_.back().bottom = bottom;
        return;
    }
    bands_.push_back({top, bottom, std::move(spans)});
}

Rect Region::bounds() const {
    if (bands_.empty()) return {};
    Rect r{std::numeric_limits<int32_t>::max(), bands_.front().top,
           std::numeric_limits<int32_t>::min(), bands_.back().bottom};
    for (const Band& b : bands_) {
        r.left = std::min(r.left, b.spans.front().x1);
        r.right = std::max(r.right, b.spans.back().x2);
    }
    return r;
}

const std::vector<Span>* Region::rowSpans(int32_t y) const {
    auto it = std::upper_bound(bands_.begin(), bands_.end(), y,
                               [](int32_t v, const Band& b) { return v < b.bottom; });
    if (it == bands_.end() || y < it->top) return nullptr;
    return &it->spans;
}

bool Region::contains(int32_t x, int32_t y) const {
    const std::vector<Span>* spans = rowSpans(y);
    if (!spans) return false;
    auto it = std::upper_bound(spans->begin(), spans->end(), x,
                               [](int32_t v, const Span& s) { return v < s.x2; });
    return it != spans->end() && x >= it->x1;
}

std::vector<Rect> Region::rects() const {
    std::vector<Rect> out;
    out.reserve(rectCount());
    for (const Band& b : bands_)
        for (const Span& s : b.spans) out.push_back({s.x1, b.top, s.x2, b.bottom});
    return out;
}

size_t Region::rectCount() const {
    size_t n = 0;
    for (const Band& b : bands_) n += b.spans.size();
    return n;
}

void Region::offset(int32_t dx, int32_t dy) {
    for (Band& b : bands_) {
        b.top += dy;
        b.bottom += dy;
        for (Span& s : b.spans) { s.x1 += dx; s.x2 += dx; }
    }
}

Region Region::combine(const Region& a, const Region& b, Op op) {
    // Every band edge of either side starts a new piece; within a piece both sides have
    // fixed spans, which are combined and appended (with vertical merging).
    std::vector<int32_t> ys;
    ys.reserve((a.bands_.size() + b.bands_.size()) * 2);
    for (const Band& x : a.bands_) { ys.push_back(x.top); ys.push_back(x.bottom); }
    for (const Band& x : b.bands_) { ys.push_back(x.top); ys.push_back(x.bottom); }
    std::sort(ys.begin(), ys.end());
    ys.erase(std::unique(ys.begin(), ys.end()), ys.end());
    Region out;
    size_t ia = 0, ib = 0;
    for (size_t i = 0; i + 1 < ys.size(); ++i) {
        const int32_t y0 = ys[i], y1 = ys[i + 1];
        while (ia < a.bands_.size() && a.bands_[ia].bottom <= y0) ++ia;
        while (ib < b.bands_.size() && b.bands_[ib].bottom <= y0) ++ib;
        const std::vector<Span>& sa =
            (ia < a.bands_.size() && a.bands_[ia].top <= y0) ? a.bands_[ia].spans : kNoSpans;
        const std::vector<Span>& sb =
            (ib < b.bands_.size() && b.bands_[ib].top <= y0) ? b.bands_[ib].spans : kNoSpans;
        if (sa.empty() && sb.empty()) continue;
        out.appendBand(y0, y1, combineSpans(sa, sb, op));
    }
    return out;
}

std::vector<int32_t> Region::dump() const {
    const size_t n = rectCount();
    std::vector<int32_t> out;
    out.reserve(8 + n * 4);
    const Rect box = bounds();
    out.insert(out.end(), {32, 1, int32_t(n), int32_t(n * 16), box.left, box.top, box.right,
                           box.bottom});
    for (const Band& b : bands_)
        for (const Span& s : b.spans) out.insert(out.end(), {s.x1, b.top, s.x2, b.bottom});
    return out;
}

} // namespace ostrivex
