// The command line of bdc. Exit codes: 0 done, 1 failed, 2 wrong usage, 3 partly done.
#pragma once

int RunCommandLine(int argc, char** argv);
