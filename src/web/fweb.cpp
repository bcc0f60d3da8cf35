#include "web/fweb.h"

#include "document/dialogs.h"
#include "web/finfo.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QTableWidget>
#include <QThread>
#include <QVBoxLayout>

#include <cmath>

namespace ostrivex {

// --- PanPane --------------------------------------------------------------------------------

PanPane::PanPane(QWidget* parent) : QWidget(parent) {
    setMinimumSize(160, 120);
    setCursor(Qt::OpenHandCursor);
    setAutoFillBackground(true);
}

void PanPane::SetPicture(const QImage& picture) {
    picture_ = picture;
    offset_ = clamped(offset_);
    update();
}

QPoint PanPane::clamped(QPoint o) const {
    const int maxX = std::max(0, picture_.width() - width());
    const int maxY = std::max(0, picture_.height() - height());
    return {std::clamp(o.x(), 0, maxX), std::clamp(o.y(), 0, maxY)};
}

void PanPane::SetOffset(QPoint offset) {
    const QPoint o = clamped(offset);
    if (o == offset_) return;
    offset_ = o;
    update();
}

void PanPane::paintEvent(QPaintEvent*) {
    QPainter p(this);
    if (picture_.isNull()) return;
    // Centred on each axis where the picture is smaller than the pane.
    const int x = picture_.width() < width() ? (width() - picture_.width()) / 2 : -offset_.x();
    const int y = picture_.height() < height() ? (height() - picture_.height()) / 2 : -offset_.y();
    p.drawImage(x, y, picture_);
}

void PanPane::mousePressEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) return;
    dragging_ = true;
    grab_ = e->position().toPoint();
    setCursor(Qt::ClosedHandCursor);
}

void PanPane::mouseMoveEvent(QMouseEvent* e) {
    if (!dragging_) return;
    const QPoint now = e->position().toPoint();
    // The picture follows the hand: a drag to the right shows more of its left.
    const QPoint wanted = clamped(offset_ - (now - grab_));
    grab_ = now;
    emit panRequested(wanted);
}

void PanPane::mouseReleaseEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) return;
    dragging_ = false;
    setCursor(Qt::OpenHandCursor);
}

void PanPane::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    offset_ = clamped(offset_);
}

// --- FWeb -----------------------------------------------------------------------------------

namespace {

int exportIndexOf(const std::string& name) {
    const auto& list = ExportPresets();
    for (size_t i = 0; i < list.size(); ++i)
        if (name == list[i].text) return int(i);
    return 7;
}

bool isPaletteEntry(const OptimizeSettings& s) {
    return s.Format == WebFormat::Gif || s.Format == WebFormat::Png8 ||
           (s.Format == WebFormat::Bmp && s.BitsPerPixel <= 8);
}

QString psnrText(double psnr) {
    if (std::isinf(psnr)) return "lossless";
    return QString::number(psnr, 'f', 1) + " dB";
}

} // namespace

