// Selection files (`.osf`): a region dump as 32-bit little-endian integers, the whole of
// the file. Read by the editor's Load Selection and the batch tool's --select osf:.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ostrivex {

// A selection file larger than this is refused unread: 16M rectangles, far beyond what a
// selection of the largest image this program edits can have (a freehand outline of a
// 30000-row image with a hundred spans a row is 3M rectangles).
inline constexpr uint64_t kMaxSelectionFileBytes = (8 + 4 * (uint64_t(1) << 24)) * 4;

enum class SelectionFileRead { Ok, CannotRead, Damaged };

// Reads the file's elements. Only a regular file is read (a FIFO, a device or a folder
// cannot be read); a file of no whole elements, past the size limit, or whose data no
// region dump could hold (see IsSelectionDataValid) is damaged. Time and memory are
// linear in the file's size.
SelectionFileRead ReadSelectionFile(const std::string& path, std::vector<int32_t>& elements);

// Checks a selection file's elements: at least the 8-element header, a rectangle count
// that the data holds, and rectangles with left < right and top < bottom laid out in bands
// (rows of equal top and bottom, bands going down without overlap, spans within a band
// going right without overlap). Data that is not laid out so cannot have come from a
// region: it is refused as damaged rather than built by a general union, whose cost on
// crafted overlapping rectangles grows with the square of their count. The header's size,
// type and byte-count fields are not checked: only the rectangle count is needed.
bool IsSelectionDataValid(const std::vector<int32_t>& data);

} // namespace ostrivex
