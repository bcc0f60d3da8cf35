// Files that are not what their names claim: empty, garbage, cut short, or another
// format. Every extension of the load tables ends in the load error, and the program
// survives (DevIL and the metafile parsers run in the helper process).
#include "imagefile_test_util.h"

#include <chrono>
#include <filesystem>
#include <random>

namespace ostrivex::test {
namespace {

const char* const kTableExtensions[] = {
    // DevIL rows
    "psp", "pic", "pix", "pxr", "xpm", "raw", "dcx", "dds", "lif", "wal", "mdl", "oil", "lmp",
    "sgi", "bw", "rgb", "rgba", "act", "pal",
    // FreeImage rows
    "bmp", "cut", "iff", "jpg", "jpeg", "koa", "lbm", "mng", "pcd", "pcx", "png", "psd", "pdd",
    "ras", "tga", "vda", "icb", "vst", "targa", "tif", "tiff", "wbmp", "pbm", "pgm", "ppm", "jng"};
const char* const kPictureExtensions[] = {"gif", "wmf", "emf", "dib", "bmp"};

ImageFileResult loadAs(const std::string& path, const std::string& ext, bool picture) {
    return picture ? Keep(LoadPictureFile(path, ext)) : Keep(LoadImageFile(path, ext));
}

void expectFailure(const std::string& path, const std::string& ext, bool picture,
                   const char* what) {
    SCOPED_TRACE(std::string(what) + " ." + ext + (picture ? " (picture loader)" : ""));
    // A good load first, so that a failure must hand back no pixels of its own.
    ASSERT_TRUE(Keep(LoadImageFile(dataFile("small.cut"), "cut")).ok);
    ImageFileResult r = loadAs(path, ext, picture);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "Unexpected error loading image");
    EXPECT_TRUE(Last().pixels.empty());
    EXPECT_EQ(Last().pixels.width(), 0);
    EXPECT_EQ(Last().bpp, 0);
}

class HostileFiles : public ::testing::Test {
  protected:
    void SetUp() override {
        limit_ = DevilTimeLimit();
        SetDevilTimeLimit(3000);
        writeText(dir_.file("pattern.ppm"), patternPpmText());
        ASSERT_TRUE(imageMagick(dir_.file("pattern.ppm") + " png24:" + dir_.file("pattern.png")));
        ASSERT_TRUE(imageMagick(dir_.file("pattern.ppm") + " bmp3:" + dir_.file("pattern.bmp")));
    }
    void TearDown() override { SetDevilTimeLimit(limit_); }

    // A file of this extension holding `bytes`.
    std::string make(const std::string& name, const std::string& ext,
                     const std::vector<uint8_t>& bytes) {
        const std::string path = dir_.file(name + "." + ext);
        writeBytes(path, bytes);
        return path;
    }

