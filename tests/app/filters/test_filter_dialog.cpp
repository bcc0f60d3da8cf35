// The filter dialog over a document of the main window: the controls each row builds,
// thumbnail runs on exact pixels (inside a selection scaled to the thumbnail), the full
// preview, OK and Cancel with their undo steps, the picker, the scaling of Lens and Light,
// the progress of full runs, and every command word that opens the dialog.
#include "app/filters/ffilter.h"
#include "operations/filter_table.h"
#include "app/fmain.h"
#include "app/globals.h"
#include "app_test_util.h"
#include "document/fimage.h"
#include "pixel/pixel_test_util.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>
#include <QTimer>

#include <array>
#include <utility>

using namespace ostrivex;

namespace {

// A 320 x 22 picture: blue 10 in even columns and 200 in odd ones, green 10 * y, red 100.
// Its thumbnail is 160 x 11 and takes every second column and row (BitsResize with a ratio
// of 2 both ways), so thumbnail pixel (x, y) is blue 10, green 20 * y, red 100.
Bits stripes() {
    Bits b(320, 22);
    for (int y = 0; y < 22; ++y)
        for (int x = 0; x < 320; ++x) {
            uint8_t* p = b.pixel(x, y);
            p[0] = x % 2 == 0 ? 10 : 200;
            p[1] = uint8_t(10 * y);
            p[2] = 100;
        }
    return b;
}

class FilterDialogTest : public ostrivex::testing::WithMainWindow {
  protected:
    void SetUp() override {
        WithMainWindow::SetUp();
        savedChooser_ = fFilter::ColourChooser;
    }
    void TearDown() override {
        fFilter::ExecHook = nullptr;
        fFilter::ColourChooser = savedChooser_;
        WithMainWindow::TearDown();
    }

    fImage* openDocument(const Bits& bits) {
        doc_ = ostrivex::testing::OpenDocument(*main_, bits);
        return doc_;
    }

    // The host the dispatcher builds, with the progress counted.
    FilterDialogHost host() {
        FilterDialogHost h;
        h.document = doc_;
        h.filter = &main_->Filter();
        h.progress = [this](int percent) {
            ++progressCalls_;
            main_->cFilter_Progress(percent);
        };
        h.hideProgress = [this] { main_->progressBar()->setValue(0); };
        h.commit = [this](const std::function<Bits(cBitFilter&)>& op) {
            main_->RunFilterEnvelope(op, "Test");
        };
        return h;
    }

