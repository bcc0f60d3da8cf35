#include "utilities/overlay/overlay.h"

#include "document/fimage.h"
#include "document/host.h"

#include <algorithm>
#include <cstring>

namespace ostrivex {

FitSize OverlayCanvas(int32_t destW, int32_t destH, int32_t srcW, int32_t srcH,
                      const OverlayOptions& o) {
    if (o.tiled) return {destW, destH};
    return {std::max<int32_t>(destW, o.left + srcW), std::max<int32_t>(destH, o.top + srcH)};
}

Bits GrowCanvas(const Bits& dest, int32_t w, int32_t h) {
    if (w == dest.width() && h == dest.height()) return dest;
    Bits out(w, h);
    const int32_t copyW = std::min(w, dest.width()), rows = std::min(h, dest.height());
    for (int32_t y = 0; y < rows; ++y)
        std::memcpy(out.row(y), dest.row(y), size_t(copyW) * 4u);
    return out;
}

void OverlayStart(int32_t srcW, int32_t srcH, const OverlayOptions& o, int32_t& x, int32_t& y) {
    x = o.left;
    y = o.top;
    if (!o.tiled || srcW < 1 || srcH < 1) return;
    x %= srcW;
    y %= srcH;
    if (x > 0) x -= srcW;
    if (y > 0) y -= srcH;
}

Bits OverlayBits(cBitFilter& filter, const Bits& dest, const Bits& source,
                 const OverlayOptions& o, const Region* region) {
    const FitSize c = OverlayCanvas(dest.width(), dest.height(), source.width(), source.height(), o);
    filter.SetBits(GrowCanvas(dest, c.width, c.height));
    filter.BitsRegion(region);
    int32_t x = 0, y = 0;
    OverlayStart(source.width(), source.height(), o, x, y);
    return filter.TileMask(source, x, y, o.tiled, o.transparency, o.maskColor);
}

fImage* ApplyOverlay(fImage& dest, const Bits& source, const OverlayOptions& o,
                     DocumentHost& host, const OverlayHost& window) {
    if (!dest.PictureExists() || source.width() < 1 || source.height() < 1) return nullptr;
    const FitSize c = OverlayCanvas(dest.PictureWidth(), dest.PictureHeight(), source.width(),
                                    source.height(), o);
    const bool grows = c.width != dest.PictureWidth() || c.height != dest.PictureHeight();
    if (o.createNew) {
        // A filter of its own, so cFilter stays loaded with the destination.
        cBitFilter filter;
        const Region* region = grows ? nullptr : &dest.EffectiveRegion();
        Bits result = OverlayBits(filter, dest.bits(), source, o, region);
        auto* doc = new fImage;
        doc->BeginDocument(QString());
        doc->PBits(std::move(result));
        doc->FileName = QStringLiteral("New.bmp");
        doc->FileExtension = QStringLiteral("bmp");
        doc->SaveUndoBits(QStringLiteral("Original"));
        doc->UpdateImage();
        host.AddDocumentWindow(doc);
        if (window.update) window.update(QString::fromLatin1(kOverlayLabel));
        return doc;
    }
    if (grows) {
        // The larger canvas with the picture at its top left; a buffer of another size
        // resets the selection to the whole new image.
        dest.SetBits(GrowCanvas(dest.bits(), c.width, c.height));
    }
    host.Filter().SetBits(dest.bits());
    dest.GiveFilterRegion(true);
    if (window.envelope) {
        window.envelope(
            [source, o](cBitFilter& f) {
                int32_t x = 0, y = 0;
                OverlayStart(source.width(), source.height(), o, x, y);
                return f.TileMask(source, x, y, o.tiled, o.transparency, o.maskColor);
            },
            QString::fromLatin1(kOverlayLabel));
    }
    return nullptr;
}

} // namespace ostrivex
