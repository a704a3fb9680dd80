// `bdc run`: the driver with its console, until a signal ends it. Also what `bdc demo` shares with it.
#pragma once

#include "host/LockFile.h"
#include "host/Signals.h"

#include <string>

class CRuntime;
struct Config;

struct RunOptions {
    std::string config; // path; empty: bdc.toml in the data folder
    std::string data;   // data folder; empty: what the configuration says, or the default one
    bool headless = false;
    bool json = false;
};

enum class MissingConfig { IsAFailure, IsDefault };
// The configuration and the data folder, absolute, as the options and the file say. missing: what it means that there
// is no file and none was named.
bool ReadOptions(const RunOptions& options, MissingConfig missing, Config& config, std::string& folder,
                 std::string& error);

// Exit code.
int RunDriver(const RunOptions& options);

// Makes the folder, takes its lock and enters it. False, and nothing in the folder was touched, when another instance
// has it.
bool TakeDataFolder(const std::string& folder, CLockFile& lock, std::string& error);

// Whether the console's window is to be shown: there is a display and nobody asked for headless. Without a window the
// toolkit is told to use no display at all. Before any thread.
bool ChooseDisplay(bool headless);

// Writes the errors that the log gets to standard error too.
void ShowErrorsOfLog();

// Ends the runtime. When it cannot be ended in order the process ends here, with EXIT_FAILED.
void EndRuntime(CRuntime& runtime, CSignals& signals);

// Prints a failure: one line on standard error, or a JSON document on standard output. Gives the code back.
int ReportFailure(int code, const std::string& error, bool json);
