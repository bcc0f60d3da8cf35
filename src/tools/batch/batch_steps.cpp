// The operations the batch tool can run, with their arguments in the operation's own order
// and the ranges of the editor's dialogs.
#include "tools/batch/batch.h"

#include "imagefile/imagefile.h"
#include "pixel/filtermask.h"

namespace ostrivex::batch {

namespace {

using K = ArgSpec::Kind;

ArgSpec I(const char* name, double lo, double hi) { return {name, K::Int, lo, hi, {}}; }
ArgSpec F(const char* name, double lo, double hi) { return {name, K::Float, lo, hi, {}}; }
ArgSpec B(const char* name) { return {name, K::Bool, -1, 0, {}}; }
ArgSpec C(const char* name) { return {name, K::Colour, 0, 0xFFFFFF, {}}; }
ArgSpec W(const char* name, std::vector<std::string> words) {
    return {name, K::Word, 0, 0, std::move(words)};
}
ArgSpec P(const char* name) { return {name, K::Path, 0, 0, {}}; }

// Loads an image argument (a tile); a failure ends the run like a bad input file.
Bits loadArgumentImage(const std::string& path) {
    const size_t dot = path.rfind('.');
    const std::string ext = dot == std::string::npos ? "" : path.substr(dot + 1);
    const ImageFileResult r = LoadDocumentImage(path, ext);
    if (!r.ok) throw StepError("cannot load image '" + path + "': " + r.message);
    return LoadedBitmap;
}

// Image sizes the size dialogs accept: at least 2, and at most what a buffer may hold here.
constexpr double kMaxSide = 30000;
constexpr double kMaxCoord = 1000000;

using V = const std::vector<ArgValue>&;

// A filter step: the operation returns a new image.
#define FILTER(name, args, note, expr)                                                    \
    StepDef {                                                                            \
        name, args, note, [](StepContext& ctx, V a) {                                    \
            cBitFilter& f = ctx.filter;                                                  \
            (void)a;                                                                     \
            const cBitFilter::ReuseScope reuse(f); /* the result replaces the buffer */   \
            ctx.setImage(expr);                                                          \
        }                                                                                \
    }
// A transform step: the operation replaces the object's buffer itself.
#define TRANSFORM(name, args, note, stmt)                                                 \
    StepDef {                                                                            \
        name, args, note, [](StepContext& ctx, V a) {                                    \
            cBitFilter& f = ctx.filter;                                                  \
            const Bits source = f.GetBits();                                             \
            stmt;                                                                        \
            ctx.bufferReplaced();                                                        \
        }                                                                                \
    }

std::vector<StepDef> transformSteps() {
    using A = std::vector<ArgSpec>;
    return {
        TRANSFORM("BitsCrop", (A{I("left", -kMaxCoord, kMaxCoord), I("top", -kMaxCoord, kMaxCoord),
                                 I("right", -kMaxCoord, kMaxCoord), I("bottom", -kMaxCoord, kMaxCoord)}),
                  "cuts the rectangle (right and bottom exclusive); the selection is dropped",
                  f.BitsCrop(source, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt())),
        TRANSFORM("BitsCropMasked",
                  (A{I("left", -kMaxCoord, kMaxCoord), I("top", -kMaxCoord, kMaxCoord),
                     I("right", -kMaxCoord, kMaxCoord), I("bottom", -kMaxCoord, kMaxCoord)}),
                  "as BitsCrop; pixels outside the selection get marker 255",
                  f.BitsCropMasked(source, a[0].asInt(), a[1].asInt(), a[2].asInt(),
                                   a[3].asInt())),
        TRANSFORM("BitsResample", (A{I("width", 2, kMaxSide), I("height", 2, kMaxSide)}),
                  "bilinear scaling", f.BitsResample(source, a[0].asInt(), a[1].asInt())),
        TRANSFORM("BitsResize", (A{I("width", 2, kMaxSide), I("height", 2, kMaxSide)}),
                  "nearest-neighbour scaling", f.BitsResize(source, a[0].asInt(), a[1].asInt())),
        TRANSFORM("BitsRotate90", A{}, "a quarter turn to the left", f.BitsRotate90(source)),
        StepDef{"TileMask",
                A{P("tile"), I("left", -kMaxCoord, kMaxCoord), I("top", -kMaxCoord, kMaxCoord),
                  B("repeat"), I("opacity", 0, 100), I("key", -1, 0xFFFFFF)},
                "lays an image on the picture; opacity is the share of the picture beneath, "
                "key -1 for none",
                [](StepContext& ctx, V a) {
                    const Bits tile = loadArgumentImage(a[0].word);
                    ctx.setImage(ctx.filter.TileMask(tile, a[1].asInt(), a[2].asInt(),
                                                     a[3].asBool(), a[4].asInt(), a[5].asInt()));
                }},
        FILTER("Flip", (A{B("horizontal"), B("vertical")}), "mirror of the whole image",
               f.Flip(a[0].asBool(), a[1].asBool())),
        FILTER("RotateSmooth", (A{I("degrees", -180, 180), B("cleanBack")}),
               "rotation with bilinear sampling", f.RotateSmooth(a[0].asInt(), a[1].asBool())),
    };
}

std::vector<StepDef> toneSteps() {
    using A = std::vector<ArgSpec>;
    return {
        FILTER("BRIGHTNESS", A{I("level", -100, 250)}, "", f.BRIGHTNESS(a[0].asInt())),
        FILTER("ShiftRGB", (A{I("red", -255, 255), I("green", -255, 255), I("blue", -255, 255)}),
               "", f.ShiftRGB(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        FILTER("Invert", A{}, "", f.Invert()),
        FILTER("GreyScale", A{}, "", f.GreyScale()),
        FILTER("Threshold", A{I("cut", 0, 255)}, "", f.Threshold(a[0].asInt())),
        FILTER("SATURATION", A{I("level", -100, 250)}, "", f.SATURATION(a[0].asInt())),
        FILTER("Reduction", A{I("level", 0, 255)}, "", f.Reduction(a[0].asInt())),
        FILTER("GammaCorrection", A{I("gamma", -100, 100)}, "", f.GammaCorrection(a[0].asInt())),
        FILTER("KillChannel", (A{B("red"), B("green"), B("blue")}), "",
               f.KillChannel(a[0].asBool(), a[1].asBool(), a[2].asBool())),
        FILTER("SpecialColors", (A{I("red", -1, 0), I("green", -1, 0), I("blue", -1, 0)}),
               "a flag other than -1 clears its channel",
               f.SpecialColors(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        FILTER("COLORIZE", (A{F("hue", -1, 5), F("saturation", 0, 1), F("luminosity", 0, 1)}), "",
               f.COLORIZE(a[0].asFloat(), a[1].asFloat(), a[2].asFloat())),
        FILTER("Contrast", A{I("level", -100, 250)}, "", f.Contrast(a[0].asInt())),
        FILTER("Equalize", A{}, "", f.Equalize()),
        FILTER("ISOLATE", (A{C("colour"), C("backColour"), I("tolerance", 0, 200)}), "",
               f.ISOLATE(a[0].asColour(), a[1].asColour(), a[2].asInt())),
        FILTER("REPLACE", (A{C("colour"), C("newColour"), I("tolerance", 0, 200)}), "",
               f.REPLACE(a[0].asColour(), a[1].asColour(), a[2].asInt())),
        FILTER("Shift", (A{C("colour"), I("shift", -255, 255), I("tolerance", 0, 200)}), "",
               f.Shift(a[0].asColour(), a[1].asInt(), a[2].asInt())),
        FILTER("ReplaceHS",
               (A{C("colour"), C("newColour"), I("hueTolerance", 0, 100), I("satTolerance", 0, 100),
                  I("applyTolerance", 0, 200)}),
               "", f.ReplaceHS(a[0].asColour(), a[1].asColour(), a[2].asInt(), a[3].asInt(),
                               a[4].asInt())),
        FILTER("ReplaceL",
               (A{C("colour"), C("newColour"), I("lumTolerance", 0, 100), I("applyTolerance", 0, 200)}),
               "", f.ReplaceL(a[0].asColour(), a[1].asColour(), a[2].asInt(), a[3].asInt())),
        FILTER("RotateH", (A{I("offset", 0, 100), I("saturation", 0, 100)}), "",
               f.RotateH(a[0].asInt(), a[1].asInt())),
        FILTER("RotateL", (A{I("offset", 0, 100), I("steps", 0, 100)}), "",
               f.RotateL(a[0].asInt(), a[1].asInt())),
        FILTER("StretchH", (A{I("offset", 0, 100), I("saturation", 0, 100), I("stretch", 0, 100)}),
               "", f.StretchH(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        FILTER("SwapBanks", A{I("mode", 1, 5)}, "1 BRG, 2 GBR, 3 RBG, 4 BGR, 5 GRB",
               f.SwapBanks(a[0].asInt())),
        FILTER("SwapRGB",
               (A{I("redSource", 0, 2), I("greenSource", 0, 2), I("blueSource", 0, 2),
                  B("invertRed"), B("invertGreen"), B("invertBlue"), B("killRed"), B("killGreen"),
                  B("killBlue")}),
               "sources are channel numbers: 0 blue, 1 green, 2 red",
               f.SwapRGB(a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asBool(), a[4].asBool(),
                         a[5].asBool(), a[6].asBool(), a[7].asBool(), a[8].asBool())),
        FILTER("ClassyColors", A{I("mode", 0, 11)}, "", f.ClassyColors(a[0].asInt())),
    };
}

std::vector<StepDef> neighbourhoodSteps() {
    using A = std::vector<ArgSpec>;
    return {
        StepDef{"MaskFilter", A{I("preset", 0, kFilterPresetCount - 1), B("keepMargins")},
                "a user filter preset (0 is the first of the list) as a convolution",
                [](StepContext& ctx, V a) {
                    FilterMask mask;
                    ParseFilterPreset(mask, a[0].asInt());
                    ctx.setImage(ctx.filter.MaskFilter(mask, a[1].asBool()));
                }},
        FILTER("Blurs", A{I("level", 0, 2)}, "", f.Blurs(a[0].asInt())),
        FILTER("SOFTEN", A{I("level", 0, 100)}, "", f.SOFTEN(a[0].asInt())),
        FILTER("SHARPEN", A{I("level", 0, 100)}, "", f.SHARPEN(a[0].asInt())),
        FILTER("EDGEENHANCE", A{I("level", 0, 100)}, "", f.EDGEENHANCE(a[0].asInt())),
        FILTER("CONTOUR", (A{I("weight", 0, 255), I("colour", 0, 2147483647)}),
               "colour as a packed number (the menu words pass 255255255)",
               f.CONTOUR(a[0].asInt(), a[1].asInt())),
        FILTER("EMBOSS", A{I("weight", 0, 50)}, "", f.EMBOSS(a[0].asInt())),
        FILTER("Engrave", A{I("weight", 0, 50)}, "", f.Engrave(a[0].asInt())),
        FILTER("RELIEF", A{}, "", f.RELIEF()),
        FILTER("DILATE", A{}, "", f.DILATE()),
        FILTER("ERODE", A{}, "", f.ERODE()),
        FILTER("RankFilterN4", A{I("mode", 0, 1)}, "0 minimum, 1 maximum", f.RankFilterN4(a[0].asInt())),
        FILTER("RankFilterND", A{I("mode", 0, 1)}, "0 minimum, 1 maximum", f.RankFilterND(a[0].asInt())),
        FILTER("DIFFUSE", (A{I("horizontal", 0, 50), I("vertical", 0, 50)}), "",
               f.DIFFUSE(a[0].asInt(), a[1].asInt())),
        FILTER("NOISE", (A{I("intensity", 0, 100), B("equalized")}), "",
               f.NOISE(a[0].asInt(), a[1].asBool())),
    };
}

std::vector<StepDef> deformSteps() {
    using A = std::vector<ArgSpec>;
    return {
        FILTER("BEND", (A{I("radius", -200, 200), B("cleanBack")}), "",
               f.BEND(a[0].asInt(), a[1].asBool())),
        FILTER("FOLD", (A{I("horizontal", -100, 100), I("vertical", -100, 100), B("cleanBack")}), "",
               f.FOLD(a[0].asInt(), a[1].asInt(), a[2].asBool())),
        FILTER("ROTATE", (A{I("degrees", -180, 180), B("cleanBack")}), "",
               f.ROTATE(a[0].asInt(), a[1].asBool())),
        FILTER("STRETCH", (A{I("horizontal", -100, 100), I("vertical", -100, 100), B("cleanBack")}),
               "", f.STRETCH(a[0].asInt(), a[1].asInt(), a[2].asBool())),
        FILTER("TILE", A{I("factor", 2, 50)}, "", f.TILE(a[0].asInt())),
        FILTER("TWIRL", (A{I("level", -100, 100), I("offsetDegrees", -180, 180), B("cleanBack")}), "",
               f.TWIRL(a[0].asInt(), a[1].asInt(), a[2].asBool())),
        FILTER("WAVES", (A{I("frequency", 0, 100), I("amplitude", 1, 100), I("startDegree", 0, 360)}),
               "", f.WAVES(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        FILTER("LENS", (A{F("centreX", 0, 1), F("centreY", 0, 1), F("diameter", 0, 100), I("magnify", 0, 100)}),
               "centre and diameter as fractions of the image",
               f.LENS(a[0].asFloat(), a[1].asFloat(), a[2].asFloat(), a[3].asInt())),
        FILTER("FISHEYE", A{}, "LENS at the centre, magnify 60, circle inscribed in the image",
               f.FISHEYE()),
        FILTER("GLASS",
               (A{W("style", {"slanting", "horizontal", "vertical", "squary", "curtain"}),
                  I("value", 0, 4)}),
               "curtain takes 1 to 4; the other styles 0", f.GLASS(a[0].word, a[1].asInt())),
    };
}

std::vector<StepDef> artisticSteps() {
    using A = std::vector<ArgSpec>;
    return {
        FILTER("PIXELIZE", A{I("size", 1, 25)}, "", f.PIXELIZE(a[0].asInt())),
        FILTER("HALFTONE", (A{I("radius", 1, 25), I("definition", 0, 100), I("intensity", 0, 100)}),
               "", f.HALFTONE(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        FILTER("OLDPHOTO", A{}, "", f.OLDPHOTO()),
        FILTER("THERMIQUE", A{}, "", f.THERMIQUE()),
        FILTER("XBLACK", A{}, "", f.XBLACK()),
        FILTER("PHOTOCOP", A{}, "", f.PHOTOCOP()),
        FILTER("Light",
               (A{F("centreX", 0, 1), F("centreY", 0, 1), F("radius", 0, 100), I("intensity", 0, 500),
                  I("focus", 0, 100)}),
               "centre and radius as fractions of the image",
               f.Light(a[0].asFloat(), a[1].asFloat(), a[2].asFloat(), a[3].asInt(), a[4].asInt())),
        FILTER("Scanlines", A{I("opacity", 0, 255)}, "", f.Scanlines(a[0].asInt())),
        StepDef{"Texturize", A{P("tile")},
                "the tile's blue channel modulates the picture (128 neutral); at least 2 x 2",
                [](StepContext& ctx, V a) {
                    const Bits tile = loadArgumentImage(a[0].word);
                    ctx.setImage(ctx.filter.Texturize(tile));
                }},
        FILTER("StuckiBW", A{I("level", 0, 100)}, "", f.StuckiBW(a[0].asInt())),
        FILTER("SKETCH", (A{I("weight", 0, 255), B("bw"), C("colour")}), "",
               f.SKETCH(a[0].asInt(), a[1].asBool(), a[2].asColour())),
        FILTER("PAINTING", A{}, "", f.PAINTING()),
        FILTER("Dissolve", (A{I("level", 0, 100), C("colour")}), "",
               f.Dissolve(a[0].asInt(), a[1].asColour())),
        FILTER("Grid",
               (A{I("hStep", 1, 250), I("vStep", 1, 250), B("forceMargins"), C("colour"),
                  I("opacity", 0, 255)}),
               "", f.Grid(a[0].asInt(), a[1].asInt(), a[2].asBool(), a[3].asColour(), a[4].asInt())),
    };
}

#undef FILTER
#undef TRANSFORM

} // namespace

std::vector<StepDef> paintSteps(); // batch_steps_paint.cpp
std::vector<StepDef> textSteps();  // batch_steps_text.cpp

const std::vector<StepDef>& operationSteps() {
    static const std::vector<StepDef> steps = [] {
        std::vector<StepDef> all;
        addSteps(all, transformSteps());
        addSteps(all, toneSteps());
        addSteps(all, neighbourhoodSteps());
        addSteps(all, deformSteps());
        addSteps(all, artisticSteps());
        addSteps(all, textSteps());
        addSteps(all, paintSteps());
        addSteps(all, effectSteps());
        return all;
    }();
    return steps;
}

} // namespace ostrivex::batch
