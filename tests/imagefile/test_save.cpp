// Saving by extension: round trips of every extension the saver writes, file bytes
// worked out by hand for the simple formats, and the failures.
#include "imagefile_test_util.h"

#include <filesystem>

namespace ostrivex::test {
namespace {

namespace fs = std::filesystem;

TEST(SaveImageFile, LosslessRoundTripsOfEverySavableExtension) {
    ScratchDir dir;
    const Bits picture = patternPicture();
    // png, bmp, tif, ppm and the targa names through FreeImage; psd, the SGI names, raw
    // and pcx through DevIL; each read back by the loader of its extension.
    for (const char* ext : {"png", "bmp", "tif", "tiff", "ppm", "tga", "vda", "vst", "icb", "targa",
                            "psd", "sgi", "bw", "rgb", "rgba", "raw", "pcx"}) {
        SCOPED_TRACE(ext);
        const std::string path = dir.file(std::string("round.") + ext);
        ImageFileResult saved = SaveImageFile(picture, path, ext);
        ASSERT_TRUE(saved.ok) << saved.message;
        EXPECT_EQ(saved.message, "");
        ImageFileResult loaded = Keep(LoadImageFile(path, ext));
        ASSERT_TRUE(loaded.ok);
        EXPECT_TRUE(samePixels(picture, Last().pixels));
        EXPECT_EQ(Last().pixels.width(), 4);
        EXPECT_EQ(Last().pixels.height(), 3);
    }
    // The extension is lowered first.
    ASSERT_TRUE(SaveImageFile(picture, dir.file("UP.PNG"), "PNG").ok);
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("UP.PNG"), "png")).ok);
    EXPECT_TRUE(samePixels(picture, Last().pixels));
}

TEST(SaveImageFile, PixelBytesOfBmpAndPpm) {
    ScratchDir dir;
    const Bits picture = patternPicture();
    ASSERT_TRUE(SaveImageFile(picture, dir.file("p.bmp"), "bmp").ok);
    const auto bmp = readBytes(dir.file("p.bmp"));
    // 54 bytes of headers, then 24-bit rows of 12 bytes (no padding needed), bottom row
    // first, blue-green-red.
    ASSERT_EQ(bmp.size(), 54u + 36u);
    EXPECT_EQ(bmp[0], 'B');
    EXPECT_EQ(bmp[1], 'M');
    EXPECT_EQ(bmp[28], 24);
    const std::vector<uint8_t> bmpPixels = {
        0, 255, 255, 255, 255, 0,  255, 0,   255, 3,   2,   1,    // yellow cyan magenta (1,2,3)
        0, 0,   0,   30,  20,  10, 50,  100, 200, 128, 128, 128,  // black ... grey
        0, 0,   255, 0,   255, 0,  255, 0,   0,   255, 255, 255}; // red green blue white
    EXPECT_EQ(std::vector<uint8_t>(bmp.begin() + 54, bmp.end()), bmpPixels);

    ASSERT_TRUE(SaveImageFile(picture, dir.file("p.ppm"), "ppm").ok);
    const auto ppm = readBytes(dir.file("p.ppm"));
    ASSERT_GT(ppm.size(), 36u);
    EXPECT_EQ(ppm[0], 'P');
    EXPECT_EQ(ppm[1], '6');
    // Binary PPM: top row first, red-green-blue.
    const std::vector<uint8_t> ppmPixels = {255, 0,   0, 0,  255, 0,   0,   0,   255, 255, 255, 255,
                                            0,   0,   0, 10, 20,  30,  200, 100, 50,  128, 128, 128,
                                            255, 255, 0, 0,  255, 255, 255, 0,   255, 1,   2,   3};
    EXPECT_EQ(std::vector<uint8_t>(ppm.end() - 36, ppm.end()), ppmPixels);
}

