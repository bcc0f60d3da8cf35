// fToolBrowser, "Thumbnail Browser": the content of the Browser Box. The folder tree `fd`
// on one side of a splitter; on the other the folder's files, either in the list `lv`
// (details with seven columns, or icons, small icons, a list) or as thumbnails in the
// panel `picFrame`, as the view buttons `tb` choose (`BrowserView`: 0 large icons, 1 small
// icons, 2 list, 3 details, 4 thumbnails). A double click opens a file as the "Recent"
// entries do. The progress bar `cFilterProgress` shows while a folder is read and its
// thumbnails come.
//
// The folder is read on a thread of its own and the thumbnails come from worker threads
// (ThumbPanel), so a slow disk or a folder of a hundred thousand files never stops the
// window; choosing another folder drops the work on the old one.
#pragma once

#include "utilities/browser/detailsmodel.h"
#include "utilities/browser/thumbpanel.h"

#include <QTimer>
#include <QWidget>

#include <memory>
#include <vector>

class QActionGroup;
class QFileSystemModel;
class QListView;
class QProgressBar;
class QSplitter;
class QStackedWidget;
class QToolBar;
class QTreeView;

namespace ostrivex {

class fToolBrowser : public QWidget {
    Q_OBJECT
  public:
    // The view styles of BrowserView.
    enum View { LargeIcons = 0, SmallIcons = 1, ListView = 2, Details = 3, Thumbnails = 4 };

    // workers and cacheRoot go to the thumbnail panel (0 and "": the defaults).
    explicit fToolBrowser(QWidget* parent = nullptr, int workers = 0,
                          const QString& cacheRoot = QString());
    ~fToolBrowser() override;

    // Shows `folder` and keeps it in BrowserFolder; for a missing one the Images folder is
    // shown and the setting stays. Reads the folder anew even when it is the one shown.
    void SetFolder(const QString& folder);
    QString Folder() const { return folder_; }
    // Reads the shown folder again.
    void Refresh();
    // The view buttons.
    void SetView(int view);
    int CurrentView() const { return view_; }
    // After "Thumbnails Options": the panel's colour and thumbnails follow the settings.
    void ThumbOptionsChanged();

    // `FolderView` and `CreateThumbs` are under way.
    bool Busy() const;

    DetailsModel* Model() const { return model_; }
    ThumbPanel* Panel() const { return panel_; }
    QTreeView* FolderTree() const { return fd_; }
    QTreeView* List() const { return lv_; }
    QProgressBar* Progress() const { return progress_; }

  signals:
    // The "Options" button: the main window opens "Thumbnails Options".
    void optionsRequested();

  protected:
    void showEvent(QShowEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;

  private:
    struct Scan;
    void startScan();
    void pollScan();
    void scanDone(std::vector<FileEntry> entries);
    void startThumbs();
    void open(const QByteArray& path);
    void folderChosen(const QModelIndex& index);
    void showInTree();

    QToolBar* tb_ = nullptr;
    QActionGroup* views_ = nullptr;
    QSplitter* splitter_ = nullptr;
    QFileSystemModel* folders_ = nullptr;
    QTreeView* fd_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    DetailsModel* model_ = nullptr;
    QTreeView* lv_ = nullptr;
    QListView* icons_ = nullptr;
    ThumbPanel* panel_ = nullptr;
    QProgressBar* progress_ = nullptr;

    QString folder_;
    int view_ = Thumbnails;
    std::shared_ptr<Scan> scan_;
    QTimer scanPoll_;
    std::vector<FileEntry> pictures_; // the shown folder's pictures, by name
    bool listed_ = false;             // a folder has been read
    bool thumbsStale_ = true;         // the panel does not show pictures_ yet
    bool thumbsFilling_ = false;
};

} // namespace ostrivex
