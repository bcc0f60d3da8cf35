// The drawing area of the text dialogs: `canvas`, a scrolled area that shows `layer`, the
// picture being made, at its own size, with three grips (right edge, bottom edge, corner)
// that resize it. The dialog redraws the layer at every change of size.
#pragma once

#include "pixel/bits.h"

#include <QImage>
#include <QScrollArea>

namespace ostrivex {

class LayerCanvas : public QScrollArea {
    Q_OBJECT
  public:
    explicit LayerCanvas(QWidget* parent = nullptr);

    // The layer's picture (its size is the layer's size).
    void SetPicture(const Bits& picture);
    const QImage& picture() const { return picture_; }
    QSize layerSize() const { return size_; }
    // Sets the layer's size without a signal (the dialog redraws).
    void SetLayerSize(QSize size);

    // `ShowG`: shows or hides the grips.
    void ShowG(bool show);
    // `MoveGrips`: puts the grips on the layer's right edge, bottom edge and corner.
    void MoveGrips();
    // `UpdateScroll`: fits the scrolled area to the layer and its grips.
    void UpdateScroll();

    // The smallest and largest sides the grips give.
    static constexpr int kMinSide = 8;
    static constexpr int kMaxSide = 4000;

  signals:
    // The user dragged a grip: the layer is now w x h.
    void layerResized(int w, int h);
    // The mouse moved over the layer (picture pixels), with or without a button.
    void mouseOverLayer(QPoint pixel);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    class Surface;
    Surface* surface_ = nullptr;
    QWidget* grips_[3] = {}; // right, bottom, corner
    QImage picture_;
    QSize size_{1, 1};
    bool gripsShown_ = true;
    int dragging_ = -1;
    QPoint dragStart_;
    QSize sizeAtStart_;
};

} // namespace ostrivex
