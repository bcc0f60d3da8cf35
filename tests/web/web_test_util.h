// Helpers of the optimizer tests: pictures, a scratch folder, the facts of a GIF file read
// from its bytes, and ImageMagick's identify as a reader that is not ours.
#pragma once

#include "pixel/bits.h"
#include "web/colormaps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace ostrivex::test {

// A picture with broad colour gradients, a few hard edges and a little grain, like a
// photograph as far as a quantizer or a JPEG writer can tell.
inline Bits photoLike(int w, int h, uint32_t seed = 7) {
    Bits b(w, h);
    uint32_t s = seed;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            s = s * 1103515245u + 12345u;
            const int grain = int((s >> 16) % 9) - 4;
            const double u = double(x) / w, v = double(y) / h;
            int r = int(255 * (0.5 + 0.5 * std::sin(6.0 * u + 1.0)));
            int g = int(255 * v);
            int bl = int(255 * (0.5 + 0.5 * std::cos(4.0 * (u + v))));
            if ((x - w / 3) * (x - w / 3) + (y - h / 2) * (y - h / 2) < (h / 4) * (h / 4))
                r = 240, g = 200, bl = 40; // a disc of one colour
            const auto c = [grain](int v) { return uint8_t(std::clamp(v + grain, 0, 255)); };
            uint8_t* p = b.pixel(x, y);
            p[0] = c(bl), p[1] = c(g), p[2] = c(r), p[3] = 0;
        }
    return b;
}

// A w x h picture of one colour.
inline Bits flat(int w, int h, uint8_t r, uint8_t g, uint8_t b) {
    Bits out(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            uint8_t* p = out.pixel(x, y);
            p[0] = b, p[1] = g, p[2] = r;
        }
    return out;
}

class ScratchDir {
public:
    ScratchDir() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "ostrivex-web-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~ScratchDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string file(const std::string& name) const { return path_ + "/" + name; }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

inline std::vector<uint8_t> readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

inline void writeBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

// What the first bytes of a GIF file say: the global colour table (its size is
// 2^(depth)), the first image's interlace flag and its LZW code size.
struct GifFacts {
    bool valid = false;
    int tableDepth = 0;
    Palette table;
    bool interlaced = false;
    int lzwCodeSize = 0;
};
inline GifFacts gifFacts(const std::vector<uint8_t>& f) {
    GifFacts g;
    if (f.size() < 13 || std::string(f.begin(), f.begin() + 3) != "GIF") return g;
    const uint8_t packed = f[10];
    if (!(packed & 0x80)) return g;
    g.tableDepth = (packed & 7) + 1;
    const size_t entries = size_t(1) << g.tableDepth;
    size_t at = 13;
    if (f.size() < at + entries * 3 + 11) return g;
    for (size_t i = 0; i < entries; ++i, at += 3) g.table.push_back({f[at], f[at + 1], f[at + 2]});
    if (f[at] != 0x2C) return g; // an image descriptor straight after the table
    g.interlaced = (f[at + 9] & 0x40) != 0;
    g.lzwCodeSize = f[at + 10];
    g.valid = true;
    return g;
}

// Runs identify with a format on a file; "" when identify is not installed.
inline std::string identify(const std::string& format, const std::string& path) {
    const std::string exe = OSTRIVEX_IDENTIFY;
    if (exe.empty()) return "";
    const std::string cmd = exe + " -format '" + format + "' '" + path + "' 2>/dev/null";
    std::string out;
    if (FILE* p = popen(cmd.c_str(), "r")) {
        char buf[256];
        while (fgets(buf, sizeof buf, p)) out += buf;
        pclose(p);
    }
    return out;
}
inline bool haveIdentify() { return !std::string(OSTRIVEX_IDENTIFY).empty(); }

} // namespace ostrivex::test
