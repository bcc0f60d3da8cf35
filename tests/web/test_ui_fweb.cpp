// The web export dialog: its lists, the two panes panned together, the filters of the save
// dialog per entry, the options applied to the saved file, and the size comparison.
#include "document/dialogs.h"
#include "imagefile/imagefile.h"
#include "web/fweb.h"
#include "web/web_test_util.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace ostrivex {
namespace {

using test::readBytes;

QStringList items(const QComboBox* c) {
    QStringList l;
    for (int i = 0; i < c->count(); ++i) l << c->itemText(i);
    return l;
}

class ExportTest : public ::testing::Test {
protected:
    ExportTest() : picture(test::photoLike(560, 420)), dialog(picture, SettingsForPreset(7)) {
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString&) { messages << text; };
        DocumentDialogs::AskSaveName = [this](QWidget*, const QString& title, const QString&,
                                              const QString& filter, const QString&) {
            asked << title + "|" + filter;
            return answer;
        };
        dialog.resize(640, 560);
        dialog.show();
    }
    bool settle(int ms = 60000) {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < ms) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            if (!dialog.Busy()) return true;
        }
        return false;
    }

    Bits picture;
    FWeb dialog;
    QStringList messages, asked;
    QString answer;
    test::ScratchDir dir;
};

TEST_F(ExportTest, ListsAndCaptionsOfTheDialog) {
    EXPECT_EQ(dialog.windowTitle(), "Optimized Save Options");
    ASSERT_EQ(dialog.CboFiles->count(), 25);
    EXPECT_EQ(dialog.CboFiles->itemText(24), "Native Bitmap");
    EXPECT_EQ(dialog.CboFiles->currentText(), "GIF-256 Colors"); // the box's preset
    EXPECT_EQ(items(dialog.cboMap), (QStringList{"New", "Fixed Color", "VGA", "216 InternetSafe colormap",
                                                 "Windows 256", "Fixed Grey"}));
    EXPECT_EQ(dialog.cboDither->itemText(3), "Haftone");
    EXPECT_EQ(items(dialog.cboColorMode), (QStringList{"Colors", "Greyscale", "Windows"}));
    EXPECT_EQ(dialog.ChkInterlaced->text(), "InterLaced");
    EXPECT_EQ(dialog.chkInvert->text(), "Invert");
    EXPECT_EQ(dialog.chkFlipV->text(), "Flip Vertical");
    EXPECT_EQ(dialog.chkFlipH->text(), "Flip Horizontal");
    EXPECT_EQ(dialog.TxtJPG->placeholderText(), "Enter JPEG Quality between 1 to 100");
    EXPECT_EQ(dialog.lblOriginal->text(), "24 bit True Color");
    EXPECT_EQ(dialog.lblOriginalSize->text(), QString::fromStdString(KilobyteText(SourceBytes(560, 420))));
    ASSERT_TRUE(settle());
    EXPECT_EQ(dialog.lblOptimizedSize->text(), QString::fromStdString(KilobyteText(dialog.OptimizedBytes().size())));
}

TEST_F(ExportTest, ADragInEitherPanePansBoth) {
    ASSERT_TRUE(settle());
    const QPoint start = dialog.iSrc->Offset();
    EXPECT_EQ(start, dialog.oSrc->Offset());
    EXPECT_GT(start.x(), 0); // opened on the middle of the picture
    QTest::mousePress(dialog.oSrc, Qt::LeftButton, {}, QPoint(100, 100));
    QTest::mouseMove(dialog.oSrc, QPoint(70, 80));
    QTest::mouseRelease(dialog.oSrc, Qt::LeftButton, {}, QPoint(70, 80));
    EXPECT_EQ(dialog.oSrc->Offset(), start + QPoint(30, 20));
    EXPECT_EQ(dialog.iSrc->Offset(), dialog.oSrc->Offset());
    // Far past the corner: both stop at the picture's edge.
    QTest::mousePress(dialog.iSrc, Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseMove(dialog.iSrc, QPoint(150, 150));
    QTest::mouseMove(dialog.iSrc, QPoint(400, 400));
    QTest::mouseRelease(dialog.iSrc, Qt::LeftButton, {}, QPoint(400, 400));
    EXPECT_EQ(dialog.iSrc->Offset(), QPoint(0, 0));
    EXPECT_EQ(dialog.oSrc->Offset(), QPoint(0, 0));
}

TEST_F(ExportTest, SaveAsksWithTheEntrysFilterAndWritesThatFormat) {
    const std::map<std::string, std::pair<QString, std::string>> expected{
        {"gif", {"Graphical Interface Format (*.gif)|*.gif", "GIF8"}},
        {"bmp", {"Windows Bitmap Format (*.bmp)|*.bmp", "BM"}},
        {"png", {"Portable Network Graphics (*.png)|*.png", "\x89PNG"}},
        {"jpg", {"Independent JPEG (*.jpg)|*.jpg", "\xFF\xD8"}},
        {"tga", {"Targa Format (*.tga)|*.tga", ""}},
        {"tif", {"Tagged Image Format (*.tif)|*.tif", "II*"}},
    };
    for (int i = 0; i < dialog.CboFiles->count(); ++i) {
        dialog.CboFiles->setCurrentIndex(i);
        const std::string ext = GetOptimizedFileExtension(dialog.CurrentSettings());
        answer = QString::fromStdString(dir.file("e" + std::to_string(i)));
        asked.clear();
        ASSERT_TRUE(dialog.CmdSave_Click()) << i;
        ASSERT_EQ(asked.size(), 1);
        EXPECT_EQ(asked[0], "Save Optimized As|" + expected.at(ext).first) << i;
        // A name without an extension gets the entry's.
        const std::vector<uint8_t> bytes = readBytes(answer.toStdString() + "." + ext);
        const std::string magic = expected.at(ext).second;
        ASSERT_GE(bytes.size(), magic.size() + 1) << i;
        EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + long(magic.size())), magic) << i;
    }
    answer.clear(); // Cancel writes nothing
    EXPECT_FALSE(dialog.CmdSave_Click());
}

