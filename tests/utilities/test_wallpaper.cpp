// The Wallpaper words through the main window: the BMP file, then the desktop portal's
// Wallpaper interface (a fake one on a private bus), else GNOME's settings through a fake
// `gsettings` first on PATH that records its arguments and fails when told to.
#include "app/app_test_util.h"
#include "messages.h"
#include "pixel/pixel_test_util.h"
#include "session_bus.h"
#include "utilities/wallpaper/wallpaper.h"

#include <QDir>
#include <QRegularExpression>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QUrl>

using namespace ostrivex;
using ostrivex::testing::OpenDocument;

namespace {

// sh builtins only, so PATH may hold nothing but this folder.
constexpr const char* kFakeGSettings = R"(#!/bin/sh
line=""
for a in "$@"; do line="$line$a|"; done
printf '%s\n' "$line" >> "$FAKE_GSETTINGS_LOG"
case "$1" in
  list-keys)
    printf 'color-shading-type\npicture-options\npicture-uri\n'
    [ -z "$FAKE_GSETTINGS_OLD" ] && printf 'picture-uri-dark\n'
    exit 0 ;;
  get|set)
    case " $FAKE_GSETTINGS_FAIL " in *" $1 "*) echo "failed" >&2; exit 1 ;; esac
    [ "$1" = get ] && printf "'zoom'\n"
    exit 0 ;;
esac
exit 1
)";

class WallpaperTest : public ostrivex::testing::WithMainWindow {
  protected:
    void SetUp() override {
        WithMainWindow::SetUp();
        ASSERT_TRUE(bin_.isValid());
        savedPath_ = qgetenv("PATH");
        QFile script(bin_.filePath("gsettings"));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write(kFakeGSettings);
        script.close();
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        setenv("FAKE_GSETTINGS_LOG", bin_.filePath("log").toLocal8Bit().constData(), 1);
        setenv("PATH", bin_.path().toLocal8Bit().constData(), 1);
        unsetenv("FAKE_GSETTINGS_FAIL");
        unsetenv("FAKE_GSETTINGS_OLD");
    }
    void TearDown() override {
        setenv("PATH", savedPath_.constData(), 1);
        WithMainWindow::TearDown();
    }
    // The runs of gsettings, one line each: the arguments followed by '|'.
    QStringList log() const {
        QFile f(bin_.filePath("log"));
        if (!f.open(QIODevice::ReadOnly)) return {};
        return QString::fromUtf8(f.readAll()).split('\n', Qt::SkipEmptyParts);
    }
    void clearLog() { QFile::remove(bin_.filePath("log")); }
    QString uri() const { return QUrl::fromLocalFile(WallpaperPath()).toString(); }
    fImage* openDocument() {
        return OpenDocument(*main_, test::makeBits(3, 2, {{10, 20, 30}, {40, 50, 60}, {70, 80, 90},
                                                          {1, 2, 3}, {250, 128, 0}, {9, 99, 199}}));
    }
    // The wallpaper file's pixels as blue, green, red.
    static Bits fileBits() {
        const QImage image(WallpaperPath());
        Bits b(image.width(), image.height());
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QRgb c = image.pixel(x, y);
                uint8_t* p = b.pixel(x, y);
                p[0] = uint8_t(qBlue(c));
                p[1] = uint8_t(qGreen(c));
                p[2] = uint8_t(qRed(c));
            }
        return b;
    }

    QTemporaryDir bin_;
    QByteArray savedPath_;
};

TEST_F(WallpaperTest, WithoutAPortalTheSettingsAreReadThenWrittenForEachMode) {
    fImage* doc = openDocument();
    test::RecordMessages messages;
    const QString schema = "org.gnome.desktop.background|";
    main_->MenuStatic("WSTRETCH");
    EXPECT_EQ(main_->LastRoute(), "Wallpaper");
    EXPECT_EQ(log(), QStringList({"list-keys|" + schema, "get|" + schema + "picture-options|",
                                  "get|" + schema + "picture-uri|",
                                  "set|" + schema + "picture-options|'stretched'|",
                                  "set|" + schema + "picture-uri|'" + uri() + "'|",
                                  "set|" + schema + "picture-uri-dark|'" + uri() + "'|"}));
    EXPECT_TRUE(messages.texts.isEmpty()) << messages.texts.join(" / ").toStdString();
    EXPECT_TRUE(test::sameBits(doc->bits(), fileBits()));

    // The other modes, and the file overwritten with the picture as it is now. A schema
    // without the dark picture (before GNOME 42) is written without it.
    setenv("FAKE_GSETTINGS_OLD", "1", 1);
    for (const auto& [word, options] : {std::pair{"WTILE", "'wallpaper'"}, {"WCENTER", "'centered'"}}) {
        clearLog();
        Bits changed = doc->bits();
        changed.pixel(0, 0)[1] ^= 0xFF;
        doc->SetBits(changed);
        main_->MenuStatic(word);
        const QStringList runs = log();
        ASSERT_EQ(runs.size(), 5) << runs.join(" ").toStdString();
        EXPECT_EQ(runs[3], "set|" + schema + "picture-options|" + options + "|");
        EXPECT_EQ(runs[4], "set|" + schema + "picture-uri|'" + uri() + "'|");
        EXPECT_TRUE(test::sameBits(changed, fileBits())) << word;
    }
    EXPECT_TRUE(messages.texts.isEmpty());
}

