// LogoMan: what the controls do: the settings they make, the redraw, the effects, the
// backlight under the mouse, and the end of the dialog.
#include "text/logoman.h"

#include "document/dialogs.h"
#include "text/layercanvas.h"
#include "text/textcontrols.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>

#include <algorithm>

namespace ostrivex {

namespace {

template <size_t N> int checkedIndex(const std::array<QRadioButton*, N>& group) {
    for (size_t i = 0; i < N; ++i)
        if (group[i]->isChecked()) return int(i);
    return 0;
}

QPixmap texturePixmap(const Bits& t, QSize size) {
    if (t.empty()) return QPixmap();
    return QPixmap::fromImage(BitsImage(t))
        .scaled(size, Qt::KeepAspectRatio, Qt::FastTransformation);
}

} // namespace

void LogoMan::connectRedraw() {
    const auto redraw = [this] { Redraw(); };
    connect(Text1, &QLineEdit::textChanged, this, redraw);
    for (QComboBox* c : {CboName, CboSize, CboGrStyle[0], CboGrStyle[1], CboGrStyle[2]})
        connect(c, &QComboBox::currentTextChanged, this, redraw);
    for (QSpinBox* s : {TxtBordersize, TxtEmEn, TxtAlpha})
        connect(s, &QSpinBox::valueChanged, this, redraw);
    for (QSlider* s : {HScrDL[0], HScrDL[1], HScrMoveBack, VScrMoveBack})
        connect(s, &QSlider::valueChanged, this, redraw);
    for (QCheckBox* c : {ChkTex, ChkBorder, ChkLeft, ChkRight, ChkTop, ChkBottom, ChkGlow, ChkTile,
                         ChkShrink, ChkStretch, ChkEmbosFont, ChkEngraveFont, ChkEmEnBox, ChkInvert,
                         ChkMirror, ChkAlpha, ChkAlias})
        connect(c, &QCheckBox::toggled, this, redraw);
    for (QRadioButton* r : OptTab0)
        connect(r, &QRadioButton::toggled, this, [this](bool on) {
            if (on) Redraw();
        });
    for (QRadioButton* r : OptTab1)
        connect(r, &QRadioButton::toggled, this, [this](bool on) {
            if (on) Redraw();
        });
    for (QRadioButton* r : OptTab2)
        connect(r, &QRadioButton::toggled, this, [this](bool on) {
            if (on) Redraw();
        });
    for (ColourWell* w : {CmdSolCol[0], CmdSolCol[1], CmdBackcolor})
        connect(w, &ColourWell::colourChanged, this, redraw);
    for (ColourWell* w : CmdGrCol)
        connect(w, &ColourWell::colourChanged, this, redraw);
    // The size: the fields and the grips follow each other.
    for (QSpinBox* s : {TxtSizeX, TxtSizeY})
        connect(s, &QSpinBox::valueChanged, this, [this] {
            Pic->SetLayerSize(QSize(TxtSizeX->value(), TxtSizeY->value()));
            Redraw();
        });
    connect(Pic, &LayerCanvas::layerResized, this, [this](int w, int h) {
        const QSignalBlocker bx(TxtSizeX), by(TxtSizeY);
        TxtSizeX->setValue(w);
        TxtSizeY->setValue(h);
        Redraw();
    });
    // The effects work on the drawn logo.
    connect(CboFX, &QComboBox::activated, this, &LogoMan::ApplyFX);
    connect(CmdRedraw, &QPushButton::clicked, this, redraw);
    connect(CmdBend[0], &QPushButton::clicked, this, [this] {
        BendLogo(state_, true);
        showPicture(state_.picture);
    });
    connect(CmdBend[1], &QPushButton::clicked, this, [this] {
        BendLogo(state_, false);
        showPicture(state_.picture);
    });
    connect(CmdShadow, &QPushButton::clicked, this, [this] {
        MakeShadow(state_);
        showPicture(state_.picture);
    });
    connect(CmdHover, &QPushButton::clicked, this, [this] {
        MakeHover(state_);
        showPicture(state_.picture);
    });
    // The backlight follows the mouse over the preview and over PicMagnify.
    connect(Pic, &LayerCanvas::mouseOverLayer, this, &LogoMan::MoveLight);
    const auto relight = [this] {
        if (ChkLight->isChecked() && light_.x() >= 0)
            MoveLight(light_);
        else
            showPicture(state_.picture);
    };
    connect(ChkLight, &QCheckBox::toggled, this, relight);
    connect(ChkReal, &QCheckBox::toggled, this, relight);
    connect(HScrDist, &QSlider::valueChanged, this, relight);
    connect(HScrStrnght, &QSlider::valueChanged, this, relight);
    connect(CmdLightCol, &ColourWell::colourChanged, this, relight);
    connect(CmdOK, &QPushButton::clicked, this, &LogoMan::CmdOK_Click);
    connect(Command2, &QPushButton::clicked, this,
            [this] { SaveTextPictureAs(this, shown_, QStringLiteral("Save As")); });
    connect(Command3, &QPushButton::clicked, this, &QDialog::reject);
}

LogoSettings LogoMan::settings() const {
    LogoSettings s;
    s.width = TxtSizeX->value();
    s.height = TxtSizeY->value();
    s.text = Text1->text();
    s.fontName = CboName->currentText();
    s.fontSize = std::clamp(FieldNumber(CboSize->currentText(), s.fontSize), 1, 12000);
    s.fontFill = LogoFontFill(checkedIndex(OptTab0));
    s.fontColour = CmdSolCol[0]->colour();
    s.fontGradient = {GradientStyle(std::max(0, CboGrStyle[0]->currentIndex())),
                      CmdGrCol[0]->colour(), CmdGrCol[1]->colour()};
    s.fontTexture = fontTexture_;
    s.border = ChkBorder->isChecked();
    s.borderSize = TxtBordersize->value();
    s.left = ChkLeft->isChecked();
    s.right = ChkRight->isChecked();
    s.top = ChkTop->isChecked();
    s.bottom = ChkBottom->isChecked();
    s.glow = ChkGlow->isChecked();
    s.borderFill = LogoBorderFill(checkedIndex(OptTab1));
    s.borderColour = CmdSolCol[1]->colour();
    s.borderGradient = {GradientStyle(std::max(0, CboGrStyle[1]->currentIndex())),
                        CmdGrCol[2]->colour(), CmdGrCol[3]->colour()};
    s.borderTexture = borderTexture_;
    for (LogoTexture* t : {&s.fontTexture, &s.borderTexture}) {
        t->deform = ChkTex->isChecked();
        t->amplitude = HScrDL[0]->value();
        t->wavelength = HScrDL[1]->value();
    }
    s.background = LogoBackground(checkedIndex(OptTab2));
    s.backColour = CmdBackcolor->colour();
    s.backGradient = {GradientStyle(std::max(0, CboGrStyle[2]->currentIndex())),
                      CmdGrCol[4]->colour(), CmdGrCol[5]->colour()};
    s.backPicture = backPicture_;
    s.tile = ChkTile->isChecked();
    s.shrink = ChkShrink->isChecked();
    s.stretch = ChkStretch->isChecked();
    s.moveX = HScrMoveBack->value();
    s.moveY = VScrMoveBack->value();
    s.emboss = ChkEmbosFont->isChecked();
    s.engrave = ChkEngraveFont->isChecked();
    s.emEnDistance = TxtEmEn->value();
    s.emEnBox = ChkEmEnBox->isChecked();
    s.invert = ChkInvert->isChecked();
    s.mirror = ChkMirror->isChecked();
    s.alpha = ChkAlpha->isChecked();
    s.alphaPercent = TxtAlpha->value();
    s.antiAlias = ChkAlias->isChecked();
    return s;
}

void LogoMan::Redraw() {
    const LogoSettings s = settings();
    const BackgroundKey key{s.width, s.height, int(s.background), backPictureGeneration_,
                            s.moveX, s.moveY,  s.backColour,      s.backGradient,
                            s.tile,  s.shrink, s.stretch};
    if (!(key == backKey_) || background_.empty()) {
        background_ = PaintLogoBackground(s, s.width, s.height);
        backKey_ = key;
    }
    state_ = DrawLogo(s, background_);
    {
        const QSignalBlocker block(CboFX);
        CboFX->setCurrentIndex(-1);
    }
    if (ChkLight->isChecked() && light_.x() >= 0)
        MoveLight(light_);
    else
        showPicture(state_.picture);
}

void LogoMan::showPicture(const Bits& picture) {
    shown_ = picture;
    Pic->SetPicture(shown_);
    showMagnify();
}

void LogoMan::showMagnify() {
    QPixmap pm = QPixmap::fromImage(BitsImage(shown_).scaled(
        PicMagnify->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
    if (ChkLight->isChecked() && light_.x() >= 0 && !shown_.empty()) {
        // ShpSun: the light's place.
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        const double k = double(pm.width()) / std::max(1, shown_.width());
        const QPointF at(light_.x() * k, light_.y() * k);
        p.setPen(QPen(Qt::black, 1));
        p.setBrush(QColor(255, 220, 0));
        p.drawEllipse(at, 4, 4);
    }
    PicMagnify->setPixmap(pm);
}

void LogoMan::ApplyFX(int index) {
    if (index < 0 || index > int(LogoFX::Negative)) return;
    ApplyLogoFX(state_.picture, LogoFX(index));
    if (ChkLight->isChecked() && light_.x() >= 0)
        MoveLight(light_);
    else
        showPicture(state_.picture);
}

void LogoMan::MoveLight(QPoint at) {
    if (!ChkLight->isChecked()) return;
    light_ = at;
    showPicture(MakeBacklight(state_, at.x(), at.y(), CmdLightCol->colour(), HScrDist->value(),
                              HScrStrnght->value(), ChkReal->isChecked()));
}

bool LogoMan::eventFilter(QObject* watched, QEvent* event) {
    if (watched == PicMagnify && event->type() == QEvent::MouseMove && !shown_.empty()) {
        const QPixmap pm = PicMagnify->pixmap();
        if (!pm.isNull()) {
            // The picture is centred in the label at the scale of its width.
            const auto* me = static_cast<QMouseEvent*>(event);
            const double k = double(pm.width()) / std::max(1, shown_.width());
            const QPointF origin((PicMagnify->width() - pm.width()) / 2.0,
                                 (PicMagnify->height() - pm.height()) / 2.0);
            const QPointF at = (me->position() - origin) / k;
            MoveLight(QPoint(int(at.x()), int(at.y())));
        }
    }
    return QDialog::eventFilter(watched, event);
}

bool LogoMan::LoadTextureFile(const QString& path) {
    const Bits t = ReadTexturePicture(path);
    if (t.empty() || t.width() < 1 || t.height() < 1) {
        DocumentDialogs::Inform(this, QStringLiteral("%1\n%2").arg(kPictureLoadText, path),
                                windowTitle());
        return false;
    }
    const bool border = ChkTexDefined->isChecked();
    (border ? borderTexture_ : fontTexture_).picture = t;
    (border ? borderTexturePreview_ : fontTexturePreview_)
        ->setPixmap(texturePixmap(t, QSize(38, 38)));
    // A texture chosen is a texture used.
    {
        const QSignalBlocker b0(OptTab0[0]), b1(OptTab1[3]);
        (border ? OptTab1[3] : OptTab0[0])->setChecked(true);
    }
    Redraw();
    return true;
}

void LogoMan::pickTexture(const QString& path) {
    LoadTextureFile(path);
}

bool LogoMan::LoadBackgroundFile(const QString& path) {
    const Bits t = ReadTexturePicture(path);
    if (t.empty() || t.width() < 1 || t.height() < 1) {
        DocumentDialogs::Inform(this, QStringLiteral("%1\n%2").arg(kPictureLoadText, path),
                                windowTitle());
        return false;
    }
    backPicture_ = t;
    ++backPictureGeneration_;
    {
        const QSignalBlocker block(OptTab2[0]);
        OptTab2[0]->setChecked(true);
    }
    Redraw();
    return true;
}

void LogoMan::SetTransparentColour(int32_t colour) {
    hasKey_ = true;
    key_ = colour & 0xFFFFFF;
    pTransparent->setText(QString());
    pTransparent->setStyleSheet(QStringLiteral("background-color: rgb(%1, %2, %3);")
                                    .arg(key_ & 0xFF)
                                    .arg((key_ >> 8) & 0xFF)
                                    .arg((key_ >> 16) & 0xFF));
}

void LogoMan::LoadDataFromLayer(const TextRecord& record, int32_t layer) {
    editing_ = layer;
    const LogoSettings s = LogoFromRecord(record, settings());
    {
        const QSignalBlocker b1(Text1), b2(CboName), b3(CboSize);
        Text1->setText(s.text);
        mFonts(CboName, s.fontName, this);
        CboSize->setCurrentText(QString::number(s.fontSize));
    }
    Redraw();
}

void LogoMan::CmdOK_Click() {
    hide();
    QCoreApplication::processEvents();
    const LogoSettings s = settings();
    FinishedText done;
    done.record = LogoRecord(s);
    done.picture = shown_;
    done.transparentColor = transparentColour();
    done.name = LogoLayerName(CutBefore(s.text, "\n"));
    if (sink_) {
        if (editing_ > 0)
            sink_->UpdateTextLayer(editing_, done);
        else
            sink_->AddTextLayer(done);
    }
    accept();
}

} // namespace ostrivex
