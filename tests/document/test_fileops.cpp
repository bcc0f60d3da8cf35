// From a file to a document and back: open, the refusal of a file already open, the
// first undo state, the recent list and folders, and the three save families with their
// rules for a document without a usable name.
#include "document/fileops.h"

#include "app/settings/settings.h"
#include "document/dialogs.h"
#include "document/fake_host.h"
#include "document/paint/paint_test_util.h"
#include "imagefile/imagefile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace ostrivex {
namespace {

namespace fs = std::filesystem;
using test::FakeHost;

// Records the message boxes and answers the save dialog with a fixed name.
struct DialogRecorder {
    QStringList informed, asked;
    QString answer;
    decltype(DocumentDialogs::Inform) realInform = DocumentDialogs::Inform;
    decltype(DocumentDialogs::AskSaveName) realAsk = DocumentDialogs::AskSaveName;
    DialogRecorder() {
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString& title) {
            informed << title + "|" + text;
        };
        DocumentDialogs::AskSaveName = [this](QWidget*, const QString& title, const QString& folder,
                                              const QString& filter, const QString& current) {
            asked << title + "|" + folder + "|" + current + "|" + filter.left(31);
            return answer;
        };
    }
    ~DialogRecorder() {
        DocumentDialogs::Inform = realInform;
        DocumentDialogs::AskSaveName = realAsk;
    }
};

QString freshFolder(const char* name) {
    fs::path p = fs::path(std::getenv("OSTRIVEX_HOME")) / name;
    fs::remove_all(p);
    fs::create_directories(p);
    return QString::fromStdString(p.string());
}

// 3 x 2 pixels, every byte different; channel 3 zero as a loaded file gives it.
Bits sample() {
    Bits b(3, 2);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            for (int c = 0; c < 3; ++c) b(c, x, y) = uint8_t(40 * c + 10 * x + 3 * y + 5);
    return b;
}

TEST(DocumentFiles, OpenRefuseASecondOpenAndSaveUnderAnotherExtension) {
    FakeHost host;
    DialogRecorder dialogs;
    const QString dir = freshFolder("open");
    const QString png = dir + "/pic.png";
    ASSERT_TRUE(SaveImageFile(sample(), png.toStdString(), "png").ok);

    fImage* doc = OpenImageFile(png);
    ASSERT_NE(doc, nullptr);
    EXPECT_TRUE(dialogs.informed.isEmpty());
    ASSERT_EQ(host.docs.size(), 1u);
    EXPECT_EQ(doc->Model().File.FileName, png);
    EXPECT_EQ(doc->Model().File.FileExtension, "png");
    EXPECT_EQ(doc->Caption(), png);
    EXPECT_EQ(doc->bits(), sample());
    // The state at open is slot 0, "Original": 40 + 4 * 7 * 6 bytes.
    EXPECT_EQ(doc->HistoryPosition(), 1);
    const fs::path slot0 = doc->History().SlotFileName(0);
    ASSERT_TRUE(fs::exists(slot0));
    EXPECT_EQ(fs::file_size(slot0), 208u);
    EXPECT_EQ(slot0.filename().string(), "b" + QString::number(doc->HistoryId()).rightJustified(4, '0').toStdString() + "00.dat");
    EXPECT_EQ(host.paste.History()->EntryCaption(0), "Original");
    EXPECT_EQ(FieldText(Settings.OpenFolder), (dir + "/").toStdString());
    EXPECT_EQ(FieldText(Settings.RecentFiles[0]), png.toStdString());
    EXPECT_EQ(host.recentFills, 1);
    EXPECT_EQ(host.optimizeReloads, 1);
    EXPECT_TRUE(fs::exists(TempBitmapName()));

    // The same file again: refused, no second document.
    EXPECT_EQ(loadBitmap(png, "png", false), nullptr);
    EXPECT_EQ(dialogs.informed, QStringList{"Opened|File Already Opened!"});
    EXPECT_EQ(loadBitmap(dir + "/./pic.png", "png", false), nullptr);
    EXPECT_EQ(dialogs.informed.size(), 2);
    EXPECT_EQ(host.docs.size(), 1u);

    // Save as under another extension: the file is a BMP of the same pixels.
    dialogs.answer = dir + "/copy.bmp";
    ASSERT_TRUE(SaveEnhancedAs(doc));
    ASSERT_EQ(dialogs.asked.size(), 1);
    EXPECT_TRUE(dialogs.asked[0].startsWith("Save as|"));
    EXPECT_TRUE(dialogs.asked[0].contains("|" + png + "|All Supported graphic formats |"));
    EXPECT_EQ(doc->Model().File.FileName, dir + "/copy.bmp");
    EXPECT_EQ(doc->Model().File.FileExtension, "bmp");
    EXPECT_EQ(FieldText(Settings.SaveFolder), (dir + "/").toStdString());
    EXPECT_EQ(LoadImageFile((dir + "/copy.bmp").toStdString(), "bmp").pixels, sample());

    // A bmp document with a name: SAVE writes at once, with no dialog.
    Bits changed = sample();
    changed(2, 1, 1) = 0;
    doc->Model().Commit(EditTarget::Enhanced(), Bits(changed), "Brush");
    ASSERT_TRUE(SaveEnhanced(doc));
    EXPECT_EQ(dialogs.asked.size(), 1);
    EXPECT_EQ(LoadImageFile((dir + "/copy.bmp").toStdString(), "bmp").pixels, changed);
}

