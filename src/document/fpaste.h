// fPaste: the content of the History Box. Two tabs: "tabClips" (the clip history, later
// work: an empty page for now) and "tabActions", the undo list of the active document.
//
// The undo list shows one entry per undo slot, with the slot number and its caption, and
// a pointer that marks the state on screen. A click on an entry jumps to that state
// (`Ltext_Click`): the list finds the document whose HistoryId it shows (OwnerId) among
// the host's documents and calls its JumpToHistory.
#pragma once

#include <QString>
#include <QTreeWidget>
#include <QWidget>

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

class fPaste : public QWidget {
    Q_OBJECT
public:
    explicit fPaste(QWidget* parent = nullptr);

    QTabWidget* Tabs() const { return tabs_; }
    QWidget* ClipsTab() const { return tabClips_; }
    HistoryList* History() const { return history_; }

    // Shorthands for the document code.
    void loadHistory(int index, const QString& caption) { history_->loadHistory(index, caption); }

private:
    void jumpTo(int index);

    QTabWidget* tabs_ = nullptr;
    QWidget* tabClips_ = nullptr;
    HistoryList* history_ = nullptr;
};

} // namespace ostrivex