    fImage* doc_ = nullptr;
    int progressCalls_ = 0;
    std::function<bool(QWidget*, int32_t&, const QString&)> savedChooser_;
};

bool shown(const QWidget* w) {
    return !w->isHidden();
}
// A slider's minimum, maximum and value.
std::array<int, 3> range(const QSlider* s) {
    return {s->minimum(), s->maximum(), s->value()};
}

TEST_F(FilterDialogTest, EachRowBuildsItsControls) {
    openDocument(test::makeBits(2, 1, {{10, 20, 30}, {200, 100, 0}}));
    {
        // Gamma: one centred row. The slider runs 0..200 and starts at 100; the value is
        // the slider less the offset 100; the label shows the slider's own value.
        fFilter d(4, host());
        EXPECT_EQ(d.windowTitle(), "Gamma correction");
        EXPECT_EQ(d.lblName[0]->text(), "Gamma");
        EXPECT_EQ(range(d.sld[0]), (std::array{0, 200, 100}));
        EXPECT_EQ(d.offset(0), 100);
        EXPECT_EQ(d.values().s[0], 0);
        EXPECT_EQ(d.lblValue[0]->text(), "100");
        d.sld[0]->setValue(130);
        EXPECT_EQ(d.values().s[0], 30);
        EXPECT_EQ(d.lblValue[0]->text(), "130");
        EXPECT_TRUE(shown(d.frSliders));
        EXPECT_EQ(d.frSliders->height(), fFilter::kSliderRowHeight);
        for (QWidget* w : std::initializer_list<QWidget*>{d.sld[1], d.chkOption, d.picColour[0],
                                                          d.picColour[1], d.frBanks})
            EXPECT_FALSE(shown(w)) << w->objectName().toStdString();
        EXPECT_FALSE(d.centreFlag());
        EXPECT_FALSE(d.tmrSelect->isActive());
    }
    {
        // Halftone: three rows, no offsets.
        fFilter d(7, host());
        EXPECT_EQ(d.windowTitle(), "Halftone");
        EXPECT_EQ(d.frSliders->height(), 3 * fFilter::kSliderRowHeight);
        EXPECT_EQ(d.lblName[2]->text(), "Intensity");
        EXPECT_EQ(range(d.sld[0]), (std::array{1, 25, 1}));
        EXPECT_EQ(d.sld[1]->value(), 50);
        EXPECT_EQ(d.offset(1), 0);
        EXPECT_EQ(d.values().s, (std::array<int32_t, 3>{1, 50, 0}));
        EXPECT_EQ(d.lblValue[1]->text(), "50");
    }
    {
        // Pixelaze keeps its title; Brightness starts at 0 in -100..250.
        fFilter p(8, host());
        EXPECT_EQ(p.windowTitle(), "Pixelaze");
        EXPECT_EQ(p.lblName[0]->text(), "Pixel size");
        fFilter b(1, host());
        EXPECT_EQ(range(b.sld[0]), (std::array{-100, 250, 0}));
        EXPECT_EQ(b.lblValue[0]->text(), "0");
    }
    {
        // Sketch: the option off, and only well 1 (AddColours(0) hides well 0).
        fFilter d(12, host());
        EXPECT_TRUE(shown(d.chkOption));
        EXPECT_EQ(d.chkOption->text(), "B/W");
        EXPECT_FALSE(d.chkOption->isChecked());
        EXPECT_FALSE(shown(d.picColour[0]));
        EXPECT_TRUE(shown(d.picColour[1]));
        // Twirl: "Clean back" on.
        fFilter t(34, host());
        EXPECT_EQ(t.chkOption->text(), "Clean back");
        EXPECT_TRUE(t.chkOption->isChecked());
        EXPECT_TRUE(t.values().option);
        EXPECT_EQ(t.sld[1]->minimum(), -180);
    }
    {
        // Isolate: the picker with its timer, and both wells.
        fFilter d(14, host());
        EXPECT_TRUE(d.centreFlag());
        EXPECT_TRUE(d.tmrSelect->isActive());
        EXPECT_TRUE(shown(d.picColour[0]));
        EXPECT_TRUE(shown(d.picColour[1]));
        // Shift: the picker and well 0 only (AddColours(1) hides well 1).
        fFilter s(21, host());
        EXPECT_TRUE(s.centreFlag());
        EXPECT_TRUE(shown(s.picColour[0]));
        EXPECT_FALSE(shown(s.picColour[1]));
    }
    {
        // RGB banks: no sliders, the banks frame with sources 2, 1, 0.
        fFilter d(26, host());
        EXPECT_EQ(d.windowTitle(), "RGB banks");
        EXPECT_FALSE(shown(d.frSliders));
        EXPECT_TRUE(shown(d.frBanks));
        EXPECT_TRUE(d.optRChannel[0]->isChecked());
        EXPECT_TRUE(d.optGChannel[1]->isChecked());
        EXPECT_TRUE(d.optBChannel[2]->isChecked());
        EXPECT_EQ(d.values().sources, (std::array<int32_t, 3>{2, 1, 0}));
        // One choice per row: picking blue for the red row turns its red off.
        d.optRChannel[2]->setChecked(true);
        EXPECT_FALSE(d.optRChannel[0]->isChecked());
        EXPECT_EQ(d.values().sources, (std::array<int32_t, 3>{0, 1, 0}));
    }
    {
        // Behind Glass: the styles and the combo, "Large" first for the blocks.
        fFilter d(39, host());
        EXPECT_TRUE(shown(d.FrmGlass));
        EXPECT_FALSE(shown(d.FrmCurtain));
        EXPECT_EQ(d.styleText(), "slanting");
        ASSERT_EQ(d.cbo->count(), 2);
        EXPECT_EQ(d.cbo->itemText(0), "Light");
        d.cbo->setCurrentIndex(1);
        EXPECT_EQ(d.values().styleValue, 1); // Tight
        d.oo[3]->setChecked(true);
        EXPECT_EQ(d.styleText(), "squary");
        ASSERT_EQ(d.cbo->count(), 3);
        EXPECT_EQ(d.cbo->itemText(0), "Large");
        EXPECT_EQ(d.cbo->currentText(), "Tight");
        EXPECT_EQ(d.values().styleValue, 2);
        d.oo[2]->setChecked(true);
        EXPECT_EQ(d.styleText(), "vertical");
        EXPECT_EQ(d.values().styleValue, 1);
        // Behind Curtain: values 1 to 4.
        fFilter c(40, host());
        EXPECT_TRUE(shown(c.FrmCurtain));
        EXPECT_EQ(c.styleText(), "curtain");
        EXPECT_EQ(c.values().styleValue, 1);
        c.Curt[3]->setChecked(true);
        EXPECT_EQ(c.values().styleValue, 4);
    }
}

TEST_F(FilterDialogTest, ThumbnailRunsOnTheResizedSourceInsideTheScaledSelection) {
    openDocument(stripes());
    // The left half of the picture is selected: at thumbnail scale columns 0 to 79.
    doc_->Region().CreateRect(0, 0, 160, 22, cBitRegion::ModeUnion, false);
    doc_->SelectionChanged();
    fFilter d(1, host());
    EXPECT_EQ(d.previewWidth(), 160);
    EXPECT_EQ(d.previewHeight(), 11);
    ASSERT_EQ(d.sourceThumb().width(), 160);
    ASSERT_EQ(d.sourceThumb().height(), 11);
    for (int x : {0, 1, 79, 80, 159})
        for (int y : {0, 5, 10})
            EXPECT_EQ(test::bgr(d.sourceThumb(), x, y), (std::array{10, 20 * y, 100}));
    EXPECT_EQ(d.thumbnailRegion().bounds(), (Rect{0, 0, 80, 11}));
    EXPECT_EQ(d.thumbnailRuns(), 1);

    // Brightness 30: every channel + 30 inside, the rest as it was.
    d.sld[0]->setValue(30);
    EXPECT_EQ(d.thumbnailRuns(), 2);
    EXPECT_EQ(d.fullRuns(), 0);
    const Bits& r = d.resultThumb();
    EXPECT_EQ(test::bgr(r, 0, 0), (std::array{40, 30, 130}));
    EXPECT_EQ(r.pixel(79, 10)[1], 230);
    EXPECT_EQ(test::bgr(r, 80, 10), (std::array{10, 200, 100}));
    EXPECT_EQ(r.pixel(159, 3)[2], 100);
    // The result record holds the same pixels behind its header, top-down with the band.
    EXPECT_EQ(d.resultRecord().header.biWidth, 164);
    EXPECT_EQ(d.resultRecord().header.biHeight, -15);
    EXPECT_EQ(d.picResult->image().pixel(0, 0), qRgb(130, 30, 40));
    EXPECT_EQ(d.picResult->image().pixel(80, 1), qRgb(100, 20, 10));
    // The document is not touched by thumbnail runs.
    EXPECT_TRUE(test::sameBits(stripes(), doc_->bits()));
    EXPECT_EQ(progressCalls_, 0);
}

TEST_F(FilterDialogTest, BanksThumbnailReadsTheFrame) {
    openDocument(stripes());
    fFilter d(26, host());
    // Red from blue, green inverted, over the whole thumbnail.
    d.optRChannel[2]->setChecked(true);
    d.chkInvt[1]->setChecked(true);
    const Bits& r = d.resultThumb();
    for (int x : {0, 80, 159})
        for (int y : {0, 4, 10})
            EXPECT_EQ(test::bgr(r, x, y), (std::array{10, 255 - 20 * y, 10}));
    // Killing blue wins.
    d.chkKill[2]->setChecked(true);
    EXPECT_EQ(d.resultThumb().pixel(7, 7)[0], 0);
    EXPECT_EQ(d.resultThumb().pixel(7, 7)[2], 10);
}

TEST_F(FilterDialogTest, PreviewThenOkRunsOnceAndMakesOneUndoStep) {
    openDocument(test::makeBits(2, 1, {{10, 20, 30}, {200, 100, 0}}));
    const Bits before = doc_->bits();
    const int32_t position = doc_->HistoryPosition();
    fFilter::ExecHook = [&](fFilter& d) {
        EXPECT_EQ(d.number(), 1);
        d.sld[0]->setValue(30);
        d.cmdPreview_Click();
        EXPECT_TRUE(d.previewed());
        EXPECT_EQ(d.fullRuns(), 1);
        // The document shows the preview; cFilter and the history are as they were.
        EXPECT_TRUE(
            test::sameBits(test::makeBits(2, 1, {{40, 50, 60}, {230, 130, 30}}), doc_->bits()));
        EXPECT_TRUE(test::sameBits(before, main_->Filter().bits()));
        EXPECT_EQ(doc_->HistoryPosition(), position);
        // A second Preview does not run again.
        d.cmdPreview_Click();
        EXPECT_EQ(d.fullRuns(), 1);
        d.cmdOK_Click();
        EXPECT_EQ(d.fullRuns(), 1);
        EXPECT_TRUE(d.committed());
        return d.result();
    };
    // The menu entry: its caption names the undo step.
    main_->action(*FindMenuWord("BRIGHTNESS"))->trigger();
    EXPECT_EQ(main_->LastRoute(), "FilterDialog");
    const Bits expected = test::makeBits(2, 1, {{40, 50, 60}, {230, 130, 30}});
    EXPECT_TRUE(test::sameBits(expected, doc_->bits()));
    EXPECT_TRUE(test::sameBits(expected, main_->Filter().bits()));
    EXPECT_EQ(doc_->HistoryPosition(), position + 1);
    EXPECT_EQ(doc_->History().ActionNames[size_t(position)], "Brightness...");
    EXPECT_TRUE(doc_->Model().Changed);
}

TEST_F(FilterDialogTest, OkInsideTheModalLoop) {
    openDocument(test::makeBits(2, 1, {{10, 20, 30}, {200, 100, 0}}));
    const int32_t position = doc_->HistoryPosition();
    // No hook: the dialog runs its own modal loop, and a click on OK ends it.
    bool answered = false;
    QTimer timer;
    timer.setInterval(10);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto* d = qobject_cast<fFilter*>(QApplication::activeModalWidget());
        if (!d || answered) return;
        answered = true;
        d->sld[0]->setValue(25); // Threshold's cut
        d->cmdOK->click();
    });
    timer.start();
    FilterDialogHost h = host();
    const int result = ShowFilterDialog(13, h, main_.get());
    EXPECT_TRUE(answered);
    EXPECT_EQ(result, QDialog::Accepted);
    // (10 + 20 + 30) \ 3 = 20 is not above 25: black; 300 \ 3 = 100 is: white.
    EXPECT_TRUE(test::sameBits(test::makeBits(2, 1, {{0, 0, 0}, {255, 255, 255}}), doc_->bits()));
    EXPECT_EQ(doc_->HistoryPosition(), position + 1);
    EXPECT_EQ(doc_->History().ActionNames[size_t(position)], "Test");
}

