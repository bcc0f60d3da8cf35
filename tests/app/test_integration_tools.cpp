// The tools as a user drives them: a click on a tool bar button, mouse events on the
// document's canvas, the pixels that result and the captions of the undo list; a cut, a
// paste from the clip history placed with the mouse, and an undo, all through the main
// window.
#include "app/fmain.h"
#include "app/globals.h"
#include "app/settings/settings.h"
#include "app_test_util.h"
#include "document/fimage.h"
#include "document/fpaste.h"
#include "document/toolcursors.h"

#include <QAction>
#include <QLabel>
#include <QMouseEvent>
#include <QTest>
#include <QToolBar>

using namespace ostrivex;
using ostrivex::testing::FreshHome;

namespace {

class IntegrationTools : public FreshHome {
  protected:
    void SetUp() override {
        FreshHome::SetUp();
        SetDefaultSettings(Settings, AppFolder());
        ActiveDocument = nullptr;
        main_ = std::make_unique<fMain>();
        main_->resize(900, 700);
        main_->show();
    }
    void TearDown() override { main_.reset(); }

    // A document of w x h pixels of colour(x, y) (0xRRGGBB), active, zoom 1.
    fImage* open(int w, int h, const std::function<uint32_t(int, int)>& colour) {
        Bits b(w, h);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const uint32_t c = colour(x, y);
                uint8_t* p = b.pixel(x, y);
                p[0] = uint8_t(c), p[1] = uint8_t(c >> 8), p[2] = uint8_t(c >> 16), p[3] = 0;
            }
        // As a picture is opened: the document made, its first state filed, then shown.
        auto* doc = new fImage;
        doc->BeginDocument(QString());
        doc->Model().Start(std::move(b), "Original");
        main_->AddDocumentWindow(doc);
        QCoreApplication::processEvents();
        return doc;
    }

    // The pixel at x, y as 0xRRGGBB.
    static uint32_t at(const fImage* doc, int x, int y) {
        const uint8_t* p = doc->bits().pixel(x, y);
        return uint32_t(p[2]) << 16 | uint32_t(p[1]) << 8 | p[0];
    }

    // A click on the tool bar button of `key`, as the user gives it.
    void clickTool(const char* key) {
        for (QAction* a : main_->toolBar()->actions())
            if (a->objectName() == key) {
                a->trigger();
                return;
            }
        FAIL() << "no button " << key;
    }

    void menu(const char* caption) {
        main_->action(*FindMenuEntry("mnuEdit", caption))->trigger();
    }

    // With the select tool a new rectangle dragged from (1, 1) to `to` (QTest takes the
    // point 0, 0 for the widget's middle, so the drag starts at 1, 1), copied, and pasted
    // back from the clip history at full pressure. Gives the picture before the paste.
    Bits copyAndPaste(fImage* doc, QPoint to) {
        clickTool("Select");
        Settings.SelectMode = 2;
        Settings.SelectShape = 0;
        drag(doc->Canvas(), {QPoint(1, 1), to});
        menu("Copy");
        const Bits before = doc->bits();
        Settings.SelectPressure = 100;
        EXPECT_TRUE(main_->HistoryBox()->Clips()->PasteFromSlot(0));
        return before;
    }

    // A move of the mouse over the canvas, with the buttons held.
    static void move(QWidget* canvas, QPoint to, Qt::MouseButtons held) {
        QMouseEvent e(QEvent::MouseMove, QPointF(to), canvas->mapToGlobal(QPointF(to)),
                      Qt::NoButton, held, Qt::NoModifier);
        QApplication::sendEvent(canvas, &e);
    }

    // Press at the first point, moves through the others with the left button held,
    // release at the last.
    static void drag(QWidget* canvas, std::initializer_list<QPoint> path) {
        const QPoint* p = path.begin();
        QTest::mousePress(canvas, Qt::LeftButton, {}, *p);
        for (++p; p != path.end(); ++p)
            move(canvas, *p, Qt::LeftButton);
        QTest::mouseRelease(canvas, Qt::LeftButton, {}, *(path.end() - 1));
    }

    HistoryList* actions() const { return main_->HistoryBox()->History(); }

    std::unique_ptr<fMain> main_;
};

constexpr uint32_t White = 0xFFFFFF, Black = 0x000000;

