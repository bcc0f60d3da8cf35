// The private temporary folder and the DevIL helper process.
#include "imagefile/helperprocess.h"
#include "imagefile/imagefile.h"
#include "imagefile/helper/protocol.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace ostrivex {

namespace {

std::string helperOverride;
int helperTimeLimit = 10000;

// True when `dir` is a real folder (not a link) of ours that nobody else may enter.
bool isPrivateFolder(const std::string& dir) {
    struct stat st {};
    if (lstat(dir.c_str(), &st) != 0) return false;
    if (!S_ISDIR(st.st_mode) || st.st_uid != getuid()) return false;
    if ((st.st_mode & 077) != 0 && chmod(dir.c_str(), 0700) != 0) return false;
    return true;
}

bool makePrivateFolder(const std::string& dir) {
    if (mkdir(dir.c_str(), 0700) != 0 && errno != EEXIST) return false;
    return isPrivateFolder(dir);
}

std::string makeTempFolder() {
    if (const char* run = std::getenv("XDG_RUNTIME_DIR"); run && *run) {
        std::string dir = std::string(run) + "/ostrivex";
        if (makePrivateFolder(dir)) return dir;
    }
    std::string base = "/tmp";
    if (const char* t = std::getenv("TMPDIR"); t && *t) base = t;
    while (base.size() > 1 && base.back() == '/')
        base.pop_back();
    std::string dir = base + "/ostrivex-" + std::to_string(getuid());
    if (makePrivateFolder(dir)) return dir;
    // The fixed name is taken by someone else: a fresh private folder of our own instead.
    std::string pattern = base + "/ostrivex-" + std::to_string(getuid()) + "-XXXXXX";
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    if (mkdtemp(buf.data())) return std::string(buf.data());
    return dir;
}

std::string executableFolder() {
    char buf[4096];
    ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
    if (n <= 0) return ".";
    std::string exe(buf, size_t(n));
    auto slash = exe.rfind('/');
    return slash == std::string::npos ? "." : exe.substr(0, slash);
}

} // namespace

std::string TempFolder() {
    // Asked once per process; re-checked on each call in case the folder was removed.
    static std::string folder = makeTempFolder();
    if (!isPrivateFolder(folder)) folder = makeTempFolder();
    return folder;
}

std::string TempBitmapName() {
    return TempFolder() + "/t65s8s98";
}

std::string DevilHelperPath() {
    if (!helperOverride.empty()) return helperOverride;
    if (const char* env = std::getenv("OSTRIVEX_DEVIL_HELPER"); env && *env) return env;
    return executableFolder() + "/ostrivex-devil";
}

void SetDevilHelperPath(const std::string& path) {
    helperOverride = path;
}
void SetDevilTimeLimit(int milliseconds) {
    helperTimeLimit = milliseconds > 0 ? milliseconds : 1;
}
int DevilTimeLimit() {
    return helperTimeLimit;
}

bool RunHelper(const std::vector<std::string>& args, int inputFd, int answerFd) {
    const std::string helper = DevilHelperPath();
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(helper.c_str()));
    for (const auto& a : args)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);

    // The libraries chatter on stdout and stderr: the helper's output goes nowhere. It
    // sees the two descriptors it is given and none of the program's others.
    // Descriptors low enough to clash with 3 and 4 are moved out of the way first.
    auto high = [](int fd) { return fd >= 0 ? fcntl(fd, F_DUPFD_CLOEXEC, 10) : -1; };
    const int input = high(inputFd), answer = high(answerFd);
    struct Closer {
        int fd;
        ~Closer() {
            if (fd >= 0) close(fd);
        }
    } closeInput{input}, closeAnswer{answer};
    if ((inputFd >= 0 && input < 0) || (answerFd >= 0 && answer < 0)) return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    if (input >= 0) posix_spawn_file_actions_adddup2(&actions, input, helper::kInputFd);
    if (answer >= 0) posix_spawn_file_actions_adddup2(&actions, answer, helper::kAnswerFd);
    posix_spawn_file_actions_addclosefrom_np(&actions, helper::kAnswerFd + 1);
    pid_t pid = 0;
    int rc = posix_spawn(&pid, helper.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0) return false;

    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::milliseconds(helperTimeLimit);
    int status = 0;
    auto pause = std::chrono::microseconds(200);
    for (;;) {
        pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid) break;
        if (done < 0 && errno != EINTR) return false;
        if (Clock::now() >= deadline) {
            kill(pid, SIGKILL);
            while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
            }
            return false;
        }
        std::this_thread::sleep_for(pause);
        if (pause < std::chrono::milliseconds(10)) pause *= 2;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace ostrivex