TEST_F(FilterDialogTest, MovingASliderAfterAPreviewRunsAgainOnOk) {
    openDocument(test::makeBits(2, 1, {{10, 20, 30}, {200, 100, 0}}));
    const int32_t position = doc_->HistoryPosition();
    fFilter::ExecHook = [&](fFilter& d) {
        d.sld[0]->setValue(30);
        d.cmdPreview_Click();
        d.sld[0]->setValue(-10);
        EXPECT_FALSE(d.previewed());
        // The document still shows the preview of 30.
        EXPECT_EQ(doc_->bits().pixel(0, 0)[0], 40);
        d.cmdOK_Click();
        EXPECT_EQ(d.fullRuns(), 2);
        return d.result();
    };
    main_->MenuExec("LIGHTCUSTOM");
    EXPECT_TRUE(test::sameBits(test::makeBits(2, 1, {{0, 10, 20}, {190, 90, 0}}), doc_->bits()));
    EXPECT_EQ(doc_->HistoryPosition(), position + 1);
    // Without a menu entry's caption the step is named by the word.
    EXPECT_EQ(doc_->History().ActionNames[size_t(position)], "LIGHTCUSTOM");
}

TEST_F(FilterDialogTest, CancelAfterPreviewRestoresTheDocumentWithoutAnUndoStep) {
    openDocument(test::makeBits(2, 1, {{10, 20, 30}, {200, 100, 0}}));
    const Bits before = doc_->bits();
    const int32_t position = doc_->HistoryPosition();
    fFilter::ExecHook = [&](fFilter& d) {
        EXPECT_EQ(d.number(), 26);
        d.optRChannel[2]->setChecked(true); // red from blue
        d.cmdPreview_Click();
        EXPECT_TRUE(
            test::sameBits(test::makeBits(2, 1, {{10, 20, 10}, {200, 100, 200}}), doc_->bits()));
        d.CmdCancel_Click();
        EXPECT_TRUE(d.cancelled());
        return d.result();
    };
    main_->MenuExec("RGBBANKS");
    EXPECT_TRUE(test::sameBits(before, doc_->bits()));
    EXPECT_TRUE(test::sameBits(before, main_->Filter().bits()));
    EXPECT_EQ(doc_->HistoryPosition(), position);
    EXPECT_FALSE(doc_->Model().Changed);

    // Cancel with no preview: the document takes cFilter's pixels again (the same ones) and
    // the window is updated without an undo step: nothing was changed.
    DocumentChanged = false;
    fFilter::ExecHook = [&](fFilter& d) {
        d.sld[0]->setValue(50);
        return QDialog::Rejected;
    };
    main_->MenuExec("CONTRAST");
    EXPECT_TRUE(test::sameBits(before, doc_->bits()));
    EXPECT_FALSE(DocumentChanged);
    EXPECT_EQ(doc_->HistoryPosition(), position);
    EXPECT_FALSE(doc_->Model().Changed);
}

