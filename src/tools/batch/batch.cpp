#include "tools/batch/batch.h"

#include "imagefile/imagefile.h"
#include "pixel/fixedcommands.h"
#include "pixel/random.h"
#include "pixel/selectionfile.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>

namespace ostrivex::batch {

void StepContext::setImage(Bits&& bits) {
    filter.SetBits(std::move(bits));
    bufferReplaced();
}

void StepContext::bufferReplaced() {
    const Rect image{0, 0, filter.BitsWidth(), filter.BitsHeight()};
    if (imageRect != image) {
        imageRect = image;
        region = Region::rect(image);
    }
    filter.BitsRegion(&region);
}

ArgSpec ArgOf(const OperationParam& param) {
    return {param.name, param.kind, param.ValueMinimum(), param.ValueMaximum(), param.words};
}

StepDef OperationStep(const char* name, std::function<void(StepContext&, const std::vector<ArgValue>&)> run) {
    const Operation* op = FindOperation(name);
    if (!op) throw std::logic_error(std::string("no operation ") + name + " in the table");
    StepDef step{name, {}, op->note, std::move(run)};
    for (const OperationParam& p : op->params) step.args.push_back(ArgOf(p));
    return step;
}

void addSteps(std::vector<StepDef>& out, std::vector<StepDef>&& more) {
    for (StepDef& s : more) out.push_back(std::move(s));
}

namespace {

std::vector<std::string> splitCommas(const std::string& s) {
    std::vector<std::string> parts;
    std::string cur;
    for (char c : s) {
        if (c == ',') {
            parts.push_back(cur);
            cur.clear();
        } else {
            cur += c;
        }
    }
    parts.push_back(cur);
    return parts;
}

bool parseNumber(const std::string& text, double& out) {
    if (text.empty()) return false;
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        const unsigned long long v = std::strtoull(begin + 2, &end, 16);
        if (errno || *end) return false;
        out = double(v);
        return true;
    }
    out = std::strtod(begin, &end);
    return errno == 0 && *end == '\0' && std::isfinite(out);
}

std::string rangeText(const ArgSpec& a) {
    std::ostringstream s;
    switch (a.kind) {
    case ArgSpec::Kind::Bool: s << "0 or -1"; break;
    case ArgSpec::Kind::Colour: s << "colour 0x00BBGGRR as decimal"; break;
    case ArgSpec::Kind::Path: s << "an image file"; break;
    case ArgSpec::Kind::Text: s << "any text without a comma"; break;
    case ArgSpec::Kind::Word:
        for (size_t i = 0; i < a.words.size(); ++i) s << (i ? " | " : "") << a.words[i];
        break;
    default: s << a.min << " to " << a.max; break;
    }
    return s.str();
}

bool parseArg(const ArgSpec& gradient, const std::string& text, ArgValue& out, std::string& error) {
    double v = 0;
    if (gradient.kind == ArgSpec::Kind::Path) {
        if (text.empty()) {
            error = "argument " + gradient.name + ": a file name is needed";
            return false;
        }
        out.word = text;
        return true;
    }
    if (gradient.kind == ArgSpec::Kind::Text) {
        out.word = text;
        return true;
    }
    if (gradient.kind == ArgSpec::Kind::Word) {
        for (const std::string& w : gradient.words)
            if (w == text) {
                out.word = text;
                return true;
            }
        error = "argument " + gradient.name + ": '" + text + "' is not one of " + rangeText(gradient);
        return false;
    }
    if (gradient.kind == ArgSpec::Kind::Bool && (text == "true" || text == "false")) {
        out.number = text == "true" ? -1 : 0;
        return true;
    }
    if (!parseNumber(text, v)) {
        error = "argument " + gradient.name + ": '" + text + "' is not a number";
        return false;
    }
    switch (gradient.kind) {
    case ArgSpec::Kind::Int:
        if (v != std::floor(v) || v < gradient.min || v > gradient.max) {
            error = "argument " + gradient.name + ": " + text + " is not a whole number from " +
                    rangeText(gradient);
            return false;
        }
        break;
    case ArgSpec::Kind::Float:
        if (v < gradient.min || v > gradient.max) {
            error = "argument " + gradient.name + ": " + text + " is outside " + rangeText(gradient);
            return false;
        }
        break;
    case ArgSpec::Kind::Bool:
        if (v != 0 && v != -1 && v != 1) {
            error = "argument " + gradient.name + ": " + text + " is not 0 or -1";
            return false;
        }
        v = v != 0 ? -1 : 0;
        break;
    case ArgSpec::Kind::Word:
    case ArgSpec::Kind::Path:
    case ArgSpec::Kind::Text: break;
    case ArgSpec::Kind::Colour:
        if (v != std::floor(v) || v < 0 || v > 0xFFFFFF) {
            error = "argument " + gradient.name + ": " + text +
                    " is not a colour (0 to 16777215, packed 0x00BBGGRR)";
            return false;
        }
        break;
    }
    out.number = v;
    return true;
}

const StepDef* findOperation(const std::string& name) {
    for (const StepDef& s : operationSteps())
        if (s.name == name) return &s;
    return nullptr;
}

bool parseBox(const std::string& text, Rect& box, std::string& error) {
    const std::vector<std::string> parts = splitCommas(text);
    int32_t v[4];
    if (parts.size() != 4) {
        error = "selection box needs four numbers L,T,R,B";
        return false;
    }
    for (int i = 0; i < 4; ++i) {
        double d = 0;
        if (!parseNumber(parts[i], d) || d != std::floor(d) || std::fabs(d) > 1e8) {
            error = "selection box: '" + parts[i] + "' is not a whole number";
            return false;
        }
        v[i] = int32_t(d);
    }
    box = {v[0], v[1], v[2], v[3]};
    return true;
}

} // namespace

