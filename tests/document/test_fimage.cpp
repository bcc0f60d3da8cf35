// The document window: zoom and bar clamps, the paint arithmetic and the pixels it puts
// on the canvas, the two-pass scroll layout across a zoom, undo and redo on screen
// (with a change of canvas size), the history list, activation, the close question.
#include "document/fimage.h"
#include "document/toolcursors.h"

#include "app/settings/settings.h"
#include "document/clipboard.h"
#include "document/dialogs.h"
#include "document/doc_test_util.h"
#include "document/fake_host.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QScrollBar>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

namespace ostrivex {
namespace {

using test::FakeHost;
using test::makeDocument;

// Pixel (x, y): blue 10x + y + 1, green 2, red 3; channel 3 holds 9 (a marker the canvas
// must not show).
Bits numbered(int w, int h) {
    return test::numbered(w, h, 9);
}

uint32_t shown(int x, int y) {
    return 0xFF000000u | 3u << 16 | 2u << 8 | uint8_t(10 * x + y + 1);
}

// The scroll bars as {horizontal maximum, vertical maximum, horizontal value, vertical value}.
std::array<int32_t, 4> bars(fImage* doc) {
    std::array<int32_t, 4> out{};
    doc->GetSBM(out[0], out[1]);
    doc->GetSBV(out[2], out[3]);
    return out;
}

// The captions of the history list, top to bottom.
QStringList captions(HistoryList* list) {
    QStringList out;
    for (int i = 0; i < list->EntryCount(); ++i) out << list->EntryCaption(i);
    return out;
}

TEST(fImage, PlanStretchArithmetic) {
    // Scrolled by 5 and 7 device pixels at zoom 3 on a 200 x 150 canvas: the first image
    // column (5 div 3 = 1, array column 3) starts 2 pixels left of the canvas.
    EXPECT_EQ(PlanStretch(100, 80, 3, 200, 150, 5, 100, 7, 90),
              (StretchPlan{-2, -1, 204, 153, 3, 4, 68, 51}));
    // A multiple of the zoom starts flush.
    EXPECT_EQ(PlanStretch(100, 80, 3, 200, 150, 6, 100, 0, 90),
              (StretchPlan{0, 0, 204, 153, 4, 2, 68, 51}));
    // No bars: the whole image onto the whole canvas.
    EXPECT_EQ(PlanStretch(10, 8, 2, 20, 16, 0, 0, 0, 0), (StretchPlan{0, 0, 20, 16, 2, 2, 10, 8}));
}

TEST(fImage, StretchShowsAPartlyScrolledFirstPixelCut) {
    const Bits b = numbered(3, 2);
    // Zoom 2, canvas 4 x 4, scrolled right by one device pixel, no vertical bar.
    const StretchPlan plan = PlanStretch(3, 2, 2, 4, 4, 1, 2, 0, 0);
    EXPECT_EQ(plan, (StretchPlan{-1, 0, 8, 4, 2, 2, 4, 2}));
    QImage canvas(4, 4, QImage::Format_RGB32);
    canvas.fill(0u);
    ASSERT_TRUE(StretchBits(b, plan, canvas));
    // Columns show image x 0 (its right half only), 1, 1, 2; rows y 0, 0, 1, 1.
    const int xs[4] = {0, 1, 1, 2}, ys[4] = {0, 0, 1, 1};
    for (int dy = 0; dy < 4; ++dy)
        for (int dx = 0; dx < 4; ++dx)
            EXPECT_EQ(canvas.pixel(dx, dy), shown(xs[dx], ys[dy])) << dx << "," << dy;

    // Scrolled to the end the source reaches the guard band, which shows black.
    const StretchPlan end = PlanStretch(3, 2, 2, 4, 4, 2, 2, 0, 0);
    EXPECT_EQ(end, (StretchPlan{0, 0, 8, 4, 3, 2, 4, 2}));
    canvas.fill(0u);
    ASSERT_TRUE(StretchBits(b, end, canvas));
    EXPECT_EQ(canvas.pixel(0, 0), shown(1, 0));
    EXPECT_EQ(canvas.pixel(2, 0), shown(2, 0));
    EXPECT_EQ(canvas.pixel(3, 3), shown(2, 1));

    QImage small(2, 2, QImage::Format_RGB32);
    EXPECT_FALSE(StretchBits(b, StretchPlan{}, small));
}

TEST(fImage, ZoomAndBarsWidthClamps) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(4, 3), 200, 200);
    doc->SetZoomFactor(0);
    EXPECT_EQ(doc->ZoomFactor(), 1);
    doc->SetZoomFactor(99);
    EXPECT_EQ(doc->ZoomFactor(), 15);
    EXPECT_EQ(doc->Zoom(), 15);
    doc->ZoomIn();
    EXPECT_EQ(doc->ZoomFactor(), 15);
    // Below 1 : 1 the view is reduced while the tools' zoom stays 1.
    doc->SetZoomFactor(1);
    doc->ZoomOut();
    EXPECT_EQ(doc->ZoomFactor(), 1);
    EXPECT_EQ(doc->Scale(), (ViewScale{1, 2}));
    doc->ZoomIn();
    EXPECT_EQ(doc->Scale(), (ViewScale{1, 1}));
    doc->ZoomIn();
    EXPECT_EQ(doc->Zoom(), 2);

