// The settings record: the program's only persistent state apart from user documents.
//
// One global record, `Settings`, is read once at start (`LoadSettings`), changed in place
// by the tool panels and tool boxes while the program runs, and written back whole
// (`SaveSettings`). Every part of the program reads and writes its fields directly.
//
// On disk (AppFolder + "/oi201Start.up") the fields lie one after the other in the order
// of this struct, little-endian, with no padding between fields: 3967 bytes in all. The
// in-memory struct is not that image; SettingsBytes / SettingsFromBytes convert field by
// field. Conventions of the file:
//  - text fields are fixed width, left-aligned, padded with blanks, no terminator; use
//    FieldText to read them (trailing blanks cut) and SetFieldText to write them;
//  - booleans are 16-bit, true is -1 and false is 0 (see bool16 / Bool16 / IsTrue);
//  - window geometry is in twips, 15 to a logical pixel here.
// A text field that was never written holds NUL bytes, not blanks: the recent-file list
// depends on that difference (see AddRecentFile).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivex {

using bool16 = std::int16_t;
inline constexpr bool16 kTrue16 = -1;
inline constexpr bool16 kFalse16 = 0;
inline constexpr bool16 Bool16(bool b) {
    return b ? kTrue16 : kFalse16;
}
inline constexpr bool IsTrue(bool16 v) {
    return v != 0;
}

template <std::size_t N> using FixedText = std::array<char, N>;

// Trailing blanks cut; the text also ends at the first NUL, so a never-written field reads
// as "".
template <std::size_t N> std::string FieldText(const FixedText<N>& f) {
    std::size_t n = 0;
    while (n < N && f[n] != '\0')
        ++n;
    while (n > 0 && f[n - 1] == ' ')
        --n;
    return std::string(f.data(), n);
}

// Left-aligned, blank-padded; text longer than the field is cut at the field's width.
template <std::size_t N> void SetFieldText(FixedText<N>& f, std::string_view text) {
    std::size_t n = text.size() < N ? text.size() : N;
    for (std::size_t i = 0; i < n; ++i)
        f[i] = text[i];
    for (std::size_t i = n; i < N; ++i)
        f[i] = ' ';
}

// Window geometry is stored in twips as i16.
inline constexpr int TwipsPerPixel = 15;
inline constexpr std::int16_t PixelsToTwips(int pixels) {
    long t = static_cast<long>(pixels) * TwipsPerPixel;
    return static_cast<std::int16_t>(t > 32767 ? 32767 : (t < -32768 ? -32768 : t));
}
inline constexpr int TwipsToPixels(int twips) {
    return twips / TwipsPerPixel;
}

inline constexpr std::size_t kRecentCount = 8;
inline constexpr std::size_t kSettingsFileSize = 3967;

struct SettingsRecord {
    // Group 1: main window, folders and recent files.
    std::int16_t MainWidth = 0;
    std::int16_t MainHeight = 0;
    bool16 MainMaximized = 0;
    bool16 DocMaximized = 0;
    FixedText<256> OpenFolder{};
    FixedText<256> SaveFolder{};
    bool16 Reserved1 = 0;
    bool16 ConfirmClose = 0;
    bool16 Reserved2 = 0;
    std::int16_t LayerLoadMode = 0;
    std::array<FixedText<256>, kRecentCount> RecentFiles{}; // newest first
    bool16 ColorBoxVisible = 0;
    bool16 TexturesBoxVisible = 0;
    bool16 HistoryBoxVisible = 0;
    bool16 PanoramicBoxVisible = 0;
    bool16 BrowserBoxVisible = 0;
    bool16 OptimizeBoxVisible = 0;
    bool16 LayerBoxVisible = 0;
    bool16 CursorFollowsStatus = 0;
    bool16 ResetPending = 0;

