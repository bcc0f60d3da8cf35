// Running the helper program `ostrivex-devil` (internal to the image file code).
//
// The helper's commands, each ending with exit status 0 on success:
//   load <source> <bmp>            DevIL load by the file's type, saved as a BMP
//   loadraw <source> <bmp>         the same through DevIL's raw loader
//   convert <source> <target> <type>   DevIL load, then save as IL type number <type>
//   wmf <source> <bmp>             libwmf rendering at 96 dpi, on white, as a BMP
//   emf <source> <svg>             libemf2svg conversion
#pragma once

#include <string>
#include <vector>

namespace ostrivex {

// Runs the helper with `args`, waits at most DevilTimeLimit() milliseconds (then kills
// it), and reports whether it exited with status 0.
bool RunHelper(const std::vector<std::string>& args);

} // namespace ostrivex
