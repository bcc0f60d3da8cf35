// Documents inside a real MDI area: activation follows the active sub-window, the canvas
// paints the picture, the sub-window fits the picture, and closing the sub-window runs the
// close logic and unload.
#include "document/fimage.h"

#include "app/settings/settings.h"
#include "document/doc_test_util.h"
#include "document/fake_host.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <gtest/gtest.h>

#include <filesystem>

namespace ostrivex {
namespace {

class MdiHost : public test::FakeHost {
public:
    QMdiArea* area = new QMdiArea;
    MdiHost() {
        area->resize(600, 400);
        area->show();
    }
    ~MdiHost() override { delete area; } // closes the documents still open
    void AddDocumentWindow(fImage* d) override {
        FakeHost::AddDocumentWindow(d);
        area->addSubWindow(d)->show();
        QApplication::processEvents();
    }
};

fImage* open(MdiHost& host, int w, int h) {
    auto* doc = new fImage;
    doc->BeginDocument(QString());
    doc->Model().Start(test::numbered(w, h), "Original");
    host.AddDocumentWindow(doc);
    return doc;
}

TEST(fImageInMdi, ActivationPaintAndClose) {
    Settings.ConfirmClose = kFalse16;
    MdiHost host;
    fImage* a = open(host, 30, 20);
    EXPECT_EQ(host.LastActiveDocumentId, a->HistoryId());
    EXPECT_EQ(host.filter.bits(), a->bits());
    EXPECT_EQ(host.paste.History()->OwnerId, a->HistoryId());
    // The sub-window fits the picture: the canvas is the picture at zoom 1.
    EXPECT_EQ(a->CanvasSize(), QSize(30, 20));
    const QImage painted = a->Canvas()->grab().toImage();
    EXPECT_EQ(painted.pixel(0, 0), 0xFF000000u | 3u << 16 | 2u << 8 | 1u);
    EXPECT_EQ(painted.pixel(29, 19), 0xFF000000u | 3u << 16 | 2u << 8 | uint8_t(10 * 29 + 19 + 1));

    fImage* b = open(host, 8, 6);
    EXPECT_EQ(host.LastActiveDocumentId, b->HistoryId());
    EXPECT_EQ(host.filter.bits(), b->bits());
    EXPECT_GE(host.deactivated, 1);

    auto* subA = qobject_cast<QMdiSubWindow*>(a->parentWidget());
    ASSERT_NE(subA, nullptr);
    host.area->setActiveSubWindow(subA);
    QApplication::processEvents();
    EXPECT_EQ(host.LastActiveDocumentId, a->HistoryId());
    EXPECT_EQ(host.filter.bits(), a->bits());
    EXPECT_EQ(host.panels["Pixel"], "30 x 20");

    const auto slotA = a->History().SlotFileName(0);
    ASSERT_TRUE(std::filesystem::exists(slotA));
    subA->close();
    QApplication::processEvents();
    EXPECT_EQ(host.docs.size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(slotA));
    EXPECT_EQ(host.clearedPanels, 0);
}

} // namespace
} // namespace ostrivex
