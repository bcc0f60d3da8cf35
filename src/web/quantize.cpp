#include "web/quantize.h"

#include "web/dither.h"

#include <FreeImage.h>
#include <libimagequant.h>
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace ostrivex {

namespace {

struct LiqSample {
    const Bits* picture;
    int step;
    bool grey;
};

// Rows of the sample for the library, in its red, green, blue, alpha order.
void sampleRow(liq_color rowOut[], int row, int width, void* user) {
    const auto* s = static_cast<const LiqSample*>(user);
    const uint8_t* p = s->picture->row(row * s->step);
    const size_t stride = size_t(s->step) * 4;
    for (int x = 0; x < width; ++x, p += stride) {
        if (s->grey) {
            const uint8_t l = Luminance(p[2], p[1], p[0]);
            rowOut[x] = {l, l, l, 255};
        } else {
            rowOut[x] = {p[2], p[1], p[0], 255};
        }
    }
}

int progress(float, void* user) {
    const auto* cancelled = static_cast<const std::function<bool()>*>(user);
    return (*cancelled && (*cancelled)()) ? 0 : 1;
}

struct LiqFree {
    void operator()(liq_attr* a) const { liq_attr_destroy(a); }
    void operator()(liq_image* i) const { liq_image_destroy(i); }
    void operator()(liq_result* r) const { liq_result_destroy(r); }
};

} // namespace

Palette OptimalPalette(const Bits& picture, int colours, const Palette& reserved, bool grey,
                       const std::function<bool()>& cancelled) {
    const int32_t w = picture.width(), h = picture.height();
    if (w < 1 || h < 1) return {};
    colours = std::clamp(colours, 2, 256);
    // The library spreads its loops over every core with OpenMP; the optimizer runs on
    // worker threads of its own and keeps each run on one.
    omp_set_num_threads(1);

    int step = 1;
    while (int64_t(w / step) * int64_t(h / step) > kQuantizeSample) ++step;
    LiqSample sample{&picture, step, grey};
    const int sw = std::max(1, w / step), sh = std::max(1, h / step);

    std::unique_ptr<liq_attr, LiqFree> attr(liq_attr_create());
    if (!attr) return {};
    liq_set_max_colors(attr.get(), colours);
    liq_set_speed(attr.get(), 7);
    std::function<bool()> cancel = cancelled;
    liq_attr_set_progress_callback(attr.get(), progress, &cancel);
    std::unique_ptr<liq_image, LiqFree> image(
        liq_image_create_custom(attr.get(), sampleRow, &sample, sw, sh, 0));
    if (!image) return {};
    const int keep = std::min(int(reserved.size()), colours - 2);
    for (int i = 0; i < keep; ++i)
        liq_image_add_fixed_color(image.get(), {reserved[size_t(i)].r, reserved[size_t(i)].g,
                                                reserved[size_t(i)].b, 255});
    liq_result* raw = nullptr;
    if (liq_image_quantize(image.get(), attr.get(), &raw) != LIQ_OK || !raw) return {};
    std::unique_ptr<liq_result, LiqFree> result(raw);
    const liq_palette* pal = liq_get_palette(result.get());
    if (!pal || pal->count == 0) return {};
    Palette out;
    out.reserve(pal->count);
    for (unsigned i = 0; i < pal->count; ++i)
        out.push_back({pal->entries[i].r, pal->entries[i].g, pal->entries[i].b});
    return out;
}

Palette FreeImagePalette(const Bits& picture, int colours, FreeImageQuantizer which) {
    const int32_t w = picture.width(), h = picture.height();
    if (w < 1 || h < 1) return {};
    FIBITMAP* dib = FreeImage_Allocate(w, h, 24);
    if (!dib) return {};
    for (int32_t y = 0; y < h; ++y) {
        const uint8_t* s = picture.row(y);
        BYTE* d = FreeImage_GetScanLine(dib, h - 1 - y);
        for (int32_t x = 0; x < w; ++x, s += 4, d += 3) {
            d[FI_RGBA_BLUE] = s[0];
            d[FI_RGBA_GREEN] = s[1];
            d[FI_RGBA_RED] = s[2];
        }
    }
    FIBITMAP* q = FreeImage_ColorQuantizeEx(
        dib, which == FreeImageQuantizer::Wu ? FIQ_WUQUANT : FIQ_NNQUANT, std::clamp(colours, 2, 256),
        0, nullptr);
    FreeImage_Unload(dib);
    if (!q) return {};
    Palette out;
    const RGBQUAD* pal = FreeImage_GetPalette(q);
    for (unsigned i = 0; i < FreeImage_GetColorsUsed(q) && int(i) < colours; ++i)
        out.push_back({pal[i].rgbRed, pal[i].rgbGreen, pal[i].rgbBlue});
    FreeImage_Unload(q);
    return out;
}

} // namespace ostrivex
