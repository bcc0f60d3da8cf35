#include "utilities/capture/capture.h"

#include "document/dialogs.h"
#include "document/fimage.h"
#include "document/host.h"
#include "utilities/capture/fcapturerectangle.h"
#include "utilities/desktop/portal.h"
#include "utilities/desktop/x11.h"

#include <QApplication>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QUrl>

#include <algorithm>

namespace ostrivex {

namespace {

// A screen's rectangle in device pixels of the root window. Qt keeps a screen's origin in
// device pixels and scales only its size.
QRect deviceGeometry(const QScreen* s) {
    const QRect g = s->geometry();
    const qreal dpr = s->devicePixelRatio();
    return QRect(g.topLeft(), QSize(qRound(g.width() * dpr), qRound(g.height() * dpr)));
}

// Reads `rect` (device pixels, root coordinates, inside the screen) from the screen.
QImage grabRoot(QScreen* screen, const QRect& rect) {
    const qreal dpr = screen->devicePixelRatio();
    const QPoint origin = screen->geometry().topLeft();
    // QScreen::grabWindow takes the screen's own coordinates in its logical pixels.
    const QPixmap shot = screen->grabWindow(0, qRound((rect.x() - origin.x()) / dpr),
                                            qRound((rect.y() - origin.y()) / dpr),
                                            qRound(rect.width() / dpr), qRound(rect.height() / dpr));
    QImage image = shot.toImage();
    image.setDevicePixelRatio(1.0);
    return image;
}

} // namespace

QImage CaptureDesktop(QScreen* screen) {
    if (!screen) screen = QGuiApplication::primaryScreen();
    if (!screen) return QImage();
    return CaptureWindow(0, deviceGeometry(screen));
}

QImage CaptureWindow(uint32_t handle, const QRect& rect) {
    // Like a window's device context, the rectangle counts from the window's outer corner;
    // the pixels come from the screen, so overlapping windows show as they are seen.
    QRect r = rect;
    if (handle != 0) {
        const QRect frame = x11::FrameRect(handle);
        if (frame.isEmpty()) return QImage();
        r.translate(frame.topLeft());
    }
    QScreen* screen = nullptr;
    for (QScreen* s : QGuiApplication::screens())
        if (deviceGeometry(s).contains(r.center())) screen = s;
    if (!screen) screen = QGuiApplication::primaryScreen();
    if (!screen) return QImage();
    r = r.intersected(deviceGeometry(screen));
    if (r.isEmpty()) return QImage();
    return grabRoot(screen, r);
}

fImage* NewCaptureDocument(const QImage& picture) {
    DocumentHost* host = GetDocumentHost();
    if (!host || picture.isNull() || picture.width() < 1 || picture.height() < 1) return nullptr;
    auto* doc = new fImage;
    doc->BeginDocument(QString());
    doc->PPicture(picture);
    // No file yet: named like a new blank image, so Save asks for a name.
    doc->FileName = QStringLiteral("New.bmp");
    doc->FileExtension = QStringLiteral("bmp");
    doc->SaveUndoBits(QStringLiteral("Original"));
    doc->UpdateImage();
    host->AddDocumentWindow(doc);
    return doc;
}

ScreenCapture& ScreenCapture::For(QWidget* mainWindow) {
    if (auto* c = mainWindow->findChild<ScreenCapture*>(QString(), Qt::FindDirectChildrenOnly))
        return *c;
    return *new ScreenCapture(mainWindow);
}

ScreenCapture::ScreenCapture(QWidget* mainWindow)
    : QObject(mainWindow), main_(mainWindow), source_(DefaultSource()) {
    timerCapture.setSingleShot(true);
    connect(&timerCapture, &QTimer::timeout, this, &ScreenCapture::timerCapture_Timer);
}

ScreenCapture::~ScreenCapture() {
    if (chooser_) chooser_->deleteLater();
}

ScreenCapture::Source ScreenCapture::DefaultSource() {
    // An X server inside a Wayland session (Xwayland) shows only its own windows.
    const bool waylandSession =
        qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland") ||
        !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (QGuiApplication::platformName() == QLatin1String("xcb") && x11::Available() &&
        !waylandSession)
        return Source::X11;
    return Source::Portal;
}

void ScreenCapture::Capture(Kind kind) { start(kind, false, true); }

void ScreenCapture::CaptureRectangle(Kind kind) { start(kind, true, kind != Foreground); }

void ScreenCapture::start(Kind kind, bool rectangle, bool hideWindows) {
    if (busy_) return;
    busy_ = true;
    kind_ = kind;
    rectangle_ = rectangle;
    screen_ = main_->screen();
    if (hideWindows) hideOurWindows();
    phase_ = Phase::Polling;
    pollStart_ = std::chrono::steady_clock::now();
    timerCapture.start(kPollMs);
}

void ScreenCapture::timerCapture_Timer() {
    switch (phase_) {
    case Phase::Polling: {
        // First our windows leave the screen, as the X server tells; then the screen
        // settles. (A portal gives no such answer: only the settling time is waited.)
        const auto waited = std::chrono::steady_clock::now() - pollStart_;
        if (source_ == Source::X11 && !ourWindowsGone() &&
            waited < std::chrono::milliseconds(kPollLimitMs)) {
            timerCapture.start(kPollMs);
            return;
        }
        phase_ = Phase::Settling;
        timerCapture.start(kSettleMs);
        return;
    }
    case Phase::Settling:
        grab();
        return;
    case Phase::Steadying: {
        QImage picture;
        if (!readX11(picture)) return;
        if (picture != reading_ && ++readings_ < kSteadyReads) {
            reading_ = picture;
            timerCapture.start(kSteadyMs);
            return;
        }
        reading_ = QImage();
        gotPicture(picture);
        return;
    }
    }
}

void ScreenCapture::grab() {
    if (source_ == Source::Portal) {
        grabPortal();
        return;
    }
    foreground_ = 0;
    if (kind_ == Foreground && !rectangle_) {
        // The window manager's active window once ours are gone; never one of ours.
        const uint32_t active = x11::ActiveWindow();
        if (active == 0 || isOurWindow(active) || !x11::IsViewable(active)) {
            fail(kCaptureNoForegroundText);
            return;
        }
        foreground_ = active;
    }
    if (!readX11(reading_)) return;
    readings_ = 1;
    phase_ = Phase::Steadying;
    timerCapture.start(kSteadyMs);
}

bool ScreenCapture::readX11(QImage& picture) {
    if (foreground_ != 0) {
        const QRect frame = x11::FrameRect(foreground_);
        picture = CaptureWindow(foreground_, QRect(QPoint(0, 0), frame.size()));
    } else {
        picture = CaptureDesktop(screen_ ? screen_.data() : nullptr);
    }
    if (picture.isNull()) {
        // The screen, or the window, could not be read (a window that closed meanwhile).
        reading_ = QImage();
        fail(kCaptureUnreadableText);
        return false;
    }
    return true;
}

void ScreenCapture::grabPortal() {
    // Where the program cannot know the foreground window, the user points at it in the
    // portal's own dialog; a chosen rectangle is chosen there too.
    const bool interactive = rectangle_ || kind_ == Foreground;
    portal_ = std::make_unique<PortalRequest>(QDBusConnection::sessionBus());
    // Our windows stay away until the portal answers, so a portal that never does must not
    // keep them away for good. A desktop may ask the user's leave even for a plain
    // screenshot: two minutes for that, ten for a dialog where the user chooses.
    portal_->SetTimeout(interactive ? 600000 : 120000);
    const QString parent = main_->isVisible() ? PortalRequest::ParentWindow(main_) : QString();
    QVariantMap options;
    options.insert(QStringLiteral("modal"), true);
    options.insert(QStringLiteral("interactive"), interactive);
    portal_->Start(QString::fromLatin1(kScreenshotInterface), QStringLiteral("Screenshot"),
                   {parent}, options, [this](const PortalResult& r) {
                       switch (r.status) {
                       case PortalResult::Status::Success: {
                           const QUrl uri(r.results.value(QStringLiteral("uri")).toString());
                           const QImage picture =
                               uri.isLocalFile() ? QImage(uri.toLocalFile()) : QImage();
                           if (picture.isNull())
                               fail(kCaptureUnreadableText);
                           else
                               gotPicture(picture);
                           break;
                       }
                       case PortalResult::Status::Cancelled:
                           fail(kCaptureCancelledText);
                           break;
                       case PortalResult::Status::NoPortal:
                           fail(kCaptureNoPortalText);
                           break;
                       case PortalResult::Status::Failed:
                           fail(kCapturePortalFailedText);
                           break;
                       }
                   });
}

void ScreenCapture::gotPicture(const QImage& picture) {
    if (rectangle_ && source_ == Source::X11) {
        // Our windows stay away while the chooser covers the screen.
        chooser_ = new fCaptureRectangle(picture, screen_ ? screen_.data() : nullptr);
        connect(chooser_, &fCaptureRectangle::Chosen, this, [this](const QImage& part) {
            showOurWindows();
            finish(NewCaptureDocument(part));
        });
        connect(chooser_, &fCaptureRectangle::Cancelled, this, [this] {
            showOurWindows();
            finish(nullptr);
        });
        chooser_->ShowFullScreen();
        return;
    }
    showOurWindows();
    finish(NewCaptureDocument(picture));
}

void ScreenCapture::fail(const char* text) {
    showOurWindows();
    DocumentDialogs::Inform(main_, QString::fromLatin1(text), QString::fromLatin1(kCaptureTitle));
    finish(nullptr);
}

void ScreenCapture::finish(fImage* document) {
    busy_ = false;
    // The request ends inside its own answer: it goes once that answer has returned.
    if (portal_) portal_.release()->deleteLater();
    emit Finished(document);
}

void ScreenCapture::hideOurWindows() {
    hidden_.clear();
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (!w->isWindow() || !w->isVisible()) continue;
        const Qt::WindowType type = w->windowType();
        if (type == Qt::Popup || type == Qt::ToolTip) continue; // they close by themselves
        hidden_.emplace_back(w);
    }
    // The main window first, so it comes back first and under its tool boxes.
    std::stable_partition(hidden_.begin(), hidden_.end(),
                          [this](const QPointer<QWidget>& w) { return w == main_; });
    for (const QPointer<QWidget>& w : hidden_) w->hide();
}

void ScreenCapture::showOurWindows() {
    for (const QPointer<QWidget>& w : hidden_)
        if (w) w->setVisible(true); // keeps a maximised or minimised state
    const bool hadWindows = !hidden_.empty();
    hidden_.clear();
    if (hadWindows && main_->isVisible()) {
        main_->raise();
        main_->activateWindow();
    }
}

bool ScreenCapture::ourWindowsGone() const {
    for (const QPointer<QWidget>& w : hidden_)
        if (w && w->testAttribute(Qt::WA_WState_Created) && x11::IsViewable(uint32_t(w->winId())))
            return false;
    return true;
}

bool ScreenCapture::isOurWindow(uint32_t window) const {
    const uint32_t top = x11::TopLevelOf(window);
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (!w->testAttribute(Qt::WA_WState_Created)) continue;
        const auto id = uint32_t(w->winId());
        if (id == window || (top != 0 && x11::TopLevelOf(id) == top)) return true;
    }
    return false;
}

} // namespace ostrivex
