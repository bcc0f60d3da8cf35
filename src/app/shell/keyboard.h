// "Keyboard Shortcuts": a fixed list of keys.
#pragma once

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

namespace ostrivex {

// The list is a fixed text and is not made from the menus. It differs from the true keys
// in places (it lists Redo as Ctrl + R and Select all as Ctrl + ins); the menus are what
// counts, and the text stays as it is.
class fKeyboard : public QDialog {
    Q_OBJECT
  public:
    explicit fKeyboard(QWidget* parent = nullptr);

    static const char* const kText;

    QPlainTextEdit* txtKeys = nullptr;
    QPushButton* cmdOK = nullptr;
};

} // namespace ostrivex
