#include "module/console/Globals.h"

#include "module/console/ConsoleRun.h"
#include "module/console/ConsoleState.h"
#include "module/console/HistoryStarter.h"

#include <mutex>
#include <utility>

namespace {

// Holds an object that is constructed with the module and never destroyed.
template <class T>
union Immortal {
    Immortal() : value() {}
    ~Immortal() {}
    T value;
};

struct RunSlot {
    std::mutex mutex;
    std::shared_ptr<IConsoleRun> run; // mutex
};

Immortal<CBDCManager> g_manager;
Immortal<AllPropPages> g_settings;
Immortal<RunSlot> g_runSlot;

} // namespace

CBDCManager& BDCManager = g_manager.value;
AllPropPages& allPropPages = g_settings.value;

constinit ConsoleWiring consoleWiring;
constinit std::array<std::atomic<CConsolePage*>, PAGE_COUNT> consolePages{};

std::shared_ptr<IConsoleRun> GetConsoleRun() {
    const std::lock_guard lock(g_runSlot.value.mutex);
    return g_runSlot.value.run;
}

void SetConsoleRun(std::shared_ptr<IConsoleRun> run) {
    const std::lock_guard lock(g_runSlot.value.mutex);
    std::swap(g_runSlot.value.run, run); // the old one is released outside the lock
}
