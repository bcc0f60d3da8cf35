#include "pixel/palettefile.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

using namespace ostrivex;

namespace {

std::string tempPath(const char* name) {
    return std::string(::testing::TempDir()) + "/" + name;
}

std::vector<uint8_t> readAll(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}

void writeAll(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

PaletteRecord twoColours() {
    PaletteRecord p;
    p.PaletteCount = 2;
    p.PaletteColors[0][0] = 1;
    p.PaletteColors[0][1] = 2;
    p.PaletteColors[0][2] = 3;
    p.PaletteColors[1][0] = 255;
    p.PaletteColors[1][1] = 0;
    p.PaletteColors[1][2] = 128;
    return p;
}

bool sameRecord(const PaletteRecord& a, const PaletteRecord& b) {
    if (a.PaletteCount != b.PaletteCount) return false;
    for (int i = 0; i < 256; ++i)
        for (int c = 0; c < 3; ++c)
            if (a.PaletteColors[i][c] != b.PaletteColors[i][c]) return false;
    return true;
}

} // namespace

TEST(PaletteFile, WritesCountThenAll256EntriesLittleEndian) {
    const std::string path = tempPath("two.pal");
    ASSERT_TRUE(WritePaletteFile(path, twoColours()));
    const std::vector<uint8_t> bytes = readAll(path);
    ASSERT_EQ(bytes.size(), 3076u);
    const std::vector<uint8_t> head = {2, 0, 0,   0, 1, 0, 0, 0, 2, 0, 0,   0, 3, 0,
                                       0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 128, 0, 0, 0};
    EXPECT_EQ(std::vector<uint8_t>(bytes.begin(), bytes.begin() + 28), head);
    for (size_t i = 28; i < bytes.size(); ++i)
        ASSERT_EQ(bytes[i], 0) << "byte " << i;

    // Read back into a record that held something else: everything is replaced.
    PaletteRecord back = VgaPalette();
    ASSERT_TRUE(ReadPaletteFile(path, back));
    EXPECT_TRUE(sameRecord(back, twoColours()));
    // And written again, the same bytes.
    ASSERT_TRUE(WritePaletteFile(path, back));
    EXPECT_EQ(readAll(path), bytes);
    std::remove(path.c_str());
}

TEST(PaletteFile, EntriesPastTheCountAreKeptWhenValid) {
    PaletteRecord p = twoColours();
    p.PaletteColors[255][0] = 9;
    p.PaletteColors[255][2] = 200;
    const std::vector<uint8_t> bytes = EncodePaletteFile(p);
    ASSERT_EQ(bytes.size(), kPaletteFileSize);
    // Entry 255 starts at 4 + 255 * 12 = 3064.
    EXPECT_EQ(bytes[3064], 9);
    EXPECT_EQ(bytes[3072], 200);
    PaletteRecord back;
    ASSERT_TRUE(DecodePaletteFile(bytes.data(), bytes.size(), back));
    EXPECT_TRUE(sameRecord(back, p));
}

TEST(PaletteFile, DamagedFilesChangeNothing) {
    const std::vector<uint8_t> good = EncodePaletteFile(twoColours());
    auto withValue = [&](size_t offset, int32_t v) {
        std::vector<uint8_t> b = good;
        for (int s = 0; s < 4; ++s)
            b[offset + size_t(s)] = uint8_t(uint32_t(v) >> (8 * s));
        return b;
    };
    std::vector<uint8_t> shortFile(good.begin(), good.end() - 1);
    std::vector<uint8_t> longFile = good;
    longFile.push_back(0);
    const std::vector<std::vector<uint8_t>> damaged = {
        shortFile,
        longFile,
        {},
        withValue(0, 257),         // count past 256
        withValue(0, -1),          // negative count
        withValue(4, 256),         // red of entry 0 past 255
        withValue(4 + 12 + 8, -1), // blue of entry 1 (still used) below 0
    };
    const std::string path = tempPath("damaged.pal");
    for (size_t i = 0; i < damaged.size(); ++i) {
        writeAll(path, damaged[i]);
        PaletteRecord p = VgaPalette();
        EXPECT_FALSE(ReadPaletteFile(path, p)) << "case " << i;
        EXPECT_TRUE(sameRecord(p, VgaPalette())) << "case " << i;
    }
    PaletteRecord p = VgaPalette();
    EXPECT_FALSE(ReadPaletteFile(tempPath("no-such-file.pal"), p));
    EXPECT_TRUE(sameRecord(p, VgaPalette()));

    // An unused entry out of range is no damage: it comes in as black.
    std::vector<uint8_t> loose = withValue(4 + 2 * 12, 300); // red of entry 2, count 2
    ASSERT_TRUE(DecodePaletteFile(loose.data(), loose.size(), p));
    EXPECT_TRUE(sameRecord(p, twoColours()));
    // A count of 256 makes every entry count.
    loose = withValue(0, 256);
    std::vector<uint8_t> bad = loose;
    bad[3075] = 1; // high byte of the blue of entry 255: 0x01000000
    p = VgaPalette();
    EXPECT_FALSE(DecodePaletteFile(bad.data(), bad.size(), p));
    EXPECT_TRUE(sameRecord(p, VgaPalette()));
    EXPECT_TRUE(DecodePaletteFile(loose.data(), loose.size(), p));
    EXPECT_EQ(p.PaletteCount, 256);
    std::remove(path.c_str());
}

TEST(PaletteFile, UnwritablePathFails) {
    EXPECT_FALSE(WritePaletteFile(tempPath("no-such-folder/x.pal"), twoColours()));
}

TEST(PaletteFile, VgaPaletteHoldsTheSixteenColours) {
    const PaletteRecord p = VgaPalette();
    EXPECT_EQ(p.PaletteCount, 16);
    const int32_t brown[3] = {170, 85, 0};
    const int32_t yellow[3] = {255, 255, 85};
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(p.PaletteColors[6][c], brown[c]);
        EXPECT_EQ(p.PaletteColors[14][c], yellow[c]);
        EXPECT_EQ(p.PaletteColors[15][c], 255);
        EXPECT_EQ(p.PaletteColors[16][c], 0);
    }
}

