// Ostrivex: the program. It reads no command-line arguments: a document comes only from
// the menus, the recent list, the clipboard, the Browser Box or a capture.
#include "app/shell/splash.h"
#include "app/startup.h"
#include "pixel/allocator.h"

#include <QApplication>

int main(int argc, char** argv) {
    // Before the first image: large pixel buffers stay in the heap for reuse.
    ostrivex::TuneAllocatorForImages();
    QApplication app(argc, argv);
    app.setApplicationName("Ostrivex");
    // The splash goes before the main window comes; the main window's unload ends the run.
    app.setQuitOnLastWindowClosed(false);
    ostrivex::InstallShutdownSignals();

    auto* splash = new ostrivex::fSplash();
    QObject::connect(
        splash, &ostrivex::fSplash::finished, splash, [splash] { ostrivex::StartUp(splash); },
        Qt::QueuedConnection);
    splash->show();
    return app.exec();
}
