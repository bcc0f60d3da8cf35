// Cut, copy, the clip history of the History Box, the platform clipboard, the new documents
// made from a document or the clipboard, and crop.
#include "document/clipboard.h"

#include "document/dialogs.h"
#include "document/doc_test_util.h"
#include "document/fake_host.h"
#include "document/fimage.h"
#include "document/fpaste.h"
#include "pixel/thumbfit.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabWidget>

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace ostrivex {
namespace {

using test::FakeHost;

// Pixel (x, y) has blue 10x + y + 1, green 2, red 3 and channel 3 = 9.
Bits numbered(int w, int h) {
    return test::numbered(w, h, 9);
}

fImage* makeDocument(FakeHost& host, Bits pixels) {
    fImage* doc = test::makeDocument(host, std::move(pixels), 200, 200);
    host.filter.SetBits(doc->bits());
    doc->GiveFilterRegion(true);
    return doc;
}

// The four bytes of pixel (x, y).
std::array<int, 4> px(const Bits& b, int x, int y) {
    return {b(0, x, y), b(1, x, y), b(2, x, y), b(3, x, y)};
}
constexpr std::array<int, 4> kMasked{0, 0, 0, 255};
constexpr std::array<int, 4> kBlank{0, 0, 0, 0};
std::array<int, 4> src(int x, int y) { return {10 * x + y + 1, 2, 3, 9}; }

// Records the information boxes instead of showing them.
struct BoxRecorder {
    BoxRecorder() {
        saved = DocumentDialogs::Inform;
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString& title) {
            texts << text;
            titles << title;
        };
    }
    ~BoxRecorder() { DocumentDialogs::Inform = saved; }
    std::function<void(QWidget*, const QString&, const QString&)> saved;
    QStringList texts, titles;
};

TEST(ClipboardCut, UnderTwoByTwoShowsTheBoxAndChangesNothing) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(6, 5));
    const Bits before = doc->bits();
    ClipHistory* clips = host.paste.Clips();

    // A selection of 1 x 5 pixels.
    doc->Region().CreateRect(1, 0, 2, 5, cBitRegion::ModeUnion, false);
    {
        BoxRecorder boxes;
        EXPECT_FALSE(CutBits(*doc, host, "Cut"));
        EXPECT_FALSE(CopyBits(*doc, host));
        EXPECT_EQ(boxes.texts, QStringList({"Minimum cut size: 2 x 2", "Minimum copy size: 2 x 2"}));
        EXPECT_EQ(boxes.titles, QStringList({"Ostrivex", "Ostrivex"}));
    }
    EXPECT_EQ(doc->bits(), before);
    EXPECT_TRUE(host.ClipBuffer.empty());
    EXPECT_EQ(clips->SlotName(0), "");
    EXPECT_EQ(clips->Slot(0).Width(), 0);
    EXPECT_TRUE(clips->ClipChanged); // set before the size test
    EXPECT_EQ(doc->HistoryPosition(), 1);

    // 5 x 1 the other way, and no selection at all (the box reads as 0 x 0): the box again.
    doc->Region().Init(0, 0, 6, 5);
    doc->Region().CreateRect(0, 2, 5, 3, cBitRegion::ModeUnion, false);
    {
        BoxRecorder boxes;
        EXPECT_FALSE(CutBits(*doc, host, "Cut"));
        doc->Region().Init(0, 0, 6, 5);
        EXPECT_FALSE(CopyBits(*doc, host));
        EXPECT_EQ(boxes.texts, QStringList({"Minimum cut size: 2 x 2", "Minimum copy size: 2 x 2"}));
    }
    EXPECT_EQ(doc->bits(), before);

    // 2 x 2 is enough.
    doc->Region().CreateRect(4, 3, 6, 5, cBitRegion::ModeUnion, false);
    BoxRecorder boxes;
    EXPECT_TRUE(CopyBits(*doc, host));
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_EQ(host.ClipBuffer.width(), 2);
    EXPECT_EQ(host.ClipBuffer.height(), 2);
    EXPECT_EQ(px(host.ClipBuffer, 1, 1), src(5, 4));
}

