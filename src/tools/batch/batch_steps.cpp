// The operations the batch tool can run: the call of each. Their arguments, ranges and notes
// are the operations' table (src/operations), which the editor's dialogs read as well.
#include "tools/batch/batch.h"

#include "imagefile/imagefile.h"
#include "operations/operations.h"
#include "pixel/filtermask.h"

namespace ostrivex::batch {

namespace {

// Loads an image argument (a tile); a failure ends the run like a bad input file.
Bits loadArgumentImage(const std::string& path) {
    const size_t dot = path.rfind('.');
    const std::string ext = dot == std::string::npos ? "" : path.substr(dot + 1);
    ImageFileResult r = LoadDocumentImage(path, ext);
    if (!r.ok) throw StepError("cannot load image '" + path + "': " + r.message);
    return std::move(r.pixels);
}

using V = const std::vector<ArgValue>&;

// A filter step: the operation returns a new image.
#define FILTER(name, expr)                                                                \
    OperationStep(name, [](StepContext& ctx, V a) {                                       \
        cBitFilter& f = ctx.filter;                                                      \
        (void)a;                                                                         \
        const cBitFilter::ReuseScope reuse(f); /* the result replaces the buffer */       \
        ctx.setImage(expr);                                                              \
    })
// A transform step: the operation replaces the object's buffer itself.
#define TRANSFORM(name, stmt)                                                             \
    OperationStep(name, [](StepContext& ctx, V a) {                                       \
        cBitFilter& f = ctx.filter;                                                      \
        const Bits source = f.GetBits();                                                 \
        stmt;                                                                            \
        ctx.bufferReplaced();                                                            \
    })

std::vector<StepDef> transformSteps() {
    return {
        TRANSFORM("BitsCrop", f.BitsCrop(source, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt())),
        TRANSFORM("BitsCropMasked",
                  f.BitsCropMasked(source, a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asInt())),
        TRANSFORM("BitsResample", f.BitsResample(source, a[0].asInt(), a[1].asInt())),
        TRANSFORM("BitsResize", f.BitsResize(source, a[0].asInt(), a[1].asInt())),
        TRANSFORM("BitsRotate90", f.BitsRotate90(source)),
        OperationStep("TileMask",
                      [](StepContext& ctx, V a) {
                          const Bits tile = loadArgumentImage(a[0].word);
                          ctx.setImage(ctx.filter.TileMask(tile, a[1].asInt(), a[2].asInt(),
                                                           a[3].asBool(), a[4].asInt(), a[5].asInt()));
                      }),
        FILTER("Flip", f.Flip(a[0].asBool(), a[1].asBool())),
        FILTER("RotateSmooth", f.RotateSmooth(a[0].asInt(), a[1].asBool())),
    };
}

std::vector<StepDef> toneSteps() {
    return {
        FILTER("BRIGHTNESS", f.BRIGHTNESS(a[0].asInt())),
        FILTER("ShiftRGB", f.ShiftRGB(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        FILTER("Invert", f.Invert()),
        FILTER("GreyScale", f.GreyScale()),
        FILTER("Threshold", f.Threshold(a[0].asInt())),
        FILTER("SATURATION", f.SATURATION(a[0].asInt())),
        FILTER("Reduction", f.Reduction(a[0].asInt())),
        FILTER("GammaCorrection", f.GammaCorrection(a[0].asInt())),
        FILTER("KillChannel", f.KillChannel(a[0].asBool(), a[1].asBool(), a[2].asBool())),
        FILTER("SpecialColors", f.SpecialColors(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        // As the dialog turns its sliders into the call.
        FILTER("COLORIZE", f.COLORIZE(ColorizeHue(a[0].asInt()), float(a[1].asInt() / 100.0),
                                      float(a[2].asInt() / 100.0))),
        FILTER("Contrast", f.Contrast(a[0].asInt())),
        FILTER("Equalize", f.Equalize()),
        FILTER("ISOLATE", f.ISOLATE(a[0].asColour(), a[1].asColour(), a[2].asInt())),
        FILTER("REPLACE", f.REPLACE(a[0].asColour(), a[1].asColour(), a[2].asInt())),
        FILTER("Shift", f.Shift(a[0].asColour(), a[1].asInt(), a[2].asInt())),
        FILTER("ReplaceHS", f.ReplaceHS(a[0].asColour(), a[1].asColour(), a[2].asInt(), a[3].asInt(),
                                        a[4].asInt())),
        FILTER("ReplaceL", f.ReplaceL(a[0].asColour(), a[1].asColour(), a[2].asInt(), a[3].asInt())),
        FILTER("RotateH", f.RotateH(a[0].asInt(), a[1].asInt())),
        FILTER("RotateL", f.RotateL(a[0].asInt(), a[1].asInt())),
        FILTER("StretchH", f.StretchH(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        FILTER("SwapBanks", f.SwapBanks(a[0].asInt())),
        FILTER("SwapRGB", f.SwapRGB(a[0].asInt(), a[1].asInt(), a[2].asInt(), a[3].asBool(), a[4].asBool(),
                                    a[5].asBool(), a[6].asBool(), a[7].asBool(), a[8].asBool())),
        FILTER("ClassyColors", f.ClassyColors(a[0].asInt())),
    };
}

std::vector<StepDef> neighbourhoodSteps() {
    return {
        OperationStep("MaskFilter",
                      [](StepContext& ctx, V a) {
                          FilterMask mask;
                          ParseFilterPreset(mask, a[0].asInt());
                          ctx.setImage(ctx.filter.MaskFilter(mask, a[1].asBool()));
                      }),
        FILTER("Blurs", f.Blurs(a[0].asInt())),
        FILTER("SOFTEN", f.SOFTEN(a[0].asInt())),
        FILTER("SHARPEN", f.SHARPEN(a[0].asInt())),
        FILTER("EDGEENHANCE", f.EDGEENHANCE(a[0].asInt())),
        FILTER("CONTOUR", f.CONTOUR(a[0].asInt(), a[1].asInt())),
        FILTER("EMBOSS", f.EMBOSS(a[0].asInt())),
        FILTER("Engrave", f.Engrave(a[0].asInt())),
        FILTER("RELIEF", f.RELIEF()),
        FILTER("DILATE", f.DILATE()),
        FILTER("ERODE", f.ERODE()),
        FILTER("RankFilterN4", f.RankFilterN4(a[0].asInt())),
        FILTER("RankFilterND", f.RankFilterND(a[0].asInt())),
        FILTER("DIFFUSE", f.DIFFUSE(a[0].asInt(), a[1].asInt())),
        FILTER("NOISE", f.NOISE(a[0].asInt(), a[1].asBool())),
    };
}

// The extension of LENS and Light, in pixels of the picture's thumbnail as in the dialog.
float extension(const cBitFilter& f, int32_t slider) {
    return ThumbnailExtension(slider, f.BitsWidth(), f.BitsHeight());
}

std::vector<StepDef> deformSteps() {
    return {
        FILTER("BEND", f.BEND(a[0].asInt(), a[1].asBool())),
        FILTER("FOLD", f.FOLD(a[0].asInt(), a[1].asInt(), a[2].asBool())),
        FILTER("ROTATE", f.ROTATE(a[0].asInt(), a[1].asBool())),
        FILTER("STRETCH", f.STRETCH(a[0].asInt(), a[1].asInt(), a[2].asBool())),
        FILTER("TILE", f.TILE(a[0].asInt())),
        FILTER("TWIRL", f.TWIRL(a[0].asInt(), a[1].asInt(), a[2].asBool())),
        FILTER("WAVES", f.WAVES(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        FILTER("LENS", f.LENS(a[0].asFloat(), a[1].asFloat(), extension(f, a[2].asInt()), a[3].asInt())),
        FILTER("FISHEYE", f.FISHEYE()),
        FILTER("GLASS", f.GLASS(a[0].word, a[1].asInt())),
    };
}

std::vector<StepDef> artisticSteps() {
    return {
        FILTER("PIXELIZE", f.PIXELIZE(a[0].asInt())),
        FILTER("HALFTONE", f.HALFTONE(a[0].asInt(), a[1].asInt(), a[2].asInt())),
        FILTER("OLDPHOTO", f.OLDPHOTO()),
        FILTER("THERMIQUE", f.THERMIQUE()),
        FILTER("XBLACK", f.XBLACK()),
        FILTER("PHOTOCOP", f.PHOTOCOP()),
        FILTER("Light", f.Light(a[0].asFloat(), a[1].asFloat(), extension(f, a[2].asInt()), a[3].asInt(),
                                a[4].asInt())),
        FILTER("Scanlines", f.Scanlines(a[0].asInt())),
        OperationStep("Texturize",
                      [](StepContext& ctx, V a) {
                          const Bits tile = loadArgumentImage(a[0].word);
                          ctx.setImage(ctx.filter.Texturize(tile));
                      }),
        FILTER("StuckiBW", f.StuckiBW(a[0].asInt())),
        FILTER("SKETCH", f.SKETCH(a[0].asInt(), a[1].asBool(), a[2].asColour())),
        FILTER("PAINTING", f.PAINTING()),
        FILTER("Dissolve", f.Dissolve(a[0].asInt(), a[1].asColour())),
        FILTER("Grid", f.Grid(a[0].asInt(), a[1].asInt(), a[2].asBool(), a[3].asColour(), a[4].asInt())),
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
