#include "pixel/bitfilter.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace ostrivex {

uint32_t steadyMilliseconds() {
    using namespace std::chrono;
    return static_cast<uint32_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

cBitFilter::ClockFunction cBitFilter::clock = &steadyMilliseconds;

void cBitFilter::SetBits(const Bits& b) {
    buffer_ = b;
    lastColumn_ = b.width() - 1;
    lastRow_ = b.height() - 1;
    image_ = {0, 0, b.width(), b.height()};
}

void cBitFilter::SetBits(Bits&& b) {
    lastColumn_ = b.width() - 1;
    lastRow_ = b.height() - 1;
    image_ = {0, 0, b.width(), b.height()};
    buffer_ = std::move(b);
}

void cBitFilter::RegionBounds(int32_t margin) {
    const Rect box = region_ ? region_->bounds() : image_;
    boxLeft_ = box.left + margin;
    boxRight_ = box.right - margin - 1;
    boxTop_ = box.top + margin;
    boxBottom_ = box.bottom - margin - 1;
}

void cBitFilter::raiseProgress(int32_t percent) {
    if (Progress) Progress(percent);
}

void cBitFilter::progressStep(int32_t y) {
    const uint32_t now = clock();
    if (now - lastTick_ > 10) {
        lastTick_ = now;
        // An image one row high would divide by zero here; it reports done instead.
        raiseProgress(lastRow_ > 0 ? y * 100 / lastRow_ : 100);
    }
}

void cBitFilter::BitsBlack() {
    RegionBounds(0);
    for (int32_t y = boxTop_; y <= boxBottom_; ++y)
        forEachSpanInRow(y, [this](int32_t yy, int32_t x0, int32_t x1) {
            std::memset(buffer_.pixel(x0, yy), 0, size_t(x1 - x0) * 4u);
        });
}

void cBitFilter::BitsTakeFromPicture(const uint8_t* pixels, int32_t width, int32_t height) {
    if (pixels == nullptr || width < 0 || height < 0) return;
    Bits fresh(width, height);
    for (int32_t y = 0; y < height; ++y)
        std::memcpy(fresh.row(y), pixels + size_t(y) * size_t(width) * 4u, size_t(width) * 4u);
    SetBits(std::move(fresh));
}

Bits cBitFilter::NewDoc(uint8_t red, uint8_t green, uint8_t blue) {
    Bits out = buffer_;
    RegionBounds(0);
    for (int32_t y = boxTop_; y <= boxBottom_; ++y)
        for (int32_t x = boxLeft_; x <= boxRight_; ++x) {
            uint8_t* p = out.pixel(x, y);
            p[0] = blue;
            p[1] = green;
            p[2] = red;
        }
    lastTick_ = clock();
    return out;
}

} // namespace ostrivex
