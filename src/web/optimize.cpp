#include "web/optimize.h"

#include "web/colormaps.h"
#include "web/dither.h"
#include "web/encoders.h"
#include "web/quantize.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <mutex>
#include <new>
#include <numeric>
#include <optional>

namespace ostrivex {

namespace {

bool isPaletteFormat(const OptimizeSettings& s) {
    return s.Format == WebFormat::Gif || s.Format == WebFormat::Png8 ||
           (s.Format == WebFormat::Bmp && s.BitsPerPixel <= 8);
}

int paletteBits(const OptimizeSettings& s) {
    const int bits = std::clamp(s.BitsPerPixel, 1, 8);
    if (s.Format == WebFormat::Bmp) return bits <= 1 ? 1 : bits <= 4 ? 4 : 8;
    return bits;
}

Bits greyCopy(const Bits& picture) {
    Bits g = picture;
    for (int32_t y = 0; y < g.height(); ++y) {
        uint8_t* p = g.row(y);
        for (int32_t x = 0; x < g.width(); ++x, p += 4) p[0] = p[1] = p[2] = Luminance(p[2], p[1], p[0]);
    }
    return g;
}

// A map larger than the preset's palette keeps the `count` entries the picture uses most
// (on a tie the lower entry), in their order in the map.
Palette mostUsed(const Bits& picture, const Palette& palette, size_t count, bool grey,
                 const std::function<bool()>& cancelled) {
    const std::vector<uint8_t> first = MapToPalette(picture, palette, DitherNone, {}, grey, cancelled);
    if (first.empty()) return {};
    std::vector<uint64_t> uses(palette.size(), 0);
    for (uint8_t i : first) ++uses[i];
    std::vector<size_t> order(palette.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return uses[a] > uses[b]; });
    order.resize(count);
    std::sort(order.begin(), order.end());
    Palette kept;
    for (size_t i : order) kept.push_back(palette[i]);
    return kept;
}

OptimizeResult cancelledResult() {
    OptimizeResult r;
    r.cancelled = true;
    return r;
}

} // namespace

OptimizeResult Optimize(const Bits& picture, const OptimizeSettings& s,
                        const std::function<bool()>& cancelled, bool readBack) {
    OptimizeResult r;
    r.extension = GetOptimizedFileExtension(s);
    if (picture.empty() || picture.width() < 1 || picture.height() < 1) {
        r.error = "there is no picture to optimize";
        return r;
    }
    const auto stop = [&cancelled] { return cancelled && cancelled(); };
    try {
        if (isPaletteFormat(s)) {
            const int bits = paletteBits(s);
            const size_t maxColours = size_t(1) << bits;
            const bool grey = s.Greyscale || s.PaletteMode == MapFixedGrey;
            Palette palette = FixedPalette(s.PaletteMode, bits);
            int32_t spreadMode = s.PaletteMode;
            if (palette.empty()) {
                const Palette reserved =
                    s.ReserveSystemColors && !grey ? SystemStaticColours() : Palette{};
                palette = OptimalPalette(picture, int(maxColours), reserved, grey, cancelled);
                if (stop()) return cancelledResult();
                // Should the quantizer fail, the picture still gets a palette of its size.
                if (palette.empty()) palette = grey ? FixedGreyPalette(int(maxColours)) : FixedColorPalette(bits);
                spreadMode = MapOptimal;
            }
            if (palette.size() > maxColours) {
                palette = mostUsed(picture, palette, maxColours, grey, cancelled);
                if (palette.empty()) return cancelledResult();
                spreadMode = MapOptimal; // no longer a regular map
            }
            if (stop()) return cancelledResult();
            IndexedPicture indexed;
            indexed.width = picture.width();
            indexed.height = picture.height();
            indexed.indices = MapToPalette(picture, palette, s.DitherMode,
                                           SpreadOf(spreadMode, bits, palette), grey, cancelled);
            if (indexed.indices.empty()) return cancelledResult();
            indexed.palette = std::move(palette);
            r.paletteEntries = int32_t(indexed.palette.size());
            if (stop()) return cancelledResult();
            bool written = false;
            if (s.Format == WebFormat::Gif)
                written = EncodeGif(indexed, bits, s.Interlaced(), r.bytes, r.error);
            else if (s.Format == WebFormat::Png8)
                written = EncodePng8(indexed, r.bytes, r.error);
            else
                written = EncodeIndexedBmp(indexed, bits, r.bytes, r.error);
            if (!written) return r;
        } else if (s.Greyscale) {
            if (!EncodeTrueColour(greyCopy(picture), s, r.bytes, r.error)) return r;
        } else if (!EncodeTrueColour(picture, s, r.bytes, r.error)) {
            return r;
        }
        if (stop()) return cancelledResult();
        if (readBack && !DecodePicture(r.bytes, r.picture)) {
            r.error = "the written file does not read back";
            return r;
        }
    } catch (const std::bad_alloc&) {
        r.bytes.clear();
        r.error = "there is not enough memory to optimize the picture";
        return r;
    }
    r.ok = true;
    return r;
}

