// Screen capture on an X server (run under xvfb-run with the xcb platform). Another process
// (this program started with --pattern) shows a window of known pixels: every pixel of it
// has its own colour. The main window and a tool box lie over it, so a capture that did not
// wait for our windows to be gone would see them. Without a window manager, where a test
// needs one's word on the active window, it writes _NET_ACTIVE_WINDOW itself; the
// WindowManager case runs openbox (on a server of its own, see CMakeLists.txt).
#include "app/app_test_util.h"
#include "app/toolbox.h"
#include "messages.h"
#include "pixel/pixel_test_util.h"
#include "utilities/capture/capture.h"
#include "utilities/capture/fcapture.h"
#include "utilities/desktop/x11.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QTest>

#include <xcb/xcb.h>

#include <cstdio>
#include <cstring>
#include <string>

using namespace ostrivex;

namespace {

// The colour of pixel (x, y) of the pattern: red and green from the position within blocks
// of 251 x 241 pixels, blue from the block, so no two pixels of 800 x 600 match.
QRgb patternAt(int x, int y) {
    return qRgb(x % 251, y % 241, (x / 251 + 4 * (y / 241)) * 20 + 7);
}

xcb_connection_t* xcb() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

// Plays the window manager: names `window` as the active one (0: none).
void setActiveWindow(uint32_t window) {
    xcb_connection_t* c = xcb();
    const char* name = "_NET_ACTIVE_WINDOW";
    xcb_intern_atom_reply_t* a =
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, uint16_t(std::strlen(name)), name), nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, root, a->atom, XCB_ATOM_WINDOW, 32, 1, &window);
    std::free(a);
    std::free(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr)); // a round trip
}

// True once a window manager has put its check window on the root window.
bool windowManagerRunning() {
    xcb_connection_t* c = xcb();
    const char* name = "_NET_SUPPORTING_WM_CHECK";
    xcb_intern_atom_reply_t* a =
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, uint16_t(std::strlen(name)), name), nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    xcb_get_property_reply_t* p = xcb_get_property_reply(
        c, xcb_get_property(c, 0, root, a->atom, XCB_ATOM_WINDOW, 0, 1), nullptr);
    const bool running = p && xcb_get_property_value_length(p) >= 4;
    std::free(p);
    std::free(a);
    return running;
}

// Where the window's own area starts on the screen.
QPoint clientOrigin(uint32_t window) {
    xcb_connection_t* c = xcb();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    xcb_translate_coordinates_reply_t* t =
        xcb_translate_coordinates_reply(c, xcb_translate_coordinates(c, window, root, 0, 0), nullptr);
    const QPoint p = t ? QPoint(t->dst_x, t->dst_y) : QPoint(-1, -1);
    std::free(t);
    return p;
}

// The rectangle `r` of `bits`.
Bits part(const Bits& bits, const QRect& r) {
    Bits out(r.width(), r.height());
    for (int y = 0; y < r.height(); ++y)
        for (int x = 0; x < r.width(); ++x)
            for (int c = 0; c < 3; ++c) out(c, x, y) = bits(c, r.x() + x, r.y() + y);
    return out;
}

// --- The other program: a window of the pattern at a place of the screen -----------------

class PatternWindow : public QWidget {
  public:
    explicit PatternWindow(bool framed)
        : QWidget(nullptr, framed ? Qt::Window : Qt::Window | Qt::FramelessWindowHint) {}

  protected:
    void paintEvent(QPaintEvent*) override {
        QImage image(size(), QImage::Format_RGB32);
        for (int y = 0; y < height(); ++y)
            for (int x = 0; x < width(); ++x) image.setPixel(x, y, patternAt(x, y));
        QPainter(this).drawImage(0, 0, image);
    }
};

int runPattern(int argc, char** argv) {
    QApplication app(argc, argv);
    const std::string option = argc > 6 ? argv[6] : "";
    PatternWindow window(option == "--framed");
    window.setGeometry(std::stoi(argv[2]), std::stoi(argv[3]), std::stoi(argv[4]), std::stoi(argv[5]));
    window.show();
    // A window manager that has just started can take seconds to map it on a busy machine.
    if (!QTest::qWaitForWindowExposed(&window, 30000)) return 1;
    QTest::qWait(100);
    if (option == "--active") setActiveWindow(uint32_t(window.winId()));
    std::printf("ready %u\n", unsigned(window.winId()));
    std::fflush(stdout);
    return app.exec();
}

// --- The tests ----------------------------------------------------------------------------

