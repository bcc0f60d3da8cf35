// Keeps large pixel buffers in the process heap once they have been freed.
//
// glibc hands every block over 32 MB straight back to the kernel when it is freed, so the
// next image of the same size faults in every one of its pages again on first touch: on a
// 24-megapixel image (96 MB with the guard band) that costs 65-85 ms per filter, more than
// most filters themselves. Serving large blocks from the heap, with a high trim threshold,
// keeps those pages for reuse; memory then returns to the system only as the heap's top
// shrinks.
#pragma once

namespace ostrivex {

// Called once at program start, before the first image is allocated.
void TuneAllocatorForImages();

} // namespace ostrivex
