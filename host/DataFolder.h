// The folder that holds everything an instance keeps: lock, control socket, log, settings, directory, positions,
// history.
#pragma once

#include <string>

// $XDG_STATE_HOME/bdc, or ~/.local/state/bdc; empty when the user has no home. At start, on the main thread.
std::string DefaultDataFolder();

// Makes the folder with its parents (mode 0700) if it is missing.
bool EnsureFolder(const std::string& path, std::string& error);

// Absolute form of a path, against the current directory.
std::string AbsolutePath(const std::string& path);

// Makes the folder the process's current directory. Called once, before anything of the module is loaded: files of the
// module have bare names.
bool EnterFolder(const std::string& path, std::string& error);

// Why a file of the folder that is there was not accepted, when its reader does not say: it may not be read, or it is
// damaged.
std::string UnacceptedFile(const std::string& path);
