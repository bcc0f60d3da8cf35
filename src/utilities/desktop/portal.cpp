#include "utilities/desktop/portal.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QGuiApplication>
#include <QWidget>

#include <unistd.h>

namespace ostrivex {

namespace {

// Errors that say there is no portal to talk to, as opposed to a portal that failed.
bool isMissingPortal(const QDBusError& e) {
    switch (e.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::UnknownObject:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownMethod:
    case QDBusError::NoServer:
    case QDBusError::Disconnected:
        return true;
    default:
        break;
    }
    // The bus could not start a portal on demand.
    return e.name().startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn")) ||
           e.name() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
}

// The request path the portal derives from our unique name and the token:
// ":1.42" becomes "1_42".
QString requestPath(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService();
    if (sender.startsWith(':')) sender.remove(0, 1);
    sender.replace('.', '_');
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
}

QString nextToken() {
    static unsigned counter = 0;
    return QStringLiteral("ostrivex_%1_%2").arg(::getpid()).arg(++counter);
}

} // namespace

PortalRequest::PortalRequest(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {
    timeout_.setSingleShot(true);
    connect(&timeout_, &QTimer::timeout, this, [this] {
        PortalResult r;
        r.status = PortalResult::Status::Failed;
        r.error = QStringLiteral("The desktop portal did not answer.");
        finish(r);
    });
}

PortalRequest::~PortalRequest() { unsubscribe(); }

QString PortalRequest::ParentWindow(const QWidget* window) {
    if (!window || QGuiApplication::platformName() != QLatin1String("xcb")) return QString();
    const QWidget* top = window->window();
    if (!top->testAttribute(Qt::WA_WState_Created)) return QString();
    return QStringLiteral("x11:%1").arg(quint64(top->winId()), 0, 16);
}

void PortalRequest::Start(const QString& interface, const QString& method,
                          const QVariantList& arguments, QVariantMap options,
                          std::function<void(const PortalResult&)> done) {
    done_ = std::move(done);
    running_ = true;
    if (!bus_.isConnected()) {
        // Reported from the event loop like every other answer.
        QTimer::singleShot(0, this, [this] {
            PortalResult r;
            r.status = PortalResult::Status::NoPortal;
            r.error = bus_.lastError().message();
            finish(r);
        });
        return;
    }
    const QString token = nextToken();
    options.insert(QStringLiteral("handle_token"), token);
    subscribe(requestPath(bus_, token));

    auto* watcher = new QDBusServiceWatcher(QString::fromLatin1(kPortalService), bus_,
                                            QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, &PortalRequest::onPortalGone);

    QDBusMessage call = QDBusMessage::createMethodCall(QString::fromLatin1(kPortalService),
                                                       QString::fromLatin1(kPortalPath),
                                                       interface, method);
    QVariantList args = arguments;
    args << options;
    call.setArguments(args);
    auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        if (!running_) return;
        const QDBusPendingReply<QDBusObjectPath> reply = *w;
        if (reply.isError()) {
            PortalResult r;
            r.status = isMissingPortal(reply.error()) ? PortalResult::Status::NoPortal
                                                      : PortalResult::Status::Failed;
            r.error = reply.error().message();
            finish(r);
            return;
        }
        // Portals older than the handle token answer on a path of their own choosing.
        const QString path = reply.value().path();
        if (!path.isEmpty() && path != path_) {
            unsubscribe();
            subscribe(path);
        }
        if (timeoutMs_ > 0) timeout_.start(timeoutMs_);
    });
}

void PortalRequest::subscribe(const QString& path) {
    path_ = path;
    bus_.connect(QString::fromLatin1(kPortalService), path_,
                 QString::fromLatin1(kPortalRequestInterface), QStringLiteral("Response"), this,
                 SLOT(onResponse(uint, QVariantMap)));
}

void PortalRequest::unsubscribe() {
    if (path_.isEmpty()) return;
    bus_.disconnect(QString::fromLatin1(kPortalService), path_,
                    QString::fromLatin1(kPortalRequestInterface), QStringLiteral("Response"), this,
                    SLOT(onResponse(uint, QVariantMap)));
    path_.clear();
}

void PortalRequest::onResponse(uint response, const QVariantMap& results) {
    if (!running_) return;
    PortalResult r;
    r.status = response == 0   ? PortalResult::Status::Success
               : response == 1 ? PortalResult::Status::Cancelled
                               : PortalResult::Status::Failed;
    r.results = results;
    finish(r);
}

void PortalRequest::onPortalGone() {
    if (!running_) return;
    PortalResult r;
    r.status = PortalResult::Status::Failed;
    r.error = QStringLiteral("The desktop portal went away.");
    finish(r);
}

void PortalRequest::finish(const PortalResult& result) {
    if (!running_) return;
    running_ = false;
    timeout_.stop();
    unsubscribe();
    auto done = std::move(done_);
    done_ = nullptr;
    if (done) done(result);
}

PortalResult RunPortalRequest(QDBusConnection bus, const QString& interface,
                              const QString& method, const QVariantList& arguments,
                              const QVariantMap& options, int timeoutMs) {
    PortalRequest request(std::move(bus));
    request.SetTimeout(timeoutMs);
    PortalResult result;
    QEventLoop loop;
    request.Start(interface, method, arguments, options, [&](const PortalResult& r) {
        result = r;
        loop.quit();
    });
    if (request.Running()) loop.exec();
    return result;
}

} // namespace ostrivex
