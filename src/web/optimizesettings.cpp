#include "web/optimizesettings.h"

#include <cstdio>

namespace ostrivex {

namespace {

using F = WebFormat;

const std::vector<WebPreset> kGifPresets{
    {"GIF-2 Colors", F::Gif, 1, 0, false},   {"GIF-4 Colors", F::Gif, 2, 0, false},
    {"GIF-8 Colors", F::Gif, 3, 0, false},   {"GIF-16 Colors", F::Gif, 4, 0, false},
    {"GIF-32 Colors", F::Gif, 5, 0, false},  {"GIF-64 Colors", F::Gif, 6, 0, false},
    {"GIF-128 Colors", F::Gif, 7, 0, false}, {"GIF-256 Colors", F::Gif, 8, 0, false},
};

const std::vector<WebPreset> kJpegPresets{
    {"JPEG - Low Quality", F::Jpeg, 24, JpegBad, false},
    {"JPEG - Average Quality", F::Jpeg, 24, JpegAverage, false},
    {"JPEG - Normal Quality", F::Jpeg, 24, JpegNormal, false},
    {"JPEG - Good Quality", F::Jpeg, 24, JpegGood, false},
    {"JPEG - Superb Quality", F::Jpeg, 24, JpegSuperb, false},
    {"JPEG - Custom Quality ..", F::Jpeg, 24, 0, false},
};

const WebPreset kPng8{"PNG-8 bit", F::Png8, 8, 0, false};
const WebPreset kPng24{"PNG-24 bit", F::Png24, 24, 0, false};

std::vector<WebPreset> joined(std::initializer_list<std::vector<WebPreset>> parts) {
    std::vector<WebPreset> all;
    for (const auto& p : parts) all.insert(all.end(), p.begin(), p.end());
    return all;
}

const std::vector<MapChoice> kMaps{
    {"MS Map", MapMS},       {"Optimal", MapOptimal},   {"Fixed Color", MapFixedColor},
    {"VGA", MapVGA},         {"216 InternetSafe", MapWebSafe}, {"MS 256", MapMS256},
    {"Fixed Grey", MapFixedGrey},
};

MapChoice map(int32_t value) {
    for (const MapChoice& m : kMaps)
        if (m.value == value) return m;
    return kMaps.front();
}

bool isPalettePreset(const WebPreset& p) {
    return p.format == F::Gif || p.format == F::Png8 || (p.format == F::Bmp && p.bits <= 8);
}

OptimizeSettings settingsFor(const WebPreset& p, int32_t defaultMap) {
    OptimizeSettings s;
    s.PresetName = p.text;
    s.Format = p.format;
    s.BitsPerPixel = p.bits;
    s.PaletteMode = defaultMap;
    s.DitherMode = DitherNone;
    s.PngFlag = (p.format == F::Png8 || p.format == F::Png24) ? 1 : 0;
    // Colour mode 1 is a plain palette picture, which the interlace option turns into 2;
    // the true-colour formats have none.
    s.ColorMode = isPalettePreset(p) ? 1 : 0;
    if (p.format == F::Jpeg) s.JpegQuality = p.jpegFlag ? p.jpegFlag : 75;
    s.RleTarga = p.rleTarga;
    return s;
}

} // namespace

const std::vector<WebPreset>& BoxPresets() {
    static const std::vector<WebPreset> list = joined({kGifPresets, {kPng8, kPng24}, kJpegPresets});
    return list;
}

const std::vector<WebPreset>& ExportPresets() {
    static const std::vector<WebPreset> list = joined({
        kGifPresets,
        {{"BMP-2 Colors", F::Bmp, 1, 0, false},
         {"BMP-16 Colors", F::Bmp, 4, 0, false},
         {"BMP-256 Colors", F::Bmp, 8, 0, false},
         {"BMP-16 bit", F::Bmp, 16, 0, false},
         {"BMP-24 bit", F::Bmp, 24, 0, false},
         kPng8,
         kPng24},
        kJpegPresets,
        {{"TGA-24 bit (Compressed)", F::Tga, 24, 0, true},
         {"TGA-24 bit (Uncompressed)", F::Tga, 24, 0, false},
         {"TIFF-24 bit (Uncompressed)", F::Tiff, 24, 0, false},
         {"Native Bitmap", F::Native, 32, 0, false}},
    });
    return list;
}

const std::vector<MapChoice>& ColourMaps() { return kMaps; }

std::vector<MapChoice> PresetMaps(int index) {
    switch (index) {
    case 0: return {map(MapMS), map(MapFixedColor)};
    case 1: return {map(MapFixedColor)};
    case 2: case 4: case 5: case 6:
        return {map(MapOptimal), map(MapFixedColor), map(MapFixedGrey)};
    case 3:
        return {map(MapMS), map(MapOptimal), map(MapFixedColor), map(MapVGA), map(MapFixedGrey)};
    case 7: case 8:
        return {map(MapMS),      map(MapOptimal), map(MapFixedColor),
                map(MapWebSafe), map(MapMS256),   map(MapFixedGrey)};
    case 9: return {map(MapMS)};
    default: return {};
    }
}

int32_t DefaultMap(int index) {
    if (index == 0 || index == 1) return MapFixedColor;
    if (index >= 2 && index <= 8) return MapOptimal;
    if (index == 9) return MapMS;
    return 0;
}

const std::vector<MapChoice>& ExportMaps() {
    static const std::vector<MapChoice> list{
        {"New", MapOptimal},  {"Fixed Color", MapFixedColor}, {"VGA", MapVGA},
        {"216 InternetSafe colormap", MapWebSafe}, {"Windows 256", MapMS256},
        {"Fixed Grey", MapFixedGrey},
    };
    return list;
}

const std::vector<DitherChoice>& Dithers() {
    static const std::vector<DitherChoice> list{
        {"None", DitherNone},
        {"Binary", DitherBinary},
        {"Ordered", DitherOrdered},
        {"Halftone", DitherHalftone},
        {"Forward Diagonal", DitherForwardDiagonal},
        {"Backward Diagonal", DitherBackwardDiagonal},
        {"Horizontal", DitherHorizontal},
        {"Vertical", DitherVertical},
        {"Odd", DitherOdd},
        {"Even", DitherEven},
    };
    return list;
}

const std::vector<DitherChoice>& ExportDithers() {
    static const std::vector<DitherChoice> list = [] {
        std::vector<DitherChoice> l = Dithers();
        for (DitherChoice& d : l)
            if (d.value == DitherHalftone) d.text = "Haftone";
        return l;
    }();
    return list;
}

const std::vector<QualityChoice>& JpegQualities() {
    static const std::vector<QualityChoice> list{
        {"Bad", JpegBad},   {"Average", JpegAverage}, {"Normal", JpegNormal},
        {"Good", JpegGood}, {"Superb", JpegSuperb},   {"custom...", 0},
    };
    return list;
}

const std::vector<const char*>& ExportColorModes() {
    static const std::vector<const char*> list{"Colors", "Greyscale", "Windows"};
    return list;
}

OptimizeSettings SettingsForPreset(int index) {
    const auto& list = BoxPresets();
    if (index < 0 || index >= int(list.size())) index = 7;
    return settingsFor(list[size_t(index)], DefaultMap(index));
}

OptimizeSettings SettingsForExportPreset(int index) {
    const auto& list = ExportPresets();
    if (index < 0 || index >= int(list.size())) index = 7;
    const WebPreset& p = list[size_t(index)];
    // The export's palette entries start as the box's do at the same depth: two and four
    // colours on the fixed colours, more on an optimal palette.
    int32_t defaultMap = 0;
    if (isPalettePreset(p)) defaultMap = p.bits <= 2 ? MapFixedColor : MapOptimal;
    return settingsFor(p, defaultMap);
}

void SetInterlaced(OptimizeSettings& s, bool on) {
    if (on && s.ColorMode == 1) s.ColorMode = 2;
    if (!on && s.ColorMode == 2) s.ColorMode = 1;
}

std::string GetOptimizedFileExtension(const OptimizeSettings& s) {
    switch (s.Format) {
    case F::Gif: return "gif";
    case F::Png8:
    case F::Png24: return "png";
    case F::Jpeg: return "jpg";
    case F::Bmp:
    case F::Native: return "bmp";
    case F::Tga: return "tga";
    case F::Tiff: return "tif";
    }
    return "gif";
}

namespace {
// A whole number from 1 to `highest` written plainly (blanks around it allowed).
std::optional<int32_t> wholeNumber(std::string_view text, int32_t highest) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    if (text.empty() || text.size() > 3 || text.front() == '0') return std::nullopt;
    int32_t v = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        v = v * 10 + (c - '0');
    }
    if (v < 1 || v > highest) return std::nullopt;
    return v;
}
} // namespace