FWeb::FWeb(const Bits& picture, const OptimizeSettings& start, QWidget* parent)
    : QDialog(parent), original_(picture) {
    setObjectName("FWeb");
    setWindowTitle(kExportTitle);

    // Start from the box: its entry, map and dither where this dialog has them.
    settings_ = SettingsForExportPreset(exportIndexOf(start.PresetName));
    for (const MapChoice& m : ExportMaps())
        if (m.value == start.PaletteMode && isPaletteEntry(settings_)) settings_.PaletteMode = m.value;
    settings_.DitherMode = start.DitherMode;
    SetInterlaced(settings_, start.Interlaced());
    if (settings_.Format == WebFormat::Jpeg) settings_.JpegQuality = start.JpegQuality;

    // The two panes with their sizes.
    iSrc = new PanPane(this);
    iSrc->setObjectName("iSrc");
    oSrc = new PanPane(this);
    oSrc->setObjectName("oSrc");
    auto* originalP = new QWidget(this);
    originalP->setObjectName("OriginalP");
    auto* optimizedP = new QWidget(this);
    optimizedP->setObjectName("OptimizedP");
    auto* ol = new QVBoxLayout(originalP);
    ol->setContentsMargins(0, 0, 0, 0);
    ol->addWidget(new QLabel("Original", originalP));
    ol->addWidget(iSrc, 1);
    lblOriginal = new QLabel(kTrueColorText, originalP);
    lblOriginalSize = new QLabel(QString::fromStdString(KilobyteText(SourceBytes(picture.width(), picture.height())) ),
                                 originalP);
    auto* osl = new QHBoxLayout;
    osl->addWidget(lblOriginal);
    osl->addStretch(1);
    osl->addWidget(lblOriginalSize);
    ol->addLayout(osl);
    auto* pl = new QVBoxLayout(optimizedP);
    pl->setContentsMargins(0, 0, 0, 0);
    pl->addWidget(new QLabel("Optimized", optimizedP));
    pl->addWidget(oSrc, 1);
    lblOptimizedSize = new QLabel(optimizedP);
    lblOptimizedSize->setObjectName("lblOptimizedSize");
    pl->addWidget(lblOptimizedSize, 0, Qt::AlignRight);
    auto* panes = new QHBoxLayout;
    panes->addWidget(originalP, 1);
    panes->addWidget(optimizedP, 1);
    iSrc->SetPicture(PictureOfBits(original_));
    // A drag in either pane pans both to the same place.
    for (PanPane* p : {iSrc, oSrc})
        connect(p, &PanPane::panRequested, this, [this](QPoint o) {
            iSrc->SetOffset(o);
            oSrc->SetOffset(o);
        });

    // The lists and options.
    CboFiles = new QComboBox(this);
    CboFiles->setObjectName("CboFiles");
    for (const WebPreset& p : ExportPresets()) CboFiles->addItem(p.text);
    cboMap = new QComboBox(this);
    cboMap->setObjectName("cboMap");
    for (const MapChoice& m : ExportMaps()) cboMap->addItem(m.text, m.value);
    cboDither = new QComboBox(this);
    cboDither->setObjectName("cboDither");
    for (const DitherChoice& d : ExportDithers()) cboDither->addItem(d.text, d.value);
    cboColorMode = new QComboBox(this);
    cboColorMode->setObjectName("cboColorMode");
    for (const char* m : ExportColorModes()) cboColorMode->addItem(m);
    cboJpg = new QComboBox(this);
    cboJpg->setObjectName("cboJpg");
    for (const QualityChoice& q : JpegQualities()) cboJpg->addItem(q.text, q.flag);
    TxtJPG = new QLineEdit(this);
    TxtJPG->setObjectName("TxtJPG");
    TxtJPG->setPlaceholderText(kCustomQualityHint);
    TxtJPG->setToolTip(kCustomQualityHint);
    ChkInterlaced = new QCheckBox("InterLaced", this);
    ChkInterlaced->setObjectName("ChkInterlaced");
    chkInvert = new QCheckBox("Invert", this);
    chkInvert->setObjectName("chkInvert");
    chkFlipV = new QCheckBox("Flip Vertical", this);
    chkFlipV->setObjectName("chkFlipV");
    chkFlipH = new QCheckBox("Flip Horizontal", this);
    chkFlipH->setObjectName("chkFlipH");
    auto* grid = new QGridLayout;
    int row = 0;
    const auto add = [&](const char* caption, QWidget* w) {
        grid->addWidget(new QLabel(caption, this), row, 0);
        grid->addWidget(w, row++, 1);
    };
    add("Format", CboFiles);
    add("Colormap", cboMap);
    add("Dither", cboDither);
    add("Color mode", cboColorMode);
    add("JPEG quality", cboJpg);
    add("", TxtJPG);
    grid->addWidget(ChkInterlaced, row++, 1);
    grid->addWidget(chkInvert, row++, 1);
    grid->addWidget(chkFlipV, row++, 1);
    grid->addWidget(chkFlipH, row++, 1);
    grid->setRowStretch(row, 1);

    // The comparison of every entry.
    tblCompare = new QTableWidget(int(ExportPresets().size()), 4, this);
    tblCompare->setObjectName("tblCompare");
    tblCompare->setHorizontalHeaderLabels({"Format", "Size", "Of original", "Error (PSNR)"});
    tblCompare->verticalHeader()->hide();
    tblCompare->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tblCompare->setSelectionBehavior(QAbstractItemView::SelectRows);
    tblCompare->setSelectionMode(QAbstractItemView::SingleSelection);
    tblCompare->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int i = 0; i < tblCompare->rowCount(); ++i)
        tblCompare->setItem(i, 0, new QTableWidgetItem(ExportPresets()[size_t(i)].text));
    tblCompare->setMinimumWidth(360);
    connect(tblCompare, &QTableWidget::cellClicked, this, [this](int r, int) { CboFiles->setCurrentIndex(r); });

    CmdSave = new QPushButton("Save", this);
    CmdSave->setObjectName("CmdSave");
    CmdSave->setDefault(true);
    CmdCancel = new QPushButton("Cancel", this);
    CmdCancel->setObjectName("CmdCancel");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(CmdSave);
    buttons->addWidget(CmdCancel);

    auto* lower = new QHBoxLayout;
    lower->addLayout(grid);
    lower->addWidget(tblCompare, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(panes, 3);
    layout->addLayout(lower, 2);
    layout->addLayout(buttons);
    resize(980, 720);

    connect(CmdSave, &QPushButton::clicked, this, [this] {
        if (CmdSave_Click()) accept();
    });
    connect(CmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(CboFiles, &QComboBox::currentIndexChanged, this, [this](int i) { entryChosen(i); });
    for (QComboBox* c : {cboMap, cboDither, cboColorMode})
        connect(c, &QComboBox::currentIndexChanged, this, [this] { changed(); });
    connect(cboJpg, &QComboBox::currentIndexChanged, this, [this](int i) { jpegChosen(i); });
    connect(TxtJPG, &QLineEdit::editingFinished, this, [this] {
        if (cboJpg->currentData().toInt() != 0) return;
        if (const std::optional<int32_t> q = ParseExportQuality(TxtJPG->text().toStdString())) {
            if (*q == settings_.JpegQuality) return;
            settings_.JpegQuality = *q;
            changed();
        } else {
            DocumentDialogs::Inform(this, kCustomQualityHint, kExportTitle);
        }
    });
    connect(ChkInterlaced, &QCheckBox::toggled, this, [this] { changed(); });
    for (QCheckBox* c : {chkInvert, chkFlipV, chkFlipH})
        connect(c, &QCheckBox::toggled, this, [this] { optionsChanged(); });

    worker_ = std::make_unique<OptimizeWorker>([this](uint64_t ticket, OptimizeResult r) {
        QImage picture = PictureOfBits(r.picture);
        ++pendingDeliveries_;
        QMetaObject::invokeMethod(
            this,
            [this, ticket, bytes = std::move(r.bytes), p = std::move(picture), e = QString::fromStdString(r.error)]() mutable {
                --pendingDeliveries_;
                previewDelivered(ticket, std::move(bytes), std::move(p), e);
            },
            Qt::QueuedConnection);
    });
    // A row of a large picture holds several copies of it while it runs (the indices, the
    // file, the picture read back): at most four rows at once.
    comparison_ = std::make_unique<ComparisonRunner>(
        std::clamp(QThread::idealThreadCount(), 1, 4), [this](uint64_t generation, int entry, const ComparisonRow& r) {
            ++pendingDeliveries_;
            QMetaObject::invokeMethod(
                this,
                [this, generation, entry, r] {
                    --pendingDeliveries_;
                    rowDelivered(generation, entry, r);
                },
                Qt::QueuedConnection);
        });

    fillControls();
    optionsChanged();
}

FWeb::~FWeb() {
    // The threads stop before the window they report to goes.
    comparison_.reset();
    worker_.reset();
}

void FWeb::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (centred_) return;
    // The panes open on the middle of the picture.
    centred_ = true;
    const QPoint middle((original_.width() - iSrc->width()) / 2, (original_.height() - iSrc->height()) / 2);
    iSrc->SetOffset(middle);
    oSrc->SetOffset(iSrc->Offset());
}

