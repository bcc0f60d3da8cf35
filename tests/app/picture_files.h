// Hand-made picture files for the panel and box tests: a 24-bit BMP written byte by byte,
// so that the pixels a test expects do not depend on any image library.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdint>
#include <vector>

namespace ostrivex::testing {

struct Rgb {
    uint8_t r, g, b;
};

// Writes a w x h 24-bit BMP of `rows` (top row first, w pixels each). Returns false if the
// file cannot be written.
inline bool writeBmp24(const QString& path, int w, int h, const std::vector<Rgb>& rows) {
    const int stride = (w * 3 + 3) / 4 * 4;
    const uint32_t pixelBytes = uint32_t(stride * h);
    QByteArray f;
    auto u16 = [&f](uint32_t v) {
        f.append(char(v & 0xFF));
        f.append(char((v >> 8) & 0xFF));
    };
    auto u32 = [&](uint32_t v) {
        u16(v & 0xFFFF);
        u16(v >> 16);
    };
    f.append("BM");
    u32(54 + pixelBytes);
    u32(0);
    u32(54);
    u32(40);
    u32(uint32_t(w));
    u32(uint32_t(h)); // positive: bottom row first
    u16(1);
    u16(24);
    u32(0);
    u32(pixelBytes);
    u32(2835);
    u32(2835);
    u32(0);
    u32(0);
    for (int y = h - 1; y >= 0; --y) {
        for (int x = 0; x < w; ++x) {
            const Rgb& p = rows[size_t(y * w + x)];
            f.append(char(p.b));
            f.append(char(p.g));
            f.append(char(p.r));
        }
        for (int pad = w * 3; pad < stride; ++pad)
            f.append('\0');
    }
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(f) == f.size();
}

inline bool writeText(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace ostrivex::testing
