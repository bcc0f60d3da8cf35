// fCaptureRectangle: the captured screen shown full screen, on which the user drags the
// rectangle to keep. Before the press two lines cross under the mouse (`shpFollow`);
// during the drag the rectangle (`picRectangle`) follows it. The release hands over the
// chosen part; Escape or the right button gives up.
#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QWidget>

namespace ostrivex {

class fCaptureRectangle : public QWidget {
    Q_OBJECT
  public:
    // `picture` in device pixels, shown over the whole of `screen`.
    fCaptureRectangle(const QImage& picture, QScreen* screen);

    const QImage& Picture1() const { return picture_; }
    // The rectangle being dragged, in picture pixels (empty before the press).
    QRect picRectangle() const { return band_; }
    // Shows the window over the whole screen and takes the keyboard.
    void ShowFullScreen();

  signals:
    // The part of the picture under the rectangle (at least 1 x 1).
    void Chosen(const QImage& part);
    void Cancelled();

  protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

  private:
    QPoint toPicture(QPointF widgetPos) const;
    QRect toWidget(const QRect& pictureRect) const;
    void end(bool chosen);

    QImage picture_;
    QScreen* screen_;
    QPoint anchor_;     // the press, in picture pixels
    QPoint mouse_;      // the last mouse position, in widget pixels
    QRect band_;        // picture pixels
    bool dragging_ = false;
    bool ended_ = false;
};

} // namespace ostrivex
