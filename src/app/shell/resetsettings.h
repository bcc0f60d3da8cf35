// "Reset Settings" (command RESET, key F11).
#pragma once

class QWidget;

namespace ostrivex {

// The caption and question of the Reset Settings box.
inline constexpr const char* kResetTitle = "Ostrivex";
inline constexpr const char* kResetQuestion =
    "Ostrivex will be closed down to apply the default settings!";

// Does nothing when the settings file does not exist. Otherwise asks with a Yes/No box; on
// Yes sets `ResetPending`, deletes the settings file and closes the main window
// (`parent->window()`), whose unload sequence ends the program.
//
// That unload sequence saves the settings after the delete, so the file comes back with the
// values of the running program; only a file deleted while the program is not running gives
// the defaults at the next start, and nothing reads `ResetPending`. The order of the steps
// is kept as it stands all the same: it is how the command has always behaved.
//
// Returns true when the user answered Yes.
bool ResetSettings(QWidget* parent);

} // namespace ostrivex
