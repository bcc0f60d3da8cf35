// Test main of the utilities tests: the offscreen platform unless told otherwise, one
// QApplication, and a private session bus for the whole program (started only when the
// tests run, not when they are listed).
#include "session_bus.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    // The portal is reached only through the private bus: the platform's own session must
    // not answer, whatever desktop the tests run on.
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new ostrivex::test::PrivateSessionBus);
    return RUN_ALL_TESTS();
}