std::optional<Step> parseStep(const std::string& text, std::string& error) {
    const size_t colon = text.find(':');
    const std::string name = text.substr(0, colon);
    if (name == "EFFECT")
        return parseEffectStep(text, colon == std::string::npos ? "" : text.substr(colon + 1), error);
    if (colon == std::string::npos) {
        if (const FixedCommand* fc = FindFixedCommand(name)) {
            return Step{text, [fc](StepContext& ctx) {
                            // The result replaces the buffer at once.
                            const cBitFilter::ReuseScope reuse(ctx.filter);
                            ctx.setImage(fc->run(ctx.filter));
                        }};
        }
    }
    const StepDef* def = findOperation(name);
    if (!def) {
        error = "unknown step '" + name + "' (see --help)";
        return std::nullopt;
    }
    std::vector<std::string> parts;
    if (colon != std::string::npos) parts = splitCommas(text.substr(colon + 1));
    if (parts.size() != def->args.size()) {
        error = "step " + def->name + " takes " + std::to_string(def->args.size()) +
                " argument(s), got " + std::to_string(parts.size());
        return std::nullopt;
    }
    std::vector<ArgValue> values(parts.size());
    for (size_t i = 0; i < parts.size(); ++i) {
        std::string argError;
        if (!parseArg(def->args[i], parts[i], values[i], argError)) {
            error = "step " + def->name + ", " + argError;
            return std::nullopt;
        }
    }
    return Step{text, [def, values](StepContext& ctx) { def->run(ctx, values); }};
}

std::optional<Region> parseSelection(const std::string& text, std::string& error) {
    const size_t colon = text.find(':');
    const std::string kind = text.substr(0, colon);
    const std::string rest = colon == std::string::npos ? "" : text.substr(colon + 1);
    if (kind == "rect" || kind == "ellipse") {
        Rect box;
        if (!parseBox(rest, box, error)) return std::nullopt;
        return kind == "rect" ? Region::rect(box)
                              : Region::ellipse(box.left, box.top, box.right, box.bottom);
    }
    if (kind == "osf") {
        // The editor's own reader: regular files only, refused when damaged, in time
        // linear in the file's size.
        std::vector<int32_t> data;
        switch (ReadSelectionFile(rest, data)) {
        case SelectionFileRead::CannotRead:
            error = "cannot read selection file '" + rest + "'";
            return std::nullopt;
        case SelectionFileRead::Damaged:
            error = "selection file '" + rest + "' is damaged";
            return std::nullopt;
        case SelectionFileRead::Ok: break;
        }
        return Region::fromData(data);
    }
    error = "unknown selection '" + text + "' (rect:L,T,R,B, ellipse:L,T,R,B or osf:FILE)";
    return std::nullopt;
}

