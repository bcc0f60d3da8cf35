// fCapture, "Capture Screen": the Capture menu's "Custom..." dialog. The list `cb` names
// what to take ("Desktop", "Foreground", "Background"); "Capture" (`cmdCapture`) runs the
// matching command word, "Custom" (`CmdCustom`) lets the user drag a rectangle over the
// picture, and "Exit" (`CmdExit`) closes. Either capture closes the dialog first, so it is
// not in the picture.
#pragma once

#include <QDialog>

class QComboBox;
class QPushButton;

namespace ostrivex {

class ScreenCapture;

class fCapture : public QDialog {
    Q_OBJECT
  public:
    // `capture` serves CmdCustom; cmdCapture sends its word to the main window's dispatch
    // (DocumentHost::RunCommand).
    fCapture(ScreenCapture& capture, QWidget* parent = nullptr);

    // The word of the list's item: CAPTUREDESKTOP, CAPTUREFOREGROUND or CAPTUREBACKGROUND.
    QString commandWord() const;

    QComboBox* cb = nullptr;
    QPushButton* cmdCapture = nullptr;
    QPushButton* CmdCustom = nullptr;
    QPushButton* CmdExit = nullptr;

  private:
    void cmdCapture_Click();
    void CmdCustom_Click();

    ScreenCapture& capture_;
};

} // namespace ostrivex
