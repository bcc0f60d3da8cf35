// Test main of the document tests: the offscreen platform, a fresh program folder in
// OSTRIVEX_HOME (so undo files and settings land there, and the image work files too),
// and one QApplication.
#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    std::string home = (std::filesystem::temp_directory_path() / "ostrivex-doc-XXXXXX").string();
    if (!::mkdtemp(home.data())) return 2;
    ::setenv("OSTRIVEX_HOME", home.c_str(), 1);
    // The image work files have fixed names in the temporary folder, and test programs run
    // side by side: this one keeps its own.
    ::setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    const int rc = RUN_ALL_TESTS();
    std::error_code ec;
    std::filesystem::remove_all(home, ec);
    return rc;
}
