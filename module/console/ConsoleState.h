// What exists once in the module and is nobody's business outside: the current run, the tabs, and which classes of
// other folders the console works with. Defined in Globals.cpp, like all the module's global objects.
#pragma once

#include <atomic>
#include <memory>

class CDriver;
class IConsoleRun;
struct IHistoryStarter;

// The run between Start and WaitEnd, null otherwise. Any thread.
std::shared_ptr<IConsoleRun> GetConsoleRun();
void SetConsoleRun(std::shared_ptr<IConsoleRun> run);

// How the console gets what lies in layers above or beside it. Set before the first Start, by the module or by a test.
struct ConsoleWiring {
    std::shared_ptr<IConsoleRun> (*newRun)(CDriver& driver) = nullptr;
    std::unique_ptr<IHistoryStarter> (*newHistoryStarter)() = nullptr;
};
extern ConsoleWiring consoleWiring;

class CAlarmRulesDlg;
class CAlarmsDialog;
class CBackupDlg;
class CGeneralDlg;
class CHistoryDialog;
class CLogFileDialog;
class CObjBrowserDlg;
class CReportDlg;
class CTimeSynchDialog;

// The console's tabs, null while they do not exist. Whoever reads one under the module lock sees either all of them or
// none.
struct ConsoleTabs {
    std::atomic<CGeneralDlg*> general{nullptr};
    std::atomic<CLogFileDialog*> logFile{nullptr};
    std::atomic<CTimeSynchDialog*> timeSync{nullptr};
    std::atomic<CAlarmRulesDlg*> alarmRules{nullptr};
    std::atomic<CAlarmsDialog*> eventFilters{nullptr};
    std::atomic<CObjBrowserDlg*> browser{nullptr};
    std::atomic<CHistoryDialog*> history{nullptr};
    std::atomic<CBackupDlg*> backup{nullptr};
    std::atomic<CReportDlg*> reports{nullptr};
};
extern ConsoleTabs consoleTabs;