    doc->SetBarsWidth(13);
    EXPECT_EQ(doc->BarsWidth(), 13);
    doc->SetBarsWidth(2);
    EXPECT_EQ(doc->BarsWidth(), 13);
    doc->SetBarsWidth(14);
    EXPECT_EQ(doc->BarsWidth(), 14);

    // An empty document does not zoom.
    fImage empty;
    empty.ZoomIn();
    EXPECT_EQ(empty.ZoomFactor(), 1);
    EXPECT_EQ(empty.PictureWidth(), 0);
    EXPECT_TRUE(empty.bits().empty());
}

TEST(fImage, ScrollLayoutInTwoPassesAndAcrossAZoom) {
    FakeHost host;
    // 120 x 35 in a 110 x 40 panel: only the horizontal bar is needed at first, and it
    // takes 16 rows, which then makes the vertical bar needed too.
    fImage* doc = makeDocument(host, numbered(120, 35), 110, 40);
    doc->SetBarsWidth(16);
    int32_t hMax, vMax;
    doc->GetSBM(hMax, vMax);
    EXPECT_EQ(hMax, 120 - 94);
    EXPECT_EQ(vMax, 35 - 24);
    EXPECT_EQ(doc->CanvasSize(), QSize(94, 24));
    EXPECT_EQ(host.panels["Pixel"], "120 x 35");

    // 100 x 80 in a 50 x 40 panel: both bars; view 34 x 24; they start in the middle.
    FakeHost host2;
    fImage* big = makeDocument(host2, numbered(100, 80), 50, 40);
    big->SetBarsWidth(16);
    EXPECT_EQ(bars(big), (std::array<int32_t, 4>{66, 56, 33, 28}));
    // Zoom 2 keeps the centre: 166 * 33 / 66 = 83 and 136 * 28 / 56 = 68.
    big->SetZoomFactor(2);
    EXPECT_EQ(bars(big), (std::array<int32_t, 4>{166, 136, 83, 68}));
    // The paint used: x from -(83 mod 2) = -1, 17 * 2 + 4 wide, from array column
    // 83 div 2 + 2 = 43, 19 columns; y from 0, (23 div 2) * 2 + 4 high, from row
    // 68 div 2 + 2 = 36, 13 rows.
    EXPECT_EQ(big->LastPlan(), (StretchPlan{-1, 0, 38, 26, 43, 36, 19, 13}));
    // Canvas pixel (0, 0) is the right half of image pixel (41, 34); (1, 0) is (42, 34).
    EXPECT_EQ(big->CanvasImage().pixel(0, 0), shown(41, 34));
    EXPECT_EQ(big->CanvasImage().pixel(1, 0), shown(42, 34));
    EXPECT_EQ(big->CanvasImage().pixel(2, 1), shown(42, 34));

    // Scroll moves the view without relayout.
    big->Scroll(10, 3);
    EXPECT_EQ(big->LastPlan(), (StretchPlan{0, -1, 38, 26, 7, 3, 19, 13}));
    EXPECT_EQ(big->CanvasImage().pixel(0, 0), shown(5, 1));

    int16_t iw, ih, vw, vh;
    big->GetDimensions(iw, ih, vw, vh);
    EXPECT_EQ(iw, 100);
    EXPECT_EQ(ih, 80);
    EXPECT_EQ(vw, 34);
    EXPECT_EQ(vh, 24);
}

