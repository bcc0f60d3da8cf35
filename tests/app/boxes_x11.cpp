// The tool boxes under a real window manager: on a virtual X server with openbox, the boxes
// shown first (as start-up shows them) and the main window after, maximised. Once the main
// window is raised, as a click into it raises it, every box must still lie above it: the
// boxes are transients of the main window, which the window manager keeps above it.
//
// Run under xvfb-run with the xcb platform (see CMakeLists.txt).
#include "app/app_test_util.h"
#include "app/commandline.h"
#include "app/globals.h"
#include "app/picture_files.h"
#include "app/toolbox.h"
#include "document/fimage.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include <QProcess>
#include <QTest>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

using namespace ostrivex;

namespace {

xcb_connection_t* xcb() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

xcb_atom_t atom(const char* name) {
    xcb_connection_t* c = xcb();
    xcb_intern_atom_reply_t* a =
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, uint16_t(std::strlen(name)), name), nullptr);
    const xcb_atom_t result = a ? a->atom : XCB_ATOM_NONE;
    std::free(a);
    return result;
}

// A window property of window type (a list of windows), read from the server.
std::vector<uint32_t> windows(xcb_window_t window, const char* property) {
    xcb_connection_t* c = xcb();
    xcb_get_property_reply_t* p = xcb_get_property_reply(
        c, xcb_get_property(c, 0, window, atom(property), XCB_ATOM_WINDOW, 0, 1024), nullptr);
    std::vector<uint32_t> out;
    if (p) {
        const auto* v = static_cast<const uint32_t*>(xcb_get_property_value(p));
        out.assign(v, v + xcb_get_property_value_length(p) / 4);
    }
    std::free(p);
    return out;
}

xcb_window_t root() { return xcb_setup_roots_iterator(xcb_get_setup(xcb())).data->root; }

// The window manager's stacking order, bottom first.
std::vector<uint32_t> stacking() { return windows(root(), "_NET_CLIENT_LIST_STACKING"); }

bool windowManagerRunning() { return !windows(root(), "_NET_SUPPORTING_WM_CHECK").empty(); }

class BoxesUnderOpenbox : public ostrivex::testing::WithMainWindow {};

// Starts openbox and waits until it manages the screen; killed with the returned process.
void startOpenbox(QProcess& wm) {
    wm.start("openbox", {"--sm-disable"});
    ASSERT_TRUE(wm.waitForStarted(5000)) << "openbox is not installed";
    for (int waited = 0; !windowManagerRunning() && waited < 10000; waited += 20) QTest::qWait(20);
    ASSERT_TRUE(windowManagerRunning());
    QTest::qWait(500); // the window manager takes charge of the screen
}

TEST_F(BoxesUnderOpenbox, TheBoxesStayAboveTheMainWindowWhenItIsRaised) {
    QProcess wm;
    startOpenbox(wm);
    if (HasFatalFailure()) return;

    // Start-up's order: the boxes first, then the main window.
    for (int b = 0; b < fMain::BoxCount; ++b) main_->PlaceBox(b);
    main_->showMaximized();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(main_.get(), 30000));
    const uint32_t mainWindow = uint32_t(main_->winId());
    auto managed = [&] {
        const std::vector<uint32_t> s = stacking();
        return std::find(s.begin(), s.end(), mainWindow) != s.end();
    };
    for (int waited = 0; !managed() && waited < 10000; waited += 20) QTest::qWait(20);
    ASSERT_TRUE(managed());
    QTest::qWait(500);

    // The main window is raised, as a click into it raises it.
    main_->activateWindow();
    main_->raise();
    QTest::qWait(800);
    const std::vector<uint32_t> order = stacking();
    const auto mainAt = std::find(order.begin(), order.end(), mainWindow);
    ASSERT_NE(mainAt, order.end());
    int shown = 0;
    for (int b = 0; b < fMain::BoxCount; ++b) {
        ToolBox* box = main_->box(b);
        if (!box->isVisible()) continue;
        ++shown;
        SCOPED_TRACE(box->caption().toStdString());
        const uint32_t boxWindow = uint32_t(box->winId());
        EXPECT_EQ(windows(boxWindow, "WM_TRANSIENT_FOR"), std::vector<uint32_t>{mainWindow});
        const auto boxAt = std::find(order.begin(), order.end(), boxWindow);
        ASSERT_NE(boxAt, order.end());
        EXPECT_GT(boxAt - order.begin(), mainAt - order.begin());
    }
    EXPECT_EQ(shown, int(fMain::BoxCount));
    wm.kill();
    wm.waitForFinished(5000);
}

// A file named on the command line waits for the main window: the window manager maximises
// it some time after it is shown, and the document's first size comes from the working area.
TEST_F(BoxesUnderOpenbox, AFileFromTheCommandLineOpensInTheMaximisedWindow) {
    QProcess wm;
    startOpenbox(wm);
    if (HasFatalFailure()) return;
    const QString file = home() + "/wide.bmp";
    ASSERT_TRUE(ostrivex::testing::writeBmp24(file, 900, 600, std::vector<ostrivex::testing::Rgb>(900 * 600, {40, 90, 160})));

    // As at start: the file is named before there is a main window.
    fMain* const made = MainWindow;
    MainWindow = nullptr;
    OpenFiles({file});
    MainWindow = made;
    main_->showMaximized();
    OpenPendingFiles();
    for (int waited = 0; main_->Documents().empty() && waited < 5000; waited += 20) QTest::qWait(20);
    ASSERT_EQ(main_->Documents().size(), 1u);
    QTest::qWait(200);
    auto* sub = qobject_cast<QMdiSubWindow*>(main_->Documents().front()->parentWidget());
    ASSERT_NE(sub, nullptr);
    const QSize area = sub->mdiArea()->viewport()->size();
    // The 1024 x 768 screen's working area holds most of the picture: the window takes it.
    EXPECT_GT(area.width(), 900);
    EXPECT_GE(sub->width(), 900);
    EXPECT_GE(sub->height(), std::min(600, area.height() - 10));
    wm.kill();
    wm.waitForFinished(5000);
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        std::fprintf(stderr, "test_app_boxes_x11 needs an X server (run it under xvfb-run)\n");
        return 1;
    }
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
