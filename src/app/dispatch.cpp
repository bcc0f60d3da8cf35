// The command dispatch of the main window: MenuStatic, MenuExec, the layer effects and the
// named routines of the menu table. Each chain is a run of exact comparisons where the
// first match wins; a word that matches nothing does nothing and reports nothing.
//
// The families whose work lives elsewhere and is not built yet are recognised here and
// handed to the routine that will serve them (see docs/command-routing.md); for now those
// routines only note that they were reached.
#include "app/fmain.h"

#include "app/globals.h"
#include "app/filters/ffilter.h"
#include "app/filters/fhistogram.h"
#include "app/filters/filter_table.h"
#include "app/filters/fpaletteapply.h"
#include "app/filters/fuserfilter.h"
#include "app/settings/settings.h"
#include "app/shell/about.h"
#include "app/shell/help.h"
#include "app/shell/keyboard.h"
#include "app/shell/options.h"
#include "app/shell/resetsettings.h"
#include "app/sizing/sizing.h"
#include "app/textdialogs.h"
#include "document/clipboard.h"
#include "document/dialogs.h"
#include "document/fileops.h"
#include "document/fimage.h"
#include "imagefile/fNew.h"
#include "imagefile/fProperties.h"
#include "pixel/fixedcommands.h"
#include "pixel/oiffile.h"
#include "utilities/capture/capture.h"
#include "utilities/capture/fcapture.h"
#include "utilities/overlay/foverlay.h"
#include "utilities/print/printing.h"
#include "utilities/wallpaper/wallpaper.h"
#include "web/finfo.h"
#include "web/fweb.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QUrl>

#include <initializer_list>
#include <stdexcept>

