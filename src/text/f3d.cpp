#include "text/f3d.h"

#include "document/dialogs.h"
#include "text/layercanvas.h"
#include "text/textcontrols.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

namespace ostrivex {

namespace {

// Slider ranges. Thickness starts at 1: the colour steps divide by it.
constexpr int kSlantRange = 100; // tenths of a pixel per step, either way
constexpr int kMaxThickness = 200;
constexpr int kMinFontSize = 6, kMaxFontSize = 200;

QSlider* slider(const QString& name, int lo, int hi, int value, QWidget* parent) {
    auto* s = new QSlider(Qt::Horizontal, parent);
    s->setObjectName(name);
    s->setRange(lo, hi);
    s->setValue(value);
    s->setMinimumWidth(120);
    return s;
}

QLabel* valueLabel(QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setMinimumWidth(32);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return l;
}

void paintLabel(QLabel* label, int r, int g, int b) {
    label->setStyleSheet(
        QStringLiteral("background-color: rgb(%1, %2, %3); border: 1px solid black;")
            .arg(r)
            .arg(g)
            .arg(b));
}

} // namespace

f3D::f3D(QWidget* parent, TextLayerSink* sink)
    : QDialog(parent), sink_(sink ? sink : GetTextLayerSink()) {
    setObjectName("f3D");
    setWindowTitle("3D Text");
    const Text3DSettings d;

    Text1 = new QLineEdit(d.text, this);
    Text1->setObjectName("Text1");

    // The two colour frames: three sliders each with the channel's colour beside it.
    QGroupBox* colourFrames[2];
    const char* frameCaptions[2] = {"First color", "Second color"};
    const char* channelNames[3] = {"Red", "Green", "Blue"};
    for (int f = 0; f < 2; ++f) {
        colourFrames[f] = new QGroupBox(frameCaptions[f], this);
        auto* grid = new QGridLayout(colourFrames[f]);
        const int32_t c = f == 0 ? d.colour1 : d.colour2;
        const int channel[3] = {c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF};
        for (int k = 0; k < 3; ++k) {
            const int i = f * 3 + k;
            HS1[i] = slider(QStringLiteral("HS1_%1").arg(i), 0, 255, channel[k], colourFrames[f]);
            col[i] = new QLabel(colourFrames[f]);
            col[i]->setObjectName(QStringLiteral("col_%1").arg(i));
            col[i]->setFixedSize(16, 16);
            hs1Values_[i] = valueLabel(colourFrames[f]);
            grid->addWidget(new QLabel(channelNames[k], colourFrames[f]), k, 0);
            grid->addWidget(HS1[i], k, 1);
            grid->addWidget(hs1Values_[i], k, 2);
            grid->addWidget(col[i], k, 3);
        }
        QLabel* result = new QLabel(colourFrames[f]);
        result->setObjectName(f == 0 ? "Label1" : "Label2");
        result->setMinimumHeight(18);
        grid->addWidget(result, 3, 0, 1, 4);
        (f == 0 ? Label1 : Label2) = result;
    }
    Command1 = new QPushButton("Switch colors", this);
    Command1->setObjectName("Command1");

    auto* dimensions = new QGroupBox("Dimensions", this);
    auto* dimGrid = new QGridLayout(dimensions);
    const char* pxNames[2] = {"Horizontal", "Vertical"};
    const int pxValues[2] = {d.horizontal, d.vertical};
    for (int i = 0; i < 2; ++i) {
        Px[i] = slider(QStringLiteral("Px_%1").arg(i), -kSlantRange, kSlantRange, pxValues[i],
                       dimensions);
        pxValues_[i] = valueLabel(dimensions);
        dimGrid->addWidget(new QLabel(pxNames[i], dimensions), i, 0);
        dimGrid->addWidget(Px[i], i, 1);
        dimGrid->addWidget(pxValues_[i], i, 2);
    }
    HScroll1 = slider("HScroll1", 1, kMaxThickness, d.thickness, dimensions);
    thicknessValue_ = valueLabel(dimensions);
    dimGrid->addWidget(new QLabel("Thickness", dimensions), 2, 0);
    dimGrid->addWidget(HScroll1, 2, 1);
    dimGrid->addWidget(thicknessValue_, 2, 2);

    auto* fonts = new QGroupBox("Fonts", this);
    auto* fontGrid = new QGridLayout(fonts);
    Combo1 = new QComboBox(fonts);
    Combo1->setObjectName("Combo1");
    mFonts(Combo1, d.fontName, this);
    HScroll2 = slider("HScroll2", kMinFontSize, kMaxFontSize, d.fontSize, fonts);
    sizeValue_ = valueLabel(fonts);
    Check5 = new QCheckBox("Bold", fonts);
    Check5->setObjectName("Check5");
    Check5->setChecked(d.bold);
    Check1 = new QCheckBox("Italic", fonts);
    Check1->setObjectName("Check1");
    Check2 = new QCheckBox("Underline", fonts);
    Check2->setObjectName("Check2");
    Check3 = new QCheckBox("Strikeout", fonts);
    Check3->setObjectName("Check3");
    fontGrid->addWidget(new QLabel("Font Name", fonts), 0, 0);
    fontGrid->addWidget(Combo1, 0, 1, 1, 2);
    fontGrid->addWidget(new QLabel("Font Size", fonts), 1, 0);
    fontGrid->addWidget(HScroll2, 1, 1);
    fontGrid->addWidget(sizeValue_, 1, 2);
    auto* toggles = new QHBoxLayout;
    for (QCheckBox* c : {Check5, Check1, Check2, Check3})
        toggles->addWidget(c);
    fontGrid->addLayout(toggles, 2, 0, 1, 3);

    auto* texture = new QGroupBox("Texture", this);
    auto* texGrid = new QGridLayout(texture);
    Check4 = new QCheckBox("With texture", texture);
    Check4->setObjectName("Check4");
    pTexture = new QLabel(texture);
    pTexture->setObjectName("pTexture");
    pTexture->setFixedSize(64, 64);
    pTexture->setFrameShape(QFrame::Box);
    pTexture->setAlignment(Qt::AlignCenter);
    File1 = new QListWidget(texture);
    File1->setObjectName("File1");
    File1->setMaximumHeight(90);
    auto* fromFile = new QGroupBox("From File", texture);
    cmdBrowse = new QPushButton("Browse...", fromFile);
    cmdBrowse->setObjectName("cmdBrowse");
    (new QHBoxLayout(fromFile))->addWidget(cmdBrowse);
    texGrid->addWidget(Check4, 0, 0, 1, 2);
    texGrid->addWidget(pTexture, 1, 0);
    texGrid->addWidget(File1, 1, 1);
    texGrid->addWidget(fromFile, 2, 0, 1, 2);

    cBack = new ColourWell(d.background, this);
    cBack->setObjectName("cBack");
    pTransparent = new ColourWell(d.transparent, this);
    pTransparent->setObjectName("pTransparent");
    cmdSetTransparent = new QPushButton("From Background", this);
    cmdSetTransparent->setObjectName("cmdSetTransparent");
    cmdSetTransparent->setToolTip("Make the background color the transparent color");
    cmdApply = new QPushButton("Apply", this);
    cmdApply->setObjectName("cmdApply");
    cmdApply->setDefault(true);
    Command2 = new QPushButton("Save As", this);
    Command2->setObjectName("Command2");
    CmdCancel = new QPushButton("Cancel", this);
    CmdCancel->setObjectName("CmdCancel");

    canvas = new LayerCanvas(this);
    canvas->SetLayerSize(QSize(d.width, d.height));
    canvas->setMinimumSize(480, 170);

    // Layout: text, canvas; the frames in two columns; colours and buttons.
    auto* left = new QVBoxLayout;
    left->addWidget(colourFrames[0]);
    left->addWidget(colourFrames[1]);
    left->addWidget(Command1);
    auto* middle = new QVBoxLayout;
    middle->addWidget(dimensions);
    middle->addWidget(fonts);
    auto* frames = new QHBoxLayout;
    frames->addLayout(left);
    frames->addLayout(middle);
    frames->addWidget(texture);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(new QLabel("Background", this));
    bottom->addWidget(cBack);
    bottom->addSpacing(16);
    bottom->addWidget(new QLabel("Transparent Color", this));
    bottom->addWidget(pTransparent);
    bottom->addWidget(cmdSetTransparent);
    bottom->addStretch();
    bottom->addWidget(cmdApply);
    bottom->addWidget(Command2);
    bottom->addWidget(CmdCancel);
    auto* main = new QVBoxLayout(this);
    main->addWidget(Text1);
    main->addWidget(canvas, 1);
    main->addLayout(frames);
    main->addLayout(bottom);

    // Every change redraws.
    connect(Text1, &QLineEdit::textChanged, this, &f3D::Redraw);
    for (QSlider* s : HS1)
        connect(s, &QSlider::valueChanged, this, &f3D::Redraw);
    for (QSlider* s : {Px[0], Px[1], HScroll1, HScroll2})
        connect(s, &QSlider::valueChanged, this, &f3D::Redraw);
    connect(Combo1, &QComboBox::currentTextChanged, this, &f3D::Redraw);
    for (QCheckBox* c : {Check5, Check1, Check2, Check3, Check4})
        connect(c, &QCheckBox::toggled, this, &f3D::Redraw);
    connect(cBack, &ColourWell::colourChanged, this, &f3D::Redraw);
    connect(canvas, &LayerCanvas::layerResized, this, &f3D::Redraw);
    connect(File1, &QListWidget::currentTextChanged, this, [this](const QString& name) {
        if (!name.isEmpty()) LoadTexture(textureFolder_ + '/' + name);
    });
    connect(cmdBrowse, &QPushButton::clicked, this, [this] {
        const QString path = DocumentDialogs::AskOpenName(
            this, "Load Texture", textureFolder_, "Pictures|*.gif;*.bmp;*.jpg;*.jpeg;*.png");
        if (!path.isEmpty()) LoadTexture(path);
    });
    connect(Command1, &QPushButton::clicked, this, &f3D::Command1_Click);
    connect(cmdSetTransparent, &QPushButton::clicked, this,
            [this] { pTransparent->setColour(cBack->colour()); });
    connect(cmdApply, &QPushButton::clicked, this, &f3D::cmdApply_Click);
    connect(Command2, &QPushButton::clicked, this,
            [this] { SaveTextPictureAs(this, picture_, QStringLiteral("Save As")); });
    connect(CmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    FillTextures(TextDialogHooks::TexturesFolder ? TextDialogHooks::TexturesFolder() : QString());
    canvas->ShowG(true);
    Redraw();
}

void f3D::FillTextures(const QString& folder) {
    textureFolder_ = folder;
    const QSignalBlocker block(File1);
    File1->clear();
    File1->addItems(TextureFiles(folder, kTexturePattern));
}

bool f3D::LoadTexture(const QString& path) {
    Bits t = ReadTexturePicture(path);
    if (t.empty() || t.width() < 1 || t.height() < 1) {
        DocumentDialogs::Inform(this, QStringLiteral("%1\n%2").arg(kTextureLoadText, path),
                                windowTitle());
        return false;
    }
    texture_ = std::move(t);
    pTexture->setPixmap(QPixmap::fromImage(BitsImage(texture_))
                            .scaled(pTexture->size(), Qt::KeepAspectRatio, Qt::FastTransformation));
    Redraw();
    return true;
}

Text3DSettings f3D::settings() const {
    Text3DSettings s;
    s.text = Text1->text();
    s.colour1 = HS1[0]->value() | HS1[1]->value() << 8 | HS1[2]->value() << 16;
    s.colour2 = HS1[3]->value() | HS1[4]->value() << 8 | HS1[5]->value() << 16;
    s.horizontal = Px[0]->value();
    s.vertical = Px[1]->value();
    s.thickness = HScroll1->value();
    s.fontName = Combo1->currentText();
    s.fontSize = HScroll2->value();
    s.bold = Check5->isChecked();
    s.italic = Check1->isChecked();
    s.underline = Check2->isChecked();
    s.strikethru = Check3->isChecked();
    s.withTexture = Check4->isChecked();
    s.texture = texture_;
    s.background = cBack->colour();
    s.transparent = pTransparent->colour();
    s.width = canvas->layerSize().width();
    s.height = canvas->layerSize().height();
    return s;
}

void f3D::showColours() {
    for (int i = 0; i < 6; ++i) {
        const int v = HS1[i]->value();
        paintLabel(col[i], i % 3 == 0 ? v : 0, i % 3 == 1 ? v : 0, i % 3 == 2 ? v : 0);
        hs1Values_[i]->setText(QString::number(v));
    }
    paintLabel(Label1, HS1[0]->value(), HS1[1]->value(), HS1[2]->value());
    paintLabel(Label2, HS1[3]->value(), HS1[4]->value(), HS1[5]->value());
    for (int i = 0; i < 2; ++i)
        pxValues_[i]->setText(QString::number(Px[i]->value()));
    thicknessValue_->setText(QString::number(HScroll1->value()));
    sizeValue_->setText(QString::number(HScroll2->value()));
}

void f3D::Redraw() {
    showColours();
    picture_ = Draw3DTextLayer(settings());
    canvas->SetPicture(picture_);
}

void f3D::setColour(int first, int32_t colour) {
    for (int k = 0; k < 3; ++k) {
        const QSignalBlocker block(HS1[first + k]);
        HS1[first + k]->setValue((colour >> (8 * k)) & 0xFF);
    }
}

void f3D::Command1_Click() {
    const Text3DSettings s = settings();
    setColour(0, s.colour2);
    setColour(3, s.colour1);
    Redraw();
}

void f3D::LoadDataFromLayer(const TextRecord& record, int32_t layer, QSize size) {
    editing_ = layer;
    const Text3DSettings s = Text3DFromRecord(record, settings());
    {
        const QSignalBlocker b1(Text1), b2(Combo1), b3(Px[0]), b4(Px[1]), b5(HScroll1),
            b6(HScroll2), b7(Check5), b8(Check1), b9(Check2), b10(Check3);
        Text1->setText(s.text);
        setColour(0, s.colour1);
        setColour(3, s.colour2);
        Px[0]->setValue(s.horizontal);
        Px[1]->setValue(s.vertical);
        HScroll1->setValue(s.thickness); // held to the slider's range: never 0
        mFonts(Combo1, s.fontName, this);
        HScroll2->setValue(s.fontSize);
        Check5->setChecked(s.bold);
        Check1->setChecked(s.italic);
        Check2->setChecked(s.underline);
        Check3->setChecked(s.strikethru);
    }
    if (!size.isEmpty()) canvas->SetLayerSize(size);
    Redraw();
}

void f3D::cmdApply_Click() {
    hide();
    QCoreApplication::processEvents();
    const Text3DSettings s = settings();
    FinishedText done;
    done.record = Text3DRecord(s);
    done.picture = Draw3DTextLayer(s);
    done.transparentColor = s.transparent;
    if (sink_) {
        if (editing_ > 0)
            sink_->UpdateTextLayer(editing_, done);
        else
            sink_->AddTextLayer(done);
    }
    accept();
}

} // namespace ostrivex
