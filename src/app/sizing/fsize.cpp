#include "app/sizing/fsize.h"

#include "app/sizing/sizefields.h"
#include "app/sizing/sizingwidgets.h"
#include "pixel/vbmath.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace ostrivex {

fSize::fSize(int32_t w, int32_t h, QWidget* parent) : QDialog(parent), w_(w), h_(h) {
    setObjectName("fSize");
    setWindowTitle("Image size");

    lblCurrent = new QLabel(QStringLiteral("Current size: %1 x %2 pixels").arg(w).arg(h), this);
    txtW = SizeField(this, "txtW", w);
    txtH = SizeField(this, "txtH", h);
    chkKeepProportions = new QCheckBox("&Keep Proportions", this);
    chkKeepProportions->setObjectName("chkKeepProportions");
    chkKeepProportions->setChecked(true);
    chkInterpolate = new QCheckBox("&Anti-Alias", this);
    chkInterpolate->setObjectName("chkInterpolate");
    chkInterpolate->setChecked(true);
    cbPreDef = new QComboBox(this);
    cbPreDef->setObjectName("cbPreDef");
    for (int32_t p : QuickPercents)
        cbPreDef->addItem(QStringLiteral("%1 %").arg(p));
    cbPreDef->setPlaceholderText("Percent");
    cbPreDef->setCurrentIndex(-1);

    QGridLayout* fields = SizeFieldRows(this, txtW, txtH);
    auto* lblQuick = new QLabel("&Quick:", this);
    lblQuick->setBuddy(cbPreDef);
    fields->addWidget(lblQuick, 2, 0);
    fields->addWidget(cbPreDef, 2, 1, 1, 2);
    fields->setColumnStretch(3, 1);

    QHBoxLayout* buttons = OkCancelRow(this, cmdOK, cmdCancel);

    auto* top = new QVBoxLayout(this);
    top->addWidget(lblCurrent);
    top->addLayout(fields);
    top->addWidget(chkKeepProportions);
    top->addWidget(chkInterpolate);
    top->addSpacing(6);
    top->addLayout(buttons);
    top->setSizeConstraint(QLayout::SetFixedSize);

    connect(txtW, &QLineEdit::textChanged, this, [this] { widthChanged(); });
    connect(txtH, &QLineEdit::textChanged, this, [this] { heightChanged(); });
    connect(cbPreDef, &QComboBox::activated, this, [this](int i) { cbPreDef_Click(i); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
}

bool fSize::Interpolate() const { return chkInterpolate->isChecked(); }

// With "Keep Proportions" on, a change of one field sets the other in the ratio of the
// image: height = Round(width * H / W), and the other way round. An empty field leaves the
// other as it is.
void fSize::widthChanged() {
    if (following_ || !chkKeepProportions->isChecked() || w_ < 1) return;
    bool ok = false;
    const qlonglong v = txtW->text().toLongLong(&ok);
    if (!ok) return;
    following_ = true;
    txtH->setText(QString::number(vbRound(double(v) * h_ / w_)));
    following_ = false;
}

void fSize::heightChanged() {
    if (following_ || !chkKeepProportions->isChecked() || h_ < 1) return;
    bool ok = false;
    const qlonglong v = txtH->text().toLongLong(&ok);
    if (!ok) return;
    following_ = true;
    txtW->setText(QString::number(vbRound(double(v) * w_ / h_)));
    following_ = false;
}

// An entry sets both fields to its percentage of the current size, each rounded on its own;
// "Keep Proportions" is off while they are filled, so neither recomputes the other.
void fSize::cbPreDef_Click(int index) {
    if (index < 0 || index >= int(QuickPercents.size())) return;
    const int32_t p = QuickPercents[size_t(index)];
    const bool keep = chkKeepProportions->isChecked();
    chkKeepProportions->setChecked(false);
    txtW->setText(QString::number(vbRound(double(w_) * p / 100)));
    txtH->setText(QString::number(vbRound(double(h_) * p / 100)));
    chkKeepProportions->setChecked(keep);
}

void fSize::cmdOK_Click() {
    if (CheckSizeFields(this, txtW->text(), txtH->text(), newW_, newH_)) accept();
}

} // namespace ostrivex
