// The message boxes and the file-name dialog that the document code shows. Each is a
// replaceable function, so that tests (and a headless run) can answer them; the defaults
// show the real dialogs.
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace ostrivex {

struct DocumentDialogs {
    // An information box with an OK button.
    static std::function<void(QWidget* parent, const QString& text, const QString& title)>
        Inform;
    // A box with Yes, No and Cancel and the question icon; returns the QMessageBox button
    // pressed (QMessageBox::Yes, No or Cancel).
    static std::function<int(QWidget* parent, const QString& text, const QString& title)>
        AskYesNoCancel;
    // A save dialog; returns the chosen path, or "" when cancelled. filter is in the
    // "label|patterns|label|patterns" form of the program's filter texts.
    static std::function<QString(QWidget* parent, const QString& title, const QString& folder,
                                 const QString& filter, const QString& currentName)>
        AskSaveName;
    // An open dialog for an existing file (the selection files); returns the chosen path,
    // or "" when cancelled. filter as for AskSaveName.
    static std::function<QString(QWidget* parent, const QString& title, const QString& folder,
                                 const QString& filter)>
        AskOpenName;
};

// "label|patterns|..." to Qt's "label (patterns);;..." form.
QString QtFilterFromPairs(const QString& pairs);

} // namespace ostrivex
