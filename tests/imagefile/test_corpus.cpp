// Every common variant of each format, as ImageMagick, GraphicsMagick, libvips and Qt
// write it, written here at test time: each must open with the pixels that its writer's
// own decoder gives (JPEG within a small error). Where a path drops alpha the writer's
// decode drops it too; where the picture is laid over white, so is the writer's.
#include "imagefile_test_util.h"

#include <QImage>
#include <QImageWriter>

#include <cstdlib>
#include <fstream>

namespace ostrivex::test {
namespace {

// A 37 x 23 picture of smooth ramps and a few hard edges, and the same with an alpha ramp.
std::string sourcePpm(bool alpha) {
    std::ostringstream s;
    s << (alpha ? "P7\nWIDTH 37\nHEIGHT 23\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n"
                : "P6\n37 23\n255\n");
    for (int y = 0; y < 23; ++y)
        for (int x = 0; x < 37; ++x) {
            const bool box = x > 20 && x < 30 && y > 5 && y < 15;
            s << char(box ? 20 : x * 7) << char(box ? 200 : y * 11) << char((x * y) % 256);
            if (alpha) s << char(x < 4 ? 255 : (x * 40 + y * 3) % 256);
        }
    return s.str();
}

enum class Alpha { Drop, White };
enum class Reader { Im, Gm, Vips, Qt, Source };

struct Variant {
    const char* name;  // file name, extension included
    Reader writer;
    const char* write; // the writer's arguments: {in} source, {out} the variant
    bool alphaSource = false;
    int tolerance = 0;
    Reader reference = Reader::Im; // whose decode the load must equal; Im for the writer
};

// The command that decodes `file` to an 8-bit PPM as `reader` does, alpha as `alpha` says.
std::string referenceCommand(Reader reader, const std::string& file, const std::string& ppm,
                             Alpha alpha) {
    switch (reader) {
    case Reader::Im:
        return "/usr/bin/convert '" + file + "[0]' " +
               (alpha == Alpha::White ? "-background white -flatten" : "-alpha off") +
               " -depth 8 ppm:'" + ppm + "'";
    case Reader::Gm:
        return "gm convert '" + file + "[0]' " +
               (alpha == Alpha::White ? "-background white -flatten" : "+matte") +
               " -depth 8 ppm:'" + ppm + "'";
    case Reader::Vips: return "vips copy '" + file + "' '" + ppm + "'";
    default: return {};
    }
}

std::string replaceAll(std::string s, const std::string& from, const std::string& to) {
    for (size_t at = s.find(from); at != std::string::npos; at = s.find(from, at + to.size()))
        s.replace(at, from.size(), to);
    return s;
}

const char* kIm = "/usr/bin/convert {in} ";

// Reads a PPM the reference wrote (8 or 16 bits a sample).
Bits readPpm(const std::string& path) {
    EXPECT_TRUE(Keep(LoadImageFile(path, "ppm")).ok) << path;
    return Last().pixels;
}

Bits fromQImage(const QImage& source, Alpha alpha) {
    QImage img = source.convertToFormat(QImage::Format_ARGB32);
    Bits out(img.width(), img.height());
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            const QRgb p = img.pixel(x, y);
            const int a = alpha == Alpha::White ? qAlpha(p) : 255;
            auto over = [a](int c) { return uint8_t((c * a + 255 * (255 - a) + 127) / 255); };
            out(0, x, y) = over(qBlue(p));
            out(1, x, y) = over(qGreen(p));
            out(2, x, y) = over(qRed(p));
        }
    return out;
}

class Corpus : public ::testing::Test {
  protected:
    void SetUp() override {
        writeText(dir_.file("src.ppm"), sourcePpm(false));
        writeText(dir_.file("alpha.pam"), sourcePpm(true));
        ASSERT_TRUE(imageMagick(dir_.file("alpha.pam") + " png32:" + dir_.file("alpha.png")));
    }