OptimizeSettings FWeb::CurrentSettings() const { return settings_; }

OptimizeSettings FWeb::RowSettings(int entry) const {
    OptimizeSettings s = SettingsForExportPreset(entry);
    if (isPaletteEntry(s)) {
        s.PaletteMode = settings_.PaletteMode;
        s.DitherMode = settings_.DitherMode;
    }
    if (s.Format == WebFormat::Gif) SetInterlaced(s, settings_.Interlaced());
    if (s.Format == WebFormat::Jpeg && !ExportPresets()[size_t(entry)].jpegFlag &&
        settings_.Format == WebFormat::Jpeg)
        s.JpegQuality = settings_.JpegQuality;
    s.Greyscale = settings_.Greyscale;
    s.ReserveSystemColors = settings_.ReserveSystemColors;
    return s;
}

void FWeb::fillControls() {
    filling_ = true;
    const int entry = exportIndexOf(settings_.PresetName);
    CboFiles->setCurrentIndex(entry);
    const bool palette = isPaletteEntry(settings_);
    cboMap->setEnabled(palette);
    cboDither->setEnabled(palette);
    if (palette) cboMap->setCurrentIndex(std::max(0, cboMap->findData(settings_.PaletteMode)));
    cboDither->setCurrentIndex(std::max(0, cboDither->findData(settings_.DitherMode)));
    cboColorMode->setCurrentIndex(settings_.Greyscale ? 1 : settings_.ReserveSystemColors ? 2 : 0);
    ChkInterlaced->setEnabled(settings_.Format == WebFormat::Gif);
    ChkInterlaced->setChecked(settings_.Interlaced());
    const bool jpeg = settings_.Format == WebFormat::Jpeg;
    cboJpg->setEnabled(jpeg);
    int quality = cboJpg->count() - 1;
    for (int i = 0; i + 1 < cboJpg->count(); ++i)
        if (cboJpg->itemData(i).toInt() == settings_.JpegQuality) quality = i;
    cboJpg->setCurrentIndex(quality);
    const bool custom = jpeg && quality == cboJpg->count() - 1;
    TxtJPG->setEnabled(custom);
    if (custom) TxtJPG->setText(QString::number(settings_.JpegQuality));
    filling_ = false;
}

