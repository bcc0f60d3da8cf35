#include "app/filters/fpaletteapply.h"

#include "app/filters/palettewidgets.h"
#include "app/panels/updown.h"
#include "pixel/bitfilter.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivex {

PaletteRecord Palette = VgaPalette();
QString fPaletteApply::lastFolder;

namespace {

// "label|patterns" pairs to Qt's "label" filters (the label already names the patterns).
QString qtFilter(const char* filter) {
    return QString::fromLatin1(filter).section(QLatin1Char('|'), 0, 0);
}

} // namespace

fPaletteApply::fPaletteApply(const Bits& image, const Region* region, const QString& palettesFolder,
                             PaletteRecord& palette, QWidget* parent)
    : QDialog(parent), image_(image), region_(region), palettesFolder_(palettesFolder),
      palette_(palette) {
    setObjectName(QStringLiteral("fPaletteApply"));
    setWindowTitle(QStringLiteral("Apply palette"));
    palette_.PaletteCount = std::clamp(palette_.PaletteCount, 0, 256);

    iPal = new PalettePicture(palette_, this);
    shpSelect = new QFrame(iPal);
    shpSelect->setObjectName(QStringLiteral("shpSelect"));
    shpSelect->setFrameShape(QFrame::Box);
    shpSelect->setLineWidth(2);
    shpSelect->setStyleSheet(QStringLiteral("QFrame { border: 2px solid white; }"));
    shpSelect->setAttribute(Qt::WA_TransparentForMouseEvents);
    tmrSelect = new QTimer(this);
    tmrSelect->setInterval(400);
    connect(tmrSelect, &QTimer::timeout, this,
            [this] { shpSelect->setVisible(!shpSelect->isVisible()); });

    auto* lblIndex = new QLabel(QStringLiteral("Color index"), this);
    sbIndex = new QScrollBar(Qt::Horizontal, this);
    sbIndex->setRange(0, 255);
    lblIndexV = new QLabel(this);
    chkColors = new QCheckBox(QStringLiteral("Max. colors"), this);
    sbColors = new QScrollBar(Qt::Horizontal, this);
    sbColors->setRange(1, 256);
    lblColorsV = new QLabel(this);
    chkDither = new QCheckBox(QStringLiteral("Dither"), this);

    auto* grid = new QGridLayout;
    grid->addWidget(lblIndex, 0, 0);
    grid->addWidget(sbIndex, 0, 1);
    grid->addWidget(lblIndexV, 0, 2);
    grid->addWidget(chkColors, 1, 0);
    grid->addWidget(sbColors, 1, 1);
    grid->addWidget(lblColorsV, 1, 2);
    grid->setColumnMinimumWidth(1, 160);

    auto* rgbRow = new QHBoxLayout;
    const char* names[3] = {"R", "G", "B"};
    for (int c = 0; c < 3; ++c) {
        txtRGB[c] = new QLineEdit(this);
        txtRGB[c]->setValidator(new QIntValidator(0, 999, txtRGB[c]));
        txtRGB[c]->setMaximumWidth(44);
        txtRGBUD[c] = MakeUpDown(this, 0, 255);
        rgbRow->addWidget(new QLabel(QString::fromLatin1(names[c]), this));
        rgbRow->addWidget(txtRGB[c]);
        rgbRow->addWidget(txtRGBUD[c]);
        connect(txtRGB[c], &QLineEdit::textEdited, this, [this, c](const QString& t) {
            bool ok = false;
            const int v = t.trimmed().toInt(&ok);
            if (ok) onRgbEdited(c, v);
        });
        connect(txtRGBUD[c], &QScrollBar::valueChanged, this,
                [this, c](int v) { onRgbEdited(c, v); });
    }
    lblCur = new PaletteSwatch(this);
    auto* lblCurText = new QLabel(QStringLiteral("Double click to apply to palette color"), this);
    lblCurText->setWordWrap(true);
    rgbRow->addWidget(lblCur);
    rgbRow->addWidget(lblCurText, 1);

    cmd[0] = new QPushButton(QStringLiteral("Load Palette"), this);
    cmd[1] = new QPushButton(QStringLiteral("Save Palette"), this);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdOK->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmd[0]);
    buttons->addWidget(cmd[1]);
    buttons->addStretch(1);
    buttons->addWidget(chkDither);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto* right = new QVBoxLayout;
    right->addLayout(grid);
    right->addLayout(rgbRow);
    right->addStretch(1);
    auto* top = new QHBoxLayout;
    top->addWidget(iPal);
    top->addLayout(right, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addLayout(buttons);

    // The start state: the palette's own count, entry 0.
    {
        QSignalBlocker b1(sbColors), b2(chkColors);
        sbColors->setValue(std::max(palette_.PaletteCount, 1));
        chkColors->setChecked(true);
    }
    palette_.PaletteCount = sbColors->value();
    lblColorsV->setText(QString::number(sbColors->value()));

    connect(iPal, &PalettePicture::entryClicked, sbIndex, &QScrollBar::setValue);
    connect(sbIndex, &QScrollBar::valueChanged, this, &fPaletteApply::onIndexChanged);
    connect(sbColors, &QScrollBar::valueChanged, this, &fPaletteApply::onColoursChanged);
    connect(chkColors, &QCheckBox::toggled, this, &fPaletteApply::onColoursChanged);
    connect(lblCur, &PaletteSwatch::applyRequested, this, &fPaletteApply::ApplySwatch);
    connect(cmd[0], &QPushButton::clicked, this, &fPaletteApply::LoadPalette);
    connect(cmd[1], &QPushButton::clicked, this, &fPaletteApply::SavePalette);
    connect(cmdOK, &QPushButton::clicked, this, &fPaletteApply::onOK);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    onIndexChanged(0);
    tmrSelect->start();
}

