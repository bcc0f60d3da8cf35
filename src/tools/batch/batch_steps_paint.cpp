// The paint primitives as batch steps: each step is one stroke, with a fresh done-table,
// inside the selection (or the whole picture), so that drawings can be scripted.
#include "tools/batch/batch.h"

#include "document/paint/paint.h"
#include "imagefile/imagefile.h"

namespace ostrivex::batch {

namespace {

using K = ArgSpec::Kind;
using V = const std::vector<ArgValue>&;
using A = std::vector<ArgSpec>;

constexpr double kCoord = 1000000;

ArgSpec X(const char* name) { return {name, K::Int, -kCoord, kCoord, {}}; }
ArgSpec I(const char* name, double lo, double hi) { return {name, K::Int, lo, hi, {}}; }
ArgSpec B(const char* name) { return {name, K::Bool, -1, 0, {}}; }
ArgSpec C(const char* name) { return {name, K::Colour, 0, 0xFFFFFF, {}}; }
ArgSpec P(const char* name) { return {name, K::Path, 0, 0, {}}; }
// The tool panels' ranges: size, pressure and tolerance 1 to 100 (0 is accepted too, as
// the primitives take it); polygon sides 1 to 100.
ArgSpec Pressure() { return I("pressure", 0, 100); }
ArgSpec Size() { return I("size", 1, 100); }

Bits loadImageArgument(const std::string& path) {
    const size_t dot = path.rfind('.');
    const std::string ext = dot == std::string::npos ? "" : path.substr(dot + 1);
    const ImageFileResult r = LoadDocumentImage(path, ext);
    if (!r.ok) throw StepError("cannot load image '" + path + "': " + r.message);
    return LoadedBitmap;
}

// One stroke: a copy of the picture, a fresh done-table, the primitive, the result back.
template <class Fn> void stroke(StepContext& ctx, Fn&& paint) {
    Bits bits = ctx.filter.GetBits();
    DoneBits done;
    CreateDoneBitsTable(done, bits);
    paint(bits, ctx.region, done);
    ctx.setImage(std::move(bits));
}

#define PAINT(name, args, note, call)                                                     \
    StepDef {                                                                            \
        name, args, note, [](StepContext& ctx, V a) {                                    \
            stroke(ctx, [&](Bits& b, const Region& r, DoneBits& d) { call; });           \
        }                                                                                \
    }

} // namespace

std::vector<StepDef> paintSteps() {
    return {
        PAINT("BitsLine", (A{X("x1"), X("y1"), X("x2"), X("y2"), C("colour"), Pressure()}),
              "an anti-aliased line",
              BitsLine(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                       int32_t(a[4].asColour()), a[5].asInt())),
        PAINT("BitsRectangle", (A{X("x1"), X("y1"), X("x2"), X("y2"), C("colour"), Pressure()}),
              "the outline of a rectangle",
              BitsRectangle(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                            int32_t(a[4].asColour()), a[5].asInt())),
        PAINT("BitsPolygon",
              (A{X("cx"), X("cy"), X("px"), X("py"), I("sides", 1, 100), C("colour"), Pressure()}),
              "a regular polygon about (cx, cy) with a vertex towards (px, py)",
              BitsPolygon(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                          a[4].asInt(), int32_t(a[5].asColour()), a[6].asInt())),
        PAINT("BitsEllipse", (A{X("cx"), X("cy"), I("rx", 0, kCoord), I("ry", 0, kCoord), C("colour"), Pressure()}),
              "the outline of an ellipse",
              BitsEllipse(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                          int32_t(a[4].asColour()), a[5].asInt())),
        PAINT("BitsBrush", (A{X("x"), X("y"), Size(), Pressure(), C("colour")}),
              "one round brush stamp",
              BitsBrush(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                        int32_t(a[4].asColour()))),
        PAINT("BitsBrushLine",
              (A{X("x1"), X("y1"), X("x2"), X("y2"), Size(), Pressure(), C("colour"),
                 I("kind", 0, 5)}),
              "a brush stroke; kind 0 paint, 1 soften, 2 soften again, 3 sharpen, 4 lighten, "
              "5 darken",
              BitsBrushLine(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                            a[4].asInt(), a[5].asInt(), int32_t(a[6].asColour()),
                            static_cast<BrushKind>(a[7].asInt()))),
        PAINT("BitsAirbrush",
              (A{X("x"), X("y"), Size(), Pressure(), I("density", 0, 100), I("falloff", 0, 100),
                 C("colour")}),
              "one airbrush spray (random: fix it with --seed)",
              BitsAirbrush(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                           a[4].asInt(), a[5].asInt(), int32_t(a[6].asColour()))),
        PAINT("BitsBrightness", (A{X("x"), X("y"), Size(), Pressure(), B("lighten")}),
              "lightens (-1) or darkens (0) a round spot",
              BitsBrightness(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                             a[4].asBool())),
        PAINT("BitsSoften", (A{X("x"), X("y"), Size(), Pressure(), B("repeat")}),
              "softens a round spot",
              BitsSoften(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                         a[4].asBool())),
        PAINT("BitsSharpen", (A{X("x"), X("y"), Size(), Pressure()}), "sharpens a round spot",
              BitsSharpen(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt())),
        PAINT("BitsFill", (A{X("x"), X("y"), C("colour"), I("tolerance", 0, 100), Pressure()}),
              "flood fill from (x, y)",
              BitsFill(b, r, d, a[0].asInt(), a[1].asInt(), int32_t(a[2].asColour()),
                       a[3].asInt(), a[4].asInt())),
        PAINT("BitsFillTexture", (A{X("x"), X("y"), P("texture"), I("tolerance", 0, 100), Pressure()}),
              "flood fill from (x, y) with a texture image",
              BitsFillTexture(b, r, d, a[0].asInt(), a[1].asInt(), loadImageArgument(a[2].word),
                              a[3].asInt(), a[4].asInt())),
        PAINT("BitsMasked", (A{X("x"), X("y"), P("texture"), Size(), Pressure()}),
              "one textured brush stamp",
              BitsMasked(b, r, d, a[0].asInt(), a[1].asInt(), loadImageArgument(a[2].word),
                         a[3].asInt(), a[4].asInt())),
        PAINT("BitsMaskedLine",
              (A{X("x1"), X("y1"), X("x2"), X("y2"), Size(), Pressure(), P("texture")}),
              "a textured brush stroke",
              BitsMaskedLine(b, r, d, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt(),
                             a[4].asInt(), a[5].asInt(), loadImageArgument(a[6].word))),
        PAINT("BitsPaint",
              (A{X("x"), X("y"), P("source"), I("transparent", -1, 0xFFFFFF), Pressure()}),
              "lays an image at (x, y); pixels of the transparent colour (-1 none) are skipped",
              BitsPaint(b, r, d, a[0].asInt(), a[1].asInt(), loadImageArgument(a[2].word),
                        a[3].asInt(), a[4].asInt())),
        PAINT("BitsPaintPreMasked", (A{X("x"), X("y"), P("source"), Pressure()}),
              "lays an image at (x, y), skipping its marked pixels",
              BitsPaintPreMasked(b, r, d, a[0].asInt(), a[1].asInt(),
                                 loadImageArgument(a[2].word), a[3].asInt())),
        PAINT("BitsBWMask", (A{X("x"), X("y"), P("mask"), C("colour"), Pressure()}),
              "paints a colour through a black and white mask image",
              BitsBWMask(b, r, d, a[0].asInt(), a[1].asInt(), loadImageArgument(a[2].word),
                         int32_t(a[3].asColour()), a[4].asInt())),
    };
}

#undef PAINT

} // namespace ostrivex::batch