TEST(ClipboardCopy, EllipseGivesTheSkipMask) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(6, 5));
    const Bits before = doc->bits();
    // The ellipse in the box (1, 0)-(5, 4): a pixel is inside when its centre is, so the
    // 4 x 4 box loses its four corners ((x + 0.5 - 3)^2 / 4 + (y + 0.5 - 2)^2 / 4 is 1.125
    // there, at most 0.625 elsewhere).
    doc->Region().CreateEllipse(1, 0, 5, 4, cBitRegion::ModeUnion, false);
    doc->SelectionChanged();
    ASSERT_TRUE(CopyBits(*doc, host));

    const Bits& clip = host.ClipBuffer;
    ASSERT_EQ(clip.width(), 4);
    ASSERT_EQ(clip.height(), 4);
    const std::array<std::array<std::array<int, 4>, 4>, 4> want{{
        {kMasked, src(2, 0), src(3, 0), kMasked},
        {src(1, 1), src(2, 1), src(3, 1), src(4, 1)},
        {src(1, 2), src(2, 2), src(3, 2), src(4, 2)},
        {kMasked, src(2, 3), src(3, 3), kMasked},
    }};
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_EQ(px(clip, x, y), want[y][x]) << x << "," << y;
    // The guard band stays zero.
    EXPECT_EQ(px(clip, -1, 0), kBlank);
    EXPECT_EQ(px(clip, 4, 3), kBlank);

    // A copy leaves the document and cFilter as they were.
    EXPECT_EQ(doc->bits(), before);
    EXPECT_EQ(host.filter.bits(), before);
    EXPECT_EQ(doc->HistoryPosition(), 1);

    // The clip went to slot 0.
    ClipHistory* clips = host.paste.Clips();
    EXPECT_EQ(clips->SlotName(0), "1");
    EXPECT_EQ(clips->Slot(0).pixels, clip);
    EXPECT_EQ(clips->SizeText(0), "4 x 4");
    EXPECT_EQ(clips->Message(), "Clip History:  4 x 4");
}

TEST(ClipboardCut, BlanksTheSelectionOnly) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(6, 5));
    doc->Region().CreateEllipse(1, 0, 5, 4, cBitRegion::ModeUnion, false);
    doc->SelectionChanged();
    ASSERT_TRUE(CutBits(*doc, host, "Cut"));

    // The clip is the one a copy takes.
    EXPECT_EQ(px(host.ClipBuffer, 0, 0), kMasked);
    EXPECT_EQ(px(host.ClipBuffer, 1, 0), src(2, 0));
    EXPECT_EQ(px(host.ClipBuffer, 3, 2), src(4, 2));
    // Inside the ellipse all four bytes are 0; the corners of its box and everything
    // outside the box keep their pixels.
    const Bits& b = doc->bits();
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 6; ++x) {
            const bool inBox = x >= 1 && x <= 4 && y <= 3;
            const bool corner = (x == 1 || x == 4) && (y == 0 || y == 3);
            EXPECT_EQ(px(b, x, y), inBox && !corner ? kBlank : src(x, y)) << x << "," << y;
        }
    // cFilter holds the new pixels (the base of the next stroke).
    EXPECT_EQ(host.filter.bits(), b);
    EXPECT_EQ(host.paste.Clips()->SlotName(0), "1");
}

