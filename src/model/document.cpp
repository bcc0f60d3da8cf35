#include "model/document.h"

#include <algorithm>

namespace ostrivex {

Document::Document(std::filesystem::path appFolder) : history_(std::move(appFolder), 0) {
    history_.ActionNames[0] = "Original";
}

const Bits* Document::Pixels(const EditTarget& target) const {
    return const_cast<Document*>(this)->pixelsOf(target);
}

Bits* Document::pixelsOf(const EditTarget& target) {
    switch (target.kind) {
    case EditTarget::Kind::Enhanced: return &enhanced_;
    case EditTarget::Kind::LayersCanvas: return &Layers.Canvas;
    case EditTarget::Kind::Layer: {
        LayerRecord* layer = Layers.Find(target.layer);
        return layer ? &layer->Picture : nullptr;
    }
    case EditTarget::Kind::None: break;
    }
    return nullptr;
}

bool Document::put(const EditTarget& target, Bits&& pixels) {
    Bits* into = pixelsOf(target);
    if (!into) return false;
    const bool resized = target.IsEnhanced() &&
                         (into->width() != pixels.width() || into->height() != pixels.height());
    *into = std::move(pixels);
    // A selection made on the old canvas does not fit the new one.
    if (resized) selection_.Init(0, 0, enhanced_.width(), enhanced_.height());
    return resized;
}

void Document::file(const EditTarget& target, const QString& caption) {
    UndoStore::SaveResult saved;
    saved.slot = -1;
    // The history keeps the states of the Enhanced image; layer changes are not filed.
    if (target.IsEnhanced()) saved = history_.Save(enhanced_, caption.toStdString());
    tell([&](DocumentObserver& o) { o.Committed(target, caption, saved); });
}

void Document::Start(Bits&& pixels, const QString& caption) {
    if (pixels.empty() || pixels.width() < 1 || pixels.height() < 1) return;
    enhanced_ = std::move(pixels);
    selection_.Init(0, 0, enhanced_.width(), enhanced_.height());
    editOpen_ = false;
    tell([](DocumentObserver& o) { o.PixelsChanged(EditTarget::Enhanced(), true); });
    file(EditTarget::Enhanced(), caption);
}

void Document::Commit(const EditTarget& target, Bits&& pixels, const QString& caption) {
    if (!pixelsOf(target) || pixels.empty() || pixels.width() < 1 || pixels.height() < 1) return;
    const bool resized = put(target, std::move(pixels));
    editOpen_ = false;
    Changed = true;
    tell([&](DocumentObserver& o) { o.PixelsChanged(target, resized); });
    file(target, caption);
}

void Document::Commit(const EditTarget& target, const QString& caption) {
    const Bits* pixels = pixelsOf(target);
    if (!pixels || pixels->empty()) return;
    editOpen_ = false;
    Changed = true;
    tell([&](DocumentObserver& o) { o.PixelsChanged(target, false); });
    file(target, caption);
}

Bits* Document::BeginEdit(const EditTarget& target) {
    Bits* pixels = pixelsOf(target);
    if (!pixels || pixels->empty()) return nullptr;
    editOpen_ = true;
    editTarget_ = target;
    return pixels;
}

void Document::EditChanged() {
    if (!editOpen_) return;
    const EditTarget target = editTarget_;
    tell([&](DocumentObserver& o) { o.PixelsChanged(target, false); });
}

void Document::Preview(const EditTarget& target, Bits&& pixels) {
    if (!pixelsOf(target) || pixels.empty()) return;
    const bool resized = put(target, std::move(pixels));
    editOpen_ = true;
    editTarget_ = target;
    tell([&](DocumentObserver& o) { o.PixelsChanged(target, resized); });
}

void Document::Revert(const Bits& base) {
    const EditTarget target = editOpen_ ? editTarget_ : EditTarget::Enhanced();
    editOpen_ = false;
    Bits* into = pixelsOf(target);
    if (!into || base.empty()) return;
    const bool resized = target.IsEnhanced() &&
                         (into->width() != base.width() || into->height() != base.height());
    *into = base; // a buffer of the same size is reused
    if (resized) selection_.Init(0, 0, enhanced_.width(), enhanced_.height());
    tell([&](DocumentObserver& o) { o.PixelsChanged(target, resized); });
}

bool Document::loadSlot(int32_t slot) {
    const int32_t oldW = PictureWidth(), oldH = PictureHeight();
    bool damaged = false;
    // Read straight into the image when the sizes agree: no second buffer per undo.
    if (!UndoStore::ReadSlotFileInto(history_.SlotFileName(slot), enhanced_, damaged)) {
        // A read error in the middle of the raster: the state on screen comes back from
        // its own file.
        if (damaged) UndoStore::ReadSlotFileInto(history_.SlotFileName(history_.HistoryPosition - 1),
                                                 enhanced_, damaged);
        return false;
    }
    editOpen_ = false;
    const bool resized = enhanced_.width() != oldW || enhanced_.height() != oldH;
    // The selection is not part of a state: it stays, unless the canvas size changed.
    if (resized) selection_.Init(0, 0, enhanced_.width(), enhanced_.height());
    tell([&](DocumentObserver& o) { o.PixelsChanged(EditTarget::Enhanced(), resized); });
    return true;
}

bool Document::Undo() {
    if (!PictureExists()) return false;
    const bool loaded = loadSlot(history_.UndoSlot());
    if (loaded) history_.Undone();
    const int32_t shown = history_.HistoryPosition - 1;
    tell([&](DocumentObserver& o) { o.HistoryMoved(shown, loaded); });
    return loaded;
}

bool Document::Redo() {
    if (!PictureExists()) return false;
    const bool loaded = loadSlot(history_.RedoSlot());
    if (loaded) history_.Redone();
    const int32_t shown = history_.HistoryPosition - 1;
    tell([&](DocumentObserver& o) { o.HistoryMoved(shown, loaded); });
    return loaded;
}

bool Document::JumpTo(int32_t index) {
    if (index == history_.HistoryPosition - 1) return false;
    const bool loaded = loadSlot(index);
    history_.JumpedTo(index);
    tell([&](DocumentObserver& o) { o.HistoryMoved(index, loaded); });
    return loaded;
}

void Document::AddObserver(DocumentObserver* observer) {
    if (std::find(observers_.begin(), observers_.end(), observer) == observers_.end())
        observers_.push_back(observer);
}

void Document::RemoveObserver(DocumentObserver* observer) {
    observers_.erase(std::remove(observers_.begin(), observers_.end(), observer), observers_.end());
}

} // namespace ostrivex
