// The Browser Box on a folder of small pictures, a broken file and things that are no
// files: the details list, the thumbnail panel, the shared thumbnail cache, opening a file.
#include "browser_test_util.h"

#include "app/settings/settings.h"
#include "document/fake_host.h"
#include "utilities/browser/ftoolbrowser.h"

#include <QFontMetrics>
#include <QProgressBar>
#include <QScrollBar>
#include <QCryptographicHash>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

namespace ostrivex::test {
namespace {

const std::string kLongName = "a very long file name that will never fit under a thumbnail.png";
// Not valid UTF-8: the helper still opens it by its bytes.
const std::string kBadName = "bad\xff.png";

class Browser : public ::testing::Test {
  protected:
    void SetUp() override {
        SetDefaultSettings(Settings, AppFolder());
        cache_ = QString::fromStdString(store_.path());
        const std::string& d = dir_.path();
        savePicture(d + "/a.png", 4, 3);
        savePicture(d + "/B.bmp", 10, 20);
        savePicture(d + "/c.jpg", 300, 200);
        savePicture(d + "/" + kLongName, 8, 8);
        savePicture(d + "/.hidden.png", 5, 5);
        savePicture(d + "/readonly.tga", 6, 4);
        savePicture(d + "/" + kBadName, 7, 2);
        ::chmod((d + "/readonly.tga").c_str(), 0444);
        writeFile(d + "/broken.jpg", "these bytes are no picture");
        writeFile(d + "/notes.txt", std::string(1500, 'n'));
        ASSERT_EQ(::mkfifo((d + "/pipe.jpg").c_str(), 0600), 0);
        ASSERT_EQ(::symlink((d + "/missing.png").c_str(), (d + "/gone.png").c_str()), 0);
        ASSERT_EQ(::symlink((d + "/a.png").c_str(), (d + "/link.png").c_str()), 0);
        std::filesystem::create_directory(d + "/sub");
    }

    // A browser on the test folder, in `view`, once the listing and thumbnails are done.
    std::unique_ptr<fToolBrowser> open(int view) {
        auto b = std::make_unique<fToolBrowser>(nullptr, 2, cache_);
        b->resize(400, 500);
        b->SetView(view);
        b->SetFolder(QString::fromStdString(dir_.path()));
        EXPECT_TRUE(waitFor([&] { return !b->Busy(); }));
        return b;
    }

    // The position of the panel item with this name, -1 if none.
    static int find(const ThumbPanel& p, const QString& name) {
        for (int i = 0; i < p.ItemCount(); ++i)
            if (p.ItemAt(i).name == name) return i;
        return -1;
    }

