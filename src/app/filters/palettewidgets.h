// The two small widgets of the palette dialog: the picture of the 256 entries and the
// colour swatch.
#pragma once

#include "pixel/palettefile.h"

#include <QColor>
#include <QLabel>
#include <QWidget>

namespace ostrivex {

// `iPal`: the entries in a 16 x 16 grid of square cells, entry i at column i % 16, row
// i / 16. Entries at or past the count are crossed out. A click selects the entry under
// the mouse.
class PalettePicture : public QWidget {
    Q_OBJECT
  public:
    static constexpr int kCell = 14;
    explicit PalettePicture(const PaletteRecord& palette, QWidget* parent = nullptr);
    // The entry under a point of the widget, -1 outside the grid.
    static int entryAt(QPoint p);
    static QRect cellRect(int entry);
    QSize sizeHint() const override { return {16 * kCell + 1, 16 * kCell + 1}; }

  signals:
    void entryClicked(int entry);

  protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;

  private:
    const PaletteRecord& palette_;
};

// `lblCur`: a flat colour field. Double click emits `applyRequested`; a right click asks
// for a new colour.
class PaletteSwatch : public QLabel {
    Q_OBJECT
  public:
    explicit PaletteSwatch(QWidget* parent = nullptr);
    QColor colour() const { return colour_; }
    void setColour(const QColor& c);

  signals:
    void applyRequested();

  protected:
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;

  private:
    QColor colour_;
};

} // namespace ostrivex
