// Loading by extension: the sample files of the hard formats, files written by
// ImageMagick, the platform picture loader, and what a load hands back.
#include "imagefile_test_util.h"

#include <algorithm>
#include <filesystem>

namespace ostrivex::test {
namespace {

Bits roseReference() {
    EXPECT_TRUE(Keep(LoadImageFile(dataFile("rose.ppm"), "ppm")).ok);
    EXPECT_EQ(Last().pixels.width(), 70);
    EXPECT_EQ(Last().pixels.height(), 46);
    EXPECT_EQ(Last().bpp, 24);
    return Last().pixels;
}

TEST(LoadImageFile, DevilSamplesDecodeToTheReferencePicture) {
    const Bits rose = roseReference();
    for (const char* name : {"rose.pix", "rose.pxr", "rose-v4.psp", "rose-v5.psp", "rose.sgi"}) {
        SCOPED_TRACE(name);
        ImageFileResult r = Keep(LoadImageFile(dataFile(name), ExtensionOf(name)));
        ASSERT_TRUE(r.ok);
        EXPECT_EQ(r.message, "");
        EXPECT_EQ(Last().pixels.width(), 70);
        EXPECT_EQ(Last().pixels.height(), 46);
        EXPECT_TRUE(samePixels(rose, Last().pixels));
    }
    // DXT compression is lossy (4 x 4 blocks of two interpolated colours): close on
    // average, with no transposed or flipped rows.
    ASSERT_TRUE(Keep(LoadImageFile(dataFile("rose.dds"), "dds")).ok);
    ASSERT_EQ(Last().pixels.width(), 70);
    ASSERT_EQ(Last().pixels.height(), 46);
    long total = 0;
    for (int y = 0; y < 46; ++y)
        for (int x = 0; x < 70; ++x)
            for (int c = 0; c < 3; ++c)
                total += std::abs(int(rose(c, x, y)) - int(Last().pixels(c, x, y)));
    EXPECT_LT(double(total) / (70 * 46 * 3), 8.0);
}

TEST(LoadImageFile, SmallSamplesHaveTheirSizesAndDepths) {
    struct Case {
        const char* name;
        int w, h, bpp;
    };
    // DevIL's rows pass through a BMP that DevIL writes itself; the bpp is that file's.
    const Case cases[] = {{"small.koa", 320, 200, 4},  {"small.cut", 16, 8, 8},
                          {"small.iff", 16, 4, 8},     {"small.lbm", 16, 4, 8},
                          {"small.mng", 70, 46, 24},   {"small.jng", 70, 46, 24},
                          {"photo.pcd", 768, 512, 24}, {"small.lif", 20, 16, 8},
                          {"small.wal", 16, 16, 8},    {"small.mdl", 8, 4, 8}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_TRUE(Keep(LoadImageFile(dataFile(c.name), ExtensionOf(c.name))).ok);
        EXPECT_EQ(Last().pixels.width(), c.w);
        EXPECT_EQ(Last().pixels.height(), c.h);
        EXPECT_EQ(Last().bpp, c.bpp);
        EXPECT_EQ(Last().pixels.width(), c.w);
        EXPECT_EQ(Last().pixels.height(), c.h);
    }
    // The MNG is the rose stored losslessly.
    const Bits rose = roseReference();
    ASSERT_TRUE(Keep(LoadImageFile(dataFile("small.mng"), "mng")).ok);
    EXPECT_TRUE(samePixels(rose, Last().pixels));
}

TEST(LoadImageFile, ExtensionIsComparedInLowerCase) {
    ScratchDir dir;
    const std::string ppm = dir.file("pattern.ppm");
    writeText(ppm, patternPpmText());
    // A plain 200,100,50 square: JPEG keeps a flat colour within a step or two.
    const std::string jpg = dir.file("FLAT.JPG");
    ASSERT_TRUE(imageMagick("-size 16x16 xc:'rgb(200,100,50)' " + jpg));
    ASSERT_TRUE(Keep(LoadImageFile(jpg, "JPG")).ok);
    EXPECT_EQ(Last().pixels.width(), 16);
    EXPECT_EQ(Last().pixels.height(), 16);
    EXPECT_EQ(Last().bpp, 24);
    EXPECT_LE(
        maxDifference(rgbBits(16, 16, std::vector<Rgb>(256, Rgb{200, 100, 50})), Last().pixels), 2);
    EXPECT_EQ(ExtensionOf(jpg), "jpg");
    ASSERT_TRUE(Keep(LoadImageFile(ppm, "PPM")).ok);
    EXPECT_TRUE(samePixels(patternPicture(), Last().pixels));
}

TEST(LoadImageFile, FilesWrittenByImageMagick) {
    ScratchDir dir;
    const std::string source = dir.file("pattern.ppm");
    writeText(source, patternPpmText());
    const Bits expected = patternPicture();
    struct Case {
        const char* target; // ImageMagick output (format prefix and file name)
        const char* file;
        const char* ext;
        int bpp; // -1: not checked
    };
    const Case cases[] = {
        {"bmp3:", "p.bmp", "bmp", 24}, {"png24:", "p.png", "png", 24},
        {"tiff:", "p.tif", "tif", 24}, {"tiff:", "p.tiff", "tiff", 24},
        {"pcx:", "p.pcx", "pcx", -1},  {"ppm:", "p.ppm", "ppm", 24},
        {"psd:", "p.psd", "psd", -1},  {"psd:", "p.pdd", "pdd", -1},
        {"sun:", "p.ras", "ras", -1},  {"sgi:", "p.sgi", "sgi", -1},
        {"sgi:", "p.rgb", "rgb", -1},  {"sgi:", "p.rgba", "rgba", -1},
        {"sgi:", "p.bw", "bw", -1},    {"mng:", "p.mng", "mng", -1},
        {"dds:", "p.dds", "dds", -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        const std::string out = dir.file(c.file);
        ASSERT_TRUE(imageMagick("-depth 8 " + source + " " + c.target + out));
        ImageFileResult r = Keep(LoadImageFile(out, c.ext));
        ASSERT_TRUE(r.ok) << r.message;
        if (c.bpp > 0) {
            EXPECT_EQ(Last().bpp, c.bpp);
        }
        if (std::string(c.ext) == "dds") {
            EXPECT_EQ(Last().pixels.width(), 4);
            EXPECT_EQ(Last().pixels.height(), 3);
            continue; // DXT: lossy
        }
        EXPECT_TRUE(samePixels(expected, Last().pixels));
    }
}

TEST(LoadImageFile, GreyAndOneBitFilesFromImageMagick) {
    ScratchDir dir;
    // 3 x 2 grey levels and a 3 x 2 black and white picture, by hand.
    const std::string grey = dir.file("grey.pgm");
    writeText(grey, "P2\n3 2\n255\n0 64 128\n192 255 7\n");
    const std::string bw = dir.file("bw.pbm");
    writeText(bw, "P1\n3 2\n1 0 1\n0 1 0\n");
    const Bits greyPicture = rgbBits(
        3, 2,
        {{0, 0, 0}, {64, 64, 64}, {128, 128, 128}, {192, 192, 192}, {255, 255, 255}, {7, 7, 7}});
    // In PBM a 1 is black.
    const Bits bwPicture = rgbBits(
        3, 2, {{0, 0, 0}, {255, 255, 255}, {0, 0, 0}, {255, 255, 255}, {0, 0, 0}, {255, 255, 255}});
    ASSERT_TRUE(Keep(LoadImageFile(grey, "pgm")).ok);
    EXPECT_EQ(Last().bpp, 8);
    EXPECT_TRUE(samePixels(greyPicture, Last().pixels));
    ASSERT_TRUE(imageMagick(grey + " pgm:" + dir.file("g2.pgm")));
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("g2.pgm"), "pgm")).ok);
    EXPECT_TRUE(samePixels(greyPicture, Last().pixels));
    ASSERT_TRUE(Keep(LoadImageFile(bw, "pbm")).ok);
    EXPECT_EQ(Last().bpp, 1);
    EXPECT_TRUE(samePixels(bwPicture, Last().pixels));
    ASSERT_TRUE(imageMagick(bw + " wbmp:" + dir.file("p.wbmp")));
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("p.wbmp"), "wbmp")).ok);
    EXPECT_EQ(Last().bpp, 1);
    EXPECT_TRUE(samePixels(bwPicture, Last().pixels));
}