void printHelp(std::ostream& out) {
    out << "Usage: ostrivex-batch INPUT OUTPUT [--select rect:L,T,R,B | --select "
           "ellipse:L,T,R,B | --select osf:FILE] [--seed N] [--key COLOUR] [STEP...]\n\n"
           "Loads INPUT, runs each STEP in order on the whole image or on the selection, and\n"
           "writes OUTPUT; both formats follow the file extensions. With no STEP it converts.\n"
           "Rectangle and ellipse boxes have right and bottom exclusive. Colours are decimal\n"
           "packed 0x00BBGGRR (0x hex also accepted); flags are 0 or -1.\n"
           "--key gives the layer effects (EFFECT, FX.) a colour key: its pixels stay as they\n"
           "are, and no other pixel turns into it.\n"
           "On any error it prints one line to stderr, writes nothing and exits with 2.\n"
           "  ostrivex-batch --contact-sheet SAMPLE OUTPUT.png  draws every layer effect at two\n"
           "values on SAMPLE into one sheet.\n\n"
           "Fixed commands:\n";
    for (const FixedCommand& fc : FixedCommands())
        out << "  " << fc.word << "  = " << fc.call << "\n";
    out << "\nOperations (NAME:arg,arg,...):\n";
    for (const StepDef& s : operationSteps()) {
        out << "  " << s.name;
        for (size_t i = 0; i < s.args.size(); ++i)
            out << (i ? "," : ":") << s.args[i].name;
        out << "\n";
        for (const ArgSpec& a : s.args) out << "      " << a.name << ": " << rangeText(a) << "\n";
        if (!s.note.empty()) out << "      " << s.note << "\n";
    }
    printEffectHelp(out);
}

} // namespace ostrivex::batch

