#include "web/finfo.h"

#include "document/dialogs.h"
#include "document/fimage.h"
#include "document/optimizeview.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <cstring>

namespace ostrivex {

namespace {

constexpr const char* kMessageTitle = "Ostrivex";

// The quality list's entry of a JPEG quality (the last one, "custom...", for a number).
int jpegEntryOf(int32_t quality) {
    const auto& list = JpegQualities();
    for (size_t i = 0; i + 1 < list.size(); ++i)
        if (list[i].flag == quality) return int(i);
    return int(list.size()) - 1;
}

// The box preset of a JPEG quality entry: "Bad" is the low quality preset, and so on.
int presetOfJpegEntry(int entry) { return 10 + entry; }

int presetIndexOf(const OptimizeSettings& s) {
    for (size_t i = 0; i < BoxPresets().size(); ++i)
        if (s.PresetName == BoxPresets()[i].text) return int(i);
    return 7;
}

} // namespace

QImage PictureOfBits(const Bits& bits) {
    if (bits.empty() || bits.width() < 1 || bits.height() < 1) return {};
    QImage image(bits.width(), bits.height(), QImage::Format_RGB32);
    if (image.isNull()) return {};
    // Bits and RGB32 share the byte order (blue, green, red, then a fourth byte).
    for (int32_t y = 0; y < bits.height(); ++y) {
        auto* d = reinterpret_cast<uint32_t*>(image.scanLine(y));
        std::memcpy(d, bits.row(y), size_t(bits.width()) * 4);
        for (int32_t x = 0; x < bits.width(); ++x) d[x] |= 0xFF000000u;
    }
    return image;
}

finfo::finfo(QWidget* parent) : QWidget(parent) {
    setObjectName("finfo");
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(3, 2, 3, 2);
    outer->setSpacing(2);

    auto* top = new QHBoxLayout;
    top->setSpacing(2);
    CboFiles = new QComboBox(this);
    CboFiles->setObjectName("CboFiles");
    for (const WebPreset& p : BoxPresets()) CboFiles->addItem(p.text);
    pMm = new QToolButton(this);
    pMm->setObjectName("pMm");
    pMm->setText("-");
    pMm->setToolTip("Fold the box");
    pMm->setAutoRaise(true);
    top->addWidget(CboFiles, 1);
    top->addWidget(pMm);
    outer->addLayout(top);

    // The rows that fold away: the palette rows or the JPEG rows, as the preset needs.
    fullForm_ = new QWidget(this);
    auto* full = new QVBoxLayout(fullForm_);
    full->setContentsMargins(0, 0, 0, 0);
    full->setSpacing(2);
    paletteRows_ = new QWidget(fullForm_);
    auto* pal = new QGridLayout(paletteRows_);
    pal->setContentsMargins(0, 0, 0, 0);
    pal->setVerticalSpacing(2);
    cboMap = new QComboBox(paletteRows_);
    cboMap->setObjectName("cboMap");
    cboDither = new QComboBox(paletteRows_);
    cboDither->setObjectName("cboDither");
    for (const DitherChoice& d : Dithers()) cboDither->addItem(d.text, d.value);
    ChkInterlaced = new QCheckBox("Interlaced", paletteRows_);
    ChkInterlaced->setObjectName("ChkInterlaced");
    pal->addWidget(new QLabel("Map", paletteRows_), 0, 0);
    pal->addWidget(cboMap, 0, 1);
    pal->addWidget(new QLabel("Dither", paletteRows_), 1, 0);
    pal->addWidget(cboDither, 1, 1);
    pal->addWidget(ChkInterlaced, 2, 1);
    jpegRows_ = new QWidget(fullForm_);
    auto* jpg = new QGridLayout(jpegRows_);
    jpg->setContentsMargins(0, 0, 0, 0);
    jpg->setVerticalSpacing(2);
    cboJpg = new QComboBox(jpegRows_);
    cboJpg->setObjectName("cboJpg");
    for (const QualityChoice& q : JpegQualities()) cboJpg->addItem(q.text, q.flag);
    TxtJPG = new QLineEdit(jpegRows_);
    TxtJPG->setObjectName("TxtJPG");
    TxtJPG->setMaxLength(3);
    jpgUpdate = new QPushButton("Update", jpegRows_);
    jpgUpdate->setObjectName("jpgUpdate");
    jpg->addWidget(new QLabel("Quality", jpegRows_), 0, 0);
    jpg->addWidget(cboJpg, 0, 1, 1, 2);
    jpg->addWidget(TxtJPG, 1, 1);
    jpg->addWidget(jpgUpdate, 1, 2);
    full->addWidget(paletteRows_);
    full->addWidget(jpegRows_);
    outer->addWidget(fullForm_);

    lblFormat = new QLabel("Format: ", this);
    lblFormat->setObjectName("lblFormat");
    lblSize = new QLabel("Size: ", this);
    lblSize->setObjectName("lblSize");
    outer->addWidget(lblFormat);
    outer->addWidget(lblSize);
    outer->addStretch(1);

    connect(CboFiles, &QComboBox::currentIndexChanged, this, [this](int i) { presetChosen(i); });
    connect(cboMap, &QComboBox::currentIndexChanged, this, [this] { settingChanged(); });
    connect(cboDither, &QComboBox::currentIndexChanged, this, [this] { settingChanged(); });
    connect(ChkInterlaced, &QCheckBox::toggled, this, [this] { settingChanged(); });
    connect(cboJpg, &QComboBox::currentIndexChanged, this, [this](int i) { jpegQualityChosen(i); });
    connect(jpgUpdate, &QPushButton::clicked, this, [this] { jpgUpdate_Click(); });
    connect(TxtJPG, &QLineEdit::returnPressed, this, [this] { jpgUpdate_Click(); });
    connect(pMm, &QToolButton::clicked, this, [this] { pMm_Click(); });

    worker_ = std::make_unique<OptimizeWorker>([this](uint64_t ticket, OptimizeResult result) {
        // On the worker's thread: the picture for the view is made here too, and the rest
        // goes to the window's thread.
        QImage picture = PictureOfBits(result.picture);
        result.picture = Bits();
        ++pendingDeliveries_;
        QMetaObject::invokeMethod(
            this,
            [this, ticket, r = std::move(result), p = std::move(picture)]() mutable {
                --pendingDeliveries_;
                delivered(ticket, std::move(r), std::move(p));
            },
            Qt::QueuedConnection);
    });
    fillControls();
    SetGifSaveSettings(&shown_);
}

finfo::~finfo() {
    worker_.reset();
    SetGifSaveSettings(nullptr);
}

finfo::DocState& finfo::state(fImage* document) {
    auto it = states_.find(document);
    if (it == states_.end()) {
        it = states_.emplace(document, DocState{}).first;
        // A new document starts with the settings the box shows.
        it->second.settings = shown_;
        connect(document, &QObject::destroyed, this, [this](QObject* o) { forget(o); });
    }
    return it->second;
}

void finfo::forget(QObject* document) {
    for (auto it = states_.begin(); it != states_.end(); ++it)
        if (static_cast<QObject*>(it->first) == document) {
            states_.erase(it);
            break;
        }
    // The last document closed: the box shows no result.
    if (!current_) showState();
}

bool finfo::wanted(fImage* document) const {
    if (!document) return false;
    return isVisible() || document->CurrentView() == fImage::ViewOptimize;
}

void finfo::request(fImage* document) {
    if (!document || !document->PictureExists()) return;
    DocState& s = state(document);
    s.stale = true;
    if (!wanted(document)) return;
    s.ticket = worker_->Request(std::make_shared<const Bits>(document->bits()), s.settings);
    s.requested = s.settings;
    s.stale = false;
}

void finfo::Update(fImage* document) { request(document); }

void finfo::ShowDocument(fImage* document) {
    current_ = document;
    if (document) {
        DocState& s = state(document);
        shown_ = s.settings;
        fillControls();
        SetGifSaveSettings(&shown_);
        if (s.stale) request(document);
    }
    showState();
}

void finfo::ViewShown(fImage* document) {
    if (document && state(document).stale) request(document);
}

void finfo::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (current_ && state(current_).stale) request(current_);
}

