// Overlay Image: the pixels of a small source on a small destination with offsets,
// transparency, tiling and a mask colour, the grown canvas, the new-document option, and
// the dialog's preview and mask pick.
#include "document/doc_test_util.h"
#include "utilities/overlay/foverlay.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace ostrivex::test {
namespace {

struct Bgr {
    int b, g, r;
    bool operator==(const Bgr&) const = default;
};
std::ostream& operator<<(std::ostream& os, const Bgr& c) {
    return os << "(" << c.b << "," << c.g << "," << c.r << ")";
}

Bits filled(int w, int h, Bgr c) {
    Bits out(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            out(0, x, y) = uint8_t(c.b);
            out(1, x, y) = uint8_t(c.g);
            out(2, x, y) = uint8_t(c.r);
        }
    return out;
}
Bgr at(const Bits& b, int x, int y) {
    return {b(0, x, y), b(1, x, y), b(2, x, y)};
}

const Bgr kDest{100, 40, 0};
const Bgr kSource{200, 80, 4};
const Bgr kKey{9, 9, 9}; // source pixel (1, 0); as a colour value 0x090909

// A 2 x 2 source: kSource but for (1, 0), which is kKey.
Bits source2x2() {
    Bits s = filled(2, 2, kSource);
    s(0, 1, 0) = s(1, 1, 0) = s(2, 1, 0) = 9;
    return s;
}

TEST(Overlay, OffsetsTransparencyAndMask) {
    cBitFilter f;
    OverlayOptions o;
    o.left = 1;
    o.top = 1;
    o.transparency = 25; // a quarter of the destination, three quarters of the source
    o.maskColor = 0x090909;
    const Bits out = OverlayBits(f, filled(4, 3, kDest), source2x2(), o);
    ASSERT_EQ(out.width(), 4); // 1 + 2 fits in 4 and in 3: no growth
    ASSERT_EQ(out.height(), 3);
    const Bgr mixed{175, 70, 3}; // 100/4 + 200*3/4, 40/4 + 80*3/4, 0 + 4*3/4
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) {
            const bool source = x >= 1 && x <= 2 && y >= 1;
            const bool masked = x == 2 && y == 1;
            EXPECT_EQ(at(out, x, y), source && !masked ? mixed : kDest) << x << "," << y;
        }
}

TEST(Overlay, CanvasGrowsForASourceThatSticksOut) {
    OverlayOptions o;
    o.left = 3;
    o.top = 2;
    o.transparency = 50;
    EXPECT_EQ(OverlayCanvas(4, 3, 2, 2, o), (FitSize{5, 4}));
    cBitFilter f;
    const Bits out = OverlayBits(f, filled(4, 3, kDest), source2x2(), o);
    ASSERT_EQ(out.width(), 5);
    ASSERT_EQ(out.height(), 4);
    EXPECT_EQ(at(out, 0, 0), kDest);
    EXPECT_EQ(at(out, 3, 2), (Bgr{150, 60, 2}));  // on the old picture
    EXPECT_EQ(at(out, 4, 2), (Bgr{4, 4, 4}));     // 9 over the new black: 4.5 -> 4
    EXPECT_EQ(at(out, 4, 3), (Bgr{100, 40, 2}));  // kSource over black
    EXPECT_EQ(at(out, 0, 3), (Bgr{0, 0, 0}));     // new and not covered
    EXPECT_EQ(out(3, 0, 3), 0);
    // Tiled, the canvas never grows.
    o.tiled = true;
    EXPECT_EQ(OverlayCanvas(4, 3, 2, 2, o), (FitSize{4, 3}));
}

TEST(Overlay, TilesCoverTheWholeImageShiftedByTheOffsets) {
    OverlayOptions o;
    o.tiled = true;
    o.left = 1;
    o.top = 3;
    int32_t x0 = 0, y0 = 0;
    OverlayStart(2, 2, o, x0, y0);
    EXPECT_EQ(x0, -1);
    EXPECT_EQ(y0, -1);
    cBitFilter f;
    const Bits out = OverlayBits(f, filled(5, 3, kDest), source2x2(), o);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) {
            const int sx = (x + 1) % 2, sy = (y + 1) % 2;
            EXPECT_EQ(at(out, x, y), sx == 1 && sy == 0 ? kKey : kSource) << x << "," << y;
        }
}

// OK on documents: in place through the window's filter envelope, or as a new document.
class OverlayDocuments : public ::testing::Test {
  protected:
    void SetUp() override {
        dest_ = makeDocument(host_, filled(4, 3, kDest), 200, 200);
        dest_->SaveUndoBits(QStringLiteral("Original"));
        source_ = makeDocument(host_, source2x2(), 200, 200);
        window_.envelope = [this](const std::function<Bits(cBitFilter&)>& op, const QString& label) {
            Bits r = op(host_.filter);
            host_.filter.SetBits(std::move(r));
            dest_->SetBits(host_.filter.bits());
            dest_->SaveUndoBits(label);
        };
        window_.update = [this](const QString& label) { host_.docs.back()->SaveUndoBits(label); };
    }
    FakeHost host_;
    fImage* dest_ = nullptr;
    fImage* source_ = nullptr;
    OverlayHost window_;
};

