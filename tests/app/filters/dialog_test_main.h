// Shared by the filter dialog tests: a QApplication for the offscreen platform, and a way
// to answer the modal windows (message boxes, file dialogs) that a dialog opens.
#pragma once

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>

namespace ostrivex::testing {

// Every modal window that opens while the answerer is alive is handed to `handle`, which must
// close it.
class ModalAnswerer {
  public:
    explicit ModalAnswerer(std::function<void(QWidget*)> handle) : handle_(std::move(handle)) {
        timer_.setInterval(10);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            QWidget* w = QApplication::activeModalWidget();
            if (w && w->isVisible() && !w->property("answered").toBool()) {
                w->setProperty("answered", true);
                handle_(w);
            }
        });
        timer_.start();
    }

  private:
    std::function<void(QWidget*)> handle_;
    QTimer timer_;
};

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
