#include "web/optimizeworker.h"

namespace ostrivex {

// --- OptimizeWorker ----------------------------------------------------------------------

OptimizeWorker::OptimizeWorker(Done done) : done_(std::move(done)) {
    thread_ = std::thread([this] { run(); });
}

OptimizeWorker::~OptimizeWorker() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        pending_.reset();
    }
    wake_.notify_all();
    thread_.join();
}

uint64_t OptimizeWorker::Request(std::shared_ptr<const Bits> picture, const OptimizeSettings& settings) {
    uint64_t ticket = 0;
    {
        const std::lock_guard lock(mutex_);
        ticket = latest_.load() + 1;
        latest_.store(ticket);
        pending_ = Job{ticket, std::move(picture), settings};
    }
    wake_.notify_all();
    return ticket;
}

void OptimizeWorker::Cancel() {
    const std::lock_guard lock(mutex_);
    pending_.reset();
    cancelledUpTo_.store(latest_.load());
}

bool OptimizeWorker::Busy() const {
    const std::lock_guard lock(mutex_);
    return running_ || pending_.has_value();
}

void OptimizeWorker::run() {
    for (;;) {
        Job job;
        {
            std::unique_lock lock(mutex_);
            running_ = false;
            wake_.wait(lock, [this] { return stopping_ || pending_.has_value(); });
            if (stopping_) return;
            job = std::move(*pending_);
            pending_.reset();
            running_ = true;
        }
        // A newer request, a cancel or the end of the worker stops this run.
        const auto superseded = [this, &job] {
            return latest_.load() != job.ticket || cancelledUpTo_.load() >= job.ticket ||
                   stopping_;
        };
        if (!job.picture) continue;
        OptimizeResult result = Optimize(*job.picture, job.settings, superseded);
        job.picture.reset();
        if (result.cancelled || superseded()) continue;
        if (done_) done_(job.ticket, std::move(result));
    }
}

// --- ComparisonRunner --------------------------------------------------------------------

ComparisonRunner::ComparisonRunner(int threads, RowDone done) : done_(std::move(done)) {
    for (int i = 0; i < std::max(1, threads); ++i) threads_.emplace_back([this] { run(); });
}

ComparisonRunner::~ComparisonRunner() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        generation_.fetch_add(1);
    }
    wake_.notify_all();
    for (std::thread& t : threads_) t.join();
}

uint64_t ComparisonRunner::Start(std::shared_ptr<const Bits> picture, std::vector<OptimizeSettings> rows) {
    uint64_t generation = 0;
    {
        const std::lock_guard lock(mutex_);
        generation = generation_.fetch_add(1) + 1;
        picture_ = std::move(picture);
        rows_ = std::move(rows);
        next_ = 0;
    }
    wake_.notify_all();
    return generation;
}

void ComparisonRunner::Cancel() {
    const std::lock_guard lock(mutex_);
    generation_.fetch_add(1);
    picture_.reset();
    rows_.clear();
    next_ = 0;
}

void ComparisonRunner::run() {
    for (;;) {
        std::shared_ptr<const Bits> picture;
        OptimizeSettings settings;
        uint64_t generation = 0;
        int row = 0;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return stopping_ || (picture_ && next_ < rows_.size()); });
            if (stopping_) return;
            generation = generation_.load();
            row = int(next_++);
            settings = rows_[size_t(row)];
            picture = picture_;
        }
        const auto dropped = [this, generation] { return generation_.load() != generation; };
        const OptimizeResult r = Optimize(*picture, settings, dropped);
        if (r.cancelled || dropped()) continue;
        ComparisonRow out;
        out.ok = r.ok;
        out.error = r.error;
        out.bytes = r.bytes.size();
        const uint64_t source = SourceBytes(picture->width(), picture->height());
        out.percent = source ? 100.0 * double(out.bytes) / double(source) : 0;
        if (r.ok) out.psnr = Psnr(*picture, r.picture);
        if (done_) done_(generation, row, out);
    }
}

} // namespace ostrivex