Bits ApplyExportOptions(const Bits& picture, bool invert, bool flipVertical, bool flipHorizontal) {
    const int32_t w = picture.width(), h = picture.height();
    Bits out = picture;
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* s = picture.row(flipVertical ? h - 1 - y : y);
        uint8_t* d = out.row(y);
        for (int32_t x = 0; x < w; ++x) {
            const uint8_t* p = s + size_t(flipHorizontal ? w - 1 - x : x) * 4;
            uint8_t* q = d + size_t(x) * 4;
            for (int c = 0; c < 3; ++c) q[c] = invert ? uint8_t(255 - p[c]) : p[c];
            q[3] = p[3];
        }
    }
    return out;
}

double Psnr(const Bits& a, const Bits& b) {
    if (a.width() != b.width() || a.height() != b.height() || a.width() < 1 || a.height() < 1)
        return 0;
    uint64_t sum = 0;
    for (int32_t y = 0; y < a.height(); ++y) {
        const uint8_t* p = a.row(y);
        const uint8_t* q = b.row(y);
        uint64_t row = 0;
        for (int32_t x = 0; x < a.width() * 4; x += 4)
            for (int c = 0; c < 3; ++c) {
                const int d = int(p[x + c]) - int(q[x + c]);
                row += uint64_t(d * d);
            }
        sum += row;
    }
    if (sum == 0) return std::numeric_limits<double>::infinity();
    const double mse = double(sum) / (3.0 * double(a.width()) * double(a.height()));
    return 10.0 * std::log10(255.0 * 255.0 / mse);
}

bool WriteFileAtomically(const std::string& path, const std::vector<uint8_t>& bytes,
                         std::string& error) {
    if (path.empty()) {
        error = "no file name";
        return false;
    }
    // A name of its own beside the target (same folder, so the rename cannot cross file
    // systems), created with the usual permissions less the umask.
    static std::atomic<unsigned> serial{0};
    const std::string temp =
        path + ".tmp" + std::to_string(getpid()) + "." + std::to_string(serial.fetch_add(1));
    const int fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) {
        error = std::strerror(errno);
        return false;
    }
    // A file that is replaced keeps its permissions.
    struct stat old {};
    if (stat(path.c_str(), &old) == 0) fchmod(fd, old.st_mode & 07777);
    size_t done = 0;
    bool ok = true;
    while (ok && done < bytes.size()) {
        const ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) ok = false;
        else done += size_t(n);
    }
    if (!ok) error = std::strerror(errno);
    if (close(fd) != 0 && ok) {
        ok = false;
        error = std::strerror(errno);
    }
    if (ok && std::rename(temp.c_str(), path.c_str()) != 0) {
        ok = false;
        error = std::strerror(errno);
    }
    if (!ok) unlink(temp.c_str());
    return ok;
}

namespace {
std::mutex gifSettingsMutex;
std::optional<OptimizeSettings> gifSettings;
} // namespace

void SetGifSaveSettings(const OptimizeSettings* boxSettings) {
    const std::lock_guard lock(gifSettingsMutex);
    if (boxSettings && boxSettings->Format == WebFormat::Gif)
        gifSettings = *boxSettings;
    else
        gifSettings.reset();
}

OptimizeSettings GifSaveSettings() {
    const std::lock_guard lock(gifSettingsMutex);
    if (gifSettings) return *gifSettings;
    OptimizeSettings s = SettingsForPreset(7); // "GIF-256 Colors", "Optimal", no dither
    s.PaletteMode = MapOptimal;
    return s;
}

bool SaveGifFile(const Bits& picture, const std::string& path, std::string& error) {
    const OptimizeResult r = Optimize(picture, GifSaveSettings(), {}, false);
    if (!r.ok) {
        error = r.error;
        return false;
    }
    return WriteFileAtomically(path, r.bytes, error);
}

} // namespace ostrivex
