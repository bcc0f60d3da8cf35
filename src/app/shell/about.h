// "About Ostrivex Basic".
#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace ostrivex {

class fAbout : public QDialog {
    Q_OBJECT
  public:
    explicit fAbout(QWidget* parent = nullptr);

    QLabel* lblTitle = nullptr;
    QLabel* lblVersion = nullptr;
    QLabel* lblText = nullptr;
    QPushButton* cmdOK = nullptr;

    // The version shown: the application's version when one is set, else the built one.
    static QString versionText();
};

} // namespace ostrivex
