// fImage: construction, the document's life, and what the window does when the model
// tells of a change: the redraw, the filter engine kept on the document's pixels, the
// status bar and the other boxes. The canvas is in fimage_canvas.cpp, the history list
// in fimage_history.cpp, views, activation and close in fimage_window.cpp.
#include "document/fimage.h"

#include "app/settings/settings.h"
#include "document/dialogs.h"
#include "document/host.h"
#include "document/optimizeview.h"
#include "imagefile/imagefile.h"
#include "pixel/bitfilter.h"

#include <QScrollBar>
#include <QTabBar>

#include <algorithm>

namespace ostrivex {

// --- Construction -------------------------------------------------------------------------

fImage::fImage(QWidget* parent) : QWidget(parent), model_(std::make_unique<Document>(AppFolder())) {
    setObjectName("fImage");
    setAttribute(Qt::WA_DeleteOnClose);
    model_->AddObserver(this);

    tabs_ = new QTabBar(this);
    tabs_->addTab(tr("Enhanced"));
    tabs_->addTab(tr("Layers"));
    tabs_->addTab(tr("Optimize"));
    tabs_->setObjectName("tabViews");
    connect(tabs_, &QTabBar::tabBarClicked, this, [this](int index) {
        if (index == ViewEnhanced) cOriginal_Click();
        else if (index == ViewLayers) cLayers_Click();
        else if (index == ViewOptimize) cOptimize_Click();
    });

    PImage_ = new QWidget(this);
    PImage_->setObjectName("PImage");
    picFrame_ = new QWidget(this);
    picFrame_->setObjectName("picFrame");
    oImage_ = new OptimizeView(this);
    oImage_->setObjectName("oImage");
    picFrame_->hide();
    oImage_->hide();

    buildCanvas();

    tmrSelection_.setInterval(kSelectionTickMs);
    connect(&tmrSelection_, &QTimer::timeout, this, [this] { SelectionTick(); });
}

fImage::~fImage() {
    if (!unloaded_) Unload();
    model_->RemoveObserver(this);
}

DocumentHost* fImage::host() const { return GetDocumentHost(); }

void fImage::BeginDocument(const QString& caption) {
    DocumentHost* h = host();
    int32_t number = 1;
    if (h) number = ++h->DocumentCounter;
    model_->History().HistoryId = number;
    SetCaption(caption.isEmpty() ? QStringLiteral("Image%1").arg(number) : caption);
}

void fImage::SetCaption(const QString& caption) {
    model_->File.Caption = caption;
    if (CurrentView() == ViewEnhanced) setWindowTitle(caption);
}

QSize fImage::sizeHint() const {
    // The picture at the zoom under the tab strip (the sub-window adds its own frame).
    if (!PictureExists()) return QSize(500, 500);
    const int64_t w = onCanvas(PictureWidth()), h = onCanvas(PictureHeight());
    return QSize(int(std::min<int64_t>(w, 32767)),
                 int(std::min<int64_t>(h + tabs_->sizeHint().height(), 32767)));
}

QImage fImage::Picture() const {
    if (!PictureExists()) return QImage();
    const Bits& b = bits();
    QImage out(b.width(), b.height(), QImage::Format_RGB32);
    for (int y = 0; y < b.height(); ++y) {
        const uint8_t* in = b.row(y);
        uint32_t* o = reinterpret_cast<uint32_t*>(out.scanLine(y));
        for (int x = 0; x < b.width(); ++x)
            o[x] = 0xFF000000u | uint32_t(in[x * 4 + 2]) << 16 | uint32_t(in[x * 4 + 1]) << 8 | in[x * 4];
    }
    return out;
}

bool fImage::save(const QString& path, const QString& type) {
    if (!PictureExists()) return false;
    const ImageFileResult r = SaveImageFile(bits(), path.toStdString(), type.toStdString());
    if (!r.ok)
        DocumentDialogs::Inform(host() ? host()->DialogParent() : nullptr,
                                QString::fromStdString(r.message), kImageFileMessageTitle);
    return r.ok;
}

// --- What the model tells -------------------------------------------------------------------

void fImage::fillHeader() {
    BitmapHeader = BitmapInfoHeader{};
    BitmapHeader.biWidth = PictureWidth() + 4;
    BitmapHeader.biHeight = -(PictureHeight() + 4);
}

// The Enhanced image came, went or has another size: the header, the canvas layout and
// the filter's region follow (a resized image has its selection reset to all of it).
void fImage::pictureResized() {
    if (!PictureExists()) {
        iDst_->hide();
        hSB_->hide();
        vSB_->hide();
        canvasImage_ = QImage();
        return;
    }
    fillHeader();
    PictureRect = Rect{0, 0, PictureWidth(), PictureHeight()};
    GiveFilterRegion(false);
    if (Region().IsEmptyRegion()) StopTimer();
    UserControl_Resize();
}

void fImage::PixelsChanged(const EditTarget& target, bool sizeChanged) {
    // Only the Enhanced image has a canvas in this window so far.
    if (!target.IsEnhanced()) return;
    if (sizeChanged)
        pictureResized();
    else
        UpdateImage();
}

void fImage::Committed(const EditTarget& target, const QString& caption,
                       const UndoStore::SaveResult& saved) {
    DocumentHost* h = host();
    // The first state of a new document is no change: the status bar and the host's
    // changed flag hear only of commits.
    const bool change = model_->Changed;
    if (h && change) {
        h->ActionLabel = caption;
        h->SetStatusPanel("Status", caption);
    }
    if (target.IsEnhanced() && change) {
        // The stroke base and the source of the next filter: cFilter holds the pixels of
        // the last filed state of the document that was changed, inside its selection.
        if (h) {
            h->Filter().SetBits(bits());
            GiveFilterRegion(true);
        }
        writePixelPanel();
    }
    if (saved.slot >= 0) historySaved(saved, caption);
    if (!h || !change) return;
    h->RefreshPanView();
    h->ReloadOptimizePreview();
    h->DocumentCommitted(this);
}

void fImage::HistoryMoved(int32_t shown, bool loaded) {
    historyMoved(shown);
    DocumentHost* h = host();
    if (!loaded || !h) return;
    h->Filter().SetBits(bits());
    GiveFilterRegion(true); // the selection if there is one, else the whole image
    h->RefreshPanView();
    h->ReloadOptimizePreview(); // the Optimize view follows the pixels back
    writePixelPanel();
    // The state on screen is what the status tells.
    if (shown >= 0 && shown <= UndoStore::kLastSlot)
        h->SetStatusPanel("Status", QString::fromStdString(History().ActionNames[size_t(shown)]));
    h->SelectionChanged = true;
}

void fImage::CancelEdit() {
    DocumentHost* h = host();
    if (!h) return;
    const Bits& base = h->Filter().bits();
    if (base.width() == PictureWidth() && base.height() == PictureHeight()) model_->Revert(base);
}

// --- Selection ------------------------------------------------------------------------------

void fImage::GiveFilterRegion(bool force) {
    DocumentHost* h = host();
    if (!h) return;
    cBitFilter& filter = h->Filter();
    if (!force && (givenRegion_ == nullptr || filter.region() != givenRegion_)) return;
    givenRegion_ = &EffectiveRegion();
    filter.BitsRegion(givenRegion_);
}

void fImage::SelectionChanged() {
    GiveFilterRegion(true);
    if (DocumentHost* h = host()) h->SelectionChanged = true;
    if (Region().IsEmptyRegion())
        StopTimer();
    else
        StartTimer();
    UpdateImage();
    UpdateRegion();
}

void fImage::StartTimer() {
    SelectionTick();
    tmrSelection_.start();
}

void fImage::StopTimer() {
    if (tmrSelection_.isActive()) {
        tmrSelection_.stop();
        UpdateRegion(); // the outline goes with the next paint
    }
}

void fImage::SelectionTick() {
    if (Region().IsEmptyRegion()) return;
    Region().RotateBrush();
    UpdateRegion();
}

} // namespace ostrivex
