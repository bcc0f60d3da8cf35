#include "tools/batch/batch.h"

#include "imagefile/imagefile.h"
#include "pixel/fixedcommands.h"
#include "pixel_test_util.h"
#include "web/optimizesettings.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

using namespace ostrivex;
using namespace ostrivex::test;
namespace fs = std::filesystem;

namespace {

// The image code's work files have fixed names in the temporary folder; test programs run
// side by side, so this one gets a private folder before any image is loaded.
const bool kPrivateRunFolder = [] {
    static std::string folder =
        (fs::temp_directory_path() / ("ostrivex-batch-run-" + std::to_string(::getpid()))).string();
    fs::create_directories(folder);
    ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    return true;
}();

class BatchTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() /
               ("ostrivex-batch-test-" + std::to_string(::getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_);
    }
    void TearDown() override { fs::remove_all(dir_); }

    std::string path(const std::string& name) const { return (dir_ / name).string(); }

    // Writes a picture as a lossless PNG.
    std::string writePng(const std::string& name, const Bits& b) {
        const std::string p = path(name);
        EXPECT_TRUE(SaveImageFile(b, p, "png").ok);
        return p;
    }
    Bits readBack(const std::string& p, const std::string& ext) {
        EXPECT_TRUE(LoadImageFile(p, ext).ok) << p;
        return LoadedBitmap;
    }
    int run(std::vector<std::string> args) {
        out_.str("");
        err_.str("");
        return batch::runBatch(args, out_, err_);
    }

    fs::path dir_;
    std::ostringstream out_, err_;
};

// Channel 3 is not kept by image files: pictures compared after a round trip have it 0.
Bits colours(int w, int h, std::initializer_list<Px> px) { return makeBits(w, h, px); }

} // namespace

TEST_F(BatchTest, StepsRunInOrderInsideTheSelection) {
    const Bits src = colours(4, 3, {{10, 20, 30}, {40, 50, 60}, {70, 80, 90}, {100, 110, 120},
                                    {0, 0, 0}, {250, 240, 230}, {5, 6, 7}, {8, 9, 10},
                                    {11, 12, 13}, {14, 15, 16}, {17, 18, 19}, {200, 201, 202}});
    const std::string in = writePng("in.png", src);
    // BRIGHTNESS:40 then INVERT on columns 1..2 of rows 0..1: 255 - min(255, c + 40).
    ASSERT_EQ(run({in, path("out.png"), "--select", "rect:1,0,3,2", "BRIGHTNESS:40", "INVERT"}), 0)
        << err_.str();
    const Bits want = colours(4, 3, {{10, 20, 30}, {175, 165, 155}, {145, 135, 125}, {100, 110, 120},
                                     {0, 0, 0}, {0, 0, 0}, {210, 209, 208}, {8, 9, 10},
                                     {11, 12, 13}, {14, 15, 16}, {17, 18, 19}, {200, 201, 202}});
    EXPECT_TRUE(sameBits(want, readBack(path("out.png"), "png")));

    // An ellipse box of 4 x 3 leaves the corners alone; ROTATE is a regular operation step.
    ASSERT_EQ(run({in, path("e.png"), "--select", "ellipse:0,0,4,3", "KillChannel:-1,0,0"}), 0);
    const Bits e = readBack(path("e.png"), "png");
    const Region ell = Region::ellipse(0, 0, 4, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) {
            EXPECT_EQ(e(2, x, y), ell.contains(x, y) ? 0 : src(2, x, y)) << x << "," << y;
            EXPECT_EQ(e(1, x, y), src(1, x, y));
        }
}

