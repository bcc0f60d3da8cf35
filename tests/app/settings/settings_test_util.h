// Shared by the settings tests: every case runs with OSTRIVEX_HOME pointing at a fresh
// temporary folder and with the global record zeroed, as in a newly started process.
#pragma once

#include "app/settings/settings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace ostrivex::test {

class FreshHome : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string tmpl = (std::filesystem::temp_directory_path() / "ostrivex-test-XXXXXX");
        std::vector<char> buf(tmpl.begin(), tmpl.end());
        buf.push_back('\0');
        ASSERT_NE(::mkdtemp(buf.data()), nullptr);
        home_ = buf.data();
        ::setenv("OSTRIVEX_HOME", home_.c_str(), 1);
        Settings = SettingsRecord{};
        SessionFlag = 0;
    }
    void TearDown() override {
        std::error_code ec;
        std::filesystem::remove_all(home_, ec);
        ::unsetenv("OSTRIVEX_HOME");
    }
    std::string home_;
};

inline std::vector<std::uint8_t> readFile(const std::string& name) {
    std::ifstream in(name, std::ios::binary);
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
}

inline void writeFile(const std::string& name, const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(name, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

} // namespace ostrivex::test
