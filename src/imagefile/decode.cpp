// Decodes into a Bits: in this process for our own decoders and the hardened libraries,
// or in the helper, whose answer comes back through a memory file.
#include "imagefile/decode.h"

#include "imagefile/fileio.h"
#include "imagefile/helper/protocol.h"
#include "imagefile/helperprocess.h"
#include "imagefile/imagefile.h"

#include <cstring>
#include <new>
#include <sys/mman.h>
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

struct Unmap {
    void* p;
    size_t n;
    ~Unmap() {
        if (p && p != MAP_FAILED) munmap(p, n);
    }
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
    Unmap map{mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE | MAP_POPULATE, answer, 0), bytes};
    if (map.p == MAP_FAILED) return false;
    helper::PictureAnswer head;
    std::memcpy(&head, map.p, sizeof head);
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
    const auto* rows = static_cast<const uint8_t*>(map.p) + sizeof head;
    const size_t rowBytes = size_t(head.width) * 4;
    for (int32_t y = 0; y < head.height; ++y)
        std::memcpy(pixels.row(y), rows + size_t(y) * rowBytes, rowBytes);
    pixels.zeroGuard();
    info.bpp = head.bpp;
    info.dpiX = head.dpiX;
    info.dpiY = head.dpiY;
    return true;
}

} // namespace ostrivex
