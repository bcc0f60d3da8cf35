#include "document/fpaste.h"

#include "document/fimage.h"
#include "document/host.h"

#include <QFont>
#include <QHeaderView>
#include <QTabWidget>
#include <QVBoxLayout>

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
    tabClips_ = new QWidget;
    tabClips_->setObjectName("tabClips");
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
            doc->JumpToHistory(index);
            return;
        }
}

} // namespace ostrivex
