// LogoMan: the dialog's controls and tabs.
#include "text/logoman.h"

#include "document/dialogs.h"
#include "text/layercanvas.h"
#include "text/textcontrols.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace ostrivex {

namespace {

const int kFontSizes[] = {12, 16, 20, 24, 28, 32, 36, 40, 48, 56, 64, 72, 96, 120, 144};

QCheckBox* check(const char* name, const char* caption, const char* tip, QWidget* parent) {
    auto* c = new QCheckBox(caption, parent);
    c->setObjectName(name);
    if (tip) c->setToolTip(tip);
    return c;
}

QRadioButton* option(const QString& name, const char* caption, const char* tip, QWidget* parent) {
    auto* r = new QRadioButton(caption, parent);
    r->setObjectName(name);
    if (tip) r->setToolTip(tip);
    return r;
}

QSpinBox* spin(const char* name, int lo, int hi, int value, const char* tip, QWidget* parent) {
    auto* s = new QSpinBox(parent);
    s->setObjectName(name);
    s->setRange(lo, hi);
    s->setValue(value);
    if (tip) s->setToolTip(tip);
    return s;
}

QSlider* slider(const QString& name, int lo, int hi, int value, QWidget* parent) {
    auto* s = new QSlider(Qt::Horizontal, parent);
    s->setObjectName(name);
    s->setRange(lo, hi);
    s->setValue(value);
    return s;
}

ColourWell* well(const QString& name, int32_t colour, QWidget* parent) {
    auto* w = new ColourWell(colour, parent);
    w->setObjectName(name);
    return w;
}

} // namespace

LogoMan::LogoMan(QWidget* parent, TextLayerSink* sink)
    : QDialog(parent), sink_(sink ? sink : GetTextLayerSink()) {
    setObjectName("LogoMan");
    setWindowTitle("Style Text");
    const LogoSettings d;
    textureFolder_ =
        TextDialogHooks::TexturesFolder ? TextDialogHooks::TexturesFolder() : QString();

    Pic = new LayerCanvas(this);
    Pic->setObjectName("Pic");
    Pic->SetLayerSize(QSize(d.width, d.height));
    Pic->setMinimumSize(520, 170);
    TxtSizeX = spin("TxtSizeX", LayerCanvas::kMinSide, LayerCanvas::kMaxSide, d.width,
                    "Horizontal Logosize", this);
    TxtSizeY = spin("TxtSizeY", LayerCanvas::kMinSide, LayerCanvas::kMaxSide, d.height,
                    "Vertical Logosize", this);

    TabChoice = new QTabWidget(this);
    TabChoice->setObjectName("TabChoice");
    TabChoice->addTab(buildFontTab(), "Font");
    TabChoice->addTab(buildTextureTab(), "Texture");
    TabChoice->addTab(buildBorderTab(), "Border");
    TabChoice->addTab(buildBackgroundTab(), "Background");
    TabChoice->addTab(buildEffectsTab(), "Effects");

    CmdOK = new QPushButton("Insert Layer", this);
    CmdOK->setObjectName("CmdOK");
    CmdOK->setDefault(true);
    Command2 = new QPushButton("Save As..", this);
    Command2->setObjectName("Command2");
    Command3 = new QPushButton("Cancel", this);
    Command3->setObjectName("Command3");

    auto* sizeRow = new QHBoxLayout;
    sizeRow->addWidget(new QLabel("Width", this));
    sizeRow->addWidget(TxtSizeX);
    sizeRow->addWidget(new QLabel("Height", this));
    sizeRow->addWidget(TxtSizeY);
    sizeRow->addStretch();
    sizeRow->addWidget(CmdOK);
    sizeRow->addWidget(Command2);
    sizeRow->addWidget(Command3);
    auto* lower = new QHBoxLayout;
    lower->addWidget(TabChoice, 1);
    lower->addWidget(buildSettingsFrame());
    auto* main = new QVBoxLayout(this);
    main->addWidget(Pic, 1);
    main->addLayout(sizeRow);
    main->addLayout(lower);

    connectRedraw();
    Pic->ShowG(true);
    Redraw();
}

