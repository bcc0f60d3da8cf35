// fSize, "Image size": the new width and height of the image, typed or picked as a
// percentage, and whether the scaling interpolates. The dialog only collects and checks the
// values; the command (RunSizingDialog) scales the document after OK.
#pragma once

#include <QDialog>

#include <array>
#include <cstdint>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ostrivex {

class fSize : public QDialog {
    Q_OBJECT
  public:
    // The entries of the "Quick" list, in percent of the current size.
    static constexpr std::array<int32_t, 10> QuickPercents{10, 25, 33, 50, 75,
                                                           150, 200, 300, 400, 500};

    // w x h: the current size of the image.
    fSize(int32_t w, int32_t h, QWidget* parent = nullptr);

    // The controls, by the names the program gives them.
    QLabel* lblCurrent = nullptr;
    QLineEdit* txtW = nullptr;
    QLineEdit* txtH = nullptr;
    QCheckBox* chkKeepProportions = nullptr; // on at start
    QCheckBox* chkInterpolate = nullptr;     // "&Anti-Alias", on at start
    QComboBox* cbPreDef = nullptr;           // "Quick"
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    // The values accepted by OK.
    int32_t NewWidth() const { return newW_; }
    int32_t NewHeight() const { return newH_; }
    bool Interpolate() const;

    // OK: fields that are not numbers or below 2 show "Minimum size: 2 x 2" and the dialog
    // stays; otherwise it closes with Accepted.
    void cmdOK_Click();
    // Picking entry `index` of the Quick list.
    void cbPreDef_Click(int index);

  private:
    void widthChanged();
    void heightChanged();

    int32_t w_ = 0, h_ = 0;
    int32_t newW_ = 0, newH_ = 0;
    bool following_ = false; // one field is being set from the other
};

} // namespace ostrivex
