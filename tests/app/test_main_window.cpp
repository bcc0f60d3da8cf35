// The main window: menus built from the table, the dispatch chains with and without a
// document, the filter envelope and Update, the Views toggles of the boxes, the recent
// list, the tool buttons, the progress bar and the zoom combo.
#include "app/fmain.h"
#include "app/globals.h"
#include "app/toolbox.h"
#include "app_test_util.h"
#include "document/dialogs.h"
#include "document/fimage.h"
#include "picture_files.h"
#include "pixel/pixel_test_util.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QMdiArea>
#include <QPushButton>
#include <QMenu>
#include <QMouseEvent>
#include <QProgressBar>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

using namespace ostrivex;
using ostrivex::testing::OpenDocument;
using ostrivex::testing::fileBytes;
using ostrivex::testing::words;
using ostrivex::testing::writeText;

namespace {

QString qs(std::string_view s) {
    return QString::fromUtf8(s.data(), qsizetype(s.size()));
}

class MainWindowTest : public ostrivex::testing::WithMainWindow {
  protected:
    // A document of two pixels, active in the main window, with cFilter loaded from it.
    fImage* openDocument() {
        return OpenDocument(*main_, test::makeBits(2, 1, {{10, 20, 30}, {200, 100, 0}}));
    }
};

TEST_F(MainWindowTest, MenusAreBuiltFromTheTable) {
    ASSERT_NE(main_->menu("mnuFile"), nullptr);
    EXPECT_EQ(main_->menu("mnuFilters1")->title(), "Filters 1");
    int commands = 0;
    for (const MenuEntry& e : MenuTable()) {
        QAction* a = main_->action(e);
        ASSERT_NE(a, nullptr) << e.caption;
        if (e.route == MenuRoute::Separator) {
            EXPECT_TRUE(a->isSeparator());
            continue;
        }
        EXPECT_EQ(a->text(), qs(e.caption));
        EXPECT_EQ(a->isVisible(), !e.hidden) << e.caption;
        // (Qt reports a hidden action as disabled too.)
        if (!e.hidden) EXPECT_EQ(a->isEnabled(), !e.disabled) << e.caption;
        EXPECT_EQ(a->shortcut(), QKeySequence(qs(e.key))) << e.caption;
        if (!e.key.empty()) EXPECT_FALSE(a->shortcut().isEmpty()) << e.key;
        ++commands;
    }
    EXPECT_GT(commands, 250);
    // A few shortcuts in the form the keyboard produces.
    EXPECT_EQ(main_->action(*FindMenuEntry("mnuFilters2", "Halftone"))->shortcut(),
              QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_F1));
    EXPECT_EQ(main_->action(*FindMenuEntry("mnuEdit", "Invert Selection"))->shortcut(),
              QKeySequence(Qt::SHIFT | Qt::Key_Insert));
    EXPECT_EQ(main_->action(*FindMenuEntry("mnuEdit", "Select None"))->shortcut(),
              QKeySequence(Qt::Key_Delete));
    // The submenus hold their entries.
    QAction* zoom = main_->action(*FindMenuEntry("mnuAdjust", "Zoom +"));
    ASSERT_NE(zoom->menu(), nullptr);
    ASSERT_EQ(zoom->menu()->actions().size(), 6);
    EXPECT_EQ(zoom->menu()->actions()[0]->text(), "200 %");
    // The Recent submenu has the eight RF entries, entry 0 showing.
    QAction* recent = main_->action(*FindMenuEntry("mnuFile", "Recent"));
    ASSERT_EQ(recent->menu()->actions().size(), 8);
    EXPECT_TRUE(main_->recentAction(0)->isVisible());
    EXPECT_FALSE(main_->recentAction(1)->isVisible());
}

