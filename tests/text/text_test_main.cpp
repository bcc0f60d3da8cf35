// Test main of the text tests: the offscreen platform, a fresh program folder in
// OSTRIVEX_HOME, one QApplication, and the test font loaded into the application's fonts.
#include "text/text_test_util.h"

#include <QApplication>
#include <QFontDatabase>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace ostrivex::test {
QString TestFontFamily;
}

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    std::string home = (std::filesystem::temp_directory_path() / "ostrivex-text-XXXXXX").string();
    if (!::mkdtemp(home.data())) return 2;
    ::setenv("OSTRIVEX_HOME", home.c_str(), 1);
    ::setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
    QApplication app(argc, argv);
    const int id = QFontDatabase::addApplicationFont(QStringLiteral(OSTRIVEX_TEST_FONT));
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (id < 0 || families.isEmpty()) return 3; // no test font, no meaningful test
    ostrivex::test::TestFontFamily = families.first();
    ::testing::InitGoogleTest(&argc, argv);
    const int rc = RUN_ALL_TESTS();
    std::error_code ec;
    std::filesystem::remove_all(home, ec);
    return rc;
}
