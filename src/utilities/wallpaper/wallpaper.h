// The Wallpaper menu: the active document becomes the desktop's background.
//
// The picture is saved as a BMP file of fixed name in the program's folder (each use
// overwrites the last) and handed to the desktop: through the desktop portal's Wallpaper
// interface where there is one, else through GNOME's background settings (`gsettings`,
// schema org.gnome.desktop.background), whose reads and writes stand where the registry's
// stood on the platform the program came from.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace ostrivex {

class fImage;

inline constexpr const char* kWallpaperFileName = "Ostrivex.bmp";
inline constexpr const char* kBackgroundSchema = "org.gnome.desktop.background";
inline constexpr const char* kWallpaperTitle = "Ostrivex";
inline constexpr const char* kGetSubkeyErrorText = "Error getting subkey value.";
inline constexpr const char* kSetSubkeyErrorText = "Error Setting subkey value.";
// Shown when the desktop offers neither the portal nor GNOME's settings; %1 is the file.
inline constexpr const char* kNoWallpaperServiceText =
    "This desktop offers no way for programs to set the wallpaper (neither the desktop "
    "portal nor GNOME's background settings are available).\n\nThe picture was saved as "
    "%1; the desktop's own settings can use it.";

// The modes of the Wallpaper words: WCENTER 0, WTILE 1, WSTRETCH 2.
enum WallpaperMode { WallpaperCenter = 0, WallpaperTile = 1, WallpaperStretch = 2 };

// AppFolder() + "/Ostrivex.bmp".
QString WallpaperPath();
// The value of picture-options for a mode: "wallpaper" (tile), "centered", "stretched".
QString PictureOptions(int mode);

// What SetWallpaper went through.
enum class WallpaperRoute {
    Portal,    // the portal set the picture (and the settings the mode, where they exist)
    Settings,  // gsettings, without a portal
    Cancelled, // the user said no in the portal's dialog
    None,      // neither exists: the message says where the file is
};

// `SetWallpaper(path, key, mode)`: `key` is the settings schema. Reads the current
// picture-options and picture-uri, then writes picture-options, picture-uri and
// (where the schema has it) picture-uri-dark; a failed read shows "Error getting subkey
// value.", a failed write "Error Setting subkey value.", and each goes on with the next
// step. With a portal the portal sets the picture and only picture-options is written.
WallpaperRoute SetWallpaper(const QString& path, const QString& key, int mode, QWidget* parent);

// WTILE, WCENTER, WSTRETCH on a document: saved as BMP to WallpaperPath(), then
// SetWallpaper. False when the file could not be written (the save said why).
bool SetDocumentAsWallpaper(fImage& document, int mode, QWidget* parent);

// The `gsettings` program: one short run per read or write.
class GSettings {
  public:
    // The program on PATH ("" when there is none).
    static QString Program();
    // The keys of `schema`; false when the program or the schema is missing.
    static bool Keys(const QString& schema, QStringList& keys);
    static bool Get(const QString& schema, const QString& key, QString& value);
    // `value` is a text; it is written as a quoted GVariant string.
    static bool Set(const QString& schema, const QString& key, const QString& value);
};

} // namespace ostrivex
