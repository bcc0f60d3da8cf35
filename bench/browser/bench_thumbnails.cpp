// Speed of the Browser Box's thumbnails on a folder of photos: 12-megapixel JPEGs (4000 x
// 3000, quality 92, smooth colour fields with grain, about the bytes of a camera's file),
// OSTRIVEX_BENCH_PHOTOS of them (default 500). Four different pictures are written once and
// the folder holds hard links to them under 500 names, so every file is its own cache entry
// while the folder costs no disk.
//
//   BM_ThumbnailCold      per file: the helper's decode and the cache entry written
//   BM_ThumbnailCached    per file: the cache entry read and fitted to 70 x 60
//   BM_FullDecode         per file, 20 files: the open path's full decode (LoadImageFile)
//                         and a shrink, which is what a thumbnail would cost without the
//                         helper's reduced-scale decode
//   BM_FolderFill/cold, /cached   the whole folder through the worker threads of the
//                         browser: first_ms until the first thumbnail reaches the window,
//                         total_s until the last, max_gap_ms the longest wait of a 10 ms
//                         timer of the window's thread meanwhile
//
// Run: build/bin/bench_browser (work files and cache in fresh folders under the system's
// temporary folder, removed at the end).
#include "imagefile/imagefile.h"
#include "imagefile/thumbdecoder.h"
#include "pixel/thumbfit.h"
#include "utilities/browser/thumbcache.h"
#include "utilities/browser/thumbservice.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ostrivex {
namespace {

namespace fs = std::filesystem;

fs::path gRoot;                // everything of this run
std::vector<ThumbJob> gPhotos; // the folder's files

QImage photo(int variant) {
    constexpr int w = 4000, h = 3000;
    QImage img(w, h, QImage::Format_RGB32);
    uint32_t s = 7u + uint32_t(variant);
    const double phase = variant * 1.7;
    for (int y = 0; y < h; ++y) {
        auto* row = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < w; ++x) {
            s = s * 1103515245u + 12345u;
            const int grain = int((s >> 16) & 15) - 8;
            auto c = [grain](double v) { return std::clamp(int(v) + grain, 0, 255); };
            row[x] = qRgb(c(128 + 100 * std::sin(x / 300.0 + y / 500.0 + phase)),
                          c(128 + 90 * std::sin(x / 450.0 - y / 260.0 + 1 + phase)),
                          c(128 + 80 * std::sin((x + y) / 380.0 + 2 + phase)));
        }
    }
    return img;
}

void makeFolder(int count) {
    const fs::path folder = gRoot / "photos";
    fs::create_directories(folder);
    std::vector<std::string> originals;
    for (int v = 0; v < 4; ++v) {
        const std::string path = (gRoot / ("original" + std::to_string(v) + ".jpg")).string();
        photo(v).save(QString::fromStdString(path), "JPG", 92);
        originals.push_back(path);
    }
    for (int i = 0; i < count; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "IMG_%04d.jpg", i);
        const std::string path = (folder / name).string();
        if (::link(originals[size_t(i % 4)].c_str(), path.c_str()) != 0)
            fs::copy_file(originals[size_t(i % 4)], path);
        struct stat st {};
        ::stat(path.c_str(), &st);
        gPhotos.push_back({QByteArray::fromStdString(path), "jpg", int64_t(st.st_mtime),
                           int64_t(st.st_size)});
    }
}

QString freshCache(const char* name) {
    static int n = 0;
    const fs::path p = gRoot / (std::string(name) + std::to_string(n++));
    fs::create_directories(p);
    return QString::fromStdString(p.string());
}

void perFile(benchmark::State& state, double seconds, size_t files) {
    state.counters["per_file_ms"] = seconds * 1000.0 / double(files);
    state.counters["files"] = double(files);
}

void BM_ThumbnailCold(benchmark::State& state) {
    for (auto _ : state) {
        const ThumbnailCache cache(freshCache("cold"));
        ThumbnailDecoder decoder;
        QElapsedTimer t;
        t.start();
        for (const ThumbJob& job : gPhotos) {
            ThumbnailPicture p;
            if (!decoder.Decode(job.path.toStdString(), "jpg", 128, p)) state.SkipWithError("decode");
            const QByteArray uri = ThumbnailCache::FileUri(job.path);
            cache.Write(ThumbnailCache::Size::Normal, uri, job.mtime, job.size,
                        {p.picture, p.width, p.height});
        }
        perFile(state, t.nsecsElapsed() / 1e9, gPhotos.size());
    }
}
BENCHMARK(BM_ThumbnailCold)->Iterations(1)->Unit(benchmark::kSecond);