TEST(LoadImageFile, DevilCrashesAreFailedLoads) {
    // DevIL's PIC loader corrupts its heap: the helper dies, the editor reports.
    ASSERT_TRUE(Keep(LoadImageFile(dataFile("rose.ppm"), "ppm")).ok);
    ImageFileResult r = Keep(LoadImageFile(dataFile("devil-crash.pic"), "pic"));
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "Unexpected error loading image");
    EXPECT_TRUE(Last().pixels.empty());
    // A CRLF JASC palette makes DevIL loop for ever: the time limit ends it.
    ScratchDir dir;
    writeText(dir.file("loop.pal"), "JASC-PAL\r\n0100\r\n2\r\n0 0 0\r\n255 255 255\r\n");
    const int limit = DevilTimeLimit();
    SetDevilTimeLimit(1500);
    r = Keep(LoadImageFile(dir.file("loop.pal"), "pal"));
    SetDevilTimeLimit(limit);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "Unexpected error loading image");
    // After all that, DevIL loads still work.
    EXPECT_TRUE(Keep(LoadImageFile(dataFile("rose.pix"), "pix")).ok);
}

TEST(LoadImageFile, XpmFilesThatCrashDevilLoad) {
    // DevIL's XPM loader crashes on every file, even of four colours; FreeImage's reads
    // them, the 30-colour one included, every time.
    ScratchDir dir;
    writeText(dir.file("four.ppm"), "P3\n2 2\n255\n255 0 0\n0 255 0\n0 0 255\n255 255 255\n");
    ASSERT_TRUE(imageMagick(dir.file("four.ppm") + " xpm:" + dir.file("four.xpm")));
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("four.xpm"), "xpm")).ok);
    EXPECT_TRUE(samePixels(rgbBits(2, 2, {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}}),
                           Last().pixels));
    ASSERT_TRUE(imageMagick(dataFile("devil-crash-30colours.xpm") + " ppm:" + dir.file("c30.ppm")));
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("c30.ppm"), "ppm")).ok);
    const Bits c30 = Last().pixels;
    for (int run = 0; run < 2; ++run) {
        ASSERT_TRUE(Keep(LoadImageFile(dataFile("devil-crash-30colours.xpm"), "xpm")).ok);
        EXPECT_TRUE(samePixels(c30, Last().pixels));
    }
}