TEST(ClipHistorySlots, TargetFollowsTheSelectedSlot) {
    FakeHost host;
    ClipHistory* clips = host.paste.Clips();
    const Bits a = numbered(3, 2), b = numbered(2, 3), c = numbered(5, 1);

    // Selected slot 0 is empty: it is the target.
    EXPECT_EQ(clips->SelectedIndex(), 0);
    EXPECT_EQ(clips->StoreClip(a), 0);
    EXPECT_EQ(clips->SelectedIndex(), 0);
    EXPECT_EQ(clips->SlotName(0), "1");
    // Slot 0 is filled and slot 1 empty: slot 1, which becomes the selected one.
    EXPECT_EQ(clips->StoreClip(b), 1);
    EXPECT_EQ(clips->SelectedIndex(), 1);
    EXPECT_EQ(clips->SlotName(1), "2");
    EXPECT_EQ(clips->Slot(1).pixels, b);
    EXPECT_EQ(clips->Slot(0).pixels, a);
    // Both filled: the selected slot's clip is replaced.
    clips->SelectSlot(0);
    EXPECT_EQ(clips->StoreClip(c), 0);
    EXPECT_EQ(clips->Slot(0).pixels, c);
    EXPECT_EQ(clips->SlotName(0), "1");
    EXPECT_EQ(clips->SelectedIndex(), 0);
    // An empty selected slot further down.
    clips->SelectSlot(8);
    EXPECT_EQ(clips->StoreClip(a), 8);
    EXPECT_EQ(clips->SlotName(8), "9");
    // The last slot is its own target, empty or filled.
    clips->SelectSlot(9);
    EXPECT_EQ(clips->StoreClip(b), 9);
    EXPECT_EQ(clips->SlotName(9), "10");
    EXPECT_EQ(clips->StoreClip(c), 9);
    EXPECT_EQ(clips->Slot(9).pixels, c);
    // Slot 8 filled, 9 filled: 8 keeps the selection and is replaced.
    clips->SelectSlot(8);
    EXPECT_EQ(clips->StoreClip(b), 8);
    EXPECT_EQ(clips->Slot(8).pixels, b);
    for (int i : {2, 3, 4, 5, 6, 7}) EXPECT_EQ(clips->SlotName(i), "") << i;
}

