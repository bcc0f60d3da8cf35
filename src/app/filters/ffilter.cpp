#include "app/filters/ffilter.h"

#include "app/colour/pickcolour.h"
#include "document/fimage.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace ostrivex {

std::function<int(fFilter&)> fFilter::ExecHook;
std::function<bool(QWidget*, int32_t&, const QString&)> fFilter::ColourChooser =
    [](QWidget* parent, int32_t& colour, const QString& title) {
        return PickColour(parent, colour, title);
    };

namespace {

// The visible part of a record (its array carries the two-pixel guard band) as an image.
QImage recordImage(const BitmapRecord& record, int32_t w, int32_t h) {
    if (w <= 0 || h <= 0 || record.pixels.empty()) return QImage();
    const int32_t stride = (w + 4) * 4;
    const QImage whole(record.pixels.data(), w + 4, h + 4, stride, QImage::Format_RGB32);
    return whole.copy(2, 2, w, h);
}

QColor bgrColour(uint32_t c) {
    return QColor::fromRgb(BgrToQRgb(int32_t(c)));
}

// Rounded to nearest, ties to even (the default rounding mode).
int32_t roundEven(double v) {
    return int32_t(std::nearbyint(v));
}

} // namespace

// --- FilterThumbnail ----------------------------------------------------------------------

FilterThumbnail::FilterThumbnail(QWidget* parent) : QWidget(parent) {}

void FilterThumbnail::setImage(const QImage& image) {
    image_ = image;
    setFixedSize(std::max(1, int(image.width())), std::max(1, int(image.height())));
    update();
}

void FilterThumbnail::setMarker(bool show, int32_t x, int32_t y, uint32_t colour) {
    marker_ = show;
    markerX_ = x;
    markerY_ = y;
    markerColour_ = colour;
    update();
}

QImage FilterThumbnail::rendered() const {
    QImage out = image_.convertToFormat(QImage::Format_RGB32);
    if (!marker_ || out.isNull()) return out;
    const QRgb c = BgrToQRgb(int32_t(markerColour_));
    const int arm = fFilter::kMarkerArm;
    for (int d = -arm; d <= arm; ++d) {
        const int x = markerX_ + d, y = markerY_ + d;
        if (x >= 0 && x < out.width() && markerY_ >= 0 && markerY_ < out.height())
            out.setPixel(x, markerY_, c);
        if (y >= 0 && y < out.height() && markerX_ >= 0 && markerX_ < out.width())
            out.setPixel(markerX_, y, c);
    }
    return out;
}

void FilterThumbnail::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.drawImage(0, 0, rendered());
}

void FilterThumbnail::mousePressEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton)
        emit picked(e->position().toPoint().x(), e->position().toPoint().y());
}

void FilterThumbnail::mouseMoveEvent(QMouseEvent* e) {
    if (e->buttons() & Qt::LeftButton)
        emit picked(e->position().toPoint().x(), e->position().toPoint().y());
}

// --- fFilter: opening ----------------------------------------------------------------------

fFilter::fFilter(int number, const FilterDialogHost& host, QWidget* parent)
    : QDialog(parent), number_(number), row_(*FindFilterRow(number)), host_(host) {
    setObjectName(QStringLiteral("fFilter"));
    setWindowTitle(QString::fromUtf8(row_.title));
    // 1. tFilter; its progress reaches the window only on a full run that is not a preview
    // being taken over.
    tFilter_.Progress = [this](int32_t& percent) {
        if (fullRun_ && !previewed_ && host_.progress) host_.progress(percent);
    };
    fImage* doc = host_.document;
    const int32_t docW = doc->PictureWidth(), docH = doc->PictureHeight();
    // 2. The thumbnail size.
    const ThumbSize t = FitThumbnail(docW, docH, kMaxPreviewWidth, kMaxPreviewHeight);
    previewW_ = t.width;
    previewH_ = t.height;
    markerX_ = previewW_ / 2;
    markerY_ = previewH_ / 2;
    // 3. The source thumbnail, kept in both records.
    tFilter_.BitsResize(doc->bits(), previewW_, previewH_);
    sourceThumb_ = tFilter_.GetBits();
    resultThumb_ = sourceThumb_;
    BitsBitmapRecord(sourceRecord_, sourceThumb_, previewW_, previewH_);
    BitsBitmapRecord(resultRecord_, resultThumb_, previewW_, previewH_);
    buildControls();
    drawSource();
    drawResult();
    // 4.
    doc->StopTimer();
    doc->SetAutoRedraw(true);
    // 5. The own region: the selection (or the whole picture) at thumbnail scale.
    ownRegion_.Init(0, 0, docW, docH);
    if (!doc->Region().IsEmptyRegion()) ownRegion_.SetRegion(doc->Region().Region());
    ownRegion_.SetZoomFactor(docW > 0 ? float(previewW_) / float(docW) : 1.0f);
    thumbRect_ = Region::rect(0, 0, previewW_, previewH_);
    fullPreview_ = previewed_ = commit_ = false;
    // 6.
    runTableStep();
    ready_ = true;
    ApplyFilter();
}

