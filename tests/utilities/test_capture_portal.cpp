// Screen capture where the program may not read the screen: the desktop portal's
// Screenshot interface, played by a fake portal on a private session bus. The capture
// words go through the main window's dispatch, as from the menu.
#include "app/app_test_util.h"
#include "app/toolbox.h"
#include "document/undostore.h"
#include "messages.h"
#include "pixel/pixel_test_util.h"
#include "session_bus.h"
#include "utilities/capture/capture.h"
#include "utilities/capture/fcapture.h"
#include "utilities/desktop/portal.h"

#include <QComboBox>
#include <QImage>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <memory>

using namespace ostrivex;

namespace {

class PortalCaptureTest : public ostrivex::testing::WithMainWindow {
  protected:
    void SetUp() override {
        WithMainWindow::SetUp();
        main_->show();
        main_->box(fMain::BoxColor)->show();
        shown_ = visibleWindows();
        ASSERT_GE(shown_.size(), 2);
        ASSERT_TRUE(dir_.isValid());
        // The portal's picture: a 5 x 4 file where every pixel differs.
        picture_ = QImage(5, 4, QImage::Format_RGB32);
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 5; ++x) picture_.setPixel(x, y, qRgb(40 * x + 3, 60 * y + 7, x * y + 11));
        ASSERT_TRUE(picture_.save(dir_.filePath("shot.png")));
    }
    QVariantMap shot() const {
        return {{"uri", QUrl::fromLocalFile(dir_.filePath("shot.png")).toString()}};
    }
    static QList<QWidget*> visibleWindows() {
        QList<QWidget*> list;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible()) list << w;
        std::sort(list.begin(), list.end());
        return list;
    }
    ScreenCapture& capture() { return ScreenCapture::For(main_.get()); }
    // Runs `start` and waits for the capture's end; the new document or nullptr.
    fImage* run(const std::function<void()>& start) {
        bool ended = false;
        fImage* made = nullptr;
        const QMetaObject::Connection c =
            QObject::connect(&capture(), &ScreenCapture::Finished, [&](fImage* doc) {
                ended = true;
                made = doc;
            });
        start();
        for (int waited = 0; !ended && waited < 10000; waited += 10) QTest::qWait(10);
        EXPECT_TRUE(ended);
        QObject::disconnect(c);
        return made;
    }
    // The portal call's view of our windows: each visible one at the time of the request.
    void watchWindows(test::FakePortal& portal) {
        portal.onCall = [this](const test::PortalCall&) { duringRequest_ = visibleWindows(); };
    }

    QTemporaryDir dir_;
    QImage picture_;
    QList<QWidget*> shown_;
    QList<QWidget*> duringRequest_;
};

Bits bitsOf(const QImage& image) {
    Bits b(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb c = image.pixel(x, y);
            uint8_t* p = b.pixel(x, y);
            p[0] = uint8_t(qBlue(c));
            p[1] = uint8_t(qGreen(c));
            p[2] = uint8_t(qRed(c));
        }
    return b;
}

TEST_F(PortalCaptureTest, TheDesktopFromThePortalBecomesANewDocument) {
    ASSERT_EQ(capture().source(), ScreenCapture::Source::Portal); // offscreen: no X server
    test::FakePortal portal;
    portal.results = shot();
    watchWindows(portal);
    test::RecordMessages messages;

    fImage* doc = run([&] { main_->MenuStatic("CAPTUREDESKTOP"); });
    EXPECT_EQ(main_->LastRoute(), "Capture");
    ASSERT_EQ(portal.calls.size(), 1u);
    const test::PortalCall& call = portal.calls[0];
    EXPECT_EQ(call.interface, "org.freedesktop.portal.Screenshot");
    EXPECT_EQ(call.member, "Screenshot");
    EXPECT_EQ(call.arguments, QVariantList({QString()}));
    EXPECT_EQ(call.options.value("interactive"), QVariant(false));
    EXPECT_EQ(call.options.value("modal"), QVariant(true));
    EXPECT_TRUE(call.options.value("handle_token").toString().startsWith("ostrivex_"));
    // Our windows were gone while the portal took the picture, and are back.
    EXPECT_TRUE(duringRequest_.isEmpty());
    EXPECT_EQ(visibleWindows(), shown_);
    EXPECT_TRUE(messages.texts.isEmpty());

    ASSERT_NE(doc, nullptr);
    EXPECT_TRUE(test::sameBits(bitsOf(picture_), doc->bits()));
    EXPECT_EQ(doc->Caption(), "Image1");
    EXPECT_EQ(doc->FileName, "New.bmp");
    EXPECT_EQ(main_->Documents(), std::vector<fImage*>{doc});
    // Undo slot 0 holds the picture as "Original".
    EXPECT_EQ(doc->HistoryPosition(), 1);
    EXPECT_EQ(doc->History().ActionNames[0], "Original");
    Bits slot;
    ASSERT_TRUE(UndoStore::ReadSlotFile(doc->History().SlotFileName(0), slot));
    EXPECT_TRUE(test::sameBits(bitsOf(picture_), slot));

    // The background, with a portal that answers before its reply: numbered on.
    portal.early = true;
    fImage* second = run([&] { main_->MenuStatic("CAPTUREBACKGROUND"); });
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->Caption(), "Image2");
    EXPECT_EQ(portal.calls.back().options.value("interactive"), QVariant(false));
    EXPECT_EQ(visibleWindows().size(), shown_.size());
}

