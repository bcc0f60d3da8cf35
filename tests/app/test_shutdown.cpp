// Start-up and shutdown inside one process: the order of start-up's visible results, the
// second-instance warning, and the unload sequence (documents closed, the record written,
// the work files deleted, the buffers released).
#include "app/fmain.h"
#include "app/globals.h"
#include "app/startup.h"
#include "app/toolbox.h"
#include "app_test_util.h"
#include "document/fimage.h"
#include "picture_files.h"
#include "pixel/pixel_test_util.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLockFile>
#include <QMdiArea>
#include <QMessageBox>

using namespace ostrivex;
using ostrivex::testing::FreshHome;
using ostrivex::testing::fileBytes;

namespace {

class ShutdownTest : public FreshHome {
  protected:
    void TearDown() override { ReleaseInstanceLock(); }
};

TEST_F(ShutdownTest, UnloadWritesTheRecordAndClearsTemp) {
    SetDefaultSettings(Settings, AppFolder());
    Settings.ColorPrimary = 0x123456;
    auto main = std::make_unique<fMain>();

    ostrivex::testing::OpenDocument(*main, test::makeBits(1, 1, {{1, 2, 3}}));
    main->ClipBuffer = test::makeBits(1, 1, {{9, 9, 9}});
    main->StampBits = test::makeBits(1, 1, {{8, 8, 8}});

    const QString temp = home() + "/Temp";
    ASSERT_TRUE(QDir().mkpath(temp + "/kept"));
    ASSERT_TRUE(ostrivex::testing::writeText(temp + "/4546643", "x"));
    ASSERT_TRUE(ostrivex::testing::writeText(temp + "/layer1.bmp", "x"));
    ASSERT_GE(QDir(temp).entryList(QDir::Files).size(), 2);

    main->Unload();
    EXPECT_TRUE(main->Documents().empty());
    // Every file of Temp is gone (the document's undo slots with them); folders stay.
    EXPECT_TRUE(QDir(temp).entryList(QDir::Files | QDir::Hidden).isEmpty());
    EXPECT_TRUE(QDir(temp + "/kept").exists());
    EXPECT_TRUE(main->ClipBuffer.width() <= 0 || main->ClipBuffer.height() <= 0);
    EXPECT_TRUE(main->StampBits.width() <= 0 || main->StampBits.height() <= 0);

    const QByteArray file = fileBytes(home() + "/oi201Start.up");
    ASSERT_EQ(file.size(), 3967);
    // 640 x 480 pixels are 9600 x 7200 twips (0x2580, 0x1C20), then maximised (-1).
    EXPECT_EQ(file.left(6), QByteArray::fromHex("802520 1cffff"));
    // ColorPrimary follows the 2594 bytes of the first group and the reserved colour.
    EXPECT_EQ(file.mid(2598, 4), QByteArray::fromHex("56341200"));

    // The sequence runs once: a later change is not written.
    Settings.ColorPrimary = 0;
    main->Unload();
    main->close();
    EXPECT_EQ(fileBytes(home() + "/oi201Start.up").mid(2598, 4), QByteArray::fromHex("56341200"));
}

TEST_F(ShutdownTest, StartUpBringsUpTheWindowAndWarnsASecondInstance) {
    fMain* first = StartUp();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(MainWindow, first);
    // The settings file stands empty until the first save.
    EXPECT_TRUE(QFile::exists(home() + "/oi201Start.up"));
    EXPECT_EQ(fileBytes(home() + "/oi201Start.up").size(), 0);
    EXPECT_TRUE(first->isVisible());
    EXPECT_TRUE(first->windowState() & Qt::WindowMaximized);
    EXPECT_TRUE(first->filterCreated());
    EXPECT_EQ(first->zoomCombo()->currentIndex(), 0);
    EXPECT_EQ(first->DocumentCounter, 0);
    for (int b = 0; b < fMain::BoxCount; ++b) {
        EXPECT_TRUE(first->box(b)->isVisible()) << b;
        EXPECT_TRUE(first->viewsAction(b)->isChecked()) << b;
    }
    // The places count from the document area's corner: 420, 8640 and 6780, 1100 twips
    // (once the shown window has settled; the boxes then follow it).
    QCoreApplication::processEvents();
    const QPoint area = first->mdiArea()->mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(first->box(fMain::BoxTextures)->pos(), area + QPoint(28, 576));
    EXPECT_EQ(first->box(fMain::BoxBrowser)->pos(), area + QPoint(452, 73));
    EXPECT_EQ(first->box(fMain::BoxBrowser)->size(), QSize(320, 466));

    delete first;
}

TEST_F(ShutdownTest, ASecondInstanceIsWarnedAndStillOpensItsWindow) {
    // Another instance holds the lock.
    ReleaseInstanceLock();
    QLockFile other(InstanceLockPath());
    ASSERT_TRUE(other.tryLock(0));

    QString text, title;
    ostrivex::testing::answerNextModal([&](QWidget* w) {
        if (auto* box = qobject_cast<QMessageBox*>(w)) {
            text = box->text();
            title = box->windowTitle();
            EXPECT_EQ(box->icon(), QMessageBox::Information);
        }
    });
    fMain* second = StartUp();
    EXPECT_EQ(text, "Ostrivex is already running!");
    EXPECT_EQ(title, "Ostrivex");
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(MainWindow, second);
    EXPECT_TRUE(second->box(fMain::BoxLayer)->isVisible());
    delete second;
}

TEST_F(ShutdownTest, StartUpWithANormalWindowTakesTheStoredSize) {
    SetDefaultSettings(Settings, AppFolder());
    Settings.MainMaximized = 0;
    Settings.MainWidth = 12000; // 800 pixels
    Settings.MainHeight = 9000; // 600 pixels
    Settings.ColorBoxVisible = 0;
    SaveSettings();
    fMain* main = StartUp();
    EXPECT_FALSE(main->windowState() & Qt::WindowMaximized);
    EXPECT_EQ(main->size(), QSize(800, 600));
    EXPECT_FALSE(main->box(fMain::BoxColor)->isVisible());
    EXPECT_FALSE(main->viewsAction(fMain::BoxColor)->isChecked());
    delete main;
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
