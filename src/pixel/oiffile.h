// The user filter file (.oif): a little-endian dump of a FilterMask.
//
//   offset 0            2 bytes   number of dimensions of the kernel: 2
//   offset 2            4 bytes   element count of the first dimension: n
//   offset 6            4 bytes   lower bound of the first dimension: 0
//   offset 10           4 bytes   element count of the second dimension: n
//   offset 14           4 bytes   lower bound of the second dimension: 0
//   offset 18           4*n*n     coefficients, 32-bit signed, the first index (the row)
//                                 running fastest: Mask[0][0], Mask[1][0], ..., Mask[0][1], ...
//   offset 18 + 4*n*n   4 each    Div, BiasR, BiasG, BiasB
//
// n is 3 or 5. A file that is not exactly this (short, long, other dimensions, other
// bounds) is refused as a whole: the reader reports failure and the record stays as it was.
#pragma once

#include "pixel/filtermask.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ostrivex {

// The file dialogs' filter and titles.
inline constexpr const char* kFilterFileDialogFilter = "Ostrivex filter (*.oif)|*.oif";
inline constexpr const char* kFilterFileLoadTitle = "Load filter";
inline constexpr const char* kFilterFileSaveTitle = "Save filter";
// The folder of the user filters under the program folder.
inline constexpr const char* kFilterFolder = "Filters";

// The bytes of a record; empty when the record is not a square 3 x 3 or 5 x 5 kernel.
std::vector<uint8_t> EncodeFilterFile(const FilterMask& record);
// Reads the bytes of a file into record; false (record untouched) unless they are exactly
// one well-formed record.
bool DecodeFilterFile(const uint8_t* data, size_t size, FilterMask& record);

// Writes record to path. False when the record can't be written as a file or the file
// can't be written completely.
bool WriteFilterFile(const std::string& path, const FilterMask& record);
// Reads path into record. False, with the record untouched, for a missing, unreadable or
// malformed file.
bool ReadFilterFile(const std::string& path, FilterMask& record);

} // namespace ostrivex
