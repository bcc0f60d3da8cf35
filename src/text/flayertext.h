// fLayerText, "New Text Layer": a line of text in a font and a style, shown as it will
// look on a layer of the chosen size, redrawn at every change. "Create" hands the picture
// and its text record to the layer sink, as a new layer or as the edited one.
#pragma once

#include "text/draw/styledtext.h"
#include "text/textlayersink.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ostrivex {

class ColourWell;
class LayerCanvas;

class fLayerText : public QDialog {
    Q_OBJECT
  public:
    // `sink` receives the finished picture (the installed sink when nullptr).
    explicit fLayerText(QWidget* parent = nullptr, TextLayerSink* sink = nullptr);

    // `LoadDataFromLayer`: the dialog edits layer `layer` (its picture `size`): the text,
    // the font and the style values of its record come back into the fields.
    void LoadDataFromLayer(const TextRecord& record, int32_t layer, QSize size);

    // What the fields say now, and the picture they give.
    StyleTextSettings settings() const;
    const Bits& layerPicture() const { return picture_; }
    // The drawing routine: clears `layer` and draws it by the style (every change calls it).
    void DrawText();

    // The controls, by the names the program gives them.
    QLineEdit* txtLayerText = nullptr;
    QComboBox* cFonts = nullptr;
    QComboBox* Cs = nullptr;
    ColourWell* CP = nullptr;
    QCheckBox* cBold = nullptr;
    QCheckBox* cItalic = nullptr;
    QCheckBox* cUnderline = nullptr;
    QCheckBox* cStrike = nullptr;
    ColourWell* cBack = nullptr;
    ColourWell* pTransparent = nullptr;
    QPushButton* cmdSetTransparent = nullptr;
    QGroupBox* FCustom = nullptr;
    QComboBox* cStyle = nullptr;
    ColourWell* pEmboss = nullptr;
    ColourWell* pEngrave = nullptr;
    QComboBox* cboAngleT = nullptr;
    QComboBox* cboDepthT = nullptr;
    QComboBox* cboLeftT = nullptr;
    QComboBox* cboRightT = nullptr;
    QLabel* lblWidth = nullptr;
    QLabel* lblHeight = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* Command1 = nullptr;
    LayerCanvas* canvas = nullptr;

  private:
    void cmdOK_Click();
    void showSize();

    TextLayerSink* sink_ = nullptr;
    int32_t editing_ = 0; // the layer being edited, 0 for a new one
    Bits picture_;
    QLabel* widthValue_ = nullptr;
    QLabel* heightValue_ = nullptr;
};

} // namespace ostrivex
