// finfo: the Optimize Box.
//
// For the active document it keeps the optimized picture in one chosen web format and
// shows that file's format and exact size. Every change of the image (`Update`) or of a
// setting asks the optimizer again, on a worker thread: the window never waits, a newer
// request supersedes an older one, and when the result arrives the document's Optimize
// view shows the picture as read back from the file and the labels show its size.
//
// Each document keeps its own settings and last result; the box shows those of the active
// document. Work is only done where it is seen: while the box is hidden and a document's
// Optimize view is not showing, a change marks the result stale, and it is made again when
// the box or the view shows, or when Save Optimized asks for it.
#pragma once

#include "web/optimize.h"
#include "web/optimizesettings.h"
#include "web/optimizeworker.h"

#include <QImage>
#include <QPointer>
#include <QWidget>

#include <atomic>
#include <map>
#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

namespace ostrivex {

class fImage;

// A picture of the pixels of `bits` (Format_RGB32).
QImage PictureOfBits(const Bits& bits);

class finfo : public QWidget {
    Q_OBJECT
public:
    explicit finfo(QWidget* parent = nullptr);
    ~finfo() override;

    // `Update`: the document's pixels changed; optimize them again.
    void Update(fImage* document);
    // The document became active: the box shows its settings and result.
    void ShowDocument(fImage* document);
    // The document's Optimize view came up: it gets a current picture.
    void ViewShown(fImage* document);

    // `ExtractOptimized`: writes the document's optimized file to path, the very bytes the
    // size label counts (made at once, with a wait cursor, if the last result is not
    // current). False with a reason in `error`; a failed write leaves an old file alone.
    bool ExtractOptimized(fImage* document, const QString& path, QString* error = nullptr);
    // `GetOptimizedFileExtension` of the active document's settings ("" without one).
    QString GetOptimizedFileExtension() const;

    // `pMm_Click`: folds the box between its full form and its small one (the preset list
    // and the two result lines).
    void pMm_Click();
    bool Folded() const { return folded_; }
    // The height of the content in the small form.
    int FoldedHeight() const;

    // The settings shown (those of the active document, or of the next one).
    const OptimizeSettings& Settings() const { return shown_; }
    // True while a result is on its way.
    bool Busy() const { return worker_->Busy() || pendingDeliveries_ > 0; }

    // The controls.
    QComboBox* CboFiles = nullptr;
    QComboBox* cboMap = nullptr;
    QComboBox* cboDither = nullptr;
    QCheckBox* ChkInterlaced = nullptr;
    QComboBox* cboJpg = nullptr;
    QLineEdit* TxtJPG = nullptr;
    QPushButton* jpgUpdate = nullptr;
    QLabel* lblFormat = nullptr;
    QLabel* lblSize = nullptr;
    QToolButton* pMm = nullptr;

signals:
    // The box folded or unfolded (its owner resizes the window).
    void foldChanged(bool folded);
    // A result was shown (for the document, on the window's thread).
    void resultShown(ostrivex::fImage* document);

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct DocState {
        OptimizeSettings settings;
        bool stale = true;             // pixels or settings changed, and nothing asked since
        uint64_t ticket = 0;           // the request on its way (0: none)
        OptimizeSettings requested;    // its settings
        OptimizeSettings madeWith;     // the settings of the last result
        std::vector<uint8_t> bytes;    // the last result's file
        int32_t width = 0, height = 0; // of the picture it was made from
        // The last result is that of the pixels and settings of now.
        bool current() const { return !stale && ticket == 0 && !bytes.empty() && madeWith == settings; }
    };
    DocState& state(fImage* document);
    void forget(QObject* document);
    bool wanted(fImage* document) const;
    void request(fImage* document);
    void delivered(uint64_t ticket, OptimizeResult result, QImage picture);
    void showState();
    void fillControls();
    void presetChosen(int index);
    void settingChanged();
    void jpegQualityChosen(int index);
    void jpgUpdate_Click();

    std::map<fImage*, DocState> states_;
    QPointer<fImage> current_;
    OptimizeSettings shown_ = SettingsForPreset(7);
    bool filling_ = false;
    bool folded_ = false;
    std::atomic<int> pendingDeliveries_{0};
    QWidget* fullForm_ = nullptr;
    QWidget* paletteRows_ = nullptr;
    QWidget* jpegRows_ = nullptr;
    std::unique_ptr<OptimizeWorker> worker_; // last: it stops before the rest goes
};

} // namespace ostrivex
