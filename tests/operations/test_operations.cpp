// The operations' table as the dialog and the batch tool read it: each filter dialog row runs
// its operation with the same values the batch step of that operation takes, so the two
// agree in order, units and ranges; a centred parameter counts from its middle; the batch
// refuses a value outside the table's range.
#include "operations/filter_table.h"
#include "operations/operations.h"
#include "tools/batch/batch.h"

#include "pixel/random.h"
#include "pixel_test_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace ostrivex {
namespace {

// A value of slider i in the user's units: 40, 60 or 80 % up its range, away from the
// defaults (which often leave the picture as it is) and different for each slider, so that
// two sliders of one range given in the wrong order differ.
double probe(const OperationParam& p, size_t i) {
    return std::round(p.minimum + (p.maximum - p.minimum) * double(2 + i) / 5.0);
}

std::string number(double v) {
    if (v == std::floor(v)) return std::to_string(int64_t(v));
    std::ostringstream s;
    s.precision(17);
    s << v;
    return s.str();
}

TEST(Operations, EachDialogRowRunsItsOperationAsTheBatchStepDoes) {
    const Bits picture = test::patternBits(23, 17, 5);
    int compared = 0;
    for (const FilterRow& row : FilterTable()) {
        if (row.frame != FilterFrame::None) continue; // banks and styles are not parameters
        SCOPED_TRACE(row.title);
        const Operation* op = FindOperation(row.operation);
        ASSERT_NE(op, nullptr);
        // The dialog's values: its sliders part way up, its option and wells as it opens.
        FilterValues v;
        v.option = row.optionDefault;
        v.colours = {0xFFFFFF, 0};
        std::vector<double> args;
        for (const OperationParam& p : op->params) args.push_back(p.defaultValue - p.Offset());
        for (size_t i = 0; i < row.sliders.size(); ++i) {
            const OperationParam* p = row.sliders[i].param;
            ASSERT_NE(p, nullptr);
            const double value = probe(*p, i) - p->Offset();
            v.s[i] = int32_t(value);
            args[size_t(p - op->params.data())] = value;
        }
        std::string text = op->name;
        for (size_t i = 0; i < args.size(); ++i) text += (i ? "," : ":") + number(args[i]);

        cBitFilter dialog;
        dialog.SetBits(picture);
        Randomize(3);
        const Bits fromDialog = row.run(dialog, v);

        std::string error;
        const auto step = batch::parseStep(text, error);
        ASSERT_TRUE(step) << text << ": " << error;
        cBitFilter tool;
        tool.SetBits(picture);
        Region region;
        batch::StepContext ctx{tool, region, Rect{}};
        ctx.bufferReplaced();
        Randomize(3);
        step->run(ctx);
        EXPECT_TRUE(test::sameBits(fromDialog, tool.bits())) << text;
        ++compared;
    }
    EXPECT_EQ(compared, kFilterCount - 3);
}

TEST(Operations, ACentredParameterCountsFromItsMiddleAndTheBatchHoldsItsRange) {
    const OperationParam& gamma = OperationParameter("GammaCorrection", "gamma");
    EXPECT_EQ(gamma.ValueMinimum(), -100);
    EXPECT_EQ(gamma.ValueMaximum(), 100);
    const FilterRow& row = *FindFilterRow(4);
    EXPECT_EQ(row.sliders[0].minimum, 0);
    EXPECT_EQ(row.sliders[0].maximum, 200);
    EXPECT_TRUE(row.sliders[0].centred);

    std::string error;
    EXPECT_TRUE(batch::parseStep("GammaCorrection:-100", error));
    EXPECT_FALSE(batch::parseStep("GammaCorrection:101", error));
    EXPECT_EQ(error, "step GammaCorrection, argument gamma: 101 is not a whole number from -100 to 100");
    // Every operation of the table is a batch step, with its parameters as its arguments.
    for (const Operation& op : Operations()) {
        const auto& steps = batch::operationSteps();
        const auto s = std::find_if(steps.begin(), steps.end(),
                                    [&](const batch::StepDef& d) { return d.name == op.name; });
        ASSERT_NE(s, steps.end()) << op.name;
        ASSERT_EQ(s->args.size(), op.params.size()) << op.name;
    }
}

TEST(Operations, ThumbnailExtensionIsAFractionOfTheThumbnailsLongerSide) {
    // 640 x 480 has a thumbnail of 147 x 110; 40 x 220 one of 20 x 110; a small picture is
    // its own thumbnail.
    EXPECT_FLOAT_EQ(ThumbnailExtension(49, 640, 480), 49.0f / 147.0f);
    EXPECT_FLOAT_EQ(ThumbnailExtension(11, 40, 220), 0.1f);
    EXPECT_FLOAT_EQ(ThumbnailExtension(10, 20, 8), 0.5f);
    EXPECT_FLOAT_EQ(ThumbnailExtension(10, 0, 8), 0.0f);
}

} // namespace
} // namespace ostrivex
