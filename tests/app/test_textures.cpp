// The Textures Box: the textures of the program's folder as thumbnails, a click that makes
// one the current texture (the host's TextureBits, exact pixels), and pictures added from
// a file.
#include "app/fmain.h"
#include "app/globals.h"
#include "app/textures/ftooltextures.h"
#include "app/toolbox.h"
#include "app_test_util.h"
#include "document/dialogs.h"
#include "picture_files.h"
#include "pixel/pixel_test_util.h"

#include <QDir>
#include <QImage>
#include <QListWidget>
#include <QTest>
#include <QToolButton>

using namespace ostrivex;
using ostrivex::testing::FreshHome;
using ostrivex::testing::Rgb;

namespace {

class TexturesTest : public FreshHome {
  protected:
    void SetUp() override {
        FreshHome::SetUp();
        SetDefaultSettings(Settings, AppFolder());
        folder_ = home() + "/Textures";
        ASSERT_TRUE(QDir().mkpath(folder_));
        // b.png: 2 x 1, written by Qt without loss.
        QImage png(2, 1, QImage::Format_RGB32);
        png.setPixel(0, 0, qRgb(9, 8, 7));
        png.setPixel(1, 0, qRgb(250, 128, 1));
        ASSERT_TRUE(png.save(folder_ + "/b.png", "PNG"));
        // a.bmp: 1 x 2.
        ASSERT_TRUE(
            ostrivex::testing::writeBmp24(folder_ + "/a.bmp", 1, 2, {{100, 150, 200}, {0, 0, 0}}));
        // Not textures: another kind of file, and a picture name on no picture.
        ASSERT_TRUE(ostrivex::testing::writeText(folder_ + "/notes.txt", "text"));
        ASSERT_TRUE(ostrivex::testing::writeText(folder_ + "/c.jpg", "not a jpeg"));
        main_ = std::make_unique<fMain>(); // its Textures Box lists the folder
    }
    void TearDown() override {
        main_.reset();
        DocumentDialogs::AskOpenName = savedAsk_;
    }
    void clickRow(QListWidget* list, int row) {
        const QRect r = list->visualItemRect(list->item(row));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, r.center());
    }

    QString folder_;
    std::unique_ptr<fMain> main_;
    decltype(DocumentDialogs::AskOpenName) savedAsk_ = DocumentDialogs::AskOpenName;
};

const Bits kA = test::makeBits(1, 2, {{200, 150, 100}, {0, 0, 0}});
const Bits kB = test::makeBits(2, 1, {{7, 8, 9}, {1, 128, 250}});

TEST_F(TexturesTest, TheBoxListsTheFolderAndTheFirstTextureIsCurrent) {
    fToolTextures* box = main_->texturesBox();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(main_->box(fMain::BoxTextures)->isAncestorOf(box));
    ASSERT_EQ(box->list()->count(), 2);
    EXPECT_EQ(box->list()->item(0)->toolTip(), "a");
    EXPECT_EQ(box->list()->item(1)->toolTip(), "b");
    EXPECT_FALSE(box->list()->item(0)->icon().isNull());
    EXPECT_EQ(box->CurrentTextureFile(), folder_ + "/a.bmp");
    EXPECT_TRUE(test::sameBits(kA, main_->TextureBits));
}

TEST_F(TexturesTest, AClickMakesATextureCurrent) {
    fToolTextures* box = main_->texturesBox();
    box->resize(200, 140);
    box->show();
    QApplication::processEvents();
    clickRow(box->list(), 1);
    EXPECT_TRUE(test::sameBits(kB, main_->TextureBits));
    EXPECT_EQ(box->list()->currentRow(), 1);
    clickRow(box->list(), 0);
    EXPECT_TRUE(test::sameBits(kA, main_->TextureBits));

    // A texture whose file went away stays out: the current one is kept.
    ASSERT_TRUE(QFile::remove(folder_ + "/b.png"));
    EXPECT_FALSE(box->ChooseTexture(1));
    EXPECT_TRUE(test::sameBits(kA, main_->TextureBits));
    EXPECT_EQ(box->list()->currentRow(), 0);
}

