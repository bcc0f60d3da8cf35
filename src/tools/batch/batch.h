// ostrivex-batch: runs the editor's pixel commands on image files without a window.
//
//   ostrivex-batch INPUT OUTPUT [--select rect:L,T,R,B | --select ellipse:L,T,R,B |
//                  --select osf:FILE] [--seed N] [--optimize PRESET [--map NAME]
//                  [--dither NAME] [--interlaced] [--quality N]] [STEP...]
//
// INPUT is loaded and OUTPUT written by the editor's own file code, by extension. Each
// STEP runs in order on the whole image or on the selection, as successive menu commands
// would: the result of one step is the input of the next. A STEP is a command word of the
// fixed-command table (INVERT, LIGHTBLUR ...) or an operation with its arguments after a
// colon, comma separated (BRIGHTNESS:40, COLORIZE:0.5,0.25,1, BitsResample:320,200).
// With --optimize, OUTPUT is written by the web optimizer in that preset of the Optimize
// Box (or of the web export) and its exact size is printed.
#pragma once

#include "pixel/bitfilter.h"
#include "pixel/region.h"
#include "web/optimizesettings.h"

#include <functional>
#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace ostrivex::batch {

// One argument of an operation: its name, kind and the range the editor's dialogs allow.
struct ArgSpec {
    enum class Kind { Int, Float, Bool, Colour, Word, Path, Text };
    std::string name;
    Kind kind = Kind::Int;
    double min = 0;
    double max = 0;
    std::vector<std::string> words; // the accepted words of a Word argument
};

// A parsed argument value (colours and flags are carried as integers: -1 is true).
struct ArgValue {
    double number = 0;
    std::string word;
    int32_t asInt() const { return int32_t(number); }
    float asFloat() const { return float(number); }
    bool asBool() const { return number != 0; }
    uint32_t asColour() const { return uint32_t(int64_t(number)); }
};

// Where a step runs: the filter object (loaded with the image and the region) and the
// selection, which a step that changes the image size resets to the whole image.
struct StepContext {
    cBitFilter& filter;
    Region& region;
    Rect imageRect; // the size the selection was made for
    int32_t key = -1; // the colour key of the layer effects (--key), -1 for none
    // Sets a new image (keeps the selection when the size is unchanged).
    void setImage(Bits&& bits);
    // After an operation that replaced the object's buffer itself: a new canvas size drops
    // the selection, as it does in the editor.
    void bufferReplaced();
};

// An operation the tool can run: name as the editor spells it, its arguments, and the call.
struct StepDef {
    std::string name;
    std::vector<ArgSpec> args;
    std::string note; // one line shown by --help
    std::function<void(StepContext&, const std::vector<ArgValue>&)> run;
};

// Every operation step, each family registering its own (see batch_steps_*.cpp).
const std::vector<StepDef>& operationSteps();
void addSteps(std::vector<StepDef>& out, std::vector<StepDef>&& more);

// Thrown by a step that cannot run (an argument file that does not load).
struct StepError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A step ready to run.
struct Step {
    std::string text;
    std::function<void(StepContext&)> run;
};

// Parses one STEP; on failure returns nullopt and sets the error line.
std::optional<Step> parseStep(const std::string& text, std::string& error);
// Parses a --select value for an image of w x h; nullopt and an error line on failure.
std::optional<Region> parseSelection(const std::string& text, std::string& error);

// The whole run, as main() does it; returns the exit code (0, or 2 after writing one
// error line to err). Nothing is written on any failure.
int runBatch(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// The --help text: usage, then every fixed command and every operation with its arguments.
void printHelp(std::ostream& out);

// The layer effects (batch_effects.cpp): the FX.NAME operations, the EFFECT step (its
// arguments after the colon), and their part of the help.
std::vector<StepDef> effectSteps();
std::optional<Step> parseEffectStep(const std::string& text, const std::string& args,
                                    std::string& error);
void printEffectHelp(std::ostream& out);

// Draws every effect node at two values on the sample picture into one labelled sheet
// (batch_sheet.cpp); returns the exit code like runBatch.
int makeContactSheet(const std::string& sample, const std::string& output, std::ostream& err);
// --optimize and its companions as given on the command line.
struct OptimizeOptions {
    std::string preset;
    std::optional<std::string> map, dither, quality;
    bool interlaced = false;
};
// The optimizer settings they stand for, checked against the OUTPUT name; nullopt and an
// error line when they do not fit.
std::optional<OptimizeSettings> parseOptimizeOptions(const OptimizeOptions& options,
                                                     const std::string& output, std::string& error);
// Writes picture to output with the optimizer and prints the box's "Format: " and
// "Size: " lines; returns the exit code.
int writeOptimized(const Bits& picture, const OptimizeSettings& settings, const std::string& output,
                   std::ostream& out, std::ostream& err);
void printOptimizeHelp(std::ostream& out);

} // namespace ostrivex::batch
