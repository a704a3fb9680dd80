#include "tests/gui/look/Examine.h"

#include "tests/gui/harness/Screenshot.h"
#include "tests/gui/look/Palettes.h"
#include "tests/gui/look/Usability.h"

#include <QApplication>
#include <QWidget>

#include <gmock/gmock.h>

#include <algorithm>

using ::testing::IsEmpty;

namespace {

// Tests are given one variable of the environment, which is the scale; nobody's screen is to show them.
[[maybe_unused]] const bool OFFSCREEN =
    qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qputenv("QT_QPA_PLATFORM", "offscreen");

std::string FileName(std::string name) {
    std::ranges::replace(name, ' ', '-');
    return name;
}

} // namespace

void UseDesktopOfTheRun() {
    UseDesktop(qgetenv("BDC_DESKTOP") == "dark" ? Desktop::Dark : Desktop::Light);
}

void Examine(QWidget& window, const std::string& name) {
    SCOPED_TRACE(name);
    QApplication::processEvents(); // layouts take place
    if (qEnvironmentVariableIsSet("BDC_SCREENSHOTS")) {
        EXPECT_NE(TakeScreenshot(window, FileName(name)), "");
    }
    window.resize(1, 1);
    QApplication::processEvents();
    EXPECT_THAT(CutControls(window), IsEmpty());
    EXPECT_THAT(ControlsWithoutName(window), IsEmpty());
    EXPECT_THAT(ControlsOutOfReach(window), IsEmpty());
}
