// The text dialogs from the main window: the text tool bar's buttons 1 to 3 and the
// "New layer" entries "Style Text", "3D Text" and "Shadow Text".
//
// The dialogs hand their finished picture to a layer sink. Until the document has layers,
// the sink installed here makes a new document of the picture (captioned from the
// document counter, named "New.bmp", first undo state "Original"), so the text is never
// lost; the layer work replaces this sink with one that adds or updates a layer.
#pragma once

class QWidget;

namespace ostrivex {

enum class TextDialogKind { StyleText, Text3D, Logo };

// Installs the colour chooser of the text dialogs and the interim sink. Once, at start.
void InstallTextDialogs();
// Opens the dialog of `kind` (modal) for a new text.
void OpenTextDialog(QWidget* parent, TextDialogKind kind);

} // namespace ostrivex
