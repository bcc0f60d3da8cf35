#include "app/panels/slidertrio.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalBlocker>

#include <cmath>

namespace ostrivex {

cpvSlider::cpvSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    setFocusPolicy(Qt::StrongFocus);
}

QSize cpvSlider::sizeHint() const {
    return {96, QSlider::sizeHint().height()};
}

int TextNumber(const QString& text) {
    int i = 0;
    const int n = int(text.size());
    while (i < n && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    bool negative = false;
    if (i < n && (text[i] == '-' || text[i] == '+')) {
        negative = text[i] == '-';
        ++i;
    }
    double value = 0;
    while (i < n && text[i].isDigit() && text[i].unicode() < 128) {
        value = value * 10 + (text[i].unicode() - '0');
        if (value > 100000) value = 100000;
        ++i;
    }
    if (i < n && text[i] == '.') {
        ++i;
        double scale = 0.1;
        while (i < n && text[i].isDigit() && text[i].unicode() < 128) {
            value += (text[i].unicode() - '0') * scale;
            scale /= 10;
            ++i;
        }
    }
    // Ties to even, as every float-to-integer conversion of the program.
    const double rounded = std::nearbyint(value);
    return int(negative ? -rounded : rounded);
}

SliderTrio::SliderTrio(const QString& name, const QString& caption,
                       std::int16_t SettingsRecord::*field, QWidget* parent)
    : QWidget(parent), field_(field) {
    setObjectName(name + "Group");
    label_ = new QLabel(caption, this);
    label_->setObjectName(name + "Label");

    slider_ = new cpvSlider(this);
    slider_->setObjectName(name);
    slider_->setRange(Minimum, Maximum);
    slider_->setPageStep(LargeStep);
    // In a narrow window the sliders give way before the captions do.
    slider_->setMinimumWidth(40);
    slider_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    label_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    slider_->setToolTip(caption);

    // A short vertical bar works as an up-down control; its up arrow raises the value.
    upDown_ = new QScrollBar(Qt::Vertical, this);
    upDown_->setObjectName(name + "UD");
    upDown_->setRange(Minimum, Maximum);
    upDown_->setSingleStep(1);
    upDown_->setPageStep(LargeStep);
    upDown_->setInvertedAppearance(true);
    upDown_->setInvertedControls(false);
    upDown_->setFixedSize(16, 24);

    text_ = new QLineEdit(this);
    text_->setObjectName(name + "UDT");
    text_->setFixedWidth(36);
    text_->setMaxLength(5);
    text_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    label_->setBuddy(slider_);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(3);
    row->addWidget(label_);
    row->addWidget(slider_);
    row->addWidget(text_);
    row->addWidget(upDown_);

    connect(slider_, &QSlider::valueChanged, this, &SliderTrio::sliderChanged);
    connect(upDown_, &QScrollBar::valueChanged, this, &SliderTrio::upDownChanged);
    connect(text_, &QLineEdit::textChanged, this, &SliderTrio::textChanged);
}

void SliderTrio::ShowValue(int value) {
    const QSignalBlocker a(slider_), b(upDown_), c(text_);
    slider_->setValue(value);
    upDown_->setValue(value);
    text_->setText(QString::number(value));
}

void SliderTrio::sliderChanged(int value) {
    Settings.*field_ = std::int16_t(value);
    const QSignalBlocker b(upDown_), c(text_);
    upDown_->setValue(value);
    text_->setText(QString::number(value));
}

void SliderTrio::upDownChanged(int value) {
    const QSignalBlocker a(slider_), c(text_);
    text_->setText(QString::number(value));
    slider_->setValue(value);
    Settings.*field_ = std::int16_t(value);
}

void SliderTrio::textChanged(const QString& text) {
    int value = TextNumber(text);
    if (value > Maximum) {
        const QSignalBlocker c(text_);
        text_->setText(QString::number(Maximum));
        value = Maximum;
    }
    if (value < Minimum) value = Minimum;
    const QSignalBlocker a(slider_), b(upDown_);
    slider_->setValue(value);
    upDown_->setValue(value);
    Settings.*field_ = std::int16_t(value);
}

} // namespace ostrivex
