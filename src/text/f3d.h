// f3D, "3D Text": a line of text as an extruded block whose colour runs from a first to a
// second colour, its front face optionally filled with a texture; redrawn at every change.
// "Apply" hands the picture and its text record to the layer sink; "Save As" writes the
// picture to a file.
#pragma once

#include "text/draw/text3d.h"
#include "text/textlayersink.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSlider;

namespace ostrivex {

class ColourWell;
class LayerCanvas;

class f3D : public QDialog {
    Q_OBJECT
  public:
    explicit f3D(QWidget* parent = nullptr, TextLayerSink* sink = nullptr);

    // `LoadDataFromLayer`: edits layer `layer` (picture `size`) from its record.
    void LoadDataFromLayer(const TextRecord& record, int32_t layer, QSize size);

    Text3DSettings settings() const;
    const Bits& layerPicture() const { return picture_; }
    // Reads every control and draws the block (every change calls it).
    void Redraw();
    // Loads a texture file into pTexture; a file that does not load shows a message and
    // keeps the texture there was.
    bool LoadTexture(const QString& path);
    // Lists the textures folder in File1.
    void FillTextures(const QString& folder);

    // The controls, by the names the program gives them (arrays as arrays).
    QLineEdit* Text1 = nullptr;
    std::array<QSlider*, 6> HS1{}; // first colour red, green, blue; second colour the same
    std::array<QLabel*, 6> col{};  // the channel of each slider
    QLabel* Label1 = nullptr;      // the first colour
    QLabel* Label2 = nullptr;      // the second colour
    QPushButton* Command1 = nullptr;
    std::array<QSlider*, 2> Px{}; // horizontal, vertical
    QSlider* HScroll1 = nullptr;  // thickness
    QComboBox* Combo1 = nullptr;
    QSlider* HScroll2 = nullptr; // font size
    QCheckBox* Check5 = nullptr; // bold
    QCheckBox* Check1 = nullptr; // italic
    QCheckBox* Check2 = nullptr; // underline
    QCheckBox* Check3 = nullptr; // strikeout
    QCheckBox* Check4 = nullptr; // with texture
    QLabel* pTexture = nullptr;
    QListWidget* File1 = nullptr;
    QPushButton* cmdBrowse = nullptr;
    ColourWell* cBack = nullptr;
    ColourWell* pTransparent = nullptr;
    QPushButton* cmdSetTransparent = nullptr;
    QPushButton* cmdApply = nullptr;
    QPushButton* Command2 = nullptr;
    QPushButton* CmdCancel = nullptr;
    LayerCanvas* canvas = nullptr;

    // The pattern of the texture list.
    static constexpr const char* kTexturePattern = "*.gif;*.bmp;*.jpg";
    static constexpr const char* kTextureLoadText = "The texture could not be read:";

  private:
    void Command1_Click();
    void cmdApply_Click();
    void showColours();
    void setColour(int first, int32_t colour);

    TextLayerSink* sink_ = nullptr;
    int32_t editing_ = 0;
    Bits picture_;
    Bits texture_;
    QString textureFolder_;
    std::array<QLabel*, 6> hs1Values_{};
    std::array<QLabel*, 2> pxValues_{};
    QLabel* thicknessValue_ = nullptr;
    QLabel* sizeValue_ = nullptr;
};

} // namespace ostrivex
