// The editor's side of the thumbnail helper (`ostrivex-devil serve`).
#include "imagefile/thumbdecoder.h"

#include "imagefile/imagefile.h"

#include <QByteArray>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace ostrivex {

namespace {

// The helper reads and answers on this descriptor.
constexpr int kServeFd = 3;
// How often a waiting decode asks whether it is still wanted.
constexpr int kCancelPollMs = 20;

std::atomic<int> workCounter{0};

} // namespace

ThumbnailDecoder::ThumbnailDecoder() {
    work_ = TempFolder() + "/thumb-" + std::to_string(getpid()) + "-" +
            std::to_string(workCounter.fetch_add(1));
}

ThumbnailDecoder::~ThumbnailDecoder() {
    stop(false);
    std::remove(work_.c_str());
}

bool ThumbnailDecoder::start() {
    int sv[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sv) != 0) return false;
    // A dup2 onto the descriptor it already is would keep its close-on-exec flag.
    if (sv[1] == kServeFd) {
        const int moved = fcntl(sv[1], F_DUPFD_CLOEXEC, kServeFd + 1);
        close(sv[1]);
        sv[1] = moved;
        if (moved < 0) {
            close(sv[0]);
            return false;
        }
    }
    const std::string helper = DevilHelperPath();
    char command[] = "serve";
    std::string budget = std::to_string(ImageMemoryBudget());
    char* argv[] = {const_cast<char*>(helper.c_str()), command, budget.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    // The libraries chatter on stdout and stderr: nowhere.
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, sv[1], kServeFd);
    pid_t pid = -1;
    const int rc = posix_spawn(&pid, helper.c_str(), &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(sv[1]);
    if (rc != 0) {
        close(sv[0]);
        return false;
    }
    pid_ = pid;
    socket_ = sv[0];
    ++starts_;
    return true;
}

void ThumbnailDecoder::stop(bool kill) {
    if (socket_ >= 0) {
        close(socket_); // an idle helper ends when its socket closes
        socket_ = -1;
    }
    if (pid_ <= 0) return;
    int status = 0;
    if (!kill) {
        for (int i = 0; i < 50; ++i) {
            const pid_t done = waitpid(pid_, &status, WNOHANG);
            if (done == pid_ || (done < 0 && errno != EINTR)) {
                pid_ = -1;
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    ::kill(pid_, SIGKILL);
    while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
}

bool ThumbnailDecoder::request(const std::string& message) {
    const char* p = message.data();
    size_t left = message.size();
    while (left > 0) {
        // No SIGPIPE for a helper that died: the send just fails.
        const ssize_t n = send(socket_, p, left, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        p += n;
        left -= size_t(n);
    }
    return true;
}

std::string ThumbnailDecoder::awaitAnswer(const std::function<bool()>& cancelled) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::milliseconds(DevilTimeLimit());
    std::string line;
    for (;;) {
        if (cancelled && cancelled()) return {};
        if (Clock::now() >= deadline) return {};
        pollfd p{socket_, POLLIN, 0};
        const int ready = poll(&p, 1, kCancelPollMs);
        if (ready < 0 && errno != EINTR) return {};
        if (ready <= 0) continue;
        char buf[64];
        const ssize_t n = recv(socket_, buf, sizeof buf, 0);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return {}; // the helper died
        line.append(buf, size_t(n));
        if (const auto nl = line.find('\n'); nl != std::string::npos) return line.substr(0, nl);
        if (line.size() > 256) return {};
    }
}

bool ThumbnailDecoder::Decode(const std::string& path, const std::string& extension,
                              int largestSide, ThumbnailPicture& out,
                              const std::function<bool()>& cancelled) {
    out = ThumbnailPicture();
    const std::string route = ThumbnailRoute(path, extension);
    if (route.empty() || largestSide < 1 || path.find('\0') != std::string::npos) return false;
    std::string message = "thumb";
    for (const std::string& field : {route, path, work_, std::to_string(largestSide)}) {
        message.push_back('\0');
        message += field;
    }
    message.push_back('\0');

    std::remove(work_.c_str());
    // A helper that died while idle fails the first send: one fresh start then.
    bool sent = false;
    for (int attempt = 0; attempt < 2 && !sent; ++attempt) {
        if (socket_ < 0 && !start()) return false;
        sent = request(message);
        if (!sent) stop(true);
    }
    if (!sent) return false;
    const std::string answer = awaitAnswer(cancelled);
    int width = 0, height = 0;
    if (std::sscanf(answer.c_str(), "ok %d %d", &width, &height) != 2) {
        // Crashed, too slow or no longer wanted: the helper goes. FreeImage's loaders and
        // the program's own refuse a bad file cleanly and the helper serves on; after
        // DevIL and the metafile parsers, which are known to corrupt their memory first, a
        // fresh one is started.
        const bool clean = route.rfind("fi:", 0) == 0 || route == "bmp" || route == "pnm" ||
                           route == "png" || route == "sgi" || route == "dcx";
        if (answer != "fail" || !clean) stop(true);
        std::remove(work_.c_str());
        return false;
    }
    out.width = width;
    out.height = height;
    const bool ok = readPicture(route, path, largestSide, out);
    std::remove(work_.c_str());
    if (!ok) out = ThumbnailPicture();
    return ok;
}

bool ThumbnailDecoder::readPicture(const std::string& route, const std::string& path,
                                   int largestSide, ThumbnailPicture& out) {
    const QString work = QString::fromStdString(work_);
    if (route == "emf") {
        // The helper converted the metafile; it is drawn here at its own size, then shrunk.
        const QSize size = EmfPictureSize(path);
        QFile file(work);
        if (!size.isValid() || !file.open(QIODevice::ReadOnly)) return false;
        QSvgRenderer renderer(file.readAll());
        if (!renderer.isValid()) return false;
        renderer.setViewBox(QRectF(0, 0, size.width(), size.height()));
        const QSize fitted = size.width() <= largestSide && size.height() <= largestSide
                                 ? size
                                 : size.scaled(largestSide, largestSide, Qt::KeepAspectRatio);
        QImage img(fitted.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
        img.fill(Qt::white);
        QPainter p(&img);
        p.setRenderHint(QPainter::Antialiasing);
        renderer.render(&p);
        p.end();
        out.picture = img;
        out.width = size.width();
        out.height = size.height();
        return true;
    }
    QImage img;
    if (!img.load(work, "BMP")) return false;
    if (img.width() > largestSide || img.height() > largestSide || out.width < 1 || out.height < 1)
        return false;
    out.picture = img.convertToFormat(QImage::Format_RGB32);
    return !out.picture.isNull();
}

} // namespace ostrivex
