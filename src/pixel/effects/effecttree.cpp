// The 80 nodes of the effect tree.
#include "pixel/effects/effecttree.h"

#include "pixel/vbmath.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace ostrivex::effects {

namespace {

using P = EffectPanel;
using S = ValueSource;

constexpr S kNone{};
constexpr S kValue{S::Slider, 1};
S div(double d) { return {S::Slider, d}; }
S rounded(double d) { return {S::Rounded, d}; }
S fixed(double v) { return {S::Fixed, v}; }
constexpr S kColour1{S::Colour1, 0};
constexpr S kColour2{S::Colour2, 0};
constexpr S kSameAsA{S::SameAsA, 0};

// The colour of "Tone Adjustment", which has no colour panel: a cyanotype blue.
constexpr double kToneColour = 0xA05A28; // red 40, green 90, blue 160

EffectNode heading(int16_t n, const char* label, const char* key) {
    return {n, label, key, 0, nullptr, nullptr, 0, 0, 0, P::NoDialog, kNone, kNone, kNone};
}
// A node that applies at once with value 0.
EffectNode direct(int16_t n, const char* label, int16_t parent, const char* method, S a = kNone,
                  S b = kNone, S c = kNone) {
    return {n, label, nullptr, parent, nullptr, method, 0, 0, 0, P::NoDialog, a, b, c};
}
EffectNode dialog(int16_t n, const char* label, int16_t parent, const char* caption,
                  const char* method, int32_t min, int32_t max, int32_t def, P panel, S a,
                  S b = kNone, S c = kNone) {
    return {n, label, nullptr, parent, caption, method, min, max, def, panel, a, b, c};
}

std::vector<EffectNode> makeTree() {
    std::vector<EffectNode> t = {
        heading(1, "Color Adjustments", "Adjustments"),
        dialog(2, "Brightness", 1, "Special Effects - (Brightness)", "BRIGHTNESS", -255, 255, 0, P::None, kValue),
        dialog(3, "Contrast", 1, "Special Effects - (Contrast)", "Contrast", 0, 255, 100, P::None,
               rounded(100), kSameAsA, kSameAsA),
        dialog(4, "Sharpening", 1, "Special Effects - (Sharpen)", "Sharpening", 0, 60, 0, P::None, div(100)),
        dialog(5, "Gamma Correction", 1, "Special Effects - (Gamma)", "Gamma", 0, 255, 25, P::None, div(25)),
        dialog(6, "Reduce Colors", 1, "Special Effects - (Reduce Colors)", "ReduceColors", 0, 255, 0, P::None, kValue),
        direct(7, "Reduce to 8 Colors", 1, "ReduceTo8Colors"),
        dialog(8, "Shift Effect", 1, "Special Effects - (Shift)", "Shift", 0, 255, 0, P::None, kValue),
        dialog(9, "Saturation", 1, "Special Effects - (Saturation)", "SATURATION", -255, 512, 0, P::None, kValue),
        dialog(10, "Hue Adjustment", 1, "Special Effects - (Hue Adjustment)", "Hue", 0, 350, 0, P::None, kValue),
        dialog(11, "Color Balance", 1, "Special Effects - (Color Balance)", "ColorBalance", -255, 255, 0, P::None, kValue),
        direct(12, "WebColors Mode", 1, "WebColors"),
        dialog(13, "Medium Tone", 1, "Special Effects - (Medium Tones)", "MediumTones", 0, 255, 0, P::None, kValue),
        direct(14, "Stretch Histogram", 1, "StretchHistogram"),
        heading(15, "Blur", "Blur"),
        direct(16, "Anti-Alias", 15, "AntiAlias"),
        direct(17, "Simple", 15, "BLUR"),
        direct(18, "Smart", 15, "SmartBlur", fixed(20)),
        dialog(19, "Heavy", 15, "Special Effects - (More Blur)", "AdvancedBlur", 0, 10, 0, P::None, kValue),
        direct(20, "Soft", 15, "SoftnerBlur"),
        dialog(21, "Motion", 15, "Special Effects - (Motion Blur)", "MotionBlur", 0, 360, 0, P::None, kValue),
        dialog(22, "Far", 15, "Special Effects - (Far Blur)", "FarBlur", 0, 50, 0, P::None, kValue),
        dialog(23, "Radial", 15, "Special Effects - (Radial Blur)", "RadialBlur", 0, 30, 0, P::None, kValue),
        dialog(24, "Zoom", 15, "Special Effects - (Zoom Blur)", "ZoomBlur", 0, 200, 0, P::None, kValue),
        dialog(25, "Unsharp Mask", 15, "Special Effects - (Unsharp Mask)", "UnsharpMask", 0, 10, 0, P::None, div(2)),
        heading(26, "Tones", "Tones"),
        dialog(27, "Gray", 26, "Special Effects - (Gray Scale)", "GrayScale", -255, 255, 0, P::None, kValue),
        direct(28, "Sepia", 26, "Sepia"),
        dialog(29, "Ambient", 26, "Special Effects - (Ambient Light)", "AmbientLight", 0, 255, 255, P::Colour,
               kValue, kColour1),
        dialog(30, "Tone Adjustment", 26, "Special Effects - (Tone)", "Tone", 0, 255, 0, P::None, kValue,
               fixed(kToneColour)),
        heading(31, "Distortion", "Distortion"),
        direct(32, "Diffuse", 31, "DIFFUSE"),
        dialog(33, "Rock Effect", 31, "Special Effects - (Rock)", "Rock", 0, 6, 0, P::None, kValue),
        dialog(34, "Noise", 31, "Special Effects - (Noise)", "ColorRandomize", -255, 255, 0, P::None, kValue),
        direct(35, "Melt", 31, "Melt"),
        direct(36, "Fish eye", 31, "FishEye"),
        dialog(37, "Fish eye Extension", 31, "Special Effects - (FishEye Ex)", "FishEyeEx", -255, 255, 0, P::None, kValue),
        dialog(38, "twirl", 31, "Special Effects - (Twirl)", "TWIRL", -100, 100, 0, P::None, kValue),
        dialog(39, "twirl Extension", 31, "Special Effects - (Twirl Extension)", "TwirlEx", -100, 100, 0, P::None,
               kValue, fixed(1)),
        dialog(40, "swirl", 31, "Special Effects - (Swirl)", "swirl", -255, 255, 0, P::None, kValue),
        direct(41, "Make3D", 31, "Make3DEffect"),
        direct(42, "Four Corners", 31, "FourCorners"),
        direct(43, "Caricature", 31, "Caricature"),
        direct(44, "Enroll", 31, "Roll"),
        direct(45, "Polar Coordinates", 31, "PolarCoordinates"),
        dialog(46, "Clindrical", 31, "Special Effects - (Cylindrical)", "Cilindrical", -30, 30, 0, P::None, kValue),
        dialog(47, "Mosaic", 31, "Special Effects - (Mosaic)", "Mosaic", 0, 255, 0, P::None, kValue),
        dialog(48, "Waves", 31, "Special Effects - (Waves)", "WAVES", 0, 20, 0, P::None, kValue, fixed(4), fixed(0)),
        dialog(49, "Simple", 48, "Special Effects - (Block Waves)", "BlockWaves", 0, 20, 0, P::None, rounded(2),
               fixed(12)),
        dialog(50, "Circular", 48, "Special Effects - (Circular Waves)", "CircularWaves", 0, 20, 0, P::None, kValue,
               fixed(10)),
        dialog(51, "Circular Extension", 48, "Special Effects - (Circular Waves Ex)", "CircularWavesEx", 0, 20, 0,
               P::None, kValue, fixed(8)),
        heading(52, "Borders", "Borders"),
        // 53 and 66 run the same method; each has the other's dialog title.
        dialog(53, "Backdrop Removal", 52, "Special Effects - (Replace Colors)", "BackDropRemoval", 0, 255, 0,
               P::Colour, kValue, kColour2, kColour1),
        dialog(54, "Emboss/Engrave", 52, "Special Effects - (Emboss / Engrave)", "EMBOSS", -255, 255, 0, P::None,
               div(100)),
        dialog(55, "Neon", 52, "Special Effects - (Neon)", "Neon", 0, 5, 0, P::None, kValue),
        dialog(56, "Detect Borders", 52, "Special Effects - (Detect Borders)", "DetectBorders", 0, 255, 0,
               P::Colour, kValue, kColour2, kColour1),
        dialog(57, "Find Edges", 52, "Special Effects - (Find Edges)", "FindEdges", 0, 5, 0, P::None, kValue),
        dialog(58, "Note paper", 52, "Special Effects - (Note Paper)", "NotePaper", 0, 255, 0, P::Colour, kValue,
               kColour2, kColour1),
        heading(59, "Metallic Effect", "Metallic"),
        dialog(60, "Metallic", 59, "Special Effects - (Metallic)", "Metallic", 0, 255, 0, P::None, kValue, fixed(0)),
        dialog(61, "Gold", 59, "Special Effects - (Gold)", "Metallic", 0, 255, 0, P::None, kValue, fixed(1)),
        dialog(62, "Ice", 59, "Special Effects - (Ice)", "Metallic", 0, 255, 0, P::None, kValue, fixed(2)),
        heading(63, "Other Effects", "Others"),
        dialog(64, "Invertion", 63, "Special Effects - (Invertion)", "Invert", 0, 255, 0, P::None, kValue),
        dialog(65, "MonoChrome", 63, "Special Effects - (Monochrome)", "Stamp", 0, 255, 0, P::None, kValue),
        dialog(66, "Replace Color", 63, "Special Effects - (Backdrop Removal)", "BackDropRemoval", 0, 255, 0,
               P::Colour, kValue, kColour2, kColour1),
        dialog(67, "Random Points", 63, "Special Effects - (Random Points)", "RandomicalPoints", 2, 102, 2,
               P::Colour, kValue, kColour1),
        direct(68, "Solarize", 63, "Solarize", kValue),
        dialog(69, "Canvas Adjustment", 63, "Special Effects - (Canvas)", "canvas", 0, -1, 0, P::None, kValue),
        direct(70, "Relief", 63, "RELIEF"),
        dialog(71, "Tile Effect", 63, "Special Effects - (Tile)", "TileE", 0, 100, 0, P::Tile, kValue, kColour1),
        dialog(72, "Fragment", 63, "Special Effects - (Fragment)", "Fragment", 0, 50, 0, P::None, kValue),
        dialog(73, "Fog Effect", 63, "Special Effects - (Fog)", "Fog", 0, 127, 0, P::None, kValue),
        dialog(74, "Oil Painting", 63, "Special Effects - (OilPaint)", "OilPaint", 0, 255, 0, P::None, rounded(50),
               fixed(20)),
        direct(75, "Frost Glass", 63, "FrostGlass", kValue),
        direct(76, "Rain Drop", 63, "RainDrops", fixed(40), fixed(50), fixed(40)),
        heading(77, "Functions", "Functions"),
        direct(78, "Flip Horizontally", 77, "Flip", fixed(0)),
        direct(79, "Flip Vertically", 77, "Flip", fixed(1)),
        direct(80, "Flip Both", 77, "Flip", fixed(2)),
    };
    // Node 48 has nodes under it; the keys of the nodes without one are "E" and the number.
    static std::vector<std::string> keys;
    keys.reserve(t.size());
    for (EffectNode& n : t) {
        if (n.number == 48) n.key = "Waves";
        if (!n.key) {
            char text[8];
            std::snprintf(text, sizeof text, "E%d", int(n.number));
            keys.emplace_back(text);
            n.key = keys.back().c_str();
        }
    }
    return t;
}

} // namespace

