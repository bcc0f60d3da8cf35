// "Thumbnails Options": the Browser Box's thumbnail settings.
#pragma once

#include <QDialog>

class QButtonGroup;
class QCheckBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollBar;
class QToolButton;

namespace ostrivex {

// Opens with ThumbWidth, ThumbHeight, ThumbQuality, the two show flags and
// ThumbWorkspaceColor of `Settings`. Every change redraws the live sample (`picThumb`, the
// thumbnail at the chosen size and quality, and `picSize`, its caption). OK copies the
// fields to `Settings`, emits `applied` (the Browser Box, when visible, recolours and
// rebuilds its thumbnails from it), writes the settings file and closes. Cancel closes and
// changes nothing.
class fOptions : public QDialog {
    Q_OBJECT
  public:
    explicit fOptions(QWidget* parent = nullptr);

    // Range of the thumbnail sides in pixels. A typed value outside it is taken at the
    // nearest end; a text that is no number leaves the last good value.
    static constexpr int kMinSide = 16;
    static constexpr int kMaxSide = 256;

    QLineEdit* txtThumbnailWidth = nullptr;
    QLineEdit* txtThumbnailHeight = nullptr;
    QScrollBar* WWS = nullptr;                   // up-down control of the width
    QScrollBar* HHS = nullptr;                   // up-down control of the height
    QButtonGroup* optThumbnailQuality = nullptr; // id 0 "Normal", 1 "Resample"
    QRadioButton* optNormal = nullptr;
    QRadioButton* optResample = nullptr;
    QCheckBox* chkThumbnailShowResolution = nullptr;
    QCheckBox* chkThumbnailShowFilename = nullptr;
    QToolButton* pThumbnailWorkspaceBackground = nullptr; // colour swatch; a click picks
    QFrame* picWorkspace = nullptr;                       // background of the sample
    QLabel* picThumb = nullptr;
    QLabel* picSize = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    int thumbWidth() const;
    int thumbHeight() const;
    int workspaceColor() const { return workspaceColor_; } // 0x00BBGGRR
    void setWorkspaceColor(int bgr);

    // The picture the sample shows, at the given size and quality.
    static QPixmap samplePicture(int width, int height, bool resample);

  signals:
    void applied();

  private:
    void onOK();
    void redrawSample();
    void pickColour();
    int workspaceColor_ = 0xFFFFFF;
};

} // namespace ostrivex