TEST_F(IntegrationTools, PencilAndFillFromTheirButtons) {
    // White, with a black column at x = 6 that parts the picture in two.
    fImage* doc = open(12, 6, [](int x, int) { return x == 6 ? Black : White; });
    QWidget* canvas = doc->Canvas();

    clickTool("Pencil");
    EXPECT_EQ(FieldText(Settings.ActiveTool), "Pencil");
    EXPECT_FALSE(main_->currentToolPicture()->pixmap().isNull());
    Settings.ColorPrimary = 0x0000FF; // red: the low byte is red

    // The pencil's cursor while the button is down: its tip is the hot spot.
    QTest::mousePress(canvas, Qt::LeftButton, {}, QPoint(1, 1));
    EXPECT_EQ(canvas->cursor().hotSpot(), QPoint(2, 29));
    EXPECT_EQ(canvas->cursor().pixmap().toImage(), ToolCursor("cPencil").pixmap().toImage());
    for (int x : {2, 3, 4})
        move(canvas, QPoint(x, 1), Qt::LeftButton);
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, QPoint(4, 1));
    // One line of red from x = 1 to 4 on row 1, nothing else.
    EXPECT_EQ(at(doc, 0, 1), White);
    for (int x = 1; x <= 4; ++x)
        EXPECT_EQ(at(doc, x, 1), 0xFF0000u) << x;
    EXPECT_EQ(at(doc, 5, 1), White);
    EXPECT_EQ(at(doc, 2, 0), White);
    EXPECT_EQ(at(doc, 2, 2), White);
    // The stroke is filed under "Pencil", the pencil's flag is up, and the readout shows
    // the colour it painted with.
    ASSERT_EQ(actions()->EntryCount(), 2);
    EXPECT_EQ(actions()->EntryCaption(1), "Pencil");
    EXPECT_EQ(actions()->PointerIndex(), 1);
    EXPECT_TRUE(main_->PencilStroke);
    EXPECT_EQ(main_->statusPanel("Foreground"), "Foreground #FF0000");
    EXPECT_EQ(main_->statusPanel("Status"), "Pencil");

    // The fill from the right half: blue up to the black column, the left half untouched.
    clickTool("Fill");
    EXPECT_EQ(FieldText(Settings.ActiveTool), "Fill");
    Settings.ColorPrimary = 0xFF0000; // blue
    Settings.FillMode = 0;
    Settings.FillTolerance = 0;
    Settings.FillPressure = 100;
    QTest::mouseClick(canvas, Qt::LeftButton, {}, QPoint(9, 3));
    for (int y = 0; y < 6; ++y) {
        for (int x = 7; x < 12; ++x)
            EXPECT_EQ(at(doc, x, y), 0x0000FFu) << x << "," << y;
        EXPECT_EQ(at(doc, 6, y), Black) << y;
        EXPECT_EQ(at(doc, 0, y), White) << y;
    }
    EXPECT_EQ(at(doc, 3, 1), 0xFF0000u);
    ASSERT_EQ(actions()->EntryCount(), 3);
    EXPECT_EQ(actions()->EntryCaption(2), "Fill");

    // A brush stroke after it lowers the pencil's flag.
    clickTool("Brush");
    drag(canvas, {QPoint(9, 4), QPoint(10, 4)});
    EXPECT_EQ(actions()->EntryCaption(3), "Brush");
    EXPECT_FALSE(main_->PencilStroke);
}

TEST_F(IntegrationTools, CutThenPasteFromTheClipHistoryFollowsTheMouseAndUndoes) {
    // Every pixel its own colour: red 30 x, green 40 y, blue 7.
    auto colour = [](int x, int y) { return uint32_t(30 * x) << 16 | uint32_t(40 * y) << 8 | 7u; };
    fImage* doc = open(8, 6, colour);
    QWidget* canvas = doc->Canvas();

    // A rectangle from (2, 1) to (5, 4): the pixels x 2 to 4, y 1 to 3.
    clickTool("Select");
    Settings.SelectMode = 2;
    Settings.SelectShape = 0;
    drag(canvas, {QPoint(2, 1), QPoint(3, 2), QPoint(4, 3), QPoint(5, 4)});
    menu("Cut");
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 8; ++x) {
            const bool cut = x >= 2 && x <= 4 && y >= 1 && y <= 3;
            EXPECT_EQ(at(doc, x, y), cut ? Black : colour(x, y)) << x << "," << y;
        }
    ASSERT_EQ(actions()->EntryCount(), 2);
    EXPECT_EQ(actions()->EntryCaption(1), "Cut");
    const Bits afterCut = doc->bits();

    // Pasted from the first slot, the 3 x 3 clip hangs at the mouse with its hot spot
    // (Round(4 / 2), Round(4 / 2)) = (2, 2) under it, at full strength.
    Settings.SelectPressure = 100;
    Settings.PasteMode = 0;
    ASSERT_TRUE(main_->HistoryBox()->Clips()->PasteFromSlot(0));
    EXPECT_TRUE(main_->PendingPaste);
    move(canvas, QPoint(5, 3), Qt::NoButton);
    // The clip's corner at (3, 1): pixel (x, y) there shows the cut pixel (x - 1, y).
    for (int y = 1; y <= 3; ++y)
        for (int x = 3; x <= 5; ++x)
            EXPECT_EQ(at(doc, x, y), colour(x - 1, y)) << x << "," << y;
    EXPECT_EQ(at(doc, 2, 2), Black);
    // It follows: one pixel right and down, and the old place shows what was there.
    move(canvas, QPoint(6, 4), Qt::NoButton);
    for (int y = 2; y <= 4; ++y)
        for (int x = 4; x <= 6; ++x)
            EXPECT_EQ(at(doc, x, y), colour(x - 2, y - 1)) << x << "," << y;
    EXPECT_EQ(at(doc, 3, 1), Black);
    EXPECT_EQ(at(doc, 5, 1), colour(5, 1));
    EXPECT_EQ(actions()->EntryCount(), 2); // nothing filed while it follows

    // A left click puts it down and files it.
    QTest::mouseClick(canvas, Qt::LeftButton, {}, QPoint(6, 4));
    EXPECT_FALSE(main_->PendingPaste);
    EXPECT_EQ(at(doc, 4, 2), colour(2, 1));
    EXPECT_EQ(at(doc, 6, 4), colour(4, 3));
    ASSERT_EQ(actions()->EntryCount(), 3);
    EXPECT_EQ(actions()->EntryCaption(2), "Paste");
    // The mouse moving on does not take it along any more.
    move(canvas, QPoint(1, 1), Qt::NoButton);
    EXPECT_EQ(at(doc, 4, 2), colour(2, 1));

    // Undo: back to the picture after the cut, the pointer on "Cut".
    menu("Undo");
    EXPECT_TRUE(doc->bits() == afterCut);
    EXPECT_EQ(actions()->PointerIndex(), 1);
}

