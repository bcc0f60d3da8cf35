// Text as batch steps: style text, 3D text and logos drawn on the picture, so that text can
// be made and checked without a window. The font is a font file (loaded for the run) or
// the name of an installed face; a text cannot hold a comma, which separates arguments.
#include "tools/batch/batch.h"

#include "pixel/vbmath.h"
#include "text/draw/logo.h"
#include "text/draw/styledtext.h"
#include "text/draw/text3d.h"
#include "text/draw/textstamp.h"

#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>

#include <map>

namespace ostrivex::batch {

namespace {

using K = ArgSpec::Kind;
using V = const std::vector<ArgValue>&;
using A = std::vector<ArgSpec>;

constexpr double kCoord = 1000000;

ArgSpec I(const char* name, double lo, double hi) {
    return {name, K::Int, lo, hi, {}};
}
ArgSpec F(const char* name, double lo, double hi) {
    return {name, K::Float, lo, hi, {}};
}
ArgSpec B(const char* name) {
    return {name, K::Bool, -1, 0, {}};
}
ArgSpec C(const char* name) {
    return {name, K::Colour, 0, 0xFFFFFF, {}};
}
// A colour or -1 (none).
ArgSpec OC(const char* name) {
    return {name, K::Int, -1, 0xFFFFFF, {}};
}
ArgSpec T(const char* name) {
    return {name, K::Text, 0, 0, {}};
}
// A font file, or the name of an installed face.
ArgSpec Font() {
    return {"font", K::Text, 0, 0, {}};
}
ArgSpec W(const char* name, std::vector<std::string> words) {
    return {name, K::Word, 0, 0, std::move(words)};
}

// Fonts need the platform's font database: a window-less application for the run.
void needFonts() {
    if (QCoreApplication::instance()) return;
    static int argc = 3;
    static char name[] = "ostrivex-batch", platform[] = "-platform", offscreen[] = "offscreen";
    static char* argv[] = {name, platform, offscreen, nullptr};
    static QGuiApplication* app = new QGuiApplication(argc, argv); // lives until the run ends
    (void)app;
}

// A font file is loaded once and stands for its family; anything else is a face's name.
QString fontFamily(const std::string& font) {
    needFonts();
    static std::map<std::string, QString> loaded;
    if (auto it = loaded.find(font); it != loaded.end()) return it->second;
    const QString path = QString::fromStdString(font);
    if (!QFileInfo(path).isFile()) {
        // A name that looks like a file must be one; any other is a face's name.
        static const QStringList fontFiles = {".ttf", ".otf", ".ttc", ".pfb", ".pfa"};
        bool looksLikeFile = path.contains('/');
        for (const QString& ext : fontFiles)
            looksLikeFile |= path.endsWith(ext, Qt::CaseInsensitive);
        if (looksLikeFile) throw StepError("no font file '" + font + "'");
        return path;
    }
    const int id = QFontDatabase::addApplicationFont(path);
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (id < 0 || families.isEmpty()) throw StepError("cannot load font '" + font + "'");
    return loaded[font] = families.first();
}

QString text(const ArgValue& a) {
    return QString::fromStdString(a.word);
}

// Lays `over` on the picture: every pixel but those of colour `key` (all of them for -1).
void layOver(StepContext& ctx, const Bits& over, int32_t key) {
    Bits b = ctx.filter.GetBits();
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x) {
            const uint8_t* s = over.pixel(x, y);
            if (key >= 0 && packColour(s[2], s[1], s[0]) == uint32_t(key)) continue;
            uint8_t* d = b.pixel(x, y);
            d[0] = s[0];
            d[1] = s[1];
            d[2] = s[2];
        }
    ctx.setImage(std::move(b));
}

} // namespace

