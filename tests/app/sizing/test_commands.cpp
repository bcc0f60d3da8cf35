// The sizing commands on a document of the main window, as the menus and the words run
// them: the zoom and quality-sizing words, the four dialogs, the turns, "Original Size" and
// "Restore Original". Each checks the new pixels, the "Pixel" panel and the undo step.
#include "app/fmain.h"
#include "app/globals.h"
#include "app/sizing/fcanvas.h"
#include "app/sizing/forientation.h"
#include "app/sizing/frotate.h"
#include "app/sizing/fsize.h"
#include "app/sizing/sizing.h"
#include "app_test_util.h"
#include "document/dialogs.h"
#include "document/fimage.h"
#include "pixel/pixel_test_util.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include <vector>

using namespace ostrivex;
using ostrivex::test::makeBits;
using ostrivex::test::sameBits;

namespace {

class SizingCommandTest : public ostrivex::testing::WithMainWindow {
  protected:
    void SetUp() override {
        WithMainWindow::SetUp();
        savedExec_ = SizingDialogs::Exec;
        savedInform_ = DocumentDialogs::Inform;
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString&) {
            messages.push_back(text);
        };
    }
    void TearDown() override {
        WithMainWindow::TearDown();
        SizingDialogs::Exec = savedExec_;
        DocumentDialogs::Inform = savedInform_;
    }

    // A document of `bits`, active in the main window, with its first undo state.
    fImage* openDocument(const Bits& bits) { return ostrivex::testing::OpenDocument(*main_, bits); }
    void click(const char* menu, const char* caption, const char* submenu = "") {
        const MenuEntry* e = FindMenuEntry(menu, caption, submenu);
        ASSERT_NE(e, nullptr) << caption;
        main_->action(*e)->trigger();
    }
    // The caption of the state on screen.
    static QString lastStep(const fImage* doc) {
        return QString::fromStdString(
            doc->History().ActionNames[size_t(doc->HistoryPosition() - 1)]);
    }
    // Runs the next sizing dialog through `fill`, which sets it up and presses its buttons.
    template <class Dialog> void answer(std::function<void(Dialog&)> fill) {
        SizingDialogs::Exec = [fill](QDialog& d) {
            auto* dialog = qobject_cast<Dialog*>(&d);
            EXPECT_NE(dialog, nullptr);
            if (!dialog) return int(QDialog::Rejected);
            dialog->show();
            fill(*dialog);
            return dialog->result();
        };
    }

    std::vector<QString> messages;
    decltype(SizingDialogs::Exec) savedExec_;
    decltype(DocumentDialogs::Inform) savedInform_;
};

// Three equal channels.
test::Px grey(uint8_t v) { return {v, v, v}; }

TEST_F(SizingCommandTest, DivisionWordsScaleByNearestNeighbour) {
    // 5 x 3, every pixel different.
    const Bits source = makeBits(5, 3, {{1, 2, 3},    {4, 5, 6},    {7, 8, 9},    {10, 11, 12},
                                        {13, 14, 15}, {16, 17, 18}, {19, 20, 21}, {22, 23, 24},
                                        {25, 26, 27}, {28, 29, 30}, {31, 32, 33}, {34, 35, 36},
                                        {37, 38, 39}, {40, 41, 42}, {43, 44, 45}});
    fImage* doc = openDocument(source);
    doc->SetZoomFactor(3);
    const int32_t position = doc->HistoryPosition();
    // "50": Round(5 / 2) = 2 by Round(3 / 2) = 2. Nearest neighbour with ratios 2.5 and 1.5:
    // columns Int(0), Int(2.5) = 0, 2; rows 0, Int(1.5) = 1.
    main_->MenuExec("50");
    EXPECT_EQ(main_->LastRoute(), "ZoomImage");
    EXPECT_EQ(doc->ZoomFactor(), 1);
    EXPECT_TRUE(sameBits(makeBits(2, 2, {{1, 2, 3}, {7, 8, 9}, {16, 17, 18}, {22, 23, 24}}),
                         doc->bits()));
    EXPECT_TRUE(sameBits(doc->bits(), main_->Filter().bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "2 x 2");
    // A word that no entry sends is filed under the word.
    EXPECT_EQ(main_->statusPanel("Status"), "50");
    EXPECT_EQ(doc->HistoryPosition(), position + 1);
    EXPECT_EQ(lastStep(doc), "50");
    EXPECT_TRUE(DocumentChanged);

    // Undo gives back the old size and pixels.
    main_->MenuExec("UNDO");
    EXPECT_TRUE(sameBits(source, doc->bits()));

    // "15" divides by Round(100 / 15) = 7: a 14 x 7 image becomes 2 x 1, columns 0 and 7.
    Bits wide(14, 7);
    wide.pixel(7, 0)[0] = 99;
    wide.pixel(7, 0)[2] = 55;
    wide.pixel(6, 0)[1] = 1;
    fImage* other = openDocument(wide);
    main_->MenuExec("15");
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 0}, {99, 0, 55}}), other->bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "2 x 1");

    // "x5" of a 2 x 2 image would be Round(0.4) = 0 wide: nothing happens.
    fImage* tiny = openDocument(makeBits(2, 2, {grey(1), grey(2), grey(3), grey(4)}));
    const int32_t tinyPosition = tiny->HistoryPosition();
    main_->MenuExec("x5");
    EXPECT_EQ(tiny->PictureWidth(), 2);
    EXPECT_EQ(tiny->HistoryPosition(), tinyPosition);
}

