// Where the program keeps its folders and its settings file.
#include "app/settings/appfolder.h"

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
    while (s.size() > 1 && s.back() == '/')
        s.pop_back();
    return s;
}

std::string envText(const char* name) {
    const char* v = std::getenv(name);
    return v ? std::string(v) : std::string();
}

std::string userDataFolder(const AppFolderInputs& in) {
    std::string base = in.xdgDataHome;
    if (base.empty() || base.front() != '/') {
        const std::string home = in.userHome.empty() ? std::string("/tmp") : in.userHome;
        base = home + "/.local/share";
    }
    const fs::path dir = fs::path(base) / "ostrivex";
    std::error_code ec;
    fs::create_directories(dir, ec);
    for (const std::string& from : in.seedSources) {
        if (!fs::is_directory(from, ec)) continue;
        fs::copy(from, dir, fs::copy_options::recursive | fs::copy_options::skip_existing, ec);
        break;
    }
    return withoutTrailingSlash(dir.string());
}

} // namespace

std::string ChooseAppFolder(const AppFolderInputs& in) {
    if (!in.home.empty()) {
        std::error_code ec;
        fs::create_directories(in.home, ec);
        return withoutTrailingSlash(in.home);
    }
    if (!in.exeDir.empty() && in.exeDirWritable && in.exeDirHasResources)
        return withoutTrailingSlash(in.exeDir);
    return userDataFolder(in);
}

std::string AppFolder() {
    // $OSTRIVEX_HOME is read on every call (tests point each case at a fresh folder); the
    // rest is settled once per process.
    AppFolderInputs in;
    in.home = envText("OSTRIVEX_HOME");
    if (!in.home.empty()) return ChooseAppFolder(in);

    static std::once_flag once;
    static std::string folder;
    std::call_once(once, [] {
        AppFolderInputs exe;
        std::error_code ec;
        const fs::path self = fs::read_symlink("/proc/self/exe", ec);
        const fs::path dir = ec ? fs::current_path(ec) : self.parent_path();
        exe.exeDir = dir.string();
        exe.exeDirWritable = ::access(dir.c_str(), W_OK) == 0;
        // An installed program in a folder its user may write (~/.local/bin, a test
        // prefix) still keeps its data in the user's folder: only a build tree has the
        // resources beside the program.
        exe.exeDirHasResources = fs::is_directory(dir / "Help", ec);
        exe.xdgDataHome = envText("XDG_DATA_HOME");
        exe.userHome = envText("HOME");
        // An installed program keeps its resources in share/ostrivex beside its bin folder,
        // or in the data folder fixed when it was built.
        exe.seedSources = {(dir.parent_path() / "share" / "ostrivex").string(), OSTRIVEX_DATA_DIR};
        folder = ChooseAppFolder(exe);
    });
    return folder;
}

bool FileExists(const std::string& path) {
    if (path.empty()) return false;
    std::error_code ec;
    // symlink_status: a link whose target is gone is still a name in the folder.
    return fs::exists(fs::symlink_status(path, ec));
}

} // namespace ostrivex
