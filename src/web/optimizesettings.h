// The vocabulary of web optimisation: the presets of the Optimize Box and of the web export
// dialog, the colour maps, the dithers and the JPEG qualities, with the values the settings
// carry, and the texts the box shows about a result.
//
// Everything here is plain data and small rules; the encoder (optimize.h) reads an
// `OptimizeSettings` and nothing else.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivex {

// Palette-mode values of the colour maps.
enum MapValue : int32_t {
    MapMS = 4096,          // "MS Map": the Windows system palette of the preset's size
    MapOptimal = 16384,    // "Optimal": a palette made for the picture
    MapFixedColor = 32768, // "Fixed Color": a uniform colour cube of the preset's size
    MapVGA = 33296,        // "VGA": the 16 VGA colours
    MapMS256 = 33536,      // "MS 256": the Windows 256-colour halftone palette
    MapWebSafe = 34008,    // "216 InternetSafe": the 6 x 6 x 6 web-safe cube
    MapFixedGrey = 35071,  // "Fixed Grey": evenly spaced greys
};

// Dither-mode values.
enum DitherValue : int32_t {
    DitherNone = 0,
    DitherBinary = 1,
    DitherOrdered = 2,
    DitherHalftone = 4,
    DitherForwardDiagonal = 8,
    DitherBackwardDiagonal = 16,
    DitherHorizontal = 32,
    DitherVertical = 64,
    DitherOdd = 256,
    DitherEven = 512,
};

// FreeImage's JPEG quality flags as the quality list picks them.
enum JpegFlag : int32_t {
    JpegBad = 2048,
    JpegAverage = 1024,
    JpegNormal = 512,
    JpegGood = 256,
    JpegSuperb = 128,
};

// What a preset writes.
enum class WebFormat {
    Gif,      // palette, 1..8 bits, optionally interlaced
    Png8,     // palette PNG
    Png24,    // true-colour PNG
    Jpeg,     // FreeImage_SaveJPEG with the quality flags
    Bmp,      // BMP at the preset's bits per pixel (1, 4, 8 palette; 16 as 5-5-5; 24)
    Tga,      // 24-bit Targa, run-length compressed or not
    Tiff,     // 24-bit TIFF without compression
    Native,   // the editor's own 32-bit pixels as a BMP
};

// The current state of the Optimize Box (and of the web export dialog).
struct OptimizeSettings {
    int32_t PaletteMode = MapOptimal; // a MapValue
    int32_t DitherMode = DitherNone;  // a DitherValue
    int32_t BitsPerPixel = 8;         // 1..8 or 24 (16 for "BMP-16 bit")
    int32_t ColorMode = 1;            // 0 none, 1 plain, 2 interlaced GIF
    int32_t PngFlag = 0;              // 1 for the PNG presets
    std::string PresetName = "GIF-256 Colors";
    // Which preset of its list, what it writes, and the JPEG quality: one of the JpegFlag
    // values, or a custom quality from 1 to 99.
    WebFormat Format = WebFormat::Gif;
    int32_t JpegQuality = JpegNormal;
    // Web export only: "Greyscale" turns the picture grey before the reduction; "Windows"
    // keeps the 20 static Windows colours in an optimal palette. The box leaves both off.
    bool Greyscale = false;
    bool ReserveSystemColors = false;
    // "TGA-24 bit (Compressed)": run-length packets.
    bool RleTarga = false;

    bool Interlaced() const { return ColorMode == 2; }
    bool operator==(const OptimizeSettings&) const = default;
};

// One entry of a preset list.
struct WebPreset {
    const char* text;   // as the list shows it
    WebFormat format;
    int32_t bits;       // bits per pixel
    int32_t jpegFlag;   // JPEG entries: the quality flag (0: the custom field)
    bool rleTarga;      // "TGA-24 bit (Compressed)"
};

// The 16 presets of the Optimize Box's list `CboFiles`, in order.
const std::vector<WebPreset>& BoxPresets();
// The 25 entries of the web export dialog's list, in order.
const std::vector<WebPreset>& ExportPresets();

