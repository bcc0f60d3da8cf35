// What a document window needs from the main window.
//
// The document code never includes the main window: it reaches it only through this
// interface, which the main window implements and installs with SetDocumentHost at start.
// Tests install a fake. The few pieces of application-wide state that the document reads
// and writes (the action label, the last active document, the document counter, two flags)
// are plain fields here, so every host shares one definition of them.
#pragma once

#include "model/viewstate.h"
#include "pixel/bits.h"

#include <QString>

#include <cstdint>

#include <vector>

class QWidget;

namespace ostrivex {

class cBitFilter;
class fImage;
class fPaste;

class DocumentHost {
public:
    virtual ~DocumentHost() = default;

    // --- Application-wide state ----------------------------------------------------
    // The caption of the last change filed (every commit sets it), and the one a pending
    // paste or a space commit is filed under: PASTE and the tools set it at their start.
    QString ActionLabel;
    // HistoryId of the document that was last activated (-1: none yet).
    int LastActiveDocumentId = -1;
    // The name counter: raised by one each time a document caption is made (NextCaption).
    int DocumentCounter = 0;
    // A paste is waiting to be placed (cleared when another document becomes active).
    bool PendingPaste = false;
    // The selection (or the image under it) changed; the selection work reads it.
    bool SelectionChanged = false;
    // Set at the release of a pencil stroke, just before its state is filed, and cleared by
    // the release of any other painting tool: the last painted state came from the pencil.
    bool PencilStroke = false;
    // Tool bar paste mode; a change of tool sets it to 0.
    int PasteMode = 0;

    // --- Shared pixel buffers (released at unload) ----------------------------------
    // What a paste places (`ClipBuffer`); its channel 3 is the skip mask that
    // BitsPaintPreMasked reads.
    Bits ClipBuffer;
    // The current stamp of the Stamp panel (`GetStampBits`).
    Bits StampBits;
    // The rendered text that the Text tool stamps.
    Bits TextBits;
    // The Textures Box's current texture (brush kind 6, fill kind 1).
    Bits TextureBits;

    // --- Services ------------------------------------------------------------------
    // The one long-lived filter engine, `cFilter`.
    virtual cBitFilter& Filter() = 0;
    // The content of the History Box (clip history and undo list); nullptr when absent.
    virtual fPaste* HistoryBox() = 0;
    // Parent for message boxes and dialogs (may be nullptr).
    virtual QWidget* DialogParent() = 0;

    // Puts a new document window into the MDI area (inside a QMdiSubWindow) and shows it.
    virtual void AddDocumentWindow(fImage* document) = 0;
    // Takes a closing document out of the application's window list.
    virtual void RemoveDocumentWindow(fImage* document) = 0;
    // Every open document window, in any order.
    virtual std::vector<fImage*> Documents() = 0;

    // Runs a command word through the main window's dispatch (`MenuStatic`/`MenuExec`).
    virtual void RunCommand(const QString& word) = 0;

    // The keyed panels of the status bar: "Pixel", "Zoom" (and the others the main window
    // has). ClearStatusPanels empties all of them.
    virtual void SetStatusPanel(const QString& key, const QString& text) = 0;
    virtual void ClearStatusPanels() = 0;
    // Shows the active document's scale in the main window's zoom combo and in the "Zoom"
    // panel ("3 : 1", "1 : 4").
    virtual void ShowZoom(ViewScale scale) = 0;

    // A hand scrolling button of the tool bar ("MouseScroll" or "MM") is down.
    virtual bool HandScrollDown() = 0;

    // The pan window: refresh it if visible; clear it (when the last document closes).
    virtual void RefreshPanView() = 0;
    virtual void ClearPanView() = 0;
    // The Optimize Box reloads its preview from TempBitmapName().
    virtual void ReloadOptimizePreview() = 0;
    // The Layer Box hears that the document numbered historyId saved an undo state.
    virtual void UndoStateSaved(int historyId) = 0;
    // Rebuilds the recent-file menu entries from the settings (`FillRecent`).
    virtual void FillRecent() = 0;

    // A document became active (after its own activation work): the main window swaps in
    // its layers (`SwapLayers`), refreshes the Optimize settings box and starts the tool
    // timer (`StartTimer`). DocumentDeactivated stops the timer (`StopTimer`).
    virtual void DocumentActivated(fImage* document) = 0;
    virtual void DocumentDeactivated(fImage* document) = 0;
    // A document filed a change of its pixels (the host's changed flag follows).
    virtual void DocumentCommitted(fImage* document) { (void)document; }
    // The GetColor tool picked a colour (0x00BBGGRR) under the mouse: the Color Box shows
    // it live in its sliders and sample and it becomes the foreground colour.
    virtual void ColorPicked(int32_t colour) { (void)colour; }

    // The view of a document changed (0 Enhanced, 1 Layers, 2 Optimize): enable the menu
    // and toolbar commands that belong to it.
    virtual void ViewChanged(fImage* document, int view) = 0;
};

// The host installed by the main window (or a test). nullptr until installed.
DocumentHost* GetDocumentHost();
void SetDocumentHost(DocumentHost* host);

} // namespace ostrivex