TEST_F(IntegrationTools, ARightClickTakesThePasteAway) {
    fImage* doc = open(6, 6, [](int x, int y) { return (x + y) % 2 ? White : 0x102030u; });
    QWidget* canvas = doc->Canvas();
    const Bits before = copyAndPaste(doc, QPoint(3, 3));
    ASSERT_TRUE(main_->PendingPaste);
    move(canvas, QPoint(4, 3), Qt::NoButton);
    EXPECT_FALSE(doc->bits() == before);
    QTest::mouseClick(canvas, Qt::RightButton, {}, QPoint(4, 3));
    EXPECT_FALSE(main_->PendingPaste);
    EXPECT_TRUE(doc->bits() == before);
    EXPECT_EQ(actions()->EntryCaption(actions()->EntryCount() - 1), "Original");
}

TEST_F(IntegrationTools, AToolButtonWhileThePasteFollowsTakesItAway) {
    fImage* doc = open(6, 6, [](int x, int y) { return x < 3 ? 0x204060u : uint32_t(y) * 20; });
    QWidget* canvas = doc->Canvas();
    const Bits before = copyAndPaste(doc, QPoint(4, 4));
    ASSERT_TRUE(main_->PendingPaste);
    // (A move into the cell where the drag ended would do no tool work.)
    move(canvas, QPoint(5, 4), Qt::NoButton);
    // The 3 x 3 clip hangs at (3, 2): the pixel there shows the copied (1, 1), the one at
    // (5, 4) the copied (3, 3).
    EXPECT_EQ(at(doc, 3, 2), 0x204060u);
    EXPECT_EQ(at(doc, 5, 4), uint32_t(3) * 20);
    clickTool("Brush");
    EXPECT_FALSE(main_->PendingPaste);
    EXPECT_TRUE(doc->bits() == before);
    EXPECT_EQ(FieldText(Settings.ActiveTool), "Brush");
    // Nothing was filed for it.
    EXPECT_EQ(actions()->EntryCaption(actions()->EntryCount() - 1), "Original");
}

TEST_F(IntegrationTools, UnloadLetsTheLiftedPixelsGo) {
    fImage* doc = open(6, 6, [](int x, int) { return x < 3 ? Black : White; });
    QWidget* canvas = doc->Canvas();
    clickTool("Select");
    Settings.SelectMode = 2;
    Settings.SelectShape = 0;
    drag(canvas, {QPoint(1, 1), QPoint(4, 4)});
    // Move the selection's pixels (not only its outline): they are lifted at the press.
    clickTool("SelectionMove");
    Settings.SelectMove = 0;
    QTest::mousePress(canvas, Qt::LeftButton, {}, QPoint(2, 2));
    EXPECT_EQ(doc->Stroke().MovedBits.width(), 3);
    EXPECT_EQ(doc->Stroke().MovedBits.height(), 3);
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, QPoint(2, 2));
    doc->Unload();
    EXPECT_TRUE(doc->Stroke().MovedBits.empty());
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
