#include "app/startup.h"

#include "app/fmain.h"
#include "app/globals.h"
#include "app/settings/settings.h"
#include "app/toolpanels.h"
#include "imagefile/imagefile.h"

#include <QApplication>
#include <QLockFile>
#include <QMessageBox>
#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace ostrivex {

namespace {

std::unique_ptr<QLockFile> instanceLock;

int signalPipe[2] = {-1, -1};

void onSignal(int) {
    const char c = 1;
    // Only async-signal-safe work here: the event loop does the rest.
    [[maybe_unused]] ssize_t n = ::write(signalPipe[1], &c, 1);
}

} // namespace

QString InstanceLockPath() {
    return QString::fromLocal8Bit(TempFolder().c_str()) + "/ostrivex.lock";
}

bool AcquireInstanceLock() {
    if (instanceLock && instanceLock->isLocked()) return true;
    instanceLock = std::make_unique<QLockFile>(InstanceLockPath());
    // A lock left by a process that died is taken over at once.
    instanceLock->setStaleLockTime(0);
    return instanceLock->tryLock(0);
}

void ReleaseInstanceLock() {
    instanceLock.reset();
}

fMain* StartUp(QWidget* splash) {
    // 2.
    LoadSettings();
    // 3 and 4: the main window, hidden, and its seven boxes.
    auto* main = new fMain();
    // 5. Another instance: a warning, and the main window is made anew.
    if (!AcquireInstanceLock()) {
        QMessageBox::information(nullptr, "Ostrivex", kAlreadyRunningText);
        delete main;
        main = new fMain();
    }
    // 6. Left and top are not stored: the window keeps its own. The stored size is also
    // given to a window that opens maximised, so that it comes back to that size when the
    // user restores it.
    main->resize(TwipsToPixels(Settings.MainWidth), TwipsToPixels(Settings.MainHeight));
    if (IsTrue(Settings.MainMaximized)) main->setWindowState(Qt::WindowMaximized);
    // 7. The open dialogs take their start folder from `OpenFolder` (blanks cut) each time
    // they open, so there is nothing to hand them here.
    // 8.
    main->FillRecent();
    main->CreateFilter();
    SelectionMove_Init(*main);
    Select_Init(*main);
    Airbrush_Init(*main);
    Brush_Init(*main);
    Fill_Init(*main);
    Shape_Init(*main);
    Gradient_init(*main);
    Stamp_Init(*main);
    // 9.
    if (!IsTrue(Settings.MainMaximized)) main->setWindowState(Qt::WindowNoState);
    // 10. Color, Textures, History, Panoramic, Browser, Optimize, Layer.
    for (int b : {fMain::BoxColor, fMain::BoxTextures, fMain::BoxHistory, fMain::BoxPanoramic,
                  fMain::BoxBrowser, fMain::BoxOptimize, fMain::BoxLayer})
        main->PlaceBox(b);
    // 11.
    main->show();
    if (splash) {
        splash->hide();
        splash->deleteLater();
    }
    return main;
}

void InstallShutdownSignals() {
    if (signalPipe[0] >= 0) return;
    if (::pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
    auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [] {
        char buffer[16];
        while (::read(signalPipe[0], buffer, sizeof buffer) > 0) {
        }
        if (MainWindow)
            MainWindow->close(); // the unload sequence, then the loop ends
        else
            QApplication::exit(0);
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}

} // namespace ostrivex
