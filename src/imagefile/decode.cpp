// Decodes into a Bits: in this process for our own decoders and the hardened libraries,
// or in the helper, whose answer comes back through a memory file.
#include "imagefile/decode.h"

#include "imagefile/fileio.h"
#include "imagefile/helper/protocol.h"
#include "imagefile/helperprocess.h"
#include "imagefile/imagefile.h"

#include <cstring>
#include <new>
#include <climits>
#include <sys/uio.h>
#include <vector>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivex {

namespace {

bool isolateAll = [] {
    const char* v = std::getenv("OSTRIVEX_ISOLATE_DECODERS");
    return v && *v && *v != '0';
}();

// Decoded rows straight into a Bits; the guard band is cleared once the picture is
// whole, so a decode that fails early touches no more memory than it used.
class BitsSink : public codec::PixelSink {
  public:
    explicit BitsSink(Bits& out) : out_(out) {}
    bool begin(int32_t width, int32_t height) override {
        try {
            out_ = Bits::forOverwrite(width, height);
        } catch (const std::bad_alloc&) {
            return false;
        }
        AdviseLargePages(out_);
        return true;
    }
    uint8_t* row(int32_t y) override { return out_.row(y); }

  private:
    Bits& out_;
};

} // namespace

void SetIsolateAllDecoders(bool isolate) {
    isolateAll = isolate;
}
bool IsolateAllDecoders() {
    return isolateAll;
}

bool DecodeHere(Decoder decoder, const InputFile& file, Bits& pixels, codec::DecodeInfo& info) {
    std::FILE* in = file.stream();
    if (!in) return false;
    const codec::SizeLimits limits{ImageMemoryBudget(), file.size()};
    BitsSink sink(pixels);
    const bool ok = decoder(in, limits, sink, info);
    std::fclose(in);
    if (!ok) {
        pixels = Bits();
        return false;
    }
    pixels.zeroGuard();
    return true;
}

bool DecodeInHelper(const std::string& how, const std::string& extension, int inputFd,
                    Bits& pixels, codec::DecodeInfo& info) {
    const int answer = MemoryFile("ostrivex-picture");
    if (answer < 0) return false;
    struct Closer {
        int fd;
        ~Closer() { close(fd); }
    } closer{answer};
    const uint64_t budget = ImageMemoryBudget();
    if (!RunHelper({"decode", how, extension, std::to_string(budget)}, inputFd, answer))
        return false;
    struct stat st {};
    if (fstat(answer, &st) != 0 || size_t(st.st_size) < sizeof(helper::PictureAnswer)) return false;
    const size_t bytes = size_t(st.st_size);
    helper::PictureAnswer head;
    if (pread(answer, &head, sizeof head, 0) != ssize_t(sizeof head)) return false;
    // The helper is trusted no more than the file it read.
    if (!head.valid() || !codec::SizeAllowed(head.width, head.height, {budget, UINT64_MAX / 2}) ||
        bytes != sizeof head + size_t(head.width) * size_t(head.height) * 4)
        return false;
    try {
        pixels = Bits::forOverwrite(head.width, head.height);
    } catch (const std::bad_alloc&) {
        return false;
    }
    AdviseLargePages(pixels);
    // The rows go straight from the memory file into the buffer's rows, many a call.
    const size_t rowBytes = size_t(head.width) * 4;
    off_t at = sizeof head;
    std::vector<iovec> rows;
    for (int32_t y0 = 0; y0 < head.height; y0 += IOV_MAX) {
        const int32_t n = std::min<int32_t>(IOV_MAX, head.height - y0);
        rows.resize(size_t(n));
        for (int32_t i = 0; i < n; ++i)
            rows[size_t(i)] = {pixels.row(y0 + i), rowBytes};
        const size_t want = rowBytes * size_t(n);
        if (preadv(answer, rows.data(), n, at) != ssize_t(want)) {
            pixels = Bits();
            return false;
        }
        at += off_t(want);
    }
    pixels.zeroGuard();
    info.bpp = head.bpp;
    info.dpiX = head.dpiX;
    info.dpiY = head.dpiY;
    return true;
}

} // namespace ostrivex
