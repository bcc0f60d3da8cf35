#include "text/flayertext.h"

#include "text/layercanvas.h"
#include "text/textcontrols.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace ostrivex {

namespace {

// The value lists; each takes a typed number too.
const int kSizes[] = {8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72, 96, 144};
const int kDepths[] = {0, 1, 2, 3, 4, 5, 6, 8, 10, 12, 15, 20};
const int kStarts[] = {0, 2, 5, 10, 15, 20, 25, 30, 40, 50, 75, 100};

QComboBox* numberList(const char* name, const int* begin, const int* end, int value,
                      QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->setEditable(true);
    for (const int* v = begin; v != end; ++v)
        c->addItem(QString::number(*v));
    c->setCurrentText(QString::number(value));
    return c;
}

QCheckBox* toggle(const char* name, const char* caption, QWidget* parent) {
    auto* c = new QCheckBox(caption, parent);
    c->setObjectName(name);
    return c;
}

} // namespace

fLayerText::fLayerText(QWidget* parent, TextLayerSink* sink)
    : QDialog(parent), sink_(sink ? sink : GetTextLayerSink()) {
    setObjectName("fLayerText");
    setWindowTitle("New Text Layer");
    const StyleTextSettings d;

    txtLayerText = new QLineEdit(d.text, this);
    txtLayerText->setObjectName("txtLayerText");
    cFonts = new QComboBox(this);
    cFonts->setObjectName("cFonts");
    mFonts(cFonts, QString(), this);
    Cs = numberList("Cs", std::begin(kSizes), std::end(kSizes), int(d.fontSize), this);
    CP = new ColourWell(d.foreColor, this);
    CP->setObjectName("CP");
    CP->setToolTip("Text color");
    cBold = toggle("cBold", "Bold", this);
    cItalic = toggle("cItalic", "Italic", this);
    cUnderline = toggle("cUnderline", "Underline", this);
    cStrike = toggle("cStrike", "Strikeout", this);
    cBack = new ColourWell(d.background, this);
    cBack->setObjectName("cBack");
    pTransparent = new ColourWell(d.transparent, this);
    pTransparent->setObjectName("pTransparent");
    cmdSetTransparent = new QPushButton("From Background", this);
    cmdSetTransparent->setObjectName("cmdSetTransparent");
    cmdSetTransparent->setToolTip("Make the background color the transparent color");

    FCustom = new QGroupBox(this);
    FCustom->setObjectName("FCustom");
    cStyle = new QComboBox(FCustom);
    cStyle->setObjectName("cStyle");
    cStyle->addItems({"Plain", "Emboss", "Engrave", "Both"});
    cStyle->setCurrentIndex(d.style);
    pEmboss = new ColourWell(d.emboss, FCustom);
    pEmboss->setObjectName("pEmboss");
    pEngrave = new ColourWell(d.engrave, FCustom);
    pEngrave->setObjectName("pEngrave");
    cboAngleT = new QComboBox(FCustom);
    cboAngleT->setObjectName("cboAngleT");
    cboAngleT->setEditable(true);
    for (int a = 0; a < 360; a += 15)
        cboAngleT->addItem(QString::number(a));
    cboAngleT->setCurrentText(QString::number(d.angle));
    cboDepthT = numberList("cboDepthT", std::begin(kDepths), std::end(kDepths), d.depth, FCustom);
    cboLeftT = numberList("cboLeftT", std::begin(kStarts), std::end(kStarts), d.left, FCustom);
    cboRightT = numberList("cboRightT", std::begin(kStarts), std::end(kStarts), d.right, FCustom);

    auto* styleGrid = new QGridLayout(FCustom);
    styleGrid->addWidget(new QLabel("Style", FCustom), 0, 0);
    styleGrid->addWidget(cStyle, 0, 1, 1, 3);
    styleGrid->addWidget(new QLabel("Emboss", FCustom), 1, 0);
    styleGrid->addWidget(pEmboss, 1, 1);
    styleGrid->addWidget(new QLabel("Engrave", FCustom), 1, 2);
    styleGrid->addWidget(pEngrave, 1, 3);
    styleGrid->addWidget(new QLabel("Angle", FCustom), 2, 0);
    styleGrid->addWidget(cboAngleT, 2, 1);
    styleGrid->addWidget(new QLabel("Depth", FCustom), 2, 2);
    styleGrid->addWidget(cboDepthT, 2, 3);
    styleGrid->addWidget(new QLabel("Left", FCustom), 3, 0);
    styleGrid->addWidget(cboLeftT, 3, 1);
    styleGrid->addWidget(new QLabel("Right", FCustom), 3, 2);
    styleGrid->addWidget(cboRightT, 3, 3);

    canvas = new LayerCanvas(this);
    canvas->SetLayerSize(QSize(d.width, d.height));
    canvas->setMinimumSize(460, 180);
    lblWidth = new QLabel("Width", this);
    lblWidth->setObjectName("lblWidth");
    lblHeight = new QLabel("Height", this);
    lblHeight->setObjectName("lblHeight");
    widthValue_ = new QLabel(this);
    heightValue_ = new QLabel(this);

    cmdOK = new QPushButton("Create", this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    Command1 = new QPushButton("Cancel", this);
    Command1->setObjectName("Command1");

    // Layout: the text and font on top, the canvas, then the style panel and the buttons.
    auto* top = new QGridLayout;
    top->addWidget(new QLabel("Enter your Text", this), 0, 0);
    top->addWidget(txtLayerText, 0, 1, 1, 5);
    top->addWidget(cFonts, 1, 1, 1, 3);
    top->addWidget(Cs, 1, 4);
    top->addWidget(CP, 1, 5);
    auto* toggles = new QHBoxLayout;
    for (QCheckBox* c : {cBold, cItalic, cUnderline, cStrike})
        toggles->addWidget(c);
    toggles->addStretch();
    top->addLayout(toggles, 2, 1, 1, 5);
    auto* colours = new QHBoxLayout;
    colours->addWidget(new QLabel("Background", this));
    colours->addWidget(cBack);
    colours->addSpacing(16);
    colours->addWidget(new QLabel("Transparent Color", this));
    colours->addWidget(pTransparent);
    colours->addWidget(cmdSetTransparent);
    colours->addStretch();
    top->addLayout(colours, 3, 1, 1, 5);

    auto* sizeRow = new QHBoxLayout;
    sizeRow->addWidget(lblWidth);
    sizeRow->addWidget(widthValue_);
    sizeRow->addSpacing(16);
    sizeRow->addWidget(lblHeight);
    sizeRow->addWidget(heightValue_);
    sizeRow->addStretch();

    auto* buttons = new QVBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(Command1);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(FCustom, 1);
    bottom->addLayout(buttons);

    auto* main = new QVBoxLayout(this);
    main->addLayout(top);
    main->addWidget(canvas, 1);
    main->addLayout(sizeRow);
    main->addLayout(bottom);

    // Every change redraws.
    connect(txtLayerText, &QLineEdit::textChanged, this, &fLayerText::DrawText);
    for (QComboBox* c : {cFonts, Cs, cStyle, cboAngleT, cboDepthT, cboLeftT, cboRightT})
        connect(c, &QComboBox::currentTextChanged, this, &fLayerText::DrawText);
    for (QCheckBox* c : {cBold, cItalic, cUnderline, cStrike})
        connect(c, &QCheckBox::toggled, this, &fLayerText::DrawText);
    for (ColourWell* w : {CP, cBack, pEmboss, pEngrave})
        connect(w, &ColourWell::colourChanged, this, &fLayerText::DrawText);
    connect(canvas, &LayerCanvas::layerResized, this, &fLayerText::DrawText);
    connect(cmdSetTransparent, &QPushButton::clicked, this,
            [this] { pTransparent->setColour(cBack->colour()); });
    connect(cmdOK, &QPushButton::clicked, this, &fLayerText::cmdOK_Click);
    connect(Command1, &QPushButton::clicked, this, &QDialog::reject);

    canvas->ShowG(true);
    DrawText();
}

StyleTextSettings fLayerText::settings() const {
    StyleTextSettings s;
    s.text = txtLayerText->text();
    s.fontName = cFonts->currentText();
    // Sizes may have a fraction (a layer's font of 13.5 points comes back as it was).
    bool ok = false;
    const float size = Cs->currentText().trimmed().toFloat(&ok);
    if (ok && size > 0 && size <= 30000) s.fontSize = size;
    s.foreColor = CP->colour();
    s.bold = cBold->isChecked();
    s.italic = cItalic->isChecked();
    s.underline = cUnderline->isChecked();
    s.strikethru = cStrike->isChecked();
    s.background = cBack->colour();
    s.transparent = pTransparent->colour();
    s.style = cStyle->currentIndex();
    s.emboss = pEmboss->colour();
    s.engrave = pEngrave->colour();
    s.angle = FieldNumber(cboAngleT->currentText(), 0);
    s.depth = FieldNumber(cboDepthT->currentText(), 0);
    s.left = FieldNumber(cboLeftT->currentText(), 0);
    s.right = FieldNumber(cboRightT->currentText(), 0);
    s.width = canvas->layerSize().width();
    s.height = canvas->layerSize().height();
    return s;
}

void fLayerText::DrawText() {
    picture_ = DrawStyleTextLayer(settings());
    canvas->SetPicture(picture_);
    showSize();
}

void fLayerText::showSize() {
    widthValue_->setText(QString::number(canvas->layerSize().width()));
    heightValue_->setText(QString::number(canvas->layerSize().height()));
}

void fLayerText::LoadDataFromLayer(const TextRecord& record, int32_t layer, QSize size) {
    editing_ = layer;
    const StyleTextSettings s = StyleTextFromRecord(record, settings());
    const QSignalBlocker b1(txtLayerText), b2(cFonts), b3(Cs), b4(cStyle), b5(cboAngleT),
        b6(cboDepthT), b7(cboLeftT), b8(cboRightT), b9(cBold), b10(cItalic), b11(cUnderline),
        b12(cStrike), b13(CP), b14(pEmboss), b15(pEngrave);
    txtLayerText->setText(s.text);
    mFonts(cFonts, s.fontName, this);
    Cs->setCurrentText(QString::number(double(s.fontSize)));
    CP->setColour(s.foreColor);
    cBold->setChecked(s.bold);
    cItalic->setChecked(s.italic);
    cUnderline->setChecked(s.underline);
    cStrike->setChecked(s.strikethru);
    pEmboss->setColour(s.emboss);
    pEngrave->setColour(s.engrave);
    // An index past the list selects nothing, and the layer stays blank, as it was made.
    cStyle->setCurrentIndex(s.style >= 0 && s.style < cStyle->count() ? s.style : -1);
    cboAngleT->setCurrentText(QString::number(s.angle));
    cboDepthT->setCurrentText(QString::number(s.depth));
    cboLeftT->setCurrentText(QString::number(s.left));
    cboRightT->setCurrentText(QString::number(s.right));
    if (!size.isEmpty()) canvas->SetLayerSize(size);
    DrawText();
}

void fLayerText::cmdOK_Click() {
    // 1. The dialog goes; the window behind repaints.
    hide();
    QCoreApplication::processEvents();
    // 2, 3. The record and the picture.
    const StyleTextSettings s = settings();
    FinishedText done;
    done.record = StyleTextRecord(s);
    done.picture = DrawStyleTextLayer(s);
    done.transparentColor = s.transparent;
    // 4. A new layer, or the edited one.
    if (sink_) {
        if (editing_ > 0)
            sink_->UpdateTextLayer(editing_, done);
        else
            sink_->AddTextLayer(done);
    }
    // 5.
    accept();
}

} // namespace ostrivex
