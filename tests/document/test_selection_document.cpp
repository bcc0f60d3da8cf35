// The selection inside a document: the region cFilter gets, the marching-ants outline and
// its timer, the zoom of the outline, and what load, a size change and undo do to it.
#include "document/fimage.h"

#include "document/doc_test_util.h"
#include "document/fake_host.h"
#include "pixel/bitfilter.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <functional>

namespace ostrivex {
namespace {

using test::FakeHost;
using test::makeDocument;
using test::numbered;

constexpr QRgb kGrey = 0xFF808080u;
constexpr QRgb kWhite = 0xFFFFFFFFu;
constexpr QRgb kBlack = 0xFF000000u;

// The outline drawn on a grey picture of w x h.
QImage outline(const cBitRegion& selection, int w, int h, int x, int y) {
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(kGrey);
    QPainter p(&img);
    DrawSelectionOutline(p, selection, x, y);
    p.end();
    return img;
}

using Rows = std::vector<std::string>;

// Row strings of the top left w x h of an image: 'W' white, 'B' black, '.' the background
// colour of the pixel (grey, or the one `background` gives), '?' anything else.
Rows rows(const QImage& img, int w, int h, std::function<QRgb(int, int)> background) {
    Rows out;
    for (int y = 0; y < h; ++y) {
        std::string r;
        for (int x = 0; x < w; ++x) {
            const QRgb c = img.pixel(x, y);
            r += c == background(x, y) ? '.' : c == kWhite ? 'W' : c == kBlack ? 'B' : '?';
        }
        out.push_back(r);
    }
    return out;
}
Rows rows(const QImage& img) {
    return rows(img, img.width(), img.height(), [](int, int) { return kGrey; });
}

TEST(SelectionOutline, FramePixelsTakeTheAntPattern) {
    cBitRegion sel;
    sel.Init(0, 0, 6, 6);
    // Nothing selected: nothing drawn.
    EXPECT_EQ(rows(outline(sel, 6, 6, 0, 0)),
              (Rows{"......", "......", "......", "......", "......", "......"}));

    // A 4 x 4 square at (1, 1): its border ring of 12 pixels. Brush 0 rows 1 to 4 are
    // 01111000, 00111100, 00011110, 00001111 (a set bit white).
    sel.CreateRect(1, 1, 5, 5, cBitRegion::ModeUnion, false);
    EXPECT_EQ(rows(outline(sel, 6, 6, 0, 0)),
              (Rows{"......", ".WWWW.", ".B..W.", ".B..W.", ".BBBW.", "......"}));

    // Phase 1 takes row i + 1 of brush 0 as row i: rows 1 to 4 read 00111100, 00011110,
    // 00001111, 10000111.
    sel.RotateBrush();
    EXPECT_EQ(rows(outline(sel, 6, 6, 0, 0)),
              (Rows{"......", ".BWWW.", ".B..W.", ".B..W.", ".BBBB.", "......"}));

    // The outline is drawn at the zoom, moved by the scroll: one pixel at zoom 2 is the
    // square (2, 2)-(4, 4), drawn one pixel left. Phase 0 rows 2 and 3: 00111100, 00011110.
    cBitRegion one;
    one.Init(0, 0, 3, 3);
    one.CreateRect(1, 1, 2, 2, cBitRegion::ModeUnion, false);
    one.SetZoomFactor(2.0f);
    EXPECT_EQ(rows(outline(one, 5, 5, -1, 0)), (Rows{".....", ".....", ".BW..", ".BB..", "....."}));

    // An L shape: the inner corner pixel (1, 1) of the filled part touches the cut-out
    // square on its right and below only diagonally, so it stays inside.
    cBitRegion ell;
    ell.Init(0, 0, 8, 1);
    ell.CreateRect(0, 0, 3, 3, cBitRegion::ModeUnion, false);
    ell.CreateRect(2, 2, 3, 3, cBitRegion::ModeDifference, false);
    // Rows of brush 0 at y 0 to 2: 11110000, 01111000, 00111100.
    EXPECT_EQ(rows(outline(ell, 4, 4, 0, 0)), (Rows{"WWW.", "B.W.", "BB..", "...."}));
}

TEST(SelectionDocument, FilterRegionZoomAndSizeChanges) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(4, 3), 200, 200);
    // Loaded: the whole image, no selection.
    ASSERT_TRUE(doc->Region().RegionMain().has_value());
    EXPECT_EQ(doc->Region().RegionMain()->bounds(), (Rect{0, 0, 4, 3}));
    EXPECT_FALSE(doc->Region().Region().has_value());
    EXPECT_EQ(doc->EffectiveRegion().bounds(), (Rect{0, 0, 4, 3}));