fFilter::~fFilter() = default;

void fFilter::buildControls() {
    auto* top = new QVBoxLayout(this);
    top->setSizeConstraint(QLayout::SetFixedSize);

    // The two thumbnails, each centred in a frame the size of the largest thumbnail, with
    // the colour wells and the picker's hint under them.
    auto* pictures = new QGridLayout;
    auto makeFrame = [&](int column, const QString& caption, FilterThumbnail*& view,
                         const char* name) {
        pictures->addWidget(new QLabel(caption, this), 0, column);
        auto* frame = new QFrame(this);
        frame->setFrameShape(QFrame::StyledPanel);
        frame->setFixedSize(kMaxPreviewWidth + 6, kMaxPreviewHeight + 6);
        auto* inner = new QGridLayout(frame);
        inner->setContentsMargins(0, 0, 0, 0);
        view = new FilterThumbnail(frame);
        view->setObjectName(QString::fromLatin1(name));
        inner->addWidget(view, 0, 0, Qt::AlignCenter);
        pictures->addWidget(frame, 1, column);
    };
    makeFrame(0, QStringLiteral("Original"), picSource, "picSource");
    makeFrame(1, QStringLiteral("Preview"), picResult, "picResult");
    connect(picSource, &FilterThumbnail::picked, this,
            [this](int x, int y) { SourcePicked(x, y); });

    auto* wells = new QHBoxLayout;
    wells->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 2; ++i) {
        picColour[size_t(i)] = new QPushButton(this);
        picColour[size_t(i)]->setObjectName(QStringLiteral("picColour%1").arg(i));
        picColour[size_t(i)]->setFixedSize(40, 20);
        picColour[size_t(i)]->setToolTip(i == 0 ? QStringLiteral("First color")
                                                : QStringLiteral("Second color"));
        picColour[size_t(i)]->hide();
        connect(picColour[size_t(i)], &QPushButton::clicked, this,
                [this, i] { ColourWellClick(i); });
        wells->addWidget(picColour[size_t(i)]);
        showColour(i);
    }
    wells->addStretch(1);
    pictures->addLayout(wells, 2, 0);
    lblPick = new QLabel(QStringLiteral("Click the original to pick"), this);
    lblPick->setEnabled(false);
    lblPick->hide();
    pictures->addWidget(lblPick, 2, 1);
    top->addLayout(pictures);

    // Up to three slider rows: name, slider, value.
    frSliders = new QFrame(this);
    frSliders->setObjectName(QStringLiteral("frSliders"));
    auto* grid = new QGridLayout(frSliders);
    grid->setContentsMargins(4, 0, 4, 0);
    grid->setColumnMinimumWidth(0, 110);
    grid->setColumnStretch(1, 1);
    grid->setColumnMinimumWidth(2, 40);
    for (int i = 0; i < 3; ++i) {
        lblName[size_t(i)] = new QLabel(frSliders);
        sld[size_t(i)] = new QSlider(Qt::Horizontal, frSliders);
        sld[size_t(i)]->setObjectName(QStringLiteral("sld%1").arg(i));
        sld[size_t(i)]->setMinimumWidth(200);
        lblValue[size_t(i)] = new QLabel(frSliders);
        lblValue[size_t(i)]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(lblName[size_t(i)], i, 0);
        grid->addWidget(sld[size_t(i)], i, 1);
        grid->addWidget(lblValue[size_t(i)], i, 2);
        for (QWidget* w :
             {static_cast<QWidget*>(lblName[size_t(i)]), static_cast<QWidget*>(sld[size_t(i)]),
              static_cast<QWidget*>(lblValue[size_t(i)])})
            w->hide();
    }
    frSliders->hide();
    top->addWidget(frSliders);

    chkOption = new QCheckBox(this);
    chkOption->setObjectName(QStringLiteral("chkOption"));
    chkOption->hide();
    top->addWidget(chkOption);

    buildBanks();
    buildGlass();
    buildCurtain();
    top->addWidget(frBanks);
    top->addWidget(FrmGlass);
    top->addWidget(FrmCurtain);

    auto* buttons = new QHBoxLayout;
    cmdPreview = new QPushButton(QStringLiteral("Preview"), this);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    CmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdOK->setDefault(true);
    buttons->addWidget(cmdPreview);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(CmdCancel);
    top->addLayout(buttons);
    connect(cmdPreview, &QPushButton::clicked, this, [this] { cmdPreview_Click(); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });

    tmrSelect = new QTimer(this);
    tmrSelect->setInterval(kSelectTickMs);
    connect(tmrSelect, &QTimer::timeout, this, [this] { SelectTick(); });
}

