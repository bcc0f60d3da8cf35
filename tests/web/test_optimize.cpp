// The optimizer's files, read back by FreeImage, by their own bytes and by identify.
#include "web/colormaps.h"
#include "web/optimize.h"
#include "web/web_test_util.h"

#include <FreeImage.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>

namespace ostrivex {
namespace {

using test::flat;
using test::gifFacts;
using test::identify;
using test::photoLike;
using test::readBytes;
using test::ScratchDir;

std::set<uint32_t> coloursOf(const Bits& b) {
    std::set<uint32_t> s;
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x)
            s.insert(uint32_t(b(2, x, y)) << 16 | uint32_t(b(1, x, y)) << 8 | b(0, x, y));
    return s;
}

bool sameRgb(const Bits& a, const Bits& b) {
    if (a.width() != b.width() || a.height() != b.height()) return false;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            for (int c = 0; c < 3; ++c)
                if (a(c, x, y) != b(c, x, y)) return false;
    return true;
}

// The PLTE entries and IHDR colour type of a PNG file.
struct PngFacts {
    int colourType = -1, bitDepth = 0, interlace = -1;
    Palette plte;
};
PngFacts pngFacts(const std::vector<uint8_t>& f) {
    PngFacts p;
    size_t at = 8;
    while (at + 8 <= f.size()) {
        const uint32_t len = uint32_t(f[at]) << 24 | uint32_t(f[at + 1]) << 16 | uint32_t(f[at + 2]) << 8 | f[at + 3];
        const std::string type(f.begin() + long(at) + 4, f.begin() + long(at) + 8);
        if (type == "IHDR") p.bitDepth = f[at + 16], p.colourType = f[at + 17], p.interlace = f[at + 20];
        if (type == "PLTE")
            for (uint32_t i = 0; i + 2 < len; i += 3) p.plte.push_back({f[at + 8 + i], f[at + 9 + i], f[at + 10 + i]});
        at += 12 + len;
    }
    return p;
}

OptimizeSettings preset(int index, int32_t map = -1) {
    OptimizeSettings s = SettingsForPreset(index);
    if (map >= 0) s.PaletteMode = map;
    return s;
}

TEST(Optimize, EveryGifPresetWritesItsDepth) {
    const Bits picture = photoLike(48, 32);
    ScratchDir dir;
    for (int i = 0; i < 8; ++i) {
        for (int32_t map : {int32_t(-1), int32_t(MapFixedColor), int32_t(MapFixedGrey)}) {
            const OptimizeSettings s = preset(i, map);
            const OptimizeResult r = Optimize(picture, s);
            ASSERT_TRUE(r.ok) << s.PresetName << ": " << r.error;
            const int bits = i + 1;
            const test::GifFacts g = gifFacts(r.bytes);
            ASSERT_TRUE(g.valid) << s.PresetName;
            EXPECT_EQ(g.tableDepth, bits) << s.PresetName;
            EXPECT_EQ(g.lzwCodeSize, std::max(2, bits));
            EXPECT_FALSE(g.interlaced);
            EXPECT_LE(coloursOf(r.picture).size(), size_t(1) << bits) << s.PresetName;
            EXPECT_EQ(r.picture.width(), 48);
            if (map == MapFixedGrey) {
                for (const PaletteColour& c : g.table) EXPECT_TRUE(c.r == c.g && c.g == c.b) << s.PresetName;
            }
            // The file on disk is these bytes, and another reader agrees on the colours.
            const std::string path = dir.file("p.gif");
            std::string error;
            ASSERT_TRUE(WriteFileAtomically(path, r.bytes, error)) << error;
            EXPECT_EQ(std::filesystem::file_size(path), r.bytes.size());
            if (test::haveIdentify()) {
                const int unique = std::stoi(identify("%k", path));
                EXPECT_LE(unique, 1 << bits) << s.PresetName;
                EXPECT_EQ(size_t(unique), coloursOf(r.picture).size()) << s.PresetName;
            }
        }
    }
}

TEST(Optimize, FixedPalettesLandInTheFileExactly) {
    const Bits picture = photoLike(40, 30);
    const test::GifFacts web = gifFacts(Optimize(picture, preset(7, MapWebSafe)).bytes);
    ASSERT_TRUE(web.valid);
    const Palette cube = WebSafePalette();
    for (size_t i = 0; i < 256; ++i)
        EXPECT_EQ(web.table[i], i < 216 ? cube[i] : PaletteColour{}) << i;

    const test::GifFacts vga = gifFacts(Optimize(picture, preset(3, MapVGA)).bytes);
    ASSERT_TRUE(vga.valid);
    EXPECT_EQ(vga.table, VgaColourMap());

    const test::GifFacts ms = gifFacts(Optimize(picture, preset(7, MapMS256)).bytes);
    EXPECT_EQ(ms.table, Ms256Palette());

    // PNG-8 carries the map's own entries, no padding.
    const PngFacts png = pngFacts(Optimize(picture, preset(8, MapWebSafe)).bytes);
    EXPECT_EQ(png.colourType, 3);
    EXPECT_EQ(png.plte, cube);
    const PngFacts two = pngFacts(Optimize(picture, preset(8, MapFixedGrey)).bytes);
    EXPECT_EQ(two.plte.size(), 256u);
    for (const PaletteColour& c : two.plte) EXPECT_TRUE(c.r == c.g && c.g == c.b);
}

TEST(Optimize, InterlaceIsSetOnlyWhenAskedAndKeepsThePixels) {
    const Bits picture = photoLike(37, 29);
    ScratchDir dir;
    OptimizeSettings s = preset(5);
    const OptimizeResult plain = Optimize(picture, s);
    SetInterlaced(s, true);
    const OptimizeResult laced = Optimize(picture, s);
    ASSERT_TRUE(plain.ok && laced.ok);
    EXPECT_FALSE(gifFacts(plain.bytes).interlaced);
    EXPECT_TRUE(gifFacts(laced.bytes).interlaced);
    EXPECT_NE(plain.bytes, laced.bytes);
    EXPECT_TRUE(sameRgb(plain.picture, laced.picture));
    if (test::haveIdentify()) {
        std::string error;
        ASSERT_TRUE(WriteFileAtomically(dir.file("plain.gif"), plain.bytes, error));
        ASSERT_TRUE(WriteFileAtomically(dir.file("laced.gif"), laced.bytes, error));
        EXPECT_EQ(identify("%[interlace]", dir.file("plain.gif")), "None");
        EXPECT_EQ(identify("%[interlace]", dir.file("laced.gif")), "GIF");
    }
    // The PNG and JPEG presets have no interlace to set.
    OptimizeSettings png = preset(8);
    SetInterlaced(png, true);
    EXPECT_EQ(Optimize(picture, png).bytes, Optimize(picture, preset(8)).bytes);
}

TEST(Optimize, PngKindsAndJpegQualityOrder) {
    const Bits picture = photoLike(96, 64);
    const OptimizeResult png24 = Optimize(picture, preset(9));
    ASSERT_TRUE(png24.ok);
    EXPECT_EQ(pngFacts(png24.bytes).colourType, 2);
    EXPECT_EQ(pngFacts(png24.bytes).interlace, 0);
    EXPECT_TRUE(sameRgb(png24.picture, picture)); // lossless
    // Compressed: the gradients leave little but the grain.
    EXPECT_LT(png24.bytes.size(), size_t(96 * 64 * 3) * 3 / 4);
    EXPECT_EQ(pngFacts(Optimize(picture, preset(8)).bytes).colourType, 3);

    std::vector<size_t> sizes;
    for (int i = 10; i <= 14; ++i) {
        const OptimizeResult r = Optimize(picture, preset(i));
        ASSERT_TRUE(r.ok) << r.error;
        EXPECT_EQ(r.bytes[0], 0xFF);
        EXPECT_EQ(r.bytes[1], 0xD8);
        sizes.push_back(r.bytes.size());
    }
    for (size_t i = 1; i < sizes.size(); ++i) EXPECT_LT(sizes[i - 1], sizes[i]) << "preset " << 10 + i;
    OptimizeSettings custom = preset(15);
    custom.JpegQuality = 60;
    const OptimizeResult sixty = Optimize(picture, custom);
    EXPECT_GT(sixty.bytes.size(), sizes[2]); // Normal is 50
    EXPECT_LT(sixty.bytes.size(), sizes[3]); // Good is 75
    if (test::haveIdentify()) {
        ScratchDir dir;
        std::string error;
        ASSERT_TRUE(WriteFileAtomically(dir.file("q.jpg"), sixty.bytes, error));
        EXPECT_EQ(identify("%Q", dir.file("q.jpg")), "60");
    }
}

TEST(Optimize, SmallOneColourAndVeryWidePictures) {
    const Bits one = flat(1, 1, 10, 200, 30);
    for (int i = 0; i < 16; ++i) {
        const OptimizeResult r = Optimize(one, SettingsForPreset(i));
        ASSERT_TRUE(r.ok) << SettingsForPreset(i).PresetName << ": " << r.error;
        EXPECT_EQ(r.picture.width(), 1);
        EXPECT_EQ(r.picture.height(), 1);
    }
    const OptimizeResult single = Optimize(flat(20, 10, 10, 200, 30), preset(7));
    ASSERT_TRUE(single.ok);
    EXPECT_EQ(single.paletteEntries, 1);
    EXPECT_EQ(gifFacts(single.bytes).tableDepth, 8);
    EXPECT_EQ(coloursOf(single.picture), (std::set<uint32_t>{0x0AC81E}));

    const Bits wide = photoLike(30000, 2);
    for (int i : {0, 7, 8, 9, 12}) {
        const OptimizeResult r = Optimize(wide, SettingsForPreset(i));
        ASSERT_TRUE(r.ok) << SettingsForPreset(i).PresetName << ": " << r.error;
        EXPECT_EQ(r.picture.width(), 30000);
    }
    const OptimizeResult none = Optimize(Bits(), preset(7));
    EXPECT_FALSE(none.ok);
    EXPECT_FALSE(none.error.empty());
}

TEST(Optimize, EveryExportEntryReadsBack) {
    const Bits picture = photoLike(33, 21);
    for (int i = 0; i < int(ExportPresets().size()); ++i) {
        OptimizeSettings s = SettingsForExportPreset(i);
        const OptimizeResult r = Optimize(picture, s);
        ASSERT_TRUE(r.ok) << s.PresetName << ": " << r.error;
        EXPECT_EQ(r.picture.width(), 33) << s.PresetName;
        FIMEMORY* mem = FreeImage_OpenMemory(const_cast<BYTE*>(r.bytes.data()), DWORD(r.bytes.size()));
        FREE_IMAGE_FORMAT fif = FreeImage_GetFileTypeFromMemory(mem);
        FIBITMAP* dib = FreeImage_LoadFromMemory(fif == FIF_UNKNOWN ? FIF_TARGA : fif, mem);
        ASSERT_NE(dib, nullptr) << s.PresetName;
        const unsigned bpp = FreeImage_GetBPP(dib);
        if (s.Format == WebFormat::Bmp) {
            EXPECT_EQ(int(bpp), s.BitsPerPixel) << s.PresetName;
        }
        if (s.Format == WebFormat::Native) {
            EXPECT_EQ(bpp, 32u);
        }
        if (s.Format == WebFormat::Tiff || (s.Format == WebFormat::Bmp && s.BitsPerPixel == 24)) {
            EXPECT_TRUE(sameRgb(r.picture, picture)) << s.PresetName;
        }
        FreeImage_Unload(dib);
        FreeImage_CloseMemory(mem);
    }
    // On a flat picture the run-length Targa is far smaller.
    const Bits plain = flat(64, 64, 1, 2, 3);
    EXPECT_LT(Optimize(plain, SettingsForExportPreset(21)).bytes.size() * 10,
              Optimize(plain, SettingsForExportPreset(22)).bytes.size());
}

TEST(Optimize, ExportOptionsAndGreyscale) {
    Bits b(2, 2);
    b(2, 0, 0) = 10; // red of the top-left pixel
    b(1, 1, 1) = 20; // green of the bottom-right
    const Bits turned = ApplyExportOptions(b, true, true, true);
    EXPECT_EQ(turned(2, 1, 1), 245);
    EXPECT_EQ(turned(1, 0, 0), 235);
    EXPECT_EQ(turned(0, 0, 1), 255);
    EXPECT_TRUE(sameRgb(ApplyExportOptions(b, false, false, false), b));

    OptimizeSettings grey = SettingsForExportPreset(14); // PNG-24
    grey.Greyscale = true;
    const OptimizeResult r = Optimize(photoLike(20, 20), grey);
    ASSERT_TRUE(r.ok);
    for (uint32_t c : coloursOf(r.picture)) EXPECT_TRUE((c >> 16) == (c & 255) && ((c >> 8) & 255) == (c & 255));
    // "Windows" keeps the 20 static colours in the optimal palette.
    OptimizeSettings windows = SettingsForExportPreset(7);
    windows.ReserveSystemColors = true;
    const test::GifFacts g = gifFacts(Optimize(photoLike(40, 40), windows).bytes);
    for (const PaletteColour& c : SystemStaticColours())
        EXPECT_NE(std::find(g.table.begin(), g.table.end(), c), g.table.end());
}

TEST(Optimize, CancelledRunWritesNothing) {
    const OptimizeResult r = Optimize(photoLike(200, 200), preset(7), [] { return true; });
    EXPECT_TRUE(r.cancelled);
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.bytes.empty());
}

