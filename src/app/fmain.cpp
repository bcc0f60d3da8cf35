#include "app/fmain.h"

#include "app/colour/ftoolcolor.h"
#include "app/colour/pickcolour.h"
#include "app/globals.h"
#include "app/panels/toolicons.h"
#include "app/shell/options.h"
#include "app/settings/settings.h"
#include "app/shell/compactpath.h"
#include "app/textdialogs.h"
#include "app/textures/ftooltextures.h"
#include "app/toolbox.h"
#include "app/toolpanels.h"
#include "document/fileops.h"
#include "document/fimage.h"
#include "document/fpaste.h"
#include "imagefile/fNew.h"
#include "imagefile/imagefile.h"
#include "pixel/random.h"
#include "utilities/browser/ftoolbrowser.h"
#include "utilities/panview/fpanview.h"
#include "web/finfo.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLayout>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QWindow>
#include <QWindowStateChangeEvent>

namespace ostrivex {

fImage* ActiveDocument = nullptr;
QString LastCommandCaption;
bool DocumentChanged = false;
fMain* MainWindow = nullptr;

bool GetActiveDocument(fImage*& ref) {
    if (!MainWindow) return false;
    QMdiSubWindow* sub = MainWindow->mdiArea()->currentSubWindow();
    if (!sub) return false;
    auto* doc = qobject_cast<fImage*>(sub->widget());
    if (!doc) return false;
    ref = doc;
    return true;
}

const std::array<const char*, 15> fMain::ToolKeys{
    "Pencil",   "ZoomIn",        "ZoomOut",  "MouseScroll", "MM",
    "GetColor", "SelectionMove", "Select",   "Brush",       "Airbrush",
    "Stamp",    "Fill",          "Gradient", "Shape",       "Layers"};

// The zoom factors the combo offers: 1 : 1 to 9 : 1 first, as they always were (a
// document's factor runs from 1 to 15, and one past the ninth shows as no selection), then
// the reductions below 1 : 1 and "Fit in window".
const std::array<const char*, 19> fMain::ZoomItems{
    "1 : 1", "2 : 1", "3 : 1", "4 : 1",  "5 : 1",  "6 : 1",  "7 : 1",
    "8 : 1", "9 : 1", "1 : 2", "1 : 3",  "1 : 4",  "1 : 5",  "1 : 6",
    "1 : 8", "1 : 10", "1 : 12", "1 : 16", "Fit in window"};

namespace {

// Box names, captions and settings fields, in Views order. Sizes of the fixed boxes are
// the program's own choice (the stored layout leaves room for them between their
// neighbours' default places).
struct BoxInfo {
    const char* form;
    const char* caption;
    BoxFields fields;
};

using SR = SettingsRecord;
const std::array<BoxInfo, fMain::BoxCount> kBoxes{{
    {"fToolColor",
     "Color Box",
     {&SR::ColorBoxVisible, &SR::ColorBoxLeft, &SR::ColorBoxTop, nullptr, nullptr,
      &SR::ColorBoxMinimized, QSize(210, 134)}},
    {"fToolTextures",
     "Textures Box",
     {&SR::TexturesBoxVisible, &SR::TexturesBoxLeft, &SR::TexturesBoxTop, nullptr, nullptr,
      &SR::TexturesBoxMinimized, QSize(210, 160)}},
    {"fPaste",
     "History Box",
     {&SR::HistoryBoxVisible, &SR::HistoryBoxLeft, &SR::HistoryBoxTop, &SR::HistoryBoxWidth,
      &SR::HistoryBoxHeight, &SR::HistoryBoxMinimized, QSize()}},
    {"fPanView",
     "Panoramic View",
     {&SR::PanoramicBoxVisible, &SR::PanoramicBoxLeft, &SR::PanoramicBoxTop, &SR::PanoramicBoxWidth,
      &SR::PanoramicBoxHeight, &SR::PanoramicBoxMinimized, QSize()}},
    {"fToolBrowser",
     "Thumbnail Browser",
     {&SR::BrowserBoxVisible, &SR::BrowserBoxLeft, &SR::BrowserBoxTop, &SR::BrowserBoxWidth,
      &SR::BrowserBoxHeight, &SR::BrowserBoxMinimized, QSize()}},
    {"finfo",
     "Optimize Box",
     {&SR::OptimizeBoxVisible, &SR::OptimizeBoxLeft, &SR::OptimizeBoxTop, nullptr, nullptr,
      &SR::OptimizeBoxMinimized, QSize(210, 155)}},
    {"fLayerBox",
     "Layer Box",
     {&SR::LayerBoxVisible, &SR::LayerBoxLeft, &SR::LayerBoxTop, &SR::LayerBoxWidth,
      &SR::LayerBoxHeight, &SR::LayerBoxMinimized, QSize()}},
}};

// Load order of the boxes at start-up: Color, Textures, History, Browser, Optimize,
// Panoramic, Layer.
constexpr std::array<int, fMain::BoxCount> kLoadOrder{
    fMain::BoxColor,    fMain::BoxTextures,  fMain::BoxHistory, fMain::BoxBrowser,
    fMain::BoxOptimize, fMain::BoxPanoramic, fMain::BoxLayer};

QString qs(std::string_view s) {
    return QString::fromUtf8(s.data(), qsizetype(s.size()));
}

} // namespace

fMain::fMain(QWidget* parent) : QMainWindow(parent) {
    setObjectName("fMain");
    setWindowTitle("Ostrivex");
    MainWindow = this;
    SetDocumentHost(this);

    mdi_ = new QMdiArea(this);
    mdi_->setObjectName("MDIArea");
    mdi_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdi_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(mdi_);

    buildMenus();
    buildToolBar();
    buildStatusBar();
    buildBoxes();

    // The load handler's own steps.
    cbZoom_->setCurrentIndex(0);
    Randomize(static_cast<uint32_t>(QDateTime::currentMSecsSinceEpoch()));
    DocumentCounter = 0;
    // The new-image dialog lives below the application; its colour well opens the
    // program's own chooser.
    fNew::ChooseColour = [](QWidget* parent, int32_t& colour) { return PickColour(parent, colour); };
    InstallTextDialogs();
}

fMain::~fMain() {
    DocumentFiles::OptimizedFileExtension = nullptr;
    DocumentFiles::ExtractOptimized = nullptr;
    if (GetDocumentHost() == this) SetDocumentHost(nullptr);
    if (MainWindow == this) MainWindow = nullptr;
    ActiveDocument = nullptr;
    // The boxes are owned windows; they go with the main window.
}

// --- Building ---------------------------------------------------------------------------

void fMain::buildMenus() {
    for (const TopMenu& t : TopMenus()) {
        QMenu* m = menuBar()->addMenu(qs(t.caption));
        m->setObjectName(qs(t.name));
        menus_[qs(t.name)] = m;
    }
    std::map<std::pair<QString, QString>, QMenu*> submenus;
    for (const MenuEntry& e : MenuTable()) {
        QMenu* into = menus_[qs(e.menu)];
        if (!e.parent.empty()) into = submenus[{qs(e.menu), qs(e.parent)}];
        if (e.route == MenuRoute::Separator) {
            QAction* a = into->addSeparator();
            actions_[&e] = a;
            continue;
        }
        if (e.route == MenuRoute::Submenu) {
            QMenu* sub = into->addMenu(qs(e.caption));
            submenus[{qs(e.menu), qs(e.caption)}] = sub;
            sub->menuAction()->setVisible(!e.hidden);
            actions_[&e] = sub->menuAction();
            if (e.caption == "Recent") {
                for (int i = 0; i < RecentEntryCount; ++i) {
                    QAction* rf = sub->addAction(QString());
                    rf->setObjectName(QString("RF%1").arg(i));
                    rf->setVisible(i == 0);
                    connect(rf, &QAction::triggered, this, [this, i] { recentClick(i); });
                    recent_[size_t(i)] = rf;
                }
            }
            continue;
        }
        QAction* a = into->addAction(qs(e.caption));
        if (!e.key.empty()) a->setShortcut(QKeySequence(qs(e.key)));
        a->setVisible(!e.hidden);
        a->setEnabled(!e.disabled);
        actions_[&e] = a;
        if (e.word == "ToggleBox") {
            // The check mark is the box's state: a click flips it, and the flip shows or
            // hides the box.
            const int box = e.index - 4;
            a->setCheckable(true);
            viewsActions_[size_t(box)] = a;
            connect(a, &QAction::toggled, this, [this, box](bool on) { applyBoxState(box, on); });
            continue;
        }
        const MenuEntry* entry = &e;
        connect(a, &QAction::triggered, this, [this, entry] { menuClick(*entry); });
    }
}

// The pictures' tips, in button order. "MouseScroll" scrolls by dragging the picture with
// the hand; "MM" does the same as a separate button of the bar.
namespace {
const std::array<const char*, 15> kToolTips{
    "Pencil",    "Zoom in",        "Zoom out", "Hand scroll", "Move view",
    "Get color", "Move selection", "Select",   "Brush",       "Airbrush",
    "Stamp",     "Fill",           "Gradient", "Shape",       "Layers"};
} // namespace

void fMain::buildToolBar() {
    tbTool_ = addToolBar("tbTool");
    tbTool_->setObjectName("tbTool");
    tbTool_->setMovable(false);
    tbTool_->setIconSize(QSize(24, 24));
    // Every tool button but the two zoom buttons stays down while its tool is on; the zoom
    // buttons act once and leave the tool as it was.
    for (size_t i = 0; i < ToolKeys.size(); ++i) {
        const QString key = ToolKeys[i];
        QAction* a = tbTool_->addAction(ToolIcon(key), key);
        a->setObjectName(key);
        a->setCheckable(key != "ZoomIn" && key != "ZoomOut");
        a->setToolTip(kToolTips[i]);
        connect(a, &QAction::triggered, this, [this, i] { tbTool_ButtonClick(int(i)); });
    }
    tbTool_->addSeparator();
    iCurrentTool_ = new QLabel(tbTool_);
    iCurrentTool_->setObjectName("iCurrentTool");
    iCurrentTool_->setFixedSize(36, 36);
    iCurrentTool_->setAlignment(Qt::AlignCenter);
    iCurrentTool_->setFrameShape(QFrame::StyledPanel);
    iCurrentTool_->setToolTip("Current tool");
    tbTool_->addWidget(iCurrentTool_);

    // The text toolbar and the zoom combo share the first row.
    tbText_ = addToolBar("tb");
    tbText_->setObjectName("tb");
    tbText_->setMovable(false);
    cbZoom_ = new QComboBox(tbText_);
    cbZoom_->setObjectName("cbZoom");
    for (const char* item : ZoomItems)
        cbZoom_->addItem(item);
    tbText_->addWidget(cbZoom_);
    tbText_->addSeparator();
    connect(cbZoom_, &QComboBox::activated, this, [this](int index) {
        fImage* doc = nullptr;
        if (!GetActiveDocument(doc)) return;
        constexpr int reductions = int(ViewState::kReductions.size());
        if (index < 9)
            doc->SetZoomFactor(index + 1);
        else if (index < 9 + reductions)
            doc->SetScale({1, ViewState::kReductions[size_t(index - 9)]});
        else
            doc->FitInWindow();
        ShowZoom(doc->Scale());
    });
    // The keys of the view's zoom: a step in or out, 1 : 1, and the whole image.
    const struct {
        const char* name;
        QList<QKeySequence> keys;
        void (fImage::*act)();
    } zoomKeys[] = {
        {"ViewZoomIn", {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)},
         &fImage::ZoomIn},
        {"ViewZoomOut", {QKeySequence(Qt::CTRL | Qt::Key_Minus)}, &fImage::ZoomOut},
        {"ViewActualPixels", {QKeySequence(Qt::CTRL | Qt::Key_1)}, nullptr},
        {"ViewFit", {QKeySequence(Qt::CTRL | Qt::Key_0)}, &fImage::FitInWindow},
    };
    for (const auto& k : zoomKeys) {
        auto* a = new QAction(this);
        a->setObjectName(k.name);
        a->setShortcuts(k.keys);
        a->setShortcutContext(Qt::WindowShortcut);
        addAction(a);
        const auto act = k.act;
        connect(a, &QAction::triggered, this, [this, act] {
            fImage* doc = nullptr;
            if (!GetActiveDocument(doc)) return;
            if (act)
                (doc->*act)();
            else
                doc->SetZoomFactor(1);
            ShowZoom(doc->Scale());
        });
    }

