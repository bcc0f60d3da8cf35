#include "pixel/bits.h"

namespace ostrivex {

void BitsBitmapRecord(BitmapRecord& record, const Bits& bits, int32_t width, int32_t height) {
    record.header = BitmapInfoHeader{};
    record.header.biWidth = width + 4;
    record.header.biHeight = -(height + 4);
    record.pixels.assign(bits.data(), bits.data() + bits.size());
}

void BitmapRecordInit(BitmapRecord& record, int32_t width, int32_t height) {
    record.header = BitmapInfoHeader{};
    record.header.biWidth = width;
    record.header.biHeight = -height;
    record.pixels.assign(size_t(width) * size_t(height) * 4u, 0);
}

} // namespace ostrivex
