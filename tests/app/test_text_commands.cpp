// The text dialogs from the main window: the text tool bar's buttons and the "New layer"
// text entries open them on the active document, and until the document has layers a
// finished text becomes a new document.
#include "app/fmain.h"
#include "app/globals.h"
#include "app_test_util.h"
#include "document/fimage.h"
#include "text/f3d.h"
#include "text/flayertext.h"
#include "text/logoman.h"

#include <QAction>
#include <QPushButton>

using namespace ostrivex;
using ostrivex::testing::answerNextModal;
using ostrivex::testing::OpenDocument;

namespace {

class TextCommandsTest : public ostrivex::testing::WithMainWindow {
  protected:
    fImage* openDocument() { return OpenDocument(*main_, Bits(8, 6)); }
};

TEST_F(TextCommandsTest, ButtonsOpenTheDialogsAndTheTextBecomesADocument) {
    // Without a document the buttons do nothing.
    main_->tb_ButtonClick(1);
    EXPECT_EQ(main_->LastRoute(), "");
    fImage* first = openDocument();
    Bits made;
    answerNextModal([&](QWidget* w) {
        auto* d = qobject_cast<fLayerText*>(w);
        ASSERT_TRUE(d);
        made = d->layerPicture();
        d->cmdOK->click();
    });
    main_->tb_ButtonClick(1);
    EXPECT_EQ(main_->LastRoute(), "fLayerText");
    ASSERT_EQ(main_->Documents().size(), 2u);
    fImage* text = main_->Documents()[0] == first ? main_->Documents()[1] : main_->Documents()[0];
    EXPECT_EQ(text->bits(), made);
    EXPECT_EQ(text->FileName, "New.bmp");
    EXPECT_EQ(text->History().ActionNames[0], "Original");
    // Cancel makes nothing.
    answerNextModal([](QWidget* w) {
        auto* d = qobject_cast<f3D*>(w);
        ASSERT_TRUE(d);
        d->CmdCancel->click();
    });
    main_->tb_ButtonClick(2);
    EXPECT_EQ(main_->LastRoute(), "f3D");
    EXPECT_EQ(main_->Documents().size(), 2u);
    answerNextModal([](QWidget* w) {
        auto* d = qobject_cast<LogoMan*>(w);
        ASSERT_TRUE(d);
        d->CmdOK->click();
    });
    main_->tb_ButtonClick(3);
    EXPECT_EQ(main_->LastRoute(), "LogoMan");
    EXPECT_EQ(main_->Documents().size(), 3u);
}

TEST_F(TextCommandsTest, NewLayerEntriesOpenTheTextDialogs) {
    openDocument();
    const struct {
        const char* caption;
        const char* title;
    } entries[] = {
        {"Shadow Text", "Style Text"}, {"3D Text", "3D Text"}, {"Style Text", "New Text Layer"}};
    for (const auto& e : entries) {
        QString title;
        answerNextModal([&](QWidget* w) { title = w->windowTitle(); });
        main_->action(*FindMenuEntry("mnuLayers", e.caption))->trigger();
        EXPECT_EQ(title, e.title) << e.caption;
        EXPECT_EQ(main_->LastRoute(), "NEWLAYER_Click");
    }
    EXPECT_EQ(main_->Documents().size(), 1u); // closed, not finished
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
