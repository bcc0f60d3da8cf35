// Silicon Graphics image files: a 512-byte header, then each channel's rows bottom-up,
// either as they are or run-length encoded with a table of every row's place and length.
#include "imagefile/codecs/codec.h"

#include <vector>

namespace ostrivex::codec {

namespace {

uint32_t be16(const uint8_t* p) {
    return uint32_t(p[0]) << 8 | p[1];
}
uint32_t be32(const uint8_t* p) {
    return be16(p) << 16 | be16(p + 2);
}

bool readAt(std::FILE* in, uint64_t at, uint8_t* to, size_t n) {
    return std::fseek(in, long(at), SEEK_SET) == 0 && std::fread(to, 1, n, in) == n;
}

// Unpacks one RLE row of `count` samples of `bpc` bytes; false if it runs short or over.
bool unpackRow(const std::vector<uint8_t>& packed, int bpc, std::vector<uint32_t>& samples) {
    const size_t count = samples.size();
    size_t at = 0, out = 0;
    auto next = [&](uint32_t& v) {
        if (at + size_t(bpc) > packed.size()) return false;
        v = bpc == 2 ? be16(&packed[at]) : packed[at];
        at += size_t(bpc);
        return true;
    };
    for (;;) {
        uint32_t code = 0;
        if (!next(code)) return false;
        const uint32_t n = code & 0x7F;
        if (n == 0) break;
        if (out + n > count) return false;
        if (code & 0x80) {
            for (uint32_t i = 0; i < n; ++i)
                if (!next(samples[out++])) return false;
        } else {
            uint32_t v = 0;
            if (!next(v)) return false;
            for (uint32_t i = 0; i < n; ++i)
                samples[out++] = v;
        }
    }
    return out == count;
}

} // namespace

bool DecodeSgi(std::FILE* in, const SizeLimits& limits, PixelSink& sink, DecodeInfo& info) {
    uint8_t h[512];
    if (std::fread(h, 1, sizeof h, in) != sizeof h) return false;
    const uint32_t storage = h[2], bpc = h[3], dimension = be16(h + 4);
    const uint32_t w = be16(h + 6);
    const uint32_t rows = dimension == 1 ? 1 : be16(h + 8);
    const uint32_t channels = dimension < 3 ? 1 : be16(h + 10);
    if (be16(h) != 474 || storage > 1 || (bpc != 1 && bpc != 2) || dimension < 1 ||
        dimension > 3 || channels < 1 || be32(h + 104) != 0)
        return false;
    if (!SizeAllowed(w, rows, limits)) return false;
    const uint64_t rowBytes = uint64_t(w) * bpc;
    const uint64_t planes = uint64_t(rows) * channels;
    if (storage == 0 && 512 + rowBytes * planes > limits.fileBytes) return false;
    std::vector<uint8_t> table;
    if (storage == 1) {
        table.resize(planes * 8);
        if (table.size() > limits.fileBytes || !readAt(in, 512, table.data(), table.size()))
            return false;
    }
    info.bpp = int(bpc * 8 * channels);
    info.dpiX = info.dpiY = 72;
    if (!sink.begin(int32_t(w), int32_t(rows))) return false;

    // Grey files fill all three colour bytes; the fourth channel (alpha) is left out.
    const uint32_t used = channels >= 3 ? 3 : 1;
    std::vector<uint32_t> samples(w);
    std::vector<uint8_t> bytes;
    // The longest a packed row can honestly be: every sample a run of its own (a count and
    // the sample), and the end mark. Writers do split runs short.
    const uint64_t longestPacked = (2 * uint64_t(w) + 2) * bpc;
    for (uint32_t z = 0; z < used; ++z) {
        for (uint32_t y = 0; y < rows; ++y) {
            if (storage == 0) {
                bytes.resize(rowBytes);
                if (!readAt(in, 512 + (uint64_t(z) * rows + y) * rowBytes, bytes.data(), rowBytes))
                    return false;
                for (uint32_t x = 0; x < w; ++x)
                    samples[x] = bpc == 2 ? be16(&bytes[x * 2]) : bytes[x];
            } else {
                const uint64_t i = uint64_t(z) * rows + y;
                const uint32_t start = be32(&table[i * 4]);
                const uint32_t length = be32(&table[planes * 4 + i * 4]);
                if (length > longestPacked) return false;
                bytes.resize(length);
                if (!readAt(in, start, bytes.data(), length) || !unpackRow(bytes, int(bpc), samples))
                    return false;
            }
            uint8_t* d = sink.row(int32_t(rows - 1 - y));
            for (uint32_t x = 0; x < w; ++x) {
                const uint8_t v = bpc == 2 ? Scale16(samples[x]) : uint8_t(samples[x]);
                if (used == 1) {
                    d[x * 4] = d[x * 4 + 1] = d[x * 4 + 2] = v;
                    d[x * 4 + 3] = 0;
                } else {
                    d[x * 4 + 2 - z] = v;
                    if (z == 0) d[x * 4 + 3] = 0;
                }
            }
        }
    }
    return true;
}

} // namespace ostrivex::codec
