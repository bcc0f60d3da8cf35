// The Optimize Box with documents: its lists, the custom quality, the results that reach
// the Optimize view and the size label, and the file Save Optimized writes.
#include "document/dialogs.h"
#include "document/doc_test_util.h"
#include "document/optimizeview.h"
#include "imagefile/imagefile.h"
#include "web/finfo.h"
#include "web/web_test_util.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>

namespace ostrivex {
namespace {

using test::gifFacts;
using test::readBytes;

QStringList items(const QComboBox* c) {
    QStringList l;
    for (int i = 0; i < c->count(); ++i) l << c->itemText(i);
    return l;
}

class BoxTest : public ::testing::Test {
protected:
    void SetUp() override {
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString&) { messages << text; };
        box.show();
    }
    // Lets the window's events run until the box has shown the newest result.
    bool settle(int ms = 30000) {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < ms) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            if (!box.Busy()) {
                QCoreApplication::processEvents();
                return !box.Busy();
            }
        }
        return false;
    }
    fImage* document(const Bits& pixels) {
        fImage* doc = test::makeDocument(host, pixels, 300, 200);
        box.ShowDocument(doc);
        return doc;
    }
    // The number in "Size: N bytes (...)".
    qulonglong sizeShown() const {
        const QString t = box.lblSize->text();
        return t.mid(6, t.indexOf(" bytes") - 6).toULongLong();
    }

    test::FakeHost host;
    finfo box;
    QStringList messages;
    test::ScratchDir dir;
};

TEST_F(BoxTest, PresetsOfferTheirMapsAndTheQualityListFollows) {
    EXPECT_EQ(box.CboFiles->count(), 16);
    EXPECT_EQ(box.CboFiles->currentText(), "GIF-256 Colors");
    box.CboFiles->setCurrentIndex(3);
    EXPECT_EQ(items(box.cboMap), (QStringList{"MS Map", "Optimal", "Fixed Color", "VGA", "Fixed Grey"}));
    EXPECT_EQ(box.cboMap->currentText(), "Optimal");
    box.CboFiles->setCurrentIndex(0);
    EXPECT_EQ(box.cboMap->currentText(), "Fixed Color");
    EXPECT_EQ(box.Settings().PaletteMode, 32768);
    box.CboFiles->setCurrentIndex(9);
    EXPECT_EQ(items(box.cboMap), QStringList{"MS Map"});
    EXPECT_FALSE(box.cboDither->isEnabled());
    EXPECT_EQ(box.Settings().PaletteMode, 4096);
    EXPECT_EQ(items(box.cboDither).size(), 10);

    // A JPEG preset shows the quality rows; the list and the presets are one choice.
    box.CboFiles->setCurrentIndex(13);
    EXPECT_TRUE(box.cboJpg->isVisible());
    EXPECT_FALSE(box.cboMap->isVisible());
    EXPECT_EQ(box.cboJpg->currentText(), "Good");
    box.cboJpg->setCurrentIndex(0);
    EXPECT_EQ(box.CboFiles->currentText(), "JPEG - Low Quality");
    EXPECT_EQ(box.Settings().JpegQuality, 2048);
    EXPECT_EQ(box.GetOptimizedFileExtension(), ""); // no document yet

    // Interlace turns colour mode 1 into 2, for the GIF presets only.
    box.CboFiles->setCurrentIndex(7);
    EXPECT_TRUE(box.ChkInterlaced->isEnabled());
    box.ChkInterlaced->setChecked(true);
    EXPECT_EQ(box.Settings().ColorMode, 2);
    box.CboFiles->setCurrentIndex(8);
    EXPECT_FALSE(box.ChkInterlaced->isEnabled());
}

TEST_F(BoxTest, CustomQualityIsCheckedBeforeAnythingRuns) {
    fImage* doc = document(test::photoLike(64, 48));
    ASSERT_TRUE(settle());
    box.CboFiles->setCurrentIndex(15);
    ASSERT_TRUE(settle());
    ASSERT_TRUE(box.TxtJPG->isEnabled());
    const std::string before = box.lblSize->text().toStdString();
    for (const char* bad : {"0", "100", "", "ab"}) {
        box.TxtJPG->setText(bad);
        box.jpgUpdate->click();
        EXPECT_FALSE(box.Busy()) << bad; // nothing was asked of the optimizer
    }
    EXPECT_EQ(messages, QStringList(4, "Enter value between 1 to 99 !"));
    EXPECT_EQ(box.lblSize->text().toStdString(), before);
    box.TxtJPG->setText("30");
    box.jpgUpdate->click();
    ASSERT_TRUE(settle());
    EXPECT_EQ(box.Settings().JpegQuality, 30);
    EXPECT_EQ(box.lblFormat->text(), "Format: JPEG");
    EXPECT_EQ(messages.size(), 4);
    (void)doc;
}

