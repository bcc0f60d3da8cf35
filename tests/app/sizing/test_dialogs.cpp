// The four sizing dialogs on their own: the digits-only fields, the proportions of "Image
// size", its Quick list and the size check on OK; the placing of the picture in "Canvas
// size"; the turn that "Orientation" asks for; the angle of "Rotate".
#include "app/sizing/digitsonly.h"
#include "app/sizing/fcanvas.h"
#include "app/sizing/forientation.h"
#include "app/sizing/frotate.h"
#include "app/sizing/fsize.h"
#include "app/sizing/sizefields.h"
#include "app_test_util.h"
#include "document/dialogs.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <vector>

using namespace ostrivex;

namespace {

// Catches the message boxes of the dialogs.
class SizingDialogTest : public ::testing::Test {
  protected:
    void SetUp() override {
        saved_ = DocumentDialogs::Inform;
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString& title) {
            messages.push_back(title + ": " + text);
        };
    }
    void TearDown() override { DocumentDialogs::Inform = saved_; }

    std::vector<QString> messages;
    decltype(DocumentDialogs::Inform) saved_;
};

QImage picture(int w, int h) {
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(Qt::red);
    return img;
}

TEST_F(SizingDialogTest, NumberFieldsTakeDigitsAndBackspaceOnly) {
    fSize dialog(5, 3);
    dialog.chkKeepProportions->setChecked(false);
    QLineEdit* w = dialog.txtW;
    w->setFocus();
    w->selectAll();
    QTest::keyClicks(w, "1a2-3 +x4.");
    EXPECT_EQ(w->text(), "1234");
    QTest::keyClick(w, Qt::Key_Backspace);
    EXPECT_EQ(w->text(), "123");
    // Pasting is refused, with the keys and from the clipboard alike.
    QGuiApplication::clipboard()->setText("77");
    QTest::keyClick(w, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(w, Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(w->text(), "123");
    // The cursor keys and Delete still edit.
    QTest::keyClick(w, Qt::Key_Home);
    QTest::keyClick(w, Qt::Key_Delete);
    QTest::keyClick(w, Qt::Key_Right);
    QTest::keyClicks(w, "9");
    EXPECT_EQ(w->text(), "293");

    // The same rule, key by key.
    auto accepts = [](int key, const QString& text, Qt::KeyboardModifiers mods = {}) {
        QKeyEvent e(QEvent::KeyPress, key, mods, text);
        return DigitsOnlyAccepts(e);
    };
    EXPECT_TRUE(accepts(Qt::Key_0, "0"));
    EXPECT_TRUE(accepts(Qt::Key_9, "9"));
    EXPECT_TRUE(accepts(Qt::Key_Backspace, "\b"));
    EXPECT_TRUE(accepts(Qt::Key_Return, "\r")); // the dialog's default button
    EXPECT_FALSE(accepts(Qt::Key_Minus, "-"));
    EXPECT_FALSE(accepts(Qt::Key_Space, " "));
    EXPECT_FALSE(accepts(Qt::Key_Period, "."));
    EXPECT_FALSE(accepts(Qt::Key_E, "e"));
    EXPECT_FALSE(accepts(Qt::Key_V, QString(QChar(22)), Qt::ControlModifier));

    // The canvas and the angle fields follow the same rule.
    fCanvas canvas(picture(4, 2));
    canvas.txtH->setFocus();
    canvas.txtH->clear();
    QTest::keyClicks(canvas.txtH, "-3x1");
    EXPECT_EQ(canvas.txtH->text(), "31");
    fRotate rotate;
    rotate.txtDegrees->clear();
    QTest::keyClicks(rotate.txtDegrees, "-4.5");
    EXPECT_EQ(rotate.txtDegrees->text(), "45");
}

TEST_F(SizingDialogTest, ImageSizeKeepsTheProportionsOfTheImage) {
    fSize dialog(8, 3);
    EXPECT_EQ(dialog.windowTitle(), "Image size");
    EXPECT_EQ(dialog.txtW->text(), "8");
    EXPECT_EQ(dialog.txtH->text(), "3");
    EXPECT_TRUE(dialog.chkKeepProportions->isChecked());
    EXPECT_EQ(dialog.chkInterpolate->text(), "&Anti-Alias");
    // Height = Round(width * 3 / 8), ties to even.
    dialog.txtW->setText("16");
    EXPECT_EQ(dialog.txtH->text(), "6");
    dialog.txtW->setText("4"); // 1.5
    EXPECT_EQ(dialog.txtH->text(), "2");
    dialog.txtW->setText("12"); // 4.5
    EXPECT_EQ(dialog.txtH->text(), "4");
    dialog.txtW->setText("3"); // 1.125
    EXPECT_EQ(dialog.txtH->text(), "1");
    // Width = Round(height * 8 / 3).
    dialog.txtH->setText("2"); // 5.33
    EXPECT_EQ(dialog.txtW->text(), "5");
    dialog.txtH->setText("7"); // 18.67
    EXPECT_EQ(dialog.txtW->text(), "19");
    // An emptied field leaves the other alone.
    dialog.txtH->clear();
    EXPECT_EQ(dialog.txtW->text(), "19");
    // Off, the fields are free.
    dialog.chkKeepProportions->setChecked(false);
    dialog.txtW->setText("100");
    EXPECT_EQ(dialog.txtH->text(), "");
}

TEST_F(SizingDialogTest, QuickEntriesFillBothFieldsFromTheCurrentSize) {
    fSize dialog(5, 3);
    ASSERT_EQ(dialog.cbPreDef->count(), int(fSize::QuickPercents.size()));
    EXPECT_EQ(dialog.cbPreDef->itemText(3), "50 %");
    // 50 %: Round(2.5) = 2 and Round(1.5) = 2. With the proportions kept, filling the
    // width would have made the height Round(2 * 3 / 5) = 1.
    dialog.cbPreDef_Click(3);
    EXPECT_EQ(dialog.txtW->text(), "2");
    EXPECT_EQ(dialog.txtH->text(), "2");
    EXPECT_TRUE(dialog.chkKeepProportions->isChecked());
    // 33 %: Round(1.65) = 2, Round(0.99) = 1.
    dialog.cbPreDef_Click(2);
    EXPECT_EQ(dialog.txtW->text(), "2");
    EXPECT_EQ(dialog.txtH->text(), "1");
    // 150 %: Round(7.5) = 8, Round(4.5) = 4.
    dialog.cbPreDef_Click(5);
    EXPECT_EQ(dialog.txtW->text(), "8");
    EXPECT_EQ(dialog.txtH->text(), "4");
    // An entry left off stays so.
    dialog.chkKeepProportions->setChecked(false);
    dialog.cbPreDef_Click(6); // 200 %
    EXPECT_EQ(dialog.txtW->text(), "10");
    EXPECT_EQ(dialog.txtH->text(), "6");
    EXPECT_FALSE(dialog.chkKeepProportions->isChecked());
    // The list's own signal does the same.
    dialog.cbPreDef->setCurrentIndex(0);
    emit dialog.cbPreDef->activated(0); // 10 %: Round(0.5) = 0, Round(0.3) = 0
    EXPECT_EQ(dialog.txtW->text(), "0");
    EXPECT_EQ(dialog.txtH->text(), "0");
}

TEST_F(SizingDialogTest, OkRefusesSizesBelowTwoAndFieldsThatAreNotNumbers) {
    fSize dialog(1, 5);
    dialog.show();
    dialog.cmdOK_Click(); // 1 x 5 as it stands
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0], "Ostrivex: Minimum size: 2 x 2");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_NE(dialog.result(), QDialog::Accepted);

    dialog.chkKeepProportions->setChecked(false);
    dialog.txtW->setText("2");
    dialog.txtH->clear();
    dialog.cmdOK_Click();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[1], "Ostrivex: Minimum size: 2 x 2");
    dialog.txtH->setText("40000");
    dialog.cmdOK_Click();
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[2], "Ostrivex: Maximum size: 32767 x 32767");
    EXPECT_TRUE(dialog.isVisible());

    dialog.txtH->setText("2");
    QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);
    EXPECT_EQ(messages.size(), 3u);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.NewWidth(), 2);
    EXPECT_EQ(dialog.NewHeight(), 2);
    EXPECT_TRUE(dialog.Interpolate());

    // The canvas dialog makes the same check.
    fCanvas canvas(picture(4, 2));
    canvas.show();
    canvas.txtW->setText("1");
    canvas.cmdOK_Click();
    ASSERT_EQ(messages.size(), 4u);
    EXPECT_EQ(messages[3], "Ostrivex: Minimum size: 2 x 2");
    EXPECT_TRUE(canvas.isVisible());
}

