// The two neighbourhood filters that draw random numbers (Rnd, the program's one
// generator): DIFFUSE moves each pixel's colour from a random nearby source, NOISE adds
// uniform noise per channel or, equalized, the same noise to all three.
#include "pixel/bitfilter.h"
#include "pixel/random.h"
#include "pixel/vbmath.h"

namespace ostrivex {

Bits cBitFilter::DIFFUSE(int32_t horizontal, int32_t vertical) {
    Bits out = buffer_;
    RegionBounds(0);
    const double hx = horizontal / 2.0, hy = vertical / 2.0;
    // Every pixel of the box draws its two numbers and looks at its source; only the source
    // is tested against the region, so a box corner outside an elliptical selection may
    // take a colour from inside it.
    for (y_ = boxTop_; y_ <= boxBottom_; ++y_) {
        for (x_ = boxLeft_; x_ <= boxRight_; ++x_) {
            const double r1 = Rnd(), r2 = Rnd();
            sourceX_ = vbRound(x_ + r1 * horizontal - hx);
            sourceY_ = vbRound(y_ + r2 * vertical - hy);
            if (inRegion(sourceX_, sourceY_)) {
                const uint8_t* s = buffer_.pixel(sourceX_, sourceY_);
                uint8_t* o = out.pixel(x_, y_);
                o[0] = s[0], o[1] = s[1], o[2] = s[2];
            }
        }
        progressStep(y_);
    }
    finishProgress();
    return out;
}

Bits cBitFilter::NOISE(int32_t intensity, bool equalized) {
    Bits out = buffer_;
    RegionBounds(0);
    const double n = double(intensity) * 2 + 1;
    const auto noisy = [&](uint8_t c, float r) {
        return clampByte(vbRound(double(c) + (n * double(r) - intensity)));
    };
    forEachSpan([&](int32_t y, int32_t x0, int32_t x1) {
        for (int32_t x = x0; x < x1; ++x) {
            uint8_t* o = out.pixel(x, y);
            const uint8_t* s = buffer_.pixel(x, y);
            float rr, rg, rb;
            if (equalized) {
                rr = rg = rb = Rnd();
            } else {
                rr = Rnd(); // red first, then green, then blue
                rg = Rnd();
                rb = Rnd();
            }
            o[2] = noisy(s[2], rr);
            o[1] = noisy(s[1], rg);
            o[0] = noisy(s[0], rb);
        }
    });
    finishProgress();
    return out;
}

} // namespace ostrivex