    // Writes every variant with its writer (one shell run), then loads each and compares.
    void check(const std::vector<Variant>& variants, Alpha alpha, bool picture = false) {
        std::ofstream script(dir_.file("write.sh"));
        script << "export VIPS_CONCURRENCY=1 MAGICK_THREAD_LIMIT=1\n";
        for (const Variant& v : variants) {
            const std::string out = dir_.file(v.name);
            const std::string in = dir_.file(v.alphaSource ? "alpha.png" : "src.ppm");
            if (v.writer != Reader::Qt) {
                std::string cmd = v.write;
                if (v.writer == Reader::Im) cmd = kIm + cmd;
                script << replaceAll(replaceAll(cmd, "{in}", "'" + in + "'"), "{out}", "'" + out + "'")
                       << " || echo " << v.name << " >> '" << dir_.file("failed") << "'\n";
            }
            const Reader ref = v.reference == Reader::Im ? v.writer : v.reference;
            if (ref != Reader::Qt && ref != Reader::Source)
                script << referenceCommand(ref, out, out + ".ref.ppm", alpha) << " 2>/dev/null\n";
        }
        script << "true\n";
        script.close();
        // The Qt writer's variants are written before the script's references read them.
        for (const Variant& v : variants)
            if (v.writer == Reader::Qt) {
                QImage img(QString::fromStdString(dir_.file(v.alphaSource ? "alpha.png" : "src.ppm")));
                if (std::string(v.write) == "grey") img = img.convertToFormat(QImage::Format_Grayscale8);
                if (std::string(v.write) == "mono") img = img.convertToFormat(QImage::Format_Mono);
                QImageWriter writer(QString::fromStdString(dir_.file(v.name)));
                if (std::string(v.write) == "progressive") writer.setProgressiveScanWrite(true);
                ASSERT_TRUE(writer.write(img)) << v.name;
            }
        ASSERT_EQ(std::system(("sh '" + dir_.file("write.sh") + "' >/dev/null 2>&1").c_str()), 0);
        ASSERT_FALSE(std::filesystem::exists(dir_.file("failed")))
            << "writers failed: " << std::string(readBytes(dir_.file("failed")).begin(),
                                                 readBytes(dir_.file("failed")).end());
        for (const Variant& v : variants) {
            SCOPED_TRACE(v.name);
            const std::string file = dir_.file(v.name);
            const Reader ref = v.reference == Reader::Im ? v.writer : v.reference;
            Bits expected;
            if (ref == Reader::Qt)
                expected = fromQImage(QImage(QString::fromStdString(file)), alpha);
            else if (ref == Reader::Source)
                expected = readPpm(dir_.file("src.ppm"));
            else
                expected = readPpm(file + ".ref.ppm");
            const std::string ext = ExtensionOf(file);
            const ImageFileResult r = picture ? Keep(LoadPictureFile(file, ext)) : Keep(LoadImageFile(file, ext));
            ASSERT_TRUE(r.ok) << r.message;
            if (v.tolerance == 0)
                EXPECT_TRUE(samePixels(expected, Last().pixels));
            else
                EXPECT_LE(maxDifference(expected, Last().pixels), v.tolerance);
        }
    }

