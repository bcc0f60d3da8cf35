// The thumbnail pipeline of the Browser Box: worker threads that take a folder's pictures
// from the shared thumbnail cache, or decode them through the helper (ThumbnailDecoder) and
// store them there, and hand the thumbnails, fitted to the box of the options, to the
// window as they come.
//
// Work goes in two rounds: first every file is looked up in the cache (a fraction of a
// millisecond each, so a folder seen before fills at once), then the files the cache did
// not know are decoded. In each round the visible thumbnails go first. Starting another
// batch (or Cancel) drops what is left of the running one at once: a decode under way is
// abandoned and its helper killed. Results reach the window through the signals, in the
// window's thread.
#pragma once

#include "utilities/browser/thumbcache.h"

#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

namespace ostrivex {

struct ThumbJob {
    QByteArray path;   // absolute, bytes as the file system has them
    QString extension; // lower case
    int64_t mtime = 0; // seconds, as the folder listing saw it
    int64_t size = 0;  // bytes
};

class ThumbnailService : public QObject {
    Q_OBJECT
  public:
    // workers 0: as many as the machine has cores, at most four. An empty cacheRoot is the
    // desktop's cache.
    explicit ThumbnailService(QObject* parent = nullptr, int workers = 0,
                              const QString& cacheRoot = QString());
    ~ThumbnailService() override;

    // Starts on `jobs` (item i of the signals is jobs[i]); the thumbnails are fitted into
    // box, never enlarged, by resampling or by plain stretching. Ends the running batch.
    void Start(std::vector<ThumbJob> jobs, QSize box, bool resample);
    void Cancel();
    // The items on screen, which go first from now on.
    void SetVisible(int first, int last);
    // Delivers item `index` once more (the window let its picture go to save memory).
    void Again(int index);

    bool Busy() const;
    int Total() const;
    int Done() const;
    const ThumbnailCache& Cache() const;
    // Counts since construction: pictures taken from the cache, files decoded by the helper.
    int CacheHits() const;
    int Decodes() const;

  signals:
    // A thumbnail of item `index`; width and height are the picture's own size (0 when the
    // cache's entry did not say and no decode has told it yet: a later `ready` may follow).
    void ready(int index, const QImage& picture, int width, int height);
    // No loader could read item `index`.
    void failed(int index);
    void progress(int done, int total);
    void finished();

  private:
    struct Shared;
    void drain();
    std::shared_ptr<Shared> shared_;
    std::vector<std::thread> threads_;
    QTimer poll_;
    bool finishedSent_ = true;
};

} // namespace ostrivex
