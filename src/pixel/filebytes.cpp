#include "pixel/filebytes.h"

#include <cstdio>
#include <fstream>

namespace ostrivex {

bool WriteFileBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    if (!f) return false;
    f.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    f.close();
    if (!f) {
        std::remove(path.c_str());
        return false;
    }
    return true;
}

bool ReadFileBytes(const std::string& path, size_t limit, std::vector<uint8_t>& out) {
    std::ifstream f(path, std::ios::binary);
    if (!f) return false;
    out.resize(limit);
    f.read(reinterpret_cast<char*>(out.data()), std::streamsize(limit));
    if (f.bad()) return false;
    out.resize(size_t(f.gcount()));
    return true;
}

} // namespace ostrivex
