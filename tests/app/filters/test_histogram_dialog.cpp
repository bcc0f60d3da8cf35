#include "app/filters/fhistogram.h"

#include "app/filters/dialog_test_main.h"
#include "pixel/pixel_test_util.h"

#include <QCoreApplication>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

using namespace ostrivex;
using ostrivex::test::makeBits;
using ostrivex::testing::hasLabel;

namespace {

// The known image of the table tests, as blue, green, red. Luminosity levels 0, 255, 22,
// 11, 30, 59; blue levels 0 (three times), 255, 10, 100.
Bits sixPixels() {
    return makeBits(
        3, 2, {{0, 0, 0}, {255, 255, 255}, {10, 20, 30}, {100, 0, 0}, {0, 0, 100}, {0, 100, 0}});
}

} // namespace

TEST(HistogramDialog, TextsAndExtraction) {
    fHistogram d(sixPixels());
    EXPECT_EQ(d.windowTitle(), "Histogram");
    EXPECT_EQ(d.optChannel[0]->text(), "Blue");
    EXPECT_EQ(d.optChannel[1]->text(), "Green");
    EXPECT_EQ(d.optChannel[2]->text(), "Red");
    EXPECT_EQ(d.optChannel[3]->text(), "Luminousity");
    for (const char* caption : {"Quantity :", "Pixels :", "Level :", "Average :"})
        EXPECT_TRUE(hasLabel(d.frInfo, caption)) << caption;
    EXPECT_EQ(d.lblPercentV->text(), "0.00%");
    // Before the event loop runs, the plot shows the status text and nothing is counted.
    EXPECT_FALSE(d.extracted());
    EXPECT_EQ(d.picHistogram->status(), " Extracting image information...");
    QCoreApplication::processEvents();
    ASSERT_TRUE(d.extracted());
    EXPECT_EQ(d.picHistogram->status(), "");
    EXPECT_EQ(d.lblPixelsV->text(), "6");
    // Luminosity is shown first: average 377 / 6 = 62.83 -> 63.
    EXPECT_EQ(d.channel(), int(HistogramLuminosity));
    EXPECT_EQ(d.lblAverageV->text(), "63");
    d.optChannel[1]->setChecked(true);
    EXPECT_EQ(d.lblAverageV->text(), "62"); // 375 / 6 = 62.5, ties to even
    d.optChannel[0]->setChecked(true);
    EXPECT_EQ(d.lblAverageV->text(), "61"); // 365 / 6 = 60.83
}

TEST(HistogramDialog, ReadoutsFollowTheMouse) {
    fHistogram d(sixPixels());
    d.Extract();
    d.optChannel[0]->setChecked(true); // blue
    d.show();
    d.picHistogram->setFixedSize(512, 100); // two columns per level
    QCoreApplication::processEvents();
    // Column x is level x \ 2; level 11 has no blue pixel.
    for (auto [x, level, quantity, percent] :
         {std::tuple{1, "0", "3", "50.00%"}, {21, "10", "1", "16.67%"}, {22, "11", "", "0.00%"}}) {
        QTest::mouseMove(d.picHistogram, QPoint(x, 50));
        EXPECT_EQ(d.lblLevelV->text(), level) << x;
        EXPECT_EQ(d.lblQuantityV->text(), quantity) << x;
        EXPECT_EQ(d.lblPercentV->text(), percent) << x;
    }
    // Changing the channel keeps the level and shows its count there: luminosity 11 once.
    d.optChannel[3]->setChecked(true);
    EXPECT_EQ(d.lblQuantityV->text(), "1");
    EXPECT_EQ(d.lblPercentV->text(), "16.67%");
}

TEST(HistogramDialog, OneColourDrawsOneFullBar) {
    Bits img(1500, 1000);
    for (int y = 0; y < 1000; ++y)
        for (int x = 0; x < 1500; ++x)
            img(2, x, y) = 128; // red 128, L = 0.301 * 128 -> 39
    fHistogram d(img);
    d.Extract();
    EXPECT_EQ(d.lblPixelsV->text(), "1,500,000");
    d.optChannel[2]->setChecked(true);
    EXPECT_EQ(d.lblAverageV->text(), "128");
    d.picHistogram->setFixedSize(256, 100);
    const QImage plot = d.picHistogram->grab().toImage();
    ASSERT_EQ(plot.width(), 256);
    // Column 128 is red from top to bottom; its neighbours are empty.
    for (int y : {0, 50, 99}) {
        EXPECT_EQ(plot.pixel(128, y), qRgb(255, 0, 0)) << y;
        EXPECT_EQ(plot.pixel(127, y), qRgb(0, 0, 0)) << y;
        EXPECT_EQ(plot.pixel(129, y), qRgb(0, 0, 0)) << y;
    }
    d.optChannel[3]->setChecked(true);
    const QImage lum = d.picHistogram->grab().toImage();
    EXPECT_EQ(lum.pixel(39, 0), qRgb(255, 255, 255));
    EXPECT_EQ(lum.pixel(128, 0), qRgb(0, 0, 0));
}

TEST(HistogramDialog, BarsScaleToTheLargestCount) {
    // Green: level 0 twice, level 255 once. The bar of 255 starts half way down:
    // top = 100 - 1 * 100 / 2 = 50 percent of a 100 pixel plot.
    fHistogram d(makeBits(3, 1, {{0, 0, 0}, {0, 0, 0}, {0, 255, 0}}));
    d.Extract();
    d.optChannel[1]->setChecked(true);
    d.picHistogram->setFixedSize(256, 100);
    const QImage plot = d.picHistogram->grab().toImage();
    EXPECT_EQ(plot.pixel(0, 0), qRgb(0, 255, 0));
    EXPECT_EQ(plot.pixel(255, 49), qRgb(0, 0, 0));
    EXPECT_EQ(plot.pixel(255, 50), qRgb(0, 255, 0));
    EXPECT_EQ(plot.pixel(255, 99), qRgb(0, 255, 0));
}

OSTRIVEX_DIALOG_TEST_MAIN
