// fFilter: the one dialog of the 41 filters with parameters. It builds its controls from
// the row of the filter table, shows the source and the live result side by side at
// thumbnail size, previews on the whole document without an undo step, and on OK applies
// the filter once through the window's filter envelope (one undo step).
//
// The dialog works on its own filter object `tFilter`: a thumbnail run filters the source
// thumbnail inside the selection scaled to the thumbnail; a full preview filters a copy of
// cFilter's Bits inside the document's selection. cFilter itself keeps the document as it
// was until OK, so Cancel restores the document from it. OK hands the envelope the
// preview's pixels when the preview is still current, and otherwise runs the filter on
// cFilter inside the envelope.
#pragma once

#include "operations/filter_table.h"
#include "model/bitregion.h"
#include "pixel/bitfilter.h"
#include "pixel/bits.h"

#include <QDialog>
#include <QImage>
#include <QString>
#include <QWidget>

#include <array>
#include <cstdint>
#include <functional>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QPushButton;
class QRadioButton;
class QSlider;
class QTimer;

namespace ostrivex {

class fImage;

// A thumbnail picture: draws its image at 1:1 and, when a marker is set, a cross over it.
// A press or drag with the left button reports the point.
class FilterThumbnail : public QWidget {
    Q_OBJECT
  public:
    explicit FilterThumbnail(QWidget* parent = nullptr);
    void setImage(const QImage& image);
    const QImage& image() const { return image_; }
    // The cross at (x, y) in the marker colour (0x00BBGGRR); hidden with show false.
    void setMarker(bool show, int32_t x, int32_t y, uint32_t colour);
    // What the widget shows, marker included, as last painted.
    QImage rendered() const;
  signals:
    void picked(int x, int y);

  protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;

  private:
    QImage image_;
    bool marker_ = false;
    int32_t markerX_ = 0, markerY_ = 0;
    uint32_t markerColour_ = 0xFFFFFF;
};

// What the dialog needs from the window that opens it.
struct FilterDialogHost {
    fImage* document = nullptr;
    // cFilter: the document's pixels as they were before the dialog.
    cBitFilter* filter = nullptr;
    // Progress of a full run (percent), and the end of it.
    std::function<void(int)> progress;
    std::function<void()> hideProgress;
    // The filter envelope: runs the operation on cFilter, writes the result to cFilter and
    // the document, and makes the undo step. Called once, on OK.
    std::function<void(const std::function<Bits(cBitFilter&)>&)> commit;
};

class fFilter : public QDialog {
    Q_OBJECT
  public:
    static constexpr int kMaxPreviewWidth = 160;
    static constexpr int kMaxPreviewHeight = 110;
    static constexpr int kSelectTickMs = 300;
    static constexpr int kSliderRowHeight = 44;
    static constexpr int kMarkerArm = 5;

    // Opens on filter `number` (0 to 40) over the host's document: makes the thumbnails,
    // stops the selection outline, builds the controls of the row and runs the first
    // thumbnail.
    fFilter(int number, const FilterDialogHost& host, QWidget* parent = nullptr);
    ~fFilter() override;

    // Replaces exec() where the dispatcher opens the dialog (tests answer it here). Returns
    // the dialog's result code.
    static std::function<int(fFilter&)> ExecHook;
    // The colour chooser of the wells (PickColour unless a test replaces it).
    static std::function<bool(QWidget*, int32_t&, const QString&)> ColourChooser;

    // --- The steps of the table ------------------------------------------------------
    void AddSlider(int index, const QString& label, double minimum, double maximum, double scale,
                   double defaultValue, const QString& suffix, bool centred);
    void AddOption(const QString& label, bool value);
    void AddPicker();
    void AddColours(int index);

    // --- Runs ------------------------------------------------------------------------
    // One run by the flags: a thumbnail run unless full-preview or commit is set.
    void ApplyFilter();
    // A change of any control: clears the three flags and runs a thumbnail.
    void ControlChanged();
    void cmdPreview_Click();
    void cmdOK_Click();
    void CmdCancel_Click();
    // A press or drag on the source thumbnail at (x, y) of the thumbnail.
    void SourcePicked(int x, int y);
    // A click on colour well i: the colour chooser, then a thumbnail run on OK.
    void ColourWellClick(int i);
    // One tick of tmrSelect: the marker swaps between white and black.
    void SelectTick();

