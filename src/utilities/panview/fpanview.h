// fPanView, "Panoramic View": the active document small, with the frame `ClipRct` round the
// part its window shows. A drag of the frame scrolls the document; a press beside the frame
// brings the view there and goes on as a drag.
//
// The picture is fitted into the view, centred, with its ratio kept. The geometry is plain
// arithmetic (PanGeometry and the two functions under it), which the window only draws.
#pragma once

#include "document/fimage.h"
#include "pixel/bits.h"

#include <QImage>
#include <QPointer>
#include <QRect>
#include <QWidget>

#include <functional>

namespace ostrivex {


// Where the picture of w x h lies in a view of `view`, and its scale: thumbnail pixels per
// image pixel, across and down.
struct PanGeometry {
    QRect thumb;
    double scaleX = 0, scaleY = 0;
};
PanGeometry FitPan(int imageW, int imageH, QSize view);

// `ClipRct`: the rectangle of the part a document's window shows (zoom z, scroll values
// scrollX and scrollY, a canvas of viewW x viewH), in the pan view's pixels. Left is the
// scroll value over z, scaled to the thumbnail; width and height likewise, rounded to
// nearest with ties to even, and held within the thumbnail.
QRect PanFrame(const PanGeometry& g, int zoom, int scrollX, int scrollY, int viewW, int viewH);

// The scroll values that put the middle of the window's view on the pan view's point p:
// p scaled up to image pixels and by z, less half the view, held between 0 and the scroll
// maxima.
QPoint PanScroll(const PanGeometry& g, QPoint p, int zoom, int viewW, int viewH, int maxX,
                 int maxY);

// The thumbnail of `bits` at w x h: each pixel the mean of four samples (2 x 2) of the
// picture, so that a large picture does not shimmer, at a cost that depends on the
// thumbnail's size only.
QImage PanThumbnail(const Bits& bits, int w, int h);

class fPanView : public QWidget {
    Q_OBJECT
  public:
    explicit fPanView(QWidget* parent = nullptr);

    // Where the view finds the active document (nullptr: none).
    void SetActiveDocument(std::function<fImage*()> active) { active_ = std::move(active); }

    // What the host's RefreshPanView does: when the view shows, it follows the active
    // document (thumbnail and frame) from its next paint; several calls between two paints
    // cost one drawing.
    void RefreshPanView();
    // `UpdateImage`: redraws the thumbnail of the active document.
    void UpdateImage() { RefreshPanView(); }
    // `UpdateClipRct`: the frame follows the document's zoom and scroll values.
    void UpdateClipRct();
    // `Clear`: empties the picture and the frame.
    void Clear();

    fImage* Document() const { return doc_; }
    // The frame as last worked out (empty without a document).
    QRect ClipRct() const { return clipRct_; }
    const PanGeometry& Geometry() const { return geometry_; }
    bool Dragging() const { return dragging_; }

  protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void showEvent(QShowEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;

  private:
    void follow();
    void scrollTo(QPoint p);

    std::function<fImage*()> active_;
    QPointer<fImage> doc_;
    PanGeometry geometry_;
    QRect clipRct_;
    int zoom_ = 1; // the document's zoom when the frame was last worked out
    bool dragging_ = false;
};

} // namespace ostrivex