    // The text toolbar's buttons: a grip, style text, 3D text, logo maker, a grip.
    const char* texts[] = {"Grip", "Style Text", "3D Text", "Logo", "Layer Grip"};
    for (int i = 0; i < 5; ++i) {
        QAction* a = tbText_->addAction(texts[i]);
        connect(a, &QAction::triggered, this, [this, i] { tb_ButtonClick(i); });
    }

    // Under the tool bar, the panel of the chosen tool.
    addToolBarBreak();
    tbPanels_ = addToolBar("tbPanels");
    tbPanels_->setObjectName("tbPanels");
    tbPanels_->setMovable(false);
    toolPanels_ = new ToolPanels(tbPanels_);
    tbPanels_->addWidget(toolPanels_);
    connect(toolPanels_, &ToolPanels::stampChosen, this, [this] { GetStampBits(*this); });

    // The tool of the last run is down again, with its picture and panel.
    const QString active = QString::fromStdString(FieldText(Settings.ActiveTool));
    for (QAction* a : tbTool_->actions())
        if (!active.isEmpty() && a->objectName() == active && a->isCheckable()) {
            a->setChecked(true);
            iCurrentTool_->setPixmap(ToolPixmap(active, 32));
        }
    Tool_Frame(*this);
}

void fMain::tbTool_ButtonClick(int index) {
    const auto list = tbTool_->actions();
    if (index < 0 || index >= int(ToolKeys.size()) || index >= list.size()) return;
    // 1. Key, index, pressed state; the picture of the tool.
    QAction* button = list[index];
    const QString key = button->objectName();
    const bool pressed = button->isChecked();
    iCurrentTool_->setPixmap(ToolPixmap(key, 32));
    // One tool is down at a time.
    if (pressed) DisableTools(index);
    const bool zoom = key == "ZoomIn" || key == "ZoomOut";

    // 2. The document back to its Enhanced view; a paste still following the mouse is
    // taken away: the document gets back the pixels of cFilter, which hold the picture as
    // it was before the paste.
    fImage* doc = nullptr;
    const bool haveDoc = GetActiveDocument(doc);
    if (haveDoc) {
        ActiveDocument = doc;
        doc->cOriginal_Click();
        if (PendingPaste) {
            PendingPaste = false;
            doc->CancelEdit();
            if (doc->Region().IsEmptyRegion())
                doc->StopTimer();
            else
                doc->StartTimer();
        }
    }

    // 3. The active tool.
    if (zoom) {
        // The tool stays what it was.
        if (haveDoc) {
            if (key == "ZoomIn")
                doc->ZoomIn();
            else
                doc->ZoomOut();
            ShowZoom(doc->Scale());
        }
    } else if (key == "MouseScroll" || key == "MM") {
        if (haveDoc) doc->SetMouseScroll(true);
        SetFieldText(Settings.ActiveTool, key.toStdString());
    } else if (key == "GetColor") {
        if (haveDoc) doc->SetMouseScroll(false);
        SetFieldText(Settings.ActiveTool, key.toStdString());
    } else {
        if (haveDoc) doc->SetMouseScroll(false);
        SetFieldText(Settings.ActiveTool, pressed ? key.toStdString() : std::string());
    }

    // 4. The tool's panel.
    static const QStringList framed{"SelectionMove", "Select", "Brush",    "Airbrush", "Stamp",
                                    "Pencil",        "Fill",   "Gradient", "Shape",    "Layers"};
    if (framed.contains(key)) {
        Tool_Frame(*this);
        if (key == "Layers" && haveDoc) doc->cLayers_Click();
    }

    // 5. A pending paste mode ends with a change of tool (a zoom click changes no tool).
    if (!zoom) PasteMode = 0;
}

