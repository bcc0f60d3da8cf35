#include "utilities/browser/ftoolbrowser.h"

#include "app/settings/settings.h"
#include "document/fileops.h"

#include <QAction>
#include <QActionGroup>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QListView>
#include <QProgressBar>
#include <QResizeEvent>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyle>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

namespace ostrivex {

namespace {

// How often the window looks whether the folder's listing is ready.
constexpr int kScanPollMs = 15;

QString imagesFolder() {
    return QString::fromLocal8Bit(AppFolder().c_str()) + QStringLiteral("/Images");
}

} // namespace

// One reading of a folder, shared with its thread: the thread may outlive the window
// (a file system that does not answer), so it touches nothing else.
struct fToolBrowser::Scan {
    std::atomic<bool> cancelled{false};
    std::mutex mutex;
    bool done = false;
    std::vector<FileEntry> entries;
};

fToolBrowser::fToolBrowser(QWidget* parent, int workers, const QString& cacheRoot) : QWidget(parent) {
    setObjectName(QStringLiteral("fToolBrowser"));
    setWindowTitle(QStringLiteral("Thumbnail Browser"));

    tb_ = new QToolBar(this);
    tb_->setObjectName(QStringLiteral("tb"));
    tb_->setIconSize(QSize(16, 16));
    QAction* up = tb_->addAction(style()->standardIcon(QStyle::SP_FileDialogToParent),
                                 QStringLiteral("Up"));
    up->setToolTip(QStringLiteral("One level up"));
    connect(up, &QAction::triggered, this, [this] {
        QDir d(folder_);
        if (d.cdUp()) SetFolder(d.absolutePath());
    });
    tb_->addSeparator();
    views_ = new QActionGroup(this);
    const struct {
        View view;
        const char* caption;
        QStyle::StandardPixmap icon;
    } buttons[] = {{Thumbnails, "Thumbnails", QStyle::SP_FileDialogContentsView},
                   {Details, "Details", QStyle::SP_FileDialogDetailedView},
                   {ListView, "List", QStyle::SP_FileDialogListView},
                   {SmallIcons, "Small Icons", QStyle::SP_FileIcon},
                   {LargeIcons, "Large Icons", QStyle::SP_DirIcon}};
    for (const auto& b : buttons) {
        QAction* a = tb_->addAction(style()->standardIcon(b.icon), QString::fromLatin1(b.caption));
        a->setCheckable(true);
        a->setData(int(b.view));
        views_->addAction(a);
        connect(a, &QAction::triggered, this, [this, v = b.view] { SetView(v); });
    }
    tb_->addSeparator();
    QAction* refresh = tb_->addAction(style()->standardIcon(QStyle::SP_BrowserReload),
                                      QStringLiteral("Refresh"));
    connect(refresh, &QAction::triggered, this, &fToolBrowser::Refresh);
    QAction* options = tb_->addAction(style()->standardIcon(QStyle::SP_FileDialogInfoView),
                                      QStringLiteral("Options..."));
    connect(options, &QAction::triggered, this, &fToolBrowser::optionsRequested);

    splitter_ = new QSplitter(this);
    splitter_->setObjectName(QStringLiteral("Splitter"));
    folders_ = new QFileSystemModel(this);
    folders_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot | QDir::Drives);
    folders_->setRootPath(QStringLiteral("/"));
    fd_ = new QTreeView(splitter_);
    fd_->setObjectName(QStringLiteral("fd"));
    fd_->setModel(folders_);
    for (int c = 1; c < folders_->columnCount(); ++c) fd_->hideColumn(c);
    fd_->setHeaderHidden(true);
    connect(fd_, &QTreeView::clicked, this, &fToolBrowser::folderChosen);
    // The tree's folders come in on the model's own thread: the shown folder is brought
    // into view again as its parents arrive.
    connect(folders_, &QFileSystemModel::directoryLoaded, this, [this](const QString& path) {
        if (folder_.startsWith(path)) showInTree();
    });
    connect(fd_, &QTreeView::activated, this, &fToolBrowser::folderChosen);

