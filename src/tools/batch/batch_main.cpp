// ostrivex-batch: the editor's pixel commands on files, without a window.
#include "tools/batch/batch.h"

#include "pixel/allocator.h"

#include <iostream>

int main(int argc, char** argv) {
    ostrivex::TuneAllocatorForImages();
    std::vector<std::string> args(argv + 1, argv + argc);
    return ostrivex::batch::runBatch(args, std::cout, std::cerr);
}