void fMain::ColorPicked(int32_t colour) {
    colorContent_->ShowPicked(colour);
}

void fMain::buildStatusBar() {
    QStatusBar* bar = statusBar();
    bar->setObjectName("sbStatus");
    // Keyed panels: the caption of the state on screen (or the progress of a filter), the
    // image size, the zoom, and the tools' readouts of the position and the colour under
    // the mouse and of the colour they paint with.
    for (const char* key : {"Status", "Pixel", "Zoom", "Position", "Color", "Foreground"}) {
        auto* label = new QLabel(bar);
        label->setObjectName(key);
        label->setMinimumWidth(key == QString("Status") ? 240 : 120);
        bar->addWidget(label, key == QString("Status") ? 1 : 0);
        statusPanels_[key] = label;
    }
    progress_ = new QProgressBar(bar);
    progress_->setObjectName("ProgressBar");
    progress_->setRange(0, 100);
    progress_->setValue(0);
    progress_->setMaximumWidth(200);
    bar->addPermanentWidget(progress_);
}

void fMain::buildBoxes() {
    // The boxes are tool windows transient for the main window itself, so that every window
    // manager keeps them above it (a maximised main window included) and out of the
    // taskbar. The main window's native window is made now, before any box shows: a box
    // shown without it would be transient for the program's hidden group window instead.
    winId();
    for (int i : kLoadOrder) {
        const BoxInfo& info = kBoxes[size_t(i)];
        auto* b = new ToolBox(info.form, info.caption, info.fields, this);
        b->winId();
        b->windowHandle()->setTransientParent(windowHandle());
        b->setOrigin([this] { return BoxOrigin(); });
        connect(b, &ToolBox::closeRequested, this, [this, i] { closeBox(i); });
        boxes_[size_t(i)] = b;
        // The History Box holds the clip history and the undo list, the Color and Textures
        // Boxes their colours and textures, the Panoramic and Browser Boxes the pan view and
        // the thumbnail browser; the other boxes' own controls are later work and they show
        // an empty area under their title.
        if (i == BoxPanoramic) {
            panContent_ = new fPanView(b);
            panContent_->SetActiveDocument([] {
                fImage* doc = nullptr;
                return GetActiveDocument(doc) ? doc : nullptr;
            });
            b->setContent(panContent_);
        } else if (i == BoxBrowser) {
            browserContent_ = new fToolBrowser(b);
            connect(browserContent_, &fToolBrowser::optionsRequested, this,
                    &fMain::ShowThumbnailOptions);
            b->setContent(browserContent_);
        } else if (i == BoxHistory) {
            historyContent_ = new fPaste(b);
            b->setContent(historyContent_);
        } else if (i == BoxColor) {
            colorContent_ = new fToolColor(b);
            b->setContent(colorContent_);
        } else if (i == BoxTextures) {
            texturesContent_ = new fToolTextures(*this, b);
            b->setContent(texturesContent_);
            texturesContent_->FillTextures(QString::fromLocal8Bit(AppFolder().c_str()) +
                                           "/Textures");
        } else if (i == BoxOptimize) {
            optimizeContent_ = new finfo(b);
            b->setContent(optimizeContent_);
            // The box's small form keeps the preset list and the two result lines.
            connect(optimizeContent_, &finfo::foldChanged, this, [b, this](bool folded) {
                if (b->IsMinimized()) return;
                const QSize full = b->StoredSize();
                b->setFixedSize(full.width(), folded ? ToolBox::TitleHeight + 2 + optimizeContent_->FoldedHeight()
                                                     : full.height());
            });
        }
    }
    // Save Optimized writes the box's result for the active document.
    DocumentFiles::OptimizedFileExtension = [this] {
        return optimizeContent_ ? optimizeContent_->GetOptimizedFileExtension() : QString();
    };
    DocumentFiles::ExtractOptimized = [this](const QString& path) {
        return optimizeContent_ && optimizeContent_->ExtractOptimized(ActiveDocument, path);
    };
}

