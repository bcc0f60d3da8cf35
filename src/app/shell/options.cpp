#include "app/shell/options.h"

#include "app/colour/pickcolour.h"
#include "app/panels/updown.h"

#include "app/settings/settings.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImage>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivex {

namespace {

QColor fromBgr(int c) {
    return QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
}

// A text box bound to an up-down control: any change of the text moves the control, and
// the control rewrites the text.
void bind(QLineEdit* text, QScrollBar* updown, const std::function<void()>& redraw) {
    QObject::connect(text, &QLineEdit::textChanged, updown, [=](const QString& t) {
        bool ok = false;
        const int v = t.trimmed().toInt(&ok);
        if (!ok) return;
        QSignalBlocker block(updown);
        updown->setValue(std::clamp(v, updown->minimum(), updown->maximum()));
        redraw();
    });
    QObject::connect(updown, &QScrollBar::valueChanged, text, [=](int v) {
        text->setText(QString::number(v));
        redraw();
    });
}

} // namespace

fOptions::fOptions(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("fOptions"));
    setWindowTitle(QStringLiteral("Thumbnails Options"));

    txtThumbnailWidth = new QLineEdit(this);
    txtThumbnailHeight = new QLineEdit(this);
    for (QLineEdit* t : {txtThumbnailWidth, txtThumbnailHeight}) {
        t->setValidator(new QIntValidator(0, 9999, t));
        t->setMaximumWidth(60);
    }
    WWS = MakeUpDown(this, kMinSide, kMaxSide);
    HHS = MakeUpDown(this, kMinSide, kMaxSide);

    optNormal = new QRadioButton(QStringLiteral("Normal"), this);
    optResample = new QRadioButton(QStringLiteral("Resample"), this);
    optThumbnailQuality = new QButtonGroup(this);
    optThumbnailQuality->addButton(optNormal, 0);
    optThumbnailQuality->addButton(optResample, 1);

    chkThumbnailShowResolution = new QCheckBox(QStringLiteral("Show Resolution"), this);
    chkThumbnailShowFilename = new QCheckBox(QStringLiteral("Show Filename"), this);
    pThumbnailWorkspaceBackground = new QToolButton(this);
    pThumbnailWorkspaceBackground->setFixedSize(40, 22);
    pThumbnailWorkspaceBackground->setToolTip(QStringLiteral("Workspace background"));

    picWorkspace = new QFrame(this);
    picWorkspace->setFrameShape(QFrame::StyledPanel);
    picWorkspace->setFixedSize(kMaxSide + 24, kMaxSide + 64);
    picWorkspace->setAutoFillBackground(true);
    picThumb = new QLabel(picWorkspace);
    picThumb->setObjectName(QStringLiteral("picThumb"));
    picThumb->setFrameShape(QFrame::Box);
    picThumb->setAlignment(Qt::AlignCenter);
    picSize = new QLabel(picWorkspace);
    picSize->setObjectName(QStringLiteral("picSize"));
    picSize->setAlignment(Qt::AlignHCenter | Qt::AlignTop);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);

    // Layout: the settings on the left, the sample on the right, the buttons below.
    auto* size = new QGroupBox(QStringLiteral("Thumbnail Size"), this);
    auto* sizeGrid = new QGridLayout(size);
    sizeGrid->addWidget(new QLabel(QStringLiteral("Width:"), size), 0, 0);
    sizeGrid->addWidget(txtThumbnailWidth, 0, 1);
    sizeGrid->addWidget(WWS, 0, 2);
    sizeGrid->addWidget(new QLabel(QStringLiteral("Height:"), size), 1, 0);
    sizeGrid->addWidget(txtThumbnailHeight, 1, 1);
    sizeGrid->addWidget(HHS, 1, 2);
    auto* quality = new QGroupBox(QStringLiteral("Quality"), this);
    auto* qualityBox = new QVBoxLayout(quality);
    qualityBox->addWidget(optNormal);
    qualityBox->addWidget(optResample);
    auto* show = new QGroupBox(QStringLiteral("Show"), this);
    auto* showBox = new QVBoxLayout(show);
    showBox->addWidget(chkThumbnailShowResolution);
    showBox->addWidget(chkThumbnailShowFilename);
    auto* workspace = new QHBoxLayout;
    workspace->addWidget(new QLabel(QStringLiteral("Workspace:"), this));
    workspace->addWidget(pThumbnailWorkspaceBackground);
    workspace->addStretch();
    auto* left = new QVBoxLayout;
    left->addWidget(size);
    left->addWidget(quality);
    left->addWidget(show);
    left->addLayout(workspace);
    left->addStretch();
    auto* top = new QHBoxLayout;
    top->addLayout(left);
    top->addWidget(picWorkspace);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);

    // The fields take the stored values; values out of range are brought into it.
    WWS->setValue(std::clamp<int>(Settings.ThumbWidth, kMinSide, kMaxSide));
    HHS->setValue(std::clamp<int>(Settings.ThumbHeight, kMinSide, kMaxSide));
    txtThumbnailWidth->setText(QString::number(WWS->value()));
    txtThumbnailHeight->setText(QString::number(HHS->value()));
    (Settings.ThumbQuality == 1 ? optResample : optNormal)->setChecked(true);
    chkThumbnailShowResolution->setChecked(Settings.ThumbShowResolution != 0);
    chkThumbnailShowFilename->setChecked(Settings.ThumbShowFilename != 0);
    setWorkspaceColor(Settings.ThumbWorkspaceColor);

    auto redraw = [this] { redrawSample(); };
    bind(txtThumbnailWidth, WWS, redraw);
    bind(txtThumbnailHeight, HHS, redraw);
    connect(optThumbnailQuality, &QButtonGroup::idClicked, this, redraw);
    connect(chkThumbnailShowResolution, &QCheckBox::toggled, this, redraw);
    connect(chkThumbnailShowFilename, &QCheckBox::toggled, this, redraw);
    connect(pThumbnailWorkspaceBackground, &QToolButton::clicked, this, &fOptions::pickColour);
    connect(cmdOK, &QPushButton::clicked, this, &fOptions::onOK);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    redrawSample();
}

