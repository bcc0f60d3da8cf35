// The shape of a picture: its pixels that are not the key colour.
#include "pixel/effects/effects.h"
#include "pixel/effects/frame.h"

#include <vector>

namespace ostrivex::effects {

Region ShapeRegion(const Bits& picture, int32_t keyColour, bool horizontalScan) {
    const Key key(keyColour);
    const int32_t w = picture.width(), h = picture.height();
    std::vector<Rect> runs;
    auto inShape = [&](int32_t x, int32_t y) { return !key.is(load32(picture.pixel(x, y))); };
    if (horizontalScan) {
        // Row by row: a run starts at a pixel of the shape and ends at a key pixel or at the
        // row's end; each run is a rectangle one row high.
        for (int32_t y = 0; y < h; ++y)
            for (int32_t x = 0; x < w;) {
                if (!inShape(x, y)) {
                    ++x;
                    continue;
                }
                const int32_t start = x;
                while (x < w && inShape(x, y)) ++x;
                runs.push_back({start, y, x, y + 1});
            }
    } else {
        for (int32_t x = 0; x < w; ++x)
            for (int32_t y = 0; y < h;) {
                if (!inShape(x, y)) {
                    ++y;
                    continue;
                }
                const int32_t start = y;
                while (y < h && inShape(x, y)) ++y;
                runs.push_back({x, start, x + 1, y});
            }
    }
    return Region::fromRects(runs);
}

} // namespace ostrivex::effects