// --- Menus ------------------------------------------------------------------------------

QMenu* fMain::menu(const QString& objectName) const {
    auto it = menus_.find(objectName);
    return it == menus_.end() ? nullptr : it->second;
}

QAction* fMain::action(const MenuEntry& entry) const {
    auto it = actions_.find(&entry);
    return it == actions_.end() ? nullptr : it->second;
}

void fMain::FillRecent() {
    for (int i = 0; i < RecentEntryCount; ++i) {
        const std::string path = FieldText(Settings.RecentFiles[size_t(i)]);
        QAction* a = recent_[size_t(i)];
        if (!path.empty() && FileExists(path)) {
            a->setText(CompactPath(QString::fromLocal8Bit(path.c_str()), 400));
            a->setVisible(true);
        } else if (i == 0) {
            // Entry 0 stays in the menu with an empty caption.
            a->setText(QString());
            a->setVisible(true);
        } else {
            a->setVisible(false);
        }
    }
}

void fMain::recentClick(int i) {
    const std::string path = FieldText(Settings.RecentFiles[size_t(i)]);
    if (path.empty()) return;
    route("loadBitmap");
    OpenImageFile(QString::fromLocal8Bit(path.c_str()));
}

// --- Boxes ------------------------------------------------------------------------------

void fMain::PlaceBox(int index) {
    ToolBox* b = boxes_[size_t(index)];
    const bool visible = IsTrue(Settings.*b->fields().visible);
    QAction* a = viewsActions_[size_t(index)];
    if (a->isChecked() != visible) {
        a->setChecked(visible); // shows or hides the box through applyBoxState
    } else if (visible) {
        b->PlaceFromSettings();
        b->show();
    }
}

