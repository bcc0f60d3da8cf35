// The layer effects in the batch tool: the effect tree's nodes with the dialog's scaling
// (EFFECT:NODE,VALUE[,COLOUR[,COLOUR2]]), and the transform's methods by name with their
// own values (FX.NAME:A,B,...).
#include "tools/batch/batch.h"

#include "imagefile/imagefile.h"
#include "pixel/effects/effecttree.h"
#include "pixel/effects/methods.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ostream>

namespace ostrivex::batch {

namespace {

// Runs an effect on the picture: the picture is the source, the result replaces it. With a
// selection, only the selected pixels take the result. The key is --key's.
void runEffect(StepContext& ctx, const std::function<void(Bits& first, const Bits& second)>& fn) {
    const Bits& source = ctx.filter.bits();
    Bits result;
    fn(result, source);
    const Rect image{0, 0, source.width(), source.height()};
    if (ctx.region != Region::rect(image) && result.width() == source.width() &&
        result.height() == source.height()) {
        Bits merged = source;
        for (int32_t y = 0; y < source.height(); ++y)
            if (const std::vector<Span>* spans = ctx.region.rowSpans(y))
                for (const Span& s : *spans)
                    std::memcpy(merged.pixel(s.x1, y), result.pixel(s.x1, y), size_t(s.x2 - s.x1) * 4u);
        result = std::move(merged);
    }
    ctx.setImage(std::move(result));
}

ArgSpec specOf(const effects::MethodArg& a) {
    switch (a.kind) {
    case effects::ArgKind::Int: return {a.name, ArgSpec::Kind::Int, a.min, a.max, {}};
    case effects::ArgKind::Single:
    case effects::ArgKind::Double: return {a.name, ArgSpec::Kind::Float, a.min, a.max, {}};
    case effects::ArgKind::Colour: return {a.name, ArgSpec::Kind::Colour, 0, 0xFFFFFF, {}};
    case effects::ArgKind::Flag: return {a.name, ArgSpec::Kind::Bool, -1, 0, {}};
    case effects::ArgKind::Picture: return {a.name, ArgSpec::Kind::Path, 0, 0, {}};
    }
    return {};
}

Bits loadPicture(const std::string& path) {
    const size_t dot = path.rfind('.');
    const ImageFileResult r = LoadDocumentImage(path, dot == std::string::npos ? "" : path.substr(dot + 1));
    if (!r.ok) throw StepError("cannot load image '" + path + "': " + r.message);
    return LoadedBitmap;
}

bool wholeNumber(const std::string& text, double lo, double hi, double& out) {
    if (text.empty()) return false;
    char* end = nullptr;
    const double v = std::strtod(text.c_str(), &end);
    if (*end || v != std::floor(v) || v < lo || v > hi) return false;
    out = v;
    return true;
}

} // namespace

std::vector<StepDef> effectSteps() {
    std::vector<StepDef> steps;
    for (const effects::EffectMethod& m : effects::EffectMethods()) {
        StepDef s;
        s.name = std::string("FX.") + m.name;
        for (const effects::MethodArg& a : m.args) s.args.push_back(specOf(a));
        s.note = std::string("layer effect ") + m.library +
                 (*m.fixed ? std::string(" (adds ") + m.fixed + ")" : std::string());
        const effects::EffectMethod* method = &m;
        s.run = [method](StepContext& ctx, const std::vector<ArgValue>& a) {
            std::vector<double> values;
            Bits third;
            bool hasThird = false;
            for (size_t i = 0; i < a.size(); ++i) {
                if (method->args[i].kind == effects::ArgKind::Picture) {
                    third = loadPicture(a[i].word);
                    hasThird = true;
                    values.push_back(0);
                } else {
                    values.push_back(a[i].number);
                }
            }
            runEffect(ctx, [&](Bits& first, const Bits& second) {
                method->run(first, second, hasThird ? &third : nullptr, values, ctx.key);
            });
        };
        steps.push_back(std::move(s));
    }
    return steps;
}

std::optional<Step> parseEffectStep(const std::string& text, const std::string& args,
                                    std::string& error) {
    std::vector<std::string> parts;
    for (size_t start = 0;;) {
        const size_t comma = args.find(',', start);
        parts.push_back(args.substr(start, comma - start));
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    double number = 0;
    if (args.empty() || !wholeNumber(parts[0], 1, 80, number)) {
        error = "step EFFECT needs a node number from 1 to 80 (see --help)";
        return std::nullopt;
    }
    const effects::EffectNode& node = *effects::FindEffectNode(int32_t(number));
    if (node.isHeading()) {
        error = "step EFFECT: node " + parts[0] + " (\"" + node.label + "\") is a heading, not an effect";
        return std::nullopt;
    }
    if (parts.size() > 4) {
        error = "step EFFECT takes a node, a value and up to two colours";
        return std::nullopt;
    }
    double value = node.hasDialog() ? node.defaultValue : 0;
    if (parts.size() >= 2) {
        // The slider's range; "Canvas Adjustment" sets its maximum from the picture, so its
        // value is checked when the step runs.
        const double hi = node.max >= 0 ? node.max : 1e9;
        if (!wholeNumber(parts[1], node.min, hi, value) || (!node.hasDialog() && value != 0)) {
            error = "step EFFECT: value '" + parts[1] + "' of node " + parts[0] + " (\"" + node.label +
                    "\") is outside " +
                    (node.hasDialog() ? std::to_string(node.min) + " to " +
                                            (node.max >= 0 ? std::to_string(node.max) : std::string("its maximum"))
                                      : std::string("0 (it has no dialog)"));
            return std::nullopt;
        }
    }
    uint32_t colours[2] = {0xFFFFFFu, 0x000000u};
    for (size_t i = 2; i < parts.size(); ++i) {
        double c = 0;
        char* end = nullptr;
        const std::string& t = parts[i];
        if (t.size() > 2 && t[0] == '0' && (t[1] == 'x' || t[1] == 'X'))
            c = double(std::strtoull(t.c_str() + 2, &end, 16));
        else
            c = std::strtod(t.c_str(), &end);
        if (t.empty() || *end || c != std::floor(c) || c < 0 || c > 0xFFFFFF) {
            error = "step EFFECT: '" + t + "' is not a colour (0 to 16777215, packed 0x00BBGGRR)";
            return std::nullopt;
        }
        colours[i - 2] = uint32_t(c);
    }
    const int32_t n = int32_t(number), v = int32_t(value);
    const uint32_t c1 = colours[0], c2 = colours[1];
    return Step{text, [n, v, c1, c2](StepContext& ctx) {
                    const effects::EffectNode& nd = *effects::FindEffectNode(n);
                    const int32_t most = effects::EffectMaximum(nd, ctx.filter.BitsWidth(), ctx.filter.BitsHeight());
                    if (v > most)
                        throw StepError("value " + std::to_string(v) + " is above this picture's maximum " +
                                        std::to_string(most));
                    runEffect(ctx, [&](Bits& first, const Bits& second) {
                        effects::clsTransForm transform;
                        effects::ApplyEffectNode(transform, n, first, second, v, c1, c2, ctx.key);
                    });
                }};
}

void printEffectHelp(std::ostream& out) {
    out << "\nLayer effects by node (EFFECT:NODE[,VALUE[,COLOUR[,COLOUR2]]]): the value is the\n"
           "dialog's slider, scaled as the dialog scales it; COLOUR is the dialog's colour box\n"
           "(white when left out), COLOUR2 the colour picked from the picture (black). Nodes\n"
           "without a dialog take no value (or 0). The FX.NAME operations above run the same\n"
           "methods with their own values.\n";
    for (const effects::EffectNode& n : effects::EffectTree()) {
        if (n.isHeading()) {
            out << "  " << n.label << "\n";
            continue;
        }
        out << "    " << n.number << "  " << n.label << "  (" << n.method;
        if (n.hasDialog()) {
            out << ", " << n.min << " to ";
            if (n.max >= 0)
                out << n.max;
            else
                out << "a quarter of the shorter side";
            out << ", default " << n.defaultValue;
        } else {
            out << ", no value";
        }
        out << ")\n";
    }
}

} // namespace ostrivex::batch
