// The settings record as it lies in the file: its size, where fields sit, the defaults.
#include "settings_test_util.h"

#include <string>
#include <vector>

namespace ostrivex::test {
namespace {

// Builds a file image from offsets worked out from the field tables: every field's
// width added up in order, nothing taken from the code under test.
struct Image {
    std::vector<std::uint8_t> b = std::vector<std::uint8_t>(3967, 0);
    void i16(std::size_t at, int v) {
        b[at] = std::uint8_t(v & 0xFF);
        b[at + 1] = std::uint8_t((v >> 8) & 0xFF);
    }
    // Consecutive i16 fields from `at` on.
    void i16s(std::size_t at, std::initializer_list<int> vs) {
        for (int v : vs) {
            i16(at, v);
            at += 2;
        }
    }
    void i32(std::size_t at, long v) {
        for (int i = 0; i < 4; ++i)
            b[at + i] = std::uint8_t((v >> (8 * i)) & 0xFF);
    }
    void text(std::size_t at, std::size_t width, const std::string& s) {
        for (std::size_t i = 0; i < width; ++i)
            b[at + i] = i < s.size() ? s[i] : ' ';
    }
};

std::size_t firstDifference(const std::vector<std::uint8_t>& a,
                            const std::vector<std::uint8_t>& b) {
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
        if (a[i] != b[i]) return i;
    return a.size() == b.size() ? std::size_t(-1) : std::min(a.size(), b.size());
}

// Only the bytes [at, at + expect.size()) are non-zero, and they hold `expect`.
void expectOnly(const SettingsRecord& s, std::size_t at, std::vector<std::uint8_t> expect,
                const char* what) {
    const std::vector<std::uint8_t> bytes = SettingsBytes(s);
    ASSERT_EQ(bytes.size(), 3967u) << what;
    std::vector<std::uint8_t> want(3967, 0);
    for (std::size_t i = 0; i < expect.size(); ++i)
        want[at + i] = expect[i];
    EXPECT_EQ(firstDifference(bytes, want), std::size_t(-1)) << what << " at offset " << at;
}

TEST(SettingsRecordLayout, SizeAndFieldOffsets) {
    EXPECT_EQ(SettingsBytes(SettingsRecord{}).size(), 3967u);
    EXPECT_EQ(kSettingsFileSize, 3967u);

    struct Case {
        void (*set)(SettingsRecord&);
        std::size_t at;
        std::vector<std::uint8_t> bytes;
        const char* what;
    };
    const Case cases[] = {
        {[](SettingsRecord& s) { s.MainWidth = 0x1234; }, 0, {0x34, 0x12}, "MainWidth"},
        {[](SettingsRecord& s) { s.DocMaximized = -1; }, 6, {0xFF, 0xFF}, "DocMaximized"},
        {[](SettingsRecord& s) { s.OpenFolder[0] = 'A'; }, 8, {'A'}, "OpenFolder"},
        {[](SettingsRecord& s) { s.SaveFolder[255] = 'Z'; }, 519, {'Z'}, "SaveFolder end"},
        {[](SettingsRecord& s) { s.Reserved1 = 7; }, 520, {7, 0}, "Reserved1"},
        {[](SettingsRecord& s) { s.LayerLoadMode = -2; }, 526, {0xFE, 0xFF}, "LayerLoadMode"},
        {[](SettingsRecord& s) { s.RecentFiles[0][0] = 'r'; }, 528, {'r'}, "RecentFiles(0)"},
        {[](SettingsRecord& s) { s.RecentFiles[7][255] = 'q'; }, 2575, {'q'}, "RecentFiles(7)"},
        {[](SettingsRecord& s) { s.ColorBoxVisible = 1; }, 2576, {1, 0}, "ColorBoxVisible"},
        {[](SettingsRecord& s) { s.LayerBoxVisible = 1; }, 2588, {1, 0}, "LayerBoxVisible"},
        {[](SettingsRecord& s) { s.ResetPending = 1; }, 2592, {1, 0}, "ResetPending"},
        {[](SettingsRecord& s) { s.ColorReserved = 0x01020304; },
         2594, {4, 3, 2, 1}, "ColorReserved"},
        {[](SettingsRecord& s) { s.ColorPrimary = 0x00AABBCC; },
         2598, {0xCC, 0xBB, 0xAA, 0}, "ColorPrimary"},
        {[](SettingsRecord& s) { s.CustomColors[15] = 9; }, 2666, {9, 0, 0, 0}, "CustomColors(15)"},
        {[](SettingsRecord& s) { s.ColorFlag = 3; }, 2670, {3, 0}, "ColorFlag"},
        {[](SettingsRecord& s) { s.ActiveTool[0] = 'k'; }, 2674, {'k'}, "ActiveTool"},
        {[](SettingsRecord& s) { s.ActiveTool[24] = 'e'; }, 2698, {'e'}, "ActiveTool end"},
        {[](SettingsRecord& s) { s.SelectMode = 5; }, 2699, {5, 0}, "SelectMode"},
        {[](SettingsRecord& s) { s.ShapeSides = 6; }, 2733, {6, 0}, "ShapeSides"},
        {[](SettingsRecord& s) { s.StampMaskColor = 0x0A0B0C0D; },
         2735, {0x0D, 0x0C, 0x0B, 0x0A}, "StampMaskColor"},
        {[](SettingsRecord& s) { s.StampPressure = 8; }, 2745, {8, 0}, "StampPressure"},
        {[](SettingsRecord& s) { s.TextVersion[0] = '1'; }, 2747, {'1'}, "TextVersion"},
        {[](SettingsRecord& s) { s.TextFont[0] = 'F'; }, 3003, {'F'}, "TextFont"},
        {[](SettingsRecord& s) { s.TextSize = 20; }, 3259, {20, 0}, "TextSize"},
        {[](SettingsRecord& s) { s.TextReserved4 = 4; }, 3277, {4, 0}, "TextReserved4"},
        {[](SettingsRecord& s) { s.GradientMode = 2; }, 3279, {2, 0, 0, 0}, "GradientMode"},
        {[](SettingsRecord& s) { s.GradientTransparent = -1; },
         3291, {0xFF, 0xFF}, "GradientTransparent"},
        {[](SettingsRecord& s) { s.GradientPressure = 50; }, 3295, {50, 0}, "GradientPressure"},
        {[](SettingsRecord& s) { s.GradientFrequency = 1; }, 3297, {1, 0}, "GradientFrequency"},
        {[](SettingsRecord& s) { s.HistoryFlags[0] = 1; }, 3299, {1, 0}, "HistoryFlags(0)"},
        {[](SettingsRecord& s) { s.HistoryDepth = 10; }, 3323, {10, 0}, "HistoryDepth"},
        {[](SettingsRecord& s) { s.PastePressure = 80; }, 3325, {80, 0}, "PastePressure"},
        {[](SettingsRecord& s) { s.PasteMode = 1; }, 3327, {1, 0}, "PasteMode"},
        {[](SettingsRecord& s) { s.KeptD = 100; }, 3337, {100, 0}, "group 14, fourth"},
        {[](SettingsRecord& s) { s.KeptE = 90; }, 3341, {90, 0}, "group 15, first"},
        {[](SettingsRecord& s) { s.KeptText2[8] = '5'; }, 3362, {'5'}, "group 15, text end"},
        {[](SettingsRecord& s) { s.HistoryBoxLeft = 1; }, 3363, {1, 0}, "HistoryBoxLeft"},
        {[](SettingsRecord& s) { s.HistoryBoxMinimized = 1; }, 3371, {1, 0}, "HistoryBoxMinimized"},
        {[](SettingsRecord& s) { s.TexturesBoxLeft = 1; }, 3373, {1, 0}, "TexturesBoxLeft"},
        {[](SettingsRecord& s) { s.ColorBoxLeft = 1; }, 3379, {1, 0}, "ColorBoxLeft"},
        {[](SettingsRecord& s) { s.PanoramicBoxLeft = 1; }, 3385, {1, 0}, "PanoramicBoxLeft"},
        {[](SettingsRecord& s) { s.BrowserBoxLeft = 1; }, 3395, {1, 0}, "BrowserBoxLeft"},
        {[](SettingsRecord& s) { s.ThumbWidth = 70; }, 3405, {70, 0}, "ThumbWidth"},
        {[](SettingsRecord& s) { s.BrowserView = 4; }, 3411, {4, 0}, "BrowserView"},
        {[](SettingsRecord& s) { s.ThumbShowResolution = 1; }, 3413, {1}, "ThumbShowResolution"},
        {[](SettingsRecord& s) { s.ThumbShowFilename = 1; }, 3414, {1}, "ThumbShowFilename"},
        {[](SettingsRecord& s) { s.ThumbWorkspaceColor = 0x123456; },
         3415, {0x56, 0x34, 0x12, 0}, "ThumbWorkspaceColor"},
        {[](SettingsRecord& s) { s.BrowserFolder[0] = '/'; }, 3419, {'/'}, "BrowserFolder"},
        {[](SettingsRecord& s) { s.OptimizeBoxLeft = 1; }, 3675, {1, 0}, "OptimizeBoxLeft"},
        {[](SettingsRecord& s) { s.LayerBoxLeft = 1; }, 3681, {1, 0}, "LayerBoxLeft"},
        {[](SettingsRecord& s) { s.LayerBoxMinimized = 1; }, 3689, {1, 0}, "LayerBoxMinimized"},
        {[](SettingsRecord& s) { s.SpareBox[2] = 1; }, 3695, {1, 0}, "spare box, third"},
        {[](SettingsRecord& s) { s.WebWidth = 600; }, 3697, {0x58, 0x02, 0, 0}, "WebWidth"},
        {[](SettingsRecord& s) { s.WebFolder[0] = '/'; }, 3705, {'/'}, "WebFolder"},
        {[](SettingsRecord& s) { s.WebColumns = 3; }, 3961, {3, 0}, "WebColumns"},
        {[](SettingsRecord& s) { s.WebQuality = -32768; }, 3965, {0x00, 0x80}, "WebQuality"},
    };
    for (const Case& c : cases) {
        SettingsRecord s{};
        c.set(s);
        expectOnly(s, c.at, c.bytes, c.what);
    }
}

TEST(SettingsRecordLayout, DefaultBytes) {
    SettingsRecord s{};
    SetFieldText(s.RecentFiles[2], "/keep/me.png");
    SetFieldText(s.ActiveTool, "Brush");
    SetDefaultSettings(s, "/opt/ox");

    Image w;
    const std::string images = "/opt/ox/Images/";
    w.i16(0, 9600); // 640 pixels at 15 twips
    w.i16(2, 7200); // 480 pixels
    w.i16s(4, {-1, 0});
    w.text(8, 256, images);
    w.text(264, 256, images);
    w.i16s(520, {-1, -1, -1, 1});
    // Recent files and the active tool are not defaulted: what was there stays.
    w.text(528 + 2 * 256, 256, "/keep/me.png");
    for (int i = 0; i < 7; ++i)
        w.i16(2576 + 2 * i, -1); // seven boxes visible
    w.i16s(2590, {0, 0});
    w.i32(2594, 0);
    w.i32(2598, 0xFFFFFF);
    w.i32(2602, 0);
    for (int i = 0; i < 16; ++i)
        w.i32(2606 + 4 * i, 17 * i * 0x010101L);
    w.i16(2670, -1);
    w.text(2674, 25, "Brush");
    w.i16s(2699, {2, 0, 50, -1, 0, 25, 25, -1, 75, 25, 100, 1, 0, 25, 100, 0, 100, 3});
    w.i32(2735, 0);
    w.i16s(2739, {0, -1, 0, 50});
    w.text(2747, 256, "1.0");
    w.text(3003, 256, "Arial");
    w.i16s(3259, {20, -1, -1, 0, 2, 100, 0, 0, 0, 0});
    w.i32(3279, 0);
    w.i32(3283, 0xFFFFFF);
    w.i32(3287, 0);
    w.i16(3291, 0);
    w.i16s(3295, {50, 1});
    for (int i = 0; i < 8; ++i)
        w.i16(3299 + 2 * i, -1);
    w.i16s(3323, {10, 80, 0, 0, 15});
    w.i32(3333, 0);
    w.i16(3337, 100);
    w.i16s(3341, {90, 65});
    w.text(3345, 9, "255255255");
    w.text(3354, 9, "255255255");
    w.i16s(3363, {3600, 4650, 3950, 3180, 0});                 // history box
    w.i16s(3373, {420, 8640, 0});                              // textures box
    w.i16s(3379, {420, 1110, 0});                              // colour box
    w.i16s(3385, {420, 6045, 2600, 3180, 0});                  // panoramic box
    w.i16s(3395, {6780, 1100, 4800, 7000, 0, 70, 60, 0, 4});   // browser box
    w.b[3413] = 1;
    w.b[3414] = 1;
    w.i32(3415, 0xFFFFFF);
    w.text(3419, 256, images);
    w.i16s(3675, {420, 3615, 0});                            // optimize box
    w.i16s(3681, {3600, 1110, 3540, 3180, 0, 3600, 8610, 0}); // layer box
    w.i32(3697, 600);
    w.i32(3701, 450);
    w.text(3705, 256, images);
    w.i16s(3961, {3, 5, 80});

    const std::vector<std::uint8_t> got = SettingsBytes(s);
    const std::size_t at = firstDifference(got, w.b);
    EXPECT_EQ(at, std::size_t(-1)) << "first differing byte at offset " << at;
}

TEST(SettingsRecordLayout, TextFieldsAndTwips) {
    FixedText<5> f{};
    EXPECT_EQ(FieldText(f), ""); // never written: NUL bytes
    SetFieldText(f, "ab");
    EXPECT_EQ(std::string(f.data(), 5), "ab   ");
    EXPECT_EQ(FieldText(f), "ab");
    SetFieldText(f, "abcdefg"); // cut at the width
    EXPECT_EQ(std::string(f.data(), 5), "abcde");
    SetFieldText(f, " a b");
    EXPECT_EQ(FieldText(f), " a b"); // only trailing blanks go

    EXPECT_EQ(PixelsToTwips(640), 9600);
    EXPECT_EQ(PixelsToTwips(2185), 32767); // 32775 twips do not fit an i16
    EXPECT_EQ(PixelsToTwips(-3000), -32768);
    EXPECT_EQ(TwipsToPixels(7200), 480);
    EXPECT_EQ(Bool16(true), -1);
    EXPECT_EQ(Bool16(false), 0);
}

} // namespace
} // namespace ostrivex::test
