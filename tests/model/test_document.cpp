// The document without a window: the one commit and the undo step it files, undo and redo
// through the model, edits that are shown before they are filed, the edit target as the tab
// and the current layer decide it, and the zoom ladder of the view state.
#include "model/document.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace ostrivex {
namespace {

std::filesystem::path home() { return std::getenv("OSTRIVEX_HOME"); }

// A w x h image whose every blue byte is `blue`.
Bits filled(int w, int h, uint8_t blue) {
    Bits b(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) b(0, x, y) = blue;
    return b;
}

// Writes down what the document tells, one line an event.
class Recorder : public DocumentObserver {
public:
    std::vector<std::string> events;
    void PixelsChanged(const EditTarget& t, bool sizeChanged) override {
        events.push_back("pixels " + std::to_string(int(t.kind)) + (sizeChanged ? " resized" : ""));
    }
    void Committed(const EditTarget&, const QString& caption, const UndoStore::SaveResult& saved) override {
        events.push_back("filed " + std::to_string(saved.slot) + " " + caption.toStdString());
    }
    void HistoryMoved(int32_t shown, bool loaded) override {
        events.push_back("moved " + std::to_string(shown) + (loaded ? "" : " unread"));
    }
};

// A document of 4 x 3 pixels of blue 10, started under "Original", numbered `id`.
struct Started {
    explicit Started(int id) : doc(home()) {
        doc.History().HistoryId = id;
        doc.AddObserver(&seen);
        doc.Start(filled(4, 3, 10), "Original");
        seen.events.clear();
    }
    Document doc;
    Recorder seen;
};

TEST(Document, CommitFilesOneStepUnderItsCaptionAndUndoRedoGoThroughTheModel) {
    Started s(101);
    Document& doc = s.doc;
    EXPECT_EQ(doc.History().HistoryPosition, 1);
    EXPECT_EQ(doc.History().ActionNames[0], "Original");
    EXPECT_FALSE(doc.Changed); // the first state is no change

    doc.Commit(EditTarget::Enhanced(), filled(4, 3, 20), "Brightness");
    EXPECT_EQ(s.seen.events, (std::vector<std::string>{"pixels 1", "filed 1 Brightness"}));
    EXPECT_EQ(doc.History().HistoryPosition, 2);
    EXPECT_EQ(doc.History().HistoryTop, 2);
    EXPECT_EQ(doc.History().ActionNames[1], "Brightness");
    EXPECT_TRUE(doc.Changed);
    EXPECT_EQ(doc.bits(), filled(4, 3, 20));
    // The slot file holds exactly the committed pixels.
    Bits onDisk;
    ASSERT_TRUE(UndoStore::ReadSlotFile(doc.History().SlotFileName(1), onDisk));
    EXPECT_EQ(onDisk, filled(4, 3, 20));

    s.seen.events.clear();
    EXPECT_TRUE(doc.Undo());
    EXPECT_EQ(doc.bits(), filled(4, 3, 10));
    EXPECT_EQ(s.seen.events, (std::vector<std::string>{"pixels 1", "moved 0"}));
    // Below the first state there is no file: nothing changes.
    EXPECT_FALSE(doc.Undo());
    EXPECT_EQ(doc.History().HistoryPosition, 1);
    EXPECT_TRUE(doc.Redo());
    EXPECT_EQ(doc.bits(), filled(4, 3, 20));
    EXPECT_FALSE(doc.Redo());

    // A commit after an undo drops the redo branch.
    doc.Undo();
    doc.Commit(EditTarget::Enhanced(), filled(4, 3, 30), "Invert");
    EXPECT_EQ(doc.History().HistoryTop, 2);
    EXPECT_EQ(doc.History().ActionNames[1], "Invert");
    EXPECT_FALSE(doc.Redo());
    doc.History().ClearHistoryFiles();
}

TEST(Document, ASizeChangeResetsTheSelectionAndUndoBringsTheOldSizeBack) {
    Started s(102);
    Document& doc = s.doc;
    doc.Region().CreateRect(1, 1, 3, 2, cBitRegion::ModeUnion, false);
    // Same size: the selection stays.
    doc.Commit(EditTarget::Enhanced(), filled(4, 3, 11), "Invert");
    EXPECT_EQ(doc.Region().Region()->bounds(), (Rect{1, 1, 3, 2}));
    doc.Commit(EditTarget::Enhanced(), filled(6, 5, 12), "Size");
    EXPECT_EQ(s.seen.events.at(2), "pixels 1 resized");
    EXPECT_TRUE(doc.Region().IsEmptyRegion());
    EXPECT_EQ(doc.Region().RegionMain()->bounds(), (Rect{0, 0, 6, 5}));
    EXPECT_EQ(&doc.EffectiveRegion(), &*doc.Region().RegionMain());

    doc.Region().CreateRect(0, 0, 2, 2, cBitRegion::ModeUnion, false);
    EXPECT_TRUE(doc.Undo());
    EXPECT_EQ(doc.PictureWidth(), 4);
    EXPECT_EQ(doc.bits(), filled(4, 3, 11));
    EXPECT_FALSE(doc.Region().Region().has_value());
    EXPECT_EQ(doc.Region().RegionMain()->bounds(), (Rect{0, 0, 4, 3}));
    // A jump back to the first state keeps the top: both later states stay redoable.
    EXPECT_TRUE(doc.JumpTo(0));
    EXPECT_EQ(doc.bits(), filled(4, 3, 10));
    EXPECT_EQ(doc.History().HistoryTop, 3);
    EXPECT_TRUE(doc.Redo());
    EXPECT_TRUE(doc.Redo());
    EXPECT_EQ(doc.PictureHeight(), 5);
    doc.History().ClearHistoryFiles();
}

TEST(Document, AnOpenEditIsShownThenFiledOnceOrRevertedWithoutAStep) {
    Started s(103);
    Document& doc = s.doc;
    const Bits base = doc.bits();
    Bits* pixels = doc.BeginEdit(EditTarget::Enhanced());
    ASSERT_NE(pixels, nullptr);
    (*pixels)(0, 1, 1) = 99;
    doc.EditChanged();
    EXPECT_TRUE(doc.EditOpen());
    doc.Revert(base);
    EXPECT_FALSE(doc.EditOpen());
    EXPECT_EQ(doc.bits(), base);
    EXPECT_EQ(doc.History().HistoryPosition, 1);
    EXPECT_EQ(s.seen.events, (std::vector<std::string>{"pixels 1", "pixels 1"}));

    // A preview, then the stroke's pixels filed as they stand.
    doc.Preview(EditTarget::Enhanced(), filled(4, 3, 77));
    EXPECT_EQ(doc.History().HistoryPosition, 1);
    doc.Commit(EditTarget::Enhanced(), "Pencil");
    EXPECT_EQ(doc.History().HistoryPosition, 2);
    EXPECT_EQ(doc.History().ActionNames[1], "Pencil");
    EXPECT_FALSE(doc.EditOpen());
    doc.History().ClearHistoryFiles();
}

TEST(Document, TheEditTargetFollowsTheTabAndTheCurrentLayer) {
    Started s(104);
    Document& doc = s.doc;
    EXPECT_EQ(doc.Target(), EditTarget::Enhanced());
    doc.View.Tab = ViewTab::Optimize;
    EXPECT_EQ(doc.Target(), EditTarget::None());
    // Nothing to change on the Optimize tab: no pixels, no step.
    doc.Commit(doc.Target(), filled(4, 3, 50), "Invert");
    EXPECT_EQ(doc.bits(), filled(4, 3, 10));
    EXPECT_EQ(doc.History().HistoryPosition, 1);
    EXPECT_EQ(doc.BeginEdit(doc.Target()), nullptr);

    doc.View.Tab = ViewTab::Layers;
    EXPECT_EQ(doc.Target(), EditTarget::LayersCanvas());
    doc.Layers.Records.resize(2);
    doc.Layers.Records[1].Picture = filled(2, 2, 1);
    doc.Layers.CurrentLayer = 2;
    EXPECT_EQ(doc.Target(), EditTarget::Layer(2));
    // A layer's change is written and told, but the history keeps the Enhanced image only.
    s.seen.events.clear();
    doc.Commit(doc.Target(), filled(2, 2, 5), "Invert");
    EXPECT_EQ(doc.Layers.Find(2)->Picture, filled(2, 2, 5));
    EXPECT_EQ(doc.bits(), filled(4, 3, 10));
    EXPECT_EQ(doc.History().HistoryPosition, 1);
    EXPECT_EQ(s.seen.events, (std::vector<std::string>{"pixels 3", "filed -1 Invert"}));
    // A removed layer keeps its index but takes nothing.
    doc.Layers.Records[1].Removed = true;
    EXPECT_EQ(doc.Pixels(doc.Target()), nullptr);
    doc.Layers.CurrentLayer = 0;
    doc.View.Tab = ViewTab::Enhanced;
    EXPECT_EQ(doc.Target(), EditTarget::Enhanced());
    doc.History().ClearHistoryFiles();
}

TEST(ViewState, TheZoomLadderRunsFromOneSixteenthToFifteen) {
    ViewState v;
    EXPECT_EQ(v.ZoomText(), "1 : 1");
    // Below 1 : 1 the tools' zoom stays 1.
    std::vector<std::string> out;
    while (v.ZoomOut()) out.push_back(v.ZoomText().toStdString());
    EXPECT_EQ(out, (std::vector<std::string>{"1 : 2", "1 : 3", "1 : 4", "1 : 5", "1 : 6",
                                             "1 : 8", "1 : 10", "1 : 12", "1 : 16"}));
    EXPECT_EQ(v.ZoomIndex, 1);
    for (int i = 0; i < 9; ++i) EXPECT_TRUE(v.ZoomIn());
    EXPECT_EQ(v.Scale(), (ViewScale{1, 1}));
    v.SetZoomIndex(99);
    EXPECT_EQ(v.ZoomText(), "15 : 1");
    EXPECT_FALSE(v.ZoomIn());
    EXPECT_FALSE(v.SetScale({1, 7}));
    EXPECT_TRUE(v.SetScale({1, 6}));
    v.SetZoomIndex(0); // the text's clamp; any reduction ends
    EXPECT_EQ(v.Scale(), (ViewScale{1, 1}));

    // Fit: the largest step that shows the whole image.
    v.Fit(6000, 4000, 1600, 1000);
    EXPECT_EQ(v.Scale(), (ViewScale{1, 4}));
    v.Fit(6000, 4000, 1600, 975); // a window of 1600 x 1000 less its tab strip
    EXPECT_EQ(v.Scale(), (ViewScale{1, 5}));
    v.Fit(100, 50, 1600, 1000);
    EXPECT_EQ(v.Scale(), (ViewScale{15, 1}));
    v.Fit(100000, 10, 100, 100);
    EXPECT_EQ(v.Scale(), (ViewScale{1, 16}));
}

} // namespace
} // namespace ostrivex