TEST_F(MainWindowTest, DispatchWithoutADocument) {
    // Every MenuExec word of the menus does nothing without a document, except the one
    // that makes a document from the clipboard.
    for (const MenuEntry& e : MenuTable()) {
        if (e.route != MenuRoute::Exec) continue;
        main_->clearLastRoute();
        main_->MenuExec(qs(e.word));
        if (e.word == "CREATEFROMCLIPBOARD")
            EXPECT_EQ(main_->LastRoute(), "Clipboard");
        else
            EXPECT_EQ(main_->LastRoute(), "") << e.word;
    }
    // MenuStatic: the file commands on a document do nothing; the others run.
    for (const char* word :
         {"SAVE", "SAVEAS", "CLOSE", "IMAGESAVEOPTIONS", "UPDATELAYERS", "WTILE"}) {
        main_->clearLastRoute();
        main_->MenuStatic(word);
        EXPECT_EQ(main_->LastRoute(), "") << word;
    }
    // NEW opens the new-image dialog; cancelled, it makes no document.
    QString dialogTitle;
    ostrivex::testing::answerNextModal([&](QWidget* w) { dialogTitle = w->windowTitle(); });
    main_->MenuStatic("NEW");
    EXPECT_EQ(main_->LastRoute(), "fNew");
    EXPECT_EQ(dialogTitle, "New Document");
    EXPECT_TRUE(main_->Documents().empty());
    main_->MenuStatic("CASCADE");
    EXPECT_EQ(main_->LastRoute(), "Cascade");
    // (The capture and wallpaper words act on the desktop: tests/utilities runs them against
    // fakes of its services.)
    // The document's way in sends a word to the chain of its menu entry.
    main_->RunCommand("TILEVERTICALLY");
    EXPECT_EQ(main_->LastRoute(), "TileVertically");
    main_->clearLastRoute();
    main_->RunCommand("CREATEFROMCLIPBOARD");
    EXPECT_EQ(main_->LastRoute(), "Clipboard");
    // Unknown words, words of the wrong case and the empty word do nothing at all.
    for (const char* word : {"", "new", "Undo", "NEW ", "BOGUS"}) {
        main_->clearLastRoute();
        main_->MenuStatic(word);
        main_->MenuExec(word);
        EXPECT_EQ(main_->LastRoute(), "") << word;
    }
    EXPECT_FALSE(DocumentChanged);
    EXPECT_EQ(ActiveDocument, nullptr);

    // A click stores the caption of its family before dispatch; without a document nothing
    // else happens.
    main_->action(*FindMenuEntry("mnuColors2", "RGB To GRB", "Swap"))->trigger();
    EXPECT_EQ(LastCommandCaption, "Swap RGB To GRB");
    main_->action(*FindMenuEntry("mnuFilters1", "Radial...", "Blur"))->trigger();
    EXPECT_EQ(LastCommandCaption, "Radial... Blur");
    main_->action(*FindMenuEntry("mnuColors1", "Replace Hue  Saturation..."))->trigger();
    EXPECT_EQ(LastCommandCaption, "Replace Replace Hue  Saturation...");
    // A static entry leaves the caption as it was.
    main_->action(*FindMenuEntry("mnuFile", "Save Enhanced"))->trigger();
    EXPECT_EQ(LastCommandCaption, "Replace Replace Hue  Saturation...");
    EXPECT_EQ(main_->LastRoute(), "");
}

