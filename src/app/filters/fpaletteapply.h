// "Apply palette": edits the indexed palette and maps the document onto it.
#pragma once

#include "pixel/bits.h"
#include "pixel/palettefile.h"

#include <QDialog>
#include <QString>

#include <functional>

class QCheckBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;
class QTimer;

namespace ostrivex {

class Region;

// The program's palette: what the dialog edits, loads and saves. Starts as the sixteen VGA
// colours.
extern PaletteRecord Palette;

class PaletteSwatch;
class PalettePicture;

// The dialog edits `palette` in place (edits stay after Cancel, as they do on the global
// record). OK maps the pixels of `region` (null: the whole image) to their nearest entries
// with `cBitFilter::PaletteApply` and closes; the caller writes `appliedBits()` to the filter
// and the document and makes the undo step `kUndoCaption`. Cancel changes no pixel: the
// caller restores the document from the filter.
//
// `sbColors` is the number of entries used while `chkColors` ("Max. colors") is ticked;
// without the tick all 256 entries are used. A loaded palette sets `sbColors` from its
// count and ticks `chkColors`.
class fPaletteApply : public QDialog {
    Q_OBJECT
  public:
    static constexpr const char* kUndoCaption = "Apply Palette";
    static constexpr const char* kFolderMissingText = "<Palettes> subfolder not found.";
    // Shown when a chosen file is not a palette file, or can't be written.
    static constexpr const char* kBadFileText = "Invalid palette file.";
    static constexpr const char* kSaveFailedText = "Unable to save the palette file.";

    fPaletteApply(const Bits& image, const Region* region, const QString& palettesFolder,
                  PaletteRecord& palette = Palette, QWidget* parent = nullptr);

    QScrollBar* sbIndex = nullptr; // "Color index", 0..255
    QLabel* lblIndexV = nullptr;
    QScrollBar* sbColors = nullptr; // 1..256
    QLabel* lblColorsV = nullptr;
    QCheckBox* chkColors = nullptr;  // "Max. colors"
    QCheckBox* chkDither = nullptr;  // "Dither"
    QLineEdit* txtRGB[3] = {};       // red, green, blue of the current entry
    QScrollBar* txtRGBUD[3] = {};    // their up-down controls
    QPushButton* cmd[2] = {};        // "Load Palette", "Save Palette"
    PaletteSwatch* lblCur = nullptr; // "Double click to apply to palette color"
    PalettePicture* iPal = nullptr;  // the 256 entries, 16 to a row
    QFrame* shpSelect = nullptr;     // marker over the current entry, blinked by tmrSelect
    QTimer* tmrSelect = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    // The pixels after OK (empty before and after Cancel).
    const Bits& appliedBits() const { return result_; }
    bool applied() const { return applied_; }

    // The swatch colour, 0x00BBGGRR; a right click on the swatch picks it with the colour
    // dialog, and the caller may set it (for instance from the Color Box).
    int swatchColour() const;
    void setSwatchColour(int bgr);
    // The double click on the swatch: the swatch colour becomes the current entry.
    void ApplySwatch();

    // The two buttons: ask for a file in the palettes folder and load or save it.
    void LoadPalette();
    void SavePalette();
    // Load and save without asking; false (with its message shown, nothing changed) on
    // failure.
    bool LoadPaletteFrom(const QString& path);
    bool SavePaletteTo(const QString& path);

    // The folder the file dialog opened in last; where it opens when the palettes folder
    // is missing.
    static QString lastFolder;

  private:
    void onIndexChanged(int index);
    void onColoursChanged();
    void onRgbEdited(int channel, int value);
    void placeMarker();
    void showEntry();
    void onOK();
    QString chooseFile(bool save);

    Bits image_;
    const Region* region_;
    QString palettesFolder_;
    PaletteRecord& palette_;
    Bits result_;
    bool applied_ = false;
};

} // namespace ostrivex
