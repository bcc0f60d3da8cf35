// Test main of the model tests: a fresh program folder in OSTRIVEX_HOME for the undo files,
// removed at the end. No window and no QApplication: the model needs neither.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
    std::string home = (std::filesystem::temp_directory_path() / "ostrivex-model-XXXXXX").string();
    if (!::mkdtemp(home.data())) return 2;
    ::setenv("OSTRIVEX_HOME", home.c_str(), 1);
    ::testing::InitGoogleTest(&argc, argv);
    const int rc = RUN_ALL_TESTS();
    std::error_code ec;
    std::filesystem::remove_all(home, ec);
    return rc;
}
