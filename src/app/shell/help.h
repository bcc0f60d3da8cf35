// The Help entry of the About menu (F1).
#pragma once

class QWidget;

namespace ostrivex {

inline constexpr const char* kHelpMissingText =
    "Help Files are Missing! Please Re-install Ostrivex Again";
inline constexpr const char* kHelpMissingTitle = "Help Files Missing!";

// Opens AppFolder + "/Help/default.htm" with the desktop's browser. When the page is not
// there, shows the "Help Files Missing!" message instead. Returns true if the page was
// handed to the desktop.
bool OpenHelp(QWidget* parent);

} // namespace ostrivex
