#include "pixel/selectionfile.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivex {

bool IsSelectionDataValid(const std::vector<int32_t>& data) {
    constexpr size_t kHeader = 8, kCount = 2;
    if (data.size() < kHeader) return false;
    const int64_t n = data[kCount];
    if (n < 0 || uint64_t(n) > (data.size() - kHeader) / 4) return false;
    int64_t bandTop = 0, bandBottom = 0, lastRight = 0;
    bool first = true;
    for (int64_t i = 0; i < n; ++i) {
        const int32_t* r = data.data() + kHeader + i * 4;
        const int32_t left = r[0], top = r[1], right = r[2], bottom = r[3];
        if (left >= right || top >= bottom) return false;
        if (!first && top == bandTop) {
            // Same band: same bottom, and to the right of the previous span.
            if (bottom != bandBottom || left < lastRight) return false;
        } else {
            // A new band, below the previous one.
            if (!first && top < bandBottom) return false;
            bandTop = top;
            bandBottom = bottom;
        }
        lastRight = right;
        first = false;
    }
    return true;
}

SelectionFileRead ReadSelectionFile(const std::string& path, std::vector<int32_t>& elements) {
    // Opened without waiting, so a FIFO with no writer cannot hang the program.
    const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) return SelectionFileRead::CannotRead;
    struct stat st {};
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        close(fd);
        return SelectionFileRead::CannotRead;
    }
    const uint64_t length = uint64_t(st.st_size);
    if (length % 4 != 0 || length > kMaxSelectionFileBytes) {
        close(fd);
        return SelectionFileRead::Damaged;
    }
    std::vector<unsigned char> bytes(length);
    size_t got = 0;
    while (got < length) {
        const ssize_t n = read(fd, bytes.data() + got, length - got);
        if (n <= 0) break;
        got += size_t(n);
    }
    close(fd);
    if (got != length) return SelectionFileRead::Damaged; // cut while being read
    elements.resize(length / 4);
    for (size_t i = 0; i < elements.size(); ++i) {
        const unsigned char* p = bytes.data() + i * 4;
        elements[i] = int32_t(uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 |
                              uint32_t(p[3]) << 24);
    }
    return IsSelectionDataValid(elements) ? SelectionFileRead::Ok : SelectionFileRead::Damaged;
}

} // namespace ostrivex