QPoint fMain::BoxOrigin() {
    // The rows above the document area take their heights only when the window's layout
    // has run, which may not have happened yet for a window that is still hidden.
    ensurePolished();
    if (layout()) layout()->activate();
    return mdi_->mapToGlobal(QPoint(0, 0));
}

void fMain::ToggleBox(int index) {
    viewsActions_[size_t(index)]->toggle();
}

void fMain::applyBoxState(int index, bool on) {
    ToolBox* b = boxes_[size_t(index)];
    Settings.*b->fields().visible = Bool16(on);
    if (on) {
        b->PlaceFromSettings();
        b->show();
    } else {
        b->hide();
    }
}

void fMain::RefreshPanView() {
    if (panContent_) panContent_->RefreshPanView();
}

void fMain::ClearPanView() {
    if (panContent_) panContent_->Clear();
}

void fMain::ShowThumbnailOptions() {
    fOptions dialog(this);
    connect(&dialog, &fOptions::applied, this, [this] {
        if (browserContent_) browserContent_->ThumbOptionsChanged();
    });
    dialog.exec();
}

void fMain::closeBox(int index) {
    viewsActions_[size_t(index)]->setChecked(false);
}

// --- Status and progress ----------------------------------------------------------------

QString fMain::statusPanel(const QString& key) const {
    auto it = statusPanels_.find(key);
    return it == statusPanels_.end() ? QString() : it->second->text();
}

