// fOverlay, "Overlay image": lays another open document over the active one. The source
// is chosen in `cbOverlay`; `sbXOffset` ("Left offset") and `sbYOffset` ("Top offset") place
// it, `sbTransparency` ("Transparency", in %) lets the destination show through, "&Tiled"
// repeats it and "&Mask color" skips the source's pixels of one colour, picked with a press
// on the 150 x 150 preview `iSrc`. "Create &new image" puts the result into a new document.
// The preview follows every control.
#pragma once

#include "utilities/overlay/overlay.h"

#include <QDialog>
#include <QImage>

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QScrollBar;

namespace ostrivex {

class fImage;

class fOverlay : public QDialog {
    Q_OBJECT
  public:
    static constexpr int kPreviewSide = 150;

    // `destination` is the active document; `documents` every open one (the destination
    // among them is left out of the list).
    fOverlay(fImage& destination, const std::vector<fImage*>& documents, QWidget* parent = nullptr);

    QComboBox* cbOverlay = nullptr;
    QScrollBar* sbXOffset = nullptr;
    QScrollBar* sbYOffset = nullptr;
    QScrollBar* sbTransparency = nullptr;
    QLabel* lblXOffset = nullptr;
    QLabel* lblYOffset = nullptr;
    QLabel* lblTransparency = nullptr;
    QCheckBox* chkTiled = nullptr;
    QCheckBox* chkMaskColor = nullptr;
    QLabel* lblMaskColor = nullptr;
    QCheckBox* chkCreateNew = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    QLabel* iSrc = nullptr;

    // The chosen source (nullptr when no other document is open).
    fImage* Source() const;
    OverlayOptions Options() const;
    // The preview as last drawn (150 x 150), and where the result lies in it.
    const QImage& Preview() const { return preview_; }
    QRect PreviewPicture() const { return previewRect_; }
    // A press on the preview at p (preview pixels): with the mask option on, the colour of
    // the source there (or of the preview beside the source) becomes the mask colour.
    void PickMaskColor(QPoint p);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void sourceChanged();
    void redraw();
    void setMaskColor(int32_t bgr);

    fImage& dest_;
    std::vector<fImage*> sources_;
    int32_t maskColor_ = 0;
    QImage preview_;
    QRect previewRect_;
    // The pieces of the last preview: the source as drawn, its scale and placements.
    Bits sourceThumb_;
    double scale_ = 1;
};

// The Tools menu's "Overlay Image...": the dialog on the active document; OK applies.
// Nothing without an active document.
void RunOverlayDialog(fImage* active, DocumentHost& host, const OverlayHost& window, QWidget* parent);

} // namespace ostrivex
