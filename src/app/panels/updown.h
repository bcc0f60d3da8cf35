// A classic up-down control, as the dialogs with number boxes use it: a short vertical
// scroll bar whose upper arrow counts up, one step a click.
#pragma once

#include <QScrollBar>

namespace ostrivex {

inline QScrollBar* MakeUpDown(QWidget* parent, int minimum, int maximum) {
    auto* s = new QScrollBar(Qt::Vertical, parent);
    s->setRange(minimum, maximum);
    s->setSingleStep(1);
    s->setPageStep(1);
    s->setInvertedAppearance(true);
    s->setInvertedControls(true);
    s->setFixedHeight(24);
    return s;
}

} // namespace ostrivex
