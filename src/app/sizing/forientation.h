// fOrientation, "Orientation": portrait or landscape, and the mirrors. The dialog only
// collects the choice; the command turns and flips the document after OK.
#pragma once

#include <QDialog>

#include <cstdint>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace ostrivex {

class fOrientation : public QDialog {
    Q_OBJECT
  public:
    // The entries of cbOrientation.
    enum Choice { KeepOrientation = 0, Portrait = 1, Landscape = 2 };

    // w x h: the current size of the image.
    fOrientation(int32_t w, int32_t h, QWidget* parent = nullptr);

    QLabel* lblCurrent = nullptr;
    QComboBox* cbOrientation = nullptr;
    QCheckBox* chkFlip[2] = {}; // "Flip &vertical", "Flip &horizontal"
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    // Whether the canvas must turn for the orientation asked for: portrait of an image wider
    // than high, or landscape of one higher than wide. A square image never turns.
    bool Turn() const;
    bool FlipVertical() const;
    bool FlipHorizontal() const;

    void cmdOK_Click() { accept(); }

  private:
    int32_t w_ = 0, h_ = 0;
};

} // namespace ostrivex
