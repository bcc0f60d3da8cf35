#include "pixel/allocator.h"

#include <cstdlib> // defines __GLIBC__ on glibc systems

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace ostrivex {

void TuneAllocatorForImages() {
#if defined(__GLIBC__)
    // glibc caps M_MMAP_THRESHOLD at 32 MB, below one 24-megapixel buffer, so mapping is
    // switched off instead: every block comes from the heap, and up to 512 MB of freed
    // space at its top stays there for the next image.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, 512 * 1024 * 1024);
#endif
}

} // namespace ostrivex
