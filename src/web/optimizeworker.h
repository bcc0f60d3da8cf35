// The optimizer off the window's thread.
//
// `OptimizeWorker` keeps one picture's preview current: each request replaces any request
// still waiting, and stops a run under way at its next check, so only the newest settings
// and pixels are ever finished. `ComparisonRunner` writes one picture in many settings at
// once on several threads, reporting each as it finishes; a new start drops the old one.
//
// Both report on their own threads: a window hands the report to its own thread (a queued
// call) and compares the ticket or generation with the newest it asked for.
#pragma once

#include "pixel/bits.h"
#include "web/optimize.h"
#include "web/optimizesettings.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace ostrivex {

class OptimizeWorker {
public:
    // Called on the worker thread with the ticket of the request and its result, for
    // every run that finished without being superseded.
    using Done = std::function<void(uint64_t ticket, OptimizeResult result)>;

    explicit OptimizeWorker(Done done);
    ~OptimizeWorker(); // stops the run under way and waits for the thread
    OptimizeWorker(const OptimizeWorker&) = delete;
    OptimizeWorker& operator=(const OptimizeWorker&) = delete;

    // Asks for `picture` in `settings`; returns the request's ticket (1, 2, 3 ...).
    uint64_t Request(std::shared_ptr<const Bits> picture, const OptimizeSettings& settings);
    // Drops the waiting request and stops the running one; nothing more is reported for
    // any ticket asked for so far.
    void Cancel();
    // The ticket of the newest request (0 before the first).
    uint64_t LatestTicket() const { return latest_.load(); }
    // True while a request waits or runs.
    bool Busy() const;

private:
    struct Job {
        uint64_t ticket;
        std::shared_ptr<const Bits> picture;
        OptimizeSettings settings;
    };
    void run();

    Done done_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::optional<Job> pending_;
    bool running_ = false;
    std::atomic<bool> stopping_{false};
    std::atomic<uint64_t> latest_{0};
    std::atomic<uint64_t> cancelledUpTo_{0};
    std::thread thread_;
};

// One row of a size comparison.
struct ComparisonRow {
    bool ok = false;
    std::string error;
    uint64_t bytes = 0;
    double percent = 0; // of the picture as a 24-bit BMP
    double psnr = 0;    // decibels; +infinity when the file gives the picture back exactly
};

class ComparisonRunner {
public:
    // Called on a worker thread for each row of generation `generation`.
    using RowDone = std::function<void(uint64_t generation, int row, const ComparisonRow& result)>;

    ComparisonRunner(int threads, RowDone done);
    ~ComparisonRunner();
    ComparisonRunner(const ComparisonRunner&) = delete;
    ComparisonRunner& operator=(const ComparisonRunner&) = delete;

    // Writes `picture` in each of `rows`; any earlier start is dropped. Returns its
    // generation.
    uint64_t Start(std::shared_ptr<const Bits> picture, std::vector<OptimizeSettings> rows);
    void Cancel();
    uint64_t Generation() const { return generation_.load(); }

private:
    void run();

    RowDone done_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::shared_ptr<const Bits> picture_;
    std::vector<OptimizeSettings> rows_;
    size_t next_ = 0;
    bool stopping_ = false;
    std::atomic<uint64_t> generation_{0};
    std::vector<std::thread> threads_;
};

} // namespace ostrivex