    stack_ = new QStackedWidget(splitter_);
    model_ = new DetailsModel(this);
    lv_ = new QTreeView(stack_);
    lv_->setObjectName(QStringLiteral("lv"));
    lv_->setModel(model_);
    lv_->setRootIsDecorated(false);
    lv_->setUniformRowHeights(true);
    lv_->setSortingEnabled(true);
    lv_->header()->setSortIndicator(DetailsModel::Name, Qt::AscendingOrder);
    lv_->setSelectionBehavior(QAbstractItemView::SelectRows);
    icons_ = new QListView(stack_);
    icons_->setObjectName(QStringLiteral("lvIcons"));
    icons_->setModel(model_);
    icons_->setUniformItemSizes(true);
    icons_->setResizeMode(QListView::Adjust);
    panel_ = new ThumbPanel(stack_, workers, cacheRoot);
    stack_->addWidget(lv_);
    stack_->addWidget(icons_);
    stack_->addWidget(panel_);
    for (QAbstractItemView* v : {static_cast<QAbstractItemView*>(lv_), static_cast<QAbstractItemView*>(icons_)})
        connect(v, &QAbstractItemView::activated, this, [this](const QModelIndex& i) {
            if (i.isValid()) open(model_->Entry(i.row()).path);
        });
    connect(panel_, &ThumbPanel::fileActivated, this, &fToolBrowser::open);
    connect(panel_, &ThumbPanel::upRequested, this, [this] {
        QDir d(folder_);
        if (d.cdUp()) SetFolder(d.absolutePath());
    });
    connect(panel_, &ThumbPanel::fillProgress, this, [this](int done, int total) {
        if (!thumbsFilling_) return;
        progress_->setRange(0, std::max(total, 1));
        progress_->setValue(done);
        progress_->setVisible(total > 0);
    });
    connect(panel_, &ThumbPanel::fillFinished, this, [this] {
        thumbsFilling_ = false;
        progress_->hide();
    });
    splitter_->setStretchFactor(0, 2);
    splitter_->setStretchFactor(1, 3);

    progress_ = new QProgressBar(this);
    progress_->setObjectName(QStringLiteral("cFilterProgress"));
    progress_->setMaximumHeight(12);
    progress_->setTextVisible(false);
    progress_->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(tb_);
    layout->addWidget(splitter_, 1);
    layout->addWidget(progress_);

    scanPoll_.setInterval(kScanPollMs);
    connect(&scanPoll_, &QTimer::timeout, this, &fToolBrowser::pollScan);

    folder_ = QString::fromLocal8Bit(FieldText(Settings.BrowserFolder).c_str());
    SetView(Settings.BrowserView);
    ThumbOptionsChanged();
}

fToolBrowser::~fToolBrowser() {
    if (scan_) scan_->cancelled = true;
}

void fToolBrowser::SetFolder(const QString& folder) {
    QString f = QDir::cleanPath(folder);
    // A folder that is gone (a drive not plugged in) gives way to the Images folder, and
    // stays in the settings for the next time. Without an Images folder the lists are empty.
    const bool found = !f.isEmpty() && QFileInfo(f).isDir();
    if (!found) f = imagesFolder();
    folder_ = f;
    const QByteArray stored = QFile::encodeName(f.endsWith('/') ? f : f + '/');
    // The field holds 256 bytes: a longer path is shown but not kept.
    if (found && stored.size() <= 256) SetFieldText(Settings.BrowserFolder, stored.toStdString());
    showInTree();
    Refresh();
}

void fToolBrowser::showInTree() {
    const QModelIndex index = folders_->index(folder_);
    if (!index.isValid()) return;
    for (QModelIndex p = index.parent(); p.isValid(); p = p.parent()) fd_->expand(p);
    fd_->setCurrentIndex(index);
    fd_->scrollTo(index, QAbstractItemView::PositionAtCenter);
}

void fToolBrowser::Refresh() {
    startScan();
}

