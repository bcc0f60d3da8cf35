#include "pixel/fixedcommands.h"

namespace ostrivex {

namespace {

// `255255255` is what the contour words pass as the colour: a decimal number that reads
// like "255, 255, 255" but, packed as 0x00BBGGRR, is another colour. It is kept as it is.
constexpr int32_t kContourColour = 255255255;

#define FIXED(word, call, expr) {word, call, [](cBitFilter& f) -> Bits { return expr; }}

const std::vector<FixedCommand> kFixedCommands = {
    FIXED("FLIPH", "Flip(-1, 0)", f.Flip(true, false)),
    FIXED("FLIPV", "Flip(0, -1)", f.Flip(false, true)),
    FIXED("INVERT", "Invert", f.Invert()),
    FIXED("GRAYSCALE", "GreyScale", f.GreyScale()),
    FIXED("RELIEF", "RELIEF", f.RELIEF()),
    FIXED("ERODE", "ERODE", f.ERODE()),
    FIXED("DILATE", "DILATE", f.DILATE()),
    FIXED("PAINTING", "PAINTING", f.PAINTING()),
    FIXED("THERMIQUE", "THERMIQUE", f.THERMIQUE()),
    FIXED("XBLACK", "XBLACK", f.XBLACK()),
    FIXED("PHOTOCOP", "PHOTOCOP", f.PHOTOCOP()),
    FIXED("OLDPHOTO", "OLDPHOTO", f.OLDPHOTO()),
    FIXED("EQUALIZE", "Equalize", f.Equalize()),
    FIXED("LIGHTSHARPEN", "SHARPEN(10)", f.SHARPEN(10)),
    FIXED("HEAVYSHARPEN", "SHARPEN(40)", f.SHARPEN(40)),
    FIXED("EDGEENHANCE", "EDGEENHANCE(10)", f.EDGEENHANCE(10)),
    FIXED("ENHANCEWHITE", "RankFilterND(1)", f.RankFilterND(1)),
    FIXED("ENHANCEBLACK", "RankFilterND(0)", f.RankFilterND(0)),
    // Both brighten: the second word was never given a negative level.
    FIXED("LUMPLUS", "BRIGHTNESS(20)", f.BRIGHTNESS(20)),
    FIXED("LUMMINUS", "BRIGHTNESS(80)", f.BRIGHTNESS(80)),
    FIXED("LIGHTEMBOSS", "EMBOSS(10)", f.EMBOSS(10)),
    FIXED("HEAVYEMBOSS", "EMBOSS(30)", f.EMBOSS(30)),
    FIXED("LIGHTCONTOUR", "CONTOUR(200, 255255255)", f.CONTOUR(200, kContourColour)),
    FIXED("HEAVYCONTOUR", "CONTOUR(255, 255255255)", f.CONTOUR(255, kContourColour)),
    FIXED("LIGHTDIFFUSE", "DIFFUSE(5, 10)", f.DIFFUSE(5, 10)),
    FIXED("HEAVYDIFFUSE", "DIFFUSE(10, 30)", f.DIFFUSE(10, 30)),
    FIXED("LIGHTENGRAVE", "Engrave(10)", f.Engrave(10)),
    FIXED("HEAVYENGRAVE", "Engrave(30)", f.Engrave(30)),
    FIXED("LIGHTSOFTEN", "SOFTEN(30)", f.SOFTEN(30)),
    FIXED("HEAVYSOFTEN", "SOFTEN(80)", f.SOFTEN(80)),
    FIXED("LIGHTBLUR", "Blurs(1)", f.Blurs(1)),
    FIXED("HEAVYBLUR", "Blurs(2)", f.Blurs(2)),
    FIXED("LIGHTNOISE", "NOISE(20, false)", f.NOISE(20, false)),
    FIXED("HEAVYNOISE", "NOISE(40, false)", f.NOISE(40, false)),
    FIXED("LIGHTSATURATION", "SATURATION(10)", f.SATURATION(10)),
    FIXED("HEAVYSATURATION", "SATURATION(20)", f.SATURATION(20)),
    FIXED("WWAVES", "WAVES(30, 40, 0)", f.WAVES(30, 40, 0)),
    FIXED("AADDSCANLINES", "Scanlines(30)", f.Scanlines(30)),
    FIXED("BBRIGHTNESS", "BRIGHTNESS(40)", f.BRIGHTNESS(40)),
    FIXED("FISHEYE", "LENS(50, 50, 60), circle inscribed in the image", f.FISHEYE()),
    FIXED("CURTAINHORIZONTAL", "GLASS(\"curtain\", 1)", f.GLASS("curtain", 1)),
    FIXED("CURTAINVERTICAL", "GLASS(\"curtain\", 2)", f.GLASS("curtain", 2)),
    FIXED("CURTAINCLASSY", "GLASS(\"curtain\", 3)", f.GLASS("curtain", 3)),
    FIXED("CURTAINWHITY", "GLASS(\"curtain\", 4)", f.GLASS("curtain", 4)),
    FIXED("SLANTING", "GLASS(\"slanting\", 0)", f.GLASS("slanting", 0)),
    FIXED("HORIZONTAL", "GLASS(\"horizontal\", 0)", f.GLASS("horizontal", 0)),
    FIXED("VERTICAL", "GLASS(\"vertical\", 0)", f.GLASS("vertical", 0)),
    FIXED("SQUARY", "GLASS(\"squary\", 0)", f.GLASS("squary", 0)),
    FIXED("SOFTBLUE", "ClassyColors(0)", f.ClassyColors(0)),
    FIXED("SOFTGREEN", "ClassyColors(1)", f.ClassyColors(1)),
    FIXED("PURPLE", "ClassyColors(2)", f.ClassyColors(2)),
    FIXED("SOFTRED", "ClassyColors(3)", f.ClassyColors(3)),
    FIXED("SPOTTED", "ClassyColors(6)", f.ClassyColors(6)),
    FIXED("RETRO", "ClassyColors(7)", f.ClassyColors(7)),
    FIXED("SOFTYELLOW", "ClassyColors(8)", f.ClassyColors(8)),
    FIXED("ORANGE", "ClassyColors(10)", f.ClassyColors(10)),
    FIXED("WETPAPER", "ClassyColors(11)", f.ClassyColors(11)),
    FIXED("HARDRED", "SpecialColors(-1, 0, 0)", f.SpecialColors(-1, 0, 0)),
    FIXED("HARDBLUE", "SpecialColors(0, 0, -1)", f.SpecialColors(0, 0, -1)),
    FIXED("HARDGREEN", "SpecialColors(0, -1, 0)", f.SpecialColors(0, -1, 0)),
    FIXED("HARDYELLOW", "SpecialColors(-1, -1, 0)", f.SpecialColors(-1, -1, 0)),
    FIXED("CYAN", "SpecialColors(0, -1, -1)", f.SpecialColors(0, -1, -1)),
    FIXED("MAGENTA", "SpecialColors(-1, 0, -1)", f.SpecialColors(-1, 0, -1)),
    FIXED("RGB2BRG", "SwapBanks(1)", f.SwapBanks(1)),
    FIXED("RGB2GBR", "SwapBanks(2)", f.SwapBanks(2)),
    FIXED("RGB2RBG", "SwapBanks(3)", f.SwapBanks(3)),
    FIXED("RGB2BGR", "SwapBanks(4)", f.SwapBanks(4)),
    FIXED("RGB2GRB", "SwapBanks(5)", f.SwapBanks(5)),
    FIXED("SEPIATONE", "COLORIZE(0.5, 0.25, 1)", f.COLORIZE(0.5f, 0.25f, 1.0f)),
};

#undef FIXED

} // namespace

const std::vector<FixedCommand>& FixedCommands() { return kFixedCommands; }

const FixedCommand* FindFixedCommand(std::string_view word) {
    for (const FixedCommand& c : kFixedCommands)
        if (word == c.word) return &c;
    return nullptr;
}

} // namespace ostrivex