TEST_F(SizingCommandTest, ZoomEntriesGrowAndOriginalSizeShrinksBack) {
    const test::Px p{10, 20, 30}, q{200, 100, 0};
    const Bits source = makeBits(2, 1, {p, q});
    fImage* doc = openDocument(source);
    // "200 %": 4 x 2 by nearest neighbour, each pixel doubled both ways.
    click("mnuAdjust", "200 %", "Zoom +");
    EXPECT_EQ(main_->LastRoute(), "ZoomImage");
    EXPECT_TRUE(sameBits(makeBits(4, 2, {p, p, q, q, p, p, q, q}), doc->bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "4 x 2");
    EXPECT_EQ(lastStep(doc), "200 %");

    // "Original Size": back to 2 x 1 with ratio 2, columns 0 and 2: the very pixels.
    click("mnuAdjust", "Original Size");
    EXPECT_TRUE(sameBits(source, doc->bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "2 x 1");
    EXPECT_EQ(lastStep(doc), "Original Size");
    // At the original size there is nothing to do.
    const int32_t position = doc->HistoryPosition();
    click("mnuAdjust", "Original Size");
    EXPECT_EQ(doc->HistoryPosition(), position);
}

TEST_F(SizingCommandTest, QualityWordsResample) {
    // "x/2" of 4 x 2: 2 x 1 with ratios (4 - 1) / 2 = 1.5 and (2 - 1) / 1 = 1. Row 0 only
    // (dy = 0). Column 0 reads pixel 0; column 1 reads 1.5: half of pixel 1 and half of 2,
    // rounded to even: 15.5 -> 16, 15, 1.5 -> 2.
    fImage* doc = openDocument(makeBits(4, 2, {{7, 8, 9}, {10, 10, 0}, {21, 20, 3}, grey(50),
                                               grey(90), grey(90), grey(90), grey(90)}));
    click("mnuAdjust", "x/2", "Quality Sizing");
    EXPECT_EQ(main_->LastRoute(), "ZoomImage");
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{7, 8, 9}, {16, 15, 2}}), doc->bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "2 x 1");
    EXPECT_EQ(lastStep(doc), "x/2");

    // "2x" of 2 x 2: 4 x 4 with ratio 1 / 4. Each value is rounded after the vertical step
    // and again after the horizontal one.
    fImage* small = openDocument(makeBits(2, 2, {grey(0), grey(100), grey(200), grey(40)}));
    click("mnuAdjust", "2x", "Quality Sizing");
    const Bits& b = small->bits();
    ASSERT_EQ(b.width(), 4);
    ASSERT_EQ(b.height(), 4);
    auto at = [&](int x, int y) { return int(b.pixel(x, y)[0]); };
    EXPECT_EQ(at(0, 0), 0);
    EXPECT_EQ(at(3, 0), 75);  // 0.25 * 0 + 0.75 * 100
    EXPECT_EQ(at(0, 3), 150); // 0.25 * 0 + 0.75 * 200
    EXPECT_EQ(at(1, 2), 92);  // left 100, right 70: 75 + 17.5 = 92.5 -> 92
    EXPECT_EQ(at(2, 1), 68);  // left 50, right 85: 67.5 -> 68
    EXPECT_EQ(at(3, 3), 79);  // left 150, right 55: 37.5 + 41.25 = 78.75 -> 79
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            EXPECT_EQ(b.pixel(x, y)[1], b.pixel(x, y)[0]);
            EXPECT_EQ(b.pixel(x, y)[2], b.pixel(x, y)[0]);
            EXPECT_EQ(b.pixel(x, y)[3], 0);
        }
    EXPECT_EQ(lastStep(small), "2x");
}

