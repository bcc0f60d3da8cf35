#include "document/fpaste.h"

#include "pixel/thumbfit.h"

#include "document/fimage.h"
#include "document/host.h"
#include "pixel/bitfilter.h"

#include <QFont>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QPixmap>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <cmath>
#include <cstring>

namespace ostrivex {

namespace {
// Columns of the undo list: the pointer mark, the slot number, the caption.
constexpr int kPointerColumn = 0;
constexpr int kNumberColumn = 1;
constexpr int kCaptionColumn = 2;
const QString kPointerMark = QStringLiteral("\u25B6");
} // namespace

HistoryList::HistoryList(QWidget* parent) : QTreeWidget(parent) {
    setColumnCount(3);
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setSelectionMode(QAbstractItemView::NoSelection);
    header()->setStretchLastSection(true);
    header()->setSectionResizeMode(kPointerColumn, QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(kNumberColumn, QHeaderView::ResizeToContents);
    connect(this, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item, int) {
        const int index = indexOfTopLevelItem(item);
        if (index >= 0) emit entryClicked(index);
    });
}

void HistoryList::loadHistory(int index, const QString& caption) {
    if (index < 0) return;
    while (topLevelItemCount() <= index) {
        auto* item = new QTreeWidgetItem(this);
        item->setText(kNumberColumn, QString::number(topLevelItemCount() - 1));
    }
    topLevelItem(index)->setText(kCaptionColumn, caption);
    MovePointer(index);
}

void HistoryList::KeepEntries(int count) {
    if (count < 0) count = 0;
    while (topLevelItemCount() > count) delete takeTopLevelItem(topLevelItemCount() - 1);
    if (pointer_ >= topLevelItemCount()) pointer_ = -1;
}

void HistoryList::MovePointer(int index) {
    for (int i = 0; i < topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = topLevelItem(i);
        const bool here = i == index;
        item->setText(kPointerColumn, here ? kPointerMark : QString());
        QFont f = item->font(kCaptionColumn);
        f.setBold(here);
        item->setFont(kCaptionColumn, f);
    }
    pointer_ = (index >= 0 && index < topLevelItemCount()) ? index : -1;
    if (pointer_ >= 0) scrollToItem(topLevelItem(pointer_));
}

QString HistoryList::EntryNumber(int index) const {
    const QTreeWidgetItem* item = topLevelItem(index);
    return item ? item->text(kNumberColumn) : QString();
}

QString HistoryList::EntryCaption(int index) const {
    const QTreeWidgetItem* item = topLevelItem(index);
    return item ? item->text(kCaptionColumn) : QString();
}

fPaste::fPaste(QWidget* parent) : QWidget(parent) {
    setObjectName("fPaste");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    tabs_ = new QTabWidget(this);
    tabClips_ = new ClipHistory;
    history_ = new HistoryList;
    history_->setObjectName("tabActions");
    tabs_->addTab(tabClips_, tr("Clips"));
    tabs_->addTab(history_, tr("Actions"));
    layout->addWidget(tabs_);
    connect(history_, &HistoryList::entryClicked, this, &fPaste::jumpTo);
}

void fPaste::jumpTo(int index) {
    DocumentHost* host = GetDocumentHost();
    if (!host) return;
    for (fImage* doc : host->Documents())
        if (doc && doc->HistoryId() == history_->OwnerId) {
            doc->Model().JumpTo(index);
            return;
        }
}

// --- Clip history -----------------------------------------------------------------------

namespace {
void putU32(uint8_t* p, uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = uint8_t(v >> (8 * i));
}
void putU16(uint8_t* p, uint16_t v) {
    p[0] = uint8_t(v);
    p[1] = uint8_t(v >> 8);
}
// The background of an empty thumbnail box and round a fitted thumbnail.
constexpr QRgb kThumbBackground = 0xFFFFFFFFu;
} // namespace

std::vector<uint8_t> ClipSlotRecord(const ClipSlot& slot) {
    const BitmapInfoHeader& h = slot.header;
    std::vector<uint8_t> out(40 + slot.pixels.size());
    uint8_t* p = out.data();
    putU32(p + 0, h.biSize);
    putU32(p + 4, uint32_t(h.biWidth));
    putU32(p + 8, uint32_t(h.biHeight));
    putU16(p + 12, h.biPlanes);
    putU16(p + 14, h.biBitCount);
    putU32(p + 16, h.biCompression);
    putU32(p + 20, h.biSizeImage);
    putU32(p + 24, uint32_t(h.biXPelsPerMeter));
    putU32(p + 28, uint32_t(h.biYPelsPerMeter));
    putU32(p + 32, h.biClrUsed);
    putU32(p + 36, h.biClrImportant);
    if (!slot.pixels.empty()) std::memcpy(p + 40, slot.pixels.data(), slot.pixels.size());
    return out;
}

// One slot of the list: the thumbnail `pT` with the name `BT` and the size text `BR` beside
// it. The frame is raised while the slot is the selected one.
class ClipSlotView : public QFrame {
public:
    ClipSlotView(int index, ClipHistory* owner) : QFrame(owner), index_(index), owner_(owner) {
        setObjectName(QStringLiteral("slot%1").arg(index));
        setFrameShape(QFrame::StyledPanel);
        setLineWidth(1);
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(4, 4, 4, 4);
        pT = new QLabel;
        pT->setObjectName(QStringLiteral("pT%1").arg(index));
        pT->setFixedSize(ClipHistory::kThumbWidth + 2, ClipHistory::kThumbHeight + 2);
        pT->setFrameShape(QFrame::Box);
        pT->setAlignment(Qt::AlignCenter);
        auto* texts = new QVBoxLayout;
        BT = new QLabel;
        BT->setObjectName(QStringLiteral("BT%1").arg(index));
        QFont f = BT->font();
        f.setBold(true);
        BT->setFont(f);
        BR = new QLabel;
        BR->setObjectName(QStringLiteral("BR%1").arg(index));
        texts->addWidget(BT);
        texts->addWidget(BR);
        texts->addStretch(1);
        row->addWidget(pT);
        row->addLayout(texts, 1);
    }