TEST_F(SizingDialogTest, CanvasPicturePlacesTheImage) {
    fCanvas dialog(picture(4, 2));
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), "Canvas size");
    EXPECT_EQ(dialog.chkKeepProportions->text(), "&Proportions");
    // At the image's own size: 240 / 4 = 60 screen pixels per image pixel, no offset.
    EXPECT_DOUBLE_EQ(dialog.Scale(), 60.0);
    EXPECT_EQ(dialog.Left(), 0);
    EXPECT_EQ(dialog.Top(), 0);

    // An 8 x 6 canvas: 30 per pixel, canvas 240 x 180, picture 120 x 60, centred at (2, 2).
    dialog.txtW->setText("8");
    dialog.txtH->setText("6");
    EXPECT_DOUBLE_EQ(dialog.Scale(), 30.0);
    EXPECT_EQ(dialog.iCnv->size(), QSize(240, 180));
    EXPECT_EQ(dialog.iImg->size(), QSize(120, 60));
    EXPECT_EQ(dialog.Left(), 2);
    EXPECT_EQ(dialog.Top(), 2);
    EXPECT_EQ(dialog.iImg->pos(), QPoint(60, 60));

    // A drag: Round(95 / 30) = 3, Round(10 / 30) = 0.
    dialog.DragPictureTo(QPoint(95, 10));
    EXPECT_EQ(dialog.Left(), 3);
    EXPECT_EQ(dialog.Top(), 0);
    EXPECT_EQ(dialog.iImg->pos(), QPoint(90, 0));
    EXPECT_EQ(dialog.lblPosition->text(), "Position: 3, 0");
    // At least one pixel of the image stays on the canvas.
    dialog.DragPictureTo(QPoint(-500, 500));
    EXPECT_EQ(dialog.Left(), -3);
    EXPECT_EQ(dialog.Top(), 5);

    // With the mouse: press inside the picture, move 30 to the right and 30 down, release.
    dialog.CenterPicture();
    QTest::mousePress(dialog.iImg, Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseMove(dialog.iImg, QPoint(25, 10));
    QTest::mouseRelease(dialog.iImg, Qt::LeftButton, {}, QPoint(40, 40));
    EXPECT_EQ(dialog.Left(), 3);
    EXPECT_EQ(dialog.Top(), 3);

    // "Proportions": multiples of the picture's size (120 x 60), so of the image's (4 x 2).
    dialog.chkKeepProportions->setChecked(true);
    dialog.DragPictureTo(QPoint(100, 70)); // Round(0.83) = 1, Round(1.17) = 1
    EXPECT_EQ(dialog.Left(), 4);
    EXPECT_EQ(dialog.Top(), 2);
    EXPECT_EQ(dialog.iImg->pos(), QPoint(120, 60));
    // Only multiples that start on the canvas: 0..(8 - 1) \ 4 and 0..(6 - 1) \ 2.
    dialog.DragPictureTo(QPoint(300, 200));
    EXPECT_EQ(dialog.Left(), 4);
    EXPECT_EQ(dialog.Top(), 4);
    dialog.DragPictureTo(QPoint(-100, -100));
    EXPECT_EQ(dialog.Left(), 0);
    EXPECT_EQ(dialog.Top(), 0);

    // A narrower canvas centres the image with a negative offset: (2 - 4) \ 2 = -1 and
    // (9 - 2) \ 2 = 3.
    dialog.txtW->setText("2");
    dialog.txtH->setText("9");
    EXPECT_EQ(dialog.Left(), -1);
    EXPECT_EQ(dialog.Top(), 3);
    QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.NewWidth(), 2);
    EXPECT_EQ(dialog.NewHeight(), 9);
}