QWidget* LogoMan::gradientRow(int i, QWidget* parent) {
    auto* row = new QWidget(parent);
    auto* h = new QHBoxLayout(row);
    h->setContentsMargins(0, 0, 0, 0);
    CboGrStyle[i] = new QComboBox(row);
    CboGrStyle[i]->setObjectName(QStringLiteral("CboGrStyle_%1").arg(i));
    CboGrStyle[i]->addItems({"Circular", "Horizontal", "Vertikal"});
    const LogoSettings d;
    const LogoGradient& g = i == 0 ? d.fontGradient : i == 1 ? d.borderGradient : d.backGradient;
    CboGrStyle[i]->setCurrentIndex(int(g.style));
    CmdGrCol[2 * i] = well(QStringLiteral("CmdGrCol_%1").arg(2 * i), g.colour1, row);
    CmdGrCol[2 * i + 1] = well(QStringLiteral("CmdGrCol_%1").arg(2 * i + 1), g.colour2, row);
    CmdSwapColors[i] = new QPushButton("Swap Colors", row);
    CmdSwapColors[i]->setObjectName(QStringLiteral("CmdSwapColors_%1").arg(i));
    h->addWidget(new QLabel("Gradientstyle", row));
    h->addWidget(CboGrStyle[i]);
    h->addWidget(CmdGrCol[2 * i]);
    h->addWidget(CmdGrCol[2 * i + 1]);
    h->addWidget(CmdSwapColors[i]);
    h->addStretch();
    connect(CmdSwapColors[i], &QPushButton::clicked, this, [this, i] {
        const int32_t a = CmdGrCol[2 * i]->colour(), b = CmdGrCol[2 * i + 1]->colour();
        {
            const QSignalBlocker block(CmdGrCol[2 * i]);
            CmdGrCol[2 * i]->setColour(b);
        }
        CmdGrCol[2 * i + 1]->setColour(a);
        Redraw();
    });
    return row;
}

QWidget* LogoMan::buildFontTab() {
    auto* tab = new QWidget;
    const LogoSettings d;
    Text1 = new QLineEdit(d.text, tab);
    Text1->setObjectName("Text1");
    Text1->setToolTip("Type Text in here");
    CboName = new QComboBox(tab);
    CboName->setObjectName("CboName");
    mFonts(CboName, QString(), this);
    CboSize = new QComboBox(tab);
    CboSize->setObjectName("CboSize");
    CboSize->setEditable(true);
    for (int s : kFontSizes)
        CboSize->addItem(QString::number(s));
    CboSize->setCurrentText(QString::number(d.fontSize));

    auto* group = new QButtonGroup(tab);
    OptTab0 = {option("OptTab0_0", "Texture", "Use picture Overlays", tab),
               option("OptTab0_1", "Solid Color", "Single Color Font", tab),
               option("OptTab0_2", "Gradient", "Multicolor Fonts", tab),
               option("OptTab0_3", "Transparent", "Invisible font and normal border", tab)};
    for (int i = 0; i < 4; ++i)
        group->addButton(OptTab0[i], i);
    OptTab0[int(d.fontFill)]->setChecked(true);
    CmdSolCol[0] = well("CmdSolCol_0", d.fontColour, tab);

    auto* grid = new QGridLayout(tab);
    grid->addWidget(new QLabel("Text", tab), 0, 0);
    grid->addWidget(Text1, 0, 1, 1, 3);
    grid->addWidget(new QLabel("Fontname", tab), 1, 0);
    grid->addWidget(CboName, 1, 1);
    grid->addWidget(new QLabel("Fontsize", tab), 1, 2);
    grid->addWidget(CboSize, 1, 3);
    grid->addWidget(OptTab0[0], 2, 0);
    grid->addWidget(new QLabel("(see the Texture tab)", tab), 2, 1);
    grid->addWidget(OptTab0[1], 3, 0);
    grid->addWidget(CmdSolCol[0], 3, 1, Qt::AlignLeft);
    grid->addWidget(OptTab0[2], 4, 0);
    grid->addWidget(gradientRow(0, tab), 4, 1, 1, 3);
    grid->addWidget(OptTab0[3], 5, 0);
    grid->setRowStretch(6, 1);
    return tab;
}

