// Thumbnails through the long-running helper: the same loaders as File > Open, small
// pictures that keep their pixels, large ones shrunk, and hostile files that cost only
// the helper.
#include "imagefile/thumbdecoder.h"
#include "imagefile_test_util.h"

#include <chrono>

namespace ostrivex::test {
namespace {

class Thumbnails : public ::testing::Test {
  protected:
    void SetUp() override {
        limit_ = DevilTimeLimit();
        SetDevilTimeLimit(3000);
    }
    void TearDown() override { SetDevilTimeLimit(limit_); }
    ScratchDir dir_;
    int limit_ = 0;
};

TEST_F(Thumbnails, SmallPictureKeepsItsPixelsAndLargeOneShrinks) {
    ASSERT_TRUE(SaveImageFile(patternPicture(), dir_.file("pattern.png"), "png").ok);
    ThumbnailDecoder decoder;
    ThumbnailPicture t;
    ASSERT_TRUE(decoder.Decode(dir_.file("pattern.png"), "png", 128, t));
    ASSERT_EQ(t.picture.size(), QSize(4, 3));
    EXPECT_EQ(t.width, 4);
    EXPECT_EQ(t.height, 3);
    const auto colours = patternColours();
    for (int i = 0; i < 12; ++i) {
        const QRgb c = t.picture.pixel(i % 4, i / 4);
        EXPECT_EQ(qRed(c), colours[size_t(i)].r) << i;
        EXPECT_EQ(qGreen(c), colours[size_t(i)].g) << i;
        EXPECT_EQ(qBlue(c), colours[size_t(i)].b) << i;
    }

    // A JPEG decoded at a reduced scale still reports its own size; a flat colour stays.
    ASSERT_TRUE(imageMagick("-size 1000x500 xc:'rgb(200,40,90)' -quality 95 " + dir_.file("wide.jpg")));
    ASSERT_TRUE(decoder.Decode(dir_.file("wide.jpg"), "JPG", 128, t));
    EXPECT_EQ(t.picture.size(), QSize(128, 64));
    EXPECT_EQ(t.width, 1000);
    EXPECT_EQ(t.height, 500);
    const QRgb mid = t.picture.pixel(64, 32);
    EXPECT_NEAR(qRed(mid), 200, 3);
    EXPECT_NEAR(qGreen(mid), 40, 3);
    EXPECT_NEAR(qBlue(mid), 90, 3);
    // One helper served both files.
    EXPECT_EQ(decoder.HelperStarts(), 1);
}

// Every loader family gives the size that opening the file gives, and a file cut to a
// third fails (the IFF loader spins on one: the time limit ends it).
TEST_F(Thumbnails, EveryRouteAgreesWithTheOpenPathAndCutFilesFail) {
    ASSERT_TRUE(imageMagick("-size 300x200 gradient:red-blue " + dir_.file("g.ppm")));
    struct Sample {
        std::string ext, path;
    };
    std::vector<Sample> samples = {
        {"psp", dataFile("rose-v5.psp")}, {"sgi", dataFile("rose.sgi")},
        {"iff", dataFile("small.iff")},   {"koa", dataFile("small.koa")},
        {"pcd", dataFile("photo.pcd")},   {"jng", dataFile("small.jng")},
        {"wmf", dataFile("shapes.wmf")},  {"emf", dataFile("shapes.emf")}};
    for (const char* ext : {"gif", "tif", "bmp", "pcx", "tga"}) {
        const std::string out = dir_.file(std::string("g.") + ext);
        const std::string prefix = std::string(ext) == "bmp" ? "bmp3:" : "";
        ASSERT_TRUE(imageMagick(dir_.file("g.ppm") + " " + prefix + out)) << ext;
        samples.push_back({ext, out});
    }
    ThumbnailDecoder decoder;
    for (const Sample& s : samples) {
        SCOPED_TRACE(s.ext);
        ASSERT_TRUE(LoadDocumentImage(s.path, s.ext).ok);
        ThumbnailPicture t;
        ASSERT_TRUE(decoder.Decode(s.path, s.ext, 64, t));
        EXPECT_EQ(t.width, LoadedWidth);
        EXPECT_EQ(t.height, LoadedHeight);
        EXPECT_LE(std::max(t.picture.width(), t.picture.height()), 64);
        EXPECT_GE(std::min(t.picture.width(), t.picture.height()), 1);

        auto bytes = readBytes(s.path);
        bytes.resize(bytes.size() / 3);
        writeBytes(dir_.file("cut." + s.ext), bytes);
        EXPECT_FALSE(decoder.Decode(dir_.file("cut." + s.ext), s.ext, 64, t));
        EXPECT_TRUE(t.picture.isNull());
    }
}

TEST_F(Thumbnails, HostileFilesCostOnlyTheHelper) {
    ASSERT_TRUE(SaveImageFile(patternPicture(), dir_.file("good.bmp"), "bmp").ok);
    writeText(dir_.file("garbage.jpg"), "not a picture at all, only words");
    ThumbnailDecoder decoder;
    ThumbnailPicture t;
    // DevIL's PIC loader corrupts its heap on this file: the helper goes, the next file
    // gets a fresh one.
    EXPECT_FALSE(decoder.Decode(dataFile("devil-crash.pic"), "pic", 64, t));
    EXPECT_FALSE(decoder.Decode(dir_.file("garbage.jpg"), "jpg", 64, t));
    EXPECT_FALSE(decoder.Decode(dir_.file("good.bmp"), "olf", 64, t)); // no loader yet
    EXPECT_FALSE(decoder.Decode(dir_.file("good.bmp"), "cur", 64, t));
    ASSERT_TRUE(decoder.Decode(dir_.file("good.bmp"), "bmp", 64, t));
    EXPECT_EQ(t.picture.size(), QSize(4, 3));
    // A fresh helper after the crash; the JPEG loader refused its file and the helper
    // served on.
    EXPECT_EQ(decoder.HelperStarts(), 2);

    // A cancel ends the wait at once and kills the helper.
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(decoder.Decode(dir_.file("good.bmp"), "bmp", 64, t, [] { return true; }));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1000));
    EXPECT_TRUE(decoder.Decode(dir_.file("good.bmp"), "bmp", 64, t));
    EXPECT_EQ(decoder.HelperStarts(), 3);
}

} // namespace
} // namespace ostrivex::test
