// The thumbnail panel of the Browser Box (`picFrame` with its sliding content `picSlide`):
// "One Level up.." first, then one thumbnail per picture of the folder, laid out left to
// right in rows as wide as the panel. Each item shows its picture fitted into ThumbWidth by
// ThumbHeight, the file name cut with "..." when it is wider than the thumbnail
// (ThumbShowFilename) and the picture's size "W x H" (ThumbShowResolution), on the
// ThumbWorkspaceColor background.
//
// The panel draws only the rows on screen, so a folder of any size costs one small record
// per file; the pictures come from a ThumbnailService as they are ready, the visible ones
// first. A file no loader can read leaves the panel. Pictures beyond a memory budget are
// let go, those furthest from the screen first, and asked for again when they scroll back
// into view (the cache answers in a millisecond).
#pragma once

#include "utilities/browser/folderscan.h"
#include "utilities/browser/thumbservice.h"

#include <QAbstractScrollArea>
#include <QImage>

#include <deque>
#include <vector>

class QFontMetrics;

namespace ostrivex {

class ThumbPanel : public QAbstractScrollArea {
    Q_OBJECT
  public:
    static constexpr const char* kUpCaption = "One Level up..";
    // Room around a thumbnail in its cell.
    static constexpr int kMargin = 4;
    // Bytes of thumbnail pictures kept at most.
    static constexpr qsizetype kPictureBudget = qsizetype(96) << 20;

    struct Item {
        enum State { Pending, Shown, Evicted, Failed };
        QByteArray path;  // the file (empty for "One Level up..")
        QString name;     // the whole file name
        QString label;    // the name as shown
        QString sizeText; // "W x H", empty until known
        QImage picture;
        State state = Pending;
        bool asked = false; // an evicted picture has been asked for again
    };

    explicit ThumbPanel(QWidget* parent = nullptr, int workers = 0,
                        const QString& cacheRoot = QString());

    // `CreateThumbs`: the pictures of a folder (in the order given) replace the old ones;
    // their thumbnails start to come. The settings of the thumbnails are read now.
    void CreateThumbs(const std::vector<FileEntry>& pictures);
    // Drops the items and stops the work on them.
    void Clear();
    // `thumb_resize`: reads the options again (after "Thumbnails Options") and lays the
    // items out anew.
    void thumb_resize();

    // The items in panel order, "One Level up.." first; failed files are not among them.
    int ItemCount() const { return int(order_.size()); }
    const Item& ItemAt(int position) const { return items_[size_t(order_[size_t(position)])]; }
    // The service's job number of the item at `position` (-1 for "One Level up..").
    int JobAt(int position) const { return order_[size_t(position)] - 1; }
    int Columns() const { return columns_; }
    // An item's place in the scrolled content.
    QRect ItemRect(int position) const;
    int SelectedPosition() const { return selected_; }
    ThumbnailService& Service() { return service_; }
    const ThumbnailService& Service() const { return service_; }

    // The name cut to `width` pixels: whole as long as it fits, else as many leading
    // characters as fit with "..." after them.
    static QString CutLabel(const QString& name, int width, const QFontMetrics& metrics);

  signals:
    // A double click on "One Level up..".
    void upRequested();
    // A double click (or Return) on a picture.
    void fileActivated(const QByteArray& path);
    void fillProgress(int done, int total);
    void fillFinished();

  protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;

  private:
    void readOptions();
    void relayout();
    void scheduleRelayout();
    void tellVisible();
    int positionAt(QPoint viewportPoint) const;
    void activate(int position);
    void onReady(int job, const QImage& picture, int width, int height);
    void onFailed(int job);
    void keepWithinBudget();
    int rowHeight() const;
    int cellWidth() const;

    ThumbnailService service_;
    std::vector<Item> items_;   // item 0 is "One Level up..", item j + 1 is job j
    std::vector<int> order_;    // items shown, in panel order
    std::deque<int> pictures_;  // items holding a picture, oldest first
    qsizetype pictureBytes_ = 0;
    int columns_ = 1;
    int selected_ = -1;
    bool relayoutPending_ = false;
    // The options as read at the last CreateThumbs or thumb_resize.
    int thumbW_ = 70, thumbH_ = 60;
    bool showName_ = true, showSize_ = true, resample_ = false;
    QColor workspace_ = Qt::white;
};

} // namespace ostrivex
