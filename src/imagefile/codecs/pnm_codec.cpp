// Portable anymaps: P1..P3 as text, P4..P6 binary, maximum values up to 65535 (two bytes
// a sample, most significant first, above 255).
#include "imagefile/codecs/codec.h"

#include <algorithm>
#include <vector>

namespace ostrivex::codec {

namespace {

// Skips blanks and comments ('#' to the end of the line); false at the end of the file.
bool skipBlanks(std::FILE* in) {
    for (;;) {
        const int c = getc_unlocked(in);
        if (c == EOF) return false;
        if (c == '#') {
            int d;
            while ((d = getc_unlocked(in)) != EOF && d != '\n' && d != '\r') {
            }
            if (d == EOF) return false;
            continue;
        }
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f') continue;
        ungetc(c, in);
        return true;
    }
}

// A decimal number of the header or of a text raster, at most `max`.
bool readNumber(std::FILE* in, uint32_t max, uint32_t& out) {
    if (!skipBlanks(in)) return false;
    int c = getc_unlocked(in);
    if (c < '0' || c > '9') return false;
    uint64_t v = 0;
    do {
        v = v * 10 + uint64_t(c - '0');
        if (v > max) return false;
        c = getc_unlocked(in);
    } while (c >= '0' && c <= '9');
    if (c != EOF) ungetc(c, in);
    out = uint32_t(v);
    return true;
}

// A table from sample values to bytes: to 16 bits rounded, then as Scale16 does (so a
// maximum of 255 keeps its bytes and one of 65535 agrees with the other 16-bit readers).
std::vector<uint8_t> scaleTable(uint32_t maxval) {
    std::vector<uint8_t> t(size_t(maxval) + 1);
    for (uint32_t v = 0; v <= maxval; ++v)
        t[v] = Scale16(uint32_t((uint64_t(v) * 65535u + maxval / 2) / maxval));
    return t;
}

void putGrey(uint8_t* d, uint8_t g) {
    d[0] = d[1] = d[2] = g;
    d[3] = 0;
}

} // namespace

bool DecodePnm(std::FILE* in, const SizeLimits& limits, PixelSink& sink, DecodeInfo& info) {
    if (getc_unlocked(in) != 'P') return false;
    const int kind = getc_unlocked(in) - '0';
    if (kind < 1 || kind > 6) return false;
    uint32_t w = 0, h = 0, maxval = 1;
    if (!readNumber(in, uint32_t(kMaxSide), w) || !readNumber(in, uint32_t(kMaxSide), h))
        return false;
    const bool bitmap = kind == 1 || kind == 4;
    if (!bitmap && (!readNumber(in, 65535, maxval) || maxval == 0)) return false;
    if (!SizeAllowed(w, h, limits)) return false;
    // A binary raster starts after exactly one blank.
    if (kind >= 4) {
        const int c = getc_unlocked(in);
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') return false;
    }
    const int channels = (kind == 3 || kind == 6) ? 3 : 1;
    info.bpp = bitmap ? 1 : (maxval > 255 ? 16 : 8) * channels;
    info.dpiX = info.dpiY = 72;
    if (!sink.begin(int32_t(w), int32_t(h))) return false;

    if (bitmap) {
        // 1 is black. P4 rows are packed eight pixels a byte, padded to whole bytes.
        std::vector<uint8_t> packed((w + 7) / 8);
        for (uint32_t y = 0; y < h; ++y) {
            uint8_t* d = sink.row(int32_t(y));
            if (kind == 4) {
                if (std::fread(packed.data(), 1, packed.size(), in) != packed.size()) return false;
                for (uint32_t x = 0; x < w; ++x)
                    putGrey(d + x * 4, (packed[x >> 3] >> (7 - (x & 7))) & 1 ? 0 : 255);
            } else {
                for (uint32_t x = 0; x < w; ++x) {
                    // Text bitmaps may run their digits together ("0110").
                    if (!skipBlanks(in)) return false;
                    const int c = getc_unlocked(in);
                    if (c != '0' && c != '1') return false;
                    putGrey(d + x * 4, c == '1' ? 0 : 255);
                }
            }
        }
        return true;
    }

    const std::vector<uint8_t> scale = scaleTable(maxval);
    const bool wide = maxval > 255;
    const size_t samples = size_t(w) * size_t(channels);
    const size_t rowBytes = samples * (wide ? 2 : 1);
    // Binary rows are read many at a time (about 1 MB), straight into one buffer.
    const uint32_t rowsPerRead =
        kind >= 4 ? uint32_t(std::max<size_t>(1, std::min<size_t>(h, (1u << 20) / rowBytes))) : 1;
    std::vector<uint8_t> raw(kind >= 4 ? rowBytes * rowsPerRead : 0);
    std::vector<uint32_t> text(kind < 4 ? samples : 0);
    for (uint32_t y0 = 0; y0 < h; y0 += rowsPerRead) {
        const uint32_t n = std::min(rowsPerRead, h - y0);
        if (kind >= 4 && std::fread(raw.data(), 1, rowBytes * n, in) != rowBytes * n) return false;
        for (uint32_t r = 0; r < n; ++r) {
            uint8_t* d = sink.row(int32_t(y0 + r));
            const uint8_t* s = raw.data() + rowBytes * r;
            auto sample = [&](size_t i) -> uint8_t {
                uint32_t v;
                if (kind < 4)
                    v = text[i];
                else if (wide)
                    v = uint32_t(s[2 * i]) << 8 | s[2 * i + 1];
                else
                    v = s[i];
                return scale[v > maxval ? maxval : v];
            };
            if (kind < 4)
                for (size_t i = 0; i < samples; ++i)
                    if (!readNumber(in, 65535, text[i])) return false;
            if (channels == 1) {
                for (uint32_t x = 0; x < w; ++x)
                    putGrey(d + x * 4, sample(x));
            } else if (!wide && maxval == 255 && kind == 6) {
                for (uint32_t x = 0; x < w; ++x, s += 3, d += 4) {
                    d[0] = s[2];
                    d[1] = s[1];
                    d[2] = s[0];
                    d[3] = 0;
                }
            } else {
                for (uint32_t x = 0; x < w; ++x) {
                    d[x * 4 + 0] = sample(x * 3 + 2);
                    d[x * 4 + 1] = sample(x * 3 + 1);
                    d[x * 4 + 2] = sample(x * 3 + 0);
                    d[x * 4 + 3] = 0;
                }
            }
        }
    }
    return true;
}

bool EncodePpm(std::FILE* out, int32_t width, int32_t height,
               const uint8_t* (*rows)(const void* context, int32_t y), const void* context) {
    if (width < 1 || height < 1) return false;
    if (std::fprintf(out, "P6\n%d %d\n255\n", width, height) < 0) return false;
    const size_t rowBytes = size_t(width) * 3;
    const int32_t rowsPerWrite = int32_t(std::max<size_t>(1, (1u << 20) / rowBytes));
    std::vector<uint8_t> buffer(rowBytes * size_t(std::min(rowsPerWrite, height)));
    for (int32_t y0 = 0; y0 < height; y0 += rowsPerWrite) {
        const int32_t n = std::min(rowsPerWrite, height - y0);
        uint8_t* d = buffer.data();
        for (int32_t r = 0; r < n; ++r) {
            const uint8_t* s = rows(context, y0 + r);
            for (int32_t x = 0; x < width; ++x, s += 4, d += 3) {
                d[0] = s[2];
                d[1] = s[1];
                d[2] = s[0];
            }
        }
        if (std::fwrite(buffer.data(), 1, rowBytes * size_t(n), out) != rowBytes * size_t(n))
            return false;
    }
    return true;
}

} // namespace ostrivex::codec
