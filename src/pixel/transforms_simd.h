// The vector instruction sets that the scaling and quarter-turn loops may use. Every level
// gives the same bytes; the tests lower the limit to run each loop on one machine.
#pragma once

namespace ostrivex::transforms_detail {

// kAvx512Vbmi adds the byte permutes of AVX-512 VBMI.
enum SimdLevel { kPlain = 0, kAvx2 = 1, kAvx512 = 2, kAvx512Vbmi = 3 };

// The best level this processor runs, capped by simdLimit().
SimdLevel simdLevel();
// The cap (kAvx512Vbmi unless a test lowers it).
SimdLevel& simdLimit();

} // namespace ostrivex::transforms_detail
