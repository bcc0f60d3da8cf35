// The built program, started headless with a fresh program folder: it makes the empty
// settings file at start, and SIGTERM or SIGINT runs the unload sequence, writes the whole
// default record and ends with exit code 0.
#include "app/settings/settings.h"

#include <QCoreApplication>
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
    // A file name on the command line is ignored.
    program.start(OSTRIVEX_PROGRAM, {home.path() + "/ignored.png"});
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
    // Nothing was opened from the command line: no work files were made.
    EXPECT_FALSE(QFile::exists(home.path() + "/ignored.png"));
}

TEST(Program, SigtermWritesTheDefaultRecordAndExitsCleanly) {
    runUntilSignal(SIGTERM);
}

TEST(Program, SigintDoesTheSame) {
    runUntilSignal(SIGINT);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
