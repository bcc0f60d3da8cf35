#include "pixel/random.h"

namespace ostrivex {

RandomSource& globalRandom() {
    static RandomSource source;
    return source;
}

} // namespace ostrivex
