// The optimizer's threads: newer requests supersede older ones, and the comparison runs
// every row once per start.
#include "web/optimizeworker.h"
#include "web/web_test_util.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

namespace ostrivex {
namespace {

using namespace std::chrono_literals;

struct Reports {
    std::mutex m;
    std::condition_variable cv;
    std::vector<std::pair<uint64_t, OptimizeResult>> results;
    template <class Pred> bool waitFor(Pred p) {
        std::unique_lock lock(m);
        return cv.wait_for(lock, 30s, [&] { return p(); });
    }
};

TEST(OptimizeWorker, OnlyTheNewestRequestIsFinished) {
    Reports reports;
    OptimizeWorker worker([&reports](uint64_t ticket, OptimizeResult r) {
        const std::lock_guard lock(reports.m);
        reports.results.emplace_back(ticket, std::move(r));
        reports.cv.notify_all();
    });
    auto big = std::make_shared<const Bits>(test::photoLike(1200, 900));
    auto small = std::make_shared<const Bits>(test::photoLike(60, 40));
    // A burst of requests, as the strokes of a brush send them: the last settings win.
    for (int i = 0; i < 6; ++i) worker.Request(big, SettingsForPreset(i));
    const uint64_t last = worker.Request(small, SettingsForPreset(3));
    EXPECT_EQ(last, 7u);
    ASSERT_TRUE(reports.waitFor([&] {
        return !reports.results.empty() && reports.results.back().first == last;
    }));
    // Whatever finished before the last request was made, nothing older came after it.
    const OptimizeResult& r = reports.results.back().second;
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.bytes, Optimize(*small, SettingsForPreset(3)).bytes);
    EXPECT_LE(reports.results.size(), 2u);
    for (size_t i = 1; i < reports.results.size(); ++i)
        EXPECT_LT(reports.results[i - 1].first, reports.results[i].first);

    // A cancel drops what is under way: nothing is reported for it.
    const size_t before = reports.results.size();
    worker.Request(big, SettingsForPreset(7));
    worker.Cancel();
    for (int i = 0; i < 200 && worker.Busy(); ++i) std::this_thread::sleep_for(10ms);
    EXPECT_FALSE(worker.Busy());
    EXPECT_EQ(reports.results.size(), before);
}

TEST(ComparisonRunner, EveryRowOnceAndARestartDropsTheOldOne) {
    std::mutex m;
    std::condition_variable cv;
    std::map<std::pair<uint64_t, int>, ComparisonRow> rows;
    ComparisonRunner runner(2, [&](uint64_t generation, int row, const ComparisonRow& r) {
        const std::lock_guard lock(m);
        EXPECT_TRUE(rows.emplace(std::pair{generation, row}, r).second) << "row reported twice";
        cv.notify_all();
    });
    auto picture = std::make_shared<const Bits>(test::photoLike(400, 300));
    std::vector<OptimizeSettings> all;
    for (int i = 0; i < 16; ++i) all.push_back(SettingsForPreset(i));
    const uint64_t first = runner.Start(picture, all);
    const uint64_t second = runner.Start(picture, all);
    EXPECT_EQ(second, first + 1);
    std::unique_lock lock(m);
    ASSERT_TRUE(cv.wait_for(lock, 60s, [&] {
        int n = 0;
        for (const auto& [key, row] : rows) n += key.first == second;
        return n == 16;
    }));
    for (const auto& [key, row] : rows) {
        if (key.first != second) continue;
        EXPECT_TRUE(row.ok) << row.error;
        EXPECT_EQ(row.bytes, Optimize(*picture, all[size_t(key.second)], {}, false).bytes.size());
    }
    // PNG-24 gives the picture back exactly; JPEG at its best comes close.
    const auto row = [&](int i) { return rows[std::pair{second, i}]; };
    EXPECT_TRUE(std::isinf(row(9).psnr));
    // On optimal palettes every doubling of the colours brings the picture closer.
    for (int i = 3; i <= 7; ++i) EXPECT_GT(row(i).psnr, row(i - 1).psnr) << i;
    EXPECT_GT(row(7).psnr, 30.0);
    EXPECT_GT(row(14).psnr, row(10).psnr);
    EXPECT_LT(row(10).bytes, row(14).bytes);
    EXPECT_NEAR(row(9).percent, 100.0 * double(row(9).bytes) / double(SourceBytes(400, 300)), 1e-9);
}

} // namespace
} // namespace ostrivex