TEST_F(OverlayDocuments, InPlaceGrowsTheDocumentAsOneUndoStep) {
    OverlayOptions o;
    o.left = 3;
    o.top = 2;
    o.transparency = 50;
    EXPECT_EQ(ApplyOverlay(*dest_, source_->GetBits(), o, host_, window_), nullptr);
    ASSERT_EQ(dest_->PictureWidth(), 5);
    ASSERT_EQ(dest_->PictureHeight(), 4);
    EXPECT_EQ(at(dest_->bits(), 4, 3), (Bgr{100, 40, 2}));
    EXPECT_EQ(at(dest_->bits(), 1, 1), kDest);
    EXPECT_EQ(dest_->History().ActionNames[1], "Overlay Image");
    EXPECT_EQ(dest_->HistoryPosition(), 2);
    EXPECT_EQ(host_.docs.size(), 2u);
}

TEST_F(OverlayDocuments, NewImageLeavesTheDestinationAlone) {
    OverlayOptions o;
    o.left = 1;
    o.top = 1;
    o.createNew = true;
    fImage* made = ApplyOverlay(*dest_, source_->GetBits(), o, host_, window_);
    ASSERT_NE(made, nullptr);
    ASSERT_EQ(host_.docs.size(), 3u);
    EXPECT_EQ(host_.docs.back(), made);
    EXPECT_EQ(at(dest_->bits(), 1, 1), kDest);
    EXPECT_EQ(dest_->HistoryPosition(), 1);
    EXPECT_EQ(made->FileName, "New.bmp");
    EXPECT_EQ(at(made->bits(), 1, 1), kSource);
    EXPECT_EQ(at(made->bits(), 2, 1), kKey);
    EXPECT_EQ(at(made->bits(), 0, 0), kDest);
    EXPECT_EQ(made->History().ActionNames[0], "Original");
    EXPECT_EQ(made->History().ActionNames[1], "Overlay Image");
}

TEST_F(OverlayDocuments, DialogListsTheOthersPreviewsAndPicksTheMask) {
    fImage* third = makeDocument(host_, filled(3, 3, Bgr{1, 2, 3}), 200, 200);
    third->BeginDocument(QStringLiteral("third.png"));
    fOverlay dialog(*dest_, host_.docs);
    EXPECT_EQ(dialog.windowTitle(), "Overlay image");
    EXPECT_EQ(dialog.chkTiled->text(), "&Tiled");
    EXPECT_EQ(dialog.chkMaskColor->text(), "&Mask color");
    EXPECT_EQ(dialog.chkCreateNew->text(), "Create &new image");
    ASSERT_EQ(dialog.cbOverlay->count(), 2); // the destination is not among the sources
    EXPECT_EQ(dialog.Source(), source_);
    EXPECT_TRUE(dialog.cmdOK->isEnabled());
    EXPECT_EQ(dialog.Options().maskColor, -1);

    // A 4 x 3 destination fills the preview's width: 150 x 112 (112.5, ties to even), the
    // source at 75 x 75 (scale 37.5) at its top left.
    EXPECT_EQ(dialog.PreviewPicture(), QRect(0, 19, 150, 112));
    const QPoint onSource = dialog.PreviewPicture().topLeft() + QPoint(20, 50); // source (0, 1)
    EXPECT_EQ(dialog.Preview().pixel(onSource), qRgb(4, 80, 200));
    dialog.sbTransparency->setValue(50);
    EXPECT_EQ(dialog.lblTransparency->text(), "50 %");
    EXPECT_EQ(dialog.Preview().pixel(onSource), qRgb(2, 60, 150));

    // The mask: a press on the source's corner pixel (1, 0) takes its colour.
    dialog.chkMaskColor->setChecked(true);
    const QPoint onKey = dialog.PreviewPicture().topLeft() + QPoint(50, 20); // source (1, 0)
    QTest::mouseClick(dialog.iSrc, Qt::LeftButton, {}, onKey);
    EXPECT_EQ(dialog.Options().maskColor, 0x090909);
    EXPECT_EQ(dialog.lblMaskColor->palette().color(QPalette::Window), QColor(9, 9, 9));
    EXPECT_EQ(dialog.Preview().pixel(onKey), qRgb(0, 40, 100)); // masked: the destination

    dialog.cbOverlay->setCurrentIndex(1);
    EXPECT_EQ(dialog.Source(), third);
    fOverlay alone(*dest_, {dest_});
    EXPECT_EQ(alone.cbOverlay->count(), 0);
    EXPECT_FALSE(alone.cmdOK->isEnabled());
}

} // namespace
} // namespace ostrivex::test