TEST_F(SizingCommandTest, ImageSizeDialogScalesToTheTypedSize) {
    const Bits source = makeBits(3, 1, {grey(0), grey(90), grey(30)});
    fImage* doc = openDocument(source);
    // 4 x 2, interpolated: ratio (3 - 1) / 4 = 0.5 across, 0 down (both rows read row 0).
    // Columns 0, 0.5, 1, 1.5: 0, 45, 90, Round(60) = 60.
    answer<fSize>([](fSize& d) {
        EXPECT_EQ(d.windowTitle(), "Image size");
        d.chkKeepProportions->setChecked(false);
        d.txtW->setText("4");
        d.txtH->setText("2");
        d.cmdOK->click();
    });
    click("mnuAdjust", "Size ...");
    EXPECT_EQ(main_->LastRoute(), "SizeDialog");
    EXPECT_TRUE(sameBits(makeBits(4, 2, {grey(0), grey(45), grey(90), grey(60), // row 0
                                         grey(0), grey(45), grey(90), grey(60)}),
                         doc->bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "4 x 2");
    EXPECT_EQ(lastStep(doc), "Size ...");

    // Without "Anti-Alias": nearest neighbour, ratio 3 / 4: columns 0, 0, 1, 2.
    main_->MenuExec("UNDO");
    answer<fSize>([](fSize& d) {
        d.chkKeepProportions->setChecked(false);
        d.chkInterpolate->setChecked(false);
        d.txtW->setText("4");
        d.txtH->setText("2");
        d.cmdOK->click();
    });
    main_->MenuExec("IMAGESIZE");
    EXPECT_TRUE(sameBits(makeBits(4, 2, {grey(0), grey(0), grey(90), grey(30), // row 0
                                         grey(0), grey(0), grey(90), grey(30)}),
                         doc->bits()));

    // Cancel changes nothing.
    const int32_t position = doc->HistoryPosition();
    answer<fSize>([](fSize& d) { d.cmdCancel->click(); });
    main_->MenuExec("IMAGESIZE");
    EXPECT_EQ(doc->HistoryPosition(), position);
    EXPECT_EQ(doc->PictureWidth(), 4);
}

TEST_F(SizingCommandTest, ImageSizeOfAOneWideImageAsksForTwoByTwo) {
    fImage* doc = openDocument(makeBits(1, 3, {grey(1), grey(2), grey(3)}));
    const int32_t position = doc->HistoryPosition();
    answer<fSize>([](fSize& d) {
        EXPECT_EQ(d.txtW->text(), "1");
        d.cmdOK->click(); // 1 x 3 as offered
        EXPECT_TRUE(d.isVisible());
        d.cmdCancel->click();
    });
    main_->MenuExec("IMAGESIZE");
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0], "Minimum size: 2 x 2");
    EXPECT_EQ(doc->HistoryPosition(), position);
    EXPECT_EQ(doc->PictureWidth(), 1);
}