void finfo::delivered(uint64_t ticket, OptimizeResult result, QImage picture) {
    for (auto& [document, s] : states_) {
        // A result whose request was superseded matches no document's ticket.
        if (s.ticket != ticket) continue;
        s.ticket = 0;
        s.madeWith = s.requested;
        if (!result.ok) {
            s.bytes.clear();
            if (document == current_) {
                lblFormat->setText(QString::fromStdString(FormatText(s.madeWith)));
                lblSize->setText("Size: " + QString::fromStdString(result.error));
            }
            return;
        }
        s.bytes = std::move(result.bytes);
        s.width = picture.width();
        s.height = picture.height();
        if (OptimizeView* view = document->OptimizePanel()) view->SetPicture(picture);
        if (document == current_) showState();
        emit resultShown(document);
        return;
    }
}

void finfo::showState() {
    if (!current_) {
        lblFormat->setText("Format: ");
        lblSize->setText("Size: ");
        return;
    }
    const DocState& s = state(current_);
    if (s.bytes.empty()) return; // the first result is on its way
    lblFormat->setText(QString::fromStdString(FormatText(s.madeWith)));
    lblSize->setText(QString::fromStdString(SizeText(s.bytes.size(), SourceBytes(s.width, s.height))));
}

bool finfo::ExtractOptimized(fImage* document, const QString& path, QString* error) {
    if (!document || !document->PictureExists()) {
        if (error) *error = "There is no picture to save.";
        return false;
    }
    DocState& s = state(document);
    if (!s.current()) {
        // The result asked for is not there yet: made here and now, as the save waits. A
        // request still on its way is dropped when it comes.
        QApplication::setOverrideCursor(Qt::WaitCursor);
        OptimizeResult r = Optimize(document->bits(), s.settings);
        QApplication::restoreOverrideCursor();
        if (!r.ok) {
            if (error) *error = QString::fromStdString(r.error);
            return false;
        }
        s.stale = false;
        s.ticket = 0;
        s.madeWith = s.settings;
        s.bytes = std::move(r.bytes);
        s.width = r.picture.width();
        s.height = r.picture.height();
        if (OptimizeView* view = document->OptimizePanel()) view->SetPicture(PictureOfBits(r.picture));
        if (document == current_) showState();
    }
    std::string why;
    if (!WriteFileAtomically(path.toStdString(), s.bytes, why)) {
        if (error) *error = QString::fromStdString(why);
        return false;
    }
    return true;
}