TEST_F(MainWindowTest, DispatchWithADocument) {
    fImage* doc = openDocument();
    fImage* ref = nullptr;
    ASSERT_TRUE(GetActiveDocument(ref));
    EXPECT_EQ(ref, doc);
    const Bits before = doc->bits();

    main_->MenuExec("BOGUS");
    EXPECT_EQ(main_->LastRoute(), "");
    main_->MenuExec("SELECTALL");
    EXPECT_EQ(main_->LastRoute(), "Selection");
    // The filter dialog opens modally; closed at once it changes nothing.
    ostrivex::testing::answerNextModal([](QWidget*) {});
    main_->MenuExec("CUSTOMBLUR");
    EXPECT_EQ(main_->LastRoute(), "FilterDialog");
    EXPECT_TRUE(test::sameBits(before, doc->bits()));
    DocumentChanged = false; // a cancelled dialog updates the window without an undo step
    // The properties dialog opens on the document.
    QString dialogTitle;
    ostrivex::testing::answerNextModal([&](QWidget* w) { dialogTitle = w->windowTitle(); });
    main_->MenuExec("IMAGEPROPERTIES");
    EXPECT_EQ(main_->LastRoute(), "fProperties");
    EXPECT_EQ(dialogTitle, "Image Properties");
    main_->clearLastRoute();
    main_->MenuStatic("SELECTSOURCE"); // kept in the chain, does nothing
    EXPECT_EQ(main_->LastRoute(), "");
    main_->action(*FindMenuEntry("mnuDistortions", "Melt"))->trigger();
    EXPECT_EQ(main_->LastRoute(), "ApplyLayerEffects");
    EXPECT_EQ(LastCommandCaption, "Melt");
    main_->action(*FindMenuEntry("mnuLayers", "Merge"))->trigger();
    EXPECT_EQ(main_->LastRoute(), "LAYERS_Click");
    EXPECT_TRUE(test::sameBits(before, doc->bits()));
    EXPECT_FALSE(DocumentChanged);

    // The envelope: cFilter's result becomes the document's Bits, and Update files the
    // state under the label.
    const int32_t position = doc->HistoryPosition();
    main_->RunFilterEnvelope(
        [](cBitFilter& f) {
            Bits out = f.GetBits();
            for (int x = 0; x < 2; ++x)
                for (int c = 0; c < 3; ++c)
                    out.pixel(x, 0)[c] = uint8_t(255 - out.pixel(x, 0)[c]);
            return out;
        },
        "Invert");
    EXPECT_TRUE(
        test::sameBits(test::makeBits(2, 1, {{245, 235, 225}, {55, 155, 255}}), doc->bits()));
    EXPECT_TRUE(test::sameBits(doc->bits(), main_->Filter().bits()));
    EXPECT_TRUE(DocumentChanged);
    EXPECT_TRUE(doc->Changed);
    EXPECT_EQ(main_->ActionLabel, "Invert");
    EXPECT_EQ(main_->statusPanel("Status"), "Invert");
    EXPECT_EQ(doc->HistoryPosition(), position + 1);
    EXPECT_EQ(doc->History().ActionNames[size_t(position)], "Invert");

    // A fixed command through the menu: Invert, filed under the entry's caption.
    main_->clearLastRoute();
    main_->action(*FindMenuEntry("mnuFilters2", "Invert"))->trigger();
    EXPECT_EQ(main_->LastRoute(), "RunFixedFilter");
    EXPECT_TRUE(test::sameBits(before, doc->bits()));
    EXPECT_EQ(doc->History().ActionNames[size_t(position + 1)], "Invert");
    // Undo returns to the envelope's inverted state (and cFilter with it); the swap of
    // red and blue from its entry then works on those pixels.
    main_->MenuExec("UNDO");
    main_->action(*FindMenuEntry("mnuColors2", "RGB To BGR", "Swap"))->trigger();
    EXPECT_TRUE(
        test::sameBits(test::makeBits(2, 1, {{225, 235, 245}, {255, 155, 55}}), doc->bits()));
    EXPECT_EQ(main_->statusPanel("Status"), "Swap RGB To BGR");
    // A word that no entry sends is filed under the word: the mirror of the two pixels.
    main_->MenuExec("FLIPH");
    EXPECT_EQ(main_->LastRoute(), "RunFixedFilter");
    EXPECT_TRUE(
        test::sameBits(test::makeBits(2, 1, {{255, 155, 55}, {225, 235, 245}}), doc->bits()));
    EXPECT_EQ(main_->statusPanel("Status"), "FLIPH");
    main_->MenuExec("UNDO");
    main_->MenuExec("UNDO");

    // Undo through the chain brings the first state back, redo the second.
    main_->MenuExec("UNDO");
    EXPECT_EQ(main_->LastRoute(), "UndoBits");
    EXPECT_TRUE(test::sameBits(before, doc->bits()));
    main_->MenuExec("REDO");
    EXPECT_EQ(doc->bits().pixel(1, 0)[2], 255);

    // The sizing words reach their routines (their work is tested with the sizing commands).
    main_->MenuExec("A180");
    EXPECT_EQ(main_->LastRoute(), "RotateImage");
    main_->MenuExec("x3");
    EXPECT_EQ(main_->LastRoute(), "ZoomImage");

    // CLOSE closes the active document (without the save question, which is the document
    // window's own); the next file command finds none.
    Settings.ConfirmClose = 0;
    main_->MenuStatic("CLOSE");
    EXPECT_EQ(main_->LastRoute(), "CloseDocument");
    QCoreApplication::processEvents();
    EXPECT_TRUE(main_->Documents().empty());
    main_->clearLastRoute();
    main_->MenuStatic("SAVE");
    EXPECT_EQ(main_->LastRoute(), "");
}