    Scratch dir_, store_;
    QString cache_;
};

// The names other programs use: GLib's escaping (its g_filename_to_uri gave the second
// string) and the standard's own example of an entry's name.
TEST(ThumbnailCacheNames, AreTheDesktops) {
    EXPECT_EQ(ThumbnailCache::FileUri("/tmp/a b#c;d[e]%f~g!$&'()*+,=@:?<>\"|\\^`{}\xc3\xa9\xff.png"),
              "file:///tmp/a%20b%23c%3Bd%5Be%5D%25f~g!$&'()*+,=@:%3F%3C%3E%22%7C%5C%5E%60%7B%7D"
              "%C3%A9%FF.png");
    EXPECT_EQ(ThumbnailCache::EntryName("file:///home/jens/photos/me.png"),
              "c6ee772d9e49320e97ec29a7eb5b1697.png");
    const ThumbnailCache cache("/c");
    EXPECT_EQ(cache.EntryPath(ThumbnailCache::SizeFor(128, 100), "file:///x"),
              "/c/normal/" + ThumbnailCache::EntryName("file:///x"));
    EXPECT_EQ(cache.EntryPath(ThumbnailCache::SizeFor(129, 100), "file:///x"),
              "/c/large/" + ThumbnailCache::EntryName("file:///x"));
    EXPECT_TRUE(cache.Holds("/c/normal/a.png"));
    EXPECT_FALSE(cache.Holds("/cx/a.png"));
}

TEST_F(Browser, DetailsListRowsAndColumns) {
    auto b = open(fToolBrowser::Details);
    const DetailsModel& m = *b->Model();
    ASSERT_EQ(m.columnCount(), 7);
    QStringList headers;
    for (int c = 0; c < 7; ++c) headers << m.headerData(c, Qt::Horizontal, Qt::DisplayRole).toString();
    EXPECT_EQ(headers, QStringList({"Name", "Location", "Size (KB)", "Type", "Attributes",
                                    "Date Created", "Last Accessed"}));
    // Files only, by name without regard to case: no folder, FIFO or broken link.
    QStringList names;
    for (int r = 0; r < m.rowCount(); ++r) names << m.Text(r, DetailsModel::Name);
    EXPECT_EQ(names, QStringList({".hidden.png", QString::fromStdString(kLongName), "a.png",
                                  "B.bmp", QFile::decodeName(kBadName.c_str()), "broken.jpg",
                                  "c.jpg", "link.png", "notes.txt", "readonly.tga"}));
    const QString folder = QString::fromStdString(dir_.path());
    EXPECT_EQ(QString::fromLocal8Bit(FieldText(Settings.BrowserFolder).c_str()), folder + "/");
    EXPECT_EQ(m.Text(8, DetailsModel::Location), folder);
    EXPECT_EQ(m.Text(8, DetailsModel::Size), "2 KB"); // 1500 bytes, rounded up
    EXPECT_EQ(m.Text(8, DetailsModel::Attributes), "F,N");
    EXPECT_EQ(m.Text(0, DetailsModel::Attributes), "F,H");
    EXPECT_EQ(m.Text(9, DetailsModel::Attributes), "F,R");
    EXPECT_FALSE(m.Text(9, DetailsModel::Created).isEmpty());
    EXPECT_FALSE(m.Text(9, DetailsModel::Accessed).isEmpty());
    EXPECT_EQ(TypeName("qqq"), "QQQ File");
    EXPECT_FALSE(m.Text(2, DetailsModel::Type).isEmpty());

    // A click on "Size (KB)" sorts by size, largest last.
    b->List()->sortByColumn(DetailsModel::Size, Qt::AscendingOrder);
    EXPECT_EQ(m.Text(m.rowCount() - 1, DetailsModel::Name), "c.jpg");
    EXPECT_EQ(m.Text(0, DetailsModel::Name), "broken.jpg");
}

TEST_F(Browser, ThumbnailPanelSkipsTheBrokenFileAndCutsLongNames) {
    auto b = open(fToolBrowser::Thumbnails);
    const ThumbPanel& p = *b->Panel();
    EXPECT_FALSE(b->Progress()->isVisible());
    // "One Level up.." and the eight pictures that load; broken.jpg is gone.
    ASSERT_EQ(p.ItemCount(), 9);
    EXPECT_EQ(p.ItemAt(0).name, "One Level up..");
    EXPECT_TRUE(p.ItemAt(0).path.isEmpty());
    EXPECT_EQ(find(p, "broken.jpg"), -1);
    for (int i = 1; i < p.ItemCount(); ++i) {
        SCOPED_TRACE(p.ItemAt(i).name.toStdString());
        EXPECT_EQ(p.ItemAt(i).state, ThumbPanel::Item::Shown);
        EXPECT_FALSE(p.ItemAt(i).picture.isNull());
        EXPECT_LE(p.ItemAt(i).picture.width(), 70);
        EXPECT_LE(p.ItemAt(i).picture.height(), 60);
    }
    EXPECT_EQ(p.ItemAt(find(p, "a.png")).sizeText, "4 x 3");
    EXPECT_EQ(p.ItemAt(find(p, "B.bmp")).sizeText, "10 x 20");
    EXPECT_EQ(p.ItemAt(find(p, "c.jpg")).sizeText, "300 x 200");
    EXPECT_EQ(p.ItemAt(find(p, "c.jpg")).picture.width(), 70); // fitted, ratio kept
    EXPECT_NEAR(p.ItemAt(find(p, "c.jpg")).picture.height(), 47, 1);
    EXPECT_EQ(p.ItemAt(find(p, "a.png")).picture.size(), QSize(4, 3)); // never enlarged
    EXPECT_EQ(p.ItemAt(find(p, "link.png")).sizeText, "4 x 3");
    EXPECT_EQ(p.ItemAt(find(p, QFile::decodeName(kBadName.c_str()))).sizeText, "7 x 2");

    // The long name: as many leading characters as fit beside "...", the path whole.
    const ThumbPanel::Item& item = p.ItemAt(find(p, QString::fromStdString(kLongName)));
    const QFontMetrics fm(p.font());
    ASSERT_TRUE(item.label.endsWith("..."));
    const QString head = item.label.chopped(3);
    EXPECT_TRUE(item.name.startsWith(head));
    EXPECT_LE(fm.horizontalAdvance(item.label), 70);
    EXPECT_GT(fm.horizontalAdvance(item.name.left(head.size() + 1) + "..."), 70);
    EXPECT_EQ(item.path, QByteArray::fromStdString(dir_.file(kLongName)));
    EXPECT_EQ(p.ItemAt(find(p, "a.png")).label, "a.png");

    // Rows as wide as the panel: 78-pixel cells.
    EXPECT_EQ(p.Columns(), p.viewport()->width() / 78);
    EXPECT_EQ(p.ItemRect(p.Columns()).topLeft(), QPoint(0, p.ItemRect(0).height()));
}

TEST_F(Browser, SecondVisitComesFromTheSharedCache) {
    {
        auto b = open(fToolBrowser::Thumbnails);
        EXPECT_EQ(b->Panel()->Service().Decodes(), 9); // eight pictures and the broken file
    }
    // The entry of c.jpg under the standard's name, with the standard's keys.
    const QByteArray uri = "file://" + QByteArray::fromStdString(dir_.file("c.jpg"));
    const QString entry = cache_ + "/normal/" +
                          QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex() + ".png";
    const QImage stored(entry, "png");
    ASSERT_FALSE(stored.isNull()) << entry.toStdString();
    struct stat st {};
    ASSERT_EQ(::stat(dir_.file("c.jpg").c_str(), &st), 0);
    EXPECT_EQ(stored.text("Thumb::URI").toUtf8(), uri);
    EXPECT_EQ(stored.text("Thumb::MTime").toLongLong(), int64_t(st.st_mtime));
    EXPECT_EQ(stored.text("Thumb::Image::Width"), "300");
    EXPECT_EQ(stored.text("Thumb::Image::Height"), "200");
    EXPECT_EQ(stored.width(), 128);
    EXPECT_TRUE(QFile::exists(cache_ + "/normal/" + ThumbnailCache::EntryName("file://" +
                              QByteArray::fromStdString(dir_.path()) + "/bad%FF.png")));

    // Another program's entry (no picture size in it) for a new file is shown at once.
    savePicture(dir_.file("new.png"), 20, 10, 0x0000FF);
    ASSERT_EQ(::stat(dir_.file("new.png").c_str(), &st), 0);
    ThumbnailCache::Entry foreign;
    foreign.picture = QImage(20, 10, QImage::Format_RGB32);
    foreign.picture.fill(Qt::green);
    const ThumbnailCache cache(cache_);
    ASSERT_TRUE(cache.Write(ThumbnailCache::Size::Normal,
                            ThumbnailCache::FileUri(QByteArray::fromStdString(dir_.file("new.png"))),
                            int64_t(st.st_mtime), 0, foreign));

    auto b = std::make_unique<fToolBrowser>(nullptr, 2, cache_);
    b->resize(400, 500);
    QSignalSpy ready(&b->Panel()->Service(), &ThumbnailService::ready);
    b->SetView(fToolBrowser::Thumbnails);
    b->SetFolder(QString::fromStdString(dir_.path()));
    ASSERT_TRUE(waitFor([&] { return !b->Busy(); }));
    const ThumbPanel& p = *b->Panel();
    ASSERT_EQ(p.ItemCount(), 10);
    // Nothing decoded again, the broken file included; only the foreign entry's file, for
    // its size.
    EXPECT_EQ(p.Service().CacheHits(), 9);
    EXPECT_EQ(p.Service().Decodes(), 1);
    const int job = p.JobAt(find(p, "new.png"));
    bool first = true;
    for (const QList<QVariant>& signal : ready) {
        if (signal[0].toInt() != job) continue;
        const QImage picture = signal[1].value<QImage>();
        if (first) EXPECT_EQ(picture.pixel(5, 5), QColor(Qt::green).rgb());
        else EXPECT_EQ(qRed(picture.pixel(5, 5)), 255);
        first = false;
    }
    EXPECT_FALSE(first);
    EXPECT_EQ(p.ItemAt(find(p, "new.png")).sizeText, "20 x 10");

    // A changed file is made anew.
    savePicture(dir_.file("c.jpg"), 30, 60);
    utimbuf later{st.st_mtime + 100, st.st_mtime + 100};
    ASSERT_EQ(::utime(dir_.file("c.jpg").c_str(), &later), 0);
    b->Refresh();
    ASSERT_TRUE(waitFor([&] { return !b->Busy(); }));
    EXPECT_EQ(p.Service().Decodes(), 2);
    EXPECT_EQ(p.ItemAt(find(p, "c.jpg")).sizeText, "30 x 60");
}

TEST_F(Browser, DoubleClickOpensAndGoesUp) {
    FakeHost host;
    auto b = open(fToolBrowser::Thumbnails);
    ThumbPanel& p = *b->Panel();
    const int at = find(p, "B.bmp");
    const QRect r = p.ItemRect(at).translated(0, -p.verticalScrollBar()->value());
    QTest::mouseDClick(p.viewport(), Qt::LeftButton, {}, r.center());
    ASSERT_EQ(host.docs.size(), 1u);
    EXPECT_EQ(host.docs[0]->FileName, QString::fromStdString(dir_.file("B.bmp")));
    EXPECT_EQ(host.docs[0]->PictureWidth(), 10);

    // A row of the list does the same.
    b->SetView(fToolBrowser::Details);
    emit b->List()->activated(b->Model()->index(9, 0)); // readonly.tga
    ASSERT_EQ(host.docs.size(), 2u);
    EXPECT_EQ(host.docs[1]->PictureHeight(), 4);

    // "One Level up.." from the subfolder comes back here.
    b->SetView(fToolBrowser::Thumbnails);
    b->SetFolder(QString::fromStdString(dir_.file("sub")));
    ASSERT_TRUE(waitFor([&] { return !b->Busy(); }));
    ASSERT_EQ(p.ItemCount(), 1);
    QTest::mouseDClick(p.viewport(), Qt::LeftButton, {}, p.ItemRect(0).center());
    EXPECT_EQ(b->Folder(), QString::fromStdString(dir_.path()));
    ASSERT_TRUE(waitFor([&] { return !b->Busy(); }));
    EXPECT_EQ(p.ItemCount(), 9);
}

// Leaving a folder while its thumbnails are made drops the rest of them.
TEST_F(Browser, LeavingTheFolderDropsItsThumbnails) {
    Scratch many;
    savePicture(many.file("p000.jpg"), 1600, 1200);
    for (int i = 1; i < 40; ++i) {
        char name[16];
        std::snprintf(name, sizeof name, "p%03d.jpg", i);
        std::filesystem::copy_file(many.file("p000.jpg"), many.file(name));
    }
    fToolBrowser b(nullptr, 1, cache_);
    b.SetView(fToolBrowser::Thumbnails);
    b.SetFolder(QString::fromStdString(many.path()));
    ASSERT_TRUE(waitFor([&] { return b.Panel()->Service().Done() >= 1; }));
    b.SetFolder(QString::fromStdString(dir_.path()));
    ASSERT_TRUE(waitFor([&] { return !b.Busy(); }));
    EXPECT_EQ(b.Panel()->ItemCount(), 9);
    // The first photo or two, then the nine files here: not the forty photos.
    EXPECT_LE(b.Panel()->Service().Decodes(), 9 + 2);
}

// A hundred thousand files: the listing runs beside the window, which goes on answering.
TEST(BrowserLarge, AHundredThousandFilesListWithoutStoppingTheWindow) {
    SetDefaultSettings(Settings, AppFolder());
    // Made in memory where the system offers it: a hundred thousand files on disk take
    // several seconds to make.
    const bool shm = std::filesystem::is_directory("/dev/shm") && ::access("/dev/shm", W_OK) == 0;
    Scratch dir(shm ? std::filesystem::path("/dev/shm") : std::filesystem::temp_directory_path());
    Scratch store;
    constexpr int kFiles = 100000;
    char name[32];
    for (int i = 0; i < kFiles; ++i) {
        std::snprintf(name, sizeof name, "/f%06d.txt", i);
        const int fd = ::open((dir.path() + name).c_str(), O_CREAT | O_WRONLY, 0644);
        ASSERT_GE(fd, 0);
        ::close(fd);
    }
    fToolBrowser b(nullptr, 1, QString::fromStdString(store.path()));
    b.SetView(fToolBrowser::Details);
    b.SetFolder(QString::fromStdString(dir.path()));
    // The call came back before the folder was read: the window's events go on meanwhile.
    EXPECT_TRUE(b.Busy());
    EXPECT_EQ(b.Model()->rowCount(), 0);
    EXPECT_TRUE(b.Progress()->isVisibleTo(&b));
    ASSERT_TRUE(waitFor([&] { return !b.Busy(); }, 60000));
    EXPECT_EQ(b.Model()->rowCount(), kFiles);
    EXPECT_EQ(b.Model()->Text(kFiles - 1, DetailsModel::Name), "f099999.txt");
    b.SetView(fToolBrowser::Thumbnails);
    EXPECT_EQ(b.Panel()->ItemCount(), 1); // no pictures: "One Level up.." alone
}

} // namespace
} // namespace ostrivex::test