TEST(ClipHistorySlots, HeaderRecordBytes) {
    FakeHost host;
    ClipHistory* clips = host.paste.Clips();
    const Bits clip = numbered(5, 2);
    clips->StoreClip(clip);
    const std::vector<uint8_t> record = ClipSlotRecord(clips->Slot(0));
    ASSERT_EQ(record.size(), 40u + 4u * 9u * 6u);
    const std::vector<uint8_t> header(record.begin(), record.begin() + 40);
    const std::vector<uint8_t> want{40,   0, 0, 0,    // size
                                    5,    0, 0, 0,    // width W
                                    0xFE, 0xFF, 0xFF, 0xFF, // height -H (-2)
                                    1,    0,          // planes
                                    32,   0,          // bit count
                                    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(header, want);
    // Then the pixel array with its guard band: pixel (0, 0) sits after two rows of 9
    // pixels and two pixels of the band.
    EXPECT_EQ(std::vector<uint8_t>(record.begin() + 40, record.end()),
              std::vector<uint8_t>(clip.data(), clip.data() + clip.size()));
    const size_t first = 40 + (2 * 9 + 2) * 4;
    EXPECT_EQ(record[first], 1);
    EXPECT_EQ(record[first + 3], 9);
    EXPECT_EQ(record[first - 4], 0);
    EXPECT_EQ(clips->Slot(0).Width(), 5);
    EXPECT_EQ(clips->Slot(0).Height(), 2);
}

TEST(ClipHistorySlots, ThumbnailSizeTextAndMessage) {
    // Fitting into 80 x 60: the relatively longer side fills the box.
    EXPECT_EQ(FitToBox(3, 2, 80, 60), (FitSize{80, 53}));  // 2 * 80 / 3 = 53.3
    EXPECT_EQ(FitToBox(2, 3, 80, 60), (FitSize{40, 60}));  // 2 * 60 / 3
    EXPECT_EQ(FitToBox(4, 3, 80, 60), (FitSize{80, 60}));  // the box's own proportions
    EXPECT_EQ(FitToBox(160, 3, 80, 60), (FitSize{80, 2})); // 1.5 rounds to even
    EXPECT_EQ(FitToBox(160, 5, 80, 60), (FitSize{80, 2})); // 2.5 rounds to even
    EXPECT_EQ(FitToBox(1000, 1, 80, 60), (FitSize{80, 1})); // never below 1
    EXPECT_EQ(FitToBox(0, 5, 80, 60), (FitSize{0, 0}));

    FakeHost host;
    ClipHistory* clips = host.paste.Clips();
    EXPECT_EQ(clips->Message(), "Clip History");
    EXPECT_EQ(clips->ThumbnailSize(0), QSize(0, 0));
    EXPECT_EQ(clips->SizeText(0), "");

    // A 4 x 4 clip with masked corners, drawn 60 x 60 in the middle of the 80 x 60 box.
    Bits clip = numbered(4, 4);
    for (auto [x, y] : {std::pair{0, 0}, {3, 0}, {0, 3}, {3, 3}}) {
        clip(0, x, y) = clip(1, x, y) = clip(2, x, y) = 0;
        clip(3, x, y) = 255;
    }
    clips->StoreClip(clip);
    EXPECT_EQ(clips->ThumbnailSize(0), QSize(60, 60));
    EXPECT_EQ(clips->SizeText(0), "4 x 4");
    EXPECT_EQ(clips->Message(), "Clip History:  4 x 4");
    const QImage thumb = clips->Thumbnail(0);
    ASSERT_EQ(thumb.size(), QSize(80, 60));
    EXPECT_EQ(thumb.pixel(9, 0), qRgb(255, 255, 255)); // left of the picture
    EXPECT_EQ(thumb.pixel(10, 0), qRgb(0, 0, 0));      // the masked corner
    // Nearest neighbour at 4/60: column 20 reads clip column 1, row 59 reads row 3.
    EXPECT_EQ(thumb.pixel(10 + 20, 0), qRgb(3, 2, 11));
    EXPECT_EQ(thumb.pixel(10 + 20, 59), qRgb(3, 2, 14));
    EXPECT_EQ(thumb.pixel(70, 30), qRgb(255, 255, 255)); // right of the picture

    // A 3 x 2 clip into slot 1; selecting a slot tells its size, an empty one none.
    clips->StoreClip(numbered(3, 2));
    EXPECT_EQ(clips->ThumbnailSize(1), QSize(80, 53));
    EXPECT_EQ(clips->SizeText(1), "3 x 2");
    EXPECT_EQ(clips->Message(), "Clip History:  3 x 2");
    clips->SelectSlot(0);
    EXPECT_EQ(clips->Message(), "Clip History:  4 x 4");
    clips->SelectSlot(5);
    EXPECT_EQ(clips->Message(), "Clip History");
}

TEST(ClipHistorySlots, ClearOneAndClearAllDifferOnAHalfSlot) {
    FakeHost host;
    ClipHistory* clips = host.paste.Clips();
    clips->StoreClip(numbered(3, 2)); // slot 0
    clips->StoreClip(numbered(5, 1)); // slot 1
    clips->SelectSlot(3);
    clips->StoreClip(numbered(2, 2)); // slot 3
    // Slot 1 keeps its width and loses its height.
    clips->Slot(1).header.biHeight = 0;

    // Clearing the selected slot needs both counts: slot 1 stays as it is.
    clips->SelectSlot(1);
    clips->ClearCLip(false);
    EXPECT_EQ(clips->SlotName(1), "2");
    EXPECT_EQ(clips->Slot(1).Width(), 5);
    EXPECT_FALSE(clips->Slot(1).pixels.empty());
    // Slot 0 has both: cleared.
    clips->SelectSlot(0);
    clips->ClearCLip(false);
    EXPECT_EQ(clips->SlotName(0), "");
    EXPECT_EQ(clips->Slot(0).Width(), 0);
    EXPECT_EQ(clips->Slot(0).Height(), 0);
    EXPECT_TRUE(clips->Slot(0).pixels.empty());
    EXPECT_EQ(clips->SizeText(0), "");
    EXPECT_EQ(clips->ThumbnailSize(0), QSize(0, 0));
    EXPECT_EQ(clips->Message(), "Clip History");
    EXPECT_EQ(clips->SlotName(3), "4");

    // Clearing all takes either count: slot 1 goes, and slot 3 with it.
    clips->ClearCLip(true);
    for (int i = 0; i < ClipHistory::kSlotCount; ++i) {
        EXPECT_EQ(clips->SlotName(i), "") << i;
        EXPECT_EQ(clips->Slot(i).Width(), 0) << i;
        EXPECT_TRUE(clips->Slot(i).pixels.empty()) << i;
    }
    // A slot with a height only counts as filled for clear-all too.
    clips->Slot(6).header.biHeight = -4;
    clips->ClearCLip(true);
    EXPECT_EQ(clips->Slot(6).Height(), 0);
}

TEST(ClipHistorySlots, PasteFromASlot) {
    FakeHost host;
    ClipHistory* clips = host.paste.Clips();
    // An empty slot: nothing at all.
    EXPECT_FALSE(clips->PasteFromSlot(0));
    EXPECT_TRUE(host.ClipBuffer.empty());
    EXPECT_TRUE(host.commands.isEmpty());

    const Bits clip = numbered(3, 2);
    clips->StoreClip(clip);
    host.ClipBuffer = numbered(7, 7); // something else was pasted last
    EXPECT_TRUE(clips->PasteFromSlot(0));
    EXPECT_EQ(host.ClipBuffer, clip);
    EXPECT_EQ(host.commands, QStringList({"PASTE"}));

    // A slot with a width and no height pastes nothing.
    clips->Slot(0).header.biHeight = 0;
    host.ClipBuffer = Bits();
    EXPECT_FALSE(clips->PasteFromSlot(0));
    EXPECT_TRUE(host.ClipBuffer.empty());
    EXPECT_EQ(host.commands.size(), 1);
}

TEST(ClipHistorySlots, MouseAndButtons) {
    FakeHost host;
    ClipHistory* clips = host.paste.Clips();
    // The clip history is the first tab of the History Box, the undo list the second.
    EXPECT_EQ(host.paste.Tabs()->widget(0), clips);
    EXPECT_EQ(clips->objectName(), "tabClips");
    EXPECT_EQ(host.paste.Tabs()->widget(1)->objectName(), "tabActions");

    clips->StoreClip(numbered(3, 2));
    clips->StoreClip(numbered(2, 2));
    EXPECT_EQ(clips->SelectedIndex(), 1);
    auto* slot0 = clips->findChild<QWidget*>("slot0");
    ASSERT_NE(slot0, nullptr);
    EXPECT_EQ(clips->findChild<QLabel*>("BT0")->text(), "1");
    EXPECT_EQ(clips->findChild<QLabel*>("BR1")->text(), "2 x 2");
    EXPECT_EQ(clips->findChild<QLabel*>("LMessage")->text(), "Clip History:  2 x 2");

    const QPointF at(5, 5);
    QMouseEvent press(QEvent::MouseButtonPress, at, slot0->mapToGlobal(at), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(slot0, &press);
    EXPECT_EQ(clips->SelectedIndex(), 0);
    EXPECT_EQ(clips->Message(), "Clip History:  3 x 2");
    EXPECT_TRUE(host.commands.isEmpty()); // a single click only selects
    QMouseEvent twice(QEvent::MouseButtonDblClick, at, slot0->mapToGlobal(at), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(slot0, &twice);
    EXPECT_EQ(host.commands, QStringList({"PASTE"}));
    EXPECT_EQ(host.ClipBuffer, numbered(3, 2));

    // "Clear" takes the selected slot, "Clear All" the rest.
    clips->findChild<QPushButton*>("cmdClear")->click();
    EXPECT_EQ(clips->SlotName(0), "");
    EXPECT_EQ(clips->SlotName(1), "2");
    clips->findChild<QPushButton*>("cmdClearAll")->click();
    EXPECT_EQ(clips->SlotName(1), "");
    EXPECT_EQ(clips->findChild<QLabel*>("BR1")->text(), "");
}

TEST(ClipboardPaste, SetsThePendingFlagWithAClip) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(4, 4));
    host.ActionLabel = "Brush";
    EXPECT_FALSE(PasteBits(*doc, host)); // nothing to paste yet
    EXPECT_FALSE(host.PendingPaste);
    EXPECT_EQ(host.ActionLabel, "Brush");
    host.ClipBuffer = numbered(2, 2);
    host.filter.SetBits(numbered(9, 9)); // stale
    EXPECT_TRUE(PasteBits(*doc, host));
    EXPECT_TRUE(host.PendingPaste);
    EXPECT_EQ(host.ActionLabel, "Paste");
    EXPECT_EQ(host.filter.bits(), doc->bits());
    EXPECT_EQ(doc->HistoryPosition(), 1); // the click that fixes the paste saves the state
}

TEST(PlatformClipboard, CopyDropsChannelThreeAndReadsBack) {
    FakeHost host;
    Bits pixels(2, 1);
    // (blue, green, red, channel 3)
    const uint8_t values[2][4] = {{10, 20, 30, 77}, {200, 100, 0, 0}};
    for (int x = 0; x < 2; ++x)
        for (int c = 0; c < 4; ++c) pixels(c, x, 0) = values[x][c];
    fImage* doc = makeDocument(host, pixels);
    ASSERT_TRUE(BitsCopyToClipboard(*doc));
    const QImage got = QGuiApplication::clipboard()->image();
    ASSERT_EQ(got.size(), QSize(2, 1));
    EXPECT_EQ(got.pixel(0, 0), qRgba(30, 20, 10, 255));
    EXPECT_EQ(got.pixel(1, 0), qRgba(0, 100, 200, 255));

    // Back into the document as its picture: channel 3 is 0 now.
    QImage wide(3, 2, QImage::Format_RGB32);
    const QRgb colours[2][3] = {{qRgb(1, 2, 3), qRgb(4, 5, 6), qRgb(7, 8, 9)},
                                {qRgb(250, 0, 5), qRgb(0, 250, 5), qRgb(5, 0, 250)}};
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) wide.setPixel(x, y, colours[y][x]);
    QGuiApplication::clipboard()->setImage(wide);
    ASSERT_TRUE(PasteFromClipboard(*doc));
    ASSERT_EQ(doc->PictureWidth(), 3);
    ASSERT_EQ(doc->PictureHeight(), 2);
    EXPECT_EQ(px(doc->bits(), 0, 0), (std::array<int, 4>{3, 2, 1, 0}));
    EXPECT_EQ(px(doc->bits(), 2, 1), (std::array<int, 4>{250, 0, 5, 0}));

    // An empty clipboard changes nothing.
    QGuiApplication::clipboard()->clear();
    EXPECT_FALSE(PasteFromClipboard(*doc));
    EXPECT_EQ(doc->PictureWidth(), 3);
}

