// "Histogram": the distribution of one channel of the image, with readouts of the level
// under the mouse.
#pragma once

#include "pixel/bits.h"
#include "pixel/histogram.h"

#include <QDialog>
#include <QWidget>

class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QTimer;

namespace ostrivex {

// `picHistogram`: one vertical line per level from `HistogramBarTop` percent of the
// height down to the bottom, in the channel's colour; before the tables exist it shows a
// status text instead.
class HistogramPlot : public QWidget {
    Q_OBJECT
  public:
    explicit HistogramPlot(QWidget* parent = nullptr);
    void setStatus(const QString& text);
    QString status() const { return status_; }
    void setTable(const std::array<int32_t, 256>* table, QColor colour);
    // The level under an x of the widget, 0..255.
    int levelAt(int x) const;
    QSize sizeHint() const override { return {256 + 2, 150}; }

  signals:
    void hovered(int level);
    void entered();

  protected:
    void paintEvent(QPaintEvent*) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void enterEvent(QEnterEvent*) override;

  private:
    QString status_;
    const std::array<int32_t, 256>* table_ = nullptr;
    QColor colour_;
};

// The window copies the image; the tables are made by `Extract`, which runs from the
// event loop right after the window is created, so that the status text shows first. The
// window changes nothing in the document.
class fHistogram : public QDialog {
    Q_OBJECT
  public:
    static constexpr const char* kExtractingText = " Extracting image information...";

    explicit fHistogram(const Bits& image, QWidget* parent = nullptr);

    QRadioButton* optChannel[4] = {}; // "Blue", "Green", "Red", "Luminousity"
    HistogramPlot* picHistogram = nullptr;
    QWidget* picGradient = nullptr; // black to the channel's colour, below the plot
    QGroupBox* frInfo = nullptr;
    QLabel* lblQuantityV = nullptr; // count of the level under the mouse, "#,#"
    QLabel* lblPixelsV = nullptr;   // W x H, "#,#"
    QLabel* lblLevelV = nullptr;    // the level under the mouse
    QLabel* lblAverageV = nullptr;  // the channel's average
    QLabel* lblPercentV = nullptr;  // the level's share of all pixels, "0.00%"
    QTimer* tmrMouseIn = nullptr;   // follows the mouse while it is over the plot
    QPushButton* cmdClose = nullptr;

    // One pass over the image (once; later calls do nothing).
    void Extract();
    bool extracted() const { return extracted_; }
    const HistogramTables& tables() const { return tables_; }
    // The selected channel (HistogramChannel).
    int channel() const;
    // The readouts for one level of the selected channel.
    void ShowLevel(int level);

  private:
    void showChannel();
    void followMouse();

    Bits image_;
    HistogramTables tables_;
    bool extracted_ = false;
};

} // namespace ostrivex
