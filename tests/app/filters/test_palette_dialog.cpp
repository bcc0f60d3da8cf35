#include "app/filters/fpaletteapply.h"
#include "app/filters/palettewidgets.h"

#include "app/filters/dialog_test_main.h"
#include "app/picture_files.h"
#include "pixel/pixel_test_util.h"
#include "pixel/region.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace ostrivex;
using ostrivex::test::makeBits;
using ostrivex::test::sameBits;
using ostrivex::testing::fileBytes;
using ostrivex::testing::hasLabel;

namespace {

void setEntry(PaletteRecord& p, int i, int r, int g, int b) {
    p.PaletteColors[i][0] = r;
    p.PaletteColors[i][1] = g;
    p.PaletteColors[i][2] = b;
}

// Red, blue, black.
PaletteRecord threeColours() {
    PaletteRecord p;
    p.PaletteCount = 3;
    setEntry(p, 0, 255, 0, 0);
    setEntry(p, 1, 0, 0, 255);
    setEntry(p, 2, 0, 0, 0);
    return p;
}

} // namespace

TEST(PaletteDialog, Texts) {
    PaletteRecord p = threeColours();
    fPaletteApply d(makeBits(1, 1, {{0, 0, 0}}), nullptr, QStringLiteral("/nonexistent"), p);
    EXPECT_EQ(d.windowTitle(), "Apply palette");
    EXPECT_STREQ(fPaletteApply::kUndoCaption, "Apply Palette");
    EXPECT_EQ(d.chkColors->text(), "Max. colors");
    EXPECT_EQ(d.cmd[0]->text(), "Load Palette");
    EXPECT_EQ(d.cmd[1]->text(), "Save Palette");
    EXPECT_TRUE(hasLabel(&d, "Color index"));
    EXPECT_TRUE(hasLabel(&d, "Double click to apply to palette color"));
    // Opens on entry 0 with the palette's own count.
    EXPECT_EQ(d.sbIndex->value(), 0);
    EXPECT_EQ(d.lblIndexV->text(), "0");
    EXPECT_EQ(d.sbColors->value(), 3);
    EXPECT_EQ(d.lblColorsV->text(), "3");
    EXPECT_TRUE(d.chkColors->isChecked());
    EXPECT_EQ(d.txtRGB[0]->text(), "255");
    EXPECT_EQ(d.txtRGB[1]->text(), "0");
    EXPECT_EQ(d.swatchColour(), 0x0000FF);
}

TEST(PaletteDialog, OkMapsTheRegionToTheNearestEntries) {
    // Pixels as blue, green, red. Sums of absolute differences to red / blue / black:
    //   (10,20,200): 85 / 465 / 230 -> red
    //   (200,0,0):   455 / 55 / 200 -> blue
    //   (0,0,0):     255 / 255 / 0  -> black, but with two colours red (first of a tie)
    //   (9,9,9) is outside the region and stays.
    const Bits image = makeBits(4, 1, {{10, 20, 200, 7}, {200, 0, 0}, {0, 0, 0}, {9, 9, 9}});
    const Region region = Region::rect(0, 0, 3, 1);
    {
        PaletteRecord p = threeColours();
        fPaletteApply d(image, &region, QString(), p);
        QTest::mouseClick(d.cmdOK, Qt::LeftButton);
        EXPECT_TRUE(d.applied());
        EXPECT_EQ(d.QDialog::result(), int(QDialog::Accepted));
        EXPECT_TRUE(sameBits(makeBits(4, 1, {{0, 0, 255, 7}, {255, 0, 0}, {0, 0, 0}, {9, 9, 9}}),
                             d.appliedBits()));
    }
    {
        PaletteRecord p = threeColours();
        fPaletteApply d(image, &region, QString(), p);
        d.sbColors->setValue(2);
        EXPECT_EQ(p.PaletteCount, 2);
        EXPECT_EQ(d.lblColorsV->text(), "2");
        d.cmdOK->click();
        EXPECT_TRUE(sameBits(makeBits(4, 1, {{0, 0, 255, 7}, {255, 0, 0}, {0, 0, 255}, {9, 9, 9}}),
                             d.appliedBits()));
    }
    {
        // Without "Max. colors" every entry is used, whatever the scroll bar says.
        PaletteRecord p = threeColours();
        fPaletteApply d(image, &region, QString(), p);
        d.sbColors->setValue(2);
        d.chkColors->setChecked(false);
        EXPECT_EQ(p.PaletteCount, 256);
        d.cmdCancel->click();
        EXPECT_FALSE(d.applied());
        EXPECT_EQ(d.appliedBits().width(), 0);
    }
}

