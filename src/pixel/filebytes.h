// Whole small files as bytes, for the program's own fixed-size formats (.oif, .pal).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ostrivex {

// Writes the bytes as the whole file; a file that could not be written whole is removed.
bool WriteFileBytes(const std::string& path, const std::vector<uint8_t>& bytes);
// Reads at most `limit` bytes of the file into `out` (a caller passes one more than the
// largest valid size, so that a longer file is seen as such without reading all of it).
bool ReadFileBytes(const std::string& path, size_t limit, std::vector<uint8_t>& out);

} // namespace ostrivex
