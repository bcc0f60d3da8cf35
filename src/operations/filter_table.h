// The rows of the filter dialog fFilter, as data: for each of the 41 filters its title,
// the operation it runs, its slider rows, its check box, whether the source thumbnail
// picks a point and colour, which colour wells show, which special frame it has, and the
// call that runs it on the values the dialog collected. The sliders and the check box are
// the operation's parameters (operations.h): their captions, ranges and defaults are read
// from there. Plain C++ (no Qt), so the table is tested on its own.
//
// Also here: the command words that open the dialog.
#pragma once

#include "operations/operations.h"
#include "pixel/bitfilter.h"
#include "pixel/bits.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivex {

// One slider row: what AddSlider takes, from the operation's parameter. Every row of the
// table has scale 1.
struct FilterSliderRow {
    const char* label;
    int32_t minimum;
    int32_t maximum;
    int32_t defaultValue;
    bool centred = false;    // the value is read relative to the middle of the range
    const char* suffix = ""; // put behind the value label
    double scale = 1.0;
    const OperationParam* param = nullptr; // where the row comes from
};

// The special frames that replace the sliders.
enum class FilterFrame {
    None,
    Banks,   // frBanks: source channel radios and invert/kill boxes per output channel
    Glass,   // FrmGlass: the style radios `oo` and the combo `cbo`
    Curtain, // FrmCurtain: the radios `Curt`
};

// What AddColours is called with: -1 shows both wells, 0 hides well 0 (so only well 1
// shows), 1 hides well 1. kNoColours: AddColours is not called and no well shows.
inline constexpr int32_t kNoColours = -2;

// Everything a call reads from the dialog.
struct FilterValues {
    std::array<int32_t, 3> s{};           // slider value minus its offset, by slider index
    bool option = false;                  // the check box
    std::array<int32_t, 2> colours{};     // the two wells, 0x00BBGGRR
    float centreX = 0.5f, centreY = 0.5f; // the picked point, fractions of the thumbnail
    // Number 26: source channel (0 blue, 1 green, 2 red) of the red, green, blue outputs,
    // and the invert and kill boxes of the same rows.
    std::array<int32_t, 3> sources{2, 1, 0};
    std::array<bool, 3> invert{};
    std::array<bool, 3> kill{};
    // Numbers 39 and 40: the GLASS style and value.
    std::string style = "slanting";
    int32_t styleValue = 0;
};

using FilterCall = Bits (*)(cBitFilter& filter, const FilterValues& v);

struct FilterRow {
    int32_t number;
    const char* title;
    const char* operation; // the operation of operations.h the call runs
    std::vector<FilterSliderRow> sliders; // 0 to 3 rows
    const char* optionLabel = nullptr;    // the check box, or none
    bool optionDefault = false;
    bool picker = false;          // AddPicker
    int32_t colours = kNoColours; // the AddColours index
    FilterFrame frame = FilterFrame::None;
    const char* call = ""; // the call as help shows it
    FilterCall run = nullptr;
};

inline constexpr int32_t kFilterCount = 41;

// The 41 rows, row i being filter number i.
const std::vector<FilterRow>& FilterTable();
// The row of a number, or nullptr outside 0..40.
const FilterRow* FindFilterRow(int32_t number);

// The style texts of GLASS, in the order of the radio group `oo`, and the curtain's.
inline constexpr std::array<const char*, 4> kGlassStyles = {"slanting", "horizontal", "vertical",
                                                            "squary"};
inline constexpr const char* kCurtainStyle = "curtain";
// The combo `cbo` of a style: the blocks add "Large" before the other two. The index of
// an entry is the value GLASS takes.
std::vector<const char*> GlassComboItems(std::string_view style);

// The command words that open the dialog and their filter numbers.
struct FilterDialogWord {
    const char* word;
    int32_t number;
};
const std::vector<FilterDialogWord>& FilterDialogWords();
// The number a word opens the dialog with, or -1 for a word that doesn't.
int32_t FilterDialogNumber(std::string_view word);

} // namespace ostrivex
