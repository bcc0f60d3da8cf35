// The vector instruction sets that the scaling and quarter-turn loops may use. Every level
// gives the same bytes; the tests lower the limit to run each loop on one machine.
#pragma once

namespace ostrivex::transforms_detail {

enum SimdLevel { kPlain = 0, kAvx2 = 1, kAvx512 = 2 };

// The best level this processor runs, capped by simdLimit().
SimdLevel simdLevel();
// The cap (kAvx512 unless a test lowers it).
SimdLevel& simdLimit();

} // namespace ostrivex::transforms_detail