TEST_F(SizingDialogTest, OrientationTurnsOnlyWhenTheCanvasMust) {
    fOrientation wide(4, 2);
    EXPECT_EQ(wide.windowTitle(), "Orientation");
    EXPECT_EQ(wide.chkFlip[0]->text(), "Flip &vertical");
    EXPECT_EQ(wide.chkFlip[1]->text(), "Flip &horizontal");
    EXPECT_FALSE(wide.Turn());
    wide.cbOrientation->setCurrentIndex(fOrientation::Portrait);
    EXPECT_TRUE(wide.Turn());
    wide.cbOrientation->setCurrentIndex(fOrientation::Landscape);
    EXPECT_FALSE(wide.Turn());
    wide.chkFlip[0]->setChecked(true);
    EXPECT_TRUE(wide.FlipVertical());
    EXPECT_FALSE(wide.FlipHorizontal());

    fOrientation high(2, 4);
    high.cbOrientation->setCurrentIndex(fOrientation::Landscape);
    EXPECT_TRUE(high.Turn());
    high.cbOrientation->setCurrentIndex(fOrientation::Portrait);
    EXPECT_FALSE(high.Turn());

    fOrientation square(3, 3);
    for (int i : {0, 1, 2}) {
        square.cbOrientation->setCurrentIndex(i);
        EXPECT_FALSE(square.Turn()) << i;
    }
}

TEST_F(SizingDialogTest, RotateAngleButtonsAndField) {
    fRotate dialog;
    EXPECT_EQ(dialog.windowTitle(), "Rotate");
    EXPECT_EQ(dialog.lblNote->text(), "Canvas will be resized");
    EXPECT_TRUE(dialog.Antialias());
    EXPECT_EQ(dialog.Degrees(), 0);
    QTest::mouseClick(dialog.cmd45[1], Qt::LeftButton);
    EXPECT_EQ(dialog.Degrees(), 45);
    EXPECT_EQ(dialog.txtDegrees->text(), "45");
    dialog.cmd45_Click(0);
    dialog.cmd45_Click(0); // round past 0
    EXPECT_EQ(dialog.Degrees(), 315);
    EXPECT_EQ(dialog.txtDegrees->text(), "315");
    dialog.cmd45_Click(1);
    EXPECT_EQ(dialog.Degrees(), 0);
    // The field drives the bar; a value past 359 goes round.
    dialog.txtDegrees->setText("30");
    EXPECT_EQ(dialog.sbDegrees->value(), 30);
    dialog.txtDegrees->setText("400");
    EXPECT_EQ(dialog.Degrees(), 40);
    dialog.sbDegrees->setValue(100);
    EXPECT_EQ(dialog.txtDegrees->text(), "100");
    dialog.chkAntialiasing->setChecked(false);
    EXPECT_FALSE(dialog.Antialias());
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
