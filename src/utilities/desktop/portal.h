// Requests to the desktop portal (xdg-desktop-portal) over the session bus.
//
// A portal method answers at once with the path of a request object; the real answer comes
// later as that object's `Response` signal (0 success, 1 cancelled by the user, 2 other).
// The signal is subscribed before the call, on the path the portal will use, so that an
// early answer is not missed.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

class QWidget;

namespace ostrivex {

inline constexpr const char* kPortalService = "org.freedesktop.portal.Desktop";
inline constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
inline constexpr const char* kPortalRequestInterface = "org.freedesktop.portal.Request";
inline constexpr const char* kScreenshotInterface = "org.freedesktop.portal.Screenshot";
inline constexpr const char* kWallpaperInterface = "org.freedesktop.portal.Wallpaper";

struct PortalResult {
    enum class Status {
        Success,   // response 0
        Cancelled, // response 1: the user said no in the portal's dialog
        Failed,    // response 2, a D-Bus error of the portal itself, or no answer in time
        NoPortal,  // no session bus, no portal, or a portal without the interface
    };
    Status status = Status::Failed;
    QVariantMap results; // the response's results (Success)
    QString error;       // the D-Bus error, for NoPortal and Failed
};

// One request. `done` is called exactly once, from the event loop, never from Start.
class PortalRequest : public QObject {
    Q_OBJECT
  public:
    explicit PortalRequest(QDBusConnection bus, QObject* parent = nullptr);
    ~PortalRequest() override;

    // Calls `method` of `interface` on the portal with `arguments` followed by `options`,
    // to which a fresh "handle_token" is added.
    void Start(const QString& interface, const QString& method, const QVariantList& arguments,
               QVariantMap options, std::function<void(const PortalResult&)> done);
    // With no Response within `ms` the request ends as Failed (0, the default: no limit,
    // for requests that show a dialog to the user).
    void SetTimeout(int ms) { timeoutMs_ = ms; }
    bool Running() const { return running_; }

    // The portal's name for a window of ours ("x11:<hex id>" on X11, "" elsewhere).
    static QString ParentWindow(const QWidget* window);

  private slots:
    void onResponse(uint response, const QVariantMap& results);
    void onPortalGone();

  private:
    void subscribe(const QString& path);
    void unsubscribe();
    void finish(const PortalResult& result);

    QDBusConnection bus_;
    QString path_; // the request object whose Response we listen to
    std::function<void(const PortalResult&)> done_;
    QTimer timeout_;
    int timeoutMs_ = 0;
    bool running_ = false;
};

// Runs one request and waits for its end in a local event loop (the windows keep painting,
// as under a modal dialog).
PortalResult RunPortalRequest(QDBusConnection bus, const QString& interface,
                              const QString& method, const QVariantList& arguments,
                              const QVariantMap& options, int timeoutMs);

} // namespace ostrivex
