// Answering message boxes and dialogs in GUI tests, without a user.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include <memory>

namespace ostrivex::test {

// What a message box showed, and whether one was seen at all.
struct SeenBox {
    bool seen = false;
    QString title, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QPointer<QTimer> watcher;
    // Stops watching (for a case where no box must appear).
    void stop() {
        if (watcher) {
            watcher->stop();
            watcher->deleteLater();
        }
    }
};

// Watches the top-level widgets until a QMessageBox appears, records it and clicks
// `answer`. Call before the code that opens the box; the box's own event loop runs the
// watcher. The watcher gives up after about two seconds.
inline std::shared_ptr<SeenBox> answerNextMessageBox(QMessageBox::StandardButton answer) {
    auto seen = std::make_shared<SeenBox>();
    auto* timer = new QTimer(qApp);
    auto tries = std::make_shared<int>(0);
    timer->setInterval(10);
    seen->watcher = timer;
    QObject::connect(timer, &QTimer::timeout, timer, [=] {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(w);
            if (!box || !box->isVisible()) continue;
            seen->seen = true;
            seen->title = box->windowTitle();
            seen->text = box->text();
            seen->icon = box->icon();
            seen->buttons = box->standardButtons();
            if (QAbstractButton* b = box->button(answer))
                b->click();
            else
                box->reject();
            timer->stop();
            timer->deleteLater();
            return;
        }
        if (++*tries > 200) {
            timer->stop();
            timer->deleteLater();
        }
    });
    timer->start();
    return seen;
}

} // namespace ostrivex::test
