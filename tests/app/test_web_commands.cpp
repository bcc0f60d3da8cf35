// The web commands of the File menu through the main window: Save Optimized writes the
// Optimize Box's file, Save Image For Web opens the export, a GIF save writes a GIF, and
// the box follows undo.
#include "app/fmain.h"
#include "app_test_util.h"
#include "app/toolbox.h"
#include "document/dialogs.h"
#include "document/fimage.h"
#include "document/optimizeview.h"
#include "imagefile/imagefile.h"
#include "web/finfo.h"
#include "web/fweb.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>

#include <filesystem>
#include <fstream>

using namespace ostrivex;
using ostrivex::testing::OpenDocument;

namespace {

class WebCommandsTest : public ostrivex::testing::WithMainWindow {
protected:
    void SetUp() override {
        WithMainWindow::SetUp();
        DocumentDialogs::AskSaveName = [this](QWidget*, const QString& title, const QString&,
                                              const QString& filter, const QString&) {
            asked << title + "|" + filter;
            return answer;
        };
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString&) { messages << text; };
        main_->show();
        main_->box(fMain::BoxOptimize)->show();
    }
    bool settle() {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < 30000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            if (!main_->optimizeBox()->Busy()) return true;
        }
        return false;
    }
    fImage* openPicture(int w, int h) {
        Bits b(w, h);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) b(0, x, y) = uint8_t(x * 7), b(1, x, y) = uint8_t(y * 5), b(2, x, y) = 90;
        fImage* doc = OpenDocument(*main_, b);
        main_->optimizeBox()->ShowDocument(doc);
        main_->ReloadOptimizePreview();
        return doc;
    }
    QString file(const char* name) const { return home() + "/" + name; }

    QStringList asked, messages;
    QString answer;
};

TEST_F(WebCommandsTest, SaveOptimizedWritesTheBoxsFileOfTheCountedSize) {
    openPicture(60, 40);
    main_->optimizeBox()->CboFiles->setCurrentIndex(3); // "GIF-16 Colors"
    ASSERT_TRUE(settle());
    answer = file("opt.gif");
    main_->MenuStatic("SAVEOPTIMIZEDAS");
    ASSERT_EQ(asked, QStringList{"Save Optimized as|*.gif|*.gif"});
    ASSERT_TRUE(std::filesystem::exists(answer.toStdString()));
    const QString size = main_->optimizeBox()->lblSize->text();
    EXPECT_TRUE(size.startsWith("Size: " + QString::number(std::filesystem::file_size(answer.toStdString())) + " bytes ("))
        << size.toStdString();
    EXPECT_TRUE(messages.isEmpty());

    // The JPEG presets save under their own extension.
    main_->optimizeBox()->CboFiles->setCurrentIndex(12);
    ASSERT_TRUE(settle());
    answer = file("opt.jpg");
    main_->MenuStatic("SAVEOPTIMIZED");
    EXPECT_EQ(asked.back(), "Save Optimized as|*.jpg|*.jpg");
    std::ifstream jpg(answer.toStdString(), std::ios::binary);
    EXPECT_EQ(jpg.get(), 0xFF);
}

TEST_F(WebCommandsTest, SaveAsGifWritesAGif) {
    fImage* doc = openPicture(30, 20);
    answer = file("saved.gif");
    main_->MenuStatic("SAVEAS");
    ASSERT_TRUE(std::filesystem::exists(answer.toStdString()));
    ASSERT_TRUE(LoadPictureFile(answer.toStdString(), "gif").ok);
    EXPECT_EQ(LoadedWidth, 30);
    // Ctrl+S on the GIF document writes it again, with the box's GIF settings.
    main_->optimizeBox()->CboFiles->setCurrentIndex(0); // "GIF-2 Colors"
    std::filesystem::remove(answer.toStdString());
    main_->MenuStatic("SAVE");
    std::ifstream gif(answer.toStdString(), std::ios::binary);
    char head[11] = {};
    gif.read(head, 11);
    EXPECT_EQ(std::string(head, 3), "GIF");
    EXPECT_EQ(head[10] & 7, 0); // a colour table of two
    EXPECT_EQ(doc->FileExtension, "gif");
}

TEST_F(WebCommandsTest, TheOptimizeViewFollowsUndo) {
    fImage* doc = openPicture(40, 30);
    ASSERT_TRUE(settle());
    const QImage before = doc->OptimizePanel()->Picture();
    ASSERT_FALSE(before.isNull());
    main_->MenuExec("INVERT");
    ASSERT_TRUE(settle());
    EXPECT_NE(doc->OptimizePanel()->Picture(), before);
    main_->MenuExec("UNDO");
    ASSERT_TRUE(settle());
    EXPECT_EQ(doc->OptimizePanel()->Picture(), before);
}

TEST_F(WebCommandsTest, SaveImageForWebOpensTheExportOnTheBoxsSettings) {
    openPicture(50, 50);
    main_->optimizeBox()->CboFiles->setCurrentIndex(13); // "JPEG - Good Quality"
    QString title, entry;
    ostrivex::testing::answerNextModal([&](QWidget* w) {
        title = w->windowTitle();
        if (auto* web = qobject_cast<FWeb*>(w)) entry = web->CboFiles->currentText();
    });
    main_->MenuStatic("IMAGESAVEOPTIONS");
    EXPECT_EQ(main_->LastRoute(), "WebExport");
    EXPECT_EQ(title, "Optimized Save Options");
    EXPECT_EQ(entry, "JPEG - Good Quality");
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