void fFilter::buildBanks() {
    frBanks = new QFrame(this);
    frBanks->setObjectName(QStringLiteral("frBanks"));
    frBanks->setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(frBanks);
    const char* heads[] = {"From red", "From green", "From blue", "Invert", "Kill"};
    for (int c = 0; c < 5; ++c)
        grid->addWidget(new QLabel(QString::fromLatin1(heads[c]), frBanks), 0, c + 1,
                        Qt::AlignCenter);
    const char* rows[] = {"Red", "Green", "Blue"};
    std::array<std::array<QRadioButton*, 3>*, 3> radios = {&optRChannel, &optGChannel,
                                                           &optBChannel};
    for (int r = 0; r < 3; ++r) {
        grid->addWidget(new QLabel(QString::fromLatin1(rows[r]), frBanks), r + 1, 0);
        auto* group = new QButtonGroup(frBanks);
        for (int k = 0; k < 3; ++k) {
            QRadioButton*& b = (*radios[size_t(r)])[size_t(k)];
            b = new QRadioButton(frBanks);
            group->addButton(b, k);
            grid->addWidget(b, r + 1, k + 1, Qt::AlignCenter);
        }
        // Sources start as they are: red from red, green from green, blue from blue.
        (*radios[size_t(r)])[size_t(r)]->setChecked(true);
        connect(group, &QButtonGroup::idToggled, this, [this, r](int k, bool checked) {
            if (checked) onBankRadio(r, k);
        });
        chkInvt[size_t(r)] = new QCheckBox(frBanks);
        chkKill[size_t(r)] = new QCheckBox(frBanks);
        grid->addWidget(chkInvt[size_t(r)], r + 1, 4, Qt::AlignCenter);
        grid->addWidget(chkKill[size_t(r)], r + 1, 5, Qt::AlignCenter);
        connect(chkInvt[size_t(r)], &QCheckBox::toggled, this, [this] { ControlChanged(); });
        connect(chkKill[size_t(r)], &QCheckBox::toggled, this, [this] { ControlChanged(); });
    }
    frBanks->hide();
}

void fFilter::buildGlass() {
    FrmGlass = new QFrame(this);
    FrmGlass->setObjectName(QStringLiteral("FrmGlass"));
    FrmGlass->setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(FrmGlass);
    const char* captions[] = {"Slanting", "Horizontal", "Vertical", "Squary"};
    auto* group = new QButtonGroup(FrmGlass);
    for (int i = 0; i < 4; ++i) {
        oo[size_t(i)] = new QRadioButton(QString::fromLatin1(captions[i]), FrmGlass);
        group->addButton(oo[size_t(i)], i);
        grid->addWidget(oo[size_t(i)], i / 2, i % 2);
    }
    oo[0]->setChecked(true);
    cbo = new QComboBox(FrmGlass);
    for (const char* item : GlassComboItems(kGlassStyles[0]))
        cbo->addItem(QString::fromLatin1(item));
    grid->addWidget(new QLabel(QStringLiteral("Pattern"), FrmGlass), 2, 0);
    grid->addWidget(cbo, 2, 1);
    connect(group, &QButtonGroup::idToggled, this, [this](int i, bool checked) {
        if (checked) onGlassStyle(i);
    });
    connect(cbo, &QComboBox::currentIndexChanged, this, [this] {
        if (!busy_) ControlChanged();
    });
    FrmGlass->hide();
}

