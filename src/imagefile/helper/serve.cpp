// The thumbnail server: `ostrivex-devil serve <budget>` keeps one helper running for the
// Browser Box's thumbnails, so that a folder of photos does not pay for starting the
// program and its libraries (some 30 ms) per file.
//
// Requests come on descriptor 3, a socket from the editor, and answers go back on it:
//   request: "thumb" NUL way NUL source NUL target NUL largest side NUL
//   answer:  "ok <width> <height>\n" (the picture's own size) or "fail\n"
// Ways are those of protocol.h plus "emf". The thumbnail is written to target as a 24-bit
// BMP whose larger side is at most the largest side (a smaller picture keeps its size);
// "emf" writes the SVG conversion instead, which the editor draws, and answers with a size
// of 0 x 0. The helper ends when the socket closes; after a failure the editor may start a
// fresh one.
#include "imagefile/helper/helper.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ostrivex::helper {

namespace {

constexpr int kServeFd = 3;

// One request's fields, read from the socket; false at its end or on a malformed request.
bool readRequest(std::vector<std::string>& fields) {
    static std::string pending;
    fields.clear();
    for (;;) {
        size_t start = 0;
        for (size_t nul; fields.size() < 5 && (nul = pending.find('\0', start)) != std::string::npos;
             start = nul + 1)
            fields.push_back(pending.substr(start, nul - start));
        pending.erase(0, start);
        if (fields.size() == 5) return true;
        if (pending.size() > 65536) return false;
        char buf[4096];
        const ssize_t n = read(kServeFd, buf, sizeof buf);
        if (n <= 0) return false;
        pending.append(buf, size_t(n));
    }
}

void answer(const std::string& text) {
    const char* p = text.data();
    size_t left = text.size();
    while (left > 0) {
        const ssize_t n = write(kServeFd, p, left);
        if (n <= 0) std::exit(1);
        p += n;
        left -= size_t(n);
    }
}

// The size a JPEG was stored at, which a scaled decode records among its comments.
unsigned jpegOriginalSide(FIBITMAP* dib, const char* key, unsigned fallback) {
    FITAG* tag = nullptr;
    if (!FreeImage_GetMetadata(FIMD_COMMENTS, dib, key, &tag) || !tag) return fallback;
    const char* text = static_cast<const char*>(FreeImage_GetTagValue(tag));
    const unsigned long v = text ? std::strtoul(text, nullptr, 10) : 0;
    return v > 0 && v <= 0x7FFFFFFF ? unsigned(v) : fallback;
}

// Decoded rows straight into a FreeImage bitmap, for its thumbnail maker.
class DibSink : public codec::PixelSink {
  public:
    ~DibSink() override {
        if (dib_) FreeImage_Unload(dib_);
    }
    bool begin(int32_t width, int32_t height) override {
        if (dib_) return false;
        dib_ = FreeImage_Allocate(width, height, 32);
        height_ = height;
        return dib_ != nullptr;
    }
    uint8_t* row(int32_t y) override { return FreeImage_GetScanLine(dib_, height_ - 1 - y); }
    FIBITMAP* take() {
        FIBITMAP* d = dib_;
        dib_ = nullptr;
        return d;
    }

  private:
    FIBITMAP* dib_ = nullptr;
    int32_t height_ = 0;
};

// A regular file opened for reading, or null.
std::FILE* openRegular(const std::string& path, uint64_t& size) {
    const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) return nullptr;
    struct stat st {};
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        close(fd);
        return nullptr;
    }
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    size = uint64_t(st.st_size);
    std::FILE* f = fdopen(fd, "rb");
    if (!f) close(fd);
    return f;
}

std::string extensionOf(const std::string& path) {
    const auto slash = path.rfind('/');
    const auto dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
    std::string e = path.substr(dot + 1);
    for (char& c : e)
        if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
    return e;
}

bool thumbnail(const std::vector<std::string>& f, uint64_t budget, unsigned& width,
               unsigned& height) {
    const std::string& way = f[1];
    const std::string& source = f[2];
    const char* target = f[3].c_str();
    const long side = std::strtol(f[4].c_str(), nullptr, 10);
    if (f[0] != "thumb" || side < 1 || side > 4096) return false;
    uint64_t size = 0;
    std::FILE* in = openRegular(source, size);
    if (!in) return false;
    const codec::SizeLimits limits{budget, size};
    FIBITMAP* dib = nullptr;
    bool ok = false;
    if (way == "emf") {
        const int out = open(target, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        ok = out >= 0 && ConvertEmf(in, out) == 0;
        if (out >= 0) close(out);
        std::fclose(in);
        width = height = 0;
        return ok;
    }
    if (way.rfind("fi:", 0) == 0) {
        const int fif = std::atoi(way.c_str() + 3);
        // libjpeg decodes at an eighth, a quarter or half of the size when that is still
        // at least the side asked for: most of a photo's decoding time saved.
        dib = LoadWithFreeImage(in, fif, fif == FIF_JPEG ? int(side << 16) : 0, limits);
    } else {
        DibSink sink;
        codec::DecodeInfo info;
        if (DecodeByWay(way, extensionOf(source), in, limits, sink, info)) dib = sink.take();
    }
    std::fclose(in);
    if (!dib) return false;
    width = jpegOriginalSide(dib, "OriginalJPEGWidth", FreeImage_GetWidth(dib));
    height = jpegOriginalSide(dib, "OriginalJPEGHeight", FreeImage_GetHeight(dib));
    FIBITMAP* small = FreeImage_MakeThumbnail(dib, int(side), TRUE);
    FreeImage_Unload(dib);
    FIBITMAP* rgb = small ? FreeImage_ConvertTo24Bits(small) : nullptr;
    if (small) FreeImage_Unload(small);
    ok = rgb && FreeImage_Save(FIF_BMP, rgb, target, 0);
    if (rgb) FreeImage_Unload(rgb);
    return ok;
}

} // namespace

int Serve(uint64_t budget) {
    // Thumbnails are background work: the editor's own drawing goes first.
    setpriority(PRIO_PROCESS, 0, 10);
    FreeImage_Initialise(FALSE);
    std::vector<std::string> fields;
    while (readRequest(fields)) {
        unsigned width = 0, height = 0;
        if (thumbnail(fields, budget, width, height))
            answer("ok " + std::to_string(width) + " " + std::to_string(height) + "\n");
        else
            answer("fail\n");
    }
    FreeImage_DeInitialise();
    return 0;
}

} // namespace ostrivex::helper