TEST(SaveImageFile, PbmAndPgmAreEightBitGrey) {
    // Grey = 0.2126 R + 0.7152 G + 0.0722 B, rounded: red 54.2 -> 54, green 182.4 -> 182,
    // blue 18.4 -> 18, (10,20,30) 18.6 -> 19, (200,100,50) 117.7 -> 118, yellow 236.6 ->
    // 237, cyan 200.8 -> 201, magenta 72.6 -> 73, (1,2,3) 1.86 -> 2.
    const std::vector<uint8_t> grey = {54, 182, 18, 255, 0, 19, 118, 128, 237, 201, 73, 2};
    ScratchDir dir;
    for (const char* ext : {"pgm", "pbm"}) {
        SCOPED_TRACE(ext);
        const std::string path = dir.file(std::string("g.") + ext);
        ASSERT_TRUE(SaveImageFile(patternPicture(), path, ext).ok);
        const auto bytes = readBytes(path);
        ASSERT_GT(bytes.size(), 12u);
        EXPECT_EQ(bytes[0], 'P');
        EXPECT_EQ(bytes[1], '5'); // a graymap, whatever the name says
        EXPECT_EQ(std::vector<uint8_t>(bytes.end() - 12, bytes.end()), grey);
        ASSERT_TRUE(Keep(LoadImageFile(path, ext)).ok);
        EXPECT_EQ(Last().bpp, 8);
        std::vector<Rgb> greys;
        for (uint8_t g : grey)
            greys.push_back({g, g, g});
        EXPECT_TRUE(samePixels(rgbBits(4, 3, greys), Last().pixels));
    }
}

TEST(SaveImageFile, JpegAtBestQuality) {
    ScratchDir dir;
    const Bits flat = rgbBits(16, 16, std::vector<Rgb>(256, Rgb{200, 100, 50}));
    for (const char* ext : {"jpg", "jpeg"}) {
        SCOPED_TRACE(ext);
        const std::string path = dir.file(std::string("flat.") + ext);
        ASSERT_TRUE(SaveImageFile(flat, path, ext).ok);
        const auto bytes = readBytes(path);
        ASSERT_GT(bytes.size(), 4u);
        EXPECT_EQ(bytes[0], 0xFF);
        EXPECT_EQ(bytes[1], 0xD8);
        ASSERT_TRUE(Keep(LoadImageFile(path, ext)).ok);
        EXPECT_LE(maxDifference(flat, Last().pixels), 2);
    }
    // Best quality keeps a sharp pattern close too (chroma is averaged over 2 x 2).
    const Bits sharp = patternPicture();
    ASSERT_TRUE(SaveImageFile(sharp, dir.file("sharp.jpg"), "jpg").ok);
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("sharp.jpg"), "jpg")).ok);
    EXPECT_EQ(Last().pixels.width(), 4);
    EXPECT_EQ(Last().pixels.height(), 3);
}

TEST(SaveImageFile, GifWritesAGifAndUnknownNamesFail) {
    ScratchDir dir;
    ImageFileResult gif = SaveImageFile(patternPicture(), dir.file("p.gif"), "gif");
    EXPECT_TRUE(gif.ok);
    ASSERT_TRUE(Keep(LoadPictureFile(dir.file("p.gif"), "gif")).ok);
    EXPECT_TRUE(samePixels(patternPicture(), Last().pixels)); // few colours: kept exactly
    // jpe and jif stand in the save filter and yet have no saver.
    for (const char* ext : {"jpe", "jif", "dib", "rle", "olf", "xyz", ""}) {
        SCOPED_TRACE(ext);
        ImageFileResult r = SaveImageFile(patternPicture(), dir.file(std::string("p.") + ext), ext);
        EXPECT_FALSE(r.ok);
        EXPECT_EQ(r.message, "Unexpected error saving image");
        EXPECT_FALSE(fs::exists(dir.file(std::string("p.") + ext)));
    }
    // An empty picture, and a folder that does not exist, for both libraries.
    EXPECT_EQ(SaveImageFile(Bits(), dir.file("e.png"), "png").message,
              "Unexpected error saving image");
    for (const char* ext : {"png", "psd"}) {
        ImageFileResult r =
            SaveImageFile(patternPicture(), dir.file(std::string("no/such.") + ext), ext);
        EXPECT_FALSE(r.ok) << ext;
        EXPECT_EQ(r.message, "Unexpected error saving image");
    }
}

