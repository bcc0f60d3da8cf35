// The palette record and its file (.pal): the record written whole, little-endian.
//
//   offset 0             4 bytes   PaletteCount, 32-bit signed
//   offset 4 + 12 * i    12 bytes  entry i (0..255): red, green, blue, each 32-bit signed
//
// Always 3076 bytes: all 256 entries are written whatever the count, and the entries at or
// past the count mean nothing. A file that is not exactly this (short, long, a count outside
// 0..256, a used entry outside 0..255) is refused as a whole and the record stays as it was.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ostrivex {

struct PaletteRecord {
    int32_t PaletteCount = 0;
    int32_t PaletteColors[256][3] = {}; // red, green, blue
};

inline constexpr size_t kPaletteFileSize = 4 + 256 * 12;

// The file dialogs' filter and titles, and the folder of the palettes under the program
// folder.
inline constexpr const char* kPaletteFileDialogFilter = "Ostrivex palette (*.pal)|*.pal";
inline constexpr const char* kPaletteFileLoadTitle = "Load palette";
inline constexpr const char* kPaletteFileSaveTitle = "Save palette";
inline constexpr const char* kPaletteFolder = "Palettes";

// The 3076 bytes of a record, written as they stand.
std::vector<uint8_t> EncodePaletteFile(const PaletteRecord& record);
// Reads the bytes of a file into record; false (record untouched) unless they are exactly
// one well-formed record. Unused entries outside 0..255 are taken as 0, so that raising the
// count later never shows a colour that cannot be.
bool DecodePaletteFile(const uint8_t* data, size_t size, PaletteRecord& record);

// Writes record to path; false when the file can't be written completely (a partial file
// is removed).
bool WritePaletteFile(const std::string& path, const PaletteRecord& record);
// Reads path into record; false, with the record untouched, for a missing, unreadable or
// malformed file.
bool ReadPaletteFile(const std::string& path, PaletteRecord& record);

// The sixteen colours of the VGA text palette, in their usual order, count 16; the rest
// of the entries are black. The palette the program starts with.
PaletteRecord VgaPalette();

} // namespace ostrivex
