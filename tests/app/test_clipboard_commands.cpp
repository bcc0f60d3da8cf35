// The clipboard words of the Edit and File menus, run through the main window's dispatch:
// cut with its undo step, copy and paste through the History Box's clip slots, the
// platform clipboard both ways, and crop.
#include "app/fmain.h"
#include "app/globals.h"
#include "app_test_util.h"
#include "document/dialogs.h"
#include "document/fimage.h"
#include "document/fpaste.h"
#include "pixel/pixel_test_util.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMdiArea>

using namespace ostrivex;
using ostrivex::testing::OpenDocument;

namespace {

class ClipboardCommandsTest : public ostrivex::testing::WithMainWindow {
  protected:
    void SetUp() override {
        WithMainWindow::SetUp();
        QGuiApplication::clipboard()->clear();
    }

    // A 4 x 3 document whose pixel (x, y) is blue 10x + y + 1, green 50, red 60, active in
    // the main window with cFilter loaded from it.
    fImage* openDocument() {
        Bits b(4, 3);
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 4; ++x) {
                b(0, x, y) = uint8_t(10 * x + y + 1);
                b(1, x, y) = 50;
                b(2, x, y) = 60;
            }
        return OpenDocument(*main_, b);
    }
    // A new rectangular selection in place of the old one.
    void select(fImage* doc, int left, int top, int right, int bottom) {
        doc->Region().Init(0, 0, doc->PictureWidth(), doc->PictureHeight());
        doc->Region().CreateRect(left, top, right, bottom, cBitRegion::ModeUnion, false);
        doc->SelectionChanged();
    }
    void click(const char* menu, const char* caption) {
        main_->action(*FindMenuEntry(menu, caption))->trigger();
    }
};

TEST_F(ClipboardCommandsTest, CutSavesAnUndoStepAndCopyPastes) {
    fImage* doc = openDocument();
    const Bits original = doc->bits();
    ClipHistory* clips = main_->HistoryBox()->Clips();

    select(doc, 1, 0, 3, 2);
    click("mnuEdit", "Cut");
    EXPECT_EQ(main_->LastRoute(), "Clipboard");
    // The 2 x 2 box is blank, all four bytes.
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) {
            const bool cut = x >= 1 && x <= 2 && y <= 1;
            EXPECT_EQ(doc->bits()(0, x, y), cut ? 0 : 10 * x + y + 1) << x << "," << y;
            EXPECT_EQ(doc->bits()(2, x, y), cut ? 0 : 60) << x << "," << y;
        }
    // One undo step under the entry's caption; the status shows it.
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(doc->History().ActionNames[1], "Cut");
    EXPECT_EQ(main_->HistoryBox()->History()->EntryCaption(1), "Cut");
    EXPECT_EQ(main_->statusPanel("Status"), "Cut");
    EXPECT_TRUE(DocumentChanged);
    EXPECT_TRUE(doc->Model().Changed);
    // The clip: blue 11 at (0, 0) is source (1, 0).
    ASSERT_EQ(main_->ClipBuffer.width(), 2);
    EXPECT_EQ(main_->ClipBuffer(0, 0, 0), 11);
    EXPECT_EQ(main_->ClipBuffer(0, 1, 1), 22);
    EXPECT_EQ(clips->SlotName(0), "1");
    EXPECT_EQ(clips->Message(), "Clip History:  2 x 2");

    main_->MenuExec("UNDO");
    EXPECT_EQ(doc->bits(), original);

    // Copy changes no pixel and saves nothing; the next clip goes to slot 1.
    select(doc, 0, 1, 4, 3);
    const int32_t position = doc->HistoryPosition();
    click("mnuEdit", "Copy");
    EXPECT_EQ(doc->bits(), original);
    EXPECT_EQ(doc->HistoryPosition(), position);
    EXPECT_EQ(clips->SlotName(1), "2");
    EXPECT_EQ(clips->SelectedIndex(), 1);
    EXPECT_EQ(clips->SizeText(1), "4 x 2");

    // Paste: the clip waits for the mouse.
    EXPECT_FALSE(main_->PendingPaste);
    click("mnuEdit", "Paste");
    EXPECT_TRUE(main_->PendingPaste);
    EXPECT_EQ(main_->ActionLabel, "Paste");
    EXPECT_EQ(doc->bits(), original); // nothing placed before the mouse moves

    // Pasting from slot 0 brings its clip back into ClipBuffer through the same word.
    main_->PendingPaste = false;
    EXPECT_TRUE(clips->PasteFromSlot(0));
    EXPECT_TRUE(main_->PendingPaste);
    EXPECT_EQ(main_->ClipBuffer, clips->Slot(0).pixels);
    EXPECT_EQ(main_->ClipBuffer.width(), 2);
}