// A wheel turn of `notches` over the canvas at pos.
void wheel(fImage* doc, QPointF pos, int notches, Qt::KeyboardModifiers modifiers) {
    QWidget* canvas = doc->Canvas();
    QWheelEvent e(pos, canvas->mapToGlobal(pos), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                  modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(canvas, &e);
}

TEST(fImage, BelowOneToOneTheCanvasShowsEveryNthPixelAndTheToolsStayInImagePixels) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(100, 80), 20, 17);
    doc->SetBarsWidth(13);
    doc->SetScale({1, 4});
    // 25 x 20 canvas pixels of image in a 7 x 4 view: both bars.
    EXPECT_EQ(doc->CanvasSize(), QSize(7, 4));
    std::array<int32_t, 4> b = bars(doc);
    EXPECT_EQ(b[0], 25 - 7);
    EXPECT_EQ(b[1], 20 - 4);
    doc->Scroll(3, 2);
    // Canvas pixel (x, y) shows image pixel ((3 + x) * 4, (2 + y) * 4).
    EXPECT_EQ(doc->CanvasImage().pixel(0, 0), shown(12, 8));
    EXPECT_EQ(doc->CanvasImage().pixel(1, 0), shown(16, 8));
    EXPECT_EQ(doc->CanvasImage().pixel(2, 1), shown(20, 12));
    // A position maps to the image pixel under it, not to a cell of the reduced view.
    EXPECT_EQ(doc->CellAt(QPointF(1, 1)), (fImage::ToolPoint{16, 12}));
    EXPECT_EQ(doc->ZoomFactor(), 1);
    EXPECT_EQ(doc->Region().ZoomFactor(), 0.25f);

    // Fit: 100 x 80 in a 50 x 40 panel is shown whole at 1 : 2, with no bars.
    fImage* fit = makeDocument(host, numbered(100, 80), 50, 40);
    fit->FitInWindow();
    EXPECT_EQ(fit->Scale(), (ViewScale{1, 2}));
    EXPECT_EQ(bars(fit), (std::array<int32_t, 4>{0, 0, 0, 0}));
    EXPECT_EQ(fit->CanvasSize(), QSize(50, 40));
    EXPECT_EQ(fit->CanvasImage().pixel(49, 39), shown(98, 78));
}

TEST(fImage, TheWheelScrollsAndWithCtrlZoomsAboutThePointer) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(200, 150), 100, 80);
    doc->SetBarsWidth(16);
    doc->Scroll(20, 30);
    // A notch down scrolls 48 canvas pixels; with Shift it goes across.
    wheel(doc, QPointF(5, 5), -1, Qt::NoModifier);
    EXPECT_EQ(bars(doc)[3], 78);
    wheel(doc, QPointF(5, 5), -1, Qt::ShiftModifier);
    EXPECT_EQ(bars(doc)[2], 68);
    wheel(doc, QPointF(5, 5), 10, Qt::NoModifier); // held at the top
    EXPECT_EQ(bars(doc)[3], 0);

    // Ctrl: image pixel (68 + 10, 0 + 20) stays under the pointer at (10, 20).
    doc->Scroll(68, 10);
    const fImage::ToolPoint under = doc->CellAt(QPointF(10, 20));
    EXPECT_EQ(under, (fImage::ToolPoint{78, 30}));
    wheel(doc, QPointF(10, 20), 1, Qt::ControlModifier);
    EXPECT_EQ(doc->Zoom(), 2);
    EXPECT_EQ(bars(doc)[2], 146);
    EXPECT_EQ(doc->CellAt(QPointF(10, 20)), under);
    wheel(doc, QPointF(10, 20), -1, Qt::ControlModifier);
    EXPECT_EQ(doc->Scale(), (ViewScale{1, 1}));
    EXPECT_EQ(doc->CellAt(QPointF(10, 20)), under);
    // At 1 : 2 the image (100 x 75) fits the panel: no bars, nothing to keep in place.
    wheel(doc, QPointF(10, 20), -1, Qt::ControlModifier);
    EXPECT_EQ(doc->Scale(), (ViewScale{1, 2}));
    EXPECT_EQ(bars(doc), (std::array<int32_t, 4>{0, 0, 0, 0}));
    EXPECT_EQ(doc->CellAt(QPointF(10, 20)), (fImage::ToolPoint{20, 40}));
}