class X11CaptureTest : public ostrivex::testing::WithMainWindow {
  protected:
    void TearDown() override {
        if (other_.state() != QProcess::NotRunning) {
            other_.kill();
            other_.waitForFinished(5000);
        }
        WithMainWindow::TearDown();
    }
    // The other program's window at `rect`; its X window id.
    // `option`: "--active" names it the active window, "--framed" asks the window manager
    // for a frame.
    uint32_t showPattern(const QRect& rect, const QString& option = QString()) {
        QStringList args{"--pattern", QString::number(rect.x()), QString::number(rect.y()),
                         QString::number(rect.width()), QString::number(rect.height())};
        if (!option.isEmpty()) args << option;
        other_.start(QCoreApplication::applicationFilePath(), args);
        EXPECT_TRUE(other_.waitForStarted(5000));
        QByteArray line;
        while (!line.contains('\n') && other_.waitForReadyRead(40000)) line += other_.readAllStandardOutput();
        EXPECT_TRUE(line.startsWith("ready "))
            << line.constData() << other_.readAllStandardError().constData() << " exit "
            << other_.exitCode() << " state " << other_.state();
        return line.mid(6).trimmed().toUInt();
    }
    // Our windows over the other program's: the main window and the Color Box.
    void showOurs() {
        main_->setGeometry(40, 60, 520, 380);
        main_->show();
        main_->box(fMain::BoxColor)->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(main_.get(), 30000));
        QTest::qWait(200);
        shown_ = visibleWindows();
        ASSERT_GE(shown_.size(), 2);
    }
    static QList<QWidget*> visibleWindows() {
        QList<QWidget*> list;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible()) list << w;
        std::sort(list.begin(), list.end());
        return list;
    }
    ScreenCapture& capture() { return ScreenCapture::For(main_.get()); }
    fImage* run(const std::function<void()>& start) {
        bool ended = false;
        fImage* made = nullptr;
        const QMetaObject::Connection c =
            QObject::connect(&capture(), &ScreenCapture::Finished, [&](fImage* doc) {
                ended = true;
                made = doc;
            });
        start();
        for (int waited = 0; !ended && waited < 15000; waited += 10) {
            QTest::qWait(10);
            if (chooserAction_ && capture().Chooser() && capture().Chooser()->isVisible()) {
                QTest::qWait(100);
                auto act = std::move(chooserAction_);
                act(capture().Chooser());
            }
        }
        EXPECT_TRUE(ended);
        QObject::disconnect(c);
        return made;
    }
    // The pattern's rectangle `r`.
    static Bits pattern(const QRect& r) {
        Bits b(r.width(), r.height());
        for (int y = 0; y < r.height(); ++y)
            for (int x = 0; x < r.width(); ++x) {
                const QRgb c = patternAt(r.x() + x, r.y() + y);
                uint8_t* p = b.pixel(x, y);
                p[0] = uint8_t(qBlue(c));
                p[1] = uint8_t(qGreen(c));
                p[2] = uint8_t(qRed(c));
            }
        return b;
    }

    QProcess other_;
    QList<QWidget*> shown_;
    // What the test does with the full-screen chooser once it shows.
    std::function<void(fCaptureRectangle*)> chooserAction_;
};

TEST_F(X11CaptureTest, DesktopAndBackgroundSeeTheScreenWithoutOurWindows) {
    ASSERT_EQ(capture().source(), ScreenCapture::Source::X11);
    showPattern(QRect(0, 0, 800, 600));
    showOurs();
    test::RecordMessages messages;
    int number = 0;
    for (const char* word : {"CAPTUREDESKTOP", "CAPTUREBACKGROUND"}) {
        fImage* doc = run([&] { main_->MenuStatic(word); });
        ASSERT_NE(doc, nullptr) << word;
        EXPECT_TRUE(test::sameBits(pattern(QRect(0, 0, 800, 600)), doc->bits())) << word;
        EXPECT_EQ(doc->Caption(), QString("Image%1").arg(++number));
        EXPECT_EQ(doc->History().ActionNames[0], "Original");
        EXPECT_EQ(visibleWindows(), shown_) << word;
    }
    EXPECT_TRUE(messages.texts.isEmpty()) << messages.texts.join("/").toStdString();
}

TEST_F(X11CaptureTest, ForegroundIsTheActiveWindowOfAnotherProgram) {
    const QRect place(100, 80, 200, 150);
    showPattern(place, "--active");
    showOurs(); // lies over the window's lower right part
    test::RecordMessages messages;
    fImage* doc = run([&] { main_->MenuStatic("CAPTUREFOREGROUND"); });
    ASSERT_NE(doc, nullptr);
    EXPECT_TRUE(test::sameBits(pattern(QRect(QPoint(0, 0), place.size())), doc->bits()));
    EXPECT_EQ(visibleWindows(), shown_);
    EXPECT_TRUE(messages.texts.isEmpty());

    // When the window manager names one of ours, or none, there is nothing to take; our
    // windows come back all the same.
    for (uint32_t active : {uint32_t(main_->winId()), 0u}) {
        setActiveWindow(active);
        EXPECT_EQ(run([&] { main_->MenuStatic("CAPTUREFOREGROUND"); }), nullptr);
        EXPECT_EQ(messages.texts, QStringList({QString::fromLatin1(kCaptureNoForegroundText)}));
        messages.texts.clear();
        EXPECT_EQ(visibleWindows(), shown_);
    }
    EXPECT_EQ(main_->Documents().size(), 1u);
}

