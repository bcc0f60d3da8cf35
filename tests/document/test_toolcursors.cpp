// The tools' drawn cursors: each a 32 x 32 picture whose hot spot sits on a painted pixel
// at the point where the tool works, and no two alike.
#include "document/toolcursors.h"

#include <QImage>
#include <QPixmap>

#include <gtest/gtest.h>

using namespace ostrivex;

TEST(ToolCursors, DrawnPicturesWithTheirHotSpots) {
    struct Case {
        const char* name;
        QPoint hot;
    };
    // The brush, pencil and picker work at their tip in the bottom left corner; the fill at
    // the end of its drop; the air brush in its cloud; the stamp under its foot's middle;
    // the gradient at its cross; the hands at the palm.
    const Case cases[] = {{"cBrush", {2, 29}},    {"cPencil", {2, 29}},  {"cPicker", {2, 29}},
                          {"cFill", {4, 29}},     {"cAirBrush", {7, 8}}, {"cTextures", {15, 28}},
                          {"cGradient", {15, 15}}, {"cGrab", {15, 17}},  {"cRelease", {15, 17}}};
    std::vector<QImage> seen;
    for (const Case& c : cases) {
        const QCursor cursor = ToolCursor(c.name);
        EXPECT_EQ(cursor.shape(), Qt::BitmapCursor) << c.name;
        const QImage img = cursor.pixmap().toImage();
        ASSERT_EQ(img.size(), QSize(32, 32)) << c.name;
        EXPECT_EQ(cursor.hotSpot(), c.hot) << c.name;
        EXPECT_EQ(qAlpha(img.pixel(c.hot)), 255) << c.name;
        // Transparent round the picture: the corner that no tool drawing reaches.
        EXPECT_EQ(qAlpha(img.pixel(31, 31)), 0) << c.name;
        for (const QImage& other : seen)
            EXPECT_NE(img, other) << c.name;
        seen.push_back(img);
    }
    // The tip of the drawing tools is black, so the point shows on light pixels.
    EXPECT_EQ(ToolCursor("cBrush").pixmap().toImage().pixel(2, 29), qRgb(0, 0, 0));
    // Made once: the same picture each time.
    EXPECT_EQ(ToolCursor("cFill").pixmap().cacheKey(), ToolCursor("cFill").pixmap().cacheKey());
    // The names that are not drawn are the platform's shapes.
    EXPECT_EQ(ToolCursor("cMove").shape(), Qt::SizeAllCursor);
    EXPECT_EQ(ToolCursor("cross").shape(), Qt::CrossCursor);
}
