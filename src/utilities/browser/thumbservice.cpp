#include "utilities/browser/thumbservice.h"

#include "imagefile/thumbdecoder.h"
#include "pixel/thumbfit.h"

#include <QThread>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ostrivex {

namespace {

// How often the window collects finished thumbnails while a batch runs.
constexpr int kPollMs = 25;
// The workers' niceness (Linux schedules threads one by one): below the window's thread.
constexpr int kWorkerNice = 10;

enum State : uint8_t { NeedLookup, NeedDecode, Running, Finished };

struct Result {
    int index = 0;
    bool ok = false;
    QImage picture;
    int width = 0, height = 0;
};

// The picture fitted into the box, never enlarged.
QImage fitted(const QImage& picture, QSize box, bool resample) {
    if (picture.width() <= box.width() && picture.height() <= box.height()) return picture;
    const FitSize s = FitToBox(picture.width(), picture.height(), box.width(), box.height());
    return picture.scaled(s.width, s.height, Qt::IgnoreAspectRatio,
                          resample ? Qt::SmoothTransformation : Qt::FastTransformation);
}

bool unchanged(const ThumbJob& job) {
    struct stat st {};
    return ::stat(job.path.constData(), &st) == 0 && S_ISREG(st.st_mode) &&
           int64_t(st.st_mtime) == job.mtime && int64_t(st.st_size) == job.size;
}

} // namespace

struct ThumbnailService::Shared {
    explicit Shared(const QString& root) : cache(root) {}

    const ThumbnailCache cache;
    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable exited;
    std::atomic<uint64_t> generation{0};
    bool stop = false;
    int alive = 0;

    // The running batch (under the mutex).
    std::vector<ThumbJob> jobs;
    std::vector<uint8_t> state;
    std::vector<uint8_t> shown; // a picture went out already (a cache entry without size)
    std::deque<int> again;
    size_t lookupCursor = 0, decodeCursor = 0;
    int lookupsLeft = 0, decodesLeft = 0, done = 0;
    QSize box;
    bool resample = false;
    std::vector<Result> results;
    std::atomic<int> cacheHits{0}, decodes{0};

    // The next item in state `want`, from the cursor on and then from the start.
    int next(uint8_t want, size_t& cursor) {
        const size_t n = state.size();
        for (size_t k = 0; k < n; ++k) {
            const size_t i = (cursor + k) % n;
            if (state[i] == want) {
                cursor = i + 1;
                return int(i);
            }
        }
        return -1;
    }

    void finish(int index, uint64_t gen, Result&& r, uint8_t newState) {
        std::lock_guard<std::mutex> lock(mutex);
        if (generation != gen) return;
        const bool wasFinal = state[size_t(index)] == Finished;
        state[size_t(index)] = newState;
        if (newState == NeedDecode) ++decodesLeft;
        if (newState == Finished && !wasFinal) ++done;
        results.push_back(std::move(r));
        if (newState == NeedDecode) wake.notify_one();
    }

    void work(ThumbnailDecoder& decoder);
};

