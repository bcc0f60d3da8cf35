// Hand-made files for the application tests: a 24-bit BMP written byte by byte, so that the
// pixels a test expects do not depend on any image library; whole numbers as the program's
// files hold them; a file's bytes.
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
    for (uint32_t v : {54 + pixelBytes, 0u, 54u, 40u, uint32_t(w), uint32_t(h)})
        u32(v); // the height positive: bottom row first
    u16(1);
    u16(24);
    for (uint32_t v : {0u, pixelBytes, 2835u, 2835u, 0u, 0u})
        u32(v);
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

// Four bytes for each value, low byte first.
inline QByteArray words(const std::vector<int32_t>& values) {
    QByteArray out;
    for (int32_t v : values)
        for (int s = 0; s < 32; s += 8)
            out.append(char(uint8_t(uint32_t(v) >> s)));
    return out;
}

// The whole file, or nothing when it cannot be read.
inline QByteArray fileBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline bool writeText(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace ostrivex::testing