TEST_F(MainWindowTest, PaletteAndHistogramFromTheMenus) {
    fImage* doc = OpenDocument(*main_, test::makeBits(2, 1, {{10, 20, 30}, {250, 240, 245}}));
    const int32_t position = doc->HistoryPosition();

    // Apply palette with the 16 standard colours: each pixel takes its nearest colour,
    // black and white here, and the change is one undo step under the dialog's caption.
    QString title;
    ostrivex::testing::answerNextModal([&](QWidget* w) {
        title = w->windowTitle();
        for (QPushButton* b : w->findChildren<QPushButton*>())
            if (b->text() == "OK") b->click();
    });
    main_->action(*FindMenuEntry("mnuColors1", "Apply Palette..."))->trigger();
    EXPECT_EQ(title, "Apply palette");
    EXPECT_TRUE(test::sameBits(test::makeBits(2, 1, {{0, 0, 0}, {255, 255, 255}}), doc->bits()));
    EXPECT_TRUE(test::sameBits(doc->bits(), main_->Filter().bits()));
    EXPECT_EQ(doc->HistoryPosition(), position + 1);
    EXPECT_EQ(doc->History().ActionNames[size_t(position)], "Apply Palette");

    // Cancel leaves pixels and history alone.
    ostrivex::testing::answerNextModal([&](QWidget* w) {
        for (QPushButton* b : w->findChildren<QPushButton*>())
            if (b->text() == "Cancel") b->click();
    });
    main_->action(*FindMenuEntry("mnuColors1", "Apply Palette..."))->trigger();
    EXPECT_EQ(doc->HistoryPosition(), position + 1);

    // The histogram opens on the document and changes nothing.
    title.clear();
    ostrivex::testing::answerNextModal([&](QWidget* w) {
        title = w->windowTitle();
        w->close();
    });
    main_->action(*FindMenuEntry("mnuTools", "Histogram..."))->trigger();
    EXPECT_EQ(title, "Histogram");
    EXPECT_EQ(doc->HistoryPosition(), position + 1);
}

