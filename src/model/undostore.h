// The undo history of one document, kept on disk.
//
// Every state of the document (the state after each change, not before it) is one slot
// file holding the whole pixel buffer, so memory use does not grow with the history.
// Slots run from 0 to 200; slot 0 is the state shown when the document opened.
//
// Slot file name: <app folder>/Temp/b + document number as "0000" + slot as "00" + ".dat"
// (both widen as needed: slot 100 of document 7 is "b0007100.dat").
//
// Slot file bytes, little-endian: a 40-byte bitmap header (size 40, width W+4,
// height -(H+4), planes 1, bit count 32, the other 24 bytes zero) and then the buffer
// exactly as it lies in memory, guard band included: 4 * (W+4) * (H+4) bytes.
//
// This class is the file side only (names, counters, captions, reading and writing);
// the document window puts loaded states on screen.
#pragma once

#include "pixel/bits.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace ostrivex {

class UndoStore {
public:
    static constexpr int kLastSlot = 200; // slots 0..200: 201 states

    // appFolder: the program's folder; the files go to appFolder/Temp.
    UndoStore(std::filesystem::path appFolder, int32_t historyId);

    int32_t HistoryId = 0;
    // The slot that the next save writes; the state on screen is HistoryPosition - 1.
    int32_t HistoryPosition = 0;
    // Highest slot (exclusive) that holds a redoable state.
    int32_t HistoryTop = 0;
    // Caption of each slot; "" for a slot with no state.
    std::vector<std::string> ActionNames;

    std::filesystem::path TempFolder() const { return appFolder_ / "Temp"; }
    std::filesystem::path SlotFileName(int32_t slot) const;

    // What a save did, for the history list.
    struct SaveResult {
        int32_t slot = 0;                  // the slot written
        std::vector<int32_t> removedSlots; // redo slots whose files and entries died
        bool shifted = false;              // the limit was reached and the files moved down
    };
    // `SaveUndoBits`, file side: writes bits to slot HistoryPosition under label, drops
    // the redo branch above it, and advances the counters (or shifts at the limit).
    SaveResult Save(const Bits& bits, const std::string& label);

    // `ShiftHistoryFiles`: deletes slot 0 and renames slots 1..200 down by one. Counters
    // and captions stay where they are (the captions then name the slot above their file;
    // the history list has always shown it that way).
    void ShiftHistoryFiles();
    // `ClearHistoryFiles`: deletes every "b" + HistoryId as "0000" + "*.dat" in Temp.
    void ClearHistoryFiles();

    // Slot names of the three moves; the caller loads the file and then reports success.
    int32_t UndoSlot() const { return HistoryPosition - 2; }
    int32_t RedoSlot() const { return HistoryPosition; }
    void Undone() {
        if (HistoryPosition >= 1) --HistoryPosition;
    }
    void Redone() {
        ++HistoryPosition;
        if (HistoryPosition > HistoryTop) HistoryTop = HistoryPosition;
    }
    // A jump to slot index: the state on screen becomes index; the top stays.
    void JumpedTo(int32_t index) { HistoryPosition = index + 1; }

    // One slot file: header and raster in one sequential write. False on any error.
    static bool WriteSlotFile(const std::filesystem::path& file, const Bits& bits);
    // Reads a slot file. False (and out untouched) if the file is missing, short, longer
    // than its header says, or its header is not one this program writes.
    static bool ReadSlotFile(const std::filesystem::path& file, Bits& out);
    // As ReadSlotFile, but when out already has the file's size the raster is read
    // straight into out's memory (no new 4*(W+4)*(H+4) buffer to allocate and fault in).
    // A refused file leaves out untouched; `damaged` is set if a read error struck after
    // out's bytes began to change.
    static bool ReadSlotFileInto(const std::filesystem::path& file, Bits& out, bool& damaged);

private:
    std::filesystem::path appFolder_;
};

} // namespace ostrivex