void FWeb::entryChosen(int index) {
    if (filling_ || index < 0) return;
    OptimizeSettings next = SettingsForExportPreset(index);
    // The map, dither and colour mode lists stay as they are set.
    if (isPaletteEntry(next) && cboMap->currentIndex() >= 0) next.PaletteMode = cboMap->currentData().toInt();
    next.DitherMode = settings_.DitherMode;
    next.Greyscale = settings_.Greyscale;
    next.ReserveSystemColors = settings_.ReserveSystemColors;
    SetInterlaced(next, ChkInterlaced->isChecked());
    if (next.Format == WebFormat::Jpeg && !ExportPresets()[size_t(index)].jpegFlag &&
        settings_.Format == WebFormat::Jpeg)
        next.JpegQuality = settings_.JpegQuality;
    settings_ = next;
    fillControls();
    changed();
}

void FWeb::jpegChosen(int index) {
    if (filling_ || index < 0) return;
    // The quality list picks the JPEG entry of that quality: the entries run from "Low"
    // to "Custom" in the list's order.
    CboFiles->setCurrentIndex(exportIndexOf("JPEG - Low Quality") + index);
}

void FWeb::changed() {
    if (filling_) return;
    if (isPaletteEntry(settings_) && cboMap->currentIndex() >= 0) settings_.PaletteMode = cboMap->currentData().toInt();
    settings_.DitherMode = cboDither->currentData().toInt();
    settings_.Greyscale = cboColorMode->currentIndex() == 1;
    settings_.ReserveSystemColors = cboColorMode->currentIndex() == 2;
    SetInterlaced(settings_, ChkInterlaced->isChecked());
    previewSettings_ = settings_;
    previewTicket_ = worker_->Request(exported_, settings_);
    startComparison();
}

