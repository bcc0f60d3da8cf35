// fImage: the undo history. The files are UndoStore's; here the states go on screen and
// into the history list of the History Box.
#include "document/fimage.h"

#include "document/fpaste.h"
#include "document/host.h"
#include "pixel/bitfilter.h"

namespace ostrivex {

namespace {
HistoryList* historyList() {
    DocumentHost* h = GetDocumentHost();
    fPaste* box = h ? h->HistoryBox() : nullptr;
    return box ? box->History() : nullptr;
}

// The undo list if it shows the document numbered id (an unclaimed list is claimed): the
// saves and moves of a document that is not shown leave the list alone, and its
// activation rebuilds the list anyway.
HistoryList* listShowing(int32_t id) {
    HistoryList* list = historyList();
    if (!list) return nullptr;
    if (list->OwnerId == -1) list->OwnerId = id;
    return list->OwnerId == id ? list : nullptr;
}
} // namespace

void fImage::SaveUndoBits() {
    DocumentHost* h = host();
    SaveUndoBits(h ? h->ActionLabel : QString());
}

void fImage::SaveUndoBits(const QString& label) {
    if (!pictureExists_) return;
    const UndoStore::SaveResult r = history_->Save(bits_, label.toStdString());
    if (HistoryList* list = listShowing(history_->HistoryId)) {
        // The redo branch's entries die with its files.
        if (!r.removedSlots.empty()) list->KeepEntries(r.removedSlots.front());
        list->loadHistory(r.slot, label);
    }
    if (DocumentHost* h = host()) h->UndoStateSaved(history_->HistoryId);
}

void fImage::UndoBits() {
    if (!pictureExists_) return;
    const QString file = QString::fromStdString(history_->SlotFileName(history_->UndoSlot()).string());
    if (LoadUndoBits(file)) history_->Undone();
    if (HistoryList* list = listShowing(history_->HistoryId))
        list->MovePointer(history_->HistoryPosition - 1);
}

void fImage::RedoBits() {
    if (!pictureExists_) return;
    const QString file = QString::fromStdString(history_->SlotFileName(history_->RedoSlot()).string());
    if (LoadUndoBits(file)) history_->Redone();
    if (HistoryList* list = listShowing(history_->HistoryId))
        list->MovePointer(history_->HistoryPosition - 1);
}

bool fImage::LoadUndoBits(const QString& file) {
    const int32_t oldW = PictureWidth(), oldH = PictureHeight();
    DocumentHost* hst = host();
    cBitFilter* filter = hst ? &hst->Filter() : nullptr;
    // Read straight into the document's buffer when the sizes agree: no second 4*(W+4)*(H+4)
    // buffer per undo.
    bool damaged = false;
    if (!UndoStore::ReadSlotFileInto(file.toStdString(), bits_, damaged)) {
        // A read error in the middle of the raster: the filter still holds the state that
        // was on screen.
        if (damaged && filter && filter->bits().width() == oldW && filter->bits().height() == oldH)
            bits_ = filter->bits();
        return false;
    }
    const int32_t w = bits_.width(), h = bits_.height();
    if (filter) filter->SetBits(bits_);

    const bool sizeChanged = w != oldW || h != oldH;
    // The selection itself is not part of a state: it stays, except that a state of
    // another canvas size resets it to the whole image.
    if (sizeChanged) {
        selection_.Init(0, 0, w, h);
        StopTimer();
    }
    GiveFilterRegion(true);
    if (sizeChanged) {
        SetAutoRedraw(false);
        Bits loaded = std::move(bits_);
        CreateBlank(w, h);
        bits_ = std::move(loaded); // the same pixels as the filter's

    }
    UpdateImage();
    if (sizeChanged) SetAutoRedraw(true);
    if (hst) {
        hst->RefreshPanView();
        // Written without blanks round the x, unlike the panel of activation and layout.
        hst->SetStatusPanel("Pixel", QStringLiteral("%1x%2").arg(w).arg(h));
        hst->SelectionChanged = true;
    }
    return true;
}

void fImage::JumpToHistory(int32_t index) {
    if (index == history_->HistoryPosition - 1) return;
    const QString file = QString::fromStdString(history_->SlotFileName(index).string());
    if (HistoryList* list = listShowing(history_->HistoryId)) list->MovePointer(index);
    LoadUndoBits(file);
    history_->JumpedTo(index);
}

void fImage::SwapHistoy() {
    HistoryList* list = historyList();
    if (!list || list->OwnerId == history_->HistoryId) return;
    list->KeepEntries(history_->HistoryTop >= 1 ? 1 : 0);
    if (history_->HistoryTop >= 1)
        list->loadHistory(0, QString::fromStdString(history_->ActionNames[0]));
    for (int32_t i = 1; i <= history_->HistoryTop - 1 && i <= UndoStore::kLastSlot; ++i)
        list->loadHistory(i, QString::fromStdString(history_->ActionNames[size_t(i)]));
    list->MovePointer(history_->HistoryPosition - 1);
    list->OwnerId = history_->HistoryId;
}

void fImage::ClearHistoryFiles() { history_->ClearHistoryFiles(); }

} // namespace ostrivex
