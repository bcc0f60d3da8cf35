// The shell's small windows: Reset Settings, Help, Thumbnails Options, splash, keys, about.
#include "gui_test_util.h"
#include "settings_test_util.h"

#include "app/shell/about.h"
#include "app/shell/help.h"
#include "app/shell/keyboard.h"
#include "app/shell/options.h"
#include "app/shell/resetsettings.h"
#include "app/shell/splash.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include <filesystem>

namespace ostrivex::test {
namespace {

namespace fs = std::filesystem;

using ShellDialogs = FreshHome;

// Stands in for the main window: its close runs the part of the unload sequence that
// matters here, saving the settings.
class UnloadingWindow : public QWidget {
  public:
    int closes = 0;
    bool fileExistedAtClose = true;

  protected:
    void closeEvent(QCloseEvent* e) override {
        ++closes;
        fileExistedAtClose = FileExists(SettingsFileName());
        SaveSettings();
        e->accept();
    }
};

TEST_F(ShellDialogs, ResetSettingsAsksAndTheUnloadWritesTheFileBack) {
    UnloadingWindow main;
    QWidget* child = new QWidget(&main);
    main.show();

    // No settings file: nothing is asked and nothing happens.
    auto none = answerNextMessageBox(QMessageBox::Yes);
    EXPECT_FALSE(ResetSettings(child));
    QCoreApplication::processEvents();
    EXPECT_FALSE(none->seen);
    none->stop();
    EXPECT_FALSE(FileExists(SettingsFileName()));
    EXPECT_EQ(main.closes, 0);

    ASSERT_TRUE(LoadSettings());
    Settings.BrushSize = 77;
    ASSERT_TRUE(SaveSettings());
    const std::vector<std::uint8_t> saved = readFile(SettingsFileName());

    // No: the file stays as it was, the flag stays down, the window stays open.
    auto no = answerNextMessageBox(QMessageBox::No);
    EXPECT_FALSE(ResetSettings(child));
    EXPECT_TRUE(no->seen);
    EXPECT_EQ(no->title, "Ostrivex");
    EXPECT_EQ(no->text, "Ostrivex will be closed down to apply the default settings!");
    EXPECT_EQ(no->buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(no->icon, QMessageBox::NoIcon);
    EXPECT_EQ(readFile(SettingsFileName()), saved);
    EXPECT_EQ(Settings.ResetPending, 0);
    EXPECT_EQ(main.closes, 0);

    // Yes: the file is deleted, then the unload saves the running values over it, so it is
    // back with this run's values and the flag set, not with the defaults.
    Settings.MainWidth = 1234;
    auto yes = answerNextMessageBox(QMessageBox::Yes);
    EXPECT_TRUE(ResetSettings(child));
    EXPECT_TRUE(yes->seen);
    EXPECT_EQ(main.closes, 1);
    EXPECT_FALSE(main.fileExistedAtClose);
    const std::vector<std::uint8_t> after = readFile(SettingsFileName());
    ASSERT_EQ(after.size(), 3967u);
    EXPECT_EQ(after[0], 0xD2); // 1234 = 0x04D2
    EXPECT_EQ(after[1], 0x04);
    EXPECT_EQ(after[2592], 0xFF); // ResetPending = -1
    EXPECT_EQ(after[2593], 0xFF);
    EXPECT_EQ(after[2709], 77); // BrushSize kept
}

class UrlCatcher : public QObject {
    Q_OBJECT
  public:
    QList<QUrl> urls;
  public slots:
    void open(const QUrl& u) { urls.push_back(u); }
};

TEST_F(ShellDialogs, HelpOpensThePageOrSaysItIsMissing) {
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &catcher, "open");

    auto box = answerNextMessageBox(QMessageBox::Ok);
    EXPECT_FALSE(OpenHelp(nullptr));
    EXPECT_TRUE(box->seen);
    EXPECT_EQ(box->text, "Help Files are Missing! Please Re-install Ostrivex Again");
    EXPECT_EQ(box->title, "Help Files Missing!");
    EXPECT_EQ(box->buttons, QMessageBox::Ok);
    EXPECT_TRUE(catcher.urls.isEmpty());

    fs::create_directory(home_ + "/Help");
    writeFile(home_ + "/Help/default.htm", {'<', 'p', '>'});
    auto none = answerNextMessageBox(QMessageBox::Ok);
    EXPECT_TRUE(OpenHelp(nullptr));
    QCoreApplication::processEvents();
    EXPECT_FALSE(none->seen);
    none->stop();
    ASSERT_EQ(catcher.urls.size(), 1);
    EXPECT_EQ(catcher.urls[0].toLocalFile().toStdString(), home_ + "/Help/default.htm");

    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

TEST_F(ShellDialogs, OptionsOpenWithTheStoredValuesAndOKWritesThem) {
    ASSERT_TRUE(LoadSettings()); // defaults: 70 x 60, Normal, both shown, white
    fOptions dlg;
    QSignalSpy applied(&dlg, &fOptions::applied);
    dlg.show();
    EXPECT_EQ(dlg.windowTitle(), "Thumbnails Options");
    EXPECT_EQ(dlg.txtThumbnailWidth->text(), "70");
    EXPECT_EQ(dlg.txtThumbnailHeight->text(), "60");
    EXPECT_EQ(dlg.WWS->value(), 70);
    EXPECT_EQ(dlg.HHS->value(), 60);
    EXPECT_TRUE(dlg.optNormal->isChecked());
    EXPECT_TRUE(dlg.chkThumbnailShowResolution->isChecked());
    EXPECT_TRUE(dlg.chkThumbnailShowFilename->isChecked());
    EXPECT_EQ(dlg.workspaceColor(), 0xFFFFFF);
    EXPECT_EQ(dlg.picThumb->size(), QSize(70, 60));

    // The text box moves the up-down control and the sample; the control rewrites the text.
    dlg.txtThumbnailWidth->setText(QStringLiteral("120"));
    EXPECT_EQ(dlg.WWS->value(), 120);
    EXPECT_EQ(dlg.picThumb->width(), 120);
    dlg.HHS->setValue(100);
    EXPECT_EQ(dlg.txtThumbnailHeight->text(), "100");
    EXPECT_EQ(dlg.picThumb->size(), QSize(120, 100));
    dlg.txtThumbnailHeight->setText(QStringLiteral("999"));
    EXPECT_EQ(dlg.HHS->value(), 256);
    EXPECT_EQ(dlg.picThumb->height(), 256);
    dlg.txtThumbnailHeight->setText(QStringLiteral("abc")); // not a number: no change
    EXPECT_EQ(dlg.HHS->value(), 256);
    dlg.HHS->setValue(100);

    dlg.optResample->click();
    dlg.chkThumbnailShowFilename->click();
    dlg.setWorkspaceColor(0x00336699);
    EXPECT_EQ(dlg.picWorkspace->palette().color(QPalette::Window), QColor(0x99, 0x66, 0x33));
    EXPECT_EQ(fs::file_size(SettingsFileName()), 0u); // nothing written yet

    dlg.cmdOK->click();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(applied.count(), 1);
    EXPECT_EQ(Settings.ThumbWidth, 120);
    EXPECT_EQ(Settings.ThumbHeight, 100);
    EXPECT_EQ(Settings.ThumbQuality, 1);
    EXPECT_EQ(Settings.ThumbShowResolution, 1);
    EXPECT_EQ(Settings.ThumbShowFilename, 0);
    EXPECT_EQ(Settings.ThumbWorkspaceColor, 0x336699);

    const std::vector<std::uint8_t> file = readFile(SettingsFileName());
    ASSERT_EQ(file.size(), 3967u);
    const std::vector<std::uint8_t> thumbs(file.begin() + 3405, file.begin() + 3419);
    EXPECT_EQ(thumbs,
              (std::vector<std::uint8_t>{120, 0, 100, 0, 1, 0, 4, 0, 1, 0, 0x99, 0x66, 0x33, 0}));
}

TEST_F(ShellDialogs, OptionsCancelChangesNothing) {
    ASSERT_TRUE(LoadSettings());
    Settings.ThumbWidth = 5; // out of range on disk: the control brings it to its minimum
    Settings.ThumbQuality = 1;
    Settings.ThumbShowResolution = 0;
    const std::vector<std::uint8_t> before = SettingsBytes(Settings);

    fOptions dlg;
    QSignalSpy applied(&dlg, &fOptions::applied);
    dlg.show();
    EXPECT_EQ(dlg.WWS->value(), 16);
    EXPECT_EQ(dlg.txtThumbnailWidth->text(), "16");
    EXPECT_TRUE(dlg.optResample->isChecked());
    EXPECT_FALSE(dlg.chkThumbnailShowResolution->isChecked());

    dlg.txtThumbnailWidth->setText(QStringLiteral("90"));
    dlg.optNormal->click();
    dlg.chkThumbnailShowResolution->click();
    dlg.setWorkspaceColor(0x000000);
    dlg.cmdCancel->click();
    EXPECT_EQ(dlg.result(), QDialog::Rejected);
    EXPECT_EQ(applied.count(), 0);
    EXPECT_EQ(SettingsBytes(Settings), before);
    EXPECT_EQ(fs::file_size(SettingsFileName()), 0u);
}

TEST_F(ShellDialogs, SplashStartsUpOnceAfterItsTimerOrAtAClick) {
    {
        fSplash splash;
        QSignalSpy done(&splash, &fSplash::finished);
        EXPECT_EQ(splash.tSplash.interval(), 500);
        EXPECT_TRUE(splash.tSplash.isSingleShot());
        EXPECT_FALSE(splash.tSplash.isActive()); // starts when shown
        splash.show();
        EXPECT_TRUE(splash.tSplash.isActive());
        EXPECT_EQ(done.count(), 0);
        EXPECT_TRUE(done.wait(5000));
        EXPECT_EQ(done.count(), 1);
        QTest::qWait(50);
        EXPECT_EQ(done.count(), 1);
    }
    {
        fSplash splash;
        QSignalSpy done(&splash, &fSplash::finished);
        splash.show();
        QTest::mouseClick(&splash, Qt::LeftButton);
        EXPECT_EQ(done.count(), 1);
        EXPECT_FALSE(splash.isVisible());
        EXPECT_FALSE(splash.tSplash.isActive());
        QTest::qWait(600); // the timer's moment passes: start-up does not run twice
        EXPECT_EQ(done.count(), 1);
    }
}

TEST_F(ShellDialogs, KeyboardListAndAbout) {
    fKeyboard keys;
    EXPECT_EQ(keys.windowTitle(), "Keyboard Shortcuts");
    const QString text = keys.txtKeys->toPlainText();
    EXPECT_TRUE(keys.txtKeys->isReadOnly());
    // The list keeps its own spelling of a few keys.
    EXPECT_TRUE(text.contains(QStringLiteral("Redo                         Ctrl + R\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("Select all                   Ctrl + ins\n")));
    keys.show();
    keys.cmdOK->click();
    EXPECT_EQ(keys.result(), QDialog::Accepted);

    fAbout about;
    EXPECT_EQ(about.windowTitle(), "About Ostrivex Basic");
    EXPECT_TRUE(about.lblVersion->text().startsWith(QStringLiteral("Version ")));
    about.show();
    about.cmdOK->click();
    EXPECT_EQ(about.result(), QDialog::Accepted);
}

} // namespace
} // namespace ostrivex::test

#include "test_shell_dialogs.moc"