TEST(Optimize, FailedWriteLeavesTheOldFile) {
    ScratchDir dir;
    const std::string path = dir.file("keep.gif");
    test::writeBytes(path, {1, 2, 3});
    chmod(path.c_str(), 0640);
    std::string error;
    // A file size limit makes the write fail part way, as a full disk would.
    signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit small = old;
    small.rlim_cur = 100;
    setrlimit(RLIMIT_FSIZE, &small);
    const bool written = WriteFileAtomically(path, std::vector<uint8_t>(1000, 7), error);
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_FALSE(written);
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(readBytes(path), (std::vector<uint8_t>{1, 2, 3}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1); // no work file left

    ASSERT_TRUE(WriteFileAtomically(path, {9, 8}, error)) << error;
    EXPECT_EQ(readBytes(path), (std::vector<uint8_t>{9, 8}));
    struct stat st {};
    stat(path.c_str(), &st);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    EXPECT_FALSE(WriteFileAtomically(dir.file("no/such/folder.gif"), {1}, error));
}

TEST(Optimize, GifSavesFollowTheBoxOnlyForGifPresets) {
    ScratchDir dir;
    const Bits picture = photoLike(30, 20);
    std::string error;
    SetGifSaveSettings(nullptr);
    ASSERT_TRUE(SaveGifFile(picture, dir.file("a.gif"), error)) << error;
    EXPECT_EQ(gifFacts(readBytes(dir.file("a.gif"))).tableDepth, 8);

    OptimizeSettings box = preset(3);
    SetInterlaced(box, true);
    SetGifSaveSettings(&box);
    ASSERT_TRUE(SaveGifFile(picture, dir.file("b.gif"), error));
    const test::GifFacts b = gifFacts(readBytes(dir.file("b.gif")));
    EXPECT_EQ(b.tableDepth, 4);
    EXPECT_TRUE(b.interlaced);

    const OptimizeSettings jpeg = preset(12);
    SetGifSaveSettings(&jpeg);
    EXPECT_EQ(GifSaveSettings().BitsPerPixel, 8);
    EXPECT_EQ(GifSaveSettings().PaletteMode, MapOptimal);
    SetGifSaveSettings(nullptr);
}

} // namespace
} // namespace ostrivex
