// fCanvas, "Canvas size": the new size of the canvas and where the image lies on it. The
// canvas `iCnv` is drawn to fit a square preview; on it the picture `iImg` of the image, at
// the same scale, can be dragged. With "Proportions" on, the picture snaps to multiples of
// its own size, so the image lands at whole multiples of its width and height. A new size in
// the fields puts the image back in the middle. The dialog only collects the values; the
// command lays the image on the new canvas after OK.
#pragma once

#include <QDialog>
#include <QImage>
#include <QPoint>

#include <cstdint>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ostrivex {

class CanvasPicture;

class fCanvas : public QDialog {
    Q_OBJECT
  public:
    // The side of the square the canvas is fitted into, in screen pixels.
    static constexpr int32_t kPreviewSide = 240;

    // picture: the image as it stands (its size is the image's size).
    explicit fCanvas(const QImage& picture, QWidget* parent = nullptr);

    QLineEdit* txtW = nullptr;
    QLineEdit* txtH = nullptr;
    QCheckBox* chkKeepProportions = nullptr; // "Proportions", off at start
    QPushButton* cmdCenter = nullptr;        // puts the picture back in the middle
    QLabel* lblPosition = nullptr;           // "Position: left, top"
    QWidget* iCnv = nullptr;
    CanvasPicture* iImg = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    // Screen pixels of the preview per image pixel, for the canvas in the fields:
    // kPreviewSide / max(canvas width, canvas height).
    double Scale() const { return scale_; }
    // Where the image's top left corner lies on the new canvas, in image pixels (negative
    // when the image starts left of or above the canvas).
    int32_t Left() const { return left_; }
    int32_t Top() const { return top_; }
    // The canvas size accepted by OK.
    int32_t NewWidth() const { return newW_; }
    int32_t NewHeight() const { return newH_; }

    // A drag of the picture ending with its top left corner at `thumb` (preview pixels on
    // iCnv). Without "Proportions" the offset is Round(thumb / Scale()); with it the picture
    // snaps to the nearest multiple k of its own preview size and the offset is k times the
    // image's size. The picture keeps at least one pixel on the canvas.
    void DragPictureTo(QPoint thumb);
    // Centres the image on the canvas: ((W' - W) \ 2, (H' - H) \ 2).
    void CenterPicture();

    // OK: the minimum-size check of "Image size"; Accepted when it passes.
    void cmdOK_Click();

  private:
    void sizeChanged();
    void placePicture();

    QImage picture_;
    int32_t w_ = 0, h_ = 0;
    int32_t canvasW_ = 0, canvasH_ = 0; // the last valid size of the fields
    double scale_ = 1;
    int32_t left_ = 0, top_ = 0;
    int32_t newW_ = 0, newH_ = 0;
};

// The draggable picture of the image.
class CanvasPicture : public QWidget {
    Q_OBJECT
  public:
    CanvasPicture(const QImage& picture, QWidget* parent);

  signals:
    // The picture was dragged; `topLeft` is where its corner would go, in the parent's
    // pixels.
    void dragged(QPoint topLeft);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    QImage picture_;
    bool dragging_ = false;
    QPoint grab_; // the mouse position inside the picture at the press
};

} // namespace ostrivex
