#include "app/sizing/forientation.h"

#include "app/sizing/sizingwidgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace ostrivex {

fOrientation::fOrientation(int32_t w, int32_t h, QWidget* parent)
    : QDialog(parent), w_(w), h_(h) {
    setObjectName("fOrientation");
    setWindowTitle("Orientation");

    const char* now = w > h ? "landscape" : h > w ? "portrait" : "square";
    lblCurrent = new QLabel(QStringLiteral("The image is %1 x %2 pixels (%3).")
                                .arg(w)
                                .arg(h)
                                .arg(QLatin1String(now)),
                            this);
    cbOrientation = new QComboBox(this);
    cbOrientation->setObjectName("cbOrientation");
    cbOrientation->addItems({"Keep orientation", "Portrait", "Landscape"});
    chkFlip[0] = new QCheckBox("Flip &vertical", this);
    chkFlip[0]->setObjectName("chkFlip0");
    chkFlip[1] = new QCheckBox("Flip &horizontal", this);
    chkFlip[1]->setObjectName("chkFlip1");

    auto* row = new QHBoxLayout;
    auto* lbl = new QLabel("&Orientation:", this);
    lbl->setBuddy(cbOrientation);
    row->addWidget(lbl);
    row->addWidget(cbOrientation, 1);

    QHBoxLayout* buttons = OkCancelRow(this, cmdOK, cmdCancel);

    auto* top = new QVBoxLayout(this);
    top->addWidget(lblCurrent);
    top->addLayout(row);
    top->addWidget(chkFlip[0]);
    top->addWidget(chkFlip[1]);
    top->addSpacing(6);
    top->addLayout(buttons);
    top->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
}

bool fOrientation::Turn() const {
    switch (cbOrientation->currentIndex()) {
    case Portrait:
        return w_ > h_;
    case Landscape:
        return h_ > w_;
    default:
        return false;
    }
}

bool fOrientation::FlipVertical() const { return chkFlip[0]->isChecked(); }
bool fOrientation::FlipHorizontal() const { return chkFlip[1]->isChecked(); }

} // namespace ostrivex