void BM_ThumbnailCached(benchmark::State& state) {
    const ThumbnailCache cache(freshCache("cached"));
    {
        ThumbnailDecoder decoder;
        for (const ThumbJob& job : gPhotos) {
            ThumbnailPicture p;
            decoder.Decode(job.path.toStdString(), "jpg", 128, p);
            cache.Write(ThumbnailCache::Size::Normal, ThumbnailCache::FileUri(job.path),
                        job.mtime, job.size, {p.picture, p.width, p.height});
        }
    }
    for (auto _ : state) {
        QElapsedTimer t;
        t.start();
        for (const ThumbJob& job : gPhotos) {
            struct stat st {};
            ::stat(job.path.constData(), &st); // the folder listing's look at the file
            ThumbnailCache::Entry e;
            if (!cache.Read(ThumbnailCache::Size::Normal, ThumbnailCache::FileUri(job.path),
                            int64_t(st.st_mtime), e))
                state.SkipWithError("cache miss");
            const FitSize f = FitToBox(e.picture.width(), e.picture.height(), 70, 60);
            benchmark::DoNotOptimize(e.picture.scaled(f.width, f.height, Qt::IgnoreAspectRatio,
                                                      Qt::SmoothTransformation));
        }
        perFile(state, t.nsecsElapsed() / 1e9, gPhotos.size());
    }
}
BENCHMARK(BM_ThumbnailCached)->Iterations(3)->Unit(benchmark::kMillisecond);

void BM_FullDecode(benchmark::State& state) {
    const size_t files = std::min<size_t>(20, gPhotos.size());
    for (auto _ : state) {
        QElapsedTimer t;
        t.start();
        for (size_t i = 0; i < files; ++i) {
            if (!LoadImageFile(gPhotos[i].path.toStdString(), "jpg").ok) state.SkipWithError("load");
            const FitSize f = FitToBox(LoadedWidth, LoadedHeight, 70, 60);
            benchmark::DoNotOptimize(f);
        }
        perFile(state, t.nsecsElapsed() / 1e9, files);
    }
}
BENCHMARK(BM_FullDecode)->Iterations(1)->Unit(benchmark::kSecond);

// The folder through the browser's worker threads; arg 1 runs it a second time on the
// cache the first run filled.
void BM_FolderFill(benchmark::State& state) {
    const QString root = freshCache("fill");
    for (auto _ : state) {
        if (state.range(0) == 1) {
            ThumbnailService warmup(nullptr, 0, root);
            QEventLoop loop;
            QObject::connect(&warmup, &ThumbnailService::finished, &loop, &QEventLoop::quit);
            warmup.Start(gPhotos, QSize(70, 60), false);
            loop.exec();
        }
        ThumbnailService service(nullptr, 0, root);
        QEventLoop loop;
        QElapsedTimer clock, gap;
        double first = -1, maxGap = 0;
        QObject::connect(&service, &ThumbnailService::ready, [&] {
            if (first < 0) first = clock.nsecsElapsed() / 1e6;
        });
        QObject::connect(&service, &ThumbnailService::finished, &loop, &QEventLoop::quit);
        QTimer tick;
        tick.setInterval(10);
        QObject::connect(&tick, &QTimer::timeout, [&] {
            maxGap = std::max(maxGap, gap.nsecsElapsed() / 1e6);
            gap.restart();
        });
        clock.start();
        gap.start();
        tick.start();
        service.Start(gPhotos, QSize(70, 60), false);
        loop.exec();
        const double total = clock.nsecsElapsed() / 1e9;
        state.counters["first_ms"] = first;
        state.counters["total_s"] = total;
        state.counters["max_gap_ms"] = maxGap;
        state.counters["per_file_ms"] = total * 1000.0 / double(gPhotos.size());
        state.counters["decodes"] = service.Decodes();
    }
}
BENCHMARK(BM_FolderFill)->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace
} // namespace ostrivex

int main(int argc, char** argv) {
    using namespace ostrivex;
    std::string pattern = (fs::temp_directory_path() / "ostrivex-bench-browser-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) return 2;
    gRoot = pattern;
    ::setenv("XDG_RUNTIME_DIR", pattern.c_str(), 1); // the helper's work files
    QCoreApplication app(argc, argv);
    const char* count = std::getenv("OSTRIVEX_BENCH_PHOTOS");
    makeFolder(count ? std::max(1, std::atoi(count)) : 500);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::error_code ec;
    fs::remove_all(gRoot, ec);
    return 0;
}