TEST_F(FilterDialogTest, ProgressOnlyOnFullRuns) {
    openDocument(stripes());
    fFilter d(1, host());
    d.sld[0]->setValue(10);
    d.sld[0]->setValue(20);
    EXPECT_EQ(progressCalls_, 0);
    d.cmdPreview_Click();
    EXPECT_GT(progressCalls_, 0);                // at least the final 100
    EXPECT_EQ(main_->progressBar()->value(), 0); // the end hides it again
    const int afterPreview = progressCalls_;
    d.cmdOK_Click();
    EXPECT_EQ(progressCalls_, afterPreview); // OK takes the preview over
    EXPECT_EQ(d.fullRuns(), 1);
    EXPECT_EQ(doc_->bits().pixel(0, 0)[2], 120);
}

TEST_F(FilterDialogTest, PickerSetsTheCentreAndColourZero) {
    openDocument(stripes());
    fFilter d(16, host()); // Replace
    EXPECT_FLOAT_EQ(d.centreX(), 0.5f);
    EXPECT_FLOAT_EQ(d.centreY(), 0.5f);
    d.show();
    QTest::mouseClick(d.picSource, Qt::LeftButton, {}, QPoint(30, 5));
    EXPECT_FLOAT_EQ(d.centreX(), 30.0f / 160.0f);
    EXPECT_FLOAT_EQ(d.centreY(), 5.0f / 11.0f);
    // Thumbnail pixel (30, 5): blue 10, green 100, red 100, packed 0x00BBGGRR.
    EXPECT_EQ(d.colour(0), 0x0A6464);
    EXPECT_EQ(d.values().colours[0], 0x0A6464);
    // The cross, 5 pixels each way, in the marker colour; it blinks to black.
    QImage shown = d.picSource->rendered();
    for (QPoint p : {QPoint(30, 5), QPoint(35, 5), QPoint(25, 5), QPoint(30, 0)})
        EXPECT_EQ(shown.pixel(p), qRgb(255, 255, 255)) << p.x() << ", " << p.y();
    EXPECT_EQ(shown.pixel(36, 5), qRgb(100, 100, 10));
    EXPECT_EQ(shown.pixel(31, 4), qRgb(100, 80, 10));
    d.SelectTick();
    EXPECT_EQ(d.markerColour(), 0u);
    EXPECT_EQ(d.picSource->rendered().pixel(30, 5), qRgb(0, 0, 0));
    d.SelectTick();
    EXPECT_EQ(d.markerColour(), 0xFFFFFFu);

    // Replace with tolerance 0 (threshold 1): only the picked colour itself, which all of
    // thumbnail row 5 has, becomes colour 1 (black); row 4 keeps its green 80.
    d.sld[0]->setValue(0);
    EXPECT_EQ(d.resultThumb().pixel(100, 5)[1], 0);
    EXPECT_EQ(d.resultThumb().pixel(100, 5)[2], 0);
    EXPECT_EQ(d.resultThumb().pixel(100, 4)[1], 80);

    // A point off the thumbnail is clamped to its last column and first row.
    d.SourcePicked(500, -3);
    EXPECT_FLOAT_EQ(d.centreX(), 159.0f / 160.0f);
    EXPECT_FLOAT_EQ(d.centreY(), 0.0f);
    EXPECT_EQ(d.colour(0), 0x0A0064); // row 0: green 0

    // A colour well asks the chooser and runs again with the new colour.
    fFilter::ColourChooser = [](QWidget*, int32_t& c, const QString&) {
        c = 0x123456;
        return true;
    };
    const int runs = d.thumbnailRuns();
    d.picColour[1]->click();
    EXPECT_EQ(d.colour(1), 0x123456);
    EXPECT_EQ(d.values().colours[1], 0x123456);
    EXPECT_EQ(d.thumbnailRuns(), runs + 1);
    fFilter::ColourChooser = [](QWidget*, int32_t&, const QString&) { return false; };
    d.picColour[1]->click();
    EXPECT_EQ(d.colour(1), 0x123456);
    EXPECT_EQ(d.thumbnailRuns(), runs + 1);

    // Without the picker a click does nothing.
    fFilter b(1, host());
    b.SourcePicked(3, 3);
    EXPECT_FLOAT_EQ(b.centreX(), 0.5f);
}

