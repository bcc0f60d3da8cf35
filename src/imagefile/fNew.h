// fNew, "New Document": the size and background of a blank image. The dialog only
// collects and checks the values; the main window's command makes the document from
// `request()` after `exec()` returns Accepted.
#pragma once

#include <QDialog>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace ostrivex {

struct NewImageRequest {
    enum class Background { Colour, Transparent, White };
    int width = 0;
    int height = 0;
    Background background = Background::White;
    uint32_t colour = 0; // the well's colour, 0x00BBGGRR
    // The colour that NewDoc fills with: the well's for Colour, white for White. Not used
    // for Transparent, which keeps the blank buffer.
    uint32_t fillColour() const { return background == Background::Colour ? colour : 0x00FFFFFFu; }
};

class fNew : public QDialog {
    Q_OBJECT
  public:
    explicit fNew(QWidget* parent = nullptr);

    NewImageRequest request() const;

    // The "Standard sizes" list of this run: the eight fixed sizes and every size accepted
    // since the program started, in order.
    static const std::vector<std::string>& StandardSizes();
    // Sets the colour of the well (0x00BBGGRR) and selects the colour option, as picking a
    // colour in the well's picker does.
    void SetWellColour(uint32_t colour);

    // The colour chooser of the well: takes the colour (0x00BBGGRR), returns true with the
    // chosen one written back. The program installs its own chooser at start; unset, the
    // platform's colour dialog opens.
    static std::function<bool(QWidget*, int32_t&)> ChooseColour;

    // Where the "Minimum size: 2 x 2" box goes; a message box titled "Ostrivex" unless
    // replaced (tests replace it).
    std::function<void(const QString&)> ShowMessage;

    // The controls, by the names the program gives them.
    QSpinBox* txtW = nullptr;
    QSpinBox* txtH = nullptr;
    QCheckBox* chkKeepProportions = nullptr;
    QComboBox* cbDefault = nullptr;
    QRadioButton* optColour = nullptr;
    QRadioButton* optTransparent = nullptr;
    QRadioButton* optWhite = nullptr;
    QPushButton* CP = nullptr;

  public slots:
    void accept() override;

  private:
    void widthChanged(int w);
    void heightChanged(int h);
    void sizePicked(int index);
    void pickColour();
    void showWell();
    void rememberRatio();

    QButtonGroup* OP = nullptr;
    uint32_t wellColour_ = 0;
    // The ratio that "Keep proportions" holds.
    int lastW_ = 0, lastH_ = 0;
    bool following_ = false;
};

} // namespace ostrivex
