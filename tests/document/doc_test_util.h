// Helpers of the document tests: a picture whose every pixel differs, and a document of
// given pixels in a host at a given panel size.
#pragma once

#include "document/fake_host.h"
#include "document/fimage.h"

#include <QTabBar>

#include <cstdint>
#include <utility>

namespace ostrivex::test {

// Pixel (x, y) has blue 10x + y + 1, green 2, red 3, and `channel3` in channel 3.
inline Bits numbered(int w, int h, uint8_t channel3 = 0) {
    Bits b(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            b(0, x, y) = uint8_t(10 * x + y + 1);
            b(1, x, y) = 2;
            b(2, x, y) = 3;
            b(3, x, y) = channel3;
        }
    return b;
}

// A document of the given pixels in `host` whose Enhanced panel is panelW x panelH (the
// window is taller by the view tabs), started with its first state "Original".
inline fImage* makeDocument(FakeHost& host, Bits pixels, int panelW, int panelH) {
    auto* doc = new fImage;
    host.AddDocumentWindow(doc);
    doc->BeginDocument(QString());
    const int tabH = doc->findChild<QTabBar*>("tabViews")->sizeHint().height();
    doc->resize(panelW, panelH + tabH);
    doc->Model().Start(std::move(pixels), "Original");
    return doc;
}

} // namespace ostrivex::test
