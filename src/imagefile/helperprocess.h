// Running the helper program `ostrivex-devil` (internal to the image file code); its
// commands are in helper/protocol.h.
#pragma once

#include "imagefile/codecs/codec.h"
#include "pixel/bits.h"

#include <string>
#include <vector>

namespace ostrivex {

// Runs the helper with `args`, the file `inputFd` as its descriptor 3 and `answerFd` as
// its descriptor 4 (either may be -1), waits at most DevilTimeLimit() milliseconds (then
// kills it), and reports whether it exited with status 0.
bool RunHelper(const std::vector<std::string>& args, int inputFd = -1, int answerFd = -1);

// A decode in the helper (`how` as in protocol.h) of the open file `inputFd`: true with
// the pixels (guard band cleared) and what the helper reported, when it answered in full.
bool DecodeInHelper(const std::string& how, const std::string& extension, int inputFd,
                    Bits& pixels, codec::DecodeInfo& info);

} // namespace ostrivex
