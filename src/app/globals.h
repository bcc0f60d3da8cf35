// Application-wide state of the command dispatch.
#pragma once

#include <QString>

namespace ostrivex {

class fImage;
class fMain;

// The active document window; kept by GetActiveDocument and keeps its old value when no
// document is active.
extern fImage* ActiveDocument;
// The caption of the last menu entry that fed MenuExec or a layer effect (with "Replace ",
// "Swap " or " Blur" added for their families); the history text of a command reads it.
extern QString LastCommandCaption;
// Set by Update after every change of a document's pixels.
extern bool DocumentChanged;
// The main window of the process (nullptr before start-up and after it is gone).
extern fMain* MainWindow;

// The test used everywhere: true if the main window's active child is a document window,
// and then `ref` is set to it; otherwise false and `ref` keeps its old value.
bool GetActiveDocument(fImage*& ref);

} // namespace ostrivex
