// Helpers of the browser tests: a scratch folder written with bytes for names, pictures
// written through the image file code, and waiting for the window's background work.
#pragma once

#include "imagefile/imagefile.h"
#include "pixel/bits.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace ostrivex::test {

class Scratch {
  public:
    // In the system's temporary folder, or under `base`.
    explicit Scratch(const std::filesystem::path& base = std::filesystem::temp_directory_path()) {
        std::string pattern = (base / "ostrivex-br-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~Scratch() {
        std::error_code ec;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ec);
        std::filesystem::remove_all(path_, ec);
    }
    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

// A picture of w x h in one colour (0x00BBGGRR).
inline Bits solid(int w, int h, uint32_t bgr) {
    Bits b(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            b(0, x, y) = uint8_t(bgr >> 16);
            b(1, x, y) = uint8_t(bgr >> 8);
            b(2, x, y) = uint8_t(bgr);
        }
    return b;
}

inline void savePicture(const std::string& path, int w, int h, uint32_t bgr = 0x3060C0) {
    const std::string ext = ExtensionOf(path);
    ASSERT_TRUE(SaveImageFile(solid(w, h, bgr), path, ext).ok) << path;
}

inline void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

// Lets events through until `done` holds or `ms` pass; true if it held.
inline bool waitFor(const std::function<bool()>& done, int ms = 20000) {
    QElapsedTimer t;
    t.start();
    while (!done()) {
        if (t.elapsed() > ms) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

} // namespace ostrivex::test
