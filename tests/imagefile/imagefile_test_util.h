// Helpers of the image file tests: a scratch folder, file bytes, the test pattern and
// ImageMagick's convert for files written by another program.
#pragma once

#include "imagefile/imagefile.h"
#include "pixel/bits.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace ostrivex::test {

// The result of the last load a test kept with Keep: the checks that follow a load read
// its pixels, size and depth from there (a failed load keeps no pixels).
inline ImageFileResult& Last() {
    static ImageFileResult last;
    return last;
}
inline const ImageFileResult& Keep(ImageFileResult r) { return Last() = std::move(r); }

inline std::string dataFile(const std::string& name) {
    return std::string(OSTRIVEX_TEST_DATA) + "/formats/" + name;
}

// A fresh scratch folder, removed at the end of the test.
class ScratchDir {
  public:
    ScratchDir() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "ostrivex-if-XXXXXX").string();
        std::vector<char> buf(pattern.begin(), pattern.end());
        buf.push_back('\0');
        path_ = mkdtemp(buf.data());
    }
    ~ScratchDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string file(const std::string& name) const { return path_ + "/" + name; }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

inline std::vector<uint8_t> readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>((std::istreambuf_iterator<char>(in)),
                                std::istreambuf_iterator<char>());
}

inline void writeBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

inline void writeText(const std::string& path, const std::string& text) {
    writeBytes(path, std::vector<uint8_t>(text.begin(), text.end()));
}

struct Rgb {
    int r, g, b;
};

// A Bits of w x h from colours given row by row (channel 3 zero).
inline Bits rgbBits(int w, int h, const std::vector<Rgb>& colours) {
    Bits out(w, h);
    for (int i = 0; i < w * h; ++i) {
        uint8_t* p = out.pixel(i % w, i / w);
        p[0] = uint8_t(colours[size_t(i)].b);
        p[1] = uint8_t(colours[size_t(i)].g);
        p[2] = uint8_t(colours[size_t(i)].r);
    }
    return out;
}

// The 4 x 3 test picture: twelve different colours, saturated ones and odd ones.
inline std::vector<Rgb> patternColours() {
    return {{255, 0, 0},   {0, 255, 0},   {0, 0, 255},    {255, 255, 255},
            {0, 0, 0},     {10, 20, 30},  {200, 100, 50}, {128, 128, 128},
            {255, 255, 0}, {0, 255, 255}, {255, 0, 255},  {1, 2, 3}};
}
inline Bits patternPicture() {
    return rgbBits(4, 3, patternColours());
}

// The same picture as a plain-text PPM, written by hand.
inline std::string patternPpmText() {
    std::ostringstream s;
    s << "P3\n4 3\n255\n";
    for (const Rgb& c : patternColours())
        s << c.r << ' ' << c.g << ' ' << c.b << '\n';
    return s.str();
}

// Runs ImageMagick's convert with the given arguments; true on success. Called by its
// full name: another program may stand in for `convert` on the PATH.
inline bool imageMagick(const std::string& args) {
    const std::string cmd = "/usr/bin/convert " + args + " >/dev/null 2>&1";
    return std::system(cmd.c_str()) == 0;
}

// Exact comparison of two pictures' visible pixels (channels 0..3), first differences shown.
inline ::testing::AssertionResult samePixels(const Bits& expected, const Bits& actual) {
    if (expected.width() != actual.width() || expected.height() != actual.height())
        return ::testing::AssertionFailure()
               << "size " << actual.width() << "x" << actual.height() << ", expected "
               << expected.width() << "x" << expected.height();
    std::ostringstream diff;
    int shown = 0;
    for (int y = 0; y < expected.height(); ++y)
        for (int x = 0; x < expected.width(); ++x)
            for (int c = 0; c < 4; ++c)
                if (expected(c, x, y) != actual(c, x, y) && shown++ < 8)
                    diff << " (c" << c << "," << x << "," << y << "): got " << int(actual(c, x, y))
                         << " want " << int(expected(c, x, y)) << ";";
    if (shown) return ::testing::AssertionFailure() << shown << " bytes differ:" << diff.str();
    return ::testing::AssertionSuccess();
}

// Largest difference of channels 0..2 between two pictures of one size (-1 if the sizes
// differ).
inline int maxDifference(const Bits& a, const Bits& b) {
    if (a.width() != b.width() || a.height() != b.height()) return -1;
    int worst = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            for (int c = 0; c < 3; ++c)
                worst = std::max(worst, std::abs(int(a(c, x, y)) - int(b(c, x, y))));
    return worst;
}

// The colour of one loaded pixel as {r, g, b}.
inline std::vector<int> rgbAt(const Bits& b, int x, int y) {
    return {b(2, x, y), b(1, x, y), b(0, x, y)};
}

} // namespace ostrivex::test
