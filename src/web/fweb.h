// FWeb, "Optimized Save Options": the web export.
//
// The original picture and the optimized one side by side, each in a pane that a drag
// pans (both panes follow the same drag, so the same part of the picture shows in each),
// with the size of each; the lists and options of the Optimize Box with the export's own
// entries (BMP, TGA, TIFF, "Native Bitmap"); and a table of every entry's size, share of
// the original and error (PSNR) against it under the current options, made on worker
// threads and filled in as each finishes, so the smallest file that still looks right can
// be picked at a glance (a click on a row chooses it). Save writes the optimized file,
// flips and inversion applied, to a name asked with "Save Optimized As".
#pragma once

#include "pixel/bits.h"
#include "web/optimize.h"
#include "web/optimizesettings.h"
#include "web/optimizeworker.h"

#include <QDialog>
#include <QImage>
#include <QPoint>

#include <atomic>
#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace ostrivex {

// One pannable pane: the picture centred where it is smaller than the pane, else shown
// from the pan offset. A drag reports the offset it asks for; the owner sets it on every
// pane it keeps together.
class PanPane : public QWidget {
    Q_OBJECT
public:
    explicit PanPane(QWidget* parent = nullptr);
    void SetPicture(const QImage& picture);
    const QImage& Picture() const { return picture_; }
    // The part of the picture at the pane's top left (held inside the picture).
    QPoint Offset() const { return offset_; }
    void SetOffset(QPoint offset);

signals:
    void panRequested(QPoint offset);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QPoint clamped(QPoint offset) const;
    QImage picture_;
    QPoint offset_;
    QPoint grab_;
    bool dragging_ = false;
};

class FWeb : public QDialog {
    Q_OBJECT
public:
    // The export of `picture`, starting from the Optimize Box's settings `start`.
    FWeb(const Bits& picture, const OptimizeSettings& start, QWidget* parent = nullptr);
    ~FWeb() override;

    // The settings the lists and options stand for now.
    OptimizeSettings CurrentSettings() const;
    // The settings of row `entry` of the comparison (the current options on that entry).
    OptimizeSettings RowSettings(int entry) const;
    // `CmdSave`: asks for a name ("Save Optimized As", the entry's filter) and writes.
    bool CmdSave_Click();
    // Writes the optimized file of the current settings to path.
    bool SaveTo(const QString& path, QString* error = nullptr);
    // True while the preview or a row of the table is on its way.
    bool Busy() const;
    // The bytes of the last optimized file shown (empty before the first).
    const std::vector<uint8_t>& OptimizedBytes() const { return bytes_; }

    // The controls.
    QComboBox* CboFiles = nullptr;
    QComboBox* cboMap = nullptr;
    QComboBox* cboDither = nullptr;
    QComboBox* cboColorMode = nullptr;
    QComboBox* cboJpg = nullptr;
    QLineEdit* TxtJPG = nullptr;
    QCheckBox* ChkInterlaced = nullptr;
    QCheckBox* chkInvert = nullptr;
    QCheckBox* chkFlipV = nullptr;
    QCheckBox* chkFlipH = nullptr;
    PanPane* iSrc = nullptr;
    PanPane* oSrc = nullptr;
    QLabel* lblOriginal = nullptr;
    QLabel* lblOriginalSize = nullptr;
    QLabel* lblOptimizedSize = nullptr;
    QTableWidget* tblCompare = nullptr;
    QPushButton* CmdSave = nullptr;
    QPushButton* CmdCancel = nullptr;

signals:
    void previewShown();
    void rowFilled(int entry);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void changed();
    void optionsChanged();
    void entryChosen(int index);
    void jpegChosen(int index);
    void fillControls();
    void startComparison();
    void previewDelivered(uint64_t ticket, std::vector<uint8_t> bytes, QImage picture, QString error);
    void rowDelivered(uint64_t generation, int row, ComparisonRow result);

    Bits original_;
    std::shared_ptr<const Bits> exported_; // the original with the flips and inversion
    OptimizeSettings settings_;
    bool filling_ = false;
    bool centred_ = false;
    uint64_t previewTicket_ = 0;
    OptimizeSettings previewSettings_;
    std::vector<uint8_t> bytes_;
    std::atomic<int> pendingDeliveries_{0};
    std::unique_ptr<OptimizeWorker> worker_;
    std::unique_ptr<ComparisonRunner> comparison_;
};

} // namespace ostrivex