TEST(LoadImageFile, JngUsesTheTypeFoundInTheFile) {
    ScratchDir dir;
    ASSERT_TRUE(imageMagick("-size 8x8 xc:'rgb(40,80,160)' jng:" + dir.file("flat.jng")));
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("flat.jng"), "jng")).ok);
    EXPECT_EQ(Last().pixels.width(), 8);
    EXPECT_LE(maxDifference(rgbBits(8, 8, std::vector<Rgb>(64, Rgb{40, 80, 160})), Last().pixels),
              2);
    // The type comes from the contents, so a PNG named .jng loads as well.
    writeText(dir.file("pattern.ppm"), patternPpmText());
    ASSERT_TRUE(imageMagick(dir.file("pattern.ppm") + " png24:" + dir.file("png.jng")));
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("png.jng"), "jng")).ok);
    EXPECT_TRUE(samePixels(patternPicture(), Last().pixels));
}

TEST(LoadImageFile, HelperLoadsInARowLeaveNoWorkFile) {
    // The helper hands its pixels back in memory: two loads in a row give each its own
    // picture, and neither the loads nor a DevIL save leave a file in the work folder.
    const Bits rose = roseReference();
    ScratchDir dir;
    writeText(dir.file("pattern.ppm"), patternPpmText());
    ASSERT_TRUE(imageMagick(dir.file("pattern.ppm") + " pcx:" + dir.file("pattern.pcx")));
    auto folderFiles = [] {
        std::vector<std::string> names;
        for (const auto& e : std::filesystem::directory_iterator(TempFolder()))
            names.push_back(e.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    };
    const auto before = folderFiles();
    ASSERT_TRUE(Keep(LoadImageFile(dataFile("rose.pix"), "pix")).ok);
    EXPECT_TRUE(samePixels(rose, Last().pixels));
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("pattern.pcx"), "pcx")).ok);
    EXPECT_TRUE(samePixels(patternPicture(), Last().pixels));
    ASSERT_TRUE(SaveImageFile(rose, dir.file("rose.psd"), "psd").ok);
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("rose.psd"), "psd")).ok);
    EXPECT_TRUE(samePixels(rose, Last().pixels));
    EXPECT_EQ(folderFiles(), before);
    // The save left nothing beside its file either.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()),
                            std::filesystem::directory_iterator()),
              3);
}