void fMain::SetStatusPanel(const QString& key, const QString& text) {
    auto it = statusPanels_.find(key);
    if (it != statusPanels_.end()) it->second->setText(text);
}

void fMain::ClearStatusPanels() {
    for (auto& [key, label] : statusPanels_)
        label->clear();
    progress_->setValue(0);
}

void fMain::ShowZoom(ViewScale scale) {
    // The combo's entry of the scale, if it has one ("Fit in window" is an action, and what
    // it gives shows as its step).
    const QString text = QStringLiteral("%1 : %2").arg(scale.num).arg(scale.den);
    cbZoom_->setCurrentIndex(cbZoom_->findText(text));
    SetStatusPanel("Zoom", text);
}

bool fMain::HandScrollDown() {
    // The two hand scrolling buttons, "MouseScroll" and "MM".
    for (QAction* a : tbTool_->actions())
        if ((a->objectName() == "MouseScroll" || a->objectName() == "MM") && a->isChecked())
            return true;
    return false;
}

void fMain::cFilter_Progress(int value) {
    if (value <= -1) return;
    progress_->setValue(value > 100 ? 100 : value);
    SetStatusPanel("Status", QString("%1 %").arg(value));
}

void fMain::DisableTools(int except) {
    const auto list = tbTool_->actions();
    for (int i = 0; i < int(ToolKeys.size()) && i < list.size(); ++i)
        if (i != except) list[i]->setChecked(false);
}