TEST(fImage, ThePictureFollowsTheModelsCommits) {
    FakeHost host;
    auto* doc = new fImage;
    host.AddDocumentWindow(doc);
    doc->BeginDocument(QString());
    QImage picture(2, 1, QImage::Format_RGB32);
    picture.setPixel(0, 0, qRgb(30, 20, 10));
    picture.setPixel(1, 0, qRgb(60, 50, 40));
    doc->Model().Start(BitsFromImage(picture), "Original");
    ASSERT_TRUE(doc->PictureExists());
    EXPECT_EQ(doc->BitmapHeader.biWidth, 6);
    EXPECT_EQ(doc->BitmapHeader.biHeight, -5);
    EXPECT_EQ(doc->PictureRect, (Rect{0, 0, 2, 1}));
    const Bits& b = doc->bits();
    EXPECT_EQ((std::array<int, 4>{b(0, 0, 0), b(1, 0, 0), b(2, 0, 0), b(3, 0, 0)}),
              (std::array<int, 4>{10, 20, 30, 0}));
    EXPECT_EQ(b(0, 1, 0), 40);
    EXPECT_EQ(doc->Picture().pixel(1, 0), qRgb(60, 50, 40));
    EXPECT_TRUE(doc->Region().RegionMain()->contains(1, 0));
    EXPECT_FALSE(doc->Region().RegionMain()->contains(2, 0));
    EXPECT_FALSE(doc->Region().Region().has_value());
    // The first state is filed, but it is no change.
    EXPECT_EQ(doc->HistoryPosition(), 1);
    EXPECT_EQ(host.panels["Status"], "");

    // "Update from Layers" is a commit like any other.
    QImage composite(1, 1, QImage::Format_RGB32);
    composite.setPixel(0, 0, qRgb(7, 8, 9));
    doc->Model().Commit(EditTarget::Enhanced(), BitsFromImage(composite), "Update from Layers");
    EXPECT_EQ(host.ActionLabel, "Update from Layers");
    EXPECT_EQ(host.panels["Status"], "Update from Layers");
    EXPECT_EQ(host.panels["Pixel"], "1 x 1");
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(doc->History().ActionNames[1], "Update from Layers");
    EXPECT_EQ(doc->bits()(2, 0, 0), 7);
    EXPECT_EQ(host.filter.bits(), doc->bits());
    EXPECT_EQ(host.savedStates, 2);
    EXPECT_TRUE(doc->Model().Changed);

    // Pixels of another size resize the document and reset the selection to the whole
    // new image.
    doc->Region().CreateRect(0, 0, 1, 1, cBitRegion::ModeUnion, false);
    doc->Model().Commit(EditTarget::Enhanced(), numbered(5, 4), "Size");
    EXPECT_EQ(doc->PictureWidth(), 5);
    EXPECT_EQ(doc->PictureHeight(), 4);
    EXPECT_EQ(doc->BitmapHeader.biHeight, -8);
    EXPECT_EQ(doc->PictureRect, (Rect{0, 0, 5, 4}));
    EXPECT_EQ(doc->Region().RegionMain()->bounds(), (Rect{0, 0, 5, 4}));
    EXPECT_TRUE(doc->Region().IsEmptyRegion());
    EXPECT_EQ(host.filter.region(), &doc->EffectiveRegion());
    EXPECT_EQ(doc->bits(), numbered(5, 4));
    EXPECT_EQ(host.panels["Pixel"], "5 x 4");
}

