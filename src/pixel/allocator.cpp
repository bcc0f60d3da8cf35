#include "pixel/allocator.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace ostrivex {

void TuneAllocatorForImages() {
#if defined(__GLIBC__)
    // 512 MB: above the largest image buffer the editor handles in one piece.
    constexpr int kThreshold = 512 * 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, kThreshold);
    mallopt(M_TRIM_THRESHOLD, kThreshold);
#endif
}

} // namespace ostrivex
