#include "pixel/filtermask.h"

#include <charconv>
#include <cmath>

namespace ostrivex {

const std::array<FilterPreset, kFilterPresetCount> kFilterPresets = {{
    {"Blur", "1|1|1|1|1|1|1|1|1", "9|0|0|0"},
    {"Blur more", "1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1|1", "25|0|0|0"},
    {"Soften", "0|1|0|1|3|1|0|1|0", "7|0|0|0"},
    {"Soften more", "1|3|1|3|9|3|1|3|1", "25|0|0|0"},
    {"Sharpen", "-1|-1|-1|-1|15|-1|-1|-1|-1", "7|0|0|0"},
    {"Sharpen more", "0|-1|0|-1|5|-1|0|-1|0", "1|0|0|0"},
    {"Bump [NW]", "-1|-1|0|-1|4|1|0|1|1", "4|0|0|0"},
    {"Bump more [NW]", "-1|-1|0|-1|2|1|0|1|1", "2|0|0|0"},
    {"Contour", "-1|-1|-1|-1|8|-1|-1|-1|-1", "1|255|255|255"},
    {"Contour more", "-2|-2|-2|-2|16|-2|-2|-2|-2", "1|255|255|255"},
    {"Contour [soft]", "0|-1|0|-1|4|-1|0|-1|0", "1|255|255|255"},
    {"Contour more [soft]", "0|-2|0|-2|8|-2|0|-2|0", "1|255|255|255"},
    {"Emboss [SE]", "0|0|0|0|1|0|0|0|-1", "1|128|128|128"},
    {"Engrave [SE]", "0|0|0|0|-1|0|0|0|1", "1|128|128|128"},
}};

std::vector<std::string> SplitString(std::string_view s, std::string_view sep) {
    std::vector<std::string> parts;
    if (sep.empty()) {
        parts.emplace_back(s);
        return parts;
    }
    size_t start = 0;
    for (;;) {
        const size_t at = s.find(sep, start);
        if (at == std::string_view::npos) {
            parts.emplace_back(s.substr(start));
            return parts;
        }
        parts.emplace_back(s.substr(start, at - start));
        start = at + sep.size();
    }
}

namespace {

// A decimal integer with optional blanks around it and an optional sign.
bool parseInt(std::string_view s, int32_t& out) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    if (!s.empty() && s.front() == '+') s.remove_prefix(1);
    if (s.empty()) return false;
    const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), out);
    return ec == std::errc() && end == s.data() + s.size();
}

} // namespace

bool ParseFilterStrings(FilterMask& record, std::string_view mask, std::string_view params) {
    const std::vector<std::string> cells = SplitString(mask, "|");
    const std::vector<std::string> values = SplitString(params, "|");
    const int32_t n = static_cast<int32_t>(std::lround(std::sqrt(double(cells.size()))));
    if (n < 1 || n > 5 || size_t(n) * size_t(n) != cells.size() || values.size() < 4)
        return false;

    FilterMask parsed;
    parsed.Mask.assign(size_t(n), std::vector<int32_t>(size_t(n), 0));
    for (int32_t i = 0; i < n * n; ++i)
        if (!parseInt(cells[size_t(i)], parsed.Mask[size_t(i / n)][size_t(i % n)])) return false;
    if (!parseInt(values[0], parsed.Div) || !parseInt(values[1], parsed.BiasR) ||
        !parseInt(values[2], parsed.BiasG) || !parseInt(values[3], parsed.BiasB))
        return false;
    record = std::move(parsed);
    return true;
}

bool ParseFilterPreset(FilterMask& record, int32_t index) {
    if (index < 0 || index >= kFilterPresetCount) return false;
    const FilterPreset& p = kFilterPresets[size_t(index)];
    return ParseFilterStrings(record, p.mask, p.params);
}

MaskGrid GridFromMask(const MaskArray& mask) {
    MaskGrid grid{};
    const int32_t n = static_cast<int32_t>(mask.size());
    if (n != 3 && n != 5) return grid;
    const int32_t first = (5 - n) / 2;
    for (int32_t r = 0; r < n; ++r)
        for (int32_t c = 0; c < n && size_t(c) < mask[size_t(r)].size(); ++c)
            grid[size_t((r + first) * 5 + c + first)] = mask[size_t(r)][size_t(c)];
    return grid;
}

bool MaskFromGrid(const MaskGrid& grid, MaskArray& mask) {
    bool blank = true, outer = false;
    for (int32_t r = 0; r < 5; ++r)
        for (int32_t c = 0; c < 5; ++c)
            if (grid[size_t(r * 5 + c)] != 0) {
                blank = false;
                if (r == 0 || r == 4 || c == 0 || c == 4) outer = true;
            }
    if (blank) return false;
    const int32_t n = outer ? 5 : 3, first = outer ? 0 : 1;
    MaskArray out(size_t(n), std::vector<int32_t>(size_t(n), 0));
    for (int32_t r = 0; r < n; ++r)
        for (int32_t c = 0; c < n; ++c)
            out[size_t(r)][size_t(c)] = grid[size_t((r + first) * 5 + c + first)];
    mask = std::move(out);
    return true;
}

int64_t MaskSum(const MaskGrid& grid) {
    int64_t s = 0;
    for (int32_t v : grid) s += v;
    return s;
}

} // namespace ostrivex
