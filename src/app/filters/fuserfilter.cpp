#include "app/filters/fuserfilter.h"

#include "app/panels/updown.h"
#include "document/dialogs.h"
#include "pixel/oiffile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivex {

fUserFilter::State fUserFilter::Last = fUserFilter::Initial();

fUserFilter::State fUserFilter::Initial() {
    State s;
    s.grid[12] = 1;
    return s;
}

namespace {

// A field for a whole number: a sign and up to ten digits may be typed. Whether the
// number fits in 32 bits is checked when it is used.
QLineEdit* makeNumberField(QWidget* parent, int width) {
    auto* e = new QLineEdit(parent);
    e->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[+-]?[0-9]{0,10}")), e));
    e->setFixedWidth(width);
    e->setAlignment(Qt::AlignRight);
    return e;
}

// A field's value; false for an empty field or one that isn't a 32-bit whole number.
bool fieldValue(const QLineEdit* e, int32_t& out) {
    bool ok = false;
    const int v = e->text().trimmed().toInt(&ok, 10);
    if (ok) out = v;
    return ok;
}

} // namespace

fUserFilter::fUserFilter(const QString& filtersFolder, QWidget* parent)
    : QDialog(parent), folder_(filtersFolder) {
    setObjectName(QStringLiteral("fUserFilter"));
    setWindowTitle(QStringLiteral("User Defined Filters"));

    auto* matrix = new QGroupBox(QStringLiteral("Matrix"), this);
    auto* cells = new QGridLayout(matrix);
    cells->setSpacing(4);
    for (int i = 0; i < 25; ++i) {
        txtM[i] = makeNumberField(matrix, 48);
        txtM[i]->setObjectName(QStringLiteral("txtM%1").arg(i));
        cells->addWidget(txtM[i], i / 5, i % 5);
        connect(txtM[i], &QLineEdit::textEdited, this, &fUserFilter::onCellEdited);
    }

    cbBased = new QComboBox(this);
    cbBased->addItem(QString::fromLatin1(kNoPresetText));
    for (const FilterPreset& p : kFilterPresets)
        cbBased->addItem(QString::fromLatin1(p.name));
    // Picking the shown entry again fills the grid again.
    connect(cbBased, &QComboBox::activated, this, &fUserFilter::ChoosePreset);
    connect(cbBased, &QComboBox::currentIndexChanged, this, &fUserFilter::ChoosePreset);

    txtWeight = makeNumberField(this, 72);
    chkAuto = new QCheckBox(QStringLiteral("Auto"), this);
    connect(chkAuto, &QCheckBox::toggled, this, [this](bool on) {
        if (on) followSum();
    });

    auto* settings = new QGridLayout;
    settings->addWidget(new QLabel(QStringLiteral("Based on:"), this), 0, 0);
    settings->addWidget(cbBased, 0, 1, 1, 3);
    settings->addWidget(new QLabel(QStringLiteral("Weight:"), this), 1, 0);
    settings->addWidget(txtWeight, 1, 1);
    settings->addWidget(chkAuto, 1, 2, 1, 2);
    const char* channels[3] = {"Red bias:", "Green bias:", "Blue bias:"};
    for (int c = 0; c < 3; ++c) {
        txtAdd[c] = makeNumberField(this, 72);
        txtAddUD[c] = MakeUpDown(this, 0, 255);
        settings->addWidget(new QLabel(QString::fromLatin1(channels[c]), this), 2 + c, 0);
        settings->addWidget(txtAdd[c], 2 + c, 1);
        settings->addWidget(txtAddUD[c], 2 + c, 2, Qt::AlignLeft);
        connect(txtAdd[c], &QLineEdit::textEdited, this,
                [this, c](const QString& t) { onBiasEdited(c, t); });
        connect(txtAddUD[c], &QScrollBar::valueChanged, this, [this, c](int v) {
            QSignalBlocker b(txtAdd[c]);
            txtAdd[c]->setText(QString::number(v));
        });
    }
    chkKeepMargins = new QCheckBox(QStringLiteral("Keep margins"), this);
    settings->addWidget(chkKeepMargins, 5, 0, 1, 4);
    settings->setColumnStretch(3, 1);

    auto* right = new QVBoxLayout;
    right->addLayout(settings);
    right->addStretch(1);
    auto* top = new QHBoxLayout;
    top->addWidget(matrix);
    top->addLayout(right, 1);

    cmdLoad = new QPushButton(QStringLiteral("Load..."), this);
    cmdSave = new QPushButton(QStringLiteral("Save..."), this);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdOK->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdLoad);
    buttons->addWidget(cmdSave);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    connect(cmdLoad, &QPushButton::clicked, this, &fUserFilter::LoadFilter);
    connect(cmdSave, &QPushButton::clicked, this, &fUserFilter::SaveFilter);
    connect(cmdOK, &QPushButton::clicked, this, &fUserFilter::onOK);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addLayout(buttons);
    all->setSizeConstraint(QLayout::SetFixedSize);

    showState(Last);
}

void fUserFilter::showState(const State& s) {
    {
        QSignalBlocker b1(cbBased), b2(chkAuto);
        cbBased->setCurrentIndex(std::clamp(s.preset, 0, kFilterPresetCount));
        chkAuto->setChecked(s.autoWeight);
    }
    chkKeepMargins->setChecked(s.keepMargins);
    showFields(s.grid, s.weight, s.add);
}

void fUserFilter::ShowRecord(const FilterMask& record) {
    const int32_t add[3] = {record.BiasR, record.BiasG, record.BiasB};
    showFields(GridFromMask(record.Mask), record.Div, add);
}

