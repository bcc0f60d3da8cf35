#include "app/sizing/frotate.h"

#include "app/sizing/sizingwidgets.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace ostrivex {

fRotate::fRotate(QWidget* parent) : QDialog(parent) {
    setObjectName("fRotate");
    setWindowTitle("Rotate");

    txtDegrees = DigitsField(this, "txtDegrees", 0, 3, 56);
    sbDegrees = new QScrollBar(Qt::Horizontal, this);
    sbDegrees->setObjectName("sbDegrees");
    sbDegrees->setRange(0, 359);
    sbDegrees->setPageStep(15);
    sbDegrees->setMinimumWidth(200);
    cmd45[0] = new QPushButton("-45", this);
    cmd45[0]->setObjectName("cmd45_0");
    cmd45[1] = new QPushButton("+45", this);
    cmd45[1]->setObjectName("cmd45_1");
    for (QPushButton* b : cmd45)
        b->setFixedWidth(48);
    chkAntialiasing = new QCheckBox("&Anti-Aliasing", this);
    chkAntialiasing->setObjectName("chkAntialiasing");
    chkAntialiasing->setChecked(true);
    lblNote = new QLabel(kNoteText, this);
    lblNote->setObjectName("lblNote");

    auto* angle = new QHBoxLayout;
    auto* lbl = new QLabel("&Degrees:", this);
    lbl->setBuddy(txtDegrees);
    angle->addWidget(lbl);
    angle->addWidget(txtDegrees);
    angle->addWidget(cmd45[0]);
    angle->addWidget(cmd45[1]);
    angle->addStretch(1);

    QHBoxLayout* buttons = OkCancelRow(this, cmdOK, cmdCancel);

    auto* top = new QVBoxLayout(this);
    top->addLayout(angle);
    top->addWidget(sbDegrees);
    top->addWidget(chkAntialiasing);
    top->addWidget(lblNote);
    top->addSpacing(6);
    top->addLayout(buttons);
    top->setSizeConstraint(QLayout::SetFixedSize);

    // The field and the bar follow each other. A typed value above 359 goes round.
    connect(txtDegrees, &QLineEdit::textChanged, this, [this](const QString& t) {
        if (following_) return;
        bool ok = false;
        const int v = t.toInt(&ok);
        if (!ok) return;
        following_ = true;
        sbDegrees->setValue(v % 360);
        following_ = false;
    });
    connect(sbDegrees, &QScrollBar::valueChanged, this, [this](int v) {
        if (following_) return;
        following_ = true;
        txtDegrees->setText(QString::number(v));
        following_ = false;
    });
    connect(cmd45[0], &QPushButton::clicked, this, [this] { cmd45_Click(0); });
    connect(cmd45[1], &QPushButton::clicked, this, [this] { cmd45_Click(1); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
}

int32_t fRotate::Degrees() const { return sbDegrees->value(); }
bool fRotate::Antialias() const { return chkAntialiasing->isChecked(); }

void fRotate::cmd45_Click(int index) {
    const int step = index == 0 ? -45 : 45;
    sbDegrees->setValue(((sbDegrees->value() + step) % 360 + 360) % 360);
}

} // namespace ostrivex
