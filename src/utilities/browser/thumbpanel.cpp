#include "utilities/browser/thumbpanel.h"

#include "app/settings/settings.h"

#include <QApplication>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>

#include <algorithm>

namespace ostrivex {

namespace {

QColor fromBgr(int32_t c) {
    return QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
}

// The sides the options dialog allows.
int thumbSide(int v) {
    return std::clamp(v, 16, 256);
}

} // namespace

ThumbPanel::ThumbPanel(QWidget* parent, int workers, const QString& cacheRoot)
    : QAbstractScrollArea(parent), service_(nullptr, workers, cacheRoot) {
    setObjectName(QStringLiteral("picFrame"));
    viewport()->setObjectName(QStringLiteral("picSlide"));
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(20);
    connect(&service_, &ThumbnailService::ready, this, &ThumbPanel::onReady);
    connect(&service_, &ThumbnailService::failed, this, &ThumbPanel::onFailed);
    connect(&service_, &ThumbnailService::progress, this, &ThumbPanel::fillProgress);
    connect(&service_, &ThumbnailService::finished, this, [this] {
        thumb_resize();
        emit fillFinished();
    });
    readOptions();
    Clear();
}

void ThumbPanel::readOptions() {
    thumbW_ = thumbSide(Settings.ThumbWidth);
    thumbH_ = thumbSide(Settings.ThumbHeight);
    showName_ = Settings.ThumbShowFilename != 0;
    showSize_ = Settings.ThumbShowResolution != 0;
    resample_ = Settings.ThumbQuality == 1;
    workspace_ = fromBgr(Settings.ThumbWorkspaceColor);
}

QString ThumbPanel::CutLabel(const QString& name, int width, const QFontMetrics& metrics) {
    if (metrics.horizontalAdvance(name) <= width) return name;
    const QString dots = QStringLiteral("...");
    QString head = name;
    while (!head.isEmpty()) {
        head.chop(head.size() >= 2 && head.back().isLowSurrogate() ? 2 : 1);
        if (metrics.horizontalAdvance(head + dots) <= width) break;
    }
    return head + dots;
}

void ThumbPanel::Clear() {
    service_.Cancel();
    items_.clear();
    Item up;
    up.name = QString::fromLatin1(kUpCaption);
    up.label = CutLabel(up.name, thumbW_, QFontMetrics(font()));
    up.state = Item::Shown;
    items_.push_back(up);
    pictures_.clear();
    pictureBytes_ = 0;
    selected_ = -1;
    relayout();
}

void ThumbPanel::CreateThumbs(const std::vector<FileEntry>& pictures) {
    service_.Cancel();
    readOptions();
    Clear();
    const QFontMetrics metrics(font());
    std::vector<ThumbJob> jobs;
    jobs.reserve(pictures.size());
    items_.reserve(pictures.size() + 1);
    for (const FileEntry& f : pictures) {
        Item item;
        item.path = f.path;
        item.name = f.name;
        item.label = CutLabel(f.name, thumbW_, metrics);
        items_.push_back(std::move(item));
        jobs.push_back({f.path, f.extension, f.mtime, f.size});
    }
    relayout();
    service_.Start(std::move(jobs), QSize(thumbW_, thumbH_), resample_);
    tellVisible();
}

void ThumbPanel::thumb_resize() {
    readOptions();
    const QFontMetrics metrics(font());
    for (Item& item : items_) item.label = CutLabel(item.name, thumbW_, metrics);
    relayout();
}

int ThumbPanel::cellWidth() const {
    return thumbW_ + 2 * kMargin;
}

int ThumbPanel::rowHeight() const {
    const int line = fontMetrics().height();
    return thumbH_ + 2 * kMargin + (showName_ ? line : 0) + (showSize_ ? line : 0);
}

void ThumbPanel::relayout() {
    relayoutPending_ = false;
    const int keepSelected = selected_ >= 0 && selected_ < int(order_.size()) ? order_[size_t(selected_)] : -1;
    order_.clear();
    order_.reserve(items_.size());
    selected_ = -1;
    for (size_t i = 0; i < items_.size(); ++i) {
        if (items_[i].state == Item::Failed) continue;
        if (int(i) == keepSelected) selected_ = int(order_.size());
        order_.push_back(int(i));
    }
    columns_ = std::max(1, viewport()->width() / cellWidth());
    const int rows = (int(order_.size()) + columns_ - 1) / columns_;
    const int content = rows * rowHeight();
    verticalScrollBar()->setRange(0, std::max(0, content - viewport()->height()));
    verticalScrollBar()->setPageStep(std::max(1, viewport()->height()));
    viewport()->update();
    tellVisible();
}

void ThumbPanel::scheduleRelayout() {
    if (relayoutPending_) return;
    relayoutPending_ = true;
    QTimer::singleShot(0, this, [this] {
        if (relayoutPending_) relayout();
    });
}

QRect ThumbPanel::ItemRect(int position) const {
    const int row = position / columns_, column = position % columns_;
    return QRect(column * cellWidth(), row * rowHeight(), cellWidth(), rowHeight());
}

void ThumbPanel::tellVisible() {
    if (order_.size() < 2) return;
    const int top = verticalScrollBar()->value();
    const int firstRow = top / rowHeight();
    const int lastRow = (top + viewport()->height()) / rowHeight();
    const int first = std::clamp(firstRow * columns_, 0, int(order_.size()) - 1);
    const int last = std::clamp((lastRow + 1) * columns_ - 1, first, int(order_.size()) - 1);
    // Item 0 is "One Level up..": job numbers are item numbers less one.
    const int firstJob = std::max(0, order_[size_t(first)] - 1);
    const int lastJob = std::max(firstJob, order_[size_t(last)] - 1);
    service_.SetVisible(firstJob, lastJob);
}

void ThumbPanel::resizeEvent(QResizeEvent* e) {
    QAbstractScrollArea::resizeEvent(e);
    relayout();
}

void ThumbPanel::scrollContentsBy(int, int) {
    viewport()->update();
    tellVisible();
}

int ThumbPanel::positionAt(QPoint p) const {
    const int x = p.x(), y = p.y() + verticalScrollBar()->value();
    if (x < 0 || y < 0) return -1;
    const int column = x / cellWidth();
    if (column >= columns_) return -1;
    const int position = (y / rowHeight()) * columns_ + column;
    return position < int(order_.size()) ? position : -1;
}

void ThumbPanel::paintEvent(QPaintEvent*) {
    if (relayoutPending_) relayout();
    QPainter p(viewport());
    p.fillRect(viewport()->rect(), workspace_);
    const int top = verticalScrollBar()->value();
    const int line = fontMetrics().height();
    const int firstRow = top / rowHeight();
    const int lastRow = (top + viewport()->height()) / rowHeight();
    const QColor text = workspace_.lightness() < 128 ? Qt::white : Qt::black;
    const QPixmap upIcon = style()->standardIcon(QStyle::SP_FileDialogToParent)
                               .pixmap(std::min({thumbW_, thumbH_, 48}));
    for (int row = firstRow; row <= lastRow; ++row) {
        for (int column = 0; column < columns_; ++column) {
            const int position = row * columns_ + column;
            if (position >= int(order_.size())) break;
            Item& item = items_[size_t(order_[size_t(position)])];
            const QRect cell = ItemRect(position).translated(0, -top);
            const QRect box(cell.left() + kMargin, cell.top() + kMargin, thumbW_, thumbH_);
            if (position == selected_) p.fillRect(cell, palette().highlight());
            if (order_[size_t(position)] == 0) {
                p.drawPixmap(box.center() - QPoint(upIcon.width(), upIcon.height()) / 2, upIcon);
            } else if (!item.picture.isNull()) {
                const QPoint at(box.left() + (thumbW_ - item.picture.width()) / 2,
                                box.top() + (thumbH_ - item.picture.height()) / 2);
                p.drawImage(at, item.picture);
            } else {
                if (item.state == Item::Evicted && !item.asked) {
                    item.asked = true;
                    service_.Again(order_[size_t(position)] - 1);
                }
                p.setPen(QColor(160, 160, 160));
                p.drawRect(box.adjusted(0, 0, -1, -1));
            }
            p.setPen(position == selected_ ? palette().highlightedText().color() : text);
            int y = box.bottom() + 1;
            if (showName_) {
                p.drawText(QRect(cell.left(), y, cell.width(), line), Qt::AlignHCenter, item.label);
                y += line;
            }
            if (showSize_ && !item.sizeText.isEmpty())
                p.drawText(QRect(cell.left(), y, cell.width(), line), Qt::AlignHCenter, item.sizeText);
        }
    }
}

void ThumbPanel::onReady(int job, const QImage& picture, int width, int height) {
    const size_t i = size_t(job) + 1;
    if (i >= items_.size()) return;
    Item& item = items_[i];
    if (item.state == Item::Failed) return;
    if (width > 0 && height > 0) item.sizeText = QStringLiteral("%1 x %2").arg(width).arg(height);
    if (!item.picture.isNull()) pictureBytes_ -= item.picture.sizeInBytes();
    item.picture = picture;
    item.state = Item::Shown;
    item.asked = false;
    pictureBytes_ += picture.sizeInBytes();
    pictures_.push_back(int(i));
    keepWithinBudget();
    viewport()->update();
}

void ThumbPanel::onFailed(int job) {
    const size_t i = size_t(job) + 1;
    if (i >= items_.size()) return;
    Item& item = items_[i];
    if (!item.picture.isNull()) pictureBytes_ -= item.picture.sizeInBytes();
    item.picture = QImage();
    item.state = Item::Failed;
    scheduleRelayout();
}

void ThumbPanel::keepWithinBudget() {
    // The rows on screen keep theirs.
    const int top = verticalScrollBar()->value();
    const int first = (top / rowHeight()) * columns_;
    const int last = ((top + viewport()->height()) / rowHeight() + 1) * columns_;
    size_t tries = pictures_.size();
    while (pictureBytes_ > kPictureBudget && !pictures_.empty() && tries-- > 0) {
        const int i = pictures_.front();
        pictures_.pop_front();
        Item& item = items_[size_t(i)];
        if (item.picture.isNull()) continue; // an older entry of a picture replaced since
        const auto pos = std::lower_bound(order_.begin(), order_.end(), i) - order_.begin();
        if (pos >= first && pos <= last) {
            pictures_.push_back(i);
            continue;
        }
        pictureBytes_ -= item.picture.sizeInBytes();
        item.picture = QImage();
        item.state = Item::Evicted;
        item.asked = false;
    }
}

void ThumbPanel::activate(int position) {
    if (position < 0 || position >= int(order_.size())) return;
    if (order_[size_t(position)] == 0)
        emit upRequested();
    else
        emit fileActivated(items_[size_t(order_[size_t(position)])].path);
}

void ThumbPanel::mousePressEvent(QMouseEvent* e) {
    selected_ = positionAt(e->position().toPoint());
    viewport()->update();
}

void ThumbPanel::mouseDoubleClickEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton) activate(positionAt(e->position().toPoint()));
}

void ThumbPanel::keyPressEvent(QKeyEvent* e) {
    int move = 0;
    switch (e->key()) {
    case Qt::Key_Left: move = -1; break;
    case Qt::Key_Right: move = 1; break;
    case Qt::Key_Up: move = -columns_; break;
    case Qt::Key_Down: move = columns_; break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        activate(selected_);
        return;
    default:
        QAbstractScrollArea::keyPressEvent(e);
        return;
    }
    if (order_.empty()) return;
    selected_ = std::clamp(selected_ < 0 ? 0 : selected_ + move, 0, int(order_.size()) - 1);
    const QRect r = ItemRect(selected_);
    QScrollBar* bar = verticalScrollBar();
    if (r.top() < bar->value()) bar->setValue(r.top());
    else if (r.bottom() > bar->value() + viewport()->height()) bar->setValue(r.bottom() - viewport()->height() + 1);
    viewport()->update();
}

} // namespace ostrivex
