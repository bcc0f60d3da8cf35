// The tools on the canvas: mouse and key events sent to the canvas of an offscreen
// document, and the pixels, selection, undo steps and readouts they leave.
#include "document/fimage.h"

#include "app/settings/settings.h"
#include "document/doc_test_util.h"
#include "document/fake_host.h"
#include "document/paint/paint.h"
#include "document/paint/paint_test_util.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <gtest/gtest.h>

#include <initializer_list>

namespace ostrivex {
namespace {

using test::FakeHost;
using test::numbered;
using test::px;
using test::solidBits;

// Records the colours the picker reports.
class PickHost : public FakeHost {
public:
    std::vector<int32_t> picked;
    void ColorPicked(int32_t colour) override { picked.push_back(colour); }
};

// Each test's host; it records the colours the picker reports as well.
class ToolTest : public ::testing::Test {
protected:
    PickHost host;
};
using ToolCells = ToolTest;
using PaintTools = ToolTest;
using SelectTool = ToolTest;
using SelectionMoveTool = ToolTest;
using PasteTool = ToolTest;
using ToolKeys = ToolTest;
using ToolScroll = ToolTest;

using Rows = std::vector<std::string>;
using Rects = std::vector<Rect>;

// Row strings of one channel, each pixel's value mapped to a character by `mark`.
template <class Mark> Rows rows(const Bits& b, int channel, Mark mark) {
    Rows out;
    for (int y = 0; y < b.height(); ++y) {
        std::string r;
        for (int x = 0; x < b.width(); ++x) r += mark(int(b(channel, x, y)));
        out.push_back(r);
    }
    return out;
}
// '#' for 255, '.' for 0, '+' for anything between.
Rows shape(const Bits& b, int channel = 0) {
    return rows(b, channel, [](int v) { return v == 255 ? '#' : v == 0 ? '.' : '+'; });
}
// '#' for any ink, '.' for none.
Rows ink(const Bits& b) { return rows(b, 0, [](int v) { return v ? '#' : '.'; }); }
// The rectangles of the document's selection.
Rects selected(fImage* doc) { return doc->Region().Region()->rects(); }

// A document of the pixels at the zoom, made active (so cFilter holds its pixels, the
// stroke base), with its first undo state saved. The panel is larger than the picture.
fImage* makeDocument(FakeHost& host, Bits pixels, int zoom = 1) {
    fImage* doc = test::makeDocument(host, std::move(pixels), 200, 200);
    doc->SetZoomFactor(zoom);
    doc->Form_Activate();
    return doc;
}

void useTool(const char* word) {
    SetDefaultSettings(Settings, "/nowhere");
    SetFieldText(Settings.ActiveTool, word);
    Settings.ColorPrimary = 0xFFFFFF;
}

// Mouse events at canvas positions.
void mouse(fImage* doc, QEvent::Type type, QPoint pos, Qt::MouseButton button,
           Qt::MouseButtons buttons) {
    QWidget* canvas = doc->Canvas();
    QMouseEvent e(type, QPointF(pos), canvas->mapToGlobal(QPointF(pos)), button, buttons,
                  Qt::NoModifier);
    QCoreApplication::sendEvent(canvas, &e);
}
void hover(fImage* doc, QPoint pos) { mouse(doc, QEvent::MouseMove, pos, Qt::NoButton, Qt::NoButton); }
void press(fImage* doc, QPoint pos, Qt::MouseButton b = Qt::LeftButton) {
    mouse(doc, QEvent::MouseButtonPress, pos, b, b);
}
void drag(fImage* doc, QPoint pos) {
    mouse(doc, QEvent::MouseMove, pos, Qt::NoButton, Qt::LeftButton);
}
void release(fImage* doc, QPoint pos, Qt::MouseButton b = Qt::LeftButton) {
    mouse(doc, QEvent::MouseButtonRelease, pos, b, Qt::NoButton);
}
// The mouse comes to the point and the left button goes down there.
void pressAt(fImage* doc, QPoint pos) {
    hover(doc, pos);
    press(doc, pos);
}
// A stroke of the left button: the mouse comes to the first point and is pressed there,
// is dragged through the others in turn, and is released at the last.
void stroke(fImage* doc, std::initializer_list<QPoint> points) {
    pressAt(doc, *points.begin());
    for (auto p = points.begin() + 1; p != points.end(); ++p)
        drag(doc, *p);
    release(doc, *(points.end() - 1));
}
// A left click: a stroke of one point.
void click(fImage* doc, QPoint pos) {
    stroke(doc, {pos});
}
void key(fImage* doc, int k) {
    QKeyEvent down(QEvent::KeyPress, k, Qt::NoModifier);
    QCoreApplication::sendEvent(doc->Canvas(), &down);
    QKeyEvent up(QEvent::KeyRelease, k, Qt::NoModifier);
    QCoreApplication::sendEvent(doc->Canvas(), &up);
}

// --- Cells ------------------------------------------------------------------------------

TEST_F(ToolCells, CanvasPositionsBecomeImageCellsByTheZoom) {
    useTool("GetColor");
    fImage* doc = makeDocument(host, numbered(6, 6), 3);
    EXPECT_EQ(doc->CellAt(QPointF(0, 0)), (fImage::ToolPoint{0, 0}));
    EXPECT_EQ(doc->CellAt(QPointF(2.4, 5.0)), (fImage::ToolPoint{0, 1}));
    EXPECT_EQ(doc->CellAt(QPointF(2.6, 8.6)), (fImage::ToolPoint{1, 3})); // rounded first
    EXPECT_EQ(doc->CellAt(QPointF(40, 40)), (fImage::ToolPoint{13, 13})); // not clipped
    // A move shows the cell and its pixel: (2, 1) has blue 22, green 2, red 3.
    hover(doc, QPoint(7, 4));
    EXPECT_EQ(host.panels["Position"], "2, 1");
    EXPECT_EQ(host.panels["Color"], "R 3  G 2  B 22  #030216");
    // Moves inside the cell do nothing; the next cell shows again.
    host.panels["Position"] = "";
    hover(doc, QPoint(8, 5));
    EXPECT_EQ(host.panels["Position"], "");
    hover(doc, QPoint(9, 5));
    EXPECT_EQ(host.panels["Position"], "3, 1");
}

TEST_F(ToolCells, MovesInsideOneZoomedCellPaintNothing) {
    useTool("Airbrush");
    // Size 3 (radius 2), pressure 50, every pixel hit, no falloff at the centre: each pass
    // takes the centre half way to white.
    Settings.AirbrushSize = 3;
    Settings.AirbrushPressure = 50;
    Settings.AirbrushQuantity = 100;
    Settings.AirbrushDefinition = 100;
    fImage* doc = makeDocument(host, solidBits(6, 6, 0, 0, 0), 3);
    hover(doc, QPoint(6, 6)); // cell (2, 2)
    press(doc, QPoint(7, 7)); // the press sprays once at (2, 2): 127.5 -> 128
    EXPECT_EQ(doc->bits()(0, 2, 2), 128);
    drag(doc, QPoint(8, 8));
    drag(doc, QPoint(6, 8));
    drag(doc, QPoint(7, 6));
    EXPECT_EQ(doc->bits()(0, 2, 2), 128);
    EXPECT_EQ(doc->bits()(0, 5, 2), 0);
    // Cell (3, 2): (2, 2) is one from the new centre and takes a second pass, 191.5 ->
    // 192; (5, 2), three from the first centre, its first.
    drag(doc, QPoint(9, 7));
    EXPECT_EQ(doc->bits()(0, 2, 2), 192);
    EXPECT_EQ(doc->bits()(0, 5, 2), 128);
    release(doc, QPoint(9, 7));
}

// --- Painting tools ---------------------------------------------------------------------

TEST_F(PaintTools, PencilClickIsOnePixelAndAStrokeJoinsItsPoints) {
    useTool("Pencil");
    fImage* doc = makeDocument(host, solidBits(6, 4, 0, 0, 0));
    // A click: a line from the point to itself, two samples at (2.001, 2.001) whose
    // coverage of (2, 2) is 254 of 255: 254, then 254 + 0.996 -> 255. Its neighbours get
    // a coverage that rounds to 0.
    click(doc, QPoint(2, 2));
    EXPECT_EQ(shape(doc->bits()), (Rows{"......", "......", "..#...", "......"}));
    EXPECT_EQ(px(doc->bits(), 2, 2), (std::vector<int>{255, 255, 255}));
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(doc->History().ActionNames[1], "Pencil");

    // A stroke is the lines from each seen point to the next one.
    fImage* other = makeDocument(host, solidBits(6, 4, 0, 0, 0));
    stroke(other, {QPoint(0, 0), QPoint(4, 0), QPoint(4, 3)});
    Bits expected = solidBits(6, 4, 0, 0, 0);
    DoneBits done;
    const Region all = Region::rect(0, 0, 6, 4);
    BitsLine(expected, all, done, 0, 0, 0, 0, 0xFFFFFF, 100);
    BitsLine(expected, all, done, 0, 0, 4, 0, 0xFFFFFF, 100);
    BitsLine(expected, all, done, 4, 0, 4, 3, 0xFFFFFF, 100);
    EXPECT_EQ(other->bits(), expected);
    EXPECT_NE(other->bits()(0, 2, 0), 0); // on the first line
    EXPECT_EQ(other->bits()(0, 2, 2), 0);   // off both
}

TEST_F(PaintTools, BrushStrokeIsOneUndoStepNamedBrush) {
    useTool("Brush");
    Settings.BrushMode = 0;
    Settings.BrushSize = 1; // radius Round(0.5) = 0: one pixel
    Settings.BrushPressure = 100;
    Settings.BrushContinuous = kTrue16;
    Settings.ColorPrimary = 0x0000FF; // red
    fImage* doc = makeDocument(host, solidBits(6, 3, 0, 0, 0));
    stroke(doc, {QPoint(1, 1), QPoint(3, 1), QPoint(4, 1)});
    // Stamps every 0.1 pixel from (1, 1) to (3, 1), then on to (4, 1).
    EXPECT_EQ(shape(doc->bits(), 2), (Rows{"......", ".####.", "......"}));
    EXPECT_EQ(px(doc->bits(), 2, 1), (std::vector<int>{0, 0, 255}));
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(doc->HistoryTop(), 2);
    EXPECT_EQ(doc->History().ActionNames[1], "Brush");
    EXPECT_EQ(host.ActionLabel, "Brush");
    EXPECT_TRUE(doc->Model().Changed);
    EXPECT_FALSE(doc->Stroke().MouseIsDown);
    // The stroke base is the image as it now stands.
    EXPECT_EQ(host.filter.bits(), doc->bits());
    // Undo brings the black image back.
    doc->Model().Undo();
    EXPECT_EQ(doc->bits(), solidBits(6, 3, 0, 0, 0));
}

TEST_F(PaintTools, BrushKindSixPaintsTheTextureFixedToTheImage) {
    useTool("Brush");
    Settings.BrushMode = 6;
    Settings.BrushSize = 1;
    Settings.BrushPressure = 100;
    Settings.BrushContinuous = kTrue16;
    fImage* doc = makeDocument(host, solidBits(5, 3, 50, 50, 50));
    // Without a texture the brush paints nothing.
    click(doc, QPoint(1, 1));
    EXPECT_EQ(doc->bits(), solidBits(5, 3, 50, 50, 50));
    // A 2 x 2 texture of blue 200 tiles with a period of 3 (its guard column, black, is
    // part of the tile): image columns 1 and 3 take blue 200, column 2 the guard's black.
    host.TextureBits = solidBits(2, 2, 200, 0, 0);
    hover(doc, QPoint(0, 0));
    stroke(doc, {QPoint(1, 1), QPoint(3, 1)});
    EXPECT_EQ(px(doc->bits(), 0, 1), (std::vector<int>{50, 50, 50}));
    EXPECT_EQ(px(doc->bits(), 1, 1), (std::vector<int>{200, 0, 0}));
    EXPECT_EQ(px(doc->bits(), 2, 1), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(px(doc->bits(), 3, 1), (std::vector<int>{200, 0, 0}));
    EXPECT_EQ(px(doc->bits(), 4, 1), (std::vector<int>{50, 50, 50}));
    EXPECT_EQ(px(doc->bits(), 1, 0), (std::vector<int>{50, 50, 50}));
}

TEST_F(PaintTools, ShapeLineRestoresAtEachMoveButFreeHandKeepsAll) {
    useTool("Shape");
    Settings.ShapeKind = 0;
    Settings.ShapePressure = 100;
    fImage* line = makeDocument(host, solidBits(5, 5, 0, 0, 0));
    pressAt(line, QPoint(0, 0));
    drag(line, QPoint(4, 0));
    EXPECT_NE(line->bits()(0, 2, 0), 0);
    drag(line, QPoint(0, 4));
    release(line, QPoint(0, 4));
    // Only the last line, from the press to (0, 4), stays.
    EXPECT_EQ(line->bits()(0, 2, 0), 0);
    EXPECT_EQ(line->bits()(0, 4, 0), 0);
    EXPECT_NE(line->bits()(0, 0, 2), 0);
    Bits expected = solidBits(5, 5, 0, 0, 0);
    DoneBits done;
    BitsLine(expected, Region::rect(0, 0, 5, 5), done, 0, 0, 0, 4, 0xFFFFFF, 100);
    EXPECT_EQ(line->bits(), expected);
    EXPECT_EQ(line->History().ActionNames[1], "Shape");

    Settings.ShapeKind = 1;
    fImage* free = makeDocument(host, solidBits(5, 5, 0, 0, 0));
    stroke(free, {QPoint(0, 0), QPoint(4, 0), QPoint(4, 4)});
    // Both segments stay: the top row and the right column, not the diagonal.
    EXPECT_NE(free->bits()(0, 2, 0), 0);
    EXPECT_NE(free->bits()(0, 4, 2), 0);
    EXPECT_EQ(free->bits()(0, 2, 2), 0);
    EXPECT_EQ(free->bits()(0, 0, 2), 0);
}

TEST_F(PaintTools, ShapeRectangleGoesFromThePressToTheMouse) {
    useTool("Shape");
    Settings.ShapeKind = 3;
    Settings.ShapePressure = 100;
    fImage* doc = makeDocument(host, solidBits(6, 5, 0, 0, 0));
    stroke(doc, {QPoint(1, 1), QPoint(5, 4), QPoint(3, 3)});
    // A 3 x 3 outline (anti-aliased: some ink, not all full); the larger one of the first
    // move is gone.
    EXPECT_EQ(ink(doc->bits()), (Rows{"......", ".###..", ".#.#..", ".###..", "......"}));
}

TEST_F(PaintTools, FillWorksAtTheRelease) {
    useTool("Fill");
    Settings.FillMode = 0;
    Settings.FillTolerance = 25;
    Settings.FillPressure = 100;
    Settings.ColorPrimary = 0x0000FF; // red
    Bits wall = solidBits(4, 3, 0, 0, 0);
    for (int y = 0; y < 3; ++y) wall(0, 2, y) = wall(1, 2, y) = wall(2, 2, y) = 255;
    fImage* doc = makeDocument(host, wall);
    pressAt(doc, QPoint(0, 1));
    EXPECT_EQ(doc->bits(), wall); // nothing before the release
    release(doc, QPoint(0, 1));
    // The black left of the white column turns red; the column and the right stay.
    EXPECT_EQ(shape(doc->bits(), 0), (Rows{"..#.", "..#.", "..#."}));
    EXPECT_EQ(shape(doc->bits(), 1), (Rows{"..#.", "..#.", "..#."}));
    EXPECT_EQ(shape(doc->bits(), 2), (Rows{"###.", "###.", "###."}));
    EXPECT_EQ(doc->History().ActionNames[1], "Fill");
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(host.filter.bits(), doc->bits());
}

TEST_F(PaintTools, FillOnlyInsideTheSelection) {
    useTool("Fill");
    Settings.FillPressure = 100;
    Settings.ColorPrimary = 0xFFFFFF;
    fImage* doc = makeDocument(host, solidBits(4, 2, 0, 0, 0));
    doc->Region().CreateRect(1, 0, 3, 2, cBitRegion::ModeUnion, true);
    doc->SelectionChanged();
    click(doc, QPoint(1, 0));
    EXPECT_EQ(shape(doc->bits()), (Rows{".##.", ".##."}));
}

TEST_F(PaintTools, GetColorReportsThePixelUnderTheMouse) {
    useTool("GetColor");
    fImage* doc = makeDocument(host, numbered(5, 4));
    hover(doc, QPoint(2, 1));
    EXPECT_TRUE(host.picked.empty()); // no button, no pick
    press(doc, QPoint(2, 1));
    // (2, 1): red 3, green 2, blue 22 as 0x00BBGGRR.
    ASSERT_EQ(host.picked.size(), 1u);
    EXPECT_EQ(host.picked[0], 0x160203);
    drag(doc, QPoint(4, 3)); // blue 44 = 0x2C
    ASSERT_EQ(host.picked.size(), 2u);
    EXPECT_EQ(host.picked[1], 0x2C0203);
    drag(doc, QPoint(9, 3)); // outside the image: 0
    EXPECT_EQ(host.picked.back(), 0);
    release(doc, QPoint(9, 3));
    EXPECT_EQ(doc->HistoryPosition(), 1); // picking is no change
    EXPECT_EQ(doc->bits(), numbered(5, 4));
}

TEST_F(PaintTools, GradientDragLaysTheGradientAtTheRelease) {
    useTool("Gradient");
    Settings.ColorPrimary = 0x000000;
    Settings.GradientMode = 0;
    Settings.GradientColor1 = -1; // the foreground colour: black
    Settings.GradientColor2 = 0xFFFFFF;
    Settings.GradientPressure = 100;
    Settings.GradientFrequency = 1;
    fImage* doc = makeDocument(host, solidBits(5, 2, 100, 100, 100), 2);
    pressAt(doc, QPoint(0, 0));
    drag(doc, QPoint(8, 1)); // cell (4, 0)
    // The rubber line from the press to the mouse at zoom 2.
    ASSERT_EQ(doc->Rubber().lines.size(), 1u);
    EXPECT_TRUE(doc->Rubber().lineVisible[0]);
    EXPECT_EQ(doc->Rubber().lines[0], QLine(0, 0, 8, 0));
    EXPECT_EQ(doc->bits(), solidBits(5, 2, 100, 100, 100)); // nothing painted yet
    release(doc, QPoint(8, 1));
    EXPECT_FALSE(doc->Rubber().lineVisible[0]);
    for (int y = 0; y < 2; ++y) {
        EXPECT_EQ(doc->bits()(0, 0, y), 0);
        EXPECT_EQ(doc->bits()(1, 1, y), 64);
        EXPECT_EQ(doc->bits()(2, 2, y), 128);
        EXPECT_EQ(doc->bits()(0, 3, y), 191);
        EXPECT_EQ(doc->bits()(0, 4, y), 255);
    }
    EXPECT_EQ(doc->History().ActionNames[1], "Gradient");
    EXPECT_EQ(host.filter.bits(), doc->bits());
}

TEST_F(PaintTools, StampPaintsTheStampAtTheMouseWithItsColourKey) {
    useTool("Stamp");
    Settings.StampMask = kFalse16;
    Settings.StampUseMaskColor = kTrue16;
    Settings.StampMaskColor = 0x646464; // grey 100 pixels of the stamp are not painted
    Settings.StampPressure = 100;
    Settings.StampClearBack = kFalse16;
    // A 2 x 2 stamp: white on top, black bottom left, grey 100 (the key) bottom right.
    host.StampBits = solidBits(2, 2, 255, 255, 255);
    host.StampBits(0, 0, 1) = host.StampBits(1, 0, 1) = host.StampBits(2, 0, 1) = 0;
    host.StampBits(0, 1, 1) = host.StampBits(1, 1, 1) = host.StampBits(2, 1, 1) = 100;
    // Rows of the picture: '#' white, 'o' black, '.' the grey 20 it started as.
    auto stamped = [](const Bits& b) {
        return rows(b, 0, [](int v) {
            return v == 255 ? '#' : v == 0 ? 'o' : v == 20 ? '.' : '?';
        });
    };
    const Bits base = solidBits(6, 4, 20, 20, 20);
    fImage* doc = makeDocument(host, base);
    // Hot spot: half the size plus one, (2, 2): the stamp's top left is at (1, 1).
    pressAt(doc, QPoint(3, 3));
    EXPECT_EQ(doc->Stroke().HotSpot, (fImage::ToolPoint{2, 2}));
    EXPECT_EQ(stamped(doc->bits()), (Rows{"......", ".##...", ".o....", "......"}));
    drag(doc, QPoint(5, 3)); // stamps again at (3, 1); the first stays
    release(doc, QPoint(5, 3));
    EXPECT_EQ(stamped(doc->bits()), (Rows{"......", ".####.", ".o.o..", "......"}));
    EXPECT_EQ(doc->History().ActionNames[1], "Stamp");
    EXPECT_EQ(doc->HistoryPosition(), 2);

    // Live: the track is cleared at each move, only the last stamp stays.
    Settings.StampClearBack = kTrue16;
    fImage* live = makeDocument(host, base);
    stroke(live, {QPoint(3, 3), QPoint(5, 3)});
    EXPECT_EQ(stamped(live->bits()), (Rows{"......", "...##.", "...o..", "......"}));
}

TEST_F(PaintTools, RadialGradientShowsACircleAndPaintsRings) {
    useTool("Gradient");
    Settings.GradientMode = 1;
    Settings.GradientColor1 = 0x000000;
    Settings.GradientColor2 = 0xFFFFFF;
    Settings.GradientPressure = 100;
    Settings.GradientFrequency = 1;
    fImage* doc = makeDocument(host, solidBits(5, 5, 100, 100, 100));
    pressAt(doc, QPoint(2, 2));
    drag(doc, QPoint(4, 3)); // radius Round(sqrt 5) = 2 for the rubber circle
    EXPECT_TRUE(doc->Rubber().ellipseVisible);
    EXPECT_EQ(doc->Rubber().ellipse, QRect(QPoint(0, 0), QPoint(3, 3)));
    release(doc, QPoint(4, 3));
    EXPECT_FALSE(doc->Rubber().ellipseVisible);
    // Distance over sqrt 5: (3, 2) 0.447 -> 114.04, (4, 2) 0.894 -> 228.07, (4, 3) 1.
    EXPECT_EQ(doc->bits()(0, 2, 2), 0);
    EXPECT_EQ(doc->bits()(0, 3, 2), 114);
    EXPECT_EQ(doc->bits()(0, 4, 2), 228);
    EXPECT_EQ(doc->bits()(0, 4, 3), 255);
    EXPECT_EQ(doc->bits()(0, 0, 0), 255);
}

// --- Selection ----------------------------------------------------------------------------

TEST_F(SelectTool, NewRectangleByDragReplacesTheSelection) {
    useTool("Select");
    Settings.SelectMode = 2;
    Settings.SelectShape = 0;
    fImage* doc = makeDocument(host, solidBits(8, 6, 0, 0, 0));
    doc->Region().CreateRect(5, 4, 7, 6, cBitRegion::ModeUnion, true);
    pressAt(doc, QPoint(4, 3));
    // The press of a new selection clears the old one.
    EXPECT_TRUE(doc->Region().IsEmptyRegion());
    drag(doc, QPoint(1, 1));
    // The rubber rectangle is ordered: (1, 1) to (4, 3), right and bottom exclusive.
    EXPECT_TRUE(doc->Rubber().rectVisible);
    EXPECT_EQ(doc->Rubber().rect, QRect(1, 1, 3, 2));
    EXPECT_EQ(host.panels["Position"], "1, 1  3 x 2");
    release(doc, QPoint(1, 1));
    EXPECT_FALSE(doc->Rubber().rectVisible);
    EXPECT_EQ(doc->Region().GetData(), (std::vector<int32_t>{32, 1, 1, 16, 1, 1, 4, 3, 1, 1, 4, 3}));
    EXPECT_EQ(host.filter.region(), &doc->EffectiveRegion());
    EXPECT_TRUE(doc->SelectionTimerActive());
    EXPECT_EQ(doc->HistoryPosition(), 1); // a selection is no undo state

    // Add unites, subtract takes away, both cut to the image.
    Settings.SelectMode = 0;
    pressAt(doc, QPoint(6, 4));
    release(doc, QPoint(9, 8));
    EXPECT_EQ(selected(doc), (Rects{{1, 1, 4, 3}, {6, 4, 8, 6}}));
    Settings.SelectMode = 1;
    press(doc, QPoint(2, 0));
    release(doc, QPoint(3, 6));
    EXPECT_EQ(selected(doc), (Rects{{1, 1, 2, 3}, {3, 1, 4, 3}, {6, 4, 8, 6}}));
}

TEST_F(SelectTool, EllipseBoxTakesTheGreaterEdgePlusOne) {
    useTool("Select");
    Settings.SelectMode = 2;
    Settings.SelectShape = 1;
    fImage* doc = makeDocument(host, solidBits(8, 8, 0, 0, 0));
    pressAt(doc, QPoint(3, 3));
    drag(doc, QPoint(1, 1));
    EXPECT_TRUE(doc->Rubber().ellipseVisible);
    release(doc, QPoint(1, 1));
    EXPECT_FALSE(doc->Rubber().ellipseVisible);
    // The box (1, 1) - (4, 4): a 3 x 3 ellipse, as the region's own ellipse of that box.
    cBitRegion same;
    same.Init(0, 0, 8, 8);
    same.CreateEllipse(1, 1, 4, 4, cBitRegion::ModeUnion, true);
    EXPECT_EQ(doc->Region().GetData(), same.GetData());
    EXPECT_FALSE(doc->Region().IsEmptyRegion());
}

TEST_F(SelectTool, PolygonTakesPointsBySpaceAndEndsAtTheRelease) {
    useTool("Select");
    Settings.SelectMode = 2;
    Settings.SelectShape = 2;
    fImage* doc = makeDocument(host, solidBits(8, 6, 0, 0, 0));
    doc->Region().CreateRect(6, 0, 8, 2, cBitRegion::ModeUnion, true);
    pressAt(doc, QPoint(1, 1));
    EXPECT_TRUE(doc->Region().IsEmptyRegion()); // new: cleared at the first point
    EXPECT_EQ(doc->Stroke().PolygonPoints, (std::vector<int32_t>{1, 1}));
    drag(doc, QPoint(5, 1));
    key(doc, Qt::Key_Space);
    EXPECT_EQ(doc->Stroke().PressPoint, (fImage::ToolPoint{5, 1}));
    drag(doc, QPoint(5, 4));
    key(doc, Qt::Key_Space);
    drag(doc, QPoint(1, 4));
    key(doc, Qt::Key_Space);
    EXPECT_EQ(doc->Stroke().PolygonPoints, (std::vector<int32_t>{1, 1, 5, 1, 5, 4, 1, 4}));
    // Three kept edges and the moving one.
    ASSERT_EQ(doc->Rubber().lines.size(), 4u);
    EXPECT_EQ(doc->Rubber().lines[0], QLine(1, 1, 5, 1));
    EXPECT_EQ(doc->Rubber().lines[2], QLine(5, 4, 1, 4));
    release(doc, QPoint(2, 2)); // the release point is no corner
    EXPECT_EQ(selected(doc), (Rects{{1, 1, 5, 4}}));
    EXPECT_TRUE(doc->Stroke().PolygonPoints.empty());
    EXPECT_EQ(doc->Rubber().lines.size(), 1u);
    EXPECT_FALSE(doc->Rubber().lineVisible[0]);
}

TEST_F(SelectTool, FreeHandAddsThePixelsPassedOver) {
    useTool("Select");
    Settings.SelectMode = 2;
    Settings.SelectShape = 3;
    fImage* doc = makeDocument(host, solidBits(6, 4, 0, 0, 0));
    // The last point is outside: cut away.
    stroke(doc, {QPoint(1, 1), QPoint(2, 1), QPoint(2, 2), QPoint(9, 2)});
    EXPECT_EQ(selected(doc), (Rects{{1, 1, 3, 2}, {2, 2, 3, 3}}));
}

TEST_F(SelectionMoveTool, SelectionOnlyMovesTheRegionAndCropsAtTheRelease) {
    useTool("SelectionMove");
    Settings.SelectMove = kTrue16;
    fImage* doc = makeDocument(host, numbered(6, 6));
    doc->Region().CreateRect(1, 1, 3, 3, cBitRegion::ModeUnion, true);
    stroke(doc, {QPoint(0, 0), QPoint(1, 0)}); // pressed outside the selection: nothing moves
    EXPECT_EQ(selected(doc), (Rects{{1, 1, 3, 3}}));

    pressAt(doc, QPoint(1, 1));
    EXPECT_TRUE(doc->Stroke().MovingSelection);
    drag(doc, QPoint(3, 2));
    EXPECT_EQ(selected(doc), (Rects{{3, 2, 5, 4}}));
    drag(doc, QPoint(5, 5)); // past the image's corner
    EXPECT_EQ(selected(doc), (Rects{{5, 5, 7, 7}}));
    release(doc, QPoint(5, 5));
    EXPECT_EQ(selected(doc), (Rects{{5, 5, 6, 6}}));
    EXPECT_FALSE(doc->Stroke().MovingSelection);
    EXPECT_EQ(doc->bits(), numbered(6, 6)); // the pixels stay
}

TEST_F(SelectionMoveTool, AKeyReleasedWhileMovingCropsTheSelection) {
    useTool("SelectionMove");
    Settings.SelectMove = kTrue16;
    fImage* doc = makeDocument(host, numbered(4, 4));
    doc->Region().CreateRect(0, 0, 2, 2, cBitRegion::ModeUnion, true);
    pressAt(doc, QPoint(1, 1));
    drag(doc, QPoint(3, 3));
    EXPECT_EQ(selected(doc), (Rects{{2, 2, 4, 4}}));
    drag(doc, QPoint(4, 4)); // past the image, still held
    EXPECT_EQ(selected(doc), (Rects{{3, 3, 5, 5}}));
    key(doc, Qt::Key_Shift);
    EXPECT_EQ(selected(doc), (Rects{{3, 3, 4, 4}}));
    release(doc, QPoint(4, 4));
}

TEST_F(SelectionMoveTool, ContentMovePaintsTheLiftedPixelsAtTheMouse) {
    useTool("SelectionMove");
    Settings.SelectMove = kFalse16;
    Settings.SelectPressure = 100;
    fImage* doc = makeDocument(host, numbered(6, 5));
    doc->Region().CreateRect(1, 1, 3, 3, cBitRegion::ModeUnion, true);
    pressAt(doc, QPoint(2, 2));
    EXPECT_TRUE(doc->Stroke().MovingSelection);
    EXPECT_EQ(doc->Stroke().HotSpot, (fImage::ToolPoint{1, 1}));
    EXPECT_EQ(doc->Stroke().MovedBits.width(), 2);
    EXPECT_EQ(doc->Stroke().MovedBits.height(), 2);
    drag(doc, QPoint(3, 2));
    drag(doc, QPoint(4, 3));
    // The 2 x 2 block of (1, 1) now stands at (3, 2) as well; only the last place shows.
    Bits expected = numbered(6, 5);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 2; ++x)
            for (int c = 0; c < 3; ++c) expected(c, 3 + x, 2 + y) = numbered(6, 5)(c, 1 + x, 1 + y);
    EXPECT_EQ(doc->bits(), expected);
    EXPECT_EQ(doc->bits()(0, 3, 2), 12); // blue of (1, 1)
    EXPECT_EQ(doc->bits()(0, 4, 3), 23); // blue of (2, 2)
    release(doc, QPoint(4, 3));
    EXPECT_FALSE(doc->Stroke().MovingSelection);
    EXPECT_EQ(host.filter.bits(), expected);
    EXPECT_EQ(doc->HistoryPosition(), 1); // the move is filed by a commit (space)
    key(doc, Qt::Key_Space);
    EXPECT_EQ(doc->HistoryPosition(), 2);
}

TEST_F(SelectionMoveTool, ContentMoveBlendsWithThePressureAndSkipsOutsideTheSelection) {
    useTool("SelectionMove");
    Settings.SelectMove = kFalse16;
    Settings.SelectPressure = 50;
    Bits image = solidBits(4, 3, 0, 0, 0);
    image(0, 0, 0) = 200; // blue 200 at (0, 0), (1, 0) stays black
    fImage* doc = makeDocument(host, image);
    // An L of three pixels: (0, 0), (0, 1), (1, 1); (1, 0) is in the box but not selected.
    doc->Region().CreateRect(0, 0, 1, 2, cBitRegion::ModeUnion, true);
    doc->Region().CreateRect(1, 1, 2, 2, cBitRegion::ModeUnion, true);
    pressAt(doc, QPoint(0, 0));
    drag(doc, QPoint(2, 1));
    // (2, 1) takes half of 200 over 0: 100. (3, 1) is the unselected pixel: untouched.
    EXPECT_EQ(doc->bits()(0, 2, 1), 100);
    EXPECT_EQ(doc->bits()(0, 3, 1), 0);
    EXPECT_EQ(doc->bits()(0, 0, 0), 200);
    release(doc, QPoint(2, 1));
}

// --- Paste --------------------------------------------------------------------------------

// A 2 x 2 clip of white, its bottom right pixel masked out (channel 3 of 255).
Bits clip() {
    Bits c = solidBits(2, 2, 255, 255, 255);
    c(0, 1, 1) = c(1, 1, 1) = c(2, 1, 1) = 0;
    c(3, 1, 1) = 255;
    return c;
}

TEST_F(PasteTool, PasteFollowsTheMouseAndALeftClickFixesItAsOneStep) {
    useTool("Brush"); // the brush stays out of it while the paste is pending
    Settings.SelectPressure = 100;
    Settings.PasteMode = 0;
    fImage* doc = makeDocument(host, solidBits(6, 6, 0, 0, 0));
    host.ClipBuffer = clip();
    host.PendingPaste = true;
    host.ActionLabel = "Paste";
    // Hot spot: half the upper bounds (3 / 2 = 1.5, rounded to 2), so the clip's top left
    // stands two up and left of the mouse.
    hover(doc, QPoint(3, 3));
    EXPECT_EQ(doc->Stroke().HotSpot, (fImage::ToolPoint{2, 2}));
    EXPECT_EQ(shape(doc->bits()),
              (Rows{"......", ".##...", ".#....", "......", "......", "......"}));
    hover(doc, QPoint(4, 4));
    EXPECT_EQ(shape(doc->bits()),
              (Rows{"......", "......", "..##..", "..#...", "......", "......"}));
    key(doc, Qt::Key_Right); // the keys move it as well
    EXPECT_EQ(doc->Stroke().LastPoint, (fImage::ToolPoint{5, 4}));
    EXPECT_EQ(shape(doc->bits()),
              (Rows{"......", "......", "...##.", "...#..", "......", "......"}));
    press(doc, QPoint(5, 4));
    release(doc, QPoint(5, 4));
    EXPECT_FALSE(host.PendingPaste);
    EXPECT_EQ(shape(doc->bits()),
              (Rows{"......", "......", "...##.", "...#..", "......", "......"}));
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(doc->History().ActionNames[1], "Paste");
    EXPECT_EQ(host.filter.bits(), doc->bits());
    // Afterwards the mouse no longer carries it.
    hover(doc, QPoint(1, 1));
    EXPECT_EQ(doc->bits()(0, 0, 0), 0);
}

TEST_F(PasteTool, RightClickCancelsThePaste) {
    useTool("Select");
    Settings.PasteMode = -1; // the paste panel's own pressure
    Settings.PastePressure = 50;
    fImage* doc = makeDocument(host, solidBits(5, 5, 0, 0, 0));
    host.ClipBuffer = clip();
    host.PendingPaste = true;
    hover(doc, QPoint(2, 2));
    EXPECT_EQ(doc->bits()(0, 0, 0), 128); // 127.5 at pressure 50
    press(doc, QPoint(2, 2), Qt::RightButton);
    release(doc, QPoint(2, 2), Qt::RightButton);
    EXPECT_FALSE(host.PendingPaste);
    EXPECT_EQ(doc->bits(), solidBits(5, 5, 0, 0, 0));
    EXPECT_EQ(doc->HistoryPosition(), 1);
    EXPECT_TRUE(doc->Region().IsEmptyRegion()); // the select tool did nothing
}

TEST_F(PasteTool, SpaceFixesThePasteAndItGoesOnFollowing) {
    useTool("GetColor");
    Settings.SelectPressure = 100;
    fImage* doc = makeDocument(host, solidBits(6, 6, 0, 0, 0));
    host.ClipBuffer = clip();
    host.PendingPaste = true;
    host.ActionLabel = "Paste";
    hover(doc, QPoint(2, 2));
    key(doc, Qt::Key_Space);
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_TRUE(host.PendingPaste);
    key(doc, Qt::Key_Down);
    key(doc, Qt::Key_Down);
    // The first copy stays, the second follows.
    EXPECT_EQ(shape(doc->bits()),
              (Rows{"##....", "#.....", "##....", "#.....", "......", "......"}));
}

TEST_F(PasteTool, AnotherDocumentTakingOverTakesThePasteAway) {
    useTool("Brush");
    Settings.SelectPressure = 100;
    fImage* doc = makeDocument(host, solidBits(6, 6, 0, 0, 0));
    host.ClipBuffer = clip();
    host.PendingPaste = true;
    host.ActionLabel = "Paste";
    hover(doc, QPoint(3, 3));
    ASSERT_NE(doc->bits(), solidBits(6, 6, 0, 0, 0)); // the paste shows in the picture
    // Another document becomes active before this one hears of its deactivation.
    fImage* other = makeDocument(host, solidBits(3, 3, 9, 9, 9));
    EXPECT_FALSE(host.PendingPaste);
    EXPECT_EQ(doc->bits(), solidBits(6, 6, 0, 0, 0));
    EXPECT_EQ(doc->HistoryPosition(), 1);
    EXPECT_FALSE(doc->Model().EditOpen());
    EXPECT_EQ(host.filter.bits(), other->bits());

    // And when it hears first: its deactivation takes the paste away.
    doc->Form_Activate();
    host.PendingPaste = true;
    hover(doc, QPoint(2, 2));
    hover(doc, QPoint(3, 3));
    ASSERT_NE(doc->bits(), solidBits(6, 6, 0, 0, 0));
    doc->Form_Deactivate();
    EXPECT_FALSE(host.PendingPaste);
    EXPECT_EQ(doc->bits(), solidBits(6, 6, 0, 0, 0));
    EXPECT_EQ(doc->HistoryPosition(), 1);
}

// --- Keys ---------------------------------------------------------------------------------

TEST_F(ToolKeys, ArrowsMoveTheLastPointOnePixel) {
    useTool("GetColor");
    fImage* doc = makeDocument(host, numbered(6, 6), 2);
    hover(doc, QPoint(5, 5)); // cell (2, 2)
    EXPECT_EQ(doc->Stroke().LastPoint, (fImage::ToolPoint{2, 2}));
    key(doc, Qt::Key_Right);
    key(doc, Qt::Key_Right);
    key(doc, Qt::Key_Up);
    EXPECT_EQ(doc->Stroke().LastPoint, (fImage::ToolPoint{4, 1}));
    EXPECT_EQ(host.panels["Position"], "4, 1");
    key(doc, Qt::Key_Left);
    key(doc, Qt::Key_Down);
    key(doc, Qt::Key_Down);
    EXPECT_EQ(doc->Stroke().LastPoint, (fImage::ToolPoint{3, 3}));
    EXPECT_EQ(host.panels["Color"], "R 3  G 2  B 34  #030222");
}

TEST_F(ToolKeys, SpaceWithTheTextToolStampsAgain) {
    useTool("Text");
    Settings.TextPressure = 100;
    Settings.ColorPrimary = 0xFFFFFF;
    // A one-pixel black mask: weight 1, the colour itself.
    host.TextBits = solidBits(1, 1, 0, 0, 0);
    host.ActionLabel = "Text";
    fImage* doc = makeDocument(host, solidBits(4, 4, 0, 0, 0));
    // Hot spot: half the size plus one, (1, 1): the mask lands up and left of the mouse.
    pressAt(doc, QPoint(2, 2));
    EXPECT_EQ(shape(doc->bits()), (Rows{"....", ".#..", "....", "...."}));
    drag(doc, QPoint(3, 3));
    EXPECT_EQ(shape(doc->bits()), (Rows{"....", "....", "..#.", "...."}));
    key(doc, Qt::Key_Space); // fixed here, and stamped on
    drag(doc, QPoint(3, 2));
    EXPECT_EQ(shape(doc->bits()), (Rows{"....", "..#.", "..#.", "...."}));
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(doc->History().ActionNames[1], "Text");
    release(doc, QPoint(3, 2));
}

TEST_F(ToolScroll, AStrokeOnAScrolledImageStartsWhereThePressIs) {
    // A pencil click and a free-hand shape stroke on an image scrolled by (30, 20): the
    // first segment starts at the pressed pixel, not at the press less the scroll values.
    for (const char* tool : {"Pencil", "Shape"}) {
        SCOPED_TRACE(tool);
        useTool(tool);
        Settings.ShapeKind = 1;
        Settings.ShapePressure = 100;
        fImage* doc = test::makeDocument(host, solidBits(100, 100, 0, 0, 0), 40, 40);
        doc->Form_Activate();
        doc->Scroll(30, 20);
        stroke(doc, {QPoint(5, 5), QPoint(8, 5)});
        Bits expected = solidBits(100, 100, 0, 0, 0);
        DoneBits done;
        const Region all = Region::rect(0, 0, 100, 100);
        BitsLine(expected, all, done, 35, 25, 35, 25, 0xFFFFFF, 100);
        BitsLine(expected, all, done, 35, 25, 38, 25, 0xFFFFFF, 100);
        EXPECT_EQ(doc->bits(), expected);
        EXPECT_EQ(doc->bits()(0, 5, 5), 0); // nothing from the press less the scroll values
        EXPECT_EQ(doc->HistoryPosition(), 2);
    }
}

// --- Hand scrolling -----------------------------------------------------------------------

TEST_F(ToolScroll, HandScrollingMovesTheBarsAndPaintsOn) {
    useTool("Pencil");
    fImage* doc = test::makeDocument(host, solidBits(200, 200, 0, 0, 0), 60, 60);
    doc->Form_Activate();
    doc->SetMouseScroll(true);
    doc->Scroll(50, 50);
    int32_t h = 0, v = 0;
    doc->GetSBV(h, v);
    ASSERT_EQ(h, 50);
    pressAt(doc, QPoint(10, 10));
    // The hand moves 5 right and 3 down: the bars go back by as much.
    drag(doc, QPoint(15, 13));
    doc->GetSBV(h, v);
    EXPECT_EQ(h, 45);
    EXPECT_EQ(v, 47);
    release(doc, QPoint(15, 13));
    // The cell of the move is taken before the bars move: (50 + 15, 50 + 13).
    EXPECT_EQ(doc->Stroke().LastPoint, (fImage::ToolPoint{65, 63}));
    EXPECT_NE(doc->bits()(0, 65, 63), 0);
}

} // namespace
} // namespace ostrivex
