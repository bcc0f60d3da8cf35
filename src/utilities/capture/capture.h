// Screen capture: the Capture menu's words and the custom capture.
//
// A capture takes our windows off the screen, waits on the timer `timerCapture` until they
// are really gone, reads the picture, shows our windows again (also when the capture
// fails), and makes the picture a new document. Where the program may read the screen (an
// X server) the picture comes from the screen itself; where it may not (Wayland), from
// the desktop portal's Screenshot interface.
#pragma once

#include "utilities/capture/fcapturerectangle.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

namespace ostrivex {

class fImage;
class PortalRequest;

// Message box texts of the capture (title kCaptureTitle).
inline constexpr const char* kCaptureTitle = "Capture Screen";
inline constexpr const char* kCaptureNoPortalText =
    "This desktop does not let programs read the screen directly, and its screenshot "
    "service (the desktop portal) is not available. No picture was taken.";
inline constexpr const char* kCaptureCancelledText = "The screen capture was cancelled.";
inline constexpr const char* kCapturePortalFailedText =
    "The desktop's screenshot service could not take the picture.";
inline constexpr const char* kCaptureNoForegroundText =
    "There is no window of another program to capture.";
inline constexpr const char* kCaptureUnreadableText = "The screen could not be read.";

// `CaptureDesktop`: the whole of `screen` (the primary screen when null), in device pixels.
QImage CaptureDesktop(QScreen* screen = nullptr);
// `CaptureWindow`: the part of the screen that shows `rect` (root window coordinates,
// device pixels) of window `handle`, overlapping windows included, as the screen shows it.
// The rectangle is cut to the screen that holds its centre. Null when nothing is left.
QImage CaptureWindow(uint32_t handle, const QRect& rect);

// Steps 2 to 4 of `capturePicture`: a new document of the picture's size, named "New.bmp"
// and captioned from the document counter, its first undo state "Original", shown in the
// main window. nullptr for a null picture or without a main window.
fImage* NewCaptureDocument(const QImage& picture);

class ScreenCapture : public QObject {
    Q_OBJECT
  public:
    enum Kind { Desktop = 0, Foreground = 1, Background = 2 };
    // Where pictures come from: the X server, or the desktop portal.
    enum class Source { X11, Portal };

    // How often the timer asks the X server whether our windows are gone, and for how long.
    static constexpr int kPollMs = 20;
    static constexpr int kPollLimitMs = 3000;
    // How long the timer then lets the screen settle: the windows under ours repaint, and a
    // compositor fades ours out (about 150 to 250 ms).
    static constexpr int kSettleMs = 250;
    // On X11 the screen is read again every kSteadyMs until two readings agree (a slow
    // program may still be repainting what our windows covered), at most kSteadyReads
    // times: a screen with a moving picture never agrees, and its last reading is taken.
    static constexpr int kSteadyMs = 100;
    static constexpr int kSteadyReads = 8;

    // The capture object of the main window: made on first use, a child of the window.
    static ScreenCapture& For(QWidget* mainWindow);
    explicit ScreenCapture(QWidget* mainWindow);
    ~ScreenCapture() override;

    // X11 on an X server that is not a Wayland session's; the portal everywhere else.
    static Source DefaultSource();
    Source source() const { return source_; }
    void setSource(Source s) { source_ = s; }

    // `capturePicture(kind)` behind the timer: CAPTUREDESKTOP, CAPTUREFOREGROUND and
    // CAPTUREBACKGROUND. Each hides our windows first. Ignored while a capture runs.
    void Capture(Kind kind);
    // The custom capture: a rectangle chosen with the mouse over a full-screen picture
    // (`fCaptureRectangle`), or through the portal's own dialog. Desktop and Background
    // hide our windows first; Foreground takes the screen as it is, our windows included.
    void CaptureRectangle(Kind kind);
    bool Busy() const { return busy_; }

    // The full-screen chooser while it is open (for tests).
    fCaptureRectangle* Chooser() const { return chooser_; }
    QTimer timerCapture;

  signals:
    // The end of a capture: the new document, or nullptr when none was made.
    void Finished(fImage* document);

  private:
    void start(Kind kind, bool rectangle, bool hideWindows);
    void timerCapture_Timer();
    void grab();
    bool readX11(QImage& picture);
    void grabPortal();
    void gotPicture(const QImage& picture);
    void fail(const char* text);
    void finish(fImage* document);
    void hideOurWindows();
    void showOurWindows();
    bool ourWindowsGone() const;
    bool isOurWindow(uint32_t window) const;

    QWidget* main_;
    Source source_;
    Kind kind_ = Desktop;
    bool rectangle_ = false;
    bool busy_ = false;
    enum class Phase { Polling, Settling, Steadying };
    Phase phase_ = Phase::Polling;
    QImage reading_;       // the last reading of the screen while it steadies
    int readings_ = 0;
    uint32_t foreground_ = 0; // the window a foreground capture takes
    std::chrono::steady_clock::time_point pollStart_;
    std::vector<QPointer<QWidget>> hidden_; // our windows taken off the screen, to show again
    QPointer<QScreen> screen_;              // the screen the main window was on
    QPointer<fCaptureRectangle> chooser_;
    std::unique_ptr<PortalRequest> portal_;
};

} // namespace ostrivex
