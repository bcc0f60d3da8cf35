// "User Defined Filters": a convolution kernel typed into a 5 x 5 grid, with its weight
// (the divisor) and a bias per channel, started from one of the fourteen presets or a
// user filter file (.oif), and applied to the image with cBitFilter::MaskFilter.
#pragma once

#include "pixel/filtermask.h"

#include <QDialog>
#include <QString>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QScrollBar;

namespace ostrivex {

// The dialog only collects the filter. OK checks the fields and builds the kernel from the
// grid (all 25 cells when a cell of the outer ring is not 0, else the inner nine); on a
// fault it shows a message and stays open, otherwise it closes with `applied()` true, and
// the caller runs `MaskFilter(record(), keepMargins())` once, through the filter envelope,
// under `kUndoCaption`. Cancel changes nothing.
//
// The grid, weight, biases, preset and the two options of the last OK are remembered for
// the next opening in this run of the program (`Last`); the first opening shows the kernel
// that changes nothing: the centre cell 1, weight 1, no bias.
class fUserFilter : public QDialog {
    Q_OBJECT
  public:
    static constexpr const char* kUndoCaption = "User's Filter";
    static constexpr const char* kBlankMaskText = "Invalid/blank mask. Verify coeficients.";
    // MaskFilter divides every sum by the weight.
    static constexpr const char* kZeroWeightText = "The weight can't be 0.";
    // A field that is empty or not a whole number that fits in 32 bits.
    static constexpr const char* kBadNumberText = "Every field must hold a whole number.";
    static constexpr const char* kBadFileText = "Invalid filter file.";
    static constexpr const char* kSaveFailedText = "Unable to save the filter file.";
    // Shown by the caller when a sum of the kernel runs past 32 bits on the image.
    static constexpr const char* kOverflowText =
        "The filter's sums are too large. Use smaller coefficients.";

    // What the dialog shows, and remembers from one OK to the next opening.
    struct State {
        MaskGrid grid{};
        int32_t weight = 1;
        int32_t add[3] = {0, 0, 0}; // red, green, blue
        bool autoWeight = false;
        bool keepMargins = false;
        int preset = 0; // the list entry: 0 "<None>", i + 1 preset i
    };
    static State Last;
    static State Initial(); // the centre cell 1, weight 1

    // filtersFolder: where the file dialogs open (made when missing).
    explicit fUserFilter(const QString& filtersFolder, QWidget* parent = nullptr);

    QLineEdit* txtM[25] = {}; // row * 5 + column
    QLineEdit* txtWeight = nullptr;
    QLineEdit* txtAdd[3] = {};    // biases of red, green, blue, typed 0..255
    QScrollBar* txtAddUD[3] = {}; // their up-down controls, 0..255
    QCheckBox* chkAuto = nullptr; // the weight follows the sum of the cells
    QCheckBox* chkKeepMargins = nullptr;
    QComboBox* cbBased = nullptr; // "<None>", then the presets
    QPushButton* cmdLoad = nullptr;
    QPushButton* cmdSave = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    // After OK: the kernel, weight and biases to run, and the margins option.
    bool applied() const { return applied_; }
    const FilterMask& record() const { return record_; }
    bool keepMargins() const { return keepMargins_; }

    // List entry `index` of cbBased: a preset fills the grid (a 3 x 3 kernel in the centre
    // cells, the outer ring 0), the weight and the biases; "<None>" changes nothing.
    void ChoosePreset(int index);
    // Shows a record in the grid, weight and bias fields.
    void ShowRecord(const FilterMask& record);
    // The record the fields stand for. Shows its message and returns false for a blank grid
    // or a field that is not a whole number.
    bool BuildRecord(FilterMask& out);

    // The two buttons: ask for a file in the filters folder, then load or save it.
    void LoadFilter();
    void SaveFilter();
    // Load and save without asking; false (with its message shown, nothing changed) on
    // failure.
    bool LoadFilterFrom(const QString& path);
    bool SaveFilterTo(const QString& path);

  private:
    void showState(const State& s);
    void showFields(const MaskGrid& grid, int32_t weight, const int32_t add[3]);
    void onCellEdited();
    void onBiasEdited(int channel, const QString& text);
    void followSum();
    void inform(const char* text);
    void onOK();

    QString folder_;
    FilterMask record_;
    bool keepMargins_ = false;
    bool applied_ = false;
};

} // namespace ostrivex
