// Regular input files, outputs that replace their target only when whole, memory files,
// and the decode budget.
#include "imagefile/fileio.h"
#include "imagefile/imagefile.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ostrivex {

namespace {

uint64_t budgetSetting = 0;

// The machine's memory, or the control group's limit where that is lower.
uint64_t usableMemory() {
    const long pages = sysconf(_SC_PHYS_PAGES), page = sysconf(_SC_PAGESIZE);
    uint64_t total = pages > 0 && page > 0 ? uint64_t(pages) * uint64_t(page) : 0;
    std::ifstream limit("/sys/fs/cgroup/memory.max");
    uint64_t cgroup = 0;
    if (limit >> cgroup && cgroup > 0 && (total == 0 || cgroup < total)) total = cgroup;
    return total;
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

// --- Input -----------------------------------------------------------------------------

InputFile::InputFile(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) return;
    struct stat st {};
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        close(fd);
        return;
    }
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    fd_ = fd;
    size_ = st.st_size > 0 ? uint64_t(st.st_size) : 0;
}

InputFile::~InputFile() {
    if (fd_ >= 0) close(fd_);
}

std::FILE* InputFile::stream() const {
    if (fd_ < 0) return nullptr;
    const int fd = fcntl(fd_, F_DUPFD_CLOEXEC, 0);
    if (fd < 0) return nullptr;
    // A duplicate shares the position: start from the beginning.
    lseek(fd, 0, SEEK_SET);
    std::FILE* f = fdopen(fd, "rb");
    if (!f) close(fd);
    return f;
}

// --- Output ----------------------------------------------------------------------------

OutputFile::OutputFile(const std::string& target) : target_(target) {
    const std::string folder = folderOf(target);
    fd_ = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    if (fd_ >= 0) return;
    // No nameless files here: a hidden name beside the target.
    const auto slash = target.rfind('/');
    const std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    std::string pattern = folder + "/." + base + ".saving-XXXXXX";
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    fd_ = mkostemp(buf.data(), O_CLOEXEC);
    if (fd_ < 0) return;
    named_ = buf.data();
    // mkostemp makes the file private; a saved picture gets the usual permissions.
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(fd_, 0666 & ~mask);
}

OutputFile::~OutputFile() {
    if (fd_ >= 0) close(fd_);
    if (!named_.empty()) unlink(named_.c_str());
}

std::FILE* OutputFile::stream() const {
    if (fd_ < 0) return nullptr;
    const int fd = fcntl(fd_, F_DUPFD_CLOEXEC, 0);
    if (fd < 0) return nullptr;
    std::FILE* f = fdopen(fd, "wb");
    if (!f) close(fd);
    return f;
}

bool OutputFile::commit() {
    if (fd_ < 0) return false;
    struct stat old {};
    if (stat(target_.c_str(), &old) == 0 && S_ISREG(old.st_mode)) fchmod(fd_, old.st_mode & 07777);
    if (named_.empty()) {
        // The nameless file gets a hidden name first, then takes the target's at once.
        const std::string proc = "/proc/self/fd/" + std::to_string(fd_);
        const std::string folder = folderOf(target_);
        for (int attempt = 0; attempt < 100 && named_.empty(); ++attempt) {
            const std::string candidate = folder + "/.ostrivex-saving-" + std::to_string(getpid()) +
                                          "-" + std::to_string(attempt);
            if (linkat(AT_FDCWD, proc.c_str(), AT_FDCWD, candidate.c_str(), AT_SYMLINK_FOLLOW) == 0)
                named_ = candidate;
            else if (errno != EEXIST)
                return false;
        }
        if (named_.empty()) return false;
    }
    if (rename(named_.c_str(), target_.c_str()) != 0) return false;
    named_.clear();
    close(fd_);
    fd_ = -1;
    return true;
}

// --- Memory ----------------------------------------------------------------------------

int MemoryFile(const char* name) {
    return memfd_create(name, MFD_CLOEXEC);
}

void SetImageMemoryBudget(uint64_t bytes) {
    budgetSetting = bytes;
}

uint64_t ImageMemoryBudget() {
    if (budgetSetting) return budgetSetting;
    if (const char* mb = std::getenv("OSTRIVEX_MAX_IMAGE_MB"); mb && *mb) {
        const uint64_t v = std::strtoull(mb, nullptr, 10);
        if (v > 0) return v << 20;
    }
    // An eighth of the memory: the editor holds a document's picture several times over
    // (the document, the filter's copy, the previews, a clipboard copy).
    const uint64_t memory = usableMemory();
    return memory ? std::max<uint64_t>(memory / 8, uint64_t(256) << 20) : uint64_t(1) << 30;
}

void AdviseLargePages(Bits& bits) {
    constexpr uintptr_t kLarge = uintptr_t(2) << 20;
    if (bits.size() < 2 * kLarge) return;
    const auto begin = reinterpret_cast<uintptr_t>(bits.data());
    const uintptr_t first = (begin + kLarge - 1) & ~(kLarge - 1);
    const uintptr_t last = (begin + bits.size()) & ~(kLarge - 1);
    if (last > first) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

} // namespace ostrivex
