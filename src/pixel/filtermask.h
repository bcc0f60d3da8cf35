// The record of a user filter: a square convolution kernel (3 x 3 or 5 x 5) with its
// divisor and the three biases added after the division, and the fourteen built-in
// kernels of the user filter dialog.
//
// A preset is kept as two strings, as the dialog lists them: the coefficients row by
// row separated by "|" (their count decides the size, n = round(sqrt(count))), and
// "Div|BiasR|BiasG|BiasB".
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivex {

// Kernel coefficients: Mask[row][column], that is Mask[dy][dx], both from 0 to n - 1.
using MaskArray = std::vector<std::vector<int32_t>>;

struct FilterMask {
    MaskArray Mask;
    int32_t Div = 0;
    int32_t BiasR = 0;
    int32_t BiasG = 0;
    int32_t BiasB = 0;

    // n, the side of the kernel (0 for an empty record).
    int32_t size() const { return static_cast<int32_t>(Mask.size()); }
    bool operator==(const FilterMask&) const = default;
};

struct FilterPreset {
    const char* name;   // the text of the dialog's list
    const char* mask;   // coefficients, row by row, "|" between them
    const char* params; // "Div|BiasR|BiasG|BiasB"
};

// The presets in the order of the dialog's list. The list itself starts with "<None>", so
// list entry i + 1 is preset i.
inline constexpr int kFilterPresetCount = 14;
extern const std::array<FilterPreset, kFilterPresetCount> kFilterPresets;
// The first entry of the dialog's preset list, which stands for no preset.
inline constexpr const char* kNoPresetText = "<None>";

// Splits s on every occurrence of sep; an empty string gives one empty element.
std::vector<std::string> SplitString(std::string_view s, std::string_view sep);

// Fills record from preset `index` (0 to 13). Returns false, leaving the record as it
// was, for an index outside the list.
bool ParseFilterPreset(FilterMask& record, int32_t index);

// Fills record from the two strings of a preset. Each element is read as a decimal
// integer (blanks around it allowed); a count of coefficients that is not a perfect square
// of 1 to 5, fewer than four parameters or an element that is not a whole number give
// false and leave the record as it was.
bool ParseFilterStrings(FilterMask& record, std::string_view mask, std::string_view params);

// The dialog's 5 x 5 grid of coefficients, index row * 5 + column.
using MaskGrid = std::array<int32_t, 25>;

// The grid a record shows: a 5 x 5 kernel fills it, a 3 x 3 kernel sits in the centre
// cells and the outer ring is 0.
MaskGrid GridFromMask(const MaskArray& mask);

// The kernel the grid stands for: all 25 cells when any cell of the outer ring is not
// zero, otherwise the inner nine as a 3 x 3 kernel. An all-zero grid is no kernel: the
// result is false and `mask` is not touched (the dialog then shows its message).
bool MaskFromGrid(const MaskGrid& grid, MaskArray& mask);

// The sum of all coefficients (what the dialog's automatic weight follows).
int64_t MaskSum(const MaskGrid& grid);

} // namespace ostrivex