void ThumbnailService::Shared::work(ThumbnailDecoder& decoder) {
    for (;;) {
        ThumbJob job;
        int index = -1;
        bool lookup = false, repeat = false, alreadyShown = false;
        uint64_t gen = 0;
        QSize fitBox;
        bool smooth = false;
        {
            std::unique_lock<std::mutex> lock(mutex);
            wake.wait(lock, [&] {
                return stop || !again.empty() || lookupsLeft > 0 || decodesLeft > 0;
            });
            if (stop) return;
            if (!again.empty()) {
                index = again.front();
                again.pop_front();
                repeat = true;
                lookup = true;
            } else if (lookupsLeft > 0) {
                index = next(NeedLookup, lookupCursor);
                --lookupsLeft;
                lookup = true;
            } else {
                index = next(NeedDecode, decodeCursor);
                --decodesLeft;
            }
            if (index < 0) continue;
            if (!repeat) state[size_t(index)] = Running;
            job = jobs[size_t(index)];
            alreadyShown = shown[size_t(index)] != 0;
            gen = generation;
            fitBox = box;
            smooth = resample;
        }
        const ThumbnailCache::Size size = ThumbnailCache::SizeFor(fitBox.width(), fitBox.height());
        const bool cacheable = !cache.Holds(job.path);
        const QByteArray uri = ThumbnailCache::FileUri(job.path);
        Result r;
        r.index = index;

        if (lookup && cacheable) {
            if (!repeat && cache.HasFailure(uri, job.mtime)) {
                finish(index, gen, std::move(r), Finished);
                continue;
            }
            ThumbnailCache::Entry entry;
            if (cache.Read(size, uri, job.mtime, entry)) {
                ++cacheHits;
                r.ok = true;
                r.picture = fitted(entry.picture, fitBox, smooth);
                r.width = entry.width;
                r.height = entry.height;
                // An entry of another program may not know the picture's size: shown now,
                // decoded in the second round for the size label.
                const bool complete = entry.width > 0 || repeat;
                if (!complete) {
                    std::lock_guard<std::mutex> lock(mutex);
                    if (generation == gen) shown[size_t(index)] = 1;
                }
                finish(index, gen, std::move(r), complete ? Finished : NeedDecode);
                continue;
            }
        }
        if (lookup && !repeat) {
            // Not in the cache: to the second round.
            std::lock_guard<std::mutex> lock(mutex);
            if (generation != gen) continue;
            state[size_t(index)] = NeedDecode;
            ++decodesLeft;
            wake.notify_one();
            continue;
        }

        ThumbnailPicture picture;
        const bool ok = decoder.Decode(job.path.toStdString(), job.extension.toStdString(),
                                       ThumbnailCache::Side(size), picture,
                                       [&] { return stop || generation != gen; });
        if (stop || generation != gen) continue;
        ++decodes;
        const bool stable = cacheable && unchanged(job);
        if (ok) {
            if (stable)
                cache.Write(size, uri, job.mtime, job.size,
                            {picture.picture, picture.width, picture.height});
            r.ok = true;
            r.picture = fitted(picture.picture, fitBox, smooth);
            r.width = picture.width;
            r.height = picture.height;
            finish(index, gen, std::move(r), Finished);
            continue;
        }
        // Marked only where a loader tried: files that have none yet (layered files) are
        // not written off for later versions.
        if (stable && !ThumbnailRoute(job.path.toStdString(), job.extension.toStdString()).empty())
            cache.WriteFailure(uri, job.mtime);
        // A picture another program could show stays, without its size.
        if (alreadyShown || repeat) {
            std::lock_guard<std::mutex> lock(mutex);
            if (generation == gen && state[size_t(index)] != Finished) {
                state[size_t(index)] = Finished;
                ++done;
            }
            continue;
        }
        finish(index, gen, std::move(r), Finished);
    }
}

ThumbnailService::ThumbnailService(QObject* parent, int workers, const QString& cacheRoot)
    : QObject(parent), shared_(std::make_shared<Shared>(cacheRoot)) {
    if (workers <= 0) workers = std::clamp(QThread::idealThreadCount(), 1, 4);
    shared_->alive = workers;
    for (int i = 0; i < workers; ++i) {
        // Made here, in the window's thread: the work file's folder is set up on the way.
        auto decoder = std::make_shared<ThumbnailDecoder>();
        threads_.emplace_back([shared = shared_, decoder] {
            // Background work: the window's own thread goes first.
            setpriority(PRIO_PROCESS, pid_t(syscall(SYS_gettid)), kWorkerNice);
            shared->work(*decoder);
            std::lock_guard<std::mutex> lock(shared->mutex);
            --shared->alive;
            shared->exited.notify_all();
        });
    }
    poll_.setInterval(kPollMs);
    connect(&poll_, &QTimer::timeout, this, &ThumbnailService::drain);
}