void fFilter::buildCurtain() {
    FrmCurtain = new QFrame(this);
    FrmCurtain->setObjectName(QStringLiteral("FrmCurtain"));
    FrmCurtain->setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(FrmCurtain);
    const char* captions[] = {"Horizontal", "Vertical", "Classy", "Whity"};
    auto* group = new QButtonGroup(FrmCurtain);
    for (int i = 0; i < 4; ++i) {
        Curt[size_t(i)] = new QRadioButton(QString::fromLatin1(captions[i]), FrmCurtain);
        group->addButton(Curt[size_t(i)], i);
        grid->addWidget(Curt[size_t(i)], i / 2, i % 2);
    }
    Curt[0]->setChecked(true);
    connect(group, &QButtonGroup::idToggled, this, [this](int, bool checked) {
        if (checked) ControlChanged();
    });
    FrmCurtain->hide();
}

// --- The table step ----------------------------------------------------------------------

void fFilter::runTableStep() {
    for (size_t i = 0; i < row_.sliders.size(); ++i) {
        const FilterSliderRow& s = row_.sliders[i];
        AddSlider(int(i), QString::fromUtf8(s.label), s.minimum, s.maximum, s.scale, s.defaultValue,
                  QString::fromUtf8(s.suffix), s.centred);
    }
    // The slider frame grows with its rows; a row of none hides it.
    const int rows = int(row_.sliders.size());
    frSliders->setVisible(rows > 0);
    frSliders->setFixedHeight(rows * kSliderRowHeight);
    if (row_.optionLabel) AddOption(QString::fromUtf8(row_.optionLabel), row_.optionDefault);
    if (row_.picker) AddPicker();
    if (row_.colours != kNoColours) AddColours(row_.colours);
    switch (row_.frame) {
    case FilterFrame::Banks:
        frBanks->show();
        break;
    case FilterFrame::Glass:
        values_.style = kGlassStyles[0];
        values_.styleValue = 0;
        FrmGlass->show();
        break;
    case FilterFrame::Curtain:
        values_.style = kCurtainStyle;
        values_.styleValue = 1;
        FrmCurtain->show();
        break;
    case FilterFrame::None:
        break;
    }
    // The sliders' own signals run the thumbnail from now on.
    for (size_t i = 0; i < row_.sliders.size(); ++i)
        connect(sld[i], &QSlider::valueChanged, this, [this] { ControlChanged(); });
    connect(chkOption, &QCheckBox::toggled, this, [this] { ControlChanged(); });
}

void fFilter::AddSlider(int index, const QString& label, double minimum, double maximum,
                        double scale, double defaultValue, const QString& suffix, bool centred) {
    const size_t i = size_t(index);
    lblName[i]->setText(label);
    sld[i]->setRange(roundEven(minimum / scale), roundEven(maximum / scale));
    sld[i]->setValue(roundEven(defaultValue / scale));
    scales_[i] = scale;
    suffixes_[i] = suffix;
    offsets_[i] = centred ? roundEven(maximum / scale * 0.5) : 0;
    lblName[i]->show();
    sld[i]->show();
    lblValue[i]->show();
    lblValue[i]->setText(QString::number(sld[i]->value() * scale) + suffix);
}

void fFilter::AddOption(const QString& label, bool value) {
    chkOption->setText(label);
    chkOption->setChecked(value);
    option_ = value;
    chkOption->show();
}

void fFilter::AddPicker() {
    centre_ = true;
    picSource->setCursor(Qt::CrossCursor);
    picSource->setToolTip(QStringLiteral("Click to pick the point and the color"));
    lblPick->show();
    tmrSelect->start();
    drawSource();
}

void fFilter::AddColours(int index) {
    picColour[0]->setVisible(index != 0);
    picColour[1]->setVisible(index != 1);
}

// --- Runs --------------------------------------------------------------------------------

void fFilter::readControls() {
    for (size_t i = 0; i < row_.sliders.size(); ++i) {
        values_.s[i] = sld[i]->value() - offsets_[i];
        lblValue[i]->setText(QString::number(sld[i]->value() * scales_[i]) + suffixes_[i]);
    }
    option_ = chkOption->isChecked();
    values_.option = option_;
    values_.colours = colours_;
}

