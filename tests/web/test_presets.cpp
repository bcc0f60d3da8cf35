// The vocabulary of the Optimize Box and the web export, and the small rules around it.
#include "web/optimizesettings.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace ostrivex {
namespace {

std::vector<std::string> texts(const std::vector<WebPreset>& list) {
    std::vector<std::string> out;
    for (const WebPreset& p : list) out.push_back(p.text);
    return out;
}

TEST(Presets, ListsInOrderWithTheirExtensions) {
    EXPECT_EQ(texts(BoxPresets()),
              (std::vector<std::string>{
                  "GIF-2 Colors", "GIF-4 Colors", "GIF-8 Colors", "GIF-16 Colors", "GIF-32 Colors",
                  "GIF-64 Colors", "GIF-128 Colors", "GIF-256 Colors", "PNG-8 bit", "PNG-24 bit",
                  "JPEG - Low Quality", "JPEG - Average Quality", "JPEG - Normal Quality",
                  "JPEG - Good Quality", "JPEG - Superb Quality", "JPEG - Custom Quality .."}));
    const std::vector<std::string> exportList = texts(ExportPresets());
    ASSERT_EQ(exportList.size(), 25u);
    EXPECT_EQ(exportList[8], "BMP-2 Colors");
    EXPECT_EQ(exportList[11], "BMP-16 bit");
    EXPECT_EQ(exportList[20], "JPEG - Custom Quality ..");
    EXPECT_EQ(exportList[21], "TGA-24 bit (Compressed)");
    EXPECT_EQ(exportList[23], "TIFF-24 bit (Uncompressed)");
    EXPECT_EQ(exportList[24], "Native Bitmap");

    std::string extensions;
    for (int i = 0; i < 16; ++i) extensions += GetOptimizedFileExtension(SettingsForPreset(i)) + " ";
    EXPECT_EQ(extensions, "gif gif gif gif gif gif gif gif png png jpg jpg jpg jpg jpg jpg ");
    std::string exportExtensions;
    for (int i : {8, 12, 13, 15, 21, 22, 23, 24})
        exportExtensions += GetOptimizedFileExtension(SettingsForExportPreset(i)) + " ";
    EXPECT_EQ(exportExtensions, "bmp bmp png jpg tga tga tif bmp ");

    // Each GIF preset writes at its own depth; the JPEG presets carry FreeImage's flags.
    for (int i = 0; i < 8; ++i) EXPECT_EQ(SettingsForPreset(i).BitsPerPixel, i + 1);
    EXPECT_EQ(SettingsForPreset(10).JpegQuality, 2048);
    EXPECT_EQ(SettingsForPreset(14).JpegQuality, 128);
    EXPECT_EQ(SettingsForPreset(8).PngFlag, 1);
    EXPECT_EQ(SettingsForPreset(7).PngFlag, 0);
}

TEST(Presets, MapsOfferedAndTheDefaultAmongThem) {
    const std::vector<int32_t> expectedDefault{32768, 32768, 16384, 16384, 16384, 16384, 16384,
                                               16384, 16384, 4096};
    for (int i = 0; i < 16; ++i) {
        const std::vector<MapChoice> maps = PresetMaps(i);
        const OptimizeSettings s = SettingsForPreset(i);
        if (i >= 10) {
            EXPECT_TRUE(maps.empty()) << i;
            continue;
        }
        EXPECT_EQ(s.PaletteMode, expectedDefault[size_t(i)]) << i;
        bool offered = false;
        for (const MapChoice& m : maps) offered |= m.value == s.PaletteMode;
        EXPECT_TRUE(offered) << "preset " << i << " starts on a map it does not offer";
    }
    ASSERT_EQ(PresetMaps(9).size(), 1u);
    EXPECT_STREQ(PresetMaps(9)[0].text, "MS Map");
    std::set<std::string> gif256;
    for (const MapChoice& m : PresetMaps(7)) gif256.insert(m.text);
    EXPECT_EQ(gif256, (std::set<std::string>{"MS Map", "Optimal", "Fixed Color", "216 InternetSafe",
                                             "MS 256", "Fixed Grey"}));
    EXPECT_EQ(PresetMaps(3).size(), 5u); // VGA only at 16 colours
}

TEST(Presets, DialogSpellingsOfTheExportLists) {
    std::vector<std::string> dithers, exportDithers, maps;
    for (const DitherChoice& d : Dithers()) dithers.push_back(d.text);
    for (const DitherChoice& d : ExportDithers()) exportDithers.push_back(d.text);
    for (const MapChoice& m : ExportMaps()) maps.push_back(m.text);
    EXPECT_EQ(dithers[3], "Halftone");
    EXPECT_EQ(exportDithers[3], "Haftone");
    EXPECT_EQ(Dithers()[9].value, 512);
    EXPECT_EQ(maps, (std::vector<std::string>{"New", "Fixed Color", "VGA", "216 InternetSafe colormap",
                                              "Windows 256", "Fixed Grey"}));
    EXPECT_EQ(ExportMaps()[4].value, MapMS256);
    EXPECT_STREQ(ExportColorModes()[1], "Greyscale");
    EXPECT_STREQ(JpegQualities().back().text, "custom...");
}

TEST(Presets, CustomQualityAcceptsOneToNinetyNineOnly) {
    for (const char* bad : {"0", "100", "", "  ", "ab", "5a", "-5", "1.5", "099"})
        EXPECT_FALSE(ParseCustomQuality(bad).has_value()) << "'" << bad << "'";
    EXPECT_EQ(ParseCustomQuality("1"), 1);
    EXPECT_EQ(ParseCustomQuality("99"), 99);
    EXPECT_EQ(ParseCustomQuality(" 42 "), 42);
    EXPECT_STREQ(kCustomQualityMessage, "Enter value between 1 to 99 !");
}

TEST(Presets, InterlaceTurnsColourModeOneIntoTwo) {
    OptimizeSettings gif = SettingsForPreset(7);
    EXPECT_EQ(gif.ColorMode, 1);
    SetInterlaced(gif, true);
    EXPECT_EQ(gif.ColorMode, 2);
    EXPECT_EQ(FormatText(gif), "Format: GIF Interlaced");
    SetInterlaced(gif, false);
    EXPECT_EQ(FormatText(gif), "Format: GIF");
    OptimizeSettings jpeg = SettingsForPreset(12);
    SetInterlaced(jpeg, true);
    EXPECT_EQ(jpeg.ColorMode, 0);
    EXPECT_EQ(FormatText(jpeg), "Format: JPEG");
    EXPECT_EQ(FormatText(SettingsForPreset(9)), "Format: PNG");
}

TEST(Presets, SizeTextsAgainstTheBitmapOfThePicture) {
    // 3 x 2 at 24 bits: rows of 9 bytes padded to 12, after 54 bytes of headers.
    EXPECT_EQ(SourceBytes(3, 2), 78u);
    EXPECT_EQ(SizeText(39, 78), "Size: 39 bytes (50.00%)");
    EXPECT_EQ(SizeText(1234, SourceBytes(100, 100)), "Size: 1234 bytes (4.11%)");
    EXPECT_EQ(KilobyteText(1536), "1.50 KB");
}

} // namespace
} // namespace ostrivex
