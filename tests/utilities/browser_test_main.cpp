// Test main of the browser, pan view and overlay tests: the offscreen platform, a fresh program folder in
// OSTRIVEX_HOME, and the work files and the thumbnail cache in it too, so nothing of the
// user's is read or written; then one QApplication.
#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    std::string home = (std::filesystem::temp_directory_path() / "ostrivex-util-XXXXXX").string();
    if (!::mkdtemp(home.data())) return 2;
    ::setenv("OSTRIVEX_HOME", home.c_str(), 1);
    ::setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
    ::setenv("XDG_CACHE_HOME", (home + "/cache").c_str(), 1);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    const int rc = RUN_ALL_TESTS();
    std::error_code ec;
    std::filesystem::remove_all(home, ec);
    return rc;
}
