// Ostrivex: the program. `ostrivex [FILE...]` opens the files as documents, or hands them
// to a copy that is already running (see commandline.h).
#include "app/commandline.h"
#include "app/shell/splash.h"
#include "app/startup.h"
#include "pixel/allocator.h"

#include <QApplication>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
    // --help and --version answer without a display.
    for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
        const bool help = !std::strcmp(argv[i], "--help") || !std::strcmp(argv[i], "-h");
        if (help || !std::strcmp(argv[i], "--version") || !std::strcmp(argv[i], "-v")) {
            std::fputs((help ? ostrivex::CommandLineHelp() : ostrivex::VersionText()).c_str(), stdout);
            return 0;
        }
    }
    // Before the first image: large pixel buffers stay in the heap for reuse.
    ostrivex::TuneAllocatorForImages();
    QApplication app(argc, argv);
    app.setApplicationName("Ostrivex");
    const ostrivex::CommandLine command = ostrivex::ParseCommandLine(app.arguments().mid(1));
    if (command.action == ostrivex::CommandLine::Action::Error) {
        std::fprintf(stderr, "%s\n", command.error.c_str());
        return 2;
    }
    // The copy that holds the instance lock takes files from later copies; a later copy
    // with files gives them to it and is done.
    if (ostrivex::AcquireInstanceLock())
        ostrivex::ListenForFiles(&app);
    else if (!command.files.isEmpty() && ostrivex::HandFilesToRunningCopy(command.files))
        return 0;
    ostrivex::OpenFiles(command.files); // kept until the main window is up

    // The splash goes before the main window comes; the main window's unload ends the run.
    app.setQuitOnLastWindowClosed(false);
    ostrivex::InstallShutdownSignals();

    auto* splash = new ostrivex::fSplash();
    QObject::connect(
        splash, &ostrivex::fSplash::finished, splash,
        [splash] {
            ostrivex::StartUp(splash);
            ostrivex::OpenPendingFiles();
        },
        Qt::QueuedConnection);
    splash->show();
    return app.exec();
}