TEST(PlatformClipboard, CreateFromClipboardMakesADocument) {
    FakeHost host;
    QGuiApplication::clipboard()->clear();
    EXPECT_EQ(CreateFromClipboard(host), nullptr);
    EXPECT_TRUE(host.docs.empty());

    QImage img(2, 2, QImage::Format_ARGB32);
    img.setPixel(0, 0, qRgba(255, 0, 0, 255));
    img.setPixel(1, 0, qRgba(0, 255, 0, 255));
    img.setPixel(0, 1, qRgba(0, 0, 255, 255));
    img.setPixel(1, 1, qRgba(9, 8, 7, 255));
    QGuiApplication::clipboard()->setImage(img);
    fImage* doc = CreateFromClipboard(host);
    ASSERT_NE(doc, nullptr);
    ASSERT_EQ(host.docs, std::vector<fImage*>{doc});
    ASSERT_EQ(doc->PictureWidth(), 2);
    ASSERT_EQ(doc->PictureHeight(), 2);
    EXPECT_EQ(px(doc->bits(), 0, 0), (std::array<int, 4>{0, 0, 255, 0}));
    EXPECT_EQ(px(doc->bits(), 1, 0), (std::array<int, 4>{0, 255, 0, 0}));
    EXPECT_EQ(px(doc->bits(), 0, 1), (std::array<int, 4>{255, 0, 0, 0}));
    EXPECT_EQ(px(doc->bits(), 1, 1), (std::array<int, 4>{7, 8, 9, 0}));
    EXPECT_EQ(doc->Caption(), "Image1");
    EXPECT_EQ(doc->Model().File.FileName, "New.bmp");
    EXPECT_EQ(doc->HistoryPosition(), 1);
    EXPECT_EQ(doc->History().ActionNames[0], "Original");
}