TEST(DocumentFiles, SaveWithoutAUsableNameAsks) {
    FakeHost host;
    DialogRecorder dialogs;
    const QString dir = freshFolder("asks");
    ASSERT_TRUE(SaveImageFile(sample(), (dir + "/a.png").toStdString(), "png").ok);
    fImage* doc = OpenImageFile(dir + "/a.png");
    ASSERT_NE(doc, nullptr);

    // A document that came from a psd goes to "Save as"; cancelling writes nothing.
    doc->Model().File.FileName = dir + "/b.psd";
    doc->Model().File.FileExtension = "psd";
    EXPECT_FALSE(SaveEnhanced(doc));
    ASSERT_EQ(dialogs.asked.size(), 1);
    EXPECT_TRUE(dialogs.asked[0].startsWith("Save as|"));
    EXPECT_FALSE(fs::exists((dir + "/b.psd").toStdString()));
    EXPECT_EQ(doc->Model().File.FileName, dir + "/b.psd");

    // A new image carries the bare name "New.bmp": it asks too.
    doc->Model().File.FileName = "New.bmp";
    doc->Model().File.FileExtension = "bmp";
    dialogs.answer = dir + "/new.png";
    EXPECT_TRUE(SaveEnhanced(doc));
    EXPECT_EQ(dialogs.asked.size(), 2);
    EXPECT_TRUE(fs::exists((dir + "/new.png").toStdString()));

    // The layered save writes at once only for an olf document.
    QStringList layered;
    DocumentFiles::SaveLayeredFile = [&](fImage*, const QString& path) {
        layered << path;
        return true;
    };
    dialogs.answer = dir + "/l.olf";
    EXPECT_TRUE(SaveLayered(doc));
    ASSERT_EQ(dialogs.asked.size(), 3);
    EXPECT_TRUE(dialogs.asked[2].startsWith("Save Layered Image as|" + dir + "/|*.olf|"));
    doc->Model().File.FileName = dir + "/l.olf";
    doc->Model().File.FileExtension = "olf";
    EXPECT_TRUE(SaveLayered(doc));
    EXPECT_EQ(dialogs.asked.size(), 3);
    EXPECT_EQ(layered, (QStringList{dir + "/l.olf", dir + "/l.olf"}));
    DocumentFiles::SaveLayeredFile = nullptr;

    // The optimized save always asks, with the box's own extension as the filter.
    DocumentFiles::OptimizedFileExtension = [] { return QStringLiteral("gif"); };
    QStringList extracted;
    DocumentFiles::ExtractOptimized = [&](const QString& path) {
        extracted << path;
        return true;
    };
    dialogs.answer = dir + "/o.gif";
    EXPECT_TRUE(SaveOptimized(doc));
    ASSERT_EQ(dialogs.asked.size(), 4);
    EXPECT_EQ(dialogs.asked[3], "Save Optimized as|" + dir + "/||*.gif|*.gif");
    EXPECT_EQ(extracted, QStringList{dir + "/o.gif"});
    DocumentFiles::OptimizedFileExtension = nullptr;
    DocumentFiles::ExtractOptimized = nullptr;
    EXPECT_TRUE(dialogs.informed.isEmpty());
}