TEST(fImage, UndoRedoAndASizeChangeOnScreen) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(3, 2), 100, 100);
    const Bits original = doc->bits();
    // The first undo looks for slot -1 and changes nothing.
    doc->Model().Undo();
    EXPECT_EQ(doc->HistoryPosition(), 1);
    EXPECT_EQ(doc->bits(), original);

    // A filter that changes the canvas size: the document now holds 5 x 4.
    const Bits resized = numbered(5, 4);
    doc->Model().Commit(EditTarget::Enhanced(), Bits(resized), "Resize");
    EXPECT_EQ(host.paste.History()->EntryCaption(1), "Resize");
    EXPECT_EQ(host.panels["Status"], "Resize");
    doc->Region().CreateRect(1, 1, 2, 2, cBitRegion::ModeUnion, false); // one pixel

    doc->Model().Undo();
    EXPECT_EQ(doc->HistoryPosition(), 1);
    EXPECT_EQ(doc->HistoryTop(), 2);
    EXPECT_EQ(doc->PictureWidth(), 3);
    EXPECT_EQ(doc->PictureHeight(), 2);
    EXPECT_EQ(doc->bits(), original);
    EXPECT_EQ(doc->BitmapHeader.biWidth, 7);
    EXPECT_EQ(doc->Region().RegionMain()->bounds(), (Rect{0, 0, 3, 2}));
    EXPECT_FALSE(doc->Region().Region().has_value());
    EXPECT_EQ(host.filter.bits(), original);
    EXPECT_EQ(host.filter.region(), &doc->EffectiveRegion());
    EXPECT_EQ(host.filter.region(), &*doc->Region().RegionMain());
    // The status shows the state on screen, the size in its one form.
    EXPECT_EQ(host.panels["Pixel"], "3 x 2");
    EXPECT_EQ(host.panels["Status"], "Original");
    EXPECT_TRUE(host.SelectionChanged);
    EXPECT_EQ(host.paste.History()->PointerIndex(), 0);

    doc->Model().Redo();
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(doc->bits(), resized);
    EXPECT_EQ(host.panels["Pixel"], "5 x 4");
    EXPECT_EQ(host.panels["Status"], "Resize");
    // Redo past the top finds no file.
    doc->Model().Redo();
    EXPECT_EQ(doc->HistoryPosition(), 2);

    // An undo of the same size keeps the selection.
    Bits painted = resized;
    painted(0, 0, 0) = 200;
    doc->Model().Commit(EditTarget::Enhanced(), std::move(painted), "Brush");
    doc->Region().CreateRect(1, 1, 3, 3, cBitRegion::ModeUnion, false);
    doc->Model().Undo();
    EXPECT_EQ(doc->bits(), resized);
    EXPECT_EQ(doc->Region().Region()->bounds(), (Rect{1, 1, 3, 3}));
    EXPECT_EQ(host.filter.region(), &*doc->Region().Region());
}

TEST(fImage, HistoryListFollowsSavesUndoJumpsAndActivation) {
    FakeHost host;
    HistoryList* list = host.paste.History();
    fImage* doc = makeDocument(host, numbered(2, 2), 100, 100);
    // A step that adds one to the first blue byte.
    auto step = [doc](const char* label) {
        Bits b = doc->bits();
        b(0, 0, 0) = uint8_t(b(0, 0, 0) + 1);
        doc->Model().Commit(EditTarget::Enhanced(), std::move(b), label);
    };
    for (const char* label : {"Brush", "Fill", "Pencil"}) step(label);
    EXPECT_EQ(captions(list), (QStringList{"Original", "Brush", "Fill", "Pencil"}));
    EXPECT_EQ(list->EntryNumber(3), "3");
    EXPECT_EQ(list->PointerIndex(), 3);

    // Jump to slot 1 by a click: the top stays.
    list->OwnerId = doc->HistoryId();
    emit list->entryClicked(1);
    EXPECT_EQ(doc->HistoryPosition(), 2);
    EXPECT_EQ(doc->HistoryTop(), 4);
    EXPECT_EQ(doc->bits()(0, 0, 0), 2);
    EXPECT_EQ(list->PointerIndex(), 1);

    // A save now kills the entries of slots 3 and the file of slot 3; slot 2 is rewritten.
    step("Stamp");
    EXPECT_EQ(captions(list), (QStringList{"Original", "Brush", "Stamp"}));
    EXPECT_EQ(list->PointerIndex(), 2);
    EXPECT_FALSE(std::filesystem::exists(doc->History().SlotFileName(3)));
    EXPECT_EQ(doc->History().ActionNames[3], "");

    // Another document becomes active: the list is rebuilt from its captions; back again.
    fImage* other = makeDocument(host, numbered(4, 1), 100, 100);
    // Its first save leaves the list of the document shown alone.
    EXPECT_EQ(captions(list), (QStringList{"Original", "Brush", "Stamp"}));
    EXPECT_EQ(list->PointerIndex(), 2);
    other->Form_Activate();
    EXPECT_EQ(list->OwnerId, other->HistoryId());
    EXPECT_EQ(captions(list), QStringList{"Original"});
    EXPECT_EQ(list->PointerIndex(), 0);
    EXPECT_EQ(host.filter.bits(), other->bits());
    EXPECT_EQ(host.panels["Pixel"], "4 x 1");
    EXPECT_EQ(host.LastActiveDocumentId, other->HistoryId());
    EXPECT_EQ(host.zoomShown, (ViewScale{1, 1}));
    other->SetZoomFactor(3);
    EXPECT_EQ(host.zoomShown, (ViewScale{3, 1}));
    doc->SetZoomFactor(2); // not the active document: the combo stays
    EXPECT_EQ(host.zoomShown, (ViewScale{3, 1}));
    // With the hand tool down and a bar in use, the canvas shows the hand.
    host.handDown = true;
    fImage* wide = makeDocument(host, numbered(300, 10), 100, 100);
    wide->Form_Activate();
    EXPECT_TRUE(wide->MouseScroll());
    EXPECT_EQ(wide->Canvas()->cursor().pixmap().toImage(),
              ToolCursor("cRelease").pixmap().toImage());
    host.handDown = false;
    doc->Form_Activate();
    EXPECT_EQ(captions(list), (QStringList{"Original", "Brush", "Stamp"}));
    EXPECT_EQ(list->PointerIndex(), 2);
    EXPECT_EQ(host.filter.bits(), doc->bits());
}