QWidget* LogoMan::buildTextureTab() {
    auto* tab = new QWidget;
    const LogoSettings d;
    ChkTexDefined = check("ChkTexDefined", "Border Texture",
                          "A click on a texture sets the border's texture", tab);
    ChkTex = check("ChkTex", "Use deforming Textures", nullptr, tab);
    HScrDL[0] = slider("HScrDL_0", 0, 20, d.fontTexture.amplitude, tab);
    HScrDL[1] = slider("HScrDL_1", 4, 128, d.fontTexture.wavelength, tab);
    CmdLoad = new QPushButton("Load", tab);
    CmdLoad->setObjectName("CmdLoad");
    CmdLoad->setToolTip("Load Texture from any Drive");
    fontTexturePreview_ = new QLabel(tab);
    borderTexturePreview_ = new QLabel(tab);
    for (QLabel* l : {fontTexturePreview_, borderTexturePreview_}) {
        l->setFixedSize(40, 40);
        l->setFrameShape(QFrame::Box);
    }
    // The fixed textures: every picture of the textures folder.
    auto* fixed = new QWidget(tab);
    auto* fixedGrid = new QGridLayout(fixed);
    fixedGrid->setContentsMargins(0, 0, 0, 0);
    const QStringList names = TextureFiles(textureFolder_, "*.jpg;*.gif;*.bmp;*.png");
    for (const QString& name : names) {
        const QString path = textureFolder_ + '/' + name;
        const Bits t = ReadTexturePicture(path);
        if (t.empty()) continue;
        auto* b = new QToolButton(fixed);
        b->setObjectName(QStringLiteral("Texture_%1").arg(TextureButtons.size()));
        b->setToolTip(CutBefore(name, "."));
        b->setIcon(QIcon(QPixmap::fromImage(BitsImage(t).scaled(32, 32))));
        b->setIconSize(QSize(32, 32));
        connect(b, &QToolButton::clicked, this, [this, path] { pickTexture(path); });
        fixedGrid->addWidget(b, int(TextureButtons.size()) / 8, int(TextureButtons.size()) % 8);
        TextureButtons.push_back(b);
    }

    auto* grid = new QGridLayout(tab);
    grid->addWidget(fixed, 0, 0, 1, 4);
    grid->addWidget(CmdLoad, 1, 0);
    grid->addWidget(ChkTexDefined, 1, 1);
    grid->addWidget(new QLabel("Font", tab), 1, 2, Qt::AlignRight);
    grid->addWidget(fontTexturePreview_, 1, 3);
    grid->addWidget(ChkTex, 2, 0, 1, 2);
    grid->addWidget(new QLabel("Border", tab), 2, 2, Qt::AlignRight);
    grid->addWidget(borderTexturePreview_, 2, 3);
    grid->addWidget(new QLabel("Wave height", tab), 3, 0);
    grid->addWidget(HScrDL[0], 3, 1);
    grid->addWidget(new QLabel("Wave length", tab), 4, 0);
    grid->addWidget(HScrDL[1], 4, 1);
    grid->setRowStretch(5, 1);
    connect(CmdLoad, &QPushButton::clicked, this, [this] {
        const QString path = DocumentDialogs::AskOpenName(
            this, "Load Texture", textureFolder_, QStringLiteral("Pictures|") + kTexturePattern);
        if (!path.isEmpty()) LoadTextureFile(path);
    });
    return tab;
}

QWidget* LogoMan::buildBorderTab() {
    auto* tab = new QWidget;
    const LogoSettings d;
    ChkBorder = check("ChkBorder", "Border", "Border arround the Font", tab);
    ChkBorder->setChecked(d.border);
    TxtBordersize = spin("TxtBordersize", 0, 50, d.borderSize, "Size of the Border", tab);
    ChkLeft = check("ChkLeft", "Left", nullptr, tab);
    ChkRight = check("ChkRight", "Right", nullptr, tab);
    ChkTop = check("ChkTop", "Top", nullptr, tab);
    ChkBottom = check("ChkBottom", "Bottom", nullptr, tab);
    for (QCheckBox* c : {ChkLeft, ChkRight, ChkTop, ChkBottom})
        c->setChecked(true);
    ChkGlow = check("ChkGlow", "Glow", "Create glowing Borders", tab);
    auto* group = new QButtonGroup(tab);
    OptTab1 = {option("OptTab1_0", "Fade", "Fade between Font and Background", tab),
               option("OptTab1_1", "Gradient", "Multicolor Fonts", tab),
               option("OptTab1_2", "Solid Color", "Single Color Font", tab),
               option("OptTab1_3", "Texture", "Use picture Overlays", tab)};
    for (int i = 0; i < 4; ++i)
        group->addButton(OptTab1[i], i);
    OptTab1[int(d.borderFill)]->setChecked(true);
    CmdSolCol[1] = well("CmdSolCol_1", d.borderColour, tab);

    auto* grid = new QGridLayout(tab);
    grid->addWidget(ChkBorder, 0, 0);
    auto* size = new QHBoxLayout;
    size->addWidget(new QLabel("Size", tab));
    size->addWidget(TxtBordersize);
    grid->addLayout(size, 0, 1);
    auto* sides = new QHBoxLayout;
    for (QCheckBox* c : {ChkLeft, ChkRight, ChkTop, ChkBottom, ChkGlow})
        sides->addWidget(c);
    sides->addStretch();
    grid->addLayout(sides, 0, 2, 1, 2);
    grid->addWidget(OptTab1[0], 1, 0);
    grid->addWidget(OptTab1[1], 2, 0);
    grid->addWidget(gradientRow(1, tab), 2, 1, 1, 3);
    grid->addWidget(OptTab1[2], 3, 0);
    grid->addWidget(CmdSolCol[1], 3, 1, Qt::AlignLeft);
    grid->addWidget(OptTab1[3], 4, 0);
    grid->addWidget(new QLabel("(see the Texture tab)", tab), 4, 1, 1, 2);
    grid->setRowStretch(5, 1);
    return tab;
}

