// Shared by the filter dialog tests: a QApplication for the offscreen platform, and a way
// to answer the modal windows (message boxes, file dialogs) that a dialog opens.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>

namespace ostrivex::testing {

// Every modal window that opens while the answerer is alive is handed to `handle`, which must
// close it. One that is still open five seconds after it was handled is a failure and is
// closed, so that a test fails instead of waiting for ever.
class ModalAnswerer {
  public:
    explicit ModalAnswerer(std::function<void(QWidget*)> handle) : handle_(std::move(handle)) {
        timer_.setInterval(10);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            QWidget* w = QApplication::activeModalWidget();
            if (!w || !w->isVisible()) return;
            if (!w->property("answered").toBool()) {
                w->setProperty("answered", true);
                handled_ = w;
                since_.start();
                handle_(w);
            } else if (w == handled_ && since_.elapsed() > 5000) {
                ADD_FAILURE() << "a modal window stayed open after it was answered: "
                              << w->windowTitle().toStdString();
                handled_ = nullptr;
                w->close();
            }
        });
        timer_.start();
    }

  private:
    std::function<void(QWidget*)> handle_;
    QTimer timer_;
    QPointer<QWidget> handled_;
    QElapsedTimer since_;
};

// Puts `path` into a file dialog and accepts it. The name is written into the dialog's name
// box directly: QFileDialog::selectFile leaves that box alone while it has the keyboard focus,
// which it gets at some moment after the dialog shows, so selectFile alone would leave some
// runs with an empty name and a dialog that does not close.
inline void acceptFile(QFileDialog* fd, const QString& path) {
    fd->setDirectory(QFileInfo(path).absolutePath());
    if (auto* name = fd->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
        name->setText(QFileInfo(path).fileName());
    else
        fd->selectFile(path);
    static_cast<QDialog*>(fd)->accept(); // QFileDialog::accept is protected
}

// Whether `w` holds a label of exactly `text`.
inline bool hasLabel(QWidget* w, const QString& text) {
    for (QLabel* l : w->findChildren<QLabel*>())
        if (l->text() == text) return true;
    return false;
}

} // namespace ostrivex::testing

#define OSTRIVEX_DIALOG_TEST_MAIN                                                                  \
    int main(int argc, char** argv) {                                                              \
        qputenv("QT_QPA_PLATFORM", "offscreen");                                                   \
        QApplication app(argc, argv);                                                              \
        ::testing::InitGoogleTest(&argc, argv);                                                    \
        return RUN_ALL_TESTS();                                                                    \
    }
