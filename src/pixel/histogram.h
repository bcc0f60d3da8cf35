// The tables behind the histogram window: how many pixels of the image have each level of
// blue, green, red and luminosity, and the sums that give each channel's average.
#pragma once

#include "pixel/bits.h"

#include <array>
#include <cstdint>
#include <string>

namespace ostrivex {

// The channels in the order of the window's option buttons.
enum HistogramChannel : int32_t {
    HistogramBlue = 0,
    HistogramGreen = 1,
    HistogramRed = 2,
    HistogramLuminosity = 3,
};

struct HistogramTables {
    // Counts[channel][level]; 32-bit signed counters.
    std::array<std::array<int32_t, 256>, 4> Counts{};
    // Sum of the levels of each channel over all pixels.
    std::array<int64_t, 4> Sums{};
    int32_t Width = 0;
    int32_t Height = 0;

    int64_t pixelCount() const { return int64_t(Width) * Height; }
    // Round(sum / (W * H)), ties to even; 0 for an empty image.
    int32_t average(int32_t channel) const;
    // The largest count of the channel (0 for an empty image).
    int32_t largest(int32_t channel) const;
};

// One pass over all W x H pixels (the guard band and channel 3 are not read):
// L = Round(0.113 * blue + 0.586 * green + 0.301 * red), each of blue, green, red and L
// counted into its table and added to its sum.
HistogramTables BuildHistogram(const Bits& image);

// The top of a level's bar, in percent of the plot's height from its top:
// 100 - count * 100 / largest; 100 (no bar) when largest is 0.
double HistogramBarTop(int32_t count, int32_t largest);

// A count with thousands separated by commas, as the "#,#" format shows it: 1234567 gives
// "1,234,567"; zero gives an empty text, as that format does.
std::string FormatCountGrouped(int64_t n);
// A share (0..1) shown as a percentage with two decimals, as the "0.00%" format shows
// it: 0.12345 gives "12.35%". The share of an empty image is 0.
std::string FormatSharePercent(int64_t part, int64_t whole);

} // namespace ostrivex
