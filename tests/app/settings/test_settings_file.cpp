// The settings file on disk: loading, saving, the recent-file list, the program's folder.
#include "settings_test_util.h"

#include "app/settings/appfolder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace ostrivex::test {
namespace {

namespace fs = std::filesystem;

using SettingsFile = FreshHome;

bool allZero(const std::vector<std::uint8_t>& b) {
    for (auto x : b)
        if (x) return false;
    return true;
}

TEST_F(SettingsFile, FolderAndFileName) {
    EXPECT_EQ(AppFolder(), home_);
    EXPECT_EQ(SettingsFileName(), home_ + "/oi201Start.up");
    ::setenv("OSTRIVEX_HOME", (home_ + "/sub//").c_str(), 1);
    EXPECT_EQ(AppFolder(), home_ + "/sub"); // no trailing slash, and the folder is made
    EXPECT_TRUE(fs::is_directory(home_ + "/sub"));
}

TEST_F(SettingsFile, FolderChoiceAndSeeding) {
    AppFolderInputs in;
    in.exeDir = home_ + "/bin/";
    in.exeDirWritable = true;
    in.xdgDataHome = home_ + "/data";
    in.userHome = home_ + "/user";
    in.home = home_ + "/chosen/";
    EXPECT_EQ(ChooseAppFolder(in), home_ + "/chosen");
    in.home.clear();
    EXPECT_EQ(ChooseAppFolder(in), home_ + "/bin"); // a writable program folder
    in.exeDirHasResources = false; // an installed one, in a folder its user may write
    in.seedSources = {home_ + "/nowhere"};
    EXPECT_EQ(ChooseAppFolder(in), home_ + "/data/ostrivex");
    in.exeDirHasResources = true;

    // A program that cannot write beside itself uses the user's data folder, seeded from the
    // first resource folder that exists; what the user has is never replaced.
    const std::string shipped = home_ + "/share/ostrivex";
    fs::create_directories(shipped + "/Help");
    fs::create_directories(shipped + "/Stamps");
    writeFile(shipped + "/Help/default.htm", {'n', 'e', 'w'});
    writeFile(shipped + "/Stamps/Star.bmp", {'B', 'M'});
    fs::create_directories(home_ + "/data/ostrivex/Help");
    writeFile(home_ + "/data/ostrivex/Help/default.htm", {'o', 'l', 'd'});
    in.exeDirWritable = false;
    in.seedSources = {home_ + "/nowhere", shipped};
    EXPECT_EQ(ChooseAppFolder(in), home_ + "/data/ostrivex");
    EXPECT_EQ(readFile(home_ + "/data/ostrivex/Help/default.htm"),
              (std::vector<std::uint8_t>{'o', 'l', 'd'}));
    EXPECT_EQ(readFile(home_ + "/data/ostrivex/Stamps/Star.bmp"),
              (std::vector<std::uint8_t>{'B', 'M'}));

    // No usable $XDG_DATA_HOME: the folder goes under $HOME/.local/share.
    in.xdgDataHome = "relative/path";
    EXPECT_EQ(ChooseAppFolder(in), home_ + "/user/.local/share/ostrivex");
    EXPECT_TRUE(fs::exists(home_ + "/user/.local/share/ostrivex/Stamps/Star.bmp"));
}

TEST_F(SettingsFile, MissingFileGivesDefaultsAndAnEmptyFile) {
    SetFieldText(Settings.RecentFiles[0], "/a.bmp");
    SetFieldText(Settings.ActiveTool, "Fill");
    ASSERT_TRUE(LoadSettings());

    EXPECT_EQ(SessionFlag, -1);
    ASSERT_TRUE(fs::exists(SettingsFileName()));
    EXPECT_EQ(fs::file_size(SettingsFileName()), 0u); // nothing is written until a save
    EXPECT_EQ(Settings.MainWidth, 9600);
    EXPECT_EQ(Settings.MainMaximized, -1);
    EXPECT_EQ(FieldText(Settings.OpenFolder), home_ + "/Images/");
    EXPECT_EQ(FieldText(Settings.WebFolder), home_ + "/Images/");
    EXPECT_EQ(Settings.WebQuality, 80);
    EXPECT_EQ(FieldText(Settings.RecentFiles[0]), "/a.bmp");
    EXPECT_EQ(FieldText(Settings.ActiveTool), "Fill");
    EXPECT_EQ(Settings.RecentFiles[1], FixedText<256>{}); // still never written

    // The defaults are the whole record apart from the two untouched fields.
    SettingsRecord expect{};
    SetDefaultSettings(expect, home_);
    expect.RecentFiles = Settings.RecentFiles;
    expect.ActiveTool = Settings.ActiveTool;
    EXPECT_EQ(SettingsBytes(Settings), SettingsBytes(expect));
}

TEST_F(SettingsFile, EmptyFileIsReadAsItStands) {
    writeFile(SettingsFileName(), {});
    ASSERT_TRUE(LoadSettings());
    // An existing file never brings the defaults: every field stays zero.
    EXPECT_TRUE(allZero(SettingsBytes(Settings)));
    EXPECT_EQ(Settings.MainMaximized, 0);
    EXPECT_EQ(SessionFlag, -1);
    EXPECT_EQ(fs::file_size(SettingsFileName()), 0u);
}

TEST_F(SettingsFile, ShortFileFillsOnlyLeadingFields) {
    // Seven bytes: MainWidth, MainHeight, MainMaximized and the low byte of DocMaximized.
    writeFile(SettingsFileName(), {0x01, 0x02, 0x03, 0x04, 0xFF, 0xFF, 0x05});
    ASSERT_TRUE(LoadSettings());
    EXPECT_EQ(Settings.MainWidth, 0x0201);
    EXPECT_EQ(Settings.MainHeight, 0x0403);
    EXPECT_EQ(Settings.MainMaximized, -1);
    EXPECT_EQ(Settings.DocMaximized, 5);
    EXPECT_EQ(FieldText(Settings.OpenFolder), "");
    EXPECT_EQ(Settings.ConfirmClose, 0);
    EXPECT_EQ(Settings.WebQuality, 0);

    // A file that ends inside a text field fills that field's leading bytes only.
    std::vector<std::uint8_t> cut(8 + 3, 0);
    cut[8] = 'a';
    cut[9] = 'b';
    cut[10] = ' ';
    writeFile(SettingsFileName(), cut);
    Settings = SettingsRecord{};
    ASSERT_TRUE(LoadSettings());
    EXPECT_EQ(std::string(Settings.OpenFolder.data(), 4), std::string("ab \0", 4));
    EXPECT_EQ(FieldText(Settings.OpenFolder), "ab");
}

TEST_F(SettingsFile, FullFileAndLongerFile) {
    SettingsRecord s{};
    SetDefaultSettings(s, "/elsewhere");
    s.MainWidth = 12345;
    s.BrushSize = 99;
    SetFieldText(s.RecentFiles[3], "/pics/x.jpg");
    s.WebQuality = 55;
    std::vector<std::uint8_t> bytes = SettingsBytes(s);
    bytes.resize(4000, 0xAB); // a longer file: the tail is not part of the record
    writeFile(SettingsFileName(), bytes);

    ASSERT_TRUE(LoadSettings());
    EXPECT_EQ(Settings.MainWidth, 12345);
    EXPECT_EQ(Settings.BrushSize, 99);
    EXPECT_EQ(FieldText(Settings.RecentFiles[3]), "/pics/x.jpg");
    EXPECT_EQ(FieldText(Settings.OpenFolder), "/elsewhere/Images/"); // not re-defaulted
    EXPECT_EQ(Settings.WebQuality, 55);
    EXPECT_EQ(SettingsBytes(Settings), SettingsBytes(s));

    // Saving overwrites the start of the file and leaves the tail as it was.
    Settings.WebQuality = 60;
    ASSERT_TRUE(SaveSettings());
    const std::vector<std::uint8_t> after = readFile(SettingsFileName());
    ASSERT_EQ(after.size(), 4000u);
    EXPECT_EQ(after[3965], 60);
    EXPECT_EQ(after[3966], 0);
    EXPECT_EQ(after[3967], 0xAB);
    EXPECT_EQ(after[3999], 0xAB);
}

TEST_F(SettingsFile, SaveThenLoadGivesTheSameBytes) {
    ASSERT_TRUE(LoadSettings()); // defaults, empty file
    Settings.ColorPrimary = 0x00123456;
    Settings.HistoryBoxMinimized = -1;
    Settings.ThumbShowFilename = 0;
    SetFieldText(Settings.ActiveTool, "Airbrush");
    AddRecentFile("/home/u/one.png");
    ASSERT_TRUE(SaveSettings());

    const std::vector<std::uint8_t> onDisk = readFile(SettingsFileName());
    ASSERT_EQ(onDisk.size(), 3967u);
    EXPECT_EQ(onDisk, SettingsBytes(Settings));
    EXPECT_EQ(onDisk[2598], 0x56); // ColorPrimary, low byte first
    EXPECT_EQ(onDisk[2601], 0x00);
    EXPECT_EQ(onDisk[3414], 0); // ThumbShowFilename

    const std::vector<std::uint8_t> before = SettingsBytes(Settings);
    Settings = SettingsRecord{};
    ASSERT_TRUE(LoadSettings());
    EXPECT_EQ(SettingsBytes(Settings), before);
    EXPECT_EQ(FieldText(Settings.ActiveTool), "Airbrush");
}

TEST_F(SettingsFile, EveryByteOfAnyFileSurvivesLoadAndSave) {
    // Arbitrary content, padding and reserved bytes included, goes through the record
    // unchanged: no byte of the file is dropped or rewritten by a load and a save.
    std::vector<std::uint8_t> garbage(3967);
    std::uint32_t x = 2463534242u;
    for (auto& b : garbage) {
        x ^= x << 13;
        x ^= x >> 17;
        x ^= x << 5;
        b = std::uint8_t(x);
    }
    writeFile(SettingsFileName(), garbage);
    ASSERT_TRUE(LoadSettings());
    EXPECT_EQ(SettingsBytes(Settings), garbage);
    ASSERT_TRUE(SaveSettings());
    EXPECT_EQ(readFile(SettingsFileName()), garbage);
}

std::vector<std::string> recentList() {
    std::vector<std::string> out;
    for (const auto& e : Settings.RecentFiles)
        out.push_back(FieldText(e));
    return out;
}

TEST_F(SettingsFile, RecentFilesFromNeverWrittenEntries) {
    // After a first start the entries hold no blanks, so no entry is free and each new
    // path goes on top.
    AddRecentFile("/a");
    AddRecentFile("/b");
    AddRecentFile("/c");
    EXPECT_EQ(recentList(), (std::vector<std::string>{"/c", "/b", "/a", "", "", "", "", ""}));
    // Already listed: nothing moves.
    AddRecentFile("/a");
    EXPECT_EQ(recentList(), (std::vector<std::string>{"/c", "/b", "/a", "", "", "", "", ""}));
    EXPECT_EQ(std::string(Settings.RecentFiles[0].data(), 3), "/c ");
    EXPECT_EQ(Settings.RecentFiles[7], FixedText<256>{});
}

TEST_F(SettingsFile, RecentFilesFillBlankEntriesFirst) {
    for (auto& e : Settings.RecentFiles)
        SetFieldText(e, "");
    AddRecentFile("/a");
    AddRecentFile("/b");
    // The first free slot is taken, so the newer file goes below the older one.
    EXPECT_EQ(recentList(), (std::vector<std::string>{"/a", "/b", "", "", "", "", "", ""}));

    // A never-written entry is skipped; the first all-blank entry after it is used.
    Settings.RecentFiles[2] = FixedText<256>{};
    AddRecentFile("/c");
    EXPECT_EQ(recentList(), (std::vector<std::string>{"/a", "/b", "", "/c", "", "", "", ""}));
    EXPECT_EQ(Settings.RecentFiles[2], FixedText<256>{});

    // Entries are trimmed before the comparison.
    SetFieldText(Settings.RecentFiles[4], "  /d");
    AddRecentFile("/d");
    EXPECT_EQ(recentList(), (std::vector<std::string>{"/a", "/b", "", "/c", "  /d", "", "", ""}));
}

TEST_F(SettingsFile, RecentFilesFullListDropsTheLast) {
    const char* names[] = {"/1", "/2", "/3", "/4", "/5", "/6", "/7", "/8"};
    for (int i = 0; i < 8; ++i)
        SetFieldText(Settings.RecentFiles[i], names[i]);
    AddRecentFile("/5"); // listed: no change
    EXPECT_EQ(recentList(),
              (std::vector<std::string>{"/1", "/2", "/3", "/4", "/5", "/6", "/7", "/8"}));
    AddRecentFile("/new");
    EXPECT_EQ(recentList(),
              (std::vector<std::string>{"/new", "/1", "/2", "/3", "/4", "/5", "/6", "/7"}));
}

TEST_F(SettingsFile, FileExistsCountsAnyName) {
    const std::string file = home_ + "/f.txt";
    writeFile(file, {1});
    fs::create_directory(home_ + "/dir");
    fs::create_symlink(home_ + "/gone", home_ + "/link");
    EXPECT_TRUE(FileExists(file));
    EXPECT_TRUE(FileExists(home_ + "/dir")); // a folder counts
    EXPECT_TRUE(FileExists(home_ + "/link"));
    EXPECT_FALSE(FileExists(home_ + "/gone"));
    EXPECT_FALSE(FileExists(home_ + "/F.TXT")); // exact name
    EXPECT_FALSE(FileExists(""));
}

} // namespace
} // namespace ostrivex::test