    // The zoom of the outline follows the document's.
    doc->SetZoomFactor(3);
    EXPECT_EQ(doc->Region().ZoomFactor(), 3.0f);

    // A selection of columns 1 and 2 of row 1, given to the filter: Invert touches those
    // two pixels only (blue 12 and 22 become 243 and 233, green 253, red 252).
    host.filter.SetBits(doc->bits());
    doc->Region().CreateRect(1, 1, 3, 2, cBitRegion::ModeUnion, false);
    doc->SelectionChanged();
    EXPECT_EQ(host.filter.region(), &doc->EffectiveRegion());
    EXPECT_EQ(doc->Region().RegionScaled()->bounds(), (Rect{3, 3, 9, 6}));
    EXPECT_TRUE(host.SelectionChanged);
    Bits expected = numbered(4, 3);
    for (int x : {1, 2}) {
        expected(0, x, 1) = uint8_t(255 - (10 * x + 2));
        expected(1, x, 1) = 253;
        expected(2, x, 1) = 252;
    }
    EXPECT_EQ(host.filter.Invert(), expected);

    // A commit of another size (a transform's result) resets the selection, and cFilter
    // gets the new whole image.
    doc->Model().Commit(EditTarget::Enhanced(), numbered(5, 2), "Resize");
    EXPECT_FALSE(doc->Region().Region().has_value());
    EXPECT_EQ(host.filter.region(), &doc->EffectiveRegion());
    EXPECT_EQ(host.filter.region()->bounds(), (Rect{0, 0, 5, 2}));
    EXPECT_FALSE(doc->SelectionTimerActive());

    // Undo keeps a selection of the same size and resets one across a size change.
    doc->Model().Commit(EditTarget::Enhanced(), numbered(4, 3), "Resize");
    doc->Model().Commit(EditTarget::Enhanced(), numbered(5, 2), "Resize");
    doc->Region().CreateRect(0, 0, 2, 2, cBitRegion::ModeUnion, false);
    doc->SelectionChanged();
    EXPECT_TRUE(doc->SelectionTimerActive());
    doc->Model().Undo();
    EXPECT_EQ(doc->PictureWidth(), 4);
    EXPECT_FALSE(doc->Region().Region().has_value());
    EXPECT_EQ(doc->Region().RegionMain()->bounds(), (Rect{0, 0, 4, 3}));
    EXPECT_EQ(host.filter.region(), &*doc->Region().RegionMain());
    EXPECT_FALSE(doc->SelectionTimerActive());
    doc->Region().CreateRect(3, 0, 4, 1, cBitRegion::ModeUnion, false);
    doc->Model().Redo(); // 5 x 2 again: reset once more
    EXPECT_EQ(doc->PictureWidth(), 5);
    EXPECT_FALSE(doc->Region().Region().has_value());
    EXPECT_EQ(doc->EffectiveRegion().bounds(), (Rect{0, 0, 5, 2}));
}

TEST(SelectionDocument, AntsCrawlOnTheTimerAndShowOnTheCanvas) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(6, 5), 100, 100);
    doc->show();
    // No selection: a start enables the timer, but the tick does not turn the phase.
    doc->StartTimer();
    EXPECT_TRUE(doc->SelectionTimerActive());
    EXPECT_EQ(doc->Region().AntPhase(), 0);
    doc->StopTimer();
    EXPECT_FALSE(doc->SelectionTimerActive());

    doc->Region().CreateRect(1, 1, 5, 4, cBitRegion::ModeUnion, false);
    doc->SelectionChanged(); // starts the ants: one tick at once
    EXPECT_TRUE(doc->SelectionTimerActive());
    EXPECT_EQ(doc->Region().AntPhase(), 1);
    doc->SelectionTick();
    EXPECT_EQ(doc->Region().AntPhase(), 2);

    // The canvas shows the picture with the outline of phase 2 over it: brush 2 row i is
    // row i + 2 of brush 0, so rows 1 to 3 read 00011110, 00001111, 10000111.
    const QImage canvas = doc->Canvas()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    ASSERT_GE(canvas.width(), 6);
    ASSERT_GE(canvas.height(), 5);
    auto picture = [](int x, int y) { return qRgb(3, 2, 10 * x + y + 1); };
    EXPECT_EQ(rows(canvas, 6, 5, picture),
              (Rows{"......", ".BBWW.", ".B..W.", ".BBBB.", "......"}));

    // The timer turns the phase by itself.
    QElapsedTimer clock;
    clock.start();
    while (doc->Region().AntPhase() == 2 && clock.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    EXPECT_NE(doc->Region().AntPhase(), 2);

    // A stopped timer hides the outline.
    doc->StopTimer();
    const QImage plain = doc->Canvas()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(plain.pixel(1, 1), picture(1, 1));
}

} // namespace
} // namespace ostrivex