TEST_F(BatchTest, SelectionFromFileAndSizeChanges) {
    const Bits src = colours(3, 2, {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}, {13, 14, 15},
                                    {16, 17, 18}});
    const std::string in = writePng("in.png", src);
    // A selection file of pixel (2, 1) and one pixel outside the picture.
    const std::vector<int32_t> data =
        Region::rect(2, 1, 3, 2).united(Region::rect(5, 5, 6, 6)).dump();
    {
        std::ofstream f(path("sel.osf"), std::ios::binary);
        f.write(reinterpret_cast<const char*>(data.data()), std::streamsize(data.size() * 4));
    }
    ASSERT_EQ(run({in, path("o.png"), "--select", "osf:" + path("sel.osf"), "Invert"}), 0)
        << err_.str();
    EXPECT_TRUE(sameBits(colours(3, 2, {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12},
                                        {13, 14, 15}, {239, 238, 237}}),
                         readBack(path("o.png"), "png")));

    // After a size change the selection is dropped: INVERT then covers the whole picture.
    ASSERT_EQ(run({in, path("r.png"), "--select", "rect:0,0,1,1", "BitsResize:6,4", "INVERT"}), 0)
        << err_.str();
    const Bits r = readBack(path("r.png"), "png");
    ASSERT_EQ(r.width(), 6);
    ASSERT_EQ(r.height(), 4);
    // Nearest neighbour doubling: output (5, 3) comes from source (2, 1).
    EXPECT_EQ(r(0, 5, 3), 255 - 16);
    EXPECT_EQ(r(0, 0, 0), 255 - 1);
}

TEST_F(BatchTest, PaintStepsAreStrokesInsideTheSelection) {
    // White with a black wall in column 2.
    const Px W{255, 255, 255}, K{0, 0, 0}, R{0, 0, 255};
    const Bits src = colours(4, 3, {W, W, K, W, W, W, K, W, W, W, K, W});
    const std::string in = writePng("in.png", src);
    // A full-strength red fill from (0, 0) stops at the wall.
    ASSERT_EQ(run({in, path("f.png"), "BitsFill:0,0,255,1,100"}), 0) << err_.str();
    EXPECT_TRUE(sameBits(colours(4, 3, {R, R, K, W, R, R, K, W, R, R, K, W}),
                         readBack(path("f.png"), "png")));
    // Inside a selection of column 0 only that column is painted, and a fill seeded outside
    // the selection paints nothing; without the selection the same seed fills column 3.
    ASSERT_EQ(run({in, path("g.png"), "--select", "rect:0,0,1,3", "BitsFill:0,0,255,1,100",
                   "BitsFill:3,2,0,1,100"}),
              0)
        << err_.str();
    EXPECT_TRUE(sameBits(colours(4, 3, {R, W, K, W, R, W, K, W, R, W, K, W}),
                         readBack(path("g.png"), "png")));
    ASSERT_EQ(run({in, path("h.png"), "BitsFill:3,2,0,1,100"}), 0);
    EXPECT_TRUE(sameBits(colours(4, 3, {W, W, K, K, W, W, K, K, W, W, K, K}),
                         readBack(path("h.png"), "png")));
    EXPECT_EQ(run({in, path("i.png"), "BitsBrushLine:0,0,3,2,5,50,0,6"}), 2);
    EXPECT_EQ(err_.str(), "ostrivex-batch: step BitsBrushLine, argument kind: 6 is not a whole "
                          "number from 0 to 5\n");
}

TEST_F(BatchTest, ConversionWithoutStepsKeepsPixels) {
    const Bits src = patternBits(7, 5, 9);
    Bits rgb = src;
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 7; ++x) rgb(3, x, y) = 0;
    const std::string in = writePng("in.png", rgb);
    ASSERT_EQ(run({in, path("out.bmp")}), 0) << err_.str();
    EXPECT_TRUE(sameBits(rgb, readBack(path("out.bmp"), "bmp")));
}

TEST_F(BatchTest, SeedFixesRandomFilters) {
    const std::string in = writePng("in.png", patternBits(16, 16, 4));
    ASSERT_EQ(run({in, path("a.png"), "--seed", "7", "HEAVYNOISE"}), 0);
    ASSERT_EQ(run({in, path("b.png"), "--seed", "7", "NOISE:40,0"}), 0);
    ASSERT_EQ(run({in, path("c.png"), "--seed", "8", "NOISE:40,0"}), 0);
    const Bits a = readBack(path("a.png"), "png");
    EXPECT_TRUE(sameBits(a, readBack(path("b.png"), "png")));
    EXPECT_FALSE(sameBits(a, readBack(path("c.png"), "png")));
}