TEST(NewDocuments, NewCopyAndCrops) {
    FakeHost host;
    fImage* doc = makeDocument(host, numbered(6, 5));
    const Bits before = doc->bits();

    // Create New Copy: every byte, channel 3 included, in a document of its own.
    fImage* copy = CreateNewCopy(*doc, host);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->bits(), before);
    EXPECT_EQ(copy->Caption(), "Image2");
    EXPECT_EQ(host.docs.size(), 2u);

    // Without a selection neither crop does anything.
    EXPECT_FALSE(CropToSelection(*doc, host, "Crop"));
    EXPECT_EQ(NewImageFromCrop(*doc, host), nullptr);
    EXPECT_EQ(host.docs.size(), 2u);

    // A selection wholly outside the picture (as a selection file can give) crops nothing,
    // and gives no clip.
    doc->Region().CreateRect(10, 10, 14, 14, cBitRegion::ModeUnion, false);
    EXPECT_FALSE(CropToSelection(*doc, host, "Crop"));
    EXPECT_EQ(NewImageFromCrop(*doc, host), nullptr);
    EXPECT_FALSE(CopyBits(*doc, host));
    EXPECT_EQ(doc->bits(), before);
    EXPECT_EQ(host.paste.Clips()->SlotName(0), "");
    EXPECT_EQ(host.docs.size(), 2u);
    doc->Region().Init(0, 0, 6, 5);

    // The crops take the selection's whole box, the ellipse's corners included.
    doc->Region().CreateEllipse(1, 0, 5, 4, cBitRegion::ModeUnion, false);
    doc->SelectionChanged();
    fImage* cropped = NewImageFromCrop(*doc, host);
    ASSERT_NE(cropped, nullptr);
    ASSERT_EQ(cropped->PictureWidth(), 4);
    ASSERT_EQ(cropped->PictureHeight(), 4);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_EQ(px(cropped->bits(), x, y), src(x + 1, y));
    EXPECT_EQ(doc->bits(), before); // the source stays

    ASSERT_TRUE(CropToSelection(*doc, host, "Crop"));
    EXPECT_EQ(doc->bits(), cropped->bits());
    EXPECT_EQ(doc->History().ActionNames[size_t(doc->HistoryPosition() - 1)], "Crop");
    EXPECT_EQ(doc->PictureRect, (Rect{0, 0, 4, 4}));
    // The old selection does not fit the new canvas: the whole image is selected again.
    EXPECT_TRUE(doc->Region().IsEmptyRegion());
    EXPECT_EQ(doc->EffectiveRegion().bounds(), (Rect{0, 0, 4, 4}));
    EXPECT_EQ(host.filter.bits(), doc->bits());
}

} // namespace
} // namespace ostrivex
