// fPaste: the content of the History Box. Two tabs: "tabClips", the clip history (ten slots
// that every cut and copy fills, and from which a clip is pasted again), and "tabActions",
// the undo list of the active document.
//
// The undo list shows one entry per undo slot, with the slot number and its caption, and
// a pointer that marks the state on screen. A click on an entry jumps to that state
// (`Ltext_Click`): the list finds the document whose HistoryId it shows (OwnerId) among
// the host's documents and has its model jump there.
#pragma once

#include "pixel/bits.h"

#include <QImage>
#include <QSize>
#include <QString>
#include <QTreeWidget>
#include <QWidget>

#include <array>
#include <cstdint>
#include <vector>

class QLabel;
class QScrollArea;
class QTabWidget;

namespace ostrivex {

class HistoryList : public QTreeWidget {
    Q_OBJECT
public:
    explicit HistoryList(QWidget* parent = nullptr);

    // HistoryId of the document whose history the list shows; -1 for none.
    int OwnerId = -1;

    // `loadHistory`: appends the entry of slot index (or rewrites it if it exists) and
    // moves the pointer to it. Missing entries below index are added empty.
    void loadHistory(int index, const QString& caption);
    // Keeps the first `count` entries.
    void KeepEntries(int count);
    // `Pindicator`: the pointer; -1 hides it.
    void MovePointer(int index);
    int PointerIndex() const { return pointer_; }

    int EntryCount() const { return topLevelItemCount(); }
    QString EntryNumber(int index) const;
    QString EntryCaption(int index) const;

signals:
    void entryClicked(int index);

private:
    int pointer_ = -1;
};

// One clip of the history: the 40-byte bitmap header of the clip (size 40, planes 1, bit
// count 32, width W, height -H: top-down) and the clip's pixel array in the Bits form,
// guard band included. Width is the header width, height the negated header height.
struct ClipSlot {
    BitmapInfoHeader header;
    Bits pixels;
    int32_t Width() const { return header.biWidth; }
    int32_t Height() const { return -header.biHeight; }
};

// The header and the pixel array of a slot as one little-endian byte record.
std::vector<uint8_t> ClipSlotRecord(const ClipSlot& slot);

class ClipSlotView;

// `tabClips`: the clip history. Ten slots (`lstImages`), each shown as a thumbnail `pT`, a
// size text `BR` (W " x " H) and a name `BT` (the slot number, "1" to "10", while it holds
// a clip). `LMessage` over the list names the size of the slot drawn last. A click on a
// slot selects it; a double click pastes from it. The buttons under the list clear the
// selected slot or all of them.
class ClipHistory : public QWidget {
    Q_OBJECT
public:
    static constexpr int kSlotCount = 10;
    // The box of a thumbnail, in pixels.
    static constexpr int kThumbWidth = 80;
    static constexpr int kThumbHeight = 60;

    explicit ClipHistory(QWidget* parent = nullptr);

    // Set by every cut and copy at its start, before the size test.
    bool ClipChanged = false;

    // `lstImages`: the selected slot (0 to 9; slot 0 at start). Selecting redraws the
    // slot's thumbnail, so LMessage tells its size.
    int SelectedIndex() const { return selected_; }
    void SelectSlot(int index);

    // The slot records. The mutable one lets a caller (or a test) set a header directly.
    const ClipSlot& Slot(int index) const { return slots_[size_t(index)]; }
    ClipSlot& Slot(int index) { return slots_[size_t(index)]; }
    // What the slot's controls show.
    QString SlotName(int index) const;       // `BT`
    QString SizeText(int index) const;       // `BR`
    QString Message() const;                 // `LMessage`
    QSize ThumbnailSize(int index) const;    // the fitted clip inside `pT`; 0 x 0 when empty
    QImage Thumbnail(int index) const;       // the whole `pT` box as drawn

    // The slot that the next clip goes to: with the selected slot empty, that slot; with it
    // filled and the next one empty, the next one; otherwise the selected slot itself,
    // whose clip is replaced. The last slot has no next one and is always its own target.
    int TargetSlot() const;
    // Stores a clip (the ClipBuffer of a cut or copy) in TargetSlot(): the target becomes
    // the selected slot, gets the header and the pixels, its thumbnail and the name "n"
    // (target + 1). Returns the target.
    int StoreClip(const Bits& clip);
    // Redraws slot `index`: thumbnail, size text and LMessage.
    void DrawThumbnail(int index);
    // Paste from a slot: only with a width and a height, the slot's pixels become the
    // host's ClipBuffer and the command "PASTE" runs. False when nothing was done.
    bool PasteFromSlot(int index);
    // `ClearCLip`: all true clears every slot whose width or height is not 0; false clears
    // the selected slot only when both are not 0. Clearing erases the pixels and the
    // header's size, the thumbnail, the size text and the name.
    void ClearCLip(bool all);
    // `Update_V`: sizes the list of slots so that the vertical bar of the view covers it.
    void Update_V();

    QScrollArea* View() const { return view_; }

private:
    void clearSlot(int index);

    std::array<ClipSlot, kSlotCount> slots_{};
    std::array<QImage, kSlotCount> thumbs_{};
    std::array<QSize, kSlotCount> fitted_{};
    std::array<ClipSlotView*, kSlotCount> views_{};
    int selected_ = 0;
    QLabel* LMessage_ = nullptr;
    QScrollArea* view_ = nullptr;
    QWidget* list_ = nullptr;
};

class fPaste : public QWidget {
    Q_OBJECT
public:
    explicit fPaste(QWidget* parent = nullptr);

    QTabWidget* Tabs() const { return tabs_; }
    QWidget* ClipsTab() const { return tabClips_; }
    ClipHistory* Clips() const { return tabClips_; }
    HistoryList* History() const { return history_; }

    // Shorthands for the document code.
    void loadHistory(int index, const QString& caption) { history_->loadHistory(index, caption); }

private:
    void jumpTo(int index);

    QTabWidget* tabs_ = nullptr;
    ClipHistory* tabClips_ = nullptr;
    HistoryList* history_ = nullptr;
};

} // namespace ostrivex