TEST_F(MainWindowTest, ViewsTogglesAndCloseButtons) {
    for (int b = 0; b < fMain::BoxCount; ++b)
        main_->PlaceBox(b);
    ToolBox* color = main_->box(fMain::BoxColor);
    ToolBox* history = main_->box(fMain::BoxHistory);
    EXPECT_EQ(color->objectName(), "fToolColor");
    EXPECT_EQ(main_->box(fMain::BoxOptimize)->objectName(), "finfo");
    EXPECT_EQ(history->caption(), "History Box");
    EXPECT_TRUE(color->isVisible());
    EXPECT_TRUE(main_->viewsAction(fMain::BoxColor)->isChecked());
    // 420, 1110 twips: 28, 74 pixels from the document area's corner. The History Box:
    // 3600, 4650 twips, 3950 x 3180.
    const QPoint area = main_->mdiArea()->mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(color->pos(), area + QPoint(28, 74));
    EXPECT_EQ(history->pos(), area + QPoint(240, 310));
    EXPECT_EQ(history->size(), QSize(263, 212));
    EXPECT_EQ(color->parentWidget(), main_.get());
    EXPECT_TRUE(color->windowFlags() & Qt::Tool);

    // Off: flag cleared, box hidden. The stored place stays.
    main_->viewsAction(fMain::BoxColor)->trigger();
    EXPECT_EQ(Settings.ColorBoxVisible, 0);
    EXPECT_FALSE(color->isVisible());
    EXPECT_FALSE(main_->viewsAction(fMain::BoxColor)->isChecked());
    // On again: shown at the stored place, even after being moved away.
    color->move(500, 500);
    main_->ToggleBox(fMain::BoxColor);
    EXPECT_EQ(Settings.ColorBoxVisible, -1);
    EXPECT_TRUE(color->isVisible());
    EXPECT_EQ(color->pos(), area + QPoint(28, 74));

    // The close button does the same as the menu, from the other side.
    history->findChild<QToolButton*>("CloseButton")->click();
    EXPECT_FALSE(history->isVisible());
    EXPECT_EQ(Settings.HistoryBoxVisible, 0);
    EXPECT_FALSE(main_->viewsAction(fMain::BoxHistory)->isChecked());
    // Nothing of this touches the file.
    EXPECT_FALSE(QFile::exists(QString::fromStdString(SettingsFileName())));

    // Minimised: the box shrinks to its title strip and keeps its width; the minimise
    // button restores the stored size and clears the flag.
    Settings.LayerBoxMinimized = -1;
    main_->viewsAction(fMain::BoxLayer)->setChecked(false);
    main_->ToggleBox(fMain::BoxLayer);
    ToolBox* layer = main_->box(fMain::BoxLayer);
    EXPECT_EQ(layer->size(), QSize(236, ToolBox::TitleHeight + 2)); // 3540 twips wide
    layer->findChild<QToolButton*>("MinimizeButton")->click();
    EXPECT_EQ(Settings.LayerBoxMinimized, 0);
    EXPECT_EQ(layer->size(), QSize(236, 212));
}

TEST_F(MainWindowTest, BoxPlacesCountFromTheDocumentArea) {
    main_->resize(1000, 700);
    main_->show();
    for (int b = 0; b < fMain::BoxCount; ++b)
        main_->PlaceBox(b);
    // At their default places no box covers the menu, the tool bar or the tool panel row.
    auto* panels = main_->findChild<QToolBar*>("tbPanels");
    ASSERT_NE(panels, nullptr);
    const int rowsBottom = panels->mapToGlobal(QPoint(0, panels->height())).y();
    for (int b = 0; b < fMain::BoxCount; ++b)
        EXPECT_GE(main_->box(b)->y(), rowsBottom) << b;

    // A box dragged by its title strip stores its place from the document area's corner:
    // 100 and 50 pixels are 1500 and 750 twips; a drag above the area stores a negative top.
    ToolBox* color = main_->box(fMain::BoxColor);
    const QPoint area = main_->mdiArea()->mapToGlobal(QPoint(0, 0));
    auto drag = [&](QPoint to) {
        const QPoint grip(5, 5);
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(grip), QPointF(color->pos() + grip),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(color, &press);
        QMouseEvent move(QEvent::MouseMove, QPointF(grip), QPointF(to + grip), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(color, &move);
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(grip), QPointF(to + grip),
                            Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(color, &release);
    };
    drag(area + QPoint(100, 50));
    EXPECT_EQ(Settings.ColorBoxLeft, 1500);
    EXPECT_EQ(Settings.ColorBoxTop, 750);
    drag(area + QPoint(7, -20));
    EXPECT_EQ(Settings.ColorBoxLeft, 105);
    EXPECT_EQ(Settings.ColorBoxTop, -300);
    // Put back from the stored values, it lands where it was left.
    color->move(0, 0);
    color->PlaceFromSettings();
    EXPECT_EQ(color->pos(), area + QPoint(7, -20));
}

TEST_F(MainWindowTest, AnActivatedBoxGivesNoFocusToItsTitleButtons) {
    main_->show();
    for (int b = 0; b < fMain::BoxCount; ++b) {
        main_->PlaceBox(b);
        ToolBox* box = main_->box(b);
        box->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(box));
        // A key meant for the picture (the space that places a paste) goes to the focus: it
        // must not be the minimise or the close button of the box.
        QWidget* focus = QApplication::focusWidget();
        EXPECT_NE(focus, box->findChild<QToolButton*>("MinimizeButton")) << b;
        EXPECT_NE(focus, box->findChild<QToolButton*>("CloseButton")) << b;
    }
}

