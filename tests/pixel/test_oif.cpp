// The .oif user filter file: exact bytes, round trips, and damaged files that must be
// refused without touching the record.
#include "pixel/oiffile.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <unistd.h>

namespace ostrivex {
namespace {

namespace fs = std::filesystem;

struct TempDir {
    fs::path path;
    TempDir() {
        path = fs::temp_directory_path() / ("oif-test-" + std::to_string(::getpid()));
        fs::create_directories(path);
    }
    ~TempDir() { fs::remove_all(path); }
};

FilterMask sample3() {
    FilterMask m;
    m.Mask = {{1, 2, 3}, {4, 5, 6}, {7, 8, -9}};
    m.Div = 16;
    m.BiasR = 255;
    m.BiasG = -1;
    m.BiasB = 0x01020304;
    return m;
}

void writeBytes(const fs::path& p, const std::vector<uint8_t>& b) {
    std::ofstream f(p, std::ios::binary);
    f.write(reinterpret_cast<const char*>(b.data()), std::streamsize(b.size()));
}

TEST(OifFile, BytesOfAThreeByThreeFilter) {
    const std::vector<uint8_t> want = {
        2, 0,                 // two dimensions
        3, 0, 0, 0, 0, 0, 0, 0, // first: 3 elements from 0
        3, 0, 0, 0, 0, 0, 0, 0, // second: 3 elements from 0
        // The first index (the row) runs fastest: column 0 is 1, 4, 7; then 2, 5, 8; 3, 6, -9.
        1, 0, 0, 0, 4, 0, 0, 0, 7, 0, 0, 0,          //
        2, 0, 0, 0, 5, 0, 0, 0, 8, 0, 0, 0,          //
        3, 0, 0, 0, 6, 0, 0, 0, 0xF7, 0xFF, 0xFF, 0xFF, //
        16, 0, 0, 0,                                   // Div
        0xFF, 0, 0, 0,                                 // BiasR
        0xFF, 0xFF, 0xFF, 0xFF,                        // BiasG
        4, 3, 2, 1};                                   // BiasB
    EXPECT_EQ(EncodeFilterFile(sample3()), want);

    TempDir dir;
    const std::string p = (dir.path / "mine.oif").string();
    ASSERT_TRUE(WriteFilterFile(p, sample3()));
    EXPECT_EQ(fs::file_size(p), 70u);
    FilterMask back;
    ASSERT_TRUE(ReadFilterFile(p, back));
    EXPECT_EQ(back, sample3());
}

TEST(OifFile, FiveByFiveRoundTrip) {
    FilterMask m;
    m.Mask.assign(5, std::vector<int32_t>(5, 0));
    for (int r = 0; r < 5; ++r)
        for (int c = 0; c < 5; ++c) m.Mask[r][c] = (r - 2) * 100 + c - 7;
    m.Div = -3;
    m.BiasR = 1, m.BiasG = 2, m.BiasB = 3;
    const std::vector<uint8_t> bytes = EncodeFilterFile(m);
    ASSERT_EQ(bytes.size(), 18u + 100u + 16u);
    EXPECT_EQ(bytes[2], 5);
    // The second coefficient is Mask[1][0] = -100 - 7 = -107.
    EXPECT_EQ(bytes[22], uint8_t(-107 & 0xFF));
    EXPECT_EQ(bytes[25], 0xFF);

    TempDir dir;
    const std::string p = (dir.path / "five.oif").string();
    ASSERT_TRUE(WriteFilterFile(p, m));
    FilterMask back;
    ASSERT_TRUE(ReadFilterFile(p, back));
    EXPECT_EQ(back, m);
}

TEST(OifFile, DamagedFilesAreRefusedAndChangeNothing) {
    const FilterMask keep = sample3();
    const std::vector<uint8_t> good = EncodeFilterFile(keep);
    FilterMask m = keep;
    auto refused = [&](const std::vector<uint8_t>& b) {
        FilterMask r = keep;
        const bool ok = DecodeFilterFile(b.data(), b.size(), r);
        return !ok && r == keep;
    };
    // Every shorter length, and one byte more.
    for (size_t n = 0; n < good.size(); ++n)
        EXPECT_TRUE(refused(std::vector<uint8_t>(good.begin(), good.begin() + long(n)))) << n;
    std::vector<uint8_t> longer = good;
    longer.push_back(0);
    EXPECT_TRUE(refused(longer));
    // Wrong dimension count, sizes, bounds.
    auto patched = [&](size_t at, std::vector<uint8_t> bytes) {
        std::vector<uint8_t> b = good;
        for (size_t i = 0; i < bytes.size(); ++i) b[at + i] = bytes[i];
        return b;
    };
    EXPECT_TRUE(refused(patched(0, {1, 0})));
    EXPECT_TRUE(refused(patched(2, {4, 0, 0, 0})));
    EXPECT_TRUE(refused(patched(10, {5, 0, 0, 0})));
    EXPECT_TRUE(refused(patched(6, {1, 0, 0, 0})));
    EXPECT_TRUE(refused(patched(14, {0xFF, 0xFF, 0xFF, 0xFF})));
    EXPECT_TRUE(refused(patched(2, {0xFF, 0xFF, 0xFF, 0x7F})));
    // A 5 x 5 header over 3 x 3 data is too short.
    EXPECT_TRUE(refused(patched(2, {5, 0, 0, 0, 0, 0, 0, 0, 5, 0, 0, 0})));
    EXPECT_FALSE(DecodeFilterFile(nullptr, 70, m));

    // Garbage of every length up to 200 never crashes and is refused unless it happens to
    // be well formed.
    std::mt19937 rng(4);
    for (int t = 0; t < 3000; ++t) {
        std::vector<uint8_t> b(rng() % 200);
        for (auto& v : b) v = uint8_t(rng());
        if (t % 2 && b.size() >= 18) b = patched(0, {2, 0, 3, 0, 0, 0}), b.resize(rng() % 140);
        FilterMask r = keep;
        if (DecodeFilterFile(b.data(), b.size(), r))
            EXPECT_TRUE(b.size() == 70 || b.size() == 134);
        else
            EXPECT_EQ(r, keep);
    }

    // Files: missing, a folder, an empty file, a truncated file.
    TempDir dir;
    EXPECT_FALSE(ReadFilterFile((dir.path / "none.oif").string(), m));
    EXPECT_FALSE(ReadFilterFile(dir.path.string(), m));
    writeBytes(dir.path / "empty.oif", {});
    EXPECT_FALSE(ReadFilterFile((dir.path / "empty.oif").string(), m));
    writeBytes(dir.path / "short.oif", std::vector<uint8_t>(good.begin(), good.begin() + 60));
    EXPECT_FALSE(ReadFilterFile((dir.path / "short.oif").string(), m));
    std::vector<uint8_t> huge = good;
    huge.resize(100000, 0);
    writeBytes(dir.path / "huge.oif", huge);
    EXPECT_FALSE(ReadFilterFile((dir.path / "huge.oif").string(), m));
    EXPECT_EQ(m, keep);
}

TEST(OifFile, OnlySquareThreeOrFiveKernelsAreWritten) {
    TempDir dir;
    FilterMask bad = sample3();
    bad.Mask = {{1, 2, 3, 4}, {1, 2, 3, 4}, {1, 2, 3, 4}, {1, 2, 3, 4}};
    EXPECT_TRUE(EncodeFilterFile(bad).empty());
    EXPECT_FALSE(WriteFilterFile((dir.path / "four.oif").string(), bad));
    EXPECT_FALSE(fs::exists(dir.path / "four.oif"));
    bad.Mask = {{1, 2, 3}, {1, 2}, {1, 2, 3}};
    EXPECT_FALSE(WriteFilterFile((dir.path / "ragged.oif").string(), bad));
    // A folder that doesn't exist.
    EXPECT_FALSE(WriteFilterFile((dir.path / "no" / "such.oif").string(), sample3()));
    EXPECT_STREQ(kFilterFileDialogFilter, "Ostrivex filter (*.oif)|*.oif");
    EXPECT_STREQ(kFilterFileLoadTitle, "Load filter");
    EXPECT_STREQ(kFilterFileSaveTitle, "Save filter");
}

} // namespace
} // namespace ostrivex
