#include "pixel/palettefile.h"

#include "pixel/filebytes.h"

#include <cstdio>
#include <fstream>

namespace ostrivex {

namespace {

void put32(std::vector<uint8_t>& out, int32_t value) {
    const uint32_t v = static_cast<uint32_t>(value);
    for (int s = 0; s < 32; s += 8)
        out.push_back(uint8_t(v >> s));
}
int32_t get32(const uint8_t* p) {
    return static_cast<int32_t>(uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) |
                                (uint32_t(p[3]) << 24));
}

} // namespace

std::vector<uint8_t> EncodePaletteFile(const PaletteRecord& record) {
    std::vector<uint8_t> out;
    out.reserve(kPaletteFileSize);
    put32(out, record.PaletteCount);
    for (const auto& entry : record.PaletteColors)
        for (int32_t v : entry)
            put32(out, v);
    return out;
}

bool DecodePaletteFile(const uint8_t* data, size_t size, PaletteRecord& record) {
    if (data == nullptr || size != kPaletteFileSize) return false;
    PaletteRecord parsed;
    parsed.PaletteCount = get32(data);
    if (parsed.PaletteCount < 0 || parsed.PaletteCount > 256) return false;
    const uint8_t* p = data + 4;
    for (int32_t i = 0; i < 256; ++i)
        for (int c = 0; c < 3; ++c, p += 4) {
            const int32_t v = get32(p);
            const bool valid = v >= 0 && v <= 255;
            if (!valid && i < parsed.PaletteCount) return false;
            parsed.PaletteColors[i][c] = valid ? v : 0;
        }
    record = parsed;
    return true;
}

bool WritePaletteFile(const std::string& path, const PaletteRecord& record) {
    return WriteFileBytes(path, EncodePaletteFile(record));
}

bool ReadPaletteFile(const std::string& path, PaletteRecord& record) {
    std::vector<uint8_t> buf;
    return ReadFileBytes(path, kPaletteFileSize + 1, buf) &&
           DecodePaletteFile(buf.data(), buf.size(), record);
}

PaletteRecord VgaPalette() {
    // Dark colours at 0xAA, the bright ones with 0x55 added; entry 6 is brown, not dark
    // yellow, as on the VGA.
    static constexpr int32_t kVga[16][3] = {
        {0, 0, 0},     {0, 0, 170},    {0, 170, 0},    {0, 170, 170},
        {170, 0, 0},   {170, 0, 170},  {170, 85, 0},   {170, 170, 170},
        {85, 85, 85},  {85, 85, 255},  {85, 255, 85},  {85, 255, 255},
        {255, 85, 85}, {255, 85, 255}, {255, 255, 85}, {255, 255, 255}};
    PaletteRecord p;
    p.PaletteCount = 16;
    for (int i = 0; i < 16; ++i)
        for (int c = 0; c < 3; ++c)
            p.PaletteColors[i][c] = kVga[i][c];
    return p;
}

} // namespace ostrivex