// A colour map as a list offers it.
struct MapChoice {
    const char* text;
    int32_t value;
};
// Every colour map of the box with its value, in the table's order.
const std::vector<MapChoice>& ColourMaps();
// The maps the box offers for preset `index` (0..15), in list order; empty for JPEG.
std::vector<MapChoice> PresetMaps(int index);
// The map the box selects with preset `index`: 32768 for 0 and 1, 16384 for 2 to 8, 4096
// for 9; 0 for the JPEG presets.
int32_t DefaultMap(int index);
// The web export dialog's own map list ("New", "Fixed Color", "VGA", "216 InternetSafe
// colormap", "Windows 256", "Fixed Grey") with the values they stand for.
const std::vector<MapChoice>& ExportMaps();

// The dither list of the box (and, with "Haftone" spelt so, of the export dialog).
struct DitherChoice {
    const char* text;
    int32_t value;
};
const std::vector<DitherChoice>& Dithers();
const std::vector<DitherChoice>& ExportDithers();

// The quality list `cboJpg`: "Bad", "Average", "Normal", "Good", "Superb" with their flags,
// then "custom..." (value 0: the number typed in `TxtJPG`).
struct QualityChoice {
    const char* text;
    int32_t flag;
};
const std::vector<QualityChoice>& JpegQualities();

// The export dialog's colour mode list: "Colors", "Greyscale", "Windows".
const std::vector<const char*>& ExportColorModes();

// The settings the box starts a preset with (its default map, no dither, interlace off).
// `index` is a box preset (0..15).
OptimizeSettings SettingsForPreset(int index);
// The same for an entry of the export list (0..24).
OptimizeSettings SettingsForExportPreset(int index);
// `ChkInterlaced`: on turns colour mode 1 (a plain palette picture) into 2 (interlaced GIF),
// off turns 2 back into 1; colour mode 0 stays.
void SetInterlaced(OptimizeSettings& s, bool on);
// `GetOptimizedFileExtension`: "gif", "png", "jpg" (and "bmp", "tga", "tif" for the
// export's own entries).
std::string GetOptimizedFileExtension(const OptimizeSettings& s);

// The save filter of the web export for an entry of its list, in "label|pattern" form
// ("Graphical Interface Format (*.gif)|*.gif" for the GIF entries, and so on).
std::string ExportSaveFilter(const OptimizeSettings& s);
inline constexpr const char* kExportSaveTitle = "Save Optimized As";
inline constexpr const char* kExportTitle = "Optimized Save Options";
// The export dialog's own quality field takes 1 to 100, as its hint says.
std::optional<int32_t> ParseExportQuality(std::string_view text);

// The custom JPEG quality typed in `TxtJPG`: a whole number from 1 to 99, else nullopt
// (the caller shows kCustomQualityMessage and runs nothing).
std::optional<int32_t> ParseCustomQuality(std::string_view text);
inline constexpr const char* kCustomQualityMessage = "Enter value between 1 to 99 !";
inline constexpr const char* kCustomQualityHint = "Enter JPEG Quality between 1 to 100";

// The FreeImage save flags of a JPEG quality: the flag itself, or the custom number.
int32_t JpegSaveFlags(const OptimizeSettings& s);
// The quality from 1 to 100 that a flag stands for (Bad 10, Average 25, Normal 50, Good 75,
// Superb 100; a custom number is itself).
int32_t JpegQualityPercent(int32_t flag);

// The box's result texts: "Format: " with "GIF", "GIF Interlaced", "PNG" or "JPEG"; and
// "Size: " with the byte count, " bytes", and the share of the source's size in percent
// in " (" and ")".
std::string FormatText(const OptimizeSettings& s);
std::string SizeText(uint64_t bytes, uint64_t sourceBytes);
// The size of the picture as the 24-bit BMP the box measures against.
uint64_t SourceBytes(int32_t w, int32_t h);
// Sizes in the export dialog: kilobytes with two decimals and " KB".
std::string KilobyteText(uint64_t bytes);
inline constexpr const char* kTrueColorText = "24 bit True Color";

} // namespace ostrivex
