// The fixed commands: menu words that run one filter with fixed arguments and no dialog
// ("INVERT", "LIGHTBLUR", "SEPIATONE" ...). One table serves the menu dispatcher and the
// batch tool, so both run exactly the same call for a word.
#pragma once

#include "pixel/bitfilter.h"

#include <string_view>
#include <vector>

namespace ostrivex {

struct FixedCommand {
    const char* word;     // the command word, upper case
    const char* call;     // the call it stands for, as shown in help ("SHARPEN(10)")
    Bits (*run)(cBitFilter& filter); // runs the filter on the object's buffer and region
};

// Every fixed command, in menu order.
const std::vector<FixedCommand>& FixedCommands();
// The command of a word (exact, upper case), or nullptr.
const FixedCommand* FindFixedCommand(std::string_view word);

} // namespace ostrivex
