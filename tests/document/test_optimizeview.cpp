// The Optimize view: placing the preview picture (centred where smaller, scrolled where
// larger, bars only where needed) and dragging it with the hand.
#include "document/optimizeview.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace ostrivex {
namespace {

void mouse(QWidget* w, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent e(type, QPointF(at), w->mapToGlobal(QPointF(at)), button, held, Qt::NoModifier);
    QApplication::sendEvent(w, &e);
}

TEST(OptimizeView, PlacesCentresScrollsAndDrags) {
    OptimizeView view;
    view.show();
    view.resize(100, 80);
    EXPECT_FALSE(view.oSrc()->isVisibleTo(&view));

    // Smaller on both axes: centred, no bars.
    view.SetPicture(QImage(40, 30, QImage::Format_RGB32));
    EXPECT_EQ(view.oSrc()->geometry(), QRect(30, 25, 40, 30));
    EXPECT_FALSE(view.HorizontalBar()->isVisibleTo(&view));
    EXPECT_FALSE(view.VerticalBar()->isVisibleTo(&view));

    // Wider than the panel: at the origin across with a bar of maximum 150 - 100; still
    // centred down.
    view.SetPicture(QImage(150, 50, QImage::Format_RGB32));
    EXPECT_EQ(view.oSrc()->geometry(), QRect(0, 15, 150, 50));
    EXPECT_TRUE(view.HorizontalBar()->isVisibleTo(&view));
    EXPECT_EQ(view.HorizontalBar()->maximum(), 50);
    EXPECT_FALSE(view.VerticalBar()->isVisibleTo(&view));
    view.HorizontalBar()->setValue(20);
    EXPECT_EQ(view.oSrc()->x(), -20);

    // A drag 6 pixels to the left moves the bar by 6 and the picture with the mouse.
    QWidget* pic = view.oSrc();
    mouse(pic, QEvent::MouseButtonPress, {50, 10}, Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(pic->cursor().shape(), Qt::ClosedHandCursor);
    mouse(pic, QEvent::MouseMove, {44, 10}, Qt::NoButton, Qt::LeftButton);
    EXPECT_EQ(view.HorizontalBar()->value(), 26);
    EXPECT_EQ(pic->x(), -26);
    mouse(pic, QEvent::MouseButtonRelease, {44, 10}, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(pic->cursor().shape(), Qt::OpenHandCursor);
    // Without the button held, moves do nothing.
    mouse(pic, QEvent::MouseMove, {10, 10}, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(view.HorizontalBar()->value(), 26);

    // A bigger panel centres it again.
    view.resize(200, 80);
    EXPECT_EQ(view.oSrc()->geometry(), QRect(25, 15, 150, 50));
    EXPECT_FALSE(view.HorizontalBar()->isVisibleTo(&view));
}

} // namespace
} // namespace ostrivex
