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

QWidget& Console::GetWindow() {
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->findChild<QTabWidget*>())
            return *window;
    Fail("there is no console");
}

void Console::Check() {
    Do([] {
        if (GetWindow().findChild<QTabWidget*>()->count() != kPages || GetWindow().isVisible())
            Fail("there is no hidden console with nine pages");
    });
}

void Console::SelectPage(const char* page) {
    Do([page] {
        auto& tabs = *GetWindow().findChild<QTabWidget*>();
        for (int tab = 0; tab < tabs.count(); ++tab)
            if (tabs.tabText(tab) == QLatin1String(page))
                tabs.setCurrentIndex(tab);
    });
}

} // namespace bench
