// How the program's folder is chosen; AppFolder() applies it to this process.
#pragma once

#include <string>
#include <vector>

namespace ostrivex {

struct AppFolderInputs {
    std::string home;   // $OSTRIVEX_HOME
    std::string exeDir; // folder of the executable
    bool exeDirWritable = false;
    // The resource folders stand beside the executable (a build tree; an installed copy
    // keeps them in share/ostrivex instead).
    bool exeDirHasResources = true;
    std::string xdgDataHome;              // $XDG_DATA_HOME
    std::string userHome;                 // $HOME
    std::vector<std::string> seedSources; // installed resource folders, first found first
};

// $OSTRIVEX_HOME when set (made if missing); else the executable's folder when writable
// and holding the resource folders; else $XDG_DATA_HOME/ostrivex ($HOME/.local/share/ostrivex when that is unset or not
// absolute), made if missing and seeded from the first resource folder that exists:
// missing files are copied, files the user already has are never replaced. The result
// has no trailing slash.
std::string ChooseAppFolder(const AppFolderInputs& in);

} // namespace ostrivex
