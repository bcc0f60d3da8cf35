// The effect frame: destination sizing, the key rule, the working copy and the blurs.
#include "pixel/effects/frame.h"

#include <cstring>
#include <stdexcept>

namespace ostrivex::effects {

void finishRow(const uint8_t* s, uint8_t* d, int32_t n, const Key& key) {
    if (!key.on) {
        for (int32_t i = 0; i < n; ++i)
            store32(d + 4 * i, (load32(d + 4 * i) & kColourBytes) | (load32(s + 4 * i) & ~kColourBytes));
        return;
    }
    const uint32_t k = key.word;
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t sw = load32(s + 4 * i);
        uint32_t dw = (load32(d + 4 * i) & kColourBytes) | (sw & ~kColourBytes);
        dw = (dw & kColourBytes) == k ? nudged(dw) : dw;
        dw = (sw & kColourBytes) == k ? sw : dw;
        store32(d + 4 * i, dw);
    }
}

void finishKey(Bits& dest, const Bits& src, const Key& key) {
    for (int32_t y = 0; y < src.height(); ++y) finishRow(src.row(y), dest.row(y), src.width(), key);
}

void prepareDest(Bits& dest, const Bits& src) {
    if (&dest == &src) throw std::invalid_argument("an effect needs two pictures");
    dest.resetForOverwrite(src.width(), src.height());
}

void mapChannels(Bits& dest, const Bits& src, int32_t keyColour, const uint8_t* blue,
                 const uint8_t* green, const uint8_t* red) {
    pointRows(dest, src, keyColour, [&](const uint8_t* s, uint8_t* d, int32_t n) {
        for (int32_t i = 0; i < n; ++i) {
            const uint32_t v = load32(s + 4 * i);
            store32(d + 4 * i, uint32_t(blue[v & 255u]) | uint32_t(green[v >> 8 & 255u]) << 8 |
                                   uint32_t(red[v >> 16 & 255u]) << 16);
        }
    });
}

bool hasKeyPixels(const Bits& src, const Key& key) {
    if (!key.on) return false;
    for (int32_t y = 0; y < src.height(); ++y) {
        const uint8_t* p = src.row(y);
        uint32_t found = 0;
        for (int32_t x = 0; x < src.width(); ++x) found |= uint32_t((load32(p + 4 * x) & kColourBytes) == key.word);
        if (found) return true;
    }
    return false;
}

void repeatEdges(Bits& b) {
    const int32_t w = b.width(), h = b.height();
    if (w == 0 || h == 0) return;
    for (int32_t y = 0; y < h; ++y) {
        const uint32_t left = load32(b.pixel(0, y)), right = load32(b.pixel(w - 1, y));
        store32(b.pixel(-2, y), left);
        store32(b.pixel(-1, y), left);
        store32(b.pixel(w, y), right);
        store32(b.pixel(w + 1, y), right);
    }
    const size_t rowBytes = b.stride();
    for (int32_t y : {-2, -1}) std::memcpy(b.pixel(-2, y), b.pixel(-2, 0), rowBytes);
    for (int32_t y : {h, h + 1}) std::memcpy(b.pixel(-2, y), b.pixel(-2, h - 1), rowBytes);
}

namespace {

// Fills the key runs of one row from their neighbours: a run between two other pixels
// blends from the left one to the right one, a run at an end takes its one neighbour.
// Returns false when the row holds key pixels only.
bool fillRow(uint8_t* p, int32_t w, const Key& key) {
    int32_t x = 0;
    bool any = false;
    while (x < w) {
        if (!key.is(load32(p + 4 * x))) {
            any = true;
            ++x;
            continue;
        }
        const int32_t a = x;
        while (x < w && key.is(load32(p + 4 * x))) ++x;
        const int32_t b = x; // [a, b) is key
        if (a == 0 && b == w) return false;
        const uint8_t* l = a > 0 ? p + 4 * (a - 1) : p + 4 * b;
        const uint8_t* r = b < w ? p + 4 * b : p + 4 * (a - 1);
        const int32_t span = b - a + 1;
        for (int32_t i = a; i < b; ++i) {
            const int32_t t = i - a + 1;
            for (int c = 0; c < 3; ++c)
                p[4 * i + c] = uint8_t((l[c] * (span - t) + r[c] * t + span / 2) / span);
        }
    }
    return any;
}

} // namespace

