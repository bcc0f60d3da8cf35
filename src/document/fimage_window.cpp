// fImage: the three views, activation and deactivation, the close question and unload.
#include "document/fimage.h"

#include "app/settings/settings.h"
#include "document/dialogs.h"
#include "document/fpaste.h"
#include "document/optimizeview.h"
#include "document/host.h"
#include "pixel/bitfilter.h"

#include <QCloseEvent>
#include <QFontMetrics>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QTabBar>

namespace ostrivex {

// --- Views ---------------------------------------------------------------------------------

void fImage::showView(View v) {
    model_->View.Tab = ViewTab(v);
    PImage_->setVisible(v == ViewEnhanced);
    picFrame_->setVisible(v == ViewLayers);
    oImage_->setVisible(v == ViewOptimize);
    tabs_->setCurrentIndex(int(v));
    if (v == ViewEnhanced)
        setWindowTitle(Caption());
    else if (v == ViewLayers)
        setWindowTitle(model_->Layers.Tag.isEmpty() ? QStringLiteral("New Layered Image")
                                                    : model_->Layers.Tag);
    else
        setWindowTitle(model_->Optimize.Tag.isEmpty() ? QStringLiteral("New Optimized Image")
                                                      : model_->Optimize.Tag);
    if (DocumentHost* h = host()) h->ViewChanged(this, int(v));
}

void fImage::cOriginal_Click() { showView(ViewEnhanced); }
void fImage::cLayers_Click() { showView(ViewLayers); }
void fImage::cOptimize_Click() { showView(ViewOptimize); }

// --- Activation ----------------------------------------------------------------------------

void fImage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!activationHooked_) fitSubWindow();
    hookActivation();
}

// The first show inside the MDI area sizes the sub-window to the picture at the zoom plus
// its frame and the tab strip, within the area; an empty document gets 500 x 500.
void fImage::fitSubWindow() {
    auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget());
    QMdiArea* area = sub ? sub->mdiArea() : nullptr;
    if (!area) return;
    const QSize frame = sub->size() - size();
    QSize want = PictureExists() ? sizeHint() + frame.expandedTo(QSize(0, 0)) : QSize(500, 500);
    want = want.boundedTo(area->viewport()->size());
    if (want.isValid() && !want.isEmpty()) sub->resize(want);
}

// Activation follows the MDI area: the document activates when its sub-window becomes the
// active one, and deactivates when another does.
void fImage::hookActivation() {
    if (activationHooked_) return;
    auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget());
    QMdiArea* area = sub ? sub->mdiArea() : nullptr;
    if (!area) return;
    activationHooked_ = true;
    connect(area, &QMdiArea::subWindowActivated, this, [this, sub](QMdiSubWindow* w) {
        if (w == sub) {
            if (!active_) Form_Activate();
        } else if (active_) {
            Form_Deactivate();
        }
    });
    if (area->activeSubWindow() == sub && !active_) Form_Activate();
}

void fImage::Form_Activate() {
    active_ = true;
    if (CurrentView() == ViewLayers)
        cLayers_Click();
    else if (CurrentView() == ViewEnhanced)
        cOriginal_Click();
    else
        cOptimize_Click();
    SwapHistoy();
    DocumentHost* h = host();
    if (!h) return;
    if (h->LastActiveDocumentId != HistoryId()) {
        // A paste still following the mouse in the document that was active is taken away
        // before cFilter (which still holds that document's pixels) takes this one's.
        if (h->PendingPaste)
            for (fImage* doc : h->Documents())
                if (doc && doc != this && doc->HistoryId() == h->LastActiveDocumentId) doc->CancelEdit();
        h->LastActiveDocumentId = HistoryId();
        h->PendingPaste = false;
        cBitFilter& filter = h->Filter();
        filter.SetBits(bits());
        GiveFilterRegion(true); // the selection if there is one, else the whole image
        h->SetStatusPanel("Pixel", QStringLiteral("%1 x %2").arg(PictureWidth()).arg(PictureHeight()));
        h->ShowZoom(Scale()); // the combo and the "Zoom" panel, "Z : 1"
        h->RefreshPanView();
        h->SelectionChanged = true;
        SetMouseScroll(h->HandScrollDown());
        StartTimer();
    }
    // Layers, the Optimize settings box and the tool timer follow in the main window.
    h->DocumentActivated(this);
}

void fImage::Form_Deactivate() {
    active_ = false;
    // A paste is placed or taken away, never left half done: leaving the document with one
    // still following the mouse takes it away.
    if (DocumentHost* h = host(); h && h->PendingPaste) {
        h->PendingPaste = false;
        CancelEdit();
    }
    // Only the active document's ants crawl.
    StopTimer();
    if (DocumentHost* h = host()) h->DocumentDeactivated(this);
    UpdateImage();
}

// --- Close ---------------------------------------------------------------------------------

bool fImage::QueryUnload() {
    DocumentHost* h = host();
    if (IsTrue(Settings.ConfirmClose) && model_->Changed && HistoryPosition() >= 2) {
        // The caption compacted like a path to 400 pixels: the middle gives way.
        const QString name = QFontMetrics(font()).elidedText(Caption(), Qt::ElideMiddle, 400);
        const QString text =
            name + "\n\n" + "This image has changed." + "\n" + "Do you want to save it ?";
        const int answer =
            DocumentDialogs::AskYesNoCancel(h ? h->DialogParent() : this, text, "Ostrivex");
        if (answer == QMessageBox::Cancel) return false;
        if (answer == QMessageBox::Yes && h) h->RunCommand("SAVEAS");
    }
    if (h) h->RemoveDocumentWindow(this);
    removed_ = true;
    return true;
}

void fImage::closeEvent(QCloseEvent* event) {
    if (unloaded_) {
        event->accept();
        return;
    }
    if (!QueryUnload()) {
        event->ignore();
        return;
    }
    Unload();
    event->accept();
}

void fImage::Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    History().ClearHistoryFiles();
    // The lifted pixels of a content move go with the document.
    stroke_.MovedBits = Bits();
    stroke_.MovingSelection = false;
    DocumentHost* h = host();
    if (!h) return;
    // The undo list no longer shows a closed document.
    if (fPaste* box = h->HistoryBox())
        if (box->History()->OwnerId == HistoryId()) {
            box->History()->KeepEntries(0);
            box->History()->OwnerId = -1;
        }
    // cFilter must not keep a pointer into a closed document.
    StopTimer();
    if (givenRegion_ && h->Filter().region() == givenRegion_) h->Filter().BitsRegion(nullptr);
    givenRegion_ = nullptr;
    if (!removed_) {
        h->RemoveDocumentWindow(this);
        removed_ = true;
    }
    bool othersOpen = false;
    for (fImage* doc : h->Documents())
        if (doc && doc != this && !doc->unloaded_) othersOpen = true;
    if (!othersOpen) {
        h->ClearPanView();
        h->ClearStatusPanels();
    }
}

} // namespace ostrivex
