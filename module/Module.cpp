// Puts the module together: tells the console's core which classes stand behind its interfaces.
#include "module/console/ConsoleState.h"
#include "module/console/ConsoleThread.h"
#include "module/history/ConsoleHistory.h"

#include <memory>

namespace {

[[maybe_unused]] const bool IS_WIRED = [] {
    consoleWiring.newRun = [](CDriver& driver) -> std::shared_ptr<IConsoleRun> {
        return std::make_shared<CBDCThread>(driver);
    };
    consoleWiring.newHistoryStarter = NewHistoryStarter;
    return true;
}();

} // namespace
