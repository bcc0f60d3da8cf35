#include "app/shell/keyboard.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace ostrivex {

// clang-format off
const char* const fKeyboard::kText =
    "FILE\n"
    "  New                          Ctrl + N\n"
    "  Open                         Ctrl + O\n"
    "  Save                         Ctrl + S\n"
    "  Print                        Ctrl + P\n"
    "\n"
    "EDIT\n"
    "  Undo                         Ctrl + Z\n"
    "  Redo                         Ctrl + R\n"
    "  Cut                          Ctrl + X\n"
    "  Copy                         Ctrl + C\n"
    "  Paste                        Ctrl + V\n"
    "  Copy image to clipboard      Ctrl + G\n"
    "  Create from clipboard        Ctrl + H\n"
    "\n"
    "SELECTION\n"
    "  Select all                   Ctrl + ins\n"
    "  Select none                  Del\n"
    "  Invert selection             Shift + ins\n"
    "  Crop                         Ctrl + K\n"
    "  Crop as new image            Shift + Del\n"
    "\n"
    "IMAGE\n"
    "  Image properties             F2\n"
    "  Size                         Ctrl + T\n"
    "  Canvas                       Ctrl + B\n"
    "  Orientation                  Ctrl + W\n"
    "  Rotation                     Ctrl + J\n"
    "  Histogram                    Ctrl + I\n"
    "\n"
    "LAYERS\n"
    "  Show                         Ctrl + E\n"
    "  Merge                        Ctrl + M\n"
    "  Delete                       Ctrl + D\n"
    "  Selective moveable           Ctrl + L\n"
    "\n"
    "FILTERS\n"
    "  Invert                       Shift + F1\n"
    "  Greyscale                    Shift + F2\n"
    "  Relief                       Shift + F3\n"
    "  Erode                        Shift + F4\n"
    "  Dilate                       Shift + F5\n"
    "  Painting                     Shift + F6\n"
    "  Enhance edge                 Shift + F7\n"
    "  Halftone                     Shift + Ctrl + F1\n"
    "  Pixelize                     Shift + Ctrl + F2\n"
    "  Thermique                    Shift + Ctrl + F7\n"
    "  X-Black                      Shift + Ctrl + F8\n"
    "  Photo cop                    Shift + Ctrl + F9\n"
    "  Waves                        Shift + Ctrl + F12\n"
    "  Lens                         Ctrl + Q\n"
    "\n"
    "COLORS\n"
    "  Tweak RGB                    Ctrl + F1\n"
    "  Old photo                    Ctrl + F2\n"
    "  Colorize                     Ctrl + F3\n"
    "  Sketch                       Ctrl + F4\n"
    "  Isolate                      Ctrl + F5\n"
    "  Shift                        Ctrl + F6\n"
    "  Sepia tone                   Ctrl + F7\n"
    "  Hue stretch                  Ctrl + F8\n"
    "  Hue rotation                 Ctrl + F9\n"
    "  Grey rotation                Ctrl + F11\n"
    "\n"
    "CAPTURE AND WALLPAPER\n"
    "  Capture desktop              Shift + F8\n"
    "  Wallpaper tile               Shift + F9\n"
    "  Wallpaper center             Shift + F11\n"
    "  Wallpaper stretch            Shift + F12\n"
    "\n"
    "GENERAL\n"
    "  Help                         F1\n"
    "  Online materials             Ctrl + F\n"
    "  Reset settings               F11\n";
// clang-format on

fKeyboard::fKeyboard(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("fKeyboard"));
    setWindowTitle(QStringLiteral("Keyboard Shortcuts"));
    txtKeys = new QPlainTextEdit(this);
    txtKeys->setReadOnly(true);
    txtKeys->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtKeys->setPlainText(QString::fromLatin1(kText));
    txtKeys->setMinimumSize(420, 420);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(txtKeys);
    layout->addLayout(buttons);
}

} // namespace ostrivex
