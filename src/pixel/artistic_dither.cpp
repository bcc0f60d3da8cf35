// Artistic filters that reduce or modulate colour: palette mapping with its own error
// diffusion, black and white by Stucki diffusion, and the texture bump map.
#include "pixel/bitfilter.h"
#include "pixel/vbmath.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace ostrivex {

namespace {

// The nearest palette entry, shared with the palette dialog: best starts at 255 per
// channel (765 in all), an exact match wins at once, otherwise a strictly smaller sum of
// absolute differences; the first entry found wins a tie, and a colour 765 away from
// every entry keeps entry 0.
int32_t nearestEntry(const int32_t (*colours)[3], int32_t count, int32_t r, int32_t g,
                     int32_t b) {
    int32_t best = 765, index = 0;
    for (int32_t i = 0; i < count; ++i) {
        const int32_t* c = colours[i];
        if (c[0] == r && c[1] == g && c[2] == b) return i;
        const int32_t sum = std::abs(r - c[0]) + std::abs(g - c[1]) + std::abs(b - c[2]);
        if (sum < best) {
            best = sum;
            index = i;
        }
    }
    return index;
}

} // namespace

// Each pixel of the region takes its nearest palette colour. With dithering, the error is
// spread through a working copy of the image: 7/16 to the right while x is below the last
// column, and 4/16 down, only for columns 1 to the last but one. The two diagonal
// neighbours below get nothing, so 5/16 of each error is lost: this is the palette look
// the program has always had, not Floyd-Steinberg. An error of 3 or less is not spread.
Bits cBitFilter::PaletteApply(bool dither, const int32_t (*colours)[3], int32_t count) {
    Bits out = buffer_;
    RegionBounds(0);
    if (count > 256) count = 256;
    if (!colours || count < 1) { // an empty palette gives entry 0, which is not there
        finishProgress();
        return out;
    }
    Bits work = buffer_;
    const int32_t w1 = lastColumn_, h1 = lastRow_;
    auto spread = [](uint8_t* p, const int32_t err[3], int32_t weight) {
        for (int c = 0; c < 3; ++c) p[c] = clampByte(p[c] + err[c] * weight / 16);
    };
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        for (int32_t x = x0; x < x1; ++x) {
            uint8_t* wp = work.pixel(x, y);
            const int32_t b = wp[0], g = wp[1], r = wp[2];
            const int32_t* c = colours[nearestEntry(colours, count, r, g, b)];
            uint8_t* d = out.pixel(x, y);
            d[0] = clampByte(c[2]);
            d[1] = clampByte(c[1]);
            d[2] = clampByte(c[0]);
            if (!dither) continue;
            const int32_t err[3] = {b - c[2], g - c[1], r - c[0]};
            if (std::abs(err[0]) + std::abs(err[1]) + std::abs(err[2]) <= 3) continue;
            if (x < w1) spread(work.pixel(x + 1, y), err, 7);
            if (y < h1 && x >= 1 && x < w1) spread(work.pixel(x, y + 1), err, 4);
        }
    });
    finishProgress();
    return out;
}

// Black and white with the Stucki weights over 42: 8 and 4 to the right, 2 4 8 4 2 on the
// next row and 1 2 4 2 1 on the one after, taken from a table by error (-255..255). The
// grey is the truncated mean of the three channels, brightened by grey * 10 / level when
// level is not 0 and capped at 255; with the error it carries it turns white above 127.
// Errors go through the rows whatever the region; only region pixels are written.
Bits cBitFilter::StuckiBW(int32_t level) {
    Bits out = buffer_;
    RegionBounds(0);
    constexpr int kWeights[4] = {8, 4, 2, 1};
    std::vector<std::array<int32_t, 4>> share(511);
    for (int32_t e = -255; e <= 255; ++e)
        for (int k = 0; k < 4; ++k) share[size_t(e + 255)][size_t(k)] = e * kWeights[k] / 42;

    const int32_t w = lastColumn_ + 1;
    // Three rows of carried error, with two columns of slack on each side.
    std::vector<int32_t> rows[3];
    for (auto& r : rows) r.assign(size_t(std::max(w, 0)) + 4, 0);
    int32_t* cur = rows[0].data() + 2;
    int32_t* next = rows[1].data() + 2;
    int32_t* after = rows[2].data() + 2;

    for (int32_t y = boxTop_; y <= boxBottom_; ++y) {
        forEachSpanInRow(y, [&](int32_t, int32_t x0, int32_t x1) {
            uint8_t* p = out.pixel(x0, y);
            for (int32_t x = x0; x < x1; ++x, p += 4) {
                int32_t grey = (p[0] + p[1] + p[2]) / 3;
                if (level != 0) grey = std::min(grey + grey * 10 / level, 255);
                const int32_t v = std::clamp(grey + cur[x], 0, 255);
                const int32_t ink = v > 127 ? 255 : 0;
                p[0] = p[1] = p[2] = uint8_t(ink);
                const auto& s = share[size_t(v - ink + 255)];
                cur[x + 1] += s[0];
                cur[x + 2] += s[1];
                next[x - 2] += s[2];
                next[x - 1] += s[1];
                next[x] += s[0];
                next[x + 1] += s[1];
                next[x + 2] += s[2];
                after[x - 2] += s[3];
                after[x - 1] += s[2];
                after[x] += s[1];
                after[x + 1] += s[2];
                after[x + 2] += s[3];
            }
        });
        // The rows move up one; the freed row starts clean.
        int32_t* freed = cur;
        cur = next;
        next = after;
        after = freed;
        std::fill(after - 2, after + w + 2, 0);
        progressStep(y);
    }
    finishProgress();
    return out;
}

// The tile is laid from the box's corner at steps of Wt - 1 and Ht - 1, so each copy's
// last column and row lie under the next copy's first; the later copy wins, which makes
// the tile place of (x, y) ((x - left) mod (Wt - 1), (y - top) mod (Ht - 1)). Each channel
// is multiplied by tile blue / 128, rounded and clamped.
Bits cBitFilter::Texturize(const Bits& tile) {
    Bits out = buffer_;
    RegionBounds(0);
    const int32_t stepX = tile.width() - 1, stepY = tile.height() - 1;
    if (stepX < 1 || stepY < 1) { // a step of 0 would never move on
        finishProgress();
        return out;
    }
    // product[blue][channel] = min(255, round(channel * blue / 128)).
    std::vector<uint8_t> product(256 * 256);
    for (int bl = 0; bl < 256; ++bl)
        for (int c = 0; c < 256; ++c)
            product[size_t(bl * 256 + c)] = clampByte(vbRound(c * bl / 128.0));
    const int32_t left = boxLeft_, top = boxTop_;
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        const uint8_t* tileRow = tile.row((y - top) % stepY);
        int32_t tx = (x0 - left) % stepX;
        uint8_t* p = out.pixel(x0, y);
        for (int32_t x = x0; x < x1; ++x, p += 4) {
            const uint8_t* m = product.data() + size_t(tileRow[tx * 4]) * 256;
            p[0] = m[p[0]];
            p[1] = m[p[1]];
            p[2] = m[p[2]];
            if (++tx == stepX) tx = 0;
        }
    });
    finishProgress();
    return out;
}

} // namespace ostrivex