    // Group 2: colours, 80 bytes. Colours are 0x00BBGGRR.
    std::int32_t ColorReserved = 0;
    std::int32_t ColorPrimary = 0;
    std::int32_t ColorSecondary = 0;
    std::array<std::int32_t, 16> CustomColors{};
    bool16 ColorFlag = 0;
    std::array<std::uint8_t, 2> ColorPadding{};

    // Group 3: key of the tool button that is down.
    FixedText<25> ActiveTool{};

    // Groups 4 to 9: tool settings.
    std::int16_t SelectMode = 0;
    std::int16_t SelectShape = 0;
    std::int16_t SelectPressure = 0;
    bool16 SelectMove = 0;
    std::int16_t BrushMode = 0;
    std::int16_t BrushSize = 0;
    std::int16_t BrushPressure = 0;
    bool16 BrushContinuous = 0;
    std::int16_t AirbrushSize = 0;
    std::int16_t AirbrushPressure = 0;
    std::int16_t AirbrushQuantity = 0;
    std::int16_t AirbrushDefinition = 0;
    std::int16_t FillMode = 0;
    std::int16_t FillTolerance = 0;
    std::int16_t FillPressure = 0;
    std::int16_t ShapeKind = 0;
    std::int16_t ShapePressure = 0;
    std::int16_t ShapeSides = 0;
    std::int32_t StampMaskColor = 0;
    bool16 StampUseMaskColor = 0;
    bool16 StampMask = 0;
    bool16 StampClearBack = 0;
    std::int16_t StampPressure = 0;

    // Group 10: text tool record. Kept and written with its defaults; nothing reads it.
    FixedText<256> TextVersion{};
    FixedText<256> TextFont{};
    std::int16_t TextSize = 0;
    bool16 TextFlag1 = 0;
    bool16 TextFlag2 = 0;
    bool16 TextFlag3 = 0;
    std::int16_t TextMode = 0;
    std::int16_t TextPressure = 0;
    std::int16_t TextReserved1 = 0;
    std::int16_t TextReserved2 = 0;
    std::int16_t TextReserved3 = 0;
    std::int16_t TextReserved4 = 0;

    // Group 11: gradient tool, 20 bytes.
    std::int32_t GradientMode = 0;
    std::int32_t GradientColor1 = 0;
    std::int32_t GradientColor2 = 0;
    bool16 GradientTransparent = 0;
    std::array<std::uint8_t, 2> GradientPadding{};
    std::int16_t GradientPressure = 0;
    std::int16_t GradientFrequency = 0;

    // Group 12: history, 26 bytes.
    std::array<bool16, 8> HistoryFlags{};
    std::array<std::uint8_t, 8> HistoryReserved{};
    std::int16_t HistoryDepth = 0;

    // Group 13: paste, 4 bytes.
    std::int16_t PastePressure = 0;
    std::int16_t PasteMode = 0;

    // Group 14, 12 bytes, kept and never read.
    std::int16_t KeptA = 0;
    std::int16_t KeptB = 0;
    std::int32_t KeptC = 0;
    std::int16_t KeptD = 0;
    std::array<std::uint8_t, 2> KeptPadding{};

    // Group 15, 22 bytes, kept and never read.
    std::int16_t KeptE = 0;
    std::int16_t KeptF = 0;
    FixedText<9> KeptText1{};
    FixedText<9> KeptText2{};

