// Loops of integer arithmetic that the compiler vectorises well can be built three times:
// for AVX-512 processors (x86-64-v4), for AVX2 ones (v3) and for the baseline the rest of
// the program is built for; the loader picks one when the program starts. Integer
// arithmetic gives the same bytes in every build. Loops with floating point are not built
// this way, since a wider build may fuse a product into a sum and round once less.
#pragma once

#if defined(__x86_64__) && defined(__linux__)
#define OSTRIVEX_CPU_CLONES \
    __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#else
#define OSTRIVEX_CPU_CLONES
#endif