TEST(PaletteFile, ShippedPalettesLoad) {
    // The checkout's folder comes from the build: __FILE__ may be relative to the build
    // folder (a compiler cache rewrites paths so), and the tests run elsewhere.
    const std::string folder = std::string(OSTRIVEX_SOURCE_DIR) + "/assets/Palettes/";
    PaletteRecord p;
    ASSERT_TRUE(ReadPaletteFile(folder + "VGA16.pal", p));
    EXPECT_TRUE(sameRecord(p, VgaPalette()));

    // Six levels a channel, red slowest: entry 43 = 1 * 36 + 1 * 6 + 1 is (51, 51, 51),
    // entry 1 is (0, 0, 51), entry 215 white.
    ASSERT_TRUE(ReadPaletteFile(folder + "WebSafe216.pal", p));
    EXPECT_EQ(p.PaletteCount, 216);
    const int32_t e1[3] = {0, 0, 51}, e43[3] = {51, 51, 51}, e215[3] = {255, 255, 255};
    const int32_t e216[3] = {0, 0, 0};
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(p.PaletteColors[1][c], e1[c]);
        EXPECT_EQ(p.PaletteColors[43][c], e43[c]);
        EXPECT_EQ(p.PaletteColors[215][c], e215[c]);
        EXPECT_EQ(p.PaletteColors[216][c], e216[c]);
    }

    ASSERT_TRUE(ReadPaletteFile(folder + "Greyscale256.pal", p));
    EXPECT_EQ(p.PaletteCount, 256);
    for (int i : {0, 1, 128, 255})
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(p.PaletteColors[i][c], i);

    // 3-3-2 bits: entry 0b101'011'10 = 174 is red 5 * 255 / 7 = 182.14 -> 182,
    // green 3 * 255 / 7 = 109.29 -> 109, blue 2 * 85 = 170.
    ASSERT_TRUE(ReadPaletteFile(folder + "RGB332.pal", p));
    EXPECT_EQ(p.PaletteCount, 256);
    EXPECT_EQ(p.PaletteColors[174][0], 182);
    EXPECT_EQ(p.PaletteColors[174][1], 109);
    EXPECT_EQ(p.PaletteColors[174][2], 170);
    EXPECT_EQ(p.PaletteColors[255][0], 255);
    EXPECT_EQ(p.PaletteColors[255][2], 255);
}