    ScratchDir dir_;
    int limit_ = 0;
};

TEST_F(HostileFiles, EmptyAndGarbageFiles) {
    const std::string text = "This is not a picture at all, only a line of text.\n";
    std::vector<uint8_t> garbage(text.begin(), text.end());
    // Bytes of every value, in a scrambled order, 3000 of them.
    std::vector<uint8_t> noise(3000);
    uint32_t s = 7;
    for (auto& b : noise)
        b = uint8_t((s = s * 1103515245u + 12345u) >> 23);
    auto each = [&](const char* ext, bool picture) {
        expectFailure(make("empty", ext, {}), ext, picture, "empty");
        expectFailure(make("text", ext, garbage), ext, picture, "text");
        expectFailure(make("noise", ext, noise), ext, picture, "noise");
    };
    for (const char* ext : kTableExtensions)
        each(ext, false);
    for (const char* ext : kPictureExtensions)
        each(ext, true);
    // A name that does not exist at all.
    expectFailure(dir_.file("missing.png"), "png", false, "missing");
    expectFailure(dir_.file("missing.gif"), "gif", true, "missing");
}

TEST_F(HostileFiles, FilesOfAnotherFormat) {
    const auto png = readBytes(dir_.file("pattern.png"));
    const auto bmp = readBytes(dir_.file("pattern.bmp"));
    const auto wal = readBytes(dataFile("small.wal"));
    for (const char* ext : kTableExtensions) {
        const std::string e = ext;
        // A PNG under any other name (a BMP under .png; the jng row reads the type from the
        // contents and so loads a real PNG: it gets a Quake texture, which FreeImage lacks).
        const auto& other = e == "png" ? bmp : e == "jng" ? wal : png;
        expectFailure(make("other", ext, other), ext, false, "other format");
    }
    for (const char* ext : kPictureExtensions)
        expectFailure(make("other", ext, png), ext, true, "other format");
    expectFailure(make("other", "gif", bmp), "gif", true, "bmp as gif");
}

TEST_F(HostileFiles, TruncatedFiles) {
    // The first third of a real file of each format.
    struct Sample {
        const char* ext;
        std::string path;
    };
    ScratchDir& d = dir_;
    ASSERT_TRUE(imageMagick("-size 64x48 gradient:red-blue " + d.file("big.ppm")));
    const std::string big = d.file("big.ppm");
    std::vector<Sample> samples = {
        {"psp", dataFile("rose-v5.psp")}, {"pic", dataFile("devil-crash.pic")},
        {"pix", dataFile("rose.pix")},    {"pxr", dataFile("rose.pxr")},
        {"dds", dataFile("rose.dds")},    {"lif", dataFile("small.lif")},
        {"wal", dataFile("small.wal")},   {"mdl", dataFile("small.mdl")},
        {"sgi", dataFile("rose.sgi")},    {"cut", dataFile("small.cut")},
        {"iff", dataFile("small.iff")},   {"koa", dataFile("small.koa")},
        {"lbm", dataFile("small.lbm")},   {"mng", dataFile("small.mng")},
        {"pcd", dataFile("photo.pcd")},   {"jng", dataFile("small.jng")},
        {"ppm", dataFile("rose.ppm")},    {"wmf", dataFile("shapes.wmf")},
        {"emf", dataFile("shapes.emf")}};
    struct Made {
        const char* ext;
        const char* prefix;
    };
    const Made made[] = {{"bmp", "bmp3:"}, {"jpg", "jpeg:"}, {"png", "png24:"}, {"pcx", "pcx:"},
                         {"psd", "psd:"},  {"ras", "sun:"},  {"tga", "tga:"},   {"tif", "tiff:"},
                         {"pgm", "pgm:"},  {"pbm", "pbm:"},  {"gif", "gif:"},   {"rgb", "sgi:"}};
    for (const Made& m : made) {
        const std::string out = d.file(std::string("full.") + m.ext);
        ASSERT_TRUE(imageMagick(big + " " + m.prefix + out)) << m.ext;
        samples.push_back({m.ext, out});
    }
    ASSERT_TRUE(SaveImageFile(patternPicture(), d.file("full.raw"), "raw").ok);
    samples.push_back({"raw", d.file("full.raw")});
    for (const Sample& s : samples) {
        auto bytes = readBytes(s.path);
        ASSERT_GT(bytes.size(), 30u) << s.ext;
        bytes.resize(bytes.size() / 3);
        const bool picture = IsPictureExtension(s.ext) && std::string(s.ext) != "bmp";
        expectFailure(make("cut", s.ext, bytes), s.ext, picture, "truncated");
    }
}

TEST_F(HostileFiles, DamagedChunkFilesEndQuickly) {
    // FreeImage's IFF loader stepped on by a damaged chunk size for ever, allocating the
    // size each time, until the helper's time limit. With a limit far away, every damaged
    // file must now end (loaded or refused) on its own, well before it.
    SetDevilTimeLimit(60000);
    std::mt19937 rng(22);
    for (const char* name : {"small.iff", "small.lbm", "small.mng", "small.cut"}) {
        const auto good = readBytes(dataFile(name));
        for (int i = 0; i < 25; ++i) {
            auto bytes = good;
            if (rng() % 3 == 0) bytes.resize(rng() % bytes.size());
            for (int k = int(rng() % 3); k >= 0 && !bytes.empty(); --k)
                bytes[rng() % bytes.size()] = uint8_t(rng());
            const std::string ext = ExtensionOf(name);
            const std::string path = make("damaged" + std::to_string(i), ext, bytes);
            const auto start = std::chrono::steady_clock::now();
            const ImageFileResult r = LoadImageFile(path, ext);
            EXPECT_TRUE(r.ok || r.message == "Unexpected error loading image");
            EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << path;
        }
    }
}

} // namespace
} // namespace ostrivex::test