TEST_F(X11CaptureTest, CustomTakesTheRectangleDraggedOverTheScreen) {
    showPattern(QRect(0, 0, 800, 600));
    showOurs();
    test::RecordMessages messages;
    main_->action(*FindMenuEntry("mnuCapture", "Custom..."))->trigger();
    auto* dialog = main_->findChild<fCapture*>();
    ASSERT_NE(dialog, nullptr);
    dialog->cb->setCurrentIndex(ScreenCapture::Background);
    chooserAction_ = [&](fCaptureRectangle* chooser) {
        // The chooser covers the screen with the picture; our windows are away.
        EXPECT_EQ(chooser->geometry(), QRect(0, 0, 800, 600));
        EXPECT_EQ(visibleWindows(), QList<QWidget*>{chooser});
        QTest::mousePress(chooser, Qt::LeftButton, {}, QPoint(149, 99));
        QTest::mouseMove(chooser, QPoint(100, 70));
        QTest::mouseMove(chooser, QPoint(50, 40));
        EXPECT_EQ(chooser->picRectangle(), QRect(50, 40, 100, 60));
        QTest::mouseRelease(chooser, Qt::LeftButton, {}, QPoint(50, 40));
    };
    fImage* doc = run([&] { dialog->CmdCustom->click(); });
    ASSERT_NE(doc, nullptr);
    EXPECT_TRUE(test::sameBits(pattern(QRect(50, 40, 100, 60)), doc->bits()));
    EXPECT_EQ(visibleWindows(), shown_);

    // Escape gives up: no document, our windows back, no message.
    chooserAction_ = [](fCaptureRectangle* chooser) { QTest::keyClick(chooser, Qt::Key_Escape); };
    EXPECT_EQ(run([&] { capture().CaptureRectangle(ScreenCapture::Desktop); }), nullptr);
    EXPECT_EQ(visibleWindows(), shown_);
    EXPECT_EQ(main_->Documents().size(), 1u);
    EXPECT_TRUE(messages.texts.isEmpty());
}

TEST_F(X11CaptureTest, WindowManagerHandsTheFocusOnAndTheFrameIsTaken) {
    QProcess wm;
    wm.start("openbox", {"--sm-disable"});
    ASSERT_TRUE(wm.waitForStarted(5000)) << "openbox is not installed";
    for (int waited = 0; !windowManagerRunning() && waited < 10000; waited += 20) QTest::qWait(20);
    ASSERT_TRUE(windowManagerRunning());

    const QSize size(200, 150);
    const uint32_t other = showPattern(QRect(QPoint(100, 80), size), "--framed");
    showOurs();
    // Ours came last and is active; once hidden, the window manager activates the other.
    for (int waited = 0; x11::ActiveWindow() != uint32_t(main_->winId()) && waited < 15000; waited += 20)
        QTest::qWait(20);
    ASSERT_EQ(x11::ActiveWindow(), uint32_t(main_->winId()));
    test::RecordMessages messages;
    fImage* doc = run([&] { main_->MenuStatic("CAPTUREFOREGROUND"); });
    ASSERT_NE(doc, nullptr) << messages.texts.join("/").toStdString();
    // The whole frame, title bar included, with the window's own pixels inside it.
    const QRect frame = x11::FrameRect(other);
    EXPECT_GT(frame.height(), size.height());
    EXPECT_EQ(QSize(doc->PictureWidth(), doc->PictureHeight()), frame.size());
    const QPoint inside = clientOrigin(other) - frame.topLeft();
    EXPECT_TRUE(test::sameBits(pattern(QRect(QPoint(0, 0), size)),
                               part(doc->bits(), QRect(inside, size))));
    EXPECT_EQ(visibleWindows(), shown_);
    wm.kill();
    wm.waitForFinished(5000);
}

} // namespace

int main(int argc, char** argv) {
    if (argc >= 6 && std::string(argv[1]) == "--pattern") return runPattern(argc, argv);
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        std::fprintf(stderr, "test_utilities_capture_x11 needs an X server (run it under xvfb-run)\n");
        return 1;
    }
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    // Pictures come from this X server, never from a portal of the desktop around it.
    unsetenv("WAYLAND_DISPLAY");
    unsetenv("XDG_SESSION_TYPE");
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