TEST_F(MainWindowTest, BoxesWithTheirFlagOffStayHidden) {
    Settings.PanoramicBoxVisible = 0;
    Settings.OptimizeBoxMinimized = -1;
    for (int b = 0; b < fMain::BoxCount; ++b)
        main_->PlaceBox(b);
    EXPECT_FALSE(main_->box(fMain::BoxPanoramic)->isVisible());
    EXPECT_FALSE(main_->viewsAction(fMain::BoxPanoramic)->isChecked());
    EXPECT_TRUE(main_->box(fMain::BoxOptimize)->IsMinimized());
    EXPECT_EQ(main_->box(fMain::BoxOptimize)->height(), ToolBox::TitleHeight + 2);
}

TEST_F(MainWindowTest, FillRecentKeepsEntryZero) {
    const QString present = home() + "/present.png";
    QFile f(present);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    SetFieldText(Settings.RecentFiles[0], (home() + "/gone.png").toStdString());
    SetFieldText(Settings.RecentFiles[1], present.toStdString());
    SetFieldText(Settings.RecentFiles[2], (home() + "/also-gone.bmp").toStdString());
    // Entries 3 to 7 were never written.
    main_->FillRecent();
    EXPECT_TRUE(main_->recentAction(0)->isVisible());
    EXPECT_EQ(main_->recentAction(0)->text(), "");
    EXPECT_TRUE(main_->recentAction(1)->isVisible());
    EXPECT_TRUE(main_->recentAction(1)->text().endsWith("present.png"));
    for (int i = 2; i < 8; ++i)
        EXPECT_FALSE(main_->recentAction(i)->isVisible()) << i;

    // When the file comes back, entry 0 shows it.
    SetFieldText(Settings.RecentFiles[0], present.toStdString());
    main_->FillRecent();
    EXPECT_TRUE(main_->recentAction(0)->text().endsWith("present.png"));
}

TEST_F(MainWindowTest, ToolButtonsProgressAndZoom) {
    const auto tools = main_->toolBar()->actions();
    ASSERT_GE(tools.size(), 15);
    EXPECT_EQ(tools[0]->objectName(), "Pencil");
    EXPECT_EQ(tools[14]->objectName(), "Layers");
    for (int i = 0; i < 15; ++i)
        tools[i]->setChecked(true);
    main_->DisableTools(3);
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(tools[i]->isChecked(), i == 3) << i;
    EXPECT_EQ(main_->KeyNum(65, 7), 0);

    main_->cFilter_Progress(40);
    EXPECT_EQ(main_->progressBar()->value(), 40);
    EXPECT_EQ(main_->statusPanel("Status"), "40 %");
    main_->cFilter_Progress(-1); // ignored
    EXPECT_EQ(main_->progressBar()->value(), 40);
    main_->cFilter_Progress(0);
    EXPECT_EQ(main_->progressBar()->value(), 0);
    // The engine's progress event reaches the bar.
    main_->CreateFilter();
    int32_t p = 70;
    main_->Filter().Progress(p);
    EXPECT_EQ(main_->progressBar()->value(), 70);

    ASSERT_EQ(main_->zoomCombo()->count(), 9);
    EXPECT_EQ(main_->zoomCombo()->currentIndex(), 0);
    main_->ShowZoom(4);
    EXPECT_EQ(main_->zoomCombo()->currentIndex(), 3);
    EXPECT_EQ(main_->statusPanel("Zoom"), "Zoom 4 : 1");
    main_->ShowZoom(12);
    EXPECT_EQ(main_->zoomCombo()->currentIndex(), -1);

    // The text toolbar's buttons need a document.
    main_->clearLastRoute();
    main_->tb_ButtonClick(2);
    EXPECT_EQ(main_->LastRoute(), "");
    openDocument();
    QString title;
    ostrivex::testing::answerNextModal([&](QWidget* w) { title = w->windowTitle(); });
    main_->tb_ButtonClick(2);
    EXPECT_EQ(main_->LastRoute(), "f3D");
    EXPECT_EQ(title, "3D Text");
    main_->tb_ButtonClick(4);
    EXPECT_EQ(main_->LastRoute(), "ShowGrip");
}