TEST(SaveImageFile, SavingReplacesAnExistingFile) {
    ScratchDir dir;
    const Bits flat = rgbBits(2, 2, std::vector<Rgb>(4, Rgb{9, 8, 7}));
    for (const char* ext : {"png", "pcx"}) {
        SCOPED_TRACE(ext);
        const std::string path = dir.file(std::string("again.") + ext);
        ASSERT_TRUE(SaveImageFile(patternPicture(), path, ext).ok);
        ASSERT_TRUE(SaveImageFile(flat, path, ext).ok);
        ASSERT_TRUE(Keep(LoadImageFile(path, ext)).ok);
        EXPECT_TRUE(samePixels(flat, Last().pixels));
    }
}

TEST(SaveImageFile, WrittenFilesReadTheSameInImageMagick) {
    // A photograph-like picture (grain everywhere: PNG's run-length branch) and a drawing
    // (flat runs: PNG's adaptive branch), each written and read back by ImageMagick.
    Bits photo(97, 61), drawing(97, 61);
    uint32_t s = 5;
    for (int y = 0; y < 61; ++y)
        for (int x = 0; x < 97; ++x)
            for (int c = 0; c < 3; ++c) {
                s = s * 1103515245u + 12345u;
                photo(c, x, y) = uint8_t(x * 2 + y + c * 40 + int(s >> 28));
                drawing(c, x, y) = uint8_t(((x / 7 + y / 5) % 3) * 100 + c * 20);
            }
    ScratchDir dir;
    struct Case {
        const char* ext;
        int tolerance;
    };
    for (const Bits* picture : {&photo, &drawing})
        for (const Case& c : {Case{"png", 0}, Case{"ppm", 0}, Case{"bmp", 0}, Case{"tif", 0},
                              Case{"jpg", 2}}) {
            SCOPED_TRACE(std::string(c.ext) + (picture == &photo ? " photo" : " drawing"));
            const std::string file = dir.file(std::string("w.") + c.ext);
            ASSERT_TRUE(SaveImageFile(*picture, file, c.ext).ok);
            ASSERT_TRUE(imageMagick(file + " -depth 8 ppm:" + dir.file("back.ppm")));
            ASSERT_TRUE(Keep(LoadImageFile(dir.file("back.ppm"), "ppm")).ok);
            if (c.tolerance == 0) {
                EXPECT_TRUE(samePixels(*picture, Last().pixels));
            } else {
                // Lossy: ImageMagick's decode of the file agrees with the program's own.
                const Bits theirs = Last().pixels;
                ASSERT_TRUE(Keep(LoadImageFile(file, c.ext)).ok);
                EXPECT_LE(maxDifference(theirs, Last().pixels), c.tolerance);
            }
        }
}

TEST(DevilConvert, ConvertsBetweenDevilFormats) {
    ScratchDir dir;
    ASSERT_TRUE(SaveImageFile(patternPicture(), dir.file("p.bmp"), "bmp").ok);
    EXPECT_TRUE(DevilConvert(dir.file("p.bmp"), dir.file("p.sgi"), 0x042C));
    ASSERT_TRUE(Keep(LoadImageFile(dir.file("p.sgi"), "sgi")).ok);
    EXPECT_TRUE(samePixels(patternPicture(), Last().pixels));
    EXPECT_FALSE(DevilConvert(dir.file("missing.bmp"), dir.file("q.sgi"), 0x042C));
    EXPECT_FALSE(fs::exists(dir.file("q.sgi")));
    // A failed conversion leaves a file of the target's name as it was.
    writeText(dir.file("old.sgi"), "old");
    EXPECT_FALSE(DevilConvert(dir.file("missing.bmp"), dir.file("old.sgi"), 0x042C));
    EXPECT_EQ(readBytes(dir.file("old.sgi")), (std::vector<uint8_t>{'o', 'l', 'd'}));
}

} // namespace
} // namespace ostrivex::test