void fMain::tb_ButtonClick(int button) {
    fImage* doc = nullptr;
    if (!GetActiveDocument(doc)) return;
    ActiveDocument = doc;
    switch (button) {
    case 1:
        route("fLayerText");
        OpenTextDialog(this, TextDialogKind::StyleText);
        break;
    case 2:
        route("f3D");
        OpenTextDialog(this, TextDialogKind::Text3D);
        break;
    case 3:
        route("LogoMan");
        OpenTextDialog(this, TextDialogKind::Logo);
        break;
    case 0:
    case 4:
        route("ShowGrip");
        break; // the layer work's ShowGrip with no text, no object
    default:
        break;
    }
}

// --- Documents --------------------------------------------------------------------------

cBitFilter& fMain::Filter() {
    if (!cFilter_) CreateFilter();
    return *cFilter_;
}

void fMain::CreateFilter() {
    cFilter_ = std::make_unique<cBitFilter>();
    cFilter_->Progress = [this](int32_t& percent) { cFilter_Progress(percent); };
}

void fMain::AddDocumentWindow(fImage* document) {
    QMdiSubWindow* sub = mdi_->addSubWindow(document);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    document->show();
    sub->show();
    mdi_->setActiveSubWindow(sub);
}

void fMain::RemoveDocumentWindow(fImage* document) {
    for (QMdiSubWindow* sub : mdi_->subWindowList())
        if (sub->widget() == document) mdi_->removeSubWindow(sub);
    if (ActiveDocument == document) ActiveDocument = nullptr;
}

std::vector<fImage*> fMain::Documents() {
    std::vector<fImage*> list;
    for (QMdiSubWindow* sub : mdi_->subWindowList())
        if (auto* doc = qobject_cast<fImage*>(sub->widget())) list.push_back(doc);
    return list;
}

void fMain::RunCommand(const QString& word) {
    // A word goes to the chain its menu entry names; the words that no menu sends belong
    // to MenuExec, except two that MenuStatic keeps.
    const MenuEntry* entry = FindMenuWord(word.toStdString());
    if ((entry && entry->route == MenuRoute::Static) || word == "SELECTSOURCE" ||
        word == "ACQUIRETWAIN")
        MenuStatic(word);
    else
        MenuExec(word);
}

void fMain::DocumentActivated(fImage* document) {
    // Swapping in the document's layers and the selection timer belong to the layer and
    // selection work.
    ActiveDocument = document;
    if (optimizeContent_) optimizeContent_->ShowDocument(document);
}

void fMain::ReloadOptimizePreview() {
    fImage* doc = nullptr;
    if (optimizeContent_ && GetActiveDocument(doc)) optimizeContent_->Update(doc);
}

void fMain::ViewChanged(fImage* document, int view) {
    if (optimizeContent_ && view == fImage::ViewOptimize) optimizeContent_->ViewShown(document);
}

void fMain::DocumentCommitted(fImage* document) {
    ActiveDocument = document;
    DocumentChanged = true;
    // The work that made the change is over: the bar shows no progress.
    progress_->setValue(0);
}