    // --- State, for the window and tests --------------------------------------------
    int number() const { return number_; }
    const FilterRow& row() const { return row_; }
    int previewWidth() const { return previewW_; }
    int previewHeight() const { return previewH_; }
    const Bits& sourceThumb() const { return sourceThumb_; }
    const Bits& resultThumb() const { return resultThumb_; }
    const BitmapRecord& sourceRecord() const { return sourceRecord_; }
    const BitmapRecord& resultRecord() const { return resultRecord_; }
    // The values the last run read (sliders minus offsets, option, colours, ...).
    const FilterValues& values() const { return values_; }
    int offset(int i) const { return offsets_[size_t(i)]; }
    const QString& suffix(int i) const { return suffixes_[size_t(i)]; }
    int32_t colour(int i) const { return colours_[size_t(i)]; }
    void setColour(int i, int32_t colour);
    float centreX() const { return centreX_; }
    float centreY() const { return centreY_; }
    bool centreFlag() const { return centre_; }
    uint32_t markerColour() const { return markerColour_; }
    bool previewed() const { return previewed_; }
    bool committed() const { return committed_; }
    bool cancelled() const { return cancelled_; }
    // How many times the row's call ran on the thumbnail and on the full image.
    int thumbnailRuns() const { return thumbnailRuns_; }
    int fullRuns() const { return fullRuns_; }
    // The region the thumbnail runs use (the selection at thumbnail scale).
    const Region& thumbnailRegion() const;
    const cBitRegion& ownRegion() const { return ownRegion_; }
    // The style text of GLASS.
    const std::string& styleText() const { return values_.style; }

    // The controls (arrays by slider index, well index, channel row).
    QFrame* frSliders = nullptr;
    std::array<QLabel*, 3> lblName{};
    std::array<QSlider*, 3> sld{};
    std::array<QLabel*, 3> lblValue{};
    QCheckBox* chkOption = nullptr;
    std::array<QPushButton*, 2> picColour{};
    FilterThumbnail* picSource = nullptr;
    FilterThumbnail* picResult = nullptr;
    QLabel* lblPick = nullptr; // the picker's hint
    QTimer* tmrSelect = nullptr;
    QFrame* frBanks = nullptr;
    std::array<QRadioButton*, 3> optRChannel{}; // red output from source red, green, blue
    std::array<QRadioButton*, 3> optGChannel{};
    std::array<QRadioButton*, 3> optBChannel{};
    std::array<QCheckBox*, 3> chkInvt{}; // red, green, blue outputs
    std::array<QCheckBox*, 3> chkKill{};
    QFrame* FrmGlass = nullptr;
    std::array<QRadioButton*, 4> oo{}; // the styles of kGlassStyles
    QComboBox* cbo = nullptr;
    QFrame* FrmCurtain = nullptr;
    std::array<QRadioButton*, 4> Curt{}; // values 1 to 4
    QPushButton* cmdPreview = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* CmdCancel = nullptr;

  protected:
    void done(int r) override;

  private:
    void buildControls();
    void buildBanks();
    void buildGlass();
    void buildCurtain();
    void runTableStep();
    void readControls();
    void readFrames();
    void drawSource();
    void drawResult();
    void showColour(int i);
    void onGlassStyle(int index);
    void onBankRadio(int row, int source);
    void release();
    void closing();

    int number_;
    const FilterRow& row_;
    FilterDialogHost host_;
    BitmapRecord sourceRecord_;
    BitmapRecord resultRecord_;
    Bits sourceThumb_;
    Bits resultThumb_;
    int previewW_ = 0, previewH_ = 0;
    bool ready_ = false;
    FilterValues values_;
    std::array<int, 3> offsets_{};
    std::array<double, 3> scales_{1.0, 1.0, 1.0};
    std::array<QString, 3> suffixes_{};
    bool option_ = false;
    std::array<int32_t, 2> colours_{0xFFFFFF, 0x000000};
    bool fullPreview_ = false, previewed_ = false, commit_ = false;
    bool centre_ = false;
    float centreX_ = 0.5f, centreY_ = 0.5f;
    int32_t markerX_ = 0, markerY_ = 0; // the picked pixel of the thumbnail
    uint32_t markerColour_ = 0xFFFFFF;
    cBitFilter tFilter_;
    cBitRegion ownRegion_;
    Region thumbRect_;
    bool busy_ = false;            // the bank radios are being set from code
    bool documentWritten_ = false; // a full preview wrote the document
    bool committed_ = false, cancelled_ = false, closed_ = false;
    bool fullRun_ = false; // the run under way is a full one
    int thumbnailRuns_ = 0, fullRuns_ = 0;
};

// Opens the dialog of filter `number` modally over the host's document (through ExecHook
// when one is set). Returns the result code.
int ShowFilterDialog(int number, const FilterDialogHost& host, QWidget* parent);

} // namespace ostrivex
