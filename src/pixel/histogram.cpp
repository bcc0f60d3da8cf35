#include "pixel/histogram.h"

#include "pixel/vbmath.h"

#include <algorithm>
#include <cstdio>

namespace ostrivex {

int32_t HistogramTables::average(int32_t channel) const {
    const int64_t n = pixelCount();
    if (n <= 0 || channel < 0 || channel > 3) return 0;
    return vbRound(double(Sums[size_t(channel)]) / double(n));
}

int32_t HistogramTables::largest(int32_t channel) const {
    if (channel < 0 || channel > 3) return 0;
    const auto& t = Counts[size_t(channel)];
    return *std::max_element(t.begin(), t.end());
}

HistogramTables BuildHistogram(const Bits& image) {
    HistogramTables h;
    h.Width = std::max(image.width(), 0);
    h.Height = std::max(image.height(), 0);
    // Luminosity from a table of the three weighted products: the same doubles added in the
    // same order as the formula, so the rounding is that of the formula itself.
    double wb[256], wg[256], wr[256];
    for (int v = 0; v < 256; ++v) {
        wb[v] = 0.113 * v;
        wg[v] = 0.586 * v;
        wr[v] = 0.301 * v;
    }
    auto& cb = h.Counts[HistogramBlue];
    auto& cg = h.Counts[HistogramGreen];
    auto& cr = h.Counts[HistogramRed];
    auto& cl = h.Counts[HistogramLuminosity];
    const int32_t w = h.Width, hh = h.Height;
    for (int32_t y = 0; y < hh; ++y) {
        const uint8_t* p = image.row(y);
        for (int32_t x = 0; x < w; ++x, p += 4) {
            const uint8_t b = p[0], g = p[1], r = p[2];
            // At most 255 * (0.113 + 0.586 + 0.301), a hair above 255 at worst, which
            // still rounds to 255.
            const int32_t l = vbRound(wb[b] + wg[g] + wr[r]);
            ++cb[b];
            ++cg[g];
            ++cr[r];
            ++cl[size_t(l)];
        }
    }
    // The sums follow from the tables; no running sum per pixel is needed.
    for (size_t c = 0; c < 4; ++c)
        for (int v = 0; v < 256; ++v)
            h.Sums[c] += int64_t(h.Counts[c][size_t(v)]) * v;
    return h;
}

double HistogramBarTop(int32_t count, int32_t largest) {
    if (largest <= 0) return 100.0;
    return 100.0 - double(count) * 100.0 / double(largest);
}

std::string FormatCountGrouped(int64_t n) {
    if (n == 0) return {};
    const bool negative = n < 0;
    std::string digits = std::to_string(negative ? -n : n);
    std::string out;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) out += ',';
        out += digits[i];
    }
    return negative ? "-" + out : out;
}

std::string FormatSharePercent(int64_t part, int64_t whole) {
    const double share = whole > 0 ? double(part) * 100.0 / double(whole) : 0.0;
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.2f%%", share);
    return buf;
}

} // namespace ostrivex
