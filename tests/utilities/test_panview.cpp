// The Panoramic View: the frame of the visible part for given zoom and scroll values, the
// scroll values a drag sets, the thumbnail's pixels.
#include "document/doc_test_util.h"
#include "utilities/panview/fpanview.h"

#include <QTest>

#include <gtest/gtest.h>

namespace ostrivex::test {
namespace {

TEST(PanView, FitsThePictureCentred) {
    const PanGeometry wide = FitPan(100, 100, QSize(200, 100));
    EXPECT_EQ(wide.thumb, QRect(50, 0, 100, 100));
    EXPECT_DOUBLE_EQ(wide.scaleX, 1.0);
    // A whole document in view: the frame is the whole thumbnail.
    EXPECT_EQ(PanFrame(wide, 3, 0, 0, 300, 300), QRect(50, 0, 100, 100));
    const PanGeometry tall = FitPan(300, 600, QSize(200, 150));
    EXPECT_EQ(tall.thumb, QRect(62, 0, 75, 150));
    EXPECT_DOUBLE_EQ(tall.scaleY, 0.25);
}

// A 400 x 300 picture at zoom 2 in a 300 x 200 panel, shown in a 200 x 150 pan view: half
// size, so one thumbnail pixel is four canvas pixels.
class PanDocument : public ::testing::Test {
  protected:
    void SetUp() override {
        doc_ = makeDocument(host_, numbered(400, 300), 300, 200);
        doc_->SetZoomFactor(2);
        pan_.resize(200, 150);
        pan_.SetActiveDocument([this] { return active_; });
    }
    FakeHost host_;
    fImage* doc_ = nullptr;
    fImage* active_ = nullptr;
    fPanView pan_;
};

TEST_F(PanDocument, FrameFollowsZoomAndScroll) {
    int16_t w = 0, h = 0, viewW = 0, viewH = 0;
    doc_->GetDimensions(w, h, viewW, viewH);
    ASSERT_EQ(viewW, 284); // the panel less a 16-pixel scroll bar
    ASSERT_EQ(viewH, 184);
    pan_.UpdateClipRct();
    EXPECT_TRUE(pan_.ClipRct().isEmpty()); // no active document
    EXPECT_EQ(pan_.Document(), nullptr);

    active_ = doc_;
    doc_->Scroll(100, 50);
    pan_.UpdateClipRct();
    // Left 100 / 2 / 2 = 25, right (100 + 284) / 4 = 96, top 50 / 4 = 12.5 -> 12, bottom
    // (50 + 184) / 4 = 58.5 -> 58 (ties to even).
    EXPECT_EQ(pan_.ClipRct(), QRect(25, 12, 71, 46));
    // At zoom 4 the window keeps its centre: 100 * 1316 / 516 -> 255, 50 * 1016 / 416 -> 122.
    doc_->SetZoomFactor(4);
    int32_t sx = 0, sy = 0;
    doc_->GetSBV(sx, sy);
    ASSERT_EQ(QPoint(sx, sy), QPoint(255, 122));
    pan_.UpdateClipRct();
    // 255 / 8 = 31.9 -> 32, 539 / 8 = 67.4 -> 67, 122 / 8 = 15.3 -> 15, 306 / 8 = 38.3 -> 38.
    EXPECT_EQ(pan_.ClipRct(), QRect(32, 15, 35, 23));
    active_ = nullptr;
    pan_.UpdateClipRct();
    EXPECT_TRUE(pan_.ClipRct().isEmpty());
}

TEST_F(PanDocument, DragScrollsCentredOnTheMouseWithinTheMaxima) {
    active_ = doc_;
    doc_->Scroll(100, 50);
    pan_.UpdateClipRct();
    const QPoint frame = pan_.ClipRct().center();
    QTest::mousePress(&pan_, Qt::LeftButton, {}, frame);
    EXPECT_TRUE(pan_.Dragging());
    int32_t sx = 0, sy = 0;
    doc_->GetSBV(sx, sy);
    EXPECT_EQ(QPoint(sx, sy), QPoint(100, 50)); // a press in the frame moves nothing yet
    QTest::mouseMove(&pan_, QPoint(100, 75));
    doc_->GetSBV(sx, sy);
    // 100 / 0.5 * 2 - 284 / 2 = 258; 75 / 0.5 * 2 - 184 / 2 = 208.
    EXPECT_EQ(QPoint(sx, sy), QPoint(258, 208));
    EXPECT_EQ(pan_.ClipRct(), QRect(64, 52, 72, 46)); // 64.5 -> 64 and 135.5 -> 136, ties to even
    QTest::mouseMove(&pan_, QPoint(199, 149));
    doc_->GetSBV(sx, sy);
    EXPECT_EQ(QPoint(sx, sy), QPoint(800 - 284, 600 - 184)); // the maxima
    QTest::mouseMove(&pan_, QPoint(2, 1));
    doc_->GetSBV(sx, sy);
    EXPECT_EQ(QPoint(sx, sy), QPoint(0, 0));
    QTest::mouseRelease(&pan_, Qt::LeftButton, {}, QPoint(2, 1));
    EXPECT_FALSE(pan_.Dragging());

    // A press beside the frame brings the view there at once.
    QTest::mousePress(&pan_, Qt::LeftButton, {}, QPoint(150, 100));
    doc_->GetSBV(sx, sy);
    EXPECT_EQ(QPoint(sx, sy), QPoint(600 - 142, 400 - 92));
    QTest::mouseRelease(&pan_, Qt::LeftButton, {}, QPoint(150, 100));
}

TEST(PanView, ThumbnailPixelsAreMeansOfFourSamples) {
    // 4 x 2 to 2 x 1: each thumbnail pixel is the rounded mean of a 2 x 2 block.
    Bits b(4, 2);
    const uint8_t blue[2][4] = {{0, 10, 100, 200}, {1, 2, 50, 51}};
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x) {
            b(0, x, y) = blue[y][x];
            b(1, x, y) = uint8_t(x * 60);
            b(2, x, y) = 255;
        }
    const QImage t = PanThumbnail(b, 2, 1);
    ASSERT_EQ(t.size(), QSize(2, 1));
    EXPECT_EQ(qBlue(t.pixel(0, 0)), (0 + 10 + 1 + 2 + 2) / 4);
    EXPECT_EQ(qBlue(t.pixel(1, 0)), (100 + 200 + 50 + 51 + 2) / 4);
    EXPECT_EQ(qGreen(t.pixel(0, 0)), 30);
    EXPECT_EQ(qGreen(t.pixel(1, 0)), 150);
    EXPECT_EQ(qRed(t.pixel(1, 0)), 255);
    // Larger than the picture: every sample repeats the nearest pixel.
    const QImage up = PanThumbnail(b, 8, 4);
    EXPECT_EQ(qBlue(up.pixel(7, 3)), 51);
    EXPECT_EQ(qBlue(up.pixel(0, 0)), 0);
}

} // namespace
} // namespace ostrivex::test
