#include "app/settings/settings.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace ostrivex {

SettingsRecord Settings{};
std::int16_t SessionFlag = 0;

namespace {

// Calls v on every field in file order. The one place that fixes the layout of the file.
// clang-format off
template <class R, class V> void walkSettings(R& s, V&& v) {
    v(s.MainWidth); v(s.MainHeight); v(s.MainMaximized); v(s.DocMaximized);
    v(s.OpenFolder); v(s.SaveFolder);
    v(s.Reserved1); v(s.ConfirmClose); v(s.Reserved2); v(s.LayerLoadMode);
    for (auto& r : s.RecentFiles) v(r);
    v(s.ColorBoxVisible); v(s.TexturesBoxVisible); v(s.HistoryBoxVisible);
    v(s.PanoramicBoxVisible); v(s.BrowserBoxVisible); v(s.OptimizeBoxVisible);
    v(s.LayerBoxVisible); v(s.CursorFollowsStatus); v(s.ResetPending);

    v(s.ColorReserved); v(s.ColorPrimary); v(s.ColorSecondary);
    for (auto& c : s.CustomColors) v(c);
    v(s.ColorFlag); v(s.ColorPadding);

    v(s.ActiveTool);

    v(s.SelectMode); v(s.SelectShape); v(s.SelectPressure); v(s.SelectMove);
    v(s.BrushMode); v(s.BrushSize); v(s.BrushPressure); v(s.BrushContinuous);
    v(s.AirbrushSize); v(s.AirbrushPressure); v(s.AirbrushQuantity); v(s.AirbrushDefinition);
    v(s.FillMode); v(s.FillTolerance); v(s.FillPressure);
    v(s.ShapeKind); v(s.ShapePressure); v(s.ShapeSides);
    v(s.StampMaskColor); v(s.StampUseMaskColor); v(s.StampMask); v(s.StampClearBack);
    v(s.StampPressure);

    v(s.TextVersion); v(s.TextFont); v(s.TextSize);
    v(s.TextFlag1); v(s.TextFlag2); v(s.TextFlag3); v(s.TextMode); v(s.TextPressure);
    v(s.TextReserved1); v(s.TextReserved2); v(s.TextReserved3); v(s.TextReserved4);

    v(s.GradientMode); v(s.GradientColor1); v(s.GradientColor2);
    v(s.GradientTransparent); v(s.GradientPadding);
    v(s.GradientPressure); v(s.GradientFrequency);

    for (auto& f : s.HistoryFlags) v(f);
    v(s.HistoryReserved); v(s.HistoryDepth);

    v(s.PastePressure); v(s.PasteMode);

    v(s.KeptA); v(s.KeptB); v(s.KeptC); v(s.KeptD); v(s.KeptPadding);
    v(s.KeptE); v(s.KeptF); v(s.KeptText1); v(s.KeptText2);

    v(s.HistoryBoxLeft); v(s.HistoryBoxTop); v(s.HistoryBoxWidth); v(s.HistoryBoxHeight);
    v(s.HistoryBoxMinimized);
    v(s.TexturesBoxLeft); v(s.TexturesBoxTop); v(s.TexturesBoxMinimized);
    v(s.ColorBoxLeft); v(s.ColorBoxTop); v(s.ColorBoxMinimized);
    v(s.PanoramicBoxLeft); v(s.PanoramicBoxTop); v(s.PanoramicBoxWidth);
    v(s.PanoramicBoxHeight); v(s.PanoramicBoxMinimized);
    v(s.BrowserBoxLeft); v(s.BrowserBoxTop); v(s.BrowserBoxWidth); v(s.BrowserBoxHeight);
    v(s.BrowserBoxMinimized);
    v(s.ThumbWidth); v(s.ThumbHeight); v(s.ThumbQuality); v(s.BrowserView);
    v(s.ThumbShowResolution); v(s.ThumbShowFilename); v(s.ThumbWorkspaceColor);
    v(s.BrowserFolder);
    v(s.OptimizeBoxLeft); v(s.OptimizeBoxTop); v(s.OptimizeBoxMinimized);
    v(s.LayerBoxLeft); v(s.LayerBoxTop); v(s.LayerBoxWidth); v(s.LayerBoxHeight);
    v(s.LayerBoxMinimized);
    for (auto& x : s.SpareBox) v(x);

    v(s.WebWidth); v(s.WebHeight); v(s.WebFolder);
    v(s.WebColumns); v(s.WebRows); v(s.WebQuality);
}
// clang-format on

struct Writer {
    std::vector<std::uint8_t>& out;
    void operator()(std::int16_t x) const {
        auto u = static_cast<std::uint16_t>(x);
        out.push_back(static_cast<std::uint8_t>(u & 0xFF));
        out.push_back(static_cast<std::uint8_t>(u >> 8));
    }
    void operator()(std::int32_t x) const {
        auto u = static_cast<std::uint32_t>(x);
        for (int i = 0; i < 4; ++i)
            out.push_back(static_cast<std::uint8_t>(u >> (8 * i)));
    }
    void operator()(std::uint8_t x) const { out.push_back(x); }
    template <std::size_t N> void operator()(const std::array<char, N>& a) const {
        for (char c : a)
            out.push_back(static_cast<std::uint8_t>(c));
    }
    template <std::size_t N> void operator()(const std::array<std::uint8_t, N>& a) const {
        out.insert(out.end(), a.begin(), a.end());
    }
};

struct Reader {
    const std::uint8_t* p;
    void operator()(std::int16_t& x) {
        x = static_cast<std::int16_t>(std::uint16_t(p[0]) | std::uint16_t(p[1]) << 8);
        p += 2;
    }
    void operator()(std::int32_t& x) {
        std::uint32_t u = 0;
        for (int i = 0; i < 4; ++i)
            u |= std::uint32_t(p[i]) << (8 * i);
        x = static_cast<std::int32_t>(u);
        p += 4;
    }
    void operator()(std::uint8_t& x) { x = *p++; }
    template <std::size_t N> void operator()(std::array<char, N>& a) {
        std::memcpy(a.data(), p, N);
        p += N;
    }
    template <std::size_t N> void operator()(std::array<std::uint8_t, N>& a) {
        std::memcpy(a.data(), p, N);
        p += N;
    }
};

} // namespace