void fFilter::readFrames() {
    switch (row_.frame) {
    case FilterFrame::Banks: {
        const std::array<const std::array<QRadioButton*, 3>*, 3> radios = {
            &optRChannel, &optGChannel, &optBChannel};
        for (size_t r = 0; r < 3; ++r) {
            for (size_t k = 0; k < 3; ++k)
                if ((*radios[r])[k]->isChecked()) values_.sources[r] = int32_t(2 - k);
            values_.invert[r] = chkInvt[r]->isChecked();
            values_.kill[r] = chkKill[r]->isChecked();
        }
        break;
    }
    case FilterFrame::Glass:
        for (size_t i = 0; i < oo.size(); ++i)
            if (oo[i]->isChecked()) values_.style = kGlassStyles[i];
        values_.styleValue = std::max(0, cbo->currentIndex());
        break;
    case FilterFrame::Curtain:
        values_.style = kCurtainStyle;
        for (size_t i = 0; i < Curt.size(); ++i)
            if (Curt[i]->isChecked()) values_.styleValue = int32_t(i + 1);
        break;
    case FilterFrame::None:
        break;
    }
}

const Region& fFilter::thumbnailRegion() const {
    const auto& scaled = ownRegion_.RegionScaled();
    return scaled ? *scaled : thumbRect_;
}

void fFilter::ApplyFilter() {
    if (!ready_) return;
    // 1.
    if (row_.frame == FilterFrame::None)
        readControls();
    else
        readFrames();
    values_.colours = colours_;
    values_.centreX = centreX_;
    values_.centreY = centreY_;
    fImage* doc = host_.document;

    if (commit_) {
        // 4. to 8. The envelope writes cFilter and the document once and makes the undo
        // step. After a full preview the result is already in tFilter: it is handed over
        // instead of a second run.
        hide();
        QCoreApplication::processEvents();
        doc->SetAutoRedraw(false);
        host_.commit([this, doc](cBitFilter& f) -> Bits {
            if (previewed_) return tFilter_.GetBits();
            f.BitsRegion(&doc->EffectiveRegion());
            ++fullRuns_;
            return row_.run(f, values_);
        });
        doc->SetAutoRedraw(true);
        committed_ = true;
        release();
        return;
    }

    if (fullPreview_) {
        // 3. and 5. A full run on a copy of cFilter's Bits.
        if (!previewed_) {
            tFilter_.SetBits(host_.filter->bits());
            tFilter_.BitsRegion(&doc->EffectiveRegion());
            fullRun_ = true;
            ++fullRuns_;
            Bits result = row_.run(tFilter_, values_);
            fullRun_ = false;
            tFilter_.SetBits(std::move(result));
        }
        // 6. Shown in the document as an edit that is not filed yet.
        doc->SetAutoRedraw(false);
        doc->Model().Preview(EditTarget::Enhanced(), tFilter_.GetBits());
        doc->SetAutoRedraw(true);
        documentWritten_ = true;
        return;
    }

    // 2., 5. and 7. The thumbnail run, inside the selection at thumbnail scale.
    tFilter_.SetBits(sourceThumb_);
    tFilter_.BitsRegion(&thumbnailRegion());
    ++thumbnailRuns_;
    resultThumb_ = row_.run(tFilter_, values_);
    tFilter_.SetBits(resultThumb_);
    BitsBitmapRecord(resultRecord_, resultThumb_, previewW_, previewH_);
    drawResult();
}

void fFilter::ControlChanged() {
    if (!ready_ || busy_) return;
    fullPreview_ = previewed_ = commit_ = false;
    ApplyFilter();
}

void fFilter::cmdPreview_Click() {
    if (!previewed_) {
        fullPreview_ = true;
        ApplyFilter();
        fullPreview_ = false;
        previewed_ = true;
        if (host_.hideProgress) host_.hideProgress();
    }
    cmdOK->setFocus();
}

void fFilter::cmdOK_Click() {
    if (committed_ || cancelled_) return;
    commit_ = true;
    ApplyFilter();
    commit_ = false;
    if (host_.hideProgress) host_.hideProgress();
    accept();
}