void fToolBrowser::startScan() {
    if (scan_) scan_->cancelled = true;
    panel_->Clear();
    thumbsFilling_ = false;
    thumbsStale_ = true;
    pictures_.clear();
    auto scan = std::make_shared<Scan>();
    scan_ = scan;
    const QByteArray folder = QFile::encodeName(folder_);
    std::thread([scan, folder] {
        std::vector<FileEntry> entries;
        ScanFolder(
            folder, [&scan] { return scan->cancelled.load(); },
            [&entries](std::vector<FileEntry>&& batch) {
                for (FileEntry& e : batch) entries.push_back(std::move(e));
            });
        if (!scan->cancelled) std::sort(entries.begin(), entries.end(), NameLess);
        std::lock_guard<std::mutex> lock(scan->mutex);
        scan->entries = std::move(entries);
        scan->done = true;
    }).detach();
    progress_->setRange(0, 0); // busy until the listing is in
    progress_->show();
    scanPoll_.start();
}

void fToolBrowser::pollScan() {
    if (!scan_) {
        scanPoll_.stop();
        return;
    }
    std::vector<FileEntry> entries;
    {
        std::lock_guard<std::mutex> lock(scan_->mutex);
        if (!scan_->done) return;
        entries = std::move(scan_->entries);
    }
    scanPoll_.stop();
    scan_.reset();
    scanDone(std::move(entries));
}

void fToolBrowser::scanDone(std::vector<FileEntry> entries) {
    listed_ = true;
    for (const FileEntry& e : entries)
        if (e.image) pictures_.push_back(e);
    model_->SetEntries(std::move(entries));
    const int column = lv_->header()->sortIndicatorSection();
    if (column != DetailsModel::Name || lv_->header()->sortIndicatorOrder() != Qt::AscendingOrder)
        model_->sort(column, lv_->header()->sortIndicatorOrder());
    progress_->hide();
    if (view_ == Thumbnails) startThumbs();
}

void fToolBrowser::startThumbs() {
    thumbsStale_ = false;
    thumbsFilling_ = true;
    progress_->setRange(0, std::max<int>(int(pictures_.size()), 1));
    progress_->setValue(0);
    progress_->setVisible(!pictures_.empty());
    panel_->CreateThumbs(pictures_);
}

bool fToolBrowser::Busy() const {
    return scan_ != nullptr || thumbsFilling_;
}

void fToolBrowser::SetView(int view) {
    view_ = std::clamp(view, int(LargeIcons), int(Thumbnails));
    Settings.BrowserView = std::int16_t(view_);
    for (QAction* a : views_->actions()) a->setChecked(a->data().toInt() == view_);
    switch (view_) {
    case Details:
        stack_->setCurrentWidget(lv_);
        break;
    case Thumbnails:
        stack_->setCurrentWidget(panel_);
        if (thumbsStale_ && listed_ && !scan_) startThumbs();
        break;
    default:
        icons_->setViewMode(view_ == LargeIcons ? QListView::IconMode : QListView::ListMode);
        icons_->setFlow(view_ == ListView ? QListView::TopToBottom : QListView::LeftToRight);
        icons_->setWrapping(true);
        icons_->setIconSize(view_ == LargeIcons ? QSize(32, 32) : QSize(16, 16));
        icons_->setGridSize(view_ == LargeIcons ? QSize(96, 64) : QSize());
        stack_->setCurrentWidget(icons_);
        break;
    }
}

void fToolBrowser::ThumbOptionsChanged() {
    const int32_t c = Settings.ThumbWorkspaceColor;
    QPalette pal = panel_->viewport()->palette();
    pal.setColor(QPalette::Window, QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF));
    panel_->viewport()->setPalette(pal);
    // The thumbnails are made anew at the new size (from the cache, so at once).
    if (view_ == Thumbnails && !thumbsStale_) startThumbs();
    else panel_->thumb_resize();
}

void fToolBrowser::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    // The folder is read when the box first shows, not while the program starts.
    if (!listed_ && !scan_) SetFolder(folder_);
}

void fToolBrowser::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    // The tree beside the files in a wide box, above them in a tall one.
    splitter_->setOrientation(width() >= height() ? Qt::Horizontal : Qt::Vertical);
}

void fToolBrowser::folderChosen(const QModelIndex& index) {
    if (!index.isValid()) return;
    const QString path = folders_->filePath(index);
    if (path != folder_) SetFolder(path);
}

void fToolBrowser::open(const QByteArray& path) {
    OpenImageFile(QFile::decodeName(path));
}

} // namespace ostrivex