std::vector<std::uint8_t> SettingsBytes(const SettingsRecord& s) {
    std::vector<std::uint8_t> out;
    out.reserve(kSettingsFileSize);
    walkSettings(s, Writer{out});
    return out;
}

void SettingsFromBytes(SettingsRecord& s, const std::uint8_t* data, std::size_t size) {
    // The file image is laid over the record's own image, so that whatever the file does
    // not reach keeps its value, down to the byte.
    std::vector<std::uint8_t> image = SettingsBytes(s);
    std::memcpy(image.data(), data, size < image.size() ? size : image.size());
    walkSettings(s, Reader{image.data()});
}

// clang-format off
void SetDefaultSettings(SettingsRecord& s, const std::string& appFolder) {
    const bool16 T = kTrue16, F = kFalse16;
    const std::string images = appFolder + "/Images/";

    s.MainWidth = PixelsToTwips(640);
    s.MainHeight = PixelsToTwips(480);
    s.MainMaximized = T;
    s.DocMaximized = F;
    SetFieldText(s.OpenFolder, images);
    SetFieldText(s.SaveFolder, images);
    s.Reserved1 = T;
    s.ConfirmClose = T;
    s.Reserved2 = T;
    s.LayerLoadMode = 1;
    s.ColorBoxVisible = s.TexturesBoxVisible = s.HistoryBoxVisible = T;
    s.PanoramicBoxVisible = s.BrowserBoxVisible = s.OptimizeBoxVisible = T;
    s.LayerBoxVisible = T;
    s.CursorFollowsStatus = F;
    s.ResetPending = F;

    s.ColorReserved = 0;
    s.ColorPrimary = 0xFFFFFF;
    s.ColorSecondary = 0;
    for (int i = 0; i < 16; ++i) s.CustomColors[i] = 17 * i * 0x010101; // grey ramp
    s.ColorFlag = T;
    s.ColorPadding = {};

    s.SelectMode = 2; s.SelectShape = 0; s.SelectPressure = 50; s.SelectMove = T;
    s.BrushMode = 0; s.BrushSize = 25; s.BrushPressure = 25; s.BrushContinuous = T;
    s.AirbrushSize = 75; s.AirbrushPressure = 25; s.AirbrushQuantity = 100;
    s.AirbrushDefinition = 1;
    s.FillMode = 0; s.FillTolerance = 25; s.FillPressure = 100;
    s.ShapeKind = 0; s.ShapePressure = 100; s.ShapeSides = 3;
    s.StampMaskColor = 0; s.StampUseMaskColor = F; s.StampMask = T; s.StampClearBack = F;
    s.StampPressure = 50;

    SetFieldText(s.TextVersion, "1.0");
    SetFieldText(s.TextFont, "Arial");
    s.TextSize = 20; s.TextFlag1 = T; s.TextFlag2 = T; s.TextFlag3 = F;
    s.TextMode = 2; s.TextPressure = 100;
    s.TextReserved1 = s.TextReserved2 = s.TextReserved3 = s.TextReserved4 = 0;

    s.GradientMode = 0; s.GradientColor1 = 0xFFFFFF; s.GradientColor2 = 0;
    s.GradientTransparent = F; s.GradientPadding = {};
    s.GradientPressure = 50; s.GradientFrequency = 1;

    s.HistoryFlags.fill(T);
    s.HistoryReserved = {};
    s.HistoryDepth = 10;

    s.PastePressure = 80; s.PasteMode = 0;

    s.KeptA = 0; s.KeptB = 15; s.KeptC = 0; s.KeptD = 100; s.KeptPadding = {};
    s.KeptE = 90; s.KeptF = 65;
    SetFieldText(s.KeptText1, "255255255");
    SetFieldText(s.KeptText2, "255255255");

    s.HistoryBoxLeft = 3600; s.HistoryBoxTop = 4650;
    s.HistoryBoxWidth = 3950; s.HistoryBoxHeight = 3180; s.HistoryBoxMinimized = F;
    s.TexturesBoxLeft = 420; s.TexturesBoxTop = 8640; s.TexturesBoxMinimized = F;
    s.ColorBoxLeft = 420; s.ColorBoxTop = 1110; s.ColorBoxMinimized = F;
    s.PanoramicBoxLeft = 420; s.PanoramicBoxTop = 6045;
    s.PanoramicBoxWidth = 2600; s.PanoramicBoxHeight = 3180; s.PanoramicBoxMinimized = F;
    s.BrowserBoxLeft = 6780; s.BrowserBoxTop = 1100;
    s.BrowserBoxWidth = 4800; s.BrowserBoxHeight = 7000; s.BrowserBoxMinimized = F;
    s.ThumbWidth = 70; s.ThumbHeight = 60; s.ThumbQuality = 0; s.BrowserView = 4;
    s.ThumbShowResolution = 1; s.ThumbShowFilename = 1;
    s.ThumbWorkspaceColor = 0xFFFFFF;
    SetFieldText(s.BrowserFolder, images);
    s.OptimizeBoxLeft = 420; s.OptimizeBoxTop = 3615; s.OptimizeBoxMinimized = F;
    s.LayerBoxLeft = 3600; s.LayerBoxTop = 1110;
    s.LayerBoxWidth = 3540; s.LayerBoxHeight = 3180; s.LayerBoxMinimized = F;
    s.SpareBox = {3600, 8610, 0};

    s.WebWidth = 600; s.WebHeight = 450;
    // The web export folder is the same Images folder (one spelling on a case-sensitive
    // file system).
    SetFieldText(s.WebFolder, images);
    s.WebColumns = 3; s.WebRows = 5; s.WebQuality = 80;
}
// clang-format on

