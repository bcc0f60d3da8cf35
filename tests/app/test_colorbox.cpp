// The Color Box, the colour dialog fGradient and PickColour: the colour the GetColor tool
// picks, the sliders and the sample, the swap, the wells, and colours through the dialog.
#include "app/colour/bcolortool.h"
#include "app/colour/fgradient.h"
#include "app/colour/ftoolcolor.h"
#include "app/colour/pickcolour.h"
#include "app/fmain.h"
#include "app/globals.h"
#include "app/panels/slidertrio.h"
#include "app/toolbox.h"
#include "app_test_util.h"
#include "document/host.h"

#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>

using namespace ostrivex;
using ostrivex::testing::FreshHome;

namespace {

class ColorBoxTest : public ostrivex::testing::WithMainWindow {
  protected:
    void SetUp() override {
        WithMainWindow::SetUp();
        box_ = main_->colorBox();
    }

    QColor sampleColour() const { return box_->sample()->palette().color(QPalette::Window); }
    std::array<int, 3> sliders() const {
        return {box_->slider(0)->value(), box_->slider(1)->value(), box_->slider(2)->value()};
    }

    fToolColor* box_ = nullptr;
};

TEST_F(ColorBoxTest, TheBoxShowsTheStoredColours) {
    ASSERT_NE(box_, nullptr);
    EXPECT_TRUE(main_->box(fMain::BoxColor)->isAncestorOf(box_));
    // Defaults: white in front, black behind.
    EXPECT_EQ(box_->primaryWell()->colour(), 0xFFFFFF);
    EXPECT_EQ(box_->secondaryWell()->colour(), 0);
    EXPECT_EQ(sliders(), (std::array<int, 3>{255, 255, 255}));
    EXPECT_EQ(box_->sample()->text(), "#FFFFFF");
    EXPECT_EQ(box_->slider(0)->minimum(), 0);
    EXPECT_EQ(box_->slider(0)->maximum(), 255);
}

TEST_F(ColorBoxTest, APickedColourGoesToTheSlidersTheSampleAndTheForegroundColour) {
    // Through the document's view of the main window, as the GetColor tool calls it.
    DocumentHost* host = GetDocumentHost();
    ASSERT_EQ(host, static_cast<DocumentHost*>(main_.get()));
    host->ColorPicked(0x00332211); // red 0x11, green 0x22, blue 0x33
    EXPECT_EQ(Settings.ColorPrimary, 0x332211);
    EXPECT_EQ(Settings.ColorSecondary, 0);
    EXPECT_EQ(sliders(), (std::array<int, 3>{0x11, 0x22, 0x33}));
    EXPECT_EQ(sampleColour(), QColor(0x11, 0x22, 0x33));
    EXPECT_EQ(box_->sample()->text(), "#112233");
    EXPECT_EQ(box_->primaryWell()->colour(), 0x332211);
    EXPECT_EQ(box_->findChild<QLabel*>("sRedValue")->text(), "17");
}

TEST_F(ColorBoxTest, SlidersChangeTheForegroundColourLive) {
    main_->ColorPicked(0x00332211);
    box_->slider(1)->setValue(128);
    EXPECT_EQ(Settings.ColorPrimary, 0x338011);
    EXPECT_EQ(box_->sample()->text(), "#118033");
    EXPECT_EQ(sampleColour(), QColor(0x11, 0x80, 0x33));
    box_->slider(2)->setValue(0);
    box_->slider(0)->setValue(255);
    EXPECT_EQ(Settings.ColorPrimary, 0x0080FF);
    EXPECT_EQ(box_->primaryWell()->colour(), 0x0080FF);
    EXPECT_EQ(box_->findChild<QLabel*>("sGreenValue")->text(), "128");
}

TEST_F(ColorBoxTest, SwapExchangesTheTwoColours) {
    Settings.ColorPrimary = 0x0000FF;
    Settings.ColorSecondary = 0x00FF00;
    box_->ShowColours();
    box_->swapButton()->click();
    EXPECT_EQ(Settings.ColorPrimary, 0x00FF00);
    EXPECT_EQ(Settings.ColorSecondary, 0x0000FF);
    EXPECT_EQ(sliders(), (std::array<int, 3>{0, 255, 0}));
    EXPECT_EQ(box_->secondaryWell()->colour(), 0x0000FF);
}

TEST_F(ColorBoxTest, AClickOnAWellOpensTheColourDialog) {
    ostrivex::testing::answerNextModal([](QWidget* w) {
        auto* dialog = qobject_cast<fGradient*>(w);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->colour(), 0);
        dialog->hex()->setFocus();
        dialog->hex()->selectAll();
        QTest::keyClicks(dialog->hex(), "#0A0B0C");
        dialog->accept();
    });
    box_->secondaryWell()->click();
    EXPECT_EQ(Settings.ColorSecondary, 0x0C0B0A);
    EXPECT_EQ(Settings.ColorPrimary, 0xFFFFFF);

    ostrivex::testing::answerNextModal([](QWidget* w) {
        auto* dialog = qobject_cast<fGradient*>(w);
        dialog->blue()->setValue(0);
        dialog->accept();
    });
    box_->primaryWell()->click();
    EXPECT_EQ(Settings.ColorPrimary, 0x00FFFF);
    EXPECT_EQ(sliders(), (std::array<int, 3>{255, 255, 0}));
}

class ColourDialogTest : public FreshHome {
  protected:
    void SetUp() override {
        FreshHome::SetUp();
        SetDefaultSettings(Settings, AppFolder());
    }
};

