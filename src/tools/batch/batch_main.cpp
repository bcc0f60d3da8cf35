// ostrivex-batch: the editor's pixel commands on files, without a window.
#include "tools/batch/batch.h"

#include "pixel/allocator.h"

#include <QtGlobal>

#include <iostream>
#include <new>
#include <string>
#include <vector>

namespace {

// Qt's own warnings (an image reader's complaint, a font lookup) would make an error more
// than the one line the tool promises: the line the tool writes says what went wrong.
void quietQt(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

int main(int argc, char** argv) {
    ostrivex::TuneAllocatorForImages();
    qInstallMessageHandler(quietQt);
    // The image code keeps no work file in any folder (pictures come back from the
    // helper in memory, saves take their name only when whole), so a run that is killed
    // leaves nothing behind.
    std::vector<std::string> args(argv + 1, argv + argc);
    try {
        return ostrivex::batch::runBatch(args, std::cout, std::cerr);
    } catch (const std::bad_alloc&) {
        std::cerr << "ostrivex-batch: not enough memory\n";
    } catch (const std::exception& e) {
        std::cerr << "ostrivex-batch: " << e.what() << "\n";
    }
    return 2;
}
