// The numeric fields of the tool panels. Each is a group of three controls that stay in
// step: a slider `sbName` (cpvSlider), a small up-down bar `sbNameUD` and a text box
// `sbNameUDT`, all for one whole-number setting from 1 to 100.
//
// The three change rules:
//  1. the slider's change stores its value in the setting and sets the up-down bar and
//     the text;
//  2. the up-down bar's change sets the text and stores the value (and moves the slider,
//     which the text's own change would do);
//  3. the text's change takes the text as a number: above 100 the text becomes "100" at
//     once; the value then goes to the slider, the up-down bar and the setting.
// A typed number below 1 (an empty box included) moves the slider, the bar and the
// setting to 1 but leaves the text as typed, so that the user can go on typing.
#pragma once

#include "app/settings/settings.h"

#include <QSlider>
#include <QWidget>

#include <cstdint>

class QLabel;
class QLineEdit;
class QScrollBar;

namespace ostrivex {

// The program's slider: a horizontal slider whose value is all the panels need.
class cpvSlider : public QSlider {
    Q_OBJECT
  public:
    explicit cpvSlider(QWidget* parent = nullptr);
    QSize sizeHint() const override;
};

// The number a text box holds, read the way the program reads typed numbers: leading
// blanks skipped, an optional sign, digits with an optional fraction, anything after that
// ignored; no digits at all is 0. The fraction rounds to the nearest whole number, ties to
// even. Values far outside the i16 range are held at +-100000.
int TextNumber(const QString& text);

class SliderTrio : public QWidget {
    Q_OBJECT
  public:
    static constexpr int Minimum = 1;
    static constexpr int Maximum = 100;
    static constexpr int LargeStep = 10;

    // `name` is the slider's name ("sbBrushSize"); the bar and the text box take the same
    // name plus "UD" and "UDT". The group writes `field` of `Settings`.
    SliderTrio(const QString& name, const QString& caption, std::int16_t SettingsRecord::*field,
               QWidget* parent = nullptr);

    cpvSlider* slider() const { return slider_; }
    QScrollBar* upDown() const { return upDown_; }
    QLineEdit* text() const { return text_; }
    QLabel* label() const { return label_; }
    std::int16_t SettingsRecord::*field() const { return field_; }

    // Shows `value` in the three controls without touching the setting (the panels' Init
    // routines). A value outside 1 to 100 reaches the text as it is; the slider and the bar
    // show it held to their range.
    void ShowValue(int value);

  private:
    void sliderChanged(int value);
    void upDownChanged(int value);
    void textChanged(const QString& text);

    std::int16_t SettingsRecord::*field_;
    QLabel* label_ = nullptr;
    cpvSlider* slider_ = nullptr;
    QScrollBar* upDown_ = nullptr;
    QLineEdit* text_ = nullptr;
};

} // namespace ostrivex