namespace ostrivex {

namespace {

bool isOneOf(const QString& word, std::initializer_list<const char*> words) {
    for (const char* w : words)
        if (word == QLatin1String(w)) return true;
    return false;
}

// The maker's pages behind the About menu.
constexpr const char* kOnlineMaterialsUrl = "https://ostrivex.org/materials";
constexpr const char* kSupportUrl = "https://ostrivex.org/support";
constexpr const char* kHomepageUrl = "https://ostrivex.org/";

// Tile Horizontally lays the documents one under the other, each the full width of the
// area; Tile Vertically lays them side by side, each the full height.
void tileSubWindows(QMdiArea* area, bool horizontally) {
    QList<QMdiSubWindow*> list;
    for (QMdiSubWindow* w : area->subWindowList())
        if (!w->isMinimized() && w->isVisible()) list.push_back(w);
    if (list.isEmpty()) return;
    const QRect r = area->viewport()->rect();
    const int n = int(list.size());
    for (int i = 0; i < n; ++i) {
        list[i]->showNormal();
        if (horizontally) {
            const int y0 = r.height() * i / n, y1 = r.height() * (i + 1) / n;
            list[i]->setGeometry(0, y0, r.width(), y1 - y0);
        } else {
            const int x0 = r.width() * i / n, x1 = r.width() * (i + 1) / n;
            list[i]->setGeometry(x0, 0, x1 - x0, r.height());
        }
    }
}

// The selection commands. Each ends with the document's SelectionChanged: cFilter gets the
// new EffectiveRegion, the canvas repaints, and the ants start or stop.
void runSelectionCommand(QWidget* parent, fImage* doc, const QString& word) {
    if (!doc->PictureExists()) return;
    cBitRegion& selection = doc->Region();
    const int32_t w = doc->PictureWidth(), h = doc->PictureHeight();
    static const QString kFilter = QStringLiteral("Selection Files (*.osf)|*.osf");
    const QString folder = QString::fromStdString(AppFolder()) + "/Selections";
    if (word == "SELECTALL") {
        selection.Init(0, 0, w, h);
        selection.CreateRect(0, 0, w, h, cBitRegion::ModeUnion, false);
    } else if (word == "SELECTNONE") {
        selection.Init(0, 0, w, h);
    } else if (word == "INVERTSELECTION") {
        selection.Invert();
    } else if (word == "LOADSELECTION") {
        const QString path =
            DocumentDialogs::AskOpenName(parent, "Load selection", folder, kFilter);
        if (path.isEmpty()) return;
        // An unreadable or damaged file leaves no selection or the old one: either way the
        // document is told below.
        selection.LoadFromFile(path.toStdString());
    } else if (word == "SAVESELECTION") {
        QString path = DocumentDialogs::AskSaveName(parent, "Save selection", folder,
                                                    kFilter, QString());
        if (path.isEmpty()) return;
        // A name typed without an extension gets the selection files' own.
        if (QFileInfo(path).suffix().isEmpty()) path += ".osf";
        selection.SaveToFile(path.toStdString());
        return; // the selection is as it was
    }
    doc->SelectionChanged();
}

} // namespace

void fMain::menuClick(const MenuEntry& entry) {
    if (StoresLastCaption(entry))
        LastCommandCaption = QString::fromStdString(LastCaptionFor(entry));
    const QString word = QString::fromUtf8(entry.word.data(), qsizetype(entry.word.size()));
    switch (entry.route) {
    case MenuRoute::Static:
        MenuStatic(word);
        break;
    case MenuRoute::Exec:
        MenuExec(word);
        break;
    case MenuRoute::LayerEffect:
        ApplyLayerEffects(entry.effect);
        break;
    case MenuRoute::Routine:
        runRoutine(entry);
        break;
    case MenuRoute::Separator:
    case MenuRoute::Submenu:
        break;
    }
}

void fMain::MenuStatic(const QString& word) {
    // Commands that need no document.
    if (word == "NEW") {
        route("fNew");
        fNew dialog(this);
        if (dialog.exec() == QDialog::Accepted) {
            const NewImageRequest r = dialog.request();
            NewDocument(r.width, r.height, r.background == NewImageRequest::Background::Transparent,
                        r.fillColour());
        }
    } else if (word == "OPEN") {
        route("OpenImage");
        OpenCommand(this);
    } else if (word == "TILEHORIZONTALLY") {
        tileSubWindows(mdi_, true);
        route("TileHorizontally");
    } else if (word == "TILEVERTICALLY") {
        tileSubWindows(mdi_, false);
        route("TileVertically");
    } else if (word == "CASCADE") {
        mdi_->cascadeSubWindows();
        route("Cascade");
    } else if (word == "RESET") {
        route("ResetSettings");
        ResetSettings(this);
    } else if (isOneOf(word, {"CAPTUREDESKTOP", "CAPTUREFOREGROUND", "CAPTUREBACKGROUND"})) {
        route("Capture");
        ScreenCapture::For(this).Capture(word == "CAPTUREDESKTOP"      ? ScreenCapture::Desktop
                                         : word == "CAPTUREFOREGROUND" ? ScreenCapture::Foreground
                                                                       : ScreenCapture::Background);
    } else if (word == "PRINTERSETUP") {
        route("PrinterSetup");
        PrintSession::For(this).PrinterSetup(this);
    } else if (word == "SELECTSOURCE" || word == "ACQUIRETWAIN") {
        // Kept in the chain; these branches do nothing.
    } else {
        // The commands that act on a document as a file.
        if (!GetActiveDocument(ActiveDocument)) return;
        fImage* doc = ActiveDocument;
        if (word == "CLOSE") {
            // The document window's own close handling asks where it must.
            route("CloseDocument");
            if (QMdiSubWindow* sub = mdi_->currentSubWindow()) sub->close();
        } else if (word == "SAVE") {
            route("SaveDocument");
            SaveEnhanced(doc);
        } else if (word == "SAVEAS") {
            route("SaveDocument");
            SaveEnhancedAs(doc);
        } else if (word == "SAVELAYEREDIMAGE") {
            route("SaveDocument");
            SaveLayered(doc);
        } else if (word == "SAVELAYEREDIMAGEAS") {
            route("SaveDocument");
            SaveLayeredAs(doc);
        } else if (word == "SAVEOPTIMIZED") {
            route("SaveDocument");
            SaveOptimized(doc);
        } else if (word == "SAVEOPTIMIZEDAS") {
            route("SaveDocument");
            SaveOptimizedAs(doc);
        } else if (word == "IMAGESAVEOPTIONS") {
            route("WebExport");
            if (doc->PictureExists() && optimizeContent_) {
                FWeb dialog(doc->bits(), optimizeContent_->Settings(), this);
                dialog.exec();
            }
        } else if (word == "UPDATELAYERS" || word == "UPDATEORIGINAL") {
            route("LayerViews");
        } else if (isOneOf(word, {"WTILE", "WCENTER", "WSTRETCH"})) {
            route("Wallpaper");
            SetDocumentAsWallpaper(*doc,
                                   word == "WTILE"     ? WallpaperTile
                                   : word == "WCENTER" ? WallpaperCenter
                                                       : WallpaperStretch,
                                   this);
        }
    }
}

void fMain::MenuExec(const QString& word) {
    const bool haveDocument = GetActiveDocument(ActiveDocument);
    if (!haveDocument && word != "CREATEFROMCLIPBOARD") return;
    fImage* doc = ActiveDocument;

    if (word == "UNDO") {
        route("UndoBits");
        doc->UndoBits();
        ReloadOptimizePreview(); // the Optimize view follows the pixels back
    } else if (word == "REDO") {
        route("RedoBits");
        doc->RedoBits();
        ReloadOptimizePreview();
    } else if (isOneOf(word, {"CUT", "COPY", "PASTE", "CREATENEWCOPY", "COPYIMAGETOCLIPBOARD",
                              "CREATEFROMCLIPBOARD", "CROP", "NEWIMAGEFROMCROP"})) {
        route("Clipboard");
        // The undo step of a change is filed under the menu entry's caption ("Cut", "Crop").
        const auto caption = [&word] {
            const MenuEntry* entry = FindMenuWord(word.toStdString());
            return entry ? QString::fromStdString(LastCaptionFor(*entry)) : word;
        };
        if (word == "CREATEFROMCLIPBOARD") { // the one word that needs no document
            CreateFromClipboard(*this);
        } else if (word == "CUT") {
            if (CutBits(*doc, *this)) Update(caption(), true);
        } else if (word == "COPY") {
            CopyBits(*doc, *this);
        } else if (word == "PASTE") {
            PasteBits(*doc, *this);
        } else if (word == "CREATENEWCOPY") {
            CreateNewCopy(*doc, *this);
        } else if (word == "COPYIMAGETOCLIPBOARD") {
            BitsCopyToClipboard(*doc);
        } else if (word == "CROP") {
            if (CropToSelection(*doc, *this)) Update(caption(), true);
        } else {
            NewImageFromCrop(*doc, *this);
        }
    } else if (isOneOf(word, {"SELECTALL", "SELECTNONE", "INVERTSELECTION", "LOADSELECTION",
                              "SAVESELECTION"})) {
        route("Selection");
        runSelectionCommand(DialogParent(), doc, word);
    } else if (word == "IMAGEPROPERTIES") {
        route("fProperties");
        fProperties dialog(doc->FileName.toStdString(), doc->Caption().toStdString(),
                           doc->PictureWidth(), doc->PictureHeight(), this);
        dialog.exec();
    } else if (word == "OPTIONS") {
        route("fOptions");
        ShowThumbnailOptions();
    } else if (word == "PRINT" || word == "PRINTPREVIEW") {
        route("Print");
        if (word == "PRINT")
            PrintSession::For(this).Print(*doc, this);
        else
            PrintSession::For(this).PrintPreview(*doc, this);
    } else if (isOneOf(word, {"IMAGESIZE", "CANVASSIZE", "IMAGEORIENTATION", "IMAGEROTATE"})) {
        route("SizeDialog");
        RunSizingDialog(*this, word);
    } else if (isOneOf(word, {"200", "300", "400", "500", "600",      "700",    "50", "33",
                              "25",  "20",  "15",  "10",  "2x",       "3x",     "4x", "5x",
                              "x2",  "x3",  "x4",  "x5",  "ORIGINAL", "RESTORE"})) {
        route("ZoomImage");
        RunZoomWord(*this, word);
    } else if (isOneOf(word, {"N90", "N180", "N270", "N45", "A90", "A180", "A270", "A45"})) {
        route("RotateImage");
        RunRotateWord(*this, word);
    } else if (isOneOf(word,
                       {"EXTRACTICON", "IMAGESCALE", "IMAGEMERGING", "IMAGECAPTURER",
                        "IMAGETEXTURES", "IMAGERESOLUTION", "IMAGECOLORDEPTH", "TEXTTOOLS"})) {
        // Left in the chain with nothing behind them.
    } else if (const int32_t number = FilterDialogNumber(word.toStdString()); number >= 0) {
        // A filter with a dialog: fFilter previews from cFilter and, on OK, runs the
        // envelope once under the caption of the entry (or the word), as the fixed
        // commands do.
        route("FilterDialog");
        const MenuEntry* entry = FindMenuWord(word.toStdString());
        const QString label = entry && !LastCommandCaption.isEmpty() ? LastCommandCaption : word;
        FilterDialogHost host;
        host.document = doc;
        host.filter = &Filter();
        host.progress = [this](int percent) { cFilter_Progress(percent); };
        host.hideProgress = [this] { progressBar()->setValue(0); };
        host.update = [this](const QString& l, bool saveUndo) { Update(l, saveUndo); };
        host.commit = [this, label](const std::function<Bits(cBitFilter&)>& operation) {
            RunFilterEnvelope(operation, label);
        };
        ShowFilterDialog(number, host, this);
    } else if (word == "TALCOMPOWDER") {
        // Kept in the chain; it does nothing.
    } else if (RunFixedFilter(word)) { // the fixed commands, FLIPH and FLIPV among them
        route("RunFixedFilter");
    }
}

bool fMain::RunFixedFilter(const QString& word) {
    // One table of words and their fixed calls serves the menus and the batch tool.
    const FixedCommand* command = FindFixedCommand(word.toStdString());
    if (!command) return false;
    // The history names the state after the entry that was clicked; a word that no entry
    // sent is named by itself.
    const MenuEntry* entry = FindMenuWord(word.toStdString());
    const QString label = entry && !LastCommandCaption.isEmpty() ? LastCommandCaption : word;
    // One turn of the event queue first, so the menu closes and the window repaints before
    // a long filter starts.
    QCoreApplication::processEvents();
    RunFilterEnvelope([command](cBitFilter& f) { return command->run(f); }, label);
    return true;
}

void fMain::RunFilterEnvelope(const std::function<Bits(cBitFilter&)>& operation,
                              const QString& label) {
    if (!GetActiveDocument(ActiveDocument)) return;
    cBitFilter& filter = Filter();          // 1.
    const cBitFilter::ReuseScope reuse(filter); // 3. replaces the buffer: build it in place
    Bits result = operation(filter);        // 2.
    filter.SetBits(std::move(result));      // 3.
    ActiveDocument->SetBits(filter.bits()); // 4.
    // Writing a document's pixels shows them; Update draws only for an empty label.
    ActiveDocument->UpdateImage();
    Update(label, true);               // 5.
    QCoreApplication::processEvents(); // 6.
}

void fMain::ApplyLayerEffects(int effect) {
    // The hidden blend modes carry no effect of the tree.
    if (effect <= 0) return;
    if (!GetActiveDocument(ActiveDocument)) return;
    route("ApplyLayerEffects");
}

void fMain::runRoutine(const MenuEntry& entry) {
    const std::string_view name = entry.word;
    const QString qname = QString::fromUtf8(name.data(), qsizetype(name.size()));
    if (name == "Exit") {
        route(qname);
        close();
    } else if (name == "ToggleBox") {
        ToggleBox(entry.index - 4);
    } else if (name == "OpenHelp") {
        route(qname);
        OpenHelp(this);
    } else if (name == "OnlineMaterials" || name == "Support" || name == "Homepage") {
        route(qname);
        const char* url = name == "Support"    ? kSupportUrl
                          : name == "Homepage" ? kHomepageUrl
                                               : kOnlineMaterialsUrl;
        QDesktopServices::openUrl(QUrl(url));
    } else if (name == "fKeyboard") {
        route(qname);
        fKeyboard dialog(this);
        dialog.exec();
    } else if (name == "fAbout") {
        route(qname);
        fAbout dialog(this);
        dialog.exec();
    } else if (name == "fPaletteApply") {
        if (!GetActiveDocument(ActiveDocument)) return;
        route(qname);
        // The dialog previews on its own copy; OK hands back the whole result, which then
        // goes the way of every filter: cFilter, the document, and an undo step.
        fPaletteApply dialog(Filter().bits(), Filter().region(),
                             QString::fromStdString(AppFolder()) + "/Palettes", Palette, this);
        dialog.exec();
        if (!dialog.applied()) return;
        Filter().SetBits(dialog.appliedBits());
        ActiveDocument->SetBits(Filter().bits());
        ActiveDocument->UpdateImage();
        Update(fPaletteApply::kUndoCaption, true);
    } else if (name == "fHistogram") {
        if (!GetActiveDocument(ActiveDocument)) return;
        route(qname);
        fHistogram dialog(Filter().bits(), this);
        dialog.exec();
    } else if (name == "UserFilters") {
        route(qname);
        // The dialog opens without a document as well, so filters can be written, loaded
        // and saved; OK then applies nothing (the envelope finds no active document).
        fUserFilter dialog(QString::fromStdString(AppFolder()) + "/" + kFilterFolder, this);
        dialog.exec();
        if (!dialog.applied()) return;
        const FilterMask record = dialog.record();
        const bool keepMargins = dialog.keepMargins();
        try {
            RunFilterEnvelope(
                [&](cBitFilter& f) { return f.MaskFilter(record, keepMargins); },
                fUserFilter::kUndoCaption);
        } catch (const std::overflow_error&) {
            // Huge coefficients can carry a sum past 32 bits; the image stays as it was.
            DocumentDialogs::Inform(this, QString::fromLatin1(fUserFilter::kOverflowText),
                                    dialog.windowTitle());
        }
    } else if (name == "fCapture") {
        route(qname);
        // One dialog at a time, left open beside the main window until a capture starts.
        auto* dialog = findChild<fCapture*>();
        if (!dialog) dialog = new fCapture(ScreenCapture::For(this), this);
        dialog->show();
        dialog->raise();
        dialog->activateWindow();
    } else if (name == "fOverlay") {
        // Lays another open document over the active one; nothing without one.
        route(qname);
        if (!GetActiveDocument(ActiveDocument)) return;
        OverlayHost window;
        window.envelope = [this](const std::function<Bits(cBitFilter&)>& operation,
                                 const QString& label) { RunFilterEnvelope(operation, label); };
        window.update = [this](const QString& label) { Update(label, true); };
        RunOverlayDialog(ActiveDocument, *this, window, this);
    } else if (name == "RestoreOriginal") {
        if (!GetActiveDocument(ActiveDocument)) return;
        route(qname);
        RestoreOriginal(*this);
    } else if (name == "NEWLAYER_Click" && entry.index >= 0 && entry.index <= 2) {
        // "Shadow Text", "3D Text", "Style Text": the text dialogs, on the active document.
        if (!GetActiveDocument(ActiveDocument)) return;
        route(qname);
        OpenTextDialog(this, entry.index == 0   ? TextDialogKind::Logo
                             : entry.index == 1 ? TextDialogKind::Text3D
                                                : TextDialogKind::StyleText);
    } else {
        // The layer routines and the bump mapping dialog: all act on the active document.
        if (!GetActiveDocument(ActiveDocument)) return;
        route(qname);
    }
}

} // namespace ostrivex
