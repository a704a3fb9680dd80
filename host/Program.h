// Where this program and what is installed with it lie. Any thread.
#pragma once

#include <string>

// The program, as a person can call it.
std::string ProgramPath();

// The folder of the help with a separator behind it: ../share/bdc/help/ seen from the program's folder, in the build
// tree as well as where it is installed.
std::string HelpPath();