    // Group 16: tool box geometry in twips. Boxes of a fixed size store no width and height.
    std::int16_t HistoryBoxLeft = 0;
    std::int16_t HistoryBoxTop = 0;
    std::int16_t HistoryBoxWidth = 0;
    std::int16_t HistoryBoxHeight = 0;
    bool16 HistoryBoxMinimized = 0;
    std::int16_t TexturesBoxLeft = 0;
    std::int16_t TexturesBoxTop = 0;
    bool16 TexturesBoxMinimized = 0;
    std::int16_t ColorBoxLeft = 0;
    std::int16_t ColorBoxTop = 0;
    bool16 ColorBoxMinimized = 0;
    std::int16_t PanoramicBoxLeft = 0;
    std::int16_t PanoramicBoxTop = 0;
    std::int16_t PanoramicBoxWidth = 0;
    std::int16_t PanoramicBoxHeight = 0;
    bool16 PanoramicBoxMinimized = 0;
    std::int16_t BrowserBoxLeft = 0;
    std::int16_t BrowserBoxTop = 0;
    std::int16_t BrowserBoxWidth = 0;
    std::int16_t BrowserBoxHeight = 0;
    bool16 BrowserBoxMinimized = 0;
    // Browser Box options.
    std::int16_t ThumbWidth = 0;   // pixels
    std::int16_t ThumbHeight = 0;  // pixels
    std::int16_t ThumbQuality = 0; // 0 "Normal", 1 "Resample"
    std::int16_t BrowserView = 0;
    std::uint8_t ThumbShowResolution = 0; // byte flag, 1 = shown
    std::uint8_t ThumbShowFilename = 0;   // byte flag, 1 = shown
    std::int32_t ThumbWorkspaceColor = 0;
    FixedText<256> BrowserFolder{};
    std::int16_t OptimizeBoxLeft = 0;
    std::int16_t OptimizeBoxTop = 0;
    bool16 OptimizeBoxMinimized = 0;
    std::int16_t LayerBoxLeft = 0;
    std::int16_t LayerBoxTop = 0;
    std::int16_t LayerBoxWidth = 0;
    std::int16_t LayerBoxHeight = 0;
    bool16 LayerBoxMinimized = 0;
    std::array<std::int16_t, 3> SpareBox{}; // unused

    // Group 17: web export, last in the file.
    std::int32_t WebWidth = 0;
    std::int32_t WebHeight = 0;
    FixedText<256> WebFolder{};
    std::int16_t WebColumns = 0;
    std::int16_t WebRows = 0;
    std::int16_t WebQuality = 0;
};

// The one settings record of the process. Starts all zero; LoadSettings fills it.
extern SettingsRecord Settings;
// Run-time flag beside the record, set to -1 at the end of LoadSettings, never stored.
extern std::int16_t SessionFlag;

// The record as it lies in the file (kSettingsFileSize bytes).
std::vector<std::uint8_t> SettingsBytes(const SettingsRecord& s);
// Overlays the leading `size` bytes of a file image onto `s`: a short image fills only the
// leading fields (a field cut by the end takes only its leading bytes) and the rest of `s`
// keeps its values; bytes beyond the record's size are ignored.
void SettingsFromBytes(SettingsRecord& s, const std::uint8_t* data, std::size_t size);
// Every field to its default except RecentFiles and ActiveTool, which are left alone.
// Folder defaults are formed from `appFolder`.
void SetDefaultSettings(SettingsRecord& s, const std::string& appFolder);

// The program's folder, without a trailing slash: $OSTRIVEX_HOME when set; else the
// executable's folder when it is writable and holds the resource folders (a build); else $XDG_DATA_HOME/ostrivex (default
// ~/.local/share/ostrivex), seeded from the installed resources on first use.
std::string AppFolder();
// AppFolder() + "/oi201Start.up".
std::string SettingsFileName();

// Fills `Settings` from the settings file; a missing file gives the defaults and an empty
// file on disk. An existing file is read as it stands, with no check of size or content.
// Returns false only when the file could neither be opened nor created.
bool LoadSettings();
// Writes `Settings` whole over the start of the settings file. False on failure; the
// program shows nothing in that case.
bool SaveSettings();
// Records `path` in the recent-file list: a path already listed (entries compared with
// blanks trimmed) stays where it is; else it goes into the first entry made of blanks only;
// else the list moves down one, dropping the last, and the path goes on top. A never-written
// entry holds NULs, not blanks, so after a first start new paths go on top.
void AddRecentFile(const std::string& path);
// True if anything of that exact name exists: a file, a folder or a dangling link.
bool FileExists(const std::string& path);

} // namespace ostrivex