    ScratchDir dir_;
};

TEST_F(Corpus, Bmp) {
    // Every header size and depth; a handmade RLE4 and a top-down file, which none of the
    // writers makes, are checked against ImageMagick's decode in LoadBmpByHand below.
    check({
              {"v3.bmp", Reader::Im, "bmp3:{out}"},
              {"v5.bmp", Reader::Im, "bmp:{out}"},
              {"v5-alpha.bmp", Reader::Im, "bmp:{out}", true, 1},
              {"rle8.bmp", Reader::Im, "-type palette -colors 200 bmp3:{out}"},
              {"p8.bmp", Reader::Im, "-type palette -colors 200 -compress none bmp3:{out}"},
              {"p8-v5.bmp", Reader::Im, "-type palette -colors 200 -compress none bmp:{out}"},
              {"p4.bmp", Reader::Im, "-colors 16 -type palette -compress none bmp3:{out}"},
              {"p1.bmp", Reader::Im, "-monochrome bmp3:{out}"},
              {"rgb565.bmp", Reader::Im, "-define bmp:subtype=RGB565 bmp:{out}"},
              {"rgb555.bmp", Reader::Im, "-define bmp:subtype=RGB555 bmp:{out}"},
              {"gm.bmp", Reader::Gm, "gm convert {in} {out}"},
              {"gm-v4-alpha.bmp", Reader::Gm, "gm convert {in} {out}", true, 1},
              {"gm-p4.bmp", Reader::Gm, "gm convert {in} -colors 16 {out}"},
              {"vips.bmp", Reader::Vips, "vips copy {in} {out}"},
              {"qt.bmp", Reader::Qt, ""},
          },
          Alpha::White);
}

TEST_F(Corpus, Png) {
    check({
              {"rgb.png", Reader::Im, "png24:{out}"},
              {"rgba.png", Reader::Im, "png32:{out}", true},
              {"grey.png", Reader::Im, "-colorspace gray png:{out}"},
              {"grey-alpha.png", Reader::Im, "-colorspace gray -type GrayscaleAlpha png:{out}", true},
              {"grey16.png", Reader::Im, "-colorspace gray -depth 16 png:{out}"},
              {"grey1.png", Reader::Im, "-monochrome png:{out}"},
              {"palette-trns.png", Reader::Im, "-colors 50 png8:{out}", true},
              {"rgb16.png", Reader::Im, "-depth 16 png48:{out}"},
              {"rgba16.png", Reader::Im, "-depth 16 png64:{out}", true},
              {"interlaced.png", Reader::Im, "-interlace PNG png24:{out}"},
              {"gm-interlaced.png", Reader::Gm, "gm convert {in} -interlace Line {out}"},
              {"gm-grey16.png", Reader::Gm, "gm convert {in} -colorspace gray -depth 16 {out}"},
              {"vips.png", Reader::Vips, "vips pngsave {in} {out} --interlace"},
              {"vips16.png", Reader::Vips, "vips pngsave {in} {out} --bitdepth 16"},
              {"qt.png", Reader::Qt, ""},
              {"qt-alpha.png", Reader::Qt, "", true},
              {"qt-grey.png", Reader::Qt, "grey"},
          },
          Alpha::Drop);
}

TEST_F(Corpus, Jpeg) {
    check({
              {"base.jpg", Reader::Im, "-quality 90 jpeg:{out}", false, 2},
              {"progressive.jpg", Reader::Im, "-quality 90 -interlace JPEG jpeg:{out}", false, 2},
              {"grey.jpg", Reader::Im, "-colorspace gray jpeg:{out}", false, 2},
              {"cmyk.jpg", Reader::Im, "-colorspace cmyk jpeg:{out}", false, 3},
              {"gm.jpg", Reader::Gm, "gm convert {in} -interlace Line {out}", false, 2},
              {"vips.jpg", Reader::Vips, "vips jpegsave {in} {out} --interlace", false, 2},
              {"qt.jpg", Reader::Qt, "", false, 2},
          },
          Alpha::Drop);
}

TEST_F(Corpus, Tiff) {
    check({
              {"none.tif", Reader::Im, "-compress none tiff:{out}"},
              {"lzw.tif", Reader::Im, "-compress LZW tiff:{out}"},
              {"deflate.tif", Reader::Im, "-compress Zip tiff:{out}"},
              {"jpeg.tif", Reader::Im, "-compress JPEG tiff:{out}", false, 3},
              {"rgb16.tif", Reader::Im, "-depth 16 tiff:{out}"},
              {"grey16.tif", Reader::Im, "-colorspace gray -depth 16 tiff:{out}"},
              {"palette.tif", Reader::Im, "-type palette -colors 60 tiff:{out}"},
              {"pages.tif", Reader::Im, "{in} -negate tiff:{out}"},
              {"tiled.tif", Reader::Im, "-define tiff:tile-geometry=16x16 tiff:{out}"},
              {"alpha.tif", Reader::Im, "tiff:{out}", true},
              {"gm-lzw.tif", Reader::Gm, "gm convert {in} -compress LZW {out}"},
              {"vips-tiled.tif",
               Reader::Vips, "vips tiffsave {in} {out} --compression deflate --tile --tile-width 16 --tile-height 16"},
              {"vips-lzw16.tif", Reader::Vips,
               "vips linear {in} {out}.a.v 257 0 && vips cast {out}.a.v {out}.b.v ushort && "
               "vips tiffsave {out}.b.v {out} --compression lzw --predictor horizontal"},
          },
          Alpha::Drop);
}

TEST_F(Corpus, GifThroughThePictureLoader) {
    check({
              {"im.gif", Reader::Im, "gif:{out}"},
              {"im-anim.gif", Reader::Im, "{in} -negate -loop 0 gif:{out}"},
              {"im-interlaced.gif", Reader::Im, "-interlace GIF gif:{out}"},
              {"im-transparent.gif", Reader::Im, "gif:{out}", true},
              {"gm-interlaced.gif", Reader::Gm, "gm convert {in} -interlace Line {out}"},
              {"vips.gif", Reader::Vips, "vips copy {in} {out}"},
          },
          Alpha::White, true);
}

TEST_F(Corpus, OtherRasterFormats) {
    check({
              // ImageMagick writes its Targa rows top row first under a header that says
              // bottom row first, and reads them back the same wrong way: its files are
              // checked against GraphicsMagick's decode, which follows the header.
              {"raw.tga", Reader::Im, "-compress none tga:{out}", false, 0, Reader::Gm},
              {"rle.tga", Reader::Im, "-compress RLE tga:{out}", false, 0, Reader::Gm},
              {"gm-rle.tga", Reader::Gm, "gm convert {in} -compress RLE {out}", false, 0, Reader::Source},
              {"rgb.pcx", Reader::Im, "pcx:{out}"},
              {"palette.pcx", Reader::Im, "-type palette -colors 100 pcx:{out}"},
              {"gm.pcx", Reader::Gm, "gm convert {in} {out}"},
              {"im.dcx", Reader::Im, "{in} -negate dcx:{out}"},
              {"gm.dcx", Reader::Gm, "gm convert {in} {out}"},
              {"flat.psd", Reader::Im, "psd:{out}"},
              {"im.xpm", Reader::Im, "-colors 40 xpm:{out}"},
              {"gm.xpm", Reader::Gm, "gm convert {in} -colors 40 {out}"},
              {"qt.xpm", Reader::Qt, ""},
              {"rle.sgi", Reader::Im, "sgi:{out}"},
              {"raw.sgi", Reader::Im, "-compress none sgi:{out}"},
              {"deep.sgi", Reader::Im, "-depth 16 sgi:{out}"},
              {"deep-alpha.rgba", Reader::Im, "-depth 16 sgi:{out}", true},
              {"grey.bw", Reader::Im, "-colorspace gray sgi:{out}"},
              {"gm-deep.sgi", Reader::Gm, "gm convert {in} -depth 16 {out}"},
          },
          Alpha::Drop);
}

TEST_F(Corpus, Pnm) {
    check({
              {"ascii.ppm", Reader::Im, "-compress none ppm:{out}"},
              {"binary.ppm", Reader::Im, "ppm:{out}"},
              {"deep.ppm", Reader::Im, "-depth 16 ppm:{out}"},
              {"ascii-deep.ppm", Reader::Im, "-depth 16 -compress none ppm:{out}"},
              {"grey.pgm", Reader::Im, "pgm:{out}"},
              {"ascii.pgm", Reader::Im, "-compress none pgm:{out}"},
              {"deep.pgm", Reader::Im, "-depth 16 pgm:{out}"},
              {"bits.pbm", Reader::Im, "pbm:{out}"},
              {"ascii.pbm", Reader::Im, "-compress none pbm:{out}"},
              {"gm.ppm", Reader::Gm, "gm convert {in} -depth 16 {out}"},
              {"vips-ascii.ppm", Reader::Vips, "vips copy {in} {out}[ascii]"},
              {"qt.ppm", Reader::Qt, ""},
              {"qt.pbm", Reader::Qt, "mono"},
          },
          Alpha::Drop);
}

// RLE4 and top-down bitmaps by hand: 4 x 3 pixels, reference by ImageMagick.
TEST_F(Corpus, BmpByHand) {
    auto bmp = [](int height, uint32_t compression, int bpp, const std::vector<uint8_t>& palette,
                  const std::vector<uint8_t>& data) {
        std::vector<uint8_t> b(54);
        auto put = [&b](size_t at, uint32_t v, int n) {
            for (int i = 0; i < n; ++i)
                b[at + size_t(i)] = uint8_t(v >> (8 * i));
        };
        b[0] = 'B', b[1] = 'M';
        put(10, uint32_t(54 + palette.size()), 4);
        put(14, 40, 4);
        put(18, 4, 4);
        put(22, uint32_t(height), 4);
        put(26, 1, 2);
        put(28, uint32_t(bpp), 2);
        put(30, compression, 4);
        put(46, uint32_t(palette.size() / 4), 4);
        b.insert(b.end(), palette.begin(), palette.end());
        b.insert(b.end(), data.begin(), data.end());
        put(2, uint32_t(b.size()), 4);
        return b;
    };
    // Palette: black, red, green, blue (blue, green, red, 0 each).
    const std::vector<uint8_t> palette = {0, 0, 0, 0, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0};
    // Bottom row first: a run of 4 of colours 1,2 alternating; an absolute run 3,0,1,2;
    // a run of two 3s then end of line early; end of picture.
    const std::vector<uint8_t> rle4 = {4, 0x12, 0, 0, 0, 4, 0x30, 0x12, 0, 0, 2, 0x33, 0, 0, 0, 1};
    writeBytes(dir_.file("rle4.bmp"), bmp(3, 2, 4, palette, rle4));
    // Top-down 24 bits: rows of 12 bytes, first row at the top.
    std::vector<uint8_t> rows;
    for (int i = 0; i < 36; ++i)
        rows.push_back(uint8_t(i * 7));
    writeBytes(dir_.file("topdown.bmp"), bmp(-3, 0, 24, {}, rows));
    for (const char* name : {"rle4.bmp", "topdown.bmp"}) {
        SCOPED_TRACE(name);
        const std::string file = dir_.file(name);
        ASSERT_EQ(std::system(referenceCommand(Reader::Im, file, file + ".ppm", Alpha::White).c_str()), 0);
        const Bits expected = readPpm(file + ".ppm");
        ASSERT_TRUE(Keep(LoadImageFile(file, "bmp")).ok);
        EXPECT_TRUE(samePixels(expected, Last().pixels));
    }
}

} // namespace
} // namespace ostrivex::test
