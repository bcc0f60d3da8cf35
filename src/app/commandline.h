// The program's command line: `ostrivex [FILE...]`, `--help`, `--version`, and the
// hand-over of files to a copy that is already running.
//
// Each FILE opens as a document as File > Open opens it (layered files too). A second
// copy started with files gives them to the running copy over a local socket in the
// private temporary folder and ends; started without files it behaves as before (the
// "already running" warning).
#pragma once

#include <QStringList>

#include <string>

class QObject;

namespace ostrivex {

struct CommandLine {
    enum class Action { Run, Help, Version, Error };
    Action action = Action::Run;
    QStringList files; // absolute paths, in the order given
    std::string error; // for Action::Error: the line to print
};

// Reads the arguments after the program name (Qt's own options already taken out):
// --help/-h, --version/-v, "--" before names that start with "-", and file names, made
// absolute against the current folder.
CommandLine ParseCommandLine(const QStringList& arguments);
// The texts of --help and --version (each ends with a new line).
std::string CommandLineHelp();
std::string VersionText();

// The socket a running copy listens on for files.
QString FileSocketPath();
// In a later copy: gives `files` to the running copy. True once that copy has them;
// false when no copy answers (none runs), so this one opens them itself.
bool HandFilesToRunningCopy(const QStringList& files);
// In the copy that holds the instance lock: listens for files from later copies.
void ListenForFiles(QObject* parent);
// Opens each file as a document (as File > Open does, messages included) and brings the
// main window forward. Files that come before the main window exists wait for
// `OpenPendingFiles`, which start-up calls once it is up.
void OpenFiles(const QStringList& files);
void OpenPendingFiles();

} // namespace ostrivex
