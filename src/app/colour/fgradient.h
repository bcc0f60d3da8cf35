// fGradient: the program's colour dialog. Every colour well opens it (through PickColour).
//
// A hue/saturation field (hue across, saturation up) with a value bar beside it, the
// red, green and blue numbers and the hex text "#RRGGBB", the old and the new colour side
// by side, the 16 custom colours of `Settings.CustomColors`, and OK and Cancel.
//
// The colour itself is kept as red, green and blue, so that a colour given to the dialog
// comes back unchanged however hue, saturation and value would round. Hue, saturation and
// value are kept beside it for the field and the bar only (a grey keeps the hue the user
// had).
//
// "Add to custom colors" writes the new colour into the custom cell that is chosen (or,
// when none is, the next cell in turn) and into Settings.CustomColors at once: the custom
// colours are a palette of the program, not part of one choice, so Cancel keeps them.
#pragma once

#include <QDialog>

#include <array>
#include <cstdint>

class QLineEdit;
class QSpinBox;

namespace ostrivex {

class bColorTool;

// The hue (across) and saturation (up) field.
class HueSatField : public QWidget {
    Q_OBJECT
  public:
    explicit HueSatField(QWidget* parent = nullptr);
    void setHueSat(double hue, double sat); // 0..1 each
    double hue() const { return hue_; }
    double sat() const { return sat_; }
    QSize sizeHint() const override { return {200, 160}; }
  signals:
    void picked(double hue, double sat);

  protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void resizeEvent(QResizeEvent*) override;

  private:
    void pickAt(QPointF p);
    QImage field_;
    double hue_ = 0, sat_ = 0;
};

// The value bar for the field's hue and saturation.
class ValueBar : public QWidget {
    Q_OBJECT
  public:
    explicit ValueBar(QWidget* parent = nullptr);
    void setHsv(double hue, double sat, double val);
    double value() const { return val_; }
    QSize sizeHint() const override { return {22, 160}; }
  signals:
    void picked(double val);

  protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;

  private:
    void pickAt(double y);
    double hue_ = 0, sat_ = 0, val_ = 0;
};

class fGradient : public QDialog {
    Q_OBJECT
  public:
    explicit fGradient(QWidget* parent = nullptr);

    // The colour shown as old and new (0x00BBGGRR).
    void setColour(int32_t colour);
    // The new colour.
    int32_t colour() const { return colour_; }

    HueSatField* field() const { return field_; }
    ValueBar* valueBar() const { return valueBar_; }
    QSpinBox* red() const { return red_; }
    QSpinBox* green() const { return green_; }
    QSpinBox* blue() const { return blue_; }
    QLineEdit* hex() const { return hex_; }
    bColorTool* customCell(int i) const { return custom_[size_t(i)]; }
    // Chooses custom cell i (its colour becomes the new colour); -1 chooses none.
    void chooseCustom(int i);
    void addCustom();

  private:
    // `colour` becomes the new colour; hue, saturation and value follow it unless
    // `keepHsv` (the change came from the field or the bar).
    void setNew(int32_t colour, bool keepHsv);
    void fromHsv();
    void showAll();

    int32_t colour_ = 0;
    int32_t old_ = 0;
    double hue_ = 0, sat_ = 0, val_ = 0;
    int chosenCustom_ = -1;
    int nextCustom_ = 0;
    HueSatField* field_ = nullptr;
    ValueBar* valueBar_ = nullptr;
    QSpinBox* red_ = nullptr;
    QSpinBox* green_ = nullptr;
    QSpinBox* blue_ = nullptr;
    QLineEdit* hex_ = nullptr;
    QWidget* oldSample_ = nullptr;
    QWidget* newSample_ = nullptr;
    std::array<bColorTool*, 16> custom_{};
    bool updating_ = false;
};

// "#RRGGBB" of a 0x00BBGGRR colour, and back ("RRGGBB" or "#RRGGBB", any case); false for
// any other text.
QString ColourHex(int32_t colour);
bool ParseColourHex(const QString& text, int32_t& colour);

} // namespace ostrivex