TEST_F(SizingCommandTest, CanvasSizeLaysTheImageWhereItWasDragged) {
    const Bits source = makeBits(2, 1, {{1, 2, 3, 7}, {4, 5, 6, 7}});
    fImage* doc = openDocument(source);
    // A 4 x 3 canvas at 60 screen pixels per pixel; the picture dragged to (60, 120) lies at
    // (1, 2). Everything else is zero, the fourth byte included.
    answer<fCanvas>([](fCanvas& d) {
        d.txtW->setText("4");
        d.txtH->setText("3");
        d.DragPictureTo(QPoint(60, 120));
        d.cmdOK->click();
    });
    click("mnuAdjust", "Canvas ...");
    EXPECT_TRUE(sameBits(
        makeBits(4, 3, {{}, {}, {}, {}, {}, {}, {}, {}, {}, {1, 2, 3}, {4, 5, 6}, {}}),
        doc->bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "4 x 3");
    EXPECT_EQ(lastStep(doc), "Canvas ...");

    // Dragged one pixel past the left edge: only the second pixel lands, at (0, 0).
    main_->MenuExec("UNDO");
    answer<fCanvas>([](fCanvas& d) {
        d.txtW->setText("3");
        d.txtH->setText("2");
        d.DragPictureTo(QPoint(-80, 0)); // 240 / 3 = 80 per pixel
        d.cmdOK->click();
    });
    main_->MenuExec("CANVASSIZE");
    EXPECT_TRUE(sameBits(makeBits(3, 2, {{4, 5, 6}, {}, {}, {}, {}, {}}), doc->bits()));
}

TEST_F(SizingCommandTest, OrientationTurnsAndMirrors) {
    // a b c / d e f
    const Bits source = makeBits(3, 2, {grey(1), grey(2), grey(3), grey(4), grey(5), grey(6)});
    fImage* doc = openDocument(source);
    // Portrait: a quarter turn to the left (c f / b e / a d), then mirrored left to right.
    answer<fOrientation>([](fOrientation& d) {
        d.cbOrientation->setCurrentIndex(fOrientation::Portrait);
        d.chkFlip[1]->setChecked(true);
        d.cmdOK->click();
    });
    click("mnuAdjust", "Orientation ...");
    EXPECT_TRUE(sameBits(makeBits(2, 3, {grey(6), grey(3), grey(5), grey(2), grey(4), grey(1)}),
                         doc->bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "2 x 3");
    EXPECT_EQ(lastStep(doc), "Orientation ...");

    // Portrait again: the image already is; only the vertical mirror runs.
    answer<fOrientation>([](fOrientation& d) {
        d.cbOrientation->setCurrentIndex(fOrientation::Portrait);
        d.chkFlip[0]->setChecked(true);
        d.cmdOK->click();
    });
    main_->MenuExec("IMAGEORIENTATION");
    EXPECT_TRUE(sameBits(makeBits(2, 3, {grey(4), grey(1), grey(5), grey(2), grey(6), grey(3)}),
                         doc->bits()));

    // Nothing asked, nothing done.
    const int32_t position = doc->HistoryPosition();
    answer<fOrientation>([](fOrientation& d) { d.cmdOK->click(); });
    main_->MenuExec("IMAGEORIENTATION");
    EXPECT_EQ(doc->HistoryPosition(), position);
}

TEST_F(SizingCommandTest, QuarterTurnsMoveEveryPixel) {
    // a b c / d e f
    const Bits source = makeBits(3, 2, {grey(1), grey(2), grey(3), grey(4), grey(5), grey(6)});
    fImage* doc = openDocument(source);
    const Bits left = makeBits(2, 3, {grey(3), grey(6), grey(2), grey(5), grey(1), grey(4)});
    main_->MenuExec("N90");
    EXPECT_EQ(main_->LastRoute(), "RotateImage");
    EXPECT_TRUE(sameBits(left, doc->bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "2 x 3");
    EXPECT_EQ(lastStep(doc), "N90");
    main_->MenuExec("UNDO");
    main_->MenuExec("N180");
    EXPECT_TRUE(sameBits(makeBits(3, 2, {grey(6), grey(5), grey(4), grey(3), grey(2), grey(1)}),
                         doc->bits()));
    main_->MenuExec("UNDO");
    main_->MenuExec("N270");
    EXPECT_TRUE(sameBits(makeBits(2, 3, {grey(4), grey(1), grey(5), grey(2), grey(6), grey(3)}),
                         doc->bits()));
    // A quarter turn has no position between pixels to smooth.
    main_->MenuExec("UNDO");
    main_->MenuExec("A90");
    EXPECT_TRUE(sameBits(left, doc->bits()));

    // The dialog: two steps of 45 degrees, without smoothing.
    main_->MenuExec("UNDO");
    answer<fRotate>([](fRotate& d) {
        d.cmd45[1]->click();
        d.cmd45[1]->click();
        d.chkAntialiasing->setChecked(false);
        d.cmdOK->click();
    });
    click("mnuAdjust", "Rotation ...");
    EXPECT_EQ(main_->LastRoute(), "SizeDialog");
    EXPECT_TRUE(sameBits(left, doc->bits()));
    EXPECT_EQ(lastStep(doc), "Rotation ...");
    // A turn of 0 degrees changes nothing.
    const int32_t position = doc->HistoryPosition();
    answer<fRotate>([](fRotate& d) { d.cmdOK->click(); });
    main_->MenuExec("IMAGEROTATE");
    EXPECT_EQ(doc->HistoryPosition(), position);
}

TEST_F(SizingCommandTest, EighthTurnGrowsTheCanvas) {
    // A 2 x 2 image (A B / C D) turned by 45 degrees. The working canvas is 5 x 5 (the turned
    // box needs Ceil(2 * 1.414) = 3, plus a pixel round), the image lies at (1, 1), the centre
    // is (2, 2). Output (x, y) reads (Round(0.7071 (u)) + 2, Round(0.7071 (v)) + 2) with
    // u = dx - dy, v = dx + dy; that is inside the image for u and v in -2..0 only, which
    // covers (0, 2), (1, 1), (1, 2), (1, 3) and (2, 2): a 3 x 3 box from (0, 1).
    const test::Px A = {10, 11, 12}, B = {20, 21, 22}, C = {30, 31, 32}, D = {40, 41, 42};
    fImage* doc = openDocument(makeBits(2, 2, {A, B, C, D}));
    main_->MenuExec("N45");
    EXPECT_TRUE(sameBits(makeBits(3, 3, {{}, B, {}, A, A, D, {}, C, {}}), doc->bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "3 x 3");
    EXPECT_EQ(lastStep(doc), "N45");
    // The same turn smoothed keeps the size.
    main_->MenuExec("UNDO");
    main_->MenuExec("A45");
    EXPECT_EQ(doc->PictureWidth(), 3);
    EXPECT_EQ(doc->PictureHeight(), 3);
    EXPECT_EQ(lastStep(doc), "A45");
}

TEST_F(SizingCommandTest, RestoreOriginalBringsBackTheOpeningState) {
    const Bits source = makeBits(2, 1, {{10, 20, 30}, {200, 100, 0}});
    fImage* doc = openDocument(source);
    main_->MenuExec("300");
    main_->MenuExec("N90");
    ASSERT_EQ(doc->PictureWidth(), 3);
    ASSERT_EQ(doc->PictureHeight(), 6);
    const Bits turned = doc->bits();
    const int32_t position = doc->HistoryPosition();
    click("mnuAdjust", "Restore Original");
    EXPECT_EQ(main_->LastRoute(), "RestoreOriginal");
    EXPECT_TRUE(sameBits(source, doc->bits()));
    EXPECT_TRUE(sameBits(source, main_->Filter().bits()));
    EXPECT_EQ(main_->statusPanel("Pixel"), "2 x 1");
    EXPECT_EQ(doc->HistoryPosition(), position + 1);
    EXPECT_EQ(lastStep(doc), "Restore Original");
    // It is a step like any other: undo goes back to the turned image.
    main_->MenuExec("UNDO");
    EXPECT_TRUE(sameBits(turned, doc->bits()));
    // The word does the same.
    main_->MenuExec("RESTORE");
    EXPECT_EQ(main_->LastRoute(), "ZoomImage");
    EXPECT_TRUE(sameBits(source, doc->bits()));
    EXPECT_EQ(lastStep(doc), "Restore Original");
}

TEST_F(SizingCommandTest, ASizeChangeResetsTheSelection) {
    fImage* doc = openDocument(makeBits(3, 2, {grey(1), grey(2), grey(3), grey(4), grey(5), grey(6)}));
    doc->Region().CreateRect(0, 0, 1, 1, cBitRegion::ModeUnion, false);
    doc->SelectionChanged();
    ASSERT_FALSE(doc->Region().IsEmptyRegion());
    main_->MenuExec("N90");
    EXPECT_TRUE(doc->Region().IsEmptyRegion());
    ASSERT_TRUE(doc->Region().RegionMain().has_value());
    EXPECT_EQ(doc->Region().RegionMain()->bounds(), (Rect{0, 0, 2, 3}));
    // cFilter holds the new pixels and works on the whole new image.
    EXPECT_EQ(main_->Filter().region(), &*doc->Region().RegionMain());
    EXPECT_TRUE(sameBits(doc->bits(), main_->Filter().bits()));
    EXPECT_EQ(doc->PictureRect, (Rect{0, 0, 2, 3}));
    EXPECT_FALSE(doc->SelectionTimerActive());
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