const std::vector<EffectNode>& EffectTree() {
    static const std::vector<EffectNode> tree = makeTree();
    return tree;
}

const EffectNode* FindEffectNode(int32_t number) {
    const std::vector<EffectNode>& t = EffectTree();
    return number >= 1 && number <= int32_t(t.size()) ? &t[size_t(number - 1)] : nullptr;
}

const EffectMethod* NodeMethod(const EffectNode& node) {
    return node.method ? FindEffectMethod(node.method) : nullptr;
}

int32_t EffectMaximum(const EffectNode& node, int32_t width, int32_t height) {
    if (node.max >= 0) return node.max;
    return std::max(std::min(width, height) / 4, 0);
}

std::vector<double> NodeValues(const EffectNode& node, int32_t value, uint32_t colour1,
                               uint32_t colour2) {
    const EffectMethod* m = NodeMethod(node);
    if (!m) return {};
    const ValueSource sources[3] = {node.a, node.b, node.c};
    std::vector<double> out;
    for (size_t i = 0; i < m->args.size() && i < 3; ++i) {
        const ValueSource& s = sources[i];
        double v = 0;
        switch (s.kind) {
        case S::Unused: break;
        case S::Slider: v = value / s.number; break;
        case S::Rounded: v = vbRound(value / s.number); break;
        case S::Fixed: v = s.number; break;
        case S::Colour1: v = double(colour1 & 0xFFFFFFu); break;
        case S::Colour2: v = double(colour2 & 0xFFFFFFu); break;
        case S::SameAsA: v = out.empty() ? 0 : out.front(); break;
        }
        // Whole-number values take the method's own rounding of a division.
        if (m->args[i].kind == ArgKind::Int) v = vbRound(v);
        out.push_back(v);
    }
    return out;
}

bool ApplyEffectNode(clsTransForm& transform, int32_t number, Bits& first, const Bits& second,
                     int32_t value, uint32_t colour1, uint32_t colour2, int32_t key) {
    if (number < 2 || number > 80) return false;
    const EffectNode* node = FindEffectNode(number);
    const EffectMethod* m = node ? NodeMethod(*node) : nullptr;
    if (!m) return false;
    transform.Apply(*m, first, second, NodeValues(*node, value, colour1, colour2), key);
    return true;
}

} // namespace ostrivex::effects