TEST_F(FilterDialogTest, LensAndLightScaleTheFirstSliderToTheThumbnail) {
    openDocument(stripes()); // thumbnail 160 x 11
    // The first slider of both is a length in thumbnail pixels, which the operation takes
    // as a fraction of the thumbnail's longer side.
    const auto extension = [this](const fFilter& d) {
        return ThumbnailExtension(d.values().s[0], doc_->PictureWidth(), doc_->PictureHeight());
    };
    {
        fFilter d(27, host());
        EXPECT_FLOAT_EQ(extension(d), 50.0f / 160.0f);
        d.sld[0]->setValue(80);
        EXPECT_FLOAT_EQ(extension(d), 0.5f);
        // The full run uses the same fraction of the whole picture.
        d.cmdPreview_Click();
        cBitFilter reference;
        reference.SetBits(stripes());
        EXPECT_TRUE(test::sameBits(reference.LENS(0.5f, 0.5f, 0.5f, 50), doc_->bits()));
        d.CmdCancel_Click();
        EXPECT_TRUE(test::sameBits(stripes(), doc_->bits()));
    }
    {
        fFilter d(36, host());
        d.sld[0]->setValue(40);
        EXPECT_FLOAT_EQ(extension(d), 0.25f);
        EXPECT_EQ(d.values().s[1], 250);
    }
    // A tall picture scales by its height: 40 x 220 gives a thumbnail of 20 x 110.
    fImage* tall = openDocument(Bits(40, 220));
    ASSERT_EQ(tall->PictureHeight(), 220);
    fFilter d(36, host());
    EXPECT_EQ(d.previewWidth(), 20);
    EXPECT_EQ(d.previewHeight(), 110);
    d.sld[0]->setValue(11);
    EXPECT_FLOAT_EQ(extension(d), 0.1f);
}