TEST_F(BatchTest, BadInputEndsWithOneLineAndWritesNothing) {
    const std::string in = writePng("in.png", patternBits(4, 4));
    struct Case {
        std::vector<std::string> args;
        std::string message;
    };
    const std::string out = path("never.png");
    const std::vector<Case> cases = {
        {{in, out, "NOSUCHSTEP"}, "unknown step 'NOSUCHSTEP' (see --help)"},
        {{in, out, "BRIGHTNESS:251"}, "step BRIGHTNESS, argument level: 251 is not a whole number from -100 to 250"},
        {{in, out, "BRIGHTNESS:1.5"}, "step BRIGHTNESS, argument level: 1.5 is not a whole number from -100 to 250"},
        {{in, out, "BRIGHTNESS"}, "step BRIGHTNESS takes 1 argument(s), got 0"},
        {{in, out, "ROTATE:90"}, "step ROTATE takes 2 argument(s), got 1"},
        {{in, out, "COLORIZE:0.5,x,1"}, "step COLORIZE, argument saturation: 'x' is not a number"},
        {{in, out, "GLASS:wavy,1"}, "step GLASS, argument style: 'wavy' is not one of slanting | horizontal | vertical | squary | curtain"},
        {{in, out, "--select", "circle:1,2,3,4"}, "unknown selection 'circle:1,2,3,4' (rect:L,T,R,B, ellipse:L,T,R,B or osf:FILE)"},
        {{in, out, "--select", "rect:1,2,3"}, "selection box needs four numbers L,T,R,B"},
        {{in, out, "--seed", "-1"}, "--seed needs a whole number from 0 to 4294967295"},
        {{in}, "usage: ostrivex-batch INPUT OUTPUT [STEP...] (see --help)"},
        {{path("missing.png"), out}, path("missing.png") + ": Unexpected error loading image"},
        {{in, path("x.jpe")}, path("x.jpe") + ": Unexpected error saving image"},
        {{in, out, "Texturize:" + path("none.png")}, "step Texturize:" + path("none.png") +
                                                      ": cannot load image '" + path("none.png") +
                                                      "': Unexpected error loading image"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(run(c.args), 2) << c.message;
        EXPECT_EQ(err_.str(), "ostrivex-batch: " + c.message + "\n");
        EXPECT_FALSE(fs::exists(out)) << c.message;
    }
}

TEST_F(BatchTest, HelpListsEveryStepAndTheProgramExitCodes) {
    ASSERT_EQ(run({"--help"}), 0);
    const std::string help = out_.str();
    for (const FixedCommand& c : FixedCommands())
        EXPECT_NE(help.find(std::string("  ") + c.word + "  = " + c.call), std::string::npos) << c.word;
    for (const batch::StepDef& s : batch::operationSteps())
        EXPECT_NE(help.find("  " + s.name), std::string::npos) << s.name;
    EXPECT_NE(help.find("  BitsResample:width,height\n      width: 2 to 30000"), std::string::npos);

    // The installed program: exit codes and nothing written on failure.
    const std::string in = writePng("in.png", patternBits(4, 4));
    const std::string exe = OSTRIVEX_BATCH_EXE;
    const std::string ok = exe + " " + in + " " + path("p.pgm") + " GRAYSCALE 2>/dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(ok.c_str())), 0);
    EXPECT_TRUE(fs::exists(path("p.pgm")));
    const std::string bad = exe + " " + in + " " + path("q.png") + " WHAT 2>/dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(bad.c_str())), 2);
    EXPECT_FALSE(fs::exists(path("q.png")));
}

TEST_F(BatchTest, LayerEffectsByNodeAndByMethod) {
    const Bits src = colours(3, 1, {{0, 0, 0}, {100, 150, 200}, {255, 255, 255}});
    const std::string in = writePng("in.png", src);
    // Node 64 ("Invertion") at 0 inverts fully; the method Invert with amount 255 leaves the
    // picture; node 3 at 150 passes 2 to each channel of Contrast (value / 100, rounded).
    ASSERT_EQ(run({in, path("a.png"), "EFFECT:64,0"}), 0) << err_.str();
    EXPECT_TRUE(sameBits(colours(3, 1, {{255, 255, 255}, {155, 105, 55}, {0, 0, 0}}),
                         readBack(path("a.png"), "png")));
    // With white as the key, the white pixel stays and black stops one step of blue short
    // of white.
    ASSERT_EQ(run({in, path("k.png"), "--key", "0xFFFFFF", "EFFECT:64,0"}), 0) << err_.str();
    EXPECT_TRUE(sameBits(colours(3, 1, {{254, 255, 255}, {155, 105, 55}, {255, 255, 255}}),
                         readBack(path("k.png"), "png")));
    ASSERT_EQ(run({in, path("b.png"), "FX.Invert:255", "EFFECT:7"}), 0) << err_.str();
    EXPECT_TRUE(sameBits(colours(3, 1, {{0, 0, 0}, {0, 255, 255}, {255, 255, 255}}),
                         readBack(path("b.png"), "png")));
    ASSERT_EQ(run({in, path("c.png"), "EFFECT:3,150"}), 0) << err_.str();
    ASSERT_EQ(run({in, path("d.png"), "FX.Contrast:2,2,2"}), 0) << err_.str();
    EXPECT_TRUE(sameBits(readBack(path("c.png"), "png"), readBack(path("d.png"), "png")));
    // The colour of node 66 ("Replace Color") is the box's; the picked colour comes second.
    ASSERT_EQ(run({in, path("e.png"), "EFFECT:66,10,255,0x6496C8"}), 0) << err_.str();
    EXPECT_TRUE(sameBits(colours(3, 1, {{0, 0, 0}, {0, 0, 255}, {255, 255, 255}}),
                         readBack(path("e.png"), "png")));
    // A blend with a third picture from a file; only the selection takes an effect.
    const std::string top = writePng("top.png", colours(3, 1, {{10, 10, 10}, {10, 10, 10}, {10, 10, 10}}));
    ASSERT_EQ(run({in, path("f.png"), "--select", "rect:1,0,2,1", "FX.BlendMode:" + top + ",6"}), 0)
        << err_.str();
    EXPECT_TRUE(sameBits(colours(3, 1, {{0, 0, 0}, {90, 140, 190}, {255, 255, 255}}),
                         readBack(path("f.png"), "png")));

    const std::string out = path("never.png");
    const std::vector<std::pair<std::vector<std::string>, std::string>> bad = {
        {{in, out, "EFFECT:15,0"}, "step EFFECT: node 15 (\"Blur\") is a heading, not an effect"},
        {{in, out, "EFFECT:2,300"}, "step EFFECT: value '300' of node 2 (\"Brightness\") is outside -255 to 255"},
        {{in, out, "EFFECT:7,5"}, "step EFFECT: value '5' of node 7 (\"Reduce to 8 Colors\") is outside 0 (it has no dialog)"},
        {{in, out, "EFFECT:81,0"}, "step EFFECT needs a node number from 1 to 80 (see --help)"},
        {{in, out, "EFFECT:29,10,red"}, "step EFFECT: 'red' is not a colour (0 to 16777215, packed 0x00BBGGRR)"},
        {{in, out, "EFFECT:69,2"}, "step EFFECT:69,2: value 2 is above this picture's maximum 0"},
        {{in, out, "FX.Hue:400"}, "step FX.Hue, argument degrees: 400 is not a whole number from 0 to 360"},
        {{in, out, "--key", "-5", "EFFECT:64,0"}, "--key needs a colour (0 to 16777215, packed 0x00BBGGRR)"},
    };
    for (const auto& [args, message] : bad) {
        EXPECT_EQ(run(args), 2) << message;
        EXPECT_EQ(err_.str(), "ostrivex-batch: " + message + "\n");
        EXPECT_FALSE(fs::exists(out));
    }

    ASSERT_EQ(run({"--help"}), 0);
    EXPECT_NE(out_.str().find("    74  Oil Painting  (OilPaint, 0 to 255, default 0)"), std::string::npos);
    EXPECT_NE(out_.str().find("  FX.TileE:tiles,background"), std::string::npos);
}

TEST_F(BatchTest, ContactSheetOfTheEffects) {
    const std::string in = writePng("in.png", patternBits(40, 30, 2));
    ASSERT_EQ(run({"--contact-sheet", in, path("sheet.png")}), 0) << err_.str();
    const Bits sheet = readBack(path("sheet.png"), "png");
    // 72 effects, four to a row, each beside a second picture.
    EXPECT_GT(sheet.width(), 8 * 160);
    EXPECT_GT(sheet.height(), 18 * 107);
    EXPECT_EQ(run({"--contact-sheet", path("none.png"), path("s.png")}), 2);
}

TEST_F(BatchTest, OptimizeWritesThePresetAndPrintsItsSize) {
    const std::string in = writePng("in.png", patternBits(40, 30));
    // Steps run first; then the optimizer writes the result.
    ASSERT_EQ(run({in, path("o.gif"), "--optimize", "GIF-16 Colors", "--map", "VGA", "--dither",
                   "Ordered", "--interlaced", "INVERT"}),
              0)
        << err_.str();
    const std::vector<uint8_t> gif = [&] {
        std::ifstream f(path("o.gif"), std::ios::binary);
        return std::vector<uint8_t>((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
    }();
    ASSERT_GT(gif.size(), 13u + 48u);
    EXPECT_EQ(gif[10] & 7, 3);                    // a colour table of 16
    EXPECT_EQ(gif[13 + 6 * 3], 0xAA);             // entry 6 of the VGA colours: brown
    EXPECT_EQ(gif[13 + 48 + 9] & 0x40, 0x40);     // interlaced
    EXPECT_EQ(out_.str(), "Format: GIF Interlaced\nSize: " + std::to_string(gif.size()) + " bytes (" +
                              [&] {
                                  char p[32];
                                  std::snprintf(p, sizeof p, "%.2f", 100.0 * double(gif.size()) / (54 + 120 * 30));
                                  return std::string(p);
                              }() + "%)\n");

    ASSERT_EQ(run({in, path("o.jpg"), "--optimize", "JPEG - Custom Quality ..", "--quality", "30"}), 0)
        << err_.str();
    ASSERT_EQ(run({in, path("o.tga"), "--optimize", "TGA-24 bit (Compressed)"}), 0) << err_.str();
    EXPECT_TRUE(fs::exists(path("o.tga")));

    struct Case {
        std::vector<std::string> args;
        std::string message;
    };
    const std::string out = path("x.gif");
    const std::vector<Case> cases{
        {{in, out, "--optimize", "GIF-17 Colors"}, "unknown preset 'GIF-17 Colors' (see --help)"},
        {{in, out, "--map", "VGA"}, "--map, --dither, --interlaced and --quality need --optimize"},
        {{in, out, "--optimize", "GIF-2 Colors", "--dither", "Haftone"}, ""},
        {{in, out, "--optimize", "GIF-2 Colors", "--map", "Sepia"}, "--map: unknown colour map 'Sepia' (see --help)"},
        {{in, path("x.jpg"), "--optimize", "JPEG - Custom Quality ..", "--quality", "100"},
         "--quality: Enter value between 1 to 99 !"},
        {{in, path("x.jpg"), "--optimize", "JPEG - Good Quality", "--map", "VGA"},
         "--map: JPEG - Good Quality has no colour map"},
        {{in, out, "--optimize", "GIF-8 Colors", "--quality", "50"}, "--quality: only the JPEG presets take a quality"},
        {{in, path("x.png"), "--optimize", "GIF-8 Colors"}, "GIF-8 Colors writes .gif files; name the output so"},
    };
    for (const Case& c : cases) {
        const int rc = run(c.args);
        if (c.message.empty()) { // the export's spelling is a dither name too
            EXPECT_EQ(rc, 0) << err_.str();
            continue;
        }
        EXPECT_EQ(rc, 2) << c.message;
        EXPECT_EQ(err_.str(), "ostrivex-batch: " + c.message + "\n");
    }
    EXPECT_FALSE(fs::exists(path("x.jpg")));
    EXPECT_FALSE(fs::exists(path("x.png")));

    ASSERT_EQ(run({"--help"}), 0);
    for (const WebPreset& p : ExportPresets()) EXPECT_NE(out_.str().find(p.text), std::string::npos) << p.text;
    for (const DitherChoice& d : Dithers()) EXPECT_NE(out_.str().find(d.text), std::string::npos) << d.text;
}
