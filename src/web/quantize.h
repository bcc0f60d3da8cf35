// "Optimal": a palette made for the picture.
//
// libimagequant makes it, at speed 7, from a regular sample of at most kQuantizeSample
// pixels (every k-th pixel of every k-th row); the picture itself is then mapped to the
// palette by the exact nearest-colour search (colormaps.h), not by the library's own
// remapping, which refines the palette once more and took 115 ms of the 150 that an
// update of a 1-megapixel picture may take. docs/decisions.md has the measurements
// against FreeImage's Wu and NeuQuant quantizers, which `WuPalette` keeps at hand for the
// benchmark.
#pragma once

#include "pixel/bits.h"
#include "web/colormaps.h"

#include <functional>

namespace ostrivex {

inline constexpr int64_t kQuantizeSample = 1 << 17;

// A palette of at most `colours` (2..256) entries for `picture`; `reserved` colours (the
// Windows static colours, at most colours - 2 of them) are kept in it as they are. With
// `grey` the picture is taken as its luminance. An empty palette when cancelled, or if the
// library fails (then the caller falls back on a fixed map).
Palette OptimalPalette(const Bits& picture, int colours, const Palette& reserved, bool grey,
                       const std::function<bool()>& cancelled = {});

// FreeImage's Wu quantizer (FIQ_WUQUANT) or NeuQuant (FIQ_NNQUANT) on the whole picture:
// its palette of `colours` entries.
enum class FreeImageQuantizer { Wu, NeuQuant };
Palette FreeImagePalette(const Bits& picture, int colours, FreeImageQuantizer which);

} // namespace ostrivex
