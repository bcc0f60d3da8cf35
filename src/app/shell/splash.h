// The splash window: the first window of the process.
#pragma once

#include <QTimer>
#include <QWidget>

namespace ostrivex {

// A borderless picture shown while the program starts. Its timer `tSplash` fires once,
// 500 ms after the window is shown, and the window then emits `finished`; start-up runs in
// the slot connected to it and unloads the splash when the main window is up.
//
// A click on the picture closes the window. Start-up then runs at once rather than never:
// a program whose only window is gone before start-up would just end, which no user asking
// to skip the splash means. `finished` is emitted once in either case.
class fSplash : public QWidget {
    Q_OBJECT
  public:
    explicit fSplash(QWidget* parent = nullptr);

    QTimer tSplash;
    static constexpr int kSplashMs = 500;

    // The picture shown: drawn here, so the program ships no image for it.
    static QPixmap picture();

  signals:
    void finished();

  protected:
    void showEvent(QShowEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void paintEvent(QPaintEvent* e) override;

  private:
    void fire();
    bool fired_ = false;
    QPixmap picture_;
};

} // namespace ostrivex