TEST(LoadImageFile, OutsideTheTableThereIsNoBitmap) {
    ScratchDir dir;
    writeText(dir.file("pattern.ppm"), patternPpmText());
    ASSERT_TRUE(imageMagick(dir.file("pattern.ppm") + " jpeg:" + dir.file("photo.jpe")));
    ASSERT_TRUE(Keep(LoadImageFile(dataFile("rose.ppm"), "ppm")).ok);
    // jpe is offered by the open filter and yet has no row: the error, and no picture left.
    for (const char* ext :
         {"jpe", "jif", "rle", "sun", "ico", "gif", "wmf", "emf", "dib", "olf", ""}) {
        SCOPED_TRACE(ext);
        ImageFileResult r = Keep(LoadImageFile(dir.file("photo.jpe"), ext));
        EXPECT_FALSE(r.ok);
        EXPECT_EQ(r.message, "Unexpected error loading image");
        EXPECT_TRUE(Last().pixels.empty());
        EXPECT_EQ(Last().pixels.width(), 0);
        EXPECT_EQ(Last().pixels.height(), 0);
        EXPECT_EQ(Last().bpp, 0);
    }
    // The same file under its right name loads.
    EXPECT_TRUE(Keep(LoadImageFile(dir.file("photo.jpe"), "jpeg")).ok);
}

TEST(LoadPictureFile, RasterFilesThroughThePlatformLoader) {
    ScratchDir dir;
    const std::string source = dir.file("pattern.ppm");
    writeText(source, patternPpmText());
    // ImageMagick's gif writer merges (1,2,3) into black, so its gif has (90,60,30) there.
    std::vector<Rgb> gifColours = patternColours();
    gifColours.back() = {90, 60, 30};
    writeText(dir.file("gif.ppm"), "P3\n4 3\n255\n255 0 0 0 255 0 0 0 255 255 255 255\n"
                                   "0 0 0 10 20 30 200 100 50 128 128 128\n"
                                   "255 255 0 0 255 255 255 0 255 90 60 30\n");
    ASSERT_TRUE(imageMagick(dir.file("gif.ppm") + " gif:" + dir.file("p.gif")));
    ASSERT_TRUE(imageMagick(source + " bmp3:" + dir.file("p.dib")));
    ASSERT_TRUE(imageMagick(source + " bmp3:" + dir.file("p.bmp")));
    for (const char* name : {"p.gif", "p.dib", "p.bmp", "p.GIF"}) {
        SCOPED_TRACE(name);
        if (std::string(name) == "p.GIF")
            std::filesystem::copy_file(dir.file("p.gif"), dir.file(name));
        ASSERT_TRUE(Keep(LoadPictureFile(dir.file(name), ExtensionOf(name))).ok);
        const bool gif = ExtensionOf(name) == "gif";
        EXPECT_TRUE(samePixels(gif ? rgbBits(4, 3, gifColours) : patternPicture(), Last().pixels));
    }
    ASSERT_TRUE(Keep(LoadPictureFile(dir.file("p.gif"), "gif")).ok);
    EXPECT_EQ(Last().bpp, 4); // twelve colours need a 4-bit palette
    ASSERT_TRUE(Keep(LoadPictureFile(dir.file("p.bmp"), "bmp")).ok);
    EXPECT_EQ(Last().bpp, 24);
    // A transparent gif pixel comes out white.
    ASSERT_TRUE(imageMagick("-size 1x1 xc:red -size 1x1 xc:none +append gif:" + dir.file("t.gif")));
    ASSERT_TRUE(Keep(LoadPictureFile(dir.file("t.gif"), "gif")).ok);
    EXPECT_EQ(rgbAt(Last().pixels, 0, 0), (std::vector<int>{255, 0, 0}));
    EXPECT_EQ(rgbAt(Last().pixels, 1, 0), (std::vector<int>{255, 255, 255}));

    // The document's load picks the loader by the extension.
    ASSERT_TRUE(Keep(LoadDocumentImage(dir.file("p.GIF"), "GIF")).ok);
    EXPECT_EQ(Last().bpp, 4);
    ASSERT_TRUE(Keep(LoadDocumentImage(dataFile("rose.sgi"), "sgi")).ok);
    EXPECT_EQ(Last().pixels.width(), 70);
    EXPECT_EQ(Keep(LoadDocumentImage(dir.file("p.gif"), "olf")).message,
              "Unexpected error loading image");

    EXPECT_TRUE(IsPictureExtension("GIF"));
    EXPECT_TRUE(IsPictureExtension("dib"));
    EXPECT_FALSE(IsPictureExtension("png"));
    EXPECT_FALSE(Keep(LoadPictureFile(dir.file("p.bmp"), "png")).ok);
}