std::optional<int32_t> ParseCustomQuality(std::string_view text) { return wholeNumber(text, 99); }

std::optional<int32_t> ParseExportQuality(std::string_view text) { return wholeNumber(text, 100); }

std::string ExportSaveFilter(const OptimizeSettings& s) {
    switch (s.Format) {
    case F::Gif: return "Graphical Interface Format (*.gif)|*.gif";
    case F::Bmp:
    case F::Native: return "Windows Bitmap Format (*.bmp)|*.bmp";
    case F::Png8:
    case F::Png24: return "Portable Network Graphics (*.png)|*.png";
    case F::Jpeg: return "Independent JPEG (*.jpg)|*.jpg";
    case F::Tga: return "Targa Format (*.tga)|*.tga";
    case F::Tiff: return "Tagged Image Format (*.tif)|*.tif";
    }
    return {};
}

int32_t JpegSaveFlags(const OptimizeSettings& s) { return s.JpegQuality; }

int32_t JpegQualityPercent(int32_t flag) {
    switch (flag) {
    case JpegBad: return 10;
    case JpegAverage: return 25;
    case JpegNormal: return 50;
    case JpegGood: return 75;
    case JpegSuperb: return 100;
    default: return flag;
    }
}

std::string FormatText(const OptimizeSettings& s) {
    std::string name;
    switch (s.Format) {
    case F::Gif: name = s.Interlaced() ? "GIF Interlaced" : "GIF"; break;
    case F::Png8:
    case F::Png24: name = "PNG"; break;
    case F::Jpeg: name = "JPEG"; break;
    case F::Bmp:
    case F::Native: name = "BMP"; break;
    case F::Tga: name = "TGA"; break;
    case F::Tiff: name = "TIFF"; break;
    }
    return "Format: " + name;
}

std::string SizeText(uint64_t bytes, uint64_t sourceBytes) {
    char percent[32] = "0";
    if (sourceBytes > 0)
        std::snprintf(percent, sizeof percent, "%.2f", 100.0 * double(bytes) / double(sourceBytes));
    return "Size: " + std::to_string(bytes) + " bytes (" + percent + "%)";
}

uint64_t SourceBytes(int32_t w, int32_t h) {
    if (w < 1 || h < 1) return 0;
    // A 24-bit BMP: 14 + 40 bytes of headers, rows padded to four bytes.
    return 54u + ((uint64_t(w) * 3u + 3u) & ~uint64_t(3)) * uint64_t(h);
}

std::string KilobyteText(uint64_t bytes) {
    char text[48];
    std::snprintf(text, sizeof text, "%.2f KB", double(bytes) / 1024.0);
    return text;
}

} // namespace ostrivex