TEST_F(ClipboardCommandsTest, MinimumSizeBoxThroughTheMenu) {
    fImage* doc = openDocument();
    const Bits original = doc->bits();
    QStringList texts;
    const auto saved = DocumentDialogs::Inform;
    DocumentDialogs::Inform = [&](QWidget*, const QString& text, const QString& title) {
        texts << title + ": " + text;
    };
    select(doc, 2, 0, 3, 3); // 1 x 3
    click("mnuEdit", "Cut");
    click("mnuEdit", "Copy");
    DocumentDialogs::Inform = saved;
    EXPECT_EQ(texts, QStringList({"Ostrivex: Minimum cut size: 2 x 2",
                                  "Ostrivex: Minimum copy size: 2 x 2"}));
    EXPECT_EQ(doc->bits(), original);
    EXPECT_EQ(doc->HistoryPosition(), 1);
    EXPECT_EQ(main_->HistoryBox()->Clips()->SlotName(0), "");
    // Paste with nothing clipped sets nothing up.
    click("mnuEdit", "Paste");
    EXPECT_FALSE(main_->PendingPaste);
}

TEST_F(ClipboardCommandsTest, PlatformClipboardBothWays) {
    // From Clipboard with no document and an empty clipboard: nothing.
    main_->MenuExec("CREATEFROMCLIPBOARD");
    EXPECT_EQ(main_->LastRoute(), "Clipboard");
    EXPECT_TRUE(main_->Documents().empty());

    fImage* doc = openDocument();
    click("mnuEdit", "Copy Image to Clipboard");
    const QImage got = QGuiApplication::clipboard()->image();
    ASSERT_EQ(got.size(), QSize(4, 3));
    EXPECT_EQ(got.pixel(3, 2), qRgb(60, 50, 33));
    EXPECT_EQ(doc->HistoryPosition(), 1);

    // Create From Clipboard makes a second document of those pixels (channel 3 is 0).
    click("mnuEdit", "Create From Clipboard");
    ASSERT_EQ(main_->Documents().size(), 2u);
    fImage* made = nullptr;
    for (fImage* d : main_->Documents())
        if (d != doc) made = d;
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->bits(), doc->bits());
    EXPECT_EQ(made->History().ActionNames[0], "Original");

    // Create New Copy: a third one.
    click("mnuEdit", "Create New Copy");
    EXPECT_EQ(main_->Documents().size(), 3u);
}

TEST_F(ClipboardCommandsTest, CropAndCropAsNewImage) {
    fImage* doc = openDocument();
    select(doc, 1, 1, 4, 3);
    click("mnuEdit", "Create Crop as New Image");
    ASSERT_EQ(main_->Documents().size(), 2u);
    EXPECT_EQ(doc->PictureWidth(), 4);

    // CROP works on the active document, which the new one now is: make the source active
    // again first.
    main_->mdiArea()->setActiveSubWindow(main_->mdiArea()->subWindowList().first());
    fImage* active = nullptr;
    ASSERT_TRUE(GetActiveDocument(active));
    ASSERT_EQ(active, doc);
    click("mnuEdit", "Crop");
    ASSERT_EQ(doc->PictureWidth(), 3);
    ASSERT_EQ(doc->PictureHeight(), 2);
    EXPECT_EQ(doc->bits()(0, 0, 0), 12); // source (1, 1)
    EXPECT_EQ(doc->bits()(0, 2, 1), 33); // source (3, 2)
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(doc->History().ActionNames[1], "Crop");
    // Undo brings back the 4 x 3 image and the whole of it as the selection.
    main_->MenuExec("UNDO");
    EXPECT_EQ(doc->PictureWidth(), 4);
    EXPECT_EQ(doc->bits()(0, 3, 2), 33);
    EXPECT_TRUE(doc->Region().IsEmptyRegion());
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