    void SetSelected(bool on) {
        setFrameShadow(on ? QFrame::Raised : QFrame::Plain);
        setLineWidth(on ? 2 : 1);
        setBackgroundRole(on ? QPalette::Highlight : QPalette::Window);
        setAutoFillBackground(on);
        BT->setForegroundRole(on ? QPalette::HighlightedText : QPalette::WindowText);
        BR->setForegroundRole(on ? QPalette::HighlightedText : QPalette::WindowText);
    }

    QLabel* pT = nullptr;
    QLabel* BT = nullptr;
    QLabel* BR = nullptr;

protected:
    void mousePressEvent(QMouseEvent* e) override {
        if (e->button() == Qt::LeftButton) owner_->SelectSlot(index_);
    }
    void mouseDoubleClickEvent(QMouseEvent* e) override {
        if (e->button() == Qt::LeftButton) owner_->PasteFromSlot(index_);
    }

private:
    int index_;
    ClipHistory* owner_;
};

ClipHistory::ClipHistory(QWidget* parent) : QWidget(parent) {
    setObjectName("tabClips");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    LMessage_ = new QLabel(QStringLiteral("Clip History"));
    LMessage_->setObjectName("LMessage");
    layout->addWidget(LMessage_);

    view_ = new QScrollArea;
    view_->setObjectName("lstImages");
    view_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    list_ = new QWidget;
    auto* column = new QVBoxLayout(list_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    for (int i = 0; i < kSlotCount; ++i) {
        views_[size_t(i)] = new ClipSlotView(i, this);
        column->addWidget(views_[size_t(i)]);
    }
    view_->setWidget(list_);
    view_->setWidgetResizable(true);
    layout->addWidget(view_, 1);

    auto* buttons = new QHBoxLayout;
    auto* clearOne = new QPushButton(tr("Clear"));
    clearOne->setObjectName("cmdClear");
    auto* clearAll = new QPushButton(tr("Clear All"));
    clearAll->setObjectName("cmdClearAll");
    buttons->addWidget(clearOne);
    buttons->addWidget(clearAll);
    layout->addLayout(buttons);
    connect(clearOne, &QPushButton::clicked, this, [this] { ClearCLip(false); });
    connect(clearAll, &QPushButton::clicked, this, [this] { ClearCLip(true); });

    for (int i = 0; i < kSlotCount; ++i) DrawThumbnail(i);
    SelectSlot(0);
    Update_V();
}

void ClipHistory::SelectSlot(int index) {
    if (index < 0 || index >= kSlotCount) return;
    selected_ = index;
    for (int i = 0; i < kSlotCount; ++i) views_[size_t(i)]->SetSelected(i == index);
    DrawThumbnail(index);
    view_->ensureWidgetVisible(views_[size_t(index)], 0, 0);
}

QString ClipHistory::SlotName(int index) const { return views_[size_t(index)]->BT->text(); }
QString ClipHistory::SizeText(int index) const { return views_[size_t(index)]->BR->text(); }
QString ClipHistory::Message() const { return LMessage_->text(); }
QSize ClipHistory::ThumbnailSize(int index) const { return fitted_[size_t(index)]; }
QImage ClipHistory::Thumbnail(int index) const { return thumbs_[size_t(index)]; }

int ClipHistory::TargetSlot() const {
    const int i = selected_;
    if (i >= kSlotCount - 1) return kSlotCount - 1;
    if (SlotName(i).isEmpty()) return i;
    if (SlotName(i + 1).isEmpty()) return i + 1;
    return i;
}

int ClipHistory::StoreClip(const Bits& clip) {
    const int target = TargetSlot();
    ClipSlot& slot = slots_[size_t(target)];
    slot.header = BitmapInfoHeader{};
    // The array's upper x bound is W + 1 and its upper y bound H + 1.
    slot.header.biWidth = (clip.width() + 1) - 1;
    slot.header.biHeight = 1 - (clip.height() + 1);
    slot.pixels = clip;
    views_[size_t(target)]->BT->setText(QString::number(target + 1));
    SelectSlot(target); // draws the thumbnail
    return target;
}

void ClipHistory::DrawThumbnail(int index) {
    const ClipSlot& slot = slots_[size_t(index)];
    ClipSlotView* v = views_[size_t(index)];
    QImage box(kThumbWidth, kThumbHeight, QImage::Format_RGB32);
    box.fill(kThumbBackground);
    const int32_t w = slot.Width(), h = slot.Height();
    const bool drawable = w > 0 && h > 0 && slot.pixels.width() == w && slot.pixels.height() == h;
    if (!drawable) {
        fitted_[size_t(index)] = QSize(0, 0);
        thumbs_[size_t(index)] = box;
        v->pT->setPixmap(QPixmap::fromImage(box));
        v->BR->clear();
        LMessage_->setText(QStringLiteral("Clip History"));
        return;
    }
    // Small clips grow to fill the box too.
    const FitSize fit = FitToBox(w, h, kThumbWidth, kThumbHeight);
    cBitFilter scaler;
    scaler.BitsResize(slot.pixels, fit.width, fit.height);
    const Bits& small = scaler.bits();
    // Centred in the box.
    const int ox = (kThumbWidth - fit.width) / 2, oy = (kThumbHeight - fit.height) / 2;
    for (int y = 0; y < fit.height; ++y) {
        const uint8_t* in = small.row(y);
        auto* out = reinterpret_cast<QRgb*>(box.scanLine(oy + y)) + ox;
        for (int x = 0; x < fit.width; ++x)
            out[x] = qRgb(in[x * 4 + 2], in[x * 4 + 1], in[x * 4]);
    }
    fitted_[size_t(index)] = QSize(fit.width, fit.height);
    thumbs_[size_t(index)] = box;
    v->pT->setPixmap(QPixmap::fromImage(box));
    const QString size = QString::number(w) + " x " + QString::number(h);
    v->BR->setText(size);
    LMessage_->setText("Clip History:  " + size);
}

bool ClipHistory::PasteFromSlot(int index) {
    if (index < 0 || index >= kSlotCount) return false;
    const ClipSlot& slot = slots_[size_t(index)];
    if (slot.Width() == 0 || slot.Height() == 0 || slot.pixels.empty()) return false;
    DocumentHost* host = GetDocumentHost();
    if (!host) return false;
    host->ClipBuffer = slot.pixels;
    host->RunCommand(QStringLiteral("PASTE"));
    return true;
}

void ClipHistory::clearSlot(int index) {
    ClipSlot& slot = slots_[size_t(index)];
    slot.pixels = Bits();
    slot.header.biWidth = 0;
    slot.header.biHeight = 0;
    views_[size_t(index)]->BT->clear();
    DrawThumbnail(index);
}

void ClipHistory::ClearCLip(bool all) {
    if (all) {
        // Either count makes a slot worth clearing here...
        for (int i = 0; i < kSlotCount; ++i)
            if (slots_[size_t(i)].Width() != 0 || slots_[size_t(i)].Height() != 0) clearSlot(i);
        return;
    }
    // ...while the selected slot alone is cleared only with both: a slot that has one count
    // without the other stays as it is.
    const ClipSlot& slot = slots_[size_t(selected_)];
    if (slot.Width() != 0 && slot.Height() != 0) clearSlot(selected_);
}

void ClipHistory::Update_V() {
    // The list keeps the height of its ten slots; the view's bar then spans the part that
    // does not fit, a step of one slot for the arrows.
    list_->adjustSize();
    const int step = views_[0]->sizeHint().height() + 2;
    view_->verticalScrollBar()->setSingleStep(step);
    view_->verticalScrollBar()->setPageStep(std::max(step, view_->viewport()->height()));
}

} // namespace ostrivex
