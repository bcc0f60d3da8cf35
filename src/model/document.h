// Document: one open image without its window.
//
// It holds the Enhanced image (`Bits`), the selection, the undo history on disk, the file
// it came from, the layer stack and the Optimize state, and apart from those its view
// state (tab and zoom), which is no part of any state or file.
//
// Pixels change in one way only. `Commit` (target, new pixels, caption) writes the pixels
// of the target, files the state in the undo history under the caption, marks the
// document changed and tells the observers, which redraw and bring the status bar, the
// history list and the filter engine up to date. `Start` files the first state of a new
// document the same way. An edit under way (a stroke between press and release, a paste
// that follows the mouse, a filter's full preview) shows its pixels in the target before
// they are filed: `BeginEdit` hands out the target's pixels to change in place, `Preview`
// replaces them, and the edit ends in `Commit` or in `Revert`. Undo, redo and a jump in
// the history put a filed state back.
//
// Plain C++ and Qt Core; tests drive it without a window.
#pragma once

#include "model/bitregion.h"
#include "model/edittarget.h"
#include "model/layerstack.h"
#include "model/undostore.h"
#include "model/viewstate.h"
#include "pixel/bits.h"

#include <QString>

#include <cstdint>
#include <filesystem>
#include <vector>

namespace ostrivex {

// What a document's window (or any other party) hears from it.
class DocumentObserver {
public:
    virtual ~DocumentObserver() = default;
    // The pixels of `target` changed: a commit, an edit shown before it is filed, a revert,
    // a state of the history put back. `sizeChanged`: the image has another size now (its
    // selection then covers the whole new image).
    virtual void PixelsChanged(const EditTarget& target, bool sizeChanged) {}
    // A commit (or the first state) filed the pixels of `target` under `caption`. `saved`
    // says which slot took the state and which redo slots died; its slot is -1 for a
    // target whose changes the history does not keep (the layers).
    virtual void Committed(const EditTarget& target, const QString& caption,
                           const UndoStore::SaveResult& saved) {}
    // Undo, redo or a jump: the state of slot `shown` is on screen now. `loaded` is false
    // when its file could not be read and the pixels stayed as they were.
    virtual void HistoryMoved(int32_t shown, bool loaded) {}
};

// The file a document belongs to.
struct FileInfo {
    QString FileName;      // the file it came from or was saved to ("New.bmp" when none)
    QString FileExtension; // lower case, without the dot
    QString Caption;       // the title of the Enhanced view
};

// The document's part of the Optimize view.
struct OptimizeState {
    QString Tag; // the caption of the Optimize view; empty for a new one
};

class Document {
public:
    // appFolder: the program's folder, where the undo files go (appFolder/Temp).
    explicit Document(std::filesystem::path appFolder);
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    FileInfo File;
    OptimizeState Optimize;
    LayerStack Layers;
    ViewState View;
    // A state was filed since the document was opened (read by the close question).
    bool Changed = false;

    // --- The Enhanced image -----------------------------------------------------------
    bool PictureExists() const { return !enhanced_.empty(); }
    int32_t PictureWidth() const { return enhanced_.width(); }
    int32_t PictureHeight() const { return enhanced_.height(); }
    const Bits& bits() const { return enhanced_; }
    // The pixels of any target; nullptr for a target that has none.
    const Bits* Pixels(const EditTarget& target) const;

    // --- Selection and history ---------------------------------------------------------
    cBitRegion& Region() { return selection_; }
    const cBitRegion& Region() const { return selection_; }
    // The selection, or the whole image when nothing is selected.
    const ostrivex::Region& EffectiveRegion() const { return ostrivex::EffectiveRegion(selection_); }
    UndoStore& History() { return history_; }
    const UndoStore& History() const { return history_; }

    // What commands change now (see model/edittarget.h).
    EditTarget Target() const { return TargetFor(View.Tab, Layers.CurrentLayer); }

    // --- Changing pixels ----------------------------------------------------------------
    // The first state of a new document: the pixels become the Enhanced image, the
    // selection covers all of it, and the state is filed under caption. Changed stays.
    void Start(Bits&& pixels, const QString& caption);
    // Writes `pixels` into the target and files the state under caption (see the top).
    // Pixels of another size resize the Enhanced image and reset the selection to the
    // whole of it. Nothing happens for a target without pixels or for empty pixels.
    void Commit(const EditTarget& target, Bits&& pixels, const QString& caption);
    // As above with the pixels the open edit left in the target.
    void Commit(const EditTarget& target, const QString& caption);
    // Opens an edit of the target and hands out its pixels to change in place; nullptr for
    // a target without pixels. Call EditChanged after each change so the views follow.
    Bits* BeginEdit(const EditTarget& target);
    void EditChanged();
    // Shows `pixels` in the target as an open edit, without filing them.
    void Preview(const EditTarget& target, Bits&& pixels);
    // Ends the open edit without filing it: the target gets `base` back (the pixels of
    // the last filed state, which the caller keeps).
    void Revert(const Bits& base);
    bool EditOpen() const { return editOpen_; }

    // --- Moves in the history ----------------------------------------------------------
    // Each reads a slot file back into the Enhanced image. A state of another size resets
    // the selection to the whole image; otherwise the selection stays as it is. True when
    // a state was loaded.
    bool Undo();
    bool Redo();
    // The click on the history entry of slot `index` (the top stays, so later states stay
    // redoable). Nothing when that state is on screen already.
    bool JumpTo(int32_t index);

    void AddObserver(DocumentObserver* observer);
    void RemoveObserver(DocumentObserver* observer);

private:
    Bits* pixelsOf(const EditTarget& target);
    // Puts pixels into the target; true when the Enhanced image changed size.
    bool put(const EditTarget& target, Bits&& pixels);
    void file(const EditTarget& target, const QString& caption);
    bool loadSlot(int32_t slot);
    template <class F> void tell(F&& f) {
        for (DocumentObserver* o : std::vector<DocumentObserver*>(observers_)) f(*o);
    }

    Bits enhanced_;
    cBitRegion selection_;
    UndoStore history_;
    bool editOpen_ = false;
    EditTarget editTarget_;
    std::vector<DocumentObserver*> observers_;
};

} // namespace ostrivex
