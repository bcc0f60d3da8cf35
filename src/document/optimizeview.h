// The Optimize view of a document (the panel `oImage`): the Optimize Box's preview
// picture `oSrc`, centred on each axis where it is smaller than the panel, scrolled by two
// bars where it is larger, and dragged with the hand: the left button grabs, a drag moves
// both bars by the mouse's distance, the release lets go.
#pragma once

#include <QImage>
#include <QPoint>
#include <QWidget>

class QScrollBar;

namespace ostrivex {

class OptimizeView : public QWidget {
    Q_OBJECT
public:
    explicit OptimizeView(QWidget* parent = nullptr);

    // The picture the Optimize Box made for this document (a null image for none).
    void SetPicture(const QImage& picture);
    const QImage& Picture() const { return picture_; }

    // `Update_oSrc`: places the picture and its bars for the panel's size.
    void Update_oSrc();

    QWidget* oSrc() const { return oSrc_; }
    QScrollBar* HorizontalBar() const { return hBar_; }
    QScrollBar* VerticalBar() const { return vBar_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void placePicture();

    QImage picture_;
    QWidget* oSrc_ = nullptr;
    QScrollBar* hBar_ = nullptr;
    QScrollBar* vBar_ = nullptr;
    QPoint grabPoint_;
    bool dragging_ = false;
};

} // namespace ostrivex
