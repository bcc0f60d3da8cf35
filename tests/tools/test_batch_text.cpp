// The text steps of the batch tool: each draws what the text code draws, with the font file
// the tests ship, and a font that is not there ends the run with a message.
#include "tools/batch/batch.h"

#include "imagefile/imagefile.h"
#include "text/draw/logo.h"
#include "text/draw/styledtext.h"
#include "text/draw/text3d.h"

#include <QFontDatabase>

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

using namespace ostrivex;
namespace fs = std::filesystem;

namespace {

const std::string kFont = OSTRIVEX_TEST_FONT;

class BatchTextTest : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("ostrivex-batch-text-" + std::to_string(::getpid()));
        fs::create_directories(dir_);
        ::setenv("XDG_RUNTIME_DIR", dir_.c_str(), 1);
        Bits in(160, 60);
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 160; ++x) {
                in(0, x, y) = uint8_t(x);
                in(1, x, y) = uint8_t(3 * y);
                in(2, x, y) = 90;
            }
        ASSERT_TRUE(SaveImageFile(in, path("in.png"), "png").ok);
        input_ = in;
    }
    void TearDown() override { fs::remove_all(dir_); }
    std::string path(const std::string& name) const { return (dir_ / name).string(); }
    int run(const std::string& step) {
        err_.str("");
        std::ostringstream out;
        fs::remove(path("out.png"));
        return batch::runBatch({path("in.png"), path("out.png"), step}, out, err_);
    }
    Bits output() {
        EXPECT_TRUE(LoadImageFile(path("out.png"), "png").ok);
        return LoadedBitmap;
    }
    // The family the font file stands for (the batch run has made the application).
    QString family() {
        const int id = QFontDatabase::addApplicationFont(QString::fromStdString(kFont));
        return QFontDatabase::applicationFontFamilies(id).value(0);
    }

    fs::path dir_;
    Bits input_;
    std::ostringstream err_;
};

} // namespace

TEST_F(BatchTextTest, EachKindOfTextDrawsAsTheTextCodeDoes) {
    ASSERT_EQ(run("StyleText:" + kFont + ",Hi there,20,3,255,12632256,4210752,0,2,10,12"), 0)
        << err_.str();
    StyleTextSettings s;
    s.fontName = family();
    s.text = "Hi there";
    s.fontSize = 20;
    s.style = 3;
    s.foreColor = 255;
    s.emboss = 12632256;
    s.engrave = 4210752;
    s.depth = 2;
    s.left = 10;
    s.right = 12;
    Bits want = input_;
    DrawStyleText(want, s);
    EXPECT_EQ(output(), want);
    EXPECT_NE(want, input_);

    ASSERT_EQ(run("DrawStyledText:" + kFont + ",Turn,700,0,-1,0,16,90,1,255,65280,-1,20,50,3"), 0)
        << err_.str();
    want = input_;
    DrawStyledText(want, "Turn", family(), 700, false, true, false, 16, 90, 1, 255, 65280, -1, 20,
                   50, 3);
    EXPECT_EQ(output(), want);

    // 3D text on a key colour, laid over the picture without it.
    ASSERT_EQ(run("Text3D:" + kFont + ",24,-1,Deep,192,6356991,10,10,6,16777215"), 0) << err_.str();
    Bits block(160, 60);
    float r1 = 192, g1 = 0, b1 = 0, h = 10, v = 10;
    Draw3DText(block, 0xFFFFFF, MakeTextFont({family(), 24, 700}), 6, r1, g1, b1, 255, 255, 96, h,
               v, "Deep", false, Bits());
    const Bits out3d = output();
    int text = 0;
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 160; ++x) {
            const bool key =
                block(0, x, y) == 255 && block(1, x, y) == 255 && block(2, x, y) == 255;
            const Bits& from = key ? input_ : block;
            text += !key;
            for (int c = 0; c < 3; ++c)
                ASSERT_EQ(out3d(c, x, y), from(c, x, y)) << x << "," << y;
        }
    EXPECT_GT(text, 200);

    // A logo of the picture's size, all of it.
    ASSERT_EQ(run("Logo:" + kFont + ",30,Logo,solid,255,0,2,0,0,16777215,0,none,-1"), 0)
        << err_.str();
    LogoSettings l;
    l.width = 160;
    l.height = 60;
    l.fontName = family();
    l.fontSize = 30;
    l.text = "Logo";
    l.fontColour = 255;
    l.borderSize = 2;
    l.borderColour = 0;
    l.backColour = 0xFFFFFF;
    EXPECT_EQ(output(), DrawLogo(l).picture);
}

TEST_F(BatchTextTest, FontsThatAreNotThere) {
    // A file that is not a font, or is not there, ends the run and writes nothing.
    std::ofstream(path("bad.ttf")) << "not a font";
    EXPECT_EQ(run("StyleText:" + path("bad.ttf") + ",x,12,0,0,0,0,0,0,0,0"), 2);
    EXPECT_NE(err_.str().find("cannot load font"), std::string::npos);
    EXPECT_FALSE(fs::exists(path("out.png")));
    EXPECT_EQ(run("StyleText:" + path("none.ttf") + ",x,12,0,0,0,0,0,0,0,0"), 2);
    EXPECT_NE(err_.str().find("no font file"), std::string::npos);
    // A face's name that is not installed falls back to another face.
    ASSERT_EQ(run("StyleText:No Such Face,Fallback,20,0,0,0,0,0,0,5,5"), 0) << err_.str();
    EXPECT_NE(output(), input_);
}
