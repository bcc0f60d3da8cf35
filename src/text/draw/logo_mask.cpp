#include "text/draw/logo_mask.h"

#include <algorithm>

namespace ostrivex::logo {

namespace {

// Two-pass chessboard distance to the pixels where `seed` is true.
template <class Seed> std::vector<int> chessboard(int w, int h, int cap, Seed seed) {
    const int far = cap + 1;
    std::vector<int> d(size_t(w) * size_t(h), far);
    auto at = [&](int x, int y) -> int& { return d[size_t(y) * size_t(w) + size_t(x)]; };
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            if (seed(x, y)) {
                at(x, y) = 0;
                continue;
            }
            int v = far;
            if (x > 0) v = std::min(v, at(x - 1, y) + 1);
            if (y > 0) {
                v = std::min(v, at(x, y - 1) + 1);
                if (x > 0) v = std::min(v, at(x - 1, y - 1) + 1);
                if (x + 1 < w) v = std::min(v, at(x + 1, y - 1) + 1);
            }
            at(x, y) = std::min(v, far);
        }
    for (int y = h - 1; y >= 0; --y)
        for (int x = w - 1; x >= 0; --x) {
            int v = at(x, y);
            if (x + 1 < w) v = std::min(v, at(x + 1, y) + 1);
            if (y + 1 < h) {
                v = std::min(v, at(x, y + 1) + 1);
                if (x + 1 < w) v = std::min(v, at(x + 1, y + 1) + 1);
                if (x > 0) v = std::min(v, at(x - 1, y + 1) + 1);
            }
            at(x, y) = std::min(v, far);
        }
    return d;
}

} // namespace

void SmearInto(const Mask& m, Mask& out, int dx, int dy, int d) {
    if (d < 1) return;
    // A pixel is set when a set pixel of `m` lies 1 to d steps back along (dx, dy): one pass
    // per line, remembering how far back the last set pixel was.
    const bool alongRows = dx != 0;
    const int lines = alongRows ? m.h : m.w, length = alongRows ? m.w : m.h;
    const int step = alongRows ? dx : dy;
    for (int line = 0; line < lines; ++line) {
        int since = d + 1; // steps since the last set pixel, capped
        for (int i = 0; i < length; ++i) {
            const int pos = step > 0 ? i : length - 1 - i;
            const int x = alongRows ? pos : line, y = alongRows ? line : pos;
            if (since <= d) out.at(x, y) = 255;
            since = m.at(x, y) ? 1 : std::min(since + 1, d + 1);
        }
    }
}

std::vector<int> RingDistance(const Mask& m, int cap) {
    return chessboard(m.w, m.h, cap, [&](int x, int y) { return m.at(x, y) != 0; });
}

std::vector<int> InnerDistance(const Mask& m, int cap) {
    // The frame beyond the picture is unset: pixels on the edge are at most 1 from it.
    std::vector<int> d = chessboard(m.w, m.h, cap, [&](int x, int y) { return m.at(x, y) == 0; });
    for (int y = 0; y < m.h; ++y)
        for (int x = 0; x < m.w; ++x) {
            const int edge = 1 + std::min(std::min(x, m.w - 1 - x), std::min(y, m.h - 1 - y));
            int& v = d[size_t(y) * size_t(m.w) + size_t(x)];
            if (v > 0) v = std::min(v, edge);
        }
    return d;
}

Mask SoftenMask(const Mask& m) {
    Mask out(m.w, m.h);
    // Rows of the (1 2 1) sum first, then columns; outside the picture reads as empty.
    std::vector<int> rows(size_t(m.w) * size_t(m.h));
    for (int y = 0; y < m.h; ++y)
        for (int x = 0; x < m.w; ++x) {
            const int l = x > 0 ? m.at(x - 1, y) : 0, r = x + 1 < m.w ? m.at(x + 1, y) : 0;
            rows[size_t(y) * size_t(m.w) + size_t(x)] = l + 2 * m.at(x, y) + r;
        }
    for (int y = 0; y < m.h; ++y)
        for (int x = 0; x < m.w; ++x) {
            const size_t i = size_t(y) * size_t(m.w) + size_t(x);
            const int u = y > 0 ? rows[i - size_t(m.w)] : 0,
                      dn = y + 1 < m.h ? rows[i + size_t(m.w)] : 0;
            out.a[i] = uint8_t((u + 2 * rows[i] + dn + 8) / 16);
        }
    return out;
}

Mask BlurMask(const Mask& m, int radius) {
    if (radius < 1) return m;
    Mask cur = m;
    const int n = 2 * radius + 1;
    std::vector<int> line;
    for (int pass = 0; pass < 2; ++pass) {
        Mask tmp(m.w, m.h);
        line.assign(size_t(std::max(m.w, m.h)) + 1, 0);
        for (int y = 0; y < m.h; ++y) { // along rows
            line[0] = 0;
            for (int x = 0; x < m.w; ++x)
                line[size_t(x) + 1] = line[size_t(x)] + cur.at(x, y);
            for (int x = 0; x < m.w; ++x) {
                const int a = std::max(0, x - radius), b = std::min(m.w, x + radius + 1);
                tmp.at(x, y) = uint8_t((line[size_t(b)] - line[size_t(a)] + n / 2) / n);
            }
        }
        for (int x = 0; x < m.w; ++x) { // along columns
            line[0] = 0;
            for (int y = 0; y < m.h; ++y)
                line[size_t(y) + 1] = line[size_t(y)] + tmp.at(x, y);
            for (int y = 0; y < m.h; ++y) {
                const int a = std::max(0, y - radius), b = std::min(m.h, y + radius + 1);
                cur.at(x, y) = uint8_t((line[size_t(b)] - line[size_t(a)] + n / 2) / n);
            }
        }
    }
    return cur;
}

Mask Shifted(const Mask& m, int dx, int dy) {
    Mask out(m.w, m.h);
    for (int y = std::max(0, dy); y < std::min(m.h, m.h + dy); ++y)
        for (int x = std::max(0, dx); x < std::min(m.w, m.w + dx); ++x)
            out.at(x, y) = m.at(x - dx, y - dy);
    return out;
}

} // namespace ostrivex::logo
