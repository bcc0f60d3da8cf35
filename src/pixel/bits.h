// The pixel buffer.
//
// A `Bits` is W x H pixels of four bytes (blue, green, red, alpha/marker) with a two-pixel
// zero guard band on every side: the byte of (c, x, y) lies at
// ((y + 2) * (W + 4) + (x + 2)) * 4 + c for x in -2..W+1 and y in -2..H+1. So the whole
// array is a top-down 32-bit bitmap of (W + 4) x (H + 4) with no row padding, and a 3x3 or
// 5x5 neighbourhood can be read at the image's edge without a bounds test (it reads black).
//
// Value semantics: a copy is a deep copy, a move moves the buffer. A new buffer is zeroed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace ostrivex {

// A vector allocator whose plain `resize` leaves new bytes unwritten, so a buffer that is
// about to be overwritten whole is not zeroed first (for a 24-megapixel image that saves a
// 96 MB pass). Every other construction behaves as with std::allocator.
template <class T> struct DefaultInitAllocator : std::allocator<T> {
    template <class U> struct rebind {
        using other = DefaultInitAllocator<U>;
    };
    DefaultInitAllocator() = default;
    template <class U> DefaultInitAllocator(const DefaultInitAllocator<U>&) noexcept {}
    template <class U> void construct(U* p) noexcept(std::is_nothrow_default_constructible_v<U>) {
        ::new (static_cast<void*>(p)) U;
    }
    template <class U, class... Args> void construct(U* p, Args&&... args) {
        ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
    }
};

class Bits {
public:
    static constexpr int kGuard = 2;

    Bits() = default;
    // A zeroed buffer of w x h image pixels (plus the guard band).
    Bits(int32_t w, int32_t h) { reset(w, h); }

    void reset(int32_t w, int32_t h) {
        if (w < 0 || h < 0) throw std::invalid_argument("Bits: negative size");
        w_ = w;
        h_ = h;
        data_.assign(byteCount(w, h), 0);
    }

    // A buffer of w x h whose bytes are not initialised: for an operation that writes every
    // byte of it, guard band included, before anyone reads it.
    static Bits forOverwrite(int32_t w, int32_t h) {
        if (w < 0 || h < 0) throw std::invalid_argument("Bits: negative size");
        Bits b;
        b.w_ = w;
        b.h_ = h;
        b.data_.resize(byteCount(w, h));
        return b;
    }

    // Makes this a w x h buffer for an operation that writes every visible pixel, all four
    // bytes: the guard band is zeroed, the visible bytes are left as they happen to be. The
    // storage is kept when it is large enough (no allocation, no page faults, no zero
    // fill), and otherwise replaced without copying the old bytes.
    void resetForOverwrite(int32_t w, int32_t h) {
        if (w < 0 || h < 0) throw std::invalid_argument("Bits: negative size");
        const size_t n = byteCount(w, h);
        if (n > data_.capacity()) data_ = decltype(data_)();
        data_.resize(n);
        w_ = w;
        h_ = h;
        zeroGuard();
    }

    // Zeroes the guard band: the two rows above and below, and two pixels at each end of
    // every row (the right end of one row and the left end of the next are 16 bytes in a
    // row).
    void zeroGuard() {
        const size_t rowBytes = stride();
        uint8_t* d = data_.data();
        if (h_ == 0) {
            std::memset(d, 0, data_.size()); // four rows of guard only
            return;
        }
        const size_t rightEnd = size_t(w_ + 2) * 4u; // offset of x = W within a row
        std::memset(d, 0, 2 * rowBytes + 8);       // rows -2, -1 and the left end of row 0
        for (int32_t y = 0; y + 1 < h_; ++y)       // right end of y, left end of y + 1
            std::memset(d + size_t(y + 2) * rowBytes + rightEnd, 0, 16);
        // The right end of the last row, then rows H and H + 1.
        std::memset(d + size_t(h_ + 1) * rowBytes + rightEnd, 0, 2 * rowBytes + 8);
    }

    // Bytes a buffer of w x h needs, guard band included.
    static size_t byteCount(int32_t w, int32_t h) {
        return size_t(w + 4) * size_t(h + 4) * 4u;
    }

    bool empty() const { return data_.empty(); }
    int32_t width() const { return w_; }
    int32_t height() const { return h_; }
    // Bytes from one row to the next: (W + 4) * 4.
    size_t stride() const { return size_t(w_ + 4) * 4u; }
    size_t size() const { return data_.size(); }

    // Offset of the byte (c, x, y) in the array.
    size_t offset(int c, int32_t x, int32_t y) const {
        return (size_t(y + 2) * size_t(w_ + 4) + size_t(x + 2)) * 4u + size_t(c);
    }

    uint8_t& operator()(int c, int32_t x, int32_t y) { return data_[offset(c, x, y)]; }
    uint8_t operator()(int c, int32_t x, int32_t y) const { return data_[offset(c, x, y)]; }

    // Pointer to the first byte of pixel (x, y).
    uint8_t* pixel(int32_t x, int32_t y) { return data_.data() + offset(0, x, y); }
    const uint8_t* pixel(int32_t x, int32_t y) const { return data_.data() + offset(0, x, y); }
    // Pointer to pixel (0, y): the start of the visible part of row y.
    uint8_t* row(int32_t y) { return pixel(0, y); }
    const uint8_t* row(int32_t y) const { return pixel(0, y); }

    // The whole array, guard band included, from (-2, -2).
    uint8_t* data() { return data_.data(); }
    const uint8_t* data() const { return data_.data(); }

    bool operator==(const Bits& o) const = default;

private:
    int32_t w_ = 0;
    int32_t h_ = 0;
    std::vector<uint8_t, DefaultInitAllocator<uint8_t>> data_;
};

// The 40-byte header that goes with a pixel array for the platform's drawing calls.
struct BitmapInfoHeader {
    uint32_t biSize = 40;
    int32_t biWidth = 0;
    int32_t biHeight = 0;
    uint16_t biPlanes = 1;
    uint16_t biBitCount = 32;
    uint32_t biCompression = 0;
    uint32_t biSizeImage = 0;
    int32_t biXPelsPerMeter = 0;
    int32_t biYPelsPerMeter = 0;
    uint32_t biClrUsed = 0;
    uint32_t biClrImportant = 0;
};
static_assert(sizeof(BitmapInfoHeader) == 40, "BITMAPINFOHEADER is 40 bytes");

// A header followed by its pixels.
struct BitmapRecord {
    BitmapInfoHeader header;
    std::vector<uint8_t> pixels;
};

// Header for a Bits of w x h: (W + 4) x -(H + 4), top-down, 32 bits; copies the Bits.
void BitsBitmapRecord(BitmapRecord& record, const Bits& bits, int32_t width, int32_t height);
// Header and zeroed pixels for an array with no guard band: width x -height.
void BitmapRecordInit(BitmapRecord& record, int32_t width, int32_t height);

} // namespace ostrivex
