// ostrivex-batch: the editor's pixel commands on files, without a window.
#include "tools/batch/batch.h"

#include "pixel/allocator.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <unistd.h>
#include <vector>

int main(int argc, char** argv) {
    ostrivex::TuneAllocatorForImages();
    // The image code hands decoded pictures over through work files of fixed names in the
    // per-user temporary folder. Several batch runs side by side (a script, `xargs -P`)
    // would overwrite each other's, so each run works in a private folder of its own.
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/ostrivex-batch-XXXXXX";
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    const char* own = mkdtemp(buf.data());
    if (own) setenv("XDG_RUNTIME_DIR", own, 1);

    std::vector<std::string> args(argv + 1, argv + argc);
    const int rc = ostrivex::batch::runBatch(args, std::cout, std::cerr);

    if (own) {
        std::error_code ec;
        std::filesystem::remove_all(own, ec);
    }
    return rc;
}
