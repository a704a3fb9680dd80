// What the console has the desktop do with files. The programs that it starts are on their own; nobody hears how they
// fare. Only on the console thread. Paths are UTF-8.
#pragma once

#include <string>

class IDesktop {
public:
    virtual ~IDesktop() = default;

    // Opens the file with the program that the user has chosen for its kind.
    virtual void Open(const std::string& path) = 0;
    // Opens a compiled help file on one of its contexts. False: this machine has no viewer for it.
    virtual bool OpenCompiledHelp(const std::string& path, int context) = 0;
};