TEST(PaletteDialog, DitherCarriesTheErrorToTheRight) {
    // Black and white. Pixel 0 (100,100,100) is 300 from black, 465 from white: black,
    // error 100 per channel, 7/16 of it (43, truncated) goes right: pixel 1 becomes
    // (143,143,143), 429 from black and 336 from white: white. Without the dither both are
    // black.
    PaletteRecord p;
    p.PaletteCount = 2;
    setEntry(p, 1, 255, 255, 255);
    const Bits image = makeBits(2, 1, {{100, 100, 100}, {100, 100, 100}});
    fPaletteApply plain(image, nullptr, QString(), p);
    plain.cmdOK->click();
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 0}, {0, 0, 0}}), plain.appliedBits()));
    fPaletteApply dithered(image, nullptr, QString(), p);
    dithered.chkDither->setChecked(true);
    dithered.cmdOK->click();
    EXPECT_TRUE(sameBits(makeBits(2, 1, {{0, 0, 0}, {255, 255, 255}}), dithered.appliedBits()));
}

TEST(PaletteDialog, EditingEntries) {
    PaletteRecord p = threeColours();
    fPaletteApply d(makeBits(1, 1, {{0, 0, 0}}), nullptr, QString(), p);
    d.show();
    // A click on the cell of column 1, row 1 selects entry 17.
    const QRect cell = PalettePicture::cellRect(17);
    EXPECT_EQ(cell, QRect(PalettePicture::kCell, PalettePicture::kCell, PalettePicture::kCell,
                          PalettePicture::kCell));
    QTest::mouseClick(d.iPal, Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(d.sbIndex->value(), 17);
    EXPECT_EQ(d.lblIndexV->text(), "17");
    EXPECT_TRUE(d.shpSelect->geometry().contains(cell));
    // Typed values go to the entry, limited to 0..255.
    d.txtRGB[0]->clear();
    QTest::keyClicks(d.txtRGB[0], "300");
    EXPECT_EQ(p.PaletteColors[17][0], 255);
    EXPECT_EQ(d.txtRGB[0]->text(), "255");
    d.txtRGB[2]->selectAll();
    QTest::keyClicks(d.txtRGB[2], "42");
    EXPECT_EQ(p.PaletteColors[17][2], 42);
    EXPECT_EQ(d.txtRGBUD[2]->value(), 42);
    EXPECT_EQ(d.swatchColour(), 0x2A00FF);
    // The up-down control steps the entry too.
    d.txtRGBUD[1]->setValue(7);
    EXPECT_EQ(p.PaletteColors[17][1], 7);
    EXPECT_EQ(d.txtRGB[1]->text(), "7");
    // Back on entry 1 the fields show it.
    d.sbIndex->setValue(1);
    EXPECT_EQ(d.txtRGB[2]->text(), "255");
    EXPECT_EQ(d.swatchColour(), 0xFF0000);
    // A double click on the swatch writes the swatch colour to the entry.
    d.setSwatchColour(0x030201);
    QTest::mouseDClick(d.lblCur, Qt::LeftButton);
    EXPECT_EQ(p.PaletteColors[1][0], 1);
    EXPECT_EQ(p.PaletteColors[1][1], 2);
    EXPECT_EQ(p.PaletteColors[1][2], 3);
    EXPECT_EQ(d.txtRGB[1]->text(), "2");
    // The marker blinks.
    const bool shown = d.shpSelect->isVisible();
    QTest::qWait(d.tmrSelect->interval() + 150);
    EXPECT_NE(d.shpSelect->isVisible(), shown);
}

TEST(PaletteDialog, SaveAndLoadThroughTheFileDialog) {
    QTemporaryDir home;
    ASSERT_TRUE(home.isValid());
    const QString folder = home.path() + "/Palettes";
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString path = folder + "/mine.pal";
    PaletteRecord p = threeColours();
    fPaletteApply d(makeBits(1, 1, {{0, 0, 0}}), nullptr, folder, p);

    QString title, directory, filter;
    ostrivex::testing::ModalAnswerer answer([&](QWidget* w) {
        auto* fd = qobject_cast<QFileDialog*>(w);
        if (!fd) { // close whatever it is, so that the test ends
            ADD_FAILURE() << "expected a file dialog";
            w->close();
            return;
        }
        title = fd->windowTitle();
        directory = fd->directory().absolutePath();
        filter = fd->nameFilters().join(";");
        ostrivex::testing::acceptFile(fd, path);
    });
    d.cmd[1]->click();
    EXPECT_EQ(title, "Save palette");
    EXPECT_EQ(directory, QDir(folder).absolutePath());
    EXPECT_EQ(filter, "Ostrivex palette (*.pal)");
    const std::vector<uint8_t> expected = EncodePaletteFile(threeColours());
    EXPECT_EQ(fileBytes(path), QByteArray(reinterpret_cast<const char*>(expected.data()),
                                          qsizetype(expected.size())));
    EXPECT_EQ(fPaletteApply::lastFolder, QDir(folder).absolutePath());

    // Load a palette of two colours into a dialog on the VGA palette.
    PaletteRecord two;
    two.PaletteCount = 2;
    setEntry(two, 0, 10, 20, 30);
    setEntry(two, 1, 40, 50, 60);
    ASSERT_TRUE(WritePaletteFile(QFile::encodeName(path).toStdString(), two));
    PaletteRecord vga = VgaPalette();
    fPaletteApply e(makeBits(1, 1, {{0, 0, 0}}), nullptr, folder, vga);
    e.sbIndex->setValue(1);
    e.cmd[0]->click();
    EXPECT_EQ(title, "Load palette");
    EXPECT_EQ(vga.PaletteCount, 2);
    EXPECT_EQ(vga.PaletteColors[15][0], 0); // the whole record was replaced
    EXPECT_EQ(e.sbColors->value(), 2);
    EXPECT_EQ(e.lblColorsV->text(), "2");
    EXPECT_EQ(e.txtRGB[0]->text(), "40");
    EXPECT_EQ(e.swatchColour(), 0x3C3228);
}

TEST(PaletteDialog, MissingFolderAndDamagedFile) {
    QTemporaryDir home;
    ASSERT_TRUE(home.isValid());
    const QString bad = home.path() + "/bad.pal";
    {
        QFile f(bad);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(100, '\x01'));
    }
    fPaletteApply::lastFolder = home.path();
    PaletteRecord p = threeColours();
    fPaletteApply d(makeBits(1, 1, {{0, 0, 0}}), nullptr, home.path() + "/Palettes", p);

    QStringList messages;
    QString directory;
    ostrivex::testing::ModalAnswerer answer([&](QWidget* w) {
        if (auto* box = qobject_cast<QMessageBox*>(w)) {
            messages << box->text();
            box->accept();
        } else if (auto* fd = qobject_cast<QFileDialog*>(w)) {
            directory = fd->directory().absolutePath();
            ostrivex::testing::acceptFile(fd, bad);
        }
    });
    d.cmd[0]->click();
    EXPECT_EQ(messages, QStringList({"<Palettes> subfolder not found.", "Invalid palette file."}));
    EXPECT_EQ(directory, QDir(home.path()).absolutePath());
    // Nothing changed.
    EXPECT_EQ(p.PaletteCount, 3);
    EXPECT_EQ(p.PaletteColors[1][2], 255);
    EXPECT_EQ(d.sbColors->value(), 3);
}

OSTRIVEX_DIALOG_TEST_MAIN