int fPaletteApply::swatchColour() const {
    const QColor c = lblCur->colour();
    return c.red() | (c.green() << 8) | (c.blue() << 16);
}

void fPaletteApply::setSwatchColour(int bgr) {
    lblCur->setColour(QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF));
}

void fPaletteApply::onIndexChanged(int index) {
    lblIndexV->setText(QString::number(index));
    showEntry();
    const int32_t* e = palette_.PaletteColors[index];
    lblCur->setColour(QColor(e[0], e[1], e[2]));
    placeMarker();
}

// The three fields and their up-down controls show the current entry.
void fPaletteApply::showEntry() {
    const int32_t* e = palette_.PaletteColors[sbIndex->value()];
    for (int c = 0; c < 3; ++c) {
        QSignalBlocker b1(txtRGB[c]), b2(txtRGBUD[c]);
        txtRGB[c]->setText(QString::number(e[c]));
        txtRGBUD[c]->setValue(e[c]);
    }
}

void fPaletteApply::placeMarker() {
    shpSelect->setGeometry(PalettePicture::cellRect(sbIndex->value()).adjusted(-1, -1, 2, 2));
    shpSelect->show();
    shpSelect->raise();
}

void fPaletteApply::onColoursChanged() {
    lblColorsV->setText(QString::number(sbColors->value()));
    palette_.PaletteCount = chkColors->isChecked() ? sbColors->value() : 256;
    iPal->update();
}

// A typed or stepped value, limited to 0..255, goes to the current entry; a field that
// held more shows the limited value.
void fPaletteApply::onRgbEdited(int channel, int value) {
    const int v = std::clamp(value, 0, 255);
    palette_.PaletteColors[sbIndex->value()][channel] = v;
    {
        QSignalBlocker b(txtRGBUD[channel]);
        txtRGBUD[channel]->setValue(v);
    }
    if (txtRGB[channel]->text().trimmed() != QString::number(v)) {
        QSignalBlocker b(txtRGB[channel]);
        txtRGB[channel]->setText(QString::number(v));
    }
    const int32_t* e = palette_.PaletteColors[sbIndex->value()];
    lblCur->setColour(QColor(e[0], e[1], e[2]));
    iPal->update();
}

void fPaletteApply::ApplySwatch() {
    const QColor c = lblCur->colour();
    int32_t* e = palette_.PaletteColors[sbIndex->value()];
    e[0] = c.red();
    e[1] = c.green();
    e[2] = c.blue();
    showEntry();
    iPal->update();
}

QString fPaletteApply::chooseFile(bool save) {
    QString folder = palettesFolder_;
    if (!QFileInfo(palettesFolder_).isDir()) {
        QMessageBox::information(this, windowTitle(), QString::fromLatin1(kFolderMissingText));
        folder = lastFolder;
    }
    QFileDialog dialog(this,
                       QString::fromLatin1(save ? kPaletteFileSaveTitle : kPaletteFileLoadTitle),
                       folder, qtFilter(kPaletteFileDialogFilter));
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(QStringLiteral("pal"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    const QString path = dialog.selectedFiles().first();
    lastFolder = QFileInfo(path).absolutePath();
    return path;
}

void fPaletteApply::LoadPalette() {
    const QString path = chooseFile(false);
    if (!path.isEmpty()) LoadPaletteFrom(path);
}

void fPaletteApply::SavePalette() {
    const QString path = chooseFile(true);
    if (!path.isEmpty()) SavePaletteTo(path);
}

bool fPaletteApply::LoadPaletteFrom(const QString& path) {
    PaletteRecord loaded = palette_;
    if (!ReadPaletteFile(QFile::encodeName(path).toStdString(), loaded)) {
        QMessageBox::information(this, windowTitle(), QString::fromLatin1(kBadFileText));
        return false;
    }
    palette_ = loaded;
    // A count of 0 is taken as 1: the scroll bar has no empty palette.
    {
        QSignalBlocker b1(sbColors), b2(chkColors);
        sbColors->setValue(std::max(palette_.PaletteCount, 1));
        chkColors->setChecked(true);
    }
    onColoursChanged();
    onIndexChanged(sbIndex->value());
    return true;
}

bool fPaletteApply::SavePaletteTo(const QString& path) {
    if (!WritePaletteFile(QFile::encodeName(path).toStdString(), palette_)) {
        QMessageBox::information(this, windowTitle(), QString::fromLatin1(kSaveFailedText));
        return false;
    }
    return true;
}

void fPaletteApply::onOK() {
    cBitFilter filter;
    filter.SetBits(image_);
    filter.BitsRegion(region_);
    result_ =
        filter.PaletteApply(chkDither->isChecked(), palette_.PaletteColors, palette_.PaletteCount);
    applied_ = true;
    tmrSelect->stop();
    accept();
}

} // namespace ostrivex