int fOptions::thumbWidth() const {
    return WWS->value();
}
int fOptions::thumbHeight() const {
    return HHS->value();
}

void fOptions::setWorkspaceColor(int bgr) {
    workspaceColor_ = bgr & 0xFFFFFF;
    const QColor c = fromBgr(workspaceColor_);
    pThumbnailWorkspaceBackground->setStyleSheet(
        QStringLiteral("QToolButton { background-color: %1; border: 1px solid black; }")
            .arg(c.name()));
    redrawSample();
}

void fOptions::pickColour() {
    int32_t colour = workspaceColor_;
    if (PickColour(this, colour, QStringLiteral("Workspace Background")))
        setWorkspaceColor(colour);
}

QPixmap fOptions::samplePicture(int width, int height, bool resample) {
    // A small landscape: sky, sun and hills, drawn once at a size larger than any thumbnail.
    static const QImage source = [] {
        QImage img(320, 240, QImage::Format_RGB32);
        QPainter p(&img);
        QLinearGradient sky(0, 0, 0, 160);
        sky.setColorAt(0, QColor(70, 120, 200));
        sky.setColorAt(1, QColor(190, 215, 240));
        p.fillRect(img.rect(), sky);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(250, 210, 60));
        p.drawEllipse(QPoint(240, 60), 28, 28);
        p.setBrush(QColor(60, 130, 60));
        p.drawEllipse(QRect(-80, 140, 300, 200));
        p.setBrush(QColor(40, 100, 45));
        p.drawEllipse(QRect(120, 160, 320, 180));
        return img;
    }();
    const Qt::TransformationMode mode =
        resample ? Qt::SmoothTransformation : Qt::FastTransformation;
    return QPixmap::fromImage(source.scaled(width, height, Qt::KeepAspectRatio, mode));
}

void fOptions::redrawSample() {
    if (!picThumb) return;
    QPalette pal = picWorkspace->palette();
    pal.setColor(QPalette::Window, fromBgr(workspaceColor_));
    picWorkspace->setPalette(pal);

    const int w = thumbWidth(), h = thumbHeight();
    picThumb->setGeometry(12, 12, w, h);
    picThumb->setPixmap(samplePicture(w - 2, h - 2, optResample->isChecked()));

    QStringList caption;
    if (chkThumbnailShowResolution->isChecked()) caption << QStringLiteral("320 x 240");
    if (chkThumbnailShowFilename->isChecked()) caption << QStringLiteral("sample.bmp");
    picSize->setText(caption.join(u'\n'));
    picSize->setGeometry(12, 12 + h + 2, std::max(w, 80), 36);
    picSize->setVisible(!caption.isEmpty());
}

void fOptions::onOK() {
    Settings.ThumbWidth = static_cast<std::int16_t>(thumbWidth());
    Settings.ThumbHeight = static_cast<std::int16_t>(thumbHeight());
    Settings.ThumbQuality = static_cast<std::int16_t>(optResample->isChecked() ? 1 : 0);
    Settings.ThumbShowResolution = chkThumbnailShowResolution->isChecked() ? 1 : 0;
    Settings.ThumbShowFilename = chkThumbnailShowFilename->isChecked() ? 1 : 0;
    Settings.ThumbWorkspaceColor = workspaceColor_;
    emit applied();
    SaveSettings();
    accept();
}

} // namespace ostrivex
