// What exists once in the module and is nobody's business outside: the current run, the tabs, and which classes of
// other folders the console works with. Defined in Globals.cpp, like all the module's global objects.
#pragma once

#include "module/console/ConsolePages.h"

#include <array>
#include <atomic>
#include <memory>

class CConsolePage;
class CDriver;
class IConsoleRun;
class IOperator;
class ITray;
class QWidget;
struct IHistoryStarter;

// The run between Start and WaitEnd, null otherwise. Any thread.
std::shared_ptr<IConsoleRun> GetConsoleRun();
void SetConsoleRun(std::shared_ptr<IConsoleRun> run);

// How the console gets what lies in layers above or beside it. Set before the first Start, by the module or by a test.
struct ConsoleWiring {
    std::shared_ptr<IConsoleRun> (*newRun)(CDriver& driver) = nullptr;
    std::unique_ptr<IHistoryStarter> (*newHistoryStarter)() = nullptr;
    // The pages by CONSOLE_PAGE, each made as a child of its place; an empty page where there is none.
    std::array<CConsolePage* (*)(QWidget* place, CDriver& driver), PAGE_COUNT> newPage{};
    std::unique_ptr<ITray> (*newTray)() = nullptr;
    IOperator* (*getOperator)() = nullptr;
    // Opens the help on a context, 1 to 9.
    void (*showHelp)(int context) = nullptr;
};
extern ConsoleWiring consoleWiring;

// The console's pages by CONSOLE_PAGE, null while they do not exist. Whoever reads one under the module lock sees
// either all of them or none.
extern std::array<std::atomic<CConsolePage*>, PAGE_COUNT> consolePages;
