#include "app/colour/ftoolcolor.h"

#include "app/colour/bcolortool.h"
#include "app/colour/fgradient.h"
#include "app/colour/pickcolour.h"
#include "app/panels/slidertrio.h"
#include "app/settings/settings.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

namespace ostrivex {

fToolColor::fToolColor(QWidget* parent) : QWidget(parent) {
    setObjectName("fToolColor");

    // The two wells overlap on a 46 x 46 square.
    auto* wells = new QWidget(this);
    wells->setFixedSize(46, 46);
    secondary_ = new bColorTool(wells);
    secondary_->setObjectName("bSecondary");
    secondary_->setToolTip("Second color");
    secondary_->setGeometry(16, 16, 30, 30);
    primary_ = new bColorTool(wells);
    primary_->setObjectName("bPrimary");
    primary_->setToolTip("Foreground color");
    primary_->setGeometry(0, 0, 30, 30);
    primary_->raise();

    swap_ = new QToolButton(this);
    swap_->setObjectName("cmdSwap");
    swap_->setText(QString::fromUtf8("\u21c4"));
    swap_->setToolTip("Swap colors");
    swap_->setAutoRaise(true);
    swap_->setFixedSize(22, 20);

    auto* left = new QVBoxLayout;
    left->setSpacing(2);
    left->addWidget(wells);
    left->addWidget(swap_, 0, Qt::AlignLeft);
    left->addStretch(1);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(1);
    const char* names[3] = {"sRed", "sGreen", "sBlue"};
    const char* captions[3] = {"R", "G", "B"};
    for (int i = 0; i < 3; ++i) {
        auto* label = new QLabel(captions[i], this);
        sliders_[i] = new cpvSlider(this);
        sliders_[i]->setObjectName(names[i]);
        sliders_[i]->setRange(0, 255);
        sliders_[i]->setPageStep(16);
        values_[i] = new QLabel(this);
        values_[i]->setObjectName(QString(names[i]) + "Value");
        values_[i]->setFixedWidth(24);
        values_[i]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(label, i, 0);
        grid->addWidget(sliders_[i], i, 1);
        grid->addWidget(values_[i], i, 2);
        connect(sliders_[i], &QSlider::valueChanged, this, &fToolColor::sliderMoved);
    }

    sample_ = new QLabel(this);
    sample_->setObjectName("picSample");
    sample_->setAutoFillBackground(true);
    sample_->setFrameShape(QFrame::Box);
    sample_->setAlignment(Qt::AlignCenter);
    sample_->setFixedHeight(22);

    auto* top = new QHBoxLayout;
    top->setSpacing(6);
    top->addLayout(left);
    top->addLayout(grid, 1);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(6, 6, 6, 6);
    all->setSpacing(6);
    all->addLayout(top);
    all->addWidget(sample_);
    all->addStretch(1);

    // A click on a well opens the colour dialog for that colour.
    connect(primary_, &bColorTool::colourChosen, this, [this](int32_t c) {
        Settings.ColorPrimary = c;
        ShowColours();
    });
    connect(secondary_, &bColorTool::colourChosen, this, [this](int32_t c) {
        Settings.ColorSecondary = c;
        ShowColours();
    });
    connect(swap_, &QToolButton::clicked, this, &fToolColor::Swap);
    ShowColours();
}

void fToolColor::ShowColours() {
    const int32_t c = Settings.ColorPrimary;
    primary_->setColour(c);
    secondary_->setColour(Settings.ColorSecondary);
    for (int i = 0; i < 3; ++i) {
        const QSignalBlocker block(sliders_[i]);
        const int v = (c >> (8 * i)) & 0xFF;
        sliders_[i]->setValue(v);
        values_[i]->setText(QString::number(v));
    }
    showSample(c);
}

void fToolColor::ShowPicked(int32_t colour) {
    Settings.ColorPrimary = colour & 0xFFFFFF;
    ShowColours();
}

void fToolColor::Swap() {
    std::swap(Settings.ColorPrimary, Settings.ColorSecondary);
    ShowColours();
}

void fToolColor::sliderMoved() {
    int32_t c = 0;
    for (int i = 0; i < 3; ++i) {
        c |= int32_t(sliders_[i]->value()) << (8 * i);
        values_[i]->setText(QString::number(sliders_[i]->value()));
    }
    Settings.ColorPrimary = c;
    primary_->setColour(c);
    showSample(c);
}

void fToolColor::showSample(int32_t colour) {
    QPalette pal = sample_->palette();
    const QColor q = QColor::fromRgb(BgrToQRgb(colour));
    pal.setColor(QPalette::Window, q);
    // Dark text on light colours, light text on dark ones.
    pal.setColor(QPalette::WindowText, q.lightness() > 128 ? Qt::black : Qt::white);
    sample_->setPalette(pal);
    sample_->setText(ColourHex(colour));
}

} // namespace ostrivex
