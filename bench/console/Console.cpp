#include "bench/console/Console.h"

#include "module/console/Globals.h"

#include <QTabWidget>

#include <fmt/format.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace bench {
namespace {

constexpr std::uint32_t kPatience = 30000; // ms
constexpr int kPages = 9;

} // namespace

void Fail(const char* reason) {
    fmt::print(stderr, "bdc-bench-console: {}\n", reason);
    std::_Exit(2);
}

Console::Console(Driver& driver) {
    BDCManager.Start(&driver.driver, kPatience);
}

Console::~Console() {
    BDCManager.InitiateShutdownW();
    if (!BDCManager.WaitEnd(kPatience))
        Fail("the console does not end");
}

void Console::Check() {
    bool asExpected = false;
    Do([&] {
        for (const QWidget* const window : QApplication::topLevelWidgets())
            if (const auto* const tabs = window->findChild<QTabWidget*>())
                asExpected = asExpected || (tabs->count() == kPages && !window->isVisible());
    });
    if (!asExpected)
        Fail("there is no hidden console with nine pages");
}

} // namespace bench
