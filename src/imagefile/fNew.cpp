// fNew: the New Document dialog.
#include "imagefile/fNew.h"
#include "imagefile/imagefile.h"
#include "pixel/vbmath.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivex {

namespace {

std::vector<std::string>& sizeList() {
    // Lives for the run only: sizes typed by hand are offered again until the program ends.
    static std::vector<std::string> sizes = {"240 x 320", "320 x 240", "480 x 640",  "640 x 480",
                                             "600 x 800", "800 x 600", "768 x 1024", "1024 x 768"};
    return sizes;
}

std::string sizeText(int w, int h) {
    return std::to_string(w) + " x " + std::to_string(h);
}

// The largest side a document may have (sizes are 16-bit numbers).
constexpr int kMaxSide = 32767;

} // namespace

const std::vector<std::string>& fNew::StandardSizes() {
    return sizeList();
}

fNew::fNew(QWidget* parent) : QDialog(parent) {
    setWindowTitle("New Document");
    ShowMessage = [this](const QString& text) {
        QMessageBox::information(this, kImageFileMessageTitle, text);
    };

    txtW = new QSpinBox(this);
    txtW->setObjectName("txtW");
    txtH = new QSpinBox(this);
    txtH->setObjectName("txtH");
    // The fields take values under 2 so that OK can explain the minimum.
    for (QSpinBox* box : {txtW, txtH})
        box->setRange(0, kMaxSide);
    chkKeepProportions = new QCheckBox("&Keep proportions", this);
    chkKeepProportions->setObjectName("chkKeepProportions");
    cbDefault = new QComboBox(this);
    cbDefault->setObjectName("cbDefault");
    for (const std::string& s : sizeList())
        cbDefault->addItem(QString::fromStdString(s));

    optColour = new QRadioButton(this);
    optColour->setObjectName("OP_Colour");
    CP = new QPushButton(this);
    CP->setObjectName("CP");
    CP->setFixedSize(40, 20);
    optTransparent = new QRadioButton("Transparent", this);
    optTransparent->setObjectName("OP_Transparent");
    optWhite = new QRadioButton("White", this);
    optWhite->setObjectName("OP_White");
    OP = new QButtonGroup(this);
    OP->addButton(optColour, 0);
    OP->addButton(optTransparent, 1);
    OP->addButton(optWhite, 2);
    optWhite->setChecked(true);
    showWell();

    auto* sizeBox = new QGridLayout;
    sizeBox->addWidget(new QLabel("Custom:", this), 0, 0);
    sizeBox->addWidget(txtW, 0, 1);
    sizeBox->addWidget(new QLabel("x", this), 0, 2);
    sizeBox->addWidget(txtH, 0, 3);
    sizeBox->addWidget(chkKeepProportions, 1, 1, 1, 3);
    sizeBox->addWidget(new QLabel("Standard sizes", this), 2, 0);
    sizeBox->addWidget(cbDefault, 2, 1, 1, 3);

    auto* background = new QGroupBox("Image Background", this);
    auto* bgLayout = new QGridLayout(background);
    bgLayout->addWidget(optColour, 0, 0);
    bgLayout->addWidget(CP, 0, 1);
    bgLayout->addWidget(optTransparent, 1, 0, 1, 2);
    bgLayout->addWidget(optWhite, 2, 0, 1, 2);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &fNew::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &fNew::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(sizeBox);
    layout->addWidget(background);
    layout->addWidget(buttons);

    connect(txtW, &QSpinBox::valueChanged, this, &fNew::widthChanged);
    connect(txtH, &QSpinBox::valueChanged, this, &fNew::heightChanged);
    connect(cbDefault, &QComboBox::activated, this, &fNew::sizePicked);
    connect(CP, &QPushButton::clicked, this, &fNew::pickColour);
    connect(chkKeepProportions, &QCheckBox::toggled, this, [this](bool on) {
        if (on) rememberRatio();
    });

    // Opens on 640 x 480, a white page.
    cbDefault->setCurrentIndex(3);
    sizePicked(3);
}

NewImageRequest fNew::request() const {
    NewImageRequest r;
    r.width = txtW->value();
    r.height = txtH->value();
    r.colour = wellColour_;
    r.background = optColour->isChecked()        ? NewImageRequest::Background::Colour
                   : optTransparent->isChecked() ? NewImageRequest::Background::Transparent
                                                 : NewImageRequest::Background::White;
    return r;
}

void fNew::accept() {
    const int w = txtW->value();
    const int h = txtH->value();
    if (w < 2 || h < 2) {
        ShowMessage("Minimum size: 2 x 2");
        return;
    }
    const std::string text = sizeText(w, h);
    auto& sizes = sizeList();
    if (std::find(sizes.begin(), sizes.end(), text) == sizes.end()) sizes.push_back(text);
    QDialog::accept();
}

void fNew::SetWellColour(uint32_t colour) {
    wellColour_ = colour & 0x00FFFFFFu;
    showWell();
    optColour->setChecked(true);
}

void fNew::showWell() {
    CP->setStyleSheet(QString("background-color: rgb(%1,%2,%3); border: 1px solid black;")
                          .arg(colourR(wellColour_))
                          .arg(colourG(wellColour_))
                          .arg(colourB(wellColour_)));
}

std::function<bool(QWidget*, int32_t&)> fNew::ChooseColour;

void fNew::pickColour() {
    if (ChooseColour) {
        int32_t colour = int32_t(wellColour_);
        if (ChooseColour(this, colour)) SetWellColour(uint32_t(colour) & 0xFFFFFFu);
        return;
    }
    const QColor start(colourR(wellColour_), colourG(wellColour_), colourB(wellColour_));
    const QColor c = QColorDialog::getColor(start, this);
    if (c.isValid())
        SetWellColour(uint32_t(c.red()) | uint32_t(c.green()) << 8 | uint32_t(c.blue()) << 16);
}

void fNew::sizePicked(int index) {
    if (index < 0) return;
    const QStringList parts = cbDefault->itemText(index).split(" x ");
    if (parts.size() != 2) return;
    following_ = true; // a picked size is taken as it stands, not kept in the old ratio
    txtW->setValue(parts[0].toInt());
    txtH->setValue(parts[1].toInt());
    following_ = false;
    rememberRatio();
}

// With "Keep proportions" on, the other field follows in the ratio that the two fields
// had when the box was ticked (or a standard size was picked), rounded to nearest with
// ties to even; the ratio stays put while the box is on, so rounding never drifts it.
void fNew::widthChanged(int w) {
    if (following_) return;
    if (chkKeepProportions->isChecked() && lastW_ > 0 && lastH_ > 0) {
        following_ = true;
        txtH->setValue(std::clamp(vbRound(double(w) * lastH_ / lastW_), 0, kMaxSide));
        following_ = false;
    } else {
        rememberRatio();
    }
}

void fNew::heightChanged(int h) {
    if (following_) return;
    if (chkKeepProportions->isChecked() && lastW_ > 0 && lastH_ > 0) {
        following_ = true;
        txtW->setValue(std::clamp(vbRound(double(h) * lastW_ / lastH_), 0, kMaxSide));
        following_ = false;
    } else {
        rememberRatio();
    }
}

void fNew::rememberRatio() {
    if (txtW->value() > 0 && txtH->value() > 0) {
        lastW_ = txtW->value();
        lastH_ = txtH->value();
    }
}

} // namespace ostrivex
