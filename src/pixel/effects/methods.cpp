// The method table: the library's table of methods, each with its values and the fixed
// values it adds.
#include "pixel/effects/methods.h"

#include "pixel/effects/effects.h"

#include <cmath>
#include <stdexcept>

namespace ostrivex::effects {

namespace {

using K = ArgKind;
MethodArg I(const char* n, double lo, double hi) { return {n, K::Int, lo, hi}; }
MethodArg S(const char* n, double lo, double hi) { return {n, K::Single, lo, hi}; }
MethodArg D(const char* n, double lo, double hi) { return {n, K::Double, lo, hi}; }
MethodArg C(const char* n) { return {n, K::Colour, 0, 0xFFFFFF}; }
MethodArg P(const char* n) { return {n, K::Picture, 0, 0}; }

using V = const std::vector<double>&;
inline int32_t i(V v, size_t n) { return int32_t(std::lround(v[n])); }
inline float f(V v, size_t n) { return float(v[n]); }
inline uint32_t c(V v, size_t n) { return uint32_t(int64_t(v[n])) & 0xFFFFFFu; }

const Bits& needThird(const Bits* third) {
    if (!third) throw std::invalid_argument("this method blends a third picture");
    return *third;
}

#define RUN(body)                                                                           \
    [](Bits & first, const Bits& second, const Bits* third, V v, int32_t key) {             \
        (void)third;                                                                        \
        (void)v;                                                                            \
        body;                                                                               \
    }

std::vector<EffectMethod> makeMethods() {
    using A = std::vector<MethodArg>;
    return {
        {"ReduceTo8Colors", "ReduceTo8Colors", A{}, "", RUN(ReduceTo8Colors(first, second, key))},
        {"Sepia", "Sepia", A{}, "", RUN(Sepia(first, second, key))},
        {"DIFFUSE", "Diffuse", A{}, "", RUN(Diffuse(first, second, key))},
        {"Melt", "Melt", A{}, "", RUN(Melt(first, second, key))},
        {"FishEye", "FishEye", A{}, "", RUN(FishEye(first, second, key))},
        {"BLUR", "Blur", A{}, "", RUN(Blur(first, second, key))},
        {"RELIEF", "Relief", A{}, "", RUN(Relief(first, second, key))},
        {"FourCorners", "FourCorners", A{}, "", RUN(FourCorners(first, second, key))},
        {"Caricature", "Caricature", A{}, "", RUN(Caricature(first, second, key))},
        {"Roll", "Roll", A{}, "", RUN(Roll(first, second, key))},
        {"SoftnerBlur", "SoftnerBlur", A{}, "", RUN(SoftnerBlur(first, second, key))},
        {"WebColors", "WebColors", A{}, "", RUN(WebColors(first, second, key))},
        {"Make3DEffect", "Make3DEffect", A{}, "6", RUN(Make3DEffect(first, second, 6, key))},
        {"PolarCoordinates", "PolarCoordinates", A{}, "0", RUN(PolarCoordinates(first, second, 0, key))},
        {"AntiAlias", "AntiAlias", A{}, "50", RUN(AntiAlias(first, second, 50, key))},
        {"StretchHistogram", "StretchHistogram", A{}, "7, 1.0",
         RUN(StretchHistogram(first, second, 7, 1.0, key))},
        {"Solarize", "Solarize", A{I("level", -128, 128)}, "", RUN(Solarize(first, second, i(v, 0), key))},
        {"SmartBlur", "SmartBlur", A{I("threshold", 0, 255)}, "", RUN(SmartBlur(first, second, i(v, 0), key))},
        {"FrostGlass", "FrostGlass", A{I("amount", 0, 100)}, "", RUN(FrostGlass(first, second, i(v, 0), key))},
        {"BRIGHTNESS", "Brightness", A{I("level", -255, 255)}, "", RUN(Brightness(first, second, i(v, 0), key))},
        {"Sharpening", "Sharpening", A{S("amount", 0, 1)}, "", RUN(Sharpening(first, second, f(v, 0), key))},
        {"Gamma", "Gamma", A{S("gamma", 0, 20)}, "", RUN(Gamma(first, second, f(v, 0), key))},
        {"GrayScale", "GrayScale", A{I("brightness", -255, 255)}, "", RUN(GrayScale(first, second, i(v, 0), key))},
        {"Invert", "Invert", A{I("amount", 0, 255)}, "", RUN(Invert(first, second, i(v, 0), key))},
        {"ReduceColors", "ReduceColors", A{I("level", 0, 255)}, "", RUN(ReduceColors(first, second, i(v, 0), key))},
        {"Stamp", "Stamp", A{I("level", 0, 255)}, "", RUN(Stamp(first, second, i(v, 0), key))},
        {"Mosaic", "Mosaic", A{I("size", 0, 255)}, "", RUN(Mosaic(first, second, i(v, 0), key))},
        {"Rock", "Rock", A{I("depth", 0, 20)}, "", RUN(Rock(first, second, i(v, 0), key))},
        {"EMBOSS", "Emboss", A{S("depth", -10, 10)}, "", RUN(Emboss(first, second, f(v, 0), key))},
        {"ColorRandomize", "ColorRandomize", A{I("level", -255, 255)}, "",
         RUN(ColorRandomize(first, second, i(v, 0), key))},
        {"Shift", "Shift", A{I("shift", 0, 255)}, "", RUN(Shift(first, second, i(v, 0), key))},
        {"TWIRL", "Twirl", A{I("level", -100, 100)}, "", RUN(Twirl(first, second, i(v, 0), key))},
        {"swirl", "Swirl", A{I("strength", -255, 255)}, "", RUN(Swirl(first, second, i(v, 0), key))},
        {"canvas", "Canvas", A{I("border", 0, 16383)}, "", RUN(Canvas(first, second, i(v, 0), key))},
        {"SATURATION", "Saturation", A{I("level", -255, 512)}, "", RUN(Saturation(first, second, i(v, 0), key))},
        {"Hue", "Hue", A{I("degrees", 0, 360)}, "", RUN(Hue(first, second, i(v, 0), key))},
        {"Fragment", "Fragment", A{I("offset", 0, 200)}, "", RUN(Fragment(first, second, i(v, 0), key))},
        {"FarBlur", "FarBlur", A{I("radius", 0, 200)}, "", RUN(FarBlur(first, second, i(v, 0), key))},
        {"RadialBlur", "RadialBlur", A{I("degrees", 0, 360)}, "", RUN(RadialBlur(first, second, i(v, 0), key))},
        {"ZoomBlur", "ZoomBlur", A{I("amount", 0, 1000)}, "", RUN(ZoomBlur(first, second, i(v, 0), key))},
        {"Fog", "Fog", A{I("density", 0, 127)}, "", RUN(Fog(first, second, i(v, 0), key))},
        {"MediumTones", "MediumTones", A{I("level", -255, 255)}, "",
         RUN(MediumTones(first, second, i(v, 0), key))},
        {"Neon", "Neon", A{I("glow", 0, 10)}, "2", RUN(Neon(first, second, i(v, 0), 2, key))},
        {"FindEdges", "FindEdges", A{I("strength", 0, 20)}, "2", RUN(FindEdges(first, second, i(v, 0), 2, key))},
        {"AmbientLight", "AmbientLight", A{I("strength", 0, 255), C("colour")}, "",
         RUN(AmbientLight(first, second, i(v, 0), c(v, 1), key))},
        {"Tone", "Tone", A{I("strength", 0, 255), C("colour")}, "",
         RUN(Tone(first, second, i(v, 0), c(v, 1), key))},
        {"RandomicalPoints", "RandomicalPoints", A{I("density", 0, 200), C("colour")}, "",
         RUN(RandomicalPoints(first, second, i(v, 0), c(v, 1), key))},
        {"OilPaint", "OilPaint", A{I("radius", 0, 20), I("levels", 2, 256)}, "",
         RUN(OilPaint(first, second, i(v, 0), i(v, 1), key))},
        {"CircularWaves", "CircularWaves", A{I("amplitude", 0, 100), I("count", 1, 100)}, "",
         RUN(CircularWaves(first, second, i(v, 0), i(v, 1), key))},
        {"CircularWavesEx", "CircularWavesEx", A{I("amplitude", 0, 100), I("count", 1, 100)}, "",
         RUN(CircularWavesEx(first, second, i(v, 0), i(v, 1), key))},
        {"BlockWaves", "BlockWaves", A{I("amplitude", 0, 100), I("bands", 1, 200)}, "1",
         RUN(BlockWaves(first, second, i(v, 0), i(v, 1), 1, key))},
        {"TileE", "Tile", A{I("tiles", 0, 100), C("background")}, "6",
         RUN(Tile(first, second, i(v, 0), c(v, 1), 6, key))},
        {"Metallic", "Metallic", A{I("shine", 0, 255), I("kind", 0, 2)}, "4 (before A)",
         RUN(Metallic(first, second, 4, i(v, 0), i(v, 1), key))},
        {"Contrast", "Contrast", A{S("red", 0, 10), S("green", 0, 10), S("blue", 0, 10)}, "",
         RUN(Contrast(first, second, f(v, 0), f(v, 1), f(v, 2), key))},
        {"BackDropRemoval", "BackDropRemoval", A{I("tolerance", 0, 255), C("colour"), C("newColour")}, "",
         RUN(BackDropRemoval(first, second, i(v, 0), c(v, 1), c(v, 2), key))},
        {"DetectBorders", "DetectBorders", A{I("threshold", 0, 255), C("lineColour"), C("backColour")}, "",
         RUN(DetectBorders(first, second, i(v, 0), c(v, 1), c(v, 2), key))},
        {"WAVES", "Waves", A{I("amplitude", 0, 100), I("count", 1, 100), I("phase", -360, 360)}, "-1",
         RUN(Waves(first, second, i(v, 0), i(v, 1), i(v, 2), -1, key))},
        {"BackDropRemovalEx", "BackDropRemovalEx",
         A{I("tolerance", 0, 255), C("colour"), C("newColour")}, "-1, -1, -1, 0",
         RUN(BackDropRemovalEx(first, second, i(v, 0), c(v, 1), c(v, 2), -1, -1, -1, 0, key))},
        {"NotePaper", "NotePaper", A{I("balance", 0, 255), C("ink"), C("paper")}, "2, 20, 1 (after A)",
         RUN(NotePaper(first, second, i(v, 0), 2, 20, 1, c(v, 1), c(v, 2), key))},
        {"AdvancedBlur", "AdvancedBlur", A{I("amount", 0, 100)}, "25, -1",
         RUN(AdvancedBlur(first, second, i(v, 0), 25, -1, key))},
        {"MotionBlur", "MotionBlur", A{D("degrees", -360, 360)}, "15",
         RUN(MotionBlur(first, second, v[0], 15, key))},
        {"ColorBalance", "ColorBalance", A{I("yellowBlue", -255, 255)}, "0, 0 (before A)",
         RUN(ColorBalance(first, second, 0, 0, i(v, 0), key))},
        {"FishEyeEx", "FishEyeEx", A{D("strength", -255, 255)}, "", RUN(FishEyeEx(first, second, v[0], key))},
        {"Cilindrical", "Cilindrical", A{D("strength", -30, 30)}, "", RUN(Cilindrical(first, second, v[0], key))},
        {"UnsharpMask", "UnsharpMask", A{D("amount", 0, 20)}, "2 (before A)",
         RUN(UnsharpMask(first, second, 2, v[0], key))},
        {"TwirlEx", "TwirlEx", A{D("turns", -100, 100), D("radius", 0, 4)}, "",
         RUN(TwirlEx(first, second, v[0], v[1], key))},
        {"BlendMode", "BlendMode", A{P("third"), I("mode", 0, kBlendModeCount - 1)}, "",
         RUN(BlendMode(first, second, needThird(third), i(v, 1), key))},
        {"GlassBlendMode", "GlassBlendMode", A{P("third"), D("opacity", 0, 1)}, "3",
         RUN(GlassBlendMode(first, second, needThird(third), v[1], 3, key))},
        {"bAlphaBlend", "AlphaBlendInto", A{I("level", 0, 100)}, "",
         RUN(AlphaBlendInto(first, second, i(v, 0), key))},
        {"Flip", "Flip", A{I("mode", 0, 2)}, "",
         RUN(Flip(first, second, i(v, 0) != 1, i(v, 0) != 0, key))},
        {"AlphaBlend", "AlphaBlendAt", A{I("level", 0, 100), I("left", -1e6, 1e6), I("top", -1e6, 1e6)}, "",
         RUN(AlphaBlendAt(first, first.width(), first.height(), second, i(v, 1), i(v, 2), i(v, 0), key))},
        {"RainDrops", "RainDrops", A{I("size", 0, 200), I("count", 0, 1000), I("lens", 0, 100)}, "",
         RUN(RainDrops(first, second, i(v, 0), i(v, 1), i(v, 2), key))},
        {"IncreaseSize", "IncreaseSize", A{}, "", RUN((void)key; IncreaseSize(first, second))},
    };
}

#undef RUN

} // namespace

const std::vector<EffectMethod>& EffectMethods() {
    static const std::vector<EffectMethod> methods = makeMethods();
    return methods;
}

const EffectMethod* FindEffectMethod(std::string_view name) {
    for (const EffectMethod& m : EffectMethods())
        if (name == m.name) return &m;
    return nullptr;
}

void clsTransForm::Apply(const EffectMethod& method, Bits& first, const Bits& second,
                         const std::vector<double>& values, int32_t key, const Bits* third) {
    if (values.size() != method.args.size())
        throw std::invalid_argument(std::string(method.name) + " takes " +
                                    std::to_string(method.args.size()) + " value(s)");
    method.run(first, second, third, values, key);
    if (std::string_view(method.name) != "bAlphaBlend") ShapeMe(TransparentColor, true, nullptr, &first);
}

bool clsTransForm::ShapeMe(int32_t colour, bool horizontalScan, const Bits* form,
                           const Bits* pictureBox) {
    if ((form == nullptr) == (pictureBox == nullptr)) return false;
    shape_ = ShapeRegion(form ? *form : *pictureBox, colour, horizontalScan);
    return true;
}

} // namespace ostrivex::effects
