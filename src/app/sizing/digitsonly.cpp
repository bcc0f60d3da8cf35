#include "app/sizing/digitsonly.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QObject>

namespace ostrivex {

namespace {

class DigitsOnlyFilter : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress &&
            !DigitsOnlyAccepts(*static_cast<QKeyEvent*>(event)))
            return true; // swallowed: the field never sees it
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

bool DigitsOnlyAccepts(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Paste)) return false;
    switch (event.key()) {
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return true;
    default:
        break;
    }
    const QString text = event.text();
    // Cursor keys, Home, End and lone modifiers type nothing.
    if (text.isEmpty()) return true;
    for (QChar c : text)
        if (c < QLatin1Char('0') || c > QLatin1Char('9')) return false;
    return true;
}

void AcceptDigitsOnly(QLineEdit* edit) {
    edit->installEventFilter(new DigitsOnlyFilter(edit));
    // A paste from the context menu or a drop would bring in other characters.
    edit->setContextMenuPolicy(Qt::NoContextMenu);
    edit->setAcceptDrops(false);
}

} // namespace ostrivex
