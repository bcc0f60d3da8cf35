// The built program, started headless with a fresh program folder: it makes the empty
// settings file at start, and SIGTERM or SIGINT runs the unload sequence, writes the whole
// default record and ends with exit code 0. Files named on its command line open as
// documents, in a copy already running if there is one.
#include "app/settings/settings.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>

using namespace ostrivex;

namespace {

void runUntilSignal(int signal) {
    QTemporaryDir home, runtime;
    ASSERT_TRUE(home.isValid());
    ASSERT_TRUE(runtime.isValid());
    QProcess program;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("OSTRIVEX_HOME", home.path());
    env.insert("XDG_RUNTIME_DIR", runtime.path());
    env.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(env);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(OSTRIVEX_PROGRAM, QStringList());
    ASSERT_TRUE(program.waitForStarted(10000));

    const QString file = home.path() + "/oi201Start.up";
    QElapsedTimer clock;
    clock.start();
    while (!QFile::exists(file) && clock.elapsed() < 20000)
        QThread::msleep(20);
    ASSERT_TRUE(QFile::exists(file));
    EXPECT_EQ(QFile(file).size(), 0);
    // Let start-up finish before the signal (the signal is served by the event loop, so
    // an early one would wait for start-up anyway).
    QThread::msleep(300);

    ::kill(pid_t(program.processId()), signal);
    ASSERT_TRUE(program.waitForFinished(20000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);

    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    ASSERT_EQ(bytes.size(), 3967);
    // The whole default record for this program folder.
    SettingsRecord defaults;
    SetDefaultSettings(defaults, home.path().toStdString());
    const std::vector<uint8_t> want = SettingsBytes(defaults);
    EXPECT_EQ(bytes,
              QByteArray(reinterpret_cast<const char*>(want.data()), qsizetype(want.size())));
    // Checked by hand at the start: 9600 and 7200 twips, maximised, not DocMaximized, and
    // the open folder.
    EXPECT_EQ(bytes.left(8), QByteArray::fromHex("8025201cffff0000"));
    EXPECT_EQ(bytes.mid(8, home.path().size() + 8), (home.path() + "/Images/").toUtf8());
}

TEST(Program, SigtermWritesTheDefaultRecordAndExitsCleanly) {
    runUntilSignal(SIGTERM);
}

TEST(Program, SigintDoesTheSame) {
    runUntilSignal(SIGINT);
}

// A program run with its own program and temporary folders.
class Copy {
  public:
    Copy(const QString& home, const QString& runtime) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("OSTRIVEX_HOME", home);
        env.insert("XDG_RUNTIME_DIR", runtime);
        env.insert("QT_QPA_PLATFORM", "offscreen");
        process.setProcessEnvironment(env);
    }
    QProcess process;
};

// True once a document has been opened in the program folder: its first undo state is
// written under Temp as it opens.
bool documentOpened(const QString& home, int timeoutMs) {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < timeoutMs) {
        QDirIterator it(home + "/Temp", QDir::Files, QDirIterator::Subdirectories);
        if (it.hasNext()) return true;
        QThread::msleep(20);
    }
    return false;
}

// Ends a copy with SIGTERM and reads the recent list it saved.
std::vector<std::string> recentAfterExit(QProcess& program, const QString& home) {
    ::kill(pid_t(program.processId()), SIGTERM);
    EXPECT_TRUE(program.waitForFinished(20000));
    ::setenv("OSTRIVEX_HOME", home.toLocal8Bit().constData(), 1);
    EXPECT_TRUE(LoadSettings());
    std::vector<std::string> recent;
    for (const auto& entry : Settings.RecentFiles)
        if (!FieldText(entry).empty()) recent.push_back(FieldText(entry));
    return recent;
}

// A 2 x 2 picture in the program's own format names.
QString writePicture(const QString& path) {
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("P3\n2 2\n255\n255 0 0 0 255 0 0 0 255 9 9 9\n");
    return path;
}

TEST(Program, HelpAndVersionAnswerOnStandardOutput) {
    for (const char* option : {"--help", "--version", "-v"}) {
        QProcess p;
        p.start(OSTRIVEX_PROGRAM, {option});
        ASSERT_TRUE(p.waitForFinished(10000));
        EXPECT_EQ(p.exitCode(), 0);
        const QString out = QString::fromUtf8(p.readAllStandardOutput());
        EXPECT_TRUE(out.startsWith(std::string(option) == "--help" ? "Usage: ostrivex [OPTION]... [FILE]..."
                                                                  : "Ostrivex "))
            << option;
        EXPECT_TRUE(p.readAllStandardError().isEmpty());
    }
}

TEST(Program, FilesOnTheCommandLineOpenAsDocuments) {
    QTemporaryDir home, runtime, pictures;
    // Relative names are taken from the folder the program starts in.
    writePicture(pictures.path() + "/one.ppm");
    Copy copy(home.path(), runtime.path());
    copy.process.setWorkingDirectory(pictures.path());
    copy.process.start(OSTRIVEX_PROGRAM, {"one.ppm"});
    ASSERT_TRUE(copy.process.waitForStarted(10000));
    ASSERT_TRUE(documentOpened(home.path(), 20000));
    QThread::msleep(300);
    EXPECT_EQ(recentAfterExit(copy.process, home.path()),
              (std::vector<std::string>{(pictures.path() + "/one.ppm").toStdString()}));
    // The run left nothing in its private temporary folder (work file, lock, socket).
    EXPECT_TRUE(QDir(runtime.path() + "/ostrivex").isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));
}

TEST(Program, ASecondCopyHandsItsFilesToTheRunningOne) {
    QTemporaryDir home, secondHome, runtime, pictures;
    Copy first(home.path(), runtime.path());
    first.process.start(OSTRIVEX_PROGRAM, QStringList());
    ASSERT_TRUE(first.process.waitForStarted(10000));
    // The running copy listens once it holds the instance lock.
    QElapsedTimer clock;
    clock.start();
    const QString socket = runtime.path() + "/ostrivex/ostrivex.socket";
    while (!QFile::exists(socket) && clock.elapsed() < 20000)
        QThread::msleep(20);
    ASSERT_TRUE(QFile::exists(socket));

    const QString a = writePicture(pictures.path() + "/a.ppm");
    const QString b = writePicture(pictures.path() + "/b.ppm");
    Copy second(secondHome.path(), runtime.path());
    second.process.start(OSTRIVEX_PROGRAM, {a, b});
    ASSERT_TRUE(second.process.waitForFinished(20000));
    EXPECT_EQ(second.process.exitCode(), 0);
    // The second copy made no program folder of its own: it never started.
    EXPECT_FALSE(QFile::exists(secondHome.path() + "/oi201Start.up"));

    ASSERT_TRUE(documentOpened(home.path(), 20000));
    QThread::msleep(500);
    const std::vector<std::string> recent = recentAfterExit(first.process, home.path());
    EXPECT_EQ(recent, (std::vector<std::string>{b.toStdString(), a.toStdString()}));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
