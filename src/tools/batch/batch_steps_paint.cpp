// The paint primitives as batch steps: each step is one stroke, with a fresh done-table,
// inside the selection (or the whole picture), so that drawings can be scripted. Their
// arguments are the operations' table's (operations_paint.cpp).
#include "tools/batch/batch.h"

#include "document/paint/paint.h"
#include "imagefile/imagefile.h"

namespace ostrivex::batch {

namespace {

using V = const std::vector<ArgValue>&;

Bits loadImageArgument(const std::string& path) {
    const size_t dot = path.rfind('.');
    const std::string ext = dot == std::string::npos ? "" : path.substr(dot + 1);
    ImageFileResult r = LoadDocumentImage(path, ext);
    if (!r.ok) throw StepError("cannot load image '" + path + "': " + r.message);
    return std::move(r.pixels);
}

// One stroke: a copy of the picture, a fresh done-table, the primitive, the result back.
template <class Fn> void stroke(StepContext& ctx, Fn&& paint) {
    Bits bits = ctx.filter.GetBits();
    DoneBits done;
    CreateDoneBitsTable(done, bits);
    paint(bits, ctx.region, done);
    ctx.setImage(std::move(bits));
}

#define PAINT(name, call)                                                                 \
    OperationStep(name, [](StepContext& ctx, V a) {                                       \
        stroke(ctx, [&](Bits& b, const Region& r, DoneBits& d) { call; });               \
    })

} // namespace

std::vector<StepDef> paintSteps() {
    return {
        PAINT("BitsLine", BitsLine(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                                   int32_t(a[4].asColour()), a[5].asInt())),
        PAINT("BitsRectangle", BitsRectangle(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(),
                                             a[3].asInt(), int32_t(a[4].asColour()), a[5].asInt())),
        PAINT("BitsPolygon", BitsPolygon(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                                         a[4].asInt(), int32_t(a[5].asColour()), a[6].asInt())),
        PAINT("BitsEllipse", BitsEllipse(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                                         int32_t(a[4].asColour()), a[5].asInt())),
        PAINT("BitsBrush", BitsBrush(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                                     int32_t(a[4].asColour()))),
        PAINT("BitsBrushLine",
              BitsBrushLine(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(), a[4].asInt(),
                            a[5].asInt(), int32_t(a[6].asColour()), static_cast<BrushKind>(a[7].asInt()))),
        PAINT("BitsAirbrush", BitsAirbrush(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                                           a[4].asInt(), a[5].asInt(), int32_t(a[6].asColour()))),
        PAINT("BitsBrightness", BitsBrightness(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(),
                                               a[3].asInt(), a[4].asBool())),
        PAINT("BitsSoften", BitsSoften(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                                       a[4].asBool())),
        PAINT("BitsSharpen", BitsSharpen(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt())),
        PAINT("BitsFill", BitsFill(b, r, d, a[0].asInt(), a[1].asInt(), int32_t(a[2].asColour()),
                                   a[3].asInt(), a[4].asInt())),
        PAINT("BitsFillTexture", BitsFillTexture(b, r, d, a[0].asInt(), a[1].asInt(),
                                                 loadImageArgument(a[2].word), a[3].asInt(), a[4].asInt())),
        PAINT("BitsMasked", BitsMasked(b, r, d, a[0].asInt(), a[1].asInt(), loadImageArgument(a[2].word),
                                       a[3].asInt(), a[4].asInt())),
        PAINT("BitsMaskedLine", BitsMaskedLine(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(),
                                               a[3].asInt(), a[4].asInt(), a[5].asInt(),
                                               loadImageArgument(a[6].word))),
        PAINT("BitsPaint", BitsPaint(b, r, d, a[0].asInt(), a[1].asInt(), loadImageArgument(a[2].word),
                                     a[3].asInt(), a[4].asInt())),
        PAINT("BitsPaintPreMasked", BitsPaintPreMasked(b, r, d, a[0].asInt(), a[1].asInt(),
                                                       loadImageArgument(a[2].word), a[3].asInt())),
        PAINT("BitsBWMask", BitsBWMask(b, r, d, a[0].asInt(), a[1].asInt(), loadImageArgument(a[2].word),
                                       int32_t(a[3].asColour()), a[4].asInt())),
    };
}

#undef PAINT

} // namespace ostrivex::batch