QWidget* LogoMan::buildBackgroundTab() {
    auto* tab = new QWidget;
    const LogoSettings d;
    auto* group = new QButtonGroup(tab);
    OptTab2 = {option("OptTab2_0", "Picture", "Use a Backgoundpicture", tab),
               option("OptTab2_1", "Solid Color", "Single Color Background", tab),
               option("OptTab2_2", "Gradient", "Multicolor Background", tab)};
    for (int i = 0; i < 3; ++i)
        group->addButton(OptTab2[i], i);
    OptTab2[int(d.background)]->setChecked(true);
    CmdBackcolor = well("CmdBackcolor", d.backColour, tab);
    CmdBackground = new QPushButton("Load", tab);
    CmdBackground->setObjectName("CmdBackground");
    CmdBackground->setToolTip("Load a Picture");
    CmdClearBack = new QPushButton("Clear", tab);
    CmdClearBack->setObjectName("CmdClearBack");
    CmdClearBack->setToolTip("Disable Picture");
    ChkTile = check("ChkTile", "Tile", "Tile Picture over Logo", tab);
    ChkShrink = check("ChkShrink", "Shrink", "Shrink Picture to Logosize", tab);
    ChkStretch = check("ChkStretch", "Stretch", "Stretch Picture to Logosize", tab);
    HScrMoveBack = slider("HScrMoveBack", -500, 500, 0, tab);
    VScrMoveBack = slider("VScrMoveBack", -500, 500, 0, tab);

    auto* grid = new QGridLayout(tab);
    grid->addWidget(OptTab2[0], 0, 0);
    auto* pictureRow = new QHBoxLayout;
    for (QWidget* w : std::initializer_list<QWidget*>{CmdBackground, CmdClearBack, ChkTile,
                                                      ChkShrink, ChkStretch})
        pictureRow->addWidget(w);
    pictureRow->addStretch();
    grid->addLayout(pictureRow, 0, 1, 1, 3);
    grid->addWidget(new QLabel("Move", tab), 1, 0, Qt::AlignRight);
    grid->addWidget(HScrMoveBack, 1, 1);
    grid->addWidget(VScrMoveBack, 1, 2);
    grid->addWidget(OptTab2[1], 2, 0);
    grid->addWidget(CmdBackcolor, 2, 1, Qt::AlignLeft);
    grid->addWidget(OptTab2[2], 3, 0);
    grid->addWidget(gradientRow(2, tab), 3, 1, 1, 3);
    grid->setRowStretch(4, 1);
    connect(CmdBackground, &QPushButton::clicked, this, [this] {
        const QString path = DocumentDialogs::AskOpenName(this, "Load a Picture", textureFolder_,
                                                          "Pictures|*.jpg;*.gif;*.bmp;*.png");
        if (!path.isEmpty()) LoadBackgroundFile(path);
    });
    connect(CmdClearBack, &QPushButton::clicked, this, [this] {
        backPicture_ = Bits();
        ++backPictureGeneration_;
        Redraw();
    });
    return tab;
}