TEST(DocumentFiles, AFileNoLoaderServesEndsInTheErrorMessage) {
    FakeHost host;
    DialogRecorder dialogs;
    const QString dir = freshFolder("fails");
    // A PNG named .jpe: listed in the dialog's filter, but no loader has the extension.
    ASSERT_TRUE(SaveImageFile(sample(), (dir + "/x.jpe").toStdString(), "png").ok);
    std::memset(&Settings.RecentFiles, 0, sizeof Settings.RecentFiles);
    EXPECT_EQ(OpenImageFile(dir + "/x.jpe"), nullptr);
    EXPECT_EQ(dialogs.informed, QStringList{"Ostrivex|Unexpected error loading image"});
    EXPECT_TRUE(host.docs.empty());
    EXPECT_EQ(FieldText(Settings.RecentFiles[0]), "");

    // An olf file without the layered reader fails the same way; with it, the reader
    // makes the document and the file joins the recent list.
    dialogs.informed.clear();
    EXPECT_EQ(loadBitmap(dir + "/y.olf", "olf", false), nullptr);
    EXPECT_EQ(dialogs.informed, QStringList{"Ostrivex|Unexpected error loading image"});
    fImage layered;
    DocumentFiles::OpenLayeredFile = [&](const QString&) { return &layered; };
    EXPECT_EQ(loadBitmap(dir + "/y.olf", "OLF", false), &layered);
    EXPECT_EQ(FieldText(Settings.RecentFiles[0]), (dir + "/y.olf").toStdString());
    DocumentFiles::OpenLayeredFile = nullptr;

    // A trailing terminator from the dialog is cut when the name does not exist.
    dialogs.informed.clear();
    ASSERT_TRUE(SaveImageFile(sample(), (dir + "/z.png").toStdString(), "png").ok);
    fImage* doc = OpenImageFile(dir + "/z.png" + QChar(' '));
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(doc->Model().File.FileName, dir + "/z.png");
    EXPECT_TRUE(dialogs.informed.isEmpty());
}

TEST(DocumentFiles, ThePreviewsPixelsServeOnlyTheFileItLoaded) {
    FakeHost host;
    DialogRecorder dialogs;
    const QString dir = freshFolder("preview");
    const Bits other = test::solidBits(3, 2, 200, 0, 0);
    ASSERT_TRUE(SaveImageFile(sample(), (dir + "/a.png").toStdString(), "png").ok);
    ASSERT_TRUE(SaveImageFile(other, (dir + "/b.png").toStdString(), "png").ok);

    // The preview last showed b.png, the user chose a.png: a.png is loaded again.
    ImageFileResult preview = LoadImageFile((dir + "/b.png").toStdString(), "png");
    ASSERT_TRUE(preview.ok);
    fImage* a = OpenChosenFile(dir + "/a.png", dir + "/b.png", preview);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->bits(), sample());

    // The preview loaded the chosen file: its pixels are taken as they are (the marked
    // byte shows that the file was not decoded a second time).
    preview.pixels(0, 0, 0) = 77;
    fImage* b = OpenChosenFile(dir + "/b.png", dir + "/b.png", preview);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(b->bits()(0, 0, 0), 77);
    EXPECT_EQ(b->bits()(0, 1, 0), 200);
    EXPECT_TRUE(dialogs.informed.isEmpty());
}

TEST(DocumentFiles, ANewDocumentIsFilledAndSavedAsItsFirstState) {
    FakeHost host;
    fImage* doc = NewDocument(4, 3, false, 0x00332211u);
    ASSERT_NE(doc, nullptr);
    ASSERT_EQ(host.docs.size(), 1u);
    const Bits expected = test::solidBits(4, 3, 0x33, 0x22, 0x11);
    EXPECT_EQ(doc->bits(), expected);
    EXPECT_EQ(doc->Model().File.FileName, "New.bmp");
    EXPECT_EQ(doc->Caption(), QString("Image%1").arg(doc->HistoryId()));
    EXPECT_EQ(doc->HistoryPosition(), 1);
    EXPECT_EQ(doc->History().ActionNames[0], "New Image Document");
    EXPECT_EQ(host.paste.History()->EntryCaption(0), "New Image Document");
    Bits slot0;
    ASSERT_TRUE(UndoStore::ReadSlotFile(doc->History().SlotFileName(0), slot0));
    EXPECT_EQ(slot0, expected);

    fImage* clear = NewDocument(2, 2, true, 0x00FFFFFFu);
    ASSERT_NE(clear, nullptr);
    EXPECT_EQ(clear->bits(), Bits(2, 2));
    EXPECT_EQ(clear->HistoryId(), doc->HistoryId() + 1);
    EXPECT_EQ(NewDocument(0, 3, false, 0), nullptr);
    EXPECT_EQ(host.docs.size(), 2u);
}

} // namespace
} // namespace ostrivex