TEST_F(WallpaperTest, FailedReadsAndWritesShowTheirMessagesAndGoOn) {
    openDocument();
    test::RecordMessages messages;
    setenv("FAKE_GSETTINGS_FAIL", "get", 1);
    main_->MenuStatic("WTILE");
    EXPECT_EQ(messages.texts, QStringList({"Error getting subkey value.", "Error getting subkey value."}));
    EXPECT_EQ(log().filter(QRegularExpression("^set\\|")).size(), 3);

    messages.texts.clear();
    clearLog();
    setenv("FAKE_GSETTINGS_FAIL", "get set", 1);
    main_->MenuStatic("WTILE");
    EXPECT_EQ(messages.texts,
              QStringList({"Error getting subkey value.", "Error getting subkey value.",
                           "Error Setting subkey value.", "Error Setting subkey value.",
                           "Error Setting subkey value."}));
    EXPECT_EQ(messages.titles.value(0), "Ostrivex");
    // Every write was still tried.
    EXPECT_EQ(log().filter(QRegularExpression("^set\\|")).size(), 3);
}

TEST_F(WallpaperTest, ThePortalSetsThePictureAndTheSettingsKeepTheLayout) {
    openDocument();
    test::RecordMessages messages;
    test::FakePortal portal;
    main_->MenuStatic("WTILE");
    ASSERT_EQ(portal.calls.size(), 1u);
    const test::PortalCall& call = portal.calls[0];
    EXPECT_EQ(call.interface, "org.freedesktop.portal.Wallpaper");
    EXPECT_EQ(call.member, "SetWallpaperURI");
    EXPECT_EQ(call.arguments, QVariantList({QString(), uri()})); // no X11 window to name
    EXPECT_EQ(call.options.value("show-preview"), QVariant(false));
    EXPECT_EQ(call.options.value("set-on"), QVariant("background"));
    EXPECT_FALSE(call.options.value("handle_token").toString().isEmpty());
    EXPECT_EQ(log(), QStringList({"list-keys|org.gnome.desktop.background|",
                                  "set|org.gnome.desktop.background|picture-options|'wallpaper'|"}));
    EXPECT_TRUE(messages.texts.isEmpty());

    // Cancelled in the portal's dialog: nothing more is done.
    clearLog();
    portal.response = 1;
    main_->MenuStatic("WCENTER");
    EXPECT_EQ(log(), QStringList({"list-keys|org.gnome.desktop.background|"}));
    EXPECT_TRUE(messages.texts.isEmpty());

    // A portal that fails: the settings take over.
    clearLog();
    portal.response = 2;
    main_->MenuStatic("WCENTER");
    EXPECT_EQ(log().size(), 6);
    EXPECT_EQ(portal.calls.size(), 3u);
}

TEST_F(WallpaperTest, NeitherPortalNorSettingsSaysWhereThePictureIs) {
    openDocument();
    test::RecordMessages messages;
    QTemporaryDir empty;
    setenv("PATH", empty.path().toLocal8Bit().constData(), 1);
    main_->MenuStatic("WSTRETCH");
    ASSERT_EQ(messages.texts.size(), 1);
    EXPECT_TRUE(messages.texts[0].contains(WallpaperPath())) << messages.texts[0].toStdString();
    EXPECT_TRUE(QFile::exists(WallpaperPath()));
}

TEST_F(WallpaperTest, WithoutADocumentNothingHappens) {
    test::RecordMessages messages;
    test::FakePortal portal;
    for (const char* word : {"WTILE", "WCENTER", "WSTRETCH"}) main_->MenuStatic(word);
    EXPECT_FALSE(QFile::exists(WallpaperPath()));
    EXPECT_TRUE(log().isEmpty());
    EXPECT_TRUE(portal.calls.empty());
    EXPECT_TRUE(messages.texts.isEmpty());
}

} // namespace
