#include "app/commandline.h"

#include "app/fmain.h"
#include "app/globals.h"
#include "app/startup.h"
#include "document/fileops.h"
#include "imagefile/imagefile.h"

#include <QDataStream>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QThread>
#include <QScreen>
#include <QTimer>
#include <QWindow>


namespace ostrivex {

namespace {

QStringList pendingFiles;

// A running copy answers this once it holds the files.
constexpr char kTaken[] = "taken\n";

// Whether another process holds the instance lock (a copy is running or starting).
bool anotherCopyHoldsTheLock() {
    QLockFile probe(InstanceLockPath());
    probe.setStaleLockTime(0);
    if (probe.tryLock(0)) {
        probe.unlock();
        return false;
    }
    return probe.error() == QLockFile::LockFailedError;
}

} // namespace

CommandLine ParseCommandLine(const QStringList& arguments) {
    CommandLine cl;
    bool options = true;
    for (const QString& a : arguments) {
        if (options && a == "--") {
            options = false;
        } else if (options && (a == "--help" || a == "-h")) {
            cl.action = CommandLine::Action::Help;
            return cl;
        } else if (options && (a == "--version" || a == "-v")) {
            cl.action = CommandLine::Action::Version;
            return cl;
        } else if (options && a.startsWith('-') && a != "-") {
            cl.action = CommandLine::Action::Error;
            cl.error = "ostrivex: unknown option " + a.toStdString() + " (see --help)";
            return cl;
        } else {
            cl.files << QFileInfo(a).absoluteFilePath();
        }
    }
    return cl;
}

std::string CommandLineHelp() {
    return "Usage: ostrivex [OPTION]... [FILE]...\n"
           "Raster image editor. Each FILE opens as a document, as File > Open opens it;\n"
           "when Ostrivex is already running, the files open in that window.\n"
           "\n"
           "  -h, --help     show this text and exit\n"
           "  -v, --version  show the version and exit\n"
           "  --             treat every later argument as a file name\n"
           "\n"
           "Environment: OSTRIVEX_HOME (the program's folder), OSTRIVEX_MAX_IMAGE_MB (the\n"
           "largest picture buffer a file may need, in megabytes).\n";
}

std::string VersionText() {
    return std::string("Ostrivex ") + OSTRIVEX_VERSION + "\n";
}

QString FileSocketPath() {
    return QString::fromLocal8Bit(TempFolder().c_str()) + "/ostrivex.socket";
}

bool HandFilesToRunningCopy(const QStringList& files) {
    QElapsedTimer clock;
    clock.start();
    // A copy that is still starting holds the lock before it listens: wait for it a
    // little. With nobody holding the lock, nobody runs.
    for (;;) {
        QLocalSocket socket;
        socket.connectToServer(FileSocketPath());
        if (socket.waitForConnected(1000)) {
            QByteArray message;
            QDataStream out(&message, QIODevice::WriteOnly);
            out << files;
            socket.write(message);
            if (!socket.waitForBytesWritten(5000)) return false;
            QByteArray answer;
            while (answer.size() < qsizetype(sizeof kTaken - 1) && socket.waitForReadyRead(10000))
                answer += socket.readAll();
            return answer == kTaken;
        }
        if (!anotherCopyHoldsTheLock() || clock.elapsed() > 5000) return false;
        QThread::msleep(100);
    }
}

void ListenForFiles(QObject* parent) {
    auto* server = new QLocalServer(parent);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    // This copy holds the instance lock, so a socket left by a copy that died is stale.
    QLocalServer::removeServer(FileSocketPath());
    if (!server->listen(FileSocketPath())) return;
    QObject::connect(server, &QLocalServer::newConnection, server, [server] {
        while (QLocalSocket* socket = server->nextPendingConnection()) {
            QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            auto* buffer = new QByteArray;
            QObject::connect(socket, &QObject::destroyed, [buffer] { delete buffer; });
            QObject::connect(socket, &QLocalSocket::readyRead, socket, [socket, buffer] {
                *buffer += socket->readAll();
                QDataStream in(buffer, QIODevice::ReadOnly);
                QStringList files;
                in.startTransaction();
                in >> files;
                if (!in.commitTransaction()) return; // more to come
                socket->write(kTaken);
                socket->flush();
                socket->disconnectFromServer();
                // Opened from the event loop: a message box of a failed load must not
                // run inside the socket's own signal.
                QTimer::singleShot(0, [files] { OpenFiles(files); });
            });
        }
    });
}

void OpenFiles(const QStringList& files) {
    if (!MainWindow) {
        pendingFiles << files;
        return;
    }
    for (const QString& file : files)
        OpenImageFile(file);
    MainWindow->show();
    MainWindow->raise();
    MainWindow->activateWindow();
}

namespace {

// True once the main window is on the screen at its own size (maximised when asked).
bool mainWindowSettled() {
    if (!MainWindow || !MainWindow->isVisible()) return false;
    const QWindow* handle = MainWindow->windowHandle();
    if (!handle || !handle->isExposed()) return false;
    if (!(MainWindow->windowState() & Qt::WindowMaximized)) return true;
    const QScreen* screen = MainWindow->screen();
    return !screen || MainWindow->frameGeometry().width() >= screen->availableGeometry().width() * 9 / 10;
}

void openPendingWhenSettled(int triesLeft) {
    if (!mainWindowSettled() && triesLeft > 0) {
        QTimer::singleShot(25, [triesLeft] { openPendingWhenSettled(triesLeft - 1); });
        return;
    }
    const QStringList files = pendingFiles;
    pendingFiles.clear();
    if (!files.isEmpty()) OpenFiles(files);
}

} // namespace

void OpenPendingFiles() {
    // A document window takes its first size from the main window's working area, so the
    // files wait until the main window is on the screen at its own size: a window manager
    // maximises it some time after it is shown. At most about a second is waited.
    if (!pendingFiles.isEmpty()) openPendingWhenSettled(40);
}

} // namespace ostrivex