// --- Main window geometry ---------------------------------------------------------------

void fMain::rememberMainSize() {
    if (!isVisible()) return;
    const Qt::WindowStates s = windowState();
    Settings.MainMaximized = Bool16(s & Qt::WindowMaximized);
    if (s & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen)) return;
    // Only a real change is stored, so a size that maps to the stored twips keeps them.
    if (TwipsToPixels(Settings.MainWidth) != width()) Settings.MainWidth = PixelsToTwips(width());
    if (TwipsToPixels(Settings.MainHeight) != height())
        Settings.MainHeight = PixelsToTwips(height());
}

void fMain::resizeEvent(QResizeEvent* e) {
    QMainWindow::resizeEvent(e);
    rememberMainSize();
}

void fMain::showEvent(QShowEvent* e) {
    QMainWindow::showEvent(e);
    if (shownOnce_) return;
    shownOnce_ = true;
    // The window may have moved when it came up (placed by the window manager, given its
    // frame): the boxes shown before follow it to their places once.
    QTimer::singleShot(0, this, [this] {
        for (int i = 0; i < BoxCount; ++i)
            if (boxes_[size_t(i)]->isVisible()) boxes_[size_t(i)]->PlaceFromSettings();
    });
}

void fMain::keepBoxesAbove() {
    // Start-up shows the boxes before the main window, and a window manager reads a window's
    // owner when it maps the window: with no main window to own them yet, openbox took the
    // boxes for windows of their own and let the main window cover them, and fluxbox gave
    // each a taskbar entry. Mapped again once the main window is managed, they are its
    // transients, which every window manager keeps above it and out of the taskbar.
    for (ToolBox* b : boxes_) {
        QWindow* w = b->windowHandle();
        if (!w || !b->isVisible()) continue;
        w->setTransientParent(windowHandle());
        b->hide();
        b->show();
    }
}

void fMain::changeEvent(QEvent* e) {
    QMainWindow::changeEvent(e);
    if (e->type() == QEvent::WindowStateChange) rememberMainSize();
    // The first activation comes once the window manager manages the window.
    if (e->type() == QEvent::ActivationChange && isActiveWindow() && !boxesAboveOnce_) {
        boxesAboveOnce_ = true;
        keepBoxesAbove();
    }
}

void fMain::closeEvent(QCloseEvent* e) {
    Unload();
    e->accept();
    QApplication::quit();
}

void fMain::Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    // 1. Every other window, last first. A document runs its own close handling, and a
    // refusal stops nothing here.
    const auto docs = Documents();
    for (auto it = docs.rbegin(); it != docs.rend(); ++it) {
        fImage* doc = *it;
        doc->QueryUnload();
        doc->Unload();
        RemoveDocumentWindow(doc);
        delete doc;
    }
    const auto windows = QApplication::topLevelWidgets();
    for (auto it = windows.rbegin(); it != windows.rend(); ++it) {
        QWidget* w = *it;
        if (w == this || !w->isWindow()) continue;
        if (auto* b = qobject_cast<ToolBox*>(w)) {
            b->hide(); // the boxes are owned windows and die with the main window
            continue;
        }
        if (w->parentWidget() == nullptr && w->isVisible()) w->close();
    }
    // 2.
    SaveSettings();
    // 3. The work files of this run and of any other that shares the folder.
    QDir temp(QString::fromLocal8Bit(AppFolder().c_str()) + "/Temp");
    for (const QFileInfo& f : temp.entryInfoList(QDir::Files | QDir::Hidden | QDir::System))
        QFile::remove(f.absoluteFilePath());
    // The current picture's work file for the Optimize box goes too: nothing of the run
    // stays in the private temporary folder.
    QFile::remove(QString::fromLocal8Bit(TempBitmapName().c_str()));
    // 4.
    ClipBuffer = Bits();
    StampBits = Bits();
    TextBits = Bits();
    TextureBits = Bits();
    ActiveDocument = nullptr;
}

} // namespace ostrivex
