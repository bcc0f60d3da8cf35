// fImage: the history list of the History Box. The states and their files are the model's;
// here the list follows the states this document files and the moves of undo, redo and
// jumps, and is rebuilt from the document's captions when it becomes active.
#include "document/fimage.h"

#include "document/fpaste.h"
#include "document/host.h"

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

void fImage::historySaved(const UndoStore::SaveResult& saved, const QString& caption) {
    if (HistoryList* list = listShowing(HistoryId())) {
        // The redo branch's entries die with its files.
        if (!saved.removedSlots.empty()) list->KeepEntries(saved.removedSlots.front());
        list->loadHistory(saved.slot, caption);
    }
    if (DocumentHost* h = host()) h->UndoStateSaved(HistoryId());
}

void fImage::historyMoved(int32_t shown) {
    if (HistoryList* list = listShowing(HistoryId())) list->MovePointer(shown);
}

void fImage::SwapHistoy() {
    HistoryList* list = historyList();
    const UndoStore& history = History();
    if (!list || list->OwnerId == history.HistoryId) return;
    list->KeepEntries(history.HistoryTop >= 1 ? 1 : 0);
    if (history.HistoryTop >= 1)
        list->loadHistory(0, QString::fromStdString(history.ActionNames[0]));
    for (int32_t i = 1; i <= history.HistoryTop - 1 && i <= UndoStore::kLastSlot; ++i)
        list->loadHistory(i, QString::fromStdString(history.ActionNames[size_t(i)]));
    list->MovePointer(history.HistoryPosition - 1);
    list->OwnerId = history.HistoryId;
}

} // namespace ostrivex
