// Windows and OS/2 bitmaps: core (12-byte), 40, 52, 56, 108 and 124-byte headers; 1, 4
// and 8-bit palettes, RLE8 and RLE4, 16 and 32 bits with or without bit fields, 24 bits;
// bottom-up or top-down rows.
#include "imagefile/codecs/codec.h"

#include <vector>

namespace ostrivex::codec {

namespace {

uint32_t le16(const uint8_t* p) {
    return uint32_t(p[0]) | uint32_t(p[1]) << 8;
}
uint32_t le32(const uint8_t* p) {
    return le16(p) | le16(p + 2) << 16;
}

// One colour field of a bit-field pixel: where it starts and how wide it is, and the
// table that widens its values to 8 bits by repeating their bits (5 bits abcde become
// abcdeabc), as the other readers do; wider fields keep their top 8 bits.
struct Field {
    int shift = 0;
    int bits = 0;
    std::vector<uint8_t> scale;
    bool set(uint32_t mask) {
        if (mask == 0) return true;
        while (!(mask & 1)) mask >>= 1, ++shift;
        while (mask & 1) mask >>= 1, ++bits;
        if (mask != 0 || bits > 16) return false; // not one run of ones
        const uint32_t max = (1u << bits) - 1;
        scale.resize(max + 1);
        for (uint32_t v = 0; v <= max; ++v) {
            if (bits >= 8) {
                scale[v] = uint8_t(v >> (bits - 8));
                continue;
            }
            uint32_t wide = 0;
            int filled = 0;
            for (; filled < 8; filled += bits)
                wide = wide << bits | v;
            scale[v] = uint8_t(wide >> (filled - 8));
        }
        return true;
    }
    uint8_t get(uint32_t pixel) const {
        return bits ? scale[(pixel >> shift) & ((1u << bits) - 1)] : 0;
    }
};

enum : uint32_t { kRgb = 0, kRle8 = 1, kRle4 = 2, kBitFields = 3, kAlphaBitFields = 6 };

struct Palette {
    std::vector<uint8_t> bgr; // three bytes an entry
    void put(uint8_t* d, uint32_t index) const {
        // An index past the table reads as its first colour, as Windows shows it.
        const size_t i = index * 3 < bgr.size() ? index * 3 : 0;
        d[0] = bgr[i], d[1] = bgr[i + 1], d[2] = bgr[i + 2], d[3] = 255;
    }
};

// RLE8 and RLE4 into palette indices, bottom row first. Pixels the file skips (with a
// delta or an early end of line) keep index 0; pixels past the end of a row are dropped
// (some writers encode the row's padding too). False if the data runs out before the
// picture is whole.
bool unpackRle(std::FILE* in, bool four, int32_t w, int32_t h, std::vector<uint8_t>& idx) {
    int32_t x = 0, y = 0;
    auto byte = [in]() { return std::fgetc(in); };
    auto put = [&](int v) {
        if (x < w && y < h) idx[size_t(y) * size_t(w) + size_t(x)] = uint8_t(v);
        ++x;
    };
    for (;;) {
        const int n = byte(), c = byte();
        if (c == EOF) return y >= h; // some writers stop after the last row
        if (n > 0) {
            for (int i = 0; i < n; ++i)
                put(four ? (i & 1 ? c & 15 : c >> 4) : c);
        } else if (c == 0) { // end of line
            x = 0;
            ++y;
        } else if (c == 1) { // end of picture
            return true;
        } else if (c == 2) { // move right and up
            const int dx = byte(), dy = byte();
            if (dy == EOF) return false;
            x += dx;
            y += dy;
        } else { // c pixels as they are, padded to a whole 16-bit word
            const int bytes = four ? (c + 1) / 2 : c;
            uint8_t raw[256];
            if (std::fread(raw, 1, size_t(bytes), in) != size_t(bytes)) return false;
            for (int i = 0; i < c; ++i)
                put(four ? (i & 1 ? raw[i / 2] & 15 : raw[i / 2] >> 4) : raw[i]);
            if (bytes & 1) byte();
        }
    }
}

} // namespace

bool DecodeBmp(std::FILE* in, const SizeLimits& limits, PixelSink& sink, DecodeInfo& info) {
    uint8_t head[14 + 124] = {};
    if (std::fread(head, 1, 18, in) != 18 || head[0] != 'B' || head[1] != 'M') return false;
    const uint32_t dataAt = le32(head + 10), headerSize = le32(head + 14);
    if (headerSize != 12 && (headerSize < 40 || headerSize > 124)) return false;
    if (std::fread(head + 18, 1, headerSize - 4, in) != headerSize - 4) return false;
    const uint8_t* h = head + 14;
    const bool core = headerSize == 12;
    int64_t w, height;
    uint32_t bpp, compression = kRgb, colours = 0;
    if (core) {
        w = le16(h + 4), height = le16(h + 6), bpp = le16(h + 10);
    } else {
        w = int32_t(le32(h + 4)), height = int32_t(le32(h + 8)), bpp = le16(h + 14);
        compression = le32(h + 16), colours = le32(h + 32);
        info.dpiX = int(le32(h + 24) * 0.0254 + 0.5);
        info.dpiY = int(le32(h + 28) * 0.0254 + 0.5);
        if (info.dpiX <= 0 || info.dpiY <= 0) info.dpiX = info.dpiY = 72;
    }
    const bool topDown = height < 0;
    if (topDown) height = -height;
    if (!SizeAllowed(w, height, limits)) return false;
    info.bpp = int(bpp);

    // Bit fields: inside a header of 52 bytes or more, else right after a 40-byte one.
    uint32_t masks[4] = {0, 0, 0, 0};
    if (compression == kBitFields || compression == kAlphaBitFields) {
        if (bpp != 16 && bpp != 32) return false;
        const int count = compression == kAlphaBitFields ? 4 : 3;
        if (headerSize == 40) {
            uint8_t m[16];
            if (std::fread(m, 4, size_t(count), in) != size_t(count)) return false;
            for (int i = 0; i < count; ++i)
                masks[i] = le32(m + 4 * i);
        } else {
            for (int i = 0; i < 3; ++i)
                masks[i] = le32(h + 40 + 4 * i);
            if (headerSize >= 56) masks[3] = le32(h + 52);
        }
    } else if (bpp == 16) {
        masks[0] = 0x7C00, masks[1] = 0x03E0, masks[2] = 0x001F;
    } else if (bpp == 32 && compression == kRgb) {
        masks[0] = 0xFF0000, masks[1] = 0xFF00, masks[2] = 0xFF; // the fourth byte is unused
    } else if (compression == kRgb && bpp != 1 && bpp != 4 && bpp != 8 && bpp != 24) {
        return false;
    }
    if ((compression == kRle8 && bpp != 8) || (compression == kRle4 && bpp != 4) ||
        compression > kAlphaBitFields || compression == 4 || compression == 5 ||
        ((compression == kRle8 || compression == kRle4) && topDown))
        return false;
    Field fields[4];
    for (int i = 0; i < 4; ++i)
        if (!fields[i].set(masks[i])) return false;

    Palette palette;
    if (bpp <= 8) {
        const uint32_t most = 1u << bpp;
        const uint32_t n = colours == 0 || colours > most ? most : colours;
        const size_t entry = core ? 3 : 4;
        std::vector<uint8_t> raw(n * entry);
        if (std::fread(raw.data(), 1, raw.size(), in) != raw.size()) return false;
        for (uint32_t i = 0; i < n; ++i)
            palette.bgr.insert(palette.bgr.end(), raw.begin() + long(i * entry),
                               raw.begin() + long(i * entry + 3));
    }
    if (std::fseek(in, long(dataAt), SEEK_SET) != 0) return false;
    const int32_t width = int32_t(w), rows = int32_t(height);
    if (!sink.begin(width, rows)) return false;

    if (compression == kRle8 || compression == kRle4) {
        std::vector<uint8_t> idx(size_t(width) * size_t(rows), 0);
        if (!unpackRle(in, compression == kRle4, width, rows, idx)) return false;
        for (int32_t y = 0; y < rows; ++y) {
            uint8_t* d = sink.row(rows - 1 - y);
            for (int32_t x = 0; x < width; ++x)
                palette.put(d + x * 4, idx[size_t(y) * size_t(width) + size_t(x)]);
        }
    } else {
        const size_t stride = (size_t(width) * bpp + 31) / 32 * 4;
        if (uint64_t(dataAt) + stride * uint64_t(rows) > limits.fileBytes) return false; // cut
        std::vector<uint8_t> line(stride);
        for (int32_t y = 0; y < rows; ++y) {
            if (std::fread(line.data(), 1, stride, in) != stride) return false;
            uint8_t* d = sink.row(topDown ? y : rows - 1 - y);
            const uint8_t* s = line.data();
            for (int32_t x = 0; x < width; ++x, d += 4) {
                if (bpp <= 8) {
                    const uint32_t bit = uint32_t(x) * bpp;
                    const uint32_t v = (s[bit / 8] >> (8 - bpp - bit % 8)) & ((1u << bpp) - 1);
                    palette.put(d, v);
                } else if (bpp == 24) {
                    d[0] = s[x * 3], d[1] = s[x * 3 + 1], d[2] = s[x * 3 + 2], d[3] = 255;
                } else {
                    const uint32_t v = bpp == 16 ? le16(s + x * 2) : le32(s + x * 4);
                    d[0] = fields[2].get(v), d[1] = fields[1].get(v), d[2] = fields[0].get(v);
                    d[3] = fields[3].bits ? fields[3].get(v) : 255;
                }
            }
        }
    }

    // Alpha that is zero everywhere is a file that left the field unused: opaque. Other
    // alpha is laid over white, as the picture is shown.
    bool anyAlpha = false;
    if (fields[3].bits)
        for (int32_t y = 0; y < rows && !anyAlpha; ++y)
            for (int32_t x = 0; x < width; ++x)
                if (sink.row(y)[x * 4 + 3] != 0) {
                    anyAlpha = true;
                    break;
                }
    for (int32_t y = 0; y < rows; ++y) {
        uint8_t* d = sink.row(y);
        for (int32_t x = 0; x < width; ++x, d += 4) {
            if (anyAlpha && d[3] != 255)
                for (int c = 0; c < 3; ++c)
                    d[c] = uint8_t((d[c] * d[3] + 255 * (255 - d[3]) + 127) / 255);
            d[3] = 0;
        }
    }
    return true;
}

} // namespace ostrivex::codec