QWidget* LogoMan::buildEffectsTab() {
    auto* tab = new QWidget;
    CboFX = new QComboBox(tab);
    CboFX->setObjectName("CboFX");
    CboFX->addItems({"Monochrome", "Blur", "DePixel", "Negative"});
    CboFX->setPlaceholderText("Filter");
    CboFX->setCurrentIndex(-1);
    CmdRedraw = new QPushButton("Undo All", tab);
    CmdRedraw->setObjectName("CmdRedraw");
    CmdBend[0] = new QPushButton("Bend Vertical", tab);
    CmdBend[0]->setObjectName("CmdBend_0");
    CmdBend[1] = new QPushButton("Bend Horizental", tab);
    CmdBend[1]->setObjectName("CmdBend_1");
    CmdShadow = new QPushButton("Shadow", tab);
    CmdShadow->setObjectName("CmdShadow");
    CmdHover = new QPushButton("Hover", tab);
    CmdHover->setObjectName("CmdHover");
    CmdHover->setToolTip("Windows calls this Shadow");
    ChkLight = check("ChkLight", "Backlight", "Turn Backgroundlight ON/OFF", tab);
    CmdLightCol = well("CmdLightCol", 0x80FFFF, tab);
    ChkReal = check("ChkReal", "Front", "Turn realistic lighteffect on/off", tab);
    HScrDist = slider("HScrDist", 1, 60, 12, tab);
    HScrStrnght = slider("HScrStrnght", 1, 100, 60, tab);
    PicMagnify = new QLabel(tab);
    PicMagnify->setObjectName("PicMagnify");
    PicMagnify->setFixedSize(200, 60);
    PicMagnify->setFrameShape(QFrame::Box);
    PicMagnify->setMouseTracking(true);
    PicMagnify->installEventFilter(this);
    auto* note = new QLabel(kBacklightNote, tab);
    note->setWordWrap(true);

    auto* grid = new QGridLayout(tab);
    grid->addWidget(CboFX, 0, 0);
    grid->addWidget(CmdRedraw, 0, 1);
    grid->addWidget(CmdBend[0], 0, 2);
    grid->addWidget(CmdBend[1], 0, 3);
    grid->addWidget(CmdShadow, 1, 0);
    grid->addWidget(CmdHover, 1, 1);
    grid->addWidget(ChkLight, 2, 0);
    grid->addWidget(CmdLightCol, 2, 1, Qt::AlignLeft);
    grid->addWidget(ChkReal, 2, 2);
    grid->addWidget(new QLabel("Distance", tab), 3, 0);
    grid->addWidget(HScrDist, 3, 1);
    grid->addWidget(new QLabel("Strength", tab), 4, 0);
    grid->addWidget(HScrStrnght, 4, 1);
    grid->addWidget(PicMagnify, 3, 2, 2, 2);
    grid->addWidget(note, 5, 0, 1, 4);
    return tab;
}

QWidget* LogoMan::buildSettingsFrame() {
    auto* frame = new QGroupBox("Settings", this);
    const LogoSettings d;
    ChkEmbosFont = check("ChkEmbosFont", "Embos", "Embos the Font", frame);
    ChkEngraveFont = check("ChkEngraveFont", "Engrave", "Engrave the Font", frame);
    TxtEmEn = spin("TxtEmEn", 1, 20, d.emEnDistance, "Points away from Font", frame);
    TxtEmEn->setSuffix(" pt");
    ChkEmEnBox = check("ChkEmEnBox", "Box", "Box or Outline", frame);
    ChkInvert = check("ChkInvert", "Invert", nullptr, frame);
    ChkMirror = check("ChkMirror", "Mirror", "Create Mirror Fonts", frame);
    ChkAlpha = check("ChkAlpha", "Alpha Blend", nullptr, frame);
    TxtAlpha = spin("TxtAlpha", 0, 100, d.alphaPercent, "Transparency in %", frame);
    TxtAlpha->setSuffix(" %");
    ChkAlias = check("ChkAlias", "Anti Alias", "Softter Fonts", frame);
    cmdSetTransparent = new QPushButton("Transparent Color", frame);
    cmdSetTransparent->setObjectName("cmdSetTransparent");
    pTransparent = new QLabel("None", frame);
    pTransparent->setObjectName("pTransparent");
    pTransparent->setFixedSize(40, 20);
    pTransparent->setAlignment(Qt::AlignCenter);
    pTransparent->setFrameShape(QFrame::Box);

    auto* grid = new QGridLayout(frame);
    grid->addWidget(ChkEmbosFont, 0, 0);
    grid->addWidget(ChkEngraveFont, 0, 1);
    grid->addWidget(TxtEmEn, 1, 0);
    grid->addWidget(ChkEmEnBox, 1, 1);
    grid->addWidget(ChkInvert, 2, 0);
    grid->addWidget(ChkMirror, 2, 1);
    grid->addWidget(ChkAlpha, 3, 0);
    grid->addWidget(TxtAlpha, 3, 1);
    grid->addWidget(ChkAlias, 4, 0, 1, 2);
    grid->addWidget(cmdSetTransparent, 5, 0);
    grid->addWidget(pTransparent, 5, 1);
    grid->setRowStretch(6, 1);
    connect(cmdSetTransparent, &QPushButton::clicked, this, [this] {
        int32_t c = hasKey_ ? key_ : 0xFFFFFF;
        if (TextDialogHooks::ChooseColour && TextDialogHooks::ChooseColour(this, c))
            SetTransparentColour(c);
    });
    return frame;
}

QString LogoMan::CutBefore(const QString& text, const QString& marker) {
    const qsizetype at = text.indexOf(marker);
    return at < 0 ? text : text.left(at);
}

} // namespace ostrivex