TEST(fImage, ViewsSetTheCaption) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(2, 2), 100, 100);
    doc->SetCaption("/pics/a.png");
    doc->cLayers_Click();
    EXPECT_EQ(doc->windowTitle(), "New Layered Image");
    EXPECT_EQ(doc->Model().Target(), EditTarget::LayersCanvas());
    doc->Model().Layers.Tag = "layers.olf";
    doc->cLayers_Click();
    EXPECT_EQ(doc->windowTitle(), "layers.olf");
    doc->cOptimize_Click();
    EXPECT_EQ(doc->windowTitle(), "New Optimized Image");
    EXPECT_EQ(doc->CurrentView(), fImage::ViewOptimize);
    EXPECT_EQ(doc->Model().Target(), EditTarget::None());
    doc->cOriginal_Click();
    EXPECT_EQ(doc->Model().Target(), EditTarget::Enhanced());
    EXPECT_EQ(doc->windowTitle(), "/pics/a.png");
}

TEST(fImage, CloseQuestionAndUnload) {
    FakeHost host;
    QStringList asked;
    int answer = QMessageBox::Cancel;
    const auto realQuestion = DocumentDialogs::AskYesNoCancel;
    DocumentDialogs::AskYesNoCancel = [&](QWidget*, const QString& text, const QString& title) {
        asked << title + "|" + text;
        return answer;
    };
    Settings.ConfirmClose = kTrue16;
    fImage* a = makeDocument(host, numbered(2, 2), 100, 100);
    fImage* b = makeDocument(host, numbered(2, 2), 100, 100);
    a->SetCaption("/pics/a.png");
    a->Model().Changed = true;
    // One state only: no question even though changed.
    EXPECT_TRUE(a->QueryUnload());
    EXPECT_TRUE(asked.isEmpty());
    host.AddDocumentWindow(a); // still open for the next steps

    a->Model().Commit(EditTarget::Enhanced(), numbered(2, 2), "Brush");
    EXPECT_FALSE(a->QueryUnload());
    ASSERT_EQ(asked.size(), 1);
    EXPECT_EQ(asked[0], "Ostrivex|/pics/a.png\n\nThis image has changed.\nDo you want to save it ?");
    EXPECT_EQ(host.docs.size(), 2u);

    answer = QMessageBox::Yes;
    EXPECT_TRUE(a->QueryUnload());
    EXPECT_EQ(host.commands, QStringList{"SAVEAS"});
    EXPECT_EQ(host.docs.size(), 1u);

    const auto slot0 = a->History().SlotFileName(0);
    ASSERT_TRUE(std::filesystem::exists(slot0));
    host.panels["Pixel"] = "2 x 2";
    a->Unload();
    EXPECT_FALSE(std::filesystem::exists(slot0));
    // Another document is still open: the status bar stays.
    EXPECT_EQ(host.clearedPanels, 0);
    EXPECT_EQ(host.panels["Pixel"], "2 x 2");
    delete a;

    answer = QMessageBox::No;
    b->Model().Changed = true;
    EXPECT_TRUE(b->QueryUnload());
    EXPECT_EQ(host.commands, QStringList{"SAVEAS"});
    b->Unload();
    EXPECT_EQ(host.clearedPanels, 1);
    EXPECT_EQ(host.clearedPan, 1);
    EXPECT_TRUE(host.panels.isEmpty());
    delete b;
    Settings.ConfirmClose = kFalse16;
    DocumentDialogs::AskYesNoCancel = realQuestion;
}

} // namespace
} // namespace ostrivex