// A bias outside 0..255 (from a file) shows as it is; its up-down control stops at the end.
void fUserFilter::showFields(const MaskGrid& grid, int32_t weight, const int32_t add[3]) {
    for (int i = 0; i < 25; ++i)
        txtM[i]->setText(QString::number(grid[size_t(i)]));
    txtWeight->setText(QString::number(weight));
    for (int c = 0; c < 3; ++c) {
        QSignalBlocker b(txtAddUD[c]);
        txtAddUD[c]->setValue(std::clamp(add[c], 0, 255));
        txtAdd[c]->setText(QString::number(add[c]));
    }
}

void fUserFilter::ChoosePreset(int index) {
    FilterMask preset;
    // "<None>" (index 0) is no record: the fields stay as they are.
    if (!ParseFilterPreset(preset, index - 1)) return;
    // The preset's own weight stands, with chkAuto on as well: several presets (the
    // contours, emboss, engrave) have a weight other than the sum of their cells.
    ShowRecord(preset);
}

// A typed cell: with chkAuto on, the weight becomes the sum of the 25 cells.
void fUserFilter::onCellEdited() {
    if (chkAuto->isChecked()) followSum();
}

// The sum of the cells, where a cell that isn't a number counts as 0.
void fUserFilter::followSum() {
    MaskGrid grid{};
    for (int i = 0; i < 25; ++i)
        fieldValue(txtM[i], grid[size_t(i)]);
    txtWeight->setText(QString::number(MaskSum(grid)));
}

// A typed bias is held to 0..255: a value past either end shows as that end. A field
// being typed ("", "-") is left alone until it holds a number.
void fUserFilter::onBiasEdited(int channel, const QString& text) {
    bool ok = false;
    const qlonglong typed = text.trimmed().toLongLong(&ok);
    if (!ok) return;
    const int v = int(std::clamp<qlonglong>(typed, 0, 255));
    {
        QSignalBlocker b(txtAddUD[channel]);
        txtAddUD[channel]->setValue(v);
    }
    if (typed != v) txtAdd[channel]->setText(QString::number(v));
}

void fUserFilter::inform(const char* text) {
    DocumentDialogs::Inform(this, QString::fromLatin1(text), windowTitle());
}

bool fUserFilter::BuildRecord(FilterMask& out) {
    // The blank check comes first, with a cell that isn't a number counting as 0.
    MaskGrid grid{};
    bool numbers = true;
    for (int i = 0; i < 25; ++i)
        if (!fieldValue(txtM[i], grid[size_t(i)])) {
            grid[size_t(i)] = 0;
            numbers = false;
        }
    FilterMask record;
    if (!MaskFromGrid(grid, record.Mask)) {
        inform(kBlankMaskText);
        return false;
    }
    if (!numbers || !fieldValue(txtWeight, record.Div) || !fieldValue(txtAdd[0], record.BiasR) ||
        !fieldValue(txtAdd[1], record.BiasG) || !fieldValue(txtAdd[2], record.BiasB)) {
        inform(kBadNumberText);
        return false;
    }
    out = std::move(record);
    return true;
}

void fUserFilter::onOK() {
    FilterMask record;
    if (!BuildRecord(record)) return;
    if (record.Div == 0) {
        inform(kZeroWeightText);
        return;
    }
    record_ = std::move(record);
    keepMargins_ = chkKeepMargins->isChecked();

    State s;
    s.grid = GridFromMask(record_.Mask);
    s.weight = record_.Div;
    s.add[0] = record_.BiasR;
    s.add[1] = record_.BiasG;
    s.add[2] = record_.BiasB;
    s.autoWeight = chkAuto->isChecked();
    s.keepMargins = keepMargins_;
    s.preset = cbBased->currentIndex();
    Last = s;
    applied_ = true;
    accept();
}

void fUserFilter::LoadFilter() {
    QDir().mkpath(folder_);
    const QString path =
        DocumentDialogs::AskOpenName(this, QString::fromLatin1(kFilterFileLoadTitle), folder_,
                                     QString::fromLatin1(kFilterFileDialogFilter));
    if (!path.isEmpty()) LoadFilterFrom(path);
}

void fUserFilter::SaveFilter() {
    // The fields are checked before the name is asked for: a grid that is no kernel has
    // nothing to save.
    FilterMask record;
    if (!BuildRecord(record)) return;
    QDir().mkpath(folder_);
    QString path =
        DocumentDialogs::AskSaveName(this, QString::fromLatin1(kFilterFileSaveTitle), folder_,
                                     QString::fromLatin1(kFilterFileDialogFilter), QString());
    if (path.isEmpty()) return;
    // A name typed without an extension gets the filter files' own.
    if (QFileInfo(path).suffix().isEmpty()) path += QStringLiteral(".oif");
    SaveFilterTo(path);
}

bool fUserFilter::LoadFilterFrom(const QString& path) {
    FilterMask record;
    if (!ReadFilterFile(QFile::encodeName(path).toStdString(), record)) {
        inform(kBadFileText);
        return false;
    }
    // A loaded filter is no preset; its own weight stands, as a preset's does.
    {
        QSignalBlocker b(cbBased);
        cbBased->setCurrentIndex(0);
    }
    ShowRecord(record);
    return true;
}

bool fUserFilter::SaveFilterTo(const QString& path) {
    FilterMask record;
    if (!BuildRecord(record)) return false;
    if (!WriteFilterFile(QFile::encodeName(path).toStdString(), record)) {
        inform(kSaveFailedText);
        return false;
    }
    return true;
}

} // namespace ostrivex
