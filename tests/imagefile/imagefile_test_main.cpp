// Test entry point: a private temporary folder for this process (the work files have
// fixed names, and test programs run side by side), a QApplication on the offscreen
// platform, then the GoogleTest run.
#include <QApplication>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

int main(int argc, char** argv) {
    std::string pattern = (std::filesystem::temp_directory_path() / "ostrivex-run-XXXXXX").string();
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    const char* run = mkdtemp(buf.data());
    if (run) setenv("XDG_RUNTIME_DIR", run, 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    int rc = 0;
    {
        QApplication app(argc, argv);
        ::testing::InitGoogleTest(&argc, argv);
        rc = RUN_ALL_TESTS();
    }
    if (run) {
        std::error_code ec;
        std::filesystem::remove_all(run, ec);
    }
    return rc;
}
