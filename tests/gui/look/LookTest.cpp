// Every window of the console, at the scale that QT_SCALE_FACTOR sets: usable with the keyboard and with a screen
// reader, and nothing cut off.
#include "module/console/ConsoleState.h"
#include "tests/gui/ConsoleFixture.h"
#include "tests/gui/look/Examine.h"
#include "tests/gui/look/Scenes.h"
#include "tests/gui/look/Usability.h"

#include <QEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

class ConsoleLook : public ConsoleFixture, public ::testing::WithParamInterface<Scene> {
protected:
    // What the module wires, from before the first fixture clears it.
    static const ConsoleWiring& Module() {
        static const ConsoleWiring MODULE = consoleWiring;
        return MODULE;
    }
    static void SetUpTestSuite() { Module(); }

    void SetUp() override {
        consoleWiring.newPage = Module().newPage;
        consoleWiring.getOperator = Module().getOperator;
        m_kernel.AddTag(0, "Flush trend logs");
        OnGui(UseDesktopOfTheRun);
        Start();
        ShowWindow();
    }
};

TEST_P(ConsoleLook, ServesEverybody) {
    OnGui([] { GetParam().show(Examine); });
}

INSTANTIATE_TEST_SUITE_P(Windows, ConsoleLook, ::testing::ValuesIn(AllScenes()),
                         [](const auto& scene) { return std::string(scene.param.name); });

TEST(Usability, SeesControlsThatHaveNoNameOrAreOutOfReach) {
    OnGui([] {
        QWidget window;
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(new QLineEdit(&window));
        auto* const button = new QPushButton(QStringLiteral("&Go"), &window);
        layout->addWidget(button);
        auto* const trap = new QPushButton(QStringLiteral("Trap"), &window);
        layout->addWidget(trap);
        window.show();
        EXPECT_THAT(ControlsWithoutName(window), ElementsAre("QLineEdit \"\""));
        EXPECT_THAT(ControlsOutOfReach(window), IsEmpty());
        class CNoTab : public QObject {
            bool eventFilter(QObject*, QEvent* event) override { return event->type() == QEvent::KeyPress; }
        } noTab;
        button->installEventFilter(&noTab);
        EXPECT_THAT(ControlsOutOfReach(window), ElementsAre("QPushButton \"Trap\""));
    });
}

TEST(Usability, SeesControlsThatAreCutOutsideOrOnOneAnother) {
    OnGui([] {
        QWidget window;
        window.resize(400, 300);
        QPushButton cut(QStringLiteral("Hardly to be read"), &window);
        cut.setGeometry(0, 0, 30, 60);
        QPushButton outside(QStringLiteral("Out"), &window);
        outside.setGeometry(350, 100, 100, 60);
        QPushButton below(QStringLiteral("On"), &window);
        below.setGeometry(20, 20, 100, 60);
        window.show();
        EXPECT_THAT(CutControls(window),
                    UnorderedElementsAre(StartsWith("QPushButton \"Hardly to be read\" needs "), HasSubstr(" meets "),
                                         "QPushButton \"Out\" leaves its place"));
    });
}

} // namespace
