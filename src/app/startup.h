// The life of the process: start-up from the splash window's timer, the instance check,
// and the shutdown that SIGTERM and SIGINT trigger as a close of the main window would.
#pragma once

#include <QString>

class QWidget;

namespace ostrivex {

class fMain;

inline constexpr const char* kAlreadyRunningText = "Ostrivex is already running!";

// The start-up routine, run once from the splash window's timer (the splash is unloaded at
// its end when given). Reads the settings, loads the main window and its boxes, warns when
// another instance runs (and recreates the main window, so the warning is all it does),
// sizes the main window, fills the recent list, creates cFilter, initialises the tool
// panels, places the boxes and shows the main window. Returns the main window.
fMain* StartUp(QWidget* splash = nullptr);

// The single-instance lock: a lock file in the private temporary folder, held for the
// life of the process. True if this process holds it (no other instance was running).
bool AcquireInstanceLock();
// Releases the lock (tests start several "instances" in one process).
void ReleaseInstanceLock();
// The lock file's path.
QString InstanceLockPath();

// Makes SIGTERM and SIGINT close the main window through its unload sequence and end the
// event loop with exit code 0 (a self-pipe written by the handler, read by a socket
// notifier on the event loop). Call once, after the application object exists.
void InstallShutdownSignals();

} // namespace ostrivex
