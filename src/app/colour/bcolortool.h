// bColorTool: a colour well. It shows one colour (0x00BBGGRR) as a framed square; a click
// asks for a new colour through PickColour, and a colour taken there is shown and
// announced with `colourChosen`.
#pragma once

#include <QAbstractButton>

#include <cstdint>

namespace ostrivex {

class bColorTool : public QAbstractButton {
    Q_OBJECT
  public:
    explicit bColorTool(QWidget* parent = nullptr);

    int32_t colour() const { return colour_; }
    // Shows the colour; no signal.
    void setColour(int32_t colour);
    // When false a click only emits `clicked` (the owner opens its own chooser).
    void setPicksOnClick(bool on) { picksOnClick_ = on; }

    QSize sizeHint() const override { return {22, 22}; }

  signals:
    void colourChosen(int32_t colour);

  protected:
    void paintEvent(QPaintEvent* e) override;

  private:
    void pick();

    int32_t colour_ = 0;
    bool picksOnClick_ = true;
};

} // namespace ostrivex