std::string SettingsFileName() {
    return AppFolder() + "/oi201Start.up";
}

bool LoadSettings() {
    const std::string name = SettingsFileName();
    // An existing file is taken as it stands: no check of its size or content, so a short
    // file fills only its leading fields and a long one is read up to the record's size.
    // (The only test ever made before reading is whether the file name is empty, which it
    // never is; the "Configuration data file is corrupted" path behind it cannot run and is
    // left out.)
    const bool needDefaults = !FileExists(name);

    bool ok = true;
    std::FILE* f = std::fopen(name.c_str(), "r+b");
    if (!f) f = std::fopen(name.c_str(), "w+b"); // absent: create it, empty
    if (!f) f = std::fopen(name.c_str(), "rb");  // present but read-only
    if (f) {
        std::vector<std::uint8_t> buf(kSettingsFileSize);
        std::size_t n = std::fread(buf.data(), 1, buf.size(), f);
        std::fclose(f);
        SettingsFromBytes(Settings, buf.data(), n);
    } else {
        ok = false;
    }

    if (needDefaults) SetDefaultSettings(Settings, AppFolder());
    SessionFlag = -1;
    return ok;
}

bool SaveSettings() {
    const std::string name = SettingsFileName();
    // Overwrites the start of the file; anything beyond the record stays as it was.
    std::FILE* f = std::fopen(name.c_str(), "r+b");
    if (!f) f = std::fopen(name.c_str(), "wb");
    if (!f) return false;
    const std::vector<std::uint8_t> bytes = SettingsBytes(Settings);
    const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    return std::fclose(f) == 0 && ok;
}

namespace {

// Blanks cut at both ends; NUL bytes are not blanks, so a never-written entry stays as it is.
std::string trimBlanks(std::string_view s) {
    std::size_t b = 0, e = s.size();
    while (b < e && s[b] == ' ')
        ++b;
    while (e > b && s[e - 1] == ' ')
        --e;
    return std::string(s.substr(b, e - b));
}

} // namespace

void AddRecentFile(const std::string& path) {
    auto& list = Settings.RecentFiles;
    // 1. Already listed: the list stays as it is, so a re-opened file keeps its place.
    for (const auto& e : list)
        if (trimBlanks(std::string_view(e.data(), e.size())) == path) return;
    // 2. The first entry of all blanks takes the path. An entry never written holds NUL
    //    bytes rather than blanks and does not count as free.
    for (auto& e : list) {
        bool blank = true;
        for (char c : e)
            blank = blank && c == ' ';
        if (blank) {
            SetFieldText(e, path);
            return;
        }
    }
    // 3. Otherwise the list moves down by one, the last entry falls off, the path goes on top.
    for (std::size_t i = kRecentCount - 1; i > 0; --i)
        list[i] = list[i - 1];
    SetFieldText(list[0], path);
}

} // namespace ostrivex