TEST_F(FilterDialogTest, TheSelectionOutlineStopsWhileTheDialogIsOpen) {
    openDocument(stripes());
    doc_->Region().CreateRect(0, 0, 10, 10, cBitRegion::ModeUnion, false);
    doc_->SelectionChanged();
    ASSERT_TRUE(doc_->SelectionTimerActive());
    bool activeInside = true;
    fFilter::ExecHook = [&](fFilter& d) {
        activeInside = doc_->SelectionTimerActive();
        return d.result();
    };
    main_->MenuExec("TILE");
    EXPECT_FALSE(activeInside);
    EXPECT_TRUE(doc_->SelectionTimerActive());
}

TEST_F(FilterDialogTest, EveryDialogWordOpensTheDialogWithItsNumber) {
    openDocument(test::makeBits(2, 1, {{10, 20, 30}, {200, 100, 0}}));
    const Bits before = doc_->bits();
    // The list itself, word by word, is checked by the table's own test.
    const std::vector<FilterDialogWord>& words = FilterDialogWords();
    ASSERT_EQ(words.size(), 42u);
    int opened = -1;
    QString title;
    fFilter::ExecHook = [&](fFilter& d) {
        opened = d.number();
        title = d.windowTitle();
        return int(QDialog::Rejected);
    };
    for (const auto& [word, number] : words) {
        opened = -1;
        main_->clearLastRoute();
        main_->MenuExec(QString::fromLatin1(word));
        EXPECT_EQ(opened, number) << word;
        EXPECT_EQ(main_->LastRoute(), "FilterDialog") << word;
    }
    // The titles of a few of them.
    for (auto [word, caption] : {std::pair{"HAFTONE", "Halftone"}, {"ADDGRID", "Grid"},
                                 {"CUSTOMCURTAIN", "Behind Curtain"}}) {
        main_->MenuExec(word);
        EXPECT_EQ(title, caption);
    }
    // TALCOMPOWDER does nothing.
    opened = -1;
    DocumentChanged = false;
    main_->clearLastRoute();
    main_->MenuExec("TALCOMPOWDER");
    EXPECT_EQ(opened, -1);
    EXPECT_EQ(main_->LastRoute(), "");
    EXPECT_TRUE(test::sameBits(before, doc_->bits()));
    EXPECT_FALSE(DocumentChanged);
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