TEST_F(TexturesTest, PicturesAddedFromAFileJoinTheList) {
    fToolTextures* box = main_->texturesBox();
    const QString outside = home() + "/mine.bmp";
    ASSERT_TRUE(ostrivex::testing::writeBmp24(outside, 1, 1, {{5, 6, 7}}));

    QString askedFolder;
    DocumentDialogs::AskOpenName = [&](QWidget*, const QString&, const QString& folder,
                                       const QString&) {
        askedFolder = folder;
        return outside;
    };
    box->addButton()->click();
    EXPECT_EQ(askedFolder, folder_);
    ASSERT_EQ(box->list()->count(), 3);
    EXPECT_EQ(box->CurrentTextureFile(), outside);
    EXPECT_TRUE(test::sameBits(test::makeBits(1, 1, {{7, 6, 5}}), main_->TextureBits));

    // Cancel, or a file that is no picture: nothing changes.
    DocumentDialogs::AskOpenName = [](QWidget*, const QString&, const QString&, const QString&) {
        return QString();
    };
    box->addButton()->click();
    EXPECT_FALSE(box->AddTextureFile(folder_ + "/c.jpg"));
    EXPECT_EQ(box->list()->count(), 3);
    EXPECT_TRUE(test::sameBits(test::makeBits(1, 1, {{7, 6, 5}}), main_->TextureBits));
}

TEST_F(TexturesTest, ALineOfTextBecomesATexture) {
    fToolTextures* box = main_->texturesBox();
    Settings.ColorPrimary = 0x0000FF; // red ink
    Settings.ColorSecondary = 0xFFFFFF;
    auto saved = fToolTextures::AskText;
    fToolTextures::AskText = [](QWidget*) { return QString("Hi"); };
    box->textButton()->click();
    fToolTextures::AskText = saved;
    ASSERT_EQ(box->list()->count(), 3);
    EXPECT_EQ(box->list()->currentRow(), 2);
    EXPECT_EQ(box->list()->item(2)->toolTip(), "Hi");
    const Bits t = main_->TextureBits;
    ASSERT_GE(t.width(), 13); // the text and two margins of 6
    ASSERT_GE(t.height(), 13);
    // The margin is paper; the ink shows in full somewhere; every pixel lies between white
    // and red (red stays full, green and blue fall together).
    const int right = t.width() - 1, bottom = t.height() - 1, middle = t.height() / 2;
    for (auto [x, y] : {std::pair{0, 0}, {right, 0}, {0, bottom}, {right, bottom}, {5, middle}})
        EXPECT_EQ(t(0, x, y) + t(1, x, y) + t(2, x, y), 3 * 255) << x << "," << y;
    int fullInk = 0;
    for (int y = 0; y < t.height(); ++y)
        for (int x = 0; x < t.width(); ++x) {
            ASSERT_EQ(t(2, x, y), 255) << x << "," << y;
            ASSERT_EQ(t(0, x, y), t(1, x, y)) << x << "," << y;
            ASSERT_EQ(t(3, x, y), 0);
            if (t(0, x, y) == 0) ++fullInk;
        }
    EXPECT_GT(fullInk, 10);

    // Chosen again after another texture: the same pixels.
    EXPECT_TRUE(box->ChooseTexture(0));
    EXPECT_TRUE(test::sameBits(kA, main_->TextureBits));
    EXPECT_TRUE(box->ChooseTexture(2));
    EXPECT_TRUE(test::sameBits(t, main_->TextureBits));
    // No text, no texture.
    EXPECT_FALSE(box->AddTextTexture(""));
    EXPECT_EQ(box->list()->count(), 3);
}

TEST_F(TexturesTest, AMissingFolderListsNothingAndKeepsTheTexture) {
    main_->TextureBits = kB;
    main_->texturesBox()->FillTextures(home() + "/NoSuchFolder");
    EXPECT_EQ(main_->texturesBox()->list()->count(), 0);
    EXPECT_EQ(main_->texturesBox()->CurrentTextureFile(), "");
    EXPECT_TRUE(test::sameBits(kB, main_->TextureBits));
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
