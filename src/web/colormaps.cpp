#include "web/colormaps.h"

#include "pixel/palettefile.h"
#include "web/optimizesettings.h"

#include <algorithm>
#include <cmath>

namespace ostrivex {

namespace {

constexpr PaletteColour rgb(uint32_t v) {
    return {uint8_t(v >> 16), uint8_t(v >> 8), uint8_t(v)};
}

uint8_t level(int i, int count) {
    return uint8_t(std::lround(double(i) * 255.0 / double(count - 1)));
}

Palette cube(int reds, int greens, int blues) {
    Palette p;
    p.reserve(size_t(reds * greens * blues));
    for (int r = 0; r < reds; ++r)
        for (int g = 0; g < greens; ++g)
            for (int b = 0; b < blues; ++b)
                p.push_back({level(r, reds), level(g, greens), level(b, blues)});
    return p;
}

// Red, green and blue levels of the "Fixed Color" cube of 2^bits entries (bits 3..8).
struct CubeLevels {
    int r, g, b;
};
CubeLevels cubeLevels(int bits) {
    switch (bits) {
    case 3: return {2, 2, 2};
    case 4: return {2, 4, 2};
    case 5: return {4, 4, 2};
    case 6: return {4, 4, 4};
    case 7: return {4, 8, 4};
    default: return {8, 8, 4};
    }
}

// The 20 static colours: the ten low entries, then the ten high ones.
constexpr PaletteColour kStaticLow[10] = {
    rgb(0x000000), rgb(0x800000), rgb(0x008000), rgb(0x808000), rgb(0x000080),
    rgb(0x800080), rgb(0x008080), rgb(0xC0C0C0), rgb(0xC0DCC0), rgb(0xA6CAF0)};
constexpr PaletteColour kStaticHigh[10] = {
    rgb(0xFFFBF0), rgb(0xA0A0A4), rgb(0x808080), rgb(0xFF0000), rgb(0x00FF00),
    rgb(0xFFFF00), rgb(0x0000FF), rgb(0xFF00FF), rgb(0x00FFFF), rgb(0xFFFFFF)};

// The static colours around the web-safe cube's colours that are not among them.
Palette staticAroundCube(const Palette& middleExtra) {
    Palette p(std::begin(kStaticLow), std::end(kStaticLow));
    const Palette fixed = SystemStaticColours();
    for (const PaletteColour& c : WebSafePalette())
        if (std::find(fixed.begin(), fixed.end(), c) == fixed.end()) p.push_back(c);
    p.insert(p.end(), middleExtra.begin(), middleExtra.end());
    p.insert(p.end(), std::begin(kStaticHigh), std::end(kStaticHigh));
    return p;
}

int squaredDistance(const PaletteColour& a, const PaletteColour& b) {
    const int dr = a.r - b.r, dg = a.g - b.g, db = a.b - b.b;
    return dr * dr + dg * dg + db * db;
}

} // namespace

Palette WebSafePalette() { return cube(6, 6, 6); }

Palette VgaColourMap() {
    // The palette dialog's VGA colours, the one table of them.
    const PaletteRecord vga = VgaPalette();
    Palette p;
    for (int i = 0; i < vga.PaletteCount; ++i)
        p.push_back({uint8_t(vga.PaletteColors[i][0]), uint8_t(vga.PaletteColors[i][1]),
                     uint8_t(vga.PaletteColors[i][2])});
    return p;
}

Palette FixedGreyPalette(int count) {
    count = std::clamp(count, 2, 256);
    Palette p;
    for (int i = 0; i < count; ++i) {
        const uint8_t v = level(i, count);
        p.push_back({v, v, v});
    }
    return p;
}

Palette FixedColorPalette(int bits) {
    if (bits <= 1) return {rgb(0x000000), rgb(0xFFFFFF)};
    if (bits == 2) return {rgb(0x000000), rgb(0x00FFFF), rgb(0xFF00FF), rgb(0xFFFFFF)};
    const CubeLevels l = cubeLevels(bits);
    return cube(l.r, l.g, l.b);
}

Palette SystemStaticColours() {
    Palette p(std::begin(kStaticLow), std::end(kStaticLow));
    p.insert(p.end(), std::begin(kStaticHigh), std::end(kStaticHigh));
    return p;
}

Palette MsMapPalette(int bits) {
    if (bits <= 1) return {rgb(0x000000), rgb(0xFFFFFF)};
    if (bits <= 4)
        return {rgb(0x000000), rgb(0x800000), rgb(0x008000), rgb(0x808000),
                rgb(0x000080), rgb(0x800080), rgb(0x008080), rgb(0xC0C0C0),
                rgb(0x808080), rgb(0xFF0000), rgb(0x00FF00), rgb(0xFFFF00),
                rgb(0x0000FF), rgb(0xFF00FF), rgb(0x00FFFF), rgb(0xFFFFFF)};
    return staticAroundCube({});
}

Palette Ms256Palette() {
    Palette greys;
    for (int i = 1; i <= 28; ++i) {
        const uint8_t v = uint8_t(std::lround(double(i) * 255.0 / 29.0));
        greys.push_back({v, v, v});
    }
    return staticAroundCube(greys);
}

Palette FixedPalette(int32_t paletteMode, int bits) {
    switch (paletteMode) {
    case MapMS: return MsMapPalette(bits);
    case MapFixedColor: return FixedColorPalette(bits);
    case MapVGA: return VgaColourMap();
    case MapMS256: return Ms256Palette();
    case MapWebSafe: return WebSafePalette();
    case MapFixedGrey: return FixedGreyPalette(1 << std::clamp(bits, 1, 8));
    default: return {};
    }
}

DitherSpread SpreadOf(int32_t paletteMode, int bits, const Palette& palette) {
    const auto step = [](int levels) { return levels > 1 ? int(std::lround(255.0 / (levels - 1))) : 255; };
    if (paletteMode == MapFixedGrey) {
        const int s = step(int(palette.size()));
        return {s, s, s};
    }
    if (paletteMode == MapWebSafe) return {51, 51, 51};
    if (paletteMode == MapFixedColor && bits >= 3) {
        const CubeLevels l = cubeLevels(bits);
        return {step(l.r), step(l.g), step(l.b)};
    }
    if (palette.size() < 2) return {};
    std::vector<int> nearest;
    nearest.reserve(palette.size());
    for (size_t i = 0; i < palette.size(); ++i) {
        int best = 3 * 255 * 255;
        for (size_t j = 0; j < palette.size(); ++j)
            if (j != i && !(palette[j] == palette[i]))
                best = std::min(best, squaredDistance(palette[i], palette[j]));
        nearest.push_back(best);
    }
    std::nth_element(nearest.begin(), nearest.begin() + long(nearest.size() / 2), nearest.end());
    const int s = std::min(255, int(std::lround(std::sqrt(double(nearest[nearest.size() / 2])))));
    return {s, s, s};
}

// --- NearestColour -----------------------------------------------------------------------

namespace {
constexpr int kCellBits = 3;                    // 8 levels of a channel per cell
constexpr uint32_t kCells = 1u << (3 * (8 - kCellBits));
constexpr uint32_t kCacheBits = 16;
} // namespace

NearestColour::NearestColour(const Palette& palette)
    : palette_(palette.empty() ? Palette{PaletteColour{}} : palette),
      cellStart_(kCells, -1), cellCount_(kCells, 0), cacheKey_(1u << kCacheBits, 0),
      cacheIndex_(1u << kCacheBits, 0) {
    if (palette_.size() > 256) palette_.resize(256);
}

void NearestColour::fillCell(uint32_t cell) {
    const int shift = 8 - kCellBits;
    const int lo[3] = {int(cell >> (2 * shift)) << kCellBits, int((cell >> shift) & ((1u << shift) - 1)) << kCellBits,
                       int(cell & ((1u << shift) - 1)) << kCellBits};
    const int span = (1 << kCellBits) - 1;
    // For each entry the least and the greatest squared distance to any colour of the cell;
    // an entry whose least distance exceeds the smallest greatest distance can never win.
    const size_t n = palette_.size();
    std::vector<Candidate> all(n);
    int smallestMax = INT32_MAX;
    for (size_t i = 0; i < n; ++i) {
        const int v[3] = {palette_[i].r, palette_[i].g, palette_[i].b};
        int minD = 0, maxD = 0;
        for (int c = 0; c < 3; ++c) {
            const int a = lo[c], b = lo[c] + span;
            const int below = v[c] < a ? a - v[c] : v[c] > b ? v[c] - b : 0;
            const int far = std::max(std::abs(v[c] - a), std::abs(v[c] - b));
            minD += below * below;
            maxD += far * far;
        }
        all[i] = {uint8_t(i), minD};
        smallestMax = std::min(smallestMax, maxD);
    }
    std::erase_if(all, [smallestMax](const Candidate& c) { return c.minDistance > smallestMax; });
    std::stable_sort(all.begin(), all.end(),
                     [](const Candidate& a, const Candidate& b) { return a.minDistance < b.minDistance; });
    cellStart_[cell] = int32_t(candidates_.size());
    cellCount_[cell] = uint16_t(all.size());
    candidates_.insert(candidates_.end(), all.begin(), all.end());
}

uint8_t NearestColour::operator()(uint8_t r, uint8_t g, uint8_t b) {
    const uint32_t key = (uint32_t(r) << 16 | uint32_t(g) << 8 | b) | 1u << 24;
    const uint32_t slot = (key * 2654435761u) >> (32 - kCacheBits);
    if (cacheKey_[slot] == key) return cacheIndex_[slot];

    const int shift = 8 - kCellBits;
    const uint32_t cell = uint32_t(r >> kCellBits) << (2 * shift) | uint32_t(g >> kCellBits) << shift |
                          uint32_t(b >> kCellBits);
    if (cellStart_[cell] < 0) fillCell(cell);
    const Candidate* c = candidates_.data() + cellStart_[cell];
    const Candidate* end = c + cellCount_[cell];
    int bestD = INT32_MAX;
    uint8_t best = 0;
    for (; c != end; ++c) {
        if (c->minDistance > bestD) break; // sorted: no later entry can come closer
        const PaletteColour& p = palette_[c->index];
        const int dr = r - p.r, dg = g - p.g, db = b - p.b;
        const int d = dr * dr + dg * dg + db * db;
        if (d < bestD || (d == bestD && c->index < best)) {
            bestD = d;
            best = c->index;
        }
    }
    cacheKey_[slot] = key;
    cacheIndex_[slot] = best;
    return best;
}

} // namespace ostrivex