TEST_F(ExportTest, FlipsAndInversionReachTheSavedFile) {
    dialog.CboFiles->setCurrentIndex(12); // "BMP-24 bit", lossless
    dialog.chkInvert->setChecked(true);
    dialog.chkFlipH->setChecked(true);
    const std::string path = dir.file("f.bmp");
    ASSERT_TRUE(dialog.SaveTo(QString::fromStdString(path)));
    ASSERT_TRUE(LoadImageFile(path, "bmp").ok);
    for (int y : {0, 210, 419})
        for (int x : {0, 1, 280, 559})
            for (int c = 0; c < 3; ++c)
                ASSERT_EQ(LoadedBitmap(c, x, y), 255 - picture(c, 559 - x, y)) << x << "," << y;
    dialog.chkFlipV->setChecked(true);
    ASSERT_TRUE(settle());
    ASSERT_TRUE(dialog.SaveTo(QString::fromStdString(path)));
    ASSERT_TRUE(LoadImageFile(path, "bmp").ok);
    EXPECT_EQ(LoadedBitmap(1, 3, 5), 255 - picture(1, 556, 414));
}

TEST_F(ExportTest, TheComparisonFillsEveryEntry) {
    dialog.cboDither->setCurrentIndex(2); // every palette row takes the dither
    ASSERT_TRUE(settle());
    for (int i = 0; i < 25; ++i) {
        const QString size = dialog.tblCompare->item(i, 1)->text();
        ASSERT_TRUE(size.endsWith(" bytes")) << i << ": " << size.toStdString();
        const OptimizeResult r = Optimize(ApplyExportOptions(picture, false, false, false), dialog.RowSettings(i), {}, false);
        EXPECT_EQ(size, QString::number(r.bytes.size()) + " bytes") << i;
        EXPECT_TRUE(dialog.tblCompare->item(i, 2)->text().endsWith("%"));
    }
    EXPECT_EQ(dialog.RowSettings(3).DitherMode, DitherOrdered);
    EXPECT_EQ(dialog.tblCompare->item(12, 3)->text(), "lossless"); // BMP-24 bit
    EXPECT_EQ(dialog.tblCompare->item(14, 3)->text(), "lossless"); // PNG-24 bit
    EXPECT_TRUE(dialog.tblCompare->item(15, 3)->text().endsWith(" dB"));
    // A click on a row chooses its entry.
    QTest::mouseClick(dialog.tblCompare->viewport(), Qt::LeftButton, {},
                      dialog.tblCompare->visualItemRect(dialog.tblCompare->item(2, 0)).center());
    EXPECT_EQ(dialog.CboFiles->currentText(), "GIF-8 Colors");
}

TEST_F(ExportTest, CustomQualityOfTheExport) {
    dialog.CboFiles->setCurrentIndex(20);
    ASSERT_TRUE(dialog.TxtJPG->isEnabled());
    dialog.TxtJPG->setText("0");
    emit dialog.TxtJPG->editingFinished();
    EXPECT_EQ(messages, QStringList{"Enter JPEG Quality between 1 to 100"});
    dialog.TxtJPG->setText("100");
    emit dialog.TxtJPG->editingFinished();
    EXPECT_EQ(dialog.CurrentSettings().JpegQuality, 100);
    EXPECT_EQ(messages.size(), 1);
    dialog.cboJpg->setCurrentIndex(3);
    EXPECT_EQ(dialog.CboFiles->currentText(), "JPEG - Good Quality");
}

} // namespace
} // namespace ostrivex
