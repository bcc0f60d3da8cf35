// Where the program keeps its folders and its settings file.
#include "app/settings/settings.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <system_error>

#include <unistd.h>

#ifndef OSTRIVEX_DATA_DIR
#define OSTRIVEX_DATA_DIR "/usr/local/share/ostrivex"
#endif

namespace fs = std::filesystem;

namespace ostrivex {

namespace {

std::string withoutTrailingSlash(std::string s) {
    while (s.size() > 1 && s.back() == '/') s.pop_back();
    return s;
}

std::string envText(const char* name) {
    const char* v = std::getenv(name);
    return v ? std::string(v) : std::string();
}

// Copies the shipped resource folders into a fresh per-user folder. Files the user already
// has are never overwritten, so a second seeding only adds what is new.
void seedFrom(const fs::path& from, const fs::path& to) {
    std::error_code ec;
    if (!fs::is_directory(from, ec)) return;
    fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::skip_existing, ec);
}

// The folder of a program that cannot write beside itself (an installed copy):
// $XDG_DATA_HOME/ostrivex, seeded from the installed resources.
std::string userDataFolder(const fs::path& exeDir) {
    std::string base = envText("XDG_DATA_HOME");
    if (base.empty() || base.front() != '/') {
        std::string home = envText("HOME");
        if (home.empty()) home = "/tmp";
        base = home + "/.local/share";
    }
    const fs::path dir = fs::path(base) / "ostrivex";
    std::error_code ec;
    fs::create_directories(dir, ec);
    // An installed program keeps its resources under share/ostrivex beside its bin folder,
    // or in the folder fixed when it was built.
    seedFrom(exeDir.parent_path() / "share" / "ostrivex", dir);
    seedFrom(fs::path(OSTRIVEX_DATA_DIR), dir);
    return withoutTrailingSlash(dir.string());
}

std::string resolveInstalledFolder() {
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) {
        fs::path dir = exe.parent_path();
        if (::access(dir.c_str(), W_OK) == 0) return withoutTrailingSlash(dir.string());
        return userDataFolder(dir);
    }
    return userDataFolder(fs::current_path(ec));
}

} // namespace

std::string AppFolder() {
    // Read every time: tests point each case at a fresh folder.
    std::string home = envText("OSTRIVEX_HOME");
    if (!home.empty()) {
        std::error_code ec;
        fs::create_directories(home, ec);
        return withoutTrailingSlash(home);
    }
    static std::once_flag once;
    static std::string folder;
    std::call_once(once, [] { folder = resolveInstalledFolder(); });
    return folder;
}

bool FileExists(const std::string& path) {
    if (path.empty()) return false;
    std::error_code ec;
    // symlink_status: a link whose target is gone is still a name in the folder.
    return fs::exists(fs::symlink_status(path, ec));
}

} // namespace ostrivex