TEST_F(ColourDialogTest, AColourComesBackUnchanged) {
    fGradient dialog;
    dialog.setColour(0x00563412);
    EXPECT_EQ(dialog.red()->value(), 0x12);
    EXPECT_EQ(dialog.green()->value(), 0x34);
    EXPECT_EQ(dialog.blue()->value(), 0x56);
    EXPECT_EQ(dialog.hex()->text(), "#123456");
    EXPECT_EQ(dialog.colour(), 0x563412);
    const int levels[] = {0, 1, 2, 127, 128, 253, 254, 255};
    for (int r : levels)
        for (int g : levels)
            for (int b : levels) {
                const int32_t c = r | g << 8 | b << 16;
                dialog.setColour(c);
                ASSERT_EQ(dialog.colour(), c) << r << " " << g << " " << b;
            }
    // The unused top byte is dropped.
    dialog.setColour(0x7F010203);
    EXPECT_EQ(dialog.colour(), 0x010203);

    EXPECT_EQ(ColourHex(0x0080FF), "#FF8000");
    int32_t c = -1;
    EXPECT_TRUE(ParseColourHex("ff8000", c));
    EXPECT_EQ(c, 0x0080FF);
    EXPECT_FALSE(ParseColourHex("#ff80", c));
    EXPECT_FALSE(ParseColourHex("#gg0000", c));
    EXPECT_EQ(c, 0x0080FF);
}

TEST_F(ColourDialogTest, NumbersHexFieldAndBarEditTheNewColour) {
    fGradient dialog;
    dialog.setColour(0x0000FF); // red: hue 0, saturation 1, value 1
    dialog.green()->setValue(0x80);
    EXPECT_EQ(dialog.colour(), 0x0080FF);
    EXPECT_EQ(dialog.hex()->text(), "#FF8000");

    // A hex text that is not six digits changes nothing.
    dialog.hex()->setFocus();
    dialog.hex()->selectAll();
    QTest::keyClicks(dialog.hex(), "#00FF");
    EXPECT_EQ(dialog.colour(), 0x0080FF);
    QTest::keyClicks(dialog.hex(), "00");
    EXPECT_EQ(dialog.colour(), 0x00FF00);
    EXPECT_EQ(dialog.green()->value(), 255);

    // The field: hue across (0 to 1 over the width), saturation up (1 at the top).
    dialog.setColour(0x0000FF);
    dialog.field()->setFixedSize(181, 101);
    dialog.show();
    QApplication::processEvents();
    QTest::mouseClick(dialog.field(), Qt::LeftButton, {}, QPoint(90, 0)); // hue 1/2: cyan
    EXPECT_EQ(dialog.colour(), 0xFFFF00);
    QTest::mouseClick(dialog.field(), Qt::LeftButton, {}, QPoint(60, 100)); // no saturation
    EXPECT_EQ(dialog.colour(), 0xFFFFFF);
    // The bar: value 0 at the bottom.
    QTest::mouseClick(dialog.valueBar(), Qt::LeftButton, {},
                      QPoint(10, dialog.valueBar()->height() - 1));
    EXPECT_EQ(dialog.colour(), 0);
    // Black and grey keep the hue the user had: back up the bar, saturation up, green.
    QTest::mouseClick(dialog.valueBar(), Qt::LeftButton, {}, QPoint(10, 0));
    QTest::mouseClick(dialog.field(), Qt::LeftButton, {}, QPoint(60, 0));
    EXPECT_EQ(dialog.colour(), 0x00FF00);
}

TEST_F(ColourDialogTest, CustomColoursComeFromAndGoToTheSettings) {
    fGradient dialog;
    // The default custom colours are a grey ramp: cell i is 17 i in each channel.
    EXPECT_EQ(dialog.customCell(5)->colour(), 0x555555);
    EXPECT_EQ(dialog.customCell(15)->colour(), 0xFFFFFF);
    dialog.chooseCustom(5);
    EXPECT_EQ(dialog.colour(), 0x555555);
    dialog.red()->setValue(200);
    dialog.addCustom();
    EXPECT_EQ(Settings.CustomColors[5], 0x5555C8);
    EXPECT_EQ(dialog.customCell(5)->colour(), 0x5555C8);

    // With no cell chosen, added colours fill the cells in turn from the first.
    fGradient second;
    second.setColour(0x010203);
    second.addCustom();
    second.setColour(0x040506);
    second.addCustom();
    EXPECT_EQ(Settings.CustomColors[0], 0x010203);
    EXPECT_EQ(Settings.CustomColors[1], 0x040506);
    EXPECT_EQ(Settings.CustomColors[2], 0x222222);
    // A new dialog shows them.
    fGradient third;
    EXPECT_EQ(third.customCell(1)->colour(), 0x040506);
}

TEST_F(ColourDialogTest, PickColourWritesTheColourOnlyOnOk) {
    int32_t colour = 0x112233;
    ostrivex::testing::answerNextModal([](QWidget* w) {
        auto* dialog = qobject_cast<fGradient*>(w);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->windowTitle(), "Mask");
        dialog->red()->setValue(0x44);
        dialog->reject();
    });
    EXPECT_FALSE(PickColour(nullptr, colour, "Mask"));
    EXPECT_EQ(colour, 0x112233);

    ostrivex::testing::answerNextModal([](QWidget* w) {
        auto* dialog = qobject_cast<fGradient*>(w);
        EXPECT_EQ(dialog->windowTitle(), "Color");
        dialog->red()->setValue(0x44);
        dialog->accept();
    });
    EXPECT_TRUE(PickColour(nullptr, colour));
    EXPECT_EQ(colour, 0x112244);
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