QString finfo::GetOptimizedFileExtension() const {
    return current_ ? QString::fromStdString(ostrivex::GetOptimizedFileExtension(shown_)) : QString();
}

void finfo::pMm_Click() {
    folded_ = !folded_;
    fullForm_->setVisible(!folded_);
    pMm->setText(folded_ ? "+" : "-");
    pMm->setToolTip(folded_ ? "Unfold the box" : "Fold the box");
    emit foldChanged(folded_);
}

int finfo::FoldedHeight() const {
    const QMargins m = layout()->contentsMargins();
    return m.top() + m.bottom() + CboFiles->sizeHint().height() + lblFormat->sizeHint().height() +
           lblSize->sizeHint().height() + 2 * layout()->spacing();
}

// --- The controls -------------------------------------------------------------------------

void finfo::fillControls() {
    filling_ = true;
    const int preset = presetIndexOf(shown_);
    CboFiles->setCurrentIndex(preset);
    cboMap->clear();
    for (const MapChoice& m : PresetMaps(preset)) cboMap->addItem(m.text, m.value);
    cboMap->setCurrentIndex(std::max(0, cboMap->findData(shown_.PaletteMode)));
    cboDither->setCurrentIndex(std::max(0, cboDither->findData(shown_.DitherMode)));
    const bool isJpeg = shown_.Format == WebFormat::Jpeg;
    ChkInterlaced->setChecked(shown_.Interlaced());
    ChkInterlaced->setEnabled(shown_.Format == WebFormat::Gif);
    // "PNG-24 bit" offers its one map, and no dither does anything to it.
    cboDither->setEnabled(shown_.Format != WebFormat::Png24);
    paletteRows_->setVisible(!isJpeg);
    jpegRows_->setVisible(isJpeg);
    const int entry = jpegEntryOf(shown_.JpegQuality);
    cboJpg->setCurrentIndex(entry);
    const bool custom = entry == cboJpg->count() - 1;
    TxtJPG->setEnabled(custom);
    jpgUpdate->setEnabled(custom);
    if (custom) TxtJPG->setText(QString::number(shown_.JpegQuality));
    filling_ = false;
}

void finfo::presetChosen(int index) {
    if (filling_ || index < 0) return;
    // A preset starts on its default map; the dither and the interlace choice stay.
    OptimizeSettings next = SettingsForPreset(index);
    next.DitherMode = shown_.DitherMode;
    SetInterlaced(next, ChkInterlaced->isChecked());
    if (next.Format == WebFormat::Jpeg && !BoxPresets()[size_t(index)].jpegFlag &&
        shown_.Format == WebFormat::Jpeg && jpegEntryOf(shown_.JpegQuality) == cboJpg->count() - 1)
        next.JpegQuality = shown_.JpegQuality; // the custom number typed before
    shown_ = next;
    fillControls();
    settingChanged();
}

void finfo::settingChanged() {
    if (filling_) return;
    if (cboMap->currentIndex() >= 0) shown_.PaletteMode = cboMap->currentData().toInt();
    shown_.DitherMode = cboDither->currentData().toInt();
    SetInterlaced(shown_, ChkInterlaced->isChecked());
    SetGifSaveSettings(&shown_);
    if (!current_) return;
    state(current_).settings = shown_;
    request(current_);
}

void finfo::jpegQualityChosen(int index) {
    if (filling_ || index < 0) return;
    // The quality list and the JPEG presets are two ways to one choice.
    filling_ = true;
    CboFiles->setCurrentIndex(presetOfJpegEntry(index));
    filling_ = false;
    const int32_t flag = cboJpg->itemData(index).toInt();
    const bool custom = flag == 0;
    shown_.PresetName = BoxPresets()[size_t(presetOfJpegEntry(index))].text;
    TxtJPG->setEnabled(custom);
    jpgUpdate->setEnabled(custom);
    if (custom) {
        // The number is taken by the Update button.
        if (TxtJPG->text().isEmpty()) TxtJPG->setText(QString::number(JpegQualityPercent(shown_.JpegQuality)));
        return;
    }
    shown_.JpegQuality = flag;
    settingChanged();
}

void finfo::jpgUpdate_Click() {
    const std::optional<int32_t> q = ParseCustomQuality(TxtJPG->text().toStdString());
    if (!q) {
        DocumentDialogs::Inform(this, kCustomQualityMessage, kMessageTitle);
        return;
    }
    shown_.JpegQuality = *q;
    settingChanged();
}

} // namespace ostrivex
