// The installed program: `cmake --install` into a scratch prefix gives everything a
// desktop needs, and the editor started from PREFIX/bin, with a fresh home and no program
// folder of its own, finds its helper and its resources (seeding the user's data folder)
// and opens the file it is given. The desktop entry offers it for every type it reads.
#include "app/settings/settings.h"
#include "imagefile/imagefile.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>

using namespace ostrivex;

namespace {

QString readText(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

TEST(Install, TheInstalledEditorRunsWithoutTheBuildTree) {
    QTemporaryDir prefix, home, runtime, pictures;
    QProcess install;
    install.start(OSTRIVEX_CMAKE, {"--install", OSTRIVEX_BUILD_DIR, "--prefix", prefix.path()});
    ASSERT_TRUE(install.waitForFinished(120000));
    ASSERT_EQ(install.exitCode(), 0) << install.readAllStandardError().toStdString();
    for (const char* file :
         {"bin/ostrivex", "bin/ostrivex-batch", "bin/ostrivex-devil",
          "share/applications/ostrivex.desktop", "share/mime/packages/ostrivex.xml",
          "share/icons/hicolor/scalable/apps/ostrivex.svg", "share/ostrivex/Help/default.htm"})
        EXPECT_TRUE(QFile::exists(prefix.path() + "/" + file)) << file;

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove("OSTRIVEX_HOME");
    env.remove("XDG_DATA_HOME");
    env.remove("OSTRIVEX_DEVIL_HELPER");
    env.insert("HOME", home.path());
    env.insert("XDG_RUNTIME_DIR", runtime.path());
    env.insert("QT_QPA_PLATFORM", "offscreen");

    // The installed batch tool finds its helper: an XPM goes through it.
    const QString xpm = pictures.path() + "/p.xpm";
    {
        QFile f(xpm);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("/* XPM */\nstatic char *p[] = {\n\"2 1 2 1\",\n\"a c #FF0000\",\n\"b c #0000FF\",\n\"ab\"\n};\n");
    }
    QProcess batch;
    batch.setProcessEnvironment(env);
    batch.start(prefix.path() + "/bin/ostrivex-batch", {xpm, pictures.path() + "/p.png"});
    ASSERT_TRUE(batch.waitForFinished(20000));
    EXPECT_EQ(batch.exitCode(), 0) << batch.readAllStandardError().toStdString();

    // The editor, given a picture that only its helper reads: its folder is the user's
    // data folder, seeded from share/ostrivex, and the document opens.
    QProcess editor;
    editor.setProcessEnvironment(env);
    editor.start(prefix.path() + "/bin/ostrivex", {xpm});
    ASSERT_TRUE(editor.waitForStarted(10000));
    const QString folder = home.path() + "/.local/share/ostrivex";
    QElapsedTimer clock;
    clock.start();
    bool opened = false;
    while (!opened && clock.elapsed() < 20000) {
        QDirIterator it(folder + "/Temp", QDir::Files, QDirIterator::Subdirectories);
        opened = it.hasNext();
        if (!opened) QThread::msleep(20);
    }
    EXPECT_TRUE(opened);
    QThread::msleep(300);
    ::kill(pid_t(editor.processId()), SIGTERM);
    ASSERT_TRUE(editor.waitForFinished(20000));
    EXPECT_TRUE(QFile::exists(folder + "/Help/default.htm"));
    EXPECT_FALSE(QFile::exists(prefix.path() + "/bin/oi201Start.up"));
    ::setenv("OSTRIVEX_HOME", folder.toLocal8Bit().constData(), 1);
    ASSERT_TRUE(LoadSettings());
    EXPECT_EQ(FieldText(Settings.RecentFiles[0]), xpm.toStdString());
}

TEST(Install, TheDesktopEntryDeclaresEveryTypeTheProgramReads) {
    const QString entry = readText(QString(OSTRIVEX_SOURCE_DIR) + "/desktop/ostrivex.desktop");
    EXPECT_TRUE(entry.contains("\nExec=ostrivex %F\n"));
    const QRegularExpressionMatch m = QRegularExpression("\nMimeType=([^\n]*)\n").match(entry);
    ASSERT_TRUE(m.hasMatch());
    const QStringList list = m.captured(1).split(';', Qt::SkipEmptyParts);
    const QSet<QString> declared(list.begin(), list.end());

    // Which types claim an extension: the shared database's globs and the program's own.
    QMultiHash<QString, QString> claims;
    for (const QString& line : readText("/usr/share/mime/globs").split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.mid(colon + 1).startsWith("*."))
            claims.insert(line.mid(colon + 3).toLower(), line.left(colon));
    }
    const QString own = readText(QString(OSTRIVEX_SOURCE_DIR) + "/desktop/ostrivex-mime.xml");
    QString type;
    for (const QString& line : own.split('\n')) {
        const auto t = QRegularExpression("<mime-type type=\"([^\"]+)\"").match(line);
        if (t.hasMatch()) type = t.captured(1);
        const auto g = QRegularExpression("<glob pattern=\"\\*\\.([^\"]+)\"").match(line);
        if (g.hasMatch()) claims.insert(g.captured(1), type);
    }

    // Every extension of the open dialog's first list that some loader reads.
    const std::string filter = kOpenFilter;
    const QString all = QString::fromStdString(filter.substr(filter.find('|') + 1,
                                                             filter.find('|', filter.find('|') + 1) -
                                                                 filter.find('|') - 1));
    int checked = 0;
    for (const QString& pattern : all.split(QRegularExpression("[;,]"))) {
        const QString ext = pattern.mid(2).toLower();
        if (!IsReadableExtension(ext.toStdString()) && ext != "olf") continue;
        ++checked;
        bool found = false;
        for (const QString& t : claims.values(ext))
            found = found || declared.contains(t);
        EXPECT_TRUE(found) << "no declared type claims *." << ext.toStdString();
    }
    EXPECT_GT(checked, 40);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
