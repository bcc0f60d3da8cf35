// fMain: the main window. A document area (QMdiArea) with the document windows, the menus
// built from the menu table, the tool toolbar `tbTool`, a status bar with a progress bar
// and the zoom combo, and the seven tool boxes as owned tool windows.
//
// Every menu click ends in `MenuStatic`, `MenuExec`, `ApplyLayerEffects` or a named
// routine (menuClick). The main window is also the document windows' host.
#pragma once

#include "app/commands/menu_table.h"
#include "document/host.h"
#include "pixel/bitfilter.h"
#include "pixel/bits.h"

#include <QMainWindow>

#include <array>
#include <functional>
#include <map>
#include <memory>

class QAction;
class QActionGroup;
class QComboBox;
class QLabel;
class QMdiArea;
class QMenu;
class QProgressBar;
class QToolBar;

namespace ostrivex {

class ToolBox;
class ToolPanels;
class fPanView;
class fToolBrowser;
class fToolColor;
class fToolTextures;
class finfo;

class fMain : public QMainWindow, public DocumentHost {
    Q_OBJECT
  public:
    // The seven boxes, in the order of their Views entries (4 to 10).
    enum Box {
        BoxColor,
        BoxTextures,
        BoxHistory,
        BoxPanoramic,
        BoxBrowser,
        BoxOptimize,
        BoxLayer,
        BoxCount
    };
    // The keys of the `tbTool` buttons, in button order (index 0 first).
    static const std::array<const char*, 15> ToolKeys;
    // The nine items of the zoom combo.
    static const std::array<const char*, 9> ZoomItems;

    // The load handler: builds the window, fills the zoom combo and selects its first item,
    // seeds the random generator from the clock, and sets the document counter to 0.
    explicit fMain(QWidget* parent = nullptr);
    ~fMain() override;

    // --- Dispatch --------------------------------------------------------------------
    // Commands that need no document, then, after a GetActiveDocument test, the commands
    // that act on a document as a file. An unknown word does nothing.
    void MenuStatic(const QString& word);
    // Commands on the active document's pixels or selection; returns at once without an
    // active document unless the word is CREATEFROMCLIPBOARD.
    void MenuExec(const QString& word);
    // A click on a menu entry of the table: stores LastCommandCaption where the entry's
    // family does, then calls the entry's routine.
    void menuClick(const MenuEntry& entry);
    // The layer effects (effect numbers of the effect tree).
    void ApplyLayerEffects(int effect);
    // The fixed filter commands (word -> one cBitFilter call with fixed arguments). True if
    // the word is one of them.
    bool RunFixedFilter(const QString& word);
    // The envelope of a filter command: takes cFilter, runs the operation, makes its result
    // the engine's buffer and the document's Bits, calls Update(label, true) and lets one
    // round of events through. Nothing without an active document.
    void RunFilterEnvelope(const std::function<Bits(cBitFilter&)>& operation, const QString& label);
    // The routine that took the last word or click ("" when nothing took it); the families
    // whose work is not built yet are recognised all the same.
    const QString& LastRoute() const { return lastRoute_; }
    void clearLastRoute() { lastRoute_.clear(); }

    // What every pixel command calls after a change of the active document.
    void Update(const QString& label, bool saveUndo);
    // Sets every button of tbTool up except the button with index `except`.
    void DisableTools(int except);
    // A click on button `index` of tbTool (the button's pressed state is its check state):
    // the picture of the current tool, the document back to its Enhanced view, a pending
    // paste taken away, `ActiveTool`, the tool's panel and the paste mode.
    void tbTool_ButtonClick(int index);
    // Kept as an empty routine that returns 0.
    int KeyNum(int key, int value) { return 0; }
    // The text toolbar's buttons: 1 style text, 2 3D text, 3 logo maker, 0 and 4 a plain
    // grip. Works only with an active document.
    void tb_ButtonClick(int button);
    // The progress event of cFilter: values above -1 go to the progress bar and the status.
    void cFilter_Progress(int value);

    // --- Recent files, boxes, windows -------------------------------------------------
    void FillRecent() override;
    // Views entries 4 to 10: toggles the check mark; on shows the box at its stored place
    // and sets its visible flag; off clears the flag and hides it.
    void ToggleBox(int box);
    ToolBox* box(int index) const { return boxes_[size_t(index)]; }
    QAction* viewsAction(int box) const { return viewsActions_[size_t(box)]; }
    // Step 10 of start-up for one box: placed, minimised or sized, checked, shown.
    void PlaceBox(int index);
    // The screen point the boxes' stored places are measured from: the top-left corner of
    // the document area, under the menu, the tool bar and the tool panel row.
    QPoint BoxOrigin();

