// A private D-Bus session bus for one test program, and a fake desktop portal on it.
//
// The bus is a dbus-daemon of its own with no service folders, so nothing on the machine
// (a real portal among them) can be started on it: a name is there only when a test puts
// it there. The fake portal answers on its own connection, as another process would:
// every call is recorded, answered with its request path, and followed by the request's
// Response signal as the test set it up.
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QTimer>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

namespace ostrivex::test {

// Started once for the whole program, before the first use of the session bus.
class PrivateSessionBus : public ::testing::Environment {
  public:
    void SetUp() override {
        ASSERT_TRUE(dir_.isValid());
        const QString config = dir_.filePath("session.conf");
        QFile f(config);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QStringLiteral(
                    "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration "
                    "1.0//EN\" \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                    "<busconfig><type>session</type><listen>unix:dir=%1</listen>"
                    "<auth>EXTERNAL</auth><policy context=\"default\">"
                    "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                    "<allow own=\"*\"/></policy></busconfig>\n")
                    .arg(dir_.path())
                    .toUtf8());
        f.close();
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--config-file=") + config, QStringLiteral("--nofork"),
                       QStringLiteral("--print-address=1")});
        ASSERT_TRUE(daemon_.waitForStarted(5000)) << "dbus-daemon is not installed";
        QByteArray address;
        while (!address.contains('\n') && daemon_.waitForReadyRead(5000))
            address += daemon_.readAllStandardOutput();
        address = address.trimmed();
        ASSERT_FALSE(address.isEmpty()) << "dbus-daemon printed no address";
        setenv("DBUS_SESSION_BUS_ADDRESS", address.constData(), 1);
    }
    void TearDown() override {
        daemon_.kill();
        daemon_.waitForFinished(5000);
    }

  private:
    QTemporaryDir dir_;
    QProcess daemon_;
};

// One call the portal received.
struct PortalCall {
    QString interface, member;
    QVariantList arguments; // the plain arguments, without the options
    QVariantMap options;
    QString handle; // the request path it answered with
};

class FakePortal : public QDBusVirtualObject {
  public:
    // Takes the portal's name on the bus (a connection of its own).
    FakePortal()
        : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("fake-portal"))) {
        EXPECT_TRUE(bus_.isConnected());
        EXPECT_TRUE(bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this));
        EXPECT_TRUE(bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }
    ~FakePortal() override {
        bus_.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        bus_.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"));
        QDBusConnection::disconnectFromBus(QStringLiteral("fake-portal"));
    }

    // The answer to the next requests: the response code and its results; `answer` false
    // leaves the request without a response; `early` sends the response before the reply.
    uint response = 0;
    QVariantMap results;
    bool answer = true;
    bool early = false;
    // Called as each request arrives (before it is answered).
    std::function<void(const PortalCall&)> onCall;
    std::vector<PortalCall> calls;

    bool handleMessage(const QDBusMessage& m, const QDBusConnection& connection) override {
        if (m.type() != QDBusMessage::MethodCallMessage) return false;
        PortalCall call;
        call.interface = m.interface();
        call.member = m.member();
        call.arguments = m.arguments();
        if (!call.arguments.isEmpty()) {
            call.options = qdbus_cast<QVariantMap>(call.arguments.takeLast());
        }
        // The request path the portal documents: sender without ':' and with '_' for '.'.
        QString sender = m.service().mid(1);
        sender.replace('.', '_');
        call.handle = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                          .arg(sender, call.options.value("handle_token").toString());
        calls.push_back(call);
        if (onCall) onCall(call);
        QDBusConnection bus = connection;
        const auto respond = [bus, handle = call.handle, code = response, res = results] {
            QDBusMessage signal = QDBusMessage::createSignal(
                handle, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
            signal << code << res;
            bus.send(signal);
        };
        if (answer && early) respond();
        bus.send(m.createReply(QVariant::fromValue(QDBusObjectPath(call.handle))));
        if (answer && !early) QTimer::singleShot(10, respond);
        return true;
    }
    QString introspect(const QString&) const override { return QString(); }

  private:
    QDBusConnection bus_;
};

} // namespace ostrivex::test