void makeWorkingCopy(Bits& out, const Bits& src, const Key& key) {
    const int32_t w = src.width(), h = src.height();
    out.resetForOverwrite(w, h);
    for (int32_t y = 0; y < h; ++y) std::memcpy(out.row(y), src.row(y), size_t(w) * 4u);
    if (hasKeyPixels(src, key)) {
        std::vector<char> filled(size_t(h), 0);
        int32_t lastFilled = -1;
        for (int32_t y = 0; y < h; ++y)
            if (fillRow(out.row(y), w, key)) {
                filled[size_t(y)] = 1;
                lastFilled = y;
            }
        if (lastFilled < 0) {
            // Nothing but key pixels: a neutral grey stands in.
            for (int32_t y = 0; y < h; ++y)
                for (int32_t x = 0; x < w; ++x) store32(out.pixel(x, y), 0x00808080u);
        } else {
            // Rows of key pixels only take the nearest filled row (the one above on a tie).
            std::vector<int32_t> above(size_t(h), -1);
            int32_t seen = -1;
            for (int32_t y = 0; y < h; ++y) {
                if (filled[size_t(y)]) seen = y;
                above[size_t(y)] = seen;
            }
            int32_t below = -1;
            for (int32_t y = h - 1; y >= 0; --y) {
                if (filled[size_t(y)]) {
                    below = y;
                    continue;
                }
                const int32_t a = above[size_t(y)];
                const int32_t from = a < 0 ? below : (below < 0 || y - a <= below - y ? a : below);
                std::memcpy(out.row(y), out.row(from), size_t(w) * 4u);
            }
        }
    }
    repeatEdges(out);
}

Bits workingCopy(const Bits& src, const Key& key) {
    Bits out;
    makeWorkingCopy(out, src, key);
    return out;
}

namespace {

// One box pass along the rows: out row y from in row y, radius r[y] (or r for all).
void blurRows(const Bits& in, Bits& out, const int32_t* radius, int32_t r0) {
    const int32_t w = in.width(), h = in.height();
    std::vector<uint32_t> line(size_t(w) * 3u);
    for (int32_t y = 0; y < h; ++y) {
        const int32_t r = radius ? radius[y] : r0;
        const uint8_t* s = in.row(y);
        uint8_t* d = out.row(y);
        if (r <= 0) {
            if (d != s) std::memcpy(d, s, size_t(w) * 4u);
            continue;
        }
        const uint32_t n = uint32_t(2 * r + 1);
        const uint64_t m = ((uint64_t(1) << 32) + n - 1) / n; // sum * m >> 32 = sum / n
        uint32_t sum[3] = {0, 0, 0};
        for (int32_t i = -r; i <= r; ++i) {
            const uint8_t* p = s + 4 * clampTo(i, 0, w - 1);
            for (int c = 0; c < 3; ++c) sum[c] += p[c];
        }
        // The row is read from a copy, so that out may be in.
        for (int32_t x = 0; x < w; ++x)
            for (int c = 0; c < 3; ++c) line[size_t(3 * x + c)] = s[4 * x + c];
        for (int32_t x = 0; x < w; ++x) {
            uint8_t* p = d + 4 * x;
            for (int c = 0; c < 3; ++c) p[c] = uint8_t((sum[c] * m + (m >> 1)) >> 32);
            p[3] = 0;
            const int32_t add = std::min(x + r + 1, w - 1), drop = std::max(x - r, 0);
            for (int c = 0; c < 3; ++c)
                sum[c] += line[size_t(3 * add + c)] - line[size_t(3 * drop + c)];
        }
    }
}

// One box pass along the columns with radius r for every row: running sums per column,
// walked down the picture.
void blurColumns(const Bits& in, Bits& out, int32_t r) {
    const int32_t w = in.width(), h = in.height();
    if (r <= 0) {
        if (&in != &out)
            for (int32_t y = 0; y < h; ++y) std::memcpy(out.row(y), in.row(y), size_t(w) * 4u);
        return;
    }
    const size_t nb = size_t(w) * 4u;
    const uint32_t n = uint32_t(2 * r + 1);
    const uint64_t m = ((uint64_t(1) << 32) + n - 1) / n;
    std::vector<uint32_t> sum(nb, 0);
    // Rows still needed as input once out has overwritten them (when out is in): a ring of
    // the last r + 1 input rows.
    std::vector<uint8_t> ring(nb * size_t(r + 1));
    auto inputRow = [&](int32_t y) -> const uint8_t* {
        y = clampTo(y, 0, h - 1);
        return in.row(y);
    };
    for (int32_t i = -r; i <= r; ++i) {
        const uint8_t* p = inputRow(i);
        for (size_t k = 0; k < nb; ++k) sum[k] += p[k];
    }
    for (int32_t y = 0; y < h; ++y) {
        // Keep input row y before it is overwritten.
        std::memcpy(ring.data() + nb * size_t(y % (r + 1)), in.row(y), nb);
        uint8_t* d = out.row(y);
        for (size_t k = 0; k < nb; ++k) d[k] = uint8_t((sum[k] * m + (m >> 1)) >> 32);
        const int32_t add = std::min(y + r + 1, h - 1);
        const int32_t drop = std::max(y - r, 0);
        const uint8_t* a = in.row(add); // not yet written: add > y
        if (add <= y) a = ring.data() + nb * size_t(add % (r + 1));
        const uint8_t* s = ring.data() + nb * size_t(drop % (r + 1));
        for (size_t k = 0; k < nb; ++k) sum[k] += uint32_t(a[k]) - uint32_t(s[k]);
    }
}

} // namespace