TEST_F(PortalCaptureTest, ForegroundAndCustomLetTheUserChooseInThePortal) {
    test::FakePortal portal;
    portal.results = shot();
    watchWindows(portal);
    fImage* doc = run([&] { main_->MenuStatic("CAPTUREFOREGROUND"); });
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(portal.calls.back().options.value("interactive"), QVariant(true));
    EXPECT_TRUE(duringRequest_.isEmpty());

    // The Custom... dialog: Desktop hides our windows, Foreground takes the screen as it is;
    // the part the user chose in the portal is the document, with no chooser of ours.
    for (int item : {0, 1}) {
        main_->action(*FindMenuEntry("mnuCapture", "Custom..."))->trigger();
        EXPECT_EQ(main_->LastRoute(), "fCapture");
        auto* dialog = main_->findChild<fCapture*>();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->windowTitle(), "Capture Screen");
        dialog->cb->setCurrentIndex(item);
        fImage* custom = run([&] { dialog->CmdCustom->click(); });
        ASSERT_NE(custom, nullptr) << item;
        EXPECT_TRUE(test::sameBits(bitsOf(picture_), custom->bits()));
        EXPECT_EQ(portal.calls.back().options.value("interactive"), QVariant(true));
        EXPECT_EQ(capture().Chooser(), nullptr);
        // The dialog closed itself before the picture was taken.
        EXPECT_FALSE(duringRequest_.contains(dialog));
        if (item == 0)
            EXPECT_TRUE(duringRequest_.isEmpty());
        else
            EXPECT_TRUE(duringRequest_.contains(main_.get()));
    }
    EXPECT_EQ(main_->Documents().size(), 3u);
    EXPECT_EQ(visibleWindows(), shown_);
}

TEST_F(PortalCaptureTest, NoPictureMeansAMessageNoDocumentAndOurWindowsBack) {
    test::RecordMessages messages;
    const auto expectFailure = [&](const char* word, const char* text) {
        messages.texts.clear();
        EXPECT_EQ(run([&] { main_->MenuStatic(word); }), nullptr) << word;
        EXPECT_EQ(messages.texts, QStringList({QString::fromLatin1(text)})) << word;
        EXPECT_EQ(messages.titles.value(0), "Capture Screen");
        EXPECT_EQ(visibleWindows(), shown_) << word;
        EXPECT_TRUE(main_->Documents().empty());
    };
    // No portal on the bus at all.
    expectFailure("CAPTUREDESKTOP", kCaptureNoPortalText);
    {
        test::FakePortal portal;
        portal.response = 1;
        expectFailure("CAPTUREFOREGROUND", kCaptureCancelledText);
        portal.response = 2;
        expectFailure("CAPTUREBACKGROUND", kCapturePortalFailedText);
        // A picture that cannot be read.
        portal.response = 0;
        portal.results = {{"uri", QUrl::fromLocalFile(dir_.filePath("gone.png")).toString()}};
        expectFailure("CAPTUREDESKTOP", kCaptureUnreadableText);
    }

    // A portal that goes away before it answers; a second word while the first capture
    // waits is ignored.
    messages.texts.clear();
    auto portal = std::make_unique<test::FakePortal>();
    portal->answer = false;
    bool ended = false;
    QObject::connect(&capture(), &ScreenCapture::Finished, [&ended] { ended = true; });
    main_->MenuStatic("CAPTUREDESKTOP");
    QTRY_COMPARE_WITH_TIMEOUT(int(portal->calls.size()), 1, 5000);
    EXPECT_TRUE(capture().Busy());
    main_->MenuStatic("CAPTUREBACKGROUND");
    QTest::qWait(ScreenCapture::kSettleMs + 300);
    EXPECT_EQ(portal->calls.size(), 1u);
    portal.reset();
    QTRY_VERIFY_WITH_TIMEOUT(ended, 5000);
    EXPECT_EQ(messages.texts, QStringList({QString::fromLatin1(kCapturePortalFailedText)}));
    EXPECT_EQ(visibleWindows(), shown_);
    EXPECT_FALSE(capture().Busy());
}

} // namespace

namespace {

TEST(PortalRequestTest, APortalThatNeverAnswersEndsAsAFailureInTime) {
    test::FakePortal portal;
    portal.answer = false;
    const PortalResult r = RunPortalRequest(QDBusConnection::sessionBus(), kScreenshotInterface,
                                            "Screenshot", {QString()}, {}, 200);
    EXPECT_EQ(r.status, PortalResult::Status::Failed);
    EXPECT_EQ(portal.calls.size(), 1u);
}

} // namespace