    // --- Life ---------------------------------------------------------------------------
    // Creates the filter engine (start-up step 8); its progress drives the status bar.
    void CreateFilter();
    // The unload handler: every other window unloaded, SaveSettings, the work files of
    // "Temp" deleted, the global buffers released. Runs once.
    void Unload();
    bool Unloaded() const { return unloaded_; }

    // --- Access for the program and tests ------------------------------------------
    QMdiArea* mdiArea() const { return mdi_; }
    QMenu* menu(const QString& objectName) const;
    QAction* action(const MenuEntry& entry) const;
    QAction* recentAction(int i) const { return recent_[size_t(i)]; }
    QToolBar* toolBar() const { return tbTool_; }
    // `iCurrentTool`, the picture of the last clicked tool button.
    QLabel* currentToolPicture() const { return iCurrentTool_; }
    // The strip of tool panels under the toolbar.
    ToolPanels* toolPanels() const { return toolPanels_; }
    // The contents of the Color Box and the Textures Box.
    fToolColor* colorBox() const { return colorContent_; }
    fToolTextures* texturesBox() const { return texturesContent_; }
    // The contents of the Panoramic Box and the Browser Box.
    fPanView* panView() const { return panContent_; }
    fToolBrowser* browserBox() const { return browserContent_; }
    // "Thumbnails Options" (from the Edit menu or the Browser Box); OK reaches the browser.
    void ShowThumbnailOptions();
    // The contents of the Optimize Box.
    finfo* optimizeBox() const { return optimizeContent_; }
    QProgressBar* progressBar() const { return progress_; }
    QComboBox* zoomCombo() const { return cbZoom_; }
    QString statusPanel(const QString& key) const;
    bool filterCreated() const { return cFilter_ != nullptr; }

    // --- DocumentHost ------------------------------------------------------------------
    cBitFilter& Filter() override;
    fPaste* HistoryBox() override { return historyContent_; }
    QWidget* DialogParent() override { return this; }
    void AddDocumentWindow(fImage* document) override;
    void RemoveDocumentWindow(fImage* document) override;
    std::vector<fImage*> Documents() override;
    void RunCommand(const QString& word) override;
    void SetStatusPanel(const QString& key, const QString& text) override;
    void ClearStatusPanels() override;
    void ShowZoom(int zoom) override;
    bool HandScrollDown() override;
    void RefreshPanView() override;
    void ClearPanView() override;
    void ReloadOptimizePreview() override;
    void UndoStateSaved(int historyId) override {}
    void DocumentActivated(fImage* document) override;
    void DocumentDeactivated(fImage* document) override {}
    void ViewChanged(fImage* document, int view) override;
    void ColorPicked(int32_t colour) override;

  protected:
    void closeEvent(QCloseEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void changeEvent(QEvent* e) override;
    void showEvent(QShowEvent* e) override;

  private:
    void buildMenus();
    void buildToolBar();
    void buildStatusBar();
    void buildBoxes();
    void runRoutine(const MenuEntry& entry);
    void recentClick(int i);
    void closeBox(int index);
    void applyBoxState(int index, bool on);
    void rememberMainSize();
    // Notes that `name` took the last word (for the families not built yet, that is all
    // that happens).
    void route(const QString& name) { lastRoute_ = name; }

    QMdiArea* mdi_ = nullptr;
    QToolBar* tbTool_ = nullptr;
    QToolBar* tbText_ = nullptr;
    QToolBar* tbPanels_ = nullptr;
    QLabel* iCurrentTool_ = nullptr;
    ToolPanels* toolPanels_ = nullptr;
    fToolColor* colorContent_ = nullptr;
    fToolTextures* texturesContent_ = nullptr;
    fPanView* panContent_ = nullptr;
    fToolBrowser* browserContent_ = nullptr;
    finfo* optimizeContent_ = nullptr;
    QComboBox* cbZoom_ = nullptr;
    QProgressBar* progress_ = nullptr;
    std::map<QString, QLabel*> statusPanels_;
    std::map<QString, QMenu*> menus_;
    std::map<const MenuEntry*, QAction*> actions_;
    std::array<QAction*, RecentEntryCount> recent_{};
    std::array<ToolBox*, BoxCount> boxes_{};
    std::array<QAction*, BoxCount> viewsActions_{};
    fPaste* historyContent_ = nullptr;
    std::unique_ptr<cBitFilter> cFilter_;
    QString lastRoute_;
    bool unloaded_ = false;
    bool shownOnce_ = false;
};

} // namespace ostrivex
