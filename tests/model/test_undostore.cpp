// The undo slot files: names, bytes, the redo branch, the limit of 201 states and the
// shift beyond it, and the reader's refusal of files it did not write.
#include "model/undostore.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace ostrivex {
namespace {

namespace fs = std::filesystem;

fs::path freshFolder(const char* name) {
    fs::path p = fs::path(std::getenv("OSTRIVEX_HOME")) / name;
    fs::remove_all(p);
    fs::create_directories(p);
    return p;
}

std::vector<uint8_t> fileBytes(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), {});
}

// A 1x1 image whose blue byte tells the states apart.
Bits state(uint8_t value) {
    Bits b(1, 1);
    b(0, 0, 0) = value;
    return b;
}

int valueInSlot(const UndoStore& store, int slot) {
    Bits b;
    if (!UndoStore::ReadSlotFile(store.SlotFileName(slot), b)) return -1;
    return b(0, 0, 0);
}

TEST(UndoStore, SlotNamesWidenAndTheFirstSaveMakesTheTempFolder) {
    const fs::path app = freshFolder("names");
    UndoStore store(app, 7);
    EXPECT_EQ(store.SlotFileName(3), app / "Temp" / "b000703.dat");
    EXPECT_EQ(store.SlotFileName(100), app / "Temp" / "b0007100.dat");
    UndoStore big(app, 12345);
    EXPECT_EQ(big.SlotFileName(0), app / "Temp" / "b1234500.dat");

    EXPECT_FALSE(fs::exists(app / "Temp"));
    store.Save(state(1), "Original");
    EXPECT_TRUE(fs::exists(app / "Temp" / "b000700.dat"));
}

TEST(UndoStore, SlotFileBytesAreTheHeaderAndTheBufferWithItsGuardBand) {
    const fs::path app = freshFolder("bytes");
    UndoStore store(app, 1);
    Bits b(2, 1);
    for (int c = 0; c < 4; ++c) {
        b(c, 0, 0) = uint8_t(1 + c); // 1 2 3 4
        b(c, 1, 0) = uint8_t(5 + c); // 5 6 7 8
    }
    store.Save(b, "Original");
    const std::vector<uint8_t> bytes = fileBytes(app / "Temp" / "b000100.dat");
    // 40 + 4 * (2 + 4) * (1 + 4)
    ASSERT_EQ(bytes.size(), 160u);
    const std::vector<uint8_t> header = {40, 0, 0, 0,    6, 0, 0, 0,  0xFB, 0xFF, 0xFF, 0xFF,
                                         1,  0, 32, 0,   0, 0, 0, 0,  0,    0,    0,    0,
                                         0,  0, 0,  0,   0, 0, 0, 0,  0,    0,    0,    0,
                                         0,  0, 0,  0};
    EXPECT_EQ(std::vector<uint8_t>(bytes.begin(), bytes.begin() + 40), header);
    // Rows -2 and -1 (2 * 24 bytes) and the two guard pixels of row 0 come first.
    std::vector<uint8_t> raster(120, 0);
    for (int i = 0; i < 8; ++i) raster[size_t(48 + 8 + i)] = uint8_t(1 + i);
    EXPECT_EQ(std::vector<uint8_t>(bytes.begin() + 40, bytes.end()), raster);

    Bits back;
    ASSERT_TRUE(UndoStore::ReadSlotFile(app / "Temp" / "b000100.dat", back));
    EXPECT_EQ(back, b);
    EXPECT_EQ(store.ActionNames[0], "Original");
    EXPECT_EQ(store.HistoryPosition, 1);
    EXPECT_EQ(store.HistoryTop, 1);
}

TEST(UndoStore, UndoSlotsAndASaveAfterUndoKillsTheRedoBranch) {
    const fs::path app = freshFolder("branch");
    UndoStore store(app, 2);
    store.Save(state(10), "Original");
    // With one state the undo slot is -1, whose file never exists.
    EXPECT_EQ(store.UndoSlot(), -1);
    EXPECT_FALSE(fs::exists(store.SlotFileName(-1)));
    store.Save(state(11), "Brush");
    EXPECT_EQ(store.UndoSlot(), 0);
    store.Save(state(12), "Fill");
    store.Save(state(13), "Pencil");
    EXPECT_EQ(store.HistoryPosition, 4);

    store.Undone(); // on screen: slot 2
    store.Undone(); // on screen: slot 1
    EXPECT_EQ(store.HistoryPosition, 2);
    EXPECT_EQ(store.HistoryTop, 4);
    EXPECT_EQ(store.RedoSlot(), 2);

    const UndoStore::SaveResult r = store.Save(state(20), "Gradient");
    EXPECT_EQ(r.slot, 2);
    EXPECT_EQ(r.removedSlots, (std::vector<int32_t>{3, 4}));
    EXPECT_EQ(valueInSlot(store, 2), 20);
    EXPECT_FALSE(fs::exists(store.SlotFileName(3)));
    EXPECT_EQ(store.ActionNames[2], "Gradient");
    EXPECT_EQ(store.ActionNames[3], "");
    EXPECT_EQ(store.HistoryPosition, 3);
    EXPECT_EQ(store.HistoryTop, 3);

    // A jump keeps the top, so later states stay redoable.
    store.JumpedTo(0);
    EXPECT_EQ(store.HistoryPosition, 1);
    EXPECT_EQ(store.HistoryTop, 3);
    store.Redone();
    store.Redone();
    store.Redone();
    EXPECT_EQ(store.HistoryPosition, 4);
    EXPECT_EQ(store.HistoryTop, 4);
}

