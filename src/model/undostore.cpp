#include "model/undostore.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace ostrivex {

namespace fs = std::filesystem;

namespace {

// Number as a zero-padded decimal of at least `digits` digits; a negative number keeps its
// sign in front of the padded magnitude (slot -1 is "-01", a name that never exists).
std::string padded(int32_t value, int digits) {
    char buf[24];
    if (value < 0)
        std::snprintf(buf, sizeof buf, "-%0*d", digits, -value);
    else
        std::snprintf(buf, sizeof buf, "%0*d", digits, value);
    return buf;
}

void putU32(uint8_t* p, uint32_t v) {
    p[0] = uint8_t(v);
    p[1] = uint8_t(v >> 8);
    p[2] = uint8_t(v >> 16);
    p[3] = uint8_t(v >> 24);
}
uint32_t getU32(const uint8_t* p) {
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}

bool writeAll(int fd, iovec* iov, int count) {
    while (count > 0) {
        ssize_t n = ::writev(fd, iov, count);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        size_t left = size_t(n);
        while (count > 0 && left >= iov->iov_len) {
            left -= iov->iov_len;
            ++iov;
            --count;
        }
        if (count > 0) {
            iov->iov_base = static_cast<uint8_t*>(iov->iov_base) + left;
            iov->iov_len -= left;
        }
    }
    return true;
}

bool readAll(int fd, uint8_t* p, size_t n) {
    while (n > 0) {
        ssize_t got = ::read(fd, p, n);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        p += got;
        n -= size_t(got);
    }
    return true;
}

} // namespace

UndoStore::UndoStore(fs::path appFolder, int32_t historyId)
    : HistoryId(historyId), ActionNames(kLastSlot + 1), appFolder_(std::move(appFolder)) {}

fs::path UndoStore::SlotFileName(int32_t slot) const {
    return TempFolder() / ("b" + padded(HistoryId, 4) + padded(slot, 2) + ".dat");
}

bool UndoStore::WriteSlotFile(const fs::path& file, const Bits& bits) {
    uint8_t header[40] = {};
    putU32(header + 0, 40);
    putU32(header + 4, uint32_t(bits.width() + 4));
    putU32(header + 8, uint32_t(-(bits.height() + 4)));
    header[12] = 1;  // planes
    header[14] = 32; // bit count
    const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) return false;
    iovec iov[2] = {{header, sizeof header},
                    {const_cast<uint8_t*>(bits.data()), bits.size()}};
    const bool ok = writeAll(fd, iov, bits.empty() ? 1 : 2);
    return (::close(fd) == 0) && ok;
}

bool UndoStore::ReadSlotFile(const fs::path& file, Bits& out) {
    Bits loaded;
    bool damaged = false;
    if (!ReadSlotFileInto(file, loaded, damaged)) return false;
    out = std::move(loaded);
    return true;
}

bool UndoStore::ReadSlotFileInto(const fs::path& file, Bits& out, bool& damaged) {
    damaged = false;
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat st {};
    uint8_t header[40];
    bool ok = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && readAll(fd, header, sizeof header);
    if (ok) {
        const int32_t width = int32_t(getU32(header + 4));
        const int32_t height = int32_t(getU32(header + 8));
        const int32_t w = width - 4;
        const int64_t h = -int64_t(height) - 4;
        // Only what SaveUndoBits writes; the size check also bounds the allocation by the
        // file's own length.
        ok = getU32(header) == 40 && w >= 0 && h >= 0 && h <= INT32_MAX &&
             uint64_t(st.st_size) == 40u + uint64_t(width) * uint64_t(h + 4) * 4u;
        if (ok && out.width() == w && out.height() == h && !out.empty()) {
            ok = readAll(fd, out.data(), out.size());
            damaged = !ok;
        } else if (ok) {
            Bits loaded(w, int32_t(h));
            ok = readAll(fd, loaded.data(), loaded.size());
            if (ok) out = std::move(loaded);
        }
    }
    ::close(fd);
    return ok;
}

UndoStore::SaveResult UndoStore::Save(const Bits& bits, const std::string& label) {
    SaveResult result;
    std::error_code ec;
    fs::create_directories(TempFolder(), ec);
    result.slot = HistoryPosition;
    WriteSlotFile(SlotFileName(HistoryPosition), bits); // errors are not reported

    // The redo branch dies.
    for (int32_t i = HistoryPosition + 1; i <= HistoryTop; ++i) {
        fs::remove(SlotFileName(i), ec);
        if (i >= 0 && i < int32_t(ActionNames.size())) ActionNames[size_t(i)].clear();
        result.removedSlots.push_back(i);
    }
    if (HistoryPosition >= 0 && HistoryPosition < int32_t(ActionNames.size()))
        ActionNames[size_t(HistoryPosition)] = label;

    if (HistoryPosition > kLastSlot - 1) {
        ShiftHistoryFiles();
        result.shifted = true;
    } else {
        ++HistoryPosition;
        HistoryTop = HistoryPosition;
    }
    return result;
}

void UndoStore::ShiftHistoryFiles() {
    std::error_code ec;
    fs::remove(SlotFileName(0), ec);
    for (int32_t i = 1; i <= kLastSlot; ++i) fs::rename(SlotFileName(i), SlotFileName(i - 1), ec);
}

void UndoStore::ClearHistoryFiles() {
    std::error_code ec;
    const std::string prefix = "b" + padded(HistoryId, 4);
    std::vector<fs::path> doomed;
    for (fs::directory_iterator it(TempFolder(), ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (name.size() >= prefix.size() + 4 && name.compare(0, prefix.size(), prefix) == 0 &&
            name.compare(name.size() - 4, 4, ".dat") == 0)
            doomed.push_back(it->path());
    }
    for (const fs::path& p : doomed) fs::remove(p, ec);
}

} // namespace ostrivex
