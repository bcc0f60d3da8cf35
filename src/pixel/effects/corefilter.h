// Running a filter of the pixel core as a layer effect.
#pragma once

#include "pixel/bitfilter.h"
#include "pixel/effects/frame.h"

#include <cstring>
#include <stdexcept>
#include <utility>

namespace ostrivex::effects {

// The filter (a call on a cBitFilter that returns the new Bits) runs on the whole picture,
// built in dest's own storage: a plain copy of the source for a point filter, the working
// copy for one that reads neighbours (so it sees no black border and no key colour). Then
// the key rule.
template <class Fn>
void runCoreFilter(Bits& dest, const Bits& src, int32_t keyColour, bool readsNeighbours,
                   Fn&& filter) {
    if (&dest == &src) throw std::invalid_argument("an effect needs two pictures");
    const Key key(keyColour);
    if (readsNeighbours) {
        makeWorkingCopy(dest, src, key);
    } else {
        dest.resetForOverwrite(src.width(), src.height());
        for (int32_t y = 0; y < src.height(); ++y)
            std::memcpy(dest.row(y), src.row(y), size_t(src.width()) * 4u);
    }
    cBitFilter f;
    f.SetBits(std::move(dest));
    {
        const cBitFilter::ReuseScope reuse(f);
        dest = filter(f);
    }
    dest.zeroGuard();
    finishKey(dest, src, key);
}

} // namespace ostrivex::effects
