#include "pixel/oiffile.h"

#include "pixel/filebytes.h"

#include <cstdio>
#include <fstream>

namespace ostrivex {

namespace {

constexpr size_t kHeaderSize = 18;
constexpr size_t kTrailerSize = 16;
// The largest well-formed file: a 5 x 5 kernel.
constexpr size_t kMaxFileSize = kHeaderSize + 4 * 25 + kTrailerSize;

size_t fileSize(int32_t n) { return kHeaderSize + 4 * size_t(n) * size_t(n) + kTrailerSize; }

void put16(std::vector<uint8_t>& out, uint16_t v) {
    out.push_back(uint8_t(v));
    out.push_back(uint8_t(v >> 8));
}
void put32(std::vector<uint8_t>& out, int32_t value) {
    const uint32_t v = static_cast<uint32_t>(value);
    for (int s = 0; s < 32; s += 8) out.push_back(uint8_t(v >> s));
}
uint16_t get16(const uint8_t* p) { return uint16_t(p[0] | (p[1] << 8)); }
int32_t get32(const uint8_t* p) {
    return static_cast<int32_t>(uint32_t(p[0]) | (uint32_t(p[1]) << 8) |
                                (uint32_t(p[2]) << 16) | (uint32_t(p[3]) << 24));
}

bool isSquareKernel(const MaskArray& m) {
    const size_t n = m.size();
    if (n != 3 && n != 5) return false;
    for (const auto& row : m)
        if (row.size() != n) return false;
    return true;
}

} // namespace

std::vector<uint8_t> EncodeFilterFile(const FilterMask& record) {
    std::vector<uint8_t> out;
    if (!isSquareKernel(record.Mask)) return out;
    const int32_t n = record.size();
    out.reserve(fileSize(n));
    put16(out, 2);
    put32(out, n);
    put32(out, 0);
    put32(out, n);
    put32(out, 0);
    for (int32_t col = 0; col < n; ++col)
        for (int32_t row = 0; row < n; ++row) put32(out, record.Mask[size_t(row)][size_t(col)]);
    put32(out, record.Div);
    put32(out, record.BiasR);
    put32(out, record.BiasG);
    put32(out, record.BiasB);
    return out;
}

bool DecodeFilterFile(const uint8_t* data, size_t size, FilterMask& record) {
    if (data == nullptr || size < kHeaderSize) return false;
    if (get16(data) != 2) return false;
    const int32_t n = get32(data + 2);
    if ((n != 3 && n != 5) || get32(data + 6) != 0 || get32(data + 10) != n ||
        get32(data + 14) != 0)
        return false;
    if (size != fileSize(n)) return false;

    FilterMask parsed;
    parsed.Mask.assign(size_t(n), std::vector<int32_t>(size_t(n), 0));
    const uint8_t* p = data + kHeaderSize;
    for (int32_t col = 0; col < n; ++col)
        for (int32_t row = 0; row < n; ++row, p += 4)
            parsed.Mask[size_t(row)][size_t(col)] = get32(p);
    parsed.Div = get32(p);
    parsed.BiasR = get32(p + 4);
    parsed.BiasG = get32(p + 8);
    parsed.BiasB = get32(p + 12);
    record = std::move(parsed);
    return true;
}

bool WriteFilterFile(const std::string& path, const FilterMask& record) {
    const std::vector<uint8_t> bytes = EncodeFilterFile(record);
    return !bytes.empty() && WriteFileBytes(path, bytes);
}

bool ReadFilterFile(const std::string& path, FilterMask& record) {
    std::vector<uint8_t> buf;
    return ReadFileBytes(path, kMaxFileSize + 1, buf) &&
           DecodeFilterFile(buf.data(), buf.size(), record);
}

} // namespace ostrivex