TEST_F(BoxTest, ResultReachesTheViewAndTheLabelCountsTheSavedFile) {
    fImage* doc = document(test::photoLike(120, 80));
    ASSERT_TRUE(settle());
    EXPECT_EQ(box.lblFormat->text(), "Format: GIF");
    EXPECT_TRUE(box.lblSize->text().endsWith("%)"));
    const QImage shown = doc->OptimizePanel()->Picture();
    ASSERT_EQ(shown.size(), QSize(120, 80));

    // Save Optimized writes the very bytes counted; they read back as the view shows.
    const std::string path = dir.file("o.gif");
    ASSERT_TRUE(box.ExtractOptimized(doc, QString::fromStdString(path)));
    EXPECT_EQ(std::filesystem::file_size(path), sizeShown());
    ASSERT_TRUE(LoadPictureFile(path, "gif").ok);
    EXPECT_EQ(PictureOfBits(LoadedBitmap), shown);

    // A new setting and new pixels: the label and the view follow.
    box.ChkInterlaced->setChecked(true);
    ASSERT_TRUE(settle());
    EXPECT_EQ(box.lblFormat->text(), "Format: GIF Interlaced");
    doc->SetBits(test::flat(120, 80, 200, 30, 60));
    box.Update(doc);
    ASSERT_TRUE(settle());
    EXPECT_EQ(doc->OptimizePanel()->Picture().pixel(7, 7), qRgb(200, 30, 60));
    ASSERT_TRUE(box.ExtractOptimized(doc, QString::fromStdString(path)));
    EXPECT_TRUE(gifFacts(readBytes(path)).interlaced);
    EXPECT_EQ(std::filesystem::file_size(path), sizeShown());
    EXPECT_EQ(box.GetOptimizedFileExtension(), "gif");
}

TEST_F(BoxTest, ABurstOfUpdatesEndsOnTheLastPixels) {
    fImage* doc = document(test::photoLike(400, 300));
    for (int i = 0; i < 8; ++i) {
        doc->SetBits(test::flat(400, 300, uint8_t(20 * i), 100, 50));
        box.Update(doc);
    }
    ASSERT_TRUE(settle());
    EXPECT_EQ(doc->OptimizePanel()->Picture().pixel(0, 0), qRgb(140, 100, 50));
}

TEST_F(BoxTest, UnseenDocumentsWaitAndSaveStillWritesTheirCurrentFile) {
    box.hide();
    fImage* doc = document(test::photoLike(50, 40));
    box.Update(doc);
    EXPECT_FALSE(box.Busy());
    EXPECT_TRUE(doc->OptimizePanel()->Picture().isNull());
    box.CboFiles->setCurrentIndex(3);
    const std::string path = dir.file("u.gif");
    ASSERT_TRUE(box.ExtractOptimized(doc, QString::fromStdString(path)));
    EXPECT_EQ(gifFacts(readBytes(path)).tableDepth, 4);
    EXPECT_EQ(doc->OptimizePanel()->Picture().size(), QSize(50, 40));
    // Showing the document's Optimize view asks for it too.
    doc->SetBits(test::flat(50, 40, 1, 2, 3));
    box.Update(doc);
    EXPECT_FALSE(box.Busy());
    doc->cOptimize_Click();
    box.ViewShown(doc);
    ASSERT_TRUE(settle());
    EXPECT_EQ(doc->OptimizePanel()->Picture().pixel(0, 0), qRgb(1, 2, 3));
}

TEST_F(BoxTest, GifSavesTakeTheBoxsGifSettings) {
    box.CboFiles->setCurrentIndex(2); // "GIF-8 Colors"
    const std::string path = dir.file("s.gif");
    ASSERT_TRUE(SaveImageFile(test::photoLike(40, 30), path, "gif").ok);
    EXPECT_EQ(gifFacts(readBytes(path)).tableDepth, 3);
    box.CboFiles->setCurrentIndex(12); // a JPEG preset: saves fall back on 256 colours
    ASSERT_TRUE(SaveImageFile(test::photoLike(40, 30), path, "gif").ok);
    EXPECT_EQ(gifFacts(readBytes(path)).tableDepth, 8);
}

TEST_F(BoxTest, FoldingKeepsThePresetAndTheResultLines) {
    QSignalSpy spy(&box, &finfo::foldChanged);
    const int full = box.sizeHint().height();
    box.pMm_Click();
    EXPECT_TRUE(box.Folded());
    EXPECT_FALSE(box.cboMap->isVisible());
    EXPECT_TRUE(box.CboFiles->isVisible());
    EXPECT_TRUE(box.lblSize->isVisible());
    EXPECT_LT(box.FoldedHeight() + 40, full);
    box.pMm_Click();
    EXPECT_TRUE(box.cboMap->isVisible());
    ASSERT_EQ(spy.count(), 2);
    EXPECT_EQ(spy.at(0).at(0).toBool(), true);
}

} // namespace
} // namespace ostrivex