TEST(LoadPictureFile, MetafilesAtTheirOwnSize) {
    // Both files: a red rectangle (10,10)-(110,90) with a blue pen, a green (0,160,0)
    // ellipse in (120,20)-(190,95), on a 200 x 100 white frame.
    for (const char* name : {"shapes.wmf", "shapes.emf"}) {
        SCOPED_TRACE(name);
        ImageFileResult r = Keep(LoadPictureFile(dataFile(name), ExtensionOf(name)));
        ASSERT_TRUE(r.ok);
        EXPECT_EQ(Last().pixels.width(), 200);
        EXPECT_EQ(Last().pixels.height(), 100);
        EXPECT_EQ(Last().bpp, 24);
        EXPECT_EQ(rgbAt(Last().pixels, 0, 0), (std::vector<int>{255, 255, 255}));
        EXPECT_EQ(rgbAt(Last().pixels, 5, 50), (std::vector<int>{255, 255, 255}));
        EXPECT_EQ(rgbAt(Last().pixels, 199, 99), (std::vector<int>{255, 255, 255}));
        EXPECT_EQ(rgbAt(Last().pixels, 50, 50), (std::vector<int>{255, 0, 0}));
        EXPECT_EQ(rgbAt(Last().pixels, 100, 80), (std::vector<int>{255, 0, 0}));
        EXPECT_EQ(rgbAt(Last().pixels, 115, 50), (std::vector<int>{255, 255, 255}));
        // The rectangle's left edge carries the blue pen (smoothed in the EMF).
        EXPECT_EQ(Last().pixels(0, 9, 50), 255);
        EXPECT_LT(Last().pixels(1, 9, 50), 200);
    }
    // The EMF renderer fills the ellipse; libwmf's raster device draws only its outline.
    ASSERT_TRUE(Keep(LoadPictureFile(dataFile("shapes.emf"), "emf")).ok);
    EXPECT_EQ(rgbAt(Last().pixels, 155, 57), (std::vector<int>{0, 160, 0}));
}

TEST(LoadImageFile, AMissingHelperIsAFailedLoad) {
    SetDevilHelperPath("/nonexistent/ostrivex-devil");
    ImageFileResult r = Keep(LoadImageFile(dataFile("rose.pix"), "pix"));
    SetDevilHelperPath("");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "Unexpected error loading image");
    EXPECT_TRUE(Keep(LoadImageFile(dataFile("rose.pix"), "pix")).ok);
}

TEST(TempFolder, IsPrivateAndHoldsTheFixedNames) {
    const std::string folder = TempFolder();
    ASSERT_FALSE(folder.empty());
    EXPECT_NE(folder.back(), '/');
    namespace fs = std::filesystem;
    ASSERT_TRUE(fs::is_directory(fs::symlink_status(folder)));
    const auto perms = fs::status(folder).permissions();
    EXPECT_EQ(perms & fs::perms::all, fs::perms::owner_all);
    EXPECT_EQ(TempBitmapName(), folder + "/t65s8s98");
    // Loosened permissions are taken back on the next use.
    fs::permissions(folder, fs::perms::group_read | fs::perms::group_exec, fs::perm_options::add);
    EXPECT_EQ(TempFolder(), folder);
    EXPECT_EQ(fs::status(folder).permissions() & fs::perms::all, fs::perms::owner_all);
}

} // namespace
} // namespace ostrivex::test