TEST_F(MainWindowTest, TileAndCascadeArrangeTheDocuments) {
    main_->resize(800, 600);
    main_->show();
    fImage* a = openDocument();
    fImage* b = openDocument();
    const QRect area = main_->mdiArea()->viewport()->rect();
    main_->MenuStatic("TILEHORIZONTALLY");
    const QRect ga = a->parentWidget()->geometry(), gb = b->parentWidget()->geometry();
    EXPECT_EQ(ga.width(), area.width());
    EXPECT_EQ(gb.width(), area.width());
    EXPECT_EQ(ga.height() + gb.height(), area.height());
    EXPECT_NE(ga.top(), gb.top());
    main_->MenuStatic("TILEVERTICALLY");
    EXPECT_EQ(a->parentWidget()->height(), area.height());
    EXPECT_EQ(a->parentWidget()->width() + b->parentWidget()->width(), area.width());
}

TEST_F(MainWindowTest, SelectionCommandsLimitTheFilters) {
    // Blue, green, red of a 3 x 2 image.
    const Bits pixels = test::makeBits(3, 2,
                                       {{10, 20, 30},
                                        {40, 50, 60},
                                        {70, 80, 90},
                                        {100, 110, 120},
                                        {130, 140, 150},
                                        {160, 170, 180}});
    fImage* doc = OpenDocument(*main_, pixels);
    const auto saveName = DocumentDialogs::AskSaveName;
    const auto openName = DocumentDialogs::AskOpenName;
    struct Restore {
        decltype(DocumentDialogs::AskSaveName) save;
        decltype(DocumentDialogs::AskOpenName) open;
        ~Restore() {
            DocumentDialogs::AskSaveName = save;
            DocumentDialogs::AskOpenName = open;
        }
    } restore{saveName, openName};

    // Invert with nothing selected selects all; the ants start with one tick.
    main_->MenuExec("INVERTSELECTION");
    EXPECT_EQ(main_->LastRoute(), "Selection");
    ASSERT_TRUE(doc->Region().Region().has_value());
    EXPECT_EQ(doc->Region().Region()->bounds(), (Rect{0, 0, 3, 2}));
    EXPECT_TRUE(doc->SelectionTimerActive());
    EXPECT_EQ(doc->Region().AntPhase(), 1);
    // Inverting all gives nothing: the whole image is the target again, the ants stop.
    main_->MenuExec("INVERTSELECTION");
    EXPECT_TRUE(doc->Region().IsEmptyRegion());
    EXPECT_FALSE(doc->SelectionTimerActive());
    EXPECT_EQ(main_->Filter().region()->bounds(), (Rect{0, 0, 3, 2}));

    // Column 0, inverted: columns 1 and 2. The fixed Invert then changes only those.
    doc->Region().CreateRect(0, 0, 1, 2, cBitRegion::ModeUnion, false);
    main_->MenuExec("INVERTSELECTION");
    EXPECT_EQ(main_->Filter().region(), &doc->EffectiveRegion());
    main_->MenuExec("INVERT");
    EXPECT_TRUE(test::sameBits(test::makeBits(3, 2,
                                              {{10, 20, 30}, {215, 205, 195}, {185, 175, 165},
                                               {100, 110, 120}, {125, 115, 105}, {95, 85, 75}}),
                               doc->bits()));

    // Saved: the dialog's texts, and a name without extension gets ".osf". The file is the
    // region data: header 32, 1, one rectangle, 16 bytes, box (1, 0, 3, 2), the rectangle.
    QString title, folder, filter;
    const QString base = QString::fromStdString(AppFolder());
    DocumentDialogs::AskSaveName = [&](QWidget*, const QString& t, const QString& f,
                                       const QString& pairs, const QString&) {
        title = t;
        folder = f;
        filter = pairs;
        return base + "/columns";
    };
    main_->MenuExec("SAVESELECTION");
    EXPECT_EQ(title, "Save selection");
    EXPECT_EQ(folder, base + "/Selections");
    EXPECT_EQ(filter, "Selection Files (*.osf)|*.osf");
    EXPECT_EQ(fileBytes(base + "/columns.osf"), words({32, 1, 1, 16, 1, 0, 3, 2, 1, 0, 3, 2}));

    // Select None: Invert works on every pixel again.
    main_->MenuExec("SELECTNONE");
    EXPECT_FALSE(doc->Region().Region().has_value());
    EXPECT_FALSE(doc->SelectionTimerActive());
    main_->MenuExec("INVERT");
    const Bits allInverted = test::makeBits(3, 2,
                                            {{245, 235, 225}, {40, 50, 60}, {70, 80, 90},
                                             {155, 145, 135}, {130, 140, 150}, {160, 170, 180}});
    EXPECT_TRUE(test::sameBits(allInverted, doc->bits()));

    // A selection file written by hand: the two left pixels of row 1.
    const QString handMade = base + "/bottomleft.osf";
    ASSERT_TRUE(writeText(handMade, words({32, 1, 1, 16, 0, 1, 2, 2, 0, 1, 2, 2})));
    // A cancelled dialog changes nothing.
    DocumentDialogs::AskOpenName = [&](QWidget*, const QString& t, const QString& f,
                                       const QString& pairs) {
        title = t;
        folder = f;
        filter = pairs;
        return QString();
    };
    main_->MenuExec("LOADSELECTION");
    EXPECT_EQ(title, "Load selection");
    EXPECT_EQ(folder, base + "/Selections");
    EXPECT_EQ(filter, "Selection Files (*.osf)|*.osf");
    EXPECT_FALSE(doc->Region().Region().has_value());
    DocumentDialogs::AskOpenName = [&](QWidget*, const QString&, const QString&,
                                       const QString&) { return handMade; };
    main_->MenuExec("LOADSELECTION");
    EXPECT_TRUE(doc->SelectionTimerActive());
    main_->MenuExec("INVERT");
    EXPECT_TRUE(test::sameBits(test::makeBits(3, 2,
                                              {{245, 235, 225}, {40, 50, 60}, {70, 80, 90},
                                               {100, 110, 120}, {125, 115, 105}, {160, 170, 180}}),
                               doc->bits()));

    // Select All: the data of one rectangle over the whole image.
    main_->MenuExec("SELECTALL");
    EXPECT_EQ(doc->Region().GetData(), (std::vector<int32_t>{32, 1, 1, 16, 0, 0, 3, 2, 0, 0, 3, 2}));
    EXPECT_EQ(main_->Filter().region()->bounds(), (Rect{0, 0, 3, 2}));
    EXPECT_TRUE(doc->SelectionTimerActive());

    // Undo keeps a selection of the same canvas size.
    main_->MenuExec("UNDO");
    EXPECT_TRUE(test::sameBits(allInverted, doc->bits()));
    EXPECT_EQ(doc->Region().Region()->bounds(), (Rect{0, 0, 3, 2}));
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