void fFilter::CmdCancel_Click() {
    if (committed_ || cancelled_) return;
    cancelled_ = true;
    release();
    // The document goes back to cFilter's Bits, which a preview never touches, and the
    // window is brought up to date without an undo step, whether or not a preview ran.
    fImage* doc = host_.document;
    if (doc) {
        doc->SetAutoRedraw(false);
        doc->Model().Revert(host_.filter->bits());
        doc->SetAutoRedraw(true);
    }
    if (host_.hideProgress) host_.hideProgress();
    reject();
}

void fFilter::done(int r) {
    // Escape and the close button cancel as the button does.
    if (r != QDialog::Accepted && !committed_ && !cancelled_) {
        CmdCancel_Click();
        return;
    }
    closing();
    QDialog::done(r);
}

void fFilter::release() {
    tmrSelect->stop();
    tFilter_.SetBits(Bits());
    tFilter_.BitsRegion(nullptr);
    ownRegion_.Clear();
}

void fFilter::closing() {
    if (closed_) return;
    closed_ = true;
    tmrSelect->stop();
    fImage* doc = host_.document;
    if (doc && !doc->Region().IsEmptyRegion()) doc->StartTimer();
}

// --- Picking and colours -----------------------------------------------------------------

void fFilter::SourcePicked(int x, int y) {
    if (!centre_ || sourceThumb_.empty()) return;
    x = std::clamp(x, 0, previewW_ - 1);
    y = std::clamp(y, 0, previewH_ - 1);
    centreX_ = float(x) / float(previewW_);
    centreY_ = float(y) / float(previewH_);
    markerX_ = x;
    markerY_ = y;
    const uint8_t* p = sourceThumb_.pixel(x, y);
    colours_[0] = int32_t(uint32_t(p[2]) | uint32_t(p[1]) << 8 | uint32_t(p[0]) << 16);
    showColour(0);
    picSource->setMarker(true, x, y, markerColour_);
    ControlChanged();
}

void fFilter::setColour(int i, int32_t colour) {
    colours_[size_t(i)] = colour;
    showColour(i);
    ControlChanged();
}

void fFilter::ColourWellClick(int i) {
    int32_t c = colours_[size_t(i)];
    if (!ColourChooser || !ColourChooser(this, c, QString())) return;
    setColour(i, c);
}

void fFilter::SelectTick() {
    markerColour_ = markerColour_ == 0xFFFFFF ? 0 : 0xFFFFFF;
    drawSource();
}

void fFilter::showColour(int i) {
    const QColor c = bgrColour(uint32_t(colours_[size_t(i)]));
    picColour[size_t(i)]->setStyleSheet(
        QStringLiteral("QPushButton { background-color: %1; border: 1px solid #404040; }")
            .arg(c.name()));
}

void fFilter::drawSource() {
    if (!picSource) return;
    picSource->setImage(recordImage(sourceRecord_, previewW_, previewH_));
    picSource->setMarker(centre_, markerX_, markerY_, markerColour_);
}

void fFilter::drawResult() {
    if (!picResult) return;
    picResult->setImage(recordImage(resultRecord_, previewW_, previewH_));
}

void fFilter::onGlassStyle(int index) {
    // The blocks offer "Large" before the other two; the choice of "Light" or "Tight" is
    // kept across the switch, and "Large" becomes "Light".
    const QString before = cbo->currentText();
    busy_ = true;
    cbo->clear();
    for (const char* item : GlassComboItems(kGlassStyles[size_t(index)]))
        cbo->addItem(QString::fromLatin1(item));
    const int keep = cbo->findText(before);
    cbo->setCurrentIndex(keep >= 0 ? keep : cbo->findText(QStringLiteral("Light")));
    busy_ = false;
    ControlChanged();
}

void fFilter::onBankRadio(int, int) {
    // A row keeps one choice: its button group is exclusive and reports only the button
    // that was turned on, so a change runs once. While the frame is set from code (busy)
    // nothing runs.
    ControlChanged();
}

// --- Opening from the window -------------------------------------------------------------

int ShowFilterDialog(int number, const FilterDialogHost& host, QWidget* parent) {
    if (!FindFilterRow(number) || !host.document || !host.filter || !host.document->PictureExists())
        return QDialog::Rejected;
    fFilter dialog(number, host, parent);
    const int result = fFilter::ExecHook ? fFilter::ExecHook(dialog) : dialog.exec();
    // A hook that leaves the dialog open ends it as Cancel would.
    if (!dialog.committed() && !dialog.cancelled()) dialog.CmdCancel_Click();
    return result;
}

} // namespace ostrivex
