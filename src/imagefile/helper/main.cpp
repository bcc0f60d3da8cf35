// ostrivex-devil: the helper program that runs the fragile decoders (DevIL, FreeImage,
// libwmf, libemf2svg) away from the editor. A crash, a hang (the editor kills it after
// its time limit) or any failure shows up as a non-zero exit and becomes a failed load or
// save. Its commands and the way the pixels come back are in protocol.h.
#include "imagefile/helper/helper.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivex::helper {

AnswerSink::~AnswerSink() {
    if (map_) munmap(map_, mapBytes_);
}

bool AnswerSink::begin(int32_t width, int32_t height) {
    if (map_ || !codec::SizeAllowed(width, height, limits_)) return false;
    const size_t bytes = sizeof(PictureAnswer) + size_t(width) * size_t(height) * 4;
    if (ftruncate(kAnswerFd, off_t(bytes)) != 0) return false;
    // Every page is written: fault them all in at once rather than one by one.
    void* p = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, kAnswerFd, 0);
    if (p == MAP_FAILED) return false;
    map_ = static_cast<uint8_t*>(p);
    mapBytes_ = bytes;
    width_ = width;
    height_ = height;
    return true;
}

uint8_t* AnswerSink::row(int32_t y) {
    return map_ + sizeof(PictureAnswer) + size_t(y) * size_t(width_) * 4;
}

bool AnswerSink::finish(const codec::DecodeInfo& info) {
    if (!map_) return false;
    PictureAnswer answer;
    answer.width = width_;
    answer.height = height_;
    answer.bpp = info.bpp;
    answer.dpiX = info.dpiX;
    answer.dpiY = info.dpiY;
    answer.complete = 1;
    std::memcpy(map_, &answer, sizeof answer);
    return true;
}

bool DecodeByWay(const std::string& how, const std::string& extension, std::FILE* in,
                 const codec::SizeLimits& limits, codec::PixelSink& sink, codec::DecodeInfo& info) {
    SetDevilAllocationLimit(limits.budgetBytes);
    if (how == "devil" || how == "devilraw")
        return DecodeWithDevil(in, extension, how == "devilraw", limits, sink, info);
    if (how.rfind("fi:", 0) == 0) {
        FIBITMAP* dib = LoadWithFreeImage(in, std::atoi(how.c_str() + 3), 0, limits);
        const bool ok = dib && WriteDib(dib, sink, info);
        if (dib) FreeImage_Unload(dib);
        return ok;
    }
    if (how == "dcx") return DecodeDcx(in, limits, sink, info);
    if (how == "wmf") return RenderWmf(in, limits, sink, info);
    // Our own decoders and the hardened libraries, when the editor asks for them here.
    if (how == "sgi") return codec::DecodeSgi(in, limits, sink, info);
    if (how == "pnm") return codec::DecodePnm(in, limits, sink, info);
    if (how == "jpeg") return codec::DecodeJpeg(in, limits, sink, info);
    if (how == "png") return codec::DecodePng(in, limits, sink, info);
    if (how == "bmp") return codec::DecodeBmp(in, limits, sink, info);
    return false;
}

} // namespace ostrivex::helper

namespace {

using namespace ostrivex;
using namespace ostrivex::helper;

// The helper dies with the program that started it (a killed batch run leaves no
// decoder running on), dumps no core, and may not take much more memory than its
// picture's budget allows: the decoders' own buffers, and the answer.
void limitResources(uint64_t budget) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() == 1) _exit(3);
    rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    const rlim_t bound = budget ? rlim_t(budget) * 3 + (rlim_t(1) << 30) : rlim_t(12) << 30;
    rlimit mem{bound, bound};
    setrlimit(RLIMIT_AS, &mem);
}

uint64_t fileBytes(std::FILE* in) {
    struct stat st {};
    return fstat(fileno(in), &st) == 0 && st.st_size > 0 ? uint64_t(st.st_size) : 0;
}

int decode(const std::string& how, const std::string& extension, uint64_t budget) {
    std::FILE* in = fdopen(kInputFd, "rb");
    if (!in) return 1;
    FreeImage_Initialise(FALSE);
    const codec::SizeLimits limits{budget, fileBytes(in)};
    AnswerSink sink(limits);
    codec::DecodeInfo info;
    return DecodeByWay(how, extension, in, limits, sink, info) && sink.finish(info) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const std::string command = argv[1];
    if (command == "decode" && argc == 5) {
        const uint64_t budget = std::strtoull(argv[4], nullptr, 10);
        limitResources(budget);
        return decode(argv[2], argv[3], budget);
    }
    if (command == "serve" && argc == 3) {
        const uint64_t budget = std::strtoull(argv[2], nullptr, 10);
        limitResources(budget);
        return Serve(budget);
    }
    limitResources(0);
    if (command == "emf" && argc == 2) {
        std::FILE* in = fdopen(kInputFd, "rb");
        return in ? ConvertEmf(in, kAnswerFd) : 1;
    }
    if (command == "convert" && argc == 4) return DevilConvert(argv[2], argv[3]);
    return 2;
}
