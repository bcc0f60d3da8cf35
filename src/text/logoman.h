// LogoMan, "Style Text": the logo maker. A line of text with a fill, a border, a
// background, lighting and filters, drawn by DrawLogo at every change of a control that
// matters; the effect buttons work on the drawn logo until the next redraw ("Undo All").
// "Insert Layer" hands the picture and its record (text, font name, size) to the layer
// sink; "Save As.." writes the picture to a file.
//
// A text field with its up-down control (TxtSizeX with VscrX, TxtBordersize with VScroll1,
// TxtEmEn with VScrEmEn, TxtAlpha with VScrAlpha) is one spin box here.
#pragma once

#include "text/draw/logo.h"
#include "text/textlayersink.h"

#include <QDialog>

#include <array>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSlider;
class QSpinBox;
class QTabWidget;
class QToolButton;

namespace ostrivex {

class ColourWell;
class LayerCanvas;

class LogoMan : public QDialog {
    Q_OBJECT
  public:
    explicit LogoMan(QWidget* parent = nullptr, TextLayerSink* sink = nullptr);

    // `LoadDataFromLayer`: edits layer `layer`: its text, font name and size come back;
    // the fills and effects are not kept with a layer and start as they are.
    void LoadDataFromLayer(const TextRecord& record, int32_t layer);

    // What the controls say now.
    LogoSettings settings() const;
    // The picture as shown (the drawn logo, its effects, the backlight).
    const Bits& picture() const { return shown_; }
    // The colour key pTransparent holds, -1 for none (the layer then gets no key).
    int32_t transparentColour() const { return hasKey_ ? key_ : -1; }
    void SetTransparentColour(int32_t colour);
    // `DrawLogo`: draws the logo anew from the controls, dropping the effects.
    void Redraw();
    // The effect list's entry `index` on the shown logo.
    void ApplyFX(int index);
    // The backlight for a light at picture pixel `at` (with ChkLight on).
    void MoveLight(QPoint at);
    // Loads a texture file for the letters (or the border, with ChkTexDefined), or the
    // background picture; a file that does not load shows a message. True when loaded.
    bool LoadTextureFile(const QString& path);
    bool LoadBackgroundFile(const QString& path);
    // `CutBefore`: the text before the first `marker` (all of it when there is none).
    static QString CutBefore(const QString& text, const QString& marker);

    // The controls, by the names the program gives them (arrays as arrays: index 0 the
    // letters, 1 the border, 2 the background where a control serves several).
    LayerCanvas* Pic = nullptr;
    QSpinBox* TxtSizeX = nullptr;
    QSpinBox* TxtSizeY = nullptr;
    QTabWidget* TabChoice = nullptr;
    QLineEdit* Text1 = nullptr;
    QComboBox* CboName = nullptr;
    QComboBox* CboSize = nullptr;
    std::array<QRadioButton*, 4> OptTab0{}; // Texture, Solid Color, Gradient, Transparent
    std::array<QRadioButton*, 4> OptTab1{}; // Fade, Gradient, Solid Color, Texture
    std::array<QRadioButton*, 3> OptTab2{}; // Picture, Solid Color, Gradient
    std::array<ColourWell*, 2> CmdSolCol{};
    std::array<QComboBox*, 3> CboGrStyle{};
    std::array<ColourWell*, 6> CmdGrCol{}; // two per gradient
    std::array<QPushButton*, 3> CmdSwapColors{};
    QCheckBox* ChkTexDefined = nullptr;
    QCheckBox* ChkTex = nullptr;
    std::array<QSlider*, 2> HScrDL{}; // wave height, wave length of deforming textures
    QPushButton* CmdLoad = nullptr;
    std::vector<QToolButton*> TextureButtons; // the fixed textures
    QCheckBox* ChkBorder = nullptr;
    QSpinBox* TxtBordersize = nullptr;
    QCheckBox* ChkLeft = nullptr;
    QCheckBox* ChkRight = nullptr;
    QCheckBox* ChkTop = nullptr;
    QCheckBox* ChkBottom = nullptr;
    QCheckBox* ChkGlow = nullptr;
    ColourWell* CmdBackcolor = nullptr;
    QPushButton* CmdBackground = nullptr;
    QPushButton* CmdClearBack = nullptr;
    QCheckBox* ChkTile = nullptr;
    QCheckBox* ChkShrink = nullptr;
    QCheckBox* ChkStretch = nullptr;
    QSlider* HScrMoveBack = nullptr;
    QSlider* VScrMoveBack = nullptr;
    QComboBox* CboFX = nullptr;
    QPushButton* CmdRedraw = nullptr;
    std::array<QPushButton*, 2> CmdBend{};
    QPushButton* CmdShadow = nullptr;
    QPushButton* CmdHover = nullptr;
    QCheckBox* ChkLight = nullptr;
    ColourWell* CmdLightCol = nullptr;
    QCheckBox* ChkReal = nullptr;
    QSlider* HScrDist = nullptr;
    QSlider* HScrStrnght = nullptr;
    QLabel* PicMagnify = nullptr;
    QCheckBox* ChkEmbosFont = nullptr;
    QCheckBox* ChkEngraveFont = nullptr;
    QSpinBox* TxtEmEn = nullptr;
    QCheckBox* ChkEmEnBox = nullptr;
    QCheckBox* ChkInvert = nullptr;
    QCheckBox* ChkMirror = nullptr;
    QCheckBox* ChkAlpha = nullptr;
    QSpinBox* TxtAlpha = nullptr;
    QCheckBox* ChkAlias = nullptr;
    QPushButton* cmdSetTransparent = nullptr;
    QLabel* pTransparent = nullptr; // the layer's colour key once one is set
    QPushButton* CmdOK = nullptr;
    QPushButton* Command2 = nullptr;
    QPushButton* Command3 = nullptr;

    static constexpr const char* kTexturePattern = "*.jpg;*.gif;*.bmp";
    static constexpr const char* kPictureLoadText = "The picture could not be read:";
    static constexpr const char* kBacklightNote =
        "Select the Backlight checkbox and move the mouse in the text preview above. The "
        "Shadowy ray will engulf the text edge depending on the Distance and the Strength.";

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget* buildFontTab();
    QWidget* buildTextureTab();
    QWidget* buildBorderTab();
    QWidget* buildBackgroundTab();
    QWidget* buildEffectsTab();
    QWidget* buildSettingsFrame();
    QWidget* gradientRow(int index, QWidget* parent);
    void connectRedraw();
    void showPicture(const Bits& picture);
    void showMagnify();
    void pickTexture(const QString& path);
    void CmdOK_Click();

    TextLayerSink* sink_ = nullptr;
    int32_t editing_ = 0;
    LogoState state_; // the drawn logo with its effects
    Bits shown_;      // state_ with the backlight
    QPoint light_{-1, -1};
    bool hasKey_ = false;
    int32_t key_ = 0;
    LogoTexture fontTexture_, borderTexture_;
    Bits backPicture_;
    int backPictureGeneration_ = 0; // counts the pictures loaded or cleared
    // The background painted for the settings of `backKey_`: typing does not repaint it.
    struct BackgroundKey {
        int width = 0, height = 0, background = -1, generation = 0, moveX = 0, moveY = 0;
        int32_t colour = 0;
        LogoGradient gradient;
        bool tile = false, shrink = false, stretch = false;
        bool operator==(const BackgroundKey&) const = default;
    } backKey_;
    Bits background_;
    QString textureFolder_;
    QLabel* fontTexturePreview_ = nullptr;
    QLabel* borderTexturePreview_ = nullptr;
};

} // namespace ostrivex
