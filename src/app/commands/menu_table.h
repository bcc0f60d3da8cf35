// The menu tree of the main window as one table of data.
//
// Every entry of every menu, in menu order, with its caption, its shortcut, its fixed
// hidden and disabled states, and where a click goes: a command word for `MenuStatic` or
// `MenuExec`, an effect number for `ApplyLayerEffects`, or a named routine of the main
// window. Separators and submenu headings are entries too; they carry an index in their
// handler array (so the numbering has gaps, as the handlers expect) and send nothing.
//
// The main window builds its menus from this table, and tests walk it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace ostrivex {

enum class MenuRoute : uint8_t {
    Separator,   // a line; sends nothing
    Submenu,     // a heading that opens a submenu; sends nothing itself
    Static,      // `MenuStatic(word)`
    Exec,        // `MenuExec(word)`, after `LastCommandCaption` is set
    LayerEffect, // `ApplyLayerEffects(effect)`, after `LastCommandCaption` is set
    Routine,     // a routine of the main window named by `word`
};

struct MenuEntry {
    std::string_view menu;    // object name of the top-level menu, e.g. "mnuFile"
    std::string_view parent;  // caption of the submenu holding the entry, "" at top level
    std::string_view caption; // the text shown; "-" for a separator
    std::string_view key;     // shortcut in Qt's portable text ("Ctrl+N"), "" for none
    std::string_view word;    // command word (Static, Exec) or routine name (Routine)
    MenuRoute route;
    std::string_view array; // the handler array that receives the click, e.g. "FILE"
    int16_t index;          // the entry's index in that array (separators count)
    int16_t effect = 0;     // effect number for LayerEffect entries (array base + index)
    bool hidden = false;    // hidden in the form definition
    bool disabled = false;  // disabled in the form definition
};

// The top-level menus in bar order: object name and caption.
struct TopMenu {
    std::string_view name;
    std::string_view caption;
};

std::span<const TopMenu> TopMenus();

// Every entry, top-level menus in bar order, each menu's entries in display order; a
// submenu's entries follow its heading directly.
std::span<const MenuEntry> MenuTable();

// The first entry of `menu` with this caption (and parent, when given), or nullptr.
const MenuEntry* FindMenuEntry(std::string_view menu, std::string_view caption,
                               std::string_view parent = {});

// The first entry that sends this word to MenuStatic or MenuExec, or nullptr.
const MenuEntry* FindMenuWord(std::string_view word);

// The text a click stores in `LastCommandCaption` before it dispatches: the caption, with
// "Replace " or "Swap " in front for the REPLACE and SWAP arrays and " Blur" behind it for
// the layer blur array. Empty for entries that do not feed MenuExec or the layer effects
// (the global then keeps its old value).
std::string LastCaptionFor(const MenuEntry& entry);

// Whether a click on the entry stores a caption in `LastCommandCaption`.
bool StoresLastCaption(const MenuEntry& entry);

// The number of "Recent" file entries of the File menu (`RF`).
inline constexpr int RecentEntryCount = 8;

} // namespace ostrivex