ThumbnailService::~ThumbnailService() {
    std::unique_lock<std::mutex> lock(shared_->mutex);
    shared_->stop = true;
    ++shared_->generation;
    shared_->wake.notify_all();
    // A worker leaves within a poll of its helper; one stuck in the file system (a dead
    // network mount) is left behind rather than hanging the window.
    const bool allOut = shared_->exited.wait_for(lock, std::chrono::seconds(3),
                                                 [&] { return shared_->alive == 0; });
    lock.unlock();
    for (std::thread& t : threads_) {
        if (allOut)
            t.join();
        else
            t.detach();
    }
}

void ThumbnailService::Start(std::vector<ThumbJob> jobs, QSize box, bool resample) {
    {
        std::lock_guard<std::mutex> lock(shared_->mutex);
        ++shared_->generation;
        const size_t n = jobs.size();
        shared_->jobs = std::move(jobs);
        shared_->state.assign(n, NeedLookup);
        shared_->shown.assign(n, 0);
        shared_->again.clear();
        shared_->results.clear();
        shared_->lookupCursor = shared_->decodeCursor = 0;
        shared_->lookupsLeft = int(n);
        shared_->decodesLeft = 0;
        shared_->done = 0;
        shared_->box = box.expandedTo(QSize(1, 1));
        shared_->resample = resample;
        shared_->wake.notify_all();
    }
    finishedSent_ = false;
    poll_.start();
    emit progress(0, Total());
}

void ThumbnailService::Cancel() {
    std::lock_guard<std::mutex> lock(shared_->mutex);
    ++shared_->generation;
    shared_->jobs.clear();
    shared_->state.clear();
    shared_->shown.clear();
    shared_->again.clear();
    shared_->results.clear();
    shared_->lookupsLeft = shared_->decodesLeft = shared_->done = 0;
    poll_.stop();
    finishedSent_ = true;
}

void ThumbnailService::SetVisible(int first, int last) {
    std::lock_guard<std::mutex> lock(shared_->mutex);
    if (first < 0 || size_t(first) >= shared_->state.size() || last < first) return;
    shared_->lookupCursor = shared_->decodeCursor = size_t(first);
}

void ThumbnailService::Again(int index) {
    std::lock_guard<std::mutex> lock(shared_->mutex);
    if (index < 0 || size_t(index) >= shared_->state.size()) return;
    if (shared_->state[size_t(index)] != Finished) return; // on its way anyway
    shared_->again.push_back(index);
    shared_->wake.notify_one();
    if (!poll_.isActive()) poll_.start();
}

bool ThumbnailService::Busy() const {
    std::lock_guard<std::mutex> lock(shared_->mutex);
    return shared_->done < int(shared_->state.size()) || !shared_->results.empty();
}

int ThumbnailService::Total() const {
    std::lock_guard<std::mutex> lock(shared_->mutex);
    return int(shared_->state.size());
}

int ThumbnailService::Done() const {
    std::lock_guard<std::mutex> lock(shared_->mutex);
    return shared_->done;
}

const ThumbnailCache& ThumbnailService::Cache() const {
    return shared_->cache;
}

int ThumbnailService::CacheHits() const {
    return shared_->cacheHits;
}

int ThumbnailService::Decodes() const {
    return shared_->decodes;
}

void ThumbnailService::drain() {
    std::vector<Result> results;
    int done = 0, total = 0;
    bool idle = false;
    {
        std::lock_guard<std::mutex> lock(shared_->mutex);
        results.swap(shared_->results);
        done = shared_->done;
        total = int(shared_->state.size());
        idle = shared_->again.empty() && done == total;
    }
    for (Result& r : results) {
        if (r.ok)
            emit ready(r.index, r.picture, r.width, r.height);
        else
            emit failed(r.index);
    }
    if (!results.empty()) emit progress(done, total);
    if (idle) {
        // Nothing more can come unless Again asks.
        {
            std::lock_guard<std::mutex> lock(shared_->mutex);
            if (!shared_->results.empty() || !shared_->again.empty()) return;
        }
        poll_.stop();
        if (!finishedSent_) {
            finishedSent_ = true;
            emit progress(done, total);
            emit finished();
        }
    }
}

} // namespace ostrivex