namespace ostrivex::batch {

namespace {

std::string extensionOf(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    const size_t dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
    return path.substr(dot + 1);
}

int fail(std::ostream& err, const std::string& message) {
    err << "ostrivex-batch: " << message << "\n";
    return 2;
}

} // namespace

int runBatch(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    std::vector<std::string> positional;
    std::optional<std::string> selection;
    std::optional<uint32_t> seed;
    int32_t key = -1;
    std::optional<OptimizeOptions> optimize;
    OptimizeOptions optimizeExtras; // --map and the others, which need --optimize
    bool extrasGiven = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--help" || a == "-h") {
            printHelp(out);
            printOptimizeHelp(out);
            return 0;
        }
        if (a == "--contact-sheet") {
            if (i + 2 >= args.size()) return fail(err, "--contact-sheet needs a sample picture and an output file");
            return makeContactSheet(args[i + 1], args[i + 2], err);
        }
        if (a == "--key") {
            if (i + 1 >= args.size()) return fail(err, a + " needs a value");
            const std::string& v = args[++i];
            char* end = nullptr;
            const unsigned long long n = v.size() > 2 && v[0] == '0' && (v[1] == 'x' || v[1] == 'X')
                                             ? std::strtoull(v.c_str() + 2, &end, 16)
                                             : std::strtoull(v.c_str(), &end, 10);
            if (v.empty() || *end || n > 0xFFFFFF || v[0] == '-')
                return fail(err, "--key needs a colour (0 to 16777215, packed 0x00BBGGRR)");
            key = int32_t(n);
            continue;
        }
        if (a == "--interlaced") {
            optimizeExtras.interlaced = extrasGiven = true;
            continue;
        }
        if (a == "--optimize" || a == "--map" || a == "--dither" || a == "--quality") {
            if (i + 1 >= args.size()) return fail(err, a + " needs a value");
            const std::string& v = args[++i];
            if (a == "--optimize") optimize = OptimizeOptions{v, {}, {}, {}, false};
            else if (a == "--map") optimizeExtras.map = v;
            else if (a == "--dither") optimizeExtras.dither = v;
            else optimizeExtras.quality = v;
            extrasGiven |= a != "--optimize";
            continue;
        }
        if (a == "--select" || a == "--seed") {
            if (i + 1 >= args.size()) return fail(err, a + " needs a value");
            const std::string& v = args[++i];
            if (a == "--select") {
                selection = v;
            } else {
                char* end = nullptr;
                errno = 0;
                const unsigned long n = std::strtoul(v.c_str(), &end, 10);
                if (v.empty() || *end || errno || n > 0xFFFFFFFFul || v[0] == '-')
                    return fail(err, "--seed needs a whole number from 0 to 4294967295");
                seed = uint32_t(n);
            }
            continue;
        }
        if (a.size() > 1 && a[0] == '-' && a[1] == '-') return fail(err, "unknown option " + a);
        positional.push_back(a);
    }
    if (positional.size() < 2) return fail(err, "usage: ostrivex-batch INPUT OUTPUT [STEP...] (see --help)");
    std::optional<OptimizeSettings> optimized;
    if (extrasGiven && !optimize) return fail(err, "--map, --dither, --interlaced and --quality need --optimize");
    if (optimize) {
        optimize->map = optimizeExtras.map;
        optimize->dither = optimizeExtras.dither;
        optimize->quality = optimizeExtras.quality;
        optimize->interlaced = optimizeExtras.interlaced;
        std::string error;
        optimized = parseOptimizeOptions(*optimize, positional[1], error);
        if (!optimized) return fail(err, error);
    }

    // Every step is checked before anything is loaded or written.
    std::vector<Step> steps;
    for (size_t i = 2; i < positional.size(); ++i) {
        std::string error;
        std::optional<Step> step = parseStep(positional[i], error);
        if (!step) return fail(err, error);
        steps.push_back(std::move(*step));
    }

    const std::string& input = positional[0];
    const std::string& output = positional[1];
    const std::string inExt = extensionOf(input);
    // The selection is read before the picture: a bad selection file costs no decode.
    std::optional<Region> chosen;
    if (selection) {
        std::string error;
        chosen = parseSelection(*selection, error);
        if (!chosen) return fail(err, error);
    }
    ImageFileResult loaded = LoadDocumentImage(input, inExt);
    if (!loaded.ok) return fail(err, input + ": " + loaded.message);

    cBitFilter filter;
    filter.SetBits(std::move(loaded.pixels));
    const Rect image{0, 0, filter.BitsWidth(), filter.BitsHeight()};
    Region region = Region::rect(image);
    if (chosen) {
        // A selection never reaches past the picture: the filters write only inside it.
        region = chosen->intersected(Region::rect(image));
        if (region.isEmpty())
            return fail(err, "the selection holds no pixel of the picture (" +
                                 std::to_string(image.right) + " x " +
                                 std::to_string(image.bottom) + ")");
    }
    StepContext ctx{filter, region, image, key};
    filter.BitsRegion(&region);
    if (seed) Randomize(*seed);
    else Randomize(steadyMilliseconds());

    for (const Step& step : steps) {
        try {
            step.run(ctx);
        } catch (const std::bad_alloc&) {
            return fail(err, "step " + step.text + ": not enough memory");
        } catch (const std::exception& e) {
            return fail(err, "step " + step.text + ": " + e.what());
        }
    }

    if (optimized) return writeOptimized(filter.bits(), *optimized, output, out, err);
    const ImageFileResult saved = SaveImageFile(filter.bits(), output, extensionOf(output));
    if (!saved.ok) return fail(err, output + ": " + saved.message);
    return 0;
}

} // namespace ostrivex::batch