TEST(UndoStore, TheLimitShiftsTheFilesButNotTheCaptions) {
    const fs::path app = freshFolder("limit");
    UndoStore store(app, 3);
    // Saves 0..199 fill slots 0..199; save 200 writes slot 200 and then shifts.
    for (int i = 0; i <= 199; ++i) store.Save(state(uint8_t(i)), "s" + std::to_string(i));
    EXPECT_EQ(store.HistoryPosition, 200);
    EXPECT_EQ(store.HistoryTop, 200);
    const UndoStore::SaveResult r = store.Save(state(200), "s200");
    EXPECT_EQ(r.slot, 200);
    EXPECT_TRUE(r.shifted);
    EXPECT_EQ(store.HistoryPosition, 200);
    EXPECT_EQ(store.HistoryTop, 200);
    // Slot 0 (state 0) is gone; every other state moved down by one.
    EXPECT_EQ(valueInSlot(store, 0), 1);
    EXPECT_EQ(valueInSlot(store, 198), 199);
    EXPECT_EQ(valueInSlot(store, 199), 200);
    EXPECT_FALSE(fs::exists(store.SlotFileName(200)));
    // The state on screen (slot 199) is the newest; undo reaches the one before.
    EXPECT_EQ(valueInSlot(store, store.HistoryPosition - 1), 200);
    EXPECT_EQ(valueInSlot(store, store.UndoSlot()), 199);
    // The captions stay where they were written.
    EXPECT_EQ(store.ActionNames[0], "s0");
    EXPECT_EQ(store.ActionNames[199], "s199");
    EXPECT_EQ(store.ActionNames[200], "s200");

    store.Save(state(201), "s201");
    EXPECT_EQ(valueInSlot(store, 0), 2);
    EXPECT_EQ(valueInSlot(store, 199), 201);
    EXPECT_EQ(store.ActionNames[200], "s201");
    EXPECT_EQ(store.HistoryPosition, 200);
}

TEST(UndoStore, ClearDeletesOnlyThisDocumentsFiles) {
    const fs::path app = freshFolder("clear");
    UndoStore one(app, 1), eleven(app, 11);
    one.Save(state(1), "Original");
    one.Save(state(2), "Brush");
    eleven.Save(state(3), "Original");
    std::ofstream(app / "Temp" / "b0001note.txt") << "x";
    one.ClearHistoryFiles();
    EXPECT_FALSE(fs::exists(one.SlotFileName(0)));
    EXPECT_FALSE(fs::exists(one.SlotFileName(1)));
    EXPECT_TRUE(fs::exists(eleven.SlotFileName(0)));
    EXPECT_TRUE(fs::exists(app / "Temp" / "b0001note.txt"));
}

TEST(UndoStore, TheReaderRefusesFilesItDidNotWrite) {
    const fs::path app = freshFolder("refuse");
    UndoStore store(app, 4);
    Bits b(3, 2);
    b(2, 1, 1) = 99;
    store.Save(b, "Original");
    const fs::path good = store.SlotFileName(0);
    std::vector<uint8_t> bytes = fileBytes(good);
    auto writeVariant = [&](const char* name, std::vector<uint8_t> v) {
        fs::path p = app / name;
        std::ofstream(p, std::ios::binary).write(reinterpret_cast<const char*>(v.data()),
                                                 std::streamsize(v.size()));
        return p;
    };
    const Bits before = state(42);
    auto refused = [&](const fs::path& p) {
        Bits out = before;
        const bool ok = UndoStore::ReadSlotFile(p, out);
        return !ok && out == before;
    };
    EXPECT_TRUE(refused(app / "missing.dat"));
    EXPECT_TRUE(refused(writeVariant("short.dat", {bytes.begin(), bytes.end() - 1})));
    std::vector<uint8_t> longer = bytes;
    longer.push_back(0);
    EXPECT_TRUE(refused(writeVariant("long.dat", longer)));
    std::vector<uint8_t> huge = bytes;
    huge[4] = 0xFF; huge[5] = 0xFF; huge[6] = 0xFF; huge[7] = 0x7F; // width 2^31 - 1
    EXPECT_TRUE(refused(writeVariant("huge.dat", huge)));
    std::vector<uint8_t> upside = bytes;
    upside[8] = 6; upside[9] = 0; upside[10] = 0; upside[11] = 0; // bottom-up height
    EXPECT_TRUE(refused(writeVariant("upside.dat", upside)));
    EXPECT_TRUE(refused(writeVariant("tiny.dat", {40, 0, 0})));

    Bits out;
    ASSERT_TRUE(UndoStore::ReadSlotFile(good, out));
    EXPECT_EQ(out, b);
}

} // namespace
} // namespace ostrivex
