// fToolColor: the content of the Color Box.
//
// Two overlapping wells show the foreground colour `Settings.ColorPrimary` (front, upper
// left) and the second colour `Settings.ColorSecondary` (behind, lower right); a click on
// either opens the colour dialog (fGradient) for it, and the swap button exchanges them.
// Three sliders R, G, B and the sample under them show and edit the foreground colour
// live: a slider's move changes `ColorPrimary` at once. The GetColor tool writes the
// colour it picks through ShowPicked.
#pragma once

#include <QWidget>

#include <cstdint>

class QLabel;
class QToolButton;

namespace ostrivex {

class bColorTool;
class cpvSlider;

class fToolColor : public QWidget {
    Q_OBJECT
  public:
    explicit fToolColor(QWidget* parent = nullptr);

    // Shows both colours of `Settings` in the wells, the sliders and the sample.
    void ShowColours();
    // `colour` becomes the foreground colour and shows everywhere (the GetColor tool).
    void ShowPicked(int32_t colour);
    // Exchanges the foreground and the second colour.
    void Swap();

    bColorTool* primaryWell() const { return primary_; }
    bColorTool* secondaryWell() const { return secondary_; }
    cpvSlider* slider(int channel) const { return sliders_[channel]; } // 0 R, 1 G, 2 B
    QLabel* sample() const { return sample_; }
    QToolButton* swapButton() const { return swap_; }

  private:
    void sliderMoved();
    void showSample(int32_t colour);

    bColorTool* primary_ = nullptr;
    bColorTool* secondary_ = nullptr;
    cpvSlider* sliders_[3] = {};
    QLabel* values_[3] = {};
    QLabel* sample_ = nullptr;
    QToolButton* swap_ = nullptr;
};

} // namespace ostrivex
