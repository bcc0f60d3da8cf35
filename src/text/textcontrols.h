// Pieces the three text dialogs share: colour wells, the font list, the textures folder,
// and saving a finished picture.
#pragma once

#include "pixel/bits.h"

#include <QString>
#include <QStringList>
#include <QToolButton>

#include <cstdint>
#include <functional>

class QComboBox;
class QLabel;

namespace ostrivex {

struct TextDialogHooks {
    // The colour chooser of every colour well: takes the colour (0x00BBGGRR), returns
    // true with the chosen one written back. The program installs its own chooser at
    // start; unset, the platform's colour dialog opens.
    static std::function<bool(QWidget* parent, int32_t& colour)> ChooseColour;
    // The folder of the textures ("Textures" in the program's folder unless replaced).
    static std::function<QString()> TexturesFolder;
};

// A colour well: a framed square of one colour (0x00BBGGRR). A click asks for a new colour
// through TextDialogHooks::ChooseColour; a new colour, chosen or set, is announced with
// `colourChanged`.
class ColourWell : public QToolButton {
    Q_OBJECT
  public:
    explicit ColourWell(int32_t colour, QWidget* parent = nullptr);
    int32_t colour() const { return colour_; }
    void setColour(int32_t colour);

  signals:
    void colourChanged(int32_t colour);

  private:
    void pick();
    int32_t colour_ = 0;
};

// `mFonts`: fills the list with the installed font families and selects `current` (or the
// first). With no fonts it shows "Failed to get font info" once and leaves the list empty.
void mFonts(QComboBox* list, const QString& current, QWidget* messageParent);
inline constexpr const char* kFontInfoFailedText = "Failed to get font info";

// The files of `folder` matching a ";"-separated list of wildcard patterns ("*.gif;*.bmp;
// *.jpg"), names compared without regard to case, sorted by name.
QStringList TextureFiles(const QString& folder, const QString& patterns);
// A picture file read by its content, transparent parts on white; empty when it cannot be
// read or is larger than 4096 pixels on a side.
Bits ReadTexturePicture(const QString& path);
// The pixels of `bits` as an image (Format_RGB32).
QImage BitsImage(const Bits& bits);

// "Save As": asks for a name with the program's save filter in the save folder and writes
// the picture by its extension; a failure shows the save error. True when written.
bool SaveTextPictureAs(QWidget* parent, const Bits& picture, const QString& title);

// The whole number a list or text field holds ("12", " 12 ", "12.6" -> 13); `fallback`
// when it holds none.
int FieldNumber(const QString& text, int fallback);

} // namespace ostrivex