void FWeb::optionsChanged() {
    exported_ = std::make_shared<const Bits>(
        ApplyExportOptions(original_, chkInvert->isChecked(), chkFlipV->isChecked(), chkFlipH->isChecked()));
    iSrc->SetPicture(PictureOfBits(*exported_));
    changed();
}

void FWeb::startComparison() {
    std::vector<OptimizeSettings> rows;
    for (int i = 0; i < tblCompare->rowCount(); ++i) {
        rows.push_back(RowSettings(i));
        for (int c = 1; c < 4; ++c) tblCompare->setItem(i, c, new QTableWidgetItem("..."));
    }
    comparison_->Start(exported_, std::move(rows));
}

void FWeb::previewDelivered(uint64_t ticket, std::vector<uint8_t> bytes, QImage picture, QString error) {
    if (ticket != previewTicket_) return;
    previewTicket_ = 0;
    if (bytes.empty()) {
        bytes_.clear();
        oSrc->SetPicture(QImage());
        lblOptimizedSize->setText(error);
        return;
    }
    bytes_ = std::move(bytes);
    oSrc->SetPicture(picture);
    oSrc->SetOffset(iSrc->Offset());
    lblOptimizedSize->setText(QString::fromStdString(KilobyteText(bytes_.size())));
    emit previewShown();
}

void FWeb::rowDelivered(uint64_t generation, int entry, ComparisonRow r) {
    if (generation != comparison_->Generation() || entry < 0 || entry >= tblCompare->rowCount()) return;
    const auto put = [this, entry](int column, const QString& text) {
        auto* item = new QTableWidgetItem(text);
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        tblCompare->setItem(entry, column, item);
    };
    if (!r.ok) {
        put(1, QString::fromStdString(r.error));
        put(2, "");
        put(3, "");
    } else {
        put(1, QString::number(qulonglong(r.bytes)) + " bytes");
        put(2, QString::number(r.percent, 'f', 2) + "%");
        put(3, psnrText(r.psnr));
    }
    emit rowFilled(entry);
}

bool FWeb::Busy() const {
    if (pendingDeliveries_ > 0 || worker_->Busy() || previewTicket_ != 0) return true;
    for (int i = 0; i < tblCompare->rowCount(); ++i)
        if (!tblCompare->item(i, 1) || tblCompare->item(i, 1)->text() == "...") return true;
    return false;
}

bool FWeb::SaveTo(const QString& path, QString* error) {
    std::vector<uint8_t> bytes = bytes_;
    if (previewTicket_ != 0 || previewSettings_ != settings_ || bytes.empty()) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        OptimizeResult r = Optimize(*exported_, settings_, {}, false);
        QApplication::restoreOverrideCursor();
        if (!r.ok) {
            if (error) *error = QString::fromStdString(r.error);
            return false;
        }
        bytes = std::move(r.bytes);
    }
    std::string why;
    if (!WriteFileAtomically(path.toStdString(), bytes, why)) {
        if (error) *error = QString::fromStdString(why);
        return false;
    }
    return true;
}

bool FWeb::CmdSave_Click() {
    const QString ext = QString::fromStdString(GetOptimizedFileExtension(settings_));
    QString name = DocumentDialogs::AskSaveName(this, kExportSaveTitle, QString(),
                                                QString::fromStdString(ExportSaveFilter(settings_)), "*." + ext);
    if (name.isEmpty()) return false; // cancelled
    if (QFileInfo(name).suffix().isEmpty()) name += "." + ext;
    QString error;
    if (!SaveTo(name, &error)) {
        DocumentDialogs::Inform(this, "Unexpected error saving image", "Ostrivex");
        return false;
    }
    return true;
}

} // namespace ostrivex