void boxBlur(const Bits& in, Bits& out, int32_t r) {
    if (&out != &in) out.resetForOverwrite(in.width(), in.height());
    blurRows(in, out, nullptr, r);
    blurColumns(out, out, r);
}

void smoothBlur(const Bits& in, Bits& out, int32_t r) {
    boxBlur(in, out, r);
    boxBlur(out, out, r);
    boxBlur(out, out, r);
}

void rowRadiusBlur(const Bits& in, Bits& out, const std::vector<int32_t>& radius) {
    const int32_t w = in.width(), h = in.height();
    if (&out != &in) out.resetForOverwrite(w, h);
    blurRows(in, out, radius.data(), 0);
    // Columns: the window of row y is [y - radius[y], y + radius[y]], summed from prefix
    // sums of a strip of columns at a time.
    constexpr int32_t kStrip = 64;
    std::vector<uint32_t> prefix(size_t(h + 1) * kStrip * 4u);
    std::vector<uint8_t> result(size_t(h) * kStrip * 4u);
    for (int32_t x0 = 0; x0 < w; x0 += kStrip) {
        const int32_t nb = std::min(kStrip, w - x0) * 4;
        std::fill(prefix.begin(), prefix.begin() + nb, 0u);
        for (int32_t y = 0; y < h; ++y) {
            const uint8_t* p = out.pixel(x0, y);
            const uint32_t* a = prefix.data() + size_t(y) * kStrip * 4u;
            uint32_t* b = prefix.data() + size_t(y + 1) * kStrip * 4u;
            for (int32_t k = 0; k < nb; ++k) b[k] = a[k] + p[k];
        }
        for (int32_t y = 0; y < h; ++y) {
            const int32_t r = radius[size_t(y)];
            uint8_t* d = result.data() + size_t(y) * kStrip * 4u;
            if (r <= 0) {
                std::memcpy(d, out.pixel(x0, y), size_t(nb));
                continue;
            }
            // Rows past the edges repeat the edge rows.
            const int32_t lo = y - r, hi = y + r;
            const int32_t a = std::max(lo, 0), b = std::min(hi, h - 1);
            const uint32_t* pa = prefix.data() + size_t(a) * kStrip * 4u;
            const uint32_t* pb = prefix.data() + size_t(b + 1) * kStrip * 4u;
            const uint8_t* top = out.pixel(x0, 0);
            const uint8_t* bottom = out.pixel(x0, h - 1);
            const uint32_t extraTop = uint32_t(a - lo), extraBottom = uint32_t(hi - b);
            const uint32_t n = uint32_t(2 * r + 1);
            for (int32_t k = 0; k < nb; ++k) {
                const uint32_t s = pb[k] - pa[k] + extraTop * top[k] + extraBottom * bottom[k];
                d[k] = uint8_t((s + n / 2) / n);
            }
        }
        for (int32_t y = 0; y < h; ++y)
            std::memcpy(out.pixel(x0, y), result.data() + size_t(y) * kStrip * 4u, size_t(nb));
    }
}

std::vector<uint8_t> lumaPlane(const Bits& b) {
    const int32_t w = b.width(), h = b.height();
    const size_t pw = size_t(w + 2);
    std::vector<uint8_t> plane(pw * size_t(h + 2));
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* p = b.row(y);
        uint8_t* q = plane.data() + size_t(y + 1) * pw + 1;
        for (int32_t x = 0; x < w; ++x) q[x] = uint8_t(lumaOf(load32(p + 4 * x)));
        q[-1] = q[0];
        q[w] = q[w - 1];
    }
    if (h > 0) {
        std::memcpy(plane.data(), plane.data() + pw, pw);
        std::memcpy(plane.data() + size_t(h + 1) * pw, plane.data() + size_t(h) * pw, pw);
    }
    return plane;
}

} // namespace ostrivex::effects
