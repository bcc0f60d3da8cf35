// fRotate, "Rotate": the angle of a free turn, in whole degrees counter-clockwise, and
// whether it is smoothed. The canvas grows to hold the turned image ("Canvas will be
// resized"). The dialog only collects the values; the command turns the document after OK.
#pragma once

#include <QDialog>

#include <cstdint>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;

namespace ostrivex {

class fRotate : public QDialog {
    Q_OBJECT
  public:
    static constexpr const char* kNoteText = "Canvas will be resized";

    explicit fRotate(QWidget* parent = nullptr);

    QLineEdit* txtDegrees = nullptr;  // digits only, 0 to 359
    QScrollBar* sbDegrees = nullptr;  // 0 to 359, kept equal to txtDegrees
    QPushButton* cmd45[2] = {};       // 45 degrees less, 45 degrees more
    QCheckBox* chkAntialiasing = nullptr; // "&Anti-Aliasing", on at start
    QLabel* lblNote = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    int32_t Degrees() const;
    bool Antialias() const;

    // Button `index` of cmd45: 0 turns the angle back by 45 degrees, 1 on by 45, going round
    // past 0 and 359.
    void cmd45_Click(int index);
    void cmdOK_Click() { accept(); }

  private:
    bool following_ = false;
};

} // namespace ostrivex
