// The ellipse and polygon rasterisers of Region. Both give whole pixels, row by row, and
// both decide a pixel by its centre (x + 0.5, y + 0.5):
//
// - Ellipse: the ellipse inscribed in the box [left, right) x [top, bottom) has its centre
//   at the box's centre and half-axes of half the box's width and height. A pixel is in when
//   its centre lies inside the ellipse or on its outline. The test runs in exact integer
//   arithmetic on doubled coordinates, so the result is symmetric in both axes.
// - Polygon: alternate (even-odd) fill of the closed polygon through the points. A pixel is
//   in when its centre lies inside; a centre exactly on an edge counts as inside when the
//   edge is a left edge of its span and as outside when it is a right edge (the usual
//   top-left rule), so that a polygon through a rectangle's four corners gives exactly that
//   rectangle and two polygons that share an edge never share a pixel. Vertices are whole
//   numbers, so a row's centre line never passes through a vertex and horizontal edges
//   never cross it.
#include "pixel/region.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace ostrivex {

namespace {

using i128 = __int128;

// Smallest integer >= n / d for d > 0.
int64_t ceilDiv(i128 n, i128 d) {
    i128 q = n / d;
    if (n % d != 0 && n > 0) ++q;
    return int64_t(q);
}

} // namespace

Region Region::ellipse(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    Region out;
    if (right <= left || bottom <= top) return out;
    // Doubled coordinates relative to the centre: X = 2x + 1 - (left + right) for pixel
    // column x, and likewise Y. The pixel is in when X^2 * B^2 + Y^2 * A^2 <= A^2 * B^2,
    // with A and B the box's width and height.
    const i128 a = i128(right) - left, b = i128(bottom) - top;
    const i128 a2 = a * a, b2 = b * b;
    const int64_t sy = int64_t(top) + bottom;
    for (int64_t y = top; y < bottom; ++y) {
        const i128 yy = 2 * y + 1 - sy;
        const i128 room = a2 * (b2 - yy * yy); // X^2 * B^2 must not exceed this
        if (room < 0) continue;
        // The row's pixels are left + k .. right - 1 - k, where k is the smallest inset with
        // (A - 2k - 1)^2 * B^2 <= room. Start from the real-valued answer and correct it.
        const double half = std::sqrt(double(room) / double(b2)); // |X| allowed
        int64_t k = int64_t(std::floor((double(a) - 1.0 - half) / 2.0));
        k = std::max<int64_t>(k, 0);
        auto fits = [&](int64_t kk) {
            const i128 x = a - 2 * i128(kk) - 1;
            return x * x * b2 <= room;
        };
        while (k > 0 && fits(k - 1))
            --k;
        while (2 * i128(k) < a && !fits(k))
            ++k;
        if (2 * i128(k) >= a) continue;
        out.appendBand(int32_t(y), int32_t(y + 1), {{int32_t(left + k), int32_t(right - k)}});
    }
    return out;
}

Region Region::polygon(const std::vector<PointI>& points) {
    Region out;
    const size_t n = points.size();
    if (n < 3) return out;
    struct Edge {
        int64_t x0, y0, x1, y1; // y0 < y1
    };
    std::vector<Edge> edges;
    edges.reserve(n);
    int64_t yMin = INT64_MAX, yMax = INT64_MIN;
    for (size_t i = 0; i < n; ++i) {
        PointI p = points[i], q = points[(i + 1) % n];
        if (p.y == q.y) continue; // never crosses a centre line
        if (p.y > q.y) std::swap(p, q);
        edges.push_back({p.x, p.y, q.x, q.y});
        yMin = std::min<int64_t>(yMin, p.y);
        yMax = std::max<int64_t>(yMax, q.y);
    }
    if (edges.empty()) return out;
    std::sort(edges.begin(), edges.end(), [](const Edge& e, const Edge& f) { return e.y0 < f.y0; });
    std::vector<const Edge*> active;
    std::vector<int64_t> xs;
    std::vector<Span> spans;
    size_t next = 0;
    for (int64_t y = yMin; y < yMax; ++y) {
        // Edges whose span [y0, y1) holds row y: the centre line y + 0.5 crosses them.
        active.erase(
            std::remove_if(active.begin(), active.end(), [y](const Edge* e) { return e->y1 <= y; }),
            active.end());
        while (next < edges.size() && edges[next].y0 <= y) {
            if (edges[next].y1 > y) active.push_back(&edges[next]);
            ++next;
        }
        xs.clear();
        for (const Edge* e : active) {
            // Crossing xc = x0 + (y + 0.5 - y0) * (x1 - x0) / (y1 - y0); the first pixel
            // whose centre is at or right of it is ceil(xc - 0.5). Over 2 * (y1 - y0):
            const i128 dy = e->y1 - e->y0;
            const i128 num =
                2 * i128(e->x0) * dy + (2 * (i128(y) - e->y0) + 1) * (e->x1 - e->x0) - dy;
            xs.push_back(ceilDiv(num, 2 * dy));
        }
        std::sort(xs.begin(), xs.end());
        spans.clear();
        for (size_t i = 0; i + 1 < xs.size(); i += 2) {
            const int64_t x1 = xs[i], x2 = xs[i + 1];
            if (x2 <= x1) continue;
            // Spans of one row touch when two crossings fall in one pixel gap: join them.
            if (!spans.empty() && spans.back().x2 >= x1)
                spans.back().x2 = int32_t(x2);
            else
                spans.push_back({int32_t(x1), int32_t(x2)});
        }
        out.appendBand(int32_t(y), int32_t(y + 1), std::vector<Span>(spans));
    }
    return out;
}

} // namespace ostrivex