std::vector<StepDef> textSteps() {
    return {
        StepDef{"DrawStyledText",
                A{Font(), T("text"), I("weight", 0, 1000), B("italic"), B("underline"),
                  B("strikethru"), F("size", 0.1, 30000), I("angle", -3600, 3600),
                  I("style", -1, 9), OC("color1"), OC("color2"), OC("color3"),
                  I("x", -kCoord, kCoord), I("y", -kCoord, kCoord), I("repeat", 0, 10000)},
                "text drawn by passes: style 0 color1 +1 then color2 -1, 1 the reverse, 2 color1 "
                "+1, 3 color2 -1, each pass `repeat` copies; color3 last (-1 skips a colour)",
                [](StepContext& ctx, V a) {
                    const QString family = fontFamily(a[0].word);
                    Bits b = ctx.filter.GetBits();
                    DrawStyledText(b, text(a[1]), family, a[2].asInt(), a[3].asBool(),
                                   a[4].asBool(), a[5].asBool(), a[6].asFloat(), a[7].asInt(),
                                   a[8].asInt(), a[9].asInt(), a[10].asInt(), a[11].asInt(),
                                   a[12].asInt(), a[13].asInt(), a[14].asInt());
                    ctx.setImage(std::move(b));
                }},
        StepDef{"StyleText",
                A{Font(), T("text"), F("size", 0.1, 30000), I("style", 0, 9), C("colour"),
                  C("emboss"), C("engrave"), I("angle", -3600, 3600), I("depth", 0, 10000),
                  I("left", -kCoord, kCoord), I("right", -kCoord, kCoord)},
                "the New Text Layer dialog's drawing: style 0 Plain, 1 Emboss, 2 Engrave, 3 Both "
                "(4 and above draw nothing); left and right are the start in x and y",
                [](StepContext& ctx, V a) {
                    StyleTextSettings s;
                    s.fontName = fontFamily(a[0].word);
                    s.text = text(a[1]);
                    s.fontSize = a[2].asFloat();
                    s.style = a[3].asInt();
                    s.foreColor = int32_t(a[4].asColour());
                    s.emboss = int32_t(a[5].asColour());
                    s.engrave = int32_t(a[6].asColour());
                    s.angle = a[7].asInt();
                    s.depth = a[8].asInt();
                    s.left = a[9].asInt();
                    s.right = a[10].asInt();
                    Bits b = ctx.filter.GetBits();
                    DrawStyleText(b, s);
                    ctx.setImage(std::move(b));
                }},
        StepDef{"Text3D",
                A{Font(), I("size", 1, 12000), B("bold"), T("text"), C("colour1"), C("colour2"),
                  I("horizontal", -10000, 10000), I("vertical", -10000, 10000),
                  I("thickness", 1, 10000), I("key", -1, 0xFFFFFF)},
                "3D text centred on the picture: the block's colour runs from colour1 to colour2, "
                "slanted by tenths of a pixel per step; drawn on `key` and laid over the picture "
                "without that colour (-1: the picture is cleared to white first)",
                [](StepContext& ctx, V a) {
                    const QFont font = MakeTextFont(
                        {fontFamily(a[0].word), a[1].asFloat(), a[2].asBool() ? 700 : 400});
                    const int32_t key = a[9].asInt();
                    Bits pic(ctx.filter.BitsWidth(), ctx.filter.BitsHeight());
                    float r1, g1, b1, r2, g2, b2;
                    colortorgb(int32_t(a[4].asColour()), r1, g1, b1);
                    colortorgb(int32_t(a[5].asColour()), r2, g2, b2);
                    float h = a[6].asFloat(), v = a[7].asFloat();
                    Draw3DText(pic, key < 0 ? 0xFFFFFF : key, font, a[8].asInt(), r1, g1, b1, r2,
                               g2, b2, h, v, text(a[3]), false, Bits());
                    layOver(ctx, pic, key);
                }},
        StepDef{"Logo",
                A{Font(), I("size", 1, 12000), T("text"),
                  W("fill", {"solid", "gradient", "transparent"}), C("colour1"), C("colour2"),
                  I("border", 0, 50), C("bordercolour"), B("glow"), C("background"), B("antialias"),
                  W("effect", {"none", "shadow", "hover", "emboss", "engrave"}),
                  I("key", -1, 0xFFFFFF)},
                "a logo of the picture's size: letters filled in colour1 (a horizontal gradient to "
                "colour2), a border of that size all round, the background colour; laid over the "
                "picture without `key` (-1: all of it)",
                [](StepContext& ctx, V a) {
                    LogoSettings s;
                    s.width = ctx.filter.BitsWidth();
                    s.height = ctx.filter.BitsHeight();
                    s.fontName = fontFamily(a[0].word);
                    s.fontSize = a[1].asInt();
                    s.text = text(a[2]);
                    s.fontFill = a[3].word == "solid"      ? LogoFontFill::Solid
                                 : a[3].word == "gradient" ? LogoFontFill::Gradient
                                                           : LogoFontFill::Transparent;
                    s.fontColour = int32_t(a[4].asColour());
                    s.fontGradient = {GradientStyle::Horizontal, int32_t(a[4].asColour()),
                                      int32_t(a[5].asColour())};
                    s.borderSize = a[6].asInt();
                    s.border = s.borderSize > 0;
                    s.borderColour = int32_t(a[7].asColour());
                    s.glow = a[8].asBool();
                    s.backColour = int32_t(a[9].asColour());
                    s.antiAlias = a[10].asBool();
                    s.emboss = a[11].word == "emboss";
                    s.engrave = a[11].word == "engrave";
                    LogoState logo = DrawLogo(s);
                    if (a[11].word == "shadow") MakeShadow(logo);
                    if (a[11].word == "hover") MakeHover(logo);
                    layOver(ctx, logo.picture, a[12].asInt());
                }},
    };
}

} // namespace ostrivex::batch
